#ifndef VOREL_MAP_UTILS_INTERNAL_PROJECTION_BOUNDS_H_
#define VOREL_MAP_UTILS_INTERNAL_PROJECTION_BOUNDS_H_

// The projection of a position onto one segment, and cheap bounds of what it would give for the segments around the
// position. Internal linkage as in lanes.h.

#include <cmath>
#include <cstddef>

#include "base/geo_coordinate.h"
#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/near_bearing.h"
#include "map_utils/internal/segment_projection.h"

namespace vorel {
namespace internal {
namespace {

/// Where a position falls along a segment, before any clamp.
struct Projection {
  int code;           // -1 before the segment's first point, 0 within, 1 beyond its second point
  double ratio;       // of the way from the first point to the second
  bool isDegenerate;  // the segment is too short to tell; code and ratio are 0
};

/// By how much a difference of longitudes shrinks on the local plane of a projection.
inline double LongitudeScale(const tarvo::GeoCoordinate& pos) {
  return std::cos(pos.latitude / 180.0 * tarvo::geodesy::kPi);
}

/// `scale` is LongitudeScale(pos), passed in so that a walk along a line computes it once.
inline Projection ProjectOntoSegment(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                     const tarvo::GeoCoordinate& pos, double scale) {
  const double alongLongitude = (end.longitude - start.longitude) * scale;
  const double alongLatitude = end.latitude - start.latitude;
  const double squaredLength = alongLongitude * alongLongitude + alongLatitude * alongLatitude;
  if (kShortestSquaredLength > squaredLength) return {0, 0.0, true};
  const double ratio = (alongLongitude * (scale * (pos.longitude - start.longitude)) +
                        (pos.latitude - start.latitude) * alongLatitude) /
                       squaredLength;
  return {ratio < 0.0 ? -1 : (ratio > 1.0 ? 1 : 0), ratio, false};
}

/// `Distance` where it is rarely called, or for long: its code stands here once for all of these.
__attribute__((noinline)) inline double MetresBetween(const tarvo::GeoCoordinate& a,
                                                      const tarvo::GeoCoordinate& b) {
  return tarvo::geodesy::Distance(a, b);
}

/// Metres from `pos` to the point at the clamped `ratio` of a segment.
inline double DistanceToSegment(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                double ratio, const tarvo::GeoCoordinate& pos) {
  const tarvo::GeoCoordinate closest(start.longitude + ratio * (end.longitude - start.longitude),
                                     start.latitude + ratio * (end.latitude - start.latitude));
  return tarvo::geodesy::Distance(closest, pos);
}

constexpr double kShortestHeadingBase = 0.5;  // metres

/// A vertex of a line as seen from the position, degrees.
struct Offset {
  double longitude;
  double latitude;
  bool isInReach;  // of the bounds; false for NaN
};

enum class Answer { kNo, kYes, kUnknown };

/// Cheap bounds of the distances about the position of a walk or a scan.
class Surroundings {
 public:
  /// @param scale  LongitudeScale(pos)
  Surroundings(const tarvo::GeoCoordinate& pos, double scale)
      : pos_(pos),
        bounds_(scale),
        cosLatitude_(scale),
        // A position that cannot be a centre has nothing in reach.
        reach_(LocalDistanceBounds::CanBeCentre(pos) ? LocalDistanceBounds::kReach : -1.0) {}

  Offset OffsetOf(const tarvo::GeoCoordinate& vertex) const {
    const double longitude = vertex.longitude - pos_.longitude;
    const double latitude = vertex.latitude - pos_.latitude;
    const bool isInReach = (std::fabs(longitude) <= reach_) & (std::fabs(latitude) <= reach_);
    return {longitude, latitude, isInReach};
  }

  // The next two bound the distance of the position to every point of a segment in reach, by the nearest and the
  // farthest point of the box around it: whatever the projection and its roundings make of the closest point.

  double LowerSquared(const Offset& start, const Offset& end) const {
    const double reach = Larger(Larger(std::fabs(start.latitude), std::fabs(end.latitude)),
                                Larger(std::fabs(start.longitude), std::fabs(end.longitude)));
    return bounds_.LowerSquared(LeastSize(start.latitude, end.latitude),
                                LeastSize(start.longitude, end.longitude), reach);
  }

  double UpperSquared(const Offset& start, const Offset& end) const {
    return bounds_.UpperSquared(Larger(std::fabs(start.latitude), std::fabs(end.latitude)),
                                Larger(std::fabs(start.longitude), std::fabs(end.longitude)));
  }

