// Projection of a position onto a line with heights: one segment, the walk, the two scans, and PosInAB.

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/projection_reference.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::Bits;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::LineZ;
using vorel::test::LocalMetres;
using vorel::test::NamedLineZ;
using vorel::test::OneOf;
using vorel::test::SameBits;
using vorel::test::Uniform;

constexpr double kPi = 3.141592653589793;
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
constexpr double kFloatMax = 3.4028234663852886e+38;

// What outputs hold before a call, to see what was left alone.
constexpr double kUntouchedRatio = -77.25;
constexpr int kUntouchedIndex = -77;

const LocalMetres kCity(8.4, 49.0);

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

// ---- ProjectionPosToLines ---------------------------------------------------------------------------------------

struct WalkCase {
  const char* name;
  LineZ line;
  GeoCoordinateZ pos;
  int start;
  bool ok;
  int segmentIndex;
  int resultIndex;
  double ratio;
};

class ProjectionPosToLinesEdges : public testing::TestWithParam<WalkCase> {};

TEST_P(ProjectionPosToLinesEdges, Hold) {
  const WalkCase& c = GetParam();
  int segmentIndex = c.start;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLines(c.pos, c.line, segmentIndex, resultIndex, ratio),
            c.ok);
  EXPECT_EQ(segmentIndex, c.segmentIndex);
  EXPECT_EQ(resultIndex, c.resultIndex);
  EXPECT_TRUE(SameBits(ratio, c.ratio));
}

GeoCoordinateZ OnEquator(double longitude) {
  return {longitude, 0.0, 0.0f};
}

LineZ Equator(const std::vector<double>& longitudes) {
  LineZ line;
  for (const double longitude : longitudes) line.push_back(OnEquator(longitude));
  return line;
}

const LineZ kEast = Equator({10.0, 10.25, 10.5, 10.75, 11.0});
const LineZ kRightBend = {{10.0, -0.125, 0.0f}, {10.25, -0.125, 0.0f}, {10.25, -0.375, 0.0f}};
const LineZ kRepeatInside = Equator({10.0, 10.25, 10.25, 10.5});

constexpr double kMicro = 1.0 / (1 << 20);  // degrees: 0.106 m on the equator, and exact beside 10

INSTANTIATE_TEST_SUITE_P(
    All, ProjectionPosToLinesEdges,
    testing::Values(
        WalkCase{"OnStartSegment", kEast, OnEquator(10.625), 2, true, 2, 2, 0.5},
        WalkCase{"Forward", kEast, OnEquator(10.625), 0, true, 2, 2, 0.5},
        WalkCase{"Backward", kEast, OnEquator(10.0625), 3, true, 0, 0, 0.25},
        WalkCase{"RatioOneIsTheNextVertex", kEast, OnEquator(10.25), 0, true, 0, 1, 0.0},
        WalkCase{"RatioZeroStays", kEast, OnEquator(10.25), 1, true, 1, 1, 0.0},
        WalkCase{"RatioOneOfTheLastSegmentIsTheLastVertex", kEast, OnEquator(11.0), 3, true, 3, 4, 0.0},
        WalkCase{"LeavesTheEnd", kEast, OnEquator(12.0), 1, false, 4, kUntouchedIndex, 5.0},
        WalkCase{"LeavesTheStart", kEast, OnEquator(9.0), 2, false, -1, kUntouchedIndex, -4.0},
        WalkCase{"NegativeStart", kEast, OnEquator(10.5), -1, false, -1, kUntouchedIndex, kUntouchedRatio},
        WalkCase{"LeastStart", kEast, OnEquator(10.5), kIntMin, false, kIntMin, kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"StartOnLastPoint", kEast, OnEquator(10.5), 4, false, 4, kUntouchedIndex, kUntouchedRatio},
        WalkCase{"StartOnLastSegment", kEast, OnEquator(10.875), 3, true, 3, 3, 0.5},
        WalkCase{"StartPastTheEnd", kEast, OnEquator(10.5), 99, false, 99, kUntouchedIndex, kUntouchedRatio},
        WalkCase{"LargestStart", kEast, OnEquator(10.5), kIntMax, false, kIntMax, kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"NoPosition", Equator({-1.0, 1.0}), OnEquator(0.0), 0, false, 0, kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"NoPositionMinusZero",
                 Equator({-1.0, 1.0}),
                 {-0.0, -0.0, 5.0f},
                 0,
                 false,
                 0,
                 kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"ZeroLatitudeAloneIsAPosition", Equator({-1.0, 7.0}), OnEquator(1.0), 0, true, 0, 0, 0.25},
        WalkCase{"ZeroLongitudeAloneIsAPosition",
                 {{-1.0, 0.5, 0.0f}, {1.0, 0.5, 0.0f}},
                 {0.0, 0.5, 0.0f},
                 0,
                 true,
                 0,
                 0,
                 0.5},
        WalkCase{"EmptyLine", {}, OnEquator(10.5), 0, false, 0, kUntouchedIndex, kUntouchedRatio},
        WalkCase{"OneVertex", Equator({10.0}), OnEquator(10.5), 0, false, 0, kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"WedgeForward", kRightBend, OnEquator(10.5), 0, true, 1, 1, 0.0},
        WalkCase{"WedgeBackward", kRightBend, OnEquator(10.5), 1, true, 0, 1, 0.0},
        WalkCase{"SkipsShortForward", kRepeatInside, OnEquator(10.375), 0, true, 2, 2, 0.5},
        WalkCase{"SkipsShortBackward", kRepeatInside, OnEquator(10.125), 2, true, 0, 0, 0.5},
        WalkCase{"StartsOnShort", kRepeatInside, OnEquator(10.375), 1, true, 2, 2, 0.5},
        WalkCase{"StartsOnShortThenTurnsBack", kRepeatInside, OnEquator(10.125), 1, true, 0, 0, 0.5},
        WalkCase{"ShortAtTheEnd", Equator({10.0, 10.25, 10.25}), OnEquator(11.0), 0, false, 2,
                 kUntouchedIndex, 4.0},
        WalkCase{"ShortAtTheStart", Equator({10.0, 10.0, 10.25}), OnEquator(9.0), 1, false, -1,
                 kUntouchedIndex, -4.0},
        WalkCase{"OnlyShort", Equator({10.0, 10.0, 10.0}), OnEquator(10.0), 0, false, 2, kUntouchedIndex,
                 kUntouchedRatio},
        WalkCase{"WedgeAcrossShort",
                 {{10.0, -0.125, 0.0f}, {10.25, -0.125, 0.0f}, {10.25, -0.125, 0.0f}, {10.25, -0.375, 0.0f}},
                 OnEquator(10.5),
                 0,
                 true,
                 2,
                 2,
                 0.0},
        WalkCase{"WedgeBackwardAcrossShort",
                 {{10.0, -0.125, 0.0f}, {10.25, -0.125, 0.0f}, {10.25, -0.125, 0.0f}, {10.25, -0.375, 0.0f}},
                 OnEquator(10.5),
                 2,
                 true,
                 0,
                 1,
                 0.0},
        // 5 cm are skipped; 11 cm are not, and the position falls within them at once.
        WalkCase{"FiveCentimetresAreSkipped", Equator({10.0, 10.0 + kMicro / 2, 11.0}),
                 OnEquator(10.0 + kMicro / 4), 0, false, -1, kUntouchedIndex,
                 (1 - kMicro / 2) * (-kMicro / 4) / ((1 - kMicro / 2) * (1 - kMicro / 2))},
        WalkCase{"ElevenCentimetresAreNot", Equator({10.0, 10.0 + kMicro, 11.0}),
                 OnEquator(10.0 + kMicro / 4), 0, true, 0, 0, 0.25},
        // Long enough not to be skipped, but without length where the position stands: at the pole.
        WalkCase{"DegenerateForTheProjection",
                 {{10.0, 89.0, 0.0f}, {11.0, 89.0, 0.0f}},
                 {70.0, 90.0, 0.0f},
                 0,
                 true,
                 0,
                 0,
                 0.0},
        WalkCase{"NaNPosition", kEast, {kNaN, 0.0, 0.0f}, 1, true, 1, 1, kNaN},
        WalkCase{"NaNAhead", Equator({10.0, 10.25, kNaN, 10.75}), OnEquator(11.0), 0, true, 1, 1, kNaN},
        WalkCase{"NaNBehindIsNotReached", Equator({10.0, 10.25, kNaN, 10.75}), OnEquator(10.125), 0, true, 0,
                 0, 0.5}),
    vorel::test::CaseName<WalkCase>);

