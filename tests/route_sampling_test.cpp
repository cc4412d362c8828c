// The stretch ahead of a position, the chain behind an offset, candidates spread over lines. Linked with the counting
// GetTagName.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/sink.h"
#include "logging/time_and_thread.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/route_sampling_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"
#include "tests/support/allocation_counter.h"
#include "tests/support/counting_tag_names.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::RoutePos;
using vorel::test::CumulativeTable;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::RandomLine;
using vorel::test::SameBits;
using vorel::test::Uniform;
using vorel::test::WildLine;
using Algorithm = vorel::VorelGeometryAlgorithm;

const GeoCoordinate kNaNPoint(kNaN, kNaN);
const GeoCoordinate kHeld(1.0, 2.0);  // what the caller already had in the output

const Line& Route() {
  static const Line line{{7.5, 47.5}, {7.5013, 47.5002}, {7.502, 47.501}, {7.5017, 47.503}, {7.504, 47.5047}};
  return line;
}

/// The point of the route at the float `ratio` between vertex i and vertex j.
GeoCoordinate Between(std::size_t i, std::size_t j, double ratio) {
  return Algorithm::GetInsertPointFromSegment(Route()[i], Route()[j], static_cast<float>(ratio));
}

template <class T>
std::string NameOf(const testing::TestParamInfo<T>& test) {
  return test.param.name;
}

// ---- The stretch ahead: edges ---------------------------------------------------------------------------------------

struct AheadCase {
  const char* name;
  int baseIndex;
  double length;
  std::vector<double> table;  // need not fit the route: nothing but the base point is measured
  bool ok;
  Line expected;  // behind the base point, which is vertex `baseIndex` itself
};

class StretchAheadEdges : public testing::TestWithParam<AheadCase> {};

TEST_P(StretchAheadEdges, Hold) {
  const AheadCase& c = GetParam();
  const GeoCoordinate base = c.ok ? Route()[static_cast<std::size_t>(c.baseIndex)] : GeoCoordinate();
  Line out{kHeld};
  EXPECT_EQ(
      Algorithm::ChoosePointsInPolylineFromBasePoint(c.baseIndex, base, c.length, Route(), c.table, out),
      c.ok);
  Line expected{kHeld};
  if (c.ok) expected.push_back(base);
  expected.insert(expected.end(), c.expected.begin(), c.expected.end());
  EXPECT_TRUE(SameBits(out, expected));
}

const std::vector<double> kHundreds{0.0, 100.0, 200.0, 300.0, 400.0};

INSTANTIATE_TEST_SUITE_P(
    All, StretchAheadEdges,
    testing::Values(
        AheadCase{"WithinTheFirstSegment", 1, 50.0, kHundreds, true, {Between(1, 2, 0.5)}},
        AheadCase{"AtTheNextVertex", 1, 100.0, kHundreds, true, {Route()[2]}},
        AheadCase{"JustBeforeTheNextVertex",
                  1,
                  99.99999999999999,
                  kHundreds,
                  true,
                  {Between(1, 2, 0.9999999999999999)}},
        AheadCase{"JustBehindTheNextVertex",
                  1,
                  100.00000000000001,
                  kHundreds,
                  true,
                  {Route()[2], Between(2, 3, 1.4e-16)}},
        AheadCase{
            "InALaterSegment", 1, 225.0, kHundreds, true, {Route()[2], Route()[3], Between(3, 4, 0.25)}},
        AheadCase{"AtTheLastVertex", 1, 300.0, kHundreds, true, {Route()[2], Route()[3], Route()[4]}},
        AheadCase{"BeyondTheRoute", 1, 300.5, kHundreds, true, {Route()[2], Route()[3], Route()[4]}},
        AheadCase{"Infinite", 1, kInfinity, kHundreds, true, {Route()[2], Route()[3], Route()[4]}},
        AheadCase{"Zero", 1, 0.0, kHundreds, true, {Route()[1]}},
        AheadCase{"Negative", 1, -30.0, kHundreds, true, {Route()[1]}},
        AheadCase{"NegativeInfinite", 1, -kInfinity, kHundreds, true, {Route()[1]}},
        AheadCase{"NaNLength", 1, kNaN, kHundreds, true, {kNaNPoint}},
        AheadCase{"OnTheLastVertex", 4, 50.0, kHundreds, true, {}},
        AheadCase{"OnTheFirstVertex", 0, 100.0, kHundreds, true, {Route()[1]}},
        AheadCase{"IndexAtSize", 5, 50.0, kHundreds, false, {}},
        AheadCase{"IndexNegative", -1, 50.0, kHundreds, false, {}},
        AheadCase{"IndexSmallest", std::numeric_limits<int>::min(), 50.0, kHundreds, false, {}},
        AheadCase{"IndexLargest", std::numeric_limits<int>::max(), 50.0, kHundreds, false, {}},
        // The start counts as 112, not 112.9 (truncated, not rounded).
        AheadCase{"StartInWholeMetres",
                  1,
                  50.0,
                  {0.0, 112.9, 200.0, 300.0, 400.0},
                  true,
                  {Between(1, 2, (162.0 - 112.9) / (200.0 - 112.9))}},
        AheadCase{
            "WholeMetresDecideTheVertex", 1, 88.0, {0.0, 112.9, 200.0, 300.0, 400.0}, true, {Route()[2]}},
        AheadCase{"EndBehindTheBasePoint", 1, 0.5, {0.0, 112.9, 200.0, 300.0, 400.0}, true, {Route()[1]}},
        AheadCase{"NegativeStartTowardZero",
                  1,
                  50.0,
                  {-100.0, -0.9, 100.0, 200.0, 300.0},
                  true,
                  {Between(1, 2, (50.0 - -0.9) / (100.0 - -0.9))}},
        AheadCase{"StartSaturates", 1, 53.0, {0.0, 3e9, 2147483700.0, 4e9, 5e9}, true, {Route()[2]}},
        AheadCase{"NaNBaseEntryStartsAtZero", 1, 200.0, {0.0, kNaN, 200.0, 300.0, 400.0}, true, {Route()[2]}},
        AheadCase{"NaNEntryEndsTheStretch",
                  1,
                  250.0,
                  {0.0, 100.0, 200.0, kNaN, 400.0},
                  true,
                  {Route()[2], kNaNPoint}},
        AheadCase{"RepeatedEntry",
                  1,
                  50.0,
                  {0.0, 100.0, 100.0, 200.0, 300.0},
                  true,
                  {Route()[2], Between(2, 3, 0.5)}},
        AheadCase{"DescendingTable",
                  1,
                  50.0,
                  {0.0, 100.0, 50.0, 300.0, 400.0},
                  true,
                  {Route()[2], Between(2, 3, 0.4)}},
        AheadCase{"TableLongEnoughForTheStretch", 1, 50.0, {0.0, 100.0, 200.0}, true, {Between(1, 2, 0.5)}}),
    NameOf<AheadCase>);

