// The pieces of a line that run through a rectangle, and the segment test behind them.

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/clipping_reference.h"
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
using vorel::test::SameBits;
using vorel::test::Uniform;

using Pieces = std::vector<Line>;
using Rect = tarvo::Rect<GeoCoordinate>;

const Rect kTen{{0, 0}, {10, 10}};

// ---- Edges: lines and rectangles ------------------------------------------------------------------------------

struct CutCase {
  const char* name;
  Line line;
  Rect rect;
  Pieces pieces;
};

class CutPolylineEdges : public testing::TestWithParam<CutCase> {};

TEST_P(CutPolylineEdges, Hold) {
  const CutCase& c = GetParam();
  Pieces pieces;
  EXPECT_EQ(VorelGeometryAlgorithm::CutPolyline(c.line, c.rect, pieces), !c.line.empty());
  EXPECT_TRUE(SameBits(pieces, c.pieces));

  // What the output holds stays in front, an unfinished piece included.
  for (const Pieces& before : {Pieces{{}}, Pieces{{{1, 2}, {3, 4}}, {{5, 5}}}}) {
    pieces = before;
    EXPECT_EQ(VorelGeometryAlgorithm::CutPolyline(c.line, c.rect, pieces), !c.line.empty());
    Pieces expected = before;
    expected.insert(expected.end(), c.pieces.begin(), c.pieces.end());
    EXPECT_TRUE(SameBits(pieces, expected));
  }

  // Backwards the same pieces come backwards, each reversed; but not an empty one twice.
  const Line backward(c.line.rbegin(), c.line.rend());
  pieces.clear();
  VorelGeometryAlgorithm::CutPolyline(backward, c.rect, pieces);
  Pieces expected;
  for (auto piece = c.pieces.rbegin(); piece != c.pieces.rend(); ++piece) {
    expected.emplace_back(piece->rbegin(), piece->rend());
  }
  EXPECT_TRUE(SameBits(pieces, expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, CutPolylineEdges,
    testing::Values(
        CutCase{"Empty", {}, kTen, {}}, CutCase{"OneVertexInsideGivesOneEmptyPiece", {{5, 5}}, kTen, {{}}},
        CutCase{"OneVertexOutside", {{15, 5}}, kTen, {}},
        CutCase{"OneVertexOnCorner", {{10, 10}}, kTen, {{}}},
        CutCase{"Through", {{-5, 5}, {5, 5}, {6, 5}, {15, 5}}, kTen, {{{-5, 5}, {5, 5}, {6, 5}, {15, 5}}}},
        CutCase{"ThroughWithFarEnds",
                {{-25, 5}, {-15, 5}, {-5, 5}, {5, 5}, {15, 5}, {25, 5}, {35, 5}},
                kTen,
                {{{-5, 5}, {5, 5}, {15, 5}}}},
        CutCase{"ThroughWithoutAVertexInside", {{-5, 5}, {15, 5}}, kTen, {{{-5, 5}, {15, 5}}}},
        CutCase{"Inside", {{5, 5}, {6, 6}}, kTen, {{{5, 5}, {6, 6}}}},
        CutCase{"InsideThree", {{5, 5}, {6, 6}, {7, 5}}, kTen, {{{5, 5}, {6, 6}, {7, 5}}}},
        CutCase{"EndsInside", {{-5, 5}, {5, 5}}, kTen, {{{-5, 5}, {5, 5}}}},
        CutCase{"EndsInsideAfterThree", {{-5, 5}, {5, 5}, {6, 5}}, kTen, {{{-5, 5}, {5, 5}, {6, 5}}}},
        CutCase{"StartsInside", {{5, 5}, {15, 5}}, kTen, {{{5, 5}, {15, 5}}}},
        CutCase{"StartsInsideEndsFar", {{5, 5}, {15, 5}, {25, 5}}, kTen, {{{5, 5}, {15, 5}}}},
        CutCase{"OutAndInAgain", {{5, 5}, {15, 5}, {5, 6}}, kTen, {{{5, 5}, {15, 5}}, {{15, 5}, {5, 6}}}},
        CutCase{"InOutIn",
                {{-5, 5}, {5, 5}, {15, 5}, {5, 6}, {-5, 6}},
                kTen,
                {{{-5, 5}, {5, 5}, {15, 5}}, {{15, 5}, {5, 6}, {-5, 6}}}},
        CutCase{"TwiceThroughWithoutAVertexInside",
                {{-5, 5}, {15, 5}, {-5, 6}},
                kTen,
                {{{-5, 5}, {15, 5}}, {{15, 5}, {-5, 6}}}},
        CutCase{
            "CrossingNextToARun", {{-5, 5}, {15, 5}, {5, 6}}, kTen, {{{-5, 5}, {15, 5}}, {{15, 5}, {5, 6}}}},
        // Past the rectangle on each side and at each corner.
        CutCase{"PassesWest", {{-1, -5}, {-1, 15}}, kTen, {}},
        CutCase{"PassesEast", {{11, -5}, {11, 15}}, kTen, {}},
        CutCase{"PassesSouth", {{-5, -1}, {15, -1}}, kTen, {}},
        CutCase{"PassesNorth", {{-5, 11}, {15, 11}}, kTen, {}},
        CutCase{"BeyondTopLeft", {{-1, 9.5}, {0.5, 11}}, kTen, {}},
        CutCase{"BeyondTopRight", {{11, 9.5}, {9.5, 11}}, kTen, {}},
        CutCase{"BeyondBottomLeft", {{-1, 0.5}, {0.5, -1}}, kTen, {}},
        CutCase{"BeyondBottomRight", {{11, 0.5}, {9.5, -1}}, kTen, {}},
        CutCase{"ThroughTopLeftCorner", {{-1, 9}, {1, 11}}, kTen, {{{-1, 9}, {1, 11}}}},
        CutCase{"ThroughTopRightCorner", {{11, 9}, {9, 11}}, kTen, {{{11, 9}, {9, 11}}}},
        CutCase{"ThroughBottomLeftCorner", {{-1, 1}, {1, -1}}, kTen, {{{-1, 1}, {1, -1}}}},
        CutCase{"ThroughBottomRightCorner", {{11, 1}, {9, -1}}, kTen, {{{11, 1}, {9, -1}}}},
        CutCase{"CutsTopLeftCorner", {{-1, 8}, {2, 11}}, kTen, {{{-1, 8}, {2, 11}}}},
        CutCase{"CutsTopRightCorner", {{11, 8}, {8, 11}}, kTen, {{{11, 8}, {8, 11}}}},
        CutCase{"CutsBottomLeftCorner", {{-1, 2}, {2, -1}}, kTen, {{{-1, 2}, {2, -1}}}},
        CutCase{"CutsBottomRightCorner", {{11, 2}, {8, -1}}, kTen, {{{11, 2}, {8, -1}}}},
        CutCase{"AlongDiagonal", {{-1, -1}, {11, 11}}, kTen, {{{-1, -1}, {11, 11}}}},
        CutCase{"AlongOtherDiagonal", {{-1, 11}, {11, -1}}, kTen, {{{-1, 11}, {11, -1}}}},
        CutCase{"OnDiagonalsLineButBefore", {{-3, -3}, {-1, -1}}, kTen, {}},
        CutCase{"AlongWestEdge", {{0, -1}, {0, 11}}, kTen, {{{0, -1}, {0, 11}}}},
        CutCase{"AlongEastEdge", {{10, -1}, {10, 11}}, kTen, {{{10, -1}, {10, 11}}}},
        CutCase{"AlongSouthEdge", {{-1, 0}, {11, 0}}, kTen, {{{-1, 0}, {11, 0}}}},
        CutCase{"AlongNorthEdge", {{-1, 10}, {11, 10}}, kTen, {{{-1, 10}, {11, 10}}}},
        // The border is inside: an end on it, the other outside.
        CutCase{"TouchesWestEdge", {{-5, 5}, {0, 5}, {-5, 6}}, kTen, {{{-5, 5}, {0, 5}, {-5, 6}}}},
        CutCase{"TouchesEastEdge", {{15, 5}, {10, 5}, {15, 6}}, kTen, {{{15, 5}, {10, 5}, {15, 6}}}},
        CutCase{"TouchesSouthEdge", {{5, -5}, {5, 0}, {6, -5}}, kTen, {{{5, -5}, {5, 0}, {6, -5}}}},
        CutCase{"TouchesNorthEdge", {{5, 15}, {5, 10}, {6, 15}}, kTen, {{{5, 15}, {5, 10}, {6, 15}}}},
        CutCase{"TouchesTopLeft", {{-5, 10}, {0, 10}, {0, 15}}, kTen, {{{-5, 10}, {0, 10}, {0, 15}}}},
        CutCase{"TouchesTopRight", {{15, 10}, {10, 10}, {10, 15}}, kTen, {{{15, 10}, {10, 10}, {10, 15}}}},
        CutCase{"TouchesBottomLeft", {{-5, 0}, {0, 0}, {0, -5}}, kTen, {{{-5, 0}, {0, 0}, {0, -5}}}},
        CutCase{"TouchesBottomRight", {{15, 0}, {10, 0}, {10, -5}}, kTen, {{{15, 0}, {10, 0}, {10, -5}}}},
        CutCase{"JustOutsideWest", {{-5, 5}, {-5e-324, 5}, {-5, 6}}, kTen, {}},
        CutCase{"JustOutsideEast", {{15, 5}, {std::nextafter(10.0, 11.0), 5}, {15, 6}}, kTen, {}},
        CutCase{"JustOutsideSouth", {{5, -5}, {5, -5e-324}, {6, -5}}, kTen, {}},
        CutCase{"JustOutsideNorth", {{5, 15}, {5, std::nextafter(10.0, 11.0)}, {6, 15}}, kTen, {}},
        CutCase{"NegativeZeroIsOnTheBorder",
                {{-5, 5}, {-0.0, -0.0}, {-5, 6}},
                kTen,
                {{{-5, 5}, {-0.0, -0.0}, {-5, 6}}}},
        // Repeated vertices stay.
        CutCase{
            "RepeatedInside", {{-5, 5}, {5, 5}, {5, 5}, {15, 5}}, kTen, {{{-5, 5}, {5, 5}, {5, 5}, {15, 5}}}},
        CutCase{"RepeatedOutside", {{-5, 5}, {-5, 5}, {5, 5}}, kTen, {{{-5, 5}, {5, 5}}}},
        CutCase{"AllEqualInside", {{5, 5}, {5, 5}, {5, 5}}, kTen, {{{5, 5}, {5, 5}, {5, 5}}}},
        CutCase{"AllEqualOutside", {{15, 5}, {15, 5}, {15, 5}}, kTen, {}},
        // Rectangles without area.
        CutCase{"PointRectangleMet", {{-1, -1}, {1, 1}}, {{0, 0}, {0, 0}}, {{{-1, -1}, {1, 1}}}},
        CutCase{"PointRectangleMissed", {{-1, -1}, {1, 1.5}}, {{0, 0}, {0, 0}}, {}},
        CutCase{"PointRectangleIsVertex",
                {{-1, -1}, {0, 0}, {1, 5}},
                {{0, 0}, {0, 0}},
                {{{-1, -1}, {0, 0}, {1, 5}}}},
        CutCase{"ThinRectangleCrossed", {{-1, 5}, {1, 5}}, {{0, 0}, {0, 10}}, {{{-1, 5}, {1, 5}}}},
        CutCase{"ThinRectanglePassed", {{-1, 11}, {1, 11}}, {{0, 0}, {0, 10}}, {}},
        // An inverted rectangle contains no vertex; what meets the diagonals of its corners is still a piece.
        CutCase{"InvertedVertexWithin", {{5, 5}}, {{10, 10}, {0, 0}}, {}},
        CutCase{"InvertedMetAcross", {{-5, 5}, {15, 5}}, {{10, 10}, {0, 0}}, {{{-5, 5}, {15, 5}}}},
        CutCase{"InvertedMetByASegmentWithin", {{4, 5}, {6, 5}}, {{10, 10}, {0, 0}}, {{{4, 5}, {6, 5}}}},
        CutCase{"InvertedNotMetBetweenDiagonals", {{4, 1}, {6, 1}}, {{10, 10}, {0, 0}}, {}},
        CutCase{"InvertedInLongitudeOnly",
                {{-5, 5}, {5, 5}, {15, 5}},
                {{10, 0}, {0, 10}},
                {{{-5, 5}, {5, 5}}, {{5, 5}, {15, 5}}}},
        // NaN and infinity.
        CutCase{
            "NaNVertexIsInside", {{15, 5}, {kNaN, kNaN}, {25, 5}}, kTen, {{{15, 5}, {kNaN, kNaN}, {25, 5}}}},
        CutCase{"NaNLongitudeIsInsideAtALatitudeWithin",
                {{15, 5}, {kNaN, 5}, {25, 5}},
                kTen,
                {{{15, 5}, {kNaN, 5}, {25, 5}}}},
        CutCase{"NaNLongitudeIsOutsideAtALatitudeBeyond", {{15, 15}, {kNaN, 15}, {-5, 15}}, kTen, {}},
        CutCase{"NaNVertexAlone", {{kNaN, kNaN}}, kTen, {{}}},
        CutCase{"InfiniteVertex", {{15, 5}, {kInfinity, 5}, {25, 5}}, kTen, {}},
        CutCase{"NaNRectangleContainsEveryVertex",
                {{5, 5}, {500, 5}},
                {{kNaN, kNaN}, {kNaN, kNaN}},
                {{{5, 5}, {500, 5}}}},
        CutCase{"NaNBorderDoesNotExclude",
                {{-500, 5}, {-5, 5}, {15, 5}},
                {{kNaN, 0}, {10, 10}},
                {{{-500, 5}, {-5, 5}, {15, 5}}}},
        CutCase{"NaNBorderHidesCrossingSegments", {{5, -5}, {5, 15}}, {{kNaN, 0}, {10, 10}}, {}},
        CutCase{"InfiniteBordersContainVertices",
                {{-500, 5}, {500, 5}},
                {{-kInfinity, 0}, {kInfinity, 10}},
                {{{-500, 5}, {500, 5}}}},
        CutCase{"InfiniteBordersAreCrossed",
                {{5, -5}, {5, 15}},
                {{-kInfinity, 0}, {kInfinity, 10}},
                {{{5, -5}, {5, 15}}}},
        CutCase{"NotUnwrappedAtTheAntimeridian", {{179, 5}, {-179, 5}}, kTen, {{{179, 5}, {-179, 5}}}}),
    [](const auto& test) { return test.param.name; });

// ---- Edges: one step ------------------------------------------------------------------------------------------

struct StepCase {
  const char* name;
  bool previousInside;
  bool currentInside;
  unsigned long currentIndex;
  unsigned vertexCount;
  Pieces before;
  Pieces after;
};

class CutPolylineUpdateEdges : public testing::TestWithParam<StepCase> {};

// The flags decide, not the places of the vertices: both are the caller's.
TEST_P(CutPolylineUpdateEdges, Hold) {
  const StepCase& c = GetParam();
  const Line line{{-5, 5}, {15, 5}, {15, 50}, {16, 50}};
  Pieces pieces = c.before;
  VorelGeometryAlgorithm::CutPolylineUpdate(c.previousInside, c.currentInside, c.currentIndex, c.vertexCount,
                                            line, kTen, pieces);
  EXPECT_TRUE(SameBits(pieces, c.after));
  Pieces twin = c.before;
  reference::CutPolylineUpdate(c.previousInside, c.currentInside, c.currentIndex, c.vertexCount, line, kTen,
                               twin);
  EXPECT_TRUE(SameBits(twin, c.after));
}

const Pieces kHeld{{{1, 1}}, {{2, 2}}};

INSTANTIATE_TEST_SUITE_P(
    All, CutPolylineUpdateEdges,
    testing::Values(
        StepCase{"Entering", false, true, 1, 4, kHeld, {{{1, 1}}, {{2, 2}}, {{-5, 5}}}},
        StepCase{"EnteringWithoutAPiece", false, true, 1, 4, {}, {{{-5, 5}}}},
        StepCase{"EnteringLast", false, true, 1, 2, kHeld, {{{1, 1}}, {{2, 2}}, {{-5, 5}, {15, 5}}}},
        StepCase{"Within", true, true, 1, 4, kHeld, {{{1, 1}}, {{2, 2}, {-5, 5}}}},
        StepCase{"WithinLast", true, true, 1, 2, kHeld, {{{1, 1}}, {{2, 2}, {-5, 5}, {15, 5}}}},
        StepCase{"Leaving", true, false, 1, 4, kHeld, {{{1, 1}}, {{2, 2}, {-5, 5}, {15, 5}}}},
        StepCase{"LeavingLast", true, false, 1, 2, kHeld, {{{1, 1}}, {{2, 2}, {-5, 5}, {15, 5}}}},
        StepCase{"OutsideAcross", false, false, 1, 4, kHeld, {{{1, 1}}, {{2, 2}}, {{-5, 5}, {15, 5}}}},
        StepCase{"OutsideAcrossLast", false, false, 1, 2, kHeld, {{{1, 1}}, {{2, 2}}, {{-5, 5}, {15, 5}}}},
        StepCase{"OutsidePast", false, false, 3, 4, kHeld, kHeld},
        StepCase{"OutsidePastWithoutAPiece", false, false, 3, 4, {}, {}},
        // The count handed over decides which step is the last one, not the line.
        StepCase{"LineEndsButCountDoesNot", true, true, 3, 5, kHeld, {{{1, 1}}, {{2, 2}, {15, 50}}}},
        StepCase{"CountEndsButLineDoesNot", true, true, 2, 3, kHeld, {{{1, 1}}, {{2, 2}, {15, 5}, {15, 50}}}},
        StepCase{"CountBelowTheIndex", true, true, 3, 1, kHeld, {{{1, 1}}, {{2, 2}, {15, 50}}}},
        // 0 - 1 wraps to the largest 32-bit value and equals no index here.
        StepCase{"CountZero", false, true, 3, 0, {}, {{{15, 50}}}}),
    [](const auto& test) { return test.param.name; });

// ---- Edges: two segments --------------------------------------------------------------------------------------

struct JoinCase {
  const char* name;
  GeoCoordinate a, b, c, d;
  bool joined;
};

class IsTwoSegmentJoinedEdges : public testing::TestWithParam<JoinCase> {};

TEST_P(IsTwoSegmentJoinedEdges, HoldInEveryOrderOfThePoints) {
  const auto& [name, a, b, c, d, joined] = GetParam();
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, c, d), joined);
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(b, a, c, d), joined);
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, d, c), joined);
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(b, a, d, c), joined);
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(c, d, a, b), joined);
  EXPECT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(d, c, b, a), joined);
}

