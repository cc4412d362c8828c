#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_KERNEL_H_

// The distances of a position to several segments at once, written once for every width of vector.
//
// Lane by lane these are the expressions of the plain projection and of the near series of the plain distance, rounded one
// by one. Only near pairs are measured so: the test is that of the segment lengths, which a NaN or an infinity fails.
//
// Included by sources that are compiled for one instruction set each; internal linkage as in lanes.h.

#include <cstddef>

#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/segment_lengths_kernel.h"
#include "map_utils/internal/segment_projection.h"

namespace vorel {
namespace internal {
namespace {

/// @param segmentCount  at least Lanes::kCount
template <class Lanes>
VOREL_LANES_INLINE bool MeasureInLanes(const tarvo::GeoCoordinateZ* vertices, std::size_t segmentCount,
                                       const tarvo::GeoCoordinate& pos, double scale, double* ratios,
                                       double* distances) {
  using Doubles = typename Lanes::Doubles;
  using Flags = typename Lanes::Flags;
  const Doubles posLongitude = Lanes::All(pos.longitude);
  const Doubles posLatitude = Lanes::All(pos.latitude);
  const std::size_t last = segmentCount - Lanes::kCount;
  Flags isEachNear = Lanes::Equal(Lanes::All(0.0), Lanes::All(0.0));
  for (std::size_t k = 0;;) {
    Doubles startLongitude, startLatitude, endLongitude, endLatitude;
    Lanes::LoadInOrder(vertices + k, startLongitude, startLatitude);
    Lanes::LoadInOrder(vertices + k + 1, endLongitude, endLatitude);
    const Doubles longitudes = endLongitude - startLongitude;
    const Doubles alongLongitude = longitudes * scale;
    const Doubles alongLatitude = endLatitude - startLatitude;
    const Doubles squaredLength = alongLongitude * alongLongitude + alongLatitude * alongLatitude;
    const Doubles anyRatio = (alongLongitude * (scale * (posLongitude - startLongitude)) +
                              (posLatitude - startLatitude) * alongLatitude) /
                             squaredLength;
    // 0 for a degenerate segment, whose length says nothing.
    const Flags isDegenerate = Lanes::Less(squaredLength, Lanes::All(kShortestSquaredLength));
    const Doubles ratio = reinterpret_cast<Doubles>(reinterpret_cast<Flags>(anyRatio) & ~isDegenerate);
    const Doubles clampedRatio = Lanes::Smaller(Lanes::All(1.0), Lanes::Larger(Lanes::All(0.0), ratio));
    const Doubles closestLatitude = startLatitude + clampedRatio * alongLatitude;
    const Doubles toLongitude = posLongitude - (startLongitude + clampedRatio * longitudes);
    const Doubles toLatitude = posLatitude - closestLatitude;
    const Doubles latitudeSum = closestLatitude + posLatitude;
    isEachNear &=
        Lanes::LessOrEqual(toLatitude * toLatitude + toLongitude * toLongitude, Lanes::All(kNearSquare)) &
        Lanes::LessOrEqual(latitudeSum * latitudeSum, Lanes::All(kLatitudeSumSquare));
    const Doubles distance =
        Lanes::SquareRoot(tarvo::geodesy::NearSquaredDistance<Doubles>(toLatitude, toLongitude, latitudeSum));
    __builtin_memcpy(ratios + k, &clampedRatio, sizeof clampedRatio);
    __builtin_memcpy(distances + k, &distance, sizeof distance);
    if (k == last) return Lanes::InEach(isEachNear);
    // The last vector reaches back over segments that were measured before: they give the same once more.
    k = k + Lanes::kCount < last ? k + Lanes::kCount : last;
  }
}

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_KERNEL_H_
