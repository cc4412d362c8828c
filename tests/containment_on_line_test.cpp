// Points on segments and on lines.

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/containment_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::Line;
using vorel::test::RandomLine;
using vorel::test::Uniform;
using vorel::test::WildLine;
using Algorithm = vorel::VorelGeometryAlgorithm;

// ---- Segments: edges ------------------------------------------------------------------------------------------------

struct SegmentCase {
  const char* name;
  GeoCoordinate a;
  GeoCoordinate b;
  GeoCoordinate point;
  bool expected;
};

class IsPointOnLineSegmentEdges : public testing::TestWithParam<SegmentCase> {};

TEST_P(IsPointOnLineSegmentEdges, Hold) {
  const SegmentCase& c = GetParam();
  EXPECT_EQ(Algorithm::IsPointOnLineSegment(c.a, c.b, c.point), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, IsPointOnLineSegmentEdges,
    testing::Values(
        // The box: its border passes on every side and in every corner.
        SegmentCase{"BoxWestEdge", {0.1, 0.1}, {0.9, 0.9}, {0.1, 0.5}, true},
        SegmentCase{"BoxEastEdge", {0.1, 0.1}, {0.9, 0.9}, {0.9, 0.5}, true},
        SegmentCase{"BoxSouthEdge", {0.1, 0.1}, {0.9, 0.9}, {0.5, 0.1}, true},
        SegmentCase{"BoxNorthEdge", {0.1, 0.1}, {0.9, 0.9}, {0.5, 0.9}, true},
        SegmentCase{"JustWest", {0.1, 0.1}, {0.9, 0.9}, {0.09999999999999999, 0.5}, false},
        SegmentCase{"JustEast", {0.1, 0.1}, {0.9, 0.9}, {0.9000000000000001, 0.5}, false},
        SegmentCase{"JustSouth", {0.1, 0.1}, {0.9, 0.9}, {0.5, 0.09999999999999999}, false},
        SegmentCase{"JustNorth", {0.1, 0.1}, {0.9, 0.9}, {0.5, 0.9000000000000001}, false},
        SegmentCase{"BoxCornerSouthEast", {0.1, 0.1}, {0.9, 0.9}, {0.9, 0.1}, true},
        SegmentCase{"BoxCornerNorthWest", {0.1, 0.1}, {0.9, 0.9}, {0.1, 0.9}, true},
        SegmentCase{"StartPoint", {0.1, 0.1}, {0.9, 0.9}, {0.1, 0.1}, true},
        SegmentCase{"EndPoint", {0.1, 0.1}, {0.9, 0.9}, {0.9, 0.9}, true},
        SegmentCase{"JustWestReversed", {0.9, 0.9}, {0.1, 0.1}, {0.09999999999999999, 0.5}, false},
        SegmentCase{"JustEastReversed", {0.9, 0.9}, {0.1, 0.1}, {0.9000000000000001, 0.5}, false},
        SegmentCase{"JustSouthReversed", {0.9, 0.9}, {0.1, 0.1}, {0.5, 0.09999999999999999}, false},
        SegmentCase{"JustNorthReversed", {0.9, 0.9}, {0.1, 0.1}, {0.5, 0.9000000000000001}, false},
        SegmentCase{"BoxWestEdgeReversed", {0.9, 0.9}, {0.1, 0.1}, {0.1, 0.5}, true},
        SegmentCase{"BoxEastEdgeReversed", {0.9, 0.9}, {0.1, 0.1}, {0.9, 0.5}, true},
        SegmentCase{"BoxSouthEdgeReversed", {0.9, 0.9}, {0.1, 0.1}, {0.5, 0.1}, true},
        SegmentCase{"BoxNorthEdgeReversed", {0.9, 0.9}, {0.1, 0.1}, {0.5, 0.9}, true},
        SegmentCase{"NoLengthAtThePoint", {0.5, 0.5}, {0.5, 0.5}, {0.5, 0.5}, true},
        SegmentCase{"NoLengthElsewhere", {0.5, 0.5}, {0.5, 0.5}, {0.5, 0.6}, false},
        SegmentCase{"SignedZeros", {0.0, 0.0}, {1.0, 0.0}, {0.5, -0.0}, true},
        // Whole degrees decide the side, and one side counts as on the segment.
        SegmentCase{"LeftOfALongSegment", {0.0, 0.0}, {10.0, 10.0}, {2.0, 8.0}, true},
        SegmentCase{"RightOfALongSegment", {0.0, 0.0}, {10.0, 10.0}, {8.0, 2.0}, false},
        SegmentCase{"OnALongSegment", {0.0, 0.0}, {10.0, 10.0}, {5.0, 5.0}, true},
        SegmentCase{"RightWithinOneDegree", {0.0, 0.0}, {10.0, 10.0}, {5.99, 5.01}, true},
        SegmentCase{"RightByOneWholeDegree", {0.0, 0.0}, {10.0, 10.0}, {6.0, 5.99}, false},
        SegmentCase{"TruncatedNotRounded", {0.0, 0.0}, {10.0, 10.0}, {0.99, 0.0}, true},
        SegmentCase{"OneWholeDegreeEast", {0.0, 0.0}, {10.0, 10.0}, {1.0, 0.0}, false},
        SegmentCase{"TruncatedTowardZeroWest", {0.0, 0.0}, {-10.0, 10.0}, {-0.99, 0.5}, true},
        SegmentCase{"WestwardFarSide", {0.0, 0.0}, {-10.0, 10.0}, {-2.0, 8.0}, false},
        SegmentCase{"WestwardNearSide", {0.0, 0.0}, {-10.0, 10.0}, {-8.0, 2.0}, true},
        SegmentCase{"LongFlatSegmentIsItsBox", {0.0, 0.0}, {10.0, 0.9}, {9.0, 0.1}, true},
        SegmentCase{"JustLongEnoughToHaveASide", {0.0, 0.0}, {10.0, 1.0}, {9.0, 0.1}, false},
        // 65536 times 65536 is 0 in 32 bits, 46341 squared is negative.
        SegmentCase{"ProductsWrap", {0.0, 0.0}, {65536.0, 65536.0}, {65536.0, 0.0}, true},
        SegmentCase{"ProductsWrapToNegative", {0.0, 0.0}, {46341.0, 46341.0}, {46341.0, 46340.0}, true},
        SegmentCase{"LargestProductThatDoesNot", {0.0, 0.0}, {46340.0, 46340.0}, {46340.0, 46339.0}, false},
        SegmentCase{"DifferencesSaturate", {0.0, 0.0}, {1e300, 1e300}, {1e300, 1.0}, true},
        SegmentCase{"InfiniteEnds", {0.0, 0.0}, {kInfinity, kInfinity}, {5.0, 5.0}, true},
        // A NaN never counts as outside.
        SegmentCase{"NaNPoint", {0.0, 0.0}, {10.0, 10.0}, {kNaN, kNaN}, true},
        SegmentCase{"NaNLongitudeOutsideByLatitude", {0.0, 0.0}, {10.0, 10.0}, {kNaN, 11.0}, false},
        SegmentCase{"NaNLatitudeOutsideByLongitude", {0.0, 0.0}, {10.0, 10.0}, {11.0, kNaN}, false},
        SegmentCase{"NaNEnd", {0.0, 0.0}, {kNaN, kNaN}, {5.0, 5.0}, true}),
    [](const auto& test) { return test.param.name; });

// ---- Lines: edges ---------------------------------------------------------------------------------------------------

// Vertices about 75 m apart on a parallel; the distances to a point are measured where they matter.
const Line& FourVertices() {
  static const Line line{{7.5, 47.5}, {7.501, 47.5}, {7.502, 47.5}, {7.503, 47.5}};
  return line;
}

/// North of vertex `index`, within the boxes of no segment.
GeoCoordinate NorthOf(std::size_t index, double degrees) {
  return GeoCoordinate(FourVertices()[index].longitude, FourVertices()[index].latitude + degrees);
}

struct LineCase {
  const char* name;
  Line line;
  GeoCoordinate point;
  float tolerance;
  bool checkSegments;
  int index;
};

class PointOnPolylineEdges : public testing::TestWithParam<LineCase> {};

TEST_P(PointOnPolylineEdges, HoldForAllForms) {
  const LineCase& c = GetParam();
  EXPECT_EQ(Algorithm::PointOnPolyline(c.line, c.point, c.tolerance, c.checkSegments), c.index);
  EXPECT_EQ(Algorithm::IsPointOnPolyline(c.line, c.point, c.tolerance, c.checkSegments), c.index != -1);
  const std::vector<Line> lines{Line(), Line{{50.0, 10.0}, {51.0, 10.0}}, c.line};
  EXPECT_EQ(Algorithm::IsPointOnPolyline(lines, c.point, c.tolerance, c.checkSegments), c.index != -1);
}

const Line kDiagonal{{7.5, 47.5}, {7.6, 47.6}};

INSTANTIATE_TEST_SUITE_P(
    All, PointOnPolylineEdges,
    testing::Values(
        LineCase{"EmptyLine", {}, {7.5, 47.5}, 10.0f, true, -1},
        LineCase{"OneVertexAtThePoint", {{7.5, 47.5}}, {7.5, 47.5}, 10.0f, true, -1},
        LineCase{"AtVertexZeroGivesOne", FourVertices(), {7.5, 47.5}, 1.0f, false, 1},
        LineCase{"AtVertexZeroOfTwo", kDiagonal, {7.5, 47.5}, 0.0f, false, 1},
        LineCase{"AtVertexOne", FourVertices(), {7.501, 47.5}, 1.0f, false, 1},
        LineCase{"AtVertexTwo", FourVertices(), {7.502, 47.5}, 1.0f, false, 2},
        LineCase{"AtLastVertex", FourVertices(), {7.503, 47.5}, 1.0f, false, 3},
        LineCase{"FirstOfSeveral", FourVertices(), {7.5016, 47.5}, 80.0f, false, 1},
        LineCase{"BetweenVertices", FourVertices(), {7.5025, 47.5}, 1.0f, false, -1},
        LineCase{"BetweenVerticesOnTheSegment", FourVertices(), {7.5025, 47.5}, 1.0f, true, 3},
        LineCase{"OnTheFirstSegment", FourVertices(), {7.5005, 47.5}, 1.0f, true, 1},
        LineCase{"SegmentBeforeALaterVertex", FourVertices(), {7.5015, 47.5}, 40.0f, true, 1},
        LineCase{"VertexAtTheEndOfTwoSegments", FourVertices(), {7.501, 47.5}, -1.0f, true, 1},
        LineCase{"BesideTheLine", FourVertices(), {7.5005, 47.5001}, 1.0f, true, -1},
        LineCase{"BoxCornerFarFromTheSegment", kDiagonal, {7.6, 47.5}, 1.0f, true, 1},
        LineCase{"BoxCornerWithoutSegments", kDiagonal, {7.6, 47.5}, 1.0f, false, -1},
        LineCase{"LeftOfALongSegment", {{0.0, 0.0}, {10.0, 10.0}}, {2.0, 8.0}, 1.0f, true, 1},
        LineCase{"RightOfALongSegment", {{0.0, 0.0}, {10.0, 10.0}}, {8.0, 2.0}, 1.0f, true, -1},
        LineCase{"ZeroToleranceAtVertexTwo", FourVertices(), {7.502, 47.5}, 0.0f, false, 2},
        LineCase{"NegativeTolerance", FourVertices(), {7.5, 47.5}, -1.0f, false, -1},
        LineCase{"NaNTolerance", FourVertices(), {7.5, 47.5}, kNaNFloat, false, -1},
        LineCase{"NaNToleranceOnTheSegment", FourVertices(), {7.5, 47.5}, kNaNFloat, true, 1},
        LineCase{"LargestToleranceWithBoxes", FourVertices(), NorthOf(3, 0.09), 12000.0f, false, 1},
        LineCase{"BeyondTheBoxesOnlyVertexZero", FourVertices(), NorthOf(0, 0.09), 12001.0f, false, 1},
        LineCase{"InfiniteTolerance", FourVertices(), {-120.0, -30.0}, kInfinityFloat, false, 1},
        LineCase{"NaNPoint", FourVertices(), {kNaN, kNaN}, 10.0f, false, -1},
        LineCase{"NaNPointOnTheSegment", FourVertices(), {kNaN, kNaN}, 10.0f, true, 1}),
    [](const auto& test) { return test.param.name; });

TEST(PointOnPolyline, TakesADistanceEqualToTheTolerance) {
  // A distance is hardly ever a float: the tolerance is the float next to it on either side.
  for (const std::size_t index : {std::size_t{0}, std::size_t{2}}) {
    const GeoCoordinate point = NorthOf(index, 0.0001);
    const double distance = FourVertices()[index].DistanceTo(point);
    float above = static_cast<float>(distance);
    if (static_cast<double>(above) < distance) above = std::nextafter(above, kInfinityFloat);
    float below = static_cast<float>(distance);
    if (static_cast<double>(below) >= distance) below = std::nextafter(below, 0.0f);
    EXPECT_EQ(Algorithm::PointOnPolyline(FourVertices(), point, above, false), index == 0 ? 1 : 2);
    EXPECT_EQ(Algorithm::PointOnPolyline(FourVertices(), point, below, false), -1);
  }
}

TEST(PointOnPolyline, AsksTheBoxForAllVerticesButTheFirst) {
  // At latitude 80 a box of 0.0001 degree is some 2 m wide either way: a point 3 m east is within 10 m, but not in it.
  const Line line{{7.5, 80.0}, {7.51, 80.0}};
  const double step = 0.00016;
  ASSERT_LT(line[0].DistanceTo({7.5 + step, 80.0}), 10.0);
  EXPECT_EQ(Algorithm::PointOnPolyline(line, {7.5 + step, 80.0}, 10.0f, false), 1);
  EXPECT_EQ(Algorithm::PointOnPolyline(line, {7.51 + step, 80.0}, 10.0f, false), -1);
  EXPECT_EQ(Algorithm::PointOnPolyline(line, {7.51 + step, 80.0}, 11.0f, false), 1);
}

TEST(PointOnPolyline, TakesTheVertexAsTheCentreOfTheBox) {
  // The border of the box about the vertex and the one about the point round differently near longitude 0 (elsewhere the
  // half width, a float, leaves nothing to round).
  const double halfWidth = static_cast<double>(0.0001f);
  std::mt19937 generator(33000);
  int told = 0;
  for (int run = 0; run < 1000; ++run) {
    const GeoCoordinate vertex(Uniform(generator, -1e-6, 1e-6) / 3.0, 85.0);
    const GeoCoordinate point(vertex.longitude + halfWidth, 85.0);
    const bool aboutVertex = !(point.longitude > vertex.longitude + halfWidth);
    const bool aboutPoint = !(point.longitude - halfWidth > vertex.longitude);
    ASSERT_TRUE(aboutVertex);
    if (aboutPoint) continue;
    ++told;
    const Line line{{vertex.longitude - 0.1, 85.0}, vertex};
    ASSERT_EQ(Algorithm::PointOnPolyline(line, point, 10.0f, false), 1) << "run " << run;
  }
  EXPECT_GT(told, 100);  // seed 33000
}

TEST(IsPointOnPolyline, GivesFalseForNoLines) {
  EXPECT_FALSE(Algorithm::IsPointOnPolyline(std::vector<Line>(), {7.5, 47.5}, 10.0f, true));
}

TEST(IsPointOnPolyline, FindsAnyOfSeveralLines) {
  const std::vector<Line> lines{
      {{7.5, 47.5}, {7.51, 47.5}}, {{8.5, 47.5}, {8.51, 47.5}}, {{9.5, 47.5}, {9.51, 47.5}}};
  for (const Line& line : lines) {
    EXPECT_TRUE(Algorithm::IsPointOnPolyline(lines, line[0], 1.0f, false));
    EXPECT_TRUE(Algorithm::IsPointOnPolyline(lines, line[1], 1.0f, false));
  }
  EXPECT_FALSE(Algorithm::IsPointOnPolyline(lines, {10.5, 47.5}, 1.0f, true));
}

// ---- Properties -----------------------------------------------------------------------------------------------------

TEST(PointOnPolyline, FindsEveryVertexOrAnEarlierPlace) {
  constexpr unsigned kSeed = 33001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 300; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = RandomLine(generator, 2 + run % 50);
    for (std::size_t i = 0; i < line.size(); ++i) {
      const int index = Algorithm::PointOnPolyline(line, line[i], 0.0f, false);
      ASSERT_GE(index, 1);
      ASSERT_LE(index, static_cast<int>(i == 0 ? 1 : i));
      const auto found = static_cast<std::size_t>(index);
      ASSERT_TRUE(line[found] == line[i] || (found == 1 && line[0] == line[i]));
    }
  }
}

