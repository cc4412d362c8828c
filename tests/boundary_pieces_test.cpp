// Pieces of given length cut out of a lane boundary, with their marked vertices.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/boundary_pieces_reference.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace {

using tarvo::GeoCoordinateZ;
using tarvo::HAD::BoundaryData;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::LineZ;
using vorel::test::LocalMetres;
using vorel::test::NamedLineZ;
using vorel::test::OneOf;
using vorel::test::SameBits;
using vorel::test::Uniform;
using Marks = std::vector<std::uint32_t>;

constexpr int kIntMax = std::numeric_limits<int>::max();

/// The point at a clamped float ratio, spelt out; heights add in double.
GeoCoordinateZ At(const GeoCoordinateZ& a, const GeoCoordinateZ& b, float ratio) {
  const double r = ratio < 0.0f ? 0.0 : (ratio > 1.0f ? 1.0 : static_cast<double>(ratio));
  return {a.longitude + r * (b.longitude - a.longitude), a.latitude + r * (b.latitude - a.latitude),
          static_cast<float>(static_cast<double>(b.z - a.z) * r + static_cast<double>(a.z))};
}

// ---- Edges ------------------------------------------------------------------------------------------------------

// Six vertices 10 m apart going east, on the equator to be exact in metres to some nanometres.
const LocalMetres kEquator(8.4, 0.0);

LineZ EastLine(const std::vector<double>& metres) {
  LineZ line;
  float height = 1.0f;
  for (const double east : metres) {
    line.push_back(kEquator.At(east, 0, height));
    height += 0.7f;
  }
  return line;
}

const LineZ kSix = EastLine({0, 10, 20, 30, 40, 50});

struct PieceCase {
  const char* name;
  LineZ points;
  Marks marks;
  int cursor;
  int startIndex;
  double startRatio;
  double length;
  double result;
  std::vector<double> metres;  // of the piece's points, from the boundary's start
  Marks pieceMarks;
  int cursorOut;
};

class HandleBoundaryDataByDistanceEdges : public testing::TestWithParam<PieceCase> {};

