#ifndef VOREL_TOOLS_VOREL_MAP_CLIPPING_H_
#define VOREL_TOOLS_VOREL_MAP_CLIPPING_H_

#include <string>
#include <vector>

#include "tools/vorel/map_projection.h"

namespace vorel::tool {

/// A rectangle on the picture, in pixels.
struct PixelBox {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;
};

/// The parts of a line that lie in `box`, as SVG path data; empty when there are none. Vertices closer than a
/// fraction of a pixel to the one before are left out, the ends never.
std::string ClippedLinePath(const std::vector<Pixel>& line, const PixelBox& box);

/// The part of a ring (not closed) that lies in `box`, as SVG path data; empty when there is none.
std::string ClippedRingPath(const std::vector<Pixel>& ring, const PixelBox& box);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_MAP_CLIPPING_H_