// A line north from (0, 0) by `latitude`, and on for a kilometre.
LineZ NorthWithFirstStep(double latitude) {
  return {{0.0, 0.0, 0.0f}, {0.0, latitude, 0.0f}, {0.0, 0.01, 0.0f}};
}

// Whether the distance of the least latitude at `metres` is exactly that, so that a test there tells < from <=.
bool IsExact(double metres) {
  return tarvo::GeoCoordinate(0.0, 0.0).DistanceTo({0.0, vorel::test::LatitudeAtLeast(metres)}) == metres;
}

TEST(ProjectionPosToLines, SkipsStrictlyBelowADecimetre) {
  ASSERT_TRUE(IsExact(0.1));
  // A position at the height of (0, 0) is within the first segment, and before the second.
  const GeoCoordinateZ pos(1e-5, 0.0, 0.0f);
  for (const bool isSkipped : {true, false}) {
    const LineZ line =
        NorthWithFirstStep(isSkipped ? vorel::test::LatitudeBelow(0.1) : vorel::test::LatitudeAtLeast(0.1));
    int segmentIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLines(pos, line, segmentIndex, resultIndex, ratio),
              !isSkipped);
  }
}

TEST(ProjectionPosToLines, DeliberatelyWritesRatioAndSegmentAlsoWhenItEndsInFalse) {
  int segmentIndex = 2;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_FALSE(
      VorelGeometryAlgorithm::ProjectionPosToLines(OnEquator(12.0), kEast, segmentIndex, resultIndex, ratio));
  EXPECT_EQ(segmentIndex, 4);
  EXPECT_EQ(ratio, 5.0);
  EXPECT_EQ(resultIndex, kUntouchedIndex);
}

TEST(ProjectionPosToLines, SegmentAndResultMayBeOneVariable) {
  int both = 0;
  double ratio = kUntouchedRatio;
  EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLines(OnEquator(10.5), kEast, both, both, ratio));
  EXPECT_EQ(both, 2);
  EXPECT_EQ(ratio, 0.0);
}

TEST(ProjectionPosToLines, PositionMayBeAVertexOfTheLine) {
  LineZ line = kEast;
  int segmentIndex = 0;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLines(line[3], line, segmentIndex, resultIndex, ratio));
  EXPECT_EQ(resultIndex, 3);
  EXPECT_EQ(ratio, 0.0);
}

// ---- The scans --------------------------------------------------------------------------------------------------

struct ScanArguments {
  double acceptDistance = 0.0;
  double maxDistance = 20.0;
  int maxFarSegments = 0;
};

struct ScanCase {
  const char* name;
  LineZ line;
  GeoCoordinateZ pos;
  int start;
  ScanArguments arguments;
  bool ok;
  int startOut;
  int resultIndex;
  double ratio;  // NaN: not checked beyond being in [0, 1]
};

