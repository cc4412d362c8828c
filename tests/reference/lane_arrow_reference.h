#ifndef VOREL_TESTS_REFERENCE_LANE_ARROW_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_LANE_ARROW_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "map_utils/vorel_geometry_algorithm.h"

// Plain, slow twins of the lane arrow functions: the same results to the last bit.
namespace reference {

/// The two side boundaries of a lane arrow; both outputs are emptied first.
void CalcBoundaryPoints(const std::vector<tarvo::GeoCoordinateZ>& points, float width,
                        vorel::ArrowType arrowType, std::vector<tarvo::GeoCoordinateZ>& leftBoundary,
                        std::vector<tarvo::GeoCoordinateZ>& rightBoundary);

/// Drops the points where either side runs backwards against the centre. Appends, except that inputs of
/// different sizes are copied over the outputs.
void RelapseCheckFilter(const std::vector<tarvo::GeoCoordinateZ>& center,
                        const std::vector<tarvo::GeoCoordinateZ>& leftIn,
                        std::vector<tarvo::GeoCoordinateZ>& leftOut,
                        const std::vector<tarvo::GeoCoordinateZ>& rightIn,
                        std::vector<tarvo::GeoCoordinateZ>& rightOut);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_LANE_ARROW_REFERENCE_H_