TEST(StretchAhead, MeasuresTheBasePointFromItsVertex) {
  // 30 m and a little behind vertex 1, in whole metres.
  const GeoCoordinate base = Algorithm::GetLinePoint(Route()[1], Route()[2], 30.4);
  const double beyond = base.DistanceTo(Route()[1]);
  ASSERT_EQ(std::trunc(100.0 + beyond), 130.0);
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(1, base, 50.0, Route(), kHundreds, out));
  // The end point is interpolated from the vertex behind the base point.
  EXPECT_TRUE(SameBits(out, Line{base, Between(1, 2, 0.8)}));
  out.clear();
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(1, base, 70.0, Route(), kHundreds, out));
  EXPECT_TRUE(SameBits(out, Line{base, Route()[2]}));
}

TEST(StretchAhead, TruncatesTheSum) {
  // 0.7 in the table and 0.6 behind the vertex: the sum counts one whole metre, the parts none.
  const GeoCoordinate base = Algorithm::GetLinePoint(Route()[0], Route()[1], 0.6);
  const std::vector<double> table{0.7, 101.0, 200.0, 300.0, 400.0};
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(0, base, 100.0, Route(), table, out));
  EXPECT_TRUE(SameBits(out, Line{base, Route()[1]}));
}

TEST(StretchAhead, AddsTheLengthToTheStartFirst) {
  // The start, 1e16 m, is cut to 2147483647. With the length it makes 1e16 + 1, which rounds to 1e16: that is where the
  // base point lies. The other way round the end point would lie 1 m of 4 beyond it.
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(0, Route()[0], 1e16 - 2147483646.0, Route(),
                                                             {1e16, 1e16 + 4.0}, out));
  EXPECT_TRUE(SameBits(out, Line{Route()[0], Route()[0]}));
}

TEST(StretchAhead, RefusesAnEmptyRoute) {
  Line out{kHeld};
  EXPECT_FALSE(Algorithm::ChoosePointsInPolylineFromBasePoint(0, kHeld, 50.0, Line(), kHundreds, out));
  EXPECT_TRUE(SameBits(out, Line{kHeld}));
}

TEST(StretchAhead, ThrowsWhereTheTableEnds) {
  const GeoCoordinate base = Route()[1];
  Line out{kHeld};
  EXPECT_THROW(Algorithm::ChoosePointsInPolylineFromBasePoint(1, base, 250.0, Route(), {0.0}, out),
               std::out_of_range);
  EXPECT_TRUE(SameBits(out, Line{kHeld, base})) << "the base point comes before the first access";
  out = {kHeld};
  EXPECT_THROW(Algorithm::ChoosePointsInPolylineFromBasePoint(1, base, 250.0, Route(), {0.0, 100.0}, out),
               std::out_of_range);
  EXPECT_TRUE(SameBits(out, Line{kHeld, base}));
  out = {kHeld};
  EXPECT_THROW(
      Algorithm::ChoosePointsInPolylineFromBasePoint(1, base, 250.0, Route(), {0.0, 100.0, 200.0}, out),
      std::out_of_range);
  EXPECT_TRUE(SameBits(out, Line{kHeld, base, Route()[2]}));
}

