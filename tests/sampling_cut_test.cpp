// The head of a line, and what is left of it behind a cut.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/sampling_reference.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::LineZ;
using vorel::test::RandomLineZ;
using vorel::test::SameBits;
using vorel::test::Uniform;
using vorel::test::WildLineZ;
using vorel::test::WithoutHeight;
using Algorithm = vorel::VorelGeometryAlgorithm;

const GeoCoordinate kNaNPoint(kNaN, kNaN);
const GeoCoordinate kHeld(1.0, 2.0);  // what the caller already had in the output

/// Four vertices; heights that are no multiples of anything.
const LineZ& FourVerticesZ() {
  static const LineZ line{
      {7.5, 47.5, 400.1f}, {7.5013, 47.5, 410.3f}, {7.5013, 47.5037, 390.7f}, {7.504, 47.505, 500.9f}};
  return line;
}
const Line& FourVertices() {
  static const Line line = WithoutHeight(FourVerticesZ());
  return line;
}

/// Length of segment `i`, from vertex i - 1 to vertex i.
double Segment(const Line& line, std::size_t i) {
  return line[i].DistanceTo(line[i - 1]);
}

/// From vertex 0 to vertex `last`, added in order.
double Reach(const Line& line, std::size_t last) {
  double sum = 0.0;
  for (std::size_t i = 1; i <= last; ++i) sum += Segment(line, i);
  return sum;
}

double Next(double value) {
  return std::nextafter(value, kInfinity);
}
double Previous(double value) {
  return std::nextafter(value, -kInfinity);
}

bool Tail(const Line& line, double distance, Line& out) {
  return Algorithm::ChoosePointsInPolyline(line.data(), static_cast<unsigned>(line.size()), distance, out);
}

template <class Point, class = void>
struct TakesPoints : std::false_type {};
template <class Point>
struct TakesPoints<Point, std::void_t<decltype(Algorithm::ChoosePointsInPolyline(
                              std::declval<const Point*>(), 2u, 1.0, std::declval<Line&>()))>>
    : std::true_type {};
static_assert(TakesPoints<GeoCoordinate>::value, "");
static_assert(!TakesPoints<GeoCoordinateZ>::value, "points with height have another stride");

// ---- The line behind a cut: edges -----------------------------------------------------------------------------------

struct TailCase {
  const char* name;
  Line line;
  double distance;
  bool ok;
  Line expected;
};

class TailEdges : public testing::TestWithParam<TailCase> {};

TEST_P(TailEdges, Hold) {
  Line out{kHeld};
  EXPECT_EQ(Tail(GetParam().line, GetParam().distance, out), GetParam().ok);
  EXPECT_TRUE(SameBits(out, GetParam().expected));
}

Line From(std::size_t first) {
  return Line(FourVertices().begin() + static_cast<std::ptrdiff_t>(first), FourVertices().end());
}

/// `front`, then the four vertices from `first` on.
Line Joined(const GeoCoordinate& front, std::size_t first) {
  Line line{front};
  for (const GeoCoordinate& point : From(first)) line.push_back(point);
  return line;
}

/// The cut on segment `i` (from vertex i - 1) of the four vertices at `distance` from vertex 0.
GeoCoordinate CutPoint(std::size_t i, double distance) {
  const double ratio = (distance - Reach(FourVertices(), i - 1)) / Segment(FourVertices(), i);
  return Algorithm::GetInsertPointFromSegment(FourVertices()[i - 1], FourVertices()[i],
                                              static_cast<float>(ratio));
}

const Line kRepeatedFirst{{7.5, 47.5}, {7.5, 47.5}, {7.501, 47.501}};
const Line kTwoEqual{{7.5, 47.5}, {7.5, 47.5}};

