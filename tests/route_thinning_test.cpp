// Thinning of route points, and its timer.

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/sink.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/route_thinning_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"
#include "tests/support/allocation_counter.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::Line;
using vorel::test::RandomLine;
using vorel::test::SameBits;
using vorel::test::Uniform;
using vorel::test::WildLine;
using Algorithm = vorel::VorelGeometryAlgorithm;
using Route = std::vector<Line>;

constexpr std::size_t kCap = 1501;
constexpr int kNoWholeSegments = 0;  // a point limit that makes every segment with a point long

/// The point on the equator's meridian 0 whose distance from (0, 0) is `metres` to the last bit: so near to 0 degrees
/// of latitude doubles are fine enough to have it.
GeoCoordinate ExactlyNorth(double metres) {
  const GeoCoordinate origin(0.0, 0.0);
  double low = metres / 120000.0;
  double high = metres / 100000.0;
  for (int i = 0; i < 200; ++i) {
    const double middle = low + (high - low) / 2;
    (origin.DistanceTo({0.0, middle}) < metres ? low : high) = middle;
  }
  EXPECT_EQ(origin.DistanceTo({0.0, high}), metres);
  return {0.0, high};
}

/// Points on a parallel, each `step` degrees of longitude east of the one before.
Line East(std::size_t count, double step, double latitude = 0.0) {
  Line line;
  for (std::size_t i = 0; i < count; ++i) line.emplace_back(step * static_cast<double>(i), latitude);
  return line;
}

/// Elements of `line`.
Line Pick(const Line& line, const std::vector<std::size_t>& indices) {
  Line picked;
  for (const std::size_t index : indices) picked.push_back(line[index]);
  return picked;
}

// ---- One route: edges -----------------------------------------------------------------------------------------------

struct ThinningCase {
  const char* name;
  Route route;
  float minSpacing;
  int pointLimit;
  Line expected;
};

class ThinningEdges : public testing::TestWithParam<ThinningCase> {};

TEST_P(ThinningEdges, Hold) {
  const ThinningCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints(c.route, c.minSpacing, c.pointLimit), c.expected));
}

// About 11.13 m between neighbours.
const Line kSix = East(6, 1e-4);
const Line kStill(5, GeoCoordinate(7.5, 47.5));

