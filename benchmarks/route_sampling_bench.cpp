// Cost of anchored sampling per vertex walked, of chains per step, of candidates per segment.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace {

using tarvo::RoutePos;
using vorel::test::Line;
using Algorithm = vorel::VorelGeometryAlgorithm;

Line Road(const benchmark::State& state) {
  std::mt19937 generator(42001);
  return vorel::test::RandomLine(generator, static_cast<int>(state.range(0)));
}

std::vector<double> Table(const Line& line) {
  std::vector<double> table{0.0};
  Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, table);
  return table;
}

void TakeStretch(benchmark::State& state, double metres) {
  const Line line = Road(state);
  const std::vector<double> table = Table(line);
  Line out;
  for (auto _ : state) {
    out.clear();  // keeps its capacity, as callers do
    benchmark::DoNotOptimize(
        Algorithm::ChoosePointsInPolylineFromBasePoint(1, line[1], metres, line, table, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(out.size()));
}

void BM_StretchOfAKilometre(benchmark::State& state) {
  TakeStretch(state, 1000.0);
}
BENCHMARK(BM_StretchOfAKilometre)->Arg(100)->Arg(10000);

void BM_StretchToTheEnd(benchmark::State& state) {
  TakeStretch(state, 1e9);
}
BENCHMARK(BM_StretchToTheEnd)->Arg(100)->Arg(10000);

void CutChain(benchmark::State& state, double partOfLength) {
  const Line line = Road(state);
  const std::vector<double> table = Table(line);
  std::vector<RoutePos> positions(line.size());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    positions[i].coordinate = line[i];
    positions[i].shapeIndex = static_cast<int>(i);
  }
  Line out;
  for (auto _ : state) {
    out.clear();
    benchmark::DoNotOptimize(Algorithm::ChoosePointsInPolylineWithOffset(
        positions, partOfLength * table.back(), out, line, table));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ChainBehindItsMiddle(benchmark::State& state) {
  CutChain(state, 0.5);
}
BENCHMARK(BM_ChainBehindItsMiddle)->Arg(100)->Arg(10000);

/// Shorter than the offset: walked to the end, then a log statement that nobody listens to.
void BM_ChainTooShort(benchmark::State& state) {
  CutChain(state, 2.0);
}
BENCHMARK(BM_ChainTooShort)->Arg(100)->Arg(10000);

void SpreadCandidates(benchmark::State& state, unsigned count) {
  std::mt19937 generator(42002);
  std::vector<Line> lines(10);
  for (Line& line : lines) line = vorel::test::RandomLine(generator, static_cast<int>(state.range(0)) / 10);
  Line out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Algorithm::CalculateCandidatePoints(lines, count, out));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TwentyCandidates(benchmark::State& state) {
  SpreadCandidates(state, 20);
}
BENCHMARK(BM_TwentyCandidates)->Arg(100)->Arg(10000);

/// One every few metres.
void BM_CandidatesEverywhere(benchmark::State& state) {
  SpreadCandidates(state, static_cast<unsigned>(state.range(0)) * 8);
}
BENCHMARK(BM_CandidatesEverywhere)->Arg(100)->Arg(10000);

}  // namespace
