#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_

// The vector form of `SegmentLengths`, written once for every width. Included by sources that are compiled for one
// instruction set each, after the pragma that selects it; everything in here has internal linkage, so that the linker
// cannot take a copy made for one instruction set in place of another.

#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"

namespace vorel {
namespace internal {
namespace {

using Pair = double __attribute__((vector_size(16)));  // longitude and latitude of one point

static inline __attribute__((always_inline)) Pair LoadPoint(const tarvo::GeoCoordinate& point) {
  Pair pair;
  __builtin_memcpy(&pair, &point, sizeof pair);
  return pair;
}

/// Two segments at a time: the lanes of SSE2 and NEON.
struct TwoLanes {
  using Doubles = Pair;
  using Mask = long long __attribute__((vector_size(16)));
  static constexpr std::size_t kCount = 2;

  template <class Point>
  static inline __attribute__((always_inline)) void Load(const Point* points, Doubles& longitudes,
                                                         Doubles& latitudes) {
    const Pair first = LoadPoint(points[0]);
    const Pair second = LoadPoint(points[1]);
    longitudes = __builtin_shufflevector(first, second, 0, 2);
    latitudes = __builtin_shufflevector(first, second, 1, 3);
  }
};

#ifdef VOREL_KERNEL_FOUR_LANES
/// Four segments at a time.
struct FourLanes {
  using Doubles = double __attribute__((vector_size(32)));
  using Mask = long long __attribute__((vector_size(32)));
  static constexpr std::size_t kCount = 4;

  template <class Point>
  static inline __attribute__((always_inline)) void Load(const Point* points, Doubles& longitudes,
                                                         Doubles& latitudes) {
    const Doubles even = __builtin_shufflevector(LoadPoint(points[0]), LoadPoint(points[2]), 0, 1, 2, 3);
    const Doubles odd = __builtin_shufflevector(LoadPoint(points[1]), LoadPoint(points[3]), 0, 1, 2, 3);
    longitudes = __builtin_shufflevector(even, odd, 0, 4, 2, 6);
    latitudes = __builtin_shufflevector(even, odd, 1, 5, 3, 7);
  }
};
#endif

/// All bits set in each lane whose magnitude is at most the limit; a NaN is not.
template <class Lanes>
static inline __attribute__((always_inline)) typename Lanes::Mask IsWithin(typename Lanes::Doubles value, double limit) {
  return (value <= limit) & (value >= -limit);
}

/// Measures the leading segments, as many as fill whole vectors, and returns their number; `allNear` tells whether all
/// of them may be measured so. The square root is left to the caller's loop over the block.
template <class Lanes, class Point>
static inline __attribute__((always_inline)) std::size_t MeasureNearSegments(const Point* points,
                                                                            std::size_t segmentCount,
                                                                            double* squaredLengths, bool& allNear) {
  using Doubles = typename Lanes::Doubles;
  const std::size_t vectorCount = segmentCount / Lanes::kCount;
  typename Lanes::Mask isNear = ~typename Lanes::Mask{};
  for (std::size_t vector = 0; vector < vectorCount; ++vector) {
    const std::size_t i = vector * Lanes::kCount;
    Doubles startLongitude, startLatitude, endLongitude, endLatitude;
    Lanes::Load(points + i, startLongitude, startLatitude);
    Lanes::Load(points + i + 1, endLongitude, endLatitude);
    const Doubles latitudeDifference = endLatitude - startLatitude;
    const Doubles longitudeDifference = endLongitude - startLongitude;
    isNear &= IsWithin<Lanes>(latitudeDifference, tarvo::geodesy::kNearLimit) &
              IsWithin<Lanes>(longitudeDifference, tarvo::geodesy::kNearLimit) &
              IsWithin<Lanes>(startLatitude, tarvo::geodesy::kPoleLatitude) &
              IsWithin<Lanes>(endLatitude, tarvo::geodesy::kPoleLatitude);
    const Doubles squared = tarvo::geodesy::NearSquaredDistance<Doubles>(latitudeDifference, longitudeDifference,
                                                                         startLatitude + endLatitude);
    __builtin_memcpy(squaredLengths + i, &squared, sizeof squared);
  }
  allNear = true;
  for (std::size_t lane = 0; lane < Lanes::kCount; ++lane) allNear = allNear && isNear[lane] != 0;
  return vectorCount * Lanes::kCount;
}

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
