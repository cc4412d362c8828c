#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <ostream>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/points_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::Bits;
using vorel::test::CaseName;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::Line;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;
using GeoRect = tarvo::Rect<GeoCoordinate>;

double Above(double value) {
  return std::nextafter(value, kInfinity);
}
double Below(double value) {
  return std::nextafter(value, -kInfinity);
}

// ---- What the compiler must refuse ----------------------------------------------------------------------------

constexpr auto kCallGetBound =
    [](auto points) -> decltype(Algorithm::GetBound(points, 1u, std::declval<GeoRect&>())) {
  return Algorithm::GetBound(points, 1u, std::declval<GeoRect&>());
};
struct Flagged : GeoCoordinateZ {
  int flag = 0;
};
static_assert(std::is_invocable<decltype(kCallGetBound), const GeoCoordinate*>::value, "the ordinary call");
static_assert(std::is_invocable<decltype(kCallGetBound), GeoCoordinate*>::value, "the ordinary call");
static_assert(std::is_invocable<decltype(kCallGetBound), std::nullptr_t>::value, "null is an empty array");
static_assert(!std::is_invocable<decltype(kCallGetBound), const GeoCoordinateZ*>::value, "another stride");
static_assert(!std::is_invocable<decltype(kCallGetBound), GeoCoordinateZ*>::value, "another stride");
static_assert(!std::is_invocable<decltype(kCallGetBound), const Flagged*>::value, "another stride");

constexpr auto kCallIsPointInPolygon =
    [](const auto& polygon) -> decltype(Algorithm::IsPointInPolygon(polygon, GeoCoordinate())) {
  return false;
};
static_assert(std::is_invocable<decltype(kCallIsPointInPolygon), std::vector<GeoCoordinate>>::value,
              "the polygon");
static_assert(!std::is_invocable<decltype(kCallIsPointInPolygon), std::list<GeoCoordinate>>::value,
              "not built");
static_assert(!std::is_invocable<decltype(kCallIsPointInPolygon), std::vector<GeoCoordinateZ>>::value,
              "not built");
static_assert(!std::is_invocable<decltype(kCallIsPointInPolygon), GeoRect>::value, "no polygon at all");

// ---- Bounds ---------------------------------------------------------------------------------------------------

TEST(GetBound, GivesFalseAndLeavesTheOutputForNoPoints) {
  const Line points{{1, 2}, {3, 4}};
  const GeoRect before{{5, 6}, {7, 8}};
  GeoRect bound = before;
  EXPECT_FALSE(Algorithm::GetBound(nullptr, 0, bound));
  EXPECT_TRUE(SameBits(bound, before));
  EXPECT_FALSE(Algorithm::GetBound(nullptr, 3, bound));
  EXPECT_TRUE(SameBits(bound, before));
  EXPECT_FALSE(Algorithm::GetBound(points.data(), 0, bound));
  EXPECT_TRUE(SameBits(bound, before));
}

struct BoundCase {
  const char* name;
  Line points;
  GeoRect bound;
};
void PrintTo(const BoundCase& c, std::ostream* out) {
  *out << c.name;
}
class GetBoundEdges : public testing::TestWithParam<BoundCase> {};

