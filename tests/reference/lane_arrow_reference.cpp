#include "base/strict_floating_point.h"

#include "reference/lane_arrow_reference.h"

#include <cmath>
#include <cstddef>

#include "reference/angles_reference.h"
#include "reference/offset_reference.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinateZ;

void CalcBoundaryPoints(const std::vector<GeoCoordinateZ>& points, float width, vorel::ArrowType arrowType,
                        std::vector<GeoCoordinateZ>& leftBoundary,
                        std::vector<GeoCoordinateZ>& rightBoundary) {
  leftBoundary.clear();
  rightBoundary.clear();
  const int n = static_cast<int>(points.size());
  if (n < 2) return;

  // The points without repeats.
  std::vector<GeoCoordinateZ> distinct;
  distinct.push_back(points[0]);
  for (std::size_t k = 1; k < static_cast<std::size_t>(n); ++k) {
    if (distinct.back().DistanceTo(points[k]) > 0.01) distinct.push_back(points[k]);
  }
  const std::size_t m = distinct.size();

  // The prepared line: extra points on both sides of every bend.
  std::vector<GeoCoordinateZ> prepared;
  prepared.push_back(distinct[0]);
  if (m >= 3) {
    for (std::size_t j = 1; j <= m - 2; ++j) {
      float a1 = static_cast<float>(GetAngle(distinct[j - 1], distinct[j]));
      while (a1 > 180.0f) a1 = a1 + -360.0f;
      while (-180.0f >= a1) a1 = a1 + 360.0f;
      float a2 = static_cast<float>(GetAngle(distinct[j], distinct[j + 1]));
      while (a2 > 180.0f) a2 = a2 + -360.0f;
      while (-180.0f >= a2) a2 = a2 + 360.0f;
      float turn = a2 - a1;
      while (turn > 180.0f) turn = turn + -360.0f;
      while (-180.0f >= turn) turn = turn + 360.0f;
      turn = std::fabs(turn);

      if (turn > 5.0f) {
        const float halfInnerAngle = (turn * -0.5f + 90.0f) / 180.0f;
        const double cut =
            static_cast<double>(width) / std::tan(static_cast<double>(halfInnerAngle) * kPi) * 0.5 + 6.0;
        const double limit = cut + 1.0;

        const GeoCoordinateZ last = prepared.back();
        const double d = last.DistanceTo(distinct[j]);
        if (d > limit) {
          const double r = static_cast<double>(ClampRatio(static_cast<float>(1.0 - cut / d)));
          GeoCoordinateZ before;
          before.longitude = last.longitude + r * (distinct[j].longitude - last.longitude);
          before.latitude = last.latitude + r * (distinct[j].latitude - last.latitude);
          const float dz = distinct[j].z - last.z;
          before.z = static_cast<float>(static_cast<double>(dz) * r + static_cast<double>(last.z));
          prepared.push_back(before);
        }

        prepared.push_back(distinct[j]);

        const double d2 = distinct[j].DistanceTo(distinct[j + 1]);
        if (d2 > limit) {
          const double r2 = static_cast<double>(ClampRatio(static_cast<float>(cut / d2)));
          GeoCoordinateZ after;
          after.longitude = distinct[j].longitude + r2 * (distinct[j + 1].longitude - distinct[j].longitude);
          after.latitude = distinct[j].latitude + r2 * (distinct[j + 1].latitude - distinct[j].latitude);
          const float dz = distinct[j + 1].z - distinct[j].z;
          after.z = static_cast<float>(static_cast<double>(dz) * r2 + static_cast<double>(distinct[j].z));
          prepared.push_back(after);
        }
      } else {
        // A NaN turn is no bend either.
        prepared.push_back(distinct[j]);
      }
    }
  }
  prepared.push_back(distinct.back());
  if (prepared.size() < 2) return;

  if (arrowType == vorel::ArrowType::kLineAsCenter) {
    std::vector<GeoCoordinateZ> right;
    PanLinePoints(prepared, width * 0.5f, false, right);
    std::vector<GeoCoordinateZ> left;
    for (std::size_t k = 0; k < prepared.size(); ++k) {
      GeoCoordinateZ mirrored;
      mirrored.longitude = (prepared[k].longitude + prepared[k].longitude) - right[k].longitude;
      mirrored.latitude = (prepared[k].latitude + prepared[k].latitude) - right[k].latitude;
      mirrored.z = prepared[k].z;
      left.push_back(mirrored);
    }
    RelapseCheckFilter(prepared, left, leftBoundary, right, rightBoundary);
  } else if (arrowType == vorel::ArrowType::kLineAsLeftEdge) {
    std::vector<GeoCoordinateZ> right;
    PanLinePoints(prepared, width, false, right);
    RelapseCheckFilter(prepared, prepared, leftBoundary, right, rightBoundary);
  } else {
    // The right edge, and every value without a name.
    std::vector<GeoCoordinateZ> left;
    PanLinePoints(prepared, width, true, left);
    RelapseCheckFilter(prepared, left, leftBoundary, prepared, rightBoundary);
  }
}

void RelapseCheckFilter(const std::vector<GeoCoordinateZ>& center, const std::vector<GeoCoordinateZ>& leftIn,
                        std::vector<GeoCoordinateZ>& leftOut, const std::vector<GeoCoordinateZ>& rightIn,
                        std::vector<GeoCoordinateZ>& rightOut) {
  if (center.size() < 2 || rightIn.size() != center.size() || center.size() != leftIn.size()) {
    if (&leftOut != &leftIn) leftOut = leftIn;
    if (&rightOut != &rightIn) rightOut = rightIn;
    return;
  }
  const std::size_t size = center.size();
  for (std::size_t k = 0; k + 1 < size; ++k) {
    const double cx = center[k + 1].longitude - center[k].longitude;
    const double cy = center[k + 1].latitude - center[k].latitude;
    const double leftDot = cx * (leftIn[k + 1].longitude - leftIn[k].longitude) +
                           cy * (leftIn[k + 1].latitude - leftIn[k].latitude);
    const double rightDot = cx * (rightIn[k + 1].longitude - rightIn[k].longitude) +
                            cy * (rightIn[k + 1].latitude - rightIn[k].latitude);
    if (leftDot > 0.0 && rightDot > 0.0) {
      leftOut.push_back(leftIn[k]);
      rightOut.push_back(rightIn[k]);
    }
  }
  leftOut.push_back(leftIn[size - 1]);
  rightOut.push_back(rightIn[size - 1]);
}

}  // namespace reference