TEST_P(HandleBoundaryDataByDistanceEdges, Hold) {
  const PieceCase& c = GetParam();
  const BoundaryData source{c.points, c.marks};
  BoundaryData piece;
  int cursor = c.cursor;
  const float result = VorelGeometryAlgorithm::HandleBoundaryDataByDistance(source, cursor, c.startIndex,
                                                                            c.startRatio, c.length, piece);
  EXPECT_NEAR(static_cast<double>(result), c.result, 1e-7);  // one float step below 1
  EXPECT_EQ(cursor, c.cursorOut);
  EXPECT_TRUE(SameBits(piece.pointIndices, c.pieceMarks));
  ASSERT_EQ(piece.points.size(), c.metres.size());
  for (std::size_t k = 0; k < c.metres.size(); ++k) {
    // Metres; half a float step of a ratio on 10 m is 3e-7, the worst here 1.5e-7.
    EXPECT_NEAR(kEquator.East(piece.points[k]), c.metres[k], 3e-7) << "point " << k;
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, HandleBoundaryDataByDistanceEdges,
    testing::Values(
        PieceCase{"WithinOneSegment", kSix, {}, -1, 1, 0.25, 5, 1, {12.5, 17.5}, {0}, -1},
        PieceCase{"AcrossVertices", kSix, {}, -1, 1, 0.25, 25, 1, {12.5, 20, 30, 37.5}, {0}, -1},
        PieceCase{"Whole", kSix, {}, -1, 0, 0, 100, 0.5, {0, 10, 20, 30, 40, 50}, {0}, -1},
        PieceCase{"FromTheMiddleToTheEnd", kSix, {}, -1, 3, 0.5, 30, 0.5, {35, 40, 50}, {0}, -1},
        PieceCase{"LastSegment", kSix, {}, -1, 4, 0, 5, 1, {40, 45}, {0}, -1},
        PieceCase{"LastSegmentFromItsEnd", kSix, {}, -1, 4, 1, 5, 0, {50, 50}, {0}, -1},
        PieceCase{"StartOnLastPoint", kSix, {}, -1, 5, 0, 5, 0, {}, {}, -1},
        PieceCase{"StartPastTheEnd", kSix, {2}, -1, 6, 0, 5, 0, {}, {}, -1},
        PieceCase{"LargestStart", kSix, {2}, -1, kIntMax, 0, 5, 0, {}, {}, -1},
        PieceCase{"Empty", {}, {}, -1, 0, 0, 5, 0, {}, {}, -1},
        PieceCase{"OnePoint", EastLine({0}), {0}, -1, 0, 0, 5, 0, {}, {}, -1},
        PieceCase{"RatioBelow0IsClamped", kSix, {}, -1, 1, -3, 5, 1, {10, 15}, {0}, -1},
        PieceCase{"RatioAbove1IsClamped", kSix, {}, -1, 1, 3, 5, 1, {20, 20, 25}, {0}, -1},
        PieceCase{"RatioBeyondFloatIsClamped", kSix, {}, -1, 1, 1e300, 5, 1, {20, 20, 25}, {0}, -1},
        PieceCase{"NegativeLengthEndsAtItsStart", kSix, {}, -1, 1, 0.25, -5, 1, {12.5, 12.5}, {0}, -1},
        PieceCase{"InfiniteLength", kSix, {}, -1, 3, 0, kInfinity, 0, {30, 40, 50}, {0}, -1},
        PieceCase{"RepeatedVertices",
                  EastLine({0, 10, 10, 10, 20}),
                  {2},
                  -1,
                  0,
                  0,
                  15,
                  1,
                  {0, 10, 10, 10, 15},
                  {0, 2},
                  0},
        PieceCase{"StartsOnARepeatedVertex",
                  EastLine({0, 10, 10, 20}),
                  {},
                  -1,
                  1,
                  0.5,
                  5,
                  1,
                  {10, 10, 15},
                  {0},
                  -1},
        PieceCase{"MarkAtTheStartSegmentsFirstPointIsNotCopied",
                  kSix,
                  {1, 3},
                  -1,
                  1,
                  0,
                  25,
                  1,
                  {10, 20, 30, 35},
                  {0, 2},
                  1},
        PieceCase{"MarkOneFurtherIsIndexOne", kSix, {2}, -1, 1, 0, 15, 1, {10, 20, 25}, {0, 1}, 0},
        PieceCase{
            "MarkWhereTheLengthRunsOutIsNotCopied", kSix, {2, 3}, -1, 1, 0, 15, 1, {10, 20, 25}, {0, 1}, 0},
        PieceCase{"AllMarks",
                  kSix,
                  {0, 1, 2, 3, 4, 5},
                  -1,
                  1,
                  0.5,
                  99,
                  35.0 / 99,
                  {15, 20, 30, 40, 50},
                  {0, 1, 2, 3, 4},
                  2},
        PieceCase{"RepeatedMarks",
                  kSix,
                  {2, 2, 3, 3},
                  -1,
                  1,
                  0.5,
                  99,
                  35.0 / 99,
                  {15, 20, 30, 40, 50},
                  {0, 1, 1, 2, 2},
                  0},
        PieceCase{"CursorSkipsMarksHandled",
                  kSix,
                  {2, 3, 4},
                  0,
                  1,
                  0,
                  99,
                  40.0 / 99,
                  {10, 20, 30, 40, 50},
                  {0, 2, 3},
                  1},
        PieceCase{"CursorAtTheLastMark", kSix, {2, 3}, 1, 1, 0, 99, 40.0 / 99, {10, 20, 30, 40, 50}, {0}, 1},
        PieceCase{"CursorPastTheMarks", kSix, {2, 3}, 9, 1, 0, 99, 40.0 / 99, {10, 20, 30, 40, 50}, {0}, 9},
        PieceCase{
            "LargestCursor", kSix, {2, 3}, kIntMax, 1, 0, 99, 40.0 / 99, {10, 20, 30, 40, 50}, {0}, kIntMax},
        PieceCase{"CursorUnchangedWhenNoneWasCopied", kSix, {0, 1, 5}, 0, 1, 0, 15, 1, {10, 20, 25}, {0}, 0},
        PieceCase{"CursorIsTheFirstCopiedNotTheLast",
                  kSix,
                  {1, 2, 3, 4},
                  -1,
                  1,
                  0,
                  99,
                  40.0 / 99,
                  {10, 20, 30, 40, 50},
                  {0, 1, 2, 3},
                  1},
        PieceCase{"MarkBeyondTheEndStopsTheScan",
                  kSix,
                  {2, 77, 3},
                  -1,
                  1,
                  0,
                  99,
                  40.0 / 99,
                  {10, 20, 30, 40, 50},
                  {0, 1},
                  0},
        PieceCase{"LargestMarkIsBeyond",
                  kSix,
                  {2, 0xffffffffu},
                  -1,
                  1,
                  0,
                  99,
                  40.0 / 99,
                  {10, 20, 30, 40, 50},
                  {0, 1},
                  0},
        PieceCase{"NoMarksWithinOneSegment", kSix, {1, 2}, -1, 1, 0.25, 5, 1, {12.5, 17.5}, {0}, -1}),
    vorel::test::CaseName<PieceCase>);

TEST(HandleBoundaryDataByDistance, HasTheExpressionsExactBits) {
  const LocalMetres place(8.4, 49.0);
  const LineZ line = {place.At(0, 0, 1.1f), place.At(7.7, 3.1, 2.3f), place.At(19.9, 2.2, 2.9f),
                      place.At(31, 9, 4.7f)};
  BoundaryData piece;
  int cursor = -1;
  EXPECT_TRUE(SameBits(
      VorelGeometryAlgorithm::HandleBoundaryDataByDistance({line, {}}, cursor, 0, 0.3, 19.0, piece), 1.0f));
  const GeoCoordinateZ start = At(line[0], line[1], 0.3f);
  const double covered = 0.0 + start.DistanceTo(line[1]);
  const double second = covered + line[1].DistanceTo(line[2]);
  const double step = line[2].DistanceTo(line[3]);
  const GeoCoordinateZ cut = At(line[2], line[3], static_cast<float>((19.0 - second) / step));
  EXPECT_TRUE(SameBits(piece.points, LineZ{start, line[1], line[2], cut}));

  BoundaryData rest;
  const float result =
      VorelGeometryAlgorithm::HandleBoundaryDataByDistance({line, {}}, cursor, 0, 0.3, 99.0, rest);
  EXPECT_TRUE(SameBits(result, static_cast<float>((second + step) / 99.0)));
}

TEST(HandleBoundaryDataByDistance, EndsExactlyAtAVertexWithACutPoint) {
  const LineZ line = EastLine({0, 10, 20});
  const double length = line[0].DistanceTo(line[1]);
  BoundaryData piece;
  int cursor = -1;
  EXPECT_EQ(VorelGeometryAlgorithm::HandleBoundaryDataByDistance({line, {1}}, cursor, 0, 0.0, length, piece),
            1.0f);
  // The length is reached, not exceeded: the vertex counts as cut, and its mark stays behind.
  EXPECT_TRUE(SameBits(piece.points, LineZ{line[0], At(line[0], line[1], 1.0f)}));
  EXPECT_TRUE(SameBits(piece.pointIndices, Marks{0}));
  BoundaryData longer;
  EXPECT_EQ(VorelGeometryAlgorithm::HandleBoundaryDataByDistance({line, {1}}, cursor, 0, 0.0,
                                                                 std::nextafter(length, 99.0), longer),
            1.0f);
  EXPECT_EQ(longer.points.size(), 3u);
  EXPECT_TRUE(SameBits(longer.pointIndices, Marks{0, 1}));
}

TEST(HandleBoundaryDataByDistance, DeliberateZeroLengthGivesNaN) {
  BoundaryData piece;
  int cursor = -1;
  EXPECT_TRUE(std::isnan(
      VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {}}, cursor, 1, 0.25, 0.0, piece)));
  ASSERT_EQ(piece.points.size(), 2u);
  EXPECT_TRUE(SameBits(piece.points[1], piece.points[0]));
  BoundaryData onRepeat;
  EXPECT_TRUE(std::isnan(VorelGeometryAlgorithm::HandleBoundaryDataByDistance(
      {EastLine({0, 10, 10, 20}), {}}, cursor, 1, 0.0, 0.0, onRepeat)));
  ASSERT_EQ(onRepeat.points.size(), 2u);
  EXPECT_TRUE(SameBits(onRepeat.points[1], GeoCoordinateZ(kNaN, kNaN, kNaNFloat)));
}

