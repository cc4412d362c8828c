// Evenly spaced points of a route inside a view: the points, the log record and the timing. Linked with the counting
// GetTagName and the counting operator new.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/sink.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/view_symbols_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"
#include "tests/support/allocation_counter.h"
#include "tests/support/counting_tag_names.h"

namespace {

using plog::Logger;
using plog::LogLevel;
using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;
using vorel::logging::vorel_log_instance_id_;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::NamedLine;
using vorel::test::Paste;
using vorel::test::SameBits;
using vorel::test::Uniform;

using Runs = std::vector<Line>;
using Rect = tarvo::Rect<GeoCoordinate>;

constexpr unsigned kId = 4300;

// 0.001 degree on the equator is 111.3 m.
const Rect kView{{0, -0.001}, {0.01, 0.001}};
const Line kEverywhere{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

// The route through the view, with a piece that is shorter than most spacings at the corner.
const Line kRoute{{-0.001, 0},    {0.001, 0},      {0.002, 0.0005},
                  {0.002, 0.002}, {0.0095, 0.002}, {0.0103, 0.0004}};

Runs InterpolateQuietly(const Line& shape, bool isMainRoute, const Rect& view, const Line& area,
                        int interval) {
  Runs out;
  VorelGeometryAlgorithm::GetInterpolateShapePoints(shape, isMainRoute, view, area, interval, "test", out);
  return out;
}

// Registers a logger with a memory sink for the length of a test.
class GetInterpolateShapePointsLog : public testing::Test {
 protected:
  GetInterpolateShapePointsLog() {
    vorel_log_instance_id_ = kId;
    Logger::Register(kId, LogLevel::kDebug, {memory_});
    vorel::test::ResetTagNameCalls();
  }
  ~GetInterpolateShapePointsLog() override {
    Logger::Unregister(kId);
    vorel_log_instance_id_ = 0;
  }

  // The message of the one record of this call; the memory is emptied.
  std::string MessageOf(const Line& shape, bool isMainRoute, const Rect& view, const Line& area, int interval,
                        const std::string& owner = "Demo") {
    Runs out;
    VorelGeometryAlgorithm::GetInterpolateShapePoints(shape, isMainRoute, view, area, interval, owner, out);
    const std::vector<plog::StoredRecord> records = memory_->Records();
    memory_->Clear();
    EXPECT_LE(records.size(), 1u);
    return records.empty() ? "no record" : records[0].message;
  }

  const std::shared_ptr<plog::MemorySink> memory_ = std::make_shared<plog::MemorySink>();
};

// ---- Edges ----------------------------------------------------------------------------------------------------

struct ViewCase {
  const char* name;
  Line shape;
  bool isMainRoute;
  Rect view;
  Line area;
  int interval;
  std::vector<std::size_t> pointsOfRuns;
  const char* count;  // in the log; null: no record
};

class GetInterpolateShapePointsEdges : public GetInterpolateShapePointsLog,
                                       public testing::WithParamInterface<ViewCase> {};

TEST_P(GetInterpolateShapePointsEdges, Hold) {
  const ViewCase& c = GetParam();
  Runs out{{{1, 2}, {3, 4}}, {}};  // cleared first
  VorelGeometryAlgorithm::GetInterpolateShapePoints(c.shape, c.isMainRoute, c.view, c.area, c.interval,
                                                    "Demo", out);
  std::vector<std::size_t> sizes;
  for (const Line& run : out) sizes.push_back(run.size());
  EXPECT_EQ(sizes, c.pointsOfRuns);
  const std::vector<plog::StoredRecord> records = memory_->Records();
  if (c.count == nullptr) {
    EXPECT_TRUE(records.empty());
    return;
  }
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, std::string("[Vorel][Demo][Geometry]main route:") +
                                    (c.isMainRoute ? "1" : "0") + ",pt count:" + c.count);
}

const Line kSmallArea{{0.0005, -0.001}, {0.0015, -0.001}, {0.0015, 0.001}, {0.0005, 0.001}};

INSTANTIATE_TEST_SUITE_P(
    All, GetInterpolateShapePointsEdges,
    testing::Values(
        ViewCase{"EmptyShape", {}, true, kView, {}, 30, {}, nullptr},
        ViewCase{"EmptyShapeSideRoute", {}, false, kView, kEverywhere, 30, {}, nullptr},
        ViewCase{"OutsideTheView", {{1, 1}, {2, 1}}, true, kView, {}, 30, {}, "0"},
        ViewCase{"OutsideTheViewSideRoute", {{1, 1}, {2, 1}}, false, kView, kEverywhere, 30, {}, "0"},
        ViewCase{"OneVertexInside", {{0.005, 0}}, true, kView, {}, 30, {0}, "0"},
        ViewCase{"OneVertexInsideSideRoute", {{0.005, 0}}, false, kView, kEverywhere, 30, {0}, "0"},
        ViewCase{"OneVertexOutside", {{1, 1}}, true, kView, {}, 30, {}, "0"},
        // Pieces of 222.6 + 124.6 + 165.9 m and of 198.1 m.
        ViewCase{"TwoPieces", kRoute, true, kView, {}, 100, {6, 2}, "8"},
        ViewCase{"TwoPiecesSideRoute", kRoute, false, kView, kEverywhere, 100, {6, 2}, "8"},
        ViewCase{"IntervalOfOneMetre", kRoute, true, kView, {}, 1, {513, 199}, "712"},
        // The closing point of a short piece: there, but not counted for the main route.
        ViewCase{"OneShortPiece", kRoute, true, kView, {}, 200, {3, 2}, "4"},
        ViewCase{"OneShortPieceSideRoute", kRoute, false, kView, kEverywhere, 200, {3, 2}, "5"},
        ViewCase{"BothPiecesShort", kRoute, true, kView, {}, 1000, {2, 2}, "2"},
        ViewCase{"BothPiecesShortSideRoute", kRoute, false, kView, kEverywhere, 1000, {2, 2}, "4"},
        ViewCase{"LargestInterval", kRoute, true, kView, {}, std::numeric_limits<int>::max(), {2, 2}, "2"},
        ViewCase{"IntervalZero", kRoute, true, kView, {}, 0, {0, 0}, "0"},
        ViewCase{"IntervalZeroSideRoute", kRoute, false, kView, kEverywhere, 0, {0, 0}, "0"},
        ViewCase{"IntervalMinusOne", kRoute, true, kView, {}, -1, {0, 0}, "0"},
        ViewCase{
            "LeastInterval", kRoute, false, kView, kEverywhere, std::numeric_limits<int>::min(), {0, 0}, "0"},
        ViewCase{"MainRouteIgnoresTheArea", kRoute, true, kView, kSmallArea, 100, {6, 2}, "8"},
        ViewCase{"AreaKeepsSome", kRoute, false, kView, kSmallArea, 30, {4, 0}, "4"},
        ViewCase{"NoArea", kRoute, false, kView, {}, 100, {0, 0}, "0"},
        ViewCase{"AreaOfTwoVertices", kRoute, false, kView, {{-0.001, 0}, {1, 1}}, 100, {0, 0}, "0"},
        ViewCase{"AreaOfThreeVertices", kRoute, false, kView, {{-1, -1}, {1, -1}, {0, 1}}, 100, {6, 2}, "8"},
        ViewCase{"StartOnAVertexOfTheAreaIsKept",
                 kRoute,
                 false,
                 kView,
                 {{-0.001, 0}, {-0.002, 0}, {-0.002, -1}},
                 100,
                 {1, 0},
                 "1"},
        ViewCase{"ClosingPointOutsideTheAreaIsDropped",
                 {{0.001, 0}, {0.002, 0}},
                 false,
                 kView,
                 kSmallArea,
                 1000,
                 {1},
                 "1"},
        ViewCase{"RunLeavesAndReentersTheAreaUnsplit",
                 {{0.0006, 0}, {0.0026, 0}, {0.0006, 0.0001}},
                 false,
                 kView,
                 kSmallArea,
                 20,
                 {11},
                 "11"},
        ViewCase{"AllEqual", {{0.005, 0}, {0.005, 0}, {0.005, 0}}, true, kView, {}, 30, {2}, "1"},
        ViewCase{"NaNStart", {{kNaN, 0}, {0.005, 0}, {0.006, 0}}, true, kView, {}, 30, {2}, "1"},
        ViewCase{"NaNStartSideRoute",
                 {{kNaN, 0}, {0.005, 0}, {0.006, 0}},
                 false,
                 kView,
                 kEverywhere,
                 30,
                 {1},
                 "1"},
        ViewCase{"NaNInTheMiddleEndsTheRun",
                 {{0.001, 0}, {0.002, 0}, {kNaN, 0}, {0.003, 0}, {0.004, 0}},
                 true,
                 kView,
                 {},
                 100,
                 {2},
                 "2"},
        ViewCase{"InvertedViewOnASegment",
                 {{-1, 0}, {1, 0}},
                 true,
                 {{0.01, 0.001}, {0, -0.001}},
                 {},
                 100000,
                 {3},
                 "3"},
        ViewCase{"InvertedViewContainsNoVertex",
                 {{0.005, 0.0005}},
                 true,
                 {{0.01, 0.001}, {0, -0.001}},
                 {},
                 30,
                 {},
                 "0"},
        ViewCase{
            "NaNViewContainsAll", {{5, 5}, {5.001, 5}}, true, {{kNaN, kNaN}, {kNaN, kNaN}}, {}, 50, {3}, "3"},
        ViewCase{"InfiniteView",
                 {{5, 5}, {5.001, 5}},
                 true,
                 {{-kInfinity, -kInfinity}, {kInfinity, kInfinity}},
                 {},
                 50,
                 {3},
                 "3"}),
    [](const auto& test) { return test.param.name; });

// ---- Exact bits -----------------------------------------------------------------------------------------------

TEST(GetInterpolateShapePoints, AShortPieceGivesItsFirstAndItsLastVertex) {
  const Runs expected{{kRoute[0], kRoute[3]}, {kRoute[4], kRoute[5]}};
  EXPECT_TRUE(SameBits(InterpolateQuietly(kRoute, true, kView, {}, 1000), expected));
  EXPECT_TRUE(SameBits(InterpolateQuietly(kRoute, false, kView, kEverywhere, 1000), expected));
}

TEST(GetInterpolateShapePoints, APieceOfTwoSamplesGetsNoClosingPoint) {
  // 111.3 m at 100 m: the start and one sample, and nothing at the end.
  const Runs runs = InterpolateQuietly({{0.001, 0}, {0.002, 0}}, true, kView, {}, 100);
  ASSERT_EQ(runs.size(), 1u);
  ASSERT_EQ(runs[0].size(), 2u);
  EXPECT_NEAR(runs[0][1].longitude, 0.0018983, 1e-7);
}

TEST(GetInterpolateShapePoints, ALargeIntervalIsNotRoundedToFloat) {
  const Line shape{{-179, 0}, {0.9, 0}};  // 20027 km
  const Rect view{{-180, -1}, {180, 1}};
  int differences = 0;
  for (const int interval : {16777217, 16777219, 18000001, 19999999}) {
    Line expected;
    VorelGeometryAlgorithm::CalcPointsInPolyline(shape, interval, -1, expected);
    ASSERT_EQ(expected.size(), 2u);
    EXPECT_TRUE(SameBits(InterpolateQuietly(shape, true, view, {}, interval), Runs{expected}));
    Line rounded;
    VorelGeometryAlgorithm::CalcPointsInPolyline(shape, static_cast<float>(interval), -1, rounded);
    differences += rounded[1] != expected[1];
  }
  EXPECT_GT(differences, 0);  // otherwise nothing was shown
}

// The composition of the public parts, step by step.
Runs Compose(const Line& shape, bool isMainRoute, const Rect& view, const Line& area, int interval,
             int& logged) {
  Runs pieces;
  VorelGeometryAlgorithm::CutPolyline(shape, view, pieces);
  Runs runs;
  logged = 0;
  for (const Line& piece : pieces) {
    Line samples;
    if (interval > 0 && !piece.empty()) {
      VorelGeometryAlgorithm::CalcPointsInPolyline(piece, interval, -1, samples);
      if (isMainRoute) logged += static_cast<int>(samples.size());
      if (samples.size() == 1) samples.push_back(piece.back());
    }
    if (!isMainRoute) {
      samples.erase(std::remove_if(samples.begin(), samples.end(),
                                   [&area](const GeoCoordinate& point) {
                                     return !VorelGeometryAlgorithm::IsPointInPolygon(area, point);
                                   }),
                    samples.end());
      logged += static_cast<int>(samples.size());
    }
    runs.push_back(samples);
  }
  return runs;
}

Rect SomeView(std::mt19937& generator, const Line& line, double degrees) {
  const GeoCoordinate& vertex = line[generator() % line.size()];
  const double width = degrees * std::exp(Uniform(generator, -2, 2));
  const double height = degrees * std::exp(Uniform(generator, -2, 2));
  const GeoCoordinate low(vertex.longitude - Uniform(generator, -0.2, 1.2) * width,
                          vertex.latitude - Uniform(generator, -0.2, 1.2) * height);
  return {low, {low.longitude + width, low.latitude + height}};
}

// A triangle to a pentagon about some place of the line.
Line SomeArea(std::mt19937& generator, const Line& line, double degrees) {
  const GeoCoordinate centre = line[generator() % line.size()];
  Line area;
  const int count = static_cast<int>(generator() % 6);  // 0 to 2 vertices contain nothing
  for (int i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * i / count;
    area.push_back(
        {centre.longitude + degrees * std::cos(angle), centre.latitude + degrees * std::sin(angle)});
  }
  return area;
}

class GetInterpolateShapePointsComposition : public GetInterpolateShapePointsLog {
 protected:
  // Against the composition of the public parts and against the plain twin: points and logged count.
  void Check(const Line& shape, const Rect& view, const Line& area, int interval) {
    SCOPED_TRACE(testing::Message() << "view " << Paste(view) << ", area " << Paste(area) << ", interval "
                                    << interval);
    for (const bool isMainRoute : {true, false}) {
      memory_->Clear();
      const Runs runs = InterpolateQuietly(shape, isMainRoute, view, area, interval);
      int composedCount = 0;
      ASSERT_TRUE(SameBits(runs, Compose(shape, isMainRoute, view, area, interval, composedCount)))
          << Paste(shape);
      Runs twin{{{1, 2}}};
      const int twinCount =
          reference::GetInterpolateShapePoints(shape, isMainRoute, view, area, interval, "test", twin);
      ASSERT_TRUE(SameBits(runs, twin)) << Paste(shape);
      const std::vector<plog::StoredRecord> records = memory_->Records();
      ASSERT_EQ(records.size(), shape.empty() ? 0u : 1u);
      if (shape.empty()) {
        ASSERT_EQ(twinCount, -1);
        continue;
      }
      ASSERT_EQ(twinCount, composedCount);
      ASSERT_EQ(records[0].message, std::string("[Vorel][test][Geometry]main route:") +
                                        (isMainRoute ? "1" : "0") +
                                        ",pt count:" + std::to_string(composedCount));
    }
  }
};

// ---- Properties and the plain twin ----------------------------------------------------------------------------

TEST_F(GetInterpolateShapePointsComposition, OnRandomLines) {
  constexpr unsigned kSeed = 43001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 1 + static_cast<int>(generator() % 60));
    const int interval = static_cast<int>(generator() % 120) - 5;
    Check(line, SomeView(generator, line, 0.002), SomeArea(generator, line, 0.002), interval);
    if (HasFatalFailure()) return;
  }
}

