// Lengths of lines and distances between positions on a route.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/measurement_reference.h"
#include "support/allocation_counter.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/uniform.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::AwkwardLines;
using vorel::test::CumulativeTable;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::LineZ;
using vorel::test::RandomLine;
using vorel::test::RandomLineZ;
using vorel::test::SameBits;
using vorel::test::Uniform;
using vorel::test::WildLineZ;
using vorel::test::WithoutHeight;
using Algorithm = vorel::VorelGeometryAlgorithm;

constexpr unsigned kMaxIndex = std::numeric_limits<unsigned>::max();

const LineZ& FiveVerticesZ() {
  static const LineZ line{{7.5, 47.5, 400.0f},
                          {7.5013, 47.5, 410.0f},
                          {7.5013, 47.53, 390.0f},
                          {7.5024, 47.5304, 500.0f},
                          {7.53, 47.511, 0.0f}};
  return line;
}

const Line& FiveVertices() {
  static const Line line = WithoutHeight(FiveVerticesZ());
  return line;
}

/// From vertex `first` to vertex `last` of the five, added in order.
double Sum(unsigned first, unsigned last) {
  double sum = 0.0;
  for (unsigned i = first; i < last; ++i) sum += FiveVertices()[i].DistanceTo(FiveVertices()[i + 1]);
  return sum;
}

template <class Point, class = void>
struct TakesPoints : std::false_type {};
template <class Point>
struct TakesPoints<Point,
                   std::void_t<decltype(Algorithm::GetDistance(std::declval<const Point*>(), 2u, 0u, 2u))>>
    : std::true_type {};
static_assert(TakesPoints<GeoCoordinate>::value, "");
static_assert(!TakesPoints<GeoCoordinateZ>::value, "points with height have another stride");

// Deliberate copies: by value is part of the contract. The line of `DistancePointAAndPointB` is not const.
static_assert(
    std::is_same<decltype(&Algorithm::GetDistanceAndCache),
                 double (*)(std::vector<GeoCoordinate>, unsigned, unsigned, std::vector<double>&)>::value,
    "");
static_assert(
    std::is_same<decltype(&Algorithm::FindFirstSmallerIndex), int (*)(std::vector<double>, double)>::value,
    "");
using DistanceOnLine = double (*)(LineZ&, int, double, int, double);
static_assert(std::is_same<decltype(static_cast<DistanceOnLine>(&Algorithm::DistancePointAAndPointB)),
                           DistanceOnLine>::value,
              "");

// ---- Edges ----------------------------------------------------------------------------------------------------------

struct RangeCase {
  const char* name;
  unsigned from;
  unsigned to;
  unsigned first;  // the expected length is that from vertex `first` to vertex `last`
  unsigned last;
};

std::string NameOf(const testing::TestParamInfo<RangeCase>& test) {
  return test.param.name;
}

class GetDistanceEdges : public testing::TestWithParam<RangeCase> {};

TEST_P(GetDistanceEdges, Hold) {
  const RangeCase& c = GetParam();
  const double length = Algorithm::GetDistance(FiveVertices().data(), 5, c.from, c.to);
  EXPECT_TRUE(SameBits(length, Sum(c.first, c.last)));
}

INSTANTIATE_TEST_SUITE_P(
    All, GetDistanceEdges,
    testing::Values(
        RangeCase{"WholeLine", 0, kMaxIndex, 0, 4}, RangeCase{"WholeLineByCount", 0, 5, 0, 4},
        RangeCase{"EndBeyondCount", 0, 6, 0, 4}, RangeCase{"EndJustBelowTheMark", 0, kMaxIndex - 1, 0, 4},
        RangeCase{"EndIsExclusive", 0, 4, 0, 3}, RangeCase{"OneSegment", 1, 3, 1, 2},
        RangeCase{"EndOneBehindStart", 1, 2, 0, 0}, RangeCase{"EndAtStart", 2, 2, 0, 0},
        RangeCase{"EndBeforeStart", 3, 1, 0, 0}, RangeCase{"EndZero", 0, 0, 0, 0},
        RangeCase{"TailByMark", 3, kMaxIndex, 3, 4}, RangeCase{"FromLastVertex", 4, kMaxIndex, 0, 0},
        RangeCase{"FromCount", 5, kMaxIndex, 0, 0}, RangeCase{"FromBeyondCount", 6, kMaxIndex, 0, 0},
        RangeCase{"FromLargest", kMaxIndex, kMaxIndex, 0, 0},
        RangeCase{"FromLargestToVertex", kMaxIndex, 3, 0, 0},
        RangeCase{"FromLargestToZero", kMaxIndex, 0, 0, 0},
        RangeCase{"FromJustBelowLargest", kMaxIndex - 1, kMaxIndex, 0, 0}),
    NameOf);

TEST(GetDistance, GivesZeroWithoutTwoPoints) {
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(nullptr, 5, 0, kMaxIndex), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(nullptr, 0, 0, kMaxIndex), 0.0));
  const Line one{{7.5, 47.5}};
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(one.data(), 0, 0, kMaxIndex), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(one.data(), 1, 0, kMaxIndex), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(one.data(), 1, kMaxIndex, kMaxIndex), 0.0));
}

