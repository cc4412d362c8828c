#include "base/strict_floating_point.h"

// The projection onto segments for machines with AVX2, compiled for them whatever the flags: four segments at a time.
// Without code on other architectures. What it includes before the pragma is shared with other sources and stays as they
// have it.

#include "map_utils/internal/segment_projection.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstddef>

#include "base/geo_coordinate.h"
#include "map_utils/internal/segment_kernel.h"

#define VOREL_FOUR_LANES

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "map_utils/internal/segment_projection_kernel.h"

namespace {

bool Measure(const tarvo::GeoCoordinateZ* vertices, std::size_t segmentCount, const tarvo::GeoCoordinate& pos,
             double scale, double* ratios, double* distances) {
  return vorel::internal::MeasureInLanes<vorel::internal::FourLanes>(vertices, segmentCount, pos, scale,
                                                                     ratios, distances);
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

MeasureSegmentsForm Avx2MeasureSegments() {
#if defined(__x86_64__)
  return Measure;
#else
  return nullptr;
#endif
}

}  // namespace internal
}  // namespace vorel