INSTANTIATE_TEST_SUITE_P(
    All, ThinningEdges,
    testing::Values(
        ThinningCase{"NoSegments", {}, 15.0f, 2, {}}, ThinningCase{"EmptySegments", {{}, {}}, 15.0f, 2, {}},
        ThinningCase{"EmptySegmentIsShortForLimitZero", {{}, {{7.5, 47.5}}}, 15.0f, 0, {{7.5, 47.5}}},
        ThinningCase{"OnePointThinned", {{{7.5, 47.5}}}, 15.0f, 0, {{7.5, 47.5}}},
        ThinningCase{"OnePointWhole", {{{7.5, 47.5}}}, 15.0f, 1, {{7.5, 47.5}}},
        ThinningCase{"EverySecond", {kSix}, 15.0f, 0, Pick(kSix, {0, 2, 4})},
        ThinningCase{"EveryThird", {kSix}, 30.0f, 0, Pick(kSix, {0, 3})},
        ThinningCase{"AllFarEnough", {kSix}, 11.0f, 0, kSix},
        ThinningCase{"LastIsNotForcedIn", {kSix}, 40.0f, 0, Pick(kSix, {0, 4})},
        ThinningCase{"AllWithinTheSpacing", {kSix}, 60.0f, 0, Pick(kSix, {0})},
        ThinningCase{"ZeroSpacingDropsRepeats", {kStill}, 0.0f, 0, Pick(kStill, {0})},
        ThinningCase{"ZeroSpacingKeepsTheRest", {kSix}, 0.0f, 0, kSix},
        ThinningCase{"NegativeSpacingKeepsRepeats", {kStill}, -1.0f, 0, kStill},
        ThinningCase{"NaNSpacingKeepsWhatIsOutsideOfTheBox",
                     {{{7.5, 47.5}, {7.50005, 47.5}, {7.5002, 47.5}, {7.50021, 47.5}}},
                     kNaNFloat,
                     0,
                     {{7.5, 47.5}, {7.5002, 47.5}}},
        ThinningCase{"AboveTheBoxesKeepsAll", {kStill}, 12001.0f, 0, kStill},
        ThinningCase{"InfiniteSpacingKeepsAll", {kStill}, kInfinityFloat, 0, kStill},
        ThinningCase{"AtTheLargestBox", {kStill}, 12000.0f, 0, Pick(kStill, {0})},
        ThinningCase{
            "BoxBeforeDistance", {{{0.0, 80.0}, {0.00015, 80.0}}}, 10.0f, 0, {{0.0, 80.0}, {0.00015, 80.0}}},
        ThinningCase{"NaNPointIsDropped",
                     {{{7.5, 47.5}, {kNaN, 47.5}, {7.6, 47.5}}},
                     15.0f,
                     0,
                     {{7.5, 47.5}, {7.6, 47.5}}},
        ThinningCase{"NaNStartDropsTheRest",
                     {{{kNaN, kNaN}, {7.5, 47.5}, {7.6, 47.5}}, {{7.7, 47.5}}},
                     15.0f,
                     0,
                     {{kNaN, kNaN}, {7.7, 47.5}}},
        ThinningCase{
            "HalfNaNOutsideByTheOther", {{{7.5, 47.5}, {kNaN, 48.5}}}, 15.0f, 0, {{7.5, 47.5}, {kNaN, 48.5}}},
        ThinningCase{"SharedPointComesTwice",
                     {kSix, {kSix[5], {1.0, 0.0}}},
                     11.0f,
                     0,
                     {kSix[0], kSix[1], kSix[2], kSix[3], kSix[4], kSix[5], kSix[5], {1.0, 0.0}}},
        ThinningCase{"EachSegmentStartsAnew",
                     {Pick(kSix, {0, 1, 2}), Pick(kSix, {3, 4, 5})},
                     15.0f,
                     0,
                     Pick(kSix, {0, 2, 3, 5})},
        ThinningCase{"SpacingFromTheLastKept",
                     {{{0.0, 0.0}, {1e-4, 0.0}, {2e-4, 0.0}, {1e-4, 0.0}, {0.0, 0.0}}},
                     15.0f,
                     0,
                     {{0.0, 0.0}, {2e-4, 0.0}, {0.0, 0.0}}},
        ThinningCase{
            "ShortAndLongMixed", {Pick(kSix, {0, 1, 2, 3}), kSix}, 60.0f, 2, Pick(kSix, {0, 1, 2, 3, 0})}),
    [](const auto& test) { return test.param.name; });

TEST(Thinning, DropsAPointExactlyAtTheSpacing) {
  const GeoCoordinate north = ExactlyNorth(20.0);
  const Route route{{{0.0, 0.0}, north}};
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints(route, 20.0f, 0), Line{{0.0, 0.0}}));
  const float below = std::nextafter(20.0f, 0.0f);
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints(route, below, 0), Line{{0.0, 0.0}, north}));
  GeoCoordinate further = north;
  while (!(GeoCoordinate().DistanceTo(further) > 20.0))
    further.latitude = std::nextafter(further.latitude, 1.0);
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints({{{0.0, 0.0}, further}}, 20.0f, 0),
                       Line{{0.0, 0.0}, further}))
      << "the spacing is compared in double";
}

TEST(Thinning, TakesTheKeptPointAsTheCentreOfTheBox) {
  // The box about the kept point and the one about the tested point round differently near longitude 0.
  const double halfWidth = static_cast<double>(0.0001f);
  std::mt19937 generator(35000);
  int told = 0;
  for (int run = 0; run < 1000; ++run) {
    const GeoCoordinate anchor(vorel::test::Uniform(generator, -1e-6, 1e-6) / 3.0, 85.0);
    const GeoCoordinate point(anchor.longitude + halfWidth, 85.0);
    if (!(point.longitude - halfWidth > anchor.longitude)) continue;
    ++told;
    ASSERT_EQ(Algorithm::PreProcessRoutePoints({{anchor, point}}, 10.0f, 0).size(), 1u) << "run " << run;
  }
  EXPECT_GT(told, 100);  // seed 35000
}

