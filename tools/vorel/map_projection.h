#ifndef VOREL_TOOLS_VOREL_MAP_PROJECTION_H_
#define VOREL_TOOLS_VOREL_MAP_PROJECTION_H_

#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// A place on the picture: x to the right, y down, from the map's upper left corner.
struct Pixel {
  double x = 0.0;
  double y = 0.0;
};

/// A mark at the map's frame.
struct Tick {
  double pixel = 0.0;  ///< from the left edge for a longitude, from the upper edge for a latitude
  std::string label;   ///< such as 7.42°E
};

/// How the map is laid on the picture: equirectangular about the view's centre, longitudes scaled by the cosine of
/// its latitude, north up. The map is the view with a margin on all sides; where the view is a point, or far longer
/// than wide, the map is widened to a size and shape that can be read.
class MapProjection {
 public:
  explicit MapProjection(const GeoRect& view);

  Pixel ToPixel(const tarvo::GeoCoordinate& position) const;

  double width() const { return width_; }    ///< pixels
  double height() const { return height_; }  ///< pixels
  const GeoRect& view() const { return view_; }

  /// The part of the earth that the map shows; latitudes may go beyond 90.
  GeoRect Extent() const;

  /// Metres per pixel at the centre, from west to east.
  double metresPerPixel() const { return metresPerPixel_; }

  std::vector<Tick> LongitudeTicks() const;
  std::vector<Tick> LatitudeTicks() const;

 private:
  GeoRect view_;
  tarvo::GeoCoordinate centre_;
  double longitudeScale_ = 1.0;  // cosine of the centre's latitude
  double pixelsPerDegree_ = 1.0;
  double width_ = 0.0;
  double height_ = 0.0;
  double metresPerPixel_ = 1.0;
};

/// The greatest of 1, 2 and 5 times a power of ten that is not greater than `limit` (which is greater than 0).
double RoundNumberUpTo(double limit);

/// "250 m", "1 km", "0.5 m": a length with its unit, for a round number of metres.
std::string LengthText(double metres);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_MAP_PROJECTION_H_
