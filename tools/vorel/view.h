#ifndef VOREL_TOOLS_VOREL_VIEW_H_
#define VOREL_TOOLS_VOREL_VIEW_H_

#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"

// Longitudes are circular, the library's planar operations are not. The tool therefore lays everything out on one
// strip of continuous longitudes around the view: the view never wraps (its east end may lie beyond 180), each line
// takes every step the short way round, and a line is shifted by whole turns to where the view is.

namespace vorel::tool {

using GeoRect = tarvo::Rect<tarvo::GeoCoordinate>;

/// Reads "W,S,E,N", degrees. W > E means a view across the antimeridian.
///
/// @param text    longitudes in [-360, 360], latitudes in [-90, 90]
/// @param option  how the user calls it; used in messages
/// @return `min` and `max` with min.longitude in [-180, 180) and max.longitude in [min.longitude, +360 beyond]
/// Throws `BadInput` for anything else, S > N included.
GeoRect ParseView(const std::string& text, const std::string& option);

/// "W,S,E,N" as `ParseView` reads it.
std::string ViewText(const GeoRect& view);

/// Shifts the points of a line or ring by whole turns so that no step is longer than 180 degrees of longitude.
/// The first point stays; so does, to the bit, every line without a step across the antimeridian. A step of exactly
/// 180 degrees stays as it is.
void UnwrapLongitudes(std::vector<tarvo::GeoCoordinate>& points);
void UnwrapLongitudes(std::vector<tarvo::GeoCoordinateZ>& points);

/// The rectangle of one or more points.
GeoRect BoundsOf(const std::vector<tarvo::GeoCoordinate>& points);

/// The whole turns, in ascending order, by which something with the bounds `bounds` can be shifted so that it shares
/// a meridian with `view` (which may be any rectangle of the strip). Usually one or none.
std::vector<int> TurnsIntoView(const GeoRect& bounds, const GeoRect& view);

/// The same turns for a line (longitudes unwrapped, not empty), in the direction in which it ends: what lies farther
/// east comes into the view with a smaller shift.
std::vector<int> TurnsAlongLine(const std::vector<tarvo::GeoCoordinate>& line, const GeoRect& view);

/// `points` shifted by whole turns. Nothing changes, to the bit, for 0 turns.
void ShiftByTurns(std::vector<tarvo::GeoCoordinate>& points, int turns);

/// `longitude` folded into [-180, 180] by whole turns; unchanged when it is there already.
double FoldLongitude(double longitude);

/// Collects the bounds of lines, each laid next to those before it.
class BoundsCollector {
 public:
  /// @param unwrappedPoints  one line, after `UnwrapLongitudes`; not empty
  void Add(const std::vector<tarvo::GeoCoordinate>& unwrappedPoints);

  bool empty() const { return empty_; }

  /// The rectangle of everything added; of something wider than the earth 360 degrees about its centre.
  GeoRect Whole() const;

  /// The rectangle of everything added, halved about its centre; width at most 360 degrees.
  GeoRect HalvedAboutCentre() const;

 private:
  bool empty_ = true;
  GeoRect bounds_;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_VIEW_H_
