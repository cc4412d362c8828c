// A position and one segment with heights: the foot point, and whether it lies between two points.

#include <cmath>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/local_metres.h"
#include "support/projection_search.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::Bits;
using vorel::test::IsExact;
using vorel::test::kCity;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::kUntouchedRatio;
using vorel::test::OnEquator;
using vorel::test::SameBits;

constexpr double kPi = 3.141592653589793;

// ---- ProjectionPosToLine ----------------------------------------------------------------------------------------

struct FootCase {
  const char* name;
  GeoCoordinateZ start, end, pos;
  int code;
  double ratio;
  GeoCoordinateZ foot;
};

class ProjectionPosToLineEdges : public testing::TestWithParam<FootCase> {};

TEST_P(ProjectionPosToLineEdges, Hold) {
  const FootCase& c = GetParam();
  GeoCoordinateZ foot(1.0, 2.0, 3.0f);
  double ratio = kUntouchedRatio;
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(c.start, c.end, c.pos, foot, ratio), c.code);
  EXPECT_TRUE(SameBits(ratio, c.ratio));
  EXPECT_TRUE(SameBits(foot, c.foot));
}

// Positions on the equator, where longitudes are not shrunk, and binary fractions: every value is exact.
const GeoCoordinateZ kStart(10.0, -1.0, 100.0f);
const GeoCoordinateZ kEnd(12.0, 1.0, 200.0f);
// The square of the first is 1e-13 or just above it; the second is the next smaller double.
constexpr double kShortestDegrees = 3.1622776601683797e-07;
constexpr double kTooShortDegrees = 3.162277660168379e-07;

// The sum of their squares is 1e-13 itself.
constexpr double kLimitEast = 2.6948674738744655e-07;
constexpr double kLimitNorth = 1.6545964155205515e-07;
static_assert(kLimitEast * kLimitEast + kLimitNorth * kLimitNorth == 1e-13, "");
static_assert(kShortestDegrees * kShortestDegrees >= 1e-13 && kTooShortDegrees * kTooShortDegrees < 1e-13,
              "");