TEST(HandleBoundaryDataByDistance, NaNLengthCutsAtOnce) {
  BoundaryData piece;
  int cursor = -1;
  EXPECT_TRUE(std::isnan(
      VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2}}, cursor, 1, 0.25, kNaN, piece)));
  ASSERT_EQ(piece.points.size(), 2u);
  EXPECT_TRUE(SameBits(piece.points[1], GeoCoordinateZ(kNaN, kNaN, kNaNFloat)));
  EXPECT_TRUE(SameBits(piece.pointIndices, Marks{0}));
}

TEST(HandleBoundaryDataByDistance, NaNRatioGivesANaNStart) {
  BoundaryData piece;
  int cursor = -1;
  EXPECT_EQ(VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2}}, cursor, 1, kNaN, 5.0, piece),
            1.0f);
  ASSERT_EQ(piece.points.size(), 2u);
  EXPECT_TRUE(SameBits(piece.points[0], GeoCoordinateZ(kNaN, kNaN, kNaNFloat)));
}

TEST(HandleBoundaryDataByDistance, DeliberatelyAppendsMarksWithoutShiftingThem) {
  BoundaryData piece{{{1.0, 2.0, 3.0f}, {4.0, 5.0, 6.0f}}, {0, 1}};
  int cursor = -1;
  VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2, 3}}, cursor, 1, 0.5, 17.0, piece);
  ASSERT_EQ(piece.points.size(), 2u + 4u);
  EXPECT_TRUE(SameBits(piece.points[0], GeoCoordinateZ(1.0, 2.0, 3.0f)));
  EXPECT_TRUE(SameBits(piece.pointIndices, Marks{0, 1, 0, 1, 2}));
}

