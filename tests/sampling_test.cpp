// Points every so many metres along a line: CalcPointsInPolyline and its checked form.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/sampling_reference.h"
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
using vorel::test::SameBits;
using vorel::test::Uniform;

constexpr int kNoLimit = 0;
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();

// A vertex `metres` east of (0, 0) on the equator, to 2 nanometres for some hundred metres.
GeoCoordinate East(double metres) {
  return GeoCoordinate(metres * 8.983152841195214e-6, 0.0);
}

Line EastLine(std::initializer_list<double> metres) {
  Line line;
  for (const double m : metres) line.push_back(East(m));
  return line;
}

// The expression of an interpolated sample, spelt out.
GeoCoordinate AtOffset(const GeoCoordinate& start, const GeoCoordinate& end, double offset, double length) {
  const double ratio = static_cast<float>(offset / length);
  return GeoCoordinate(start.longitude + ratio * (end.longitude - start.longitude),
                       start.latitude + ratio * (end.latitude - start.latitude));
}

// ---- Edges ----------------------------------------------------------------------------------------------------

struct SamplingCase {
  const char* name;
  Line line;
  double interval;
  int maxCount;
  std::size_t heldBefore;               // points that the output holds before the call
  std::vector<double> metresOfSamples;  // from the start of the line, eastward
  bool roomLeft;
};

class CalcPointsInPolylineEdges : public testing::TestWithParam<SamplingCase> {};

