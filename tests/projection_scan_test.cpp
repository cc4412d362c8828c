// The scans on lines where sparing a segment its measurement is close to being wrong: equal distances, ranges that end at
// a segment's very distance, far segments that are counted one by one, short and invalid ones among them. Against the
// plain twins: every output, to the bit.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/internal/segment_projection.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/projection_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::LineZ;
using vorel::test::Numbers;

constexpr int kIntMax = std::numeric_limits<int>::max();

struct Question {
  GeoCoordinateZ pos;
  int start;
  double acceptDistance, maxDistance;
  int maxFarSegments;
  double heading, headingTolerance;
};

struct Outputs {
  bool ok;
  int startIndex, resultIndex;
  double ratio;
};

template <class Search>
Outputs Run(int start, const Search& search) {
  Outputs outputs{false, start, -77, -77.25};
  outputs.ok = search(outputs.startIndex, outputs.resultIndex, outputs.ratio);
  return outputs;
}

testing::AssertionResult Same(const char* function, const Outputs& actual, const Outputs& expected,
                              const Question& q, const LineZ& line) {
  if (actual.ok == expected.ok && actual.startIndex == expected.startIndex &&
      actual.resultIndex == expected.resultIndex && vorel::test::AreSameBits(actual.ratio, expected.ratio)) {
    return testing::AssertionSuccess();
  }
  using vorel::test::Paste;
  return testing::AssertionFailure() << function << " gives " << Paste(actual.ok) << " start "
                                     << actual.startIndex << " index " << actual.resultIndex << " ratio "
                                     << Paste(actual.ratio) << ", should give " << Paste(expected.ok)
                                     << " start " << expected.startIndex << " index " << expected.resultIndex
                                     << " ratio " << Paste(expected.ratio) << " for pos " << Paste(q.pos)
                                     << ", start " << q.start << ", accept " << Paste(q.acceptDistance)
                                     << ", max " << Paste(q.maxDistance) << ", far " << q.maxFarSegments
                                     << ", heading " << Paste(q.heading) << " +- "
                                     << Paste(q.headingTolerance) << ", line " << Paste(line);
}

testing::AssertionResult IsAsThePlainScans(const LineZ& line, const Question& q) {
  using V = VorelGeometryAlgorithm;
  testing::AssertionResult same =
      Same("ProjectionPosToLinesDistance",
           Run(q.start,
               [&](int& s, int& r, double& ratio) {
                 return V::ProjectionPosToLinesDistance(q.pos, line, s, r, ratio, q.acceptDistance,
                                                        q.maxDistance, q.maxFarSegments);
               }),
           Run(q.start,
               [&](int& s, int& r, double& ratio) {
                 return reference::ProjectionPosToLinesDistance(q.pos, line, s, r, ratio, q.acceptDistance,
                                                                q.maxDistance, q.maxFarSegments);
               }),
           q, line);
  if (!same) return same;
  same = Same("ProjectionPosToLinesDistanceOrientation",
              Run(q.start,
                  [&](int& s, int& r, double& ratio) {
                    return V::ProjectionPosToLinesDistanceOrientation(q.pos, q.heading, line, s, r, ratio,
                                                                      q.acceptDistance, q.maxDistance,
                                                                      q.headingTolerance, q.maxFarSegments);
                  }),
              Run(q.start,
                  [&](int& s, int& r, double& ratio) {
                    return reference::ProjectionPosToLinesDistanceOrientation(
                        q.pos, q.heading, line, s, r, ratio, q.acceptDistance, q.maxDistance,
                        q.headingTolerance, q.maxFarSegments);
                  }),
              q, line);
  if (!same) return same;
  return Same(
      "ProjectionPosToLines",
      Run(q.start,
          [&](int& s, int& r, double& ratio) { return V::ProjectionPosToLines(q.pos, line, s, r, ratio); }),
      Run(q.start, [&](int& s, int& r,
                       double& ratio) { return reference::ProjectionPosToLines(q.pos, line, s, r, ratio); }),
      q, line);
}

double DistanceToSegment(const GeoCoordinateZ& start, const GeoCoordinateZ& end, const GeoCoordinateZ& pos) {
  GeoCoordinateZ foot;
  double ratio = 0.0;
  reference::ProjectionPosToLine(start, end, pos, foot, ratio);
  ratio = ratio < 0.0 ? 0.0 : ratio > 1.0 ? 1.0 : ratio;
  return GeoCoordinateZ(start.longitude + ratio * (end.longitude - start.longitude),
                        start.latitude + ratio * (end.latitude - start.latitude), 0.0f)
      .DistanceTo(pos);
}