TEST_F(GetInterpolateShapePointsComposition, OnWildLines) {
  constexpr unsigned kSeed = 43002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::WildLine(generator, 1 + static_cast<int>(generator() % 30));
    const int interval = 40000 + static_cast<int>(generator() % 4000000);  // the lines are worlds long
    Check(line, SomeView(generator, line, 30), SomeArea(generator, line, 30), interval);
    if (HasFatalFailure()) return;
  }
}

// Not JOIN_AWKWARD_LINES, which has no fixture: the record counts here.
TEST_F(GetInterpolateShapePointsComposition, OnAwkwardLines) {
  std::mt19937 generator(43003);
  for (const NamedLine& line : vorel::test::AwkwardLines()) {
    SCOPED_TRACE(line.name);
    for (const int interval : {std::numeric_limits<int>::min(), -1, 0, 25000, 10000000}) {
      for (const Rect& view : {Rect{{7, 47}, {8, 48}}, Rect{{-180, -90}, {180, 90}}, Rect{{8, 48}, {7, 47}},
                               Rect{{kNaN, kNaN}, {kNaN, kNaN}}, Rect{{0, 0}, {0, 0}}}) {
        Check(line.points, view, kEverywhere, interval);
        Check(line.points, view, {{7, 47}, {8, 47}, {8, 48}, {7, 48}}, interval);
        Check(line.points, view, line.points, interval);
        if (HasFatalFailure()) return;
      }
    }
  }
}

