#ifndef VOREL_TESTS_REFERENCE_CLIPPING_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_CLIPPING_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"

// Plain, slow twins of the rectangle clipping functions: the same results to the last bit.
namespace reference {

/// Appends to `pieces` the runs of whole segments that pass through `rect`; false for an empty line.
bool CutPolyline(const std::vector<tarvo::GeoCoordinate>& line, const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                 std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

/// One step of the cut, from vertex `index` - 1 to vertex `index` (at least 1). The step is the last one when
/// `index` equals `vertexCount` - 1, whatever the size of `line`.
void CutPolylineUpdate(bool previousInside, bool currentInside, unsigned long index, unsigned int vertexCount,
                       const std::vector<tarvo::GeoCoordinate>& line,
                       const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                       std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

/// Whether the closed segments a-b and c-d meet, in the plane of degrees.
bool IsTwoSegmentJoined(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                        const tarvo::GeoCoordinate& c, const tarvo::GeoCoordinate& d);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_CLIPPING_REFERENCE_H_