INSTANTIATE_TEST_SUITE_P(
    All, ProjectionPosToLineEdges,
    testing::Values(
        FootCase{"Within", kStart, kEnd, {11.0, 0.0, 7.0f}, 0, 0.5, {11.0, 0.0, 150.0f}},
        FootCase{"Beyond", kStart, kEnd, {15.0, 0.0, 7.0f}, 1, 1.5, {13.0, 2.0, 250.0f}},
        FootCase{"Before", kStart, kEnd, {7.0, 0.0, 7.0f}, -1, -0.5, {9.0, -2.0, 50.0f}},
        FootCase{"AtFirstPoint", kStart, kEnd, {9.0, 0.0, 7.0f}, 0, 0.0, kStart},
        FootCase{"AtSecondPoint", kStart, kEnd, {13.0, 0.0, 7.0f}, 0, 1.0, kEnd},
        FootCase{"JustBeyond",
                 kStart,
                 kEnd,
                 {13.000000000000002, 0.0, 7.0f},
                 1,
                 1.0000000000000004,
                 {12.0, 1.0000000000000009, 200.0f}},
        FootCase{"JustBefore",
                 kStart,
                 kEnd,
                 {8.999999999999998, 0.0, 7.0f},
                 -1,
                 -4.440892098500626e-16,
                 {10.0, -1.0000000000000009, 100.0f}},
        FootCase{"MinusZeroRatioAtStartOfASouthWestSegment",
                 {12.0, 0.0, 0.0f},
                 {10.0, -1.0, 8.0f},
                 {12.0, 0.0, 7.0f},
                 0,
                 -0.0,
                 {12.0, 0.0, 0.0f}},
        FootCase{"Repeated", kStart, kStart, {15.0, 0.0, 7.0f}, 0, 0.0, kStart},
        FootCase{"RepeatedWithOtherHeights",
                 {10.0, 0.0, 100.0f},
                 {10.0, 0.0, kInfinityFloat},
                 {15.0, 0.0, 7.0f},
                 0,
                 0.0,
                 {10.0, 0.0, 100.0f}},
        FootCase{"RepeatedKeepsMinusZero",
                 {-0.0, -0.0, -0.0f},
                 {0.0, 0.0, 1.0f},
                 {15.0, 0.0, 7.0f},
                 0,
                 0.0,
                 {-0.0, -0.0, -0.0f}},
        FootCase{"ShortestSegment",
                 {10.0, -kShortestDegrees, 1.0f},
                 {10.0, 0.0, 2.0f},
                 {10.0, 0.0, 7.0f},
                 0,
                 1.0,
                 {10.0, 0.0, 2.0f}},
        FootCase{"TooShort",
                 {10.0, -kTooShortDegrees, 1.0f},
                 {10.0, 0.0, 2.0f},
                 {10.0, 0.0, 7.0f},
                 0,
                 0.0,
                 {10.0, -kTooShortDegrees, 1.0f}},
        FootCase{"ExactlyTheLimitIsLongEnough",
                 {0.0, 0.0, 0.0f},
                 {kLimitEast, kLimitNorth, 0.0f},
                 {kLimitEast, 0.0, 7.0f},
                 0,
                 kLimitEast* kLimitEast / 1e-13,
                 {kLimitEast * (kLimitEast * kLimitEast / 1e-13),
                  kLimitNorth*(kLimitEast* kLimitEast / 1e-13), 0.0f}},
        FootCase{"TooShortAtThePole",
                 {10.0, 89.0, 1.0f},
                 {11.0, 89.0, 2.0f},
                 {15.0, 90.0, 7.0f},
                 0,
                 0.0,
                 {10.0, 89.0, 1.0f}},
        FootCase{"NaNPosition", kStart, kEnd, {kNaN, 0.0, 7.0f}, 0, kNaN, {kNaN, kNaN, kNaNFloat}},
        FootCase{"NaNLatitudeOfPosition", kStart, kEnd, {11.0, kNaN, 7.0f}, 0, kNaN, {kNaN, kNaN, kNaNFloat}},
        FootCase{"NaNStart", {kNaN, 0.0, 1.0f}, kEnd, {11.0, 0.0, 7.0f}, 0, kNaN, {kNaN, kNaN, kNaNFloat}},
        FootCase{"NaNHeightStaysInTheHeight",
                 {10.0, -1.0, kNaNFloat},
                 kEnd,
                 {11.0, 0.0, 7.0f},
                 0,
                 0.5,
                 {11.0, 0.0, kNaNFloat}},
        FootCase{"InfinitePosition",
                 kStart,
                 kEnd,
                 {kInfinity, 0.0, 7.0f},
                 1,
                 kInfinity,
                 {kInfinity, kInfinity, kInfinityFloat}}),
    vorel::test::CaseName<FootCase>);

TEST(ProjectionPosToLine, ShrinksLongitudesByTheCosineOfThePositionsLatitude) {
  for (double latitude = -89.3; latitude < 90.0; latitude += 7.31) {
    SCOPED_TRACE(latitude);
    const GeoCoordinateZ start(10.1, latitude - 0.1, 1.0f), end(10.3, latitude + 0.1, 2.0f);
    const GeoCoordinateZ pos(10.15, latitude + 0.02, 0.0f);
    const double c = std::cos(pos.latitude / 180.0 * kPi);
    const double dx = (end.longitude - start.longitude) * c;
    const double dy = end.latitude - start.latitude;
    const double expected =
        (dx * (c * (pos.longitude - start.longitude)) + (pos.latitude - start.latitude) * dy) /
        (dx * dx + dy * dy);
    GeoCoordinateZ foot;
    double ratio = 0.0;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(start, end, pos, foot, ratio), 0);
    EXPECT_TRUE(SameBits(ratio, expected));
    EXPECT_TRUE(SameBits(foot.longitude, (end.longitude - start.longitude) * expected + start.longitude));
    EXPECT_TRUE(SameBits(foot.latitude, dy * expected + start.latitude));
  }
}