JOIN_AWKWARD_LINES(GetInterpolateShapePoints, [](const Line& line) {
  for (const bool isMainRoute : {true, false}) {
    Runs twin;
    const Rect view{{7.5005, 47}, {8, 47.505}};
    reference::GetInterpolateShapePoints(line, isMainRoute, view, line, 100000, "test", twin);
    EXPECT_TRUE(SameBits(InterpolateQuietly(line, isMainRoute, view, line, 100000), twin));
  }
})

TEST_F(GetInterpolateShapePointsComposition, OnRealRoutesAndAreas) {
  const std::vector<NamedLine> routes = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(routes);
  std::mt19937 generator(43004);
  for (const NamedLine& route : routes) {
    SCOPED_TRACE(route.name);
    for (const double degrees : {0.003, 0.1}) {
      const Rect view = SomeView(generator, route.points, degrees);
      Check(route.points, view, SomeArea(generator, route.points, degrees), 50);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(GetInterpolateShapePoints, ShapeAndAreaMayBeTheSame) {
  const Line ring{{0.001, -0.0005}, {0.004, -0.0005}, {0.004, 0.0005}, {0.001, 0.0005}};
  const Line copy = ring;
  EXPECT_TRUE(SameBits(InterpolateQuietly(ring, false, kView, ring, 20),
                       InterpolateQuietly(ring, false, kView, copy, 20)));
}

// ---- The log record -------------------------------------------------------------------------------------------

long long Milliseconds(const plog::Time& time) {
  return static_cast<long long>(time.seconds) * 1000 + time.milliseconds;
}

TEST_F(GetInterpolateShapePointsLog, FillsEveryField) {
  std::string reserved = "not seen";
  int flags = -1;
  const auto callback = std::make_shared<plog::CallbackSink>([&](const plog::Record& record) {
    reserved = record.firstReserved + record.secondReserved;
    flags = record.flags;
  });
  ASSERT_TRUE(Logger::AddSink(kId, callback));
  Runs out;
  plog::Time before;
  plog::Util::FetchTime(&before);
  VorelGeometryAlgorithm::GetInterpolateShapePoints(kRoute, true, kView, {}, 100, "Demo", out);
  plog::Time after;
  plog::Util::FetchTime(&after);

  const std::vector<plog::StoredRecord> records = memory_->Records();
  ASSERT_EQ(records.size(), 1u);
  const plog::StoredRecord& record = records[0];
  EXPECT_EQ(static_cast<int>(record.level), 0);
  EXPECT_EQ(record.function, "GetInterpolateShapePoints");
  EXPECT_NE(record.file.find("vorel_geometry_algorithm"), std::string::npos) << record.file;
  EXPECT_GT(record.line, 10u);
  EXPECT_LT(record.line, 200u);
  EXPECT_EQ(record.instanceId, kId);
  EXPECT_EQ(record.tags, std::vector<std::string>{""});
  EXPECT_EQ(record.message, "[Vorel][Demo][Geometry]main route:1,pt count:8");
  EXPECT_EQ(record.threadId, plog::Util::GetTid());
  EXPECT_LE(Milliseconds(before), Milliseconds(record.time));
  EXPECT_LE(Milliseconds(record.time), Milliseconds(after));
  EXPECT_EQ(reserved, "");
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(vorel::test::TagNameCalls(), std::vector<int>{11});
}

TEST_F(GetInterpolateShapePointsLog, TheLineIsThatOfTheOneStatement) {
  std::size_t line = 0;
  for (const bool isMainRoute : {true, false}) {
    memory_->Clear();
    InterpolateQuietly(kRoute, isMainRoute, kView, kEverywhere, 100);
    ASSERT_EQ(memory_->Count(), 1u);
    EXPECT_TRUE(line == 0 || memory_->Records()[0].line == line);
    line = memory_->Records()[0].line;
  }
}

TEST_F(GetInterpolateShapePointsLog, ForTheMainRouteTheClosingPointOfAShortPieceIsNotCounted) {
  EXPECT_EQ(MessageOf(kRoute, true, kView, {}, 1000), "[Vorel][Demo][Geometry]main route:1,pt count:2");
  EXPECT_EQ(MessageOf(kRoute, false, kView, kEverywhere, 1000),
            "[Vorel][Demo][Geometry]main route:0,pt count:4");
}

TEST_F(GetInterpolateShapePointsLog, TakesAnyOwner) {
  const std::string nul("a\0b", 3);
  const std::string percent = "%s%n {} ][ \"\\";
  const std::string lines = "two\nlines\r\t\x1b";
  const std::string unicode = "\xc3\xa4\xe2\x82\xac \xff\xfe";  // the end is no valid text
  const std::string longOwner(5000, 'x');
  for (const std::string& owner : {std::string(), nul, percent, lines, unicode, longOwner}) {
    EXPECT_EQ(MessageOf(kRoute, true, kView, {}, 100, owner),
              "[Vorel][" + owner + "][Geometry]main route:1,pt count:8");
  }
}

TEST_F(GetInterpolateShapePointsLog, TheCountHasNoGroupsOfDigitsWhateverTheLocale) {
  struct Groups : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "yes"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Groups));
  // 1 degree of the equator at 1 m: the start and 111319 samples.
  const std::string message = MessageOf({{0, 0}, {1, 0}}, true, {{0, 0}, {1, 1}}, {}, 1);
  std::locale::global(before);
  EXPECT_EQ(message, "[Vorel][Demo][Geometry]main route:1,pt count:111320");
}

TEST_F(GetInterpolateShapePointsLog, NoRecordForAnEmptyShape) {
  EXPECT_EQ(MessageOf({}, true, kView, {}, 100), "no record");
  EXPECT_TRUE(vorel::test::TagNameCalls().empty());
  EXPECT_EQ(MessageOf({{1, 1}}, true, kView, {}, 100), "[Vorel][Demo][Geometry]main route:1,pt count:0");
}

TEST_F(GetInterpolateShapePointsLog, CarriesTheThreadThatCalls) {
  std::uint32_t id = 0;
  std::thread thread([&id] {
    id = plog::Util::GetTid();
    InterpolateQuietly(kRoute, true, kView, {}, 100);
  });
  thread.join();
  ASSERT_EQ(memory_->Count(), 1u);
  EXPECT_EQ(memory_->Records()[0].threadId, id);
  EXPECT_NE(id, plog::Util::GetTid());
}

TEST_F(GetInterpolateShapePointsLog, GoesToTheLoggerOfTheIdAtTheTimeOfTheCall) {
  const auto other = std::make_shared<plog::MemorySink>();
  constexpr unsigned kOtherId = 4294967295u;
  ASSERT_TRUE(Logger::Register(kOtherId, LogLevel::kDebug, {other}));
  vorel_log_instance_id_ = kOtherId;
  InterpolateQuietly(kRoute, true, kView, {}, 100);
  vorel_log_instance_id_ = kId;
  Logger::Unregister(kOtherId);
  EXPECT_EQ(memory_->Count(), 0u);
  ASSERT_EQ(other->Count(), 1u);
  EXPECT_EQ(other->Records()[0].instanceId, kOtherId);
}

TEST_F(GetInterpolateShapePointsLog, ADisabledLevelEvaluatesNothing) {
  const Runs expected = InterpolateQuietly(kRoute, true, kView, {}, 100);
  const auto allocationsOfACall = [&expected] {
    Runs out;
    const std::string owner = "Demo";
    const vorel::test::AllocationCounter allocations;
    VorelGeometryAlgorithm::GetInterpolateShapePoints(kRoute, true, kView, {}, 100, owner, out);
    const std::size_t count = allocations.Count();
    EXPECT_TRUE(SameBits(out, expected));
    return count;
  };
  const std::size_t enabled = allocationsOfACall();
  ASSERT_EQ(memory_->Count(), 2u);
  memory_->Clear();
  vorel::test::ResetTagNameCalls();

  ASSERT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kInfo));
  const std::size_t disabled = allocationsOfACall();
  EXPECT_TRUE(vorel::test::TagNameCalls().empty());
  EXPECT_EQ(memory_->Count(), 0u);
  Logger::Unregister(kId);
  EXPECT_EQ(allocationsOfACall(), disabled);
  EXPECT_TRUE(vorel::test::TagNameCalls().empty());
  EXPECT_LT(disabled, enabled);
  // What the points themselves need: the pieces and the runs, and the name for the timer.
  Runs runs;
  const vorel::test::AllocationCounter allocations;
  const std::string timerName = "GetInterpolateShapePoints";
  Runs pieces;
  VorelGeometryAlgorithm::CutPolyline(kRoute, kView, pieces);
  runs.resize(pieces.size());
  for (std::size_t j = 0; j < pieces.size(); ++j) {
    VorelGeometryAlgorithm::CalcPointsInPolyline(pieces[j], 100, -1, runs[j]);
  }
  EXPECT_EQ(disabled, allocations.Count());
}

