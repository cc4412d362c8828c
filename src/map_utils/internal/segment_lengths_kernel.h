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
  return Lanes::AreBothWithin(square, kNearSquare, s.latitudeSum * s.latitudeSum, kLatitudeSumSquare);
}

template <class Lanes>
VOREL_LANES_INLINE typename Lanes::Doubles Finish(const BegunSegments<typename Lanes::Doubles>& begun) {
  return Lanes::SquareRoot(tarvo::geodesy::NearSquaredDistanceAtCosSquared<typename Lanes::Doubles>(
      begun.latitudeDifference, begun.longitudeDifference, begun.cosSquared));
}

/// Two vectors that go through each operation one after the other.
template <class Half>
struct TwoVectors {
  Half low;
  Half high;

  friend VOREL_LANES_METHOD TwoVectors operator+(const TwoVectors& a, const TwoVectors& b) {
    return {a.low + b.low, a.high + b.high};
  }
  friend VOREL_LANES_METHOD TwoVectors operator-(const TwoVectors& a, const TwoVectors& b) {
    return {a.low - b.low, a.high - b.high};
  }
  friend VOREL_LANES_METHOD TwoVectors operator*(const TwoVectors& a, const TwoVectors& b) {
    return {a.low * b.low, a.high * b.high};
  }
  friend VOREL_LANES_METHOD TwoVectors operator+(double a, const TwoVectors& b) {
    return {a + b.low, a + b.high};
  }
  friend VOREL_LANES_METHOD TwoVectors operator-(double a, const TwoVectors& b) {
    return {a - b.low, a - b.high};
  }
  friend VOREL_LANES_METHOD TwoVectors operator*(double a, const TwoVectors& b) {
    return {a * b.low, a * b.high};
  }
};

/// The lanes of two vectors side by side.
template <class Lanes>
struct TwiceLanes {
  using Half = typename Lanes::Doubles;
  using Doubles = TwoVectors<Half>;
  static constexpr std::size_t kCount = 2 * Lanes::kCount;

  template <std::size_t kStride, class Point>
  VOREL_LANES_INLINE Segments<Doubles> LoadSegments(const Point* points) {
    const Segments<Half> low = Lanes::template LoadSegments<kStride>(points);
    const Segments<Half> high = Lanes::template LoadSegments<kStride>(points + kStride * Lanes::kCount);
    return {{low.longitudeDifference, high.longitudeDifference},
            {low.latitudeDifference, high.latitudeDifference},
            {low.latitudeSum, high.latitudeSum}};
  }
  VOREL_LANES_INLINE bool AreBothWithin(const Doubles& a, double limitA, const Doubles& b, double limitB) {
    return Lanes::InEach(
        (Lanes::LessOrEqual(a.low, Lanes::All(limitA)) & Lanes::LessOrEqual(b.low, Lanes::All(limitB))) &
        (Lanes::LessOrEqual(a.high, Lanes::All(limitA)) & Lanes::LessOrEqual(b.high, Lanes::All(limitB))));
  }
  VOREL_LANES_INLINE Doubles SquareRoot(const Doubles& value) {
    return {Lanes::SquareRoot(value.low), Lanes::SquareRoot(value.high)};
  }
};

/// Segment i runs from points[kStride * i] to the next point: 1 for a line, 2 for pairs.
///
/// Measures segments until a vector has one that may not be near, and returns how many: take(i, firstLane, lengths) is
/// told, in order, the lengths of the segments i + firstLane, ... that the lanes from `firstLane` on hold, and returns
/// the number of lanes, or the first one that it leaves; there the measuring ends. Segments that do not fill a vector
/// are measured in one that reaches back over segments that were taken before.
///
/// One vector begins while the one before it finishes: the chain of dependent operations of one vector is longer than
/// what a processor looks ahead, so two halves of it that do not wait for one another fill its units better.
///
/// The last vector goes through the loop as well, for a second copy of the code behind it would be long.
template <class Lanes, std::size_t kStride = 1, class Point, class Take>
VOREL_LANES_INLINE std::size_t MeasureNearSegments(const Point* points, std::size_t segmentCount, Take take) {
  if (segmentCount < Lanes::kCount) return 0;
  BegunSegments<typename Lanes::Doubles> current;
  if (!Begin<Lanes, kStride>(points, current)) return 0;
  const std::size_t last = segmentCount - Lanes::kCount;
  std::size_t position = 0;
  std::size_t taken = 0;
  for (;;) {
    const std::size_t nextPosition = position + Lanes::kCount < last ? position + Lanes::kCount : last;
    BegunSegments<typename Lanes::Doubles> next = current;
    bool isNextNear = false;
    if (position < last) isNextNear = Begin<Lanes, kStride>(points + kStride * nextPosition, next);
    const std::size_t lanesTaken = take(position, taken - position, Finish<Lanes>(current));
    taken = position + lanesTaken;
    if (lanesTaken < Lanes::kCount || !isNextNear) return taken;
    current = next;
    position = nextPosition;
  }
}

/// The same without a branch between the halves, so that they can stand interleaved: it begins the last vector once more
/// in vain. For rows that vectors fill without a rest.
template <class Lanes, std::size_t kStride = 1, class Point, class Take>
VOREL_LANES_INLINE std::size_t MeasureNearPairs(const Point* points, std::size_t segmentCount, Take take) {
  if (segmentCount < Lanes::kCount) return 0;
  BegunSegments<typename Lanes::Doubles> current;
  if (!Begin<Lanes, kStride>(points, current)) return 0;
  const std::size_t last = segmentCount - Lanes::kCount;
  std::size_t position = 0;
  std::size_t taken = 0;
  for (;;) {
    const std::size_t nextPosition = position + Lanes::kCount < last ? position + Lanes::kCount : last;
    BegunSegments<typename Lanes::Doubles> next;
    const bool isNextNear = Begin<Lanes, kStride>(points + kStride * nextPosition, next);
    const std::size_t lanesTaken = take(position, taken - position, Finish<Lanes>(current));
    taken = position + lanesTaken;
    if (position == last || lanesTaken < Lanes::kCount || !isNextNear) return taken;
    current = next;
    position = nextPosition;
  }
}

