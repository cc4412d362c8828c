#include "base/strict_floating_point.h"

#include "reference/angles_reference.h"

#include <cmath>
#include <cstdint>

#include "base/coordinate_util.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::MapVector3d;

float GetAngle(const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c) {
  const double ux = b.longitude - a.longitude;
  const double uy = b.latitude - a.latitude;
  const double vx = c.longitude - b.longitude;
  const double vy = c.latitude - b.latitude;
  const double p = (ux * ux + uy * uy) * (vx * vx + vy * vy);
  if (p == 0.0) return 0.0f;
  // Not clamped: a cosine beyond 1 gives NaN.
  const double cosine = (ux * vx + uy * vy) / std::sqrt(p);
  const double radians = std::acos(cosine);
  const double degrees = (radians * 180.0) / kPi;
  return static_cast<float>(degrees);
}

double GetAngle(const GeoCoordinate& from, const GeoCoordinate& to) {
  const double k = kRadiansPerDegree;
  const double phi1 = from.latitude * k;
  const double phi2 = to.latitude * k;
  const double deltaLambda = to.longitude * k - from.longitude * k;
  const double y = std::sin(deltaLambda) * std::cos(phi2);
  const double x =
      std::cos(phi1) * std::sin(phi2) - (std::sin(phi1) * std::cos(phi2)) * std::cos(deltaLambda);
  return std::atan2(y, x) / k;
}

double GetYaw(double lat1, double lon1, double lat2, double lon2) {
  const std::int32_t qlat1 = TruncateToInt32(lat1 * 360000.0 + 0.5);
  const std::int32_t qlon1 = TruncateToInt32(lon1 * 360000.0 + 0.5);
  const std::int32_t qlat2 = TruncateToInt32(lat2 * 360000.0 + 0.5);
  const std::int32_t qlon2 = TruncateToInt32(lon2 * 360000.0 + 0.5);
  if (qlat1 == qlat2 && qlon1 == qlon2) return 0.0;

  double h = 0.0;
  if (qlon1 == qlon2) {
    if (qlat1 > qlat2) {
      h = 180.0;
    } else {
      h = 0.0;
    }
  } else {
    const double phi1 = (lat1 * kPi) / 180.0;
    const double phi2 = (lat2 * kPi) / 180.0;
    const double deltaLambda = (lon2 * kPi) / 180.0 - (lon1 * kPi) / 180.0;
    const double c = std::acos(std::sin(phi1) * std::sin(phi2) +
                               (std::cos(phi1) * std::cos(phi2)) * std::cos(deltaLambda));
    const double angleRadians = std::asin((std::sin(deltaLambda) * std::cos(phi2)) / std::sin(c));
    const double angle = (angleRadians / kPi) * 180.0;
    // Compared, not subtracted: the difference of two 32-bit numbers may not fit.
    if (qlat2 > qlat1 && qlon2 > qlon1) {
      h = angle;
    } else if (qlat2 < qlat1 && qlon2 > qlon1) {
      h = 180.0 - angle;
    } else if (qlat2 < qlat1 && qlon2 < qlon1) {
      h = 180.0 - angle;
    } else if (qlat2 > qlat1 && qlon2 < qlon1) {
      h = angle + 360.0;
    } else {
      h = angle;
    }
  }

  if (h < 0.0) h = h + 360.0;
  if (h > 360.0) h = h - 360.0;
  if (std::isnan(h)) return 0.0;
  return h;
}

float CalcAziDiff(float from, float to) {
  const float d = to - from;
  if (d < -180.0f) return d + 360.0f;
  if (d > 180.0f) return d - 360.0f;
  return d;
}

float AngleDiff(float from, float to) {
  const float difference = to - from;
  const float t = difference + 180.0f;
  double r = std::fmod(static_cast<double>(t), 360.0);
  if (r < 0.0) r = r + 360.0;
  return static_cast<float>(r - 180.0);
}

float NormalizeAngle180(float angle) {
  while (angle > 180.0f) angle = angle - 360.0f;
  while (angle <= -180.0f) angle = angle + 360.0f;
  return angle;
}

float NormalizeAngle360(float angle) {
  while (angle >= 360.0f) angle = angle - 360.0f;
  while (angle < 0.0f) angle = angle + 360.0f;
  return angle;
}

std::vector<double> GetLength3OfTriangle(double sideA, double sideB, double angle) {
  const double theta = (angle * kPi) / 180.0;
  const double h = sideB * std::sin(theta);
  const double d = std::sqrt(sideA * sideA - h * h);
  const double p = sideB * std::cos(theta);
  std::vector<double> lengths;
  const double c1 = p + d;
  if (sideA + sideB > c1 && c1 > std::fabs(sideA - sideB)) lengths.push_back(c1);
  const double c2 = p - d;
  if (sideA + sideB > c2 && c2 > std::fabs(sideA - sideB)) lengths.push_back(c2);
  return lengths;
}

double Distance(MapVector3d p, MapVector3d q) {
  return tarvo::CoordinateUtil::DistanceOfGcj02Pos(p.x, p.y, q.x, q.y);
}

double Get20PixelDistanceOnePixel() {
  return 0.1492910087108612;
}

}  // namespace reference
