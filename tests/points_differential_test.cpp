// Points and rectangles: facts that hold for random input, and the bits of the plain twins on ordinary, random and
// special input.

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/points_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::Line;
using vorel::test::Numbers;
using vorel::test::Paste;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;
using GeoRect = tarvo::Rect<GeoCoordinate>;

constexpr unsigned kSeed = 20264;

// ---- Properties -----------------------------------------------------------------------------------------------

TEST(PointProperties, BoundHoldsEveryPointAndTouchesOneOnEachSide) {
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line line = vorel::test::RandomLine(generator, 1 + run % 50);
    GeoRect bound;
    ASSERT_TRUE(Algorithm::GetBound(line.data(), static_cast<unsigned>(line.size()), bound));
    bool west = false, east = false, south = false, north = false;
    for (const GeoCoordinate& point : line) {
      EXPECT_TRUE(Algorithm::IsRectContainsPoint(bound, point)) << Paste(point);
      west |= point.longitude == bound.min.longitude;
      east |= point.longitude == bound.max.longitude;
      south |= point.latitude == bound.min.latitude;
      north |= point.latitude == bound.max.latitude;
    }
    EXPECT_TRUE(west && east && south && north);
  }
}

TEST(PointProperties, RectanglesIntersectWhenTheirCommonPartHoldsAPoint) {
  Numbers numbers(kSeed);
  int intersecting = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    // Small whole numbers, so that edges and corners are often shared.
    const auto rectangle = [&numbers] {
      const double west = static_cast<double>(numbers.Below(8)),
                   south = static_cast<double>(numbers.Below(8));
      return GeoRect{
          {west, south},
          {west + static_cast<double>(numbers.Below(4)), south + static_cast<double>(numbers.Below(4))}};
    };
    const GeoRect first = rectangle(), second = rectangle();
    const GeoCoordinate common{std::fmax(first.min.longitude, second.min.longitude),
                               std::fmax(first.min.latitude, second.min.latitude)};
    const bool expected =
        Algorithm::IsRectContainsPoint(first, common) && Algorithm::IsRectContainsPoint(second, common);
    EXPECT_EQ(Algorithm::IsRectIntersectsRect(first, second), expected);
    EXPECT_EQ(Algorithm::IsRectIntersectsRect(second, first), expected);
    intersecting += expected;
  }
  EXPECT_GT(intersecting, 2000);
}

TEST(PointProperties, InterpolationBackwardsReachesTheSamePoint) {
  constexpr double kSlack = 6e-14;  // degrees; worst of 1e6 runs 2.9e-14: last bits of a longitude near 180
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start = numbers.OrdinaryPoint(), end = numbers.PointAbout(start, 1.0);
    const float ratio = static_cast<float>(numbers.Below(1025)) / 1024.0f;
    const GeoCoordinate forwards = Algorithm::GetInsertPointFromSegment(start, end, ratio);
    const GeoCoordinate backwards = Algorithm::GetInsertPointFromSegment(end, start, 1.0f - ratio);
    EXPECT_NEAR(forwards.longitude, backwards.longitude, kSlack);
    EXPECT_NEAR(forwards.latitude, backwards.latitude, kSlack);
  }
}

TEST(PointProperties, HeightStaysBetweenTheEndsAndLeavesThePositionAlone) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start = numbers.OrdinaryPoint(), end = numbers.PointAbout(start, 1.0);
    const float startHeight = static_cast<float>(numbers.Below(4096)),
                endHeight = static_cast<float>(numbers.Below(4096));
    const float ratio = numbers.Between(-0.2f, 1.2f);
    const GeoCoordinateZ point =
        Algorithm::GetInsertPointFromSegment(GeoCoordinateZ(start.longitude, start.latitude, startHeight),
                                             GeoCoordinateZ(end.longitude, end.latitude, endHeight), ratio);
    // Whole heights: their difference is exact, so rounding cannot leave the range.
    EXPECT_GE(point.z, std::fmin(startHeight, endHeight));
    EXPECT_LE(point.z, std::fmax(startHeight, endHeight));
    const GeoCoordinate flat = point;
    EXPECT_TRUE(SameBits(flat, Algorithm::GetInsertPointFromSegment(start, end, ratio)));
  }
}

