#include <cmath>
#include <cstdint>
#include <ostream>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/angles_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::MapVector3d;
using vorel::test::Bits;
using vorel::test::CaseName;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::Numbers;
using vorel::test::Paste;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;

constexpr float kLargestFoldable = 8589934592.0f;  // 2^33 degrees

// ---- The class itself -----------------------------------------------------------------------------------------

static_assert(!std::is_default_constructible<Algorithm>::value, "static functions only");
static_assert(std::is_empty<Algorithm>::value && !std::is_polymorphic<Algorithm>::value,
              "no data, nothing virtual");
static_assert(std::is_same<std::underlying_type<vorel::ArrowType>::type, int>::value,
              "any int is a valid value");
static_assert(static_cast<int>(static_cast<vorel::ArrowType>(-2147483647 - 1)) == -2147483647 - 1 &&
                  static_cast<int>(static_cast<vorel::ArrowType>(2147483647)) == 2147483647,
              "any int is a valid value");
static_assert(
    std::is_same<decltype(Algorithm::GetAngle(GeoCoordinate(), GeoCoordinate(), GeoCoordinate())),
                 float>::value &&
        std::is_same<decltype(Algorithm::GetAngle(GeoCoordinate(), GeoCoordinate())), double>::value,
    "the turning angle is a float, the bearing a double");

// ---- Edge cases -----------------------------------------------------------------------------------------------

struct TurnCase {
  const char* name;
  GeoCoordinate a, b, c;
  float degrees;
};
void PrintTo(const TurnCase& c, std::ostream* out) {
  *out << c.name;
}
class TurningAngleEdges : public testing::TestWithParam<TurnCase> {};

TEST_P(TurningAngleEdges, Hold) {
  const TurnCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetAngle(c.a, c.b, c.c), c.degrees));
}
INSTANTIATE_TEST_SUITE_P(
    All, TurningAngleEdges,
    testing::Values(
        TurnCase{"StraightOn", {0, 0}, {1, 0}, {2, 0}, 0.0f}, TurnCase{"Left", {0, 0}, {1, 0}, {1, 1}, 90.0f},
        TurnCase{"RightGivesTheSameAsLeft", {0, 0}, {1, 0}, {1, -1}, 90.0f},
        TurnCase{"Reversal", {0, 0}, {1, 0}, {0, 0}, 180.0f},
        // A quarter of the plane of degrees stays a quarter at any latitude: longitudes are not scaled.
        TurnCase{"HalfLeftNearThePole", {10, 80}, {11, 80}, {12, 81}, 45.0f},
        TurnCase{"NoFirstSegment", {1, 0}, {1, 0}, {2, 5}, 0.0f},
        TurnCase{"NoSecondSegment", {0, 0}, {1, 0}, {1, 0}, 0.0f},
        TurnCase{"AllThreeEqual", {1, 2}, {1, 2}, {1, 2}, 0.0f},
        TurnCase{"TinyButNotUnderflowing", {0, 0}, {1e-76, 0}, {1e-76, 1e-76}, 90.0f},
        TurnCase{"SquaresUnderflow", {0, 0}, {1e-170, 0}, {1e-170, 1e-170}, 0.0f},
        TurnCase{"AcrossTheAntimeridianTheLongWayRound", {178, 0}, {179, 0}, {-179, 0}, 180.0f},
        TurnCase{"NaNFirst", {kNaN, 0}, {1, 0}, {2, 0}, kNaNFloat},
        TurnCase{"NaNMiddle", {0, 0}, {1, kNaN}, {2, 0}, kNaNFloat},
        TurnCase{"NaNLast", {0, 0}, {1, 0}, {2, kNaN}, kNaNFloat},
        TurnCase{"NaNBesideASegmentWithoutLength", {1, 0}, {1, 0}, {kNaN, 0}, kNaNFloat},
        TurnCase{"Infinite", {0, 0}, {kInfinity, 0}, {2, 0}, kNaNFloat}),
    CaseName<TurnCase>);