TEST_P(CalcPointsInPolylineEdges, Hold) {
  const SamplingCase& c = GetParam();
  const Line before(c.heldBefore, GeoCoordinate(1.0, 2.0));
  Line out = before;
  EXPECT_EQ(VorelGeometryAlgorithm::CalcPointsInPolyline(c.line, c.interval, c.maxCount, out), c.roomLeft);
  ASSERT_EQ(out.size(), c.heldBefore + c.metresOfSamples.size());
  EXPECT_TRUE(SameBits(Line(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(c.heldBefore)), before));
  EXPECT_TRUE(SameBits(out[c.heldBefore], c.line[0]));
  for (std::size_t k = 1; k < c.metresOfSamples.size(); ++k) {
    // Metres; the worst of this table is 2.4e-6, from the float ratio on 100 m.
    constexpr double kSlack = 3e-6;
    const GeoCoordinate& sample = out[c.heldBefore + k];
    EXPECT_LE(sample.DistanceTo(East(c.metresOfSamples[k])), kSlack) << "sample " << k;
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, CalcPointsInPolylineEdges,
    testing::Values(
        SamplingCase{"OneVertex", EastLine({0}), 30.0, kNoLimit, 0, {0}, true},
        SamplingCase{"OneVertexLimitOne", EastLine({0}), 30.0, 1, 0, {0}, false},
        SamplingCase{"OneVertexLimitTwo", EastLine({0}), 30.0, 2, 0, {0}, true},
        SamplingCase{"HundredMetresBy30", EastLine({0, 100}), 30.0, 0, 0, {0, 30, 60, 90}, true},
        SamplingCase{"NegativeLimitIsNone", EastLine({0, 100}), 30.0, -1, 0, {0, 30, 60, 90}, true},
        SamplingCase{"LeastLimitIsNone",
                     EastLine({0, 100}),
                     30.0,
                     std::numeric_limits<int>::min(),
                     0,
                     {0, 30, 60, 90},
                     true},
        SamplingCase{"LargestLimit",
                     EastLine({0, 100}),
                     30.0,
                     std::numeric_limits<int>::max(),
                     0,
                     {0, 30, 60, 90},
                     true},
        SamplingCase{"LimitOne", EastLine({0, 100}), 30.0, 1, 0, {0}, false},
        SamplingCase{"LimitTwo", EastLine({0, 100}), 30.0, 2, 0, {0, 30}, false},
        SamplingCase{"LimitThree", EastLine({0, 100}), 30.0, 3, 0, {0, 30, 60}, false},
        SamplingCase{"LimitJustReached", EastLine({0, 100}), 30.0, 4, 0, {0, 30, 60, 90}, false},
        SamplingCase{"LimitNotReached", EastLine({0, 100}), 30.0, 5, 0, {0, 30, 60, 90}, true},
        SamplingCase{
            "LimitReachedBeforeLaterSegments", EastLine({0, 100, 200, 300}), 30.0, 3, 0, {0, 30, 60}, false},
        SamplingCase{"LimitReachedOnLaterSegment",
                     EastLine({0, 100, 200, 300}),
                     30.0,
                     6,
                     0,
                     {0, 30, 60, 90, 120, 150},
                     false},
        SamplingCase{"LimitReachedByVertex", EastLine({0, 0, 100}), 30.0, 2, 0, {0, 30}, false},
        SamplingCase{"LimitCountsPointsHeldBefore", EastLine({0, 100}), 30.0, 7, 5, {0, 30}, false},
        SamplingCase{
            "LimitBelowPointsHeldBeforeStillGivesTheStart", EastLine({0, 100}), 30.0, 3, 5, {0}, false},
        SamplingCase{"LimitEqualsPointsHeldBefore", EastLine({0, 100}), 30.0, 5, 5, {0}, false},
        SamplingCase{"LimitOneAboveHeldBefore", EastLine({0, 100}), 30.0, 6, 5, {0}, false},
        SamplingCase{"LimitFarAboveHeldBefore", EastLine({0, 100}), 30.0, 100, 5, {0, 30, 60, 90}, true},
        SamplingCase{"HeldBeforeWithoutLimit", EastLine({0, 100}), 30.0, 0, 5, {0, 30, 60, 90}, true},
        SamplingCase{
            "CarriesOnAcrossVertices", EastLine({0, 40, 50, 55, 100}), 30.0, 0, 0, {0, 30, 60, 90}, true},
        SamplingCase{
            "SeveralVerticesPerInterval", EastLine({0, 10, 20, 29, 31, 40}), 30.0, 0, 0, {0, 30}, true},
        SamplingCase{"ShorterThanInterval", EastLine({0, 10, 20}), 30.0, 0, 0, {0}, true},
        SamplingCase{"WalksBack", EastLine({0, 100, 0}), 30.0, 0, 0, {0, 30, 60, 90, 80, 50, 20}, true},
        SamplingCase{"LastVertexIsNoSample", EastLine({0, 59}), 30.0, 0, 0, {0, 30}, true},
        SamplingCase{"RepeatedFirst", EastLine({0, 0, 0, 50}), 30.0, 0, 0, {0, 30}, true},
        SamplingCase{"RepeatedMiddle", EastLine({0, 40, 40, 40, 70}), 30.0, 0, 0, {0, 30, 60}, true},
        SamplingCase{"RepeatedLast", EastLine({0, 40, 40}), 30.0, 0, 0, {0, 30}, true},
        SamplingCase{"AllEqual", EastLine({0, 0, 0}), 30.0, 0, 0, {0}, true},
        SamplingCase{"AllEqualTinyInterval", EastLine({0, 0, 0}), kDenormal, 0, 0, {0}, true},
        SamplingCase{"NaNInterval", EastLine({0, 100, 200}), kNaN, 0, 0, {0}, true},
        SamplingCase{"NaNIntervalLimitOne", EastLine({0, 100, 200}), kNaN, 1, 0, {0}, false},
        SamplingCase{"InfiniteInterval", EastLine({0, 100, 200}), kInfinity, 0, 0, {0}, true},
        SamplingCase{
            "LargestInterval", EastLine({0, 100}), std::numeric_limits<double>::max(), 0, 0, {0}, true},
        SamplingCase{"NaNDistanceEndsTheSampling",
                     {East(0), East(50), {kNaN, 0.0}, East(100), East(200)},
                     30.0,
                     0,
                     0,
                     {0, 30},
                     true},
        SamplingCase{"InfiniteVertexEndsTheSampling",
                     {East(0), East(50), {kInfinity, 0.0}, East(100), East(200)},
                     30.0,
                     0,
                     0,
                     {0, 30},
                     true},
        SamplingCase{"LatitudeBeyondThePoleEndsTheSampling",
                     {East(0), East(50), {0.0, 90.5}, East(100), East(200)},
                     30.0,
                     0,
                     0,
                     {0, 30},
                     true},
        SamplingCase{"NaNStart", {{kNaN, 0.0}, East(0), East(100)}, 30.0, 0, 0, {0}, true},
        SamplingCase{"NegativeZeroStart", {{-0.0, -0.0}, East(100)}, 60.0, 0, 0, {0, 60}, true}),
    [](const auto& test) { return test.param.name; });

struct RefusedCase {
  const char* name;
  Line line;
  double interval;
};

class ChoosePointsInPolylineRefuses : public testing::TestWithParam<RefusedCase> {};

TEST_P(ChoosePointsInPolylineRefuses, AndLeavesTheOutputAlone) {
  const RefusedCase& c = GetParam();
  for (const int maxCount : {-1, 0, 1, 100}) {
    Line empty;
    EXPECT_FALSE(VorelGeometryAlgorithm::ChoosePointsInPolyline(c.line, c.interval, maxCount, empty));
    EXPECT_TRUE(empty.empty());
    Line held{{1.0, 2.0}, {3.0, 4.0}};
    EXPECT_FALSE(VorelGeometryAlgorithm::ChoosePointsInPolyline(c.line, c.interval, maxCount, held));
    EXPECT_TRUE(SameBits(held, Line{{1.0, 2.0}, {3.0, 4.0}}));
  }
}

INSTANTIATE_TEST_SUITE_P(All, ChoosePointsInPolylineRefuses,
                         testing::Values(RefusedCase{"EmptyLine", {}, 30.0},
                                         RefusedCase{"EmptyLineNaN", {}, kNaN},
                                         RefusedCase{"Zero", EastLine({0, 100}), 0.0},
                                         RefusedCase{"NegativeZero", EastLine({0, 100}), -0.0},
                                         RefusedCase{"Negative", EastLine({0, 100}), -30.0},
                                         RefusedCase{"NegativeDenormal", EastLine({0, 100}), -kDenormal},
                                         RefusedCase{"NegativeInfinity", EastLine({0, 100}), -kInfinity},
                                         RefusedCase{"ZeroOnOneVertex", EastLine({0}), 0.0}),
                         [](const auto& test) { return test.param.name; });

TEST(ChoosePointsInPolyline, AppendsWhatCalcPointsInPolylineDoes) {
  const Line line = EastLine({0, 40, 90, 91, 200});
  for (const double interval : {7.0, 30.0, 1000.0, kNaN, kInfinity}) {
    for (const int maxCount : {-1, 0, 1, 2, 3, 4, 100}) {
      Line expected{{1.0, 2.0}};
      Line out{{1.0, 2.0}};
      VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, maxCount, expected);
      // True also where the limit is reached: it tells that there are points, not that there is room.
      EXPECT_TRUE(VorelGeometryAlgorithm::ChoosePointsInPolyline(line, interval, maxCount, out));
      EXPECT_TRUE(SameBits(out, expected)) << "interval " << interval << ", limit " << maxCount;
    }
  }
}

