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

/// The same in double, for projections: their ratio is never narrowed.
inline double ClampRatio(double ratio) {
  const double notNegative = ratio < 0.0 ? 0.0 : ratio;
  return 1.0 < notNegative ? 1.0 : notNegative;
}

// A height at a ratio that may lie outside [0, 1]. Two ways, for they differ in the last bit and callers depend on
// either: points that are built onto a line add in double, feet of projections add in float.

/// Difference in float, scaled and added in double, narrowed at the end.
inline float HeightAddedInDouble(float start, float end, double ratio) {
  const float difference = end - start;
  return static_cast<float>(static_cast<double>(difference) * ratio + static_cast<double>(start));
}

/// Difference in float, scaled in double, narrowed, and added in float.
inline float HeightAddedInFloat(float start, float end, double ratio) {
  const float difference = end - start;
  return start + static_cast<float>(static_cast<double>(difference) * ratio);
}

/// The point at the clamped ratio of the way from `start` to `end`, each field by itself, in degrees. A ratio of 1
/// gives start + (end - start), which may differ from `end` in the last bit.
inline tarvo::GeoCoordinate PointAtRatio(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                         float ratio) {
  const double r = ClampRatio(ratio);
  return tarvo::GeoCoordinate(start.longitude + r * (end.longitude - start.longitude),
                              start.latitude + r * (end.latitude - start.latitude));
}

/// The same with a height.
inline tarvo::GeoCoordinateZ PointAtRatio(const tarvo::GeoCoordinateZ& start,
                                          const tarvo::GeoCoordinateZ& end, float ratio) {
  const double r = ClampRatio(ratio);
  return tarvo::GeoCoordinateZ(start.longitude + r * (end.longitude - start.longitude),
                               start.latitude + r * (end.latitude - start.latitude),
                               HeightAddedInDouble(start.z, end.z, r));
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_INTERPOLATION_H_