TEST(TurningAngle, DeliberatelyDoesNotClampTheCosine) {
  // Straight lines and reversals whose rounded cosine lies beyond 1: NaN, about one in six.
  constexpr int kRuns = 2000;
  int straightNaNs = 0;
  int reversalNaNs = 0;
  Numbers numbers(7);
  for (int run = 0; run < kRuns; ++run) {
    const double eastward = numbers.Between(-1.0, 1.0);
    const double northward = numbers.Between(-1.0, 1.0);
    const double further = numbers.Between(0.1, 5.0);
    const GeoCoordinate a{0, 0}, b{eastward, northward};
    const float straight =
        Algorithm::GetAngle(a, b, {eastward + further * eastward, northward + further * northward});
    const float reversal =
        Algorithm::GetAngle(a, b, {eastward - further * eastward, northward - further * northward});
    EXPECT_TRUE(std::isnan(straight) || straight <= 1e-5f) << straight;
    EXPECT_TRUE(std::isnan(reversal) || reversal >= 179.9999f) << reversal;
    straightNaNs += std::isnan(straight);
    reversalNaNs += std::isnan(reversal);
  }
  EXPECT_GT(straightNaNs, kRuns / 10);
  EXPECT_GT(reversalNaNs, kRuns / 10);
}

struct BearingCase {
  const char* name;
  GeoCoordinate from, to;
  double degrees;
};
void PrintTo(const BearingCase& c, std::ostream* out) {
  *out << c.name;
}
class BearingEdges : public testing::TestWithParam<BearingCase> {};

TEST_P(BearingEdges, Hold) {
  const BearingCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetAngle(c.from, c.to), c.degrees));
}
INSTANTIATE_TEST_SUITE_P(All, BearingEdges,
                         testing::Values(BearingCase{"DueNorth", {7, 47}, {7, 48}, 0.0},
                                         BearingCase{"DueEast", {0, 0}, {1, 0}, 90.0},
                                         BearingCase{"DueWestIsNegative", {0, 0}, {-1, 0}, -90.0},
                                         BearingCase{"DueSouth", {7, 48}, {7, 47}, 180.0},
                                         BearingCase{"AcrossTheAntimeridian", {180, 0}, {-90, 0}, 90.0},
                                         BearingCase{"EqualPoints", {7, 47}, {7, 47}, 0.0},
                                         BearingCase{"EqualPointsAtThePole", {7, 90}, {7, 90}, 0.0},
                                         BearingCase{"NegativeZeros", {0.0, -0.0}, {0.0, 0.0}, 0.0},
                                         BearingCase{"NaNFrom", {kNaN, 47}, {7, 47}, kNaN},
                                         BearingCase{"NaNTo", {7, 47}, {7, kNaN}, kNaN},
                                         BearingCase{
                                             "EqualButInfinite", {kInfinity, 0}, {kInfinity, 0}, kNaN}),
                         CaseName<BearingCase>);

TEST(Bearing, OneDegreeBesideNorthHasTheRightSign) {
  const GeoCoordinate from{0, 0};
  EXPECT_NEAR(Algorithm::GetAngle(from, {0.001 * std::tan(0.017453292519943295), 0.001}), 1.0, 1e-9);
  EXPECT_NEAR(Algorithm::GetAngle(from, {-0.001 * std::tan(0.017453292519943295), 0.001}), -1.0, 1e-9);
}

constexpr double kCell = 1.0 / 360000.0;  // degrees; one hundredth of an arc-second

struct YawCase {
  const char* name;
  double lat1, lon1, lat2, lon2;
  double degrees;
};
void PrintTo(const YawCase& c, std::ostream* out) {
  *out << c.name;
}
class YawEdges : public testing::TestWithParam<YawCase> {};

