#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/geo_coordinate.h"
#include "base/geodesy/distance.h"
#include "map_utils/internal/segment_kernel.h"

namespace vorel {
namespace internal {

// Lengths of many segments in a row, several measured at once. Each is what points[i].DistanceTo(points[i + 1]) gives,
// to the bit; how that comes about stands in segment_lengths_kernel.h. The widest form that the machine runs is chosen
// at the first call.

/// The distance of two points by a call, for all that is not measured in a tight loop: in place it takes some 400
/// bytes.
double CalledDistance(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b);

/// Below this number of segments a walk goes by the scalar distance alone, which is as fast.
constexpr std::size_t kFewSegments = 4;

/// Most segments that a walk measures at a time, and the number it begins with: a walk that ends early has measured
/// little in vain.
constexpr std::size_t kSegmentsPerBlock = 64;
constexpr std::size_t kSegmentsInFirstBlock = 8;

/// Walks that copy what they pass do so in runs: long enough that a walk seldom pauses, short enough that the vertices
/// are still in the nearest cache.
constexpr std::size_t kVerticesCopiedAtOnce = 512;

/// lengths[i] = length in metres of the segment from points[i] to points[i + 1], for i = 0 .. segmentCount - 1.
/// @param points  segmentCount + 1 points, degrees, any values
void StoreSegmentLengths(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double* lengths);

/// lengths[i] = metres from *points[2 * i] to *points[2 * i + 1], for i = 0 .. pairCount - 1.
/// @param points  2 * pairCount pointers to points, degrees, any values
void StorePairLengths(const tarvo::GeoCoordinate* const* points, std::size_t pairCount, double* lengths);

/// sums[i] = `metres` plus the lengths of the segments 0 .. i, added one by one in order.
/// @param points  segmentCount + 1 points, as in all that follow
/// @return the last sum; `metres` without a segment
double StoreSegmentSums(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double metres,
                        double* sums);

/// Walks along the segments until `metres` plus their lengths, added one by one in order, is not below `limit`; a limit
/// of NaN is never reached. A length of NaN ends the walk too. Where all segments are near it measures at most six
/// vectors of them in vain.
/// @param metres  where the walk begins; below the limit, or any value where that is NaN: then a walk that begins at NaN
///                may end in any segment
LimitedWalk WalkToLimit(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double metres,
                        double limit);
LimitedWalk WalkToLimit(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double metres,
                        double limit);

/// `length` plus the lengths of the segments, added one by one in order.
template <class Point>
inline double AddSegmentLengths(const Point* points, std::size_t segmentCount, double length) {
  const LimitedWalk walk =
      WalkToLimit(points, segmentCount, length, std::numeric_limits<double>::quiet_NaN());
  // Only a NaN ends it early, which the whole sum is then as well.
  return walk.passed == segmentCount ? walk.metres : walk.metres + walk.nextLength;
}

/// Walks along the segments while `limit` > `metres` plus their lengths, added one by one in order; a NaN, also of
/// `metres` or of the limit, ends it.
template <class Point>
inline LimitedWalk WalkSegmentsBelow(const Point* points, std::size_t segmentCount, double metres,
                                     double limit) {
  if (limit > metres) return WalkToLimit(points, segmentCount, metres, limit);
  // No length is negative: what is not below the limit before the first segment is not below it after that either.
  return {0, metres, segmentCount == 0 ? kNoLength : CalledDistance(points[0], points[1])};
}

/// Walks the segments of a line in order, a block at a time: visit(i, count, lengths) is told the lengths of `count`
/// segments, the first of which starts at points[i], for the segments from points[first] to points[last], until it
/// returns false. Each block is read before it is visited.
template <class Point, class Visit>
void WalkSegments(const Point* points, std::size_t first, std::size_t last, Visit visit) {
  double lengths[kSegmentsPerBlock];
  std::size_t blockSize = kSegmentsInFirstBlock;
  while (first < last) {
    const std::size_t count = std::min(last - first, blockSize);
    StoreSegmentLengths(points + first, count, lengths);
    if (!visit(first, count, static_cast<const double*>(lengths))) return;
    first += count;
    blockSize = std::min(2 * blockSize, kSegmentsPerBlock);
  }
}

/// The forms by the number of segments they measure at once: 1 is the scalar distance, 2 SSE2 or NEON, 4 AVX2.
/// Null for one that the machine does not have.
const SegmentKernel* FindSegmentKernel(std::size_t lanes);

/// For tests and benchmarks: measures with this form from now on; null lets the library choose again.
void ForceSegmentKernel(const SegmentKernel* kernel);

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
