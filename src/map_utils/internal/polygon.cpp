#include "base/strict_floating_point.h"

#include "map_utils/internal/polygon.h"

#include <atomic>
#include <cstddef>

#include "map_utils/internal/instruction_set.h"
#include "map_utils/internal/polygon_kernel.h"

namespace vorel {
namespace internal {

namespace {

/// Null until the first call has chosen; every thread chooses the same.
std::atomic<LocateInPolygon> current{nullptr};

}  // namespace

LocateInPolygon FindLocateInPolygon(std::size_t lanes) {
  if (lanes == 2) return PolygonKernel<TwoLanes>::Locate;
  if (lanes == 4 && HasAvx2()) return Avx2LocateInPolygon();
  return nullptr;
}

LocateInPolygon BestLocateInPolygon() {
  LocateInPolygon form = current.load(std::memory_order_relaxed);
  if (form != nullptr) return form;
  form = FindLocateInPolygon(4);
  if (form == nullptr) form = FindLocateInPolygon(2);
  current.store(form, std::memory_order_relaxed);
  return form;
}

void ForceLocateInPolygon(LocateInPolygon form) {
  current.store(form, std::memory_order_relaxed);
}

}  // namespace internal
}  // namespace vorel
