#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_

#include <cstddef>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

/// Segments that a walk along a line measures at a time: enough to fill the vectors, few enough that a walk that ends
/// early has measured little in vain.
constexpr std::size_t kSegmentsPerBlock = 64;

/// Lengths of `segmentCount` segments in a row: lengths[i] is what points[i].DistanceTo(points[i + 1]) gives, to the
/// bit, in metres.
///
/// Several segments are measured at once with the very expressions of the scalar distance (base/geodesy/near_series.h);
/// a vector operation rounds each lane as the scalar one does, so the bits are the same. A block in which a segment is
/// not near or not valid goes to the scalar distance as a whole. The widest form that the machine has is chosen at the
/// first call.
///
/// @param points        segmentCount + 1 points, degrees, any values
/// @param segmentCount  0 .. kSegmentsPerBlock
/// @param lengths       room for segmentCount values
void SegmentLengths(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double* lengths);
void SegmentLengths(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double* lengths);

/// Visits the segments of a line in order with their lengths: visit(i, length of the segment from points[i] to
/// points[i + 1]) for i = first .. last - 1, until it returns false. At most one block of segments is measured beyond
/// the one at which the visit stops.
template <class Point, class Visit>
void WalkSegments(const Point* points, std::size_t first, std::size_t last, Visit visit) {
  double lengths[kSegmentsPerBlock];
  while (first < last) {
    const std::size_t count = last - first < kSegmentsPerBlock ? last - first : kSegmentsPerBlock;
    SegmentLengths(points + first, count, lengths);
    for (std::size_t i = 0; i < count; ++i) {
      if (!visit(first + i, lengths[i])) return;
    }
    first += count;
  }
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
