// Corners of a stretch of a line, extreme points, the plane through three points and its height.

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/bounds_reference.h"
#include "support/bits.h"
#include "support/case_name.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::MapVector2d;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::LineZ;
using vorel::test::NamedLineZ;
using vorel::test::SameBits;
using vorel::test::Uniform;
using Vector = vorel::Vector2<double>;

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

// ---- GetBound ---------------------------------------------------------------------------------------------------

struct BoundCase {
  const char* name;
  LineZ points;
  int first;
  int last;
  bool ok;
  double west, south, east, north;
};

class GetBoundOfARangeEdges : public testing::TestWithParam<BoundCase> {};

TEST_P(GetBoundOfARangeEdges, Hold) {
  const BoundCase& c = GetParam();
  std::vector<MapVector2d> expected = {{7.0, 8.0}};  // what the caller already had
  std::vector<MapVector2d> out = expected;
  EXPECT_EQ(VorelGeometryAlgorithm::GetBound(c.points, c.first, c.last, out), c.ok);
  if (c.ok) {
    expected.push_back({c.west, c.south});
    expected.push_back({c.east, c.south});
    expected.push_back({c.east, c.north});
    expected.push_back({c.west, c.north});
  }
  EXPECT_TRUE(SameBits(out, expected));
}

const LineZ kFour = {{10.0, 40.0, 1.0f}, {9.0, 41.0, 2.0f}, {12.0, 39.0, 3.0f}, {11.0, 43.0, 4.0f}};

INSTANTIATE_TEST_SUITE_P(
    All, GetBoundOfARangeEdges,
    testing::Values(
        BoundCase{"Whole", kFour, 0, 3, true, 9.0, 39.0, 12.0, 43.0},
        BoundCase{"FirstTwo", kFour, 0, 1, true, 9.0, 40.0, 10.0, 41.0},
        BoundCase{"MiddleTwo", kFour, 1, 2, true, 9.0, 39.0, 12.0, 41.0},
        BoundCase{"OnePoint", kFour, 2, 2, true, 12.0, 39.0, 12.0, 39.0},
        BoundCase{"LastPoint", kFour, 3, 3, true, 11.0, 43.0, 11.0, 43.0},
        BoundCase{"LastIsSize", kFour, 2, 4, true, 11.0, 39.0, 12.0, 43.0},
        BoundCase{"LastPastTheEnd", kFour, 2, kIntMax, true, 11.0, 39.0, 12.0, 43.0},
        BoundCase{"DeliberateNegativeLastIsTheEnd", kFour, 2, -1, true, 11.0, 39.0, 12.0, 43.0},
        BoundCase{"DeliberateLeastLastIsTheEnd", kFour, 2, kIntMin, true, 11.0, 39.0, 12.0, 43.0},
        BoundCase{"FirstNegative", kFour, -1, 3, false, 0, 0, 0, 0},
        BoundCase{"FirstNegativeLastToo", kFour, -1, -1, false, 0, 0, 0, 0},
        BoundCase{"FirstBeyondLast", kFour, 2, 1, false, 0, 0, 0, 0},
        BoundCase{"FirstIsSize", kFour, 4, 9, false, 0, 0, 0, 0},
        BoundCase{"FirstIsSizeLastNegative", kFour, 4, -1, false, 0, 0, 0, 0},
        BoundCase{"LargestFirst", kFour, kIntMax, kIntMax, false, 0, 0, 0, 0},
        BoundCase{"Empty", {}, 0, 0, false, 0, 0, 0, 0},
        BoundCase{"EmptyLastNegative", {}, 0, -1, false, 0, 0, 0, 0},
        BoundCase{"EmptyBothNegative", {}, -1, -1, false, 0, 0, 0, 0},
        BoundCase{"SingleVertex", {{5.0, 6.0, 7.0f}}, 0, 0, true, 5.0, 6.0, 5.0, 6.0},
        BoundCase{"DeliberateNaNFirstStays",
                  {{kNaN, 40.0, 0.0f}, {9.0, 41.0, 0.0f}},
                  0,
                  1,
                  true,
                  kNaN,
                  40.0,
                  kNaN,
                  41.0},
        BoundCase{"NaNLaterIsPassedOver",
                  {{10.0, 40.0, 0.0f}, {kNaN, 41.0, 0.0f}, {11.0, kNaN, 0.0f}},
                  0,
                  2,
                  true,
                  10.0,
                  40.0,
                  11.0,
                  41.0},
        BoundCase{"Infinite",
                  {{10.0, 40.0, 0.0f}, {-kInfinity, kInfinity, 0.0f}},
                  0,
                  1,
                  true,
                  -kInfinity,
                  40.0,
                  10.0,
                  kInfinity},
        BoundCase{"EqualZerosKeepTheFirst",
                  {{-0.0, 0.0, 0.0f}, {0.0, -0.0, 0.0f}},
                  0,
                  1,
                  true,
                  -0.0,
                  0.0,
                  -0.0,
                  0.0},
        BoundCase{
            "NotUnwrapped", {{179.0, 1.0, 0.0f}, {-179.0, 2.0, 0.0f}}, 0, 1, true, -179.0, 1.0, 179.0, 2.0}),
    vorel::test::CaseName<BoundCase>);

