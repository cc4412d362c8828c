#ifndef VOREL_MAP_UTILS_INTERNAL_LANES_H_
#define VOREL_MAP_UTILS_INTERNAL_LANES_H_

// Two doubles at a time, with the vector extensions that g++ and clang++ share: SSE2 on x86-64 and NEON on ARM, both in
// every processor of their kind. Each lane is computed and rounded as a double by itself, so what is built of lanes
// has the bits of the same expression on doubles.

#include <cstring>

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

using TwoDoubles = double __attribute__((vector_size(16)));
/// What a comparison of `TwoDoubles` gives: all bits set in a lane where it holds.
using TwoFlags = decltype(TwoDoubles{} < TwoDoubles{});

inline TwoDoubles BothLanes(double value) {
  return TwoDoubles{value, value};
}

/// Longitude in the first lane, latitude in the second.
inline TwoDoubles LoadPoint(const tarvo::GeoCoordinate& point) {
  TwoDoubles lanes;
  std::memcpy(&lanes, &point, sizeof lanes);
  return lanes;
}

inline bool InAnyLane(TwoFlags flags) {
  return (flags[0] | flags[1]) != 0;
}
inline bool InEachLane(TwoFlags flags) {
  return (flags[0] & flags[1]) != 0;
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_LANES_H_