TEST(ChoosePointsInPolyline, OneVertexGivesThatVertex) {
  Line out{{1.0, 2.0}};
  EXPECT_TRUE(VorelGeometryAlgorithm::ChoosePointsInPolyline({{7.5, 47.5}}, 30.0, 0, out));
  EXPECT_TRUE(SameBits(out, Line{{1.0, 2.0}, {7.5, 47.5}}));
}

// ---- Exact bits -----------------------------------------------------------------------------------------------

// Far apart and across zero: start + (end - start) is not end.
const GeoCoordinate kStart(-0.3, -0.3);
const GeoCoordinate kEnd(0.000901, 0.000901);

TEST(CalcPointsInPolyline, SampleOnAVertexBySumOfWholeSegmentsIsTheVertexItself) {
  const double length = kEnd.DistanceTo(kStart);
  const GeoCoordinate beyond(0.5, 0.1);
  Line out;
  EXPECT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline({kStart, kEnd}, length, 0, out));
  EXPECT_TRUE(SameBits(out, Line{kStart, kEnd}));

  // Over two segments, and the count starts anew at the vertex.
  const double both = length + beyond.DistanceTo(kEnd);
  const GeoCoordinate last(0.5, 1.2);
  ASSERT_GT(last.DistanceTo(beyond), both);
  ASSERT_LT(last.DistanceTo(beyond), 2 * both);
  out.clear();
  EXPECT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline({kStart, kEnd, beyond, last}, both, 0, out));
  EXPECT_TRUE(SameBits(out, Line{kStart, beyond, AtOffset(beyond, last, both, last.DistanceTo(beyond))}));
}

