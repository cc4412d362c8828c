#ifndef VOREL_MAP_UTILS_INTERNAL_POLYGON_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_POLYGON_KERNEL_H_

// Point in polygon, several edges at a time; written once for every width of vector.
//
// A polygon contains a point that lies on an edge or vertex, and else by the parity of the crossings: the order of the
// edges does not matter. So the edges go through the lanes without a branch, each by the expressions of `PointRayTest`
// and therefore with its bits, and blocks of edges that can neither take part nor touch the point are passed over.
//
// Included by sources that are compiled for one instruction set each; internal linkage as in lanes.h.

#include <cstddef>

#include "base/geo_coordinate.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/polygon.h"

namespace vorel {
namespace internal {
namespace {

template <class Lanes>
class PolygonKernel {
 public:
  static PolygonSide Locate(const tarvo::GeoCoordinate* polygon, std::size_t vertexCount,
                            const tarvo::GeoCoordinate& point) {
    PolygonKernel kernel(point);
    std::size_t i = 0;
    // Edge i joins the vertices i and i + 1. A small polygon is sooner tested than looked at.
    if (vertexCount > kVerticesTestedWhole) {
      for (; i + kEdgesPerBlock < vertexCount; i += kEdgesPerBlock) {
        if (kernel.IsBlockOnOneSide(polygon + i)) continue;
        for (std::size_t k = i; k < i + kEdgesPerBlock; k += Lanes::kCount) kernel.TestEdges(polygon + k);
      }
    }
    for (; i + Lanes::kCount < vertexCount; i += Lanes::kCount) kernel.TestEdges(polygon + i);
    kernel.TestLastEdges(polygon, i, vertexCount);
    return kernel.Result();
  }

 private:
  using Point = tarvo::GeoCoordinate;
  using Doubles = typename Lanes::Doubles;
  using Flags = typename Lanes::Flags;

  static constexpr std::size_t kEdgesPerBlock = 8;
  static constexpr std::size_t kVerticesTestedWhole = 16;

  explicit VOREL_LANES_METHOD PolygonKernel(const Point& point)
      : longitude_(Lanes::All(point.longitude)), latitude_(Lanes::All(point.latitude)) {}

  /// Whether the vertices of a block of edges, that at the end of its last edge included, all lie above the point or
  /// all below: no edge then spans its latitude, and no vertex equals it. A NaN latitude is passed over: such a vertex
  /// equals no point, and neither of its edges takes part.
  VOREL_LANES_METHOD bool IsBlockOnOneSide(const Point* block) const {
    Doubles lowest = Lanes::All(block[kEdgesPerBlock].latitude);
    Doubles highest = lowest;
    for (std::size_t i = 0; i < kEdgesPerBlock; i += Lanes::kCount) {
      const Doubles latitudes = Lanes::LoadLatitudes(block + i);
      lowest = Lanes::Smaller(latitudes, lowest);
      highest = Lanes::Larger(latitudes, highest);
    }
    return Lanes::InEach(Lanes::Less(latitude_, lowest)) || Lanes::InEach(Lanes::Less(highest, latitude_));
  }

  /// The edges from each of kCount vertices in a row to the next one.
  VOREL_LANES_METHOD void TestEdges(const Point* vertices) {
    Doubles aX, aY, bX, bY;
    Lanes::Load(vertices, aX, aY);
    Lanes::Load(vertices + 1, bX, bY);
    Test(aX, aY, bX, bY);
  }

  /// The last one to kCount edges, from vertex `first` on; lanes left over get vertex 0 as an edge without length.
  VOREL_LANES_METHOD void TestLastEdges(const Point* polygon, std::size_t first, std::size_t vertexCount) {
    const Point* vertices[Lanes::kCount + 1];
    for (std::size_t k = 0; k <= Lanes::kCount; ++k) {
      vertices[k] = polygon + (first + k < vertexCount ? first + k : 0);
    }
    Doubles aX, aY, bX, bY;
    Lanes::Gather(vertices, aX, aY);
    Lanes::Gather(vertices + 1, bX, bY);
    Test(aX, aY, bX, bY);
  }

  /// The edges from (aX, aY) to (bX, bY), and their starts.
  VOREL_LANES_METHOD void Test(Doubles aX, Doubles aY, Doubles bX, Doubles bY) {
    onBoundary_ |= Lanes::Equal(aX, longitude_) & Lanes::Equal(aY, latitude_);
    // One end below and the other one not. That is the span without its lower end but for a NaN latitude, whose
    // crossing is NaN and fails all comparisons below.
    const Flags spans = Lanes::Less(aY, latitude_) ^ Lanes::Less(bY, latitude_);
    const Doubles rise = bY - aY;
    const Doubles crossing = (bX - aX) * ((latitude_ - aY) / rise) + aX;
    nearlyHorizontal_ |= spans & IsBelowTolerance(rise);
    onBoundary_ |= spans & IsBelowTolerance(longitude_ - crossing);
    isCrossedOddly_ ^= spans & Lanes::Less(longitude_, crossing);
  }

  VOREL_LANES_METHOD PolygonSide Result() const {
    if (Lanes::InAny(nearlyHorizontal_)) return PolygonSide::kUndecided;
    return Lanes::InAny(onBoundary_) || Lanes::InOddNumber(isCrossedOddly_) ? PolygonSide::kInside
                                                                            : PolygonSide::kOutside;
  }

  VOREL_LANES_INLINE Flags IsBelowTolerance(Doubles value) {
    return Lanes::Less(value, Lanes::All(kEdgeTolerance)) & Lanes::Less(Lanes::All(-kEdgeTolerance), value);
  }

  Doubles longitude_;
  Doubles latitude_;
  Flags onBoundary_{};
  Flags nearlyHorizontal_{};
  Flags isCrossedOddly_{};
};

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_POLYGON_KERNEL_H_
