#ifndef VOREL_TESTS_REFERENCE_OFFSET_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_OFFSET_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twin of the parallel offset: the same result to the last bit.
namespace reference {

/// The line moved sideways by `offset` metres, one point per input point. `result` must be empty.
void PanLinePoints(const std::vector<tarvo::GeoCoordinateZ>& points, float offset, bool left,
                   std::vector<tarvo::GeoCoordinateZ>& result);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_OFFSET_REFERENCE_H_