TEST_F(GetInterpolateShapePointsLog, AThrowingSinkChangesNothing) {
  const auto thrower =
      std::make_shared<plog::CallbackSink>([](const plog::Record&) { throw std::runtime_error("full"); });
  const Runs expected = InterpolateQuietly(kRoute, true, kView, {}, 100);
  ASSERT_TRUE(Logger::AddSink(kId, thrower));
  EXPECT_TRUE(SameBits(InterpolateQuietly(kRoute, true, kView, {}, 100), expected));
}

// ---- The timer ------------------------------------------------------------------------------------------------

struct Measurement {
  std::string owner;
  std::string name;
  std::chrono::nanoseconds elapsed{-1};
};

class GetInterpolateShapePointsTimer : public testing::Test {
 protected:
  GetInterpolateShapePointsTimer() {
    vorel::logging::SetElapsedTimeListener(
        [this](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
          measurements_.push_back({owner, name, elapsed});
        });
  }
  ~GetInterpolateShapePointsTimer() override { vorel::logging::SetElapsedTimeListener(nullptr); }

  void ExpectOneMeasurement(const std::string& owner, std::chrono::nanoseconds atMost) {
    ASSERT_EQ(measurements_.size(), 1u);
    EXPECT_EQ(measurements_[0].owner, owner);
    EXPECT_EQ(measurements_[0].name, "GetInterpolateShapePoints");
    EXPECT_GE(measurements_[0].elapsed.count(), 0);
    EXPECT_LE(measurements_[0].elapsed, atMost);
    measurements_.clear();
  }

