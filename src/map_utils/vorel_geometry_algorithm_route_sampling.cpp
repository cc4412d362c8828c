#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/precondition.h"
#include "logging/log_statement.h"
#include "map_utils/internal/integer_conversion.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/line_length.h"
#include "map_utils/internal/route_distance.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::RoutePos;

namespace {

/// The distances of route positions from the vertices that start their segments, asked for in order from position 0 on;
/// measured a block at a time, each once.
class RouteVertexDistances {
 public:
  struct Entry {
    bool isOnRoute;  ///< whether the route has the vertex; else the rest means nothing
    std::size_t vertex;
    double metres;
  };

  RouteVertexDistances(const std::vector<RoutePos>& positions, const std::vector<GeoCoordinate>& route)
      : positions_(positions), route_(route) {}

  Entry Of(std::size_t i) {
    if (i == end_) MeasureNextBlock();
    // A negative index becomes one beyond every route.
    const std::size_t vertex = static_cast<std::size_t>(positions_[i].shapeIndex);
    return {vertex < route_.size(), vertex, metres_[i - begin_]};
  }

 private:
  static constexpr std::size_t kFirstBlock = 4;
  static constexpr std::size_t kLargestBlock = 32;

  void MeasureNextBlock() {
    begin_ = end_;
    const std::size_t count = std::min(positions_.size() - begin_, blockSize_);
    blockSize_ = kLargestBlock;
    end_ = begin_ + count;
    const GeoCoordinate* pairs[2 * kLargestBlock];
    for (std::size_t k = 0; k < count; ++k) {
      const RoutePos& position = positions_[begin_ + k];
      const std::size_t vertex = static_cast<std::size_t>(position.shapeIndex);
      pairs[2 * k] = vertex < route_.size() ? &route_[vertex] : &position.coordinate;
      pairs[2 * k + 1] = &position.coordinate;
    }
    internal::StorePairLengths(pairs, count, metres_);
  }

  const std::vector<RoutePos>& positions_;
  const std::vector<GeoCoordinate>& route_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t blockSize_ = kFirstBlock;
  double metres_[kLargestBlock];
};

}  // namespace

bool VorelGeometryAlgorithm::ChoosePointsInPolylineFromBasePoint(
    int baseIndex, const GeoCoordinate& basePoint, double length, const std::vector<GeoCoordinate>& points,
    const std::vector<double>& cumDist, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(&points != &out);
  std::size_t last = static_cast<std::size_t>(baseIndex);  // a negative index becomes one beyond every line
  if (points.size() <= last) return false;
  // Before appending, for `basePoint` may lie in `out`.
  const double beyondVertex = internal::CalledDistance(basePoint, points[last]);
  out.push_back(basePoint);
  double metresToLast = cumDist.at(last);
  // Deliberate: whole metres.
  const double start = internal::TruncateToInt32(metresToLast + beyondVertex);
  // The vertices less than `length` ahead are found first and copied at once.
  const std::size_t tableEnd = std::min(points.size(), cumDist.size());
  std::size_t j = last + 1;
  while (j < tableEnd && length > cumDist[j] - start) ++j;
  if (j > last + 1) {
    out.insert(out.end(), points.data() + last + 1, points.data() + j);
    last = j - 1;
    metresToLast = cumDist[last];
  }
  if (j == points.size()) return true;
  const double metresToVertex = cumDist.at(j);  // throws where the table is too short
  if (metresToVertex - start == length) {
    out.push_back(points[j]);
  } else {
    const double ratio = ((start + length) - metresToLast) / (metresToVertex - metresToLast);
    out.push_back(internal::PointAtRatio(points[last], points[j], static_cast<float>(ratio)));
  }
  return true;
}

bool VorelGeometryAlgorithm::ChoosePointsInPolylineWithOffset(const std::vector<RoutePos>& positions,
                                                              double offset, std::vector<GeoCoordinate>& out,
                                                              const std::vector<GeoCoordinate>& points,
                                                              const std::vector<double>& cumDist) {
  if (0.0 >= offset || positions.empty()) return false;
  double reached = 0.0;
  RouteVertexDistances distances(positions, points);
  RouteVertexDistances::Entry from = distances.Of(0);
  for (std::size_t i = 1; i < positions.size(); ++i) {
    const RouteVertexDistances::Entry to = distances.Of(i);
    // As DistanceOfA2BInRoute, which measures each position from its vertex twice: for the step to it and from it.
    const double step =
        to.isOnRoute && from.isOnRoute
            ? std::fabs(internal::RouteDistance(to.vertex, to.metres, from.vertex, from.metres, cumDist))
            : 0.0;
    from = to;
    const double reachedNext = reached + step;
    if (offset > reachedNext) {
      reached = reachedNext;
      continue;
    }
    // Deliberate: no cut point within the first step.
    if (reachedNext != offset && i != 1) {
      out.push_back(internal::PointAtRatio(positions[i - 1].coordinate, positions[i].coordinate,
                                           static_cast<float>((offset - reached) / step)));
    }
    const std::size_t held = out.size();
    out.resize(held + (positions.size() - i));
    for (std::size_t j = i; j < positions.size(); ++j) out[held + (j - i)] = positions[j].coordinate;
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
