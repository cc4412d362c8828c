#include "base/strict_floating_point.h"

#include "base/geo_utils.h"

#include <cmath>

#include "base/geodesy/wgs84.h"

namespace tarvo {
namespace kx {

double GeoUtils::GetRadianNorth(const GeoCoordinate& a, const GeoCoordinate& b) {
  if (a == b) return 0.0;
  constexpr double kTwoPi = 2.0 * geodesy::kPi;
  const double latitudeA = a.latitude * geodesy::kRadiansPerDegree;
  const double latitudeB = b.latitude * geodesy::kRadiansPerDegree;
  const double longitudeDifference = (b.longitude - a.longitude) * geodesy::kRadiansPerDegree;
  const double cosLatitudeB = std::cos(latitudeB);
  const double east = std::sin(longitudeDifference) * cosLatitudeB;
  const double north = std::cos(latitudeA) * std::sin(latitudeB) -
                       std::sin(latitudeA) * cosLatitudeB * std::cos(longitudeDifference);
  const double bearing = std::atan2(east, north);
  if (bearing > 0.0) return bearing;
  if (bearing == 0.0) return 0.0;  // -0 as well: due north is +0
  const double turned = bearing + kTwoPi;
  // A bearing a hair west of north rounds up to a full turn: that is north. NaN passes through.
  return turned >= kTwoPi ? 0.0 : turned;
}

}  // namespace kx
}  // namespace tarvo
