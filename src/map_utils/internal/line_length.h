#ifndef VOREL_MAP_UTILS_INTERNAL_LINE_LENGTH_H_
#define VOREL_MAP_UTILS_INTERNAL_LINE_LENGTH_H_

#include <cstddef>

#include "map_utils/internal/segment_lengths.h"

namespace vorel {
namespace internal {

/// `length` plus the metres from vertex `first` to vertex `last` (inclusive) of an array of points: the segments'
/// distances, added one by one in order. Nothing is read when `first` >= `last`. Heights take no part.
template <class Point>
inline double LineLength(const Point* points, std::size_t first, std::size_t last, double length = 0.0) {
  if (first >= last) return length;
  return AddSegmentLengths(points + first, last - first, length);
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_LINE_LENGTH_H_
