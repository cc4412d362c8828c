#include "base/strict_floating_point.h"

#include "reference/offset_reference.h"

#include <cmath>
#include <cstddef>

#include "reference/angles_reference.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

void PanLinePoints(const std::vector<GeoCoordinateZ>& points, float offset, bool left,
                   std::vector<GeoCoordinateZ>& result) {
  const int n = static_cast<int>(points.size());
  result.reserve(static_cast<std::size_t>(n));
  if (n < 2) return;
  const float turn = left ? -90.0f : 90.0f;
  const double metresPerDegreeLatitude = 111194.92664455873;

  for (std::size_t i = 0; i + 1 < static_cast<std::size_t>(n); ++i) {
    const GeoCoordinateZ& a = points[i];
    const GeoCoordinateZ& b = points[i + 1];

    float ang = static_cast<float>(GetAngle(a, b));
    while (ang >= 360.0f) ang = ang - 360.0f;
    while (0.0f > ang) ang = ang + 360.0f;
    float ang2 = ang + turn;
    while (ang2 >= 360.0f) ang2 = ang2 - 360.0f;
    while (0.0f > ang2) ang2 = ang2 + 360.0f;

    const double r = static_cast<double>(ang2) * kRadiansPerDegree;
    const double east = static_cast<double>(offset) * std::sin(r);
    const double north = static_cast<double>(offset) * std::cos(r);

    double metresPerDegreeAtB = std::cos(b.latitude * kRadiansPerDegree) * 6371000.0;
    metresPerDegreeAtB = metresPerDegreeAtB + metresPerDegreeAtB;
    metresPerDegreeAtB = metresPerDegreeAtB * kPi;
    metresPerDegreeAtB = metresPerDegreeAtB / 360.0;
    GeoCoordinateZ movedB;
    movedB.longitude = b.longitude + east / metresPerDegreeAtB;
    movedB.latitude = b.latitude + north / metresPerDegreeLatitude;
    movedB.z = b.z;

    double metresPerDegreeAtA = std::cos(a.latitude * kRadiansPerDegree) * 6371000.0;
    metresPerDegreeAtA = metresPerDegreeAtA + metresPerDegreeAtA;
    metresPerDegreeAtA = metresPerDegreeAtA * kPi;
    metresPerDegreeAtA = metresPerDegreeAtA / 360.0;
    GeoCoordinateZ movedA;
    movedA.longitude = a.longitude + east / metresPerDegreeAtA;
    movedA.latitude = a.latitude + north / metresPerDegreeLatitude;

    if (i == 0) {
      movedA.z = points[0].z;
      result.push_back(movedA);
    }

    if (i > 0) {
      const GeoCoordinateZ p = result[i];
      const GeoCoordinateZ q = result[i - 1];
      const double gap = p.DistanceTo(movedA);
      if (gap < 0.01) {
        // A straight continuation: the previous moved end stays.
      } else {
        const double dx1 = p.longitude - q.longitude;
        const double dy1 = p.latitude - q.latitude;
        const double dx2 = movedB.longitude - movedA.longitude;
        const double dy2 = movedB.latitude - movedA.latitude;
        const bool previousVertical = std::fabs(dx1) < 1e-6;
        const bool currentVertical = std::fabs(dx2) < 1e-6;
        if (previousVertical && currentVertical) {
          result[i].latitude = (p.latitude + movedA.latitude) * 0.5;
        } else if (previousVertical) {
          result[i].latitude = (p.longitude - movedA.longitude) * (dy2 / dx2) + movedA.latitude;
        } else if (currentVertical) {
          result[i].longitude = movedA.longitude;
          result[i].latitude = p.latitude + (dy1 / dx1) * (movedA.longitude - p.longitude);
        } else {
          const double s1 = dy1 / dx1;
          const double s2 = dy2 / dx2;
          const double c1 = p.latitude - p.longitude * s1;
          const double c2 = movedA.latitude - movedA.longitude * s2;
          const double x = (c2 - c1) / (s1 - s2);
          const double y = (c2 * s1 + (-s2) * c1) / (s1 - s2);
          if (2.0 * gap > p.DistanceTo(GeoCoordinate(x, y))) {
            result[i].longitude = x;
            result[i].latitude = y;
          }
        }
      }
    }

    result.push_back(movedB);
  }
}

}  // namespace reference
