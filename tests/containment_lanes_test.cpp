// Point in polygon takes several edges at a time: each form that this machine has is held against the plain twin, with
// a crossing, a NaN, an equal vertex or a nearly horizontal edge at every place within a block.

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/internal/polygon.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/containment_reference.h"
#include "support/bits.h"
#include "support/lines.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::Paste;

constexpr std::size_t kLongest = 40;

/// Each test runs with two lanes, with four, and with what the library chooses by itself (0).
class IsPointInPolygonInLanes : public testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override {
    if (GetParam() == 0) return;
    const vorel::internal::LocateInPolygon form = vorel::internal::FindLocateInPolygon(GetParam());
    if (form == nullptr) GTEST_SKIP() << "skipped: this machine has no form with " << GetParam() << " lanes";
    vorel::internal::ForceLocateInPolygon(form);
  }
  void TearDown() override { vorel::internal::ForceLocateInPolygon(nullptr); }
};

INSTANTIATE_TEST_SUITE_P(All, IsPointInPolygonInLanes, testing::Values(0u, 2u, 4u),
                         [](const auto& test) { return "Lanes" + std::to_string(test.param); });

void ExpectTwinAgrees(const Line& polygon, const GeoCoordinate& point) {
  ASSERT_EQ(vorel::VorelGeometryAlgorithm::IsPointInPolygon(polygon, point),
            reference::IsPointInPolygon(polygon, point))
      << Paste(point) << " in " << Paste(polygon);
}

// What a vertex can be to the point (5, 5): above, below, level, equal, less than the tolerance beside, NaN, infinite.
const std::vector<GeoCoordinate>& Visitors() {
  static const std::vector<GeoCoordinate> visitors{{5, 5},
                                                   {6, 5},
                                                   {4, 5},
                                                   {9, 9},
                                                   {9, 1},
                                                   {1, 1},
                                                   {1, 9},
                                                   {5, 9},
                                                   {5, 1},
                                                   {5 + 5e-8, 9},
                                                   {5 - 5e-8, 1},
                                                   {6, 5 + 5e-8},
                                                   {4, 5 - 5e-8},
                                                   {kNaN, 5},
                                                   {kNaN, 9},
                                                   {5, kNaN},
                                                   {9, kNaN},
                                                   {kNaN, kNaN},
                                                   {kInfinity, 5},
                                                   {kInfinity, 9},
                                                   {9, kInfinity},
                                                   {9, -kInfinity},
                                                   {-kInfinity, -kInfinity}};
  return visitors;
}

TEST_P(IsPointInPolygonInLanes, AgreesWhereverOneVertexLeavesTheOthers) {
  for (const GeoCoordinate& home : Visitors()) {
    for (const GeoCoordinate& visitor : Visitors()) {
      for (std::size_t length = 0; length <= kLongest; ++length) {
        Line polygon(length, home);
        ExpectTwinAgrees(polygon, {5, 5});
        for (std::size_t place = 0; place < length; ++place) {
          polygon[place] = visitor;
          ExpectTwinAgrees(polygon, {5, 5});
          if (testing::Test::HasFatalFailure()) return;
          polygon[place] = home;
        }
      }
    }
  }
}

// Two edges span the point's latitude: at every pair of places, the closing edge included.
TEST_P(IsPointInPolygonInLanes, AgreesWhereverThePolygonPassesThePoint) {
  for (const double east : {4.0, 6.0, 5.0}) {
    for (std::size_t length = 3; length <= kLongest; ++length) {
      for (std::size_t up = 0; up < length; ++up) {
        for (std::size_t down = up; down <= length; ++down) {
          Line polygon;
          for (std::size_t i = 0; i < length; ++i) {
            polygon.emplace_back(i < (up + down) / 2 ? 1.0 : east, i >= up && i < down ? 9.0 : 1.0);
          }
          ExpectTwinAgrees(polygon, {5, 5});
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

// On a coarse grid ties are the rule: vertices level with the point or equal to it, horizontal edges, points on edges.
TEST_P(IsPointInPolygonInLanes, AgreesOnACoarseGrid) {
  constexpr unsigned kSeed = 41101;
  std::mt19937 generator(kSeed);
  const auto onGrid = [&generator] { return static_cast<double>(generator() % 6) - 2.0; };
  static const double kOdd[] = {kNaN, kInfinity, -kInfinity, -0.0, 1 + 6e-8, 1 - 6e-8};
  int inside = 0;
  int outside = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    Line polygon;
    // Some jump about, some stay for long on one side.
    const std::size_t stay = generator() % 2 == 0 ? 1 : 1 + generator() % 20;
    for (std::size_t length = generator() % (kLongest + 1); polygon.size() < length;) {
      const double latitude = onGrid();
      for (std::size_t k = 1 + generator() % stay; k > 0; --k) polygon.emplace_back(onGrid(), latitude);
      if (generator() % 20 == 0) polygon.back().longitude = kOdd[generator() % 6];
      if (generator() % 20 == 0) polygon.back().latitude = kOdd[generator() % 6];
    }
    for (int k = 0; k < 10; ++k) {
      GeoCoordinate point(onGrid(), onGrid());
      if (k == 8) point.longitude = kOdd[generator() % 6];
      if (k == 9) point.latitude = kOdd[generator() % 6];
      if (k < 4) point.longitude += 0.5;
      if (k < 2) point.latitude += 0.5;
      ExpectTwinAgrees(polygon, point);
      if (testing::Test::HasFatalFailure()) return;
      ++(reference::IsPointInPolygon(polygon, point) ? inside : outside);
    }
  }
  EXPECT_GT(inside, 10000);
  EXPECT_GT(outside, 10000);
}

// Decisions that hang on the last bit of the crossing.
TEST_P(IsPointInPolygonInLanes, AgreesAtTheEdgesOfTheTolerance) {
  constexpr unsigned kSeed = 41102;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const Line polygon = vorel::test::RandomLine(generator, 3 + static_cast<int>(generator() % 30));
    const std::size_t i = generator() % polygon.size();
    const GeoCoordinate& a = polygon[i];
    const GeoCoordinate& b = polygon[(i + 1) % polygon.size()];
    const double latitude =
        a.latitude + (static_cast<double>(generator()) / 4294967296.0) * (b.latitude - a.latitude);
    const double crossing =
        (b.longitude - a.longitude) * ((latitude - a.latitude) / (b.latitude - a.latitude)) + a.longitude;
    double longitude = crossing + (generator() % 2 == 0 ? 1e-7 : -1e-7);
    for (auto step = generator() % 3; step > 0; --step) longitude = std::nextafter(longitude, crossing);
    ExpectTwinAgrees(polygon, {longitude, latitude});
    ExpectTwinAgrees(polygon, {std::nextafter(longitude, kInfinity), latitude});
    ExpectTwinAgrees(polygon, {std::nextafter(longitude, -kInfinity), latitude});
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(PolygonForms, AreFoundByTheirLanes) {
  for (const std::size_t lanes : {0u, 1u, 3u, 5u, 8u})
    EXPECT_EQ(vorel::internal::FindLocateInPolygon(lanes), nullptr);
}

}  // namespace
