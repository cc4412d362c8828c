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
// Included by sources that are compiled for one instruction set each; internal linkage as in lanes.h.

#include <cstddef>

#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/segment_kernel.h"

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

/// A vector of segments on its way: measured up to the squared cosine of the mid latitudes.
template <class Doubles>
struct BegunSegments {
  Doubles latitudeDifference;
  Doubles longitudeDifference;
  Doubles cosSquared;
};

/// Begins the first segments, as many as a vector holds. False when one of them may not be near; then `begun` means
/// nothing.
template <class Lanes, std::size_t kStride, class Point>
VOREL_LANES_INLINE bool Begin(const Point* points, BegunSegments<typename Lanes::Doubles>& begun) {
  using Doubles = typename Lanes::Doubles;
  const Segments<Doubles> s = Lanes::template LoadSegments<kStride>(points);
  begun = {s.latitudeDifference, s.longitudeDifference,
           tarvo::geodesy::CosSquaredOfMidLatitude<Doubles>(s.latitudeSum)};
  const Doubles square =
      s.latitudeDifference * s.latitudeDifference + s.longitudeDifference * s.longitudeDifference;
  return Lanes::InEach(Lanes::LessOrEqual(square, Lanes::All(kNearSquare)) &
                       Lanes::LessOrEqual(s.latitudeSum * s.latitudeSum, Lanes::All(kLatitudeSumSquare)));
}

template <class Lanes>
VOREL_LANES_INLINE typename Lanes::Doubles Finish(const BegunSegments<typename Lanes::Doubles>& begun) {
  return Lanes::SquareRoot(tarvo::geodesy::NearSquaredDistanceAtCosSquared<typename Lanes::Doubles>(
      begun.latitudeDifference, begun.longitudeDifference, begun.cosSquared));
}

/// Segment i runs from points[kStride * i] to the next point: 1 for a line, 2 for pairs.
///
/// Measures segments until a vector has one that may not be near, and returns how many: take(i, firstLane, lengths) is
/// told, in order, the lengths of the segments i + firstLane, ... that the lanes from `firstLane` on hold, and returns
/// the number of lanes, or the first one that it leaves; there the measuring ends. Segments that do not fill a vector
/// are measured in one that reaches back over segments that were taken before.
///
/// One vector begins while the one before it finishes: the chain of dependent operations of one vector is longer than
/// what a processor looks ahead, so two halves of it that do not wait for one another fill its units better.
template <class Lanes, std::size_t kStride = 1, class Point, class Take>
VOREL_LANES_INLINE std::size_t MeasureNearSegments(const Point* points, std::size_t segmentCount, Take take) {
  if (segmentCount < Lanes::kCount) return 0;
  BegunSegments<typename Lanes::Doubles> current;
  if (!Begin<Lanes, kStride>(points, current)) return 0;
  const std::size_t last = segmentCount - Lanes::kCount;
  std::size_t position = 0;
  std::size_t taken = 0;
  while (position < last) {
    const std::size_t nextPosition = position + Lanes::kCount < last ? position + Lanes::kCount : last;
    BegunSegments<typename Lanes::Doubles> next;
    const bool isNextNear = Begin<Lanes, kStride>(points + kStride * nextPosition, next);
    const std::size_t lanesTaken = take(position, 0, Finish<Lanes>(current));
    taken = position + lanesTaken;
    if (lanesTaken < Lanes::kCount || !isNextNear) return taken;
    current = next;
    position = nextPosition;
  }
  return position + take(position, taken - position, Finish<Lanes>(current));
}

/// Calls use(lane, length) for the lanes from `firstLane` on, in order. The usual first lane 0 costs no detour.
template <class Lanes, class Use>
VOREL_LANES_INLINE void ForEachLane(const typename Lanes::Doubles& lengths, std::size_t firstLane, Use use) {
  if (firstLane == 0) {
    for (std::size_t lane = 0; lane < Lanes::kCount; ++lane) use(lane, lengths[lane]);
  } else {
    double stored[Lanes::kCount];
    __builtin_memcpy(stored, &lengths, sizeof lengths);
    for (std::size_t lane = firstLane; lane < Lanes::kCount; ++lane) use(lane, stored[lane]);
  }
}

