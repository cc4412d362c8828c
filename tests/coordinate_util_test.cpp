#include "base/strict_floating_point.h"

#include "base/coordinate_util.h"

#include <random>

#include <gtest/gtest.h>

#include "base/geo_coordinate.h"
#include "support/bits.h"

namespace {

using tarvo::CoordinateUtil;
using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::SameBits;

TEST(DistanceOfGcj02Pos, TakesFirstPointThenSecondLongitudeFirst) {
  // One degree along a meridian, then along the parallel of 60 degrees: telling the order of all four numbers.
  EXPECT_NEAR(CoordinateUtil::DistanceOfGcj02Pos(10.0, 60.0, 10.0, 61.0), 111420.72787, 1e-5);
  EXPECT_NEAR(CoordinateUtil::DistanceOfGcj02Pos(10.0, 60.0, 11.0, 60.0), 55799.47039, 1e-5);
}

TEST(DistanceOfGcj02Pos, HasTheBitsOfDistanceTo) {
  constexpr unsigned kSeed = 20258;
  std::mt19937_64 generator(kSeed);
  std::uniform_real_distribution<double> longitude(-400.0, 400.0);
  std::uniform_real_distribution<double> latitude(-95.0, 95.0);  // invalid ones among them
  std::uniform_real_distribution<double> offset(-1.0, 1.0);
  for (int run = 0; run < 20000; ++run) {
    const double size = run % 4 == 0 ? 0.01 : run % 4 == 1 ? 2.0 : 60.0;
    const GeoCoordinate a{longitude(generator), latitude(generator)};
    const GeoCoordinate b(a.longitude + size * offset(generator), a.latitude + size * offset(generator));
    ASSERT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(a.longitude, a.latitude, b.longitude, b.latitude),
                         a.DistanceTo(b)))
        << "seed " << kSeed << ", run " << run;
  }
}

TEST(DistanceOfGcj02Pos, TreatsEqualAndBadInputAsDistanceToDoes) {
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(116.3, 39.9, 116.3, 39.9), 0.0));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(kInfinity, 39.9, kInfinity, 39.9), 0.0));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(kNaN, 39.9, 116.3, 39.9), kNaN));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(116.3, kNaN, 116.3, 39.9), kNaN));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(116.3, 39.9, kNaN, 39.9), kNaN));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(116.3, 39.9, 116.3, kNaN), kNaN));
  EXPECT_TRUE(SameBits(CoordinateUtil::DistanceOfGcj02Pos(116.3, 90.5, 116.3, 89.9), kNaN));
}

}  // namespace
