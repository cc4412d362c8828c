// Parallel offset of a line with heights.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/offset_reference.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::Bits;
using vorel::test::kInfinityFloat;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::LineZ;
using vorel::test::LocalMetres;
using vorel::test::NamedLineZ;
using vorel::test::OneOf;
using vorel::test::SameBits;
using vorel::test::Uniform;

constexpr double kPi = 3.141592653589793;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kMetresPerDegreeNorth = 111194.92664455873;
constexpr bool kLeft = true;
constexpr bool kRight = false;

double MetresPerDegreeEast(double latitude) {
  const double radius = std::cos(latitude * kRadiansPerDegree) * 6371000.0;
  return (radius + radius) * 3.141592653589793 / 360.0;
}

/// `point` moved on a heading, as the first and the last point of a result are.
GeoCoordinateZ Moved(const GeoCoordinateZ& point, float headingDegrees, float metres) {
  const double r = static_cast<double>(headingDegrees) * kRadiansPerDegree;
  const double east = static_cast<double>(metres) * std::sin(r);
  const double north = static_cast<double>(metres) * std::cos(r);
  return {point.longitude + east / MetresPerDegreeEast(point.latitude),
          point.latitude + north / kMetresPerDegreeNorth, point.z};
}

LineZ Offset(const LineZ& line, float metres, bool left) {
  LineZ result;
  VorelGeometryAlgorithm::PanLinePoints(line, metres, left, result);
  return result;
}

// ---- Edges ------------------------------------------------------------------------------------------------------

// A line of one straight piece moves along one normal: all points by the same heading.
struct StraightCase {
  const char* name;
  LineZ line;
  float offset;
  bool left;
  float normal;  // degrees
};

class PanLinePointsStraight : public testing::TestWithParam<StraightCase> {};

TEST_P(PanLinePointsStraight, MovesAlongTheNormal) {
  const StraightCase& c = GetParam();
  LineZ expected;
  for (const GeoCoordinateZ& point : c.line) expected.push_back(Moved(point, c.normal, c.offset));
  EXPECT_TRUE(SameBits(Offset(c.line, c.offset, c.left), expected));
}

const LineZ kNorth = {{8.0, 49.0, 1.5f}, {8.0, 49.001, 2.5f}};
const LineZ kSouth = {{8.0, 49.001, 1.5f}, {8.0, 49.0, 2.5f}};
const LineZ kNorthInThree = {{8.0, 49.0, 1.5f}, {8.0, 49.0004, 7.0f}, {8.0, 49.001, 2.5f}};
const LineZ kEastOnEquator = {{8.0, 0.0, 1.5f}, {8.001, 0.0, 2.5f}};
const LineZ kWestOnEquator = {{8.0, 0.0, 1.5f}, {7.999, 0.0, 2.5f}};

INSTANTIATE_TEST_SUITE_P(
    All, PanLinePointsStraight,
    testing::Values(StraightCase{"NorthRight", kNorth, 10.0f, kRight, 90.0f},
                    StraightCase{"NorthLeft", kNorth, 10.0f, kLeft, 270.0f},
                    StraightCase{"NorthRightNegative", kNorth, -10.0f, kRight, 90.0f},
                    StraightCase{"NorthLeftNegative", kNorth, -10.0f, kLeft, 270.0f},
                    StraightCase{"NorthZero", kNorth, 0.0f, kRight, 90.0f},
                    StraightCase{"SouthRight", kSouth, 10.0f, kRight, 270.0f},
                    StraightCase{"SouthLeft", kSouth, 10.0f, kLeft, 90.0f},
                    StraightCase{"EastRight", kEastOnEquator, 10.0f, kRight, 180.0f},
                    StraightCase{"EastLeft", kEastOnEquator, 10.0f, kLeft, 0.0f},
                    StraightCase{"WestRight", kWestOnEquator, 10.0f, kRight, 0.0f},
                    StraightCase{"WestLeft", kWestOnEquator, 10.0f, kLeft, 180.0f},
                    StraightCase{"ThreePoints", kNorthInThree, 10.0f, kRight, 90.0f},
                    StraightCase{"ThreePointsLeft", kNorthInThree, 10.0f, kLeft, 270.0f},
                    // The bearing between two equal points is north.
                    StraightCase{"TwoEqual", {kNorth[0], kNorth[0]}, 10.0f, kRight, 90.0f},
                    StraightCase{
                        "AcrossThePole", {{20.0, 89.999, 1.0f}, {20.0, 90.0, 2.0f}}, 10.0f, kRight, 90.0f},
                    StraightCase{"NaNOffset", kNorth, kNaNFloat, kRight, 90.0f},
                    StraightCase{"InfiniteOffset", kNorth, kInfinityFloat, kLeft, 270.0f}),
    vorel::test::CaseName<StraightCase>);