TEST_P(YawEdges, Hold) {
  const YawCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetYaw(c.lat1, c.lon1, c.lat2, c.lon2), c.degrees));
}
INSTANTIATE_TEST_SUITE_P(
    All, YawEdges,
    testing::Values(
        YawCase{"EqualPoints", 47, 7, 47, 7, 0.0},
        YawCase{"OneGridCell", 47.0, 7.0, 47.0 + 0.4 * kCell, 7.0 + 0.4 * kCell, 0.0},
        YawCase{"NorthOnOneMeridian", 47, 7, 48, 7, 0.0}, YawCase{"SouthOnOneMeridian", 48, 7, 47, 7, 180.0},
        YawCase{"SouthOnOneGridMeridian", 48.0, 7.0, 47.0, 7.0 + 0.4 * kCell, 180.0},
        YawCase{"NorthOnOneGridMeridian", 47.0, 7.0 + 0.4 * kCell, 48.0, 7.0, 0.0},
        YawCase{"OneCellNorth", 47.0, 7.0, 47.0 + 0.6 * kCell, 7.0, 0.0},
        YawCase{"OneCellSouth", 47.0, 7.0, 47.0 - 0.6 * kCell, 7.0, 180.0},
        // Deliberate: adding 0.5 and truncating makes the cell at 0 three halves wide on the negative side.
        YawCase{"LopsidedCellAtZero", -1.4 * kCell, 0.0, 0.4 * kCell, 0.0, 0.0},
        YawCase{"LopsidedCellEnds", -1.6 * kCell, 0.0, 0.4 * kCell, 0.0, 0.0},
        YawCase{"LopsidedCellEndsSouthward", 0.4 * kCell, 0.0, -1.6 * kCell, 0.0, 180.0},
        YawCase{"HalfACellBelowIsTheSameCell", 0.0, 0.0, -1.0 * kCell, 0.0, 0.0},
        YawCase{"HalfACellAboveIsTheNext", 0.5 * kCell, 0.0, 0.0, 0.0, 180.0},
        // NaN input: the formula gives NaN, which becomes 0.
        YawCase{"NaNLatitude", kNaN, 7, 48, 8, 0.0}, YawCase{"NaNLongitude", 47, 7, 48, kNaN, 0.0},
        YawCase{"NaNCountsAsGridZero", kNaN, 7, 1, 7, 0.0},
        YawCase{"NaNCountsAsGridZeroSouthward", kNaN, 7, -1, 7, 180.0},
        YawCase{"InfiniteLatitudesOnOneMeridian", kInfinity, 7, -kInfinity, 7, 180.0},
        YawCase{"GridSaturatesAbove", 5966, 7, 5967, 7, 0.0},
        YawCase{"GridSaturatesBelow", -5966, 7, -5967, 7, 0.0},
        YawCase{"GridStillHoldsBelowItsLimit", 5965, 7, 5964, 7, 180.0},
        // 2^31 / 360000 = 5965.23...: the grid difference of these two would overflow when subtracted.
        YawCase{"FarthestSouthwardStep", 5970, 7, -5970, 7, 180.0},
        YawCase{"FarthestNorthwardStep", -5970, 7, 5970, 7, 0.0}),
    CaseName<YawCase>);

TEST(Yaw, LatitudeComesFirst) {
  EXPECT_TRUE(SameBits(Algorithm::GetYaw(1.0, 0.0, 2.0, 0.0), 0.0));  // north
  EXPECT_NEAR(Algorithm::GetYaw(0.0, 1.0, 0.5, 2.0), 63.43, 0.01);    // more east than north
}

TEST(Yaw, DueEastAndWestRoundingMayGiveNorth) {
  // Close to due east the arc sine is ill-conditioned, and where its argument rounds beyond 1 the NaN becomes 0.
  constexpr int kRuns = 2000;
  int zeros = 0;
  Numbers numbers(7);
  for (int run = 0; run < kRuns; ++run) {
    const double longitude = numbers.Between(-170.0, 170.0);
    const double step = numbers.Between(0.1, 10.0);
    const double east = Algorithm::GetYaw(0.0, longitude, 0.0, longitude + step);
    const double west = Algorithm::GetYaw(0.0, longitude, 0.0, longitude - step);
    EXPECT_TRUE(east == 0.0 || std::fabs(east - 90.0) < 0.001) << east;
    EXPECT_TRUE(west == 0.0 || std::fabs(west - 270.0) < 0.001) << west;
    zeros += (east == 0.0) + (west == 0.0);
  }
  EXPECT_GT(zeros, kRuns / 10);
  EXPECT_LT(zeros, 2 * kRuns);
}

