// The two edges of a lane arrow, and the filter of points that run backward.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/lane_arrow_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::ArrowType;
using vorel::VorelGeometryAlgorithm;
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

struct Edges {
  LineZ left, right;
};

Edges EdgesOf(const LineZ& points, float width, ArrowType type) {
  Edges edges;
  VorelGeometryAlgorithm::CalcBoundaryPoints(points, width, type, edges.left, edges.right);
  return edges;
}

// Of a gentle line nothing is filtered away, and the left edge of this type is the prepared line itself.
LineZ Prepared(const LineZ& points, float width) {
  return EdgesOf(points, width, ArrowType::kLineAsLeftEdge).left;
}

const LocalMetres kCity(8.4, 49.0);

// Legs of the given lengths; the line turns right by `turnDegrees` between them. It starts on a heading of 20 degrees.
LineZ Bends(const std::vector<double>& legMetres, double turnDegrees) {
  double heading = 20.0 * kPi / 180;
  double east = 0.0;
  double north = 0.0;
  LineZ line = {kCity.At(east, north, 1.3f)};
  for (const double metres : legMetres) {
    east += metres * std::sin(heading);
    north += metres * std::cos(heading);
    line.push_back(kCity.At(east, north, line.back().z * 1.7f));
    heading += turnDegrees * kPi / 180;
  }
  return line;
}

/// The point at a clamped float ratio, spelt out; heights add in double.
GeoCoordinateZ At(const GeoCoordinateZ& a, const GeoCoordinateZ& b, float ratio) {
  const double r = ratio < 0.0f ? 0.0 : (ratio > 1.0f ? 1.0 : static_cast<double>(ratio));
  return {a.longitude + r * (b.longitude - a.longitude), a.latitude + r * (b.latitude - a.latitude),
          static_cast<float>(static_cast<double>(b.z - a.z) * r + static_cast<double>(a.z))};
}

float Turn(const LineZ& line, std::size_t j) {
  const auto fold = [](float a) {
    while (a > 180.0f) a += -360.0f;
    while (-180.0f >= a) a += 360.0f;
    return a;
  };
  const float arriving = fold(static_cast<float>(VorelGeometryAlgorithm::GetAngle(line[j - 1], line[j])));
  const float leaving = fold(static_cast<float>(VorelGeometryAlgorithm::GetAngle(line[j], line[j + 1])));
  return std::fabs(fold(leaving - arriving));
}

double Cut(float width, float turn) {
  return static_cast<double>(width) / std::tan(static_cast<double>((turn * -0.5f + 90.0f) / 180.0f) * kPi) *
             0.5 +
         6.0;
}

// ---- Preparing the guide line -----------------------------------------------------------------------------------

struct PreparedCase {
  const char* name;
  LineZ points;
  std::vector<int> vertices;  // index in `points` of each prepared point, -1 for an added one
};

class CalcBoundaryPointsPrepares : public testing::TestWithParam<PreparedCase> {};

TEST_P(CalcBoundaryPointsPrepares, Hold) {
  const PreparedCase& c = GetParam();
  const LineZ prepared = Prepared(c.points, 4.0f);
  ASSERT_EQ(prepared.size(), c.vertices.size());
  for (std::size_t k = 0; k < prepared.size(); ++k) {
    if (c.vertices[k] >= 0) {
      EXPECT_TRUE(SameBits(prepared[k], c.points[static_cast<std::size_t>(c.vertices[k])])) << k;
    } else {
      for (const GeoCoordinateZ& point : c.points) EXPECT_FALSE(SameBits(prepared[k], point)) << k;
    }
  }
}

