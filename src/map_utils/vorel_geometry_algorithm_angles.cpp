#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>

#include "base/geodesy/wgs84.h"
#include "map_utils/internal/angle_fold.h"
#include "map_utils/internal/integer_conversion.h"

namespace vorel {

using tarvo::CoordinateUtil;
using tarvo::GeoCoordinate;
using tarvo::MapVector3d;

namespace {

using tarvo::geodesy::kPi;
using tarvo::geodesy::kRadiansPerDegree;

// Hundredths of an arc-second. Deliberate: adding 0.5 and truncating toward zero rounds negative values up, so
// that -0.5 and +0.4 both become 0.
std::int32_t HundredthsOfArcSecond(double degrees) {
  return internal::TruncateToInt32(degrees * 360000.0 + 0.5);
}

double Radians(double degrees) {
  return degrees * kPi / 180.0;
}

}  // namespace

float VorelGeometryAlgorithm::GetAngle(const GeoCoordinate& a, const GeoCoordinate& b,
                                       const GeoCoordinate& c) {
  const double arrivingLongitude = b.longitude - a.longitude;
  const double arrivingLatitude = b.latitude - a.latitude;
  const double leavingLongitude = c.longitude - b.longitude;
  const double leavingLatitude = c.latitude - b.latitude;
  const double squaredLengths =
      (arrivingLongitude * arrivingLongitude + arrivingLatitude * arrivingLatitude) *
      (leavingLongitude * leavingLongitude + leavingLatitude * leavingLatitude);
  if (squaredLengths == 0.0) return 0.0f;
  const double dot = arrivingLongitude * leavingLongitude + arrivingLatitude * leavingLatitude;
  // Deliberate: no clamp; a cosine that rounding pushed beyond 1 gives NaN.
  return static_cast<float>(std::acos(dot / std::sqrt(squaredLengths)) * 180.0 / kPi);
}

double VorelGeometryAlgorithm::GetAngle(const GeoCoordinate& from, const GeoCoordinate& to) {
  const double fromLatitude = from.latitude * kRadiansPerDegree;
  const double toLatitude = to.latitude * kRadiansPerDegree;
  const double longitudeDifference = to.longitude * kRadiansPerDegree - from.longitude * kRadiansPerDegree;
  const double cosToLatitude = std::cos(toLatitude);
  const double y = std::sin(longitudeDifference) * cosToLatitude;
  const double x = std::cos(fromLatitude) * std::sin(toLatitude) -
                   std::sin(fromLatitude) * cosToLatitude * std::cos(longitudeDifference);
  return std::atan2(y, x) / kRadiansPerDegree;
}

double VorelGeometryAlgorithm::GetYaw(double lat1, double lon1, double lat2, double lon2) {
  const std::int32_t gridLat1 = HundredthsOfArcSecond(lat1);
  const std::int32_t gridLon1 = HundredthsOfArcSecond(lon1);
  const std::int32_t gridLat2 = HundredthsOfArcSecond(lat2);
  const std::int32_t gridLon2 = HundredthsOfArcSecond(lon2);
  if (gridLat1 == gridLat2 && gridLon1 == gridLon2) return 0.0;

  double heading = 0.0;
  if (gridLon1 == gridLon2) {
    heading = gridLat1 > gridLat2 ? 180.0 : 0.0;
  } else {
    const double latitude1 = Radians(lat1);
    const double latitude2 = Radians(lat2);
    const double longitudeDifference = Radians(lon2) - Radians(lon1);
    const double cosLatitude2 = std::cos(latitude2);
    const double centralAngle = std::acos(std::sin(latitude1) * std::sin(latitude2) +
                                          std::cos(latitude1) * cosLatitude2 * std::cos(longitudeDifference));
    const double fromMeridian =
        std::asin(std::sin(longitudeDifference) * cosLatitude2 / std::sin(centralAngle)) / kPi * 180.0;
    // The quadrant comes from the grid, by comparing: a difference of two grid values can overflow.
    if (gridLat2 < gridLat1) {
      heading = 180.0 - fromMeridian;
    } else if (gridLat2 > gridLat1 && gridLon2 < gridLon1) {
      heading = fromMeridian + 360.0;
    } else {
      heading = fromMeridian;
    }
  }
  if (heading < 0.0) heading = heading + 360.0;
  if (heading > 360.0) heading = heading - 360.0;
  return std::isnan(heading) ? 0.0 : heading;
}

float VorelGeometryAlgorithm::CalcAziDiff(float from, float to) {
  const float difference = to - from;
  if (difference < -180.0f) return difference + 360.0f;
  if (difference > 180.0f) return difference - 360.0f;
  return difference;
}

float VorelGeometryAlgorithm::AngleDiff(float from, float to) {
  const float shifted = (to - from) + 180.0f;
  double remainder = std::fmod(static_cast<double>(shifted), 360.0);
  if (remainder < 0.0) remainder = remainder + 360.0;
  return static_cast<float>(remainder - 180.0);
}

float VorelGeometryAlgorithm::NormalizeAngle180(float angle) {
  return internal::FoldInto180(angle);
}

float VorelGeometryAlgorithm::NormalizeAngle360(float angle) {
  return internal::FoldInto360(angle);
}

std::vector<double> VorelGeometryAlgorithm::GetLength3OfTriangle(double sideA, double sideB, double angle) {
  const double angleRadians = angle * kPi / 180.0;
  const double height = sideB * std::sin(angleRadians);
  const double halfGap = std::sqrt(sideA * sideA - height * height);
  const double middle = sideB * std::cos(angleRadians);
  std::vector<double> lengths;
  for (const double candidate : {middle + halfGap, middle - halfGap}) {
    if (sideA + sideB > candidate && candidate > std::fabs(sideA - sideB)) lengths.push_back(candidate);
  }
  return lengths;
}

double VorelGeometryAlgorithm::Distance(MapVector3d p, MapVector3d q) {
  return CoordinateUtil::DistanceOfGcj02Pos(p.x, p.y, q.x, q.y);
}

double VorelGeometryAlgorithm::Get20PixelDistanceOnePixel() {
  return 0.1492910087108612;
}

}  // namespace vorel
