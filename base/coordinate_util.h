#ifndef VOREL_BASE_COORDINATE_UTIL_H_
#define VOREL_BASE_COORDINATE_UTIL_H_

#include "base/export.h"

namespace tarvo {

/// Distances between points given as plain numbers.
class VOREL_EXPORT CoordinateUtil {
 public:
  CoordinateUtil() = delete;

  /// Distance in metres between two points given as four numbers: what `GeoCoordinate::DistanceTo` gives for
  /// them. The datum is the caller's; the numbers are taken as they are.
  ///
  /// @param x1, x2  degrees: longitudes
  /// @param y1, y2  degrees in [-90, 90]: latitudes
  /// @return metres; exactly 0 for two equal points
  ///
  /// Ends: as `GeoCoordinate::DistanceTo`.
  /// NaN: NaN, as `GeoCoordinate::DistanceTo`.
  /// Cost: one distance.
  static double DistanceOfGcj02Pos(double x1, double y1, double x2, double y2);
};

}  // namespace tarvo

#endif  // VOREL_BASE_COORDINATE_UTIL_H_