INSTANTIATE_TEST_SUITE_P(
    All, TailEdges,
    testing::Values(
        TailCase{"EmptyLine", {}, 10.0, false, {}}, TailCase{"OneVertex", {{7.5, 47.5}}, 0.0, false, {}},
        TailCase{"Negative", FourVertices(), -1e-300, false, {}},
        TailCase{"NegativeInfinite", FourVertices(), -kInfinity, false, {}},
        TailCase{"ZeroCopiesTheLine", FourVertices(), 0.0, true, FourVertices()},
        TailCase{"NegativeZeroCopiesTheLine", FourVertices(), -0.0, true, FourVertices()},
        TailCase{
            "ZeroDropsTheFirstOfTwoEqual", kRepeatedFirst, 0.0, true, {kRepeatedFirst[1], kRepeatedFirst[2]}},
        TailCase{"ZeroOnTwoEqual", kTwoEqual, 0.0, true, {kTwoEqual[1]}},
        TailCase{"PositiveOnTwoEqual", kTwoEqual, 1e-300, false, {}},
        TailCase{"CutInFirstSegment", FourVertices(), 30.0, true, Joined(CutPoint(1, 30.0), 1)},
        TailCase{"CutInSecondSegment", FourVertices(), 150.0, true, Joined(CutPoint(2, 150.0), 2)},
        TailCase{"CutInLastSegment", FourVertices(), 600.0, true, Joined(CutPoint(3, 600.0), 3)},
        TailCase{"AtVertex", FourVertices(), Reach(FourVertices(), 1), true, From(1)},
        TailCase{"JustBeforeVertex", FourVertices(), Previous(Reach(FourVertices(), 1)), true,
                 Joined(CutPoint(1, Previous(Reach(FourVertices(), 1))), 1)},
        TailCase{"JustBehindVertex", FourVertices(), Next(Reach(FourVertices(), 1)), true,
                 Joined(CutPoint(2, Next(Reach(FourVertices(), 1))), 2)},
        TailCase{"AtSecondVertex", FourVertices(), Reach(FourVertices(), 2), true, From(2)},
        TailCase{"AtLastVertex", FourVertices(), Reach(FourVertices(), 3), true, From(3)},
        TailCase{"JustBeyondTheLine", FourVertices(), Next(Reach(FourVertices(), 3)), false, {}},
        TailCase{"FarBeyondTheLine", FourVertices(), 1e300, false, {}},
        TailCase{"Infinite", FourVertices(), kInfinity, false, {}},
        TailCase{"NaNDistance", FourVertices(), kNaN, true, Joined(kNaNPoint, 1)},
        TailCase{"NaNSegmentEndsTheWalk",
                 {{7.5, 47.5}, {7.501, kNaN}, {7.502, 47.5}, {7.503, 47.5}},
                 1.0,
                 true,
                 {{kNaN, kNaN}, {7.501, kNaN}, {7.502, 47.5}, {7.503, 47.5}}},
        TailCase{"NaNBehindTheCutDoesNotMatter",
                 {{7.5, 47.5}, {7.6, 47.5}, {kNaN, kNaN}},
                 0.0,
                 true,
                 {{7.5, 47.5}, {7.6, 47.5}, {kNaN, kNaN}}}),
    [](const auto& test) { return test.param.name; });

TEST(TailOfALine, ClearsTheOutputBeforeAnythingElse) {
  Line out{kHeld};
  EXPECT_FALSE(Algorithm::ChoosePointsInPolyline(nullptr, 4, 1.0, out));
  EXPECT_TRUE(out.empty());
  out = {kHeld};
  EXPECT_FALSE(Algorithm::ChoosePointsInPolyline(nullptr, 0, -1.0, out));
  EXPECT_TRUE(out.empty());
  out = {kHeld};
  EXPECT_FALSE(Algorithm::ChoosePointsInPolyline(FourVertices().data(), 0, 1.0, out));
  EXPECT_TRUE(out.empty());
}

TEST(TailOfALine, LooksAtNoMoreThanCount) {
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolyline(FourVertices().data(), 2, 0.0, out));
  EXPECT_TRUE(SameBits(out, Line{FourVertices()[0], FourVertices()[1]}));
  EXPECT_FALSE(Algorithm::ChoosePointsInPolyline(FourVertices().data(), 1, 0.0, out));
  EXPECT_FALSE(
      Algorithm::ChoosePointsInPolyline(FourVertices().data(), 2, Next(Reach(FourVertices(), 1)), out));
}

// ---- The head of a line: edges --------------------------------------------------------------------------------------

struct HeadCase {
  const char* name;
  Line line;
  double maxLength;
  bool ok;
  Line expected;
};

class HeadEdges : public testing::TestWithParam<HeadCase> {};

TEST_P(HeadEdges, HoldForBothKindsOfPoint) {
  const HeadCase& c = GetParam();
  Line out{kHeld};
  EXPECT_EQ(Algorithm::ChoosePointsInPolylineWithMaxLength(c.line, c.maxLength, out), c.ok);
  Line expected{kHeld};
  expected.insert(expected.end(), c.expected.begin(), c.expected.end());
  EXPECT_TRUE(SameBits(out, expected));

  LineZ lineZ;
  for (const GeoCoordinate& point : c.line) lineZ.emplace_back(point.longitude, point.latitude, 3.0f);
  LineZ outZ{{kHeld.longitude, kHeld.latitude, 9.0f}};
  EXPECT_EQ(Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ, c.maxLength, outZ), c.ok);
  EXPECT_TRUE(SameBits(WithoutHeight(outZ), expected));
}

