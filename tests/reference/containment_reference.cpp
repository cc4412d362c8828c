#include "base/strict_floating_point.h"

#include "reference/containment_reference.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "reference/points_reference.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinate;

bool IsPointOnLineSegment(const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& p) {
  if (a.longitude > p.longitude && b.longitude > p.longitude) return false;
  if (p.longitude > a.longitude && p.longitude > b.longitude) return false;
  if (a.latitude > p.latitude && b.latitude > p.latitude) return false;
  if (p.latitude > a.latitude && p.latitude > b.latitude) return false;
  const std::int32_t left = MultiplyInt32Wrapping(TruncateToInt32(p.longitude - a.longitude),
                                                  TruncateToInt32(b.latitude - a.latitude));
  const std::int32_t right = MultiplyInt32Wrapping(TruncateToInt32(b.longitude - a.longitude),
                                                   TruncateToInt32(p.latitude - a.latitude));
  return left <= right;
}

bool IsPointOnPolyline(const std::vector<GeoCoordinate>& line, GeoCoordinate point, float tolerance,
                       bool checkSegments) {
  if (line.empty()) return false;
  const double d0 = line[0].DistanceTo(point);
  if (line.size() < 2) return false;
  const double toleranceMetres = static_cast<double>(tolerance);
  const bool firstHit = toleranceMetres >= d0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    bool nearI = false;
    if (IsPointNearOtherOne(line[i], tolerance, point)) {
      nearI = toleranceMetres >= line[i].DistanceTo(point);
    }
    if ((i == 1 && firstHit) || nearI) return true;
    if (checkSegments) {
      if (IsPointOnLineSegment(line[i - 1], line[i], point)) return true;
    }
  }
  return false;
}

int PointOnPolyline(const std::vector<GeoCoordinate>& line, GeoCoordinate point, float tolerance,
                    bool checkSegments) {
  if (line.empty()) return -1;
  const double d0 = line[0].DistanceTo(point);
  if (line.size() < 2) return -1;
  const double toleranceMetres = static_cast<double>(tolerance);
  const bool firstHit = toleranceMetres >= d0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    bool nearI = false;
    if (IsPointNearOtherOne(line[i], tolerance, point)) {
      nearI = toleranceMetres >= line[i].DistanceTo(point);
    }
    if ((i == 1 && firstHit) || nearI) return static_cast<int>(i);
    if (checkSegments) {
      if (IsPointOnLineSegment(line[i - 1], line[i], point)) return static_cast<int>(i);
    }
  }
  return -1;
}

bool IsPointOnPolyline(const std::vector<std::vector<GeoCoordinate>>& lines, GeoCoordinate point,
                       float tolerance, bool checkSegments) {
  for (std::size_t k = 0; k < lines.size(); ++k) {
    if (IsPointOnPolyline(lines[k], point, tolerance, checkSegments)) return true;
  }
  return false;
}

bool PointRayTest(GeoCoordinate point, GeoCoordinate a, GeoCoordinate b, int& crossings) {
  const bool takesPart = (a.latitude < point.latitude && point.latitude <= b.latitude) ||
                         (b.latitude < point.latitude && point.latitude <= a.latitude);
  if (!takesPart) return false;
  return PointRayTestInner(point, a, b, crossings);
}

bool PointRayTestInner(GeoCoordinate point, GeoCoordinate a, GeoCoordinate b, int& crossings) {
  const double eps = 1e-07;
  const double dy = b.latitude - a.latitude;
  if (std::fabs(dy) < eps) {
    if ((point.longitude >= a.longitude && b.longitude >= point.longitude) ||
        (point.longitude >= b.longitude && a.longitude >= point.longitude)) {
      return true;
    }
    // Counted on whichever side of the edge the point lies.
    crossings = crossings + 1;
    return false;
  }
  const double t = (point.latitude - a.latitude) / dy;
  const double xi = (b.longitude - a.longitude) * t + a.longitude;
  if (std::fabs(point.longitude - xi) < eps) return true;
  if (xi > point.longitude) crossings = crossings + 1;
  return false;
}

bool IsPointInPolygon(const std::vector<GeoCoordinate>& polygon, GeoCoordinate point) {
  if (polygon.size() < 3) return false;
  int crossings = 0;
  const std::size_t n = polygon.size();
  for (std::size_t i = 0; i < n; ++i) {
    if (point == polygon[i]) return true;
    const std::size_t j = (i + 1) % n;
    if (PointRayTest(point, polygon[i], polygon[j], crossings)) return true;
  }
  return crossings % 2 == 1;
}

}  // namespace reference
