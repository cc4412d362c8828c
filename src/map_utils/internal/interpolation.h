#ifndef VOREL_MAP_UTILS_INTERNAL_INTERPOLATION_H_
#define VOREL_MAP_UTILS_INTERNAL_INTERPOLATION_H_

#include "base/geo_coordinate.h"

namespace vorel {
namespace internal {

/// Clamps to [0, 1]. The two comparisons are the rule for special values: NaN stays NaN and -0 stays -0, which
/// neither std::max(0.0f, ratio) nor fmaxf would do.
inline float ClampRatio(float ratio) {
  const float notNegative = ratio < 0.0f ? 0.0f : ratio;
  return 1.0f < notNegative ? 1.0f : notNegative;
}

/// The point at the clamped ratio of the way from `start` to `end`, each field by itself, in degrees. A ratio of 1
/// gives start + (end - start), which may differ from `end` in the last bit.
inline tarvo::GeoCoordinate PointAtRatio(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                         float ratio) {
  const double r = ClampRatio(ratio);
  return tarvo::GeoCoordinate(start.longitude + r * (end.longitude - start.longitude),
                              start.latitude + r * (end.latitude - start.latitude));
}

/// The same with a height: its difference is taken in float, scaled and added in double, and narrowed at the end.
inline tarvo::GeoCoordinateZ PointAtRatio(const tarvo::GeoCoordinateZ& start,
                                          const tarvo::GeoCoordinateZ& end, float ratio) {
  const double r = ClampRatio(ratio);
  const float heightDifference = end.z - start.z;
  return tarvo::GeoCoordinateZ(
      start.longitude + r * (end.longitude - start.longitude),
      start.latitude + r * (end.latitude - start.latitude),
      static_cast<float>(static_cast<double>(heightDifference) * r + static_cast<double>(start.z)));
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_INTERPOLATION_H_
