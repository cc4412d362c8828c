// How many distances functions evaluate, against what their comments promise. Compiled with the library's own sources,
// in which each evaluation is counted.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "base/geodesy/distance.h"
#include "map_utils/internal/segment_lengths.h"
#include "map_utils/internal/segment_projection.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using Algorithm = vorel::VorelGeometryAlgorithm;
using vorel::test::Line;
using vorel::test::LineZ;

constexpr std::size_t kVertices = 400;
constexpr std::size_t kSegments = kVertices - 1;

template <class Call>
std::size_t CountDistances(Call call) {
  const std::size_t before = vorel::test::evaluatedDistances;
  call();
  return vorel::test::evaluatedDistances - before;
}

class DistanceBudget : public testing::Test {
 protected:
  DistanceBudget() {
    // The form that measures one by one goes through the counted distance; the others measure the same segments.
    vorel::internal::ForceSegmentKernel(vorel::internal::FindSegmentKernel(1));
    // Projections have no such form; one that measures nothing leaves them to the counted distance as well.
    vorel::internal::ForceMeasureSegments([](const GeoCoordinateZ*, std::size_t, const GeoCoordinate&, double,
                                             double*, double*) { return false; });
    std::mt19937 generator(6006);
    lineZ_ = vorel::test::RandomLineZ(generator, static_cast<int>(kVertices));
    line_ = vorel::test::WithoutHeight(lineZ_);
    cumulative_.push_back(0.0);
    Algorithm::GetDistanceAndCache(line_, 0, kSegments, cumulative_);
  }
  ~DistanceBudget() override {
    vorel::internal::ForceSegmentKernel(nullptr);
    vorel::internal::ForceMeasureSegments(nullptr);
  }

  // Lines are measured in blocks, the first a small one and each twice the one before up to the largest, so that a walk
  // which ends early has measured some segments beyond: no more than it has walked and the first block, nor than a block.
  static std::size_t MostForWalked(std::size_t walked) {
    return std::min(2 * walked + vorel::internal::kSegmentsInFirstBlock - 2,
                    walked + vorel::internal::kSegmentsPerBlock - 1);
  }

  // A walk over `walked` segments evaluates each once, a block beyond at most, and none twice.
  static void ExpectWalk(std::size_t evaluated, std::size_t walked, const std::string& what) {
    EXPECT_GE(evaluated, walked) << what;
    EXPECT_LE(evaluated, std::min(MostForWalked(walked), kSegments)) << what;
  }

  GeoCoordinateZ BesideVertex(std::size_t vertex, double metres) const {
    const GeoCoordinateZ& at = lineZ_[vertex];
    return GeoCoordinateZ(at.longitude, at.latitude + metres / 111000.0, 0.0f);
  }

  Line line_;
  LineZ lineZ_;
  std::vector<double> cumulative_;
};

// Without this the zeros below would mean nothing.
TEST_F(DistanceBudget, SeesEvaluations) {
  EXPECT_EQ(CountDistances([&] { line_[0].DistanceTo(line_[1]); }), 1u);
  EXPECT_EQ(CountDistances([&] { line_[0].DistanceTo({100.0, 20.0}); }), 1u);
}

