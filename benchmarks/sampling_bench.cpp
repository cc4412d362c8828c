#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;

// Arguments: vertices of the route, metres between samples. Items are vertices walked plus samples appended.
void BM_CalcPointsInPolyline(benchmark::State& state) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  const double interval = static_cast<double>(state.range(1));
  std::vector<GeoCoordinate> out;
  for (auto _ : state) {
    out.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::CalcPointsInPolyline(route, interval, -1, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * (state.range(0) + static_cast<std::int64_t>(out.size())));
}
// Typical: a symbol every 50 m. Bad: a sample every metre. No sample at all: the cost of the walk.
BENCHMARK(BM_CalcPointsInPolyline)->ArgsProduct({{100, 10000}, {50, 1, 1000000000}});

// Bad: segments of thousands of kilometres, whose lengths call the math library.
void BM_CalcPointsInPolylineFarApart(benchmark::State& state) {
  const std::vector<GeoCoordinate> line{{0, 0}, {45, 30}, {90, -30}, {135, 30}, {180, 0}};
  std::vector<GeoCoordinate> out;
  for (auto _ : state) {
    out.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::CalcPointsInPolyline(line, 1e5, -1, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * 5);
}
BENCHMARK(BM_CalcPointsInPolylineFarApart);

void BM_ChoosePointsInPolyline(benchmark::State& state) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  std::vector<GeoCoordinate> out;
  for (auto _ : state) {
    out.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::ChoosePointsInPolyline(route, 50.0, 100, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(out.size()));
}
BENCHMARK(BM_ChoosePointsInPolyline)->Arg(100)->Arg(10000);

/// Walked to the end: the cut lies in the last segment.
void BM_ChoosePointsBehindALength(benchmark::State& state) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  const auto count = static_cast<unsigned>(route.size());
  const double length = VorelGeometryAlgorithm::GetDistance(route.data(), count, 0, count) - 1e-6;
  std::vector<GeoCoordinate> out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        VorelGeometryAlgorithm::ChoosePointsInPolyline(route.data(), count, length, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ChoosePointsBehindALength)->Arg(2)->Arg(5)->Arg(10)->Arg(100)->Arg(10000);

/// Walked to the end, and all vertices copied.
void BM_ChoosePointsInPolylineWithMaxLength(benchmark::State& state) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  const auto count = static_cast<unsigned>(route.size());
  const double length = VorelGeometryAlgorithm::GetDistance(route.data(), count, 0, count) - 1e-6;
  std::vector<GeoCoordinate> out;
  for (auto _ : state) {
    out.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::ChoosePointsInPolylineWithMaxLength(route, length, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ChoosePointsInPolylineWithMaxLength)->Arg(2)->Arg(5)->Arg(10)->Arg(100)->Arg(10000);

}  // namespace
