#include "base/strict_floating_point.h"

#include "map_utils/internal/segment_projection.h"

#include <atomic>
#include <cstddef>

#include "map_utils/internal/instruction_set.h"
#include "map_utils/internal/segment_projection_kernel.h"

namespace vorel {
namespace internal {

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

constexpr std::size_t kMostLanes = 4;

/// Null until the first call has chosen; every thread chooses the same.
std::atomic<MeasureSegmentsForm> currentForm{nullptr};

bool MeasureTwoAtATime(const GeoCoordinateZ* vertices, std::size_t segmentCount, const GeoCoordinate& pos,
                       double scale, double* ratios, double* distances) {
  return MeasureInLanes<TwoLanes>(vertices, segmentCount, pos, scale, ratios, distances);
}

}  // namespace

MeasureSegmentsForm FindMeasureSegments(std::size_t lanes) {
  if (lanes == 2) return MeasureTwoAtATime;
  if (lanes == kMostLanes && HasAvx2()) return Avx2MeasureSegments();
  return nullptr;
}

bool MeasureSegments(const GeoCoordinateZ* vertices, std::size_t segmentCount, const GeoCoordinate& pos,
                     double scale, double* ratios, double* distances) {
  if (segmentCount < 2) return false;
  MeasureSegmentsForm form = MeasureTwoAtATime;
  if (segmentCount >= kMostLanes) {
    form = currentForm.load(std::memory_order_relaxed);
    if (form == nullptr) {
      form = FindMeasureSegments(kMostLanes);
      if (form == nullptr) form = MeasureTwoAtATime;
      currentForm.store(form, std::memory_order_relaxed);
    }
  }
  return form(vertices, segmentCount, pos, scale, ratios, distances);
}

void ForceMeasureSegments(MeasureSegmentsForm form) {
  currentForm.store(form, std::memory_order_relaxed);
}

}  // namespace internal
}  // namespace vorel