struct LimitCase {
  const char* name;
  int pointLimit;
  std::size_t size;
  bool whole;
};

class ThinningLimits : public testing::TestWithParam<LimitCase> {};

TEST_P(ThinningLimits, Hold) {
  // Thinned, equal points give one.
  const Route route{Line(GetParam().size, GeoCoordinate(7.5, 47.5))};
  EXPECT_EQ(Algorithm::PreProcessRoutePoints(route, 15.0f, GetParam().pointLimit).size(),
            GetParam().whole ? GetParam().size : 1u);
}

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();
constexpr int kQuarter = 1 << 30;  // doubled it leaves the range

INSTANTIATE_TEST_SUITE_P(
    All, ThinningLimits,
    testing::Values(LimitCase{"TwoWhole", 2, 4, true}, LimitCase{"TwoThinned", 2, 5, false},
                    LimitCase{"OneWhole", 1, 2, true}, LimitCase{"OneThinned", 1, 3, false},
                    LimitCase{"ZeroThinned", 0, 2, false}, LimitCase{"NegativeWhole", -1, 1000, true},
                    LimitCase{"LargestWrapsToNegative", kLargest, 1000, true},
                    LimitCase{"QuarterWrapsToNegative", kQuarter, 1000, true},
                    LimitCase{"JustBelowQuarter", kQuarter - 1, 1000, true},
                    LimitCase{"SmallestWrapsToZero", kSmallest, 2, false},
                    LimitCase{"NextToSmallestWrapsToTwoWhole", kSmallest + 1, 2, true},
                    LimitCase{"NextToSmallestWrapsToTwoThinned", kSmallest + 1, 3, false},
                    LimitCase{"NegativeQuarterWhole", -kQuarter, 1000, true},
                    LimitCase{"BelowNegativeQuarterWrapsToLarge", -kQuarter - 1, 1000, true}),
    [](const auto& test) { return test.param.name; });

// ---- One route: the cap ---------------------------------------------------------------------------------------------

TEST(ThinningCap, StopsALongSegmentAtTheCap) {
  const Line line = East(2000, 1e-3);
  const Line expected(line.begin(), line.begin() + kCap);
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints({line}, 15.0f, kNoWholeSegments), expected));
}

TEST(ThinningCap, StopsAmongManyLongSegments) {
  const Line line = East(400, 1e-3);
  const Line points = Algorithm::PreProcessRoutePoints(Route(10, line), 15.0f, kNoWholeSegments);
  ASSERT_EQ(points.size(), kCap);
  EXPECT_TRUE(SameBits(points.back(), line[(kCap - 1) % 400]));
}

TEST(ThinningCap, StopsAtTheFirstPointOfASegment) {
  const Line line = East(1500, 1e-3);
  const Line points = Algorithm::PreProcessRoutePoints({line, line, line}, 15.0f, kNoWholeSegments);
  ASSERT_EQ(points.size(), kCap);
  EXPECT_TRUE(SameBits(points.back(), line[0]));
}

TEST(ThinningCap, LetsAShortSegmentPassTheCap) {
  const Line line = East(1500, 1e-3);
  const Line four = East(4, 1e-3, 1.0);
  const Line points = Algorithm::PreProcessRoutePoints({line, four, four, line}, 15.0f, 2);
  ASSERT_EQ(points.size(), 1504u);
  EXPECT_TRUE(SameBits(points.back(), four[3]));
}

TEST(ThinningCap, DoesNotCutASegmentCopiedWhole) {
  const Line line = East(5000, 1e-3);
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints({line, line}, 15.0f, -1), line));
}