TEST_P(GetBoundEdges, Hold) {
  const BoundCase& c = GetParam();
  GeoRect bound{{-1000, -1000}, {1000, 1000}};
  ASSERT_TRUE(Algorithm::GetBound(c.points.data(), static_cast<unsigned>(c.points.size()), bound));
  EXPECT_TRUE(SameBits(bound, c.bound));
}
INSTANTIATE_TEST_SUITE_P(
    All, GetBoundEdges,
    testing::Values(
        BoundCase{"OnePoint", {{7, 47}}, {{7, 47}, {7, 47}}},
        BoundCase{"EqualPoints", {{7, 47}, {7, 47}}, {{7, 47}, {7, 47}}},
        BoundCase{"OneExtremePerPoint", {{5, 45}, {1, 46}, {6, 41}, {9, 45}, {5, 49}}, {{1, 41}, {9, 49}}},
        BoundCase{"ExtremesFirst", {{9, 49}, {1, 41}, {5, 45}}, {{1, 41}, {9, 49}}},
        BoundCase{"ExtremesLast", {{5, 45}, {1, 49}, {9, 41}}, {{1, 41}, {9, 49}}},
        BoundCase{"AcrossTheAntimeridianTheLongWayRound", {{179, 1}, {-179, 2}}, {{-179, 1}, {179, 2}}},
        BoundCase{"ZerosOfTheFirstPointStay", {{-0.0, 0.0}, {0.0, -0.0}}, {{-0.0, 0.0}, {-0.0, 0.0}}},
        BoundCase{"LaterNaNIsPassedOver", {{1, 2}, {kNaN, 5}, {3, kNaN}}, {{1, 2}, {3, 5}}},
        // Deliberate: no comparison with it is true, so it stays.
        BoundCase{"FirstNaNSticks", {{kNaN, 2}, {1, 5}}, {{kNaN, 2}, {kNaN, 5}}},
        BoundCase{"FirstNaNLatitudeSticks", {{1, kNaN}, {3, 5}}, {{1, kNaN}, {3, kNaN}}},
        BoundCase{"Infinite", {{kInfinity, 2}, {-kInfinity, 5}}, {{-kInfinity, 2}, {kInfinity, 5}}}),
    CaseName<BoundCase>);

TEST(GetBound, ReadsOnlyTheCountedPoints) {
  const Line points{{1, 2}, {3, 4}, {100, 80}};
  GeoRect bound;
  ASSERT_TRUE(Algorithm::GetBound(points.data(), 2, bound));
  EXPECT_TRUE(SameBits(bound, GeoRect{{1, 2}, {3, 4}}));
}

TEST(GetBound, MayReadACornerOfItsOwnOutput) {
  GeoRect bound{{1, 2}, {3, 4}};
  ASSERT_TRUE(Algorithm::GetBound(&bound.max, 1, bound));
  EXPECT_TRUE(SameBits(bound, GeoRect{{3, 4}, {3, 4}}));
}

JOIN_AWKWARD_LINES(GetBound, [](const Line& line) {
  GeoRect bound{{5, 6}, {7, 8}}, expected = bound;
  const unsigned count = static_cast<unsigned>(line.size());
  EXPECT_EQ(Algorithm::GetBound(line.data(), count, bound),
            reference::GetBound(line.data(), count, expected));
  EXPECT_TRUE(SameBits(bound, expected));
  for (const GeoCoordinate& point : line) {
    EXPECT_TRUE(Algorithm::IsRectContainsPoint(bound, point)) << vorel::test::Paste(point);
  }
});

// ---- Rectangles -----------------------------------------------------------------------------------------------

const GeoRect kRect{{10, 40}, {20, 50}};

struct ContainsCase {
  const char* name;
  GeoRect rect;
  GeoCoordinate point;
  bool inside;
};
void PrintTo(const ContainsCase& c, std::ostream* out) {
  *out << c.name;
}
class IsRectContainsPointEdges : public testing::TestWithParam<ContainsCase> {};