// A heading 1 degree west of north: its normals lie at 89 and 269 degrees, found through 359 and the fold.
TEST(PanLinePoints, FoldsHeadingsAcrossNorth) {
  for (const double heading : {359.0, 1.0, 0.0, 180.0, 91.0, 271.0}) {
    const LocalMetres place(8.4, 49.0);
    const LineZ line = {place.At(0, 0),
                        place.At(100 * std::sin(heading * kPi / 180), 100 * std::cos(heading * kPi / 180))};
    for (const bool left : {kLeft, kRight}) {
      float normal = static_cast<float>(VorelGeometryAlgorithm::GetAngle(line[0], line[1]));
      if (normal < 0.0f) normal += 360.0f;
      normal += left ? -90.0f : 90.0f;
      if (normal < 0.0f) normal += 360.0f;
      if (normal >= 360.0f) normal -= 360.0f;
      const LineZ result = Offset(line, 3.5f, left);
      ASSERT_EQ(result.size(), 2u);
      EXPECT_TRUE(SameBits(result[0], Moved(line[0], normal, 3.5f))) << heading;
      EXPECT_TRUE(SameBits(result[1], Moved(line[1], normal, 3.5f))) << heading;
      // Degrees; the bearing is that of a sphere, the line was laid out on the ellipsoid. The worst is 3.5e-3.
      EXPECT_NEAR(std::remainder(static_cast<double>(normal) - heading - (left ? -90 : 90), 360.0), 0.0,
                  4e-3);
    }
  }
}

TEST(PanLinePoints, EachEndUsesItsOwnLatitude) {
  const LineZ line = {{8.0, 10.0, 0.0f}, {8.0, 60.0, 0.0f}};
  const LineZ result = Offset(line, 10.0f, kRight);
  EXPECT_TRUE(SameBits(result[0].longitude, 8.0 + 10.0 / MetresPerDegreeEast(10.0)));
  EXPECT_TRUE(SameBits(result[1].longitude, 8.0 + 10.0 / MetresPerDegreeEast(60.0)));
}

TEST(PanLinePoints, FewerThanTwoPointsOnlyReserve) {
  for (const LineZ& line : {LineZ{}, LineZ{{8.0, 49.0, 1.0f}}}) {
    LineZ result;
    VorelGeometryAlgorithm::PanLinePoints(line, 10.0f, kRight, result);
    EXPECT_TRUE(result.empty());
    EXPECT_GE(result.capacity(), line.size());
  }
}

TEST(PanLinePoints, ReservesOnce) {
  LineZ line;
  for (int i = 0; i < 77; ++i) line.emplace_back(8.0 + i * 1e-4, 49.0, 0.0f);
  LineZ result;
  const vorel::test::AllocationCounter allocations;
  VorelGeometryAlgorithm::PanLinePoints(line, 1.0f, kLeft, result);
  EXPECT_EQ(result.capacity(), line.size());
  if (vorel::test::CanCountAllocations()) {
    EXPECT_EQ(allocations.Count(), 1u);
  }
}

#if !VOREL_CHECK_PRECONDITIONS
TEST(PanLinePoints, OutputThatWasNotEmptyHarmsNothing) {
  LineZ result = {{1.0, 2.0, 3.0f}, {4.0, 5.0, 6.0f}};
  VorelGeometryAlgorithm::PanLinePoints(kNorthInThree, 10.0f, kRight, result);
  EXPECT_EQ(result.size(), 5u);
}
#endif

