#ifndef VOREL_BASE_ROUTE_POS_H_
#define VOREL_BASE_ROUTE_POS_H_

#include <cstdint>

#include "base/geo_coordinate.h"

namespace tarvo {

/// A position on a route. The library reads `coordinate` and `shapeIndex`; the other fields belong to the caller.
struct RoutePos {
  GeoCoordinate coordinate;     ///< the position itself, degrees
  std::int32_t linkIndex = 0;   ///< index of the route link that holds the position; not read here
  std::int32_t shapeIndex = 0;  ///< index, in the route's shape points, of the vertex that starts the segment
  double metresFromStart = 0.0;  ///< along the route from its first shape point; not read here
};

}  // namespace tarvo

#endif  // VOREL_BASE_ROUTE_POS_H_
