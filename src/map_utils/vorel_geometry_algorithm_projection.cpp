#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "map_utils/internal/interpolation.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::kPi;

namespace {

/// Where a position falls along a segment, before any clamp.
struct Projection {
  int code;           // -1 before the segment's first point, 0 within, 1 beyond its second point
  double ratio;       // of the way from the first point to the second
  bool isDegenerate;  // the segment is too short to tell; code and ratio are 0
};

bool IsNoPosition(const GeoCoordinate& pos) {
  return pos.longitude == 0.0 && pos.latitude == 0.0;
}

/// By how much a difference of longitudes shrinks on the local plane of a projection.
double LongitudeScale(const GeoCoordinate& pos) {
  return std::cos(pos.latitude / 180.0 * kPi);
}

/// `scale` is LongitudeScale(pos), passed in so that a walk along a line computes it once.
Projection ProjectOntoSegment(const GeoCoordinate& start, const GeoCoordinate& end, const GeoCoordinate& pos,
                              double scale) {
  constexpr double kShortestSquaredLength = 1e-13;  // square degrees; a length of some 3 cm
  const double alongLongitude = (end.longitude - start.longitude) * scale;
  const double alongLatitude = end.latitude - start.latitude;
  const double squaredLength = alongLongitude * alongLongitude + alongLatitude * alongLatitude;
  if (kShortestSquaredLength > squaredLength) return {0, 0.0, true};
  const double ratio = (alongLongitude * (scale * (pos.longitude - start.longitude)) +
                        (pos.latitude - start.latitude) * alongLatitude) /
                       squaredLength;
  return {ratio < 0.0 ? -1 : (ratio > 1.0 ? 1 : 0), ratio, false};
}

/// Metres from `pos` to the point at the clamped `ratio` of a segment.
double DistanceToSegment(const GeoCoordinate& start, const GeoCoordinate& end, double ratio,
                         const GeoCoordinate& pos) {
  const GeoCoordinate closest(start.longitude + ratio * (end.longitude - start.longitude),
                              start.latitude + ratio * (end.latitude - start.latitude));
  return tarvo::geodesy::Distance(closest, pos);
}

/// Whether the line runs, from its point `index` on, on `heading`. Its direction there is measured over more than half
/// a metre, for shorter steps of a digitised line point anywhere; a line that ends before that matches itself.
bool HeadingMatches(const std::vector<GeoCoordinateZ>& line, std::size_t index, double heading,
                    double headingTolerance) {
  constexpr double kShortestBase = 0.5;  // metres
  double segmentHeading = heading;
  for (std::size_t k = index + 1; k < line.size(); ++k) {
    if (tarvo::geodesy::Distance(line[index], line[k]) > kShortestBase) {
      segmentHeading = tarvo::kx::GeoUtils::GetRadianNorth(line[index], line[k]) / kPi * 180.0;
      break;
    }
  }
  const double difference = std::fabs(segmentHeading - heading);
  return headingTolerance > difference || difference > 360.0 - headingTolerance;
}

/// The best segment of a scan so far.
struct Best {
  int index;
  double ratio;
  double distance;  // metres
};

bool Report(const Best& best, double maxDistance, int& resultIndex, double& ratio) {
  resultIndex = best.index;
  ratio = best.ratio;
  return maxDistance > best.distance;
}

}  // namespace

int VorelGeometryAlgorithm::ProjectionPosToLine(const GeoCoordinateZ& start, const GeoCoordinateZ& end,
                                                const GeoCoordinateZ& pos, GeoCoordinateZ& foot,
                                                double& ratio) {
  const Projection projection = ProjectOntoSegment(start, end, pos, LongitudeScale(pos));
  if (projection.isDegenerate) {
    foot = start;  // copied: an infinite height difference times 0 would give NaN
  } else {
    foot = GeoCoordinateZ((end.longitude - start.longitude) * projection.ratio + start.longitude,
                          (end.latitude - start.latitude) * projection.ratio + start.latitude,
                          internal::HeightAddedInFloat(start.z, end.z, projection.ratio));
  }
  ratio = projection.ratio;
  return projection.code;
}

bool VorelGeometryAlgorithm::ProjectionPosToLines(const GeoCoordinateZ& pos,
                                                  const std::vector<GeoCoordinateZ>& line, int& segmentIndex,
                                                  int& resultIndex, double& ratio) {
  constexpr double kShortestSegment = 0.1;  // metres
  if (IsNoPosition(pos)) return false;
  const double scale = LongitudeScale(pos);
  int direction = 0;  // of the walk: 0 until the first projection outside a segment
  std::int64_t i = segmentIndex;
  while (i >= 0) {
    if (i + 1 >= static_cast<std::int64_t>(line.size())) return false;
    const GeoCoordinateZ& start = line[static_cast<std::size_t>(i)];
    const GeoCoordinateZ& end = line[static_cast<std::size_t>(i) + 1];
    if (tarvo::geodesy::Distance(start, end) < kShortestSegment) {
      i += direction == 0 ? 1 : direction;
    } else {
      const Projection projection = ProjectOntoSegment(start, end, pos, scale);
      ratio = projection.ratio;
      if (projection.code == 0) {
        const bool isAtSecondPoint = ratio >= 1.0;
        resultIndex = static_cast<int>(isAtSecondPoint ? i + 1 : i);
        if (isAtSecondPoint) ratio = 0.0;
        return true;
      }
      if (direction * projection.code < 0) {
        // The walk came from the other side: the position lies in the wedge outside the shared vertex.
        resultIndex = static_cast<int>(projection.code == 1 ? i + 1 : i);
        ratio = 0.0;
        return true;
      }
      direction = projection.code;
      i += direction;
    }
    segmentIndex = static_cast<int>(i);
  }
  return false;
}