TEST(Yaw, FindsEachQuadrant) {
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, 0.01, 0.01), 45.0, 1e-3);
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, -0.01, 0.01), 135.0, 1e-3);
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, -0.01, -0.01), 225.0, 1e-3);
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, 0.01, -0.01), 315.0, 1e-3);
  EXPECT_NEAR(Algorithm::GetYaw(47, 7, 47, 6.99), 270.0,
              0.01);  // on one grid latitude: the negative angle, folded
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, 0.01, 0.01 * std::tan(1.0 / 57.29577951308232)), 1.0, 1e-3);
  EXPECT_NEAR(Algorithm::GetYaw(0, 0, 0.01, -0.01 * std::tan(1.0 / 57.29577951308232)), 359.0, 1e-3);
}

TEST(Yaw, DecidesTheQuadrantOnTheGridAndNotOnTheDoubles) {
  // The second point lies south of the first, but in the same row of the grid: the heading is the angle itself.
  const double south = 47.0 - 0.4 * kCell;
  const double heading = Algorithm::GetYaw(47.0, 7.0, south, 7.001);
  EXPECT_LT(heading, 90.0);
  // One row farther down it counts as southward: 180 less the angle.
  EXPECT_GT(Algorithm::GetYaw(47.0, 7.0, 47.0 - 0.6 * kCell, 7.001), 90.0);
}

TEST(Yaw, ComparesGridValuesWhoseDifferenceOverflows) {
  // Southwest by the grid: by comparing 180 less the angle; a wrapped difference would say northeast: the angle.
  const double lat1 = 5000.0, lon1 = 5000.0, lat2 = -5000.0, lon2 = -5001.0;
  const double heading = Algorithm::GetYaw(lat1, lon1, lat2, lon2);
  EXPECT_GE(heading, 90.0);
  EXPECT_LE(heading, 270.0);
}

TEST(Yaw, DeliberatelyGivesExactly360) {
  // A heading a hair west of north, whose negative angle is lost when a turn is added.
  EXPECT_TRUE(SameBits(Algorithm::GetYaw(0.0, 0.500001 * kCell, 89.9999, 0.499999 * kCell), 360.0));
}

struct DifferenceCase {
  const char* name;
  float from, to;
  float correctedOnce;  // CalcAziDiff
  float folded;         // AngleDiff
};
void PrintTo(const DifferenceCase& c, std::ostream* out) {
  *out << c.name;
}
class HeadingDifferenceEdges : public testing::TestWithParam<DifferenceCase> {};

TEST_P(HeadingDifferenceEdges, Hold) {
  const DifferenceCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::CalcAziDiff(c.from, c.to), c.correctedOnce));
  EXPECT_TRUE(SameBits(Algorithm::AngleDiff(c.from, c.to), c.folded));
}
const float kAbove180 = std::nextafterf(180.0f, 360.0f);
INSTANTIATE_TEST_SUITE_P(
    All, HeadingDifferenceEdges,
    testing::Values(
        DifferenceCase{"Equal", 77, 77, 0.0f, 0.0f}, DifferenceCase{"AcrossNorth", 359, 1, 2.0f, 2.0f},
        DifferenceCase{"AcrossNorthBackwards", 1, 359, -2.0f, -2.0f},
        // Deliberate: half a turn keeps its sign here and loses it there.
        DifferenceCase{"HalfATurn", 0, 180, 180.0f, -180.0f},
        DifferenceCase{"HalfATurnBack", 180, 0, -180.0f, -180.0f},
        // Deliberate: adding 180 in float rounds, here to a whole turn.
        DifferenceCase{"JustBelowHalfATurn", 0, 179.99998f, 179.99998f, -180.0f},
        DifferenceCase{"BelowHalfATurn", 0, 179.9999f, 179.9999f, 179.99988f},
        DifferenceCase{"JustAboveHalfATurn", 0, kAbove180, kAbove180 - 360.0f, -180.0f},
        DifferenceCase{"JustBelowMinusHalfATurn", kAbove180, 0, 360.0f - kAbove180, 360.0f - kAbove180},
        DifferenceCase{"WholeTurn", 0, 360, 0.0f, 0.0f}, DifferenceCase{"WholeTurnBack", 360, 0, 0.0f, 0.0f},
        // Deliberate: one correction only.
        DifferenceCase{"OneCorrectionOnly", 0, 600, 240.0f, -120.0f},
        DifferenceCase{"OneCorrectionOnlyBack", 600, 0, -240.0f, 120.0f},
        DifferenceCase{"ManyTurns", 0, 3610, 3250.0f, 10.0f},
        DifferenceCase{"NegativeZero", 0.0f, -0.0f, -0.0f, 0.0f},
        DifferenceCase{"NaNFrom", kNaNFloat, 1, kNaNFloat, kNaNFloat},
        DifferenceCase{"NaNTo", 1, kNaNFloat, kNaNFloat, kNaNFloat},
        DifferenceCase{"Infinite", 0, kInfinityFloat, kInfinityFloat, kNaNFloat},
        DifferenceCase{"InfiniteBack", kInfinityFloat, 0, -kInfinityFloat, kNaNFloat},
        DifferenceCase{"BothInfinite", kInfinityFloat, kInfinityFloat, kNaNFloat, kNaNFloat},
        DifferenceCase{"DifferenceOverflows", -3e38f, 3e38f, kInfinityFloat, kNaNFloat}),
    CaseName<DifferenceCase>);