TEST(CalcPointsInPolyline, SampleOnAVertexWithinASegmentIsInterpolatedWithRatioOne) {
  const double length = kEnd.DistanceTo(kStart);
  const GeoCoordinate withRatioOne(kStart.longitude + (kEnd.longitude - kStart.longitude),
                                   kStart.latitude + (kEnd.latitude - kStart.latitude));
  ASSERT_NE(withRatioOne.longitude, kEnd.longitude);
  ASSERT_NE(withRatioOne.latitude, kEnd.latitude);
  Line out;
  EXPECT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline({kStart, kEnd}, length / 2, 0, out));
  EXPECT_TRUE(SameBits(out, Line{kStart, AtOffset(kStart, kEnd, 1.0, 2.0), withRatioOne}));
}

TEST(CalcPointsInPolyline, LimitReachedByAVertexEndsTheWalk) {
  const double length = kEnd.DistanceTo(kStart);
  Line out;
  EXPECT_FALSE(VorelGeometryAlgorithm::CalcPointsInPolyline({kStart, kEnd, kStart, kEnd}, length, 2, out));
  EXPECT_TRUE(SameBits(out, Line{kStart, kEnd}));
}

TEST(CalcPointsInPolyline, OffsetsAddUpInDoubleAndRatiosAreNarrowedToFloat) {
  const GeoCoordinate a(7.5, 47.5);
  const GeoCoordinate b(7.5037, 47.5021);
  const GeoCoordinate c(7.51, 47.4999);
  const double first = b.DistanceTo(a);
  const double second = c.DistanceTo(b);
  const double interval = 77.7;
  Line expected{a};
  double offset = interval;
  for (; first >= offset; offset = offset + interval) expected.push_back(AtOffset(a, b, offset, first));
  const double walked = first - (offset - interval);
  offset = interval - walked;
  for (; second >= offset; offset = offset + interval) expected.push_back(AtOffset(b, c, offset, second));
  ASSERT_EQ(expected.size(), 12u);
  Line out;
  EXPECT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline({a, b, c}, interval, 0, out));
  EXPECT_TRUE(SameBits(out, expected));
  // In double the same ratio gives another longitude: the narrowing shows.
  const double ratio = interval / first;
  EXPECT_NE(out[1].longitude, a.longitude + ratio * (b.longitude - a.longitude));
}

TEST(CalcPointsInPolyline, TheWayWalkedIsTakenFromTheOffsetAlreadyAdvanced) {
  // A second segment that ends exactly one interval after the last sample of the first one shows each bit of what is
  // carried over: its end is the vertex itself. Two other orders of operations carry something else now and then.
  constexpr unsigned kSeed = 31007;
  std::mt19937 generator(kSeed);
  int found = 0;
  int otherOrder = 0;
  int yetAnotherOrder = 0;
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate start = East(-Uniform(generator, 50, 300));
    const GeoCoordinate middle(0, 0);                          // where steps of the next longitude are finest
    const double interval = Uniform(generator, 50, 400) / 11;  // not a short binary fraction: sums round
    const double first = middle.DistanceTo(start);
    double offset = interval;
    while (first >= offset) offset = offset + interval;
    const double walked = first - (offset - interval);
    GeoCoordinate end = East(interval - walked);
    for (int i = 0; i < 3; ++i) end.longitude *= (interval - walked) / end.DistanceTo(middle);
    const double place = std::nextafter(end.longitude, 1.0) - end.longitude;
    end.longitude -= 8 * place;
    for (int step = 0; step < 16 && walked + end.DistanceTo(middle) != interval; ++step)
      end.longitude += place;
    const double second = end.DistanceTo(middle);
    if (walked + second != interval || second <= 1.0) continue;
    ++found;
    otherOrder += first - offset + interval + second != interval;
    yetAnotherOrder += interval - (offset - first) + second != interval;
    // One more vertex, to see that the count starts anew at the vertex before.
    const GeoCoordinate last = East(interval - walked + interval * 1.5);
    Line out;
    VorelGeometryAlgorithm::CalcPointsInPolyline({start, middle, end, last}, interval, 0, out);
    ASSERT_GE(out.size(), 3u);
    ASSERT_TRUE(SameBits(out[out.size() - 2], end)) << "seed " << kSeed << ", run " << run;
    ASSERT_TRUE(SameBits(out.back(), AtOffset(end, last, interval, last.DistanceTo(end)))) << "run " << run;
  }
  EXPECT_GT(found, 1000);
  EXPECT_GT(otherOrder, 100);
  EXPECT_GT(yetAnotherOrder, 100);
}

