#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using LineZ = std::vector<GeoCoordinateZ>;

void RunOver(benchmark::State& state, const LineZ& lane) {
  LineZ result;
  for (auto _ : state) {
    result.clear();
    VorelGeometryAlgorithm::PanLinePoints(lane, 1.75f, false, result);
    benchmark::DoNotOptimize(result.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lane.size()));
}

void BM_PanLinePoints(benchmark::State& state) {
  RunOver(state, bench::Lane(state.range(0)));
}
BENCHMARK(BM_PanLinePoints)->Arg(10)->Arg(100);

// Bad: every vertex is a bend and needs its crossing and a second distance. One leg of two is vertical.
void BM_PanLinePointsStairs(benchmark::State& state) {
  RunOver(state, bench::Stairs(state.range(0)));
}
BENCHMARK(BM_PanLinePointsStairs)->Arg(10)->Arg(100);

}  // namespace