INSTANTIATE_TEST_SUITE_P(
    All, IsTwoSegmentJoinedEdges,
    testing::Values(JoinCase{"Cross", {0, 0}, {2, 2}, {0, 2}, {2, 0}, true},
                    JoinCase{"TouchAtT", {0, 0}, {2, 0}, {1, 0}, {1, 5}, true},
                    JoinCase{"JustShortOfT", {0, 0}, {2, 0}, {1, 5e-324}, {1, 5}, false},
                    JoinCase{"ShareAnEnd", {0, 0}, {2, 0}, {2, 0}, {3, 5}, true},
                    JoinCase{"Parallel", {0, 0}, {2, 0}, {0, 1}, {2, 1}, false},
                    JoinCase{"ParallelSlanted", {0, 0}, {2, 2}, {1, 0}, {3, 2}, false},
                    JoinCase{"BoxesMeetButSegmentsDoNot", {0, 0}, {10, 10}, {6, 1}, {9, 5}, false},
                    JoinCase{"LineMeetsSegmentDoesNot", {0, 0}, {4, 4}, {3, 6}, {6, 3}, false},
                    JoinCase{"OneSideOnly", {0, 0}, {10, 0}, {5, 1}, {20, -1}, false},
                    JoinCase{"CollinearOverlap", {0, 0}, {2, 2}, {1, 1}, {3, 3}, true},
                    JoinCase{"CollinearWithin", {0, 0}, {3, 3}, {1, 1}, {2, 2}, true},
                    JoinCase{"CollinearTouch", {0, 0}, {1, 1}, {1, 1}, {2, 2}, true},
                    JoinCase{"CollinearApart", {0, 0}, {1, 1}, {2, 2}, {3, 3}, false},
                    JoinCase{"CollinearApartVertical", {0, 0}, {0, 1}, {0, 2}, {0, 3}, false},
                    JoinCase{"CollinearApartHorizontal", {0, 0}, {1, 0}, {2, 0}, {3, 0}, false},
                    JoinCase{"BoxesTouchAtWestEdge", {0, 0}, {2, 0}, {2, -1}, {2, 1}, true},
                    JoinCase{"BoxesApartByOnePlaceWest",
                             {0, 0},
                             {2, 0},
                             {2.0000000000000004, -1},
                             {2.0000000000000004, 1},
                             false},
                    JoinCase{"BoxesTouchAtNorthEdge", {0, 0}, {0, 2}, {-1, 2}, {1, 2}, true},
                    JoinCase{"BoxesApartByOnePlaceNorth",
                             {0, 0},
                             {0, 2},
                             {-1, 2.0000000000000004},
                             {1, 2.0000000000000004},
                             false},
                    JoinCase{"PointOnSegment", {1, 1}, {1, 1}, {0, 0}, {2, 2}, true},
                    JoinCase{"PointBesideSegment", {1, 1.5}, {1, 1.5}, {0, 0}, {2, 2}, false},
                    JoinCase{"PointOutsideTheBox", {3, 1}, {3, 1}, {0, 0}, {2, 2}, false},
                    JoinCase{"TwoPointsEqual", {1, 1}, {1, 1}, {1, 1}, {1, 1}, true},
                    JoinCase{"TwoPointsApart", {1, 1}, {1, 1}, {1, 2}, {1, 2}, false},
                    JoinCase{"SignedZeros", {0.0, -0.0}, {-0.0, 0.0}, {0, 0}, {0, 0}, true},
                    JoinCase{"NaNFirst", {kNaN, 1}, {1, 1}, {0, 0}, {2, 2}, false},
                    JoinCase{"NaNSecond", {0, 2}, {2, kNaN}, {0, 0}, {2, 2}, false},
                    JoinCase{"NaNThird", {0, 2}, {2, 0}, {0, kNaN}, {2, 2}, false},
                    JoinCase{"NaNFourth", {0, 2}, {2, 0}, {0, 0}, {kNaN, 2}, false},
                    JoinCase{"NaNAll", {kNaN, kNaN}, {kNaN, kNaN}, {kNaN, kNaN}, {kNaN, kNaN}, false}),
    [](const auto& test) { return test.param.name; });

