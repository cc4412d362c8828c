#ifndef VOREL_MAP_UTILS_INTERNAL_DISTANCE_BOUNDS_H_
#define VOREL_MAP_UTILS_INTERNAL_DISTANCE_BOUNDS_H_

#include <cmath>
#include <limits>

#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"
#include "base/geodesy/wgs84.h"

namespace vorel {
namespace internal {

// Cheap bounds of tarvo::geodesy::Distance, for comparisons that it would decide at a far higher price. Each function
// that says "surely" speaks of the rounded result of `Distance` itself; where it says nothing (false), which includes
// every pair whose distance is NaN, the caller measures.
//
// The radii of curvature of WGS-84 (a = 6378137 m, f = 1 / 298.257223563): along a meridian from a (1 - e^2) =
// 6335439.3 m at the equator to a / sqrt(1 - e^2) = 6399593.6 m at the poles, that is 110574.2 to 111694.0 metres per
// degree of latitude; a degree of longitude has N cos(latitude), with N from a = 6378137.0 m to 6399593.6 m: at least
// 111319.4 cos(latitude), and never more than 111319.5. Hence
//   - no path between two latitudes is shorter than 110574.2 times their difference,
//   - the path that is straight on the plane of longitude and latitude is not longer than 111694.0 times its length
//     there, nor the shortest one, which for longitudes more than half a turn apart goes the other way round.
// The constants leave 1.7e-4 and more of relative room: from 5 cm on more than the 10 micrometres by which `Distance` may
// err. Below, where it errs by 5 nanometres, and where the squares of tiny differences underflow, `kBoundMargin` is
// the room; it also takes in points that were themselves rounded by some 1e-13 degree (10 nanometres).
constexpr double kLeastMetresPerDegreeOfLatitude = 110500.0;
constexpr double kMostMetresPerDegree = 111800.0;  // of latitude or longitude, anywhere
constexpr double kBoundMargin = 1e-6;              // metres

/// Whether the two latitudes alone put the points more than `metres` apart. Any longitudes.
inline bool SurelyFartherThan(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b, double metres) {
  const double latitudes = std::fabs(b.latitude - a.latitude);
  const double longitudes = std::fabs(b.longitude - a.longitude);
  return (latitudes * kLeastMetresPerDegreeOfLatitude > metres + kBoundMargin) &
         (longitudes <= std::numeric_limits<double>::max()) &  // neither is infinite or NaN
         (std::fabs(a.latitude) <= tarvo::geodesy::kPoleLatitude) &
         (std::fabs(b.latitude) <= tarvo::geodesy::kPoleLatitude);
}

/// Whether the points are less than `metres` apart: by the way along a meridian and a parallel. Any longitudes.
inline bool SurelyNearerThan(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b, double metres) {
  const double latitudes = std::fabs(b.latitude - a.latitude);
  const double longitudes = std::fabs(b.longitude - a.longitude);
  return ((latitudes + longitudes) * kMostMetresPerDegree < metres - kBoundMargin) &
         (std::fabs(a.latitude) <= tarvo::geodesy::kPoleLatitude) &
         (std::fabs(b.latitude) <= tarvo::geodesy::kPoleLatitude);
}

/// Bounds of the distance of two points near a centre, by Pythagoras on the plane of longitude and latitude. The
/// farther from the centre, the less tight: at 1 km within some 0.1 %.
///
/// Both hold for latitudes within `reach` degrees of the centre's and a longitude difference of at most twice that; `reach`
/// is at most `kReach`. A path that leaves the centre's latitude by more than 2.5 reach and returns is 3 reach, or 331,700
/// metres times reach, long, and the lower bound is at most sqrt(8) * 111700 = 316,000 times that. On every other path, and
/// on the straight one of the upper bound, the squared cosine of the latitude differs from the centre's by at most
/// sin(2.5 reach) < 0.044 reach, because cos^2 x - cos^2 y = sin(y - x) sin(x + y). Over a pole the shrunk longitudes
/// vanish, and the latitudes bound alone.
///
/// The squared radii of curvature, with s the sine of the latitude, are a^2 (1 - e^2)^2 / (1 - e^2 s^2)^3 of the meridian
/// and a^2 / (1 - e^2 s^2): above the first two terms of their series, which are taken here. Along the path they shrink by
/// no more than 4.6e-4 and 1.5e-4 as s^2 shrinks by up to 0.022; of the 1e-3 and 6e-4 below, 4.5e-4 and more are left for
/// what is said above.
class LocalDistanceBounds {
 public:
  static constexpr double kReach = 0.5;  // degrees
  /// Beyond the reach of a pole; a point within `kReach` of such a centre has a valid latitude.
  static constexpr double kLargestLatitude = 89.0;
  /// At longitudes up to this size a rounding is no longer than 1e-13 degree.
  static constexpr double kLargestLongitude = 360.0;

