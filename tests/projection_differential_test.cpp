// The projections and searches against their plain twins.

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/projection_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/local_metres.h"
#include "support/projection_search.h"
#include "support/uniform.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::kUntouchedIndex;
using vorel::test::kUntouchedRatio;
using vorel::test::LineZ;
using vorel::test::NamedLineZ;
using vorel::test::OneOf;
using vorel::test::SameBits;
using vorel::test::ScanArguments;
using vorel::test::Uniform;

constexpr int kIntMax = std::numeric_limits<int>::max();

void CompareProjections(const GeoCoordinateZ& start, const GeoCoordinateZ& end, const GeoCoordinateZ& pos) {
  GeoCoordinateZ foot, expectedFoot;
  double ratio = kUntouchedRatio, expectedRatio = kUntouchedRatio;
  const int expected = reference::ProjectionPosToLine(start, end, pos, expectedFoot, expectedRatio);
  EXPECT_EQ(VorelGeometryAlgorithm::ProjectionPosToLine(start, end, pos, foot, ratio), expected);
  EXPECT_TRUE(SameBits(foot, expectedFoot));
  EXPECT_TRUE(SameBits(ratio, expectedRatio));
  const int expectedBetween = reference::PosInAB(pos, start, end, expectedRatio);
  EXPECT_EQ(VorelGeometryAlgorithm::PosInAB(pos, start, end, ratio), expectedBetween);
  EXPECT_TRUE(SameBits(ratio, expectedRatio));
}

struct SearchResult {
  bool ok;
  int startIndex, resultIndex;
  double ratio;
};

void ExpectSame(const SearchResult& actual, const SearchResult& expected) {
  EXPECT_EQ(actual.ok, expected.ok);
  EXPECT_EQ(actual.startIndex, expected.startIndex);
  EXPECT_EQ(actual.resultIndex, expected.resultIndex);
  EXPECT_TRUE(SameBits(actual.ratio, expected.ratio));
}

template <class Search>
SearchResult Run(int start, const Search& search) {
  SearchResult result{false, start, kUntouchedIndex, kUntouchedRatio};
  result.ok = search(result.startIndex, result.resultIndex, result.ratio);
  return result;
}

void CompareSearches(const GeoCoordinateZ& pos, const LineZ& line, int start, const ScanArguments& a,
                     double heading, double tolerance) {
  SCOPED_TRACE("pos " + vorel::test::Paste(pos) + ", start " + std::to_string(start) + ", accept " +
               vorel::test::Paste(a.acceptDistance) + ", max " + vorel::test::Paste(a.maxDistance) +
               ", far " + std::to_string(a.maxFarSegments) + ", heading " + vorel::test::Paste(heading) +
               " +- " + vorel::test::Paste(tolerance));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLines(pos, line, s, r, ratio);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLines(pos, line, s, r, ratio);
             }));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLinesDistance(
                       pos, line, s, r, ratio, a.acceptDistance, a.maxDistance, a.maxFarSegments);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLinesDistance(pos, line, s, r, ratio, a.acceptDistance,
                                                              a.maxDistance, a.maxFarSegments);
             }));
  ExpectSame(Run(start,
                 [&](int& s, int& r, double& ratio) {
                   return VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
                       pos, heading, line, s, r, ratio, a.acceptDistance, a.maxDistance, tolerance,
                       a.maxFarSegments);
                 }),
             Run(start, [&](int& s, int& r, double& ratio) {
               return reference::ProjectionPosToLinesDistanceOrientation(pos, heading, line, s, r, ratio,
                                                                         a.acceptDistance, a.maxDistance,
                                                                         tolerance, a.maxFarSegments);
             }));
}

void CompareOnLine(std::mt19937& generator, const LineZ& line, int runs) {
  for (int run = 0; run < runs; ++run) {
    GeoCoordinateZ pos(Uniform(generator, -180, 180), Uniform(generator, -90, 90), 1.0f);
    if (!line.empty() && generator() % 8 != 0) {
      const GeoCoordinateZ& vertex = line[generator() % line.size()];
      const double reach = std::pow(10.0, Uniform(generator, -8, -3));  // degrees
      pos = GeoCoordinateZ(vertex.longitude + reach * Uniform(generator, -1, 1),
                           vertex.latitude + reach * Uniform(generator, -1, 1), 1.0f);
      if (generator() % 8 == 0) pos = vertex;
    }
    const int size = static_cast<int>(line.size());
    const int start = OneOf<int>(generator, {0, 0, size / 2, size - 2, size - 1, size, -1, kIntMax,
                                             static_cast<int>(generator() % (line.size() + 1))});
    const ScanArguments arguments{
        OneOf<double>(generator, {0.0, 1.0, 5.0, kNaN, kInfinity}),
        OneOf<double>(generator, {0.5, 10.0, 100.0, 1e6, 1e39, kNaN, kInfinity, -1.0}),
        OneOf<int>(generator, {0, 0, 1, 2, 5, -1, kIntMax})};
    const double heading =
        OneOf<double>(generator, {0.0, 1.0, 359.0, 180.0, Uniform(generator, 0, 360), kNaN, -10.0, 400.0});
    const double tolerance = OneOf<double>(generator, {0.0, 2.5, 20.0, 90.0, 180.0, 400.0, kNaN});
    CompareSearches(pos, line, start, arguments, heading, tolerance);
    if (line.size() >= 2) {
      const std::size_t i = generator() % (line.size() - 1);
      CompareProjections(line[i], line[i + 1], pos);
    }
  }
}

TEST(ProjectionDifferential, RandomLines) {
  std::mt19937 generator(51003);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 51003, run " << run);
    CompareOnLine(generator, vorel::test::RandomLineZ(generator, 2 + static_cast<int>(generator() % 60)), 10);
  }
}

TEST(ProjectionDifferential, WildLines) {
  std::mt19937 generator(51004);
  for (int run = 0; run < 1500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 51004, run " << run);
    CompareOnLine(generator, vorel::test::WildLineZ(generator, 1 + static_cast<int>(generator() % 30)), 10);
  }
}

TEST(ProjectionDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(51005);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    CompareOnLine(generator, lane.points, 8);
  }
}

JOIN_AWKWARD_LINES_Z(Projection, [](const LineZ& line) {
  std::mt19937 generator(51006);
  CompareOnLine(generator, line, 300);
});

}  // namespace
