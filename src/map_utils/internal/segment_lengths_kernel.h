#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_

// Measures several segments at once, written once for every width of vector.
//
// The bits are those of tarvo::geodesy::Distance: each lane goes through the very expressions of the scalar distance
// (base/geodesy/near_series.h), and a vector operation rounds each lane as the scalar operation rounds its one value;
// products and sums are never fused. A vector is measured only when every segment in it is near in the sense of
// tarvo::geodesy::IsNear; all others are left to the scalar distance. The test here is stricter and cheaper than
// IsNear: see kNearSquare.
//
// Included by sources that are compiled for one instruction set each, after the pragma that selects it. Everything in
// here has internal linkage, so that the linker cannot take a copy made for one instruction set in place of another.

#if defined(__has_builtin)
#if __has_builtin(__builtin_shufflevector)
#if defined(__SSE2__) || defined(__aarch64__)
#define VOREL_HAVE_SEGMENT_VECTORS
#endif
#endif
#endif

#ifdef VOREL_HAVE_SEGMENT_VECTORS

#include <cstddef>

#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"
#include "map_utils/internal/segment_lengths.h"

#if defined(__SSE2__)
#include <immintrin.h>
#else
#include <arm_neon.h>
#endif

#define VOREL_KERNEL_INLINE static inline __attribute__((always_inline))

namespace vorel {
namespace internal {
namespace {

/// Squares of degrees. With u and v the differences of latitude and longitude and s the sum of the latitudes,
/// u^2 + v^2 <= kNearSquare says |u|, |v| < kNearLimit, for the square of a difference beyond it rounds to at least
/// 0.00999...; with s^2 <= kLatitudeSumSquare, |s| <= 179.5, no latitude is beyond (179.5 + 0.1) / 2 < 90. A NaN or
/// an infinity anywhere makes a side NaN or infinite, and the test fails.
constexpr double kNearSquare = 0.0099;
constexpr double kLatitudeSumSquare = 179.5 * 179.5;
static_assert(kNearSquare < 0.999 * tarvo::geodesy::kNearLimit * tarvo::geodesy::kNearLimit,
              "room for the rounding of squares and their sum");

using Pair = double __attribute__((vector_size(16)));  // longitude and latitude of one point

VOREL_KERNEL_INLINE Pair LoadPoint(const tarvo::GeoCoordinate& point) {
  Pair pair;
  __builtin_memcpy(&pair, &point, sizeof pair);
  return pair;
}

/// What the distances of neighbouring points are made of, one segment per lane.
template <class Doubles>
struct Differences {
  Doubles longitude;
  Doubles latitude;
  Doubles latitudeSum;
};

/// Two segments at a time: the lanes of SSE2 and NEON.
struct TwoLanes {
  using Doubles = Pair;
  using Mask = long long __attribute__((vector_size(16)));
  static constexpr std::size_t kCount = 2;

  /// Differences and sums are taken while a point's coordinates stand side by side; that leaves three shuffles.
  template <class Point>
  VOREL_KERNEL_INLINE Differences<Doubles> Load(const Point* points) {
    const Pair point0 = LoadPoint(points[0]);
    const Pair point1 = LoadPoint(points[1]);
    const Pair point2 = LoadPoint(points[2]);
    const Pair difference0 = point1 - point0;
    const Pair difference1 = point2 - point1;
    return {__builtin_shufflevector(difference0, difference1, 0, 2),
            __builtin_shufflevector(difference0, difference1, 1, 3),
            __builtin_shufflevector(point0 + point1, point1 + point2, 1, 3)};
  }

#if defined(__SSE2__)
  VOREL_KERNEL_INLINE Doubles SquareRoot(Doubles value) {
    return _mm_sqrt_pd(value);
  }
  VOREL_KERNEL_INLINE bool IsAllSet(Mask mask) {
    return _mm_movemask_pd(reinterpret_cast<__m128d>(mask)) == 3;
  }
#else
  VOREL_KERNEL_INLINE Doubles SquareRoot(Doubles value) {
    return vsqrtq_f64(value);
  }
  VOREL_KERNEL_INLINE bool IsAllSet(Mask mask) {
    return vminvq_u32(reinterpret_cast<uint32x4_t>(mask)) != 0;
  }
#endif
};

#ifdef VOREL_KERNEL_FOUR_LANES
/// Four segments at a time: AVX2.
struct FourLanes {
  using Doubles = double __attribute__((vector_size(32)));
  using Mask = long long __attribute__((vector_size(32)));
  static constexpr std::size_t kCount = 4;

  template <class Point>
  VOREL_KERNEL_INLINE Doubles LoadPoints(const Point& low, const Point& high) {
    return __builtin_shufflevector(LoadPoint(low), LoadPoint(high), 0, 1, 2, 3);
  }

  /// As with two lanes, with every other segment side by side, so that the shuffles leave them in order.
  template <class Point>
  VOREL_KERNEL_INLINE Differences<Doubles> Load(const Point* points) {
    const Doubles points02 = LoadPoints(points[0], points[2]);
    const Doubles points13 = LoadPoints(points[1], points[3]);
    const Doubles points24 = LoadPoints(points[2], points[4]);
    const Doubles difference02 = points13 - points02;
    const Doubles difference13 = points24 - points13;
    return {__builtin_shufflevector(difference02, difference13, 0, 4, 2, 6),
            __builtin_shufflevector(difference02, difference13, 1, 5, 3, 7),
            __builtin_shufflevector(points02 + points13, points13 + points24, 1, 5, 3, 7)};
  }

