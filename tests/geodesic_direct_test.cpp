// The destination after a distance on a heading, on the WGS-84 ellipsoid: ComputerThatLonLat.

#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

#ifdef VOREL_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#endif

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/points_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::CaseName;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Numbers;
using vorel::test::Paste;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;

constexpr unsigned kSeed = 20263;
constexpr double kFailureMark = 200.0;
constexpr double kLargestDistance = 5e10;  // metres; the iteration may stall from 5.2e10 on

GeoCoordinate Destination(double longitude, double latitude, double azimuth, double distance) {
  GeoCoordinate reached{-1000.0, -1000.0};
  Algorithm::ComputerThatLonLat(longitude, latitude, azimuth, distance, reached.longitude, reached.latitude);
  return reached;
}

struct DestinationCase {
  const char* name;
  double longitude, latitude, azimuth, distance;
  GeoCoordinate reached;
  double slack;  // degrees
};
void PrintTo(const DestinationCase& c, std::ostream* out) {
  *out << c.name;
}
class DestinationEdges : public testing::TestWithParam<DestinationCase> {};

TEST_P(DestinationEdges, Hold) {
  const DestinationCase& c = GetParam();
  const GeoCoordinate reached = Destination(c.longitude, c.latitude, c.azimuth, c.distance);
  if (c.slack == 0.0) {
    EXPECT_TRUE(SameBits(reached, c.reached));
  } else {
    EXPECT_NEAR(reached.longitude, c.reached.longitude, c.slack);
    EXPECT_NEAR(reached.latitude, c.reached.latitude, c.slack);
  }
}

// Last bits of the trigonometric functions, in degrees of a coordinate up to 360.
constexpr double kLastBits = 1e-13;
// Metres to degrees along the equator (a circle of 6378137 m) and from the equator to the pole (10001965.729 m, the
// quarter meridian of WGS-84; the method's own error is some 0.1 mm here).
constexpr double kQuarterMeridian = 10001965.729;
constexpr double kEquatorDegree = 111319.49079327358;

INSTANTIATE_TEST_SUITE_P(
    All, DestinationEdges,
    testing::Values(
        DestinationCase{"NoDistance", 7.5, 47.5, 33, 0, {7.5, 47.5}, kLastBits},
        DestinationCase{"NoDistanceAtZero", 0, 0, 0, 0, {0, 0}, 0},
        DestinationCase{"NoDistanceAtThePole", 7.5, 90, 0, 0, {7.5, 90}, kLastBits},
        DestinationCase{"EastOnTheEquator", 7.5, 0, 90, kEquatorDegree, {8.5, 0}, 1e-11},
        DestinationCase{"WestOnTheEquator", 7.5, 0, -90, kEquatorDegree, {6.5, 0}, 1e-11},
        DestinationCase{"WestOnTheEquatorAs270", 7.5, 0, 270, kEquatorDegree, {6.5, 0}, 1e-11},
        DestinationCase{"BackwardsEastOnTheEquator", 7.5, 0, 90, -kEquatorDegree, {6.5, 0}, 1e-11},
        DestinationCase{"FromTheEquatorToThePole", 7.5, 0, 0, kQuarterMeridian, {7.5, 90}, 1e-5},
        DestinationCase{"FromThePoleToTheEquator", 7.5, -90, 0, kQuarterMeridian, {7.5, 0}, 1e-8},
        DestinationCase{"OverThePole", 7.5, 89.9, 0, 22339.0, {187.5, 89.9}, 1e-4},
        DestinationCase{
            "FromThePoleHeadingsCountFromItsMeridian", 7.5, 90, 30, 1000, {157.5, 89.991046966}, 1e-9},
        // Deliberate: no folding into [-180, 180].
        DestinationCase{"AcrossTheAntimeridian", 179.5, 0, 90, kEquatorDegree, {180.5, 0}, 1e-11},
        DestinationCase{"WholeTurnsStay", 727.5, 0, 90, kEquatorDegree, {728.5, 0}, 1e-11},
        // Deliberate: beyond the pole the tangent decides, and 100 degrees has that of -80.
        DestinationCase{"LatitudeBeyondThePole", 7.5, 100, 33, 0, {7.5, -80}, kLastBits},
        DestinationCase{"LatitudeBeyondTheSouthPole", 7.5, -95, 33, 0, {7.5, 85}, kLastBits},
        DestinationCase{"LatitudeOfHalfATurn", 7.5, 180, 33, 0, {7.5, 0}, kLastBits},
        DestinationCase{"NaNLatitude", 7.5, kNaN, 33, 100, {kFailureMark, kFailureMark}, 0},
        DestinationCase{"InfiniteLatitude", 7.5, kInfinity, 33, 100, {kFailureMark, kFailureMark}, 0},
        DestinationCase{"NaNAzimuth", 7.5, 47.5, kNaN, 100, {kFailureMark, kFailureMark}, 0},
        DestinationCase{"InfiniteAzimuth", 7.5, 47.5, -kInfinity, 100, {kFailureMark, kFailureMark}, 0},
        DestinationCase{"InfiniteDistance", 7.5, 47.5, 33, kInfinity, {kFailureMark, kFailureMark}, 0},
        DestinationCase{"MinusInfiniteDistance", 7.5, 47.5, 33, -kInfinity, {kFailureMark, kFailureMark}, 0},
        // Deliberate: the iteration is left out, and sines and cosines of 0 give the equator.
        DestinationCase{"NaNDistanceGivesLatitudeZero", 7.5, 47.5, 33, kNaN, {kFailureMark, 0}, 0}),
    CaseName<DestinationCase>);

