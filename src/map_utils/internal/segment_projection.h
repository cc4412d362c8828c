#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_H_

#include <cstddef>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

constexpr double kShortestSquaredLength = 1e-13;  // square degrees; a length of some 3 cm

/// Measures the distance of a position to each of `segmentCount` segments in a row, several at a time, with the bits of
/// `ProjectOntoSegment`, `ClampRatio` and `DistanceToSegment`.
/// @param vertices           one more than segments
/// @param segmentCount       at least as many as the form has lanes
/// @param scale              LongitudeScale(pos)
/// @param ratios, distances  clamped ratios of the closest points, and metres; written in any case
/// @return false where a segment is not near enough, or invalid: then they mean nothing, and the caller goes the plain way
using MeasureSegmentsForm = bool (*)(const tarvo::GeoCoordinateZ* vertices, std::size_t segmentCount,
                                     const tarvo::GeoCoordinate& pos, double scale, double* ratios,
                                     double* distances);

/// The same with the widest form of this machine, chosen at the first call, for any number of segments; false for one.
bool MeasureSegments(const tarvo::GeoCoordinateZ* vertices, std::size_t segmentCount,
                     const tarvo::GeoCoordinate& pos, double scale, double* ratios, double* distances);

/// The form with so many segments at a time, 2 or 4; null where this machine has none.
MeasureSegmentsForm FindMeasureSegments(std::size_t lanes);

/// For tests: what `MeasureSegments` uses from now on in every thread. Null: the widest form again.
void ForceMeasureSegments(MeasureSegmentsForm form);

/// The form for AVX2, where the compiler has it; null elsewhere. To be asked only on machines with AVX2.
MeasureSegmentsForm Avx2MeasureSegments();

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_PROJECTION_H_