TEST(ThinningCap, StopsBeforeTheNextSegmentAtExactlyTheCap) {
  const Line line = East(kCap, 1e-3);
  EXPECT_TRUE(SameBits(Algorithm::PreProcessRoutePoints({line, {{7.5, 47.5}}}, 15.0f, -1), line));
  const Line shorter(line.begin(), line.end() - 1);
  EXPECT_EQ(Algorithm::PreProcessRoutePoints({shorter, {{7.5, 47.5}}}, 15.0f, -1).size(), kCap);
}

TEST(Thinning, WritesNoLogRecord) {
  constexpr unsigned kId = 4400;
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(plog::Logger::Register(kId, plog::LogLevel::kDebug, {memory}));
  vorel::logging::vorel_log_instance_id_ = kId;
  std::vector<Line> out;
  Algorithm::PreProcessRoutePoints({kSix}, 15.0f, 0);
  Algorithm::PreProcessRoutePoints({{kSix}}, 1, 15.0f, 0, "Demo", out);
  plog::Logger::Unregister(kId);
  vorel::logging::vorel_log_instance_id_ = 0;
  EXPECT_EQ(memory->Count(), 0u);
}

// ---- Several routes: edges ------------------------------------------------------------------------------------------

struct CountCase {
  const char* name;
  int routeCount;
  std::size_t results;
};

class SeveralRoutes : public testing::TestWithParam<CountCase> {};

TEST_P(SeveralRoutes, GiveOneResultEach) {
  const std::vector<Route> routes{{kSix}, {}, {kStill, kSix}};
  const std::vector<Line> all{Pick(kSix, {0, 2, 4}), {}, {kStill[0], kSix[0], kSix[2], kSix[4]}};
  std::vector<Line> out{kSix, kSix, kSix, kSix, kSix};  // cleared
  Algorithm::PreProcessRoutePoints(routes, GetParam().routeCount, 15.0f, 0, "Demo", out);
  EXPECT_TRUE(SameBits(
      out, std::vector<Line>(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(GetParam().results))));
}

INSTANTIATE_TEST_SUITE_P(All, SeveralRoutes,
                         testing::Values(CountCase{"All", 3, 3}, CountCase{"SomeFromTheFront", 2, 2},
                                         CountCase{"One", 1, 1}, CountCase{"None", 0, 0},
                                         CountCase{"Negative", -1, 0}, CountCase{"Smallest", kSmallest, 0},
                                         CountCase{"OneTooMany", 4, 3}, CountCase{"Largest", kLargest, 3}),
                         [](const auto& test) { return test.param.name; });

TEST(SeveralRoutes, PassSpacingAndLimitOn) {
  const std::vector<Route> routes{{kSix}};
  std::vector<Line> out;
  Algorithm::PreProcessRoutePoints(routes, 1, 30.0f, 2, "Demo", out);
  EXPECT_TRUE(SameBits(out, std::vector<Line>{Pick(kSix, {0, 3})}));
  Algorithm::PreProcessRoutePoints(routes, 1, 30.0f, 3, "Demo", out);
  EXPECT_TRUE(SameBits(out, std::vector<Line>{kSix}));
}

// ---- The timer ------------------------------------------------------------------------------------------------------

class ThinningTimer : public testing::Test {
 protected:
  ThinningTimer() {
    // Allocates nothing, so that it works while memory is refused.
    vorel::logging::SetElapsedTimeListener(
        [this](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
          ++reports_;
          resultsAtReport_ = watched_ == nullptr ? 0 : watched_->size();
          fits_ = fits_ && owner == "Demo" && name == "PreProcessRoutePoints" && elapsed.count() >= 0;
        });
  }
  ~ThinningTimer() override { vorel::logging::SetElapsedTimeListener(nullptr); }

  int reports_ = 0;
  bool fits_ = true;
  const std::vector<Line>* watched_ = nullptr;
  std::size_t resultsAtReport_ = 0;
};

TEST_F(ThinningTimer, ReportsSeveralRoutesOnce) {
  std::vector<Line> out;
  watched_ = &out;
  Algorithm::PreProcessRoutePoints({{kSix}, {kSix}}, 2, 15.0f, 0, "Demo", out);
  EXPECT_EQ(reports_, 1);
  EXPECT_EQ(resultsAtReport_, 2u) << "runs until the function returns";
  EXPECT_TRUE(fits_);
}

