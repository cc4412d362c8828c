#include "base/strict_floating_point.h"

#include "map_utils/internal/polygon.h"

#include <atomic>
#include <cstddef>

#include "map_utils/internal/instruction_set.h"
#include "map_utils/internal/polygon_kernel.h"

namespace vorel {
namespace internal {

namespace {

PolygonSide LocateTwoAtATime(const tarvo::GeoCoordinate* polygon, std::size_t vertexCount,
                             const tarvo::GeoCoordinate& point) {
  return PolygonKernel<TwoLanes>::Locate(polygon, vertexCount, point);
}

}  // namespace

std::atomic<LocateInPolygon> currentLocateInPolygon{nullptr};

LocateInPolygon FindLocateInPolygon(std::size_t lanes) {
  if (lanes == 2) return LocateTwoAtATime;
  if (lanes == 4 && HasAvx2()) return Avx2LocateInPolygon();
  return nullptr;
}

LocateInPolygon ChooseLocateInPolygon() {
  LocateInPolygon form = FindLocateInPolygon(4);
  if (form == nullptr) form = FindLocateInPolygon(2);
  currentLocateInPolygon.store(form, std::memory_order_relaxed);
  return form;
}

void ForceLocateInPolygon(LocateInPolygon form) {
  currentLocateInPolygon.store(form, std::memory_order_relaxed);
}

}  // namespace internal
}  // namespace vorel