// With a width of 4 m the cut of a right angle is 8 m, so that legs longer than 9 m are cut.
INSTANTIATE_TEST_SUITE_P(
    All, CalcBoundaryPointsPrepares,
    testing::Values(
        PreparedCase{"TwoPoints", Bends({30}, 0), {0, 1}},
        PreparedCase{"Straight", Bends({30, 30}, 0), {0, 1, 2}},
        PreparedCase{"TurnBelow5", Bends({30, 30}, 4.9), {0, 1, 2}},
        PreparedCase{"TurnAbove5", Bends({30, 30}, 5.1), {0, -1, 1, -1, 2}},
        PreparedCase{"TurnLeftAbove5", Bends({30, 30}, -5.1), {0, -1, 1, -1, 2}},
        PreparedCase{"RightAngle", Bends({30, 30}, 90), {0, -1, 1, -1, 2}},
        PreparedCase{"LegsJustLongEnough", Bends({9.05, 9.05}, 90), {0, -1, 1, -1, 2}},
        PreparedCase{"LegBeforeTooShort", Bends({8.95, 30}, 90), {0, 1, -1, 2}},
        PreparedCase{"LegAfterTooShort", Bends({30, 8.95}, 90), {0, -1, 1, 2}},
        // The second bend's leg before is 20 - 8 m, from the point that the first bend added.
        PreparedCase{"TwoBends", Bends({30, 20, 30}, 90), {0, -1, 1, -1, -1, 2, -1, 3}},
        PreparedCase{
            "LegBeforeIsMeasuredFromThePointAddedLast", Bends({30, 16.5, 30}, 90), {0, -1, 1, -1, 2, -1, 3}},
        PreparedCase{"RepeatsAreDropped",
                     {kCity.At(0, 0, 1), kCity.At(0, 0, 2), kCity.At(0, 0.009, 3), kCity.At(0, 0.011, 4),
                      kCity.At(0, 30, 5), kCity.At(0, 30.005, 6)},
                     {0, 3, 4}},
        // Each step is below 0.01 m, but they add up: the distance is that from the point kept last.
        PreparedCase{"RepeatsAreMeasuredFromThePointKeptLast",
                     {kCity.At(0, 0, 1), kCity.At(0, 0.006, 2), kCity.At(0, 0.012, 3), kCity.At(0, 30, 4)},
                     {0, 2, 3}},
        PreparedCase{"BendAcrossARepeat",
                     {kCity.At(0, 0, 1), kCity.At(0, 30, 2), kCity.At(0, 30, 3), kCity.At(30, 30, 4)},
                     {0, -1, 1, -1, 3}}),
    vorel::test::CaseName<PreparedCase>);

TEST(CalcBoundaryPoints, KeepsPointsStrictlyFartherThanACentimetre) {
  for (const bool isKept : {true, false}) {
    const double latitude = isKept ? vorel::test::LatitudeAbove(0.01) : vorel::test::LatitudeAtLeast(0.01);
    EXPECT_EQ(Prepared({{0.0, 0.0, 1.0f}, {0.0, latitude, 2.0f}, {0.0, 0.001, 3.0f}}, 4.0f).size(),
              isKept ? 3u : 2u);
  }
}

TEST(CalcBoundaryPoints, CutsHaveTheExpressionsExactBits) {
  for (const double turnDegrees : {5.5, -30.0, 90.0, -120.0}) {
    for (const float width : {1.5f, 4.0f}) {
      const LineZ line = Bends({40, 50}, turnDegrees);
      const double cut = Cut(width, Turn(line, 1));
      const double before = line[0].DistanceTo(line[1]);
      const double after = line[1].DistanceTo(line[2]);
      const LineZ expected = {line[0], At(line[0], line[1], static_cast<float>(1.0 - cut / before)), line[1],
                              At(line[1], line[2], static_cast<float>(cut / after)), line[2]};
      EXPECT_TRUE(SameBits(Prepared(line, width), expected)) << turnDegrees << " degrees, width " << width;
    }
  }
}

TEST(CalcBoundaryPoints, CutOfARightAngleIsHalfTheWidthPlusSixMetres) {
  const LineZ line = Bends({40, 50}, 90);
  const LineZ prepared = Prepared(line, 4.0f);
  ASSERT_EQ(prepared.size(), 5u);
  // Metres; bearings are those of a sphere, on which this turn has 90.1 degrees. The worst is 3.73e-3.
  EXPECT_NEAR(prepared[1].DistanceTo(line[1]), 8.0, 4e-3);
  EXPECT_NEAR(prepared[3].DistanceTo(line[1]), 8.0, 4e-3);
}

TEST(CalcBoundaryPoints, FoldsTheTurnAcrossNorthAndSouth) {
  for (const double heading : {358.0, 1.0, 178.0, 181.0}) {
    for (const double turn : {4.0, -4.0, 7.0, -7.0}) {
      const double second = (heading + turn) * kPi / 180;
      const double first = heading * kPi / 180;
      const LineZ line = {kCity.At(-30 * std::sin(first), -30 * std::cos(first)), kCity.At(0, 0),
                          kCity.At(30 * std::sin(second), 30 * std::cos(second))};
      EXPECT_EQ(Prepared(line, 4.0f).size(), std::fabs(turn) > 5 ? 5u : 3u) << heading << ", " << turn;
    }
  }
}