// ---- Exact bits -----------------------------------------------------------------------------------------------

TEST(IsTwoSegmentJoined, DecidesOnTheSignOfRoundedProducts) {
  // The points touch the segment up to a few last places; no other order of operations decides all of them alike.
  constexpr unsigned kSeed = 42001;
  std::mt19937 generator(kSeed);
  int joinedCount = 0;
  int otherOrder = 0;
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate a(Uniform(generator, 0, 50), Uniform(generator, 0, 50));
    const GeoCoordinate b(a.longitude + Uniform(generator, -1, 1), a.latitude + Uniform(generator, -1, 1));
    const double t = Uniform(generator, 0.1, 0.9);
    const GeoCoordinate c(a.longitude + t * (b.longitude - a.longitude),
                          a.latitude + t * (b.latitude - a.latitude));
    const GeoCoordinate d(c.longitude + (b.latitude - a.latitude), c.latitude - (b.longitude - a.longitude));
    const double sideOfC = (c.longitude - a.longitude) * (b.latitude - a.latitude) -
                           (b.longitude - a.longitude) * (c.latitude - a.latitude);
    const double sideOfD = (d.longitude - a.longitude) * (b.latitude - a.latitude) -
                           (b.longitude - a.longitude) * (d.latitude - a.latitude);
    const bool joined = VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, c, d);
    ASSERT_EQ(joined, sideOfC * sideOfD <= 0.0) << "seed " << kSeed << ", run " << run;
    joinedCount += joined;
    const double sideOfCFromB = (c.longitude - b.longitude) * (a.latitude - b.latitude) -
                                (a.longitude - b.longitude) * (c.latitude - b.latitude);
    otherOrder += joined != (sideOfCFromB * -sideOfD <= 0.0);
  }
  EXPECT_GT(joinedCount, 2000);
  EXPECT_LT(joinedCount, 18000);
  EXPECT_GT(otherOrder, 50);
}