TEST(HandleBoundaryDataByDistance, WritesNothingWithoutASegment) {
  BoundaryData piece{{{1.0, 2.0, 3.0f}}, {7}};
  int cursor = 3;
  EXPECT_TRUE(SameBits(
      VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2, 3}}, cursor, 5, 0.5, 17.0, piece),
      0.0f));
  EXPECT_EQ(piece.points.size(), 1u);
  EXPECT_EQ(piece.pointIndices.size(), 1u);
  EXPECT_EQ(cursor, 3);
}

#if !VOREL_CHECK_PRECONDITIONS
TEST(HandleBoundaryDataByDistance, BrokenPreconditionsHarmNothing) {
  BoundaryData piece;
  int cursor = -1;
  EXPECT_EQ(VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2}}, cursor, -1, 0.5, 17.0, piece),
            0.0f);
  EXPECT_EQ(VorelGeometryAlgorithm::HandleBoundaryDataByDistance(
                {kSix, {2}}, cursor, std::numeric_limits<int>::min(), 0.5, 17.0, piece),
            0.0f);
  EXPECT_TRUE(piece.points.empty());
  for (const int belowMinusOne : {-2, std::numeric_limits<int>::min()}) {
    cursor = belowMinusOne;
    BoundaryData unmarked;
    EXPECT_EQ(
        VorelGeometryAlgorithm::HandleBoundaryDataByDistance({kSix, {2}}, cursor, 0, 0.5, 17.0, unmarked),
        1.0f);
    EXPECT_TRUE(SameBits(unmarked.pointIndices, Marks{0}));
    EXPECT_EQ(cursor, belowMinusOne);
  }
}
#endif

// ---- Properties -------------------------------------------------------------------------------------------------

double Length(const LineZ& line) {
  double metres = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) metres += line[i - 1].DistanceTo(line[i]);
  return metres;
}

