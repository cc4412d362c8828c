#include "base/strict_floating_point.h"

#include "reference/route_sampling_reference.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "reference/measurement_reference.h"
#include "reference/points_reference.h"
#include "reference/reference_numbers.h"
#include "reference/sampling_reference.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::RoutePos;

bool ChoosePointsInPolylineFromBasePoint(int baseIndex, const GeoCoordinate& basePoint, double length,
                                         const std::vector<GeoCoordinate>& points,
                                         const std::vector<double>& cumDist,
                                         std::vector<GeoCoordinate>& out) {
  if (points.empty()) return false;
  // Sign-extended: a negative index is larger than any size.
  const std::size_t base = static_cast<std::size_t>(static_cast<std::int64_t>(baseIndex));
  if (points.size() <= base) return false;
  out.push_back(basePoint);
  const double baseDistance = cumDist.at(base);
  const double d0 = basePoint.DistanceTo(points[base]);
  const double start = static_cast<double>(TruncateToInt32(baseDistance + d0));
  std::size_t last = base;
  for (std::size_t j = base + 1; j < points.size(); ++j) {
    const double c = cumDist.at(j);
    const double diff = c - start;
    if (length > diff) {
      out.push_back(points[j]);
      last = j;
    } else if (diff == length) {
      out.push_back(points[j]);
      return true;
    } else {
      const double ratio = ((start + length) - cumDist.at(last)) / (c - cumDist.at(last));
      out.push_back(GetInsertPointFromSegment(points[last], points[j], static_cast<float>(ratio)));
      return true;
    }
  }
  return true;
}

bool ChoosePointsInPolylineWithOffset(const std::vector<RoutePos>& positions, double offset,
                                      std::vector<GeoCoordinate>& out,
                                      const std::vector<GeoCoordinate>& points,
                                      const std::vector<double>& cumDist, double* loggedAccumulatedDistance) {
  if (0.0 >= offset) return false;
  if (positions.empty()) return false;
  const int n = static_cast<int>(positions.size());
  double acc = 0.0;
  double prev = 0.0;
  for (int i = 1; i < n; ++i) {
    const RoutePos& previous = positions[static_cast<std::size_t>(i - 1)];
    const RoutePos& current = positions[static_cast<std::size_t>(i)];
    const double d = std::fabs(DistanceOfA2BInRoute(
        current.coordinate, current.shapeIndex, previous.coordinate, previous.shapeIndex, points, cumDist));
    acc = acc + d;
    if (offset > acc) {
      prev = acc;
      continue;
    }
    // Deliberate: an offset that ends within the first pair adds no cut point.
    if (acc != offset && i != 1) {
      const float ratio = static_cast<float>((offset - prev) / d);
      out.push_back(GetInsertPointFromSegment(previous.coordinate, current.coordinate, ratio));
    }
    for (int k = i; k < n; ++k) out.push_back(positions[static_cast<std::size_t>(k)].coordinate);
    return !out.empty();
  }
  if (loggedAccumulatedDistance != nullptr) *loggedAccumulatedDistance = acc;
  return false;
}

bool CalculateCandidatePoints(const std::vector<std::vector<GeoCoordinate>>& lines, unsigned int count,
                              std::vector<GeoCoordinate>& out) {
  if (count == 0 || lines.empty()) return false;
  if (count == 1) return false;
  out.clear();

  std::vector<double> lengths;
  double total = 0.0;
  for (std::size_t j = 0; j < lines.size(); ++j) {
    double lineLength = 0.0;
    if (lines[j].size() >= 2) {
      for (std::size_t k = 0; k + 1 < lines[j].size(); ++k) {
        lineLength = lineLength + lines[j][k].DistanceTo(lines[j][k + 1]);
      }
    }
    lengths.push_back(lineLength);
    total = total + lineLength;
  }

  const std::uint32_t step = static_cast<std::uint32_t>(TruncateToInt32(total)) / (count - 1u);
  const std::int32_t signedStep = static_cast<std::int32_t>(step);
  const double interval = static_cast<double>(signedStep);
  for (std::size_t j = 0; j < lines.size(); ++j) {
    if (lengths[j] > 0.0 && out.size() < count && signedStep > 0 && !lines[j].empty()) {
      const int maxCount = static_cast<int>(count - out.size());
      CalcPointsInPolyline(lines[j], interval, maxCount, out);
    }
  }
  return !out.empty();
}

}  // namespace reference
