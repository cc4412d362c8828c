#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;
using Rect = tarvo::Rect<GeoCoordinate>;

void RunOver(benchmark::State& state, const std::vector<GeoCoordinate>& line, const Rect& rect) {
  std::vector<std::vector<GeoCoordinate>> pieces;
  for (auto _ : state) {
    pieces.clear();
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::CutPolyline(line, rect, pieces));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(line.size()));
}

// Typical: the middle half of a route is in view.
void BM_CutPolyline(benchmark::State& state) {
  const double length = 2e-4 * static_cast<double>(state.range(0));
  RunOver(state, bench::Route(state.range(0)), {{7.5 + length / 4, 47}, {7.5 + 3 * length / 4, 48}});
}
BENCHMARK(BM_CutPolyline)->Arg(100)->Arg(10000);

// Typical: a view of some fifty vertices in the middle of a route.
void BM_CutPolylineSmallView(benchmark::State& state) {
  const double middle = 7.5 + 1e-4 * static_cast<double>(state.range(0));
  RunOver(state, bench::Route(state.range(0)), {{middle - 5e-3, 47}, {middle + 5e-3, 48}});
}
BENCHMARK(BM_CutPolylineSmallView)->Arg(100)->Arg(10000);

void BM_CutPolylineAllInside(benchmark::State& state) {
  RunOver(state, bench::Route(state.range(0)), {{0, 0}, {90, 90}});
}
BENCHMARK(BM_CutPolylineAllInside)->Arg(100)->Arg(10000);

void BM_CutPolylineAllOutside(benchmark::State& state) {
  RunOver(state, bench::Route(state.range(0)), {{-10, 40}, {0, 50}});
}
BENCHMARK(BM_CutPolylineAllOutside)->Arg(100)->Arg(10000);

// Bad: the route winds in and out of the view, a piece for every few vertices.
void BM_CutPolylineManyPieces(benchmark::State& state) {
  RunOver(state, bench::Route(state.range(0)), {{0, 47.4999}, {90, 47.5001}});
}
BENCHMARK(BM_CutPolylineManyPieces)->Arg(100)->Arg(10000);

// Bad: long diagonals past a corner, whose boxes overlap that of the view: every test runs to its end, in vain.
void BM_CutPolylineDiagonalsThatMiss(benchmark::State& state) {
  std::vector<GeoCoordinate> line;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    line.push_back(i % 2 == 0 ? GeoCoordinate(-11, 1) : GeoCoordinate(1, 13));
  }
  RunOver(state, line, {{-1, -1}, {1, 1}});
}
BENCHMARK(BM_CutPolylineDiagonalsThatMiss)->Arg(100)->Arg(10000);

void BM_IsTwoSegmentJoined(benchmark::State& state) {
  const std::vector<GeoCoordinate> star = bench::Star(1000);
  for (auto _ : state) {
    for (std::size_t i = 0; i + 501 < star.size(); ++i) {
      benchmark::DoNotOptimize(
          VorelGeometryAlgorithm::IsTwoSegmentJoined(star[i], star[i + 500], star[i + 1], star[i + 501]));
    }
  }
  state.SetItemsProcessed(state.iterations() * 499);
}
BENCHMARK(BM_IsTwoSegmentJoined);

}  // namespace