TEST(StretchAhead, TakesABasePointOutOfTheOutput) {
  Line out{Route()[1]};
  out.shrink_to_fit();  // so that appending moves the base point
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(1, out[0], 50.0, Route(), kHundreds, out));
  EXPECT_TRUE(SameBits(out, Line{Route()[1], Route()[1], Between(1, 2, 0.5)}));
}

// ---- The chain behind an offset: edges ------------------------------------------------------------------------------

/// The route's vertices as positions: with the table of hundreds each step is exactly 100 m.
std::vector<RoutePos> Chain(std::size_t count) {
  std::vector<RoutePos> positions(count);
  for (std::size_t i = 0; i < count; ++i) {
    positions[i].coordinate = Route()[i];
    positions[i].shapeIndex = static_cast<int>(i);
    positions[i].linkIndex = 77;
    positions[i].metresFromStart = -1e9;  // neither is read
  }
  return positions;
}

struct OffsetCase {
  const char* name;
  std::size_t positionCount;
  double offset;
  bool ok;
  Line expected;
  const char* logged;  // null: nothing
};

class ChainBehindOffset : public testing::Test {
 protected:
  ChainBehindOffset() {
    vorel::logging::vorel_log_instance_id_ = kId;
    plog::Logger::Register(kId, plog::LogLevel::kDebug, {memory_});
    vorel::test::ResetTagNameCalls();
  }
  ~ChainBehindOffset() override {
    plog::Logger::Unregister(kId);
    vorel::logging::vorel_log_instance_id_ = 0;
  }

  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const plog::StoredRecord& record : memory_->Records()) messages.push_back(record.message);
    return messages;
  }

  static constexpr unsigned kId = 4300;
  const std::shared_ptr<plog::MemorySink> memory_ = std::make_shared<plog::MemorySink>();
};

class ChainBehindOffsetEdges : public ChainBehindOffset, public testing::WithParamInterface<OffsetCase> {};

TEST_P(ChainBehindOffsetEdges, Hold) {
  const OffsetCase& c = GetParam();
  Line out{kHeld};
  EXPECT_EQ(
      Algorithm::ChoosePointsInPolylineWithOffset(Chain(c.positionCount), c.offset, out, Route(), kHundreds),
      c.ok);
  Line expected{kHeld};
  expected.insert(expected.end(), c.expected.begin(), c.expected.end());
  EXPECT_TRUE(SameBits(out, expected));
  std::vector<std::string> messages;
  if (c.logged != nullptr) messages.push_back(std::string("[Vorel][Vorel][Geometry]") + c.logged);
  EXPECT_EQ(Messages(), messages);
}

Line RouteFrom(std::size_t first) {
  return Line(Route().begin() + static_cast<std::ptrdiff_t>(first), Route().end());
}

INSTANTIATE_TEST_SUITE_P(
    All, ChainBehindOffsetEdges,
    testing::Values(
        OffsetCase{"NoPositions", 0, 10.0, false, {}, nullptr},
        OffsetCase{
            "OnePosition", 1, 20.0, false, {}, "accumulative_distance:0.000000< offset_length :20.000000"},
        OffsetCase{
            "OnePositionNaN", 1, kNaN, false, {}, "accumulative_distance:0.000000< offset_length :nan"},
        OffsetCase{"Zero", 5, 0.0, false, {}, nullptr},
        OffsetCase{"NegativeZero", 5, -0.0, false, {}, nullptr},
        OffsetCase{"Negative", 5, -3.0, false, {}, nullptr},
        OffsetCase{"NegativeInfinite", 5, -kInfinity, false, {}, nullptr},
        OffsetCase{"NoCutPointInTheFirstStep", 5, 50.0, true, RouteFrom(1), nullptr},
        OffsetCase{"SmallestPositive", 5, 5e-324, true, RouteFrom(1), nullptr},
        OffsetCase{"AtTheSecondPosition", 5, 100.0, true, RouteFrom(1), nullptr},
        OffsetCase{"JustBehindTheSecondPosition",
                   5,
                   100.00000000000001,
                   true,
                   {Between(1, 2, 1.4e-16), Route()[2], Route()[3], Route()[4]},
                   nullptr},
        OffsetCase{"InTheSecondStep",
                   5,
                   150.0,
                   true,
                   {Between(1, 2, 0.5), Route()[2], Route()[3], Route()[4]},
                   nullptr},
        OffsetCase{"AtTheThirdPosition", 5, 200.0, true, RouteFrom(2), nullptr},
        OffsetCase{"InTheLastStep", 5, 375.0, true, {Between(3, 4, 0.75), Route()[4]}, nullptr},
        OffsetCase{"AtTheLastPosition", 5, 400.0, true, {Route()[4]}, nullptr},
        OffsetCase{"JustBeyondTheChain",
                   5,
                   400.00000000000006,
                   false,
                   {},
                   "accumulative_distance:400.000000< offset_length :400.000000"},
        OffsetCase{"FarBeyondTheChain",
                   3,
                   1e6,
                   false,
                   {},
                   "accumulative_distance:200.000000< offset_length :1000000.000000"},
        OffsetCase{
            "Infinite", 5, kInfinity, false, {}, "accumulative_distance:400.000000< offset_length :inf"},
        OffsetCase{"NaNOffset", 5, kNaN, true, RouteFrom(1), nullptr}),
    NameOf<OffsetCase>);

