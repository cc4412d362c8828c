#ifndef VOREL_MAP_UTILS_INTERNAL_POLYGON_H_
#define VOREL_MAP_UTILS_INTERNAL_POLYGON_H_

#include <atomic>
#include <cstddef>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

/// An edge that rises or falls less, or a point that lies nearer to an edge, gets a rule of its own: degrees, some 11 mm.
constexpr double kEdgeTolerance = 1e-7;

/// Where a point lies; the boundary is inside. Undecided: a nearly horizontal edge spans its latitude, which calls for the
/// walk edge by edge.
enum class PolygonSide { kOutside, kInside, kUndecided };

/// Finds the side on which `point` lies of the polygon of `vertexCount` >= 3 vertices, several edges at a time.
using LocateInPolygon = PolygonSide (*)(const tarvo::GeoCoordinate* polygon, std::size_t vertexCount,
                                        const tarvo::GeoCoordinate& point);

/// The form with so many edges at a time, 2 or 4; null where this machine has none.
LocateInPolygon FindLocateInPolygon(std::size_t lanes);

/// Chooses the widest form of this machine, for all calls from now on.
LocateInPolygon ChooseLocateInPolygon();

/// Null until the first call has chosen; every thread chooses the same.
extern std::atomic<LocateInPolygon> currentLocateInPolygon;

/// The widest form of this machine, chosen at the first call.
inline LocateInPolygon BestLocateInPolygon() {
  const LocateInPolygon form = currentLocateInPolygon.load(std::memory_order_relaxed);
  return form != nullptr ? form : ChooseLocateInPolygon();
}

/// For tests: what `BestLocateInPolygon` gives from now on in every thread. Null: the widest form again.
void ForceLocateInPolygon(LocateInPolygon form);

/// The form for AVX2, where the compiler has it; null elsewhere. To be asked only on machines with AVX2.
LocateInPolygon Avx2LocateInPolygon();

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_POLYGON_H_