void ExpectInUnitInterval(double ratio) {
  EXPECT_GE(ratio, 0.0);
  EXPECT_LE(ratio, 1.0);
}

class ProjectionPosToLinesDistanceEdges : public testing::TestWithParam<ScanCase> {};

TEST_P(ProjectionPosToLinesDistanceEdges, Hold) {
  const ScanCase& c = GetParam();
  int startIndex = c.start;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(
                c.pos, c.line, startIndex, resultIndex, ratio, c.arguments.acceptDistance,
                c.arguments.maxDistance, c.arguments.maxFarSegments),
            c.ok);
  EXPECT_EQ(startIndex, c.startOut);
  EXPECT_EQ(resultIndex, c.resultIndex);
  if (std::isnan(c.ratio)) {
    ExpectInUnitInterval(ratio);
  } else {
    EXPECT_TRUE(SameBits(ratio, c.ratio));
  }
}

// In metres, about the position (5, 4): a first segment 4 m away, a second 5 m, three far ones, and a sixth 1.4 m away.
//
//     4 <--- 3
//     |      |            (the sixth segment, 5, comes back down on the left)
//     |   1->2  far above
//     6   |
//     0---1
const LineZ kComb = kCity.LineAt({{0, 0}, {10, 0}, {10, 200}, {60, 200}, {60, 220}, {0, 220}, {4, 5}});
const GeoCoordinateZ kByTheComb = kCity.At(5, 4);
// The same, entered from far away: two far segments come before any in range.
const LineZ kFarFirst = kCity.LineAt({{500, 500}, {500, 300}, {300, 300}, {8, 0}, {8, -200}, {60, -200}});

INSTANTIATE_TEST_SUITE_P(
    All, ProjectionPosToLinesDistanceEdges,
    testing::Values(
        ScanCase{"NoFarTolerated", kComb, kByTheComb, 0, {0, 20, 0}, true, 0, 0, kNaN},
        ScanCase{"TwoFarTolerated", kComb, kByTheComb, 0, {0, 20, 2}, true, 0, 0, kNaN},
        ScanCase{"ThreeFarTolerated", kComb, kByTheComb, 0, {0, 20, 3}, true, 0, 5, 1.0},
        ScanCase{"AnyNumberOfFarTolerated", kComb, kByTheComb, 0, {0, 20, kIntMax}, true, 0, 5, 1.0},
        ScanCase{"NegativeFarIsLikeNone", kComb, kByTheComb, 0, {0, 20, -5}, true, 0, 0, kNaN},
        ScanCase{"NearerButNotBetterIsNotFar", kComb, kByTheComb, 1, {0, 20, 3}, true, 1, 5, 1.0},
        ScanCase{"FarBeforeAnyInRangeIsNotCounted", kFarFirst, kByTheComb, 0, {0, 20, 0}, true, 0, 2, kNaN},
        ScanCase{"NothingInRangeGivesTheNearestAndFalse",
                 kFarFirst,
                 kCity.At(-500, -100),
                 0,
                 {0, 20, 0},
                 false,
                 0,
                 3,
                 kNaN},
        ScanCase{"EarlyAcceptTakesTheFirst", kComb, kByTheComb, 0, {5.5, 20, 9}, true, 0, 0, kNaN},
        ScanCase{
            "EarlyAcceptWritesTheStart", kFarFirst, kCity.At(290, 295), 0, {20, 20, 9}, true, 2, 2, kNaN},
        ScanCase{"EarlyAcceptIgnoresTheRange", kComb, kByTheComb, 0, {5.5, 0, 9}, true, 0, 0, kNaN},
        ScanCase{"NoEarlyAcceptOutsideASegment",
                 kCity.LineAt({{0, 0}, {10, 0}, {11, 30}}),
                 kCity.At(10.5, -0.5),
                 0,
                 {50, 20, 9},
                 true,
                 0,
                 0,
                 1.0},
        ScanCase{"AcceptDistanceNaNNeverAccepts", kComb, kByTheComb, 0, {kNaN, 20, 3}, true, 0, 5, 1.0},
        ScanCase{"MaxDistanceNaN", kComb, kByTheComb, 0, {0, kNaN, 0}, false, 0, 5, 1.0},
        ScanCase{"MaxDistanceInfinite", kComb, kByTheComb, 0, {0, kInfinity, 0}, true, 0, 5, 1.0},
        ScanCase{"MaxDistanceNegative", kComb, kByTheComb, 0, {0, -1, 0}, false, 0, 5, 1.0},
        ScanCase{"StartOnLastPoint", kComb, kByTheComb, 6, {0, 20, 0}, false, 6, 6, 0.0},
        ScanCase{"StartOnLastSegment", kComb, kByTheComb, 5, {0, 20, 0}, true, 5, 5, 1.0},
        ScanCase{"StartPastTheEnd", kComb, kByTheComb, 99, {0, 20, 0}, false, 99, 99, 0.0},
        ScanCase{"LargestStart", kComb, kByTheComb, kIntMax, {0, 20, 0}, false, kIntMax, kIntMax, 0.0},
        ScanCase{"NegativeStart", kComb, kByTheComb, -1, {0, 20, 0}, false, -1, -1, 0.0},
        ScanCase{"LeastStart", kComb, kByTheComb, kIntMin, {0, 20, 0}, false, kIntMin, kIntMin, 0.0},
        ScanCase{
            "DeliberateSentinelBelowTheRange", kComb, kByTheComb, -1, {0, 999988.5, 0}, true, -1, -1, 0.0},
        ScanCase{"SentinelItselfIsNotInRange", kComb, kByTheComb, -1, {0, 999988.0, 0}, false, -1, -1, 0.0},
        ScanCase{
            "FartherThanTheSentinelIsNotFound", kEast, {-80.0, 0.0, 0.0f}, 1, {0, 1e9, 0}, true, 1, 1, 0.0},
        ScanCase{"EmptyLine", {}, kByTheComb, 0, {0, 20, 0}, false, 0, kUntouchedIndex, kUntouchedRatio},
        ScanCase{"OneVertex", kCity.LineAt({{5, 5}}), kByTheComb, 0, {0, 20, 0}, false, 0, 0, 0.0},
        ScanCase{"NoPosition",
                 Equator({-1.0, 1.0}),
                 OnEquator(0.0),
                 0,
                 {0, 1e6, 0},
                 false,
                 0,
                 kUntouchedIndex,
                 kUntouchedRatio},
        ScanCase{"NoPositionMinusZero",
                 Equator({-1.0, 1.0}),
                 {0.0, -0.0, 0.0f},
                 0,
                 {0, 1e6, 0},
                 false,
                 0,
                 kUntouchedIndex,
                 kUntouchedRatio},
        ScanCase{"OnlyShort",
                 kCity.LineAt({{5, 5}, {5, 5.009}, {5, 5}}),
                 kByTheComb,
                 0,
                 {50, 20, 0},
                 false,
                 0,
                 0,
                 0.0},
        ScanCase{"OneCentimetreIsNotShort",
                 kCity.LineAt({{5, 5}, {5, 5.011}}),
                 kByTheComb,
                 0,
                 {50, 20, 0},
                 true,
                 0,
                 0,
                 0.0},
        ScanCase{"EqualDistancesGiveTheFirst",
                 Equator({10.0, 10.25, 10.0}),
                 OnEquator(10.125),
                 0,
                 {0, 20, 5},
                 true,
                 0,
                 0,
                 0.5},
        ScanCase{
            "BeforeIsClampedTo0", Equator({10.0, 10.25}), OnEquator(9.9999), 0, {50, 20, 0}, true, 0, 0, 0.0},
        ScanCase{"BeyondIsClampedTo1",
                 Equator({10.0, 10.25}),
                 OnEquator(10.2501),
                 0,
                 {50, 20, 0},
                 true,
                 0,
                 0,
                 1.0},
        ScanCase{"MinusZeroRatioStays",
                 {{12.0, 0.0, 0.0f}, {10.0, -1.0, 8.0f}},
                 OnEquator(12.0),
                 0,
                 {0, 20, 0},
                 true,
                 0,
                 0,
                 -0.0},
        ScanCase{"NaNSegmentsAreNeverNearestNorFar",
                 {kCity.At(0, 0), kCity.At(10, 0), {kNaN, 49.0, 0.0f}, kCity.At(0, 3), kCity.At(10, 3)},
                 kCity.At(5, 2),
                 0,
                 {0, 20, 0},
                 true,
                 0,
                 3,
                 kNaN},
        ScanCase{"NaNPosition", kComb, {kNaN, 49.0, 0.0f}, 2, {50, 20, 0}, false, 2, 2, 0.0}),
    vorel::test::CaseName<ScanCase>);