TEST(Destination, MarksTheTwoOutputsIndependently) {
  const GeoCoordinate reached = Destination(7.5, 47.5, 33.0, 1000.0);
  EXPECT_TRUE(SameBits(Destination(kNaN, 47.5, 33.0, 1000.0), GeoCoordinate(kFailureMark, reached.latitude)));
  // Infinite is not NaN: no failure mark.
  EXPECT_TRUE(
      SameBits(Destination(kInfinity, 47.5, 33.0, 1000.0), GeoCoordinate(kInfinity, reached.latitude)));
  EXPECT_TRUE(
      SameBits(Destination(-kInfinity, 47.5, 33.0, 1000.0), GeoCoordinate(-kInfinity, reached.latitude)));
}

TEST(Destination, KeepsTheLongitudeOnAMeridian) {
  for (const double latitude : {-60.0, 0.0, 47.5}) {
    EXPECT_TRUE(SameBits(Destination(7.5, latitude, 0.0, 1000.0).longitude, 7.5)) << latitude;
    EXPECT_GT(Destination(7.5, latitude, 0.0, 1000.0).latitude, latitude);
    EXPECT_NEAR(Destination(7.5, latitude, 180.0, 1000.0).longitude, 7.5, 1e-15);
    EXPECT_LT(Destination(7.5, latitude, 180.0, 1000.0).latitude, latitude);
  }
}

TEST(Destination, OutputsMayBeTheInputs) {
  double longitude = 7.5, latitude = 47.5;
  Algorithm::ComputerThatLonLat(longitude, latitude, 33.0, 1000.0, longitude, latitude);
  EXPECT_TRUE(SameBits(GeoCoordinate(longitude, latitude), Destination(7.5, 47.5, 33.0, 1000.0)));
}

TEST(Destination, DeliberatelyLiesOnTheEquatorAfterExactlyOneTurnOfTheAuxiliarySphere) {
  // The semi-minor axis times A(u^2) is the radius that turns arcs into metres; this start and heading fix it.
  const double latitude = 47.5, azimuth = 33.0, k = 3.141592653589793 / 180.0;
  const double tanU = 0.9966471893356684 * std::tan(latitude * k);
  const double sinAlpha = std::sin(azimuth * k) / std::sqrt(1.0 + tanU * tanU);
  const double u2 = (1.0 - sinAlpha * sinAlpha) * 272331606681.9453 / 40408299984087.055;
  const double scale = 1.0 + u2 / 16384.0 * (4096.0 + u2 * (-768.0 + u2 * (320.0 - 175.0 * u2)));
  const double wholeTurn = 2.0 * 3.141592653589793 * 6356752.3142 * scale;
  EXPECT_EQ(Destination(7.5, latitude, azimuth, wholeTurn).latitude, 0.0);
  EXPECT_EQ(Destination(7.5, latitude, azimuth, wholeTurn * (1.0 + 1e-13)).latitude, 0.0);
  // 1e-12 radians of arc decide: a little farther the iteration runs and leads round to the start.
  EXPECT_NEAR(Destination(7.5, latitude, azimuth, wholeTurn * (1.0 + 1e-12)).latitude, latitude, 0.2);
  EXPECT_NEAR(Destination(7.5, latitude, azimuth, wholeTurn * (1.0 - 1e-12)).latitude, latitude, 0.2);
}

