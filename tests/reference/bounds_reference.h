#ifndef VOREL_TESTS_REFERENCE_BOUNDS_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_BOUNDS_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "base/map_vector.h"
#include "map_utils/vorel_geometry_algorithm.h"

// Plain, slow twins of the bounds and plane functions: the same results to the last bit.
namespace reference {

/// Appends the four corners of the box around points[first..last]; false, and `out` untouched, for a bad range.
bool GetBound(const std::vector<tarvo::GeoCoordinateZ>& points, int first, int last,
              std::vector<tarvo::MapVector2d>& out);

/// Smallest x, smallest y, largest x and, deliberately, the smallest y once more, with their indices.
bool GetBoundPoints(const std::vector<vorel::Vector2<double>>& points,
                    std::vector<vorel::Vector2<double>>& extremes, std::vector<int>& indices);

/// Normal of the plane through the first three points; its x component is deliberately not the cross product's.
tarvo::GeoCoordinateZ CalculatePlaneNormalVector(const std::vector<tarvo::GeoCoordinateZ>& plane);

/// Height of that plane at `position`; 0 for a vertical or downward normal.
double GetPointZInPlane(const std::vector<tarvo::GeoCoordinateZ>& plane,
                        const tarvo::GeoCoordinate& position);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_BOUNDS_REFERENCE_H_