TEST_F(DistanceBudget, OfPointFunctions) {
  const GeoCoordinate& a = line_[0];
  const GeoCoordinate& b = line_[5];
  const GeoCoordinate& c = line_[9];
  EXPECT_EQ(CountDistances([&] {
              Algorithm::Distance({a.longitude, a.latitude, 1.0}, {b.longitude, b.latitude, 2.0});
            }),
            1u);
  EXPECT_EQ(CountDistances([&] { Algorithm::GetLinePoint(a, b, 10.0); }), 1u);
  EXPECT_EQ(CountDistances([&] { Algorithm::RotatePoint(a, b, 30.0); }), 1u);
  double ratio = 0.0;
  EXPECT_EQ(CountDistances([&] { Algorithm::PosInAB(lineZ_[1], lineZ_[0], lineZ_[2], ratio); }), 3u);
  EXPECT_EQ(CountDistances([&] {
              int crossings = 0;
              GeoCoordinateZ foot;
              double longitude = 0.0;
              double latitude = 0.0;
              tarvo::Rect<GeoCoordinate> bound;
              Algorithm::GetAngle(a, b, c);
              Algorithm::GetAngle(a, b);
              Algorithm::GetYaw(a.latitude, a.longitude, b.latitude, b.longitude);
              Algorithm::GetBound(line_.data(), kVertices, bound);
              Algorithm::IsPointNearOtherOne(a, 100.0f, b);
              Algorithm::GetInsertPointFromSegment(a, b, 0.5f);
              Algorithm::GetFootPoint(c, a, b);
              Algorithm::GetPositionOfPointToLine(c, a, b);
              Algorithm::ComputerThatLonLat(a.longitude, a.latitude, 30.0, 500.0, longitude, latitude);
              Algorithm::IsPointOnLineSegment(a, b, c);
              Algorithm::PointRayTest(c, a, b, crossings);
              Algorithm::PointRayTestInner(c, a, b, crossings);
              Algorithm::IsPointInPolygon(line_, c);
              Algorithm::IsTwoSegmentJoined(a, b, b, c);
              Algorithm::ProjectionPosToLine(lineZ_[0], lineZ_[1], lineZ_[9], foot, ratio);
              Algorithm::CalculatePlaneNormalVector(lineZ_);
              Algorithm::GetPointZInPlane(lineZ_, a);
              Algorithm::FindFirstSmallerIndex(cumulative_, 700.0);
              Algorithm::IsPointAInFrontOfPointB(1, 2.0, 1, 3.0);
              Algorithm::DistancePointAAndPointB(cumulative_, 3, 1.0, 300, 2.0);
            }),
            0u);
}

// One distance, and one more for each candidate looked at: two at most.
TEST_F(DistanceBudget, OfGetFixAngleForSidePoint) {
  const Line& line = line_;
  const double direct = line[0].DistanceTo(line[3]);
  std::size_t most = 0;
  for (double angle = 5.0; angle < 180.0; angle += 5.0) {
    for (const double length : {0.5 * direct, 1.1 * direct, 3.0 * direct}) {
      for (const bool useFirst : {true, false}) {
        const std::size_t candidates = Algorithm::GetLength3OfTriangle(direct, length, angle).size();
        const std::size_t evaluated = CountDistances(
            [&] { Algorithm::GetFixAngleForSidePoint(line, line[0], line[3], angle, length, useFirst); });
        EXPECT_LE(evaluated, 1 + candidates);
        EXPECT_GE(evaluated, candidates == 0 ? 1u : 2u);
        most = std::max(most, evaluated);
      }
    }
  }
  EXPECT_EQ(most, 3u);
}

// ---- Lengths ------------------------------------------------------------------------------------------------------

TEST_F(DistanceBudget, OfLengthsIsOnePerSegment) {
  for (const unsigned from : {0u, 1u, 7u, 390u, 396u, 398u}) {
    const std::size_t segments = kSegments - from;
    std::vector<double> cache;
    EXPECT_EQ(CountDistances([&] { Algorithm::GetDistance(line_.data(), kVertices, from, 4294967295u); }),
              segments);
    EXPECT_EQ(CountDistances([&] { Algorithm::GetDistanceByVector(line_, from, 4294967295u); }), segments);
    EXPECT_EQ(CountDistances([&] { Algorithm::GetDistanceByVector(lineZ_, from, 4294967295u); }), segments);
    EXPECT_EQ(CountDistances([&] { Algorithm::GetDistanceAndCache(line_, from, kSegments, cache); }),
              segments);
  }
  // The end of one is exclusive, that of the other inclusive.
  EXPECT_EQ(CountDistances([&] { Algorithm::GetDistance(line_.data(), kVertices, 10, 20); }), 9u);
  EXPECT_EQ(CountDistances([&] { Algorithm::GetDistanceByVector(line_, 10, 20); }), 10u);
  EXPECT_EQ(CountDistances([&] { Algorithm::GetDistance(line_.data(), kVertices, 10, 11); }), 0u);
  EXPECT_EQ(CountDistances([&] { Algorithm::GetDistanceByVector(line_, 10, 10); }), 0u);
}