// ---- Properties -----------------------------------------------------------------------------------------------

struct SampleErrors {
  double metresOffRatio = 0.0;    // largest distance to the point in double, over the segment's length
  double metresOffSpacing = 0.0;  // largest difference of the way between two samples and the interval
};

// Checks the samples of a line of valid points against a walk of its own; what is measured comes back.
SampleErrors CheckSamples(const Line& line, double interval, const Line& samples) {
  SampleErrors errors;
  std::vector<double> metresFromStart{0.0};
  for (std::size_t i = 1; i < line.size(); ++i) {
    metresFromStart.push_back(metresFromStart.back() + line[i - 1].DistanceTo(line[i]));
  }
  // A sample that nearly falls on the end may come or not.
  const double expectedCount = metresFromStart.back() / interval;
  EXPECT_LE(static_cast<double>(samples.size() - 1), expectedCount + 1e-6);
  EXPECT_GE(static_cast<double>(samples.size()), expectedCount - 1e-6);
  std::size_t segment = 1;          // ends at this vertex
  std::size_t previousSegment = 1;  // that of the sample before
  for (std::size_t k = 0; k < samples.size(); ++k) {
    const double wanted = static_cast<double>(k) * interval;
    while (segment + 1 < line.size() && metresFromStart[segment] < wanted) ++segment;
    const GeoCoordinate& a = line[segment - 1];
    const GeoCoordinate& b = line[segment];
    const double length = a.DistanceTo(b);
    const double ratio = length > 0.0 ? std::min(1.0, (wanted - metresFromStart[segment - 1]) / length) : 0.0;
    const GeoCoordinate point(a.longitude + ratio * (b.longitude - a.longitude),
                              a.latitude + ratio * (b.latitude - a.latitude));
    const double off = samples[k].DistanceTo(point) / std::max(length, 1.0);
    EXPECT_FALSE(std::isnan(off)) << "sample " << k;
    errors.metresOffRatio = std::max(errors.metresOffRatio, off);
    if (k > 0) {
      double way = 0.0;
      GeoCoordinate at = samples[k - 1];
      for (std::size_t i = previousSegment; i < segment; ++i) {
        way += at.DistanceTo(line[i]);
        at = line[i];
      }
      way += at.DistanceTo(samples[k]);
      errors.metresOffSpacing = std::max(errors.metresOffSpacing, std::fabs(way - interval));
    }
    previousSegment = segment;
  }
  return errors;
}

TEST(CalcPointsInPolyline, SamplesLieAWholeNumberOfIntervalsAlongRandomLines) {
  constexpr unsigned kSeed = 31001;
  constexpr int kRuns = 2000;
  // Of the segment's length, or of a metre where that is longer: half a float step below 1 is 2.98e-8, and the
  // sums of the two walks differ a little; worst of 2e5 runs 3.11e-8.
  constexpr double kSlackRatio = 3.2e-8;
  // Metres; worst of 2e5 runs 2.3e-4: a segment of 60 m is divided evenly in degrees, which at latitude 80 is not
  // evenly in metres.
  constexpr double kSlackSpacing = 3e-4;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < kRuns; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 2 + static_cast<int>(generator() % 60));
    const double interval = std::exp(Uniform(generator, std::log(0.5), std::log(400.0)));
    Line samples;
    ASSERT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, 0, samples));
    const SampleErrors errors = CheckSamples(line, interval, samples);
    ASSERT_LE(errors.metresOffRatio, kSlackRatio);
    ASSERT_LE(errors.metresOffSpacing, kSlackSpacing);
  }
}

