#include "base/strict_floating_point.h"

#include "map_utils/internal/segment_lengths.h"

#include <algorithm>
#include <atomic>
#include <cstddef>

#include "base/geodesy/distance.h"
#include "map_utils/internal/instruction_set.h"
#include "map_utils/internal/segment_lengths_kernel.h"

namespace vorel {
namespace internal {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

// One segment at a time: the whole line is left to the scalar distance.
template <class Point>
std::size_t StoreNone(const Point*, std::size_t, double*) {
  return 0;
}
template <class Point>
std::size_t AddNone(const Point*, std::size_t, double&) {
  return 0;
}
constexpr SegmentKernel kScalarKernel = {static_cast<std::size_t>(-1), StoreNone<GeoCoordinate>,
                                         StoreNone<GeoCoordinateZ>, AddNone<GeoCoordinate>,
                                         AddNone<GeoCoordinateZ>};

constexpr SegmentKernel kTwoLanesKernel = MakeSegmentKernel<TwoLanes>();

/// Null until the first call has chosen; every thread chooses the same.
std::atomic<const SegmentKernel*> currentKernel{nullptr};

const SegmentKernel* ChooseKernel() {
  const SegmentKernel* best = FindSegmentKernel(4);
  if (best == nullptr) best = FindSegmentKernel(2);
  currentKernel.store(best, std::memory_order_relaxed);
  return best;
}

inline const SegmentKernel& CurrentKernel() {
  const SegmentKernel* kernel = currentKernel.load(std::memory_order_relaxed);
  return kernel != nullptr ? *kernel : *ChooseKernel();
}

std::size_t StoreNear(const SegmentKernel& kernel, const GeoCoordinate* points, std::size_t count,
                      double* lengths) {
  return kernel.storeLengths(points, count, lengths);
}
std::size_t StoreNear(const SegmentKernel& kernel, const GeoCoordinateZ* points, std::size_t count,
                      double* lengths) {
  return kernel.storeLengthsZ(points, count, lengths);
}
std::size_t AddNear(const SegmentKernel& kernel, const GeoCoordinate* points, std::size_t count,
                    double& length) {
  return kernel.addLengths(points, count, length);
}
std::size_t AddNear(const SegmentKernel& kernel, const GeoCoordinateZ* points, std::size_t count,
                    double& length) {
  return kernel.addLengthsZ(points, count, length);
}

/// Where the kernel stops, one vector of segments goes to the scalar distance before the kernel goes on.
template <class Point>
void Store(const Point* points, std::size_t segmentCount, double* lengths) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += StoreNear(kernel, points + i, segmentCount - i, lengths + i);
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) lengths[i] = tarvo::geodesy::Distance(points[i], points[i + 1]);
  }
}

template <class Point>
double Add(const Point* points, std::size_t segmentCount, double length) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += AddNear(kernel, points + i, segmentCount - i, length);
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) length = length + tarvo::geodesy::Distance(points[i], points[i + 1]);
  }
  return length;
}

}  // namespace

void StoreSegmentLengths(const GeoCoordinate* points, std::size_t segmentCount, double* lengths) {
  Store(points, segmentCount, lengths);
}
void StoreSegmentLengths(const GeoCoordinateZ* points, std::size_t segmentCount, double* lengths) {
  Store(points, segmentCount, lengths);
}

double AddSegmentLengths(const GeoCoordinate* points, std::size_t segmentCount, double length) {
  return Add(points, segmentCount, length);
}
double AddSegmentLengths(const GeoCoordinateZ* points, std::size_t segmentCount, double length) {
  return Add(points, segmentCount, length);
}

const SegmentKernel* FindSegmentKernel(std::size_t lanes) {
  if (lanes == 1) return &kScalarKernel;
  if (lanes == 2) return &kTwoLanesKernel;
  if (lanes == 4 && HasAvx2()) return Avx2SegmentKernel();
  return nullptr;
}

void ForceSegmentKernel(const SegmentKernel* kernel) {
  currentKernel.store(kernel, std::memory_order_relaxed);
}

}  // namespace internal
}  // namespace vorel