TEST(ProjectionPosToLinesDistance, EndsAtTheFirstFarSegmentBeyondTheTolerance) {
  // The sixth segment is nearer but lies behind three far ones.
  for (int maxFarSegments = 0; maxFarSegments < 6; ++maxFarSegments) {
    int startIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(
        kByTheComb, kComb, startIndex, resultIndex, ratio, 0.0, 20.0, maxFarSegments));
    EXPECT_EQ(resultIndex, maxFarSegments < 3 ? 0 : 5) << maxFarSegments;
  }
}

TEST(ProjectionPosToLinesDistance, SkipsStrictlyBelowACentimetre) {
  ASSERT_TRUE(IsExact(0.01));
  const GeoCoordinateZ pos(1e-5, 0.0, 0.0f);
  for (const bool isSkipped : {true, false}) {
    const LineZ line =
        NorthWithFirstStep(isSkipped ? vorel::test::LatitudeBelow(0.01) : vorel::test::LatitudeAtLeast(0.01));
    int startIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex,
                                                                     ratio, 0.0, 20.0, 0));
    EXPECT_EQ(resultIndex, isSkipped ? 1 : 0);
  }
}

TEST(ProjectionPosToLinesDistance, ComparesStrictlyWithBothDistances) {
  const LineZ line = Equator({10.0, 10.25});
  const GeoCoordinateZ pos(10.125, 0.0001, 0.0f);
  const double distance = tarvo::GeoCoordinate(10.125, 0.0).DistanceTo(pos);
  const double above = std::nextafter(distance, 1e9);
  for (const bool strictlyBelow : {false, true}) {
    const double limit = strictlyBelow ? above : distance;
    int startIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio,
                                                                   0.0, limit, 0),
              strictlyBelow);
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio,
                                                                   limit, 0.0, 0),
              strictlyBelow);
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
                  pos, 90.0, line, startIndex, resultIndex, ratio, 0.0, limit, 5.0, 0),
              strictlyBelow);
    EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
                  pos, 90.0, line, startIndex, resultIndex, ratio, limit, 0.0, 5.0, 0),
              strictlyBelow);
  }
}

TEST(ProjectionPosToLinesDistance, StartAndResultMayBeOneVariable) {
  int both = 0;
  double ratio = kUntouchedRatio;
  EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(kByTheComb, kComb, both, both, ratio, 0.0,
                                                                   20.0, 9));
  EXPECT_EQ(both, 5);
  both = 0;
  EXPECT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
      kByTheComb, 179.0, kComb, both, both, ratio, 0.0, 20.0, 5.0, 9));
  EXPECT_EQ(both, 5);
}

// ---- The heading filter -----------------------------------------------------------------------------------------