TEST(GetDistance, LooksAtNoMoreThanCount) {
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(FiveVertices().data(), 3, 0, kMaxIndex), Sum(0, 2)));
  EXPECT_TRUE(SameBits(Algorithm::GetDistance(FiveVertices().data(), 3, 0, 5), Sum(0, 2)));
}

class GetDistanceByVectorEdges : public testing::TestWithParam<RangeCase> {};

TEST_P(GetDistanceByVectorEdges, HoldForBothKindsOfPoint) {
  const RangeCase& c = GetParam();
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(FiveVertices(), c.from, c.to), Sum(c.first, c.last)));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(FiveVerticesZ(), c.from, c.to), Sum(c.first, c.last)));
}

INSTANTIATE_TEST_SUITE_P(
    All, GetDistanceByVectorEdges,
    testing::Values(RangeCase{"WholeLine", 0, 4, 0, 4}, RangeCase{"EndIsInclusive", 1, 2, 1, 2},
                    RangeCase{"EndAtSize", 0, 5, 0, 4}, RangeCase{"EndBeyondSize", 2, 17, 2, 4},
                    RangeCase{"LargestEnd", 0, kMaxIndex, 0, 4}, RangeCase{"EndAtStart", 2, 2, 0, 0},
                    RangeCase{"EndBeforeStart", 3, 1, 0, 0}, RangeCase{"LastSegment", 3, 4, 3, 4},
                    RangeCase{"FromLastVertex", 4, 5, 0, 0}, RangeCase{"FromBeyondSize", 6, 9, 0, 0},
                    RangeCase{"FromLargest", kMaxIndex, kMaxIndex, 0, 0},
                    RangeCase{"FromJustBelowLargest", kMaxIndex - 1, kMaxIndex, 0, 0}),
    NameOf);

TEST(GetDistanceByVector, GivesZeroForAnEmptyLine) {
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(Line(), 0, 3), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(LineZ(), 0, 3), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(Line{{7.5, 47.5}}, 0, 3), 0.0));
}

TEST(GetDistanceAndCache, AppendsOneSumPerSegment) {
  std::vector<double> cache{-5.0, 7.0};  // what the caller already had must stay in front
  const double length = Algorithm::GetDistanceAndCache(FiveVertices(), 1, 4, cache);
  EXPECT_TRUE(SameBits(cache, std::vector<double>{-5.0, 7.0, Sum(1, 2), Sum(1, 3), Sum(1, 4)}));
  EXPECT_TRUE(SameBits(length, Sum(1, 4)));
}

TEST(GetDistanceAndCache, LeavesTheCacheAloneForAnEmptyPart) {
  std::vector<double> cache;
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceAndCache(FiveVertices(), 2, 2, cache), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceAndCache(FiveVertices(), 3, 1, cache), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceAndCache(Line(), 0, 0, cache), 0.0));
  EXPECT_TRUE(SameBits(Algorithm::GetDistanceAndCache(FiveVertices(), kMaxIndex, kMaxIndex, cache), 0.0));
  EXPECT_TRUE(cache.empty());
  EXPECT_EQ(cache.capacity(), 0u);
}

