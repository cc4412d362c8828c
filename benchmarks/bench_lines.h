#ifndef VOREL_BENCHMARKS_BENCH_LINES_H_
#define VOREL_BENCHMARKS_BENCH_LINES_H_

// The lines that several benchmarks run over: the same on every machine.

#include <cmath>
#include <cstdint>
#include <vector>

#include "base/geo_coordinate.h"

namespace bench {

/// A road that winds eastward along the latitude 47.5: vertices about 20 m apart, 15 m of longitude each.
inline std::vector<tarvo::GeoCoordinate> Route(std::int64_t vertexCount) {
  std::vector<tarvo::GeoCoordinate> line;
  for (std::int64_t i = 0; i < vertexCount; ++i) {
    const double step = static_cast<double>(i);
    line.emplace_back(7.5 + 2e-4 * step, 47.5 + 1e-3 * std::sin(0.11 * step) + 3e-4 * std::sin(0.83 * step));
  }
  return line;
}

/// A lane with heights: vertices some 5 m apart, gentle bends, at the latitude 48.
inline std::vector<tarvo::GeoCoordinateZ> Lane(std::int64_t vertexCount) {
  std::vector<tarvo::GeoCoordinateZ> line;
  double longitude = 11.5;
  double latitude = 48.1;
  for (std::int64_t i = 0; i < vertexCount; ++i) {
    const double step = static_cast<double>(i);
    line.emplace_back(longitude, latitude, static_cast<float>(500.0 + 0.02 * step));
    const double heading = 0.7 + 0.6 * std::sin(0.05 * step);
    longitude += 6.7e-5 * std::sin(heading);
    latitude += 4.5e-5 * std::cos(heading);
  }
  return line;
}

/// A lane that turns by a right angle at every vertex, left and right by turns: legs of some 30 m.
inline std::vector<tarvo::GeoCoordinateZ> Stairs(std::int64_t vertexCount) {
  std::vector<tarvo::GeoCoordinateZ> line;
  for (std::int64_t i = 0; i < vertexCount; ++i) {
    line.emplace_back(11.5 + 4e-4 * static_cast<double>((i + 1) / 2),
                      48.1 + 2.7e-4 * static_cast<double>(i / 2), 500.0f);
  }
  return line;
}

/// A star about (0, 0) with jagged border: its radius runs from 0.7 to 1 degree.
inline std::vector<tarvo::GeoCoordinate> Star(std::int64_t vertexCount) {
  std::vector<tarvo::GeoCoordinate> polygon;
  for (std::int64_t i = 0; i < vertexCount; ++i) {
    const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(vertexCount);
    const double radius = i % 2 == 0 ? 1.0 : 0.7;
    polygon.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return polygon;
}

}  // namespace bench

#endif  // VOREL_BENCHMARKS_BENCH_LINES_H_