struct HeadingCase {
  const char* name;
  LineZ line;
  double heading;
  double tolerance;
  int start;
  ScanArguments arguments;
  bool ok;
  int startOut;
  int resultIndex;
};

class ProjectionPosToLinesDistanceOrientationEdges : public testing::TestWithParam<HeadingCase> {};

TEST_P(ProjectionPosToLinesDistanceOrientationEdges, Hold) {
  const HeadingCase& c = GetParam();
  int startIndex = c.start;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
                kByTheComb, c.heading, c.line, startIndex, resultIndex, ratio, c.arguments.acceptDistance,
                c.arguments.maxDistance, c.tolerance, c.arguments.maxFarSegments),
            c.ok);
  EXPECT_EQ(startIndex, c.startOut);
  EXPECT_EQ(resultIndex, c.resultIndex);
}

// A first segment 19 m from (5, 4) that heads south, one that crosses over, and one 1 m away on the heading.
LineZ ThenOnHeading(double headingDegrees) {
  const double east = std::sin(headingDegrees * kPi / 180.0);
  const double north = std::cos(headingDegrees * kPi / 180.0);
  // Through the point 1 m to the right of (5, 4).
  const double middleEast = 5 + north;
  const double middleNorth = 4 - east;
  return kCity.LineAt({{24, 30},
                       {24, -30},
                       {middleEast - 8 * east, middleNorth - 8 * north},
                       {middleEast + 8 * east, middleNorth + 8 * north}});
}

// The same with the near segment split into steps of 0.25 m that head 37 and 323 degrees by turns; over more than half a
// metre, three steps, they head 14 and 346. Point 37 is nearest to (5, 4).
LineZ ThenOnTinySteps() {
  std::vector<std::pair<double, double>> points = {{24, 30}, {24, -30}, {4, -3}};
  for (int i = 1; i < 80; ++i) points.push_back({4 + (i % 2) * 0.15, -3 + 0.2 * i});
  return kCity.LineAt(points);
}

// A lead-in, a segment east 2 m beside (5, 4), and one west 6 m beside it.
const LineZ kThereAndBack = kCity.LineAt({{-15, 6}, {-5, 6}, {15, 6}, {15, -2}, {-5, -2}});

const ScanArguments kAll{0.0, 20.0, 99};

INSTANTIATE_TEST_SUITE_P(
    All, ProjectionPosToLinesDistanceOrientationEdges,
    testing::Values(
        HeadingCase{"RightHeading", ThenOnHeading(40), 42, 5, 0, kAll, true, 0, 2},
        HeadingCase{"WrongHeading", ThenOnHeading(40), 220, 5, 0, kAll, true, 0, 0},
        HeadingCase{"Segment359Heading1", ThenOnHeading(359), 1, 2.5, 0, kAll, true, 0, 2},
        HeadingCase{"Segment359Heading1TooStrict", ThenOnHeading(359), 1, 1.5, 0, kAll, true, 0, 0},
        HeadingCase{"Segment1Heading359", ThenOnHeading(1), 359, 2.5, 0, kAll, true, 0, 2},
        HeadingCase{"Segment1Heading359TooStrict", ThenOnHeading(1), 359, 1.5, 0, kAll, true, 0, 0},
        HeadingCase{"Segment359Heading358", ThenOnHeading(359), 358, 2.5, 0, kAll, true, 0, 2},
        HeadingCase{"Segment1Heading2", ThenOnHeading(1), 2, 2.5, 0, kAll, true, 0, 2},
        HeadingCase{"Segment1Heading180", ThenOnHeading(1), 180, 2.5, 0, kAll, true, 0, 0},
        HeadingCase{"Segment359Heading180", ThenOnHeading(359), 180, 2.5, 0, kAll, true, 0, 0},
        HeadingCase{"HeadingIsNotFolded", ThenOnHeading(40), 40 + 720, 5, 0, kAll, true, 0, 2},
        HeadingCase{"NegativeHeadingIsNotFolded", ThenOnHeading(181), -178, 5, 0, kAll, true, 0, 2},
        HeadingCase{"Tolerance180TakesAll", ThenOnHeading(40), 225, 180.0, 0, kAll, true, 0, 2},
        HeadingCase{"Tolerance0TakesNone", ThenOnHeading(40), 40, 0, 0, kAll, true, 0, 0},
        HeadingCase{"ToleranceNaNTakesNone", ThenOnHeading(40), 40, kNaN, 0, kAll, true, 0, 0},
        HeadingCase{"HeadingNaNTakesNone", ThenOnHeading(40), kNaN, 180, 0, kAll, true, 0, 0},
        HeadingCase{"HeadingOverHalfAMetreNotOverOneStepEast", ThenOnTinySteps(), 14, 5, 0, kAll, true, 0,
                    36},
        HeadingCase{"HeadingOverHalfAMetreNotOverOneStepWest", ThenOnTinySteps(), 346, 5, 0, kAll, true, 0,
                    37},
        HeadingCase{"LineThatEndsWithinHalfAMetreMatches",
                    kCity.LineAt({{24, 30}, {24, -30}, {5, 3.8}, {5.1, 3.9}, {5, 4.1}}), 222, 1, 0, kAll,
                    true, 0, 3},
        HeadingCase{"ButNotWithoutTolerance",
                    kCity.LineAt({{24, 30}, {24, -30}, {5, 3.8}, {5.1, 3.9}, {5, 4.1}}), 222, 0, 0, kAll,
                    true, 0, 0},
        HeadingCase{"ShortSegmentsAreNotSkipped", kCity.LineAt({{5, 5}, {5, 5.009}}), 0, 5, 0, kAll, true, 0,
                    0},
        HeadingCase{"DeliberateEarlyAcceptIgnoresTheHeading",
                    ThenOnHeading(40),
                    220,
                    5,
                    0,
                    {5.0, 20.0, 99},
                    true,
                    2,
                    2},
        HeadingCase{"DeliberateFirstIsRecordedWhateverItsHeading", ThenOnHeading(40), 40, 5, 2, kAll, true, 2,
                    2},
        HeadingCase{"DeliberateFirstIsRecordedAlsoOnAWrongHeading", ThenOnHeading(40), 300, 5, 2, kAll, true,
                    2, 2},
        HeadingCase{"NearerOnAWrongHeadingIsPassedOver", kThereAndBack, 270, 10, 0, kAll, true, 0, 3},
        HeadingCase{"DeliberateFirstOnAWrongHeadingHidesFartherOnes", kThereAndBack, 270, 10, 1, kAll, true,
                    1, 1},
        HeadingCase{"DeliberateFirstIsRecordedAlsoOutOfRange",
                    ThenOnHeading(40),
                    220,
                    5,
                    0,
                    {0, 10, 99},
                    false,
                    0,
                    0},
        HeadingCase{"DeliberateNaNFirstIsNeverReplaced",
                    {{kNaN, 49.0, 0.0f}, kCity.At(24, -30), kCity.At(5, 3), kCity.At(5, 8)},
                    0,
                    5,
                    0,
                    kAll,
                    false,
                    0,
                    0},
        HeadingCase{"NaNFirstStillAllowsAnEarlyAccept",
                    {{kNaN, 49.0, 0.0f}, kCity.At(24, -30), kCity.At(5, 3), kCity.At(5, 8)},
                    0,
                    5,
                    0,
                    {1, 20, 99},
                    true,
                    2,
                    2},
        HeadingCase{"WrongHeadingInRangeIsNotFar", ThenOnHeading(40), 220, 5, 0, {0, 20, 0}, true, 0, 0},
        HeadingCase{"FarIsCounted", kComb, 181, 10, 0, {0, 20, 2}, true, 0, 0},
        HeadingCase{"FarIsTolerated", kComb, 181, 10, 0, {0, 20, 3}, true, 0, 5},
        HeadingCase{"NegativeFarIsLikeNone", kComb, 181, 10, 0, {0, 20, -1}, true, 0, 0},
        HeadingCase{"EmptyLine", {}, 0, 10, 0, kAll, false, 0, kUntouchedIndex},
        HeadingCase{"StartOnLastPoint", kComb, 0, 10, 6, kAll, false, 6, 6},
        HeadingCase{"NegativeStart", kComb, 0, 10, -1, kAll, false, -1, -1},
        HeadingCase{"SentinelIsTheLargestFloat", kComb, 0, 10, -1, {0, kFloatMax, 0}, false, -1, -1},
        HeadingCase{"BeyondTheSentinel", kComb, 0, 10, -1, {0, 3.4028234663852890e+38, 0}, true, -1, -1}),
    vorel::test::CaseName<HeadingCase>);

