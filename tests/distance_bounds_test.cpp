// The cheap bounds against the distance they bound: what they call sure is so, to the bit; and they do say something.

#include "map_utils/internal/distance_bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "base/geo_coordinate.h"
#include "support/bits.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::internal::LocalDistanceBounds;
using vorel::internal::SurelyFartherThan;
using vorel::internal::SurelyNearerThan;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Numbers;

constexpr double kRadiansPerDegree = 0.017453292519943295;

/// A latitude anywhere, often at or beside the equator, a pole, or the largest one of a centre.
double AnyLatitude(Numbers& numbers) {
  switch (numbers.Below(6)) {
    case 0:
      return numbers.Magnitude(1e-12, 1.0);
    case 1:
      return std::copysign(90.0 - std::fabs(numbers.Magnitude(1e-12, 1.0)), numbers.Between(-1.0, 1.0));
    case 2:
      return numbers.Below(2) == 0 ? 90.0 : -90.0;
    case 3:
      return std::copysign(89.0, numbers.Between(-1.0, 1.0));
    default:
      return numbers.Between(-90.0, 90.0);
  }
}

/// A second point from micrometres to half the earth away, now and then only north or east, across the antimeridian,
/// whole turns off, beyond a pole, or nowhere.
GeoCoordinate SecondPoint(Numbers& numbers, const GeoCoordinate& a) {
  GeoCoordinate b(a.longitude + numbers.Magnitude(1e-13, 180.0), a.latitude + numbers.Magnitude(1e-13, 90.0));
  // The borders between the ways to measure.
  if (numbers.Below(8) == 0) b.latitude = a.latitude + (numbers.Below(2) == 0 ? 0.1 : 2.75);
  if (numbers.Below(8) == 0) b.longitude = a.longitude + (numbers.Below(2) == 0 ? -0.1 : -2.75);
  if (numbers.Below(4) == 0) b.longitude = a.longitude;
  if (numbers.Below(4) == 0) b.latitude = a.latitude;
  if (numbers.Below(8) == 0) b.longitude += numbers.Below(2) == 0 ? 360.0 : -7200.0;
  if (numbers.Below(32) == 0) b.longitude = numbers.Special();
  if (numbers.Below(32) == 0) b.latitude = numbers.Special();
  return b;
}

TEST(DistanceBounds, SurelyFartherAndNearerMeanIt) {
  Numbers numbers(53001);
  int farther = 0, nearer = 0;
  for (int run = 0; run < 2000000; ++run) {
    GeoCoordinate a(numbers.Between(-180.0, 180.0), AnyLatitude(numbers));
    if (numbers.Below(64) == 0) a.latitude = numbers.Special();
    const GeoCoordinate b = SecondPoint(numbers, a);
    const double distance = a.DistanceTo(b);
    const double below = std::nextafter(distance, -1.0);
    for (const double metres : {distance, below, distance * numbers.Between(0.98, 1.02), 0.0, -1.0, kNaN}) {
      const bool isFarther = SurelyFartherThan(a, b, metres);
      const bool isNearer = SurelyNearerThan(a, b, metres);
      if (isFarther) {
        ASSERT_GT(distance, metres) << vorel::test::Paste(a) << vorel::test::Paste(b);
      }
      if (isNearer) {
        ASSERT_LT(distance, metres) << vorel::test::Paste(a) << vorel::test::Paste(b);
      }
      farther += isFarther;
      nearer += isNearer;
    }
  }
  EXPECT_GT(farther, 200000);
  EXPECT_GT(nearer, 1000);
}

TEST(DistanceBounds, SayNothingOfWhatHasNoDistance) {
  const GeoCoordinate valid(10.0, 0.0);
  for (const GeoCoordinate& other :
       {GeoCoordinate(10.0, 90.00000000000001), GeoCoordinate(10.0, -91.0), GeoCoordinate(10.0, kNaN),
        GeoCoordinate(kNaN, 5.0), GeoCoordinate(kInfinity, 5.0), GeoCoordinate(10.0, kInfinity)}) {
    ASSERT_TRUE(std::isnan(valid.DistanceTo(other)));
    for (const double metres : {-1.0, 0.0, 1.0, kInfinity, -kInfinity}) {
      EXPECT_FALSE(SurelyFartherThan(valid, other, metres));
      EXPECT_FALSE(SurelyFartherThan(other, valid, metres));
      EXPECT_FALSE(SurelyNearerThan(valid, other, metres));
      EXPECT_FALSE(SurelyNearerThan(other, valid, metres));
    }
  }
  const GeoCoordinate nowhere(kInfinity, kInfinity);  // its distance from itself is 0
  EXPECT_FALSE(SurelyFartherThan(nowhere, nowhere, -1.0));
  EXPECT_FALSE(SurelyNearerThan(nowhere, nowhere, kInfinity));
}

