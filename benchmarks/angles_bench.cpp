// Angles and headings. Items are calls, over the same thousand inputs in every run.

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;

constexpr std::size_t kCount = 1024;

std::vector<float> Headings(double low, double high) {
  std::mt19937 generator(20261);
  std::vector<float> headings;
  for (std::size_t i = 0; i < kCount + 1; ++i) {
    headings.push_back(
        static_cast<float>(low + (high - low) * (static_cast<double>(generator()) / 4294967296.0)));
  }
  return headings;
}

template <class Call>
void RunOverAll(benchmark::State& state, const Call& call) {
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i) benchmark::DoNotOptimize(call(i));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

void BM_TurningAngle(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::GetAngle(road[i], road[i + 1], road[i + 2]);
  });
}
BENCHMARK(BM_TurningAngle);

void BM_Bearing(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  RunOverAll(state, [&](std::size_t i) { return VorelGeometryAlgorithm::GetAngle(road[i], road[i + 1]); });
}
BENCHMARK(BM_Bearing);

void BM_GetYaw(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::GetYaw(road[i].latitude, road[i].longitude, road[i + 1].latitude,
                                          road[i + 1].longitude);
  });
}
BENCHMARK(BM_GetYaw);

// Without any trigonometry: decided on the grid.
void BM_GetYawOnOneMeridian(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::GetYaw(road[i].latitude, 7.5, road[i + 1].latitude, 7.5);
  });
}
BENCHMARK(BM_GetYawOnOneMeridian);

void BM_CalcAziDiff(benchmark::State& state) {
  const std::vector<float> headings = Headings(0.0, 360.0);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::CalcAziDiff(headings[i], headings[i + 1]);
  });
}
BENCHMARK(BM_CalcAziDiff);

void BM_AngleDiff(benchmark::State& state) {
  const std::vector<float> headings = Headings(0.0, 360.0);
  RunOverAll(state,
             [&](std::size_t i) { return VorelGeometryAlgorithm::AngleDiff(headings[i], headings[i + 1]); });
}
BENCHMARK(BM_AngleDiff);

// Argument: the largest magnitude in degrees. One turn is typical; the bad case steps through thousands.
void BM_NormalizeAngle180(benchmark::State& state) {
  const double largest = static_cast<double>(state.range(0));
  const std::vector<float> headings = Headings(-largest, largest);
  RunOverAll(state, [&](std::size_t i) { return VorelGeometryAlgorithm::NormalizeAngle180(headings[i]); });
}
BENCHMARK(BM_NormalizeAngle180)->Arg(360)->Arg(36000)->Arg(3600000);

void BM_NormalizeAngle360(benchmark::State& state) {
  const double largest = static_cast<double>(state.range(0));
  const std::vector<float> headings = Headings(-largest, largest);
  RunOverAll(state, [&](std::size_t i) { return VorelGeometryAlgorithm::NormalizeAngle360(headings[i]); });
}
BENCHMARK(BM_NormalizeAngle360)->Arg(360)->Arg(36000)->Arg(3600000);

// Argument: sideA. 3 with sideB 5 and 30 degrees gives two candidates, 6 one, 1 none (nothing is allocated).
void BM_GetLength3OfTriangle(benchmark::State& state) {
  const double sideA = static_cast<double>(state.range(0));
  const std::vector<float> angles = Headings(29.0, 31.0);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::GetLength3OfTriangle(sideA, 5.0, static_cast<double>(angles[i])).size();
  });
}
BENCHMARK(BM_GetLength3OfTriangle)->Arg(3)->Arg(6)->Arg(1);

void BM_Distance(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  RunOverAll(state, [&](std::size_t i) {
    return VorelGeometryAlgorithm::Distance({road[i].longitude, road[i].latitude, 0.0},
                                            {road[i + 1].longitude, road[i + 1].latitude, 0.0});
  });
}
BENCHMARK(BM_Distance);

}  // namespace
