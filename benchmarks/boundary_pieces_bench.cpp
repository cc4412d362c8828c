#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::HAD::BoundaryData;
using vorel::VorelGeometryAlgorithm;

/// A boundary of which every `spacing`-th vertex is marked.
BoundaryData Boundary(std::int64_t vertexCount, std::uint32_t spacing) {
  BoundaryData boundary;
  boundary.points = bench::Lane(vertexCount);
  for (std::uint32_t i = 0; i < boundary.points.size(); i += spacing) boundary.pointIndices.push_back(i);
  return boundary;
}

void RunOver(benchmark::State& state, const BoundaryData& source, double length) {
  BoundaryData piece;
  for (auto _ : state) {
    piece.points.clear();
    piece.pointIndices.clear();
    int cursor = -1;
    benchmark::DoNotOptimize(
        VorelGeometryAlgorithm::HandleBoundaryDataByDistance(source, cursor, 1, 0.5, length, piece));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(source.points.size()));
}

// Typical: a piece of 30 m.
void BM_HandleBoundaryDataByDistance(benchmark::State& state) {
  RunOver(state, Boundary(state.range(0), 5), 30.0);
}
BENCHMARK(BM_HandleBoundaryDataByDistance)->Arg(10)->Arg(100);

// Bad: the whole boundary, every vertex marked.
void BM_HandleBoundaryDataByDistanceWhole(benchmark::State& state) {
  RunOver(state, Boundary(state.range(0), 1), 1e9);
}
BENCHMARK(BM_HandleBoundaryDataByDistanceWhole)->Arg(10)->Arg(100);

}  // namespace
