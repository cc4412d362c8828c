// Searches for the place of a position on a line with heights: the walk and the scan by distance.

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"
#include "support/projection_search.h"
#include "support/uniform.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::Equator;
using vorel::test::IsExact;
using vorel::test::kByTheComb;
using vorel::test::kCity;
using vorel::test::kComb;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::kUntouchedIndex;
using vorel::test::kUntouchedRatio;
using vorel::test::LineZ;
using vorel::test::LocalMetres;
using vorel::test::OneOf;
using vorel::test::OnEquator;
using vorel::test::SameBits;
using vorel::test::ScanArguments;
using vorel::test::Uniform;

constexpr double kPi = 3.141592653589793;
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

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

}  // namespace
