#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "logging/elapsed_timer.h"
#include "logging/log_statement.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::Rect;

void VorelGeometryAlgorithm::GetInterpolateShapePoints(const std::vector<GeoCoordinate>& shape,
                                                       bool isMainRoute, const Rect<GeoCoordinate>& viewRect,
                                                       const std::vector<GeoCoordinate>& area, int interval,
                                                       const std::string& owner,
                                                       std::vector<std::vector<GeoCoordinate>>& out) {
  const logging::VorelElapsedTimer timer(owner, "GetInterpolateShapePoints");
  out.clear();
  std::vector<std::vector<GeoCoordinate>> pieces;
  if (!CutPolyline(shape, viewRect, pieces)) return;

  std::vector<std::vector<GeoCoordinate>> samples(pieces.size());
  std::uint32_t sampledCount = 0;
  for (std::size_t j = 0; j < pieces.size(); ++j) {
    if (interval > 0 && !pieces[j].empty()) {
      CalcPointsInPolyline(pieces[j], static_cast<double>(interval), -1, samples[j]);
    }
    // Deliberate: the closing point of a short piece is not counted.
    sampledCount += static_cast<std::uint32_t>(samples[j].size());
    if (samples[j].size() == 1) samples[j].push_back(pieces[j].back());
  }

  std::uint32_t pointCount = sampledCount;
  if (!isMainRoute) {
    pointCount = 0;
    for (std::vector<GeoCoordinate>& run : samples) {
      const auto isOutside = [&area](const GeoCoordinate& point) { return !IsPointInPolygon(area, point); };
      run.erase(std::remove_if(run.begin(), run.end(), isOutside), run.end());
      pointCount += static_cast<std::uint32_t>(run.size());
    }
  }
  out = std::move(samples);
  VOREL_LOG(plog::LogLevel::kDebug, owner, "main route:", isMainRoute,
            ",pt count:", static_cast<std::int32_t>(pointCount));
}

}  // namespace vorel
