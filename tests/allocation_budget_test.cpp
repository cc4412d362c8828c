// How often functions allocate, for all of them: a function that only appends to flat vectors allocates nothing once
// they have the room, but for vectors that its signature takes or returns by value and the working vectors that its
// comment names.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/every_call.h"
#include "tests/support/allocation_counter.h"

namespace {

using Algorithm = vorel::VorelGeometryAlgorithm;
using vorel::test::CallInputs;
using vorel::test::CallOutputs;
using vorel::test::LibraryCall;
using vorel::test::Line;
using vorel::test::LineZ;

class AllocationBudget : public testing::TestWithParam<LibraryCall> {
 protected:
  void SetUp() override {
    if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  }
};

TEST_P(AllocationBudget, HoldsOnceTheOutputsHaveRoom) {
  const LibraryCall& call = GetParam();
  std::size_t most = 0;
  for (const CallInputs& in : vorel::test::ManyCallInputs()) {
    CallOutputs out;
    call.run(in, out);
    const std::uint64_t digest = out.Digest();
    out.Clear();
    const vorel::test::AllocationCounter allocations;
    call.run(in, out);
    most = std::max(most, allocations.Count());
    EXPECT_EQ(out.Digest(), digest);
  }
  // Not at most: a budget that nobody needs any more is to be lowered, here and in the function's comment.
  EXPECT_EQ(most, call.mostAllocations);
}

std::vector<LibraryCall> CallsWithABudget() {
  std::vector<LibraryCall> calls = vorel::test::LibraryCalls();
  const auto isUnlimited = [](const LibraryCall& call) {
    return call.mostAllocations == vorel::test::kAnyNumberOfAllocations;
  };
  calls.erase(std::remove_if(calls.begin(), calls.end(), isUnlimited), calls.end());
  return calls;
}

std::string NameOf(const testing::TestParamInfo<LibraryCall>& info) {
  std::string name;
  for (const char* character = info.param.function; *character != '\0'; ++character) {
    if (std::isalnum(static_cast<unsigned char>(*character)) != 0) name += *character;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, AllocationBudget, testing::ValuesIn(CallsWithABudget()), NameOf);

std::size_t CountAllocations(const CallInputs& in, CallOutputs& out,
                             void (*run)(const CallInputs&, CallOutputs&)) {
  const vorel::test::AllocationCounter allocations;
  run(in, out);
  return allocations.Count();
}

CallInputs OnALongLine() {
  std::mt19937 generator(6004);
  return CallInputs(vorel::test::RandomLineZ(generator, 500), 6005);
}

// ---- By value -----------------------------------------------------------------------------------------------------

// The copy that a by-value signature makes is all there is: a caller who gives the vector away saves it.
TEST(AllocationBudgetByValue, GivingTheVectorAwaySavesTheCopy) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const CallInputs in = OnALongLine();
  Line line = in.line;
  std::vector<double> table = in.cumulative;
  std::vector<double> cache;
  cache.reserve(line.size());
  const vorel::test::AllocationCounter allocations;
  Algorithm::GetDistanceAndCache(std::move(line), 0, 499, cache);
  Algorithm::FindFirstSmallerIndex(std::move(table), 100.0);
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(cache.size(), 499u);
}

TEST(AllocationBudgetByValue, NoTriangleNoAllocation) {
  const vorel::test::AllocationCounter allocations;
  EXPECT_TRUE(Algorithm::GetLength3OfTriangle(1.0, 100.0, 90.0).empty());
  EXPECT_EQ(allocations.Count(), 0u);
}

// ---- One reservation ------------------------------------------------------------------------------------------------

// Functions that say how much room they reserve: into an empty output they allocate once.
TEST(AllocationBudgetReservation, IsOne) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const CallInputs in = OnALongLine();
  const auto fresh = [&in](void (*run)(const CallInputs&, CallOutputs&)) {
    CallOutputs out;
    return CountAllocations(in, out, run);
  };
  EXPECT_EQ(fresh([](const CallInputs& i, CallOutputs& o) {
              Algorithm::PanLinePoints(i.lineZ, 1.0f, true, o.lineZ);
            }),
            1u);
  EXPECT_EQ(
      fresh([](const CallInputs& i, CallOutputs& o) { Algorithm::GetBound(i.lineZ, 0, -1, o.corners); }), 1u);
  EXPECT_EQ(fresh([](const CallInputs& i, CallOutputs& o) {
              Algorithm::GetBoundPoints(i.vectors, o.extremes, o.indices);
            }),
            2u)
      << "one for each output";
  // The copy of the line and the table.
  EXPECT_EQ(fresh([](const CallInputs& i, CallOutputs& o) {
              Algorithm::GetDistanceAndCache(i.line, 0, 499, o.table);
            }),
            2u);
}

