// Turning a point about a centre, and the signed angle that fixes a point beside a line.

#include <cmath>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "base/precondition.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/points_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::CaseName;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::Numbers;
using vorel::test::Paste;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;

constexpr unsigned kSeed = 20262;
constexpr double kLargestTurn = 3.6e9;                   // degrees
constexpr double kMetresPerDegree = 111194.92664455873;  // of latitude, on the sphere of 6371 km

// ---- RotatePoint ----------------------------------------------------------------------------------------------

struct RotateCase {
  const char* name;
  double turn;     // degrees
  double heading;  // of the result, seen from the centre; the point itself lies north
};
void PrintTo(const RotateCase& c, std::ostream* out) {
  *out << c.name;
}
class RotatePointEdges : public testing::TestWithParam<RotateCase> {};

TEST_P(RotatePointEdges, LaysTheDistanceOffOnTheSphere) {
  const GeoCoordinate center{7.5, 60.0}, point{7.5, 60.009};
  const double radius = center.DistanceTo(point);
  const GeoCoordinate rotated = Algorithm::RotatePoint(point, center, GetParam().turn);
  const double heading = GetParam().heading * 0.017453292519943295;
  // Half a parallel's length at latitude 60. Slack: a few last bits of the coordinates.
  EXPECT_NEAR(rotated.longitude, 7.5 + radius * std::sin(heading) / (kMetresPerDegree * 0.5), 1e-14);
  EXPECT_NEAR(rotated.latitude, 60.0 + radius * std::cos(heading) / kMetresPerDegree, 2e-14);
}
INSTANTIATE_TEST_SUITE_P(All, RotatePointEdges,
                         testing::Values(RotateCase{"Not", 0, 0}, RotateCase{"EastwardIsClockwise", 90, 90},
                                         RotateCase{"South", 180, 180},
                                         RotateCase{"SouthBackwards", -180, 180},
                                         RotateCase{"West", 270, -90}, RotateCase{"WestBackwards", -90, -90},
                                         RotateCase{"WholeTurn", 360, 0},
                                         RotateCase{"WholeTurnBackwards", -360, 0}, RotateCase{"One", 1, 1},
                                         RotateCase{"ThreeHundredFiftyNine", 359, -1},
                                         RotateCase{"ManyTurns", 3690, 90}),
                         CaseName<RotateCase>);

TEST(RotatePoint, EndsAtTheLargestTurnStated) {
  const GeoCoordinate center{7.5, 47.5}, point{7.5, 47.509};
  const GeoCoordinate still = Algorithm::RotatePoint(point, center, 0.0);
  for (const double turn : {kLargestTurn, -kLargestTurn}) {
    // Whole turns of an exact heading: nothing is lost on the way.
    EXPECT_TRUE(SameBits(Algorithm::RotatePoint(point, center, turn), still)) << turn;
  }
}

TEST(RotatePoint, GivesTheCentreForItself) {
  const GeoCoordinate center{7.5, 47.5};
  EXPECT_TRUE(SameBits(Algorithm::RotatePoint(center, center, 123.0), center));
}

TEST(RotatePoint, GivesNaNForNaN) {
  const GeoCoordinate center{7.5, 47.5}, point{7.5, 47.6}, nothing{kNaN, kNaN};
  EXPECT_TRUE(SameBits(Algorithm::RotatePoint(point, center, kNaN), nothing));
  EXPECT_TRUE(SameBits(Algorithm::RotatePoint({kNaN, 47.6}, center, 5.0), nothing));
  EXPECT_TRUE(SameBits(Algorithm::RotatePoint(point, {7.5, kNaN}, 5.0), nothing));
  EXPECT_TRUE(SameBits(Algorithm::RotatePoint({7.5, 90.5}, center, 5.0), nothing));
}

TEST(RotatePoint, DeliberatelyMeasuresOnTheEllipsoidAndLaysOffOnTheSphere) {
  // At the equator a degree of the meridian is 0.56 % shorter than the sphere's: a turn by 0 moves the point.
  const GeoCoordinate center{7.5, 0.0}, point{7.5, 0.01};
  const double moved = (point.latitude - Algorithm::RotatePoint(point, center, 0.0).latitude) / 0.01;
  EXPECT_NEAR(moved, 1.0 - 110574.2758 / kMetresPerDegree, 1e-8);
}

TEST(RotatePoint, KeepsTheDistanceUpToTheFlattening) {
  constexpr double kSlack = 6e-3;  // of the radius; worst of 1e6 runs 5.6e-3
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate center{numbers.Between(-180.0, 180.0), numbers.Between(-70.0, 70.0)};
    const GeoCoordinate point{center.longitude + numbers.Magnitude(1e-5, 0.01),
                              center.latitude + numbers.Magnitude(1e-5, 0.01)};
    const GeoCoordinate rotated = Algorithm::RotatePoint(point, center, numbers.Between(-720.0, 720.0));
    EXPECT_NEAR(center.DistanceTo(rotated) / center.DistanceTo(point), 1.0, kSlack);
  }
}