Line Until(std::size_t last) {
  return Line(FourVertices().begin(), FourVertices().begin() + static_cast<std::ptrdiff_t>(last) + 1);
}

/// The four vertices up to `last`, then `back`.
Line Joined(std::size_t last, const GeoCoordinate& back) {
  Line line = Until(last);
  line.push_back(back);
  return line;
}

INSTANTIATE_TEST_SUITE_P(
    All, HeadEdges,
    testing::Values(
        HeadCase{"EmptyLine", {}, 10.0, false, {}},
        HeadCase{"OneVertex", {{7.5, 47.5}}, 10.0, true, {{7.5, 47.5}}},
        HeadCase{"OneVertexZero", {{7.5, 47.5}}, 0.0, false, {}},
        HeadCase{"Zero", FourVertices(), 0.0, false, {}},
        HeadCase{"NegativeZero", FourVertices(), -0.0, false, {}},
        HeadCase{"Negative", FourVertices(), -5.0, false, {}},
        HeadCase{"NegativeInfinite", FourVertices(), -kInfinity, false, {}},
        HeadCase{"SmallestPositive", FourVertices(), 5e-324, true, Joined(0, FourVertices()[0])},
        HeadCase{"CutInFirstSegment", FourVertices(), 30.0, true, Joined(0, CutPoint(1, 30.0))},
        HeadCase{"CutInSecondSegment", FourVertices(), 150.0, true, Joined(1, CutPoint(2, 150.0))},
        HeadCase{"CutInLastSegment", FourVertices(), 600.0, true, Joined(2, CutPoint(3, 600.0))},
        HeadCase{"VertexAtTheEndComesTwice", FourVertices(), Reach(FourVertices(), 1), true,
                 Joined(1, FourVertices()[1])},
        HeadCase{"JustBeforeVertex", FourVertices(), Previous(Reach(FourVertices(), 1)), true,
                 Joined(0, CutPoint(1, Previous(Reach(FourVertices(), 1))))},
        HeadCase{"RepeatedVertexAtTheEndComesWithItsRepeats",
                 {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.5}, {7.502, 47.5}},
                 GeoCoordinate(7.501, 47.5).DistanceTo({7.5, 47.5}),
                 true,
                 {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.5}, {7.501, 47.5}}},
        HeadCase{"ShortestSegmentBehindTheEndRepeatsTheVertex",
                 {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.50000001}},
                 GeoCoordinate(7.501, 47.5).DistanceTo({7.5, 47.5}),
                 true,
                 {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.5}}},
        HeadCase{"LineExactlyThatLong", FourVertices(), Reach(FourVertices(), 3), true, FourVertices()},
        HeadCase{"LineShorter", FourVertices(), 1e300, true, FourVertices()},
        HeadCase{"Infinite", FourVertices(), kInfinity, true, FourVertices()},
        HeadCase{"NaNLength", FourVertices(), kNaN, true, Joined(0, kNaNPoint)},
        HeadCase{"NaNSegmentEndsTheWalk",
                 {{7.5, 47.5}, {7.501, 47.5}, {7.502, kNaN}, {7.503, 47.5}},
                 1e6,
                 true,
                 {{7.5, 47.5}, {7.501, 47.5}, {kNaN, kNaN}}},
        HeadCase{"TwoEqual", kTwoEqual, 1.0, true, kTwoEqual}),
    [](const auto& test) { return test.param.name; });

TEST(HeadOfALineWithHeights, CopiesAndInterpolatesThem) {
  const LineZ& line = FourVerticesZ();
  LineZ out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithMaxLength(line, 150.0, out));
  const double ratio = (150.0 - Reach(FourVertices(), 1)) / Segment(FourVertices(), 2);
  const GeoCoordinateZ end =
      Algorithm::GetInsertPointFromSegment(line[1], line[2], static_cast<float>(ratio));
  EXPECT_TRUE(SameBits(out, LineZ{line[0], line[1], end}));
  EXPECT_LT(out[2].z, 410.3f);
  EXPECT_GT(out[2].z, 390.7f);
}

