#ifndef VOREL_MAP_UTILS_INTERNAL_SEGMENT_KERNEL_H_
#define VOREL_MAP_UTILS_INTERNAL_SEGMENT_KERNEL_H_

// What the sources that measure segments for one instruction set each have in common with the one that chooses among
// them. Includes nothing with code of its own, which would be compiled for another instruction set.

#include <cstddef>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

/// How far a walk came along a row of segments.
struct LimitedWalk {
  std::size_t passed;  ///< segments walked whole
  double metres;       ///< where the walk began, plus the lengths of those
  double nextLength;   ///< length of the segment in which the walk ended; means nothing when all were passed
};

/// Stands for a length that was not measured; no distance is negative.
constexpr double kNoLength = -1.0;

/// One way to measure. Its functions measure the leading segments, whole vectors at a time, stop before the first
/// vector in which a segment is not near, and return the number measured; with none left over when all are near and
/// there is a whole vector of them.
struct SegmentKernel {
  std::size_t lanes;  ///< segments of one vector
  std::size_t (*storeLengths)(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double* lengths);
  /// Of the segments from *points[2 * i] to *points[2 * i + 1].
  std::size_t (*storePairLengths)(const tarvo::GeoCoordinate* const* points, std::size_t segmentCount,
                                  double* lengths);
  /// Begins and ends with `metres`. Leaves some segments at the end, and a short row of them altogether.
  std::size_t (*storeSums)(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double& metres,
                           double* sums);
  /// Adds to walk.metres. Stops also at the first segment with which the sum is at or beyond the limit, and leaves the
  /// length of that one in walk.nextLength, which it does not touch otherwise. A sum of NaN is beyond no limit, and
  /// nothing is beyond a limit of NaN.
  std::size_t (*walk)(const tarvo::GeoCoordinate* points, std::size_t segmentCount, double limit,
                      LimitedWalk& walk);
  std::size_t (*walkZ)(const tarvo::GeoCoordinateZ* points, std::size_t segmentCount, double limit,
                       LimitedWalk& walk);
};

/// The form for machines with AVX2, null where it was not compiled; callers ask the machine first.
const SegmentKernel* Avx2SegmentKernel();

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_SEGMENT_KERNEL_H_
