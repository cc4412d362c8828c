#ifndef VOREL_MAP_UTILS_INTERNAL_RECTANGLE_H_
#define VOREL_MAP_UTILS_INTERNAL_RECTANGLE_H_

#include "base/geo_coordinate.h"
#include "base/rect.h"

namespace vorel {
namespace internal {

/// The border is inside; a comparison with NaN never counts as outside.
inline bool Contains(const tarvo::Rect<tarvo::GeoCoordinate>& rect, const tarvo::GeoCoordinate& point) {
  return !(point.longitude > rect.max.longitude || rect.min.longitude > point.longitude ||
           point.latitude > rect.max.latitude || rect.min.latitude > point.latitude);
}

/// Whether `other` lies in a square of degrees about `center` that a radius of `metres` calls for; false above
/// 12000 m. Coarse: a degree of longitude is taken for as long as a degree of latitude.
inline bool IsInNearnessBox(const tarvo::GeoCoordinate& center, float metres,
                            const tarvo::GeoCoordinate& other) {
  if (metres > 12000.0f) return false;
  // Half widths in degrees: float constants widened to double. The thresholds are the lengths of 0.01, 0.001 and
  // 0.0001 degree on a circle of the equatorial radius in whole metres; 0.1 degree serves every radius beyond.
  const double halfWidth = static_cast<double>(metres >= 1113.0f  ? 0.1f
                                               : metres >= 111.0f ? 0.01f
                                               : metres >= 11.0f  ? 0.001f
                                                                  : 0.0001f);
  return !(other.longitude > center.longitude + halfWidth || center.longitude - halfWidth > other.longitude ||
           other.latitude > center.latitude + halfWidth || center.latitude - halfWidth > other.latitude);
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_RECTANGLE_H_