struct FoldCase {
  const char* name;
  float degrees;
  float within180;
  float within360;
};
void PrintTo(const FoldCase& c, std::ostream* out) {
  *out << c.name;
}
class FoldEdges : public testing::TestWithParam<FoldCase> {};

TEST_P(FoldEdges, Hold) {
  const FoldCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::NormalizeAngle180(c.degrees), c.within180));
  EXPECT_TRUE(SameBits(Algorithm::NormalizeAngle360(c.degrees), c.within360));
}
// Half the distance from 360 to the float below it: the largest magnitude that is lost beside 360.
constexpr float kLostBeside360 = 1.52587890625e-5f;
const float kAboveLost = std::nextafterf(kLostBeside360, 1.0f);
INSTANTIATE_TEST_SUITE_P(
    All, FoldEdges,
    testing::Values(
        FoldCase{"Zero", 0.0f, 0.0f, 0.0f}, FoldCase{"NegativeZero", -0.0f, -0.0f, -0.0f},
        FoldCase{"HalfATurn", 180.0f, 180.0f, 180.0f}, FoldCase{"HalfATurnBack", -180.0f, 180.0f, 180.0f},
        FoldCase{"JustAboveHalfATurn", kAbove180, kAbove180 - 360.0f, kAbove180},
        FoldCase{"JustAboveMinusHalfATurn", -179.99998f, -179.99998f, 180.00002f},
        FoldCase{"WholeTurn", 360.0f, 0.0f, 0.0f}, FoldCase{"WholeTurnBack", -360.0f, 0.0f, 0.0f},
        FoldCase{"One", 1.0f, 1.0f, 1.0f}, FoldCase{"MinusOne", -1.0f, -1.0f, 359.0f},
        FoldCase{"ThreeHundredFiftyNine", 359.0f, -1.0f, 359.0f}, FoldCase{"Half", -0.5f, -0.5f, 359.5f},
        FoldCase{"JustBelowAWholeTurn", 359.99997f, -3.0517578e-5f, 359.99997f},
        FoldCase{"ThreeHalves", 540.0f, 180.0f, 180.0f}, FoldCase{"ThreeHalvesBack", -540.0f, 180.0f, 180.0f},
        FoldCase{"TwoTurns", 720.0f, 0.0f, 0.0f},
        // Deliberate: the sum rounds to 360 itself, outside of the half-open range.
        FoldCase{"TinyNegativeGives360", -kLostBeside360, -kLostBeside360, 360.0f},
        FoldCase{"DenormalNegativeGives360", -1e-40f, -1e-40f, 360.0f},
        FoldCase{"NegativeJustLargeEnough", -kAboveLost, -kAboveLost, 359.99997f},
        // The border of the contract: here steps of 360 round to 512, so the result is no longer the same angle.
        FoldCase{"LargestFoldable", kLargestFoldable, -64.0f, 296.0f},
        FoldCase{"LargestFoldableBack", -kLargestFoldable, 64.0f, 64.0f},
        FoldCase{"NaN", kNaNFloat, kNaNFloat, kNaNFloat}),
    CaseName<FoldCase>);