// ---- GetBoundPoints ---------------------------------------------------------------------------------------------

std::vector<MapVector2d> AsMapVectors(const std::vector<Vector>& vectors) {
  std::vector<MapVector2d> result;
  for (const Vector& vector : vectors) result.push_back({vector.x, vector.y});
  return result;
}

struct ExtremesCase {
  const char* name;
  std::vector<Vector> points;
  std::vector<int> indices;  // empty: refused
};

class GetBoundPointsEdges : public testing::TestWithParam<ExtremesCase> {};

TEST_P(GetBoundPointsEdges, Hold) {
  const ExtremesCase& c = GetParam();
  // Longer than 4, and shorter: both end with exactly 4.
  for (const std::size_t heldBefore : {9u, 0u}) {
    std::vector<Vector> extremes(heldBefore, Vector{-5.0, -6.0});
    std::vector<int> indices(heldBefore, -7);
    std::vector<Vector> expected = extremes;
    std::vector<int> expectedIndices = indices;
    if (!c.indices.empty()) {
      expected.clear();
      for (const int index : c.indices) expected.push_back(c.points[static_cast<std::size_t>(index)]);
      expectedIndices = c.indices;
    }
    EXPECT_EQ(VorelGeometryAlgorithm::GetBoundPoints(c.points, extremes, indices), !c.indices.empty());
    EXPECT_TRUE(SameBits(AsMapVectors(extremes), AsMapVectors(expected)));
    EXPECT_EQ(indices, expectedIndices);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, GetBoundPointsEdges,
    testing::Values(
        ExtremesCase{"Empty", {}, {}}, ExtremesCase{"OnePoint", {{1, 2}}, {}},
        ExtremesCase{"TwoPoints", {{0, 5}, {1, 2}}, {0, 1, 1, 1}},
        ExtremesCase{"TwoEqual", {{1, 2}, {1, 2}}, {0, 0, 0, 0}},
        ExtremesCase{"SmallestX", {{1, 2}, {0, 3}}, {1, 0, 0, 0}},
        ExtremesCase{"SmallestY", {{1, 2}, {1, 1}}, {0, 1, 0, 1}},
        ExtremesCase{"LargestX", {{1, 2}, {2, 2}}, {0, 0, 1, 0}},
        ExtremesCase{"DeliberateNoLargestY", {{1, 2}, {1, 9}}, {0, 0, 0, 0}},
        ExtremesCase{"Square", {{5, 5}, {0, 1}, {1, 0}, {9, 1}, {1, 9}}, {1, 2, 3, 2}},
        ExtremesCase{"EqualExtremesTakeTheFirst", {{5, 5}, {0, 1}, {0, 0}, {9, 0}, {9, 3}}, {1, 2, 3, 2}},
        ExtremesCase{"DeliberateNaNFirstStays", {{kNaN, kNaN}, {1, 2}}, {0, 0, 0, 0}},
        ExtremesCase{"NaNLaterIsPassedOver", {{1, 2}, {kNaN, 1}, {0, kNaN}}, {2, 1, 0, 1}},
        ExtremesCase{"Infinite", {{1, 2}, {-kInfinity, kInfinity}, {kInfinity, -kInfinity}}, {1, 2, 2, 2}},
        ExtremesCase{"ZerosAreEqual", {{0.0, 0.0}, {-0.0, -0.0}}, {0, 0, 0, 0}}),
    vorel::test::CaseName<ExtremesCase>);

// ---- Planes -----------------------------------------------------------------------------------------------------

struct NormalCase {
  const char* name;
  LineZ plane;
  GeoCoordinateZ normal;
};

class CalculatePlaneNormalVectorEdges : public testing::TestWithParam<NormalCase> {};

TEST_P(CalculatePlaneNormalVectorEdges, Hold) {
  const NormalCase& c = GetParam();
  EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::CalculatePlaneNormalVector(c.plane), c.normal));
}

