#ifndef VOREL_BASE_BOUNDARY_DATA_H_
#define VOREL_BASE_BOUNDARY_DATA_H_

#include <cstdint>
#include <vector>

#include "base/geo_coordinate.h"

namespace tarvo {
namespace HAD {

/// A lane boundary: its polyline and the marked vertices on it.
struct BoundaryData {
  std::vector<GeoCoordinateZ> points;       ///< the polyline, degrees and metres
  std::vector<std::uint32_t> pointIndices;  ///< marked vertices: ascending indices into `points`
};

}  // namespace HAD
}  // namespace tarvo

#endif  // VOREL_BASE_BOUNDARY_DATA_H_
