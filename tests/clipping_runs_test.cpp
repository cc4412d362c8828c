// Clipping takes several vertices at a time: every place of a crossing, a NaN, a corner or an end within a block, held
// against the plain twin, which goes step by step.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/clipping_reference.h"
#include "support/bits.h"
#include "support/lines.h"

namespace {

using tarvo::GeoCoordinate;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::Paste;
using vorel::test::SameBits;
using Pieces = std::vector<Line>;
using Rect = tarvo::Rect<GeoCoordinate>;

const Rect kTen{{0, 0}, {10, 10}};

// Three blocks and the vertices before and after them.
constexpr std::size_t kLongest = 40;

void ExpectTwinAgrees(const Line& line, const Rect& rect) {
  Pieces pieces{{{1, 2}}};
  Pieces twin{{{1, 2}}};
  ASSERT_EQ(vorel::VorelGeometryAlgorithm::CutPolyline(line, rect, pieces),
            reference::CutPolyline(line, rect, twin));
  ASSERT_TRUE(SameBits(pieces, twin)) << Paste(line) << " cut to " << Paste(rect);
}

// One vertex in each of the nine fields that the prolonged sides make, on the border, and with NaN, infinity and zeros.
const std::vector<GeoCoordinate>& Visitors() {
  static const std::vector<GeoCoordinate> visitors{{-5, 5},
                                                   {15, 5},
                                                   {5, -5},
                                                   {5, 15},
                                                   {5, 5},
                                                   {-5, -5},
                                                   {15, -5},
                                                   {-5, 15},
                                                   {15, 15},
                                                   {-0.0, 5},
                                                   {0.0, -0.0},
                                                   {10, 10},
                                                   {-5e-324, 5},
                                                   {5, -5e-324},
                                                   {kNaN, 5},
                                                   {kNaN, 15},
                                                   {5, kNaN},
                                                   {-5, kNaN},
                                                   {kNaN, kNaN},
                                                   {kInfinity, 5},
                                                   {-kInfinity, -kInfinity},
                                                   {5, kInfinity},
                                                   {kNaN, -kInfinity}};
  return visitors;
}

// A line that stays in one field but for one vertex, at every place of lines of every length.
TEST(CutPolylineByRuns, AgreesWhereverOneVertexLeavesItsField) {
  for (const GeoCoordinate& home : Visitors()) {
    for (const GeoCoordinate& visitor : Visitors()) {
      for (std::size_t length = 0; length <= kLongest; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
          Line line(length, home);
          line[place] = visitor;
          ExpectTwinAgrees(line, kTen);
          if (testing::Test::HasFatalFailure()) return;
        }
        ExpectTwinAgrees(Line(length, home), kTen);
      }
    }
  }
}

// From one field into another at every place, and for good.
TEST(CutPolylineByRuns, AgreesWhereverTheLineChangesItsField) {
  for (const GeoCoordinate& from : Visitors()) {
    for (const GeoCoordinate& to : Visitors()) {
      for (std::size_t place = 0; place <= kLongest; ++place) {
        Line line(kLongest, from);
        std::fill(line.begin() + static_cast<std::ptrdiff_t>(place), line.end(), to);
        ExpectTwinAgrees(line, kTen);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

double OnGrid(std::mt19937& generator) {
  return static_cast<double>(generator() % 7) - 1.0;
}

GeoCoordinate PointOnGrid(std::mt19937& generator) {
  const double longitude = OnGrid(generator);
  return {longitude, OnGrid(generator)};
}

// On a coarse grid ties are the rule: vertices on the border, segments through corners and along sides. Rectangles of
// every kind, the inverted, the flat and the infinite ones and those with a NaN included.
TEST(CutPolylineByRuns, AgreesOnACoarseGrid) {
  constexpr unsigned kSeed = 42101;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    Rect rect{PointOnGrid(generator), PointOnGrid(generator)};
    if (run % 4 != 0) {
      if (rect.min.longitude > rect.max.longitude) std::swap(rect.min.longitude, rect.max.longitude);
      if (rect.min.latitude > rect.max.latitude) std::swap(rect.min.latitude, rect.max.latitude);
    }
    static const double kBorders[] = {kNaN, kInfinity, -kInfinity, -0.0};
    double* const borders[] = {&rect.min.longitude, &rect.min.latitude, &rect.max.longitude,
                               &rect.max.latitude};
    if (run % 5 == 0) *borders[generator() % 4] = kBorders[generator() % 4];

    // Some lines jump about, some stay for long in one place.
    const std::size_t stay = generator() % 2 == 0 ? 1 : 1 + generator() % 20;
    Line line;
    for (std::size_t length = generator() % (kLongest + 1); line.size() < length;) {
      GeoCoordinate vertex = PointOnGrid(generator);
      if (generator() % 40 == 0) vertex.longitude = kBorders[generator() % 4];
      if (generator() % 40 == 0) vertex.latitude = kBorders[generator() % 4];
      line.insert(line.end(), 1 + generator() % stay, vertex);
    }
    ExpectTwinAgrees(line, rect);
    if (testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