TEST(GetDistanceAndCache, ReservesTheTotalOnce) {
  const Line line(6, GeoCoordinate(7.5, 47.5));
  std::vector<double> cache;
  Algorithm::GetDistanceAndCache(line, 0, 5, cache);
  EXPECT_EQ(cache.capacity(), 5u);  // growing by itself it would have passed over 5
  std::vector<double> held{1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
  held.shrink_to_fit();
  Algorithm::GetDistanceAndCache(line, 0, 5, held);
  EXPECT_NE(held.capacity(), 8u + 5u);  // deliberate: a total, not an increase
}

TEST(GetDistanceAndCache, AllocatesTheCopyOfItsLineAlone) {
  std::mt19937 generator(21013);
  const Line line = vorel::test::RandomLine(generator, 300);
  std::vector<double> cache;
  cache.reserve(line.size());
  const vorel::test::AllocationCounter allocations;
  Algorithm::GetDistanceAndCache(line, 0, 299, cache);
  EXPECT_EQ(allocations.Count(), vorel::test::CanCountAllocations() ? 1u : 0u);
  EXPECT_EQ(cache.size(), 299u);
}

struct FindCase {
  const char* name;
  std::vector<double> values;
  double target;
  int index;
};

class FindFirstSmallerIndexEdges : public testing::TestWithParam<FindCase> {};

TEST_P(FindFirstSmallerIndexEdges, Hold) {
  EXPECT_EQ(Algorithm::FindFirstSmallerIndex(GetParam().values, GetParam().target), GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(
    All, FindFirstSmallerIndexEdges,
    testing::Values(
        FindCase{"NoValues", {}, 5.0, -2}, FindCase{"NoValuesNaN", {}, kNaN, -2},
        FindCase{"BeforeTheFirst", {0.0, 10.0, 20.0}, -5.0, 0},
        FindCase{"AtTheFirst", {0.0, 10.0, 20.0}, 0.0, 0},
        FindCase{"JustBelowTheSecond", {0.0, 10.0, 20.0}, 9.999999999999998, 0},
        FindCase{"AtTheSecond", {0.0, 10.0, 20.0}, 10.0, 1}, FindCase{"Between", {0.0, 10.0, 20.0}, 15.0, 1},
        FindCase{"AtTheLast", {0.0, 10.0, 20.0}, 20.0, 2},
        FindCase{"BeyondTheLast", {0.0, 10.0, 20.0}, 99.0, 2},
        FindCase{"Infinite", {0.0, 10.0, 20.0}, kInfinity, 2},
        FindCase{"NaNTarget", {0.0, 10.0, 20.0}, kNaN, 0}, FindCase{"OneValueBelow", {3.0}, 4.0, 0},
        FindCase{"OneValueAbove", {3.0}, 2.0, 0}, FindCase{"LastOfEquals", {0.0, 5.0, 5.0, 5.0, 9.0}, 5.0, 3},
        FindCase{"AllEqual", {5.0, 5.0, 5.0, 5.0}, 5.0, 3}, FindCase{"NegativeZero", {0.0, 1.0}, -0.0, 0},
        FindCase{"FirstGreaterThoughUnsorted", {9.0, 1.0, 2.0}, 5.0, 0},
        FindCase{"NaNFirst", {kNaN, 1.0, 2.0}, 5.0, 2}, FindCase{"NaNMiddle", {0.0, kNaN, 2.0}, 5.0, 0},
        FindCase{"NaNLast", {0.0, 1.0, kNaN}, 5.0, 1}, FindCase{"EvenCount", {0.0, 1.0, 2.0, 3.0}, 2.5, 2}),
    [](const auto& test) { return test.param.name; });

struct OrderCase {
  const char* name;
  int indexA;
  double offsetA;
  int indexB;
  double offsetB;
  bool inFront;
};

class IsPointAInFrontOfPointBEdges : public testing::TestWithParam<OrderCase> {};

TEST_P(IsPointAInFrontOfPointBEdges, Hold) {
  const OrderCase& c = GetParam();
  EXPECT_EQ(Algorithm::IsPointAInFrontOfPointB(c.indexA, c.offsetA, c.indexB, c.offsetB), c.inFront);
}

INSTANTIATE_TEST_SUITE_P(All, IsPointAInFrontOfPointBEdges,
                         testing::Values(OrderCase{"SamePosition", 3, 5.0, 3, 5.0, true},
                                         OrderCase{"OffsetJustBelow", 3, 4.999999999999999, 3, 5.0, true},
                                         OrderCase{"OffsetJustAbove", 3, 5.000000000000001, 3, 5.0, false},
                                         OrderCase{"IndexBelow", 3, 9.0, 4, 0.0, true},
                                         OrderCase{"IndexAbove", 4, 0.0, 3, 9.0, false},
                                         OrderCase{"NegativeIndices", -2, 0.0, -1, 0.0, true},
                                         OrderCase{"SignedZeros", 3, 0.0, 3, -0.0, true},
                                         OrderCase{"NaNOffsetA", 3, kNaN, 3, 5.0, false},
                                         OrderCase{"NaNOffsetB", 3, 5.0, 3, kNaN, false},
                                         OrderCase{"NaNOffsetsByIndex", 3, kNaN, 4, kNaN, true}),
                         [](const auto& test) { return test.param.name; });

struct BetweenCase {
  const char* name;
  int indexA;
  double offsetA;
  int indexB;
  double offsetB;
  double expected;
};

std::string NameOfBetween(const testing::TestParamInfo<BetweenCase>& test) {
  return test.param.name;
}

double Between(LineZ line, const BetweenCase& c) {
  return Algorithm::DistancePointAAndPointB(line, c.indexA, c.offsetA, c.indexB, c.offsetB);
}

class DistancePointAAndPointBOnLineEdges : public testing::TestWithParam<BetweenCase> {};

TEST_P(DistancePointAAndPointBOnLineEdges, Hold) {
  EXPECT_TRUE(SameBits(Between(FiveVerticesZ(), GetParam()), GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, DistancePointAAndPointBOnLineEdges,
    testing::Values(BetweenCase{"AcrossOneVertex", 0, 30.0, 1, 40.0, Sum(0, 1) - 30.0 + 40.0},
                    BetweenCase{"AcrossAll", 0, 30.0, 4, 0.0, Sum(0, 4) - 30.0 + 0.0},
                    BetweenCase{"FromSecondVertex", 1, 0.5, 3, 40.0, Sum(1, 3) - 0.5 + 40.0},
                    BetweenCase{"OffsetAAtSegmentEnd", 1, Sum(1, 2), 3, 7.0, Sum(1, 3) - Sum(1, 2) + 7.0},
                    BetweenCase{"OffsetABeyondSegmentIsCut", 1, 1e9, 3, 7.0, Sum(1, 3) - Sum(1, 2) + 7.0},
                    BetweenCase{"InfiniteOffsetAIsCut", 1, kInfinity, 3, 7.0, Sum(1, 3) - Sum(1, 2) + 7.0},
                    BetweenCase{"NaNOffsetACountsAsSegment", 1, kNaN, 3, 7.0, Sum(1, 3) - Sum(1, 2) + 7.0},
                    BetweenCase{"NegativeOffsetALengthens", 1, -10.0, 3, 7.0, Sum(1, 3) - -10.0 + 7.0},
                    BetweenCase{"OffsetBIsNotCut", 1, 0.0, 3, 1e9, Sum(1, 3) - 0.0 + 1e9},
                    BetweenCase{"NegativeOffsetBGoesBelowZero", 0, 0.0, 1, -1e6, Sum(0, 1) - 0.0 + -1e6},
                    BetweenCase{"NaNOffsetB", 1, 0.0, 3, kNaN, kNaN},
                    BetweenCase{"SameIndexForward", 2, 3.0, 2, 10.5, 7.5},
                    BetweenCase{"SameIndexSameOffset", 2, 3.0, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexBackward", 2, 10.5, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexNaNOffset", 2, kNaN, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexBeyondTheLine", 99, 1.0, 99, 3.0, 2.0},
                    BetweenCase{"SameIndexNegative", -7, 1.0, -7, 3.0, 2.0},
                    BetweenCase{"BBeforeA", 3, 0.0, 2, 50.0, 0.0},
                    BetweenCase{"BBeforeABeyondTheLine", 99, 0.0, -5, 50.0, 0.0}),
    NameOfBetween);

TEST(DistancePointAAndPointBOnLine, TakesANaNSegmentAsItIs) {
  LineZ line = FiveVerticesZ();
  line[1].latitude = kNaN;
  EXPECT_TRUE(std::isnan(Algorithm::DistancePointAAndPointB(line, 0, 3.0, 3, 1.0)));
  EXPECT_FALSE(std::isnan(Algorithm::DistancePointAAndPointB(line, 2, 3.0, 4, 1.0)));
}

class DistancePointAAndPointBByTableEdges : public testing::TestWithParam<BetweenCase> {};

TEST_P(DistancePointAAndPointBByTableEdges, Hold) {
  const BetweenCase& c = GetParam();
  const std::vector<double> table{0.0, 0.1, 0.7, 100.3};
  const double length = Algorithm::DistancePointAAndPointB(table, c.indexA, c.offsetA, c.indexB, c.offsetB);
  EXPECT_TRUE(SameBits(length, c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, DistancePointAAndPointBByTableEdges,
    testing::Values(BetweenCase{"Forward", 1, 0.05, 3, 0.3, (100.3 - 0.1) + 0.3 - 0.05},
                    BetweenCase{"ToTheLastVertex", 0, 0.0, 3, 0.0, 100.3},
                    BetweenCase{"BBeyondTheTableLosesItsOffset", 1, 0.05, 4, 55.0,
                                (100.3 - 0.1) + 0.0 - 0.05},
                    BetweenCase{"BFarBeyondTheTable", 1, 0.05, 2147483647, kNaN, (100.3 - 0.1) + 0.0 - 0.05},
                    BetweenCase{"BothAtTheEnd", 3, 2.5, 4, 55.0, -2.5},
                    BetweenCase{"OffsetAIsNotCut", 1, 1e9, 2, 0.25, (0.7 - 0.1) + 0.25 - 1e9},
                    BetweenCase{"NegativeOffsets", 1, -1.0, 2, -2.0, (0.7 - 0.1) + -2.0 - -1.0},
                    BetweenCase{"NaNOffsetA", 1, kNaN, 2, 1.0, kNaN},
                    BetweenCase{"NaNOffsetB", 1, 1.0, 2, kNaN, kNaN},
                    BetweenCase{"SameIndexForward", 2, 3.0, 2, 10.5, 7.5},
                    BetweenCase{"SameIndexSameOffset", 2, 3.0, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexBackward", 2, 10.5, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexBeyondTheTable", 99, 1.0, 99, 3.0, 2.0},
                    BetweenCase{"BBeforeA", 3, 0.0, 2, 50.0, 0.0}),
    NameOfBetween);

class DistanceAToBackBEdges : public testing::TestWithParam<BetweenCase> {};

TEST_P(DistanceAToBackBEdges, Hold) {
  const BetweenCase& c = GetParam();
  const double length =
      Algorithm::DistanceAToBackB(FiveVerticesZ(), c.indexA, c.offsetA, c.indexB, c.offsetB);
  EXPECT_TRUE(SameBits(length, c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, DistanceAToBackBEdges,
    testing::Values(BetweenCase{"Forward", 0, 30.0, 2, 40.0, (Sum(0, 2) + 40.0) - 30.0},
                    BetweenCase{"ToTheLastVertex", 1, 30.0, 4, 0.25, (Sum(1, 4) + 0.25) - 30.0},
                    BetweenCase{"OffsetAIsNotCut", 0, 1e9, 2, 40.0, (Sum(0, 2) + 40.0) - 1e9},
                    BetweenCase{"IndexBAtSize", 1, 30.0, 5, 0.25, 0.0},
                    BetweenCase{"IndexBFarBeyond", 1, 30.0, 2147483647, 0.25, 0.0},
                    BetweenCase{"NegativeIndexA", -1, 30.0, 3, 0.25, 0.0},
                    BetweenCase{"NegativeIndices", -3, 30.0, -2, 0.25, 0.0},
                    BetweenCase{"BBeforeA", 3, 0.0, 2, 40.0, 0.0},
                    BetweenCase{"SameIndexForward", 2, 3.0, 2, 10.5, 7.5},
                    BetweenCase{"SameIndexSameOffset", 2, 3.0, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexBackward", 2, 10.5, 2, 3.0, 0.0},
                    BetweenCase{"SameIndexAtSize", 5, 1.0, 5, 3.0, 0.0},
                    BetweenCase{"SameIndexInfiniteOffsets", 2, kInfinity, 2, kInfinity, kNaN},
                    BetweenCase{"NaNOffsetA", 2, kNaN, 2, 3.0, kNaN},
                    BetweenCase{"NaNOffsetB", 1, 3.0, 2, kNaN, kNaN}),
    NameOfBetween);

TEST(DistanceAToBackB, GivesZeroOnAnEmptyLine) {
  EXPECT_TRUE(SameBits(Algorithm::DistanceAToBackB(LineZ(), 0, 1.0, 0, 3.0), 0.0));
}

const GeoCoordinate kPointA(7.5004, 47.5001);
const GeoCoordinate kPointB(7.5013, 47.512);

double Beyond(int index, const GeoCoordinate& point) {
  return FiveVertices()[static_cast<std::size_t>(index)].DistanceTo(point);
}

TEST(DistanceOfA2BInRoute, IsPositiveWhenABehindB) {
  const std::vector<double> table = CumulativeTable(FiveVertices());
  const double expected = (Beyond(2, kPointA) - Beyond(0, kPointB)) + (table[2] - table[0]);
  const double length = Algorithm::DistanceOfA2BInRoute(kPointA, 2, kPointB, 0, FiveVertices(), table);
  EXPECT_GT(length, 0.0);
  EXPECT_TRUE(SameBits(length, expected));
}

TEST(DistanceOfA2BInRoute, IsNegativeWhenABeforeB) {
  const std::vector<double> table = CumulativeTable(FiveVertices());
  const double expected = -(((0.0 - Beyond(0, kPointA)) + Beyond(2, kPointB)) + (table[2] - table[0]));
  const double length = Algorithm::DistanceOfA2BInRoute(kPointA, 0, kPointB, 2, FiveVertices(), table);
  EXPECT_LT(length, 0.0);
  EXPECT_TRUE(SameBits(length, expected));
}

TEST(DistanceOfA2BInRoute, LeavesTheTableAloneOnOneVertex) {
  const double expected = Beyond(1, kPointA) - Beyond(1, kPointB);
  EXPECT_TRUE(
      SameBits(Algorithm::DistanceOfA2BInRoute(kPointA, 1, kPointB, 1, FiveVertices(), {}), expected));
  EXPECT_TRUE(SameBits(Algorithm::DistanceOfA2BInRoute(kPointA, 1, kPointA, 1, FiveVertices(), {}), 0.0));
}

TEST(DistanceOfA2BInRoute, GivesANegativeZeroBetweenEqualPlacesInOrder) {
  const Line line{{7.5, 47.5}, {7.5, 47.5}};
  EXPECT_TRUE(SameBits(Algorithm::DistanceOfA2BInRoute(line[0], 0, line[0], 1, line, {3.0, 3.0}), -0.0));
  EXPECT_TRUE(SameBits(Algorithm::DistanceOfA2BInRoute(line[0], 1, line[0], 0, line, {3.0, 3.0}), 0.0));
}

struct RefusedCase {
  const char* name;
  int indexA;
  int indexB;
};

class DistanceOfA2BInRouteRefuses : public testing::TestWithParam<RefusedCase> {};

TEST_P(DistanceOfA2BInRouteRefuses, WithZero) {
  const RefusedCase& c = GetParam();
  // A table far too short shows that the indices are looked at first.
  for (const std::vector<double>& table : {CumulativeTable(FiveVertices()), std::vector<double>()}) {
    EXPECT_TRUE(SameBits(
        Algorithm::DistanceOfA2BInRoute(kPointA, c.indexA, kPointB, c.indexB, FiveVertices(), table), 0.0));
  }
}

INSTANTIATE_TEST_SUITE_P(All, DistanceOfA2BInRouteRefuses,
                         testing::Values(RefusedCase{"NegativeA", -1, 2}, RefusedCase{"NegativeB", 2, -1},
                                         RefusedCase{"BothNegative", -1, -1}, RefusedCase{"AAtSize", 5, 2},
                                         RefusedCase{"BAtSize", 2, 5}, RefusedCase{"BothAtSize", 5, 5},
                                         RefusedCase{"ALargest", 2147483647, 0},
                                         RefusedCase{"BSmallest", 0, -2147483647 - 1}),
                         [](const auto& test) { return test.param.name; });

TEST(DistanceOfA2BInRoute, KeepsTheGapBetweenGuardAndAccess) {
  const auto measure = [](int indexA, int indexB, std::size_t tableSize) {
    return Algorithm::DistanceOfA2BInRoute(kPointA, indexA, kPointB, indexB, FiveVertices(),
                                           std::vector<double>(tableSize, 1.0));
  };
  EXPECT_NE(measure(3, 1, 4), 0.0);
  EXPECT_NE(measure(1, 3, 4), 0.0);
  EXPECT_THROW(measure(3, 1, 3), std::out_of_range);
  EXPECT_THROW(measure(1, 3, 3), std::out_of_range);
  EXPECT_TRUE(SameBits(measure(3, 1, 2), 0.0));
  EXPECT_TRUE(SameBits(measure(1, 3, 2), 0.0));
  EXPECT_TRUE(SameBits(measure(1, 3, 0), 0.0));
  EXPECT_THROW(measure(1, 0, 1), std::out_of_range);
}

// ---- Exact bits -----------------------------------------------------------------------------------------------------

// Which order rounds differently depends on the last bits of the distances: each test runs over lines of which many
// tell the orders apart.

TEST(GetDistance, AddsInTheOrderOfTheVertices) {
  constexpr unsigned kSeed = 31011;
  std::mt19937 generator(kSeed);
  int told = 0;
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ lineZ = RandomLineZ(generator, 5);
    const Line line = WithoutHeight(lineZ);
    const double d0 = line[0].DistanceTo(line[1]);
    const double d1 = line[1].DistanceTo(line[2]);
    const double d2 = line[2].DistanceTo(line[3]);
    const double d3 = line[3].DistanceTo(line[4]);
    const double inOrder = ((d0 + d1) + d2) + d3;
    told += inOrder != d0 + (d1 + (d2 + d3)) && inOrder != (d0 + d1) + (d2 + d3) ? 1 : 0;
    ASSERT_TRUE(SameBits(Algorithm::GetDistance(line.data(), 5, 0, 5), inOrder));
    ASSERT_TRUE(SameBits(Algorithm::GetDistanceByVector(line, 0, 4), inOrder));
    ASSERT_TRUE(SameBits(Algorithm::GetDistanceByVector(lineZ, 0, 4), inOrder));
  }
  EXPECT_GT(told, 20);
}

TEST(DistancePointAAndPointB, KeepsTheOrderOfItsSum) {
  const std::vector<double> table{41.8, 99.7};
  const double expected = ((99.7 - 41.8) + 93.3) - 72.1;
  ASSERT_NE(expected, (99.7 - 41.8) + (93.3 - 72.1));
  ASSERT_NE(expected, ((99.7 - 41.8) - 72.1) + 93.3);
  EXPECT_TRUE(SameBits(Algorithm::DistancePointAAndPointB(table, 0, 72.1, 1, 93.3), expected));

  constexpr unsigned kSeed = 31012;
  std::mt19937 generator(kSeed);
  int told = 0;
  for (int run = 0; run < 500; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    LineZ line = RandomLineZ(generator, 4);
    const double length = Algorithm::GetDistanceByVector(line, 0, 2);
    const double offsetA = 0.37 * line[0].DistanceTo(line[1]);
    told += length - offsetA + 1234.5 != (length + 1234.5) - offsetA ? 1 : 0;
    ASSERT_TRUE(
        SameBits(Algorithm::DistancePointAAndPointB(line, 0, offsetA, 2, 1234.5), length - offsetA + 1234.5));
    ASSERT_TRUE(
        SameBits(Algorithm::DistanceAToBackB(line, 0, offsetA, 2, 1234.5), (length + 1234.5) - offsetA));
  }
  EXPECT_GT(told, 100);
}

// ---- Properties -----------------------------------------------------------------------------------------------------

void ExpectTableEntriesAreLengths(const Line& line) {
  const std::vector<double> table = CumulativeTable(line);
  ASSERT_EQ(table.size(), line.size());
  const auto count = static_cast<unsigned>(line.size());
  for (unsigned i = 0; i < count; ++i) {
    ASSERT_TRUE(SameBits(table[i], Algorithm::GetDistance(line.data(), count, 0, i + 1))) << "vertex " << i;
  }
}

TEST(GetDistanceAndCache, TableEntriesAreLengths) {
  constexpr unsigned kSeed = 31001;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 200; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectTableEntriesAreLengths(RandomLine(generator, 1 + run));
  }
}

TEST(GetDistanceAndCache, TableEntriesAreLengthsOnRealRoutes) {
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(line.name);
    // Every length is measured from the start anew: the first 500 vertices are plenty.
    ExpectTableEntriesAreLengths(Line(
        line.points.begin(), line.points.begin() + std::min<std::ptrdiff_t>(500, static_cast<std::ptrdiff_t>(
                                                                                     line.points.size()))));
  }
}

/// A point near the segment behind vertex `index`.
GeoCoordinate PointNear(std::mt19937& generator, const Line& line, std::size_t index) {
  return GeoCoordinate(line[index].longitude + Uniform(generator, -0.001, 0.001),
                       line[index].latitude + Uniform(generator, -0.001, 0.001));
}

void ExpectSwapNegates(std::mt19937& generator, const Line& line) {
  const std::vector<double> table = CumulativeTable(line);
  for (int trial = 0; trial < 20; ++trial) {
    const auto a = static_cast<std::size_t>(generator() % line.size());
    const auto b = static_cast<std::size_t>(generator() % line.size());
    const GeoCoordinate pointA = PointNear(generator, line, a);
    const GeoCoordinate pointB = PointNear(generator, line, b);
    const int indexA = static_cast<int>(a);
    const int indexB = static_cast<int>(b);
    const double there = Algorithm::DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, table);
    const double back = Algorithm::DistanceOfA2BInRoute(pointB, indexB, pointA, indexA, line, table);
    ASSERT_EQ(there, -back) << "indices " << indexA << " and " << indexB;  // exact: no slack is needed
  }
}

TEST(DistanceOfA2BInRoute, NegatesWhenSwapped) {
  constexpr unsigned kSeed = 31002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 200; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectSwapNegates(generator, RandomLine(generator, 2 + run));
  }
}

TEST(DistanceOfA2BInRoute, NegatesWhenSwappedOnRealRoutes) {
  constexpr unsigned kSeed = 31003;
  std::mt19937 generator(kSeed);
  const std::vector<vorel::test::NamedLine> lines = vorel::test::RealLines("routes");
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLine& line : lines) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", " << line.name);
    ExpectSwapNegates(generator, line.points);
  }
}

TEST(FindFirstSmallerIndex, LooksAtTheLowerOfTwoMiddles) {
  // Unordered, so that it shows which elements were looked at: 5, then 0.
  EXPECT_EQ(Algorithm::FindFirstSmallerIndex({0.0, 5.0, 1.0, 9.0}, 3.0), 0);
}

TEST(FindFirstSmallerIndex, FindsTheSegmentOfATableEntry) {
  constexpr unsigned kSeed = 31004;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 300; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const std::vector<double> table = CumulativeTable(RandomLine(generator, 1 + run % 60));
    const double target = Uniform(generator, -10.0, 1.1 * table.back() + 1.0);
    const int index = Algorithm::FindFirstSmallerIndex(table, target);
    ASSERT_GE(index, 0);
    const auto found = static_cast<std::size_t>(index);
    ASSERT_LT(found, table.size());
    if (target >= 0.0) {
      EXPECT_LE(table[found], target);
    }
    if (found + 1 < table.size()) {
      EXPECT_GT(table[found + 1], target);
    }
  }
}

// The three ways to the same distance, where no offset is cut.
TEST(DistancePointAAndPointB, AgreesWithItsNeighbours) {
  constexpr unsigned kSeed = 31005;
  // Metres, on lines of up to 3 km; worst of 2e5 runs were 2.8e-12 (table) and 4.6e-13: the sums round differently.
  constexpr double kSlack = 1e-11;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    LineZ line = RandomLineZ(generator, 3 + run % 100);
    const std::vector<double> table = CumulativeTable(WithoutHeight(line));
    const auto a = static_cast<std::size_t>(generator() % (line.size() - 1));
    const auto b = a + 1 + generator() % (line.size() - 1 - a);
    const double offsetA = Uniform(generator, 0.0, table[a + 1] - table[a]) * 0.999;
    const double offsetB = Uniform(generator, 0.0, 60.0);
    const int indexA = static_cast<int>(a);
    const int indexB = static_cast<int>(b);
    const double onLine = Algorithm::DistancePointAAndPointB(line, indexA, offsetA, indexB, offsetB);
    EXPECT_NEAR(Algorithm::DistancePointAAndPointB(table, indexA, offsetA, indexB, offsetB), onLine, kSlack);
    EXPECT_NEAR(Algorithm::DistanceAToBackB(line, indexA, offsetA, indexB, offsetB), onLine, kSlack);
  }
}

// ---- Against the plain twins ----------------------------------------------------------------------------------------

const std::vector<double>& Offsets() {
  static const std::vector<double> offsets{0.0, -0.0,  1e-9, 3.5,       1234.5,
                                           1e7, -7.25, kNaN, kInfinity, -kInfinity};
  return offsets;
}

void ExpectLengthsMatchTwins(const LineZ& lineZ) {
  const Line line = WithoutHeight(lineZ);
  const auto count = static_cast<unsigned>(line.size());
  const std::vector<unsigned> ends{0,        1, 2, 3, count / 2, count - 1, count, count + 1, kMaxIndex - 1,
                                   kMaxIndex};
  for (const unsigned from : ends) {
    for (const unsigned to : ends) {
      SCOPED_TRACE(testing::Message() << "from " << from << " to " << to);
      EXPECT_TRUE(SameBits(Algorithm::GetDistance(line.data(), count, from, to),
                           reference::GetDistance(line.data(), count, from, to)));
      if (line.empty()) continue;
      EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(line, from, to),
                           reference::GetDistanceByVector(line, from, to)));
      EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(lineZ, from, to),
                           reference::GetDistanceByVector(lineZ, from, to)));
      if (from < to && to >= count) continue;
      std::vector<double> cache{3.0};
      std::vector<double> expectedCache{3.0};
      EXPECT_TRUE(SameBits(Algorithm::GetDistanceAndCache(line, from, to, cache),
                           reference::GetDistanceAndCache(line, from, to, expectedCache)));
      EXPECT_TRUE(SameBits(cache, expectedCache));
    }
  }
}