// ---- Joints -----------------------------------------------------------------------------------------------------

// The moved copies of the middle one of three points, and the moved outer points.
struct MovedSegments {
  GeoCoordinateZ previousStart, previousEnd, start, end;
};

float Normal(const GeoCoordinateZ& from, const GeoCoordinateZ& to, bool left) {
  const auto fold = [](float a) {
    while (a >= 360.0f) a -= 360.0f;
    while (0.0f > a) a += 360.0f;
    return a;
  };
  return fold(fold(static_cast<float>(VorelGeometryAlgorithm::GetAngle(from, to))) + (left ? -90.0f : 90.0f));
}

MovedSegments Move(const LineZ& line, float offset, bool left) {
  const float first = Normal(line[0], line[1], left);
  const float second = Normal(line[1], line[2], left);
  return {Moved(line[0], first, offset), Moved(line[1], first, offset), Moved(line[1], second, offset),
          Moved(line[2], second, offset)};
}

const LocalMetres kPlace(8.4, 49.0);

TEST(PanLinePointsJoint, NorthThenEastKeepsTheLongitudeOfTheVerticalSegment) {
  for (const bool left : {kLeft, kRight}) {
    const LineZ line = {kPlace.At(0, 0, 1), kPlace.At(0, 100, 2), kPlace.At(100, 100, 3)};
    const MovedSegments m = Move(line, 4.0f, left);
    const double slope = (m.end.latitude - m.start.latitude) / (m.end.longitude - m.start.longitude);
    const GeoCoordinateZ joint(m.previousEnd.longitude,
                               (m.previousEnd.longitude - m.start.longitude) * slope + m.start.latitude,
                               2.0f);
    EXPECT_TRUE(SameBits(Offset(line, 4.0f, left), LineZ{m.previousStart, joint, m.end}));
    // Metres; the offset is laid off on a sphere. The worst is 0.0123.
    EXPECT_NEAR(kPlace.East(joint), left ? -4 : 4, 0.015);
    EXPECT_NEAR(kPlace.North(joint), left ? 104 : 96, 0.015);
  }
}

TEST(PanLinePointsJoint, EastThenNorthTakesTheLongitudeOfTheVerticalSegment) {
  for (const bool left : {kLeft, kRight}) {
    const LineZ line = {kPlace.At(0, 0, 1), kPlace.At(100, 7, 2), kPlace.At(100, 107, 3)};
    const MovedSegments m = Move(line, 4.0f, left);
    const double slope = (m.previousEnd.latitude - m.previousStart.latitude) /
                         (m.previousEnd.longitude - m.previousStart.longitude);
    // The latitude comes from the previous line at the new longitude, measured from the old one.
    const GeoCoordinateZ joint(m.start.longitude,
                               m.previousEnd.latitude + slope * (m.start.longitude - m.previousEnd.longitude),
                               2.0f);
    ASSERT_NE(joint.latitude, m.previousEnd.latitude);
    EXPECT_TRUE(SameBits(Offset(line, 4.0f, left), LineZ{m.previousStart, joint, m.end}));
  }
}

TEST(PanLinePointsJoint, TwoVerticalsMeetHalfWayBetweenTheirLatitudes) {
  // Back on itself: both moved copies of the turning point have its latitude. A slight lean sets them apart.
  const LineZ line = {kPlace.At(0, 0, 1), kPlace.At(0.0, 0.5, 2), kPlace.At(0.05, 0.0, 3)};
  const MovedSegments m = Move(line, 4.0f, kRight);
  ASSERT_LT(std::fabs(m.end.longitude - m.start.longitude), 1e-6);
  ASSERT_NE(m.previousEnd.latitude, m.start.latitude);
  const GeoCoordinateZ joint(m.previousEnd.longitude, (m.previousEnd.latitude + m.start.latitude) * 0.5,
                             2.0f);
  EXPECT_TRUE(SameBits(Offset(line, 4.0f, kRight), LineZ{m.previousStart, joint, m.end}));
}

