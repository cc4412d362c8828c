#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using LineZ = std::vector<GeoCoordinateZ>;

void BM_GetBoundOfARange(benchmark::State& state) {
  const LineZ lane = bench::Lane(state.range(0));
  std::vector<tarvo::MapVector2d> corners;
  for (auto _ : state) {
    corners.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::GetBound(lane, 0, -1, corners));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GetBoundOfARange)->Arg(10)->Arg(100);

void RunExtremes(benchmark::State& state, const std::vector<vorel::Vector2<double>>& points) {
  std::vector<vorel::Vector2<double>> extremes;
  std::vector<int> indices;
  for (auto _ : state) {
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::GetBoundPoints(points, extremes, indices));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}

void BM_GetBoundPoints(benchmark::State& state) {
  std::vector<vorel::Vector2<double>> points;
  for (const GeoCoordinateZ& point : bench::Lane(state.range(0)))
    points.push_back({point.longitude, point.latitude});
  RunExtremes(state, points);
}
BENCHMARK(BM_GetBoundPoints)->Arg(10)->Arg(100);

// Bad: every point is a new extreme in three of the four slots.
void BM_GetBoundPointsFalling(benchmark::State& state) {
  std::vector<vorel::Vector2<double>> points;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    points.push_back({static_cast<double>(-i), static_cast<double>(-i)});
  RunExtremes(state, points);
}
BENCHMARK(BM_GetBoundPointsFalling)->Arg(10)->Arg(100);

void BM_GetPointZInPlane(benchmark::State& state) {
  const LineZ plane = {{11.5, 48.1, 500.0f}, {11.501, 48.1, 500.0f}, {11.5, 48.101, 510.0f}};
  const LineZ lane = bench::Lane(1000);
  for (auto _ : state) {
    for (const GeoCoordinateZ& point : lane) {
      benchmark::DoNotOptimize(VorelGeometryAlgorithm::GetPointZInPlane(plane, point));
    }
  }
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_GetPointZInPlane);

}  // namespace