/// `index` for A and B, from below the line to beyond it.
int AnyIndex(std::mt19937& generator, const LineZ& line) {
  return static_cast<int>(generator() % (line.size() + 4)) - 2;
}

void ExpectPositionsMatchTwins(std::mt19937& generator, LineZ line) {
  const Line flat = WithoutHeight(line);
  std::vector<double> table = CumulativeTable(flat);
  for (int trial = 0; trial < 30; ++trial) {
    const int indexA = AnyIndex(generator, line);
    const int indexB = AnyIndex(generator, line);
    const double offsetA = Offsets()[generator() % Offsets().size()];
    const double offsetB = Offsets()[generator() % Offsets().size()];
    SCOPED_TRACE(testing::Message() << "A " << indexA << " " << offsetA << ", B " << indexB << " "
                                    << offsetB);
    EXPECT_EQ(Algorithm::IsPointAInFrontOfPointB(indexA, offsetA, indexB, offsetB),
              reference::IsPointAInFrontOfPointB(indexA, offsetA, indexB, offsetB));
    EXPECT_TRUE(SameBits(Algorithm::DistanceAToBackB(line, indexA, offsetA, indexB, offsetB),
                         reference::DistanceAToBackB(line, indexA, offsetA, indexB, offsetB)));
    const bool firstIsInside = indexA >= 0 && indexA < static_cast<int>(line.size());
    if (indexA >= indexB || (firstIsInside && indexB < static_cast<int>(line.size()))) {
      EXPECT_TRUE(SameBits(Algorithm::DistancePointAAndPointB(line, indexA, offsetA, indexB, offsetB),
                           reference::DistancePointAAndPointB(line, indexA, offsetA, indexB, offsetB)));
    }
    if (indexA >= indexB || firstIsInside) {
      EXPECT_TRUE(SameBits(Algorithm::DistancePointAAndPointB(table, indexA, offsetA, indexB, offsetB),
                           reference::DistancePointAAndPointB(table, indexA, offsetA, indexB, offsetB)));
    }
    EXPECT_EQ(Algorithm::FindFirstSmallerIndex(table, offsetA),
              reference::FindFirstSmallerIndex(table, offsetA));
  }
}