// The turn is a float: the last point is moved in small steps until the turn is 5 exactly, and until it is the next float.
TEST(CalcBoundaryPoints, TurnsAboveFiveDegreesAreBends) {
  int straight = 0;
  int bends = 0;
  for (int i = -400; i <= 400; ++i) {
    const double second = (5.0 + i * 1e-8) * kPi / 180;
    const LineZ line = {{0.0, 0.0, 0.0f},
                        {0.0, 0.001, 0.0f},
                        {0.001 * std::sin(second), 0.001 + 0.001 * std::cos(second), 0.0f}};
    const float turn = Turn(line, 1);
    if (std::fabs(turn - 5.0f) > 2e-6f) continue;
    (turn > 5.0f ? bends : straight) += turn == 5.0f || turn == std::nextafter(5.0f, 6.0f);
    EXPECT_EQ(Prepared(line, 4.0f).size(), turn > 5.0f ? 5u : 3u) << vorel::test::Paste(turn);
  }
  EXPECT_GT(straight, 0);
  EXPECT_GT(bends, 0);
}

TEST(CalcBoundaryPoints, CutsALegStrictlyLongerThanTheCutAndAMetre) {
  const double longest = Cut(4.0f, 90.0f) + 1.0;  // metres, that a leg may have without a cut
  for (const bool isCut : {true, false}) {
    double latitude = vorel::test::LatitudeAbove(longest);
    if (!isCut) latitude = std::nextafter(latitude, 0.0);
    const LineZ line = {{-0.001, 0.0, 1.0f}, {0.0, 0.0, 2.0f}, {0.0, latitude, 3.0f}};
    ASSERT_EQ(Turn(line, 1), 90.0f);
    EXPECT_EQ(Prepared(line, 4.0f).size(), isCut ? 5u : 4u);
    const LineZ backward = {{0.0, latitude, 3.0f}, {0.0, 0.0, 2.0f}, {-0.001, 0.0, 1.0f}};
    ASSERT_EQ(Turn(backward, 1), 90.0f);
    EXPECT_EQ(Prepared(backward, 4.0f).size(), isCut ? 5u : 4u);
  }
}

TEST(CalcBoundaryPoints, AUTurnGetsNoAddedPoints) {
  const LineZ line = {{8.0, 49.0, 1.0f}, {8.0, 49.001, 2.0f}, {8.0, 49.0, 3.0f}};
  ASSERT_EQ(Turn(line, 1), 180.0f);
  const Edges edges = EdgesOf(line, 4.0f, ArrowType::kLineAsLeftEdge);
  LineZ expectedLeft, expectedRight;
  LineZ right;
  VorelGeometryAlgorithm::PanLinePoints(line, 4.0f, false, right);
  VorelGeometryAlgorithm::RelapseCheckFilter(line, line, expectedLeft, right, expectedRight);
  EXPECT_TRUE(SameBits(edges.left, expectedLeft));
  EXPECT_TRUE(SameBits(edges.right, expectedRight));
}

TEST(CalcBoundaryPoints, PointsWithNaNAreDroppedButForTheFirst) {
  // No distance to such a point is above 0.01 m. From a first one there is none to any other.
  const LineZ line = {{kNaN, 49.0, 1.0f}, kCity.At(0, 30, 2.0f), kCity.At(30, 30, 3.0f)};
  const Edges edges = EdgesOf(line, 4.0f, ArrowType::kLineAsLeftEdge);
  EXPECT_TRUE(SameBits(edges.left, LineZ{line[0]}));
  const LineZ middle = {kCity.At(0, 0, 1.0f), {kNaN, 49.0, 1.0f}, kCity.At(0, 30, 2.0f)};
  EXPECT_TRUE(SameBits(Prepared(middle, 4.0f), LineZ{middle[0], middle[2]}));
}

// ---- The edges --------------------------------------------------------------------------------------------------