TEST(Fold, BeyondTheLargestFoldableAngleAStepIsLost) {
  // Why the contract ends at 2^33: one float farther, taking 360 away changes nothing.
  const float beyond = std::nextafterf(kLargestFoldable, kInfinityFloat);
  EXPECT_EQ(beyond - 360.0f, beyond);
  EXPECT_EQ(-beyond + 360.0f, -beyond);
  EXPECT_LT(kLargestFoldable - 360.0f, kLargestFoldable);
}

struct TriangleCase {
  const char* name;
  double sideA, sideB, angle;
  std::vector<double> lengths;
};
void PrintTo(const TriangleCase& c, std::ostream* out) {
  *out << c.name;
}
class TriangleEdges : public testing::TestWithParam<TriangleCase> {};

TEST_P(TriangleEdges, Hold) {
  const TriangleCase& c = GetParam();
  const std::vector<double> lengths = Algorithm::GetLength3OfTriangle(c.sideA, c.sideB, c.angle);
  ASSERT_EQ(lengths.size(), c.lengths.size()) << Paste(lengths);
  // Two roundings of numbers up to 10; the exact bits are compared with the plain twin.
  for (std::size_t i = 0; i < lengths.size(); ++i) EXPECT_NEAR(lengths[i], c.lengths[i], 4e-15) << i;
}
INSTANTIATE_TEST_SUITE_P(
    All, TriangleEdges,
    testing::Values(
        TriangleCase{"RightAngleBetweenBAndC", 5, 3, 90, {4}},
        TriangleCase{"LongerFirst",
                     4,
                     5,
                     30,
                     {5 * 0.8660254037844386 + std::sqrt(9.75), 5 * 0.8660254037844386 - std::sqrt(9.75)}},
        TriangleCase{"Equilateral", 2, 2, 60, {2}},             // the second candidate, 0, is no side
        TriangleCase{"EqualSidesFoldedTogether", 3, 3, 0, {}},  // 6 and 0: no real triangle either
        TriangleCase{"SideATooShort", 1, 5, 30, {}}, TriangleCase{"ObtuseTooShort", 1, 5, 150, {}},
        TriangleCase{"Degenerate", 2, 3, 0, {}},  // 5 and 1 close no real triangle: both bounds are strict
        TriangleCase{"ZeroSides", 0, 0, 45, {}}, TriangleCase{"ZeroSideA", 0, 3, 0, {}},
        TriangleCase{"NegativeSideA", -5, 3, 90, {}}, TriangleCase{"NaNSideA", kNaN, 3, 30, {}},
        TriangleCase{"NaNSideB", 3, kNaN, 30, {}}, TriangleCase{"NaNAngle", 3, 3, kNaN, {}},
        TriangleCase{"InfiniteSideA", kInfinity, 3, 30, {}},
        TriangleCase{"InfiniteAngle", 3, 3, kInfinity, {}}),
    CaseName<TriangleCase>);

TEST(Triangle, DeliberatelyGivesACoincidingLengthTwice) {
  // With sideA exactly sideB * sin(angle) the root is 0.
  const double sideB = 5.0, angle = 40.0;
  const double sideA = sideB * std::sin(angle * 3.141592653589793 / 180.0);
  const std::vector<double> lengths = Algorithm::GetLength3OfTriangle(sideA, sideB, angle);
  ASSERT_EQ(lengths.size(), 2u);
  EXPECT_EQ(Bits(lengths[0]), Bits(lengths[1]));
  EXPECT_TRUE(Algorithm::GetLength3OfTriangle(std::nextafter(sideA, 0.0), sideB, angle).empty());
}

