#include "base/strict_floating_point.h"

#include "reference/measurement_reference.h"

#include <cstddef>
#include <cstdint>

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

double GetDistance(const GeoCoordinate* points, unsigned int count, unsigned int from, unsigned int to) {
  if (points == nullptr || count < 2) return 0.0;
  unsigned int end = to;
  if (to == 4294967295u) end = count;
  if (end > count) end = count;
  // Wraps to 0 for the largest `from`, which then passes.
  if (from + 1u >= end) return 0.0;
  double sum = 0.0;
  // In 64 bits nothing wraps: no segment is left for the largest `from`.
  for (std::uint64_t i = from; i + 1 < static_cast<std::uint64_t>(end); ++i) {
    sum = sum + points[i].DistanceTo(points[i + 1]);
  }
  return sum;
}

double GetDistanceByVector(const std::vector<GeoCoordinateZ>& line, unsigned int from, unsigned int to) {
  if (from >= to) return 0.0;
  unsigned int last = static_cast<unsigned int>(line.size()) - 1u;
  if (to < line.size()) last = to;
  if (last <= from) return 0.0;
  double sum = 0.0;
  for (std::size_t i = from; i < last; ++i) {
    sum = sum + line[i].DistanceTo(line[i + 1]);
  }
  return sum;
}

double GetDistanceByVector(const std::vector<GeoCoordinate>& line, unsigned int from, unsigned int to) {
  if (from >= to) return 0.0;
  unsigned int last = static_cast<unsigned int>(line.size()) - 1u;
  if (to < line.size()) last = to;
  if (last <= from) return 0.0;
  double sum = 0.0;
  for (std::size_t i = from; i < last; ++i) {
    sum = sum + line[i].DistanceTo(line[i + 1]);
  }
  return sum;
}

double GetDistanceAndCache(std::vector<GeoCoordinate> line, unsigned int from, unsigned int to,
                           std::vector<double>& cache) {
  if (to <= from) return 0.0;
  cache.reserve(to - from);
  double sum = 0.0;
  for (std::size_t i = from; i < to; ++i) {
    sum = sum + line[i].DistanceTo(line[i + 1]);
    cache.push_back(sum);
  }
  return sum;
}

int FindFirstSmallerIndex(std::vector<double> values, double target) {
  if (values.empty()) return -2;
  if (values[0] > target) return 0;
  int low = 0;
  int high = static_cast<int>(values.size()) - 1;
  int result = 0;
  while (high >= low) {
    const int mid = low + (high - low) / 2;
    if (target >= values[static_cast<std::size_t>(mid)]) {
      result = mid;
      low = mid + 1;
    } else {
      high = mid - 1;
    }
  }
  return result;
}

bool IsPointAInFrontOfPointB(int indexA, double offsetA, int indexB, double offsetB) {
  if (indexA < indexB) return true;
  return indexA == indexB && offsetA <= offsetB;
}

double DistancePointAAndPointB(std::vector<GeoCoordinateZ>& line, int indexA, double offsetA, int indexB,
                               double offsetB) {
  if (indexA > indexB) return 0.0;
  if (indexA == indexB) {
    if (offsetB > offsetA) return offsetB - offsetA;
    return 0.0;
  }
  const std::size_t a = static_cast<std::size_t>(indexA);
  const std::size_t b = static_cast<std::size_t>(indexB);
  const double s = line[a].DistanceTo(line[a + 1]);
  const double cut = offsetA < s ? offsetA : s;
  double sum = s;
  for (std::size_t i = a + 1; i < b; ++i) {
    sum = sum + line[i].DistanceTo(line[i + 1]);
  }
  return sum - cut + offsetB;
}

double DistancePointAAndPointB(const std::vector<double>& cumulative, int indexA, double offsetA, int indexB,
                               double offsetB) {
  if (indexA > indexB) return 0.0;
  if (indexA == indexB) {
    if (offsetB > offsetA) return offsetB - offsetA;
    return 0.0;
  }
  const std::uint64_t n = cumulative.size();
  std::size_t last = 0;
  if (n > static_cast<std::uint64_t>(static_cast<std::int64_t>(indexB))) {
    last = static_cast<std::size_t>(indexB);
  } else {
    last = static_cast<std::size_t>(n - 1);
    offsetB = 0.0;
  }
  return (cumulative[last] - cumulative[static_cast<std::size_t>(indexA)]) + offsetB - offsetA;
}

double DistanceAToBackB(const std::vector<GeoCoordinateZ>& line, int indexA, double offsetA, int indexB,
                        double offsetB) {
  if (indexA > indexB) return 0.0;
  if (indexA < 0) return 0.0;
  if (indexA == indexB && offsetA > offsetB) return 0.0;
  if (line.size() <= static_cast<std::size_t>(indexB)) return 0.0;
  double sum = 0.0;
  for (std::size_t i = static_cast<std::size_t>(indexA); i < static_cast<std::size_t>(indexB); ++i) {
    sum = sum + line[i].DistanceTo(line[i + 1]);
  }
  return (sum + offsetB) - offsetA;
}

double DistanceOfA2BInRoute(const GeoCoordinate& pointA, int indexA, const GeoCoordinate& pointB, int indexB,
                            const std::vector<GeoCoordinate>& line, const std::vector<double>& cumulative) {
  if (indexA < 0 || indexB < 0) return 0.0;
  const std::size_t a = static_cast<std::size_t>(indexA);
  const std::size_t b = static_cast<std::size_t>(indexB);
  if (line.size() <= a || line.size() <= b) return 0.0;
  const double dA = line.at(a).DistanceTo(pointA);
  const double dB = line.at(b).DistanceTo(pointB);
  if (indexA == indexB) return dA - dB;

  const std::size_t hi = a > b ? a : b;
  const std::size_t lo = a > b ? b : a;
  // Deliberate: a table of exactly `hi` entries passes here and throws below.
  if (cumulative.size() < hi) return 0.0;
  const double cumulativeHi = cumulative.at(hi);
  const double cumulativeLo = cumulative.at(lo);
  if (indexA > indexB) return (dA - dB) + (cumulativeHi - cumulativeLo);
  return -(((0.0 - dA) + dB) + (cumulativeHi - cumulativeLo));
}

}  // namespace reference