TEST(HeadOfALineWithHeights, DoesNotMeasureThem) {
  LineZ climbing = FourVerticesZ();
  for (std::size_t i = 0; i < climbing.size(); ++i) climbing[i].z = 1e4f * static_cast<float>(i);
  LineZ out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithMaxLength(climbing, Reach(FourVertices(), 3), out));
  EXPECT_TRUE(SameBits(out, climbing));
}

// ---- Exact bits -----------------------------------------------------------------------------------------------------

TEST(CutPoints, HaveARatioNarrowedToFloat) {
  // A long segment makes the narrowing visible: some 6e-8 of 8 km.
  const Line line{{7.5, 47.5}, {7.6, 47.53}};
  const double ratio = 1234.5 / Segment(line, 1);
  const auto at = [&line](double r) {
    return GeoCoordinate(line[0].longitude + r * (line[1].longitude - line[0].longitude),
                         line[0].latitude + r * (line[1].latitude - line[0].latitude));
  };
  const GeoCoordinate expected = at(static_cast<double>(static_cast<float>(ratio)));
  ASSERT_NE(expected, at(ratio));
  Line out;
  ASSERT_TRUE(Tail(line, 1234.5, out));
  EXPECT_TRUE(SameBits(out, Line{expected, line[1]}));
  out.clear();
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithMaxLength(line, 1234.5, out));
  EXPECT_TRUE(SameBits(out, Line{line[0], expected}));
}

// ---- Properties -----------------------------------------------------------------------------------------------------

/// Head and tail of a cut strictly within the line join to the line again, with the cut point between them.
void ExpectHeadAndTailRejoin(const Line& line, double cut) {
  Line head;
  Line tail;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithMaxLength(line, cut, head));
  ASSERT_TRUE(Tail(line, cut, tail));
  // Exact: both cut with the same ratio. A cut on a vertex is the start of the next segment in the head.
  ASSERT_EQ(head.back(), tail.front());
  const bool isVertex = std::find(line.begin(), line.end(), tail.front()) != line.end();
  Line joined(head.begin(), head.end() - 1);
  joined.insert(joined.end(), tail.begin() + 1, tail.end());
  if (isVertex) return;  // may stand in one, both or neither; the table above has those cases
  ASSERT_TRUE(SameBits(joined, line));
}

TEST(HeadAndTail, RejoinTheLine) {
  constexpr unsigned kSeed = 32001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = WithoutHeight(RandomLineZ(generator, 5 + run % 80));
    ExpectHeadAndTailRejoin(line, Uniform(generator, 0.001, 0.999) * Reach(line, line.size() - 1));
  }
}

TEST(HeadAndTail, RejoinRealRoutes) {
  constexpr unsigned kSeed = 32002;
  std::mt19937 generator(kSeed);
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", " << line.name);
    for (int trial = 0; trial < 20; ++trial) {
      ExpectHeadAndTailRejoin(line.points,
                              Uniform(generator, 0.001, 0.999) * Reach(line.points, line.points.size() - 1));
    }
  }
}

TEST(HeadAndTail, MeasureWhatWasAskedFor) {
  constexpr unsigned kSeed = 32003;
  // Metres, segments of up to 60 m; worst of 2e5 runs was 1.5e-4, at latitude 79.7: a straight line in degrees is no arc.
  constexpr double kSlack = 3e-4;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = WithoutHeight(RandomLineZ(generator, 5 + run % 80));
    const double length = Reach(line, line.size() - 1);
    const double cut = Uniform(generator, 0.001, 0.999) * length;
    Line head;
    Line tail;
    ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithMaxLength(line, cut, head));
    ASSERT_TRUE(Tail(line, cut, tail));
    EXPECT_NEAR(Reach(head, head.size() - 1), cut, kSlack);
    EXPECT_NEAR(Reach(tail, tail.size() - 1), length - cut, kSlack);
  }
}

// ---- Against the plain twins ----------------------------------------------------------------------------------------