/// Places whose bounds are of every kind: loose and tight, at and beyond the border of what they reach, of longitudes that
/// are no longer counted from Greenwich.
GeoCoordinateZ AnyPlace(Numbers& numbers) {
  static const double kLatitudes[] = {0.0, 48.1, -33.0, 70.0, 88.999, 89.0, 89.001, -89.9, 90.0};
  static const double kLongitudes[] = {11.5, 0.0, 180.0, -179.9999, 359.9999, 360.0001, -4000.0};
  return {kLongitudes[numbers.Below(7)], kLatitudes[numbers.Below(9)], 1.0f};
}

/// A line on a coarse grid, so that places and distances recur; some of its points stand, creep by a few millimetres,
/// are invalid, or lie far away.
LineZ GridLine(Numbers& numbers, const GeoCoordinateZ& place, double step, std::size_t vertexCount) {
  LineZ line;
  for (std::size_t i = 0; i < vertexCount; ++i) {
    const double east = static_cast<double>(numbers.Below(9)) - 4.0;
    const double north = static_cast<double>(numbers.Below(9)) - 4.0;
    GeoCoordinateZ point(place.longitude + step * east, place.latitude + step * north, 2.0f);
    switch (numbers.Below(16)) {
      case 0:
        if (!line.empty()) point = line.back();
        break;
      case 1:  // 0.01 m, or 0.1 m, or the shortest segment that is projected, and a little less or more
        if (!line.empty()) {
          point = line.back();
          static const double kLengths[] = {9.04e-8, 9.04e-7, 3.1622776601683797e-7};
          point.latitude += kLengths[numbers.Below(3)] * numbers.Between(0.98, 1.02);
        }
        break;
      case 2:
        if (numbers.Below(8) == 0) {
          (numbers.Below(2) == 0 ? point.latitude : point.longitude) = numbers.Special();
        }
        break;
      case 3:
        if (numbers.Below(2) == 0) point.longitude += numbers.Below(2) == 0 ? 0.6 : 360.0;
        break;
      default:
        break;
    }
    line.push_back(point);
  }
  if (numbers.Below(3) == 0) {  // every segment twice
    const LineZ back(line.rbegin(), line.rend());
    line.insert(line.end(), back.begin(), back.end());
  }
  return line;
}

/// Often the very distance of one of the segments, or the next double below or above.
double AnyDistance(Numbers& numbers, const LineZ& line, const GeoCoordinateZ& pos, double step) {
  if (line.size() >= 2 && numbers.Below(4) != 0) {
    const std::size_t i = numbers.Below(line.size() - 1);
    const double distance = DistanceToSegment(line[i], line[i + 1], pos);
    static const double kToward[] = {-1.0, 1e9};
    return numbers.Below(3) == 0 ? distance : std::nextafter(distance, kToward[numbers.Below(2)]);
  }
  static const double kUsual[] = {0.0, -1.0,     1.0,  20.0,      9.0,        11.0,
                                  1e6, 999988.0, kNaN, kInfinity, -kInfinity, 1e39};
  const std::size_t choice = numbers.Below(14);
  return choice < 12 ? kUsual[choice] : 111000.0 * step * numbers.Between(0.0, 6.0);
}