TEST(RotatePoint, WholeTurnsEqualNone) {
  constexpr double kSlack = 6e-14;  // degrees; worst of 1e6 runs 2.9e-14: the heading's last bits
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate center{numbers.Between(-180.0, 180.0), numbers.Between(-70.0, 70.0)};
    const GeoCoordinate point{center.longitude + numbers.Between(-0.01, 0.01),
                              center.latitude + numbers.Between(-0.01, 0.01)};
    const GeoCoordinate still = Algorithm::RotatePoint(point, center, 0.0);
    const GeoCoordinate turned = Algorithm::RotatePoint(point, center, 360.0);
    EXPECT_NEAR(turned.longitude, still.longitude, kSlack);
    EXPECT_NEAR(turned.latitude, still.latitude, kSlack);
  }
}

TEST(RotatePoint, HasTheBitsOfItsPlainTwin) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 60000; ++run) {
    const GeoCoordinate center = run % 4 == 0 ? numbers.Point() : numbers.OrdinaryPoint();
    const GeoCoordinate point = run % 8 == 1 ? numbers.Point() : numbers.PointAbout(center, 1.0);
    double turn = numbers.Between(-360.0, 360.0);
    if (run % 3 == 0) turn = 90.0 * static_cast<double>(numbers.Below(17)) - 720.0;
    if (run % 16 == 0) turn = numbers.Special();
    if (run % 16 == 1) turn = 180.0 - Algorithm::GetAngle(center, point);  // ends on the fold's border
    if (run % 16 == 2) turn = -180.0 - Algorithm::GetAngle(center, point);
    if (std::fabs(turn) > 1e6) continue;  // too many steps
    ASSERT_TRUE(
        SameBits(Algorithm::RotatePoint(point, center, turn), reference::RotatePoint(point, center, turn)))
        << Paste(point) << " about " << Paste(center) << " by " << Paste(turn);
  }
}

// ---- GetFixAngleForSidePoint ----------------------------------------------------------------------------------

// Degrees by which the triangles below miss their planar angle (0.2504), the ellipsoid's degree of longitude being
// 0.67 % longer than that of latitude.
constexpr float kPlanarSlack = 0.26f;

/// A corner of a line at (0, 0), seen from `length` metres due south of it; `to` lies `directMetres` from there.
/// The line leaves the corner at 60 degrees to the way back to `from`.
struct Corner {
  static constexpr double kDegreesPerMetre = 1.0 / 110574.2758;  // of latitude, at the equator
  GeoCoordinate corner{0.0, 0.0};
  GeoCoordinate from;
  GeoCoordinate to;
  GeoCoordinate eastward, westward;

  Corner(double length, double directMetres) {
    from = {0.0, -length * kDegreesPerMetre};
    to = {0.0, from.latitude + directMetres * kDegreesPerMetre};
    eastward = {0.01, -0.01 * std::tan(30.0 * 0.017453292519943295)};
    westward = {-eastward.longitude, eastward.latitude};
  }
  // The line's second point is the corner of its first segment, the third that of its third segment.
  Line FirstSegmentToward(const GeoCoordinate& end) const {
    return {end, corner, {0.02, 0.02}, {0.03, 0.03}};
  }
  Line ThirdSegmentToward(const GeoCoordinate& end) const {
    return {{-0.03, 0.03}, {-0.02, 0.02}, corner, end};
  }
};

TEST(GetFixAngleForSidePoint, FindsTheIsoscelesTriangle) {
  // All sides 500 m and all angles 60 degrees: the side point lies 60 degrees beside the direct heading.
  const Corner c(500.0, 500.0);
  EXPECT_NEAR(
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(c.eastward), c.from, c.to, 60.0, 500.0, true),
      60.0f, kPlanarSlack);
  EXPECT_NEAR(
      Algorithm::GetFixAngleForSidePoint(c.ThirdSegmentToward(c.westward), c.from, c.to, 60.0, 500.0, false),
      -60.0f, kPlanarSlack);
}

TEST(GetFixAngleForSidePoint, GivesZeroForTheWrongSide) {
  const Corner c(500.0, 500.0);
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(c.westward), c.from, c.to, 60.0, 500.0, true),
      0.0f));
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.ThirdSegmentToward(c.eastward), c.from, c.to, 60.0, 500.0, false),
      0.0f));
}

TEST(GetFixAngleForSidePoint, GivesZeroWithoutACandidate) {
  const Corner c(500.0, 100.0);  // too short to reach the line
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(c.eastward), c.from, c.to, 60.0, 500.0, true),
      0.0f));
}