TEST_F(DistanceBudget, OfPositionsOnALine) {
  for (const int indexB : {1, 2, 3, 4, 5, 50, 398}) {
    const auto touched = static_cast<std::size_t>(indexB);  // the segment of B is not measured
    EXPECT_EQ(CountDistances([&] { Algorithm::DistancePointAAndPointB(lineZ_, 0, 2.0, indexB, 3.0); }),
              touched);
    EXPECT_EQ(CountDistances([&] { Algorithm::DistanceAToBackB(lineZ_, 0, 2.0, indexB, 3.0); }), touched);
  }
  EXPECT_EQ(CountDistances([&] { Algorithm::DistancePointAAndPointB(lineZ_, 5, 2.0, 5, 3.0); }), 0u);
  EXPECT_EQ(CountDistances([&] { Algorithm::DistancePointAAndPointB(lineZ_, 6, 2.0, 5, 3.0); }), 0u);
  EXPECT_EQ(CountDistances([&] { Algorithm::DistanceAToBackB(lineZ_, 5, 2.0, 5, 3.0); }), 0u);
  EXPECT_EQ(CountDistances([&] { Algorithm::DistanceAToBackB(lineZ_, 5, 2.0, 400, 3.0); }), 0u);
  for (const int indexB : {7, 100, 399}) {
    EXPECT_EQ(CountDistances([&] {
                Algorithm::DistanceOfA2BInRoute(line_[8], 7, line_[9], indexB, line_, cumulative_);
              }),
              2u);
  }
}

// ---- Sampling -----------------------------------------------------------------------------------------------------

TEST_F(DistanceBudget, OfCutsIsOnePerSegmentUpToTheCut) {
  for (const std::size_t cutSegment : {0u, 1u, 6u, 7u, 8u, 30u, 100u, 250u, 398u}) {
    const double metres = 0.5 * (cumulative_[cutSegment] + cumulative_[cutSegment + 1]);
    if (metres == cumulative_[cutSegment]) continue;  // a repeated vertex
    const std::size_t walked = cutSegment + 1;
    Line out;
    LineZ outZ;
    ExpectWalk(
        CountDistances([&] { Algorithm::ChoosePointsInPolyline(line_.data(), kVertices, metres, out); }),
        walked, "the rest");
    out.clear();
    ExpectWalk(CountDistances([&] { Algorithm::ChoosePointsInPolylineWithMaxLength(line_, metres, out); }),
               walked, "the beginning");
    ExpectWalk(CountDistances([&] { Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ_, metres, outZ); }),
               walked, "the beginning, with heights");
    // The second sample lies in the segment of the cut and is the last one wanted.
    out.clear();
    ExpectWalk(CountDistances([&] { Algorithm::CalcPointsInPolyline(line_, metres, 2, out); }), walked,
               "samples");
    ASSERT_EQ(out.size(), 2u);
    out.clear();
    ExpectWalk(CountDistances([&] { Algorithm::ChoosePointsInPolyline(line_, metres, 2, out); }), walked,
               "samples, checked");
  }
}

TEST_F(DistanceBudget, OfSamplingTheWholeLineIsOnePerSegment) {
  Line out;
  EXPECT_EQ(CountDistances([&] { Algorithm::CalcPointsInPolyline(line_, 3.0, 0, out); }), kSegments);
  EXPECT_EQ(CountDistances([&] { Algorithm::CalcPointsInPolyline(line_, 1e9, 0, out); }), kSegments);
  EXPECT_EQ(CountDistances([&] { Algorithm::ChoosePointsInPolylineWithMaxLength(line_, 1e9, out); }),
            kSegments);
  EXPECT_EQ(CountDistances([&] { Algorithm::ChoosePointsInPolyline(line_.data(), kVertices, 1e9, out); }),
            kSegments);
  // What is refused, or filled by the start alone, is not measured.
  EXPECT_EQ(CountDistances([&] { Algorithm::ChoosePointsInPolyline(line_, 0.0, 0, out); }), 0u);
  EXPECT_EQ(CountDistances([&] { Algorithm::CalcPointsInPolyline(line_, 3.0, 1, out); }), 0u);
}

