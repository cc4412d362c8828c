#ifndef VOREL_MAP_UTILS_INTERNAL_NEAR_BEARING_H_
#define VOREL_MAP_UTILS_INTERNAL_NEAR_BEARING_H_

#include <cmath>
#include <limits>

#include "base/geodesy/wgs84.h"

namespace vorel {
namespace internal {

/// A bearing on the sphere and by how much what the math library makes of the same points may differ from it.
struct NearBearing {
  double radians;  // from north, clockwise, in [-pi, pi]
  double error;    // radians; infinite or NaN when nothing is known
};

/// atan2(y, x) for finite values that are not both 0, to 3e-13.
inline double NearAtan2(double y, double x) {
  constexpr double kTanEighthTurn = 0.41421356237309503;  // tan(pi / 8)
  const double sizeX = std::fabs(x);
  const double sizeY = std::fabs(y);
  const double large = sizeX < sizeY ? sizeY : sizeX;
  const double small = sizeX < sizeY ? sizeX : sizeY;
  // Angles above pi / 8 are measured from pi / 4, so that the tangent is at most tan(pi / 8) in size.
  const bool isFromDiagonal = small > kTanEighthTurn * large;
  const double tangent = (isFromDiagonal ? small - large : small) / (isFromDiagonal ? small + large : large);
  // atan(t) / t interpolated at the eight Chebyshev nodes of t^2 in [0, tan(pi / 8)^2].
  const double z = tangent * tangent;
  const double zz = z * z;
  const double low =
      (0.9999999999992442 - 0.3333333327688608 * z) + zz * (0.19999993049762435 - 0.1428538640718612 * z);
  const double high =
      (0.11103454236491274 - 0.08992528079362637 * z) + zz * (0.06974084047595203 - 0.03765307369056794 * z);
  double angle = (isFromDiagonal ? 0.25 * tarvo::geodesy::kPi : 0.0) + tangent * (low + (zz * zz) * high);
  angle = sizeX < sizeY ? 0.5 * tarvo::geodesy::kPi - angle : angle;
  angle = x < 0.0 ? tarvo::geodesy::kPi - angle : angle;
  return std::copysign(angle, y);
}

/// The bearing between two points at most `kNearAngle` apart in either direction, all angles in radians.
/// @param latitude, toLatitude  in [-pi / 2, pi / 2], else nothing is known
/// @param longitudes            to minus from
/// @param sinLatitude           of the first point, to 2.5e-8
/// @param cosToLatitude         of the second point, to a relative 5e-16
///
/// The library's bearing is atan2(y, x) with y = sin(longitudes) cos(to) and
///     x = cos(from) sin(to) - sin(from) cos(to) cos(longitudes)
///       = sin(to - from) + sin(from) cos(to) 2 sin^2(longitudes / 2).
/// The second form, taken here with short series, does not cancel; the first loses the digits that `error` speaks of.
/// With r = sqrt(x^2 + y^2), an error dx or dy turns the bearing by at most dx / r or dy / r:
///   - Each product of a sine and a cosine in the first form is about 1 / 2 in size or less. When every library call errs
///     by up to 2 units in the last place (4.5e-16), each product errs by 9.8 and 15.4 half units of 1.2e-16 relative,
///     their difference by 1.4e-15 in all, and the bearing by that over r. y errs by a relative 1.1e-15.
///   - sin(from) errs by 2.5e-8 here, x by 1.25e-8 cos(to) longitudes^2: the bearing by 1.25e-8 |longitudes|.
///   - The series end at a relative 2e-13, NearAtan2 errs by 3e-13, and all other roundings by less than 1e-14.
inline NearBearing NearBearingBetween(double latitude, double toLatitude, double longitudes,
                                      double sinLatitude, double cosToLatitude) {
  constexpr double kNearAngle = 2e-3;
  constexpr double kPole = 0.5 * tarvo::geodesy::kPi;
  const double latitudes = toLatitude - latitude;
  const bool isNear = (std::fabs(latitudes) <= kNearAngle) & (std::fabs(longitudes) <= kNearAngle) &
                      (std::fabs(latitude) <= kPole) & (std::fabs(toLatitude) <= kPole);
  if (!isNear) return {0.0, std::numeric_limits<double>::infinity()};
  const double squaredLatitudes = latitudes * latitudes;
  const double squaredLongitudes = longitudes * longitudes;
  const double y = (longitudes - longitudes * (squaredLongitudes * (1.0 / 6.0))) * cosToLatitude;
  const double x = (latitudes - latitudes * (squaredLatitudes * (1.0 / 6.0))) +
                   (sinLatitude * cosToLatitude) *
                       (squaredLongitudes * 0.5 - squaredLongitudes * (squaredLongitudes * (1.0 / 24.0)));
  const double size = std::fabs(x) < std::fabs(y) ? std::fabs(y) : std::fabs(x);  // at most r
  return {NearAtan2(y, x), 1.5e-15 / size + (1.3e-8 * std::fabs(longitudes) + 1e-12)};
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_NEAR_BEARING_H_
