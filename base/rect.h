#ifndef VOREL_BASE_RECT_H_
#define VOREL_BASE_RECT_H_

namespace tarvo {

/// Axis-aligned rectangle: `min` holds the smallest longitude and latitude, `max` the largest, both in degrees.
/// Never normalised: an inverted rectangle (min greater than max) contains nothing.
template <class Coordinate>
struct Rect {
  Coordinate min;  ///< the south-west corner
  Coordinate max;  ///< the north-east corner
};

}  // namespace tarvo

#endif  // VOREL_BASE_RECT_H_