TEST(CutPolyline, CopiesVerticesToTheBit) {
  const Line line{{-0.0, 5.1}, {0.1, -0.0}, {kNaN, 0.3}, {15, 5}};
  Pieces pieces;
  EXPECT_TRUE(VorelGeometryAlgorithm::CutPolyline(line, kTen, pieces));
  EXPECT_TRUE(SameBits(pieces, Pieces{line}));
}

// ---- Properties -----------------------------------------------------------------------------------------------

bool IsInside(const Rect& rect, const GeoCoordinate& point) {
  return rect.min.longitude <= point.longitude && point.longitude <= rect.max.longitude &&
         rect.min.latitude <= point.latitude && point.latitude <= rect.max.latitude;
}

// Whether the part of the segment inside the rectangle is not empty; the borders are moved outward by `margin`
// (inward by a negative one).
bool MeetsRectangle(const GeoCoordinate& a, const GeoCoordinate& b, const Rect& rect, double margin) {
  double from = 0.0;
  double to = 1.0;
  const auto cut = [&from, &to](double start, double step, double low, double high) {
    if (step == 0.0) return low <= start && start <= high;
    const double first = (low - start) / step;
    const double second = (high - start) / step;
    from = std::max(from, std::min(first, second));
    to = std::min(to, std::max(first, second));
    return from <= to;
  };
  return cut(a.longitude, b.longitude - a.longitude, rect.min.longitude - margin,
             rect.max.longitude + margin) &&
         cut(a.latitude, b.latitude - a.latitude, rect.min.latitude - margin, rect.max.latitude + margin);
}