TEST(CalcBoundaryPoints, FewerThanTwoPointsEmptyBothEdges) {
  for (const LineZ& line : {LineZ{}, LineZ{kCity.At(0, 0)}}) {
    Edges edges{Bends({30}, 0), Bends({30}, 0)};
    VorelGeometryAlgorithm::CalcBoundaryPoints(line, 4.0f, ArrowType::kLineAsCenter, edges.left, edges.right);
    EXPECT_TRUE(edges.left.empty());
    EXPECT_TRUE(edges.right.empty());
  }
}

TEST(CalcBoundaryPoints, ClearsTheEdgesFirst) {
  const Edges expected = EdgesOf(Bends({30, 30}, 60), 4.0f, ArrowType::kLineAsCenter);
  Edges edges{Bends({30}, 0), Bends({30, 30, 30}, 0)};
  VorelGeometryAlgorithm::CalcBoundaryPoints(Bends({30, 30}, 60), 4.0f, ArrowType::kLineAsCenter, edges.left,
                                             edges.right);
  EXPECT_TRUE(SameBits(edges.left, expected.left));
  EXPECT_TRUE(SameBits(edges.right, expected.right));
}

TEST(CalcBoundaryPoints, PointsWithinACentimetreGiveOnePointPerEdge) {
  const LineZ line = {kCity.At(0, 0, 1), kCity.At(0, 0.005, 2), kCity.At(0.005, 0, 3)};
  for (const int type : {0, 1, 2}) {
    const Edges edges = EdgesOf(line, 4.0f, static_cast<ArrowType>(type));
    ASSERT_EQ(edges.left.size(), 1u);
    ASSERT_EQ(edges.right.size(), 1u);
    EXPECT_EQ(edges.left[0].z, 1.0f);
    // The bearing of no length is north: right is east.
    EXPECT_GT(edges.right[0].longitude, edges.left[0].longitude);
    EXPECT_EQ(edges.right[0].latitude, edges.left[0].latitude);
  }
}

TEST(CalcBoundaryPoints, BuildsTheEdgesByTheArrowsType) {
  const LineZ line = Bends({40, 50, 45}, 40);
  const float width = 3.5f;
  const LineZ guide = Prepared(line, width);
  ASSERT_EQ(guide.size(), 8u);
  LineZ right, left, halfRight;
  VorelGeometryAlgorithm::PanLinePoints(guide, width, false, right);
  VorelGeometryAlgorithm::PanLinePoints(guide, width, true, left);
  VorelGeometryAlgorithm::PanLinePoints(guide, width * 0.5f, false, halfRight);

  const Edges asLeft = EdgesOf(line, width, ArrowType::kLineAsLeftEdge);
  EXPECT_TRUE(SameBits(asLeft.left, guide));
  EXPECT_TRUE(SameBits(asLeft.right, right));

  const Edges asCenter = EdgesOf(line, width, ArrowType::kLineAsCenter);
  EXPECT_TRUE(SameBits(asCenter.right, halfRight));
  ASSERT_EQ(asCenter.left.size(), guide.size());
  for (std::size_t k = 0; k < guide.size(); ++k) {
    // Deliberate: the mirror image, not an offset of its own.
    EXPECT_TRUE(SameBits(
        asCenter.left[k],
        GeoCoordinateZ((guide[k].longitude + guide[k].longitude) - halfRight[k].longitude,
                       (guide[k].latitude + guide[k].latitude) - halfRight[k].latitude, guide[k].z)));
  }

  for (const int rightEdge : {2, 3, -1, 1 << 30}) {
    const Edges asRight = EdgesOf(line, width, static_cast<ArrowType>(rightEdge));
    EXPECT_TRUE(SameBits(asRight.left, left)) << rightEdge;
    EXPECT_TRUE(SameBits(asRight.right, guide)) << rightEdge;
  }
}

TEST(CalcBoundaryPoints, DropsWhatRunsBackward) {
  // Round the end of a strip 1 m wide: the inner edge, 2 m to the right, runs backward along the end.
  const LineZ line = {kCity.At(0, 0, 1), kCity.At(0, 30, 2), kCity.At(1, 30, 3), kCity.At(1, 0, 4)};
  const LineZ guide = {
      line[0],
      At(line[0], line[1], static_cast<float>(1.0 - Cut(4.0f, Turn(line, 1)) / line[0].DistanceTo(line[1]))),
      line[1],
      line[2],
      At(line[2], line[3], static_cast<float>(Cut(4.0f, Turn(line, 2)) / line[2].DistanceTo(line[3]))),
      line[3]};
  LineZ right;
  VorelGeometryAlgorithm::PanLinePoints(guide, 2.0f, false, right);
  right.erase(right.begin() + 2);
  const Edges edges = EdgesOf(line, 4.0f, ArrowType::kLineAsCenter);
  EXPECT_TRUE(SameBits(edges.right, right));
  EXPECT_EQ(edges.left.size(), 5u);
}

