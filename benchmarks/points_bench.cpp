// Points and rectangles. Items are calls, over the same thousand inputs in every run; for `GetBound` they are points.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_lines.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using GeoRect = tarvo::Rect<GeoCoordinate>;

constexpr std::size_t kCount = 1024;

/// Calls `call` with three consecutive vertices.
template <class Call>
void RunAlongTheRoad(benchmark::State& state, const Call& call) {
  const std::vector<GeoCoordinate> road = bench::Route(kCount + 2);
  for (auto _ : state) {
    for (std::size_t i = 0; i < kCount; ++i)
      benchmark::DoNotOptimize(call(road[i], road[i + 1], road[i + 2]));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

void BM_GetBound(benchmark::State& state) {
  const std::vector<GeoCoordinate> road = bench::Route(state.range(0));
  GeoRect bound;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        VorelGeometryAlgorithm::GetBound(road.data(), static_cast<unsigned>(road.size()), bound));
    benchmark::DoNotOptimize(bound);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GetBound)->RangeMultiplier(10)->Range(10, 100000);

// The view holds a part of the road, so that the answers vary.
void BM_IsRectContainsPoint(benchmark::State& state) {
  const GeoRect view{{7.53, 47.4998}, {7.6, 47.6}};
  RunAlongTheRoad(state, [&](const GeoCoordinate& a, const GeoCoordinate&, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::IsRectContainsPoint(view, a);
  });
}
BENCHMARK(BM_IsRectContainsPoint);

void BM_IsRectIntersectsRect(benchmark::State& state) {
  const GeoRect view{{7.53, 47.4998}, {7.6, 47.6}};
  RunAlongTheRoad(state, [&](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::IsRectIntersectsRect(view, GeoRect{a, b});
  });
}
BENCHMARK(BM_IsRectIntersectsRect);

void BM_IsPointNearOtherOne(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::IsPointNearOtherOne(a, 30.0f, b);
  });
}
BENCHMARK(BM_IsPointNearOtherOne);

void BM_GetInsertPointFromSegment(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::GetInsertPointFromSegment(a, b, 0.3f);
  });
}
BENCHMARK(BM_GetInsertPointFromSegment);

void BM_GetInsertPointFromSegmentWithHeight(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::GetInsertPointFromSegment(
        GeoCoordinateZ(a.longitude, a.latitude, 12.5f), GeoCoordinateZ(b.longitude, b.latitude, 13.1f), 0.3f);
  });
}
BENCHMARK(BM_GetInsertPointFromSegmentWithHeight);

void BM_GetLinePoint(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::GetLinePoint(a, b, 5.0);
  });
}
BENCHMARK(BM_GetLinePoint);

void BM_GetFootPoint(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c) {
    return VorelGeometryAlgorithm::GetFootPoint(c, a, b);
  });
}
BENCHMARK(BM_GetFootPoint);

void BM_GetPositionOfPointToLine(benchmark::State& state) {
  RunAlongTheRoad(state, [](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c) {
    return VorelGeometryAlgorithm::GetPositionOfPointToLine(c, a, b);
  });
}
BENCHMARK(BM_GetPositionOfPointToLine);

// Argument: metres. Farther destinations take a round or two more.
void BM_ComputerThatLonLat(benchmark::State& state) {
  const double metres = static_cast<double>(state.range(0));
  RunAlongTheRoad(state, [metres](const GeoCoordinate& a, const GeoCoordinate&, const GeoCoordinate&) {
    GeoCoordinate reached;
    VorelGeometryAlgorithm::ComputerThatLonLat(a.longitude, a.latitude, 33.0, metres, reached.longitude,
                                               reached.latitude);
    return reached;
  });
}
BENCHMARK(BM_ComputerThatLonLat)->Arg(10)->Arg(10000)->Arg(10000000);

// Argument: degrees. Typical: a turn within one circle. Bad: thousands of turns, folded one by one.
void BM_RotatePoint(benchmark::State& state) {
  const double degrees = static_cast<double>(state.range(0));
  RunAlongTheRoad(state, [degrees](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate&) {
    return VorelGeometryAlgorithm::RotatePoint(b, a, degrees);
  });
}
BENCHMARK(BM_RotatePoint)->Arg(30)->Arg(3600000);

// Argument: the angle at the corner in degrees; at 60 a triangle closes, at 100 none does.
void BM_GetFixAngleForSidePoint(benchmark::State& state) {
  const double degrees = static_cast<double>(state.range(0));
  const GeoCoordinate corner{0.0, 0.0}, from{0.0, -0.0045};
  const std::vector<GeoCoordinate> line{{0.01, -0.00577}, corner};
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        VorelGeometryAlgorithm::GetFixAngleForSidePoint(line, from, corner, degrees, 500.0, true));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetFixAngleForSidePoint)->Arg(60)->Arg(100);

}  // namespace