TEST(ProjectionPosToLinesDistanceOrientation, ComparesHeadingsStrictly) {
  // Segment 1 heads exactly north (0 degrees) and is nearer than segment 0.
  const LineZ line = {{10.0, 0.001, 0.0f}, {10.0001, -0.001, 0.0f}, {10.0001, 0.001, 0.0f}};
  const GeoCoordinateZ pos(10.00011, 0.0, 0.0f);
  const auto result = [&](double heading, double tolerance) {
    int startIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
        pos, heading, line, startIndex, resultIndex, ratio, 0.0, 50.0, tolerance, 9);
    return resultIndex;
  };
  EXPECT_EQ(result(4.0, 4.0), 0);
  EXPECT_EQ(result(4.0, std::nextafter(4.0, 5.0)), 1);
  EXPECT_EQ(result(356.0, 4.0), 0);
  EXPECT_EQ(result(std::nextafter(356.0, 357.0), 4.0), 1);
}

TEST(ProjectionPosToLinesDistanceOrientation, MeasuresHeadingsOverStrictlyMoreThanHalfAMetre) {
  ASSERT_TRUE(IsExact(0.5));
  // The second segment is nearest. Its first step heads north; from its first to its third point the line heads east.
  for (const bool isNorth : {true, false}) {
    const double step = isNorth ? vorel::test::LatitudeAbove(0.5) : vorel::test::LatitudeAtLeast(0.5);
    const LineZ line = {{-1e-4, -1e-4, 0.0f}, {0.0, 0.0, 0.0f}, {0.0, step, 0.0f}, {0.01, step, 0.0f}};
    const GeoCoordinateZ pos(-1e-6, step / 2, 0.0f);
    int startIndex = 0;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(pos, 0.0, line, startIndex, resultIndex,
                                                                    ratio, 0.0, 20.0, 10.0, 9);
    EXPECT_EQ(resultIndex, isNorth ? 1 : 0);
  }
}

TEST(ProjectionPosToLinesDistanceOrientation, NoPositionWritesNothing) {
  int startIndex = 0;
  int resultIndex = kUntouchedIndex;
  double ratio = kUntouchedRatio;
  EXPECT_FALSE(VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
      {0.0, -0.0, 4.0f}, 90.0, Equator({-1.0, 1.0}), startIndex, resultIndex, ratio, 1e6, 1e6, 90.0, 9));
  EXPECT_EQ(resultIndex, kUntouchedIndex);
  EXPECT_EQ(ratio, kUntouchedRatio);
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