// Room is reserved for the new elements in all, whatever the table held, so a filled one grows by itself.
TEST(AllocationBudgetReservation, OfADistanceTableIsATotal) {
  const Line line = OnALongLine().line;
  std::vector<double> cache(1000, 0.0);
  cache.shrink_to_fit();
  const double* const before = cache.data();
  Algorithm::GetDistanceAndCache(line, 0, 0, cache);
  EXPECT_EQ(cache.data(), before) << "an empty part reserves nothing";
  std::vector<double> fresh;
  Algorithm::GetDistanceAndCache(line, 100, 300, fresh);
  EXPECT_EQ(fresh.capacity(), 200u);
}

// Room for four more than there are, at once: not one by one.
TEST(AllocationBudgetReservation, OfCornersIsFourMore) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const LineZ line = OnALongLine().lineZ;
  for (const std::size_t held : {std::size_t{1}, std::size_t{2}, std::size_t{10}}) {
    std::vector<tarvo::MapVector2d> corners(held);
    corners.shrink_to_fit();
    const vorel::test::AllocationCounter allocations;
    ASSERT_TRUE(Algorithm::GetBound(line, 0, -1, corners));
    EXPECT_EQ(allocations.Count(), 1u) << held;
    EXPECT_EQ(corners.size(), held + 4);
  }
}

// Called again and again on one output it grows like any vector, not by four corners at a time.
TEST(AllocationBudgetReservation, OfManyCornersIsNotOnePerCall) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const LineZ line = OnALongLine().lineZ;
  std::vector<tarvo::MapVector2d> corners;
  const vorel::test::AllocationCounter allocations;
  for (int call = 0; call < 1000; ++call) ASSERT_TRUE(Algorithm::GetBound(line, 0, 1, corners));
  EXPECT_LE(allocations.Count(), 20u);
}

// ---- Working vectors ------------------------------------------------------------------------------------------------

TEST(AllocationBudgetWork, OfCandidatePointsIsOneLengthPerLine) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  std::vector<Line> lines(300, Line{{7.5, 47.5}, {7.51, 47.5}});
  Line out;
  ASSERT_TRUE(Algorithm::CalculateCandidatePoints(lines, 2000, out));
  const vorel::test::AllocationCounter allocations;
  ASSERT_TRUE(Algorithm::CalculateCandidatePoints(lines, 2000, out));
  EXPECT_EQ(allocations.Count(), 1u) << "one vector, reserved for all lines";
}

// Each kind of arrow for itself: up to four working vectors, reserved once each. A guide line without bends, for each
// bend adds points to it.
TEST(AllocationBudgetWork, OfArrowsIsUpToFourVectors) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  LineZ straight;
  for (int i = 0; i < 300; ++i) straight.emplace_back(7.5 + 1e-4 * i, 47.5, 1.0f);
  std::size_t most = 0;
  for (const int type : {0, 1, 2, 7}) {
    LineZ left;
    LineZ right;
    Algorithm::CalcBoundaryPoints(straight, 3.5f, vorel::ArrowType{type}, left, right);
    ASSERT_EQ(left.size(), straight.size());
    const vorel::test::AllocationCounter allocations;
    Algorithm::CalcBoundaryPoints(straight, 3.5f, vorel::ArrowType{type}, left, right);
    most = std::max(most, allocations.Count());
  }
  EXPECT_EQ(most, 4u);
}

// The two functions that are timed: beside what the points need, the name and the label of the timer.
TEST(AllocationBudgetWork, OfTimersIsTwoStrings) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const CallInputs in = OnALongLine();
  CallOutputs out;
  EXPECT_EQ(CountAllocations(in, out,
                             [](const CallInputs& i, CallOutputs& o) {
                               Algorithm::PreProcessRoutePoints(i.routes, 0, 10.0f, 5, i.owner, o.runs);
                             }),
            2u);
  EXPECT_EQ(CountAllocations(in, out,
                             [](const CallInputs& i, CallOutputs& o) {
                               Algorithm::GetInterpolateShapePoints({}, true, i.view, {}, 20, i.owner,
                                                                    o.runs);
                             }),
            2u);
}

}  // namespace