  /// What LowerSquared says of the box around a segment, of the box around `vertexCount` vertices; 0 when one is out of reach.
  /// A later vertex with a NaN is passed over: its segments have distances of NaN, which are neither nearer than another nor
  /// far, and the box around the other vertices bounds the other segments.
  __attribute__((noinline)) double LowerSquaredOfBox(const tarvo::GeoCoordinateZ* vertices,
                                                     std::size_t vertexCount) const {
    // Both coordinates at once.
    TwoDoubles lowest = LoadPoint(vertices[0]);
    TwoDoubles highest = lowest;
    for (std::size_t k = 1; k < vertexCount; ++k) {
      const TwoDoubles vertex = LoadPoint(vertices[k]);
      lowest = TwoLanes::Smaller(vertex, lowest);
      highest = TwoLanes::Larger(vertex, highest);
    }
    const TwoDoubles pos = LoadPoint(pos_);
    const TwoDoubles toLowest = lowest - pos;
    const TwoDoubles toHighest = highest - pos;
    const TwoDoubles largest = TwoLanes::Larger(-toLowest, toHighest);
    if (!TwoLanes::InEach(TwoLanes::LessOrEqual(largest, TwoLanes::All(reach_)))) return 0.0;  // also for NaN
    const TwoDoubles least = TwoLanes::Larger(TwoLanes::Larger(toLowest, -toHighest), TwoLanes::All(0.0));
    return bounds_.LowerSquared(least[1], least[0], Larger(largest[0], largest[1]));
  }

  /// Whether the segment is shorter than `metres`: what its `Distance` says, which is rarely asked.
  bool IsShorterThan(double metres, const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                     const Offset& startOffset, const Offset& endOffset) const {
    const bool isSurelyLonger = startOffset.isInReach && endOffset.isInReach &&
                                bounds_.LowerSquared(endOffset.latitude - startOffset.latitude,
                                                     endOffset.longitude - startOffset.longitude) >
                                    LocalDistanceBounds::SquareToExceed(metres);
    return !isSurelyLonger && MetresBetween(start, end) < metres;
  }

  /// What HeadingMatches says of a segment in reach, where a cheap bearing of that segment tells for sure.
  ///
  /// The sine and cosine at the segment's points come from the position's by two terms of Taylor's series, with errors
  /// below 1.1e-7, or a relative 6.4e-6 at 89 degrees. They turn the bearing by less than 7e-6, the two ways to
  /// subtract longitudes in radians by less than 2e-8 for half a metre: together less than 0.001 degree.
  Answer MatchesHeading(double heading, double headingTolerance, const Offset& start,
                        const Offset& end) const {
    constexpr double kRoom = 0.002;          // degrees
    constexpr double kLargestHeading = 1e6;  // degrees; differences from it round by far less than the room
    constexpr double kLargestError = 1e-5;   // radians
    const double longitudes = end.longitude - start.longitude;
    const bool isBase = bounds_.LowerSquared(end.latitude - start.latitude, longitudes) >
                        LocalDistanceBounds::SquareToExceed(kShortestHeadingBase);
    if (!isBase || !(std::fabs(heading) <= kLargestHeading)) return Answer::kUnknown;
    const double sinLatitude = std::copysign(std::sqrt(1.0 - cosLatitude_ * cosLatitude_), pos_.latitude);
    const double toStart = start.latitude * tarvo::geodesy::kRadiansPerDegree;
    const double toEnd = end.latitude * tarvo::geodesy::kRadiansPerDegree;
    const NearBearing bearing =
        NearBearingBetween(toStart + pos_.latitude * tarvo::geodesy::kRadiansPerDegree,
                           toEnd + pos_.latitude * tarvo::geodesy::kRadiansPerDegree,
                           longitudes * tarvo::geodesy::kRadiansPerDegree,
                           sinLatitude + cosLatitude_ * toStart - 0.5 * sinLatitude * (toStart * toStart),
                           cosLatitude_ - sinLatitude * toEnd - 0.5 * cosLatitude_ * (toEnd * toEnd));
    if (!(bearing.error <= kLargestError)) return Answer::kUnknown;
    const double degrees = bearing.radians / tarvo::geodesy::kRadiansPerDegree;
    const double segmentHeading = degrees < 0.0 ? degrees + 360.0 : degrees;
    // It may be 0 as well as almost 360.
    if (!(segmentHeading > kRoom && segmentHeading < 360.0 - kRoom)) return Answer::kUnknown;
    const double difference = std::fabs(segmentHeading - heading);
    if (headingTolerance > difference + kRoom || difference - kRoom > 360.0 - headingTolerance) {
      return Answer::kYes;
    }
    if (headingTolerance <= difference - kRoom && difference + kRoom <= 360.0 - headingTolerance) {
      return Answer::kNo;
    }
    return Answer::kUnknown;
  }

 private:
  /// The least size of any value between the two.
  static double LeastSize(double a, double b) {
    // Negative where 0 lies between them.
    const double outside = Larger(Smaller(a, b), -Larger(a, b));
    return Larger(outside, 0.0);
  }

  // As one machine instruction: std::max returns a reference, which compilers are slower to see through.
  static double Larger(double a, double b) { return a < b ? b : a; }
  static double Smaller(double a, double b) { return b < a ? b : a; }

  tarvo::GeoCoordinate pos_;
  LocalDistanceBounds bounds_;
  double cosLatitude_;
  double reach_;
};

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_PROJECTION_BOUNDS_H_
