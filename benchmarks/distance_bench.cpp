// Cost of one distance, by how far apart the points are; every row reports nanoseconds per pair, so that the rows
// compare with the haversine row of the same run.

#include "base/strict_floating_point.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"

namespace {

using tarvo::GeoCoordinate;

struct Pair {
  GeoCoordinate from;
  GeoCoordinate to;
};

constexpr std::size_t kPairCount = 1024;  // 32 KB: stays in the first-level cache

/// Pairs whose latitudes and longitudes differ by up to `largestDifference` degrees and by at least half of it.
std::vector<Pair> MakePairs(double largestDifference) {
  std::mt19937_64 generator(20250);
  std::uniform_real_distribution<double> longitude(-170.0, 170.0);
  std::uniform_real_distribution<double> latitude(-60.0, 60.0);
  std::uniform_real_distribution<double> difference(0.5 * largestDifference, largestDifference);
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < kPairCount; ++i) {
    const GeoCoordinate from{longitude(generator), latitude(generator)};
    const double sign = i % 2 == 0 ? 1.0 : -1.0;
    pairs.push_back({from, GeoCoordinate(from.longitude + sign * difference(generator),
                                         from.latitude + difference(generator))});
  }
  return pairs;
}

/// Pairs of which one lies within a degree of the other's antipode, where the full inverse has its hardest work.
std::vector<Pair> MakeNearlyAntipodalPairs() {
  std::vector<Pair> pairs = MakePairs(1.0);
  for (Pair& pair : pairs) {
    pair.to.longitude += 180.0;
    pair.to.latitude = -pair.to.latitude;
  }
  return pairs;
}

/// The usual formula on a sphere (Sinnott 1984), for comparison: off by up to 0.56 percent.
double Haversine(const GeoCoordinate& a, const GeoCoordinate& b) {
  constexpr double kMeanRadius = 6371008.8;  // metres
  constexpr double kHalfRadian = 0.5 * tarvo::geodesy::kRadiansPerDegree;
  const double sinHalfLatitude = std::sin((b.latitude - a.latitude) * kHalfRadian);
  const double sinHalfLongitude = std::sin((b.longitude - a.longitude) * kHalfRadian);
  const double h =
      sinHalfLatitude * sinHalfLatitude + std::cos(a.latitude * tarvo::geodesy::kRadiansPerDegree) *
                                              std::cos(b.latitude * tarvo::geodesy::kRadiansPerDegree) *
                                              sinHalfLongitude * sinHalfLongitude;
  return 2.0 * kMeanRadius * std::asin(std::min(1.0, std::sqrt(h)));
}

/// Sums the distances, as the caller of a polyline length does: pairs do not wait for one another, the sum does.
template <class DistanceOfPair>
void MeasureAll(benchmark::State& state, const std::vector<Pair>& pairs, DistanceOfPair distanceOfPair) {
  for (auto _ : state) {
    double sum = 0.0;
    for (const Pair& pair : pairs) sum += distanceOfPair(pair.from, pair.to);
    benchmark::DoNotOptimize(sum);
  }
  // Seconds per pair; the console prints 10.7n for 10.7 nanoseconds.
  state.counters["perPair"] =
      benchmark::Counter(static_cast<double>(pairs.size()),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

const auto kCall = [](const GeoCoordinate& a, const GeoCoordinate& b) { return a.DistanceTo(b); };
const auto kInline = [](const GeoCoordinate& a, const GeoCoordinate& b) {
  return tarvo::geodesy::Distance(a, b);
};

void BM_Haversine(benchmark::State& state) {
  MeasureAll(state, MakePairs(0.001), Haversine);
}
void BM_NearInline(benchmark::State& state) {
  MeasureAll(state, MakePairs(0.001), kInline);
}
void BM_NearCall(benchmark::State& state) {
  MeasureAll(state, MakePairs(0.001), kCall);
}
void BM_MidCall(benchmark::State& state) {
  MeasureAll(state, MakePairs(2.0), kCall);
}
void BM_FarCall(benchmark::State& state) {
  MeasureAll(state, MakePairs(25.0), kCall);
}
void BM_NearlyAntipodalCall(benchmark::State& state) {
  MeasureAll(state, MakeNearlyAntipodalPairs(), kCall);
}

BENCHMARK(BM_Haversine);
BENCHMARK(BM_NearInline);
BENCHMARK(BM_NearCall);
BENCHMARK(BM_MidCall);
BENCHMARK(BM_FarCall);
BENCHMARK(BM_NearlyAntipodalCall);

}  // namespace
