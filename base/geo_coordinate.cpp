#include "base/strict_floating_point.h"

#include "base/geo_coordinate.h"

#include "base/geodesy/distance.h"

namespace tarvo {

double GeoCoordinate::DistanceTo(const GeoCoordinate& other) const {
  return geodesy::Distance(*this, other);
}

}  // namespace tarvo