bool IsSeenInside(const GeoCoordinate& a, const GeoCoordinate& b, const Rect& rect) {
  constexpr int kSteps = 256;
  for (int i = 0; i <= kSteps; ++i) {
    const double t = static_cast<double>(i) / kSteps;
    if (IsInside(rect, {a.longitude + t * (b.longitude - a.longitude),
                        a.latitude + t * (b.latitude - a.latitude)})) {
      return true;
    }
  }
  return false;
}

struct CutCounts {
  int pieces = 0;
  int crossings = 0;  // pieces without a vertex inside
  int missed = 0;     // segments in no piece
};

// For lines without two equal vertices in a row.
void CheckPieces(const Line& line, const Rect& rect, CutCounts& counts) {
  Pieces pieces;
  ASSERT_TRUE(VorelGeometryAlgorithm::CutPolyline(line, rect, pieces));
  std::vector<bool> isSegmentCut(line.size(), false);  // by the index of the vertex that ends it
  std::size_t from =
      0;  // pieces follow each other: the next one starts at the last vertex of this one or later
  for (const Line& piece : pieces) {
    ASSERT_GE(piece.size(), 2u);
    const auto found =
        std::search(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(), piece.begin(), piece.end(),
                    [](const auto& x, const auto& y) { return x == y; });
    ASSERT_NE(found, line.end()) << "no run of vertices: " << Paste(piece);
    const auto start = static_cast<std::size_t>(found - line.begin());
    for (std::size_t k = 1; k < piece.size(); ++k) isSegmentCut[start + k] = true;
    from = start + piece.size() - 1;
    // Between its ends a piece stays inside, and it ends outside or where the line ends.
    for (std::size_t k = 1; k + 1 < piece.size(); ++k) ASSERT_TRUE(IsInside(rect, piece[k]));
    ASSERT_TRUE(start == 0 || !IsInside(rect, piece.front()));
    ASSERT_TRUE(from == line.size() - 1 || !IsInside(rect, piece.back()));
    ++counts.pieces;
    counts.crossings += piece.size() == 2 && !IsInside(rect, piece.front()) && !IsInside(rect, piece.back());
  }
  // What is called in needs no margin in the arithmetic of the pieces, but the checks here round: 1e-12 degree is
  // ten thousand times their error.
  constexpr double kMargin = 1e-12;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (IsInside(rect, line[i - 1]) || IsInside(rect, line[i])) {
      ASSERT_TRUE(isSegmentCut[i]) << "a vertex inside is lost at " << i;
    }
    const Rect inner{{rect.min.longitude + kMargin, rect.min.latitude + kMargin},
                     {rect.max.longitude - kMargin, rect.max.latitude - kMargin}};
    if (IsSeenInside(line[i - 1], line[i], inner) || MeetsRectangle(line[i - 1], line[i], rect, -kMargin)) {
      ASSERT_TRUE(isSegmentCut[i]) << "a segment inside is lost: " << Paste(Line{line[i - 1], line[i]});
    }
    if (!MeetsRectangle(line[i - 1], line[i], rect, kMargin)) {
      ASSERT_FALSE(isSegmentCut[i]) << "a segment outside is kept: " << Paste(Line{line[i - 1], line[i]});
    }
    counts.missed += !isSegmentCut[i];
  }
}

