#include "base/strict_floating_point.h"

#include "map_utils/internal/segment_lengths.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>

#include "base/geodesy/distance.h"
#include "map_utils/internal/instruction_set.h"
#include "map_utils/internal/segment_lengths_kernel.h"

namespace vorel {
namespace internal {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::Distance;

__attribute__((noinline)) double CalledDistance(const GeoCoordinate& a, const GeoCoordinate& b) {
  return Distance(a, b);
}

namespace {

/// By a call, for the distance in place is long.
__attribute__((noinline)) void StoreOneByOne(const GeoCoordinate* points, std::size_t segmentCount,
                                             double* lengths) {
  for (std::size_t i = 0; i < segmentCount; ++i) lengths[i] = Distance(points[i], points[i + 1]);
}

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
std::size_t WalkNowhere(const Point*, std::size_t, double, LimitedWalk&) {
  return 0;
}
constexpr SegmentKernel kScalarKernel = {
    static_cast<std::size_t>(-1), StoreNone, StoreNoPairs, StoreNoSums, WalkNowhere<GeoCoordinate>,
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

std::size_t WalkNear(const SegmentKernel& kernel, const GeoCoordinate* points, std::size_t count,
                     double limit, LimitedWalk& walk) {
  return kernel.walk(points, count, limit, walk);
}
std::size_t WalkNear(const SegmentKernel& kernel, const GeoCoordinateZ* points, std::size_t count,
                     double limit, LimitedWalk& walk) {
  return kernel.walkZ(points, count, limit, walk);
}

// Where the kernel stops, one vector of segments goes to the scalar distance before the kernel goes on. A walk of a few
// segments goes there at once.

template <class Point>
inline LimitedWalk Walk(const Point* points, std::size_t segmentCount, double metres, double limit) {
  LimitedWalk walk{0, metres, kNoLength};
  std::size_t& i = walk.passed;
  while (i < segmentCount) {
    std::size_t resume = segmentCount;
    if (segmentCount >= kFewSegments) {
      const SegmentKernel& kernel = CurrentKernel();
      i += WalkNear(kernel, points + i, segmentCount - i, limit, walk);
      if (walk.nextLength != kNoLength) break;
      resume = i + std::min(segmentCount - i, kernel.lanes);
    }
    for (; i < resume; ++i) {
      const double length = Distance(points[i], points[i + 1]);
      const double reached = walk.metres + length;
      if (limit <= reached || std::isnan(reached)) {
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
    StoreOneByOne(points + i, resume - i, lengths + i);
    i = resume;
  }
}

void StorePairLengths(const GeoCoordinate* const* points, std::size_t pairCount, double* lengths) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < pairCount) {
    i += kernel.storePairLengths(points + 2 * i, pairCount - i, lengths + i);
    const std::size_t resume = i + std::min(pairCount - i, kernel.lanes);
    for (; i < resume; ++i) lengths[i] = CalledDistance(*points[2 * i], *points[2 * i + 1]);
  }
}

double StoreSegmentSums(const GeoCoordinate* points, std::size_t segmentCount, double metres, double* sums) {
  const SegmentKernel& kernel = CurrentKernel();
  std::size_t i = 0;
  while (i < segmentCount) {
    i += kernel.storeSums(points + i, segmentCount - i, metres, sums + i);
    // What that leaves is stored first and added up where it stands.
    const std::size_t stored = i + kernel.storeLengths(points + i, segmentCount - i, sums + i);
    const std::size_t resume = stored + std::min(segmentCount - stored, kernel.lanes);
    StoreOneByOne(points + stored, resume - stored, sums + stored);
    for (; i < resume; ++i) {
      metres = metres + sums[i];
      sums[i] = metres;
    }
  }
  return metres;
}

LimitedWalk WalkToLimit(const GeoCoordinate* points, std::size_t segmentCount, double metres, double limit) {
  return Walk(points, segmentCount, metres, limit);
}
LimitedWalk WalkToLimit(const GeoCoordinateZ* points, std::size_t segmentCount, double metres, double limit) {
  return Walk(points, segmentCount, metres, limit);
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