TEST(PointProperties, FootPointIsPerpendicularAndOnTheLine) {
  constexpr double kSlack = 3e-14;  // degrees; worst of 1e6 runs 1.6e-14: last bits of a longitude near 180
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start = numbers.OrdinaryPoint();
    const GeoCoordinate end{start.longitude + numbers.Magnitude(1e-4, 1.0),
                            start.latitude + numbers.Magnitude(1e-4, 1.0)};
    const GeoCoordinate point{start.longitude + numbers.Magnitude(1e-4, 1.0),
                              start.latitude + numbers.Magnitude(1e-4, 1.0)};
    const GeoCoordinate foot = Algorithm::GetFootPoint(point, start, end);
    const double eastward = end.longitude - start.longitude, northward = end.latitude - start.latitude;
    const double length = std::hypot(eastward, northward);
    const double along =
        (point.longitude - foot.longitude) * eastward + (point.latitude - foot.latitude) * northward;
    EXPECT_NEAR(along / length, 0.0, kSlack);
    EXPECT_NEAR(Algorithm::GetPositionOfPointToLine(foot, start, end) / length, 0.0, kSlack);
  }
}

TEST(PointProperties, SideChangesItsSignWithTheDirection) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    // Multiples of 1/1024: every product is exact.
    const auto grid = [&numbers] { return static_cast<double>(numbers.Below(200 * 1024)) / 1024.0 - 100.0; };
    const GeoCoordinate point{grid(), grid()}, start{grid(), grid()}, end{grid(), grid()};
    const double side = Algorithm::GetPositionOfPointToLine(point, start, end);
    EXPECT_EQ(Algorithm::GetPositionOfPointToLine(point, end, start), -side);
    EXPECT_EQ(Algorithm::GetPositionOfPointToLine(start, end, point), side);  // the triangle turned on
  }
}

TEST(PointProperties, LinePointLiesAtTheDistanceAskedFor) {
  constexpr double kSlack =
      1.5e-4;  // of the segment, up to 0.7 km; worst of 1e6 runs 1.2e-4: metres per degree vary
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate start{numbers.Between(-180.0, 180.0), numbers.Between(-70.0, 70.0)};
    const GeoCoordinate end{start.longitude + numbers.Magnitude(1e-4, 0.005),
                            start.latitude + numbers.Magnitude(1e-4, 0.005)};
    const double length = start.DistanceTo(end), distance = numbers.Between(-2.0, 2.0) * length;
    const GeoCoordinate point = Algorithm::GetLinePoint(start, end, distance);
    EXPECT_NEAR(start.DistanceTo(point) / length, std::fabs(distance) / length, kSlack);
    EXPECT_EQ(point.longitude > start.longitude, (end.longitude > start.longitude) == (distance > 0.0));
  }
}

// ---- The bits of the plain twins ------------------------------------------------------------------------------

TEST(PointTwins, Bounds) {
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 5000; ++run) {
    const Line line = vorel::test::WildLine(generator, 1 + run % 40);
    GeoRect bound, expected;
    const unsigned count = static_cast<unsigned>(line.size());
    ASSERT_EQ(Algorithm::GetBound(line.data(), count, bound),
              reference::GetBound(line.data(), count, expected));
    ASSERT_TRUE(SameBits(bound, expected)) << Paste(line);
  }
}

TEST(PointTwins, Rectangles) {
  Numbers numbers(kSeed);
  int contained = 0, intersecting = 0;
  for (int run = 0; run < 100000; ++run) {
    const GeoRect first{numbers.Point(), numbers.Point()}, second{numbers.Point(), numbers.Point()};
    const GeoCoordinate point =
        run % 4 == 0 ? GeoCoordinate(first.min.longitude, first.max.latitude) : numbers.Point();
    ASSERT_EQ(Algorithm::IsRectContainsPoint(first, point), reference::IsRectContainsPoint(first, point))
        << Paste(first) << " " << Paste(point);
    ASSERT_EQ(Algorithm::IsRectIntersectsRect(first, second), reference::IsRectIntersectsRect(first, second))
        << Paste(first) << " " << Paste(second);
    contained += Algorithm::IsRectContainsPoint(first, point);
    intersecting += Algorithm::IsRectIntersectsRect(first, second);
  }
  EXPECT_GT(contained, 1000);
  EXPECT_GT(intersecting, 1000);
}