TEST_F(ChainBehindOffset, TakesStepsWithoutTheirSign) {
  std::vector<RoutePos> back = Chain(5);
  std::reverse(back.begin(), back.end());
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithOffset(back, 150.0, out, Route(), kHundreds));
  EXPECT_TRUE(SameBits(out, Line{Between(3, 2, 0.5), Route()[2], Route()[1], Route()[0]}));
}

TEST_F(ChainBehindOffset, EndsAtANaNStepWithANaNCutPoint) {
  const std::vector<double> table{0.0, 100.0, kNaN, 300.0, 400.0};
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithOffset(Chain(5), 350.0, out, Route(), table));
  EXPECT_TRUE(SameBits(out, Line{kNaNPoint, Route()[2], Route()[3], Route()[4]}));
}

TEST_F(ChainBehindOffset, PassesOverPositionsOffTheRoute) {
  std::vector<RoutePos> positions = Chain(5);
  positions[2].shapeIndex = -1;  // the steps to it and from it count 0
  Line out;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithOffset(positions, 150.0, out, Route(), kHundreds));
  EXPECT_TRUE(SameBits(out, Line{Between(3, 4, 0.5), Route()[4]}));
}

TEST_F(ChainBehindOffset, LetsTheErrorOfAShortTableThrough) {
  const std::vector<double> table{0.0, 100.0, 200.0};
  Line out{kHeld};
  EXPECT_THROW(Algorithm::ChoosePointsInPolylineWithOffset(Chain(5), 350.0, out, Route(), table),
               std::out_of_range);
  EXPECT_TRUE(SameBits(out, Line{kHeld}));
  EXPECT_EQ(memory_->Count(), 0u);
  // A step that lacks two entries counts 0 instead.
  const std::vector<RoutePos> all = Chain(5);
  EXPECT_FALSE(Algorithm::ChoosePointsInPolylineWithOffset({all[2], all[4]}, 350.0, out, Route(), {0.0}));
}

TEST_F(ChainBehindOffset, AllowsTheRouteAsOutput) {
  Line route = Route();
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithOffset(Chain(5), 375.0, route, route, kHundreds));
  Line expected = Route();
  expected.push_back(Between(3, 4, 0.75));
  expected.push_back(Route()[4]);
  EXPECT_TRUE(SameBits(route, expected));
}

// ---- The chain behind an offset: its record -------------------------------------------------------------------------

long long Milliseconds(const plog::Time& time) {
  return static_cast<long long>(time.seconds) * 1000 + time.milliseconds;
}

TEST_F(ChainBehindOffset, WritesARecordWithAllItsFields) {
  plog::Time before;
  plog::Util::FetchTime(&before);
  Line out;
  EXPECT_FALSE(
      Algorithm::ChoosePointsInPolylineWithOffset(Chain(2), 1234.5678904, out, Route(), {10.0, 20.5}));
  plog::Time after;
  plog::Util::FetchTime(&after);

  const std::vector<plog::StoredRecord> records = memory_->Records();
  ASSERT_EQ(records.size(), 1u);
  const plog::StoredRecord& record = records[0];
  EXPECT_EQ(record.level, plog::LogLevel{2});
  EXPECT_EQ(record.function, "ChoosePointsInPolylineWithOffset");
  EXPECT_NE(record.file.find("vorel_geometry_algorithm"), std::string::npos) << record.file;
  EXPECT_GT(record.line, 0u);
  EXPECT_EQ(record.instanceId, kId);
  EXPECT_EQ(record.tags, std::vector<std::string>{""});
  EXPECT_EQ(record.message,
            "[Vorel][Vorel][Geometry]accumulative_distance:10.500000< offset_length :1234.567890");
  EXPECT_EQ(record.threadId, plog::Util::GetTid());
  EXPECT_LE(Milliseconds(before), Milliseconds(record.time));
  EXPECT_LE(Milliseconds(record.time), Milliseconds(after));
  EXPECT_EQ(vorel::test::TagNameCalls(), std::vector<int>{11});
}

TEST_F(ChainBehindOffset, WritesToTheLoggerOfTheMoment) {
  constexpr unsigned kOtherId = 4301;
  const auto other = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(plog::Logger::Register(kOtherId, plog::LogLevel::kWarning, {other}));
  vorel::logging::vorel_log_instance_id_ = kOtherId;
  Line out;
  EXPECT_FALSE(Algorithm::ChoosePointsInPolylineWithOffset(Chain(1), 5.0, out, Route(), kHundreds));
  EXPECT_EQ(memory_->Count(), 0u);
  ASSERT_EQ(other->Count(), 1u);
  EXPECT_EQ(other->Records()[0].instanceId, kOtherId);
  plog::Logger::Unregister(kOtherId);
}

