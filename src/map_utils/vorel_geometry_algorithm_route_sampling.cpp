#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "logging/log_statement.h"
#include "map_utils/internal/integer_conversion.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/line_length.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::RoutePos;

bool VorelGeometryAlgorithm::ChoosePointsInPolylineFromBasePoint(
    int baseIndex, const GeoCoordinate& basePoint, double length, const std::vector<GeoCoordinate>& points,
    const std::vector<double>& cumDist, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(&points != &out);
  std::size_t last = static_cast<std::size_t>(baseIndex);  // a negative index becomes one beyond every line
  if (points.size() <= last) return false;
  // Before appending, for `basePoint` may lie in `out`.
  const double beyondVertex = tarvo::geodesy::Distance(basePoint, points[last]);
  out.push_back(basePoint);
  double metresToLast = cumDist.at(last);
  // Deliberate: whole metres.
  const double start = internal::TruncateToInt32(metresToLast + beyondVertex);
  for (std::size_t j = last + 1; j < points.size(); ++j) {
    const double metresToVertex = cumDist.at(j);
    const double ahead = metresToVertex - start;
    if (length > ahead) {
      out.push_back(points[j]);
      last = j;
      metresToLast = metresToVertex;
      continue;
    }
    if (ahead == length) {
      out.push_back(points[j]);
    } else {
      const double ratio = ((start + length) - metresToLast) / (metresToVertex - metresToLast);
      out.push_back(internal::PointAtRatio(points[last], points[j], static_cast<float>(ratio)));
    }
    break;
  }
  return true;
}

bool VorelGeometryAlgorithm::ChoosePointsInPolylineWithOffset(const std::vector<RoutePos>& positions,
                                                              double offset, std::vector<GeoCoordinate>& out,
                                                              const std::vector<GeoCoordinate>& points,
                                                              const std::vector<double>& cumDist) {
  if (0.0 >= offset || positions.empty()) return false;
  double reached = 0.0;
  for (std::size_t i = 1; i < positions.size(); ++i) {
    const RoutePos& from = positions[i - 1];
    const RoutePos& to = positions[i];
    const double step = std::fabs(DistanceOfA2BInRoute(to.coordinate, to.shapeIndex, from.coordinate,
                                                       from.shapeIndex, points, cumDist));
    const double reachedNext = reached + step;
    if (offset > reachedNext) {
      reached = reachedNext;
      continue;
    }
    // Deliberate: no cut point within the first step.
    if (reachedNext != offset && i != 1) {
      out.push_back(internal::PointAtRatio(from.coordinate, to.coordinate,
                                           static_cast<float>((offset - reached) / step)));
    }
    for (std::size_t j = i; j < positions.size(); ++j) out.push_back(positions[j].coordinate);
    return true;
  }
  VOREL_LOG(plog::LogLevel::kWarning, "Vorel", "accumulative_distance:", reached,
            "< offset_length :", offset);
  return false;
}

bool VorelGeometryAlgorithm::CalculateCandidatePoints(const std::vector<std::vector<GeoCoordinate>>& lines,
                                                      unsigned int count, std::vector<GeoCoordinate>& out) {
  if (count < 2 || lines.empty()) return false;
  out.clear();
  std::vector<double> lengths;
  lengths.reserve(lines.size());
  double total = 0.0;
  for (const std::vector<GeoCoordinate>& line : lines) {
    VOREL_PRECONDITION(&line != &out);
    const double length = line.size() < 2 ? 0.0 : internal::LineLength(line.data(), 0, line.size() - 1);
    lengths.push_back(length);
    total = total + length;
  }
  // Deliberate: fractions of a metre are dropped from the total and again from the spacing.
  const std::uint32_t spacing = static_cast<std::uint32_t>(internal::TruncateToInt32(total)) / (count - 1);
  if (spacing == 0) return false;
  for (std::size_t j = 0; j < lines.size() && out.size() < count; ++j) {
    if (!(lengths[j] > 0.0)) continue;
    // Deliberate: the limit counts the points found so far once here and once more where it is applied.
    const int limit = static_cast<int>(count - out.size());
    CalcPointsInPolyline(lines[j], static_cast<double>(spacing), limit, out);
  }
  return !out.empty();
}

}  // namespace vorel