TEST(GetFixAngleForSidePoint, GivesZeroForNaN) {
  const Corner c(500.0, 500.0);
  const Line line = c.FirstSegmentToward(c.eastward);
  const GeoCoordinate nothing{kNaN, kNaN};
  EXPECT_TRUE(SameBits(Algorithm::GetFixAngleForSidePoint(line, nothing, c.to, 60.0, 500.0, true), 0.0f));
  EXPECT_TRUE(SameBits(Algorithm::GetFixAngleForSidePoint(line, c.from, nothing, 60.0, 500.0, true), 0.0f));
  EXPECT_TRUE(SameBits(Algorithm::GetFixAngleForSidePoint(line, c.from, c.to, kNaN, 500.0, true), 0.0f));
  EXPECT_TRUE(SameBits(Algorithm::GetFixAngleForSidePoint(line, c.from, c.to, 60.0, kNaN, true), 0.0f));
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(nothing), c.from, c.to, 60.0, 500.0, true),
      0.0f));
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.ThirdSegmentToward(nothing), c.from, c.to, 60.0, 500.0, false),
      0.0f));
  // A segment without length leads nowhere.
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(c.corner), c.from, c.to, 60.0, 500.0, true),
      0.0f));
}

TEST(GetFixAngleForSidePoint, TakesTheFirstCandidateWithTheWantedSign) {
  // A direct distance between the perpendicular and `length` meets the line twice, the farther point first.
  const Corner c(500.0, 470.0);
  const std::vector<double> candidates =
      Algorithm::GetLength3OfTriangle(c.to.DistanceTo(c.from), 500.0, 60.0);
  ASSERT_EQ(candidates.size(), 2u);
  const float first =
      Algorithm::GetFixAngleForSidePoint(c.FirstSegmentToward(c.eastward), c.from, c.to, 60.0, 500.0, true);
  const GeoCoordinate farther = Algorithm::GetLinePoint(c.corner, c.eastward, candidates[0]);
  EXPECT_EQ(first,
            static_cast<float>(Algorithm::GetAngle(c.from, farther) - Algorithm::GetAngle(c.from, c.to)));
  // Seen with `to` between the two candidates, the third segment takes the second one.
  Corner between = c;
  const double turned = 35.0 * 0.017453292519943295;
  between.to = {470.0 * Corner::kDegreesPerMetre * std::sin(turned),
                c.from.latitude + 470.0 * Corner::kDegreesPerMetre * std::cos(turned)};
  const std::vector<double> lengths =
      Algorithm::GetLength3OfTriangle(between.to.DistanceTo(c.from), 500.0, 60.0);
  ASSERT_EQ(lengths.size(), 2u);
  const float second = Algorithm::GetFixAngleForSidePoint(c.ThirdSegmentToward(c.eastward), c.from,
                                                          between.to, 60.0, 500.0, false);
  EXPECT_LT(second, -1.0f);
  const GeoCoordinate nearer = Algorithm::GetLinePoint(c.corner, c.eastward, lengths[1]);
  EXPECT_EQ(second, static_cast<float>(Algorithm::GetAngle(c.from, nearer) -
                                       Algorithm::GetAngle(c.from, between.to)));
}

TEST(GetFixAngleForSidePoint, FoldsAcrossSouth) {
  // The picture turned upside down: the direct heading is 180, the side point's -120, their difference 300 or -60.
  const GeoCoordinate from{0.0, 500.0 * Corner::kDegreesPerMetre}, to{0.0, 0.0};
  const GeoCoordinate eastward{0.01, 0.01 * std::tan(30.0 * 0.017453292519943295)};
  const GeoCoordinate westward{-eastward.longitude, eastward.latitude};
  EXPECT_NEAR(Algorithm::GetFixAngleForSidePoint({westward, to}, from, to, 60.0, 500.0, true), 60.0f,
              kPlanarSlack);
  EXPECT_NEAR(Algorithm::GetFixAngleForSidePoint({to, to, to, eastward}, from, to, 60.0, 500.0, false),
              -60.0f, kPlanarSlack);
}

TEST(GetFixAngleForSidePoint, AcceptsAnAngleOfZeroOnBothSegments) {
  // The direct point lies on the line itself, at the only candidate: no turn is needed, and 0 is it.
  const Corner c(500.0, 500.0);
  const Line first{{0.0, -0.01}, c.corner}, third{{0, 0}, {0, 0}, c.corner, {0.0, -0.01}};
  EXPECT_EQ(Algorithm::GetFixAngleForSidePoint(first, c.from, c.from, 0.0, 500.0, true), 0.0f);
  EXPECT_EQ(Algorithm::GetFixAngleForSidePoint(third, c.from, c.from, 0.0, 500.0, false), 0.0f);
}

