#include "fuzz/fuzz_target.h"

#include <cmath>

#include "base/coordinate_util.h"
#include "base/geo_utils.h"
#include "base/geodesy/distance.h"
#include "base/geodesy/inverse.h"

// Distances have no twin: they are held against their promises, and against the geodesic's solution by Newton's method.

using fuzz::FuzzInput;
using tarvo::GeoCoordinate;

namespace {

bool IsOnEarth(const GeoCoordinate& point) {
  return std::isfinite(point.longitude) && std::fabs(point.latitude) <= 90.0;
}

/// Longitudes within a whole turn, so that the difference has no rounding error to speak of.
bool IsFarRound(const GeoCoordinate& point) {
  return std::fabs(point.longitude) > 360.0;
}

void CheckDistance(const GeoCoordinate& a, const GeoCoordinate& b) {
  const double metres = a.DistanceTo(b);
  EXPECT_SAME(b.DistanceTo(a), metres);
  EXPECT_SAME(tarvo::geodesy::Distance(a, b), metres);
  EXPECT_SAME(tarvo::CoordinateUtil::DistanceOfGcj02Pos(a.longitude, a.latitude, b.longitude, b.latitude),
              metres);
  EXPECT_SAME(GeoCoordinate(-a.longitude, -a.latitude).DistanceTo({-b.longitude, -b.latitude}), metres);
  if (a == b) {
    EXPECT_SAME(metres, 0.0);
    return;
  }
  EXPECT_HOLDS(std::isnan(metres) == !(IsOnEarth(a) && IsOnEarth(b)));
  if (std::isnan(metres)) return;
  EXPECT_HOLDS(metres >= 0.0 && metres <= 20003931.46);
  if (IsFarRound(a) || IsFarRound(b)) return;
  double difference = std::fabs(std::remainder(b.longitude - a.longitude, 360.0));
  if (difference < 1e-100) difference = 0.0;  // nothing measurable, and below what the inverse takes
  const double exact = tarvo::geodesy::InverseDistance(a.latitude, b.latitude, difference);
  // The inverse itself is off by 0.02 micrometres, and the difference of longitudes by 2e-8 m.
  EXPECT_HOLDS(std::fabs(metres - exact) <= (exact <= 1e5 ? 1.1e-6 : 1.01e-5));
}

void CheckBearing(const GeoCoordinate& a, const GeoCoordinate& b) {
  constexpr double kTwoPi = 6.283185307179586;
  const double radians = tarvo::kx::GeoUtils::GetRadianNorth(a, b);
  if (a == b) {
    EXPECT_SAME(radians, 0.0);
    return;
  }
  const bool isFinite = std::isfinite(a.longitude) && std::isfinite(a.latitude) &&
                        std::isfinite(b.longitude) && std::isfinite(b.latitude);
  if (!isFinite) {
    EXPECT_HOLDS(std::isnan(radians));
    return;
  }
  // Finite longitudes whose difference is not give NaN as well.
  if (!std::isfinite(b.longitude - a.longitude)) return;
  EXPECT_HOLDS(radians >= 0.0 && radians < kTwoPi);
  EXPECT_HOLDS(!std::signbit(radians));
  if (!IsOnEarth(a) || !IsOnEarth(b) || IsFarRound(a) || IsFarRound(b)) return;
  // The same formula in extended precision. At a pole, and where the points nearly coincide or are nearly antipodal, the
  // bearing is ill-conditioned: both components are then small.
  constexpr long double kDegree = 0.017453292519943295769236907684886127L;
  const long double latitudeA = a.latitude * kDegree, latitudeB = b.latitude * kDegree;
  const long double turn = (static_cast<long double>(b.longitude) - a.longitude) * kDegree;
  const long double east = std::sin(turn) * std::cos(latitudeB);
  const long double north =
      std::cos(latitudeA) * std::sin(latitudeB) - std::sin(latitudeA) * std::cos(latitudeB) * std::cos(turn);
  const long double size = std::sqrt(east * east + north * north);
  const long double error = std::fabs(east * std::cos(static_cast<long double>(radians)) -
                                      north * std::sin(static_cast<long double>(radians)));
  EXPECT_HOLDS(error <= 2e-15L + 1e-14L * size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::Line line{input.Point()};
    GeoCoordinate other = input.PointNear(line);
    const std::size_t kind = input.Byte() % 8;
    if (kind == 0) {  // nearly antipodal
      other.longitude = line[0].longitude + 180.0 + static_cast<double>(input.Below(512)) * 0.005 - 1.28;
      other.latitude = -line[0].latitude + static_cast<double>(input.Below(512)) * 0.005 - 1.28;
    }
    if (kind == 1) {  // about the border between the near series and the rest
      other.longitude =
          line[0].longitude + 2.75 + static_cast<double>(static_cast<std::int8_t>(input.Byte())) * 1e-9;
    }
    CheckDistance(line[0], other);
    CheckBearing(line[0], other);
  } while (!input.IsAtEnd());
  return 0;
}
