// Cost of thinning per point of a route: with most points within the box of the last kept one, with all outside of it,
// and without thinning at all.

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace {

using vorel::test::Line;
using Algorithm = vorel::VorelGeometryAlgorithm;

std::vector<Line> Route(const benchmark::State& state) {
  std::mt19937 generator(43001);
  std::vector<Line> route(10);
  for (Line& segment : route)
    segment = vorel::test::RandomLine(generator, static_cast<int>(state.range(0)) / 10);
  return route;
}

void Thin(benchmark::State& state, float minSpacing, int pointLimit) {
  const std::vector<Line> route = Route(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Algorithm::PreProcessRoutePoints(route, minSpacing, pointLimit));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ThinTo200Metres(benchmark::State& state) {
  Thin(state, 200.0f, 0);
}
BENCHMARK(BM_ThinTo200Metres)->Arg(100)->Arg(10000);

/// Every point lies in the box and is measured: the bad case.
void BM_ThinTo10Kilometres(benchmark::State& state) {
  Thin(state, 10000.0f, 0);
}
BENCHMARK(BM_ThinTo10Kilometres)->Arg(100)->Arg(10000);

/// Most points are kept, up to the cap.
void BM_ThinTo5Metres(benchmark::State& state) {
  Thin(state, 5.0f, 0);
}
BENCHMARK(BM_ThinTo5Metres)->Arg(100)->Arg(10000);

void BM_CopyWhole(benchmark::State& state) {
  Thin(state, 5.0f, -1);
}
BENCHMARK(BM_CopyWhole)->Arg(100)->Arg(10000);

void BM_SeveralRoutes(benchmark::State& state) {
  const std::vector<std::vector<Line>> routes(4, Route(state));
  const std::string owner = "Bench";
  std::vector<Line> out;
  for (auto _ : state) {
    Algorithm::PreProcessRoutePoints(routes, 4, 200.0f, 0, owner, out);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * 4);
}
BENCHMARK(BM_SeveralRoutes)->Arg(100)->Arg(10000);

}  // namespace