/// Calls use(length) for the lanes from `firstLane` on, in order. The usual first lane 0 costs no detour.
template <class Lanes, class Use>
VOREL_LANES_INLINE void ForEachLane(const typename Lanes::Doubles& lengths, std::size_t firstLane, Use& use) {
  if (firstLane == 0) {
    for (std::size_t lane = 0; lane < Lanes::kCount; ++lane) use(lengths[lane]);
  } else {
    double stored[Lanes::kCount];
    __builtin_memcpy(stored, &lengths, sizeof lengths);
    for (std::size_t lane = firstLane; lane < Lanes::kCount; ++lane) use(stored[lane]);
  }
}

// What is done with the lengths, one after the other. Two vectors of them count only if they may be taken in the end.
struct AddBelowLimit {
  double sum;
  double limit;
  VOREL_LANES_METHOD void operator()(double length) { sum = sum + length; }
  VOREL_LANES_METHOD bool MayBeTaken() const { return !(limit <= sum); }
};
struct AddAndStoreSum {
  double sum;
  double* next;
  VOREL_LANES_METHOD void operator()(double length) {
    sum = sum + length;
    *next++ = sum;
  }
  VOREL_LANES_METHOD bool MayBeTaken() const { return true; }
};

// Two vectors side by side have four independent chains of operations in the loop. A processor looks ahead over little
// more than one of them, so they must stand interleaved, which g++ does only when asked. It orders the instructions
// otherwise and changes none.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC push_options
#pragma GCC optimize("schedule-insns", "sched-pressure")
#endif

/// Hands the lengths of a long row of segments to `use`, two vectors at a time, and ends as MeasureNearSegments does.
/// Those that do not fill two vectors, at least one vector of them, are left.
template <class Lanes, class Point, class Use>
__attribute__((noinline)) std::size_t MeasureManyNearSegments(const Point* points, std::size_t segmentCount,
                                                              Use& use) {
  constexpr std::size_t kHalf = Lanes::kCount;
  Use own = use;  // in registers
  const std::size_t measured = MeasureNearPairs<TwiceLanes<Lanes>>(
      points, (segmentCount - kHalf) / (2 * kHalf) * (2 * kHalf),
      [&own](std::size_t, std::size_t, const TwoVectors<typename Lanes::Doubles>& some) VOREL_LANES_LAMBDA {
        Use next = own;
        ForEachLane<Lanes>(some.low, 0, next);
        ForEachLane<Lanes>(some.high, 0, next);
        if (!next.MayBeTaken()) return std::size_t{0};
        own = next;
        return 2 * kHalf;
      });
  use = own;
  return measured;
}

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC pop_options
#endif

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

  // The sums are written through a copy of the pointer, which the check does not follow into a template.
  // NOLINTNEXTLINE(readability-non-const-parameter)
  static std::size_t StoreSums(const Point* points, std::size_t segmentCount, double& metres, double* sums) {
    if (segmentCount < kManySegments) return 0;
    AddAndStoreSum add{metres, sums};
    const std::size_t measured = MeasureManyNearSegments<Lanes>(points, segmentCount, add);
    metres = add.sum;
    return measured;
  }

  /// The sums never decrease, for no length is negative and rounding keeps the order: while the last one of a vector is
  /// below the limit, so are those before it, and one comparison per vector decides what one per segment would. Two
  /// vectors side by side that come to the limit are measured again one by one. No comparison with NaN holds: a limit of
  /// NaN is not reached, nor is any by sums that begin at NaN.
  static std::size_t Walk(const Point* points, std::size_t segmentCount, double limit, LimitedWalk& walk) {
    AddBelowLimit begun{walk.metres, limit};
    std::size_t many = 0;
    if (segmentCount >= kManySegments) many = MeasureManyNearSegments<Lanes>(points, segmentCount, begun);
    double reached = begun.sum;
    const std::size_t measured = MeasureNearSegments<Lanes>(
        points + many, segmentCount - many,
        [&](std::size_t, std::size_t firstLane, const Doubles& some) VOREL_LANES_LAMBDA {
          AddBelowLimit add{reached, limit};
          ForEachLane<Lanes>(some, firstLane, add);
          if (add.MayBeTaken()) {
            reached = add.sum;
            return Lanes::kCount;
          }
          double lengths[Lanes::kCount];
          __builtin_memcpy(lengths, &some, sizeof some);
          std::size_t lane = firstLane;
          for (; !(limit <= reached + lengths[lane]); ++lane) reached = reached + lengths[lane];
          walk.nextLength = lengths[lane];
          return lane;
        });
    walk.metres = reached;
    return many + measured;
  }

 private:
  using Doubles = typename Lanes::Doubles;
  /// From here on two vectors side by side pay.
  static constexpr std::size_t kManySegments = 32;
};

template <class Lanes>
constexpr SegmentKernel MakeSegmentKernel() {
  using Near = NearSegments<Lanes, tarvo::GeoCoordinate>;
  return {Lanes::kCount,
          Near::template StoreLengths<1>,
          NearSegments<Lanes, const tarvo::GeoCoordinate*>::template StoreLengths<2>,
          Near::StoreSums,
          Near::Walk,
          NearSegments<Lanes, tarvo::GeoCoordinateZ>::Walk};
}

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_KERNEL_H_