TEST(CalcBoundaryPoints, ANegativeWidthExchangesTheSides) {
  const LineZ line = {kCity.At(0, 0, 1), kCity.At(0, 30, 2)};
  const Edges edges = EdgesOf(line, -4.0f, ArrowType::kLineAsCenter);
  ASSERT_EQ(edges.left.size(), 2u);
  EXPECT_GT(edges.left[0].longitude, edges.right[0].longitude);
}

TEST(CalcBoundaryPoints, NaNWidthGivesTheLastPoints) {
  const LineZ line = Bends({30, 30}, 60);
  const Edges edges = EdgesOf(line, kNaNFloat, ArrowType::kLineAsLeftEdge);
  EXPECT_TRUE(SameBits(edges.left, LineZ{line[2]}));
  ASSERT_EQ(edges.right.size(), 1u);
  EXPECT_TRUE(std::isnan(edges.right[0].longitude));
}

// ---- RelapseCheckFilter -----------------------------------------------------------------------------------------

LineZ Row(const std::vector<double>& longitudes, double latitude) {
  LineZ line;
  for (const double longitude : longitudes)
    line.emplace_back(longitude, latitude, static_cast<float>(line.size()));
  return line;
}

struct FilterCase {
  const char* name;
  LineZ center, left, right;
  std::vector<std::size_t> kept;
};

class RelapseCheckFilterEdges : public testing::TestWithParam<FilterCase> {};

TEST_P(RelapseCheckFilterEdges, Hold) {
  const FilterCase& c = GetParam();
  const GeoCoordinateZ before(1.0, 2.0, 3.0f);
  LineZ left = {before}, right = {before, before};
  LineZ expectedLeft = left, expectedRight = right;
  for (const std::size_t k : c.kept) {
    expectedLeft.push_back(c.left[k]);
    expectedRight.push_back(c.right[k]);
  }
  VorelGeometryAlgorithm::RelapseCheckFilter(c.center, c.left, left, c.right, right);
  EXPECT_TRUE(SameBits(left, expectedLeft));
  EXPECT_TRUE(SameBits(right, expectedRight));
}

INSTANTIATE_TEST_SUITE_P(
    All, RelapseCheckFilterEdges,
    testing::Values(
        FilterCase{
            "AllForward", Row({0, 1, 2, 3}, 0), Row({0, 1, 2, 3}, 1), Row({0, 1, 2, 3}, -1), {0, 1, 2, 3}},
        FilterCase{
            "LeftBackward", Row({0, 1, 2, 3}, 0), Row({0, 2, 1, 3}, 1), Row({0, 1, 2, 3}, -1), {0, 2, 3}},
        FilterCase{
            "RightBackward", Row({0, 1, 2, 3}, 0), Row({0, 1, 2, 3}, 1), Row({1, 0, 2, 3}, -1), {1, 2, 3}},
        FilterCase{"BothBackward", Row({0, 1, 2, 3}, 0), Row({0, 1, 3, 2}, 1), Row({1, 0, 2, 3}, -1), {1, 3}},
        FilterCase{"LastAlwaysStays", Row({0, 1}, 0), Row({1, 0}, 1), Row({1, 0}, -1), {1}},
        FilterCase{
            "StandingStillIsNotForward", Row({0, 1, 2}, 0), Row({0, 0, 2}, 1), Row({0, 1, 2}, -1), {1, 2}},
        FilterCase{"CenterStandingStill", Row({0, 0, 2}, 0), Row({0, 1, 2}, 1), Row({0, 1, 2}, -1), {1, 2}},
        FilterCase{"ARightAngleIsNotForward",
                   Row({0, 1, 2}, 0),
                   {{0, 1, 0}, {0, 5, 1}, {2, 1, 2}},
                   Row({0, 1, 2}, -1),
                   {1, 2}},
        FilterCase{"JustLessThanARightAngleIs",
                   Row({0, 1, 2}, 0),
                   {{0, 1, 0}, {1e-300, 5, 1}, {2, 1, 2}},
                   Row({0, 1, 2}, -1),
                   {0, 1, 2}},
        FilterCase{"NorthwardToo",
                   {{0, 0, 0}, {0, 1, 0}, {0, 2, 0}},
                   {{1, 1, 0}, {1, 0, 0}, {1, 2, 0}},
                   {{-1, 0, 0}, {-1, 1, 0}, {-1, 2, 0}},
                   {1, 2}},
        FilterCase{"NaNIsNotForward", Row({0, 1, 2}, 0), Row({0, kNaN, 2}, 1), Row({0, 1, 2}, -1), {2}},
        FilterCase{"NaNCenter", Row({kNaN, 1, 2}, 0), Row({0, 1, 2}, 1), Row({0, 1, 2}, -1), {1, 2}}),
    vorel::test::CaseName<FilterCase>);