  VOREL_KERNEL_INLINE Doubles SquareRoot(Doubles value) { return _mm256_sqrt_pd(value); }
  VOREL_KERNEL_INLINE bool IsAllSet(Mask mask) {
    return _mm256_movemask_pd(reinterpret_cast<__m256d>(mask)) == 15;
  }
};
#endif

/// A vector of segments on its way: measured up to the squared cosine of the mid latitudes.
template <class Doubles>
struct BegunSegments {
  Doubles latitudeDifference;
  Doubles longitudeDifference;
  Doubles cosSquared;
};

/// Begins the first segments, as many as a vector holds. False when one of them may not be near; then `begun` means
/// nothing.
template <class Lanes, class Point>
VOREL_KERNEL_INLINE bool Begin(const Point* points, BegunSegments<typename Lanes::Doubles>& begun) {
  using Doubles = typename Lanes::Doubles;
  const Differences<Doubles> d = Lanes::Load(points);
  begun = {d.latitude, d.longitude, tarvo::geodesy::CosSquaredOfMidLatitude<Doubles>(d.latitudeSum)};
  const typename Lanes::Mask isNear = d.latitude * d.latitude + d.longitude * d.longitude <= kNearSquare;
  const typename Lanes::Mask isOffThePoles = d.latitudeSum * d.latitudeSum <= kLatitudeSumSquare;
  return Lanes::IsAllSet(isNear & isOffThePoles);
}

template <class Lanes>
VOREL_KERNEL_INLINE typename Lanes::Doubles Finish(const BegunSegments<typename Lanes::Doubles>& begun) {
  return Lanes::SquareRoot(tarvo::geodesy::NearSquaredDistanceAtCosSquared<typename Lanes::Doubles>(
      begun.latitudeDifference, begun.longitudeDifference, begun.cosSquared));
}

/// Measures segments until a vector has one that may not be near, and returns how many: take(i, firstLane, lengths) is
/// told, in order, the lengths of the segments i + firstLane, ... that the lanes from `firstLane` on hold. Segments
/// that do not fill a vector are measured in one that reaches back over segments that were taken before.
///
/// One vector begins while the one before it finishes: the chain of dependent operations of one vector is longer than
/// what a processor looks ahead, so two halves of it that do not wait for one another fill its units better.
template <class Lanes, class Point, class Take>
VOREL_KERNEL_INLINE std::size_t MeasureNearSegments(const Point* points, std::size_t segmentCount,
                                                    Take take) {
  if (segmentCount < Lanes::kCount) return 0;
  BegunSegments<typename Lanes::Doubles> current;
  if (!Begin<Lanes>(points, current)) return 0;
  const std::size_t last = segmentCount - Lanes::kCount;
  std::size_t position = 0;
  std::size_t taken = 0;
  while (position < last) {
    const std::size_t nextPosition = position + Lanes::kCount < last ? position + Lanes::kCount : last;
    BegunSegments<typename Lanes::Doubles> next;
    const bool isNextNear = Begin<Lanes>(points + nextPosition, next);
    take(position, 0, Finish<Lanes>(current));
    taken = position + Lanes::kCount;
    if (!isNextNear) return taken;
    current = next;
    position = nextPosition;
  }
  take(position, taken - position, Finish<Lanes>(current));
  return segmentCount;
}

template <class Lanes, class Point>
std::size_t StoreNearLengths(const Point* points, std::size_t segmentCount, double* lengths) {
  return MeasureNearSegments<Lanes>(
      points, segmentCount,
      [lengths](std::size_t i, std::size_t, const typename Lanes::Doubles& some)
          __attribute__((always_inline)) { __builtin_memcpy(lengths + i, &some, sizeof some); });
}

template <class Lanes, class Point>
std::size_t AddNearLengths(const Point* points, std::size_t segmentCount, double& length) {
  double sum = length;
  const std::size_t measured = MeasureNearSegments<Lanes>(
      points, segmentCount,
      [&sum](std::size_t, std::size_t firstLane, const typename Lanes::Doubles& some)
          __attribute__((always_inline)) {
            if (firstLane == 0) {
              for (std::size_t lane = 0; lane < Lanes::kCount; ++lane) sum = sum + some[lane];
            } else {
              double lengths[Lanes::kCount];
              __builtin_memcpy(lengths, &some, sizeof some);
              for (std::size_t lane = firstLane; lane < Lanes::kCount; ++lane) sum = sum + lengths[lane];
            }
          });
  length = sum;
  return measured;
}

template <class Lanes>
constexpr SegmentKernel MakeSegmentKernel() {
  return {Lanes::kCount, StoreNearLengths<Lanes, tarvo::GeoCoordinate>,
          StoreNearLengths<Lanes, tarvo::GeoCoordinateZ>, AddNearLengths<Lanes, tarvo::GeoCoordinate>,
          AddNearLengths<Lanes, tarvo::GeoCoordinateZ>};
}

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_HAVE_SEGMENT_VECTORS

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
