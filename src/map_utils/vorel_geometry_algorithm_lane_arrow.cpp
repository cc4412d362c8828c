#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>

#include "base/geodesy/wgs84.h"
#include "base/precondition.h"
#include "map_utils/internal/angle_fold.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using internal::CalledDistance;
using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

using LineZ = std::vector<GeoCoordinateZ>;

LineZ WithoutRepeatedPoints(const LineZ& points) {
  constexpr double kSamePoint = 0.01;  // metres
  LineZ distinct;
  distinct.reserve(points.size());
  distinct.push_back(points[0]);
  for (std::size_t k = 1; k < points.size(); ++k) {
    if (CalledDistance(distinct.back(), points[k]) > kSamePoint) distinct.push_back(points[k]);
  }
  return distinct;
}

float Heading(const GeoCoordinate& from, const GeoCoordinate& to) {
  return internal::FoldInto180(static_cast<float>(VorelGeometryAlgorithm::GetAngle(from, to)));
}

/// Metres along each leg of a bend that the edges need to meet: half the width times tan(turn / 2), plus a margin.
/// Infinite for a turn of 180 degrees.
double CutAlongLeg(float width, float turn) {
  constexpr double kMargin = 6.0;                                       // metres
  const float complementOfHalfTurns = (turn * -0.5f + 90.0f) / 180.0f;  // in half turns
  return static_cast<double>(width) /
             std::tan(static_cast<double>(complementOfHalfTurns) * tarvo::geodesy::kPi) * 0.5 +
         kMargin;
}

/// The guide line with a point before and after every bend, so that the shaft keeps its width through it. `distinct`
/// has no repeated points; a single one comes twice.
LineZ EaseBends(const LineZ& distinct, float width) {
  constexpr float kSharpestStraight = 5.0f;  // degrees of turn
  constexpr double kShortestRest = 1.0;      // metres of a leg that must remain beyond the cut
  LineZ eased;
  eased.reserve(distinct.size());
  eased.push_back(distinct[0]);
  if (distinct.size() >= 3) {
    float arriving = Heading(distinct[0], distinct[1]);
    for (std::size_t j = 1; j + 1 < distinct.size(); ++j) {
      const GeoCoordinateZ& vertex = distinct[j];
      const GeoCoordinateZ& next = distinct[j + 1];
      const float leaving = Heading(vertex, next);
      const float turn = std::fabs(internal::FoldInto180(leaving - arriving));
      arriving = leaving;
      if (!(turn > kSharpestStraight)) {  // a NaN turn is no bend
        eased.push_back(vertex);
        continue;
      }
      const double cut = CutAlongLeg(width, turn);
      const double shortestLeg = cut + kShortestRest;
      // The leg before starts at the last point so far, which may be the cut after the bend before.
      const double legBefore = CalledDistance(eased.back(), vertex);
      if (legBefore > shortestLeg) {
        eased.push_back(
            internal::PointAtRatio(eased.back(), vertex, static_cast<float>(1.0 - cut / legBefore)));
      }
      eased.push_back(vertex);
      const double legAfter = CalledDistance(vertex, next);
      if (legAfter > shortestLeg) {
        eased.push_back(internal::PointAtRatio(vertex, next, static_cast<float>(cut / legAfter)));
      }
    }
  }
  eased.push_back(distinct.back());
  return eased;
}

LineZ Offset(const LineZ& line, float metres, bool left) {
  LineZ moved;
  VorelGeometryAlgorithm::PanLinePoints(line, metres, left, moved);
  return moved;
}

/// `edge` mirrored point by point through `center`, with the heights of `center`.
LineZ Mirror(const LineZ& center, const LineZ& edge) {
  LineZ mirrored;
  mirrored.reserve(center.size());
  for (std::size_t k = 0; k < center.size(); ++k) {
    mirrored.emplace_back(center[k].longitude + center[k].longitude - edge[k].longitude,
                          center[k].latitude + center[k].latitude - edge[k].latitude, center[k].z);
  }
  return mirrored;
}

/// Whether step k of `line` runs forward along step k of `center`; a step at a right angle does not.
bool RunsForward(const LineZ& center, const LineZ& line, std::size_t k) {
  const double centerLongitudes = center[k + 1].longitude - center[k].longitude;
  const double centerLatitudes = center[k + 1].latitude - center[k].latitude;
  return centerLongitudes * (line[k + 1].longitude - line[k].longitude) +
             centerLatitudes * (line[k + 1].latitude - line[k].latitude) >
         0.0;
}

}  // namespace

void VorelGeometryAlgorithm::CalcBoundaryPoints(const std::vector<GeoCoordinateZ>& points, float width,
                                                ArrowType arrowType,
                                                std::vector<GeoCoordinateZ>& leftBoundary,
                                                std::vector<GeoCoordinateZ>& rightBoundary) {
  VOREL_PRECONDITION(&points != &leftBoundary && &points != &rightBoundary);
  VOREL_PRECONDITION(&leftBoundary != &rightBoundary);
  leftBoundary.clear();
  rightBoundary.clear();
  if (points.size() < 2) return;
  const LineZ guide = EaseBends(WithoutRepeatedPoints(points), width);
  switch (arrowType) {
    case ArrowType::kLineAsLeftEdge: {
      RelapseCheckFilter(guide, guide, leftBoundary, Offset(guide, width, false), rightBoundary);
      break;
    }
    case ArrowType::kLineAsCenter: {
      const LineZ right = Offset(guide, width * 0.5f, false);
      RelapseCheckFilter(guide, Mirror(guide, right), leftBoundary, right, rightBoundary);
      break;
    }
    default:
      RelapseCheckFilter(guide, Offset(guide, width, true), leftBoundary, guide, rightBoundary);
      break;
  }
}

void VorelGeometryAlgorithm::RelapseCheckFilter(const std::vector<GeoCoordinateZ>& center,
                                                const std::vector<GeoCoordinateZ>& leftIn,
                                                std::vector<GeoCoordinateZ>& leftOut,
                                                const std::vector<GeoCoordinateZ>& rightIn,
                                                std::vector<GeoCoordinateZ>& rightOut) {
  const std::size_t count = center.size();
  if (count < 2 || rightIn.size() != count || leftIn.size() != count) {
    if (&leftOut != &leftIn) leftOut = leftIn;
    if (&rightOut != &rightIn) rightOut = rightIn;
    return;
  }
  // By index throughout, so that an output which is also an input may grow meanwhile.
  for (std::size_t k = 0; k + 1 < count; ++k) {
    if (RunsForward(center, leftIn, k) && RunsForward(center, rightIn, k)) {
      leftOut.push_back(leftIn[k]);
      rightOut.push_back(rightIn[k]);
    }
  }
  leftOut.push_back(leftIn[count - 1]);
  rightOut.push_back(rightIn[count - 1]);
}

}  // namespace vorel
