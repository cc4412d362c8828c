#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <limits>

#include "base/geodesy/wgs84.h"
#include "base/precondition.h"
#include "map_utils/internal/angle_fold.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/metres_per_degree.h"
#include "map_utils/internal/near_bearing.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using internal::CalledDistance;
using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::kRadiansPerDegree;

namespace {

/// What several steps ask of one vertex, computed once.
struct Vertex {
  explicit Vertex(const GeoCoordinate& point)
      : longitude(point.longitude * kRadiansPerDegree),
        latitude(point.latitude * kRadiansPerDegree),
        cosLatitude(std::cos(latitude)),
        metresPerDegreeOfLongitude(internal::MetresPerDegreeOfLongitudeAtCosine(cosLatitude)) {}

  double longitude;  // radians, multiplied as GetAngle does
  double latitude;
  double cosLatitude;
  double metresPerDegreeOfLongitude;
};

/// The bits of static_cast<float>(GetAngle(start, end)). Most bearings are known so closely that they can round to one
/// float only, whatever the math library does; the others are asked of it.
float RoundedBearing(const GeoCoordinate& start, const GeoCoordinate& end, const Vertex& from,
                     const Vertex& to) {
  const double longitudes = to.longitude - from.longitude;
  // Where the cosine rounds to almost 1 the root errs by up to 2.5e-8: the bearing's error takes that in.
  const double sinLatitude =
      std::copysign(std::sqrt(1.0 - from.cosLatitude * from.cosLatitude), from.latitude);
  const internal::NearBearing bearing =
      internal::NearBearingBetween(from.latitude, to.latitude, longitudes, sinLatitude, to.cosLatitude);
  if (longitudes == 0.0 && bearing.error < 1.0) {
    // Along a meridian: the arctangent of a signed zero over what has a sure sign.
    return bearing.radians * bearing.radians < 1.0 ? static_cast<float>(longitudes)
                                                   : static_cast<float>(std::copysign(180.0, longitudes));
  }
  constexpr double kDegreesPerRadian = 1.0 / kRadiansPerDegree;
  const double degrees = bearing.radians * kDegreesPerRadian;
  const double error = bearing.error * kDegreesPerRadian;
  const float least = static_cast<float>(degrees - error);
  // Never so for NaN.
  if (least == static_cast<float>(degrees + error)) return least;
  return static_cast<float>(VorelGeometryAlgorithm::GetAngle(start, end));
}

/// Bounds of a squared distance, square metres.
struct SquaredBounds {
  double lower;
  double upper;
};

/// Bounds of distances around one vertex, where the joint of its two moved copies lies.
class Surroundings {
 public:
  Surroundings(const GeoCoordinate& point, const Vertex& vertex)
      : latitude_(point.latitude),
        bounds_(vertex.cosLatitude),
        // About a point that cannot be a centre nothing is in reach.
        reach_(internal::LocalDistanceBounds::CanBeCentre(point) ? kReach : -1.0) {}

  /// 0 and infinity for points out of reach, invalid ones among them.
  SquaredBounds BoundsOfDistance(const GeoCoordinate& a, const GeoCoordinate& b) const {
    const double longitudes = b.longitude - a.longitude;
    const bool isInReach = (std::fabs(a.latitude - latitude_) <= reach_) &
                           (std::fabs(b.latitude - latitude_) <= reach_) & (std::fabs(longitudes) <= reach_);
    if (!isInReach) return {0.0, std::numeric_limits<double>::infinity()};
    const double latitudes = b.latitude - a.latitude;
    return {bounds_.LowerSquared(latitudes, longitudes, kReach),
            bounds_.UpperSquared(latitudes, longitudes, kReach)};
  }

 private:
  static constexpr double kReach = 0.01;  // degrees; some 1 km