// Cuts `source` into pieces of `length` one after another, as the function's comment tells, and checks that they follow it.
void CutAll(const BoundaryData& source, double length, double gapSlack, double lengthSlack) {
  int cursor = -1;
  int startIndex = 0;
  double startRatio = 0.0;
  std::uint32_t nextVertex = 1;  // that no piece has passed yet
  Marks found;
  GeoCoordinateZ previousEnd = source.points[0];
  const int pieceLimit = static_cast<int>(Length(source.points) / length) + 3;
  for (int count = 0; count < pieceLimit; ++count) {
    BoundaryData piece;
    const float covered = VorelGeometryAlgorithm::HandleBoundaryDataByDistance(source, cursor, startIndex,
                                                                               startRatio, length, piece);
    const std::size_t k = piece.points.size();
    ASSERT_GE(k, 2u);
    ASSERT_GE(piece.pointIndices.size(), 1u);
    EXPECT_EQ(piece.pointIndices[0], 0u);
    EXPECT_LE(piece.points[0].DistanceTo(previousEnd), gapSlack);
    EXPECT_NEAR(Length(piece.points), static_cast<double>(covered) * length, lengthSlack);
    for (std::size_t i = 1; i < piece.pointIndices.size(); ++i) {
      found.push_back(piece.pointIndices[i] + static_cast<std::uint32_t>(startIndex));
    }
    const bool isCut = covered == 1.0f;
    // Every vertex between comes once, in order.
    for (std::size_t i = 1; i + (isCut ? 1 : 0) < k; ++i) {
      const std::uint32_t vertex = static_cast<std::uint32_t>(startIndex) + static_cast<std::uint32_t>(i);
      EXPECT_EQ(vertex, nextVertex);
      nextVertex = vertex + 1;
      EXPECT_TRUE(SameBits(piece.points[i], source.points[vertex]));
    }
    previousEnd = piece.points.back();
    if (!isCut) {
      EXPECT_EQ(nextVertex, source.points.size());
      // Each mark comes once, in the piece that passes its vertex; one on the very first point in none.
      Marks expected = source.pointIndices;
      while (!expected.empty() && expected.front() == 0) expected.erase(expected.begin());
      EXPECT_TRUE(SameBits(found, expected));
      return;
    }
    startIndex += static_cast<int>(k) - 2;
    const std::size_t i = static_cast<std::size_t>(startIndex);
    startRatio = source.points[i].DistanceTo(previousEnd) / source.points[i].DistanceTo(source.points[i + 1]);
  }
  ADD_FAILURE() << "the pieces do not come to an end";
}

Marks RandomMarks(std::mt19937& generator, std::size_t pointCount) {
  Marks marks;
  for (std::size_t i = 0; i < pointCount; ++i) {
    if (generator() % 3 == 0) marks.push_back(static_cast<std::uint32_t>(i));
  }
  return marks;
}

// Metres, between the end of a piece and the start of the next, and between the length of a piece and what was asked for.
// A ratio of distances is laid off in degrees, which are not evenly long along a segment: the more uneven, the longer the
// segment and the nearer the pole. Random lines have segments of up to 60 m at up to 80 degrees: the worst of 1e5 lines was
// 1.49e-4 and 1.48e-4. The real ones, of up to 217 m at up to 53 degrees: 3.02e-4 and 1.58e-4.
constexpr double kRandomSlack = 1.7e-4;
constexpr double kRealGapSlack = 3.5e-4;
constexpr double kRealLengthSlack = 1.8e-4;

TEST(HandleBoundaryDataByDistance, PiecesOneAfterAnotherFollowTheBoundary) {
  constexpr unsigned kSeed = 55001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 4000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    BoundaryData source;
    source.points = vorel::test::RandomLineZ(generator, 2 + static_cast<int>(generator() % 40));
    source.pointIndices = RandomMarks(generator, source.points.size());
    CutAll(source, OneOf<double>(generator, {3.0, 17.5, 60.0, 250.0}), kRandomSlack, kRandomSlack);
  }
}

TEST(HandleBoundaryDataByDistance, PiecesOfRealBoundariesFollowThem) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(55002);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    BoundaryData source{lane.points, RandomMarks(generator, lane.points.size())};
    CutAll(source, OneOf<double>(generator, {1.5, 12.0, 40.0}), kRealGapSlack, kRealLengthSlack);
  }
}

// ---- Against the twin -------------------------------------------------------------------------------------------

/// Also all vertices, and lists out of order: those break the contract, but a scan vertex by vertex has an answer.
Marks AnyMarks(std::mt19937& generator, std::size_t pointCount) {
  Marks marks = RandomMarks(generator, pointCount);
  switch (generator() % 4) {
    case 0: {
      marks.resize(pointCount);
      std::iota(marks.begin(), marks.end(), 0u);
      break;
    }
    case 1: {
      std::shuffle(marks.begin(), marks.end(), generator);
      break;
    }
    case 2: {
      if (marks.empty()) break;
      marks[generator() % marks.size()] = OneOf<std::uint32_t>(generator, {0u, 0xffffffffu, 0x80000000u});
      break;
    }
    default: {
      break;
    }
  }
  return marks;
}

