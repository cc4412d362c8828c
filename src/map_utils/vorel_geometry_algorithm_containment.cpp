#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <limits>

#include "base/precondition.h"

namespace vorel {

using tarvo::GeoCoordinate;

namespace {

/// Half-open span: the lower end of an edge is excluded, so that a vertex that the polygon passes through counts for
/// one of its two edges, and a horizontal edge never takes part.
inline bool SpansLatitude(const GeoCoordinate& a, const GeoCoordinate& b, double latitude) {
  return (a.latitude < latitude && latitude <= b.latitude) ||
         (b.latitude < latitude && latitude <= a.latitude);
}

inline bool CastRay(const GeoCoordinate& point, const GeoCoordinate& a, const GeoCoordinate& b,
                    int& crossings) {
  VOREL_PRECONDITION(crossings < std::numeric_limits<int>::max());
  constexpr double kEdgeTolerance = 1e-7;  // degrees; some 11 mm
  const double rise = b.latitude - a.latitude;
  if (std::fabs(rise) < kEdgeTolerance) {
    if ((point.longitude >= a.longitude && b.longitude >= point.longitude) ||
        (point.longitude >= b.longitude && a.longitude >= point.longitude)) {
      return true;
    }
    // Deliberate: counted on whichever side of the edge the point lies.
    ++crossings;
    return false;
  }
  const double ratio = (point.latitude - a.latitude) / rise;
  const double crossingLongitude = (b.longitude - a.longitude) * ratio + a.longitude;
  if (std::fabs(point.longitude - crossingLongitude) < kEdgeTolerance) return true;
  if (crossingLongitude > point.longitude) ++crossings;
  return false;
}

}  // namespace

bool VorelGeometryAlgorithm::PointRayTest(GeoCoordinate point, GeoCoordinate a, GeoCoordinate b,
                                          int& crossings) {
  return SpansLatitude(a, b, point.latitude) && CastRay(point, a, b, crossings);
}

bool VorelGeometryAlgorithm::PointRayTestInner(GeoCoordinate point, GeoCoordinate a, GeoCoordinate b,
                                               int& crossings) {
  return CastRay(point, a, b, crossings);
}

template <>
bool VorelGeometryAlgorithm::IsPointInPolygon<std::vector<GeoCoordinate>>(
    const std::vector<GeoCoordinate>& polygon, GeoCoordinate point) {
  const std::size_t count = polygon.size();
  if (count < 3) return false;
  int crossings = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const GeoCoordinate& a = polygon[i];
    if (point == a) return true;
    const GeoCoordinate& b = polygon[i + 1 < count ? i + 1 : 0];
    if (SpansLatitude(a, b, point.latitude) && CastRay(point, a, b, crossings)) return true;
  }
  return crossings % 2 != 0;
}

}  // namespace vorel
