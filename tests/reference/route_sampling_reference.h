#ifndef VOREL_TESTS_REFERENCE_ROUTE_SAMPLING_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_ROUTE_SAMPLING_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "base/route_pos.h"

// Plain, slow twins of the anchored, offset and candidate sampling functions: the same results to the last bit.
namespace reference {

/// `length` metres of route ahead of `basePoint`, measured from a start cut down to whole metres; appends to
/// `out`. Throws std::out_of_range when `cumDist` has no entry for an index that is read.
bool ChoosePointsInPolylineFromBasePoint(int baseIndex, const tarvo::GeoCoordinate& basePoint, double length,
                                         const std::vector<tarvo::GeoCoordinate>& points,
                                         const std::vector<double>& cumDist,
                                         std::vector<tarvo::GeoCoordinate>& out);

/// The chain of positions after its first `offset` metres; appends to `out`. Writes no log record: where one is
/// due, its accumulated distance is stored in `loggedAccumulatedDistance`, which stays untouched otherwise.
bool ChoosePointsInPolylineWithOffset(const std::vector<tarvo::RoutePos>& positions, double offset,
                                      std::vector<tarvo::GeoCoordinate>& out,
                                      const std::vector<tarvo::GeoCoordinate>& points,
                                      const std::vector<double>& cumDist,
                                      double* loggedAccumulatedDistance = nullptr);

/// About `count` points spread over the lines; clears `out` after its argument checks. A `count` of 1 is refused.
bool CalculateCandidatePoints(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines, unsigned int count,
                              std::vector<tarvo::GeoCoordinate>& out);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_ROUTE_SAMPLING_REFERENCE_H_