TEST_P(IsRectContainsPointEdges, Hold) {
  EXPECT_EQ(Algorithm::IsRectContainsPoint(GetParam().rect, GetParam().point), GetParam().inside);
}
INSTANTIATE_TEST_SUITE_P(
    All, IsRectContainsPointEdges,
    testing::Values(
        ContainsCase{"Inside", kRect, {15, 45}, true}, ContainsCase{"WestEdge", kRect, {10, 45}, true},
        ContainsCase{"EastEdge", kRect, {20, 45}, true}, ContainsCase{"SouthEdge", kRect, {15, 40}, true},
        ContainsCase{"NorthEdge", kRect, {15, 50}, true},
        ContainsCase{"SouthwestCorner", kRect, {10, 40}, true},
        ContainsCase{"SoutheastCorner", kRect, {20, 40}, true},
        ContainsCase{"NorthwestCorner", kRect, {10, 50}, true},
        ContainsCase{"NortheastCorner", kRect, {20, 50}, true},
        ContainsCase{"JustWest", kRect, {Below(10), 45}, false},
        ContainsCase{"JustEast", kRect, {Above(20), 45}, false},
        ContainsCase{"JustSouth", kRect, {15, Below(40)}, false},
        ContainsCase{"JustNorth", kRect, {15, Above(50)}, false},
        ContainsCase{"OnePointRect", {{1, 2}, {1, 2}}, {1, 2}, true},
        ContainsCase{"ZerosOfEitherSign", {{0.0, 0.0}, {-0.0, -0.0}}, {-0.0, 0.0}, true},
        ContainsCase{"InvertedEastWest", {{20, 40}, {10, 50}}, {15, 45}, false},
        ContainsCase{"InvertedSouthNorth", {{10, 50}, {20, 40}}, {15, 45}, false},
        ContainsCase{"InvertedOnItsEdge", {{20, 40}, {10, 50}}, {10, 45}, false},
        ContainsCase{"NaNLongitudeIsNeverOutside", kRect, {kNaN, 45}, true},
        ContainsCase{"NaNLatitudeIsNeverOutside", kRect, {15, kNaN}, true},
        ContainsCase{"NaNLongitudeButNorth", kRect, {kNaN, 51}, false},
        ContainsCase{"NaNBorderLetsPass", {{kNaN, 40}, {20, 50}}, {-500, 45}, true},
        ContainsCase{"WholeTurnIsOutside", kRect, {375, 45}, false},
        ContainsCase{"Infinite", kRect, {kInfinity, 45}, false},
        ContainsCase{"InfiniteRect", {{-kInfinity, -kInfinity}, {kInfinity, kInfinity}}, {15, -45}, true}),
    CaseName<ContainsCase>);

struct IntersectsCase {
  const char* name;
  GeoRect other;
  bool intersects;
};
void PrintTo(const IntersectsCase& c, std::ostream* out) {
  *out << c.name;
}
class IsRectIntersectsRectEdges : public testing::TestWithParam<IntersectsCase> {};

TEST_P(IsRectIntersectsRectEdges, HoldBothWays) {
  EXPECT_EQ(Algorithm::IsRectIntersectsRect(kRect, GetParam().other), GetParam().intersects);
  EXPECT_EQ(Algorithm::IsRectIntersectsRect(GetParam().other, kRect), GetParam().intersects);
}
INSTANTIATE_TEST_SUITE_P(
    All, IsRectIntersectsRectEdges,
    testing::Values(IntersectsCase{"Equal", kRect, true},
                    IntersectsCase{"Within", {{12, 42}, {13, 43}}, true},
                    IntersectsCase{"CrossesWithoutACornerInside", {{5, 44}, {25, 46}}, true},
                    IntersectsCase{"SharesWestEdge", {{5, 40}, {10, 50}}, true},
                    IntersectsCase{"SharesEastEdge", {{20, 40}, {25, 50}}, true},
                    IntersectsCase{"SharesSouthEdge", {{10, 35}, {20, 40}}, true},
                    IntersectsCase{"SharesNorthEdge", {{10, 50}, {20, 55}}, true},
                    IntersectsCase{"SharesSouthwestCorner", {{5, 35}, {10, 40}}, true},
                    IntersectsCase{"SharesSoutheastCorner", {{20, 35}, {25, 40}}, true},
                    IntersectsCase{"SharesNorthwestCorner", {{5, 50}, {10, 55}}, true},
                    IntersectsCase{"SharesNortheastCorner", {{20, 50}, {25, 55}}, true},
                    IntersectsCase{"JustWest", {{5, 40}, {Below(10), 50}}, false},
                    IntersectsCase{"JustEast", {{Above(20), 40}, {25, 50}}, false},
                    IntersectsCase{"JustSouth", {{10, 35}, {20, Below(40)}}, false},
                    IntersectsCase{"JustNorth", {{10, Above(50)}, {20, 55}}, false},
                    IntersectsCase{"OnePoint", {{20, 50}, {20, 50}}, true},
                    IntersectsCase{"NaNNeverSeparates", {{kNaN, kNaN}, {kNaN, kNaN}}, true},
                    IntersectsCase{"NaNWestBorder", {{kNaN, 40}, {25, 50}}, true},
                    IntersectsCase{"NaNWestBorderButFarSouth", {{kNaN, 30}, {25, 35}}, false}),
    CaseName<IntersectsCase>);

