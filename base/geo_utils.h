#ifndef VOREL_BASE_GEO_UTILS_H_
#define VOREL_BASE_GEO_UTILS_H_

#include "base/export.h"
#include "base/geo_coordinate.h"

namespace tarvo {
namespace kx {

/// Directions between points.
class VOREL_EXPORT GeoUtils {
 public:
  GeoUtils() = delete;

  /// Direction in which the great circle from `a` to `b` starts, in radians, clockwise from north.
  ///
  /// @param a, b  degrees
  /// @return radians in [0, 2 pi), never 2 pi itself; 0 for equal points. Points close together lose digits: the
  ///         direction is off by up to 4e-9 at 0.5 m
  ///
  /// Ends: folded into [0, 2 pi): 2 pi excluded.
  /// NaN: NaN, also where the points differ and a coordinate is infinite.
  /// Cost: three sines and cosines and one atan2.
  /// Formula: spherical trigonometry, the four-parts (cotangent) formula.
  static double GetRadianNorth(const GeoCoordinate& a, const GeoCoordinate& b);
};

}  // namespace kx
}  // namespace tarvo

namespace kx = tarvo::kx;

#endif  // VOREL_BASE_GEO_UTILS_H_