TEST(CalcPointsInPolyline, SamplesLieAWholeNumberOfIntervalsAlongRealRoutes) {
  const std::vector<NamedLine> routes = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(routes);
  // As above; the sums over 3000 km differ by more: 3.22e-8 measured.
  constexpr double kSlackRatio = 3.3e-8;
  for (const NamedLine& route : routes) {
    SCOPED_TRACE(route.name);
    // A step across the antimeridian is interpolated the long way round.
    bool crossesAntimeridian = false;
    for (std::size_t i = 1; i < route.points.size(); ++i) {
      crossesAntimeridian |= std::fabs(route.points[i].longitude - route.points[i - 1].longitude) > 180.0;
    }
    if (crossesAntimeridian) continue;
    for (const double interval : {3.0, 50.0, 1234.5}) {
      Line samples;
      ASSERT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline(route.points, interval, 0, samples));
      ASSERT_LE(CheckSamples(route.points, interval, samples).metresOffRatio, kSlackRatio) << interval;
    }
  }
}

TEST(CalcPointsInPolyline, RepeatedVerticesAddNothing) {
  constexpr unsigned kSeed = 31002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 30);
    Line repeated;
    for (const GeoCoordinate& vertex : line) repeated.insert(repeated.end(), 1 + generator() % 3, vertex);
    const double interval = Uniform(generator, 0.5, 100.0);
    Line samples;
    Line samplesOfRepeated;
    VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, 0, samples);
    VorelGeometryAlgorithm::CalcPointsInPolyline(repeated, interval, 0, samplesOfRepeated);
    ASSERT_TRUE(SameBits(samplesOfRepeated, samples));
  }
}

TEST(CalcPointsInPolyline, ALimitCutsTheListAndNothingElse) {
  constexpr unsigned kSeed = 31003;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 300; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 20);
    const double interval = Uniform(generator, 5.0, 100.0);
    Line all;
    VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, 0, all);
    for (std::size_t limit = 1; limit < all.size() + 2; ++limit) {
      Line some;
      const bool roomLeft =
          VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, static_cast<int>(limit), some);
      ASSERT_EQ(roomLeft, all.size() < limit);
      const std::size_t count = std::min(limit, all.size());
      ASSERT_TRUE(SameBits(some, Line(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count))));
    }
  }
}

// ---- Against the plain twin -----------------------------------------------------------------------------------

void ExpectTwinAgrees(const Line& line, double interval, int maxCount, const Line& before) {
  SCOPED_TRACE(testing::Message() << "interval " << vorel::test::Paste(interval) << ", limit " << maxCount
                                  << ", held before " << before.size());
  Line out = before;
  Line twin = before;
  if (!line.empty() && !(0.0 >= interval)) {
    const bool roomLeft = VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, maxCount, out);
    EXPECT_EQ(roomLeft, reference::CalcPointsInPolyline(line, interval, maxCount, twin));
    EXPECT_TRUE(SameBits(out, twin)) << vorel::test::Paste(line);
  }
  out = before;
  twin = before;
  const bool chosen = VorelGeometryAlgorithm::ChoosePointsInPolyline(line, interval, maxCount, out);
  EXPECT_EQ(chosen, reference::ChoosePointsInPolyline(line, interval, maxCount, twin));
  EXPECT_TRUE(SameBits(out, twin)) << vorel::test::Paste(line);
}

const double kSomeIntervals[] = {-1.0, 0.0,    -0.0, kDenormal, 1e-9, 0.3,      7.0,
                                 33.3, 1000.0, 1e6,  1e300,     kNaN, kInfinity};

JOIN_AWKWARD_LINES(CalcPointsInPolyline, [](const Line& line) {
  for (const double interval : kSomeIntervals) {
    for (const int maxCount : {1, 2, 3, 500}) {
      for (const std::size_t heldBefore : {0u, 1u, 5u}) {
        ExpectTwinAgrees(line, interval, maxCount, Line(heldBefore, GeoCoordinate(1.0, 2.0)));
      }
    }
  }
  // The longest line goes around the world: 4000 points.
  for (const double interval : {1e4, 1e5, 1e7}) ExpectTwinAgrees(line, interval, -1, {});
})

