#ifndef VOREL_TOOLS_VOREL_GEOJSON_COORDINATES_H_
#define VOREL_TOOLS_VOREL_GEOJSON_COORDINATES_H_

#include <functional>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/text_source.h"

namespace vorel::tool {

/// Calls `consumer` with the points of each line of a LineString or MultiLineString; other types have none.
/// A line with empty `coordinates` is passed over. `points` is the buffer that is used for all.
/// Heights and further numbers of a position are checked and dropped. Throws `BadInput` unless a line has two positions
/// or more, each with a longitude in [-360, 360] and a latitude in [-90, 90].
void ForEachLine(const Geometry& geometry, std::vector<tarvo::GeoCoordinate>& points,
                 const std::function<void()>& consumer);

/// The same with heights: the third number of a position, in metres, 0 where it is missing. One beyond the range of a
/// float is refused.
void ForEachLine(const Geometry& geometry, std::vector<tarvo::GeoCoordinateZ>& points,
                 const std::function<void()>& consumer);

/// Appends the positions, with heights, of a Point, a MultiPoint or a LineString.
/// @return false for other types, with nothing appended
bool AppendPositions(const Geometry& geometry, std::vector<tarvo::GeoCoordinateZ>& points);

/// Calls `consumer` with each position of a Point or MultiPoint and each vertex of a LineString or MultiLineString, in
/// order. Returns false, without any call, for polygons.
bool ForEachPoint(const Geometry& geometry, const std::function<void(const tarvo::GeoCoordinate&)>& consumer);

/// A ring, closing vertex dropped, longitudes unwrapped.
using Ring = std::vector<tarvo::GeoCoordinate>;

/// Calls `consumer` with the rings of each polygon of a Polygon or MultiPolygon, the outer one first, then the holes.
/// Returns false, without any call, for other types. Refused, as `BadInput`: rings as for `ReadSinglePolygon`.
bool ForEachPolygon(const Geometry& geometry, const std::function<void(std::vector<Ring>&)>& consumer);

/// The outer ring of the one polygon that an input holds: closing vertex dropped, longitudes unwrapped.
/// Refused, as `BadInput`: no polygon, several polygons, a polygon with holes, other geometries, a ring that is not
/// closed or has fewer than three corners, and one that runs around a pole.
Ring ReadSinglePolygon(TextSource& source);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_GEOJSON_COORDINATES_H_
