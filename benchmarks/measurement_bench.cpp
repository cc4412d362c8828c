// Cost of lengths and of distances between positions, per segment of a road-like line; "Far" rows have segments so long
// that each distance takes the slow way.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace {

using vorel::test::Line;
using vorel::test::LineZ;
using Algorithm = vorel::VorelGeometryAlgorithm;

LineZ Road(const benchmark::State& state) {
  std::mt19937 generator(41001);
  return vorel::test::RandomLineZ(generator, static_cast<int>(state.range(0)));
}

LineZ FarRoad(const benchmark::State& state) {
  LineZ line;
  for (int i = 0; i < state.range(0); ++i) line.emplace_back(i % 2 == 0 ? -60.0 : 60.0, 1e-3 * i, 0.0f);
  return line;
}

std::vector<double> Table(const Line& line) {
  std::vector<double> table{0.0};
  Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, table);
  return table;
}

void CountSegments(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void MeasureWhole(benchmark::State& state, const Line& line) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Algorithm::GetDistance(line.data(), static_cast<unsigned>(line.size()), 0, 4294967295u));
  }
  CountSegments(state);
}

void BM_GetDistance(benchmark::State& state) {
  MeasureWhole(state, vorel::test::WithoutHeight(Road(state)));
}
BENCHMARK(BM_GetDistance)->Arg(100)->Arg(10000);

void BM_GetDistanceFar(benchmark::State& state) {
  MeasureWhole(state, vorel::test::WithoutHeight(FarRoad(state)));
}
BENCHMARK(BM_GetDistanceFar)->Arg(100)->Arg(10000);

void BM_GetDistanceByVector(benchmark::State& state) {
  const LineZ line = Road(state);
  for (auto _ : state) benchmark::DoNotOptimize(Algorithm::GetDistanceByVector(line, 0, 4294967295u));
  CountSegments(state);
}
BENCHMARK(BM_GetDistanceByVector)->Arg(100)->Arg(10000);

void BM_GetDistanceAndCache(benchmark::State& state) {
  const Line line = vorel::test::WithoutHeight(Road(state));
  std::vector<double> cache;
  for (auto _ : state) {
    cache.clear();  // keeps its capacity, as callers do
    benchmark::DoNotOptimize(
        Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, cache));
    benchmark::ClobberMemory();
  }
  CountSegments(state);
}
BENCHMARK(BM_GetDistanceAndCache)->Arg(100)->Arg(10000);

/// The copy that the signature asks for is most of the cost.
void BM_FindFirstSmallerIndex(benchmark::State& state) {
  const std::vector<double> table = Table(vorel::test::WithoutHeight(Road(state)));
  std::size_t k = 0;
  for (auto _ : state) {
    k = (k + 7919) % table.size();
    benchmark::DoNotOptimize(Algorithm::FindFirstSmallerIndex(table, table[k]));
  }
}
BENCHMARK(BM_FindFirstSmallerIndex)->Arg(100)->Arg(10000);

void BM_DistancePointAAndPointBOnLine(benchmark::State& state) {
  LineZ line = Road(state);
  const int last = static_cast<int>(line.size()) - 1;
  for (auto _ : state) benchmark::DoNotOptimize(Algorithm::DistancePointAAndPointB(line, 0, 2.0, last, 3.0));
  CountSegments(state);
}
BENCHMARK(BM_DistancePointAAndPointBOnLine)->Arg(100)->Arg(10000);

void BM_DistancePointAAndPointBByTable(benchmark::State& state) {
  const std::vector<double> table = Table(vorel::test::WithoutHeight(Road(state)));
  const int last = static_cast<int>(table.size()) - 1;
  for (auto _ : state) benchmark::DoNotOptimize(Algorithm::DistancePointAAndPointB(table, 0, 2.0, last, 3.0));
}
BENCHMARK(BM_DistancePointAAndPointBByTable)->Arg(100)->Arg(10000);

void BM_DistanceAToBackB(benchmark::State& state) {
  const LineZ line = Road(state);
  const int last = static_cast<int>(line.size()) - 1;
  for (auto _ : state) benchmark::DoNotOptimize(Algorithm::DistanceAToBackB(line, 0, 2.0, last, 3.0));
  CountSegments(state);
}
BENCHMARK(BM_DistanceAToBackB)->Arg(100)->Arg(10000);

void BM_DistanceOfA2BInRoute(benchmark::State& state) {
  const Line line = vorel::test::WithoutHeight(Road(state));
  const std::vector<double> table = Table(line);
  const int last = static_cast<int>(line.size()) - 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Algorithm::DistanceOfA2BInRoute(line[1], 0, line[3], last, line, table));
  }
}
BENCHMARK(BM_DistanceOfA2BInRoute)->Arg(100)->Arg(10000);

}  // namespace