// A point of a segment passes its box test, whatever rounding does to it, as long as it is clamped to the box.
TEST(IsPointOnLineSegment, AcceptsPointsInTheBoxOfShortSegments) {
  constexpr unsigned kSeed = 33002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 5000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate a(Uniform(generator, -180.0, 179.0), Uniform(generator, -90.0, 89.0));
    const GeoCoordinate b(a.longitude + Uniform(generator, 0.0, 0.99),
                          a.latitude + Uniform(generator, 0.0, 0.99));
    const GeoCoordinate inside(Uniform(generator, a.longitude, b.longitude),
                               Uniform(generator, a.latitude, b.latitude));
    EXPECT_TRUE(Algorithm::IsPointOnLineSegment(a, b, inside));
    EXPECT_TRUE(Algorithm::IsPointOnLineSegment(b, a, inside));
    const GeoCoordinate outside(inside.longitude, b.latitude + Uniform(generator, 1e-9, 1.0));
    EXPECT_FALSE(Algorithm::IsPointOnLineSegment(a, b, outside));
  }
}

// ---- Against the plain twins ----------------------------------------------------------------------------------------

void ExpectMatchesTwins(std::mt19937& generator, const Line& line) {
  static const std::vector<float> kTolerances{0.0f,   1e-3f,     10.9999f,      11.0f,    50.0f,
                                              111.0f, 1113.0f,   12000.0f,      12001.0f, 1e9f,
                                              -3.0f,  kNaNFloat, kInfinityFloat};
  std::vector<GeoCoordinate> points{{7.5, 47.5}, {kNaN, 47.5}, {kInfinity, 0.0}};
  for (int trial = 0; trial < 12 && !line.empty(); ++trial) {
    const GeoCoordinate& vertex = line[generator() % line.size()];
    const GeoCoordinate& other = line[generator() % line.size()];
    const double radius = trial % 3 == 0 ? 3.0 : trial % 3 == 1 ? 0.0005 : 1e-6;
    points.push_back(vertex);
    points.emplace_back(vertex.longitude, other.latitude);
    points.emplace_back(vertex.longitude + Uniform(generator, -radius, radius),
                        vertex.latitude + Uniform(generator, -radius, radius));
  }
  for (const GeoCoordinate& point : points) {
    for (std::size_t i = 1; i < line.size(); i += 1 + line.size() / 200) {
      ASSERT_EQ(Algorithm::IsPointOnLineSegment(line[i - 1], line[i], point),
                reference::IsPointOnLineSegment(line[i - 1], line[i], point))
          << vorel::test::Paste(line[i - 1]) << ", " << vorel::test::Paste(line[i]) << ", "
          << vorel::test::Paste(point);
    }
    for (const float tolerance : kTolerances) {
      for (const bool checkSegments : {false, true}) {
        SCOPED_TRACE(testing::Message() << vorel::test::Paste(point) << ", " << vorel::test::Paste(tolerance)
                                        << ", " << checkSegments);
        const int index = Algorithm::PointOnPolyline(line, point, tolerance, checkSegments);
        ASSERT_EQ(index, reference::PointOnPolyline(line, point, tolerance, checkSegments));
        ASSERT_EQ(Algorithm::IsPointOnPolyline(line, point, tolerance, checkSegments),
                  reference::IsPointOnPolyline(line, point, tolerance, checkSegments));
        const std::vector<Line> lines{{{7.4, 47.4}, {7.5, 47.4}}, line, {{7.5, 47.5}}};
        ASSERT_EQ(Algorithm::IsPointOnPolyline(lines, point, tolerance, checkSegments),
                  reference::IsPointOnPolyline(lines, point, tolerance, checkSegments));
      }
    }
  }
}