  double latitude_;
  internal::LocalDistanceBounds bounds_;
  double reach_;
};

/// The joint of two moved segments: the previous one runs from `previousStart` to `previousEnd`, the current one from
/// `start` to `end`; `previousEnd` and `start` are the two moved copies of one vertex. Planar. Distances are measured where
/// their bounds leave open what a comparison of theirs would say.
GeoCoordinate JoinMovedSegments(const GeoCoordinate& previousStart, const GeoCoordinate& previousEnd,
                                const GeoCoordinate& start, const GeoCoordinate& end,
                                const Surroundings& surroundings) {
  using Bounds = internal::LocalDistanceBounds;
  constexpr double kCoincident = 0.01;        // metres: the line goes straight on
  constexpr double kVerticalLimit = 1e-6;     // degrees of longitude
  constexpr double kLongestJoinPerGap = 2.0;  // keeps near-reversals from throwing the joint far away
  const SquaredBounds gap = surroundings.BoundsOfDistance(previousEnd, start);
  const bool isSurelyApart = gap.lower > Bounds::SquareToExceed(kCoincident);
  if (!isSurelyApart && (gap.upper < Bounds::SquareToStayBelow(kCoincident) ||
                         CalledDistance(previousEnd, start) < kCoincident)) {
    return previousEnd;
  }

  const double previousLongitudes = previousEnd.longitude - previousStart.longitude;
  const double previousLatitudes = previousEnd.latitude - previousStart.latitude;
  const double longitudes = end.longitude - start.longitude;
  const double latitudes = end.latitude - start.latitude;
  const bool isPreviousVertical = std::fabs(previousLongitudes) < kVerticalLimit;
  const bool isVertical = std::fabs(longitudes) < kVerticalLimit;
  if (isPreviousVertical && isVertical) {
    return GeoCoordinate(previousEnd.longitude, (previousEnd.latitude + start.latitude) * 0.5);
  }
  if (isPreviousVertical) {
    return GeoCoordinate(
        previousEnd.longitude,
        (previousEnd.longitude - start.longitude) * (latitudes / longitudes) + start.latitude);
  }
  if (isVertical) {
    return GeoCoordinate(start.longitude,
                         previousEnd.latitude + (previousLatitudes / previousLongitudes) *
                                                    (start.longitude - previousEnd.longitude));
  }
  const double previousSlope = previousLatitudes / previousLongitudes;
  const double slope = latitudes / longitudes;
  const double previousIntercept = previousEnd.latitude - previousEnd.longitude * previousSlope;
  const double intercept = start.latitude - start.longitude * slope;
  const GeoCoordinate crossing(
      (intercept - previousIntercept) / (previousSlope - slope),
      (intercept * previousSlope + (-slope) * previousIntercept) / (previousSlope - slope));
  if (isSurelyApart) {
    // A gap of a centimetre and more: a thousandth of its square is far more than the bounds' margins make.
    constexpr double kSquaredLimit = kLongestJoinPerGap * kLongestJoinPerGap;
    const SquaredBounds join = surroundings.BoundsOfDistance(previousEnd, crossing);
    if (join.upper < 0.999 * kSquaredLimit * gap.lower) return crossing;
    if (join.lower > 1.001 * kSquaredLimit * gap.upper) return previousEnd;
  }
  return kLongestJoinPerGap * CalledDistance(previousEnd, start) > CalledDistance(previousEnd, crossing)
             ? crossing
             : previousEnd;
}

}  // namespace

void VorelGeometryAlgorithm::PanLinePoints(const std::vector<GeoCoordinateZ>& points, float offset, bool left,
                                           std::vector<GeoCoordinateZ>& result) {
  VOREL_PRECONDITION(result.empty());
  VOREL_PRECONDITION(&points != &result);
  result.reserve(points.size());
  if (points.size() < 2) return;
  const float turn = left ? -90.0f : 90.0f;
  Vertex from(points[0]);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const GeoCoordinateZ& start = points[i];
    const GeoCoordinateZ& end = points[i + 1];
    const Vertex to(end);
    const float direction = internal::FoldInto360(RoundedBearing(start, end, from, to));
    const float normal = internal::FoldInto360(direction + turn);
    const double normalRadians = static_cast<double>(normal) * kRadiansPerDegree;
    const double metresEast = static_cast<double>(offset) * std::sin(normalRadians);
    const double metresNorth = static_cast<double>(offset) * std::cos(normalRadians);
    const double degreesNorth = metresNorth / internal::kMetresPerDegreeOfLatitude;
    const GeoCoordinate movedStart(start.longitude + metresEast / from.metresPerDegreeOfLongitude,
                                   start.latitude + degreesNorth);
    const GeoCoordinate movedEnd(end.longitude + metresEast / to.metresPerDegreeOfLongitude,
                                 end.latitude + degreesNorth);
    if (i == 0) {
      result.emplace_back(movedStart.longitude, movedStart.latitude, start.z);
    } else {
      // result[i - 1] may itself be a joint by now: the previous moved segment is taken as it stands in the result.
      const GeoCoordinate joint =
          JoinMovedSegments(result[i - 1], result[i], movedStart, movedEnd, Surroundings(start, from));
      result[i].longitude = joint.longitude;
      result[i].latitude = joint.latitude;
    }
    result.emplace_back(movedEnd.longitude, movedEnd.latitude, end.z);
    from = to;
  }
}

}  // namespace vorel