TEST_F(ChainBehindOffset, AllocatesNothingWhenTheOutputHasTheRoom) {
  const std::vector<RoutePos> positions = Chain(5);
  Line out;
  out.reserve(6);
  const vorel::test::AllocationCounter allocations;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineWithOffset(positions, 150.0, out, Route(), kHundreds));
  out.clear();
  ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(0, Route()[0], 350.0, Route(), kHundreds, out));
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(out.size(), 5u);
}

TEST_F(ChainBehindOffset, IsSilentAboveItsLevel) {
  ASSERT_TRUE(plog::Logger::SetMinimumLevel(kId, plog::LogLevel{3}));
  const std::vector<RoutePos> positions = Chain(2);
  Line out;
  const vorel::test::AllocationCounter allocations;
  EXPECT_FALSE(Algorithm::ChoosePointsInPolylineWithOffset(positions, 1e6, out, Route(), kHundreds));
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(memory_->Count(), 0u);
  EXPECT_TRUE(vorel::test::TagNameCalls().empty());
  ASSERT_TRUE(plog::Logger::SetMinimumLevel(kId, plog::LogLevel{2}));
  EXPECT_FALSE(Algorithm::ChoosePointsInPolylineWithOffset(positions, 1e6, out, Route(), kHundreds));
  EXPECT_EQ(memory_->Count(), 1u);
}

// ---- Candidates: edges ----------------------------------------------------------------------------------------------

/// A straight line north from (`longitude`, 47.5), some `metres` long.
Line North(double longitude, double metres) {
  const GeoCoordinate start(longitude, 47.5);
  return {start, Algorithm::GetLinePoint(start, GeoCoordinate(longitude, 47.6), metres)};
}

/// The points of `line` at these distances from its start.
Line PointsAt(const Line& line, const std::vector<double>& metres) {
  Line points;
  const double length = line[1].DistanceTo(line[0]);
  for (const double distance : metres) {
    points.push_back(distance == 0.0 ? line[0]
                                     : Algorithm::GetInsertPointFromSegment(
                                           line[0], line[1], static_cast<float>(distance / length)));
  }
  return points;
}

