// The scan that looks at headings too.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"
#include "support/projection_search.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::Equator;
using vorel::test::IsExact;
using vorel::test::kByTheComb;
using vorel::test::kCity;
using vorel::test::kComb;
using vorel::test::kNaN;
using vorel::test::kUntouchedIndex;
using vorel::test::kUntouchedRatio;
using vorel::test::LineZ;
using vorel::test::ScanArguments;

constexpr double kPi = 3.141592653589793;
constexpr double kFloatMax = 3.4028234663852886e+38;

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

}  // namespace