TEST(ProjectionSearches, AllocateNothing) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  int startIndex = 0;
  int resultIndex = 0;
  double ratio = 0.0;
  GeoCoordinateZ foot;
  const vorel::test::AllocationCounter allocations;
  VorelGeometryAlgorithm::ProjectionPosToLine(kComb[0], kComb[1], kByTheComb, foot, ratio);
  VorelGeometryAlgorithm::PosInAB(kByTheComb, kComb[0], kComb[1], ratio);
  VorelGeometryAlgorithm::ProjectionPosToLines(kByTheComb, kComb, startIndex, resultIndex, ratio);
  VorelGeometryAlgorithm::ProjectionPosToLinesDistance(kByTheComb, kComb, startIndex, resultIndex, ratio, 0.0,
                                                       20.0, 9);
  VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(kByTheComb, 90.0, kComb, startIndex,
                                                                  resultIndex, ratio, 0.0, 20.0, 10.0, 9);
  EXPECT_EQ(allocations.Count(), 0u);
}

// ---- Properties -------------------------------------------------------------------------------------------------

// A line whose headings stay within some 30 degrees of the first and turn by at most 2 degrees at a vertex.
LineZ GentleLine(std::mt19937& generator, int vertexCount) {
  const LocalMetres place(Uniform(generator, -170, 170), Uniform(generator, -70, 70));
  const double first = Uniform(generator, 0, 2 * kPi);
  double turn = 0.0;
  double east = 0.0;
  double north = 0.0;
  LineZ line;
  for (int i = 0; i < vertexCount; ++i) {
    line.push_back(place.At(east, north, static_cast<float>(Uniform(generator, 0, 50))));
    turn += Uniform(generator, -0.035, 0.035) - 0.05 * turn;
    const double metres = Uniform(generator, 5, 40);
    east += metres * std::sin(first + turn);
    north += metres * std::cos(first + turn);
  }
  return line;
}

TEST(ProjectionPosToLines, FindsOnGentleLinesWhatTheFullScanFinds) {
  constexpr unsigned kSeed = 51001;
  // Metres. On the inside of a bend a position falls within both segments: the walk takes the first one that it meets,
  // the scan the nearer one. 1 run in 1000 does, and the worst of 1e6 runs was 0.113: 3 m times the tangent of the turn.
  // Everywhere else both agree to the bit.
  constexpr double kSlack = 0.12;
  std::mt19937 generator(kSeed);
  int differing = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ line = GentleLine(generator, 30);
    const std::size_t near = 5 + generator() % 19;
    const float along = static_cast<float>(Uniform(generator, 0, 1));
    const GeoCoordinateZ onLine =
        VorelGeometryAlgorithm::GetInsertPointFromSegment(line[near], line[near + 1], along);
    const double bearing = VorelGeometryAlgorithm::GetAngle(line[near], line[near + 1]) * kPi / 180.0;
    const double side = Uniform(generator, -3, 3);
    const GeoCoordinateZ pos = LocalMetres(onLine.longitude, onLine.latitude)
                                   .At(side * std::cos(bearing), -side * std::sin(bearing));

    int walkSegment = static_cast<int>(generator() % 29);
    int walkIndex = kUntouchedIndex;
    double walkRatio = kUntouchedRatio;
    ASSERT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLines(pos, line, walkSegment, walkIndex, walkRatio));
    int scanStart = 0;
    int scanIndex = kUntouchedIndex;
    double scanRatio = kUntouchedRatio;
    ASSERT_TRUE(VorelGeometryAlgorithm::ProjectionPosToLinesDistance(pos, line, scanStart, scanIndex,
                                                                     scanRatio, 0.0, 1000.0, kIntMax));
    if (scanRatio == 1.0) {
      ++scanIndex;
      scanRatio = 0.0;
    }
    if (walkIndex == scanIndex && walkRatio == scanRatio) continue;
    ++differing;
    const auto at = [&line](int index, double ratio) {
      const std::size_t i = static_cast<std::size_t>(index);
      return VorelGeometryAlgorithm::GetInsertPointFromSegment(line[i], line[i + 1],
                                                               static_cast<float>(ratio));
    };
    EXPECT_LE(at(walkIndex, walkRatio).DistanceTo(at(scanIndex, scanRatio)), kSlack);
  }
  EXPECT_GT(differing, 0);
  EXPECT_LT(differing, 40);  // 2 in 1000
}

TEST(ProjectionPosToLinesDistanceOrientation, AfterTheFirstOnlyMatchingSegmentsBecomeBest) {
  constexpr unsigned kSeed = 51002;
  std::mt19937 generator(kSeed);
  int laterResults = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ line = vorel::test::RandomLineZ(generator, 20);
    const GeoCoordinateZ& vertex = line[generator() % line.size()];
    const GeoCoordinateZ pos = LocalMetres(vertex.longitude, vertex.latitude)
                                   .At(Uniform(generator, -30, 30), Uniform(generator, -30, 30));
    const double heading = OneOf<double>(generator, {0.0, 1.0, 359.0, 180.0, Uniform(generator, 0, 360)});
    const double tolerance = OneOf<double>(generator, {1.0, 2.5, 20.0, 90.0});
    const int first = static_cast<int>(generator() % 4);
    int startIndex = first;
    int resultIndex = kUntouchedIndex;
    double ratio = kUntouchedRatio;
    VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
        pos, heading, line, startIndex, resultIndex, ratio, 0.0, 100.0, tolerance, kIntMax);
    ASSERT_EQ(startIndex, first);
    if (resultIndex == first) continue;
    ++laterResults;
    const std::size_t i = static_cast<std::size_t>(resultIndex);
    std::size_t k = i + 1;
    while (k < line.size() && !(line[i].DistanceTo(line[k]) > 0.5)) ++k;
    if (k == line.size()) continue;
    const double segmentHeading = kx::GeoUtils::GetRadianNorth(line[i], line[k]) / kPi * 180.0;
    EXPECT_LT(std::fabs(std::remainder(segmentHeading - heading, 360.0)), tolerance + 1e-12);
  }
  EXPECT_GT(laterResults, 4000);
}