TEST(Distance, TakesXAsLongitudeAndYAsLatitude) {
  const MapVector3d p{7.5, 47.5, 100.0}, q{7.6, 47.9, -3.0};
  EXPECT_TRUE(
      SameBits(Algorithm::Distance(p, q), GeoCoordinate(7.5, 47.5).DistanceTo(GeoCoordinate(7.6, 47.9))));
  EXPECT_TRUE(SameBits(Algorithm::Distance(p, p), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::Distance({7.5, 91.0, 0.0}, q), kNaN));
  EXPECT_TRUE(SameBits(Algorithm::Distance({kNaN, 47.0, 0.0}, q), kNaN));
}

TEST(Distance, DeliberatelyIgnoresZ) {
  EXPECT_TRUE(SameBits(Algorithm::Distance({7.5, 47.5, kNaN}, {7.5, 47.5, 1e9}), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::Distance({7.5, 47.5, 5.0}, {7.6, 47.5, kInfinity}),
                       Algorithm::Distance({7.5, 47.5, 0.0}, {7.6, 47.5, 0.0})));
}

// ---- Exact bits -----------------------------------------------------------------------------------------------
// Worked out with exact fractions, rounded once after each operation of the formula.

TEST(ExactBits, OnePixelAtLevel20) {
  EXPECT_EQ(Bits(Algorithm::Get20PixelDistanceOnePixel()), Bits(0.1492910087108612));
  EXPECT_GT(Algorithm::Get20PixelDistanceOnePixel(), 0.14929100871086118);
  EXPECT_LT(Algorithm::Get20PixelDistanceOnePixel(), 0.14929100871086122);
}

TEST(ExactBits, TurningAngleMultipliesBy180BeforeItDividesByPi) {
  // Angles beside the middle of two floats: 180 / pi taken first, or the division first, narrow to the other one.
  EXPECT_EQ(Algorithm::GetAngle({-1, 0}, {0, 0}, {2.7474701626864646, 1}), 0x1.400034p+4f);
  EXPECT_EQ(Algorithm::GetAngle({-1, 0}, {0, 0}, {2.7474602024715584, 1}), 0x1.400078p+4f);
  EXPECT_EQ(Algorithm::GetAngle({-1, 0}, {0, 0}, {1.93745879348949, 1}), 0x1.b4cd16p+4f);
}

TEST(ExactBits, DifferencesOfHeadings) {
  EXPECT_EQ(Bits(Algorithm::CalcAziDiff(359.1f, 1.3f)), 0x400ccc80u);
  EXPECT_EQ(Bits(Algorithm::CalcAziDiff(1.3f, 359.1f)), 0xc00ccc80u);
  EXPECT_EQ(Bits(Algorithm::CalcAziDiff(10.1f, 200.7f)), 0xc3296667u);
  EXPECT_EQ(Bits(Algorithm::CalcAziDiff(0.1f, 180.2f)), 0xc333e667u);
  // Adding 180 in float loses last bits that the other difference keeps.
  EXPECT_EQ(Bits(Algorithm::AngleDiff(359.1f, 1.3f)), 0x400ccc80u);
  EXPECT_EQ(Bits(Algorithm::AngleDiff(1.3f, 359.1f)), 0xc00ccc00u);
  EXPECT_EQ(Bits(Algorithm::AngleDiff(10.1f, 200.7f)), 0xc3296668u);
  EXPECT_EQ(Bits(Algorithm::AngleDiff(0.1f, 180.2f)), 0xc333e668u);
  EXPECT_EQ(Bits(Algorithm::AngleDiff(0.1f, 1000.7f)), 0xc29eccc0u);
  EXPECT_EQ(Bits(Algorithm::AngleDiff(1000.7f, 0.1f)), 0x429eccc8u);
}

TEST(ExactBits, FoldsStepByStepInFloat) {
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle180(1e6f)), 0xc2a00000u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle360(1e6f)), 0x438c0000u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle180(12345.678f)), 0x42d35b00u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle360(12345.678f)), 0x42d35b00u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle180(-12345.678f)), 0xc2d35b00u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle360(-12345.678f)), 0x437e5280u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle180(540.1f)), 0xc333e668u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle360(540.1f)), 0x43341998u);
  EXPECT_EQ(Bits(Algorithm::NormalizeAngle360(-0.1f)), 0x43b3f333u);
}

}  // namespace