Question AnyQuestion(Numbers& numbers, const LineZ& line, const GeoCoordinateZ& place, double step) {
  Question q{};
  q.pos = {place.longitude + step * (static_cast<double>(numbers.Below(13)) - 6.0) * 0.5,
           place.latitude + step * (static_cast<double>(numbers.Below(13)) - 6.0) * 0.5, 0.0f};
  if (numbers.Below(4) == 0) q.pos.latitude += step * numbers.Between(-8.0, 8.0);
  q.start = numbers.Below(2) == 0 ? 0 : static_cast<int>(numbers.Below(line.size() + 2)) - 1;
  q.acceptDistance = numbers.Below(2) == 0 ? 0.0 : AnyDistance(numbers, line, q.pos, step);
  q.maxDistance = AnyDistance(numbers, line, q.pos, step);
  static const int kFar[] = {0, 1, 2, 3, 5, 10, -1, kIntMax};
  const std::size_t far = numbers.Below(10);
  q.maxFarSegments =
      far < 8 ? kFar[far] : static_cast<int>(line.size()) - q.start - static_cast<int>(numbers.Below(4));
  // The grid's own headings on the equator, and others.
  static const double kHeadings[] = {0.0, 45.0, 90.0, 180.0, 270.0, 359.9999, 1e7, kNaN, kInfinity, -90.0};
  const std::size_t heading = numbers.Below(12);
  q.heading = heading < 10 ? kHeadings[heading] : numbers.Between(0.0, 360.0);
  static const double kTolerances[] = {0.0, 45.0, 60.0, 90.0, 180.0, 1e-6, 400.0, kNaN, -1.0};
  const std::size_t tolerance = numbers.Below(11);
  q.headingTolerance = tolerance < 9 ? kTolerances[tolerance] : numbers.Between(0.0, 180.0);
  return q;
}

/// Each test runs with the segments measured two at a time, and four.
class ProjectionScan : public testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override {
    const vorel::internal::MeasureSegmentsForm form = vorel::internal::FindMeasureSegments(GetParam());
    if (form == nullptr) GTEST_SKIP() << "skipped: this machine has no form with " << GetParam() << " lanes";
    vorel::internal::ForceMeasureSegments(form);
  }
  void TearDown() override { vorel::internal::ForceMeasureSegments(nullptr); }
};

INSTANTIATE_TEST_SUITE_P(All, ProjectionScan, testing::Values(2u, 4u),
                         [](const auto& test) { return "Lanes" + std::to_string(test.param); });

TEST(ProjectionForms, AreFoundByTheirLanes) {
  EXPECT_NE(vorel::internal::FindMeasureSegments(2), nullptr);
  EXPECT_NE(vorel::internal::FindMeasureSegments(2), vorel::internal::FindMeasureSegments(4));
  for (const std::size_t lanes : {0u, 1u, 3u, 5u}) {
    EXPECT_EQ(vorel::internal::FindMeasureSegments(lanes), nullptr) << lanes << " lanes";
  }
}

TEST_P(ProjectionScan, GridLinesOfEveryScale) {
  Numbers numbers(53031);
  for (int run = 0; run < 60000; ++run) {
    const GeoCoordinateZ place = AnyPlace(numbers);
    const double step = std::fabs(numbers.Magnitude(1e-8, 0.2));  // degrees: 1 mm to 20 km
    const LineZ line = GridLine(numbers, place, step, numbers.Below(40));
    for (int question = 0; question < 6; ++question) {
      ASSERT_TRUE(IsAsThePlainScans(line, AnyQuestion(numbers, line, place, step))) << "run " << run;
    }
  }
}

TEST_P(ProjectionScan, LanesPassedInBothDirections) {
  Numbers numbers(53032);
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinateZ place = AnyPlace(numbers);
    LineZ line;
    GeoCoordinateZ point = place;
    double heading = numbers.Between(0.0, 6.28);
    const std::size_t vertexCount = 2 + numbers.Below(60);
    for (std::size_t i = 0; i < vertexCount; ++i) {
      line.push_back(point);
      heading += numbers.Between(-0.3, 0.3);
      point.longitude += 6.7e-5 * std::sin(heading);
      point.latitude += 4.5e-5 * std::cos(heading);
    }
    if (run % 2 == 0) {
      const LineZ back(line.rbegin(), line.rend());
      line.insert(line.end(), back.begin(), back.end());
    }
    for (int question = 0; question < 6; ++question) {
      const GeoCoordinateZ& near = line[numbers.Below(line.size())];
      ASSERT_TRUE(IsAsThePlainScans(line, AnyQuestion(numbers, line, near, 1e-4))) << "run " << run;
    }
  }
}