// ---- Against the twins ------------------------------------------------------------------------------------------

void CompareProjections(const GeoCoordinateZ& start, const GeoCoordinateZ& end, const GeoCoordinateZ& pos) {
  GeoCoordinateZ foot, expectedFoot;
  double ratio = kUntouchedRatio, expectedRatio = kUntouchedRatio;
  const int expected = reference::ProjectionPosToLine(start, end, pos, expectedFoot, expectedRatio);
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(start, end, pos, foot, ratio), expected);
  EXPECT_TRUE(SameBits(foot, expectedFoot));
  EXPECT_TRUE(SameBits(ratio, expectedRatio));
  const int expectedBetween = reference::PosInAB(pos, start, end, expectedRatio);
  EXPECT_EQ(VorelGeometryAlgorithm::PosInAB(pos, start, end, ratio), expectedBetween);
  EXPECT_TRUE(SameBits(ratio, expectedRatio));
}

struct SearchResult {
  bool ok;
  int startIndex, resultIndex;
  double ratio;
};

void ExpectSame(const SearchResult& actual, const SearchResult& expected) {
  EXPECT_EQ(actual.ok, expected.ok);
  EXPECT_EQ(actual.startIndex, expected.startIndex);
  EXPECT_EQ(actual.resultIndex, expected.resultIndex);
  EXPECT_TRUE(SameBits(actual.ratio, expected.ratio));
}

template <class Search>
SearchResult Run(int start, const Search& search) {
  SearchResult result{false, start, kUntouchedIndex, kUntouchedRatio};
  result.ok = search(result.startIndex, result.resultIndex, result.ratio);
  return result;
}

void CompareSearches(const GeoCoordinateZ& pos, const LineZ& line, int start, const ScanArguments& a,
                     double heading, double tolerance) {
  SCOPED_TRACE("pos " + vorel::test::Paste(pos) + ", start " + std::to_string(start) + ", accept " +
               vorel::test::Paste(a.acceptDistance) + ", max " + vorel::test::Paste(a.maxDistance) +
               ", far " + std::to_string(a.maxFarSegments) + ", heading " + vorel::test::Paste(heading) +
               " +- " + vorel::test::Paste(tolerance));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLines(pos, line, s, r, ratio);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLines(pos, line, s, r, ratio);
             }));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLinesDistance(
                       pos, line, s, r, ratio, a.acceptDistance, a.maxDistance, a.maxFarSegments);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLinesDistance(pos, line, s, r, ratio, a.acceptDistance,
                                                              a.maxDistance, a.maxFarSegments);
             }));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
                       pos, heading, line, s, r, ratio, a.acceptDistance, a.maxDistance, tolerance,
                       a.maxFarSegments);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLinesDistanceOrientation(pos, heading, line, s, r, ratio,
                                                                         a.acceptDistance, a.maxDistance,
                                                                         tolerance, a.maxFarSegments);
             }));
}

void CompareOnLine(std::mt19937& generator, const LineZ& line, int runs) {
  for (int run = 0; run < runs; ++run) {
    GeoCoordinateZ pos(Uniform(generator, -180, 180), Uniform(generator, -90, 90), 1.0f);
    if (!line.empty() && generator() % 8 != 0) {
      const GeoCoordinateZ& vertex = line[generator() % line.size()];
      const double reach = std::pow(10.0, Uniform(generator, -8, -3));  // degrees
      pos = GeoCoordinateZ(vertex.longitude + reach * Uniform(generator, -1, 1),
                           vertex.latitude + reach * Uniform(generator, -1, 1), 1.0f);
      if (generator() % 8 == 0) pos = vertex;
    }
    const int size = static_cast<int>(line.size());
    const int start = OneOf<int>(generator, {0, 0, size / 2, size - 2, size - 1, size, -1, kIntMax,
                                             static_cast<int>(generator() % (line.size() + 1))});
    const ScanArguments arguments{
        OneOf<double>(generator, {0.0, 1.0, 5.0, kNaN, kInfinity}),
        OneOf<double>(generator, {0.5, 10.0, 100.0, 1e6, 1e39, kNaN, kInfinity, -1.0}),
        OneOf<int>(generator, {0, 0, 1, 2, 5, -1, kIntMax})};
    const double heading =
        OneOf<double>(generator, {0.0, 1.0, 359.0, 180.0, Uniform(generator, 0, 360), kNaN, -10.0, 400.0});
    const double tolerance = OneOf<double>(generator, {0.0, 2.5, 20.0, 90.0, 180.0, 400.0, kNaN});
    CompareSearches(pos, line, start, arguments, heading, tolerance);
    if (line.size() >= 2) {
      const std::size_t i = generator() % (line.size() - 1);
      CompareProjections(line[i], line[i + 1], pos);
    }
  }
}

TEST(ProjectionDifferential, RandomLines) {
  std::mt19937 generator(51003);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 51003, run " << run);
    CompareOnLine(generator, vorel::test::RandomLineZ(generator, 2 + static_cast<int>(generator() % 60)), 10);
  }
}

TEST(ProjectionDifferential, WildLines) {
  std::mt19937 generator(51004);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 51004, run " << run);
    CompareOnLine(generator, vorel::test::WildLineZ(generator, 1 + static_cast<int>(generator() % 30)), 10);
  }
}

TEST(ProjectionDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(51005);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    CompareOnLine(generator, lane.points, 8);
  }
}

JOIN_AWKWARD_LINES_Z(Projection, [](const LineZ& line) {
  std::mt19937 generator(51006);
  CompareOnLine(generator, line, 300);
});

}  // namespace