TEST(ProjectionPosToLine, AddsHeightsInFloat) {
  // The neighbour that adds in double (see GetInsertPointFromSegment) rounds these to another float.
  const GeoCoordinateZ start(10.0, 0.0, 1.0f), end(18.0, 0.0, 4.4703484e-07f), pos(15.0, 0.0, 0.0f);
  GeoCoordinateZ foot;
  double ratio = 0.0;
  VorelGeometryAlgorithm::ProjectionPosToLine(start, end, pos, foot, ratio);
  ASSERT_EQ(ratio, 0.625);
  const float difference = end.z - start.z;
  EXPECT_TRUE(SameBits(foot.z, start.z + static_cast<float>(static_cast<double>(difference) * 0.625)));
  // Two heights for which the two ways differ, found by search.
  const GeoCoordinateZ low(10.0, 0.0, 0.1f), high(18.0, 0.0, 12.3f);
  int differing = 0;
  for (int i = 1; i < 64; ++i) {
    const GeoCoordinateZ at(10.0 + i / 8.0, 0.0, 0.0f);
    VorelGeometryAlgorithm::ProjectionPosToLine(low, high, at, foot, ratio);
    ASSERT_EQ(ratio, i / 64.0);
    const float rise = high.z - low.z;
    const float inFloat = low.z + static_cast<float>(static_cast<double>(rise) * ratio);
    const float inDouble = static_cast<float>(static_cast<double>(rise) * ratio + static_cast<double>(low.z));
    EXPECT_TRUE(SameBits(foot.z, inFloat)) << i;
    differing += Bits(inFloat) != Bits(inDouble);
    EXPECT_TRUE(SameBits(
        VorelGeometryAlgorithm::GetInsertPointFromSegment(low, high, static_cast<float>(ratio)).z, inDouble))
        << i;
  }
  EXPECT_GT(differing, 0);
}

TEST(ProjectionPosToLine, FootMayBeAnyOfThePoints) {
  const GeoCoordinateZ pos(11.5, 0.25, 7.0f);
  for (const GeoCoordinateZ& secondPoint : {kEnd, kStart}) {
    GeoCoordinateZ expected;
    double ratio = 0.0;
    const int code = VorelGeometryAlgorithm::ProjectionPosToLine(kStart, secondPoint, pos, expected, ratio);
    GeoCoordinateZ a = kStart, b = secondPoint, p = pos;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(a, b, p, a, ratio), code);
    EXPECT_TRUE(SameBits(a, expected));
    a = kStart;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(a, b, p, b, ratio), code);
    EXPECT_TRUE(SameBits(b, expected));
    b = secondPoint;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(a, b, p, p, ratio), code);
    EXPECT_TRUE(SameBits(p, expected));
  }
}

// ---- PosInAB ----------------------------------------------------------------------------------------------------

struct BetweenCase {
  const char* name;
  GeoCoordinateZ pos, a, b;
  int code;
  double ratio;
};

class PosInABEdges : public testing::TestWithParam<BetweenCase> {};

TEST_P(PosInABEdges, Hold) {
  const BetweenCase& c = GetParam();
  double ratio = kUntouchedRatio;
  EXPECT_EQ(VorelGeometryAlgorithm::PosInAB(c.pos, c.a, c.b, ratio), c.code);
  EXPECT_TRUE(SameBits(ratio, c.ratio));
}