TEST(PointTwins, Nearness) {
  Numbers numbers(kSeed);
  int near = 0;
  for (int run = 0; run < 100000; ++run) {
    static const float kMetres[] = {10.999f, 11.0f,    110.99f,  111.0f, 1112.9f,
                                    1113.0f, 12000.0f, 12000.5f, 0.0f,   5000.0f};
    const float metres = run % 8 == 0 ? numbers.SpecialFloat() : kMetres[numbers.Below(10)];
    const GeoCoordinate point = run % 16 == 0 ? numbers.Point() : numbers.OrdinaryPoint();
    GeoCoordinate other = run % 16 == 1 ? numbers.Point() : numbers.PointAbout(point, 0.2);
    static const float kHalfWidths[] = {0.0001f, 0.001f, 0.01f, 0.1f};
    if (run % 2 == 0) {
      const double halfWidth = static_cast<double>(kHalfWidths[numbers.Below(4)]);
      other = {point.longitude + (run % 4 == 0 ? halfWidth : -halfWidth), point.latitude};
    }
    const bool isNear = Algorithm::IsPointNearOtherOne(point, metres, other);
    ASSERT_EQ(isNear, reference::IsPointNearOtherOne(point, metres, other))
        << Paste(point) << ", " << Paste(metres) << ", " << Paste(other);
    near += isNear;
  }
  EXPECT_GT(near, 10000);
}

TEST(PointTwins, Interpolation) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 100000; ++run) {
    const GeoCoordinate start = run % 4 == 0 ? numbers.Point() : numbers.OrdinaryPoint();
    const GeoCoordinate end = run % 8 == 0 ? numbers.Point() : numbers.PointAbout(start, 1.0);
    const float startHeight = run % 8 == 1 ? numbers.SpecialFloat() : numbers.Between(-100.0f, 1000.0f);
    const float endHeight = run % 8 == 2 ? numbers.SpecialFloat() : numbers.Between(-100.0f, 1000.0f);
    const float ratio = run % 4 == 3 ? numbers.SpecialFloat() : numbers.Between(-0.1f, 1.1f);
    const GeoCoordinateZ startZ(start.longitude, start.latitude, startHeight);
    const GeoCoordinateZ endZ(end.longitude, end.latitude, endHeight);
    ASSERT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(start, end, ratio),
                         reference::GetInsertPointFromSegment(start, end, ratio)))
        << Paste(start) << ", " << Paste(end) << ", " << Paste(ratio);
    ASSERT_TRUE(SameBits(Algorithm::GetInsertPointFromSegment(startZ, endZ, ratio),
                         reference::GetInsertPointFromSegment(startZ, endZ, ratio)))
        << Paste(startZ) << ", " << Paste(endZ) << ", " << Paste(ratio);
  }
}

TEST(PointTwins, PointsOnAndBesideALine) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 100000; ++run) {
    const GeoCoordinate start = run % 4 == 0 ? numbers.Point() : numbers.OrdinaryPoint();
    // Segments about the length below which the start is the foot are often wanted.
    const GeoCoordinate end = run % 8 == 0   ? numbers.Point()
                              : run % 8 == 1 ? numbers.PointAbout(start, 1e-6)
                                             : numbers.PointAbout(start, 1.0);
    const GeoCoordinate point = run % 8 == 2 ? numbers.Point() : numbers.PointAbout(start, 1.0);
    const double distance = run % 8 == 3 ? numbers.Special() : numbers.Magnitude(1e-3, 1e6);
    const auto input = [&] {
      return Paste(std::vector<GeoCoordinate>{point, start, end}) + ", " + Paste(distance);
    };
    ASSERT_TRUE(
        SameBits(Algorithm::GetFootPoint(point, start, end), reference::GetFootPoint(point, start, end)))
        << input();
    ASSERT_TRUE(SameBits(Algorithm::GetPositionOfPointToLine(point, start, end),
                         reference::GetPositionOfPointToLine(point, start, end)))
        << input();
    ASSERT_TRUE(SameBits(Algorithm::GetLinePoint(start, end, distance),
                         reference::GetLinePoint(start, end, distance)))
        << input();
  }
}

}  // namespace