  /// Whether bounds about this centre say anything; false for NaN.
  static bool CanBeCentre(const tarvo::GeoCoordinate& centre) {
    return (std::fabs(centre.latitude) <= kLargestLatitude) &
           (std::fabs(centre.longitude) <= kLargestLongitude);
  }

  /// @param cosLatitude  cosine of the centre's latitude, to 1e-12
  explicit LocalDistanceBounds(double cosLatitude) {
    using namespace tarvo::geodesy;
    constexpr double kDegree = kSemiMajorAxis * kRadiansPerDegree;  // metres, on the equator
    constexpr double kMeridianDegree = kDegree * (1.0 - kEccentricitySquared);
    cosSquared_ = cosLatitude * cosLatitude;
    const double eSquaredSinSquared = kEccentricitySquared * (1.0 - cosSquared_);
    leastPerLatitude_ = (1.0 - 1e-3) * kMeridianDegree * kMeridianDegree * (1.0 + 3.0 * eSquaredSinSquared);
    leastPerLongitude_ = (1.0 - 6e-4) * kDegree * kDegree * (1.0 + eSquaredSinSquared);
  }

  /// Square metres, of differences in degrees of either sign. The distance is surely more than any `metres` with
  /// LowerSquared > SquareToExceed(metres), and surely less than any with UpperSquared < SquareToStayBelow(metres).
  double LowerSquared(double latitudes, double longitudes, double reach = kReach) const {
    return LeastPerSquaredLatitude() * (latitudes * latitudes) +
           LeastPerSquaredLongitude(reach) * (longitudes * longitudes);
  }
  /// The factors of `LowerSquared`, for callers that bound several differences of one reach at a time.
  double LeastPerSquaredLatitude() const { return leastPerLatitude_; }
  double LeastPerSquaredLongitude(double reach) const {
    const double leastCosSquared = cosSquared_ - kCosSquaredPerDegree * reach;
    return leastPerLongitude_ * (leastCosSquared > 0.0 ? leastCosSquared : 0.0);
  }
  double UpperSquared(double latitudes, double longitudes, double reach = kReach) const {
    constexpr double kMost = kMostMetresPerDegree * kMostMetresPerDegree;
    return kMost *
           (latitudes * latitudes + (cosSquared_ + kCosSquaredPerDegree * reach) * (longitudes * longitudes));
  }

  /// Negative metres are exceeded by what exceeds 0; NaN in, NaN out, which nothing exceeds.
  static constexpr double SquareToExceed(double metres) {
    const double withMargin = (metres < 0.0 ? 0.0 : metres) + kBoundMargin;
    return withMargin * withMargin;
  }
  /// Up to the margin: 0, below which nothing stays.
  static constexpr double SquareToStayBelow(double metres) {
    const double withMargin = metres - kBoundMargin;
    return withMargin > 0.0 ? withMargin * withMargin : 0.0;
  }

 private:
  static constexpr double kCosSquaredPerDegree = 0.044;

  double cosSquared_;
  double leastPerLatitude_;
  double leastPerLongitude_;
};

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_DISTANCE_BOUNDS_H_
