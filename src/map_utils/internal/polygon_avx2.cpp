#include "base/strict_floating_point.h"

// Point in polygon for machines with AVX2, compiled for them whatever the flags: four edges at a time. Without code on
// other architectures. What it includes before the pragma is shared with other sources and stays as they have it.

#include "map_utils/internal/polygon.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstddef>

#include "base/geo_coordinate.h"

#define VOREL_FOUR_LANES

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "map_utils/internal/polygon_kernel.h"

namespace {

vorel::internal::PolygonSide Locate(const tarvo::GeoCoordinate* polygon, std::size_t vertexCount,
                                    const tarvo::GeoCoordinate& point) {
  return vorel::internal::PolygonKernel<vorel::internal::FourLanes>::Locate(polygon, vertexCount, point);
}

}  // namespace

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif

namespace vorel {
namespace internal {

LocateInPolygon Avx2LocateInPolygon() {
#if defined(__x86_64__)
  return Locate;
#else
  return nullptr;
#endif
}

}  // namespace internal
}  // namespace vorel
