#ifndef VOREL_MAP_UTILS_INTERNAL_POLYGON_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_POLYGON_KERNEL_H_

// Point in polygon, several edges at a time; written once for every width of vector.
//
// A polygon contains a point that lies on an edge or vertex, and else by the parity of the crossings: the order of the
// edges does not matter. So the edges go through the lanes without a branch, each by the expressions of `PointRayTest`
// and therefore with its bits, and blocks of edges that can neither take part nor touch the point are passed over. The
// last lanes reach back over edges that were tested before, which find the same once more; only they must not cross twice.
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
  VOREL_LANES_INLINE PolygonSide Locate(const tarvo::GeoCoordinate* polygon, std::size_t vertexCount,
                                        const tarvo::GeoCoordinate& point) {
    if (vertexCount > kVerticesTestedWhole) return LocateInLarge(polygon, vertexCount, point);
    PolygonKernel kernel(point);
    if (vertexCount < Lanes::kCount) {
      kernel.TestFewEdges(polygon, vertexCount);
    } else {
      kernel.TestRest(polygon, 0, vertexCount);
    }
    return kernel.Result();
  }

 private:
  using Point = tarvo::GeoCoordinate;
  using Doubles = typename Lanes::Doubles;
  using Flags = typename Lanes::Flags;

  /// A small polygon is sooner tested than looked at.
  static constexpr std::size_t kVerticesTestedWhole = 16;
  static constexpr std::size_t kEdgesPerBlock = 8;

  // Apart, so that what it saves and restores costs a small polygon nothing.
  __attribute__((noinline)) static PolygonSide LocateInLarge(const Point* polygon, std::size_t vertexCount,
                                                             const Point& point) {
    PolygonKernel kernel(point);
    std::size_t i = 0;
    for (; i + kEdgesPerBlock < vertexCount; i += kEdgesPerBlock) {
      if (kernel.IsBlockOnOneSide(polygon + i)) continue;
      for (std::size_t k = i; k < i + kEdgesPerBlock; k += Lanes::kCount) kernel.TestEdges(polygon + k);
    }
    kernel.TestRest(polygon, i, vertexCount);
    return kernel.Result();
  }

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

  /// The edges from vertex `first` on, which are at least one; edge i joins the vertices i and i + 1.
  VOREL_LANES_METHOD void TestRest(const Point* polygon, std::size_t first, std::size_t vertexCount) {
    std::size_t i = first;
    for (; i + Lanes::kCount < vertexCount; i += Lanes::kCount) TestEdges(polygon + i);
    TestLastEdges(polygon, i, vertexCount);
  }

  /// The edges from each of kCount vertices in a row to the next one.
  VOREL_LANES_METHOD void TestEdges(const Point* vertices) {
    Doubles aX, aY, bX, bY;
    Lanes::Load(vertices, aX, aY);
    Lanes::Load(vertices + 1, bX, bY);
    Test(aX, aY, bX, bY, Spans(aY, bY));
  }

  /// The last kCount edges, of which those before `first` are tested already: they must not cross twice.
  VOREL_LANES_METHOD void TestLastEdges(const Point* polygon, std::size_t first, std::size_t vertexCount) {
    const Point* start = polygon + (vertexCount - Lanes::kCount);
    const Point* next[Lanes::kCount];
    for (std::size_t k = 0; k + 1 < Lanes::kCount; ++k) next[k] = start + k + 1;
    next[Lanes::kCount - 1] = polygon;
    Doubles aX, aY, bX, bY;
    Lanes::Load(start, aX, aY);
    Lanes::Gather(next, bX, bY);
    Test(aX, aY, bX, bY, Spans(aY, bY) & Lanes::PointsFrom(first + Lanes::kCount - vertexCount));
  }

  /// A polygon of fewer edges than lanes; those left over get vertex 0 as an edge without length.
  VOREL_LANES_METHOD void TestFewEdges(const Point* polygon, std::size_t vertexCount) {
    const Point* vertices[Lanes::kCount + 1];
    for (std::size_t k = 0; k <= Lanes::kCount; ++k) vertices[k] = polygon + (k < vertexCount ? k : 0);
    Doubles aX, aY, bX, bY;
    Lanes::Gather(vertices, aX, aY);
    Lanes::Gather(vertices + 1, bX, bY);
    Test(aX, aY, bX, bY, Spans(aY, bY));
  }

  /// One end below and the other one not. That is the span without its lower end but for a NaN latitude, whose crossing
  /// is NaN and fails all comparisons of it.
  VOREL_LANES_METHOD Flags Spans(Doubles aY, Doubles bY) const {
    return Lanes::Less(aY, latitude_) ^ Lanes::Less(bY, latitude_);
  }

  /// The edges from (aX, aY) to (bX, bY), and their starts.
  VOREL_LANES_METHOD void Test(Doubles aX, Doubles aY, Doubles bX, Doubles bY, Flags spans) {
    const Doubles rise = bY - aY;
    const Doubles crossing = (bX - aX) * ((latitude_ - aY) / rise) + aX;
    onBoundary_ |= Lanes::Equal(aX, longitude_) & Lanes::Equal(aY, latitude_);
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
    return Lanes::Less(Lanes::Size(value), Lanes::All(kEdgeTolerance));
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