TEST_F(DistanceBudget, OfSamplingFromAnAnchor) {
  Line out;
  EXPECT_EQ(CountDistances([&] {
              Algorithm::ChoosePointsInPolylineFromBasePoint(5, line_[5], 1e9, line_, cumulative_, out);
            }),
            1u);
  std::vector<tarvo::RoutePos> positions(100);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    positions[i].coordinate = line_[4 * i];
    positions[i].shapeIndex = static_cast<int>(4 * i);
  }
  constexpr std::size_t kPositionsPerBlock = 32;
  for (const std::size_t steps : {1u, 2u, 10u, 50u, 99u}) {
    const double offset = 0.5 * (cumulative_[4 * steps - 4] + cumulative_[4 * steps]);
    const std::size_t evaluated = CountDistances(
        [&] { Algorithm::ChoosePointsInPolylineWithOffset(positions, offset, out, line_, cumulative_); });
    EXPECT_GE(evaluated, steps + 1) << "one per position passed";
    EXPECT_LE(evaluated, std::max(2 * steps, steps + kPositionsPerBlock))
        << "at most two per step, beside a block";
  }
}

TEST_F(DistanceBudget, OfCandidatePointsIsTwoPerSegment) {
  const std::vector<Line> lines{line_, {}, {line_[3]}, Line(line_.begin(), line_.begin() + 50)};
  Line out;
  const std::size_t evaluated = CountDistances([&] { Algorithm::CalculateCandidatePoints(lines, 100, out); });
  EXPECT_GE(evaluated, kSegments + 49);
  EXPECT_LE(evaluated, 2 * (kSegments + 49));
}

TEST_F(DistanceBudget, OfSymbolsIsOnePerSegmentInside) {
  const tarvo::Rect<GeoCoordinate> view{{line_[200].longitude - 0.001, line_[200].latitude - 0.001},
                                        {line_[200].longitude + 0.001, line_[200].latitude + 0.001}};
  std::vector<Line> pieces;
  Algorithm::CutPolyline(line_, view, pieces);
  std::size_t segmentsInside = 0;
  for (const Line& piece : pieces) segmentsInside += piece.size() - 1;
  ASSERT_GT(segmentsInside, 2u);
  ASSERT_LT(segmentsInside, kSegments);
  std::vector<Line> runs;
  for (const bool isMainRoute : {true, false}) {
    EXPECT_EQ(CountDistances([&] {
                Algorithm::GetInterpolateShapePoints(line_, isMainRoute, view, line_, 10, "Demo", runs);
              }),
              segmentsInside);
  }
  EXPECT_EQ(CountDistances([&] { Algorithm::CutPolyline(line_, view, pieces); }), 0u);
}

// ---- Tests and thinning -------------------------------------------------------------------------------------------

TEST_F(DistanceBudget, OfPointOnPolylineIsOnePerNearVertex) {
  for (const float tolerance : {0.5f, 5.0f, 200.0f}) {
    const GeoCoordinate point(line_[250].longitude + 1e-3, line_[250].latitude);
    std::size_t near = 1;  // vertex 0 goes by distance alone
    const int found = Algorithm::PointOnPolyline(line_, point, tolerance, false);
    const std::size_t end = found < 0 ? kVertices : static_cast<std::size_t>(found) + 1;
    for (std::size_t i = 1; i < end; ++i)
      near += Algorithm::IsPointNearOtherOne(line_[i], tolerance, point) ? 1 : 0;
    EXPECT_LE(CountDistances([&] { Algorithm::PointOnPolyline(line_, point, tolerance, false); }), near);
    EXPECT_LE(CountDistances([&] { Algorithm::IsPointOnPolyline(line_, point, tolerance, false); }), near);
    EXPECT_LE(CountDistances([&] {
                Algorithm::IsPointOnPolyline({line_, line_}, point, tolerance, false);
              }),
              2 * near);
  }
  // The first match ends the search.
  EXPECT_LE(CountDistances([&] { Algorithm::PointOnPolyline(line_, line_[0], 1.0f, false); }), 1u);
  EXPECT_EQ(CountDistances([&] { Algorithm::PointOnPolyline({line_[0]}, line_[0], 1.0f, false); }), 0u);
}

