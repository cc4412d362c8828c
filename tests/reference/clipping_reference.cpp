#include "base/strict_floating_point.h"

#include "reference/clipping_reference.h"

#include <algorithm>

#include "reference/points_reference.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::Rect;

bool CutPolyline(const std::vector<GeoCoordinate>& line, const Rect<GeoCoordinate>& rect,
                 std::vector<std::vector<GeoCoordinate>>& pieces) {
  const unsigned int n = static_cast<unsigned int>(line.size());
  if (n == 0) return false;
  bool prevInside = IsRectContainsPoint(rect, line[0]);
  if (prevInside) pieces.push_back(std::vector<GeoCoordinate>());
  for (unsigned long i = 1; i < n; ++i) {
    const bool curInside = IsRectContainsPoint(rect, line[i]);
    CutPolylineUpdate(prevInside, curInside, i, n, line, rect, pieces);
    prevInside = curInside;
  }
  return true;
}

void CutPolylineUpdate(bool previousInside, bool currentInside, unsigned long index, unsigned int vertexCount,
                       const std::vector<GeoCoordinate>& line, const Rect<GeoCoordinate>& rect,
                       std::vector<std::vector<GeoCoordinate>>& pieces) {
  const unsigned int lastIndex = vertexCount - 1u;
  const bool lastStep = index == lastIndex;
  if (!previousInside && currentInside) {
    pieces.push_back(std::vector<GeoCoordinate>());
    pieces.back().push_back(line[index - 1]);
    if (lastStep) pieces.back().push_back(line[index]);
  } else if (previousInside && currentInside) {
    pieces.back().push_back(line[index - 1]);
    if (lastStep) pieces.back().push_back(line[index]);
  } else if (previousInside && !currentInside) {
    pieces.back().push_back(line[index - 1]);
    pieces.back().push_back(line[index]);
  } else {
    const GeoCoordinate bottomLeft(rect.min.longitude, rect.min.latitude);
    const GeoCoordinate topRight(rect.max.longitude, rect.max.latitude);
    const GeoCoordinate topLeft(rect.min.longitude, rect.max.latitude);
    const GeoCoordinate bottomRight(rect.max.longitude, rect.min.latitude);
    bool joined = IsTwoSegmentJoined(line[index - 1], line[index], bottomLeft, topRight);
    if (!joined) joined = IsTwoSegmentJoined(line[index - 1], line[index], topLeft, bottomRight);
    if (joined) {
      pieces.push_back(std::vector<GeoCoordinate>());
      pieces.back().push_back(line[index - 1]);
      pieces.back().push_back(line[index]);
    }
  }
}

bool IsTwoSegmentJoined(const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c,
                        const GeoCoordinate& d) {
  // A NaN may pass or fail these four, depending on its place; either way the last comparison gives false.
  if (std::min(a.longitude, b.longitude) > std::max(c.longitude, d.longitude)) return false;
  if (std::min(c.longitude, d.longitude) > std::max(a.longitude, b.longitude)) return false;
  if (std::min(a.latitude, b.latitude) > std::max(c.latitude, d.latitude)) return false;
  if (std::min(c.latitude, d.latitude) > std::max(a.latitude, b.latitude)) return false;

  const double d1 = (a.longitude - c.longitude) * (d.latitude - c.latitude) -
                    (d.longitude - c.longitude) * (a.latitude - c.latitude);
  const double d2 = (b.longitude - c.longitude) * (d.latitude - c.latitude) -
                    (d.longitude - c.longitude) * (b.latitude - c.latitude);
  if (d1 * d2 > 0.0) return false;

  const double d3 = (c.longitude - a.longitude) * (b.latitude - a.latitude) -
                    (b.longitude - a.longitude) * (c.latitude - a.latitude);
  const double d4 = (d.longitude - a.longitude) * (b.latitude - a.latitude) -
                    (b.longitude - a.longitude) * (d.latitude - a.latitude);
  return d3 * d4 <= 0.0;
}

}  // namespace reference