  std::vector<Measurement> measurements_;
};

TEST_F(GetInterpolateShapePointsTimer, ReportsEachCallOnce) {
  for (const std::string& owner : {std::string("Demo"), std::string(), std::string("a\0\n%s", 5)}) {
    for (const bool isMainRoute : {true, false}) {
      for (const Line& shape : {kRoute, Line{}, Line{{1, 1}}}) {  // the empty one returns early
        Runs out;
        const auto before = std::chrono::steady_clock::now();
        VorelGeometryAlgorithm::GetInterpolateShapePoints(shape, isMainRoute, kView, kEverywhere, 100, owner,
                                                          out);
        ExpectOneMeasurement(owner, std::chrono::steady_clock::now() - before);
      }
    }
  }
}

TEST_F(GetInterpolateShapePointsTimer, RunsUntilTheRecordIsWritten) {
  // The timer starts first and ends last: the sink sees no measurement yet.
  std::size_t measurementsSeen = 99;
  vorel_log_instance_id_ = kId;
  Logger::Register(kId, LogLevel::kDebug, {std::make_shared<plog::CallbackSink>([&](const plog::Record&) {
                     measurementsSeen = measurements_.size();
                   })});
  InterpolateQuietly(kRoute, true, kView, {}, 100);
  Logger::Unregister(kId);
  vorel_log_instance_id_ = 0;
  EXPECT_EQ(measurementsSeen, 0u);
  EXPECT_EQ(measurements_.size(), 1u);
}

