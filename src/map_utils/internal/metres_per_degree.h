#ifndef VOREL_MAP_UTILS_INTERNAL_METRES_PER_DEGREE_H_
#define VOREL_MAP_UTILS_INTERNAL_METRES_PER_DEGREE_H_

#include <cmath>

#include "base/geodesy/wgs84.h"

namespace vorel {
namespace internal {

// Shifts of a few metres turn metres into degrees on a sphere of 6371 km: deliberately not the ellipsoid of
// GeoCoordinate::DistanceTo, from which it differs by up to 0.6 %.

constexpr double kMetresPerDegreeOfLatitude = 111194.92664455873;  // 6371000 * pi / 180

/// @param cosLatitude  std::cos(latitudeDegrees * tarvo::geodesy::kRadiansPerDegree)
inline double MetresPerDegreeOfLongitudeAtCosine(double cosLatitude) {
  const double parallelRadius = cosLatitude * 6371000.0;
  return (parallelRadius + parallelRadius) * tarvo::geodesy::kPi / 360.0;
}

inline double MetresPerDegreeOfLongitude(double latitudeDegrees) {
  return MetresPerDegreeOfLongitudeAtCosine(std::cos(latitudeDegrees * tarvo::geodesy::kRadiansPerDegree));
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_METRES_PER_DEGREE_H_
