#ifndef VOREL_TESTS_REFERENCE_VIEW_SYMBOLS_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_VIEW_SYMBOLS_REFERENCE_H_

#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"

// Plain, slow twin of the sampling of a route inside a view: the same results to the last bit.
namespace reference {

/// Evenly spaced points of the part of `shape` inside `viewRect`, one vector per piece; clears `out` first.
/// Writes no log record and measures no time (`owner` is not used).
///
/// @return the point count of the log record, -1 when none is written
int GetInterpolateShapePoints(const std::vector<tarvo::GeoCoordinate>& shape, bool isMainRoute,
                              const tarvo::Rect<tarvo::GeoCoordinate>& viewRect,
                              const std::vector<tarvo::GeoCoordinate>& area, int interval,
                              const std::string& owner, std::vector<std::vector<tarvo::GeoCoordinate>>& out);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_VIEW_SYMBOLS_REFERENCE_H_