INSTANTIATE_TEST_SUITE_P(
    All, PosInABEdges,
    testing::Values(
        BetweenCase{"Halfway", OnEquator(10.5), OnEquator(10.0), OnEquator(11.0), 0, 0.5},
        BetweenCase{"AtA", OnEquator(10.0), OnEquator(10.0), OnEquator(11.0), 0, 0.0},
        BetweenCase{"AtB", OnEquator(11.0), OnEquator(10.0), OnEquator(11.0), 0, 1.0},
        BetweenCase{"Beyond", OnEquator(11.5), OnEquator(10.0), OnEquator(11.0), 1, kUntouchedRatio},
        BetweenCase{"Before", OnEquator(9.5), OnEquator(10.0), OnEquator(11.0), -1, kUntouchedRatio},
        // 4 cm beyond the end: a detour of 8 cm, and a ratio that is clamped.
        BetweenCase{"JustBeyondIsStillOn", OnEquator(10.0001 + 3.6e-7), OnEquator(10.0), OnEquator(10.0001),
                    0, 1.0},
        BetweenCase{"FartherBeyondIsNot", OnEquator(10.0001 + 5.4e-7), OnEquator(10.0), OnEquator(10.0001), 1,
                    kUntouchedRatio},
        BetweenCase{"TiesGoToB", {10.5, 0.25, 0.0f}, OnEquator(10.0), OnEquator(11.0), 1, kUntouchedRatio},
        BetweenCase{"NearerA", {10.375, 0.25, 0.0f}, OnEquator(10.0), OnEquator(11.0), -1, kUntouchedRatio},
        BetweenCase{"NearerB", {10.625, 0.25, 0.0f}, OnEquator(10.0), OnEquator(11.0), 1, kUntouchedRatio},
        BetweenCase{"NoSegmentOnIt", OnEquator(10.0), OnEquator(10.0), OnEquator(10.0), 0, 0.0},
        BetweenCase{"NoSegmentFarFromIt", OnEquator(10.5), OnEquator(10.0), OnEquator(10.0), 1,
                    kUntouchedRatio},
        BetweenCase{"NoSegmentNearIt", OnEquator(10.0 + 3.6e-7), OnEquator(10.0), OnEquator(10.0), 0, 0.0},
        BetweenCase{"NaN", {kNaN, 0.0, 0.0f}, OnEquator(10.0), OnEquator(11.0), -1, kUntouchedRatio},
        BetweenCase{"NaNEnd", OnEquator(10.5), OnEquator(10.0), {kNaN, 0.0, 0.0f}, -1, kUntouchedRatio}),
    vorel::test::CaseName<BetweenCase>);

TEST(PosInAB, AddsBothDistancesBeforeItTakesTheLengthAway) {
  // 1000 km long, so that the sum of the distances is rounded by far more than the detour changes from one position to
  // the next.
  const GeoCoordinateZ a(0.0, 0.0, 0.0f), b(9.0, 0.0, 0.0f);
  const auto detour = [&](double latitude) {
    const GeoCoordinateZ pos(3.1, latitude, 0.0f);
    return std::fabs(pos.DistanceTo(a) + pos.DistanceTo(b) - b.DistanceTo(a));
  };
  double within = 0.0, beyond = 0.01;
  while (beyond - within > 1e-13) {
    const double middle = 0.5 * (within + beyond);
    (detour(middle) <= 0.1 ? within : beyond) = middle;
  }
  int otherwise = 0;
  for (int i = -2000; i <= 2000; ++i) {
    const GeoCoordinateZ pos(3.1, within + i * 1e-14, 0.0f);
    double ratio = -1.0;
    ASSERT_EQ(VorelGeometryAlgorithm::PosInAB(pos, a, b, ratio) == 0, detour(pos.latitude) <= 0.1) << i;
    const double lengthFirst = std::fabs(pos.DistanceTo(a) + (pos.DistanceTo(b) - b.DistanceTo(a)));
    otherwise += (lengthFirst <= 0.1) != (detour(pos.latitude) <= 0.1);
  }
  EXPECT_GT(otherwise, 0);
}

TEST(PosInAB, ToleratesADetourOfADecimetreItself) {
  ASSERT_TRUE(IsExact(0.05));
  const GeoCoordinateZ a(0.0, 0.0, 0.0f);
  for (const bool isOn : {true, false}) {
    // There and back to one point: twice the distance.
    const double latitude = isOn ? vorel::test::LatitudeAtLeast(0.05) : vorel::test::LatitudeAbove(0.05);
    double ratio = kUntouchedRatio;
    EXPECT_EQ(VorelGeometryAlgorithm::PosInAB({0.0, latitude, 0.0f}, a, a, ratio), isOn ? 0 : 1);
    EXPECT_EQ(ratio, isOn ? 0.0 : kUntouchedRatio);
  }
}

TEST(PosInAB, DividesTheDistances) {
  const GeoCoordinateZ a = kCity.At(0, 0), b = kCity.At(30, 40), pos = kCity.At(9.1, 12);
  double ratio = kUntouchedRatio;
  ASSERT_EQ(VorelGeometryAlgorithm::PosInAB(pos, a, b, ratio), 0);
  EXPECT_TRUE(SameBits(ratio, pos.DistanceTo(a) / b.DistanceTo(a)));
}

}  // namespace
