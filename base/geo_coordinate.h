#ifndef VOREL_BASE_GEO_COORDINATE_H_
#define VOREL_BASE_GEO_COORDINATE_H_

#include <type_traits>

#include "base/export.h"

namespace tarvo {

/// A point on the earth in degrees. The longitude comes first, here and in every constructor and list.
struct VOREL_EXPORT GeoCoordinate {
  double longitude = 0.0;  ///< degrees, east positive; any value
  double latitude = 0.0;   ///< degrees, north positive

  constexpr GeoCoordinate() = default;

  /// The point with these coordinates, taken as they are.
  constexpr GeoCoordinate(double longitudeDegrees, double latitudeDegrees)
      : longitude(longitudeDegrees), latitude(latitudeDegrees) {}

  /// Length in metres of the shortest path to `other` over the WGS-84 ellipsoid.
  ///
  /// Error against an exact geodesic at most 1 micrometre up to 100 km and at most 0.01 mm for any two points on
  /// earth. The same bits in both directions. Any longitude is valid: differences are folded by whole turns, so a
  /// step across the antimeridian is short.
  ///
  /// The result of near and middle distances uses only + - * / sqrt; far ones call the math library.
  ///
  /// @param other  degrees; each latitude in [-90, 90]
  /// @return metres; exactly 0 for two equal points (whatever their values, infinities included)
  ///
  /// Ends: longitudes folded by whole turns, latitudes neither folded nor clamped.
  /// NaN: NaN, also where the points differ and a coordinate is infinite or a latitude lies beyond 90.
  /// Cost: no trigonometric function up to a difference of 2.75 degrees in each direction, some 30 times as long
  /// beyond.
  double DistanceTo(const GeoCoordinate& other) const;

  /// Exact comparison, field by field: -0 equals +0, a NaN equals nothing.
  constexpr bool operator==(const GeoCoordinate& other) const {
    return longitude == other.longitude && latitude == other.latitude;
  }
  /// The opposite: a NaN differs from everything.
  constexpr bool operator!=(const GeoCoordinate& other) const { return !(*this == other); }
};

/// A point on the earth with a height in metres, held in single precision. The height never enters a distance.
struct VOREL_EXPORT GeoCoordinateZ : GeoCoordinate {
  float z = 0.0f;  ///< height in metres

  constexpr GeoCoordinateZ() = default;

  /// The point with these coordinates and this height, taken as they are.
  constexpr GeoCoordinateZ(double longitudeDegrees, double latitudeDegrees, float heightMetres)
      : GeoCoordinate(longitudeDegrees, latitudeDegrees), z(heightMetres) {}

  /// Exact comparison of all three fields; compare as `GeoCoordinate` to leave the height out.
  constexpr bool operator==(const GeoCoordinateZ& other) const {
    return longitude == other.longitude && latitude == other.latitude && z == other.z;
  }
  /// The opposite: a NaN differs from everything.
  constexpr bool operator!=(const GeoCoordinateZ& other) const { return !(*this == other); }
};

static_assert(sizeof(GeoCoordinate) == 2 * sizeof(double), "two doubles and nothing else");
static_assert(sizeof(GeoCoordinateZ) == 3 * sizeof(double), "a GeoCoordinate, a float and padding");
static_assert(std::is_standard_layout<GeoCoordinate>::value, "longitude stands at the object's own address");
static_assert(std::is_trivially_copyable<GeoCoordinate>::value, "plain value");
static_assert(std::is_trivially_copyable<GeoCoordinateZ>::value, "plain value");

}  // namespace tarvo

#endif  // VOREL_BASE_GEO_COORDINATE_H_