TEST_F(ThinningTimer, ReportsNoRoutesToo) {
  std::vector<Line> out;
  Algorithm::PreProcessRoutePoints({{kSix}}, 0, 15.0f, 0, "Demo", out);
  EXPECT_EQ(reports_, 1);
  Algorithm::PreProcessRoutePoints({{kSix}}, -3, 15.0f, 0, "Demo", out);
  EXPECT_EQ(reports_, 2);
  Algorithm::PreProcessRoutePoints(std::vector<Route>(), 5, 15.0f, 0, "Demo", out);
  EXPECT_EQ(reports_, 3);
  EXPECT_TRUE(fits_);
}

TEST_F(ThinningTimer, IsNotThereForOneRoute) {
  Algorithm::PreProcessRoutePoints({kSix}, 15.0f, 0);
  EXPECT_EQ(reports_, 0);
}

TEST_F(ThinningTimer, ReportsWhenAnExceptionLeaves) {
  const std::vector<Route> routes{{kSix}, {kSix}};
  const std::string owner = "Demo";
  int failures = 0;
  // The first allocation is the timer's own name; every later one fails once.
  for (std::size_t allowed = 1;; ++allowed) {
    std::vector<Line> out;
    reports_ = 0;
    bool threw = false;
    {
      const vorel::test::AllocationLimit limit(allowed);
      try {
        Algorithm::PreProcessRoutePoints(routes, 2, 15.0f, 0, owner, out);
      } catch (const std::bad_alloc&) {
        threw = true;
      }
    }
    EXPECT_EQ(reports_, 1) << allowed << " allocations allowed";
    EXPECT_TRUE(fits_);
    if (!threw) break;
    ++failures;
  }
  EXPECT_GT(failures, 3);
}

// ---- Properties -----------------------------------------------------------------------------------------------------

/// Kept neighbours are as far apart as the rule wants: outside of the box, or measured.
void ExpectSpaced(const Line& line, float minSpacing) {
  const Line kept = Algorithm::PreProcessRoutePoints({line}, minSpacing, kNoWholeSegments);
  ASSERT_LE(kept.size(), kCap);
  ASSERT_EQ(kept.empty(), line.empty());
  for (std::size_t i = 1; i < kept.size(); ++i) {
    // Exact: the rule itself, no slack is needed.
    ASSERT_TRUE(!Algorithm::IsPointNearOtherOne(kept[i - 1], minSpacing, kept[i]) ||
                kept[i - 1].DistanceTo(kept[i]) > static_cast<double>(minSpacing))
        << "point " << i;
  }
  // What was dropped lies no further than the spacing from a kept point before it.
  std::size_t next = 0;
  for (const GeoCoordinate& point : line) {
    if (next < kept.size() && point == kept[next]) {
      ++next;
    } else if (kept.size() < kCap) {
      ASSERT_LE(kept[next - 1].DistanceTo(point), static_cast<double>(minSpacing));
    }
  }
  ASSERT_EQ(next, kept.size()) << "kept points are those of the line, in order";
}

TEST(Thinning, KeepsNeighboursApart) {
  constexpr unsigned kSeed = 35001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = RandomLine(generator, run % 200);
    for (const float minSpacing : {1.0f, 10.9f, 37.5f, 200.0f, 1500.0f}) ExpectSpaced(line, minSpacing);
  }
}

TEST(Thinning, KeepsNeighboursApartOnRealRoutes) {
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(line.name);
    for (const float minSpacing : {1.0f, 10.9f, 37.5f, 200.0f, 1500.0f})
      ExpectSpaced(line.points, minSpacing);
  }
}

// ---- Against the plain twins ----------------------------------------------------------------------------------------