// ---- Coarse nearness ------------------------------------------------------------------------------------------

constexpr double kHalfWidths[] = {9.999999747378752e-05, 0.0010000000474974513, 0.009999999776482582,
                                  0.10000000149011612};  // degrees

struct NearCase {
  const char* name;
  float metres;
  int halfWidthIndex;  // in kHalfWidths; -1: always refused
};
void PrintTo(const NearCase& c, std::ostream* out) {
  *out << c.name;
}
class IsPointNearOtherOneThresholds : public testing::TestWithParam<NearCase> {};

TEST_P(IsPointNearOtherOneThresholds, ChooseTheSquare) {
  const NearCase& c = GetParam();
  const GeoCoordinate center{7.5, -47.25};
  if (c.halfWidthIndex < 0) {
    EXPECT_FALSE(Algorithm::IsPointNearOtherOne(center, c.metres, center));
    return;
  }
  const double halfWidth = kHalfWidths[c.halfWidthIndex];
  const double west = center.longitude - halfWidth, east = center.longitude + halfWidth;
  const double south = center.latitude - halfWidth, north = center.latitude + halfWidth;
  const auto isNear = [&](double longitude, double latitude) {
    return Algorithm::IsPointNearOtherOne(center, c.metres, {longitude, latitude});
  };
  EXPECT_TRUE(isNear(west, center.latitude) && isNear(east, center.latitude));
  EXPECT_TRUE(isNear(center.longitude, south) && isNear(center.longitude, north));
  EXPECT_TRUE(isNear(west, south) && isNear(east, south) && isNear(west, north) && isNear(east, north));
  EXPECT_FALSE(isNear(Below(west), center.latitude));
  EXPECT_FALSE(isNear(Above(east), center.latitude));
  EXPECT_FALSE(isNear(center.longitude, Below(south)));
  EXPECT_FALSE(isNear(center.longitude, Above(north)));
  EXPECT_TRUE(isNear(kNaN, center.latitude) && isNear(center.longitude, kNaN));
}
INSTANTIATE_TEST_SUITE_P(
    All, IsPointNearOtherOneThresholds,
    testing::Values(
        NearCase{"Negative", -5.0f, 0}, NearCase{"Zero", 0.0f, 0},
        NearCase{"NaNCountsAsSmallest", kNaNFloat, 0}, NearCase{"Below11", std::nextafterf(11.0f, 0.0f), 0},
        NearCase{"At11", 11.0f, 1}, NearCase{"Above11", std::nextafterf(11.0f, 99.0f), 1},
        NearCase{"Below111", std::nextafterf(111.0f, 0.0f), 1}, NearCase{"At111", 111.0f, 2},
        NearCase{"Above111", std::nextafterf(111.0f, 999.0f), 2}, NearCase{"SomewhatBelow1113", 1112.9f, 2},
        NearCase{"Below1113", std::nextafterf(1113.0f, 0.0f), 2}, NearCase{"At1113", 1113.0f, 3},
        NearCase{"Above1113", std::nextafterf(1113.0f, 9999.0f), 3},
        NearCase{"Below12000", std::nextafterf(12000.0f, 0.0f), 3}, NearCase{"At12000", 12000.0f, 3},
        // Deliberate: large radii are always refused, even for the centre itself.
        NearCase{"Above12000", std::nextafterf(12000.0f, 99999.0f), -1},
        NearCase{"HalfAbove12000", 12000.5f, -1}, NearCase{"Infinite", kInfinityFloat, -1},
        NearCase{"MinusInfinite", -kInfinityFloat, 0}),
    CaseName<NearCase>);

