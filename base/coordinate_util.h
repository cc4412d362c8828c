#ifndef VOREL_BASE_COORDINATE_UTIL_H_
#define VOREL_BASE_COORDINATE_UTIL_H_

#include "base/export.h"

namespace tarvo {

class VOREL_EXPORT CoordinateUtil {
 public:
  CoordinateUtil() = delete;

  /// Distance in metres between two points given as four numbers: what `GeoCoordinate::DistanceTo` gives for
  /// them. The datum is the caller's; the numbers are taken as they are.
  ///
  /// @param x1, x2  longitudes, degrees
  /// @param y1, y2  latitudes, degrees in [-90, 90]
  /// @return metres; NaN and equal points as in `GeoCoordinate::DistanceTo`
  static double DistanceOfGcj02Pos(double x1, double y1, double x2, double y2);
};

}  // namespace tarvo

#endif  // VOREL_BASE_COORDINATE_UTIL_H_
