#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/geodesy/distance.h"
#include "logging/elapsed_timer.h"
#include "map_utils/internal/integer_conversion.h"
#include "map_utils/internal/rectangle.h"

namespace vorel {

using tarvo::GeoCoordinate;

namespace {

constexpr std::size_t kMaxRoutePoints = 1501;

void AppendThinned(const std::vector<GeoCoordinate>& segment, float minSpacing,
                   std::vector<GeoCoordinate>& result) {
  GeoCoordinate anchor = segment.front();  // a value: the growing result moves its points
  result.push_back(anchor);
  // Deliberate: the last point is not forced in.
  for (std::size_t i = 1; i < segment.size() && result.size() < kMaxRoutePoints; ++i) {
    const GeoCoordinate& point = segment[i];
    if (internal::IsInNearnessBox(anchor, minSpacing, point) &&
        !(tarvo::geodesy::Distance(anchor, point) > static_cast<double>(minSpacing))) {
      continue;
    }
    result.push_back(point);
    anchor = point;
  }
}

}  // namespace

std::vector<GeoCoordinate> VorelGeometryAlgorithm::PreProcessRoutePoints(
    const std::vector<std::vector<GeoCoordinate>>& route, float minSpacing, int pointLimit) {
  // Deliberate: a negative double, which wrapping may also give, becomes a limit that no segment exceeds.
  const std::uint64_t limit = static_cast<std::uint64_t>(internal::MultiplyWrapping(2, pointLimit));
  std::vector<GeoCoordinate> result;
  for (const std::vector<GeoCoordinate>& segment : route) {
    if (result.size() >= kMaxRoutePoints) break;
    if (segment.size() <= limit) {
      result.insert(result.end(), segment.begin(), segment.end());
    } else {
      AppendThinned(segment, minSpacing, result);
    }
  }
  return result;
}

void VorelGeometryAlgorithm::PreProcessRoutePoints(
    const std::vector<std::vector<std::vector<GeoCoordinate>>>& routes, int routeCount, float minSpacing,
    int pointLimit, const std::string& owner, std::vector<std::vector<GeoCoordinate>>& out) {
  const logging::VorelElapsedTimer timer(owner, "PreProcessRoutePoints");
  out.clear();
  if (routeCount <= 0) return;
  const std::size_t taken = std::min(static_cast<std::size_t>(routeCount), routes.size());
  for (std::size_t k = 0; k < taken; ++k) {
    out.push_back(PreProcessRoutePoints(routes[k], minSpacing, pointLimit));
  }
}

}  // namespace vorel
