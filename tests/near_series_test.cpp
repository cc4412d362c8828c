#include "base/geodesy/near_series.h"

#include <cmath>
#include <cstdint>

#include <gtest/gtest.h>

#include "base/geo_coordinate.h"
#include "base/geodesy/distance.h"
#include "base/geodesy/inverse.h"
#include "support/bits.h"
#include "support/special_values.h"

// Distances up to 2.75 degrees use + - * / and sqrt only, so that the digest of many is the same everywhere.

namespace {

using tarvo::GeoCoordinate;
using tarvo::geodesy::InverseDistance;
using tarvo::geodesy::MidSquaredDistance;
using tarvo::geodesy::NearSquaredDistance;
using vorel::test::Bits;
using vorel::test::SameBits;

/// FNV-1a over the bits of the distances of 20,000 pairs with differences up to `limit` degrees, all over the earth.
std::uint64_t DigestOfDistances(double limit) {
  vorel::test::Numbers numbers(20262);
  std::uint64_t digest = 0xcbf29ce484222325u;
  for (int run = 0; run < 20000; ++run) {
    // Most pairs are short, as in real lines.
    const double reach = limit * std::ldexp(1.0, -(run % 8));
    // In braces, which fix the order of the random numbers.
    const GeoCoordinate a{numbers.Between(-170.0, 170.0), numbers.Between(-87.0, 87.0)};
    const GeoCoordinate b{a.longitude + numbers.Between(-reach, reach),
                          a.latitude + numbers.Between(-reach, reach)};
    digest = (digest ^ Bits(a.DistanceTo(b))) * 0x100000001b3u;
  }
  return digest;
}

// Most exchanges in the order of operations change the last bit of a few pairs in a hundred only.
TEST(SeriesDigest, OfNearPairsIsTheSameEverywhere) {
  EXPECT_EQ(DigestOfDistances(0.0999), 0xf20eb9d1ca820cb4u);
}
TEST(SeriesDigest, OfMidPairsIsTheSameEverywhere) {
  EXPECT_EQ(DigestOfDistances(2.74), 0x23729502235549fau);
}

// Where the series are used, their corrections are too small for every rounding in them to show. Far beyond their
// limits they weigh as much as the rest.
TEST(SeriesDigest, OfTheSeriesBeyondTheirLimitsIsTheSameEverywhere) {
  vorel::test::Numbers numbers(20263);
  std::uint64_t nearDigest = 0xcbf29ce484222325u, midDigest = 0xcbf29ce484222325u;
  for (int run = 0; run < 20000; ++run) {
    const double u = numbers.Between(-200.0, 200.0), v = numbers.Between(-200.0, 200.0);
    const double x = numbers.Between(-700.0, 700.0);
    nearDigest = (nearDigest ^ Bits(NearSquaredDistance(u, v, x))) * 0x100000001b3u;
    midDigest = (midDigest ^ Bits(MidSquaredDistance(u, v, x))) * 0x100000001b3u;
  }
  EXPECT_EQ(nearDigest, 0x466371a5e8b19c36u);
  EXPECT_EQ(midDigest, 0xae58c01335462ec5u);
}

TEST(SeriesBorders, StandWhereTheCommentsSay) {
  const GeoCoordinate a(0.0, 45.0);
  EXPECT_TRUE(SameBits(a.DistanceTo({0.1, 45.0}), std::sqrt(NearSquaredDistance(0.0, 0.1, 90.0))));
  EXPECT_TRUE(SameBits(a.DistanceTo({0.10000000000000002, 45.0}),
                       std::sqrt(MidSquaredDistance(0.0, 0.10000000000000002, 90.0))));
  EXPECT_TRUE(SameBits(a.DistanceTo({2.75, 45.0}), std::sqrt(MidSquaredDistance(0.0, 2.75, 90.0))));
  EXPECT_TRUE(
      SameBits(a.DistanceTo({2.7500000000000004, 45.0}), InverseDistance(45.0, 45.0, 2.7500000000000004)));
}

}  // namespace
