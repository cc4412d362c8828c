#include <cmath>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/internal/polygon.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;

// Points on a spiral through and around the star.
std::vector<GeoCoordinate> Points(double scale) {
  std::vector<GeoCoordinate> points;
  for (int i = 0; i < 256; ++i) {
    const double radius = scale * std::sqrt(i / 256.0);
    points.emplace_back(radius * std::cos(2.4 * i), radius * std::sin(2.4 * i));
  }
  return points;
}

void RunOver(benchmark::State& state, const std::vector<GeoCoordinate>& polygon,
             const std::vector<GeoCoordinate>& points) {
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::IsPointInPolygon(polygon, points[next]));
    next = (next + 1) % points.size();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));  // edges
}

// Typical: inside, near and outside.
void BM_IsPointInPolygon(benchmark::State& state) {
  RunOver(state, bench::Star(state.range(0)), Points(1.3));
}
BENCHMARK(BM_IsPointInPolygon)->Arg(10)->Arg(100)->Arg(1000);

// The points in no order that a branch predictor could learn. Second argument: the form with so many lanes, 0 for what
// the library chooses.
void BM_IsPointInPolygonRandomPoints(benchmark::State& state) {
  using namespace vorel::internal;
  if (state.range(1) != 0) {
    const LocateInPolygon form = FindLocateInPolygon(static_cast<std::size_t>(state.range(1)));
    if (form == nullptr) {
      state.SkipWithError("this machine has no such form");
      return;
    }
    ForceLocateInPolygon(form);
  }
  constexpr unsigned kSeed = 41201;
  std::mt19937 generator(kSeed);
  const auto coordinate = [&generator] { return static_cast<double>(generator()) / 2147483648.0 - 1.0; };
  std::vector<GeoCoordinate> points;
  for (int i = 0; i < 16384; ++i) {
    const double longitude = coordinate();
    points.emplace_back(longitude, coordinate());
  }
  RunOver(state, bench::Star(state.range(0)), points);
  ForceLocateInPolygon(nullptr);
}
BENCHMARK(BM_IsPointInPolygonRandomPoints)->ArgsProduct({{10, 100, 1000}, {0, 2}});

// Bad: a wall of horizontal edges, all level with every point.
void BM_IsPointInPolygonLevelEdges(benchmark::State& state) {
  std::vector<GeoCoordinate> wall;
  for (std::int64_t i = 0; i < state.range(0); ++i) wall.emplace_back(1e-3 * static_cast<double>(i), 0.0);
  std::vector<GeoCoordinate> points = Points(0.3);
  for (GeoCoordinate& point : points) point = {point.longitude - 1.0, 0.0};
  RunOver(state, wall, points);
}
BENCHMARK(BM_IsPointInPolygonLevelEdges)->Arg(10)->Arg(100)->Arg(1000);

// Bad: an edge level with every point, but for less than the tolerance, calls for the walk edge by edge.
void BM_IsPointInPolygonNearlyLevelEdge(benchmark::State& state) {
  std::vector<GeoCoordinate> polygon = bench::Star(state.range(0));
  polygon[0] = {2.0, -4e-8};
  polygon[1] = {1.5, 4e-8};
  std::vector<GeoCoordinate> points = Points(0.3);
  for (GeoCoordinate& point : points) point.latitude = 0.0;
  RunOver(state, polygon, points);
}
BENCHMARK(BM_IsPointInPolygonNearlyLevelEdge)->Arg(10)->Arg(100)->Arg(1000);

// All above the polygon: no edge spans the latitude.
void BM_IsPointInPolygonFarAway(benchmark::State& state) {
  std::vector<GeoCoordinate> points = Points(1.0);
  for (GeoCoordinate& point : points) point.latitude += 10.0;
  RunOver(state, bench::Star(state.range(0)), points);
}
BENCHMARK(BM_IsPointInPolygonFarAway)->Arg(10)->Arg(100)->Arg(1000);

// Bad: a saw whose every edge spans the latitude of every point.
void BM_IsPointInPolygonEveryEdgeTakesPart(benchmark::State& state) {
  std::vector<GeoCoordinate> saw;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    saw.emplace_back(1e-3 * static_cast<double>(i), i % 2 == 0 ? -1.0 : 1.0);
  }
  std::vector<GeoCoordinate> points = Points(0.3);
  for (GeoCoordinate& point : points) point.longitude -= 2.0;
  RunOver(state, saw, points);
}
BENCHMARK(BM_IsPointInPolygonEveryEdgeTakesPart)->Arg(10)->Arg(100)->Arg(1000);

void BM_PointRayTest(benchmark::State& state) {
  const std::vector<GeoCoordinate> polygon = bench::Star(100);
  const std::vector<GeoCoordinate> points = Points(1.3);
  for (auto _ : state) {
    int crossings = 0;
    for (std::size_t i = 0; i + 1 < polygon.size(); ++i) {
      benchmark::DoNotOptimize(
          VorelGeometryAlgorithm::PointRayTest(points[i], polygon[i], polygon[i + 1], crossings));
    }
    benchmark::DoNotOptimize(crossings);
  }
  state.SetItemsProcessed(state.iterations() * 99);
}
BENCHMARK(BM_PointRayTest);

}  // namespace