TEST(RelapseCheckFilter, DeliberatelyReplacesTheOutputsWhenSizesDiffer) {
  const LineZ three = Row({0, 1, 2}, 0), two = Row({5, 6}, 1), one = Row({7}, 2);
  const struct {
    LineZ center, left, right;
  } cases[] = {{three, two, three}, {three, three, two}, {two, three, three},
               {one, one, one},     {{}, {}, {}},        {one, two, two}};
  for (const auto& c : cases) {
    LineZ left = Row({9, 9}, 9), right = Row({9}, 9);
    VorelGeometryAlgorithm::RelapseCheckFilter(c.center, c.left, left, c.right, right);
    EXPECT_TRUE(SameBits(left, c.left));
    EXPECT_TRUE(SameBits(right, c.right));
  }
}

TEST(RelapseCheckFilter, InTheFallbackAnOutputThatIsItsInputStays) {
  LineZ left = Row({0, 1, 2}, 1), right = Row({0, 1}, -1), other;
  VorelGeometryAlgorithm::RelapseCheckFilter(Row({0, 1, 2}, 0), left, left, right, right);
  EXPECT_TRUE(SameBits(left, Row({0, 1, 2}, 1)));
  EXPECT_TRUE(SameBits(right, Row({0, 1}, -1)));
  VorelGeometryAlgorithm::RelapseCheckFilter(Row({0, 1, 2}, 0), left, left, right, other);
  EXPECT_TRUE(SameBits(left, Row({0, 1, 2}, 1)));
  EXPECT_TRUE(SameBits(other, Row({0, 1}, -1)));
}

TEST(RelapseCheckFilter, AnOutputThatIsItsInputGetsTheFilteredPointsBehind) {
  const LineZ leftIn = Row({0, 2, 1, 3}, 1), rightIn = Row({0, 1, 2, 3}, -1);
  LineZ left = leftIn, right = rightIn;
  LineZ expectedLeft = leftIn, expectedRight = rightIn;
  for (const std::size_t k : {0u, 2u, 3u}) {
    expectedLeft.push_back(leftIn[k]);
    expectedRight.push_back(rightIn[k]);
  }
  VorelGeometryAlgorithm::RelapseCheckFilter(Row({0, 1, 2, 3}, 0), left, left, right, right);
  EXPECT_TRUE(SameBits(left, expectedLeft));
  EXPECT_TRUE(SameBits(right, expectedRight));
}

// ---- Properties -------------------------------------------------------------------------------------------------

double Side(const GeoCoordinate& p, const GeoCoordinate& a, const GeoCoordinate& b) {
  return VorelGeometryAlgorithm::GetPositionOfPointToLine(p, a, b);
}

bool Cross(const LineZ& first, const LineZ& second) {
  for (std::size_t i = 0; i + 1 < first.size(); ++i) {
    for (std::size_t k = 0; k + 1 < second.size(); ++k) {
      if (Side(first[i], second[k], second[k + 1]) * Side(first[i + 1], second[k], second[k + 1]) <= 0 &&
          Side(second[k], first[i], first[i + 1]) * Side(second[k + 1], first[i], first[i + 1]) <= 0) {
        return true;
      }
    }
  }
  return false;
}