/// The functions of a SegmentKernel.
template <class Lanes, class Point>
class NearSegments {
 public:
  template <std::size_t kStride>
  static std::size_t StoreLengths(const Point* points, std::size_t segmentCount, double* lengths) {
    return MeasureNearSegments<Lanes, kStride>(
        points, segmentCount, [lengths](std::size_t i, std::size_t, const Doubles& some) VOREL_LANES_LAMBDA {
          __builtin_memcpy(lengths + i, &some, sizeof some);
          return Lanes::kCount;
        });
  }

  static std::size_t AddLengths(const Point* points, std::size_t segmentCount, double& metres) {
    double sum = metres;
    const std::size_t measured = MeasureNearSegments<Lanes>(
        points, segmentCount,
        [&sum](std::size_t, std::size_t firstLane, const Doubles& some) VOREL_LANES_LAMBDA {
          ForEachLane<Lanes>(some, firstLane,
                             [&sum](std::size_t, double length) VOREL_LANES_LAMBDA { sum = sum + length; });
          return Lanes::kCount;
        });
    metres = sum;
    return measured;
  }

  static std::size_t StoreSums(const Point* points, std::size_t segmentCount, double& metres, double* sums) {
    double sum = metres;
    const std::size_t measured = MeasureNearSegments<Lanes>(
        points, segmentCount,
        [&sum, sums](std::size_t i, std::size_t firstLane, const Doubles& some) VOREL_LANES_LAMBDA {
          ForEachLane<Lanes>(some, firstLane,
                             [&sum, sums, i](std::size_t lane, double length) VOREL_LANES_LAMBDA {
                               sum = sum + length;
                               sums[i + lane] = sum;
                             });
          return Lanes::kCount;
        });
    metres = sum;
    return measured;
  }

  /// The sums never decrease, for no length is negative and rounding keeps the order: while the last one of a vector is
  /// below the limit, so are those before it, and one comparison per vector decides what one per segment would.
  static std::size_t WalkBelow(const Point* points, std::size_t segmentCount, double limit,
                               LimitedWalk& walk) {
    double reached = walk.metres;
    const std::size_t measured = MeasureNearSegments<Lanes>(
        points, segmentCount,
        [&](std::size_t, std::size_t firstLane, const Doubles& some) VOREL_LANES_LAMBDA {
          double sum = reached;
          ForEachLane<Lanes>(some, firstLane,
                             [&sum](std::size_t, double length) VOREL_LANES_LAMBDA { sum = sum + length; });
          if (limit > sum) {
            reached = sum;
            return Lanes::kCount;
          }
          double lengths[Lanes::kCount];
          __builtin_memcpy(lengths, &some, sizeof some);
          std::size_t lane = firstLane;
          for (; limit > reached + lengths[lane]; ++lane) reached = reached + lengths[lane];
          walk.nextLength = lengths[lane];
          return lane;
        });
    walk.metres = reached;
    return measured;
  }

 private:
  using Doubles = typename Lanes::Doubles;
};

template <class Lanes>
constexpr SegmentKernel MakeSegmentKernel() {
  using Near = NearSegments<Lanes, tarvo::GeoCoordinate>;
  using NearZ = NearSegments<Lanes, tarvo::GeoCoordinateZ>;
  return {Lanes::kCount,
          Near::template StoreLengths<1>,
          NearSegments<Lanes, const tarvo::GeoCoordinate*>::template StoreLengths<2>,
          Near::StoreSums,
          Near::AddLengths,
          NearZ::AddLengths,
          Near::WalkBelow,
          NearZ::WalkBelow};
}

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
