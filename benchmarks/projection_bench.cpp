#include <limits>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using LineZ = std::vector<GeoCoordinateZ>;

/// A position beside the lane's point at the given fraction of its vertices.
GeoCoordinateZ Beside(const LineZ& lane, double fraction, double metresEast = 2.2) {
  constexpr double kMetresPerDegree = 74400.0;  // of longitude, at the latitude of the lane
  const GeoCoordinateZ& vertex =
      lane[static_cast<std::size_t>(fraction * static_cast<double>(lane.size() - 2))];
  return {vertex.longitude + metresEast / kMetresPerDegree, vertex.latitude, vertex.z};
}

void BM_ProjectionPosToLine(benchmark::State& state) {
  const LineZ lane = bench::Lane(1001);
  const GeoCoordinateZ pos = Beside(lane, 0.5);
  GeoCoordinateZ foot;
  double ratio = 0.0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < 1000; ++i) {
      benchmark::DoNotOptimize(
          VorelGeometryAlgorithm::ProjectionPosToLine(lane[i], lane[i + 1], pos, foot, ratio));
      benchmark::DoNotOptimize(foot);
    }
  }
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_ProjectionPosToLine);

void BM_PosInAB(benchmark::State& state) {
  const LineZ lane = bench::Lane(1001);
  const GeoCoordinateZ pos = Beside(lane, 0.5);
  double ratio = 0.0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < 1000; ++i) {
      benchmark::DoNotOptimize(VorelGeometryAlgorithm::PosInAB(pos, lane[i], lane[i + 1], ratio));
    }
  }
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_PosInAB);

void Walk(benchmark::State& state, double startFraction, double positionFraction) {
  const LineZ lane = bench::Lane(state.range(0));
  const GeoCoordinateZ pos = Beside(lane, positionFraction);
  const int start = static_cast<int>(startFraction * static_cast<double>(lane.size() - 2));
  int resultIndex = 0;
  double ratio = 0.0;
  for (auto _ : state) {
    int segmentIndex = start;
    benchmark::DoNotOptimize(
        VorelGeometryAlgorithm::ProjectionPosToLines(pos, lane, segmentIndex, resultIndex, ratio));
    benchmark::DoNotOptimize(resultIndex);
  }
}
// Typical: the position is where it was last time, or on the next segment.
void BM_ProjectionPosToLinesNear(benchmark::State& state) {
  Walk(state, 0.5, 0.5);
}
BENCHMARK(BM_ProjectionPosToLinesNear)->Arg(10)->Arg(100);
// Bad: the walk passes the whole lane.
void BM_ProjectionPosToLinesWhole(benchmark::State& state) {
  Walk(state, 0.0, 1.0);
}
BENCHMARK(BM_ProjectionPosToLinesWhole)->Arg(10)->Arg(100);

struct Scan {
  double positionFraction;  // of the lane's vertices
  double metresAside;       // of the position, to the east
  double acceptDistance;
  double maxDistance;
  int maxFarSegments;
};

void RunDistance(benchmark::State& state, const LineZ& lane, const Scan& scan) {
  const GeoCoordinateZ pos = Beside(lane, scan.positionFraction, scan.metresAside);
  int resultIndex = 0;
  double ratio = 0.0;
  for (auto _ : state) {
    int startIndex = 0;
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(
        pos, lane, startIndex, resultIndex, ratio, scan.acceptDistance, scan.maxDistance,
        scan.maxFarSegments));
    benchmark::DoNotOptimize(resultIndex);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lane.size()));
}

void RunOrientation(benchmark::State& state, const LineZ& lane, double heading, const Scan& scan) {
  const GeoCoordinateZ pos = Beside(lane, scan.positionFraction, scan.metresAside);
  int resultIndex = 0;
  double ratio = 0.0;
  for (auto _ : state) {
    int startIndex = 0;
    benchmark::DoNotOptimize(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
        pos, heading, lane, startIndex, resultIndex, ratio, scan.acceptDistance, scan.maxDistance, 60.0,
        scan.maxFarSegments));
    benchmark::DoNotOptimize(resultIndex);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lane.size()));
}

constexpr int kAny = std::numeric_limits<int>::max();
constexpr double kAnywhere = std::numeric_limits<double>::infinity();
constexpr Scan kTypical{0.5, 2.2, 0.0, 20.0, 3};
constexpr Scan kWhole{1.0, 2.2, 0.0, 20.0, kAny};
constexpr Scan kMatchAtStart{0.0, 2.2, 0.0, 20.0, kAny};
constexpr Scan kEverythingFar{0.5, 1000.0, 0.0, 20.0, 3};
constexpr Scan kUnlimited{0.7, 30.0, 0.0, kAnywhere, kAny};

void BM_ProjectionPosToLinesDistance(benchmark::State& state) {
  RunDistance(state, bench::Lane(state.range(0)), kTypical);
}
BENCHMARK(BM_ProjectionPosToLinesDistance)->Arg(10)->Arg(100)->Arg(1000);
// Bad: the match lies at the far end, and nothing ends the scan.
void BM_ProjectionPosToLinesDistanceWhole(benchmark::State& state) {
  RunDistance(state, bench::Lane(state.range(0)), kWhole);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceWhole)->Arg(10)->Arg(100)->Arg(1000);
// The match lies at the start, and the far segments behind it do not end the scan.
void BM_ProjectionPosToLinesDistanceMatchAtStart(benchmark::State& state) {
  RunDistance(state, bench::Lane(state.range(0)), kMatchAtStart);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceMatchAtStart)->Arg(10)->Arg(100)->Arg(1000);
// Bad: nothing is in range, so that nothing ends the scan.
void BM_ProjectionPosToLinesDistanceEverythingFar(benchmark::State& state) {
  RunDistance(state, bench::Lane(state.range(0)), kEverythingFar);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceEverythingFar)->Arg(10)->Arg(100)->Arg(1000);
// The nearest segment at any distance.
void BM_ProjectionPosToLinesDistanceUnlimited(benchmark::State& state) {
  RunDistance(state, bench::Lane(state.range(0)), kUnlimited);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceUnlimited)->Arg(10)->Arg(100)->Arg(1000);

void BM_ProjectionPosToLinesDistanceOrientation(benchmark::State& state) {
  RunOrientation(state, bench::Lane(state.range(0)), 45.0, kTypical);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceOrientation)->Arg(10)->Arg(100)->Arg(1000);
// Bad: every segment is nearer than the one before, so that each needs its heading.
void BM_ProjectionPosToLinesDistanceOrientationWhole(benchmark::State& state) {
  RunOrientation(state, bench::Lane(state.range(0)), 45.0, kWhole);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceOrientationWhole)->Arg(10)->Arg(100)->Arg(1000);
// Bad: every heading is wrong, and the first segment stays.
void BM_ProjectionPosToLinesDistanceOrientationWrongWay(benchmark::State& state) {
  RunOrientation(state, bench::Lane(state.range(0)), 225.0, kWhole);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceOrientationWrongWay)->Arg(10)->Arg(100)->Arg(1000);
void BM_ProjectionPosToLinesDistanceOrientationEverythingFar(benchmark::State& state) {
  RunOrientation(state, bench::Lane(state.range(0)), 45.0, kEverythingFar);
}
BENCHMARK(BM_ProjectionPosToLinesDistanceOrientationEverythingFar)->Arg(10)->Arg(100)->Arg(1000);

}  // namespace