// The crossing of two moved segments neither of which is vertical.
GeoCoordinate Crossing(const MovedSegments& m) {
  const double s1 = (m.previousEnd.latitude - m.previousStart.latitude) /
                    (m.previousEnd.longitude - m.previousStart.longitude);
  const double s2 = (m.end.latitude - m.start.latitude) / (m.end.longitude - m.start.longitude);
  const double c1 = m.previousEnd.latitude - m.previousEnd.longitude * s1;
  const double c2 = m.start.latitude - m.start.longitude * s2;
  return {(c2 - c1) / (s1 - s2), (c2 * s1 + (-s2) * c1) / (s1 - s2)};
}

LineZ Bend(double turnDegrees, double legMetres) {
  // The first leg heads east by north, so that neither leg is vertical.
  const double first = 75 * kPi / 180;
  const double second = (75 + turnDegrees) * kPi / 180;
  return {kPlace.At(-legMetres * std::sin(first), -legMetres * std::cos(first), 1), kPlace.At(0, 0, 2),
          kPlace.At(legMetres * std::sin(second), legMetres * std::cos(second), 3)};
}

struct BendCase {
  const char* name;
  double turn;  // degrees
  float offset;
  bool left;
  bool isCrossing;
};

class PanLinePointsBend : public testing::TestWithParam<BendCase> {};

TEST_P(PanLinePointsBend, JoinsAtTheCrossingUnlessItIsTooFar) {
  const BendCase& c = GetParam();
  const LineZ line = Bend(c.turn, 200);
  const MovedSegments m = Move(line, c.offset, c.left);
  GeoCoordinateZ joint = m.previousEnd;
  if (c.isCrossing) {
    const GeoCoordinate crossing = Crossing(m);
    joint.longitude = crossing.longitude;
    joint.latitude = crossing.latitude;
    ASSERT_FALSE(SameBits(joint, m.previousEnd));
  }
  EXPECT_TRUE(SameBits(Offset(line, c.offset, c.left), LineZ{m.previousStart, joint, m.end}));
}

INSTANTIATE_TEST_SUITE_P(
    All, PanLinePointsBend,
    testing::Values(
        BendCase{"Right30Outside", 30, 3.0f, kLeft, true}, BendCase{"Right30Inside", 30, 3.0f, kRight, true},
        BendCase{"Left30", -30, 3.0f, kLeft, true}, BendCase{"Right90", 90, 3.0f, kLeft, true},
        BendCase{"Left90", -90, 3.0f, kLeft, true}, BendCase{"Right120", 120, 3.0f, kRight, true},
        BendCase{"Right150", 150, 3.0f, kRight, true}, BendCase{"Right152", 152, 3.0f, kRight, false},
        BendCase{"Left150", -150, 3.0f, kRight, true}, BendCase{"Left152", -152, 3.0f, kRight, false},
        BendCase{"Hairpin179", 179, 3.0f, kLeft, false}, BendCase{"Hairpin180", 180, 3.0f, kLeft, false},
        // The gap between the moved copies is 2 * offset * sin(turn / 2).
        BendCase{"GapOf9Millimetres", 1, 0.516f, kLeft, false},
        BendCase{"GapOf11Millimetres", 1, 0.630f, kLeft, true},
        BendCase{"StraightOn", 0, 3.0f, kLeft, false}),
    vorel::test::CaseName<BendCase>);

// The two moved segments span equally many degrees of longitude as the two legs, to some 1e-12.
TEST(PanLinePointsJoint, VerticalEndsAtAMillionthOfADegree) {
  for (const bool isVertical : {true, false}) {
    const double lean = isVertical ? 0.99e-6 : 1.01e-6;
    const LineZ line = {{8.0, 0.0, 0.0f}, {8.0 + lean, 0.001, 0.0f}, {8.001, 0.001, 0.0f}};
    const MovedSegments m = Move(line, 4.0f, kRight);
    const GeoCoordinateZ joint = Offset(line, 4.0f, kRight)[1];
    EXPECT_EQ(Bits(joint.longitude) == Bits(m.previousEnd.longitude), isVertical);
    const LineZ reversed(line.rbegin(), line.rend());
    const MovedSegments r = Move(reversed, 4.0f, kRight);
    const GeoCoordinateZ reversedJoint = Offset(reversed, 4.0f, kRight)[1];
    EXPECT_EQ(Bits(reversedJoint.longitude) == Bits(r.start.longitude), isVertical);
  }
}