TEST(CalcBoundaryPoints, EdgesAroundOneBendNeverCrossTheGuideLine) {
  constexpr unsigned kSeed = 53001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LocalMetres place(Uniform(generator, -179, 179), Uniform(generator, -70, 70));
    const double width = Uniform(generator, 0.3, 8);
    const double turn = OneOf<double>(generator, {Uniform(generator, -90, 90), 90, -90, 45, -5, 5.01});
    const double heading = OneOf<double>(generator, {0, 359, 1, 90, 180, 270, Uniform(generator, 0, 360)});
    const double before = 2 * width * Uniform(generator, 1.0001, 6);
    const double after = 2 * width * Uniform(generator, 1.0001, 6);
    const double first = heading * kPi / 180;
    const double second = (heading + turn) * kPi / 180;
    const LineZ line = {place.At(-before * std::sin(first), -before * std::cos(first), 1), place.At(0, 0, 2),
                        place.At(after * std::sin(second), after * std::cos(second), 3)};
    for (const int type : {0, 1, 2}) {
      SCOPED_TRACE(testing::Message() << "type " << type << ", width " << width << ", turn " << turn
                                      << ", heading " << heading << ", legs " << before << ", " << after);
      const Edges edges = EdgesOf(line, static_cast<float>(width), static_cast<ArrowType>(type));
      ASSERT_EQ(edges.left.size(), edges.right.size());
      ASSERT_GE(edges.left.size(), 2u);
      if (type != 0) {
        EXPECT_FALSE(Cross(edges.left, line));
      }
      if (type != 2) {
        EXPECT_FALSE(Cross(edges.right, line));
      }
      EXPECT_FALSE(Cross(edges.left, edges.right));
      EXPECT_GT(Side(edges.left.front(), edges.right.front(), edges.right[1]), 0);
    }
  }
}

// ---- Against the twins ------------------------------------------------------------------------------------------

void CompareEdges(const LineZ& line) {
  for (const float width : {3.5f, 0.4f, 0.0f, -2.0f, 30.0f, kNaNFloat, kInfinityFloat}) {
    for (const int type : {0, 1, 2, 7, -3}) {
      SCOPED_TRACE(testing::Message() << "width " << width << ", type " << type);
      const Edges edges = EdgesOf(line, width, static_cast<ArrowType>(type));
      Edges expected;
      reference::CalcBoundaryPoints(line, width, static_cast<ArrowType>(type), expected.left, expected.right);
      EXPECT_TRUE(SameBits(edges.left, expected.left));
      EXPECT_TRUE(SameBits(edges.right, expected.right));
    }
  }
}

void CompareFilters(std::mt19937& generator, const LineZ& line) {
  LineZ sides[2];
  for (LineZ& side : sides) {
    for (const GeoCoordinateZ& point : line) {
      side.push_back(point);
      if (generator() % 3 == 0) side.back().longitude += Uniform(generator, -1e-3, 1e-3);
      if (generator() % 3 == 0) side.back().latitude += Uniform(generator, -1e-3, 1e-3);
    }
    if (!side.empty() && generator() % 16 == 0) side.pop_back();
  }
  LineZ left(1), right(2), expectedLeft(1), expectedRight(2);
  VorelGeometryAlgorithm::RelapseCheckFilter(line, sides[0], left, sides[1], right);
  reference::RelapseCheckFilter(line, sides[0], expectedLeft, sides[1], expectedRight);
  EXPECT_TRUE(SameBits(left, expectedLeft));
  EXPECT_TRUE(SameBits(right, expectedRight));
}

TEST(LaneArrowDifferential, RandomLines) {
  std::mt19937 generator(53002);
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 53002, run " << run);
    const LineZ line = vorel::test::RandomLineZ(generator, static_cast<int>(generator() % 40));
    CompareEdges(line);
    CompareFilters(generator, line);
  }
}

TEST(LaneArrowDifferential, WildLines) {
  std::mt19937 generator(53003);
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 53003, run " << run);
    const LineZ line = vorel::test::WildLineZ(generator, static_cast<int>(generator() % 30));
    CompareEdges(line);
    CompareFilters(generator, line);
  }
}

TEST(LaneArrowDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(53004);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    CompareEdges(lane.points);
    CompareFilters(generator, lane.points);
  }
}

JOIN_AWKWARD_LINES_Z(LaneArrow, [](const LineZ& line) {
  std::mt19937 generator(53005);
  CompareEdges(line);
  for (int run = 0; run < 20; ++run) CompareFilters(generator, line);
});

}  // namespace
