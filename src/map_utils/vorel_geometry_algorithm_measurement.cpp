#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cstddef>

#include "base/precondition.h"
#include "map_utils/internal/line_length.h"
#include "map_utils/internal/route_distance.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

template <class Point>
double LengthToVertex(const std::vector<Point>& line, unsigned int from, unsigned int to) {
  if (line.empty()) return 0.0;
  return internal::LineLength(line.data(), from, std::min<std::size_t>(to, line.size() - 1));
}

}  // namespace

double VorelGeometryAlgorithm::GetDistance(const GeoCoordinate* points, unsigned int count, unsigned int from,
                                           unsigned int to) {
  // The value of `to` that means `count` is clamped to it like any other beyond.
  const unsigned int end = std::min(to, count);
  if (points == nullptr || end == 0) return 0.0;
  return internal::LineLength(points, from, end - 1);
}

double VorelGeometryAlgorithm::GetDistanceByVector(const std::vector<GeoCoordinateZ>& line, unsigned int from,
                                                   unsigned int to) {
  return LengthToVertex(line, from, to);
}

double VorelGeometryAlgorithm::GetDistanceByVector(const std::vector<GeoCoordinate>& line, unsigned int from,
                                                   unsigned int to) {
  return LengthToVertex(line, from, to);
}

double VorelGeometryAlgorithm::GetDistanceAndCache(std::vector<GeoCoordinate> line, unsigned int from,
                                                   unsigned int to, std::vector<double>& cache) {
  if (to <= from) return 0.0;
  VOREL_PRECONDITION(to < line.size());
  // Deliberate: a total, not an increase on what `cache` holds.
  cache.reserve(to - from);
  const std::size_t held = cache.size();
  cache.resize(held + (to - from));
  return internal::StoreSegmentSums(line.data() + from, to - from, 0.0, cache.data() + held);
}

int VorelGeometryAlgorithm::FindFirstSmallerIndex(std::vector<double> values, double target) {
  if (values.empty()) return -2;
  if (values[0] > target) return 0;
  int low = 0;
  int high = static_cast<int>(values.size() - 1);
  int result = 0;
  while (high >= low) {
    const int middle = low + (high - low) / 2;
    if (target >= values[static_cast<std::size_t>(middle)]) {
      result = middle;
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return result;
}

bool VorelGeometryAlgorithm::IsPointAInFrontOfPointB(int indexA, double offsetA, int indexB, double offsetB) {
  return indexA < indexB || (indexA == indexB && offsetA <= offsetB);
}

double VorelGeometryAlgorithm::DistancePointAAndPointB(std::vector<GeoCoordinateZ>& line, int indexA,
                                                       double offsetA, int indexB, double offsetB) {
  if (indexA > indexB) return 0.0;
  if (indexA == indexB) return offsetB > offsetA ? offsetB - offsetA : 0.0;
  VOREL_PRECONDITION(indexA >= 0 && static_cast<std::size_t>(indexB) < line.size());
  const std::size_t first = static_cast<std::size_t>(indexA);
  const double firstLength = internal::CalledDistance(line[first], line[first + 1]);
  const double cut = offsetA < firstLength ? offsetA : firstLength;
  const double length =
      internal::LineLength(line.data(), first + 1, static_cast<std::size_t>(indexB), firstLength);
  return length - cut + offsetB;
}

double VorelGeometryAlgorithm::DistancePointAAndPointB(const std::vector<double>& cumulative, int indexA,
                                                       double offsetA, int indexB, double offsetB) {
  if (indexA > indexB) return 0.0;
  if (indexA == indexB) return offsetB > offsetA ? offsetB - offsetA : 0.0;
  const std::size_t first = static_cast<std::size_t>(indexA);
  VOREL_PRECONDITION(first < cumulative.size());
  std::size_t last = static_cast<std::size_t>(indexB);
  if (cumulative.size() <= last) {
    last = cumulative.size() - 1;
    offsetB = 0.0;
  }
  return (cumulative[last] - cumulative[first]) + offsetB - offsetA;
}

double VorelGeometryAlgorithm::DistanceAToBackB(const std::vector<GeoCoordinateZ>& line, int indexA,
                                                double offsetA, int indexB, double offsetB) {
  if (indexA > indexB || indexA < 0 || (indexA == indexB && offsetA > offsetB)) return 0.0;
  const std::size_t last = static_cast<std::size_t>(indexB);
  if (line.size() <= last) return 0.0;
  return (internal::LineLength(line.data(), static_cast<std::size_t>(indexA), last) + offsetB) - offsetA;
}

double VorelGeometryAlgorithm::DistanceOfA2BInRoute(const GeoCoordinate& pointA, int indexA,
                                                    const GeoCoordinate& pointB, int indexB,
                                                    const std::vector<GeoCoordinate>& line,
                                                    const std::vector<double>& cumulative) {
  if (indexA < 0 || indexB < 0) return 0.0;
  const std::size_t a = static_cast<std::size_t>(indexA);
  const std::size_t b = static_cast<std::size_t>(indexB);
  if (line.size() <= a || line.size() <= b) return 0.0;
  const double beyondA = internal::CalledDistance(line[a], pointA);
  const double beyondB = internal::CalledDistance(line[b], pointB);
  return internal::RouteDistance(a, beyondA, b, beyondB, cumulative);
}

}  // namespace vorel
