#include "base/strict_floating_point.h"

#include "base/geo_utils.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "base/geo_coordinate.h"
#include "support/bits.h"

namespace {

using kx::GeoUtils;
using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::SameBits;

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;

struct BearingCase {
  const char* name;
  GeoCoordinate a;
  GeoCoordinate b;
  double radians;
};

class GetRadianNorth : public testing::TestWithParam<BearingCase> {};

TEST_P(GetRadianNorth, PointsThere) {
  const double radians = GeoUtils::GetRadianNorth(GetParam().a, GetParam().b);
  EXPECT_NEAR(radians, GetParam().radians, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(
    Quarters, GetRadianNorth,
    testing::Values(BearingCase{"North", {10.0, 0.0}, {10.0, 1.0}, 0.0},
                    BearingCase{"East", {10.0, 0.0}, {11.0, 0.0}, 0.5 * kPi},
                    BearingCase{"South", {10.0, 0.0}, {10.0, -1.0}, kPi},
                    BearingCase{"West", {10.0, 0.0}, {9.0, 0.0}, 1.5 * kPi},
                    BearingCase{"EastAcrossTheAntimeridian", {179.5, 0.0}, {-179.5, 0.0}, 0.5 * kPi},
                    BearingCase{"WestAcrossTheAntimeridian", {-179.5, 0.0}, {179.5, 0.0}, 1.5 * kPi},
                    BearingCase{"OverThePole", {0.0, 60.0}, {180.0, 60.0}, 0.0},
                    BearingCase{"ToTheNorthPole", {33.0, -12.0}, {120.0, 90.0}, 0.0},
                    BearingCase{"ToTheSouthPole", {33.0, -12.0}, {120.0, -90.0}, kPi}),
    [](const auto& testCase) { return testCase.param.name; });

class GetRadianNorthBits : public testing::TestWithParam<BearingCase> {};

TEST_P(GetRadianNorthBits, AreExact) {
  EXPECT_TRUE(SameBits(GeoUtils::GetRadianNorth(GetParam().a, GetParam().b), GetParam().radians));
}

INSTANTIATE_TEST_SUITE_P(
    Edges, GetRadianNorthBits,
    testing::Values(BearingCase{"DueNorth", {10.0, 20.0}, {10.0, 21.0}, 0.0},
                    // A longitude difference of -0 must not give -0.
                    BearingCase{"DueNorthFromMinusZero", {0.0, 20.0}, {-0.0, 21.0}, 0.0},
                    BearingCase{"DueSouth", {10.0, 20.0}, {10.0, 19.0}, kPi},
                    BearingCase{"EqualPoints", {10.0, 20.0}, {10.0, 20.0}, 0.0},
                    BearingCase{"EqualUpToTheSignOfZero", {0.0, -0.0}, {-0.0, 0.0}, 0.0},
                    BearingCase{"EqualInfiniteLongitude", {kInfinity, 20.0}, {kInfinity, 20.0}, 0.0},
                    BearingCase{"EqualInfiniteLatitude", {10.0, -kInfinity}, {10.0, -kInfinity}, 0.0},
                    // A hair west of north: the full turn it rounds to is north.
                    BearingCase{"HairWestOfNorth", {0.0, 0.0}, {-1e-20, 1.0}, 0.0},
                    BearingCase{"SubnormalWestOfNorth", {0.0, 0.0}, {-5e-324, 1.0}, 0.0},
                    BearingCase{"NaNLongitude", {kNaN, 20.0}, {10.0, 20.0}, kNaN},
                    BearingCase{"NaNLatitude", {10.0, 20.0}, {10.0, kNaN}, kNaN},
                    BearingCase{"TwoNaN", {kNaN, 20.0}, {kNaN, 20.0}, kNaN},
                    BearingCase{"InfiniteLongitude", {kInfinity, 20.0}, {10.0, 20.0}, kNaN},
                    BearingCase{"OppositeInfiniteLongitudes", {kInfinity, 20.0}, {-kInfinity, 20.0}, kNaN},
                    BearingCase{"InfiniteLatitude", {10.0, 20.0}, {10.0, kInfinity}, kNaN},
                    BearingCase{
                        "SameInfiniteLongitudeOtherLatitude", {kInfinity, 20.0}, {kInfinity, 21.0}, kNaN}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(GetRadianNorthRange, IsHalfOpen) {
  // Directions from due north to either side, down to where they round away.
  double largest = 0.0;
  for (double west = 1.0; west > 0.0; west *= 0.5) {
    const double toWest = GeoUtils::GetRadianNorth({0.0, 0.0}, {-west, 60.0});
    const double toEast = GeoUtils::GetRadianNorth({0.0, 0.0}, {west, 60.0});
    ASSERT_GE(toWest, 0.0) << west;
    ASSERT_LT(toWest, kTwoPi) << west;
    ASSERT_GE(toEast, 0.0) << west;
    ASSERT_LT(toEast, 0.1) << west;
    ASSERT_FALSE(std::signbit(toWest) || std::signbit(toEast)) << west;
    largest = std::max(largest, toWest);
  }
  // The largest double below a full turn is reached, so the test came to the edge.
  EXPECT_EQ(largest, std::nextafter(kTwoPi, 0.0));
}

TEST(GetRadianNorthRange, HoldsForRandomPairs) {
  constexpr unsigned kSeed = 20259;
  std::mt19937_64 generator(kSeed);
  std::uniform_real_distribution<double> longitude(-540.0, 540.0);
  std::uniform_real_distribution<double> latitude(-90.0, 90.0);
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate a{longitude(generator), latitude(generator)};
    const GeoCoordinate b{longitude(generator), latitude(generator)};
    const double radians = GeoUtils::GetRadianNorth(a, b);
    ASSERT_GE(radians, 0.0) << "seed " << kSeed << ", run " << run;
    ASSERT_LT(radians, kTwoPi) << "seed " << kSeed << ", run " << run;
    // Mirrored east for west, the direction turns the other way round, up to one spacing of doubles.
    const double mirrored = GeoUtils::GetRadianNorth({-a.longitude, a.latitude}, {-b.longitude, b.latitude});
    ASSERT_NEAR(radians + mirrored, radians == 0.0 ? 0.0 : kTwoPi, 9e-16)
        << "seed " << kSeed << ", run " << run;
  }
}

TEST(GetRadianNorth, HasTheExpressionsExactBits) {
  // Spelt out once more: whatever the math library gives, the operations around it keep their order.
  constexpr unsigned kSeed = 20261;
  constexpr double kRadiansPerDegree = 0.017453292519943295;
  std::mt19937_64 generator(kSeed);
  std::uniform_real_distribution<double> longitude(-180.0, 180.0);
  std::uniform_real_distribution<double> latitude(-90.0, 90.0);
  for (int run = 0; run < 2000; ++run) {
    const GeoCoordinate a{longitude(generator), latitude(generator)};
    const GeoCoordinate b{longitude(generator), latitude(generator)};
    const double p1 = a.latitude * kRadiansPerDegree, p2 = b.latitude * kRadiansPerDegree;
    const double l = (b.longitude - a.longitude) * kRadiansPerDegree;
    const double east = std::sin(l) * std::cos(p2);
    const double north = std::cos(p1) * std::sin(p2) - (std::sin(p1) * std::cos(p2)) * std::cos(l);
    const double bearing = std::atan2(east, north);
    ASSERT_TRUE(SameBits(GeoUtils::GetRadianNorth(a, b), bearing > 0.0 ? bearing : bearing + kTwoPi))
        << "seed " << kSeed << ", run " << run;
  }
}

TEST(GetRadianNorth, IsTheAngleBetweenTheGreatCircles) {
  // A second way to the same angle: the plane through both points against the planes of the meridian and the
  // horizon, in vectors.
  constexpr unsigned kSeed = 20260;
  constexpr double kRadiansPerDegree = kPi / 180.0;
  std::mt19937_64 generator(kSeed);
  std::uniform_real_distribution<double> longitude(-180.0, 180.0);
  std::uniform_real_distribution<double> latitude(-85.0, 85.0);
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate a{longitude(generator), latitude(generator)};
    const GeoCoordinate b{longitude(generator), latitude(generator)};
    const double l1 = a.longitude * kRadiansPerDegree, p1 = a.latitude * kRadiansPerDegree;
    const double l2 = b.longitude * kRadiansPerDegree, p2 = b.latitude * kRadiansPerDegree;
    const double x = std::cos(p2) * std::cos(l2), y = std::cos(p2) * std::sin(l2), z = std::sin(p2);
    const double east = -std::sin(l1) * x + std::cos(l1) * y;
    const double north =
        -std::sin(p1) * std::cos(l1) * x - std::sin(p1) * std::sin(l1) * y + std::cos(p1) * z;
    double expected = std::atan2(east, north);
    if (expected < 0.0) expected += kTwoPi;
    // Points close to one another or to antipodes lose digits: the factor was at most 1.78e-15 in 2 million pairs.
    const double slack = 2e-15 / std::sqrt(east * east + north * north);
    ASSERT_NEAR(GeoUtils::GetRadianNorth(a, b), expected, slack) << "seed " << kSeed << ", run " << run;
  }
}

}  // namespace