Line WithoutRepeats(const Line& line) {
  Line result;
  for (const GeoCoordinate& vertex : line) {
    if (result.empty() || vertex != result.back()) result.push_back(vertex);
  }
  return result;
}

// A rectangle about some place of the line, from far smaller to larger than its extent.
Rect SomeRectangle(std::mt19937& generator, const Line& line, double degrees) {
  const GeoCoordinate& vertex = line[generator() % line.size()];
  const double width = degrees * std::exp(Uniform(generator, -3, 2));
  const double height = degrees * std::exp(Uniform(generator, -3, 2));
  const GeoCoordinate low(vertex.longitude - Uniform(generator, -0.3, 1.3) * width,
                          vertex.latitude - Uniform(generator, -0.3, 1.3) * height);
  return {low, {low.longitude + width, low.latitude + height}};
}

TEST(CutPolyline, KeepsExactlyTheSegmentsThatMeetTheRectangle) {
  constexpr unsigned kSeed = 42002;
  std::mt19937 generator(kSeed);
  CutCounts counts;
  for (int run = 0; run < 3000; ++run) {
    const Line line =
        WithoutRepeats(vorel::test::RandomLine(generator, 2 + static_cast<int>(generator() % 60)));
    const Rect rect = SomeRectangle(generator, line, 0.0005);
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run << ", rectangle " << Paste(rect));
    if (line.size() < 2) continue;
    CheckPieces(line, rect, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_GT(counts.pieces, 2000);
  EXPECT_GT(counts.crossings, 300);
  EXPECT_GT(counts.missed, 20000);
}

TEST(CutPolyline, KeepsExactlyTheSegmentsOfZigzagsThatMeetTheRectangle) {
  constexpr unsigned kSeed = 42003;
  std::mt19937 generator(kSeed);
  CutCounts counts;
  for (int run = 0; run < 3000; ++run) {
    Line line;
    for (int i = 0; i < 30; ++i) line.push_back({Uniform(generator, -2, 2), Uniform(generator, -2, 2)});
    const Rect rect = SomeRectangle(generator, {{0, 0}}, 0.5);
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run << ", rectangle " << Paste(rect));
    CheckPieces(line, rect, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_GT(counts.crossings, 5000);
  EXPECT_GT(counts.missed, 20000);
}

TEST(CutPolyline, KeepsExactlyTheSegmentsOfRealRoutesThatMeetTheRectangle) {
  const std::vector<NamedLine> routes = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(routes);
  constexpr unsigned kSeed = 42004;
  std::mt19937 generator(kSeed);
  CutCounts counts;
  for (const NamedLine& route : routes) {
    const Line line = WithoutRepeats(route.points);
    for (int run = 0; run < 4; ++run) {
      const Rect rect = SomeRectangle(generator, line, run % 2 == 0 ? 0.002 : 0.05);
      SCOPED_TRACE(testing::Message() << route.name << ", seed " << kSeed << ", rectangle " << Paste(rect));
      CheckPieces(line, rect, counts);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
  EXPECT_GT(counts.pieces, 150);
}

TEST(CutPolyline, TakesAnInfiniteBorderForAFarOne) {
  constexpr unsigned kSeed = 42010;
  std::mt19937 generator(kSeed);
  int crossings = 0;
  for (int run = 0; run < 5000; ++run) {
    Line line;
    for (int i = 0; i < 20; ++i) line.push_back({Uniform(generator, -2, 2), Uniform(generator, -2, 2)});
    Rect far = SomeRectangle(generator, {{0, 0}}, 0.5);
    Rect infinite = far;
    const auto sides = generator() % 16;
    if (sides & 1) far.min.longitude = -1e6, infinite.min.longitude = -kInfinity;
    if (sides & 2) far.min.latitude = -1e6, infinite.min.latitude = -kInfinity;
    if (sides & 4) far.max.longitude = 1e6, infinite.max.longitude = kInfinity;
    if (sides & 8) far.max.latitude = 1e6, infinite.max.latitude = kInfinity;
    Pieces expected;
    Pieces pieces;
    VorelGeometryAlgorithm::CutPolyline(line, far, expected);
    VorelGeometryAlgorithm::CutPolyline(line, infinite, pieces);
    ASSERT_TRUE(SameBits(pieces, expected)) << "seed " << kSeed << ", run " << run << ", " << Paste(infinite);
    for (const Line& piece : pieces) {
      crossings +=
          sides != 0 && piece.size() == 2 && !IsInside(infinite, piece[0]) && !IsInside(infinite, piece[1]);
    }
  }
  EXPECT_GT(crossings, 1000);
}

TEST(IsTwoSegmentJoined, AgreesWithTheIntersectionPointInGeneralPosition) {
  constexpr unsigned kSeed = 42005;
  std::mt19937 generator(kSeed);
  int joinedCount = 0;
  for (int run = 0; run < 20000; ++run) {
    GeoCoordinate p[4];
    for (GeoCoordinate& point : p) point = {Uniform(generator, 0, 1), Uniform(generator, 0, 1)};
    const bool joined = VorelGeometryAlgorithm::IsTwoSegmentJoined(p[0], p[1], p[2], p[3]);
    // The one point that both lines share, by Cramer's rule.
    const double ux = p[1].longitude - p[0].longitude;
    const double uy = p[1].latitude - p[0].latitude;
    const double vx = p[3].longitude - p[2].longitude;
    const double vy = p[3].latitude - p[2].latitude;
    const double determinant = ux * vy - uy * vx;
    const double wx = p[2].longitude - p[0].longitude;
    const double wy = p[2].latitude - p[0].latitude;
    const double s = (wx * vy - wy * vx) / determinant;
    const double t = (wx * uy - wy * ux) / determinant;
    const double fromBorder = std::min({std::fabs(s), std::fabs(s - 1), std::fabs(t), std::fabs(t - 1)});
    if (fromBorder < 1e-9) continue;
    ASSERT_EQ(joined, 0 < s && s < 1 && 0 < t && t < 1) << "seed " << kSeed << ", run " << run;
    joinedCount += joined;
  }
  EXPECT_GT(joinedCount, 3000);
}

// ---- Against the plain twin -----------------------------------------------------------------------------------

void ExpectTwinAgrees(const Line& line, const Rect& rect) {
  SCOPED_TRACE(testing::Message() << "rectangle " << Paste(rect));
  Pieces pieces{{{1, 2}}};
  Pieces twin{{{1, 2}}};
  ASSERT_EQ(VorelGeometryAlgorithm::CutPolyline(line, rect, pieces),
            reference::CutPolyline(line, rect, twin));
  ASSERT_TRUE(SameBits(pieces, twin)) << Paste(line);
  for (std::size_t i = 3; i < line.size() && i < 60; i += 2) {
    ASSERT_EQ(VorelGeometryAlgorithm::IsTwoSegmentJoined(line[i - 3], line[i - 2], line[i - 1], line[i]),
              reference::IsTwoSegmentJoined(line[i - 3], line[i - 2], line[i - 1], line[i]))
        << Paste(line[i - 3]) << Paste(line[i - 2]) << Paste(line[i - 1]) << Paste(line[i]);
  }
}

// Inside, outside, diagonal, touching corners, thin, inverted, NaN and infinite borders, all about vertices of the line.
std::vector<Rect> ManyRectangles(std::mt19937& generator, const Line& line) {
  std::vector<Rect> rects{
      kTen,
      {{7, 47}, {8, 48}},
      {{7.5, 47.5}, {7.5, 47.5}},
      {{8, 48}, {7, 47}},
      {{-180, -90}, {180, 90}},
      {{-kInfinity, -kInfinity}, {kInfinity, kInfinity}},
      {{-kInfinity, 47.4}, {kInfinity, 47.6}},
      {{kNaN, 47}, {8, 48}},
      {{7, kNaN}, {8, 48}},
      {{7, 47}, {kNaN, 48}},
      {{7, 47}, {8, kNaN}},
      {{kNaN, kNaN}, {kNaN, kNaN}},
      {{-0.0, -0.0}, {0.0, 0.0}},
  };
  for (int i = 0; i < 4 && !line.empty(); ++i) {
    const GeoCoordinate& a = line[generator() % line.size()];
    const GeoCoordinate& b = line[generator() % line.size()];
    rects.push_back({a, b});  // corners on vertices, often inverted
    rects.push_back({{std::min(a.longitude, b.longitude), std::min(a.latitude, b.latitude)},
                     {std::max(a.longitude, b.longitude), std::max(a.latitude, b.latitude)}});
    rects.push_back({a, {a.longitude, b.latitude}});  // thin
    const GeoCoordinate middle((a.longitude + b.longitude) / 2, (a.latitude + b.latitude) / 2);
    rects.push_back({middle, {middle.longitude + 1e-4, middle.latitude + 1e-4}});  // a corner on a chord
    rects.push_back({{middle.longitude - 1e-4, middle.latitude - 1e-9}, middle});
    rects.push_back(SomeRectangle(generator, line, std::pow(10.0, Uniform(generator, -7, 1))));
  }
  return rects;
}

JOIN_AWKWARD_LINES(CutPolyline, [](const Line& line) {
  std::mt19937 generator(42006);
  for (const Rect& rect : ManyRectangles(generator, line)) ExpectTwinAgrees(line, rect);
})

TEST(ClippingTwin, AgreesOnRandomAndWildLines) {
  constexpr unsigned kSeed = 42007;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const int vertexCount = static_cast<int>(generator() % 40);
    const Line road = vorel::test::RandomLine(generator, vertexCount);
    for (const Rect& rect : ManyRectangles(generator, road)) ExpectTwinAgrees(road, rect);
    const Line wild = vorel::test::WildLine(generator, vertexCount);
    for (const Rect& rect : ManyRectangles(generator, wild)) ExpectTwinAgrees(wild, rect);
    // On a small grid everything touches everything.
    Line grid;
    for (int i = 0; i < vertexCount; ++i) {
      grid.push_back({static_cast<double>(generator() % 6), static_cast<double>(generator() % 6)});
    }
    for (const Rect& rect : ManyRectangles(generator, grid)) ExpectTwinAgrees(grid, rect);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ClippingTwin, AgreesOnRealLines) {
  std::vector<NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  const std::vector<NamedLine> polygons = vorel::test::RealLines("polygons");
  lines.insert(lines.end(), polygons.begin(), polygons.end());
  std::mt19937 generator(42008);
  for (const NamedLine& line : lines) {
    SCOPED_TRACE(line.name);
    for (const Rect& rect : ManyRectangles(generator, line.points)) ExpectTwinAgrees(line.points, rect);
    if (testing::Test::HasFatalFailure()) return;
  }
}

// ---- Memory and preconditions ---------------------------------------------------------------------------------

TEST(CutPolyline, AllocatesOnlyForPieces) {
  std::mt19937 generator(42009);
  const Line line = vorel::test::RandomLine(generator, 500);
  const Rect elsewhere{{200, 0}, {201, 1}};
  Pieces pieces;
  const vorel::test::AllocationCounter allocations;
  VorelGeometryAlgorithm::CutPolyline(line, elsewhere, pieces);
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_TRUE(pieces.empty());
}

TEST(CutPolyline, AnAllocationFailureLeavesThePiecesBefore) {
  const Line line{{5, 5}, {15, 5}, {5, 6}, {15, 6}, {5, 7}, {15, 7}};
  Pieces whole;
  VorelGeometryAlgorithm::CutPolyline(line, kTen, whole);
  bool failed = true;
  for (std::size_t allowed = 0; failed; ++allowed) {
    Pieces pieces;
    failed = false;
    {
      const vorel::test::AllocationLimit limit(allowed);
      try {
        VorelGeometryAlgorithm::CutPolyline(line, kTen, pieces);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    ASSERT_LE(pieces.size(), whole.size());
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) ASSERT_TRUE(SameBits(pieces[i], whole[i])) << i;
    if (!failed) {
      EXPECT_TRUE(SameBits(pieces, whole));
      EXPECT_GT(allowed, 5u);
    }
  }
}

TEST(IsTwoSegmentJoined, AnInfiniteEndGivesAnAnswerThatDependsOnTheOrder) {
  const GeoCoordinate start(-5, 1);
  const GeoCoordinate end(kInfinity, 1);
  EXPECT_TRUE(VorelGeometryAlgorithm::IsTwoSegmentJoined(start, end, {0, 0}, {2, 2}));
  EXPECT_FALSE(VorelGeometryAlgorithm::IsTwoSegmentJoined(end, start, {0, 0}, {2, 2}));
}

TEST(IsTwoSegmentJoined, TakesOnePointForSeveral) {
  const GeoCoordinate a(1, 2);
  const GeoCoordinate b(3, 5);
  EXPECT_TRUE(VorelGeometryAlgorithm::IsTwoSegmentJoined(a, a, a, a));
  EXPECT_TRUE(VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, a, b));
  EXPECT_TRUE(VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, b, a));
}

#if VOREL_CHECK_PRECONDITIONS
TEST(ClippingDeathTest, BrokenPreconditionsNameThemselves) {
  const Line line{{5, 5}, {6, 6}};
  Pieces pieces;
  EXPECT_DEATH(VorelGeometryAlgorithm::CutPolylineUpdate(true, true, 1, 2, line, kTen, pieces),
               "precondition broken: .*previousInside");
  EXPECT_DEATH(VorelGeometryAlgorithm::CutPolylineUpdate(true, false, 1, 2, line, kTen, pieces),
               "precondition broken: .*previousInside");
  EXPECT_DEATH(VorelGeometryAlgorithm::CutPolylineUpdate(false, true, 0, 2, line, kTen, pieces),
               "precondition broken: .*currentIndex");
  EXPECT_DEATH(VorelGeometryAlgorithm::CutPolylineUpdate(false, true, 2, 3, line, kTen, pieces),
               "precondition broken: .*currentIndex");
}
#else
TEST(ClippingDeathTest, BrokenPreconditionsNameThemselves) {
  GTEST_SKIP() << "skipped: preconditions are checked in builds with VOREL_CHECK_PRECONDITIONS=1 only";
}
#endif

}  // namespace
