#include "base/strict_floating_point.h"

#include "base/coordinate_util.h"

#include "base/geodesy/distance.h"

namespace tarvo {

double CoordinateUtil::DistanceOfGcj02Pos(double x1, double y1, double x2, double y2) {
  return geodesy::Distance(GeoCoordinate(x1, y1), GeoCoordinate(x2, y2));
}

}  // namespace tarvo
