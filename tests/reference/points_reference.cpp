#include "base/strict_floating_point.h"

#include "reference/points_reference.h"

#include <cmath>
#include <cstddef>

#include "reference/angles_reference.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::Rect;

bool GetBound(const GeoCoordinate* points, unsigned int count, Rect<GeoCoordinate>& bound) {
  if (points == nullptr || count == 0) return false;
  bound.min = points[0];
  bound.max = points[0];
  for (unsigned int i = 1; i < count; ++i) {
    if (bound.min.longitude > points[i].longitude) bound.min.longitude = points[i].longitude;
    if (bound.min.latitude > points[i].latitude) bound.min.latitude = points[i].latitude;
    if (points[i].longitude > bound.max.longitude) bound.max.longitude = points[i].longitude;
    if (points[i].latitude > bound.max.latitude) bound.max.latitude = points[i].latitude;
  }
  return true;
}

bool IsRectContainsPoint(const Rect<GeoCoordinate>& rect, const GeoCoordinate& point) {
  if (point.longitude > rect.max.longitude) return false;
  if (rect.min.longitude > point.longitude) return false;
  if (point.latitude > rect.max.latitude) return false;
  if (rect.min.latitude > point.latitude) return false;
  return true;
}

bool IsRectIntersectsRect(const Rect<GeoCoordinate>& first, const Rect<GeoCoordinate>& second) {
  if (second.min.longitude > first.max.longitude) return false;
  if (second.min.latitude > first.max.latitude) return false;
  if (first.min.longitude > second.max.longitude) return false;
  if (first.min.latitude > second.max.latitude) return false;
  return true;
}

bool IsPointNearOtherOne(const GeoCoordinate& point, float distance, const GeoCoordinate& other) {
  if (static_cast<double>(distance) > 12000.0) return false;
  double t = 9.999999747378752e-05;
  if (static_cast<double>(distance) >= 1113.0) {
    t = 0.10000000149011612;
  } else if (static_cast<double>(distance) >= 111.0) {
    t = 0.009999999776482582;
  } else if (static_cast<double>(distance) >= 11.0) {
    t = 0.0010000000474974513;
  }
  if (other.longitude > point.longitude + t) return false;
  if (point.longitude - t > other.longitude) return false;
  if (other.latitude > point.latitude + t) return false;
  if (point.latitude - t > other.latitude) return false;
  return true;
}

GeoCoordinate GetInsertPointFromSegment(const GeoCoordinate& start, const GeoCoordinate& end, float ratio) {
  const double r = static_cast<double>(ClampRatio(ratio));
  GeoCoordinate result;
  result.longitude = start.longitude + r * (end.longitude - start.longitude);
  result.latitude = start.latitude + r * (end.latitude - start.latitude);
  return result;
}

GeoCoordinateZ GetInsertPointFromSegment(const GeoCoordinateZ& start, const GeoCoordinateZ& end,
                                         float ratio) {
  const double r = static_cast<double>(ClampRatio(ratio));
  GeoCoordinateZ result;
  result.longitude = start.longitude + r * (end.longitude - start.longitude);
  result.latitude = start.latitude + r * (end.latitude - start.latitude);
  const float dz = end.z - start.z;
  result.z = static_cast<float>(static_cast<double>(dz) * r + static_cast<double>(start.z));
  return result;
}

GeoCoordinate GetLinePoint(const GeoCoordinate& start, const GeoCoordinate& end, double distance) {
  const double segmentLength = start.DistanceTo(end);
  const double r = distance / segmentLength;
  GeoCoordinate result;
  result.longitude = start.longitude + r * (end.longitude - start.longitude);
  result.latitude = start.latitude + r * (end.latitude - start.latitude);
  return result;
}

GeoCoordinate GetFootPoint(const GeoCoordinate& point, const GeoCoordinate& start, const GeoCoordinate& end) {
  const double dx = end.longitude - start.longitude;
  const double dy = end.latitude - start.latitude;
  const double squaredLength = dx * dx + dy * dy;
  if (squaredLength < 1e-13) return start;
  const double t =
      ((point.longitude - start.longitude) * dx + (point.latitude - start.latitude) * dy) / squaredLength;
  GeoCoordinate foot;
  foot.longitude = start.longitude + t * dx;
  foot.latitude = start.latitude + t * dy;
  return foot;
}

double GetPositionOfPointToLine(const GeoCoordinate& point, const GeoCoordinate& start,
                                const GeoCoordinate& end) {
  return (point.latitude - start.latitude) * (end.longitude - start.longitude) -
         (point.longitude - start.longitude) * (end.latitude - start.latitude);
}

