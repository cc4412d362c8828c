#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cstddef>

#include "base/precondition.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/rectangle.h"

namespace vorel {

using internal::TwoDoubles;
using internal::TwoFlags;
using internal::TwoLanes;
using tarvo::GeoCoordinate;
using tarvo::Rect;

namespace {

/// Twice the signed area of the triangle start, end, point: its sign tells the side of the point. Of doubles, or of
/// lanes with a triangle in each.
template <class Number>
inline Number SideOfLine(Number pointX, Number pointY, Number startX, Number startY, Number endX,
                         Number endY) {
  return (pointX - startX) * (endY - startY) - (endX - startX) * (pointY - startY);
}

inline double SideOfLine(const GeoCoordinate& point, const GeoCoordinate& start, const GeoCoordinate& end) {
  return SideOfLine(point.longitude, point.latitude, start.longitude, start.latitude, end.longitude,
                    end.latitude);
}

/// Whether a segment with both ends outside meets the rectangle: it does when it meets a diagonal, for the diagonals
/// cut the rectangle into four triangles with one side each.
///
/// `IsTwoSegmentJoined` for both diagonals at once, one in each lane. They have the same box, so one rejection serves
/// both: a NaN in it could decide otherwise for one of them, but then, like any NaN, ends in the last comparison.
inline bool MeetsDiagonal(const GeoCoordinate& a, const GeoCoordinate& b, const Rect<GeoCoordinate>& rect) {
  const TwoDoubles start = internal::LoadPoint(a);
  const TwoDoubles end = internal::LoadPoint(b);
  const TwoDoubles corner = internal::LoadPoint(rect.min);
  const TwoDoubles opposite = internal::LoadPoint(rect.max);
  if (internal::InAnyLane(
          TwoLanes::Less(TwoLanes::Larger(opposite, corner), TwoLanes::Smaller(end, start)) |
          TwoLanes::Less(TwoLanes::Larger(end, start), TwoLanes::Smaller(opposite, corner)))) {
    return false;
  }
  const TwoDoubles aX = TwoLanes::All(a.longitude), aY = TwoLanes::All(a.latitude);
  const TwoDoubles bX = TwoLanes::All(b.longitude), bY = TwoLanes::All(b.latitude);
  const TwoDoubles westX = TwoLanes::All(rect.min.longitude), westY{rect.min.latitude, rect.max.latitude};
  const TwoDoubles eastX = TwoLanes::All(rect.max.longitude), eastY{rect.max.latitude, rect.min.latitude};
  const TwoDoubles sideOfA = SideOfLine(aX, aY, westX, westY, eastX, eastY);
  const TwoDoubles sideOfB = SideOfLine(bX, bY, westX, westY, eastX, eastY);
  const TwoDoubles sideOfWest = SideOfLine(westX, westY, aX, aY, bX, bY);
  const TwoDoubles sideOfEast = SideOfLine(eastX, eastY, aX, aY, bX, bY);
  const TwoDoubles zero{};
  const TwoDoubles sidesOfDiagonal = sideOfWest * sideOfEast;
  return internal::InAnyLane(
      ~TwoLanes::Less(zero, sideOfA * sideOfB) &
      (TwoLanes::Less(sidesOfDiagonal, zero) | TwoLanes::Equal(sidesOfDiagonal, zero)));
}

// ---- Cutting by runs ------------------------------------------------------------------------------------------
//
// A line is cut run by run instead of step by step. With a rectangle in order (min <= max in both directions, which
// leaves out NaN), a vertex is outside exactly when it lies strictly beyond one of the four sides, and two vertices
// beyond one and the same side have no segment test to pass: both diagonals span the rectangle from side to side, so
// the bounding-box rejection of either holds, whatever the other coordinates are. Hence a run of vertices beyond one
// side is passed over with one comparison for each, and a run of inside vertices is found first and copied whole.

/// Not so for an inverted rectangle, nor for one with a NaN: those are cut step by step.
inline bool IsOrdered(const Rect<GeoCoordinate>& rect) {
  return rect.min.longitude <= rect.max.longitude && rect.min.latitude <= rect.max.latitude;
}

enum BeyondSide : unsigned { kWest = 1, kEast = 2, kSouth = 4, kNorth = 8 };

/// The sides strictly beyond which the vertex lies; none: it is inside. A NaN lies beyond no side.
inline unsigned SidesBeyond(const GeoCoordinate& vertex, const Rect<GeoCoordinate>& rect) {
  return (vertex.longitude < rect.min.longitude ? kWest : 0u) |
         (vertex.longitude > rect.max.longitude ? kEast : 0u) |
         (vertex.latitude < rect.min.latitude ? kSouth : 0u) |
         (vertex.latitude > rect.max.latitude ? kNorth : 0u);
}

constexpr std::size_t kVerticesPerBlock = 8;

struct IsLess {
  bool operator()(double value, double border) const { return value < border; }
  TwoFlags operator()(TwoDoubles values, TwoDoubles borders) const { return TwoLanes::Less(values, borders); }
};
struct IsGreater {
  bool operator()(double value, double border) const { return value > border; }
  TwoFlags operator()(TwoDoubles values, TwoDoubles borders) const { return TwoLanes::Less(borders, values); }
};

/// Index of the first vertex in [first, last) whose coordinate does not lie beyond `border`, else `last`.
template <class IsBeyond>
std::size_t PassOver(const GeoCoordinate* line, std::size_t first, std::size_t last,
                     double GeoCoordinate::*coordinate, double border, IsBeyond isBeyond) {
  const TwoDoubles borders = TwoLanes::All(border);
  for (; first + kVerticesPerBlock <= last; first += kVerticesPerBlock) {
    const GeoCoordinate* block = line + first;
    TwoFlags beyond = ~TwoFlags{};
    for (std::size_t i = 0; i < kVerticesPerBlock; i += 2) {
      beyond &= isBeyond(TwoDoubles{block[i].*coordinate, block[i + 1].*coordinate}, borders);
    }
    if (!internal::InEachLane(beyond)) break;
  }
  while (first < last && isBeyond(line[first].*coordinate, border)) ++first;
  return first;
}

/// Index of the first vertex in [first, last) that is not beyond `side`, else `last`. Of several sides any one serves.
std::size_t PassOverBeyond(unsigned sides, const GeoCoordinate* line, std::size_t first, std::size_t last,
                           const Rect<GeoCoordinate>& rect) {
  constexpr IsLess isLess;
  constexpr IsGreater isGreater;
  if (sides & kWest)
    return PassOver(line, first, last, &GeoCoordinate::longitude, rect.min.longitude, isLess);
  if (sides & kEast)
    return PassOver(line, first, last, &GeoCoordinate::longitude, rect.max.longitude, isGreater);
  if (sides & kSouth) return PassOver(line, first, last, &GeoCoordinate::latitude, rect.min.latitude, isLess);
  return PassOver(line, first, last, &GeoCoordinate::latitude, rect.max.latitude, isGreater);
}

/// Index of the first vertex in [first, last) that is outside, else `last`.
std::size_t EndOfInsideRun(const GeoCoordinate* line, std::size_t first, std::size_t last,
                           const Rect<GeoCoordinate>& rect) {
  const TwoDoubles min = internal::LoadPoint(rect.min);
  const TwoDoubles max = internal::LoadPoint(rect.max);
  for (; first + kVerticesPerBlock <= last; first += kVerticesPerBlock) {
    TwoFlags outside{};
    for (std::size_t i = 0; i < kVerticesPerBlock; ++i) {
      const TwoDoubles vertex = internal::LoadPoint(line[first + i]);
      outside |= TwoLanes::Less(vertex, min) | TwoLanes::Less(max, vertex);
    }
    if (internal::InAnyLane(outside)) break;
  }
  while (first < last && internal::Contains(rect, line[first])) ++first;
  return first;
}

void CutByRuns(const GeoCoordinate* line, std::size_t vertexCount, const Rect<GeoCoordinate>& rect,
               std::vector<std::vector<GeoCoordinate>>& pieces) {
  std::size_t i = 0;
  unsigned sides = SidesBeyond(line[0], rect);
  for (;;) {
    if (sides == 0) {
      // Inside. The piece takes the outside neighbours of the run along; deliberate: a lone vertex gives an empty one.
      const std::size_t end = EndOfInsideRun(line, i + 1, vertexCount, rect);
      if (vertexCount == 1) {
        pieces.emplace_back();
      } else {
        pieces.emplace_back(line + (i > 0 ? i - 1 : 0), line + std::min(end + 1, vertexCount));
      }
      if (end == vertexCount) return;
      i = end;
      sides = SidesBeyond(line[i], rect);
    }
    const std::size_t next = i + 1;
    if (next == vertexCount) return;
    const unsigned nextSides = SidesBeyond(line[next], rect);
    if ((sides & nextSides) != 0) {
      i = PassOverBeyond(sides & nextSides, line, next + 1, vertexCount, rect) - 1;
      sides = SidesBeyond(line[i], rect);
    } else {
      if (nextSides != 0 && MeetsDiagonal(line[i], line[next], rect)) {
        pieces.emplace_back(line + i, line + next + 1);
      }
      i = next;
      sides = nextSides;
    }
  }
}

}  // namespace

bool VorelGeometryAlgorithm::CutPolyline(const std::vector<GeoCoordinate>& line,
                                         const Rect<GeoCoordinate>& rect,
                                         std::vector<std::vector<GeoCoordinate>>& pieces) {
  const unsigned int vertexCount = static_cast<unsigned int>(line.size());
  if (vertexCount == 0) return false;
  if (IsOrdered(rect)) {
    CutByRuns(line.data(), vertexCount, rect, pieces);
    return true;
  }
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
