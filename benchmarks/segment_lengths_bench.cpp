// Cost per segment of measuring many segments in a row, for each form: one, two or four at a time. The short rows show
// from how many segments on a form pays.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "bench_lines.h"
#include "map_utils/internal/segment_lengths.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

std::vector<GeoCoordinateZ> RouteZ(std::int64_t vertexCount) {
  std::vector<GeoCoordinateZ> line;
  for (const GeoCoordinate& point : bench::Route(vertexCount)) {
    line.emplace_back(point.longitude, point.latitude, 500.0f);
  }
  return line;
}

/// Forces the form of as many lanes as the second argument says while it lives.
class ForcedForm {
 public:
  explicit ForcedForm(benchmark::State& state) {
    const auto* kernel = vorel::internal::FindSegmentKernel(static_cast<std::size_t>(state.range(1)));
    if (kernel == nullptr) state.SkipWithError("this machine does not have this form");
    vorel::internal::ForceSegmentKernel(kernel);
  }
  ~ForcedForm() { vorel::internal::ForceSegmentKernel(nullptr); }
  ForcedForm(const ForcedForm&) = delete;
  ForcedForm& operator=(const ForcedForm&) = delete;
};

template <class Point>
void Add(benchmark::State& state, const std::vector<Point>& line) {
  const ForcedForm form(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(vorel::internal::AddSegmentLengths(line.data(), line.size() - 1, 0.0));
  }
  state.SetItemsProcessed(state.iterations() * (state.range(0) - 1));
}

void BM_AddSegmentLengths(benchmark::State& state) {
  Add(state, bench::Route(state.range(0)));
}
BENCHMARK(BM_AddSegmentLengths)->ArgsProduct({{2, 3, 4, 5, 9, 10, 100, 10000}, {1, 2, 4}});

void BM_AddSegmentLengthsZ(benchmark::State& state) {
  Add(state, RouteZ(state.range(0)));
}
BENCHMARK(BM_AddSegmentLengthsZ)->ArgsProduct({{100, 10000}, {1, 2, 4}});

/// Every eighth segment is far: the bad case.
void BM_AddSegmentLengthsWithFarOnes(benchmark::State& state) {
  std::vector<GeoCoordinate> line = bench::Route(state.range(0));
  for (std::size_t i = 0; i < line.size(); ++i) line[i].latitude += 0.2 * static_cast<double>(i / 8 % 2);
  Add(state, line);
}
BENCHMARK(BM_AddSegmentLengthsWithFarOnes)->ArgsProduct({{10000}, {1, 2, 4}});

void BM_WalkSegments(benchmark::State& state) {
  const ForcedForm form(state);
  const std::vector<GeoCoordinate> line = bench::Route(state.range(0));
  for (auto _ : state) {
    double total = 0.0;
    vorel::internal::WalkSegments(line.data(), 0, line.size() - 1,
                                  [&total](std::size_t, std::size_t count, const double* lengths) {
                                    for (std::size_t i = 0; i < count; ++i) total = total + lengths[i];
                                    return true;
                                  });
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * (state.range(0) - 1));
}
BENCHMARK(BM_WalkSegments)->ArgsProduct({{2, 3, 4, 5, 10, 100, 10000}, {1, 2, 4}});

/// To a limit in the last segment; the short rows beside BM_AddSegmentLengths show what a walk costs beyond the lengths.
void BM_WalkSegmentsBelow(benchmark::State& state) {
  const ForcedForm form(state);
  const std::vector<GeoCoordinate> line = bench::Route(state.range(0));
  const double limit = vorel::internal::AddSegmentLengths(line.data(), line.size() - 1, 0.0) - 1e-6;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        vorel::internal::WalkSegmentsBelow(line.data(), line.size() - 1, 0.0, limit).passed);
  }
  state.SetItemsProcessed(state.iterations() * (state.range(0) - 1));
}
BENCHMARK(BM_WalkSegmentsBelow)->ArgsProduct({{2, 3, 4, 5, 10, 100, 10000}, {1, 2, 4}});

void BM_StoreSegmentSums(benchmark::State& state) {
  const ForcedForm form(state);
  const std::vector<GeoCoordinate> line = bench::Route(state.range(0));
  std::vector<double> sums(line.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        vorel::internal::StoreSegmentSums(line.data(), line.size() - 1, 0.0, sums.data()));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * (state.range(0) - 1));
}
BENCHMARK(BM_StoreSegmentSums)->ArgsProduct({{5, 10, 100, 10000}, {1, 2, 4}});

}  // namespace