void ComparePieces(std::mt19937& generator, const LineZ& line, int runs) {
  for (int run = 0; run < runs; ++run) {
    BoundaryData source{line, AnyMarks(generator, line.size() + 3)};
    const int size = static_cast<int>(line.size());
    const int startIndex =
        OneOf<int>(generator, {0, 0, size / 2, size / 3, size < 2 ? 0 : size - 2, size, kIntMax,
                               static_cast<int>(generator() % (line.size() + 1))});
    const double ratio =
        OneOf<double>(generator, {0.0, -0.0, 1.0, 0.5, Uniform(generator, 0, 1), -1.0, 2.0, kNaN});
    const double length = OneOf<double>(
        generator, {0.0, 1.0, 30.0, std::pow(10.0, Uniform(generator, -6, 7)), kInfinity, kNaN, -5.0});
    const int cursor = OneOf<int>(generator, {-1, -1, 0, 2, size, kIntMax});
    SCOPED_TRACE("start " + std::to_string(startIndex) + " ratio " + vorel::test::Paste(ratio) + ", length " +
                 vorel::test::Paste(length) + ", cursor " + std::to_string(cursor));
    BoundaryData piece{{{1.0, 2.0, 3.0f}}, {9}}, expected = piece;
    int actualCursor = cursor, expectedCursor = cursor;
    const float result = VorelGeometryAlgorithm::HandleBoundaryDataByDistance(
        source, actualCursor, startIndex, ratio, length, piece);
    EXPECT_TRUE(SameBits(result, reference::HandleBoundaryDataByDistance(source, expectedCursor, startIndex,
                                                                         ratio, length, expected)));
    EXPECT_EQ(actualCursor, expectedCursor);
    EXPECT_TRUE(SameBits(piece.points, expected.points));
    EXPECT_TRUE(SameBits(piece.pointIndices, expected.pointIndices));
  }
}

TEST(BoundaryPiecesDifferential, RandomLines) {
  std::mt19937 generator(55003);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 55003, run " << run);
    ComparePieces(generator, vorel::test::RandomLineZ(generator, 1 + static_cast<int>(generator() % 60)), 10);
  }
}

TEST(BoundaryPiecesDifferential, WildLines) {
  std::mt19937 generator(55004);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 55004, run " << run);
    ComparePieces(generator, vorel::test::WildLineZ(generator, 1 + static_cast<int>(generator() % 30)), 10);
  }
}

/// Vertices are copied in runs of some hundred: boundaries of several runs.
TEST(BoundaryPiecesDifferential, LongLines) {
  std::mt19937 generator(55006);
  for (const int pointCount : {512, 513, 514, 515, 1026, 1027, 1500}) {
    SCOPED_TRACE(testing::Message() << "seed 55006, " << pointCount << " points");
    ComparePieces(generator, vorel::test::RandomLineZ(generator, pointCount), 40);
  }
}

TEST(HandleBoundaryDataByDistance, AllocatesNothingWhenThePieceHasTheRoom) {
  std::mt19937 generator(55007);
  BoundaryData source;
  source.points = vorel::test::RandomLineZ(generator, 1200);
  source.pointIndices.resize(source.points.size());
  std::iota(source.pointIndices.begin(), source.pointIndices.end(), 0u);
  BoundaryData piece = source;
  const double whole = Length(source.points);
  const vorel::test::AllocationCounter allocations;
  for (const double part : {0.0001, 0.5, 0.9999, 2.0}) {
    piece.points.clear();
    piece.pointIndices.clear();
    int cursor = -1;
    VorelGeometryAlgorithm::HandleBoundaryDataByDistance(source, cursor, 0, 0.25, part * whole, piece);
  }
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(piece.points.size(), source.points.size());
}

TEST(BoundaryPiecesDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(55005);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    ComparePieces(generator, lane.points, 6);
  }
}

JOIN_AWKWARD_LINES_Z(BoundaryPieces, [](const LineZ& line) {
  std::mt19937 generator(55006);
  ComparePieces(generator, line, 300);
});

}  // namespace