TEST(IsPointNearOtherOne, TakesTheFirstArgumentAsTheCentre) {
  // The sum rounds, so that the other point is on the square's border seen from the centre, and outside seen back.
  const GeoCoordinate point{4.181e-06, 0.0}, other{0.00010418099747378752, 0.0};
  EXPECT_TRUE(Algorithm::IsPointNearOtherOne(point, 5.0f, other));
  EXPECT_FALSE(Algorithm::IsPointNearOtherOne(other, 5.0f, point));
  const GeoCoordinate north{0.0, 2.309e-06}, farNorth{0.0, 0.10000231049011613};
  EXPECT_TRUE(Algorithm::IsPointNearOtherOne(north, 5000.0f, farNorth));
  EXPECT_FALSE(Algorithm::IsPointNearOtherOne(farNorth, 5000.0f, north));
}

TEST(IsPointNearOtherOne, RoundsTheBorderNotTheDifference) {
  constexpr unsigned kSeed = 20263;
  vorel::test::Numbers numbers(kSeed);
  for (int run = 0; run < 1000; ++run) {
    // Sums of ordinary coordinates and the half widths, which are floats, are exact.
    const GeoCoordinate center{numbers.Magnitude(1e-9, 0.1), numbers.Magnitude(1e-9, 0.1)};
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run << ", centre "
                                    << vorel::test::Paste(center));
    const double halfWidth = kHalfWidths[run % 4];
    const float metres = run % 4 == 0 ? 5.0f : run % 4 == 1 ? 50.0f : run % 4 == 2 ? 500.0f : 5000.0f;
    const auto isNear = [&](double longitude, double latitude) {
      return Algorithm::IsPointNearOtherOne(center, metres, {longitude, latitude});
    };
    const double west = center.longitude - halfWidth, east = center.longitude + halfWidth;
    const double south = center.latitude - halfWidth, north = center.latitude + halfWidth;
    ASSERT_TRUE(isNear(west, south) && isNear(east, north));
    ASSERT_FALSE(isNear(Below(west), south) || isNear(west, Below(south)));
    ASSERT_FALSE(isNear(Above(east), north) || isNear(east, Above(north)));
  }
}

TEST(IsPointNearOtherOne, RefusesSomePointsWithinTheRadiusAsItsCommentSays) {
  const GeoCoordinate equator{7.0, 0.0}, north{7.0, 0.01002}, sixty{7.0, 60.0}, east{7.0101, 60.0};
  EXPECT_LT(equator.DistanceTo(north), 1112.0);
  EXPECT_FALSE(Algorithm::IsPointNearOtherOne(equator, 1112.0f, north));
  EXPECT_LT(sixty.DistanceTo(east), 565.0);
  EXPECT_FALSE(Algorithm::IsPointNearOtherOne(sixty, 1112.0f, east));
  const GeoCoordinate farNorth{7.0, 0.1001};
  EXPECT_LT(equator.DistanceTo(farNorth), 11070.0);
  EXPECT_FALSE(Algorithm::IsPointNearOtherOne(equator, 11070.0f, farNorth));
}

// ---- Interpolation --------------------------------------------------------------------------------------------

struct RatioCase {
  const char* name;
  float ratio;
  GeoCoordinateZ point;  // between (10, 40, 100) and (20, -40, 300)
};
void PrintTo(const RatioCase& c, std::ostream* out) {
  *out << c.name;
}
class GetInsertPointEdges : public testing::TestWithParam<RatioCase> {};

TEST_P(GetInsertPointEdges, HoldWithAndWithoutHeight) {
  const RatioCase& c = GetParam();
  const GeoCoordinateZ start{10, 40, 100}, end{20, -40, 300};
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(start, end, c.ratio), c.point));
  const GeoCoordinate flatStart = start, flatEnd = end, flatPoint = c.point;
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(flatStart, flatEnd, c.ratio), flatPoint));
}
INSTANTIATE_TEST_SUITE_P(All, GetInsertPointEdges,
                         testing::Values(RatioCase{"Zero", 0.0f, {10, 40, 100}},
                                         RatioCase{"One", 1.0f, {20, -40, 300}},
                                         RatioCase{"Half", 0.5f, {15, 0, 200}},
                                         RatioCase{"Quarter", 0.25f, {12.5, 20, 150}},
                                         RatioCase{"NegativeIsStart", -0.5f, {10, 40, 100}},
                                         RatioCase{"TwoIsEnd", 2.0f, {20, -40, 300}},
                                         RatioCase{"JustAboveOneIsEnd", 1.0000001f, {20, -40, 300}},
                                         RatioCase{"MinusInfiniteIsStart", -kInfinityFloat, {10, 40, 100}},
                                         RatioCase{"InfiniteIsEnd", kInfinityFloat, {20, -40, 300}},
                                         RatioCase{"NaNIsNotClamped", kNaNFloat, {kNaN, kNaN, kNaNFloat}}),
                         CaseName<RatioCase>);