TEST(SamplingTwin, AgreesOnRandomLines) {
  constexpr unsigned kSeed = 31004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 1 + static_cast<int>(generator() % 40));
    const double interval = std::exp(Uniform(generator, std::log(0.2), std::log(1000.0)));
    ExpectTwinAgrees(line, interval, 0, {});
    ExpectTwinAgrees(line, interval, static_cast<int>(generator() % 12), Line(generator() % 4));
    // Intervals that vertices or ends of segments are hit by.
    if (line.size() < 3) continue;
    const double first = line[1].DistanceTo(line[0]);
    if (first == 0.0) continue;
    ExpectTwinAgrees(line, first, 0, {});
    ExpectTwinAgrees(line, first / 3.0, 0, {});
    ExpectTwinAgrees(line, first + line[2].DistanceTo(line[1]), 0, {});
    ExpectTwinAgrees(line, std::nextafter(first, 0.0), 0, {});
    ExpectTwinAgrees(line, std::nextafter(first, kInfinity), 0, {});
    if (testing::Test::HasFailure()) return;
  }
}

TEST(SamplingTwin, AgreesOnWildLines) {
  constexpr unsigned kSeed = 31005;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::WildLine(generator, 1 + static_cast<int>(generator() % 30));
    for (const double interval : kSomeIntervals) ExpectTwinAgrees(line, interval, 60, {});
    ExpectTwinAgrees(line, std::pow(10.0, Uniform(generator, -9.0, 7.5)), 300, {});
    if (testing::Test::HasFailure()) return;
  }
}

TEST(SamplingTwin, AgreesOnRealRoutes) {
  const std::vector<NamedLine> routes = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(routes);
  for (const NamedLine& route : routes) {
    SCOPED_TRACE(route.name);
    for (const double interval : {2.5, 50.0, 700.0, 1e5}) ExpectTwinAgrees(route.points, interval, 0, {});
  }
}

// ---- Memory, tiny intervals, preconditions --------------------------------------------------------------------

TEST(CalcPointsInPolyline, AllocatesNothingWhenTheOutputHasTheRoom) {
  std::mt19937 generator(31006);
  const Line line = vorel::test::RandomLine(generator, 200);
  Line out;
  VorelGeometryAlgorithm::CalcPointsInPolyline(line, 10.0, 0, out);
  const std::size_t count = out.size();
  out.clear();
  const vorel::test::AllocationCounter allocations;
  VorelGeometryAlgorithm::CalcPointsInPolyline(line, 10.0, 0, out);
  EXPECT_EQ(allocations.Count(), 0u);
  out.clear();
  VorelGeometryAlgorithm::ChoosePointsInPolyline(line, 10.0, 0, out);
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(out.size(), count);
}

// Each way to place a sample reaches the limit, and goes on without one: on a vertex by whole segments, and within one.
TEST(CalcPointsInPolyline, EachKindOfSampleMayBeTheLastWanted) {
  const Line line{{7.5, 47.5}, {7.501, 47.5}, {7.502, 47.5}, {7.503, 47.5}};
  const double segment = line[0].DistanceTo(line[1]);
  for (const double interval : {segment, 0.75 * segment}) {
    Line whole;
    EXPECT_TRUE(VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, 0, whole));
    ASSERT_GE(whole.size(), 3u);
    for (std::size_t limit = 1; limit <= whole.size() + 1; ++limit) {
      Line out;
      EXPECT_EQ(VorelGeometryAlgorithm::CalcPointsInPolyline(line, interval, static_cast<int>(limit), out),
                limit > whole.size());
      EXPECT_TRUE(SameBits(out, Line(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(
                                                                        std::min(limit, whole.size())))));
    }
  }
}

class TinyInterval : public testing::TestWithParam<double> {};