TEST_F(DistanceBudget, OfThinningIsOnePerPointOfALongSegment) {
  for (const float spacing : {0.05f, 5.0f, 40.0f, 1000.0f, 12000.0f}) {
    EXPECT_LE(CountDistances([&] {
                Algorithm::PreProcessRoutePoints({line_, line_}, spacing, 10);
              }),
              2 * kSegments);
  }
  EXPECT_EQ(CountDistances([&] { Algorithm::PreProcessRoutePoints({line_, line_}, 40.0f, 400); }), 0u);
}

// ---- Lanes ----------------------------------------------------------------------------------------------------------

TEST_F(DistanceBudget, OfTheWalkIsOnePerSegmentWalked) {
  for (const std::size_t vertex : {3u, 50u, 200u, 380u}) {
    const GeoCoordinateZ pos = BesideVertex(vertex, 1.0);
    int segmentIndex = 0;
    int resultIndex = 0;
    double ratio = 0.0;
    const std::size_t evaluated = CountDistances(
        [&] { Algorithm::ProjectionPosToLines(pos, lineZ_, segmentIndex, resultIndex, ratio); });
    // From segment 0 on, the last one looked at included; a walk never turns round.
    EXPECT_LE(evaluated, static_cast<std::size_t>(std::max(segmentIndex, 0)) + 1);
  }
}

TEST_F(DistanceBudget, OfTheScanIsTwoPerSegmentThatMatters) {
  for (const std::size_t vertex : {3u, 50u, 200u, 380u}) {
    for (const double maxDistance : {5.0, 50.0, 1e6}) {
      for (const int maxFarSegments : {0, 3, 1000000}) {
        const GeoCoordinateZ pos = BesideVertex(vertex, 2.0);
        int startIndex = 0;
        int resultIndex = 0;
        double ratio = 0.0;
        EXPECT_LE(CountDistances([&] {
                    Algorithm::ProjectionPosToLinesDistance(pos, lineZ_, startIndex, resultIndex, ratio, 0.0,
                                                            maxDistance, maxFarSegments);
                  }),
                  2 * kSegments);
      }
    }
  }
}

// Most segments of a long line cannot matter: the bounds spare their distances.
TEST_F(DistanceBudget, OfTheScanIsFarLessThanOnePerSegmentNearALine) {
  LineZ straight;
  for (int i = 0; i < 1000; ++i) straight.emplace_back(7.5 + 2e-4 * i, 47.5 + 1e-5 * (i % 2), 0.0f);
  for (const int vertex : {10, 500, 990}) {
    const GeoCoordinateZ pos(straight[static_cast<std::size_t>(vertex)].longitude, 47.50002, 0.0f);
    int startIndex = 0;
    int resultIndex = 0;
    double ratio = 0.0;
    EXPECT_LE(CountDistances([&] {
                EXPECT_TRUE(Algorithm::ProjectionPosToLinesDistance(pos, straight, startIndex, resultIndex,
                                                                    ratio, 0.0, 20.0, 1000000));
              }),
              20u);
    EXPECT_NEAR(resultIndex, vertex, 2);
    startIndex = 0;
    EXPECT_LE(CountDistances([&] {
                Algorithm::ProjectionPosToLinesDistanceOrientation(
                    pos, 90.0, straight, startIndex, resultIndex, ratio, 0.0, 20.0, 30.0, 1000000);
              }),
              20u);
  }
}