void ExpectRouteDistancesMatchTwins(std::mt19937& generator, const LineZ& lineZ) {
  const Line line = WithoutHeight(lineZ);
  const std::vector<double> whole = CumulativeTable(line);
  for (int trial = 0; trial < 30; ++trial) {
    const int indexA = AnyIndex(generator, lineZ);
    const int indexB = AnyIndex(generator, lineZ);
    const GeoCoordinate pointA =
        line.empty() ? kPointA : PointNear(generator, line, generator() % line.size());
    const GeoCoordinate pointB = line.empty() ? kPointB : line[generator() % line.size()];
    std::vector<double> table = whole;
    if (trial % 3 == 0) table.resize(generator() % (line.size() + 1));
    SCOPED_TRACE(testing::Message() << "A " << indexA << ", B " << indexB << ", table " << table.size());
    double length = 111.0;
    double expected = 111.0;
    bool threw = false;
    bool twinThrew = false;
    try {
      length = Algorithm::DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, table);
    } catch (const std::out_of_range&) {
      threw = true;
    }
    try {
      expected = reference::DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, table);
    } catch (const std::out_of_range&) {
      twinThrew = true;
    }
    EXPECT_EQ(threw, twinThrew);
    EXPECT_TRUE(SameBits(length, expected));
  }
}