INSTANTIATE_TEST_SUITE_P(
    All, CalculatePlaneNormalVectorEdges,
    testing::Values(
        NormalCase{"Level", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1}},
        NormalCase{"DeliberateXTakesTheWrongDifference", {{0, 0, 0}, {1, 0, 1}, {0, 1, 0}}, {0, 0, 1}},
        NormalCase{"RisesEast", {{0, 0, 0}, {1, 0, 1}, {3, 1, 0}}, {-3, 3, 1}},
        NormalCase{"RisesNorth", {{0, 0, 0}, {1, 0, 0}, {0, 1, 1}}, {0, -1, 1}},
        NormalCase{
            "AllTerms", {{1, 2, 3}, {4, 6, 8}, {8, 4, 10}}, {4 * 7 - 5 * 7, 5 * 7 - 3 * 7, 3 * 2 - 4 * 7}},
        NormalCase{"Clockwise", {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {0, 0, -1}},
        NormalCase{
            "FourthPointIsNotRead", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {kNaN, kNaN, kNaNFloat}}, {0, 0, 1}},
        NormalCase{"AllEqual", {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}, {0, 0, 0}},
        NormalCase{"NaNHeightLeavesZ", {{0, 0, kNaNFloat}, {1, 0, 0}, {0, 1, 0}}, {kNaN, kNaN, 1}},
        NormalCase{"NaNLongitude", {{kNaN, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {kNaN, kNaN, kNaNFloat}}),
    vorel::test::CaseName<NormalCase>);

TEST(CalculatePlaneNormalVector, SubtractsHeightsInFloatAndNarrowsOnlyZ) {
  const LineZ plane = {{8.1, 49.3, 0.1f}, {8.7, 49.4, 16777216.0f}, {8.2, 49.9, 12.3f}};
  const double dx1 = 8.7 - 8.1, dy1 = 49.4 - 49.3, dx2 = 8.2 - 8.1, dy2 = 49.9 - 49.3;
  const double dz1 = static_cast<double>(16777216.0f - 0.1f);  // 0.1 is lost in float
  const double dz2 = static_cast<double>(12.3f - 0.1f);
  ASSERT_EQ(dz1, 16777216.0);
  ASSERT_NE(dz2, static_cast<double>(12.3f) - static_cast<double>(0.1f));
  EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::CalculatePlaneNormalVector(plane),
                       GeoCoordinateZ(dy1 * dz2 - dz1 * dx2, dz1 * dx2 - dx1 * dz2,
                                      static_cast<float>(dx1 * dy2 - dy1 * dx2))));
}

struct HeightCase {
  const char* name;
  LineZ plane;
  GeoCoordinate position;
  double height;
};

class GetPointZInPlaneEdges : public testing::TestWithParam<HeightCase> {};

TEST_P(GetPointZInPlaneEdges, Hold) {
  const HeightCase& c = GetParam();
  EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::GetPointZInPlane(c.plane, c.position), c.height));
}

// z of the normal is 1 * y.
LineZ LevelAt5(double y) {
  return {{0, 0, 5}, {1, 0, 5}, {0, y, 5}};
}

// The floats next to 1e-12: one above, one below.
constexpr double kFloatAbove = 1.00000009600534692e-12;
constexpr double kFloatBelow = 9.99999960041972e-13;