TEST(GetInsertPoint, NegativeZeroStaysAndANegativeRatioBecomesPositiveZero) {
  const GeoCoordinateZ start{-0.0, -0.0, -0.0f}, end{1, 1, 1};
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(start, end, -0.0f), start));
  EXPECT_TRUE(
      SameBits(Algorithm::GetInsertPointFromSegment(start, end, -1.0f), GeoCoordinateZ(0.0, 0.0, 0.0f)));
  const GeoCoordinate flatStart = start, flatEnd = end;
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(flatStart, flatEnd, -0.0f), flatStart));
  EXPECT_TRUE(
      SameBits(Algorithm::GetInsertPointFromSegment(flatStart, flatEnd, -1.0f), GeoCoordinate(0.0, 0.0)));
}

TEST(GetInsertPoint, DeliberatelyMissesTheEndByALastBitAtRatioOne) {
  // -88.2 - 95 rounds; adding it to 95 does not lead back to -88.2.
  const GeoCoordinate start{95.0, 0.0}, end{-88.2, 0.0};
  EXPECT_EQ(Bits(Algorithm::GetInsertPointFromSegment(start, end, 1.0f).longitude), 0xc0560cccccccccccu);
  EXPECT_EQ(Bits(end.longitude), 0xc0560ccccccccccdu);
  EXPECT_EQ(Bits(Algorithm::GetInsertPointFromSegment(start, end, 7.0f).longitude), 0xc0560cccccccccccu);
}

TEST(GetInsertPoint, HeightsBeyondTheRangeOfFloatBecomeInfinite) {
  const float largest = std::numeric_limits<float>::max();
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment({0, 0, -largest}, {1, 1, largest}, 0.5f).z,
                       kInfinityFloat));  // the difference is taken in float
  EXPECT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment({0, 0, 0.0f}, {1, 1, largest}, 1.0f).z, largest));
}

// ---- Points on and beside a line ------------------------------------------------------------------------------

TEST(GetLinePoint, IsDeliberatelyNotClamped) {
  const GeoCoordinate start{7, 47}, end{7.01, 47.02};
  const double length = start.DistanceTo(end);
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(start, end, 0.0), start));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(start, end, length),
                       GeoCoordinate(7 + (7.01 - 7), 47 + (47.02 - 47))));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(start, end, 2.0 * length),
                       GeoCoordinate(7 + 2.0 * (7.01 - 7), 47 + 2.0 * (47.02 - 47))));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(start, end, -length),
                       GeoCoordinate(7 - (7.01 - 7), 47 - (47.02 - 47))));
}

TEST(GetLinePoint, DeliberatelyDividesByALengthOfZero) {
  const GeoCoordinate point{7, 47};
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(point, point, 5.0), GeoCoordinate(kNaN, kNaN)));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint(point, point, 0.0), GeoCoordinate(kNaN, kNaN)));
  // One place under two longitudes.
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint({0, 0}, {360, 0}, 5.0), GeoCoordinate(kInfinity, kNaN)));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint({0, 90}, {-10, 90}, 5.0), GeoCoordinate(-kInfinity, kNaN)));
}

TEST(GetLinePoint, GivesNaNWhereTheDistanceIsNaN) {
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint({7, 47}, {7.1, 47.1}, kNaN), GeoCoordinate(kNaN, kNaN)));
  EXPECT_TRUE(SameBits(Algorithm::GetLinePoint({7, 91}, {7.1, 47.1}, 5.0), GeoCoordinate(kNaN, kNaN)));
}

struct FootCase {
  const char* name;
  GeoCoordinate point, start, end, foot;
};
void PrintTo(const FootCase& c, std::ostream* out) {
  *out << c.name;
}
class GetFootPointEdges : public testing::TestWithParam<FootCase> {};