void ExpectMatchesTwins(const LineZ& lineZ) {
  const Line line = WithoutHeight(lineZ);
  std::vector<double> lengths{0.0, -0.0, -1.0, 1e-300, 1e-9, 1.0, 37.5, 1e4, 3e6, 1e9, kNaN, kInfinity};
  if (!line.empty()) {
    // Cuts on a vertex, just before and just behind it.
    for (const std::size_t vertex : {std::size_t{1}, line.size() / 2, line.size() - 1}) {
      if (vertex >= line.size()) continue;
      const double reach = Reach(line, vertex);
      lengths.insert(lengths.end(), {reach, Previous(reach), Next(reach), 0.7 * reach});
    }
  }
  for (const double length : lengths) {
    SCOPED_TRACE(testing::Message() << "length " << vorel::test::Paste(length));
    Line out{kHeld};
    Line expected{kHeld};
    EXPECT_EQ(
        Tail(line, length, out),
        reference::ChoosePointsInPolyline(line.data(), static_cast<unsigned>(line.size()), length, expected));
    EXPECT_TRUE(SameBits(out, expected));

    out = {kHeld};
    expected = {kHeld};
    EXPECT_EQ(Algorithm::ChoosePointsInPolylineWithMaxLength(line, length, out),
              reference::ChoosePointsInPolylineWithMaxLength(line, length, expected));
    EXPECT_TRUE(SameBits(out, expected));

    LineZ outZ{{1.0, 2.0, 3.0f}};
    LineZ expectedZ{{1.0, 2.0, 3.0f}};
    EXPECT_EQ(Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ, length, outZ),
              reference::ChoosePointsInPolylineWithMaxLength(lineZ, length, expectedZ));
    EXPECT_TRUE(SameBits(outZ, expectedZ));
  }
}

TEST(Cuts, MatchTheTwinsOnRandomLines) {
  constexpr unsigned kSeed = 32004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 400; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectMatchesTwins(RandomLineZ(generator, run % 60));
  }
}

TEST(Cuts, MatchTheTwinsOnWildLines) {
  constexpr unsigned kSeed = 32005;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 400; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectMatchesTwins(WildLineZ(generator, run % 60));
  }
}

/// Vertices are copied in runs of some hundred: lines of several runs, cut on either side of the seams.
TEST(Cuts, MatchTheTwinsOnLongLines) {
  constexpr unsigned kSeed = 32006;
  std::mt19937 generator(kSeed);
  for (const int vertexCount : {511, 512, 513, 514, 1024, 1025, 1026, 1700}) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", " << vertexCount << " vertices");
    const LineZ lineZ = RandomLineZ(generator, vertexCount);
    const Line line = WithoutHeight(lineZ);
    for (const std::size_t vertex : {510u, 511u, 512u, 513u, 1023u, 1024u, 1025u, 1699u}) {
      if (vertex >= line.size()) break;
      const double reach = Reach(line, vertex);
      for (const double length : {Previous(reach), reach, Next(reach)}) {
        SCOPED_TRACE(testing::Message() << "length " << vorel::test::Paste(length));
        Line out, expected;
        Tail(line, length, out);
        reference::ChoosePointsInPolyline(line.data(), static_cast<unsigned>(line.size()), length, expected);
        EXPECT_TRUE(SameBits(out, expected));
        LineZ outZ, expectedZ;
        Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ, length, outZ);
        reference::ChoosePointsInPolylineWithMaxLength(lineZ, length, expectedZ);
        EXPECT_TRUE(SameBits(outZ, expectedZ));
      }
    }
  }
}

TEST(Cuts, AllocateNothingWhenTheOutputHasTheRoom) {
  std::mt19937 generator(32007);
  const LineZ lineZ = RandomLineZ(generator, 1200);
  const Line line = WithoutHeight(lineZ);
  const double whole = Reach(line, line.size() - 1);
  Line out = line;
  LineZ outZ = lineZ;
  out.reserve(line.size() + 1);
  outZ.reserve(line.size() + 1);
  const vorel::test::AllocationCounter allocations;
  for (const double part : {0.0001, 0.5, 0.9999, 2.0}) {
    Tail(line, part * whole, out);
    out.clear();
    Algorithm::ChoosePointsInPolylineWithMaxLength(line, part * whole, out);
    outZ.clear();
    Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ, part * whole, outZ);
  }
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_TRUE(SameBits(outZ, lineZ));
}

class CutsOfRealLines : public testing::TestWithParam<const char*> {};

TEST_P(CutsOfRealLines, MatchTheTwins) {
  const std::vector<vorel::test::NamedLineZ>& lines = vorel::test::RealLinesZ(GetParam());
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLineZ& line : lines) {
    SCOPED_TRACE(line.name);
    ExpectMatchesTwins(line.points);
  }
}

INSTANTIATE_TEST_SUITE_P(All, CutsOfRealLines, testing::Values("routes", "traces", "lanes"));

// ---- Awkward lines --------------------------------------------------------------------------------------------------

JOIN_AWKWARD_LINES_Z(HeadAndTailOfALine, [](const LineZ& line) { ExpectMatchesTwins(line); });

}  // namespace