INSTANTIATE_TEST_SUITE_P(
    All, GetPointZInPlaneEdges,
    testing::Values(
        HeightCase{"Level", LevelAt5(1), {0.25, 0.25}, 5.0},
        HeightCase{"LevelFarOutside", LevelAt5(1), {-100.0, 70.0}, 5.0},
        HeightCase{"RisesNorth", {{0, 0, 5}, {1, 0, 5}, {0, 1, 7}}, {0.5, 0.5}, 6.0},
        HeightCase{"RisesNorthFromTheSecondEnd", {{0, 0, 5}, {1, 0, 5}, {0, 1, 7}}, {9.0, -1.0}, 3.0},
        HeightCase{"AtTheFirstPoint", {{3, 4, 5}, {4, 4, 6}, {3, 6, 9}}, {3.0, 4.0}, 5.0},
        HeightCase{"DeliberateNotThroughTheSecondPointWhenItIsHigher",
                   {{0, 0, 0}, {1, 0, 1}, {0, 1, 0}},
                   {1.0, 0.0},
                   0.0},
        HeightCase{"DeliberateClockwiseIsZero", {{0, 0, 5}, {0, 1, 5}, {1, 0, 5}}, {0.25, 0.25}, 0.0},
        HeightCase{"OnOneLine", {{0, 0, 5}, {1, 1, 5}, {2, 2, 5}}, {0.25, 0.25}, 0.0},
        HeightCase{"AllEqual", {{1, 1, 5}, {1, 1, 5}, {1, 1, 5}}, {1.0, 1.0}, 0.0},
        HeightCase{"JustLargeEnough", LevelAt5(kFloatAbove), {0.25, 0.25}, 5.0},
        HeightCase{"JustTooSmall", LevelAt5(kFloatBelow), {0.25, 0.25}, 0.0},
        // 1e-12 itself is a double below the nearest float, to which it is narrowed before it is compared.
        HeightCase{"ComparedAfterNarrowing", LevelAt5(1e-12), {0.25, 0.25}, 0.0},
        HeightCase{"ComparedAfterNarrowingUpward", LevelAt5(9.99999999e-13), {0.25, 0.25}, 0.0},
        HeightCase{"NaNNormalGoesOn", {{kNaN, 0, 5}, {1, 0, 5}, {0, 1, 5}}, {0.25, 0.25}, kNaN},
        HeightCase{"NaNPosition", LevelAt5(1), {kNaN, 0.25}, kNaN},
        HeightCase{"NaNHeight", {{0, 0, kNaNFloat}, {1, 0, 5}, {0, 1, 5}}, {0.25, 0.25}, kNaN}),
    vorel::test::CaseName<HeightCase>);

TEST(GetPointZInPlane, HasTheExpressionsExactBits) {
  const LineZ plane = {{8.1, 49.3, 100.1f}, {8.7, 49.4, 101.7f}, {8.2, 49.9, 112.3f}};
  const GeoCoordinate position(8.31, 49.52);
  const GeoCoordinateZ n = VorelGeometryAlgorithm::CalculatePlaneNormalVector(plane);
  const double expected =
      static_cast<double>(plane[0].z) - ((position.longitude - plane[0].longitude) * n.longitude +
                                         (position.latitude - plane[0].latitude) * n.latitude) /
                                            static_cast<double>(n.z);
  EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::GetPointZInPlane(plane, position), expected));
}

// ---- Properties -------------------------------------------------------------------------------------------------

TEST(GetBoundOfARange, HoldsEveryPointAndTouchesEverySide) {
  constexpr unsigned kSeed = 54001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 5000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ line = vorel::test::RandomLineZ(generator, 1 + static_cast<int>(generator() % 30));
    const int first = static_cast<int>(generator() % line.size());
    const int last = first + static_cast<int>(generator() % 40);
    std::vector<MapVector2d> corners;
    ASSERT_TRUE(VorelGeometryAlgorithm::GetBound(line, first, last, corners));
    ASSERT_EQ(corners.size(), 4u);
    int touched = 0;
    double west = kInfinity, east = -kInfinity, south = kInfinity, north = -kInfinity;
    for (std::size_t k = static_cast<std::size_t>(first);
         k < line.size() && k <= static_cast<std::size_t>(last); ++k) {
      west = std::fmin(west, line[k].longitude);
      east = std::fmax(east, line[k].longitude);
      south = std::fmin(south, line[k].latitude);
      north = std::fmax(north, line[k].latitude);
      ++touched;
    }
    ASSERT_GT(touched, 0);
    EXPECT_TRUE(SameBits(
        corners, std::vector<MapVector2d>{{west, south}, {east, south}, {east, north}, {west, north}}));
  }
}