TEST(Destination, SettlesAtTheLargestDistanceStated) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const double latitude = run % 16 == 0 ? numbers.Latitude() : numbers.Between(-90.0, 90.0);
    const double azimuth = numbers.Between(-180.0, 180.0);
    const double distance = run % 4 == 0 ? kLargestDistance : numbers.Between(0.9, 1.0) * kLargestDistance;
    for (const double signedDistance : {distance, -distance}) {
      const GeoCoordinate reached = Destination(0.0, latitude, azimuth, signedDistance);
      EXPECT_TRUE(std::fabs(reached.latitude) <= 90.0 || reached.latitude == kFailureMark);
    }
  }
}

TEST(Destination, BeyondTheLargestDistanceNeighbouringArcsDifferByMoreThanTheThreshold) {
  // Why the contract ends there: from 8192 radians of arc on, 5.207e10 m, doubles lie more than 1e-12 apart, so that
  // two rounds which answer each other with neighbouring values never settle.
  EXPECT_GT(std::nextafter(8192.0, kInfinity) - 8192.0, 1e-12);
  EXPECT_LT(8192.0 - std::nextafter(8192.0, 0.0), 1e-12);
  EXPECT_LT(kLargestDistance / 6356752.3142 * 1.002, 8192.0);
}

TEST(Destination, LiesAtTheDistanceAskedFor) {
  constexpr double kSlack = 1e-4;  // metres; worst of 3e5 runs 7.8e-5
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start{numbers.Between(-180.0, 180.0), numbers.Between(-89.9, 89.9)};
    const double distance =
        run % 2 == 0 ? numbers.Between(0.0, 1e7) : std::fabs(numbers.Magnitude(1e-3, 1e7));
    const GeoCoordinate reached =
        Destination(start.longitude, start.latitude, numbers.Between(-180.0, 180.0), distance);
    EXPECT_NEAR(start.DistanceTo(reached), distance, kSlack);
  }
}

TEST(Destination, LeavesOnTheHeadingAskedFor) {
  constexpr double kSlack = 0.2;  // degrees; worst of 1e6 runs 0.193: the bearing is that of a sphere
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start{numbers.Between(-180.0, 180.0), numbers.Between(-80.0, 80.0)};
    const double azimuth = numbers.Between(-180.0, 180.0);
    const GeoCoordinate reached = Destination(start.longitude, start.latitude, azimuth, 1000.0);
    EXPECT_LT(std::fabs(std::remainder(Algorithm::GetAngle(start, reached) - azimuth, 360.0)), kSlack);
  }
}

TEST(Destination, AgreesWithAnIndependentSolution) {
#ifdef VOREL_HAVE_GEOGRAPHICLIB
  constexpr double kSlack = 2e-4;  // metres; worst of 3e5 runs 1.5e-4; 7e-6 up to 100 km
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start{numbers.Between(-180.0, 180.0), numbers.Between(-90.0, 90.0)};
    const double azimuth = numbers.Between(-180.0, 180.0), distance = numbers.Between(-2e7, 2e7);
    GeoCoordinate expected;
    GeographicLib::Geodesic::WGS84().Direct(start.latitude, start.longitude, azimuth, distance,
                                            expected.latitude, expected.longitude);
    EXPECT_LT(Destination(start.longitude, start.latitude, azimuth, distance).DistanceTo(expected), kSlack);
  }
#else
  GTEST_SKIP() << "skipped: built without GeographicLib";
#endif
}

TEST(Destination, HasTheBitsOfItsPlainTwin) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 60000; ++run) {
    const double longitude = numbers.Longitude();
    const double latitude = run % 2 == 0 ? numbers.Between(-90.0, 90.0) : numbers.Latitude();
    const double azimuth = run % 4 < 2 ? numbers.Between(-180.0, 180.0) : numbers.Longitude();
    double distance = run % 3 == 0 ? numbers.Between(-1e6, 1e6) : numbers.Magnitude(1e-6, kLargestDistance);
    if (run % 16 == 5) distance = numbers.Special();
    // A finite distance beyond the contract might not come back.
    if (std::isfinite(distance) && std::fabs(distance) > kLargestDistance) continue;
    GeoCoordinate expected;
    reference::ComputerThatLonLat(longitude, latitude, azimuth, distance, expected.longitude,
                                  expected.latitude);
    ASSERT_TRUE(SameBits(Destination(longitude, latitude, azimuth, distance), expected))
        << Paste(longitude) << ", " << Paste(latitude) << ", " << Paste(azimuth) << ", " << Paste(distance);
  }
}

}  // namespace
