#ifndef VOREL_TESTS_SUPPORT_COUNTED_DISTANCES_BASE_GEODESY_DISTANCE_H_
#define VOREL_TESTS_SUPPORT_COUNTED_DISTANCES_BASE_GEODESY_DISTANCE_H_

// Takes the place of base/geodesy/distance.h where its folder comes first on the include path: the same distance, which
// is inlined into the library everywhere and so cannot be replaced by the linker, counted at each evaluation.

#include <cstddef>

// What the header behind includes, before its function is renamed.
#include <cmath>

#include "base/export.h"
#include "base/geo_coordinate.h"
#include "base/geodesy/near_series.h"

#define Distance UncountedDistance
#include "../../../../../base/geodesy/distance.h"
#undef Distance

namespace vorel::test {

/// Distances evaluated by the library in this program so far, on any line and in any form.
inline std::size_t evaluatedDistances = 0;

}  // namespace vorel::test

namespace tarvo {
namespace geodesy {

inline double Distance(const GeoCoordinate& a, const GeoCoordinate& b) {
  ++vorel::test::evaluatedDistances;
  return UncountedDistance(a, b);
}

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_TESTS_SUPPORT_COUNTED_DISTANCES_BASE_GEODESY_DISTANCE_H_