TEST(GetPointZInPlane, PassesThroughAllThreePointsWhenTheFirstTwoAreLevel) {
  constexpr unsigned kSeed = 54002;
  // Metres, for rises of up to 1 m; z of the normal is narrowed to float. The worst of 1e6 runs was 6.9e-8.
  constexpr double kSlack = 1e-7;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const vorel::test::LocalMetres place(Uniform(generator, -179, 179), Uniform(generator, -70, 70));
    const float level = static_cast<float>(Uniform(generator, 0, 1000));
    const float other = level + static_cast<float>(Uniform(generator, -1, 1));
    const double east = Uniform(generator, 1, 50);
    const LineZ plane = {place.At(0, 0, level),
                         place.At(east, Uniform(generator, -east / 2, east / 2), level),
                         place.At(Uniform(generator, -50, 50), Uniform(generator, 30, 50), other)};
    for (const GeoCoordinateZ& point : plane) {
      EXPECT_NEAR(VorelGeometryAlgorithm::GetPointZInPlane(plane, point), static_cast<double>(point.z),
                  kSlack);
    }
  }
}

// ---- Against the twins ------------------------------------------------------------------------------------------

void CompareBounds(std::mt19937& generator, const LineZ& line) {
  const int size = static_cast<int>(line.size());
  for (const int first : {0, 1, size / 2, size - 1, size, -1, kIntMax, kIntMin}) {
    for (const int last : {0, 1, size / 2, size - 1, size, -1, kIntMax, kIntMin}) {
      SCOPED_TRACE("range " + std::to_string(first) + " .. " + std::to_string(last));
      std::vector<MapVector2d> out = {{1.0, 2.0}}, expected = out;
      EXPECT_EQ(VorelGeometryAlgorithm::GetBound(line, first, last, out),
                reference::GetBound(line, first, last, expected));
      EXPECT_TRUE(SameBits(out, expected));
    }
  }
  std::vector<Vector> points, extremes(2), expectedExtremes(2);
  for (const GeoCoordinateZ& point : line) points.push_back({point.longitude, point.latitude});
  std::vector<int> indices(1, 5), expectedIndices(1, 5);
  EXPECT_EQ(VorelGeometryAlgorithm::GetBoundPoints(points, extremes, indices),
            reference::GetBoundPoints(points, expectedExtremes, expectedIndices));
  EXPECT_TRUE(SameBits(AsMapVectors(extremes), AsMapVectors(expectedExtremes)));
  EXPECT_EQ(indices, expectedIndices);
  for (std::size_t i = 0; i + 2 < line.size(); ++i) {
    LineZ plane = {line[i], line[i + 1], line[i + 2]};
    if (generator() % 2 == 0) std::swap(plane[1], plane[2]);
    EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::CalculatePlaneNormalVector(plane),
                         reference::CalculatePlaneNormalVector(plane)));
    const GeoCoordinate position(line[i].longitude + Uniform(generator, -1e-3, 1e-3),
                                 line[i].latitude + Uniform(generator, -1e-3, 1e-3));
    EXPECT_TRUE(SameBits(VorelGeometryAlgorithm::GetPointZInPlane(plane, position),
                         reference::GetPointZInPlane(plane, position)));
  }
}

TEST(BoundsDifferential, RandomLines) {
  std::mt19937 generator(54003);
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 54003, run " << run);
    CompareBounds(generator, vorel::test::RandomLineZ(generator, static_cast<int>(generator() % 60)));
  }
}

TEST(BoundsDifferential, WildLines) {
  std::mt19937 generator(54004);
  for (int run = 0; run < 1000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 54004, run " << run);
    CompareBounds(generator, vorel::test::WildLineZ(generator, static_cast<int>(generator() % 30)));
  }
}

TEST(BoundsDifferential, RealLanes) {
  const std::vector<NamedLineZ>& lanes = vorel::test::RealLinesZ("lanes");
  SKIP_WITHOUT_REAL_LINES(lanes);
  std::mt19937 generator(54005);
  for (const NamedLineZ& lane : lanes) {
    SCOPED_TRACE(lane.name);
    CompareBounds(generator, lane.points);
  }
}

JOIN_AWKWARD_LINES_Z(Bounds, [](const LineZ& line) {
  std::mt19937 generator(54006);
  CompareBounds(generator, line);
});

}  // namespace
