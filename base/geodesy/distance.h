#ifndef VOREL_BASE_GEODESY_DISTANCE_H_
#define VOREL_BASE_GEODESY_DISTANCE_H_

#include <cmath>

#include "base/export.h"
#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"

namespace tarvo {
namespace geodesy {

/// Whether `NearSquaredDistance` measures this pair. False for NaN anywhere, for infinite values and for a latitude
/// beyond a pole. The latitudes are tested one by one: their sum hides one beyond 90 next to one within.
inline bool IsNear(double latitudeA, double latitudeB, double latitudeDifference,
                   double longitudeDifference) {
  return (std::fabs(latitudeDifference) <= kNearLimit) & (std::fabs(longitudeDifference) <= kNearLimit) &
         (std::fabs(latitudeA) <= kPoleLatitude) & (std::fabs(latitudeB) <= kPoleLatitude);
}

/// `Distance` for the pairs that are not near, those across the antimeridian and all invalid ones among them.
VOREL_EXPORT double DistanceBeyondNear(double longitudeA, double latitudeA, double longitudeB,
                                       double latitudeB);

/// What `GeoCoordinate::DistanceTo` promises, with the near pairs measured in place.
inline double Distance(const GeoCoordinate& a, const GeoCoordinate& b) {
  const double latitudeDifference = b.latitude - a.latitude;
  const double longitudeDifference = b.longitude - a.longitude;
  if (IsNear(a.latitude, b.latitude, latitudeDifference, longitudeDifference)) {
    return std::sqrt(NearSquaredDistance(latitudeDifference, longitudeDifference, a.latitude + b.latitude));
  }
  return DistanceBeyondNear(a.longitude, a.latitude, b.longitude, b.latitude);
}

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_BASE_GEODESY_DISTANCE_H_
