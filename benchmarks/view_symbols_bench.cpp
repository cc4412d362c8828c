#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;
using Rect = tarvo::Rect<GeoCoordinate>;

void RunOver(benchmark::State& state, bool isMainRoute, const Rect& view,
             const std::vector<GeoCoordinate>& area, int interval) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  const std::string owner = "bench";
  std::vector<std::vector<GeoCoordinate>> out;
  for (auto _ : state) {
    VorelGeometryAlgorithm::GetInterpolateShapePoints(route, isMainRoute, view, area, interval, owner, out);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));  // vertices
}

Rect MiddleHalf(std::int64_t vertexCount) {
  const double length = 2e-4 * static_cast<double>(vertexCount);
  return {{7.5 + length / 4, 47}, {7.5 + 3 * length / 4, 48}};
}

// Typical: the middle half of the route is in view, a symbol every 50 m.
void BM_GetInterpolateShapePoints(benchmark::State& state) {
  RunOver(state, true, MiddleHalf(state.range(0)), {}, 50);
}
BENCHMARK(BM_GetInterpolateShapePoints)->Arg(100)->Arg(10000);

// What the above is made of: clipping and sampling by themselves.
void BM_SumOfParts(benchmark::State& state) {
  const std::vector<GeoCoordinate> route = bench::Route(state.range(0));
  const Rect view = MiddleHalf(state.range(0));
  for (auto _ : state) {
    std::vector<std::vector<GeoCoordinate>> pieces;
    VorelGeometryAlgorithm::CutPolyline(route, view, pieces);
    for (const std::vector<GeoCoordinate>& piece : pieces) {
      std::vector<GeoCoordinate> samples;
      VorelGeometryAlgorithm::CalcPointsInPolyline(piece, 50.0, -1, samples);
      benchmark::DoNotOptimize(samples.data());
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));  // vertices
}
BENCHMARK(BM_SumOfParts)->Arg(100)->Arg(10000);

void BM_GetInterpolateShapePointsOutOfView(benchmark::State& state) {
  RunOver(state, true, {{-10, 40}, {0, 50}}, {}, 50);
}
BENCHMARK(BM_GetInterpolateShapePointsOutOfView)->Arg(100)->Arg(10000);

// Bad: the route winds in and out of the view.
void BM_GetInterpolateShapePointsManyPieces(benchmark::State& state) {
  RunOver(state, true, {{0, 47.4999}, {90, 47.5001}}, {}, 50);
}
BENCHMARK(BM_GetInterpolateShapePointsManyPieces)->Arg(100)->Arg(10000);

// A side route: each symbol is looked for in a polygon. Second argument: its vertices.
void BM_GetInterpolateShapePointsSideRoute(benchmark::State& state) {
  std::vector<GeoCoordinate> area = bench::Star(state.range(1));
  for (GeoCoordinate& vertex : area) {
    vertex = {7.5 + 1e-4 * static_cast<double>(state.range(0)) + vertex.longitude, 47.5 + vertex.latitude};
  }
  RunOver(state, false, MiddleHalf(state.range(0)), area, 50);
}
BENCHMARK(BM_GetInterpolateShapePointsSideRoute)->ArgsProduct({{100, 10000}, {10, 100, 1000}});

}  // namespace