TEST(GetFixAngleForSidePoint, PrefersAFirstCandidateStraightAhead) {
  // The farther candidate lies due north of `from`, as `to` does; the nearer one beside it, on the wanted side.
  const GeoCoordinate corner{0.0, 0.0};
  GeoCoordinate from{0.0, -0.003}, to{0.0, -0.0005};
  const std::vector<double> candidates = Algorithm::GetLength3OfTriangle(to.DistanceTo(from), 300.0, 60.0);
  ASSERT_EQ(candidates.size(), 2u);
  const GeoCoordinate east{0.01, 0.0}, west{-0.01, 0.0};
  from.longitude = to.longitude = Algorithm::GetLinePoint(corner, west, candidates[0]).longitude;
  EXPECT_TRUE(
      SameBits(Algorithm::GetFixAngleForSidePoint({west, corner}, from, to, 60.0, 300.0, true), 0.0f));
  from.longitude = to.longitude = Algorithm::GetLinePoint(corner, east, candidates[0]).longitude;
  EXPECT_TRUE(SameBits(
      Algorithm::GetFixAngleForSidePoint({west, west, corner, east}, from, to, 60.0, 300.0, false), 0.0f));
}

TEST(GetFixAngleForSidePoint, HasTheBitsOfItsPlainTwin) {
  Numbers numbers(kSeed);
  int positive = 0, negative = 0;
  for (int run = 0; run < 60000; ++run) {
    const GeoCoordinate corner = run % 16 == 0 ? numbers.Point() : numbers.OrdinaryPoint();
    Line line{numbers.PointAbout(corner, 0.01), corner, corner, numbers.PointAbout(corner, 0.01)};
    if (run % 4 == 0) line[2] = numbers.PointAbout(corner, 0.01);
    const GeoCoordinate from = numbers.PointAbout(corner, 0.01);
    const GeoCoordinate to = run % 16 == 1 ? numbers.Point() : numbers.PointAbout(from, 0.01);
    double angle = numbers.Between(-180.0, 180.0), length = numbers.Between(0.0, 2000.0);
    if (run % 32 == 2) angle = numbers.Special();
    if (run % 32 == 3) length = numbers.Special();
    if (run % 4 != 0) {
      // A triangle that closes: seen from the corner, at the angle of the segment.
      length = corner.DistanceTo(from);
      angle =
          Algorithm::GetAngle(corner, from) - Algorithm::GetAngle(corner, run % 2 == 0 ? line[0] : line[3]);
    }
    for (const bool useFirstSegment : {true, false}) {
      const float result = Algorithm::GetFixAngleForSidePoint(line, from, to, angle, length, useFirstSegment);
      ASSERT_TRUE(SameBits(
          result, reference::GetFixAngleForSidePoint(line, from, to, angle, length, useFirstSegment)))
          << Paste(line) << ", " << Paste(from) << ", " << Paste(to) << ", " << Paste(angle) << ", "
          << Paste(length) << ", " << Paste(useFirstSegment);
      ASSERT_TRUE(useFirstSegment ? result >= 0.0f : result <= 0.0f);
      positive += result > 0.0f;
      negative += result < 0.0f;
    }
  }
  EXPECT_GT(positive, 2000);
  EXPECT_GT(negative, 2000);
}

TEST(GetFixAngleForSidePoint, ReadsOnlyTheSegmentAskedFor) {
  const Corner c(500.0, 500.0);
  const Line two{c.eastward, c.corner};
  EXPECT_NEAR(Algorithm::GetFixAngleForSidePoint(two, c.from, c.to, 60.0, 500.0, true), 60.0f, kPlanarSlack);
  const Line four{{kNaN, kNaN}, {kInfinity, kNaN}, c.corner, c.westward};
  EXPECT_NEAR(Algorithm::GetFixAngleForSidePoint(four, c.from, c.to, 60.0, 500.0, false), -60.0f,
              kPlanarSlack);
}

TEST(GetFixAngleForSidePointDeathTest, NamesTooShortALineWhereThatIsChecked) {
#if VOREL_CHECK_PRECONDITIONS
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const Corner c(500.0, 500.0);
  const Line one{c.corner}, three{c.corner, c.corner, c.corner};
  EXPECT_DEATH(Algorithm::GetFixAngleForSidePoint(one, c.from, c.to, 60.0, 500.0, true),
               "precondition broken");
  EXPECT_DEATH(Algorithm::GetFixAngleForSidePoint(three, c.from, c.to, 60.0, 500.0, false),
               "precondition broken");
#else
  GTEST_SKIP() << "skipped: preconditions are not checked in this build";
#endif
}

}  // namespace