TEST_P(GetFootPointEdges, Hold) {
  const FootCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetFootPoint(c.point, c.start, c.end), c.foot));
}
// 1.91487e-7 and this one, squared, rounded and added, give the double 1e-13 itself.
constexpr double kOtherLeg = 2.516599468151418e-07;
INSTANTIATE_TEST_SUITE_P(
    All, GetFootPointEdges,
    testing::Values(FootCase{"Within", {3, 5}, {0, 0}, {8, 0}, {3, 0}},
                    FootCase{"BeyondEnd", {9, 5}, {0, 0}, {8, 0}, {9, 0}},
                    FootCase{"BeforeStart", {-9, 5}, {0, 0}, {8, 0}, {-9, 0}},
                    FootCase{"Diagonal", {0, 2}, {0, 0}, {4, 4}, {1, 1}},
                    FootCase{"OnTheLine", {2, 2}, {0, 0}, {4, 4}, {2, 2}},
                    FootCase{"NoScalingNearThePole", {0, 82}, {0, 80}, {4, 84}, {1, 81}},
                    FootCase{"EqualEnds", {3, 5}, {7, 47}, {7, 47}, {7, 47}},
                    FootCase{"JustTooShort", {1, 0}, {0, 0}, {3.1622e-7, 0}, {0, 0}},
                    FootCase{"JustLongEnough", {1, 0}, {0, 0}, {3.1623e-7, 0}, {1, 0}},
                    FootCase{"SquaredLengthBelowTheThreshold",
                             {1.91487e-7, kOtherLeg},
                             {0, 0},
                             {1.91487e-7, Below(kOtherLeg*(1 - 1e-15))},
                             {0, 0}},
                    // Exactly on the threshold counts as long enough: the end itself, a ratio of exactly 1.
                    FootCase{"SquaredLengthOnTheThreshold",
                             {1.91487e-7, kOtherLeg},
                             {0, 0},
                             {1.91487e-7, kOtherLeg},
                             {1.91487e-7, kOtherLeg}},
                    FootCase{"EqualEndsWithNaNPoint", {kNaN, 5}, {7, 47}, {7, 47}, {7, 47}},
                    FootCase{"NaNPoint", {kNaN, 5}, {0, 0}, {8, 1}, {kNaN, kNaN}},
                    FootCase{"NaNStart", {3, 5}, {0, kNaN}, {8, 0}, {kNaN, kNaN}},
                    FootCase{"NaNEnd", {3, 5}, {0, 0}, {kNaN, 0}, {kNaN, kNaN}},
                    FootCase{"InfiniteEnd", {3, 5}, {0, 0}, {kInfinity, 0}, {kNaN, kNaN}}),
    CaseName<FootCase>);

struct SideCase {
  const char* name;
  GeoCoordinate point, start, end;
  double side;
};
void PrintTo(const SideCase& c, std::ostream* out) {
  *out << c.name;
}
class GetPositionOfPointToLineEdges : public testing::TestWithParam<SideCase> {};

TEST_P(GetPositionOfPointToLineEdges, Hold) {
  const SideCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetPositionOfPointToLine(c.point, c.start, c.end), c.side));
}
INSTANTIATE_TEST_SUITE_P(
    All, GetPositionOfPointToLineEdges,
    testing::Values(SideCase{"EastOfANorthwardLineIsRight", {1, 0.5}, {0, 0}, {0, 1}, -1.0},
                    SideCase{"WestOfANorthwardLineIsLeft", {-1, 0.5}, {0, 0}, {0, 1}, 1.0},
                    SideCase{"NorthOfAnEastwardLineIsLeft", {0.5, 2}, {0, 0}, {3, 0}, 6.0},
                    SideCase{"OnTheLine", {2, 2}, {0, 0}, {4, 4}, 0.0},
                    SideCase{"OnTheLineBeyondItsEnd", {8, 8}, {0, 0}, {4, 4}, 0.0},
                    SideCase{"AtStart", {7, 47}, {7, 47}, {8, 48}, 0.0},
                    SideCase{"NoLength", {1, 2}, {7, 47}, {7, 47}, 0.0},
                    SideCase{"NaN", {kNaN, 2}, {0, 0}, {4, 4}, kNaN},
                    SideCase{"InfiniteStart", {1, 2}, {kInfinity, 0}, {4, 4}, kNaN}),
    CaseName<SideCase>);

