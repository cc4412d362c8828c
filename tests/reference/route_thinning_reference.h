#ifndef VOREL_TESTS_REFERENCE_ROUTE_THINNING_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_ROUTE_THINNING_REFERENCE_H_

#include <string>
#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twins of the thinning of route point sets: the same results to the last bit.
namespace reference {

/// One route's segments as one point sequence, long segments thinned, with a cap tested at 1501 points.
std::vector<tarvo::GeoCoordinate> PreProcessRoutePoints(
    const std::vector<std::vector<tarvo::GeoCoordinate>>& route, float minSpacing, int pointLimit);

/// One result per route; clears `out` first. Measures no time (`owner` is not used). A `routeCount` beyond the
/// number of routes stops there.
void PreProcessRoutePoints(const std::vector<std::vector<std::vector<tarvo::GeoCoordinate>>>& routes,
                           int routeCount, float minSpacing, int pointLimit, const std::string& owner,
                           std::vector<std::vector<tarvo::GeoCoordinate>>& out);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_ROUTE_THINNING_REFERENCE_H_
