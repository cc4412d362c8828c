#include "tools/vorel/map_clipping.h"

#include <cmath>
#include <cstddef>
#include <optional>

#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

constexpr double kSmallestStepPixels = 0.3;
constexpr int kPixelDecimals = 2;

void AppendPoint(std::string& path, char command, const Pixel& point) {
  path += command;
  path += FixedNumber(point.x, kPixelDecimals);
  path += ' ';
  path += FixedNumber(point.y, kPixelDecimals);
}

struct ClippedSegment {
  Pixel from;
  Pixel to;
  bool cutAtStart = false;
  bool cutAtEnd = false;
};

/// The part of a segment in `box`, by the parametric method of Y.-D. Liang and B. A. Barsky (ACM Transactions on
/// Graphics 3, 1984).
std::optional<ClippedSegment> ClipSegment(const Pixel& from, const Pixel& to, const PixelBox& box) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  double first = 0.0;
  double last = 1.0;
  const auto cut = [&](double towards, double room) {
    if (towards == 0.0) return room >= 0.0;
    const double ratio = room / towards;
    if (towards < 0.0) {
      if (ratio > last) return false;
      if (ratio > first) first = ratio;
    } else {
      if (ratio < first) return false;
      if (ratio < last) last = ratio;
    }
    return true;
  };
  if (!cut(-dx, from.x - box.left) || !cut(dx, box.right - from.x) || !cut(-dy, from.y - box.top) ||
      !cut(dy, box.bottom - from.y)) {
    return std::nullopt;
  }
  ClippedSegment clipped{from, to, first > 0.0, last < 1.0};
  if (clipped.cutAtStart) clipped.from = {from.x + first * dx, from.y + first * dy};
  if (clipped.cutAtEnd) clipped.to = {from.x + last * dx, from.y + last * dy};
  return clipped;
}

/// The part of a ring on the inner side of one edge of a box: one step of the method of I. E. Sutherland and
/// G. W. Hodgman (Communications of the ACM 17, 1974).
template <class Room>
std::vector<Pixel> ClipRingAtEdge(const std::vector<Pixel>& ring, const Room& roomOf) {
  std::vector<Pixel> kept;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Pixel& from = ring[i];
    const Pixel& to = ring[(i + 1) % ring.size()];
    const double roomFrom = roomOf(from);
    const double roomTo = roomOf(to);
    if (roomFrom >= 0.0) kept.push_back(from);
    if ((roomFrom >= 0.0) != (roomTo >= 0.0)) {
      const double ratio = roomFrom / (roomFrom - roomTo);
      kept.push_back({from.x + ratio * (to.x - from.x), from.y + ratio * (to.y - from.y)});
    }
  }
  return kept;
}

}  // namespace

std::string ClippedLinePath(const std::vector<Pixel>& line, const PixelBox& box) {
  std::string path;
  Pixel drawnTo;
  std::optional<Pixel> leftOut;  // the latest vertex, when it was too near to be drawn
  bool connected = false;
  const auto drawLeftOut = [&] {
    if (leftOut) AppendPoint(path, 'L', *leftOut);
    leftOut.reset();
  };
  for (std::size_t i = 1; i < line.size(); ++i) {
    const std::optional<ClippedSegment> segment = ClipSegment(line[i - 1], line[i], box);
    if (!segment) {
      drawLeftOut();
      connected = false;
      continue;
    }
    if (!connected || segment->cutAtStart) {
      drawLeftOut();
      AppendPoint(path, 'M', segment->from);
      drawnTo = segment->from;
    }
    if (!segment->cutAtEnd &&
        std::hypot(segment->to.x - drawnTo.x, segment->to.y - drawnTo.y) < kSmallestStepPixels) {
      leftOut = segment->to;
    } else {
      leftOut.reset();
      AppendPoint(path, 'L', segment->to);
      drawnTo = segment->to;
    }
    connected = !segment->cutAtEnd;
  }
  drawLeftOut();
  return path;
}

std::string ClippedRingPath(const std::vector<Pixel>& ring, const PixelBox& box) {
  std::vector<Pixel> inside = ClipRingAtEdge(ring, [&](const Pixel& p) { return p.x - box.left; });
  inside = ClipRingAtEdge(inside, [&](const Pixel& p) { return box.right - p.x; });
  inside = ClipRingAtEdge(inside, [&](const Pixel& p) { return p.y - box.top; });
  inside = ClipRingAtEdge(inside, [&](const Pixel& p) { return box.bottom - p.y; });
  std::string path;
  for (const Pixel& point : inside) AppendPoint(path, path.empty() ? 'M' : 'L', point);
  if (!path.empty()) path += 'Z';
  return path;
}

}  // namespace vorel::tool