Line operator+(Line a, const Line& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

struct CandidateCase {
  const char* name;
  std::vector<Line> lines;
  unsigned count;
  bool ok;
  bool clears;
  Line expected;
};

class CandidateEdges : public testing::TestWithParam<CandidateCase> {};

TEST_P(CandidateEdges, Hold) {
  const CandidateCase& c = GetParam();
  Line out{kHeld};
  EXPECT_EQ(Algorithm::CalculateCandidatePoints(c.lines, c.count, out), c.ok);
  EXPECT_TRUE(SameBits(out, c.clears ? c.expected : Line{kHeld}));
}

const Line kFifty = North(7.5, 50.4);
const Line kOtherFifty = North(8.5, 50.4);
const Line kStill{{9.5, 47.5}, {9.5, 47.5}};
const Line kBroken{{7.5, 47.5}, {kNaN, 47.5}};

INSTANTIATE_TEST_SUITE_P(
    All, CandidateEdges,
    testing::Values(
        CandidateCase{"CountZero", {kFifty}, 0, false, false, {}},
        CandidateCase{"CountOne", {kFifty}, 1, false, false, {}},
        CandidateCase{"NoLines", {}, 3, false, false, {}},
        CandidateCase{"CountOneAndNoLines", {}, 1, false, false, {}},
        CandidateCase{"CountTwo", {kFifty}, 2, true, true, PointsAt(kFifty, {0.0, 50.0})},
        CandidateCase{
            "LineWithoutLength", {kFifty, kStill}, 3, true, true, PointsAt(kFifty, {0.0, 25.0, 50.0})},
        CandidateCase{"EmptyAndSingleLines",
                      {{}, {{7.5, 47.5}}, kFifty},
                      3,
                      true,
                      true,
                      PointsAt(kFifty, {0.0, 25.0, 50.0})},
        CandidateCase{"OnlyEmptyLines", {{}, {}}, 3, false, true, {}},
        CandidateCase{"OnlyLinesWithoutLength", {kStill, kStill}, 3, false, true, {}},
        CandidateCase{"SpacingOfOneMetre",
                      {North(7.5, 4.4)},
                      5,
                      true,
                      true,
                      PointsAt(North(7.5, 4.4), {0.0, 1.0, 2.0, 3.0, 4.0})},
        CandidateCase{"SpacingBelowOneMetre", {North(7.5, 4.4)}, 6, false, true, {}},
        CandidateCase{"LargestCount", {kFifty}, 4294967295u, false, true, {}},
        // 100.9 counts 100, a third of it 33.
        CandidateCase{"FractionsAreDroppedTwice",
                      {North(7.5, 100.9)},
                      4,
                      true,
                      true,
                      PointsAt(North(7.5, 100.9), {0.0, 33.0, 66.0, 99.0})},
        // 50.4 and 50.4 count 100: the fractions add up first.
        CandidateCase{
            "TheTotalIsTruncatedNotTheLengths", {North(7.5, 50.5), North(8.5, 50.5)}, 102, false, true, {}},
        CandidateCase{"OneMetreFromTwoHalves",
                      {North(7.5, 50.6), North(8.5, 50.6)},
                      102,
                      true,
                      true,
                      [] {
                        Line points;
                        for (int k = 0; k <= 50; ++k) points = points + PointsAt(North(7.5, 50.6), {1.0 * k});
                        for (int k = 0; k <= 0; ++k) points = points + PointsAt(North(8.5, 50.6), {1.0 * k});
                        return points;
                      }()},
        // Spacing 100 / 9 = 11: five points on the first line, then a limit of 5 for a list that already holds 5.
        CandidateCase{"PointsSoFarCountTwice",
                      {kFifty, kOtherFifty},
                      10,
                      true,
                      true,
                      PointsAt(kFifty, {0.0, 11.0, 22.0, 33.0, 44.0}) + PointsAt(kOtherFifty, {0.0})},
        // Spacing 100 / 19 = 5: eleven points, then a limit of 9.
        CandidateCase{"LaterLineGivesItsStartAlone",
                      {kFifty, kOtherFifty},
                      20,
                      true,
                      true,
                      PointsAt(kFifty, {0.0, 5.0, 10.0, 15.0, 20.0, 25.0, 30.0, 35.0, 40.0, 45.0, 50.0}) +
                          PointsAt(kOtherFifty, {0.0})},
        // Spacing 151 / 6 = 25: three points, then a limit of 4, one point: 4; then a limit of 3: one point.
        CandidateCase{"ThreeLines",
                      {kFifty, kOtherFifty, North(9.5, 50.4)},
                      7,
                      true,
                      true,
                      PointsAt(kFifty, {0.0, 25.0, 50.0}) + PointsAt(kOtherFifty, {0.0}) +
                          PointsAt(North(9.5, 50.4), {0.0})},
        // Spacing 100 / 2 = 50: two points on the first line, one on the second, none left for the third.
        CandidateCase{"FullBeforeTheLastLine",
                      {kFifty, kOtherFifty, North(9.5, 0.5)},
                      3,
                      true,
                      true,
                      PointsAt(kFifty, {0.0, 50.0}) + PointsAt(kOtherFifty, {0.0})},
        CandidateCase{"EachLineStartsAnew",
                      {North(7.5, 20.4), kOtherFifty},
                      4,
                      true,
                      true,
                      PointsAt(North(7.5, 20.4), {0.0}) + PointsAt(kOtherFifty, {0.0, 23.0})},
        CandidateCase{"NaNLineSpoilsAll", {kFifty, kBroken}, 3, false, true, {}}),
    NameOf<CandidateCase>);

TEST(Candidates, SaturateTheTotal) {
  // Some 2000 times half the way around the earth: beyond 2^31 metres.
  Line line;
  for (int i = 0; i < 250; ++i) line.emplace_back(i % 2 == 0 ? 0.0 : 179.0, 0.0);
  Line out;
  ASSERT_TRUE(Algorithm::CalculateCandidatePoints({line}, 3, out));
  const double spacing = 1073741823.0;  // (2^31 - 1) / 2
  Line expected;
  ASSERT_TRUE(Algorithm::ChoosePointsInPolyline(line, spacing, 3, expected));
  ASSERT_EQ(expected.size(), 3u);
  EXPECT_TRUE(SameBits(out, expected));
}

// ---- Properties -----------------------------------------------------------------------------------------------------

/// Distance of every sample from its place k times `interval` along the line.
double WorstOffPlace(const Line& line, const Line& samples, double interval) {
  const std::vector<double> table = CumulativeTable(line);
  double worst = 0.0;
  for (std::size_t k = 0; k < samples.size(); ++k) {
    const double place = static_cast<double>(k) * interval;
    const auto segment = static_cast<std::size_t>(Algorithm::FindFirstSmallerIndex(table, place));
    const double along = table[segment] + line[segment].DistanceTo(samples[k]);
    worst = std::max(worst, std::fabs(along - place));
  }
  return worst;
}

// Metres, segments of up to 60 m; worst of 2e5 runs was 1.5e-4, near latitude 80: a straight line in degrees is no arc.
constexpr double kRandomSlack = 3e-4;

TEST(Candidates, LieKTimesTheSpacingAlongTheLine) {
  constexpr unsigned kSeed = 34001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = RandomLine(generator, 5 + run % 80);
    const double length = CumulativeTable(line).back();
    const auto count = static_cast<unsigned>(2 + generator() % 40);
    const double spacing = std::floor(std::floor(length) / (count - 1));
    Line out;
    ASSERT_EQ(Algorithm::CalculateCandidatePoints({line}, count, out), spacing > 0.0);
    ASSERT_LE(out.size(), count);
    if (spacing > 0.0) {
      EXPECT_LE(WorstOffPlace(line, out, spacing), kRandomSlack);
    }
  }
}

TEST(Candidates, LieKTimesTheSpacingAlongRealRoutes) {
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  // Metres; worst was 0.26, on segments of some kilometres on the coast of Chukotka (0.019 on the motorways).
  constexpr double kRealSlack = 0.5;
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(line.name);
    for (const unsigned count : {2u, 17u, 1000u}) {
      const double spacing = std::floor(std::floor(CumulativeTable(line.points).back()) / (count - 1));
      Line out;
      ASSERT_EQ(Algorithm::CalculateCandidatePoints({line.points}, count, out), spacing > 0.0);
      ASSERT_LE(out.size(), count);
      if (spacing > 0.0) {
        EXPECT_LE(WorstOffPlace(line.points, out, spacing), kRealSlack);
      }
    }
  }
}

