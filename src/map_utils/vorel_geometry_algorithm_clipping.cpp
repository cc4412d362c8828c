#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>

#include "base/precondition.h"
#include "map_utils/internal/rectangle.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::Rect;

namespace {

/// Twice the signed area of the triangle start, end, point: its sign tells the side of `point`.
inline double SideOfLine(const GeoCoordinate& point, const GeoCoordinate& start, const GeoCoordinate& end) {
  return (point.longitude - start.longitude) * (end.latitude - start.latitude) -
         (end.longitude - start.longitude) * (point.latitude - start.latitude);
}

/// Whether a segment with both ends outside meets the rectangle: it does when it meets a diagonal, for the diagonals
/// cut the rectangle into four triangles with one side each.
inline bool MeetsDiagonal(const GeoCoordinate& a, const GeoCoordinate& b, const Rect<GeoCoordinate>& rect) {
  const GeoCoordinate topLeft(rect.min.longitude, rect.max.latitude);
  const GeoCoordinate bottomRight(rect.max.longitude, rect.min.latitude);
  return VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, rect.min, rect.max) ||
         VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, topLeft, bottomRight);
}

}  // namespace

bool VorelGeometryAlgorithm::CutPolyline(const std::vector<GeoCoordinate>& line,
                                         const Rect<GeoCoordinate>& rect,
                                         std::vector<std::vector<GeoCoordinate>>& pieces) {
  const unsigned int vertexCount = static_cast<unsigned int>(line.size());
  if (vertexCount == 0) return false;
  bool previousInside = internal::Contains(rect, line[0]);
  if (previousInside) pieces.emplace_back();
  for (unsigned int i = 1; i < vertexCount; ++i) {
    const bool currentInside = internal::Contains(rect, line[i]);
    CutPolylineUpdate(previousInside, currentInside, i, vertexCount, line, rect, pieces);
    previousInside = currentInside;
  }
  return true;
}

void VorelGeometryAlgorithm::CutPolylineUpdate(bool previousInside, bool currentInside,
                                               unsigned long currentIndex, unsigned int vertexCount,
                                               const std::vector<GeoCoordinate>& line,
                                               const Rect<GeoCoordinate>& rect,
                                               std::vector<std::vector<GeoCoordinate>>& pieces) {
  VOREL_PRECONDITION(currentIndex >= 1 && currentIndex < line.size());
  VOREL_PRECONDITION(!previousInside || !pieces.empty());
  const GeoCoordinate& previous = line[currentIndex - 1];
  const GeoCoordinate& current = line[currentIndex];
  const bool isLastStep = currentIndex == vertexCount - 1;
  if (currentInside) {
    if (!previousInside) pieces.emplace_back();
    pieces.back().push_back(previous);
    if (isLastStep) pieces.back().push_back(current);
  } else if (previousInside) {
    pieces.back().push_back(previous);
    pieces.back().push_back(current);
  } else if (MeetsDiagonal(previous, current, rect)) {
    pieces.push_back({previous, current});
  }
}

bool VorelGeometryAlgorithm::IsTwoSegmentJoined(const GeoCoordinate& a, const GeoCoordinate& b,
                                                const GeoCoordinate& c, const GeoCoordinate& d) {
  if (std::min(a.longitude, b.longitude) > std::max(c.longitude, d.longitude) ||
      std::min(c.longitude, d.longitude) > std::max(a.longitude, b.longitude) ||
      std::min(a.latitude, b.latitude) > std::max(c.latitude, d.latitude) ||
      std::min(c.latitude, d.latitude) > std::max(a.latitude, b.latitude)) {
    return false;
  }
  if (SideOfLine(a, c, d) * SideOfLine(b, c, d) > 0.0) return false;
  return SideOfLine(c, a, b) * SideOfLine(d, a, b) <= 0.0;
}

}  // namespace vorel