TEST(PointsOnLines, MatchTheTwinsOnRandomLines) {
  constexpr unsigned kSeed = 33003;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 50; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectMatchesTwins(generator, RandomLine(generator, run % 40));
  }
}

TEST(PointsOnLines, MatchTheTwinsOnWildLines) {
  constexpr unsigned kSeed = 33004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 50; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectMatchesTwins(generator, WildLine(generator, run % 40));
  }
}

TEST(PointsOnLines, MatchTheTwinsOnRealRoutes) {
  constexpr unsigned kSeed = 33005;
  std::mt19937 generator(kSeed);
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", " << line.name);
    // Many points are asked of each line: its first 400 vertices are plenty.
    const std::size_t count = line.points.size() < 400 ? line.points.size() : 400;
    ExpectMatchesTwins(generator,
                       Line(line.points.begin(), line.points.begin() + static_cast<std::ptrdiff_t>(count)));
  }
}

TEST(IsPointOnLineSegment, MatchesTheTwinOnAnyNumbers) {
  static const double kNumbers[] = {
      0.0,           -0.0,    0.5,      1.0,     -1.0,         2.5,          10.0,
      46340.0,       46341.0, -65536.0, 65536.0, 2147483647.0, 2147483648.0, -2147483648.0,
      -2147483649.0, 1e300,   -1e300,   kNaN,    kInfinity,    -kInfinity,   180.0};
  constexpr unsigned kSeed = 33006;
  std::mt19937 generator(kSeed);
  const auto any = [&generator] { return kNumbers[generator() % (sizeof kNumbers / sizeof kNumbers[0])]; };
  int accepted = 0;
  for (int run = 0; run < 200000; ++run) {
    const GeoCoordinate a(any(), any());
    const GeoCoordinate b(any(), any());
    const GeoCoordinate point(any(), any());
    const bool expected = reference::IsPointOnLineSegment(a, b, point);
    ASSERT_EQ(Algorithm::IsPointOnLineSegment(a, b, point), expected)
        << "seed " << kSeed << ", run " << run << ": " << vorel::test::Paste(a) << ", "
        << vorel::test::Paste(b) << ", " << vorel::test::Paste(point);
    accepted += expected ? 1 : 0;
  }
  EXPECT_GT(accepted, 10000);
}

// ---- Awkward lines --------------------------------------------------------------------------------------------------

JOIN_AWKWARD_LINES(PointsOnLines, [](const Line& line) {
  std::mt19937 generator(33007);
  ExpectMatchesTwins(generator, line);
});

}  // namespace