// One per segment scanned, and for one that may become the best the search for its heading's second point.
TEST_F(DistanceBudget, OfTheScanWithHeadings) {
  for (const std::size_t vertex : {3u, 50u, 200u, 380u}) {
    for (const double heading : {0.0, 90.0, 200.0}) {
      const GeoCoordinateZ pos = BesideVertex(vertex, 2.0);
      int startIndex = 0;
      int resultIndex = 0;
      double ratio = 0.0;
      // On this line no two vertices in a row but repeated ones lie within half a metre: one or two distances each.
      EXPECT_LE(CountDistances([&] {
                  Algorithm::ProjectionPosToLinesDistanceOrientation(
                      pos, heading, lineZ_, startIndex, resultIndex, ratio, 0.0, 1e6, 30.0, 1000000);
                }),
                3 * kSegments);
    }
  }
}

// A joint needs at most the gap, twice, and the way to the crossing, and mostly none of them.
TEST_F(DistanceBudget, OfTheOffset) {
  LineZ result;
  EXPECT_LE(CountDistances([&] { Algorithm::PanLinePoints(lineZ_, 1.75f, true, result); }),
            3 * (kVertices - 2));
  // A polygon of 60 corners: every joint is clear.
  LineZ round;
  for (int i = 0; i < 60; ++i) {
    const double turn = 0.1047197551196598 * i;
    round.emplace_back(7.5 + 1e-3 * std::cos(turn), 47.5 + 1e-3 * std::sin(turn), 0.0f);
  }
  result.clear();
  EXPECT_EQ(CountDistances([&] { Algorithm::PanLinePoints(round, 1.75f, true, result); }), 0u);
}

TEST_F(DistanceBudget, OfArrows) {
  LineZ offset;
  LineZ left;
  LineZ right;
  // Ten points, nine legs of 50 m, eight right angles: for repeats one distance per leg, for bends two more each.
  LineZ stairs;
  for (int i = 0; i < 10; ++i) stairs.emplace_back(7.5 + 6e-4 * ((i + 1) / 2), 47.5 + 4.5e-4 * (i / 2), 0.0f);
  for (const int type : {0, 1, 2}) {
    const std::size_t evaluated = CountDistances(
        [&] { Algorithm::CalcBoundaryPoints(stairs, 3.5f, vorel::ArrowType{type}, left, right); });
    EXPECT_GE(evaluated, 9u);
    EXPECT_LE(evaluated, 9u + 16u + 2 * 3 * (10u + 16u - 2u)) << "with two offsets of the eased line";
  }
  EXPECT_EQ(CountDistances([&] { Algorithm::RelapseCheckFilter(stairs, stairs, left, stairs, right); }), 0u);
}

TEST_F(DistanceBudget, OfBoundaryPieces) {
  const tarvo::HAD::BoundaryData source{lineZ_, {}};
  for (const std::size_t cutSegment : {1u, 5u, 9u, 40u, 200u, 398u}) {
    tarvo::HAD::BoundaryData piece;
    int cursor = -1;
    const double length = 0.5 * (cumulative_[cutSegment] + cumulative_[cutSegment + 1]);
    const std::size_t evaluated = CountDistances(
        [&] { Algorithm::HandleBoundaryDataByDistance(source, cursor, 0, 0.0, length, piece); });
    const std::size_t walked = piece.points.size() - 1;
    ExpectWalk(evaluated, walked, "piece");
  }
  tarvo::HAD::BoundaryData piece;
  int cursor = -1;
  EXPECT_EQ(
      CountDistances([&] { Algorithm::HandleBoundaryDataByDistance(source, cursor, 100, 0.5, 1e9, piece); }),
      kSegments - 100);
  EXPECT_EQ(
      CountDistances([&] { Algorithm::HandleBoundaryDataByDistance(source, cursor, 399, 0.5, 1e9, piece); }),
      0u);
}

TEST_F(DistanceBudget, OfBounds) {
  std::vector<tarvo::MapVector2d> corners;
  std::vector<vorel::Vector2<double>> vectors(kVertices);
  std::vector<vorel::Vector2<double>> extremes;
  std::vector<int> indices;
  EXPECT_EQ(CountDistances([&] {
              Algorithm::GetBound(lineZ_, 0, -1, corners);
              Algorithm::GetBoundPoints(vectors, extremes, indices);
            }),
            0u);
}

}  // namespace