TEST(DistanceBounds, DecideClearCases) {
  const GeoCoordinate a(8.0, 49.0);
  EXPECT_TRUE(SurelyFartherThan(a, {8.0, 49.001}, 110.0));
  EXPECT_TRUE(SurelyFartherThan(a, {-170.0, 49.001}, 110.0));
  EXPECT_FALSE(SurelyFartherThan(a, {8.001, 49.0}, 1.0));  // by the latitudes alone
  EXPECT_TRUE(SurelyNearerThan(a, {8.0005, 49.0005}, 112.0));
  EXPECT_FALSE(SurelyNearerThan(a, {8.0005, 49.0005}, 50.0));
}

TEST(LocalDistanceBounds, HoldForEveryPairInReach) {
  Numbers numbers(53002);
  int tightLower = 0, tightUpper = 0;
  for (int run = 0; run < 3000000; ++run) {
    const GeoCoordinate centre(numbers.Between(-360.0, 360.0), AnyLatitude(numbers));
    if (!LocalDistanceBounds::CanBeCentre(centre)) continue;
    const double reach = numbers.Below(4) == 0 ? 0.5 : std::fabs(numbers.Magnitude(1e-9, 0.5));
    const LocalDistanceBounds bounds(std::cos(centre.latitude * kRadiansPerDegree));
    const auto size = [&] {
      switch (numbers.Below(4)) {
        case 0:
          return reach;
        case 1:
          return -reach;
        case 2:
          return 0.0;
        default:
          return reach * numbers.Between(-1.0, 1.0);
      }
    };
    const GeoCoordinate a(centre.longitude + size(), centre.latitude + size());
    const GeoCoordinate b(a.longitude + 2.0 * size(), centre.latitude + size());
    const double latitudes = b.latitude - a.latitude;
    const double longitudes = b.longitude - a.longitude;
    const double distance = a.DistanceTo(b);
    const double slightlyLarger = reach * (1.0 + 1e-9);  // the sums above were rounded
    for (const double r : {slightlyLarger, LocalDistanceBounds::kReach}) {
      const double lower = bounds.LowerSquared(latitudes, longitudes, r);
      const double upper = bounds.UpperSquared(latitudes, longitudes, r);
      ASSERT_FALSE(lower > LocalDistanceBounds::SquareToExceed(distance))
          << vorel::test::Paste(a) << vorel::test::Paste(b) << " reach " << r;
      ASSERT_FALSE(upper < LocalDistanceBounds::SquareToStayBelow(distance))
          << vorel::test::Paste(a) << vorel::test::Paste(b) << " reach " << r;
      // Not merely by their margins.
      if (distance > 0.05) {
        ASSERT_LT(lower, distance * distance);
        ASSERT_GT(upper, distance * distance);
      }
    }
    if (reach < 0.01 && std::fabs(centre.latitude) < 70.0 && distance > 0.1) {
      tightLower += bounds.LowerSquared(latitudes, longitudes, reach) > 0.99 * (distance * distance);
      tightUpper += bounds.UpperSquared(latitudes, longitudes, reach) < 1.03 * (distance * distance);
    }
  }
  EXPECT_GT(tightLower, 300000);
  EXPECT_GT(tightUpper, 300000);
}

TEST(LocalDistanceBounds, CentresAreAwayFromThePoles) {
  EXPECT_TRUE(LocalDistanceBounds::CanBeCentre({-360.0, 89.0}));
  EXPECT_TRUE(LocalDistanceBounds::CanBeCentre({360.0, -89.0}));
  EXPECT_FALSE(LocalDistanceBounds::CanBeCentre({360.00000000000006, 0.0}));
  EXPECT_FALSE(LocalDistanceBounds::CanBeCentre({0.0, 89.00000000000001}));
  EXPECT_FALSE(LocalDistanceBounds::CanBeCentre({0.0, -90.0}));
  EXPECT_FALSE(LocalDistanceBounds::CanBeCentre({kNaN, 0.0}));
  EXPECT_FALSE(LocalDistanceBounds::CanBeCentre({0.0, kNaN}));
}

TEST(LocalDistanceBounds, ThresholdsOfUnusualMetres) {
  const double least = LocalDistanceBounds::SquareToExceed(0.0);
  EXPECT_GT(least, 0.0);
  EXPECT_EQ(LocalDistanceBounds::SquareToExceed(-5.0), least);
  EXPECT_EQ(LocalDistanceBounds::SquareToExceed(-kInfinity), least);
  EXPECT_EQ(LocalDistanceBounds::SquareToExceed(kInfinity), kInfinity);
  EXPECT_TRUE(std::isnan(LocalDistanceBounds::SquareToExceed(kNaN)));
  EXPECT_EQ(LocalDistanceBounds::SquareToStayBelow(1e-6), 0.0);
  EXPECT_EQ(LocalDistanceBounds::SquareToStayBelow(-5.0), 0.0);
  EXPECT_EQ(LocalDistanceBounds::SquareToStayBelow(kNaN), 0.0);
  EXPECT_EQ(LocalDistanceBounds::SquareToStayBelow(kInfinity), kInfinity);
}

}  // namespace