TEST(Candidates, NeverExceedTheirCount) {
  constexpr unsigned kSeed = 34002;
  std::mt19937 generator(kSeed);
  std::size_t full = 0;
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    std::vector<Line> lines(1 + generator() % 5);
    for (Line& line : lines) line = RandomLine(generator, static_cast<int>(generator() % 12));
    const auto count = static_cast<unsigned>(2 + generator() % 30);
    Line out;
    Algorithm::CalculateCandidatePoints(lines, count, out);
    ASSERT_LE(out.size(), count);
    full += out.size() == count ? 1 : 0;
  }
  EXPECT_GT(full, 50u);
}

TEST(StretchAhead, IsAsLongAsAsked) {
  constexpr unsigned kSeed = 34003;
  std::mt19937 generator(kSeed);
  double shortest = 0.0;
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = RandomLine(generator, 10 + run % 60);
    const std::vector<double> table = CumulativeTable(line);
    const std::size_t index = generator() % 5;
    const GeoCoordinate base = Algorithm::GetInsertPointFromSegment(
        line[index], line[index + 1], static_cast<float>(Uniform(generator, 0.0, 1.0)));
    const double left = table.back() - table[index] - base.DistanceTo(line[index]);
    const double length = Uniform(generator, 1.0, left);
    Line out;
    ASSERT_TRUE(Algorithm::ChoosePointsInPolylineFromBasePoint(static_cast<int>(index), base, length, line,
                                                               table, out));
    // Up to a metre is lost to the whole metres of the start.
    const double error = CumulativeTable(out).back() - length;
    ASSERT_LE(error, kRandomSlack);
    ASSERT_GT(error, -1.0 - kRandomSlack);
    shortest = std::min(shortest, error);
  }
  EXPECT_LT(shortest, -0.9);
}

// ---- Against the plain twins ----------------------------------------------------------------------------------------

std::vector<double> AnyTable(std::mt19937& generator, const Line& line) {
  std::vector<double> table = CumulativeTable(line);
  const std::size_t kind = generator() % 8;
  if (kind == 0) table.resize(generator() % (line.size() + 2), 1e4);
  if (kind == 1 && !table.empty()) table[generator() % table.size()] = kNaN;
  if (kind == 2 && !table.empty()) table[generator() % table.size()] = Uniform(generator, -1e3, 1e10);
  if (kind == 3 && !table.empty()) table[generator() % table.size()] = kInfinity;
  if (kind == 4) {
    for (double& metres : table) metres = std::floor(metres);
  }
  return table;
}

int AnyIndex(std::mt19937& generator, const Line& line) {
  return static_cast<int>(generator() % (line.size() + 3)) - 1;
}

void ExpectStretchesMatchTwin(std::mt19937& generator, const Line& line) {
  for (int trial = 0; trial < 20; ++trial) {
    const std::vector<double> table = AnyTable(generator, line);
    const int index = AnyIndex(generator, line);
    GeoCoordinate base = line.empty() ? GeoCoordinate(7.5, 47.5) : line[generator() % line.size()];
    if (trial % 2 == 0 && index >= 0 && static_cast<std::size_t>(index) + 1 < line.size()) {
      base = Algorithm::GetInsertPointFromSegment(line[static_cast<std::size_t>(index)],
                                                  line[static_cast<std::size_t>(index) + 1],
                                                  static_cast<float>(Uniform(generator, 0.0, 1.0)));
    }
    const double total = table.empty() ? 100.0 : table.back();
    const double lengths[] = {Uniform(generator, 0.0, 1.2) * total,
                              std::floor(Uniform(generator, 0.0, 1000.0)),
                              0.0,
                              -5.5,
                              kNaN,
                              kInfinity};
    for (const double length : lengths) {
      SCOPED_TRACE(testing::Message() << "index " << index << ", length " << vorel::test::Paste(length));
      Line out{kHeld};
      Line expected{kHeld};
      bool ok = false;
      bool twinOk = false;
      bool threw = false;
      bool twinThrew = false;
      try {
        ok = Algorithm::ChoosePointsInPolylineFromBasePoint(index, base, length, line, table, out);
      } catch (const std::out_of_range&) {
        threw = true;
      }
      try {
        twinOk = reference::ChoosePointsInPolylineFromBasePoint(index, base, length, line, table, expected);
      } catch (const std::out_of_range&) {
        twinThrew = true;
      }
      ASSERT_EQ(ok, twinOk);
      ASSERT_EQ(threw, twinThrew);
      ASSERT_TRUE(SameBits(out, expected));
    }
  }
}

