#include "base/strict_floating_point.h"

#include "reference/route_thinning_reference.h"

#include <cstddef>
#include <cstdint>

#include "reference/points_reference.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinate;

std::vector<GeoCoordinate> PreProcessRoutePoints(const std::vector<std::vector<GeoCoordinate>>& route,
                                                 float minSpacing, int pointLimit) {
  std::vector<GeoCoordinate> result;
  // Sign-extended and compared as unsigned: a negative limit is larger than any size.
  const std::int32_t limit32 = MultiplyInt32Wrapping(2, pointLimit);
  const std::uint64_t limit = static_cast<std::uint64_t>(static_cast<std::int64_t>(limit32));
  for (std::size_t j = 0; j < route.size(); ++j) {
    if (j > 0 && result.size() >= 1501) break;
    const std::vector<GeoCoordinate>& segment = route[j];
    if (segment.size() <= limit) {
      for (std::size_t i = 0; i < segment.size(); ++i) result.push_back(segment[i]);
      continue;
    }
    GeoCoordinate anchor = segment[0];
    result.push_back(anchor);
    if (result.size() >= 1501) continue;
    if (segment.size() < 2) continue;
    for (std::size_t i = 1; i < segment.size(); ++i) {
      const GeoCoordinate p = segment[i];
      bool keep = false;
      if (!IsPointNearOtherOne(anchor, minSpacing, p)) {
        keep = true;
      } else if (anchor.DistanceTo(p) > static_cast<double>(minSpacing)) {
        keep = true;
      }
      if (keep) {
        result.push_back(p);
        anchor = p;
      }
      if (result.size() >= 1501) break;
    }
  }
  return result;
}

void PreProcessRoutePoints(const std::vector<std::vector<std::vector<GeoCoordinate>>>& routes, int routeCount,
                           float minSpacing, int pointLimit, const std::string& /*owner*/,
                           std::vector<std::vector<GeoCoordinate>>& out) {
  out.clear();
  if (routeCount <= 0) return;
  for (int k = 0; k < routeCount; ++k) {
    if (static_cast<std::size_t>(k) >= routes.size()) break;
    out.push_back(PreProcessRoutePoints(routes[static_cast<std::size_t>(k)], minSpacing, pointLimit));
  }
}

}  // namespace reference
