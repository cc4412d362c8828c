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
using tarvo::geodesy::Distance;

namespace {

// One segment at a time: the whole line is left to the scalar distance.
std::size_t StoreNone(const GeoCoordinate*, std::size_t, double*) {
  return 0;
}
std::size_t StoreNoPairs(const GeoCoordinate* const*, std::size_t, double*) {
  return 0;
}
std::size_t StoreNoSums(const GeoCoordinate*, std::size_t, double&, double*) {
  return 0;
}
template <class Point>
std::size_t AddNone(const Point*, std::size_t, double&) {
  return 0;
}
template <class Point>
std::size_t WalkNowhere(const Point*, std::size_t, double, LimitedWalk&) {
  return 0;
}
constexpr SegmentKernel kScalarKernel = {static_cast<std::size_t>(-1),
                                         StoreNone,
                                         StoreNoPairs,
                                         StoreNoSums,
                                         AddNone<GeoCoordinate>,
                                         AddNone<GeoCoordinateZ>,
                                         WalkNowhere<GeoCoordinate>,
                                         WalkNowhere<GeoCoordinateZ>};

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

std::size_t AddNear(const SegmentKernel& kernel, const GeoCoordinate* points, std::size_t count,
                    double& metres) {
  return kernel.addLengths(points, count, metres);
}
std::size_t AddNear(const SegmentKernel& kernel, const GeoCoordinateZ* points, std::size_t count,
                    double& metres) {
  return kernel.addLengthsZ(points, count, metres);
}
std::size_t WalkNear(const SegmentKernel& kernel, const GeoCoordinate* points, std::size_t count,
                     double limit, LimitedWalk& walk) {
  return kernel.walkBelow(points, count, limit, walk);
}
std::size_t WalkNear(const SegmentKernel& kernel, const GeoCoordinateZ* points, std::size_t count,
                     double limit, LimitedWalk& walk) {
  return kernel.walkBelowZ(points, count, limit, walk);
}

// Where the kernel stops, one vector of segments goes to the scalar distance before the kernel goes on.

template <class Point>
double Add(const Point* points, std::size_t segmentCount, double length) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += AddNear(kernel, points + i, segmentCount - i, length);
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) length = length + Distance(points[i], points[i + 1]);
  }
  return length;
}

template <class Point>
LimitedWalk WalkBelow(const Point* points, std::size_t segmentCount, double metres, double limit) {
  const SegmentKernel& kernel = CurrentKernel();
  LimitedWalk walk{0, metres, kNoLength};
  std::size_t& i = walk.passed;
  while (i < segmentCount) {
    i += WalkNear(kernel, points + i, segmentCount - i, limit, walk);
    if (walk.nextLength != kNoLength) break;
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) {
      const double length = Distance(points[i], points[i + 1]);
      const double reached = walk.metres + length;
      if (!(limit > reached)) {
        walk.nextLength = length;
        return walk;
      }
      walk.metres = reached;
    }
  }
  return walk;
}

}  // namespace

void StoreSegmentLengths(const GeoCoordinate* points, std::size_t segmentCount, double* lengths) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += kernel.storeLengths(points + i, segmentCount - i, lengths + i);
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) lengths[i] = Distance(points[i], points[i + 1]);
  }
}

void StorePairLengths(const GeoCoordinate* const* points, std::size_t pairCount, double* lengths) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < pairCount) {
    i += kernel.storePairLengths(points + 2 * i, pairCount - i, lengths + i);
    const std::size_t resume = i + std::min(pairCount - i, kernel.lanes);
    for (; i < resume; ++i) lengths[i] = Distance(*points[2 * i], *points[2 * i + 1]);
  }
}

double StoreSegmentSums(const GeoCoordinate* points, std::size_t segmentCount, double metres, double* sums) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += kernel.storeSums(points + i, segmentCount - i, metres, sums + i);
    const std::size_t resume = i + std::min(segmentCount - i, kernel.lanes);
    for (; i < resume; ++i) {
      metres = metres + Distance(points[i], points[i + 1]);
      sums[i] = metres;
    }
  }
  return metres;
}

double AddSegmentLengths(const GeoCoordinate* points, std::size_t segmentCount, double length) {
  return Add(points, segmentCount, length);
}
double AddSegmentLengths(const GeoCoordinateZ* points, std::size_t segmentCount, double length) {
  return Add(points, segmentCount, length);
}

LimitedWalk WalkManySegmentsBelow(const GeoCoordinate* points, std::size_t segmentCount, double metres,
                                  double limit) {
  return WalkBelow(points, segmentCount, metres, limit);
}
LimitedWalk WalkManySegmentsBelow(const GeoCoordinateZ* points, std::size_t segmentCount, double metres,
                                  double limit) {
  return WalkBelow(points, segmentCount, metres, limit);
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