void ExpectChainsMatchTwin(std::mt19937& generator, const Line& line) {
  constexpr unsigned kId = 4302;
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(plog::Logger::Register(kId, plog::LogLevel::kWarning, {memory}));
  vorel::logging::vorel_log_instance_id_ = kId;
  for (int trial = 0; trial < 20; ++trial) {
    const std::vector<double> table = AnyTable(generator, line);
    // Positions are measured in blocks, a small one first.
    std::vector<RoutePos> positions(generator() % (trial % 4 == 0 ? 90 : 9));
    int index = 0;
    for (RoutePos& position : positions) {
      index += static_cast<int>(generator() % (positions.size() < 9 ? 4 : 2));
      position.shapeIndex = generator() % 10 == 0 ? AnyIndex(generator, line) : index;
      position.coordinate =
          line.empty() ? GeoCoordinate(7.5, 47.5) : line[static_cast<std::size_t>(index) % line.size()];
      position.coordinate.longitude += Uniform(generator, 0.0, 1e-4);
    }
    const double total = table.empty() ? 100.0 : table.back();
    double offset = Uniform(generator, 0.0, 1.2) * total;
    if (trial % 3 == 0) offset = Uniform(generator, 0.0, 300.0);
    if (trial % 7 == 0) offset = std::vector<double>{0.0, -1.0, kNaN, kInfinity, 1e-9}[generator() % 5];
    SCOPED_TRACE(testing::Message() << "offset " << vorel::test::Paste(offset));
    Line out{kHeld};
    Line expected{kHeld};
    bool ok = false;
    bool twinOk = false;
    bool threw = false;
    bool twinThrew = false;
    const double untouched = -777.0;
    double logged = untouched;
    memory->Clear();
    try {
      ok = Algorithm::ChoosePointsInPolylineWithOffset(positions, offset, out, line, table);
    } catch (const std::out_of_range&) {
      threw = true;
    }
    try {
      twinOk = reference::ChoosePointsInPolylineWithOffset(positions, offset, expected, line, table, &logged);
    } catch (const std::out_of_range&) {
      twinThrew = true;
    }
    EXPECT_EQ(ok, twinOk);
    EXPECT_EQ(threw, twinThrew);
    EXPECT_TRUE(SameBits(out, expected));
    EXPECT_EQ(memory->Count(), logged == untouched ? 0u : 1u);
    if (memory->Count() == 1) {
      std::ostringstream message;
      message << std::fixed << "[Vorel][Vorel][Geometry]accumulative_distance:" << logged
              << "< offset_length :" << offset;
      EXPECT_EQ(memory->Records()[0].message, message.str());
    }
  }
  plog::Logger::Unregister(kId);
  vorel::logging::vorel_log_instance_id_ = 0;
}

void ExpectCandidatesMatchTwin(std::mt19937& generator, const Line& line) {
  const std::vector<std::vector<Line>> inputs{
      {line},
      {line, line},
      {RandomLine(generator, 6), line, Line(), RandomLine(generator, 3)},
      {Line{{7.5, 47.5}}, RandomLine(generator, 20), line},
      {}};
  for (const std::vector<Line>& lines : inputs) {
    for (const unsigned count : {0u, 1u, 2u, 3u, 10u, 77u, 1000u, 4294967295u}) {
      SCOPED_TRACE(testing::Message() << lines.size() << " lines, count " << count);
      Line out{kHeld};
      Line expected{kHeld};
      EXPECT_EQ(Algorithm::CalculateCandidatePoints(lines, count, out),
                reference::CalculateCandidatePoints(lines, count, expected));
      EXPECT_TRUE(SameBits(out, expected));
    }
  }
}

void ExpectAllMatchTwins(std::mt19937& generator, const Line& line) {
  ExpectStretchesMatchTwin(generator, line);
  ExpectChainsMatchTwin(generator, line);
  ExpectCandidatesMatchTwin(generator, line);
}

TEST(RouteSampling, MatchesTheTwinsOnRandomLines) {
  constexpr unsigned kSeed = 34004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 200; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectAllMatchTwins(generator, RandomLine(generator, run % 50));
  }
}

TEST(RouteSampling, MatchesTheTwinsOnWildLines) {
  constexpr unsigned kSeed = 34005;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 200; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectAllMatchTwins(generator, WildLine(generator, run % 50));
  }
}

TEST(RouteSampling, MatchesTheTwinsOnRealRoutes) {
  constexpr unsigned kSeed = 34006;
  std::mt19937 generator(kSeed);
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", " << line.name);
    ExpectAllMatchTwins(generator, line.points);
  }
}

// ---- Awkward lines --------------------------------------------------------------------------------------------------

JOIN_AWKWARD_LINES(ChoosePointsInPolylineFromBasePoint, [](const Line& line) {
  std::mt19937 generator(34007);
  for (int round = 0; round < 10; ++round) ExpectStretchesMatchTwin(generator, line);
});

JOIN_AWKWARD_LINES(ChoosePointsInPolylineWithOffset, [](const Line& line) {
  std::mt19937 generator(34008);
  for (int round = 0; round < 10; ++round) ExpectChainsMatchTwin(generator, line);
});

JOIN_AWKWARD_LINES(CalculateCandidatePoints, [](const Line& line) {
  std::mt19937 generator(34009);
  ExpectCandidatesMatchTwin(generator, line);
});

}  // namespace
