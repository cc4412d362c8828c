#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_

#include <algorithm>
#include <cstddef>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

// Lengths of many segments in a row, several measured at once. Each is what points[i].DistanceTo(points[i + 1]) gives,
// to the bit; how that comes about stands in segment_lengths_kernel.h. The widest form that the machine runs is chosen
// at the first call.

/// Below this number of segments a plain loop over the scalar distance is as fast.
constexpr std::size_t kFewSegments = 4;

/// Most segments that a walk measures at a time, and the number it begins with: a walk that ends early has measured
/// little in vain.
constexpr std::size_t kSegmentsPerBlock = 64;
constexpr std::size_t kSegmentsInFirstBlock = 8;

/// lengths[i] = length in metres of the segment from points[i] to points[i + 1], for i = 0 .. segmentCount - 1.
/// @param points  segmentCount + 1 points, degrees, any values
void StoreSegmentLengths(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double* lengths);
void StoreSegmentLengths(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double* lengths);

/// `length` plus the lengths of the segments, added one by one in order.
/// @param points  segmentCount + 1 points, degrees, any values
double AddSegmentLengths(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double length);
double AddSegmentLengths(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double length);

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

/// One way to measure. Its functions measure the leading segments, whole vectors at a time, stop before the first
/// vector in which a segment is not near, and return the number measured; with none left over when all are near and
/// there is a whole vector of them.
struct SegmentKernel {
  std::size_t lanes;  ///< segments of one vector
  std::size_t (*storeLengths)(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double* lengths);
  std::size_t (*storeLengthsZ)(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount,
                               double* lengths);
  std::size_t (*addLengths)(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double& length);
  std::size_t (*addLengthsZ)(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double& length);
};

/// The forms by the number of segments they measure at once: 1 is the scalar distance, 2 SSE2 or NEON, 4 AVX2.
/// Null for one that the machine does not have.
const SegmentKernel* FindSegmentKernel(std::size_t lanes);

/// For tests and benchmarks: measures with this form from now on; null lets the library choose again.
void ForceSegmentKernel(const SegmentKernel* kernel);

/// The form for machines with AVX2, null where it was not compiled; callers ask the machine first.
const SegmentKernel* Avx2SegmentKernel();

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_LENGTHS_H_