TEST(PanLinePointsJoint, AMillionthOfADegreeIsNotVertical) {
  // Along the equator to the left: longitudes stay what they are.
  const LineZ first = {{0.0, 0.0, 0.0f}, {1e-6, 0.0, 0.0f}, {0.001, 0.001, 0.0f}};
  const MovedSegments f = Move(first, 4.0f, kLeft);
  ASSERT_EQ(f.previousEnd.longitude - f.previousStart.longitude, 1e-6);
  EXPECT_TRUE(SameBits(GeoCoordinate(Offset(first, 4.0f, kLeft)[1]), Crossing(f)));
  const LineZ second = {{-0.001, -0.001, 0.0f}, {0.0, 0.0, 0.0f}, {1e-6, 0.0, 0.0f}};
  const MovedSegments s = Move(second, 4.0f, kLeft);
  ASSERT_EQ(s.end.longitude - s.start.longitude, 1e-6);
  EXPECT_TRUE(SameBits(GeoCoordinate(Offset(second, 4.0f, kLeft)[1]), Crossing(s)));
}

TEST(PanLinePointsJoint, GoesStraightOnBelowACentimetre) {
  // The line turns by one degree: an offset of 0.573 m makes a gap of a centimetre.
  const LineZ line = {{8.0, 0.0, 0.0f}, {8.0, 0.001, 0.0f}, {8.0 + 0.001 * std::tan(kPi / 180), 0.002, 0.0f}};
  const auto gap = [](const MovedSegments& m) { return m.previousEnd.DistanceTo(m.start); };
  float offset = 0.56f;
  while (gap(Move(line, offset + 1e-5f, kRight)) < 0.01) offset += 1e-5f;
  int below = 0, beyond = 0;
  for (; beyond < 10; offset = std::nextafter(offset, 1.0f)) {
    const MovedSegments m = Move(line, offset, kRight);
    const bool goesStraightOn = gap(m) < 0.01;
    (goesStraightOn ? below : beyond) += 1;
    ASSERT_EQ(vorel::test::AreSameBits(GeoCoordinate(Offset(line, offset, kRight)[1]), m.previousEnd),
              goesStraightOn)
        << vorel::test::Paste(offset);
  }
  EXPECT_GT(below, 20);
}

TEST(PanLinePointsJoint, TakesThePreviousSegmentAsJoinedSoFar) {
  // After a hairpin, whose joint stays off the second moved segment, the third one meets the line from that joint.
  const LineZ line = {kPlace.At(0, 0), kPlace.At(30, 1), kPlace.At(0, 6), kPlace.At(-20, 40)};
  const LineZ whole = Offset(line, 4.0f, kRight);
  const MovedSegments m = Move({line[1], line[2], line[3]}, 4.0f, kRight);
  const MovedSegments joined{whole[1], m.previousEnd, m.start, m.end};
  EXPECT_TRUE(SameBits(GeoCoordinate(whole[2]), Crossing(joined)));
  EXPECT_GT(Crossing(joined).DistanceTo(Crossing(m)), 0.5);  // deliberate: not where the moved segments cross
}

TEST(PanLinePoints, KeepsHeightsBitForBit) {
  LineZ line = Bend(60, 50);
  line.push_back(kPlace.At(300, 300));
  line.push_back(kPlace.At(300, 300));
  line[0].z = kNaNFloat;
  line[1].z = -0.0f;
  line[2].z = kInfinityFloat;
  line[3].z = 1e-42f;
  const LineZ result = Offset(line, 4.0f, kLeft);
  ASSERT_EQ(result.size(), line.size());
  for (std::size_t i = 0; i < line.size(); ++i) EXPECT_TRUE(SameBits(result[i].z, line[i].z)) << i;
}

