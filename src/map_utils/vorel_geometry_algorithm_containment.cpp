#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <limits>

#include "base/precondition.h"

#include "base/geodesy/distance.h"
#include "map_utils/internal/integer_conversion.h"
#include "map_utils/internal/polygon.h"
#include "map_utils/internal/rectangle.h"

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
  const double rise = b.latitude - a.latitude;
  if (std::fabs(rise) < internal::kEdgeTolerance) {
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
  if (std::fabs(point.longitude - crossingLongitude) < internal::kEdgeTolerance) return true;
  if (crossingLongitude > point.longitude) ++crossings;
  return false;
}

inline bool IsOnSegment(const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& point) {
  if ((a.longitude > point.longitude && b.longitude > point.longitude) ||
      (point.longitude > a.longitude && point.longitude > b.longitude) ||
      (a.latitude > point.latitude && b.latitude > point.latitude) ||
      (point.latitude > a.latitude && point.latitude > b.latitude)) {
    return false;
  }
  // Deliberate: whole degrees, and one side of the line counts as on it.
  using internal::MultiplyWrapping;
  using internal::TruncateToInt32;
  return MultiplyWrapping(TruncateToInt32(point.longitude - a.longitude),
                          TruncateToInt32(b.latitude - a.latitude)) <=
         MultiplyWrapping(TruncateToInt32(b.longitude - a.longitude),
                          TruncateToInt32(point.latitude - a.latitude));
}

/// What `PointOnPolyline` returns, with 0 for a point that lies nowhere.
std::size_t FirstIndexOnLine(const std::vector<GeoCoordinate>& line, const GeoCoordinate& point,
                             float tolerance, bool checkSegments) {
  if (line.size() < 2) return 0;
  const double toleranceMetres = tolerance;
  // Deliberate: vertex 0 is reported as 1, and goes by distance alone.
  if (toleranceMetres >= tarvo::geodesy::Distance(line[0], point)) return 1;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (internal::IsInNearnessBox(line[i], tolerance, point) &&
        toleranceMetres >= tarvo::geodesy::Distance(line[i], point)) {
      return i;
    }
    if (checkSegments && IsOnSegment(line[i - 1], line[i], point)) return i;
  }
  return 0;
}

}  // namespace

bool VorelGeometryAlgorithm::IsPointOnLineSegment(const GeoCoordinate& a, const GeoCoordinate& b,
                                                  const GeoCoordinate& point) {
  return IsOnSegment(a, b, point);
}

bool VorelGeometryAlgorithm::IsPointOnPolyline(const std::vector<GeoCoordinate>& line, GeoCoordinate point,
                                               float tolerance, bool checkSegments) {
  return FirstIndexOnLine(line, point, tolerance, checkSegments) != 0;
}

bool VorelGeometryAlgorithm::IsPointOnPolyline(const std::vector<std::vector<GeoCoordinate>>& lines,
                                               GeoCoordinate point, float tolerance, bool checkSegments) {
  for (const std::vector<GeoCoordinate>& line : lines) {
    if (FirstIndexOnLine(line, point, tolerance, checkSegments) != 0) return true;
  }
  return false;
}

int VorelGeometryAlgorithm::PointOnPolyline(const std::vector<GeoCoordinate>& line, GeoCoordinate point,
                                            float tolerance, bool checkSegments) {
  const std::size_t index = FirstIndexOnLine(line, point, tolerance, checkSegments);
  return index != 0 ? static_cast<int>(index) : -1;
}

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
  const internal::PolygonSide side = internal::BestLocateInPolygon()(polygon.data(), count, point);
  if (side != internal::PolygonSide::kUndecided) return side == internal::PolygonSide::kInside;
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