// ---- Exact bits -----------------------------------------------------------------------------------------------
// Worked out with exact fractions, rounded once after each operation of the formula.

TEST(ExactBits, Interpolation) {
  const GeoCoordinate a{116.3, 39.9}, b{116.4, 40.1}, west{-58.39, -34.6}, east{151.2, -33.87};
  const auto bits = [](const GeoCoordinate& start, const GeoCoordinate& end, float ratio) {
    const GeoCoordinate point = Algorithm::GetInsertPointFromSegment(start, end, ratio);
    return std::vector<std::uint64_t>{Bits(point.longitude), Bits(point.latitude)};
  };
  EXPECT_EQ(bits(a, b, 0.25f), (std::vector<std::uint64_t>{0x405d14cccccccccdu, 0x4043f9999999999au}));
  // The ratio is a float, widened: 0.1f is not 0.1.
  EXPECT_EQ(bits(a, b, 0.1f), (std::vector<std::uint64_t>{0x405d13d70a3d9999u, 0x4043f5c28f5ccccdu}));
  EXPECT_EQ(bits(a, b, 0.7f), (std::vector<std::uint64_t>{0x405d17ae1479999au, 0x4044051eb84ccccdu}));
  EXPECT_EQ(bits(a, b, 1.0f), (std::vector<std::uint64_t>{0x405d19999999999au, 0x40440ccccccccccdu}));
  EXPECT_EQ(bits(west, east, 0.3f), (std::vector<std::uint64_t>{0x4011f2b0c870a3d0u, 0xc04130c49b933333u}));
}

TEST(ExactBits, HeightsAreSubtractedInFloatAndScaledInDouble) {
  const auto height = [](float startHeight, float endHeight, float ratio) {
    return Bits(Algorithm::GetInsertPointFromSegment({0, 0, startHeight}, {1, 1, endHeight}, ratio).z);
  };
  EXPECT_EQ(height(12.3f, 45.6f, 0.3f), 0x41b251ecu);
  EXPECT_EQ(height(100.1f, -0.7f, 0.9f), 0x41161480u);
  // All in float would give c24303b0, all in double c24303b1.
  EXPECT_EQ(height(324.12f, -52.52f, 0.99f), 0xc24303aeu);
}

TEST(ExactBits, FootPoint) {
  const auto bits = [](const GeoCoordinate& point, const GeoCoordinate& start, const GeoCoordinate& end) {
    const GeoCoordinate foot = Algorithm::GetFootPoint(point, start, end);
    return std::vector<std::uint64_t>{Bits(foot.longitude), Bits(foot.latitude)};
  };
  EXPECT_EQ(bits({116.37, 39.95}, {116.3, 39.9}, {116.4, 40.1}),
            (std::vector<std::uint64_t>{0x405d15604189374cu, 0x4043fbe76c8b4396u}));
  EXPECT_EQ(bits({8.1, 47.9}, {7.3, 47.1}, {7.4, 47.3}),
            (std::vector<std::uint64_t>{0x401f1eb851eb852bu, 0x404807ae147ae147u}));
  EXPECT_EQ(bits({-58.4, -34.61}, {-58.39, -34.6}, {-58.37, -34.63}),
            (std::vector<std::uint64_t>{0xc04d31b91b91b91cu, 0xc0414d186b204b9eu}));
}

TEST(ExactBits, SideOfLine) {
  EXPECT_EQ(Bits(Algorithm::GetPositionOfPointToLine({116.37, 39.95}, {116.3, 39.9}, {116.4, 40.1})),
            0xbf826e978d4fe116u);
  // Two equal products: a fused multiply-add would leave the rounding error of one of them.
  EXPECT_EQ(Bits(Algorithm::GetPositionOfPointToLine({0.3, 0.3}, {0.1, 0.1}, {0.7, 0.7})), 0u);
}

}  // namespace