void ComputerThatLonLat(double longitude, double latitude, double azimuth, double distance,
                        double& outLongitude, double& outLatitude) {
  const double b = 6356752.3142;
  const double f = 0.0033528106643315515;
  const double oneMinusF = 0.9966471893356684;
  const double aSquaredMinusBSquared = 272331606681.9453;
  const double bSquared = 40408299984087.055;
  const double fOver16 = 0.00020955066652072197;

  const double alpha1 = (azimuth * kPi) / 180.0;
  const double sinAlpha1 = std::sin(alpha1);
  const double cosAlpha1 = std::cos(alpha1);
  const double tanU1 = oneMinusF * std::tan((latitude * kPi) / 180.0);
  const double cosU1 = 1.0 / std::sqrt(1.0 + tanU1 * tanU1);
  const double sinU1 = tanU1 * cosU1;

  const double sigma1 = std::atan2(tanU1, cosAlpha1);
  const double sinAlpha = cosU1 * sinAlpha1;
  const double cosSquaredAlpha = 1.0 - sinAlpha * sinAlpha;
  const double uSquared = (cosSquaredAlpha * aSquaredMinusBSquared) / bSquared;

  const double bigA =
      1.0 + (uSquared / 16384.0) * (4096.0 + uSquared * (-768.0 + uSquared * (320.0 - 175.0 * uSquared)));
  const double bigB =
      (uSquared / 1024.0) * (256.0 + uSquared * (-128.0 + uSquared * (74.0 - 47.0 * uSquared)));

  double sigma = distance / (b * bigA);
  double previousSigma = 2.0 * kPi;
  double sinSigma = 0.0;
  double cosSigma = 0.0;
  double cos2SigmaM = 0.0;

  // When it ends, the sine and the cosines are those of the previous sigma; only sigma itself is new.
  while (std::fabs(sigma - previousSigma) > 1e-12) {
    cos2SigmaM = std::cos(2.0 * sigma1 + sigma);
    sinSigma = std::sin(sigma);
    cosSigma = std::cos(sigma);
    const double first = cosSigma * (2.0 * (cos2SigmaM * cos2SigmaM) - 1.0);
    const double second = (((bigB / 6.0) * cos2SigmaM) * (4.0 * (sinSigma * sinSigma) - 3.0)) *
                          (4.0 * (cos2SigmaM * cos2SigmaM) - 3.0);
    const double deltaSigma = (bigB * sinSigma) * (cos2SigmaM + (bigB / 4.0) * (first - second));
    previousSigma = sigma;
    sigma = distance / (b * bigA) + deltaSigma;
  }

  const double t = sinU1 * sinSigma - (cosU1 * cosSigma) * cosAlpha1;
  const double phi2 = std::atan2(sinU1 * cosSigma + (cosU1 * sinSigma) * cosAlpha1,
                                 oneMinusF * std::sqrt(sinAlpha * sinAlpha + t * t));

  const double lambda = std::atan2(sinSigma * sinAlpha1, cosU1 * cosSigma - (sinU1 * sinSigma) * cosAlpha1);
  const double bigC = (fOver16 * cosSquaredAlpha) * (4.0 + f * (4.0 - 3.0 * cosSquaredAlpha));
  const double inner = cos2SigmaM + (bigC * cosSigma) * (2.0 * (cos2SigmaM * cos2SigmaM) - 1.0);
  const double bigL = lambda - (((1.0 - bigC) * f) * sinAlpha) * (sigma + (bigC * sinSigma) * inner);

  outLatitude = (phi2 / kPi) * 180.0;
  outLongitude = (bigL / kPi) * 180.0 + longitude;
  if (std::isnan(outLatitude)) outLatitude = 200.0;
  if (std::isnan(outLongitude)) outLongitude = 200.0;
}

GeoCoordinate RotatePoint(const GeoCoordinate& point, const GeoCoordinate& center, double angle) {
  double h = GetAngle(center, point) + angle;
  while (h > 180.0) h = h - 360.0;
  while (h <= -180.0) h = h + 360.0;
  const double r = center.DistanceTo(point);
  double m = std::cos(center.latitude * kRadiansPerDegree) * 6371000.0;
  m = m + m;
  m = m * kPi;
  m = m / 360.0;
  const double radians = h * kRadiansPerDegree;
  GeoCoordinate result;
  result.longitude = center.longitude + (r * std::sin(radians)) / m;
  result.latitude = center.latitude + (r * std::cos(radians)) / 111194.92664455873;
  return result;
}

float GetFixAngleForSidePoint(const std::vector<GeoCoordinate>& line, const GeoCoordinate& from,
                              const GeoCoordinate& to, double angle, double length, bool useFirstSegment) {
  const double directDistance = to.DistanceTo(from);
  const double base = GetAngle(from, to);
  const std::vector<double> candidates = GetLength3OfTriangle(directDistance, length, angle);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    GeoCoordinate q;
    if (useFirstSegment) {
      q = GetLinePoint(line[1], line[0], candidates[i]);
    } else {
      q = GetLinePoint(line[2], line[3], candidates[i]);
    }
    float a = static_cast<float>(GetAngle(from, q) - base);
    while (a > 180.0f) a = a - 360.0f;
    while (a <= -180.0f) a = a + 360.0f;
    if (useFirstSegment) {
      if (a >= 0.0f) return a;
    } else {
      if (a <= 0.0f) return a;
    }
  }
  return 0.0f;
}

}  // namespace reference