// No allocation of its own: it also runs where memory has run out.
struct CallCount {
  int calls = 0;
  bool isNameRight = true;
};

TEST(GetInterpolateShapePointsUnwinding, TheTimerReportsOnceAndWhatIsInOutIsValid) {
  CallCount seen;
  vorel::logging::SetElapsedTimeListener(
      [&seen](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
        ++seen.calls;
        seen.isNameRight &= owner == "Demo" && name == "GetInterpolateShapePoints" && elapsed.count() >= 0;
      });
  for (const bool isMainRoute : {true, false}) {
    const Runs whole = InterpolateQuietly(kRoute, isMainRoute, kView, kEverywhere, 50);
    const std::string owner = "Demo";
    int failures = 0;
    bool failed = true;
    for (std::size_t allowed = 0; failed; ++allowed) {
      seen = CallCount();
      Runs out{{{1, 2}}};
      failed = false;
      {
        const vorel::test::AllocationLimit limit(allowed);
        try {
          VorelGeometryAlgorithm::GetInterpolateShapePoints(kRoute, isMainRoute, kView, kEverywhere, 50,
                                                            owner, out);
        } catch (const std::bad_alloc&) {
          failed = true;
        }
      }
      // The first allocation is that of the timer's name: without it there is no timer yet.
      EXPECT_EQ(seen.calls, allowed == 0 ? 0 : 1) << "allowed " << allowed;
      EXPECT_TRUE(seen.isNameRight);
      if (failed) {
        ++failures;
        EXPECT_TRUE(allowed == 0 || out.size() <= whole.size());
      } else {
        EXPECT_TRUE(SameBits(out, whole));
      }
    }
    EXPECT_GT(failures, 10);
  }
  vorel::logging::SetElapsedTimeListener(nullptr);
}

TEST(GetInterpolateShapePointsUnwinding, MemoryThatRunsOutWhileLoggingReachesNobody) {
  vorel_log_instance_id_ = kId;
  Logger::Register(kId, LogLevel::kDebug, {std::make_shared<plog::MemorySink>()});
  const Runs whole = InterpolateQuietly(kRoute, true, kView, {}, 50);
  const std::string owner(500, 'o');
  int refusedQuietly = 0;
  for (std::size_t allowed = 0; allowed < 200; ++allowed) {
    Runs out;
    bool failed = false;
    std::size_t refused = 0;
    {
      const vorel::test::AllocationLimit limit(allowed);
      try {
        VorelGeometryAlgorithm::GetInterpolateShapePoints(kRoute, true, kView, {}, 50, owner, out);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      refused = limit.RefusedCount();
    }
    if (failed) continue;
    EXPECT_TRUE(SameBits(out, whole)) << "allowed " << allowed;
    refusedQuietly += refused > 0;
  }
  EXPECT_GT(refusedQuietly, 0);
  Logger::Unregister(kId);
  vorel_log_instance_id_ = 0;
}

}  // namespace