// One segment in range, then far ones with short ones among them: each count of tolerated ones, for each place of a nearer
// segment behind them, says exactly which were counted.
TEST_P(ProjectionScan, CountsFarSegmentsOneByOne) {
  const GeoCoordinateZ pos(11.5, 48.1, 0.0f);
  for (const double shortLength : {0.0, 8.9e-8, 9.1e-8, 3e-7}) {  // 0, 9.9 mm, 10.1 mm, 3 cm
    for (std::size_t nearer = 1; nearer < 14; ++nearer) {
      LineZ line = {{11.5001, 48.1, 0.0f}, {11.5001, 48.1001, 0.0f}};
      for (std::size_t i = 1; i < 14; ++i) {
        if (i == nearer) line.push_back({11.50001, 48.1, 0.0f});
        line.push_back({11.51 + 1e-4 * static_cast<double>(i), 48.11, 0.0f});
        if (i % 3 == 0) {
          line.push_back(line.back());
          line.back().latitude += shortLength;
        }
      }
      for (int far = -1; far < 20; ++far) {
        for (const double maxDistance : {20.0, 100.0}) {
          ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 0.0, maxDistance, far, 0.0, 400.0}));
          ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 0.0, maxDistance, far, 0.0, 90.0}));
        }
      }
    }
  }
}

TEST_P(ProjectionScan, InvalidPointsAtEveryPlace) {
  for (const double bad : {kNaN, kInfinity, -kInfinity, 90.00000000000001, 1e300, 400.0}) {
    for (const bool isLatitude : {true, false}) {
      for (std::size_t place = 0; place < 8; ++place) {
        for (std::size_t second = place; second < 8; second += 3) {
          LineZ line;
          for (int i = 0; i < 8; ++i) line.push_back({11.5 + 1e-4 * i, 48.1 + 2e-5 * i * i, 0.0f});
          (isLatitude ? line[place].latitude : line[place].longitude) = bad;
          (isLatitude ? line[second].latitude : line[second].longitude) = bad;
          for (const double longitude : {11.5, 11.50031, 11.52}) {
            for (const int far : {0, 2, kIntMax}) {
              for (const double maxDistance : {1.0, 20.0, 1e7}) {
                for (const double tolerance : {30.0, 400.0}) {
                  ASSERT_TRUE(IsAsThePlainScans(
                      line, {{longitude, 48.1, 0.0f}, 0, 0.0, maxDistance, far, 60.0, tolerance}));
                }
              }
            }
          }
        }
      }
    }
  }
}

// The search goes by blocks of eight segments: an invalid, a far or a standing point at every place of a line of several,
// of every length about whole blocks, with positions on the line and so far away that blocks are put off.
TEST_P(ProjectionScan, OddPointsAtEveryPlaceOfABlock) {
  const std::vector<GeoCoordinateZ> odd = {
      {kNaN, 48.1, 0.0f},      {11.5, kNaN, 0.0f},  {kInfinity, 48.1, 0.0f}, {11.5, -kInfinity, 0.0f},
      {11.5, 90.5, 0.0f},      {12.1, 48.1, 0.0f},  {11.5, 48.7, 0.0f},      {371.5, 48.1, 0.0f},
      {11.5012, 48.101, 0.0f}, {11.503, 48.1, 0.0f}};
  for (std::size_t vertexCount = 2; vertexCount <= 32; ++vertexCount) {
    LineZ line;
    for (std::size_t i = 0; i < vertexCount; ++i) {
      const double step = static_cast<double>(i);
      line.push_back({11.5 + 1e-4 * step, 48.1 + 2e-6 * step * step, 0.0f});
    }
    for (std::size_t place = 0; place < vertexCount; ++place) {
      for (const GeoCoordinateZ& point : odd) {
        const GeoCoordinateZ kept = line[place];
        line[place] = point;
        for (const GeoCoordinateZ& pos :
             {GeoCoordinateZ(11.50121, 48.1003, 0.0f), GeoCoordinateZ(11.503, 48.1019, 0.0f),
              GeoCoordinateZ(11.5, 48.11, 0.0f)}) {
          for (const double maxDistance : {20.0, 1e9}) {
            for (const int far : {2, kIntMax}) {
              ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 0.0, maxDistance, far, 45.0, 60.0}));
              ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 5.0, maxDistance, far, 45.0, 60.0}));
            }
          }
        }
        line[place] = kept;
      }
    }
  }
}

// An invalid latitude at the start of a block must not hide that the rest of it lies out of reach of the bounds, which
// err there: on the way from 80 degrees to the equator a degree of latitude shrinks.
TEST_P(ProjectionScan, AnInvalidPointDoesNotHideThatTheOthersAreOutOfReach) {
  for (std::size_t place = 0; place < 30; ++place) {
    LineZ line;
    for (std::size_t i = 0; i < 30; ++i) {
      line.push_back({11.5 + 1e-3 * static_cast<double>(i), i < place ? -0.3 : 0.0, 0.0f});
    }
    line[place].latitude = kNaN;
    for (const int far : {1, kIntMax}) {
      ASSERT_TRUE(IsAsThePlainScans(line, {{11.5, 80.0, 0.0f}, 0, 0.0, kInfinity, far, 45.0, 400.0}))
          << place;
    }
  }
}