TEST_P(TinyInterval, EndsAtTheLimit) {
  const Line line = EastLine({0, 100, 200});
  Line out;
  EXPECT_FALSE(VorelGeometryAlgorithm::CalcPointsInPolyline(line, GetParam(), 1000, out));
  ASSERT_EQ(out.size(), 1000u);
  for (std::size_t k = 1; k < out.size(); ++k) {
    ASSERT_GE(out[k].longitude, out[k - 1].longitude);
    ASSERT_LE(out[k].DistanceTo(line[0]), 1001.0 * GetParam());
  }
}

TEST_P(TinyInterval, WithoutALimitEndsWhenMemoryDoes) {
  const Line line = EastLine({0, 100, 200});
  Line out{{1.0, 2.0}};
  {
    const vorel::test::AllocationLimit limit(16);  // the vector doubles: some 65536 points
    EXPECT_THROW(VorelGeometryAlgorithm::CalcPointsInPolyline(line, GetParam(), 0, out), std::bad_alloc);
  }
  EXPECT_GT(out.size(), 10000u);  // what was appended stays
  EXPECT_TRUE(SameBits(out[0], GeoCoordinate(1.0, 2.0)));
  EXPECT_TRUE(SameBits(out[1], line[0]));
}

INSTANTIATE_TEST_SUITE_P(All, TinyInterval,
                         testing::Values(kDenormal, 1e-300, 1e-30, 5e-15, 1e-14, 1.2e-14, 1e-9, 1e-4));

TEST(TinyIntervalBorder, TheSumOfOffsetsStandsStillOnlyBeyondNineQuadrillionSteps) {
  // The walk adds the interval to an offset that starts below one interval and is at most the segment's length. It
  // stands still once the interval is no more than half the last place of the offset.
  for (const double length : {100.0, 127.999, 128.0, 1.0, 4e7}) {
    const double halfPlace = (length - std::nextafter(length, 0.0)) / 2;
    const double standsStillAt = length * 5.5e-17;
    const double movesAt = length * 1.2e-16;
    EXPECT_LT(standsStillAt, halfPlace * 1.0000001) << length;
    EXPECT_EQ(length + standsStillAt, length) << length;
    EXPECT_GT(length + movesAt, length) << length;
    EXPECT_GT(length / movesAt, 8e15) << length;  // points before that; 16 bytes each
  }
}

#if VOREL_CHECK_PRECONDITIONS
TEST(SamplingDeathTest, BrokenPreconditionsNameThemselves) {
  const Line line = EastLine({0, 100});
  Line out;
  EXPECT_DEATH(VorelGeometryAlgorithm::CalcPointsInPolyline({}, 30.0, 10, out),
               "precondition broken: .*empty");
  EXPECT_DEATH(VorelGeometryAlgorithm::CalcPointsInPolyline(line, 0.0, 10, out),
               "precondition broken: .*interval");
  EXPECT_DEATH(VorelGeometryAlgorithm::CalcPointsInPolyline(line, -1.0, 10, out),
               "precondition broken: .*interval");
  Line both = line;
  EXPECT_DEATH(VorelGeometryAlgorithm::CalcPointsInPolyline(both, 30.0, 10, both),
               "precondition broken: .*points");
}
#else
TEST(SamplingDeathTest, BrokenPreconditionsNameThemselves) {
  GTEST_SKIP() << "skipped: preconditions are checked in builds with VOREL_CHECK_PRECONDITIONS=1 only";
}

TEST(CalcPointsInPolyline, IntervalOfZeroOrLessRepeatsTheStartUntilTheLimitOrTheEndOfMemory) {
  // Outside of the contract, but it ends.
  for (const double interval : {0.0, -0.0, -1.0, -kInfinity}) {
    Line out;
    EXPECT_FALSE(VorelGeometryAlgorithm::CalcPointsInPolyline(EastLine({0, 100}), interval, 5, out));
    EXPECT_TRUE(SameBits(out, Line(5, GeoCoordinate(0.0, 0.0))));
    const vorel::test::AllocationLimit limit(16);
    EXPECT_THROW(VorelGeometryAlgorithm::CalcPointsInPolyline({{0, 0}, {1, 0}}, interval, 0, out),
                 std::bad_alloc);
  }
}
#endif

}  // namespace