bool VorelGeometryAlgorithm::ProjectionPosToLinesDistance(const GeoCoordinateZ& pos,
                                                          const std::vector<GeoCoordinateZ>& line,
                                                          int& startIndex, int& resultIndex, double& ratio,
                                                          double acceptDistance, double maxDistance,
                                                          int maxFarSegments) {
  constexpr double kNothingFound = 999988.0;  // metres; deliberate: a maxDistance beyond it reports success
  constexpr double kShortestSegment = 0.01;   // metres
  if (IsNoPosition(pos) || line.empty()) return false;
  Best best{startIndex, 0.0, kNothingFound};
  const std::size_t segmentCount = line.size() - 1;
  const double scale = LongitudeScale(pos);
  int farCount = 0;
  // A negative start becomes a huge index: nothing is scanned.
  for (std::size_t i = static_cast<std::size_t>(startIndex); i < segmentCount; ++i) {
    if (tarvo::geodesy::Distance(line[i], line[i + 1]) < kShortestSegment) continue;
    const Projection projection = ProjectOntoSegment(line[i], line[i + 1], pos, scale);
    const double clampedRatio = internal::ClampRatio(projection.ratio);
    const double distance = DistanceToSegment(line[i], line[i + 1], clampedRatio, pos);
    if (projection.code == 0 && acceptDistance > distance) {
      startIndex = static_cast<int>(i);
      resultIndex = static_cast<int>(i);
      ratio = clampedRatio;
      return true;
    }
    if (best.distance > distance) {
      best = {static_cast<int>(i), clampedRatio, distance};
    } else if (maxDistance > best.distance && distance > maxDistance) {
      if (farCount >= maxFarSegments) break;
      ++farCount;
    }
  }
  return Report(best, maxDistance, resultIndex, ratio);
}

bool VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
    const GeoCoordinateZ& pos, double heading, const std::vector<GeoCoordinateZ>& line, int& startIndex,
    int& resultIndex, double& ratio, double acceptDistance, double maxDistance, double headingTolerance,
    int maxFarSegments) {
  constexpr double kNothingFound = static_cast<double>(std::numeric_limits<float>::max());
  if (IsNoPosition(pos) || line.empty()) return false;
  Best best{startIndex, 0.0, kNothingFound};
  const std::size_t segmentCount = line.size() - 1;
  const double scale = LongitudeScale(pos);
  int farCount = 0;
  // Deliberate: short segments are not skipped here.
  for (std::size_t i = static_cast<std::size_t>(startIndex); i < segmentCount; ++i) {
    const Projection projection = ProjectOntoSegment(line[i], line[i + 1], pos, scale);
    const double clampedRatio = internal::ClampRatio(projection.ratio);
    const double distance = DistanceToSegment(line[i], line[i + 1], clampedRatio, pos);
    // Deliberate: an early accept does not ask for the heading, nor does the first segment scanned.
    if (projection.code == 0 && acceptDistance > distance) {
      startIndex = static_cast<int>(i);
      resultIndex = static_cast<int>(i);
      ratio = clampedRatio;
      return true;
    }
    if (best.distance == kNothingFound ||
        (best.distance > distance && HeadingMatches(line, i, heading, headingTolerance))) {
      best = {static_cast<int>(i), clampedRatio, distance};
    } else if (maxDistance > best.distance && distance > maxDistance) {
      if (farCount >= maxFarSegments) break;
      ++farCount;
    }
  }
  return Report(best, maxDistance, resultIndex, ratio);
}

int VorelGeometryAlgorithm::PosInAB(const GeoCoordinateZ& pos, const GeoCoordinateZ& a,
                                    const GeoCoordinateZ& b, double& ratio) {
  constexpr double kLongestDetour = 0.1;  // metres
  const double metresToA = tarvo::geodesy::Distance(pos, a);
  const double metresToB = tarvo::geodesy::Distance(pos, b);
  const double length = tarvo::geodesy::Distance(b, a);
  if (std::fabs(metresToA + metresToB - length) <= kLongestDetour) {
    ratio = internal::ClampRatio(length == 0.0 ? 0.0 : metresToA / length);
    return 0;
  }
  return metresToB <= metresToA ? 1 : -1;
}

}  // namespace vorel