// A ring, passed several times, is equally far from its middle everywhere but for roundings: bounds rule out next to
// nothing, and the first of the equal segments must win.
TEST_P(ProjectionScan, RingsAboutThePosition) {
  Numbers numbers(53034);
  for (int run = 0; run < 3000; ++run) {
    GeoCoordinateZ centre = AnyPlace(numbers);
    if (std::fabs(centre.latitude) > 80.0) centre.latitude = 48.1;
    const double radius = std::fabs(numbers.Magnitude(1e-6, 0.1));  // degrees
    const double scale = std::cos(centre.latitude * 0.017453292519943295);
    const std::size_t vertexCount = 3 + numbers.Below(30);
    LineZ line;
    for (std::size_t turn = 0; turn < 3; ++turn) {
      for (std::size_t i = 0; i < vertexCount; ++i) {
        const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(vertexCount);
        line.push_back({centre.longitude + radius * std::sin(angle) / scale,
                        centre.latitude + radius * std::cos(angle), 0.0f});
      }
    }
    for (const int far : {0, 3, kIntMax}) {
      for (const double maxDistance : {111000.0 * radius, 1e9}) {
        const double heading = numbers.Between(0.0, 360.0);
        ASSERT_TRUE(IsAsThePlainScans(line, {centre, 0, 0.0, maxDistance, far, heading, 40.0}))
            << "run " << run;
      }
    }
  }
}

// The segment with the position in its middle has just the squared length from which on one is projected, 1e-13.
TEST_P(ProjectionScan, SegmentOfTheShortestLengthAtEveryPlace) {
  constexpr double kEast = 2.6948674738744655e-07;
  constexpr double kNorth = 1.6545964155205515e-07;
  ASSERT_EQ(kEast * kEast + kNorth * kNorth, 1e-13);
  const GeoCoordinateZ pos(0.5 * kEast, 0.5 * kNorth, 0.0f);
  for (int place = 0; place < 12; ++place) {
    LineZ line;
    for (int i = place; i > 0; --i) line.push_back({-1e-4 * i, 0.0, 0.0f});
    line.push_back({0.0, 0.0, 0.0f});
    line.push_back({kEast, kNorth, 0.0f});
    for (int i = place; i < 12; ++i) line.push_back({1e-4 * (i + 1), 0.0, 0.0f});
    for (const int far : {2, kIntMax}) {
      ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 0.0, 20.0, far, 45.0, 400.0})) << place;
    }
  }
}

// Headings a hair beside the border of the tolerance, and beside north.
TEST_P(ProjectionScan, HeadingsAtTheTolerance) {
  Numbers numbers(53033);
  for (int run = 0; run < 60000; ++run) {
    const double latitude = numbers.Between(-89.0, 89.0);
    LineZ line;
    for (int i = 0; i < 4; ++i) {
      line.push_back({11.5 + numbers.Between(-1e-4, 1e-4), latitude + numbers.Between(-1e-4, 1e-4), 0.0f});
    }
    if (run % 4 == 0) line[2].longitude = line[1].longitude + numbers.Magnitude(1e-13, 1e-8);
    const double segmentHeading = VorelGeometryAlgorithm::GetAngle(line[1], line[2]);
    const double tolerance = numbers.Between(0.0, 180.0);
    double heading =
        segmentHeading + (run % 2 == 0 ? tolerance : -tolerance) + numbers.Magnitude(1e-15, 0.01);
    if (numbers.Below(4) != 0)
      heading = heading < 0.0 ? heading + 360.0 : heading > 360.0 ? heading - 360.0 : heading;
    const GeoCoordinateZ pos(line[1].longitude + numbers.Between(-1e-6, 1e-6), line[1].latitude, 0.0f);
    for (const double maxDistance : {20.0, 0.001}) {
      ASSERT_TRUE(IsAsThePlainScans(line, {pos, 0, 0.0, maxDistance, 9, heading, tolerance}));
    }
  }
}

}  // namespace
