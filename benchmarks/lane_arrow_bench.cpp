#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::ArrowType;
using vorel::VorelGeometryAlgorithm;
using LineZ = std::vector<GeoCoordinateZ>;

void RunOver(benchmark::State& state, const LineZ& lane, ArrowType type) {
  LineZ left, right;
  for (auto _ : state) {
    VorelGeometryAlgorithm::CalcBoundaryPoints(lane, 3.5f, type, left, right);
    benchmark::DoNotOptimize(left.data());
    benchmark::DoNotOptimize(right.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lane.size()));
}

void BM_CalcBoundaryPointsCenter(benchmark::State& state) {
  RunOver(state, bench::Lane(state.range(0)), ArrowType::kLineAsCenter);
}
BENCHMARK(BM_CalcBoundaryPointsCenter)->Arg(10)->Arg(100);

void BM_CalcBoundaryPointsLeftEdge(benchmark::State& state) {
  RunOver(state, bench::Lane(state.range(0)), ArrowType::kLineAsLeftEdge);
}
BENCHMARK(BM_CalcBoundaryPointsLeftEdge)->Arg(10)->Arg(100);

// Bad: every vertex is a bend with points added on both sides.
void BM_CalcBoundaryPointsStairs(benchmark::State& state) {
  RunOver(state, bench::Stairs(state.range(0)), ArrowType::kLineAsCenter);
}
BENCHMARK(BM_CalcBoundaryPointsStairs)->Arg(10)->Arg(100);

void BM_RelapseCheckFilter(benchmark::State& state) {
  const LineZ lane = bench::Lane(state.range(0));
  LineZ left, right;
  for (auto _ : state) {
    left.clear();
    right.clear();
    VorelGeometryAlgorithm::RelapseCheckFilter(lane, lane, left, lane, right);
    benchmark::DoNotOptimize(left.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RelapseCheckFilter)->Arg(10)->Arg(100);

}  // namespace