TEST(PanLinePoints, NaNGoesOnToTheJoint) {
  const LineZ line = {kPlace.At(0, 0), kPlace.At(30, 1), {kNaN, 49.001, 0.0f}, kPlace.At(60, 9)};
  const LineZ result = Offset(line, 4.0f, kRight);
  ASSERT_EQ(result.size(), 4u);
  EXPECT_TRUE(SameBits(result[0], Moved(line[0], Normal(line[0], line[1], kRight), 4.0f)));
  EXPECT_FALSE(std::isnan(result[1].longitude));
  EXPECT_TRUE(std::isnan(result[2].longitude));
  EXPECT_TRUE(std::isnan(result[3].longitude));
}

// ---- Properties -------------------------------------------------------------------------------------------------

TEST(PanLinePoints, KeepsDirectionAndDistanceOnStraightStretches) {
  constexpr unsigned kSeed = 52001;
  // Relative: the sphere of 6371 km against the ellipsoid. The worst of 3e5 runs was 5.58e-3, near the equator.
  constexpr double kDistanceSlack = 6e-3;
  // Degrees: the bearing is that of a sphere too, and each end moves by degrees of its own latitude. The worst of 3e5 runs,
  // at 70 degrees, was 4.8e-4.
  constexpr double kDirectionSlack = 6e-4;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LocalMetres place(Uniform(generator, -179, 179),
                            OneOf<double>(generator, {-1, 1}) * Uniform(generator, 0, 70));
    const double heading = Uniform(generator, 0, 2 * kPi);
    LineZ line;
    double metres = 0.0;
    for (int i = 0; i < 5; ++i) {
      line.push_back(place.At(metres * std::sin(heading), metres * std::cos(heading), static_cast<float>(i)));
      metres += Uniform(generator, 5, 100);
    }
    const float offset = static_cast<float>(Uniform(generator, 0.5, 20));
    const bool left = generator() % 2 == 0;
    const LineZ result = Offset(line, offset, left);
    ASSERT_EQ(result.size(), line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
      EXPECT_TRUE(SameBits(result[i].z, line[i].z));
      EXPECT_NEAR(result[i].DistanceTo(line[i]) / static_cast<double>(offset), 1.0, kDistanceSlack);
      if (i == 0) continue;
      const double side = VorelGeometryAlgorithm::GetPositionOfPointToLine(result[i], line[i - 1], line[i]);
      EXPECT_EQ(side > 0, left);
      const double turned = VorelGeometryAlgorithm::GetAngle(result[i - 1], result[i]) -
                            VorelGeometryAlgorithm::GetAngle(line[i - 1], line[i]);
      EXPECT_NEAR(std::remainder(turned, 360.0), 0.0, kDirectionSlack);
    }
  }
}

// ---- Against the twin -------------------------------------------------------------------------------------------

void CompareOffsets(const LineZ& line) {
  for (const float offset : {1.75f, -3.5f, 0.0f, 40.0f, 1e-3f, kNaNFloat, kInfinityFloat}) {
    for (const bool left : {kLeft, kRight}) {
      SCOPED_TRACE(testing::Message() << "offset " << offset << (left ? " left" : " right"));
      LineZ expected;
      reference::PanLinePoints(line, offset, left, expected);
      EXPECT_TRUE(SameBits(Offset(line, offset, left), expected));
    }
  }
}

TEST(OffsetDifferential, RandomLines) {
  std::mt19937 generator(52002);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 52002, run " << run);
    CompareOffsets(vorel::test::RandomLineZ(generator, static_cast<int>(generator() % 60)));
  }
}

TEST(OffsetDifferential, WildLines) {
  std::mt19937 generator(52003);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 52003, run " << run);
    CompareOffsets(vorel::test::WildLineZ(generator, static_cast<int>(generator() % 30)));
  }
}

TEST(OffsetDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    CompareOffsets(lane.points);
  }
}

JOIN_AWKWARD_LINES_Z(Offset, [](const LineZ& line) {
  CompareOffsets(line);
  EXPECT_EQ(Offset(line, 3.0f, kLeft).size(), line.size() < 2 ? 0 : line.size());
});

}  // namespace
