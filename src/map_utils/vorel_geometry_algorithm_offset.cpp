#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>

#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "base/precondition.h"
#include "map_utils/internal/angle_fold.h"
#include "map_utils/internal/metres_per_degree.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::Distance;

namespace {

/// The joint of two moved segments: the previous one runs from `previousStart` to `previousEnd`, the current one from
/// `start` to `end`; `previousEnd` and `start` are the two moved copies of one vertex. Planar.
GeoCoordinate JoinMovedSegments(const GeoCoordinate& previousStart, const GeoCoordinate& previousEnd,
                                const GeoCoordinate& start, const GeoCoordinate& end) {
  constexpr double kCoincident = 0.01;        // metres: the line goes straight on
  constexpr double kVerticalLimit = 1e-6;     // degrees of longitude
  constexpr double kLongestJoinPerGap = 2.0;  // keeps near-reversals from throwing the joint far away
  const double gap = Distance(previousEnd, start);
  if (gap < kCoincident) return previousEnd;

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
  return kLongestJoinPerGap * gap > Distance(previousEnd, crossing) ? crossing : previousEnd;
}

}  // namespace

void VorelGeometryAlgorithm::PanLinePoints(const std::vector<GeoCoordinateZ>& points, float offset, bool left,
                                           std::vector<GeoCoordinateZ>& result) {
  VOREL_PRECONDITION(result.empty());
  VOREL_PRECONDITION(&points != &result);
  result.reserve(points.size());
  if (points.size() < 2) return;
  const float turn = left ? -90.0f : 90.0f;
  double metresPerDegreeAtStart = internal::MetresPerDegreeOfLongitude(points[0].latitude);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const GeoCoordinateZ& start = points[i];
    const GeoCoordinateZ& end = points[i + 1];
    const float direction = internal::FoldInto360(static_cast<float>(GetAngle(start, end)));
    const float normal = internal::FoldInto360(direction + turn);
    const double normalRadians = static_cast<double>(normal) * tarvo::geodesy::kRadiansPerDegree;
    const double metresEast = static_cast<double>(offset) * std::sin(normalRadians);
    const double metresNorth = static_cast<double>(offset) * std::cos(normalRadians);
    const double metresPerDegreeAtEnd = internal::MetresPerDegreeOfLongitude(end.latitude);
    const double degreesNorth = metresNorth / internal::kMetresPerDegreeOfLatitude;
    const GeoCoordinate movedStart(start.longitude + metresEast / metresPerDegreeAtStart,
                                   start.latitude + degreesNorth);
    const GeoCoordinate movedEnd(end.longitude + metresEast / metresPerDegreeAtEnd,
                                 end.latitude + degreesNorth);
    if (i == 0) {
      result.emplace_back(movedStart.longitude, movedStart.latitude, start.z);
    } else {
      // result[i - 1] may itself be a joint by now: the previous moved segment is taken as it stands in the result.
      const GeoCoordinate joint = JoinMovedSegments(result[i - 1], result[i], movedStart, movedEnd);
      result[i].longitude = joint.longitude;
      result[i].latitude = joint.latitude;
    }
    result.emplace_back(movedEnd.longitude, movedEnd.latitude, end.z);
    metresPerDegreeAtStart = metresPerDegreeAtEnd;
  }
}

}  // namespace vorel