void ExpectAllMatchTwins(std::mt19937& generator, const LineZ& line) {
  ExpectLengthsMatchTwins(line);
  ExpectPositionsMatchTwins(generator, line);
  ExpectRouteDistancesMatchTwins(generator, line);
}

TEST(Measurement, MatchesTheTwinsOnRandomLines) {
  constexpr unsigned kSeed = 31006;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 300; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectAllMatchTwins(generator, RandomLineZ(generator, run % 40));
  }
}

TEST(Measurement, MatchesTheTwinsOnWildLines) {
  constexpr unsigned kSeed = 31007;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 300; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    ExpectAllMatchTwins(generator, WildLineZ(generator, run % 40));
  }
}

class MeasurementOnRealLines : public testing::TestWithParam<const char*> {};

TEST_P(MeasurementOnRealLines, MatchesTheTwins) {
  constexpr unsigned kSeed = 31008;
  std::mt19937 generator(kSeed);
  const std::vector<vorel::test::NamedLineZ>& lines = vorel::test::RealLinesZ(GetParam());
  SKIP_WITHOUT_REAL_LINES(lines);
  for (const vorel::test::NamedLineZ& line : lines) {
    SCOPED_TRACE(line.name);
    ExpectRouteDistancesMatchTwins(generator, line.points);
    ExpectPositionsMatchTwins(generator, line.points);
    const auto count = static_cast<unsigned>(line.points.size());
    EXPECT_TRUE(SameBits(Algorithm::GetDistanceByVector(line.points, 0, count),
                         reference::GetDistanceByVector(line.points, 0, count)));
  }
}

INSTANTIATE_TEST_SUITE_P(All, MeasurementOnRealLines, testing::Values("routes", "traces", "lanes"));

// ---- Awkward lines --------------------------------------------------------------------------------------------------

JOIN_AWKWARD_LINES_Z(LengthsOfLines, [](const LineZ& line) { ExpectLengthsMatchTwins(line); });

JOIN_AWKWARD_LINES_Z(DistancesBetweenPositions, [](const LineZ& line) {
  std::mt19937 generator(31009);
  ExpectPositionsMatchTwins(generator, line);
});

JOIN_AWKWARD_LINES_Z(DistanceOfA2BInRoute, [](const LineZ& line) {
  std::mt19937 generator(31010);
  ExpectRouteDistancesMatchTwins(generator, line);
});

}  // namespace
