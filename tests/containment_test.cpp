// The ray tests of one edge and the point-in-polygon test.

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/containment_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"
#include "tests/support/allocation_counter.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::NamedLine;
using vorel::test::Paste;
using vorel::test::Uniform;

constexpr double kTolerance = 1e-7;  // degrees: that of the edges
const double kBelowTolerance = std::nextafter(kTolerance, 0.0);
const double kAboveTolerance = std::nextafter(kTolerance, 1.0);

bool IsInPolygon(const Line& polygon, const GeoCoordinate& point) {
  return VorelGeometryAlgorithm::IsPointInPolygon(polygon, point);
}

// ---- Edges: one edge of a polygon -----------------------------------------------------------------------------

struct RayCase {
  const char* name;
  GeoCoordinate point, a, b;
  bool onEdge;       // PointRayTest
  int crossings;     // that it adds
  bool innerOnEdge;  // PointRayTestInner
  int innerCrossings;
};

class RayTestEdges : public testing::TestWithParam<RayCase> {};

TEST_P(RayTestEdges, Hold) {
  const RayCase& c = GetParam();
  for (const int before : {0, 41, -7}) {  // the counter is the caller's: it is added to
    int crossings = before;
    EXPECT_EQ(VorelGeometryAlgorithm::PointRayTest(c.point, c.a, c.b, crossings), c.onEdge);
    EXPECT_EQ(crossings, before + c.crossings);
    crossings = before;
    EXPECT_EQ(VorelGeometryAlgorithm::PointRayTestInner(c.point, c.a, c.b, crossings), c.innerOnEdge);
    EXPECT_EQ(crossings, before + c.innerCrossings);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, RayTestEdges,
    testing::Values(
        // A rising and a falling edge on the meridian 2; the ray goes east.
        RayCase{"WestOfRisingEdge", {1, 5}, {2, 0}, {2, 10}, false, 1, false, 1},
        RayCase{"WestOfFallingEdge", {1, 5}, {2, 10}, {2, 0}, false, 1, false, 1},
        RayCase{"EastOfRisingEdge", {3, 5}, {2, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"EastOfFallingEdge", {3, 5}, {2, 10}, {2, 0}, false, 0, false, 0},
        RayCase{"OnRisingEdge", {2, 5}, {2, 0}, {2, 10}, true, 0, true, 0},
        RayCase{"OnFallingEdge", {2, 5}, {2, 10}, {2, 0}, true, 0, true, 0},
        RayCase{"OnSlantedEdge", {5, 5}, {0, 0}, {10, 10}, true, 0, true, 0},
        RayCase{"WestOfSlantedEdge", {4, 5}, {0, 0}, {10, 10}, false, 1, false, 1},
        RayCase{"EastOfSlantedEdge", {6, 5}, {0, 0}, {10, 10}, false, 0, false, 0},
        RayCase{"WestOfSlantedEdgeButEastOfItsStart", {1, 9}, {0, 0}, {10, 10}, false, 1, false, 1},
        // The half-open span: the lower end is out, the upper end is in.
        RayCase{"AtLatitudeOfUpperEnd", {1, 10}, {2, 0}, {2, 10}, false, 1, false, 1},
        RayCase{"AtLatitudeOfUpperEndFalling", {1, 10}, {2, 10}, {2, 0}, false, 1, false, 1},
        RayCase{"AtLatitudeOfLowerEnd", {1, 0}, {2, 0}, {2, 10}, false, 0, false, 1},
        RayCase{"AtLatitudeOfLowerEndFalling", {1, 0}, {2, 10}, {2, 0}, false, 0, false, 1},
        RayCase{"AtUpperEnd", {2, 10}, {2, 0}, {2, 10}, true, 0, true, 0},
        RayCase{"AtLowerEnd", {2, 0}, {2, 0}, {2, 10}, false, 0, true, 0},
        RayCase{"JustAboveLowerEnd", {1, 5e-324}, {2, 0}, {2, 10}, false, 1, false, 1},
        RayCase{"JustAboveUpperEnd", {1, std::nextafter(10.0, 11.0)}, {2, 0}, {2, 10}, false, 0, false, 1},
        RayCase{"JustBelowUpperEnd", {1, std::nextafter(10.0, 9.0)}, {2, 0}, {2, 10}, false, 1, false, 1},
        RayCase{"AboveEdge", {1, 11}, {2, 0}, {2, 10}, false, 0, false, 1},
        RayCase{"BelowEdge", {1, -1}, {2, 0}, {2, 10}, false, 0, false, 1},
        // Outside the span the inner test prolongs the edge.
        RayCase{"InnerProlongsTheEdge", {19, 20}, {0, 0}, {10, 10}, false, 0, false, 1},
        RayCase{"InnerOnProlongedEdge", {20, 20}, {0, 0}, {10, 10}, false, 0, true, 0},
        RayCase{"InnerEastOfProlongedEdge", {21, 20}, {0, 0}, {10, 10}, false, 0, false, 0},
        // The tolerance of the longitude is strict. On the meridian 0 nothing rounds.
        RayCase{"WithinToleranceWest", {-kBelowTolerance, 5}, {0, 0}, {0, 10}, true, 0, true, 0},
        RayCase{"WithinToleranceEast", {kBelowTolerance, 5}, {0, 0}, {0, 10}, true, 0, true, 0},
        RayCase{"ExactlyToleranceWest", {-kTolerance, 5}, {0, 0}, {0, 10}, false, 1, false, 1},
        RayCase{"ExactlyToleranceEast", {kTolerance, 5}, {0, 0}, {0, 10}, false, 0, false, 0},
        RayCase{"BeyondToleranceWest", {-kAboveTolerance, 5}, {0, 0}, {0, 10}, false, 1, false, 1},
        RayCase{"BeyondToleranceEast", {kAboveTolerance, 5}, {0, 0}, {0, 10}, false, 0, false, 0},
        // Exactly horizontal edges never take part; the inner test looks at the longitudes only.
        RayCase{"HorizontalWithin", {5, 0}, {0, 0}, {10, 0}, false, 0, true, 0},
        RayCase{"HorizontalWithinBackward", {5, 0}, {10, 0}, {0, 0}, false, 0, true, 0},
        RayCase{"HorizontalAtWestEnd", {0, 0}, {0, 0}, {10, 0}, false, 0, true, 0},
        RayCase{"HorizontalAtEastEnd", {10, 0}, {0, 0}, {10, 0}, false, 0, true, 0},
        RayCase{"HorizontalAtWestEndBackward", {0, 0}, {10, 0}, {0, 0}, false, 0, true, 0},
        RayCase{"HorizontalAtEastEndBackward", {10, 0}, {10, 0}, {0, 0}, false, 0, true, 0},
        RayCase{"HorizontalWest", {-1, 0}, {0, 0}, {10, 0}, false, 0, false, 1},
        RayCase{"HorizontalEast", {11, 0}, {0, 0}, {10, 0}, false, 0, false, 1},
        RayCase{"HorizontalJustWest", {std::nextafter(1.0, 0.0), 0}, {1, 0}, {10, 0}, false, 0, false, 1},
        RayCase{"HorizontalJustEast", {std::nextafter(10.0, 11.0), 0}, {1, 0}, {10, 0}, false, 0, false, 1},
        RayCase{"PointLikeEdge", {3, 3}, {3, 3}, {3, 3}, false, 0, true, 0},
        // Nearly horizontal: on it between its ends, else counted on either side.
        RayCase{"NearlyHorizontalWithin", {5, 5e-8}, {0, 0}, {10, 9e-8}, true, 0, true, 0},
        RayCase{"NearlyHorizontalWithinFalling", {5, 5e-8}, {0, 9e-8}, {10, 0}, true, 0, true, 0},
        RayCase{"NearlyHorizontalWithinBackward", {5, 5e-8}, {10, 9e-8}, {0, 0}, true, 0, true, 0},
        RayCase{"NearlyHorizontalWestCounts", {-1, 5e-8}, {0, 0}, {10, 9e-8}, false, 1, false, 1},
        RayCase{"NearlyHorizontalEastCountsToo", {11, 5e-8}, {0, 0}, {10, 9e-8}, false, 1, false, 1},
        RayCase{"NearlyHorizontalEastOfFallingCountsToo", {11, 5e-8}, {10, 9e-8}, {0, 0}, false, 1, false, 1},
        RayCase{"NearlyHorizontalAtUpperEnd", {11, 9e-8}, {0, 0}, {10, 9e-8}, false, 1, false, 1},
        RayCase{"NearlyHorizontalAtLowerEnd", {11, 0}, {0, 0}, {10, 9e-8}, false, 0, false, 1},
        RayCase{"RiseJustBelowTolerance", {11, 5e-8}, {0, 0}, {10, kBelowTolerance}, false, 1, false, 1},
        RayCase{"FallJustBelowTolerance", {11, 5e-8}, {0, kBelowTolerance}, {10, 0}, false, 1, false, 1},
        RayCase{"RiseOfExactlyTheTolerance", {11, 5e-8}, {0, 0}, {10, kTolerance}, false, 0, false, 0},
        RayCase{"FallOfExactlyTheTolerance", {11, 5e-8}, {0, kTolerance}, {10, 0}, false, 0, false, 0},
        // Special values.
        RayCase{"NegativeZeroLatitude", {1, -0.0}, {2, 0.0}, {2, 10}, false, 0, false, 1},
        RayCase{"NegativeZeroUpperEnd", {1, 0.0}, {2, -10}, {2, -0.0}, false, 1, false, 1},
        RayCase{"NaNLatitudeOfPoint", {1, kNaN}, {2, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"NaNLatitudeOfStart", {1, 5}, {2, kNaN}, {2, 10}, false, 0, false, 0},
        RayCase{"NaNLatitudeOfEnd", {1, 5}, {2, 0}, {2, kNaN}, false, 0, false, 0},
        RayCase{"NaNLongitudeOfPoint", {kNaN, 5}, {2, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"NaNLongitudeOfStart", {1, 5}, {kNaN, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"NaNLongitudeOfEnd", {1, 5}, {2, 0}, {kNaN, 10}, false, 0, false, 0},
        RayCase{"NaNLongitudeOfPointAtNearlyHorizontalCounts",
                {kNaN, 5e-8},
                {0, 0},
                {10, 9e-8},
                false,
                1,
                false,
                1},
        RayCase{"NaNLongitudeOfNearlyHorizontalCounts", {5, 5e-8}, {kNaN, 0}, {10, 9e-8}, false, 1, false, 1},
        RayCase{"PointInfinitelyWest", {-kInfinity, 5}, {2, 0}, {2, 10}, false, 1, false, 1},
        RayCase{"PointInfinitelyEast", {kInfinity, 5}, {2, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"PointInfinitelyNorth", {1, kInfinity}, {2, 0}, {2, 10}, false, 0, false, 0},
        RayCase{"EdgeToInfiniteNorth", {1, 5}, {2, 0}, {2, kInfinity}, false, 1, false, 1},
        RayCase{"EdgeFromInfiniteSouth", {1, 5}, {2, -kInfinity}, {2, 10}, false, 0, false, 0},
        RayCase{"EdgeToInfiniteEast", {1, 5}, {2, 0}, {kInfinity, 10}, false, 1, false, 1}),
    [](const auto& test) { return test.param.name; });

TEST(PointRayTestInner, CountsANearlyHorizontalEdgeOnEitherSide) {
  for (const double longitude : {-1000.0, -0.001, 10.001, 1000.0}) {
    int crossings = 0;
    EXPECT_FALSE(VorelGeometryAlgorithm::PointRayTestInner({longitude, 5e-8}, {0, 0}, {10, 9e-8}, crossings));
    EXPECT_EQ(crossings, 1) << longitude;
  }
}

// ---- Edges: polygons ------------------------------------------------------------------------------------------

struct PolygonCase {
  const char* name;
  Line polygon;
  GeoCoordinate point;
  bool inside;
};

class IsPointInPolygonEdges : public testing::TestWithParam<PolygonCase> {};

TEST_P(IsPointInPolygonEdges, Hold) {
  const PolygonCase& c = GetParam();
  EXPECT_EQ(IsInPolygon(c.polygon, c.point), c.inside);
  EXPECT_EQ(reference::IsPointInPolygon(c.polygon, c.point), c.inside);
}

const Line kSquare{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
const Line kDiamond{{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
// A comb: two teeth upward, the gap between them from (1, 1) to (2, 3).
const Line kComb{{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
const Line kBowTie{{0, 0}, {2, 2}, {2, 0}, {0, 2}};
const Line kTwiceAround{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}, {2, 0}, {2, 2}, {0, 2}};
const Line kFlat{{0, 0}, {1, 5e-8}, {0.5, 1}};  // its first edge rises less than the tolerance

INSTANTIATE_TEST_SUITE_P(
    All, IsPointInPolygonEdges,
    testing::Values(
        PolygonCase{"Empty", {}, {0, 0}, false}, PolygonCase{"OneVertexAtIt", {{1, 1}}, {1, 1}, false},
        PolygonCase{"TwoVerticesAtFirst", {{0, 0}, {1, 1}}, {0, 0}, false},
        PolygonCase{"TwoVerticesAtSecond", {{0, 0}, {1, 1}}, {1, 1}, false},
        PolygonCase{"TwoVerticesBetween", {{0, 0}, {1, 1}}, {0.5, 0.5}, false},
        PolygonCase{"ThreeVertices", {{0, 0}, {1, 0}, {0, 1}}, {0.25, 0.25}, true},
        PolygonCase{"SquareCentre", kSquare, {0.5, 0.5}, true},
        PolygonCase{"SquareEast", kSquare, {1.5, 0.5}, false},
        PolygonCase{"SquareWest", kSquare, {-0.5, 0.5}, false},
        PolygonCase{"SquareNorth", kSquare, {0.5, 1.5}, false},
        PolygonCase{"SquareSouth", kSquare, {0.5, -0.5}, false},
        PolygonCase{"SquareNorthEast", kSquare, {1.5, 1.5}, false},
        PolygonCase{"SquareBottomLeft", kSquare, {0, 0}, true},
        PolygonCase{"SquareBottomRight", kSquare, {1, 0}, true},
        PolygonCase{"SquareTopRight", kSquare, {1, 1}, true},
        PolygonCase{"SquareTopLeft", kSquare, {0, 1}, true},
        PolygonCase{"SquareRightEdge", kSquare, {1, 0.5}, true},
        PolygonCase{"SquareLeftEdge", kSquare, {0, 0.5}, true},
        PolygonCase{"SquareTopEdge", kSquare, {0.5, 1}, true},
        PolygonCase{"SquareBottomEdgeIsOutside", kSquare, {0.5, 0}, false},
        PolygonCase{"SquareJustAboveBottomEdge", kSquare, {0.5, 5e-324}, true},
        PolygonCase{"SquareJustAboveTopEdge", kSquare, {0.5, std::nextafter(1.0, 2.0)}, false},
        PolygonCase{"SquareWestAtTopLatitude", kSquare, {-0.5, 1}, false},
        PolygonCase{"SquareEastAtTopLatitude", kSquare, {1.5, 1}, false},
        PolygonCase{"SquareWestAtBottomLatitude", kSquare, {-0.5, 0}, false},
        PolygonCase{"SquareWithinToleranceOfLeftEdge", kSquare, {-kBelowTolerance, 0.5}, true},
        PolygonCase{"SquareAtToleranceOfLeftEdge", kSquare, {-kTolerance, 0.5}, false},
        PolygonCase{"SquareWithinToleranceOfRightEdge", kSquare, {1 + 0.9e-7, 0.5}, true},
        PolygonCase{"SquareBeyondToleranceOfRightEdge", kSquare, {1 + 1.1e-7, 0.5}, false},
        PolygonCase{"NegativeZeroIsTheVertex", kSquare, {-0.0, -0.0}, true},
        PolygonCase{"DiamondCentre", kDiamond, {0, 0}, true},
        PolygonCase{"DiamondSouth", kDiamond, {0, -1}, true},
        PolygonCase{"DiamondEast", kDiamond, {1, 0}, true},
        PolygonCase{"DiamondNorth", kDiamond, {0, 1}, true},
        PolygonCase{"DiamondWest", kDiamond, {-1, 0}, true},
        PolygonCase{"DiamondSouthEastEdge", kDiamond, {0.5, -0.5}, true},
        PolygonCase{"DiamondNorthEastEdge", kDiamond, {0.5, 0.5}, true},
        PolygonCase{"DiamondNorthWestEdge", kDiamond, {-0.5, 0.5}, true},
        PolygonCase{"DiamondSouthWestEdge", kDiamond, {-0.5, -0.5}, true},
        PolygonCase{"DiamondRayThroughVertexFromInside", kDiamond, {-0.5, 0}, true},
        PolygonCase{"DiamondRayThroughTwoVerticesFromWest", kDiamond, {-2, 0}, false},
        PolygonCase{"DiamondRayTouchesTop", kDiamond, {-2, 1}, false},
        PolygonCase{"DiamondRayTouchesBottom", kDiamond, {-2, -1}, false},
        PolygonCase{"CombLeftTooth", kComb, {0.5, 2}, true}, PolygonCase{"CombGap", kComb, {1.5, 2}, false},
        PolygonCase{"CombRightTooth", kComb, {2.5, 2}, true},
        PolygonCase{"CombBase", kComb, {1.5, 0.5}, true},
        PolygonCase{"CombRayAlongGapBottomFromTooth", kComb, {0.5, 1}, true},
        PolygonCase{"CombOnGapBottom", kComb, {1.5, 1}, true},
        PolygonCase{"CombWestOfRayAlongTops", kComb, {-1, 3}, false},
        PolygonCase{"CombGapTop", kComb, {1.5, 3}, false},
        PolygonCase{"BowTieUpperGap", kBowTie, {1, 1.5}, false},
        PolygonCase{"BowTieLeftWing", kBowTie, {0.5, 1}, true},
        PolygonCase{"BowTieCrossing", kBowTie, {1, 1}, true},
        PolygonCase{"BowTieLowerGap", kBowTie, {1, 0.5}, false},
        PolygonCase{"BowTieRightWing", kBowTie, {1.5, 1}, true},
        PolygonCase{"TwiceAroundIsOutsideByTheEvenOddRule", kTwiceAround, {1, 1}, false},
        PolygonCase{"Clockwise", {{0, 0}, {0, 1}, {1, 1}, {1, 0}}, {0.5, 0.5}, true},
        PolygonCase{
            "FirstVertexRepeatedAtTheEnd", {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}, {0.5, 0.5}, true},
        PolygonCase{"FirstVertexRepeatedAtTheEndOutside",
                    {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}},
                    {-0.5, 0.5},
                    false},
        PolygonCase{"RepeatedVertices", {{0, 0}, {0, 0}, {1, 0}, {1, 1}, {1, 1}, {0, 1}}, {0.5, 0.5}, true},
        PolygonCase{"AllVerticesEqualAtIt", {{1, 1}, {1, 1}, {1, 1}}, {1, 1}, true},
        PolygonCase{"AllVerticesEqualBeside", {{1, 1}, {1, 1}, {1, 1}}, {0.5, 1}, false},
        PolygonCase{"NearlyHorizontalEdgeTurnsEastOutsideIn", kFlat, {5, 3e-8}, true},
        PolygonCase{"NearlyHorizontalEdgeWestStaysOutside", kFlat, {-5, 3e-8}, false},
        PolygonCase{
            "NotUnwrappedAtTheAntimeridian", {{179, 0}, {-179, 0}, {-179, 2}, {179, 2}}, {0, 1}, true},
        PolygonCase{"NaNPoint", kSquare, {kNaN, kNaN}, false},
        PolygonCase{"NaNLatitude", kSquare, {0.5, kNaN}, false},
        PolygonCase{"NaNLongitude", kSquare, {kNaN, 0.5}, false},
        PolygonCase{"NaNLongitudeAtNearlyHorizontalEdgeIsInside", kFlat, {kNaN, 3e-8}, true},
        PolygonCase{
            "NaNVertexEqualsNothing", {{kNaN, kNaN}, {kNaN, kNaN}, {kNaN, kNaN}}, {kNaN, kNaN}, false},
        PolygonCase{
            "EdgesAtANaNVertexAreLeftOut", {{0, 0}, {1, 0}, {kNaN, kNaN}, {1, 1}, {0, 1}}, {0.5, 0.5}, false},
        PolygonCase{"InfinitelyWest", kSquare, {-kInfinity, 0.5}, false},
        PolygonCase{"InfinitelyEast", kSquare, {kInfinity, 0.5}, false},
        PolygonCase{"InfinitelyNorth", kSquare, {0.5, kInfinity}, false},
        PolygonCase{"InfiniteVertexEqualsInfinitePoint",
                    {{0, 0}, {1, 0}, {kInfinity, kInfinity}},
                    {kInfinity, kInfinity},
                    true}),
    [](const auto& test) { return test.param.name; });

TEST(IsPointInPolygon, OfTheBottomEdgeOnlyTheVerticesAreInside) {
  for (int i = 0; i <= 100; ++i) {
    const double longitude = i / 100.0;
    EXPECT_EQ(IsInPolygon(kSquare, {longitude, 0}), i == 0 || i == 100) << longitude;
    EXPECT_TRUE(IsInPolygon(kSquare, {longitude, 1})) << longitude;
  }
}

TEST(IsPointInPolygon, TakesAVertexOfThePolygonItself) {
  // By value: the point may be an element of the polygon.
  Line polygon = kComb;
  for (const GeoCoordinate& vertex : polygon) EXPECT_TRUE(IsInPolygon(polygon, vertex));
}

TEST(IsPointInPolygon, AllocatesNothing) {
  const vorel::test::AllocationCounter allocations;
  const bool inside = IsInPolygon(kComb, {0.5, 2});
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_TRUE(inside);
}

// ---- Exact bits: decisions that hang on the last bit ----------------------------------------------------------

TEST(PointRayTest, TheCrossingIsTakenFromTheStartOfTheEdgeInThisOrderOfOperations) {
  // (b.x - a.x) * t + a.x with t rounded first. Each other order, and the same edge from its other end, decides
  // differently for some of these points, which lie a few last places about the tolerance.
  constexpr unsigned kSeed = 41001;
  std::mt19937 generator(kSeed);
  int otherOrder = 0;
  int otherEnd = 0;
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate a(Uniform(generator, 0, 50), Uniform(generator, 0, 50));
    const GeoCoordinate b(a.longitude + Uniform(generator, -9, 9), a.latitude + Uniform(generator, 1, 9));
    const double latitude = Uniform(generator, a.latitude, b.latitude);
    const double t = (latitude - a.latitude) / (b.latitude - a.latitude);
    const double crossing = (b.longitude - a.longitude) * t + a.longitude;
    double longitude = crossing + (generator() % 2 == 0 ? kTolerance : -kTolerance);
    for (auto step = generator() % 3; step > 0; --step) longitude = std::nextafter(longitude, crossing);
    int crossings = 0;
    const bool onEdge = VorelGeometryAlgorithm::PointRayTest({longitude, latitude}, a, b, crossings);
    ASSERT_EQ(onEdge, std::fabs(longitude - crossing) < kTolerance) << "seed " << kSeed << ", run " << run;
    ASSERT_EQ(crossings, !onEdge && crossing > longitude ? 1 : 0) << "seed " << kSeed << ", run " << run;
    const double product = (b.longitude - a.longitude) * (latitude - a.latitude);
    const double byOtherOrder = product / (b.latitude - a.latitude) + a.longitude;
    otherOrder += (std::fabs(longitude - byOtherOrder) < kTolerance) != onEdge;
    otherEnd += VorelGeometryAlgorithm::PointRayTest({longitude, latitude}, b, a, crossings) != onEdge;
  }
  EXPECT_GT(otherOrder, 100);
  EXPECT_GT(otherEnd, 100);
}

// ---- Properties -----------------------------------------------------------------------------------------------

// Turns of the polygon about the point, from the angles at which its vertices are seen.
double WindingNumber(const Line& polygon, const GeoCoordinate& point) {
  double sum = 0.0;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const GeoCoordinate& a = polygon[i];
    const GeoCoordinate& b = polygon[(i + 1) % polygon.size()];
    const double ax = a.longitude - point.longitude;
    const double ay = a.latitude - point.latitude;
    const double bx = b.longitude - point.longitude;
    const double by = b.latitude - point.latitude;
    sum += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
  }
  return sum / 6.283185307179586;
}

double DegreesToBorder(const Line& polygon, const GeoCoordinate& point) {
  double nearest = kInfinity;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const GeoCoordinate& a = polygon[i];
    const GeoCoordinate& b = polygon[(i + 1) % polygon.size()];
    const double dx = b.longitude - a.longitude;
    const double dy = b.latitude - a.latitude;
    const double square = dx * dx + dy * dy;
    const double along =
        square > 0.0 ? ((point.longitude - a.longitude) * dx + (point.latitude - a.latitude) * dy) / square
                     : 0.0;
    const double t = std::min(1.0, std::max(0.0, along));
    nearest = std::min(
        nearest, std::hypot(a.longitude + t * dx - point.longitude, a.latitude + t * dy - point.latitude));
  }
  return nearest;
}

bool MeetsNearlyHorizontalEdge(const Line& polygon, double latitude) {
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const double a = polygon[i].latitude;
    const double b = polygon[(i + 1) % polygon.size()].latitude;
    if (a != b && std::fabs(a - b) < kTolerance && std::min(a, b) <= latitude && latitude <= std::max(a, b))
      return true;
  }
  return false;
}

// What the ray test calls on the border reaches 1e-7 degree of longitude, so never farther than that.
constexpr double kBorder = 1e-7;

struct WindingCounts {
  int inside = 0;
  int outside = 0;
};

void CompareWithWinding(const Line& polygon, std::mt19937& generator, int pointCount, WindingCounts& counts) {
  GeoCoordinate low = polygon[0];
  GeoCoordinate high = polygon[0];
  for (const GeoCoordinate& vertex : polygon) {
    low = {std::min(low.longitude, vertex.longitude), std::min(low.latitude, vertex.latitude)};
    high = {std::max(high.longitude, vertex.longitude), std::max(high.latitude, vertex.latitude)};
  }
  for (int i = 0; i < pointCount; ++i) {
    GeoCoordinate point(Uniform(generator, low.longitude - 0.01, high.longitude + 0.01),
                        Uniform(generator, low.latitude - 0.01, high.latitude + 0.01));
    // Every other ray runs exactly through a vertex.
    if (i % 2 == 1) point.latitude = polygon[generator() % polygon.size()].latitude;
    if (DegreesToBorder(polygon, point) <= kBorder || MeetsNearlyHorizontalEdge(polygon, point.latitude))
      continue;
    const double turns = WindingNumber(polygon, point);
    const double wholeTurns = std::round(turns);
    ASSERT_LT(std::fabs(turns - wholeTurns), 1e-6) << Paste(point);  // far from 0.5: the angles decide
    const bool inside = std::fmod(std::fabs(wholeTurns), 2.0) == 1.0;
    ASSERT_EQ(IsInPolygon(polygon, point), inside) << Paste(point) << " in " << Paste(polygon);
    ++(inside ? counts.inside : counts.outside);
  }
}

TEST(IsPointInPolygon, AgreesWithTheWindingNumberAwayFromTheBorder) {
  constexpr unsigned kSeed = 41002;
  std::mt19937 generator(kSeed);
  WindingCounts counts;
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    // Star-shaped polygons of either direction, on a coarse grid now and then: many rays through vertices.
    Line polygon;
    const int vertexCount = 3 + static_cast<int>(generator() % 30);
    const double direction = generator() % 2 == 0 ? 1.0 : -1.0;
    const GeoCoordinate centre(Uniform(generator, -170, 170), Uniform(generator, -80, 80));
    const bool onGrid = generator() % 3 == 0;
    for (int i = 0; i < vertexCount; ++i) {
      const double angle = direction * 6.283185307179586 * i / vertexCount;
      const double radius = Uniform(generator, 0.1, 5.0);
      GeoCoordinate vertex(centre.longitude + radius * std::cos(angle),
                           centre.latitude + radius * std::sin(angle));
      if (onGrid) vertex = {std::round(vertex.longitude), std::round(vertex.latitude)};
      polygon.push_back(vertex);
    }
    CompareWithWinding(polygon, generator, 60, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_GT(counts.inside, 8000);
  EXPECT_GT(counts.outside, 8000);
}

TEST(IsPointInPolygon, AgreesWithTheWindingNumberInRealPolygons) {
  const std::vector<NamedLine> polygons = vorel::test::RealLines("polygons");
  SKIP_WITHOUT_REAL_LINES(polygons);
  constexpr unsigned kSeed = 41003;
  std::mt19937 generator(kSeed);
  WindingCounts counts;
  for (const NamedLine& polygon : polygons) {
    SCOPED_TRACE(testing::Message() << polygon.name << ", seed " << kSeed);
    CompareWithWinding(polygon.points, generator, 60, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_GT(counts.inside, 1000);
  EXPECT_GT(counts.outside, 1000);
}

TEST(IsPointInPolygon, DoesNotDependOnARepeatedFirstVertex) {
  constexpr unsigned kSeed = 41004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 2000; ++run) {
    const Line line = vorel::test::WildLine(generator, 3 + static_cast<int>(generator() % 20));
    Line closed = line;
    closed.push_back(line[0]);
    for (int i = 0; i < 5; ++i) {
      const GeoCoordinate point(Uniform(generator, -180, 180), line[generator() % line.size()].latitude);
      ASSERT_EQ(IsInPolygon(line, point), IsInPolygon(closed, point))
          << "seed " << kSeed << ", run " << run << ": " << Paste(point) << " in " << Paste(line);
    }
  }
}

// ---- Against the plain twin -----------------------------------------------------------------------------------

void ExpectTwinAgrees(const GeoCoordinate& point, const GeoCoordinate& a, const GeoCoordinate& b) {
  int crossings = 5;
  int twinCrossings = 5;
  ASSERT_EQ(VorelGeometryAlgorithm::PointRayTest(point, a, b, crossings),
            reference::PointRayTest(point, a, b, twinCrossings))
      << Paste(point) << " at " << Paste(a) << ", " << Paste(b);
  ASSERT_EQ(crossings, twinCrossings) << Paste(point) << " at " << Paste(a) << ", " << Paste(b);
  ASSERT_EQ(VorelGeometryAlgorithm::PointRayTestInner(point, a, b, crossings),
            reference::PointRayTestInner(point, a, b, twinCrossings))
      << Paste(point) << " at " << Paste(a) << ", " << Paste(b);
  ASSERT_EQ(crossings, twinCrossings) << Paste(point) << " at " << Paste(a) << ", " << Paste(b);
}

// Points in, on, beside and exactly level with the polygon's vertices and edges.
void ExpectTwinAgreesAbout(const Line& polygon, std::mt19937& generator, int pointCount) {
  std::vector<GeoCoordinate> points{{0, 0}, {7.505, 47.505}, {kNaN, 47.5}, {7.5, kNaN}, {kInfinity, 1.0}};
  for (int i = 0; i < pointCount && !polygon.empty(); ++i) {
    const GeoCoordinate a = polygon[generator() % polygon.size()];
    const GeoCoordinate b = polygon[generator() % polygon.size()];
    const double t = Uniform(generator, 0, 1);
    const double step = std::pow(10.0, Uniform(generator, -17, 1)) * (generator() % 2 == 0 ? 1.0 : -1.0);
    points.push_back(a);
    points.push_back(
        {a.longitude + t * (b.longitude - a.longitude), a.latitude + t * (b.latitude - a.latitude)});
    points.push_back({a.longitude + step, a.latitude});
    points.push_back({a.longitude, a.latitude + step});
    points.push_back({b.longitude, a.latitude});
  }
  for (const GeoCoordinate& point : points) {
    ASSERT_EQ(IsInPolygon(polygon, point), reference::IsPointInPolygon(polygon, point))
        << Paste(point) << " in " << Paste(polygon);
    for (std::size_t i = 0; i < polygon.size() && i < 40; ++i) {
      ExpectTwinAgrees(point, polygon[i], polygon[(i + 1) % polygon.size()]);
    }
  }
}

TEST(ContainmentTwin, AgreesAtTheToleranceOfSlantedEdges) {
  // The crossing's order of operations shows in its last bits, and these where the tolerance ends.
  std::mt19937 generator(41009);
  int within = 0, beyond = 0;
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "run " << run);
    Line polygon;
    for (const double south : {0.5, -1.0, -1.0}) {
      polygon.emplace_back(7.0 + Uniform(generator, -1, 1), 47.0 + south + Uniform(generator, -0.4, 0.4));
    }
    const GeoCoordinate a = polygon[0], b = polygon[1];
    const double latitude = 47.0 + Uniform(generator, -0.5, 0.05);
    const double crossing =
        (b.longitude - a.longitude) * ((latitude - a.latitude) / (b.latitude - a.latitude)) + a.longitude;
    for (const double side : {crossing - kTolerance, crossing + kTolerance}) {
      for (double longitude = std::nextafter(side, 0.0); longitude <= std::nextafter(side, 9.0);
           longitude = std::nextafter(longitude, 9.0)) {
        const GeoCoordinate point(longitude, latitude);
        ASSERT_EQ(IsInPolygon(polygon, point), reference::IsPointInPolygon(polygon, point))
            << Paste(point) << " in " << Paste(polygon);
        (std::fabs(longitude - crossing) < kTolerance ? within : beyond) += 1;
      }
    }
  }
  EXPECT_GT(within, 1000);
  EXPECT_GT(beyond, 1000);
}

TEST(IsPointInPolygon, IsOutsideOfTwoEdgesThatRiseBetweenNaN) {
  // No edge leads back down: what falls is beside a NaN and takes no part.
  const Line polygon{{2, 0}, {2, 2}, {2, kNaN}, {4, 0}, {4, 2}, {4, kNaN}};
  EXPECT_FALSE(IsInPolygon(polygon, {0, 1}));
  EXPECT_TRUE(IsInPolygon(polygon, {3, 1}));
  EXPECT_FALSE(IsInPolygon(polygon, {5, 1}));
}

JOIN_AWKWARD_LINES(IsPointInPolygon, [](const Line& line) {
  std::mt19937 generator(41005);
  ExpectTwinAgreesAbout(line, generator, 60);
})

TEST(ContainmentTwin, AgreesOnRandomAndWildPolygons) {
  constexpr unsigned kSeed = 41006;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const int vertexCount = static_cast<int>(generator() % 25);
    ExpectTwinAgreesAbout(vorel::test::RandomLine(generator, vertexCount), generator, 6);
    ExpectTwinAgreesAbout(vorel::test::WildLine(generator, vertexCount), generator, 6);
    // Nearly flat ones: their edges rise about as much as the tolerance.
    Line flat;
    for (int i = 0; i < vertexCount; ++i) {
      flat.push_back({Uniform(generator, 0, 1e-6), static_cast<double>(generator() % 7) * 0.5e-7});
    }
    ExpectTwinAgreesAbout(flat, generator, 6);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ContainmentTwin, AgreesOnRealPolygons) {
  const std::vector<NamedLine> polygons = vorel::test::RealLines("polygons");
  SKIP_WITHOUT_REAL_LINES(polygons);
  std::mt19937 generator(41007);
  for (const NamedLine& polygon : polygons) {
    SCOPED_TRACE(polygon.name);
    ExpectTwinAgreesAbout(polygon.points, generator, 20);
    if (testing::Test::HasFatalFailure()) return;
  }
}

#if VOREL_CHECK_PRECONDITIONS
TEST(ContainmentDeathTest, AFullCounterNamesItself) {
  int crossings = std::numeric_limits<int>::max();
  EXPECT_DEATH(VorelGeometryAlgorithm::PointRayTest({1, 5}, {2, 0}, {2, 10}, crossings),
               "precondition broken");
  EXPECT_DEATH(VorelGeometryAlgorithm::PointRayTestInner({11, 5e-8}, {0, 0}, {10, 9e-8}, crossings),
               "precondition broken");
}
#else
TEST(ContainmentDeathTest, AFullCounterNamesItself) {
  GTEST_SKIP() << "skipped: preconditions are checked in builds with VOREL_CHECK_PRECONDITIONS=1 only";
}
#endif

}  // namespace