void ExpectMatchesTwins(const Route& route) {
  const std::vector<Route> routes{route, {}, {route.empty() ? Line() : route[0]}};
  for (const float minSpacing :
       {0.0f, 5.0f, 11.0f, 40.0f, 111.0f, 1113.0f, 12000.0f, 12001.0f, -1.0f, kNaNFloat, kInfinityFloat}) {
    for (const int pointLimit : {0, 1, 2, 7, 20, 800, -1, kLargest, kSmallest, kSmallest + 3}) {
      SCOPED_TRACE(testing::Message() << "spacing " << minSpacing << ", limit " << pointLimit);
      ASSERT_TRUE(SameBits(Algorithm::PreProcessRoutePoints(route, minSpacing, pointLimit),
                           reference::PreProcessRoutePoints(route, minSpacing, pointLimit)));
    }
    for (const int routeCount : {-1, 0, 1, 2, 3}) {
      std::vector<Line> out{{{1.0, 2.0}}};
      std::vector<Line> expected{{{1.0, 2.0}}};
      Algorithm::PreProcessRoutePoints(routes, routeCount, minSpacing, 3, "Demo", out);
      reference::PreProcessRoutePoints(routes, routeCount, minSpacing, 3, "Demo", expected);
      ASSERT_TRUE(SameBits(out, expected));
    }
  }
}

TEST(Thinning, MatchesTheTwinsOnRandomLines) {
  constexpr unsigned kSeed = 35002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 60; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    Route route(generator() % 7);
    for (Line& segment : route)
      segment = RandomLine(generator, static_cast<int>(generator() % (run < 50 ? 40 : 900)));
    ExpectMatchesTwins(route);
  }
}

TEST(Thinning, MatchesTheTwinsOnWildLines) {
  constexpr unsigned kSeed = 35003;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 60; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    Route route(generator() % 7);
    for (Line& segment : route)
      segment = WildLine(generator, static_cast<int>(generator() % (run < 50 ? 40 : 900)));
    ExpectMatchesTwins(route);
  }
}

/// Pairs about the spacing, where deciding from bounds has to leave off, at every latitude and in every direction.
TEST(Thinning, MatchesTheTwinsAboutTheSpacing) {
  constexpr unsigned kSeed = 35004;
  std::mt19937 generator(kSeed);
  const double latitudes[] = {0.0,  1e-9,  30.0,  -60.0, 85.0,  89.79, 89.8,
                              89.9, -89.9, 89.95, 90.0,  -90.0, 90.01, 120.0};
  const double longitudes[] = {0.0, 7.5, 180.0, -179.99999, 360.0, 1e9};
  const float spacings[] = {1e-7f,  0.05f,   0.1f,    1.0f,     10.9f,    11.0f,
                            110.9f, 1112.9f, 5000.0f, 11000.0f, 11001.0f, 12000.0f};
  for (const double latitude : latitudes) {
    for (const double longitude : longitudes) {
      for (const float spacing : spacings) {
        for (int run = 0; run < 60; ++run) {
          const double angle =
              run < 8 ? 0.7853981633974483 * run : Uniform(generator, 0.0, 6.283185307179586);
          const double degreesPerMetre = 1.0 / Uniform(generator, 110000.0, 112200.0);
          const double radius = static_cast<double>(spacing) * degreesPerMetre;
          const GeoCoordinate anchor{longitude, latitude};
          const GeoCoordinate other{longitude + radius * std::sin(angle),
                                    latitude + radius * std::cos(angle)};
          SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", spacing " << spacing);
          const Route route{
              {anchor, other, {kNaN, other.latitude}, {other.longitude, kNaN}, {kInfinity, latitude}, other}};
          ASSERT_TRUE(SameBits(Algorithm::PreProcessRoutePoints(route, spacing, 0),
                               reference::PreProcessRoutePoints(route, spacing, 0)));
        }
      }
    }
  }
}

TEST(Thinning, MatchesTheTwinsOnRealRoutes) {
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  Route all;
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(line.name);
    ExpectMatchesTwins({line.points});
    all.push_back(line.points);
  }
  ExpectMatchesTwins(all);
}

// ---- Awkward lines --------------------------------------------------------------------------------------------------

JOIN_AWKWARD_LINES(PreProcessRoutePoints, [](const Line& line) {
  ExpectMatchesTwins({line});
  ExpectMatchesTwins({line, line, kSix, line});
});

}  // namespace
