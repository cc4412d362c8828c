#ifndef VOREL_MAP_UTILS_VOREL_GEOMETRY_ALGORITHM_H_
#define VOREL_MAP_UTILS_VOREL_GEOMETRY_ALGORITHM_H_

#include <string>
#include <type_traits>
#include <vector>

#include "base/boundary_data.h"
#include "base/coordinate_util.h"
#include "base/export.h"
#include "base/geo_coordinate.h"
#include "base/geo_utils.h"
#include "base/map_vector.h"
#include "base/rect.h"
#include "base/route_pos.h"

namespace vorel {

/// Plain 2-D vector.
template <class T>
struct Vector2 {
  T x{};  ///< first component
  T y{};  ///< second component
};

/// Where the given guide line of a lane arrow lies across the arrow. Any other value counts as the right edge.
enum class ArrowType : int {
  kLineAsLeftEdge = 0,
  kLineAsCenter = 1,
  kLineAsRightEdge = 2,
};

/// Geometry of map and navigation clients: static, stateless functions over points, lines and rectangles in
/// degrees of longitude and latitude.
///
/// What holds for every function unless its comment says otherwise:
/// - Coordinates are degrees; every distance is metres, measured by `GeoCoordinate::DistanceTo`; angles are degrees;
///   headings are measured from north, clockwise.
/// - "Planar" means: computed on the plane of degrees as it is, with no scaling by the cosine of the latitude.
/// - A line is a vector of points; segment i joins point i and point i + 1. Lines are not unwrapped: planar functions
///   see a step across the antimeridian as a long way round.
/// - Argument checks are written so that a NaN passes them; what comes of it is said at the function.
/// - Any thread may call any function at any time, provided nobody changes the arguments meanwhile.
///
/// Each comment ends with labelled lines, its contract, which docs/contracts.md gathers in one table. A line that is
/// missing means:
/// - Ends: no range takes part and nothing is clamped.
/// - Output: the return value alone.
/// - Throws: nothing but what a growing container throws.
/// - Unchecked: nothing; there is an answer to every argument.
/// - Aliasing: arguments may be the same object.
/// - Allocates: nothing.
class VOREL_EXPORT VorelGeometryAlgorithm {
 public:
  VorelGeometryAlgorithm() = delete;

  // ---- Angles and headings ------------------------------------------------------------------------------------

  /// Turning angle at `b` on the way from `a` over `b` to `c`: 0 straight on, 90 a right angle, 180 back. Planar; left
  /// and right turns give the same value.
  ///
  ///           c
  ///          /
  ///     a---b - - -    the angle between the dashes and b-c
  ///
  /// @param a, b, c  degrees
  /// @return degrees in [0, 180]; 0 when either segment has no length
  ///
  /// NaN: NaN; also (deliberate) where rounding pushes the cosine beyond 1: for about one in six exactly straight or
  /// reversed turns.
  /// Cost: one square root, one arc cosine.
  static float GetAngle(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                        const tarvo::GeoCoordinate& c);

  /// Bearing: the heading on which the great circle from `from` to `to` starts.
  ///
  /// @param from, to  degrees
  /// @return degrees from north, clockwise, in [-180, 180]: west is negative; 0 for equal points
  ///
  /// Ends: folded into [-180, 180], both included.
  /// NaN: NaN, also for infinite input.
  /// Cost: six sines and cosines, one arc tangent.
  /// Formula: spherical trigonometry, four-parts formula.
  static double GetAngle(const tarvo::GeoCoordinate& from, const tarvo::GeoCoordinate& to);

  /// Heading from point 1 to point 2 in [0, 360], decided on a grid of one hundredth of an arc-second (3 dm).
  /// Points on one grid meridian give exactly 0 or 180; points in one grid cell give 0.
  ///
  /// Deliberate: the grid rounds by adding 0.5 and truncating toward zero, which is lopsided for negative degrees; due
  /// west gives a value near 270; exactly 360 can come back.
  ///
  /// @param lat1, lat2  degrees: latitudes; note that the latitude comes first
  /// @param lon1, lon2  degrees: longitudes; not folded, so a step across the antimeridian counts the long way round
  /// @return degrees from north, clockwise; 0 also when the formula gives NaN because rounding pushes a sine or cosine
  ///         beyond 1, so that a heading close to due east or west, or one to an antipode, may come back as 0
  ///
  /// Ends: folded into [0, 360], both included; the grid saturates beyond 5965 degrees.
  /// NaN: 0; a NaN coordinate counts as 0 on the grid, so that points on one grid meridian may also give 180.
  /// Cost: up to eight calls of the math library.
  /// Formula: spherical law of cosines, then law of sines.
  static double GetYaw(double lat1, double lon1, double lat2, double lon2);

  /// `to - from`, corrected once by a whole turn into [-180, 180]. -180 and 180 both stay; see `AngleDiff`.
  ///
  /// @param from, to  degrees: headings, meant to be in [0, 360): a difference beyond 540 stays beyond 180 (deliberate:
  ///                  one correction only)
  /// @return degrees
  ///
  /// Ends: one correction into [-180, 180], both included.
  /// NaN: NaN.
  /// Cost: two comparisons.
  static float CalcAziDiff(float from, float to);

  /// `to - from`, folded into [-180, 180): a difference of 180 gives -180 (deliberate; `CalcAziDiff` keeps +180).
  ///
  /// @param from, to  degrees, any finite value
  /// @return degrees
  ///
  /// Ends: folded into [-180, 180): 180 excluded.
  /// NaN: NaN, also where the difference is infinite.
  /// Cost: one remainder.
  static float AngleDiff(float from, float to);

  /// Folds an angle into (-180, 180] by steps of 360 in float.
  ///
  /// @param angle  degrees
  /// @return degrees
  ///
  /// Ends: folded into (-180, 180]: -180 excluded.
  /// NaN: NaN.
  /// Unchecked: |`angle`| <= 8589934592 (2^33): beyond it, and for infinities, the loop never ends.
  /// Cost: |`angle`| / 360 steps; 2^33 takes some 0.1 s.
  static float NormalizeAngle180(float angle);

  /// Folds an angle into [0, 360) by steps of 360 in float. Deliberate: a negative angle closer to 0 than 1.5e-5 gives
  /// 360 itself, to which the sum rounds.
  ///
  /// @param angle  degrees
  /// @return degrees
  ///
  /// Ends: folded into [0, 360): 360 excluded, but for the rounding above.
  /// NaN: NaN.
  /// Unchecked: |`angle`| <= 8589934592 (2^33): beyond it, and for infinities, the loop never ends.
  /// Cost: |`angle`| / 360 steps; 2^33 takes some 0.1 s.
  static float NormalizeAngle360(float angle);

  /// Candidates for the third side of a triangle of which two sides and the angle facing one of them are known.
  ///
  ///            *
  ///           / \            angle: between sideB and the unknown side c
  ///     sideB/   \sideA
  ///         /_____\          c: none, one or two lengths fit
  ///       angle  c
  ///
  /// @param sideA, sideB  any unit, the same for both
  /// @param angle         degrees, between `sideB` and the unknown side
  /// @return unit of the sides: the lengths that make a real triangle, the longer candidate first; empty when none
  ///         does. Deliberate: where both candidates coincide the length comes twice
  ///
  /// Ends: strictly within the triangle inequality: a flat triangle has no length.
  /// NaN: empty.
  /// Allocates: the result, when it is not empty.
  /// Cost: one sine, one cosine, one square root.
  /// Formula: law of cosines.
  static std::vector<double> GetLength3OfTriangle(double sideA, double sideB, double angle);

  /// Distance between (p.x, p.y) and (q.x, q.y): what `CoordinateUtil::DistanceOfGcj02Pos` gives. Deliberate: `z` takes
  /// no part.
  ///
  /// @param p, q  degrees: x longitude, y latitude
  /// @return metres
  ///
  /// NaN: NaN.
  /// Cost: one distance.
  static double Distance(tarvo::MapVector3d p, tarvo::MapVector3d q);

  /// Ground length that one pixel spans at display level 20. A constant.
  ///
  /// @return metres
  ///
  /// NaN: no input.
  /// Cost: none.
  static double Get20PixelDistanceOnePixel();

  // ---- Points and rectangles ----------------------------------------------------------------------------------

  /// Smallest rectangle around the first `count` of `points`.
  ///
  /// @param points  degrees; may be null
  /// @param count   number of points
  /// @param bound   degrees
  /// @return false for null or no points
  ///
  /// Ends: the points 0 to `count` - 1, both included.
  /// Output: `bound` overwritten; untouched when false is returned.
  /// NaN: NaN where the first point has it (deliberate); one of a later point is passed over.
  /// Unchecked: `points` is null or holds `count` points.
  /// Aliasing: `bound` may lie in `points`.
  /// Cost: four comparisons per point.
  static bool GetBound(const tarvo::GeoCoordinate* points, unsigned int count,
                       tarvo::Rect<tarvo::GeoCoordinate>& bound);

  /// Refused at compile time: an array of points with height has another stride.
  template <class Point, std::enable_if_t<std::is_base_of<tarvo::GeoCoordinateZ, Point>::value, int> = 0>
  static bool GetBound(const Point* points, unsigned int count,
                       tarvo::Rect<tarvo::GeoCoordinate>& bound) = delete;

  /// Whether `point` lies in `rect`.
  ///
  /// @param rect   degrees; an inverted one contains nothing
  /// @param point  degrees
  ///
  /// Ends: border included.
  /// NaN: true: a NaN never counts as outside.
  /// Cost: up to four comparisons.
  static bool IsRectContainsPoint(const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                                  const tarvo::GeoCoordinate& point);

  /// Whether two rectangles share a point.
  ///
  /// @param first, second  degrees
  ///
  /// Ends: borders included: touching is sharing.
  /// NaN: true: a NaN border never separates.
  /// Cost: up to four comparisons.
  static bool IsRectIntersectsRect(const tarvo::Rect<tarvo::GeoCoordinate>& first,
                                   const tarvo::Rect<tarvo::GeoCoordinate>& second);

  /// Coarse nearness, to be asked before an exact distance: whether `other` lies in a square about `point` whose half
  /// width is 0.0001, 0.001, 0.01 or 0.1 degree, for a `distance` below 11, 111, 1113 m or beyond.
  ///
  /// @param point     degrees; the centre of the square
  /// @param distance  metres; above 12000 the answer is always false (deliberate)
  /// @param other     degrees
  ///
  /// The square does not hold every point within `distance`: 0.01 degree spans 1106 (equator) to 1117 m (pole) due north,
  /// and due east 1113 m at the equator but 558 m at latitude 60. So a point within the radius may be refused: due east
  /// away from the equator, due north for a distance just below a threshold (from 1106 m in this example) or near 12000 m.
  ///
  /// Ends: border of the square included.
  /// NaN: true: a NaN coordinate counts as near, a NaN `distance` as below 11.
  /// Cost: up to eight comparisons.
  static bool IsPointNearOtherOne(const tarvo::GeoCoordinate& point, float distance,
                                  const tarvo::GeoCoordinate& other);

  /// The point at `ratio` of the way from `start` to `end`, planar.
  ///
  /// @param start, end  degrees
  /// @param ratio       fraction of the way
  /// @return degrees
  ///
  /// Deliberate: ratio 1 gives start + (end - start), which may differ from `end` in the last bit.
  ///
  /// Ends: `ratio` clamped to [0, 1].
  /// NaN: NaN: a NaN `ratio` is not clamped.
  /// Cost: a few products.
  static tarvo::GeoCoordinate GetInsertPointFromSegment(const tarvo::GeoCoordinate& start,
                                                        const tarvo::GeoCoordinate& end, float ratio);

  /// The same for points with a height in metres, which is interpolated alike and rounded to float.
  static tarvo::GeoCoordinateZ GetInsertPointFromSegment(const tarvo::GeoCoordinateZ& start,
                                                         const tarvo::GeoCoordinateZ& end, float ratio);

  /// The point `distance` metres from `start` on the straight line (planar) through `start` and `end`.
  ///
  /// @param start, end  degrees
  /// @param distance    metres; negative lies before `start`, beyond the length past `end`
  /// @return degrees; NaN when `start` equals `end`; infinite or NaN when the two differ but name one place (a whole turn
  ///         of longitude, a pole)
  ///
  /// Ends: deliberately not clamped.
  /// NaN: NaN.
  /// Cost: one distance.
  static tarvo::GeoCoordinate GetLinePoint(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                           double distance);

  /// Foot of the perpendicular from `point` on the infinite line through `start` and `end`, planar.
  ///
  ///          point
  ///            :
  ///     start--+--end      +: the foot; it may lie before `start` or past `end`
  ///
  /// @param point, start, end  degrees
  /// @return degrees; `start` for a segment shorter than 3.2e-7 degrees
  ///
  /// Ends: not clamped to the segment.
  /// NaN: NaN; for a short segment `start`, whatever `point` is.
  /// Cost: a few products, one division.
  static tarvo::GeoCoordinate GetFootPoint(const tarvo::GeoCoordinate& point,
                                           const tarvo::GeoCoordinate& start,
                                           const tarvo::GeoCoordinate& end);

  /// Side of the directed line from `start` to `end` on which `point` lies, planar.
  ///
  /// @param point, start, end  degrees
  /// @return square degrees: twice the signed area of the triangle; positive on the left (north up), negative on the
  ///         right, 0 on the line
  ///
  /// NaN: NaN.
  /// Cost: two products.
  static double GetPositionOfPointToLine(const tarvo::GeoCoordinate& point, const tarvo::GeoCoordinate& start,
                                         const tarvo::GeoCoordinate& end);

  /// The point reached from a start after `distance` metres on an initial heading, on the WGS-84 ellipsoid.
  ///
  /// @param longitude     degrees: the start; only added in the end
  /// @param latitude      degrees in [-90, 90]: the start; 100 is taken for -80, which has the same tangent
  /// @param azimuth       degrees: the initial heading
  /// @param distance      metres; negative: backwards. Deliberate: where the arc on the auxiliary sphere is one whole turn
  ///                      to 1e-12 radians, the iteration is left out and the result lies on the equator
  /// @param outLongitude  degrees, not folded into [-180, 180]; 200 marks a result that is NaN
  /// @param outLatitude   degrees; 200 likewise, independently of the longitude
  ///
  /// Error against an exact geodesic, measured: 7 micrometres up to 100 km, 0.15 mm up to 20000 km.
  ///
  /// Ends: longitude not folded.
  /// Output: `outLongitude` and `outLatitude` overwritten.
  /// NaN: 200 in each output whose result is NaN: in the longitude for any NaN argument and an infinite latitude,
  /// azimuth or distance; in the latitude for a NaN or infinite latitude or azimuth and an infinite distance.
  /// Deliberate: a NaN distance gives latitude 0. An infinite longitude stays infinite.
  /// Unchecked: |`distance`| <= 5e10 (1250 times round the earth): from 5.2e10 on, where neighbouring arcs differ by
  /// more than its threshold, the iteration may never settle.
  /// Aliasing: the outputs may be the variables passed as inputs.
  /// Cost: some 20 calls of the math library.
  /// Formula: T. Vincenty, Direct and inverse solutions of geodesics on the ellipsoid with application of nested
  /// equations, Survey Review XXIII 176 (1975), equations 1-11.
  static void ComputerThatLonLat(double longitude, double latitude, double azimuth, double distance,
                                 double& outLongitude, double& outLatitude);

  /// `point` turned about `center` by `angle`, clockwise on a north-up map. Local: meant for some kilometres about the
  /// centre, whose distance and bearing are laid off on a sphere.
  ///
  /// @param point, center  degrees
  /// @param angle          degrees; folded by steps of 360
  /// @return degrees; by 0 degrees: the point itself up to the difference of sphere and ellipsoid (0.6 % of the radius);
  ///         about a pole the longitude has no meaning
  ///
  /// NaN: NaN.
  /// Unchecked: |`angle`| <= 3.6e9: beyond, the steps take longer in proportion, and never end beyond 2^62 and for
  /// infinities.
  /// Cost: one bearing, one distance, three sines and cosines, |`angle`| / 360 steps; 3.6e9 takes some 0.05 s.
  static tarvo::GeoCoordinate RotatePoint(const tarvo::GeoCoordinate& point,
                                          const tarvo::GeoCoordinate& center, double angle);

  /// Signed angle at `from` between the directions to `to` and to a point Q that fixes a point beside a line: Q lies on
  /// the line's first segment (from `line[1]` toward `line[0]`) or its third (from `line[2]` toward `line[3]`), where a
  /// triangle with the sides |from to| and `length` and the given angle closes.
  ///
  /// @param line             degrees
  /// @param from, to         degrees
  /// @param angle            degrees, facing the side |from to| (see `GetLength3OfTriangle`)
  /// @param length           metres
  /// @param useFirstSegment  flag: true for the first segment, a result >= 0 wanted; false: for the third, <= 0 wanted
  /// @return degrees in (-180, 180]: the first candidate with the wanted sign; 0 when there is none
  ///
  /// Ends: folded into (-180, 180]: -180 excluded.
  /// NaN: 0.
  /// Unchecked: `line` has two points for the first segment, four for the third.
  /// Allocates: the candidates, within.
  /// Cost: one bearing and distance, and per candidate (at most two) one more of each.
  static float GetFixAngleForSidePoint(const std::vector<tarvo::GeoCoordinate>& line,
                                       const tarvo::GeoCoordinate& from, const tarvo::GeoCoordinate& to,
                                       double angle, double length, bool useFirstSegment);

  // ---- Lengths and along-route distances ----------------------------------------------------------------------
  //
  // A position on a route is a vertex index and an offset: metres from that vertex along the segment that starts there.
  // A cumulative table holds for each vertex the metres from the route's first vertex to it. Sums are taken in order of
  // the vertices.
  //
  //     0-----1---*-2-----3      *: index 1, offset 4 m (segments of 6 m); table: 0 6 12 18

  /// Length of the part of a line from vertex `from` to vertex `to - 1`. See `GetDistanceByVector` for an inclusive end.
  ///
  /// @param points  degrees; may be null
  /// @param count   number of points
  /// @param from    index of the first vertex; any value
  /// @param to      index after the last vertex; 4294967295 means `count`
  /// @return metres; 0 for null, for fewer than 2 points and for an empty part (so also for `to` = `from` + 1)
  ///
  /// Ends: `from` inclusive, `to` exclusive and clamped to `count`.
  /// NaN: NaN where the distance of a segment of the part is.
  /// Unchecked: `points` is null or holds `count` points.
  /// Cost: one distance per segment of the part.
  static double GetDistance(const tarvo::GeoCoordinate* points, unsigned int count, unsigned int from,
                            unsigned int to);

  /// Refused at compile time: an array of points with height has another stride.
  template <class Point, std::enable_if_t<std::is_base_of<tarvo::GeoCoordinateZ, Point>::value, int> = 0>
  static double GetDistance(const Point* points, unsigned int count, unsigned int from,
                            unsigned int to) = delete;

  /// Length of the part of a line from vertex `from` to vertex `to`. See `GetDistance` for an exclusive end.
  ///
  /// @param line  degrees; heights take no part; an empty line gives 0
  /// @param from  index of the first vertex; any value
  /// @param to    index of the last vertex
  /// @return metres; 0 for an empty part
  ///
  /// Ends: `from` and `to` inclusive, `to` clamped to the last vertex.
  /// NaN: NaN where the distance of a segment of the part is.
  /// Cost: one distance per segment of the part.
  static double GetDistanceByVector(const std::vector<tarvo::GeoCoordinateZ>& line, unsigned int from,
                                    unsigned int to);

  /// The same for a line without heights.
  static double GetDistanceByVector(const std::vector<tarvo::GeoCoordinate>& line, unsigned int from,
                                    unsigned int to);

  /// Length of the part of a line from vertex `from` to vertex `to`, and the running sums on the way. For a
  /// cumulative table of a whole line put a 0 in front and measure from 0.
  ///
  ///     0-----1-----2-----3      from 1 to 3 appends: metres 1..2, metres 1..3
  ///
  /// @param line   degrees; copied on every call (deliberate: the signature is part of the contract)
  /// @param from   index of the first vertex
  /// @param to     index of the last vertex
  /// @param cache  metres: `to - from` sums, from `from` to each later vertex. Room is reserved for `to - from` elements
  ///               in all (deliberate: what it held before is not added)
  /// @return metres, the last sum; 0 when `to` <= `from`
  ///
  /// Ends: `from` and `to` inclusive, not clamped.
  /// Output: `cache` appended; untouched when `to` <= `from`.
  /// NaN: NaN in the sums from the first NaN distance on.
  /// Unchecked: `to` < line.size().
  /// Aliasing: nothing can be shared: `line` is a copy.
  /// Allocates: the copy of `line`; room in `cache`, once.
  /// Cost: the copy, one distance per segment of the part.
  static double GetDistanceAndCache(std::vector<tarvo::GeoCoordinate> line, unsigned int from,
                                    unsigned int to, std::vector<double>& cache);

  /// Index of the last element that is not greater than `target`: in a cumulative table, the vertex that starts the
  /// segment in which the distance `target` lies. Of equal elements the last one.
  ///
  /// @param values  any unit, ascending; copied on every call (deliberate: the signature is part of the contract)
  /// @param target  unit of the values
  /// @return index in `values`; deliberate: 0 also when the first element is already greater; -2 for no values
  ///
  /// Ends: an element equal to `target` counts.
  /// NaN: 0 for a NaN `target`; a NaN element counts as greater, but as the first one not.
  /// Unchecked: `values` ascends (otherwise some index of it comes back) and has at most 2147483647 elements.
  /// Allocates: the copy of `values`.
  /// Cost: the copy, and one comparison per halving.
  static int FindFirstSmallerIndex(std::vector<double> values, double target);

  /// Whether position A comes before position B on a route, or is the same.
  ///
  /// @param indexA, indexB    indices of vertices; any values, only compared
  /// @param offsetA, offsetB  metres from those vertices, compared when the indices are equal
  ///
  /// Ends: the same position counts as in front.
  /// NaN: false for equal indices.
  /// Cost: up to three comparisons.
  static bool IsPointAInFrontOfPointB(int indexA, double offsetA, int indexB, double offsetB);

  /// Metres along a line from position A to position B behind it.
  ///
  ///     0-----1--A--2-----3-B---4      from A to B
  ///
  /// @param line              degrees; heights take no part
  /// @param indexA, indexB    indices of vertices
  /// @param offsetA           metres; a negative one lengthens the way
  /// @param offsetB           metres
  /// @return metres; 0 when B lies before A by index, or on the same segment unless `offsetB` > `offsetA`; may be negative
  ///         for a negative `offsetB`
  ///
  /// Ends: `offsetA` clamped to the length of its segment when the indices differ; deliberately not `offsetB`, no
  /// index.
  /// Output: `line` not modified.
  /// NaN: NaN; but a NaN `offsetA` counts as the length of its segment, and for equal indices a NaN offset gives 0.
  /// Unchecked: when `indexA` < `indexB`: `indexA` >= 0 and `indexB` < line.size().
  /// Cost: one distance per segment touched, that of B not included.
  static double DistancePointAAndPointB(std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                                        int indexB, double offsetB);

  /// The same from a cumulative table, without any distance.
  ///
  /// @param cumulative        metres from the route's start, per vertex
  /// @param indexA            index of a vertex
  /// @param indexB            index of a vertex; one beyond the table moves B to the last vertex, and `offsetB` is ignored
  /// @param offsetA, offsetB  metres
  /// @return metres; 0 as in the form on the line; negative when `offsetA` reaches beyond B
  ///
  /// Ends: `indexB` clamped to the last vertex; deliberately no offset, unlike the form on the line.
  /// NaN: NaN; for equal indices a NaN offset gives 0.
  /// Unchecked: when `indexA` < `indexB`: 0 <= `indexA` < cumulative.size().
  /// Cost: no distance, two entries read.
  static double DistancePointAAndPointB(const std::vector<double>& cumulative, int indexA, double offsetA,
                                        int indexB, double offsetB);

  /// Metres along a line from position A to position B behind it, with its indices checked. Deliberate: unlike
  /// `DistancePointAAndPointB` it does not clamp `offsetA`.
  ///
  /// @param line              degrees; heights take no part
  /// @param indexA, indexB    indices of vertices; any values
  /// @param offsetA, offsetB  metres
  /// @return metres; 0 for a negative `indexA`, an `indexB` beyond the line, and when B lies before A (by index, or by
  ///         offset on the same segment); otherwise negative when `offsetA` reaches beyond B
  ///
  /// Ends: indices checked, offsets not clamped.
  /// NaN: NaN.
  /// Cost: one distance per segment from A's vertex to B's.
  static double DistanceAToBackB(const std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                                 int indexB, double offsetB);

  /// Signed metres along a route from B to A, each position given as a point near the route and the vertex before it: it
  /// counts as lying as far behind that vertex as the point is from it.
  ///
  ///     0-----1--B--2-----3-A---4      positive: A lies beyond B. Swapping A and B negates
  ///
  /// @param pointA, pointB  degrees
  /// @param indexA, indexB  indices of vertices; a negative one or one beyond the line gives 0
  /// @param line            degrees
  /// @param cumulative      metres from the route's start, per vertex; not looked at when the indices are equal
  /// @return metres; 0 for refused indices and for a table that lacks two or more entries up to the larger index
  /// @throws std::out_of_range when the table lacks the entry of the larger index alone (deliberate: its size then equals
  ///         that index, which the guard lets pass)
  ///
  /// Ends: indices checked, nothing clamped.
  /// NaN: NaN, for an entry of the table too.
  /// Cost: two distances.
  static double DistanceOfA2BInRoute(const tarvo::GeoCoordinate& pointA, int indexA,
                                     const tarvo::GeoCoordinate& pointB, int indexB,
                                     const std::vector<tarvo::GeoCoordinate>& line,
                                     const std::vector<double>& cumulative);

  // ---- Sampling along a line ----------------------------------------------------------------------------------

  /// The line behind its first `distance` metres: the cut point, then the vertices that follow.
  ///
  ///     0-----1-----2-----3        distance = 1.5 segments
  ///              x--2-----3        x: interpolated
  ///
  /// A cut that falls on a vertex by summing whole segments is the vertex itself. Deliberate: with distance 0 the whole
  /// line comes back, but a first segment without length loses its first vertex.
  ///
  /// @param points    degrees; may be null
  /// @param count     number of points; fewer than 2 are refused
  /// @param distance  metres from `points[0]`; a negative one is refused
  /// @param out       degrees; empty when false is returned
  /// @return false for refused arguments and for a line shorter than `distance`
  ///
  /// Ends: the cut may fall on the line's first or last vertex.
  /// Output: `out` cleared first of all, also when false is returned.
  /// NaN: one NaN point, then vertex 1 onward for a NaN `distance`; where a segment before the cut has a NaN length,
  /// one NaN point, then the vertices from its end on.
  /// Unchecked: `points` is null or holds `count` points.
  /// Aliasing: `out` must not hold `points` (unchecked).
  /// Allocates: growth of `out`.
  /// Cost: one distance per segment up to the cut, and of up to 24 beyond it, for they are measured several at a time.
  static bool ChoosePointsInPolyline(const tarvo::GeoCoordinate* points, unsigned int count, double distance,
                                     std::vector<tarvo::GeoCoordinate>& out);

  /// Refused at compile time: an array of points with height has another stride.
  template <class Point, std::enable_if_t<std::is_base_of<tarvo::GeoCoordinateZ, Point>::value, int> = 0>
  static bool ChoosePointsInPolyline(const Point* points, unsigned int count, double distance,
                                     std::vector<tarvo::GeoCoordinate>& out) = delete;

  /// A point at the start of the line and one every `interval` metres along it. The checked form of
  /// `CalcPointsInPolyline`.
  ///
  /// @param points    degrees; an empty line is refused
  /// @param interval  metres; <= 0 is refused
  /// @param maxCount  number of points, see `CalcPointsInPolyline`
  /// @param out       degrees
  /// @return whether `out` is non-empty: false only for a refused argument (with whatever `out` held)
  ///
  /// Ends: the start always; the line's end only if a sample falls on it.
  /// Output: `out` appended; untouched for a refused argument.
  /// NaN: the start alone for a NaN `interval`; a segment of NaN length ends the sampling.
  /// Aliasing: `out` must not be `points` (unchecked).
  /// Allocates: growth of `out`.
  /// Cost: as `CalcPointsInPolyline`.
  static bool ChoosePointsInPolyline(const std::vector<tarvo::GeoCoordinate>& points, double interval,
                                     int maxCount, std::vector<tarvo::GeoCoordinate>& out);

  /// A point at the start of the line and one every `interval` metres along it; the walk carries on across vertices.
  ///
  ///     x----x--+-x----x----x-     x: samples, +: a vertex of the line
  ///
  /// A sample that falls on a vertex by summing whole segments is the vertex itself; one that falls on it within a
  /// segment is interpolated with ratio 1 (deliberate: they may differ in the last bit). The last vertex comes only if a
  /// sample falls on it. Repeated vertices add nothing.
  ///
  /// Within a segment the way is divided evenly in degrees by a ratio that is rounded to float: a sample lies up to 3e-8
  /// of its segment's length beside its place.
  ///
  /// @param points    degrees
  /// @param interval  metres; some length / interval points are appended, so that without a limit a tiny interval (as 0
  ///                  and less) ends with the vector's exception when memory runs out. Before the offsets could stand
  ///                  still, below 1.2e-16 of a segment's length, 8e15 points would be appended
  /// @param maxCount  number of points: limit on the size of `out`, points that it held before included (deliberate);
  ///                  <= 0: no limit. The start is appended even when the limit is already reached
  /// @param out       degrees
  /// @return whether there is still room under the limit
  ///
  /// Ends: the start always; the line's end only if a sample falls on it.
  /// Output: `out` appended.
  /// NaN: the start alone for a NaN `interval`; a segment of NaN length ends the sampling.
  /// Unchecked: `points` is not empty and `interval` is greater than 0.
  /// Aliasing: `out` must not be `points` (unchecked).
  /// Allocates: growth of `out`.
  /// Cost: one distance per segment walked, and of up to 63 beyond the limit, measured by blocks.
  static bool CalcPointsInPolyline(const std::vector<tarvo::GeoCoordinate>& points, double interval,
                                   int maxCount, std::vector<tarvo::GeoCoordinate>& out);

  /// The first `maxLength` metres of the line: its vertices, then one interpolated end point. A line no longer than that
  /// comes back whole.
  ///
  ///     0-----1-----2-----3        maxLength = 1.5 segments
  ///     0-----1--x                 x: interpolated
  ///
  /// Deliberate: a vertex exactly at `maxLength` comes twice when a segment of positive length follows, as the vertex and
  /// as the start of that segment.
  ///
  /// @param points     degrees; an empty line is refused. Heights are copied and interpolated, but not measured
  /// @param maxLength  metres; <= 0 is refused
  /// @param out        degrees
  /// @return false for refused arguments, else true
  ///
  /// Ends: the end point included, at most the line's last vertex.
  /// Output: `out` appended; untouched when false is returned.
  /// NaN: one NaN point ends the walk, for a NaN `maxLength` as for a NaN distance.
  /// Aliasing: `out` must not be `points` (unchecked).
  /// Allocates: growth of `out`.
  /// Cost: one distance per segment walked, and of up to 24 beyond the end point, measured several at a time.
  static bool ChoosePointsInPolylineWithMaxLength(const std::vector<tarvo::GeoCoordinate>& points,
                                                  double maxLength, std::vector<tarvo::GeoCoordinate>& out);

  /// The same for a line with heights.
  static bool ChoosePointsInPolylineWithMaxLength(const std::vector<tarvo::GeoCoordinateZ>& points,
                                                  double maxLength, std::vector<tarvo::GeoCoordinateZ>& out);

  // ---- Anchored and offset sampling of a route ----------------------------------------------------------------

  /// The stretch of a route ahead of a position on it: the position, the vertices that follow, and the end point `length`
  /// metres ahead.
  ///
  ///     0-----1--b--2-----3-----4      b: basePoint, baseIndex 1
  ///              b--2-----3--x         x: interpolated between vertices 3 and 4
  ///
  /// Deliberate: the position's metres from the route's start are truncated to whole metres, so the end point lies up to
  /// one metre nearer than `length`. An end point that falls on a vertex is the vertex itself. Where even the first vertex
  /// ahead is too far, the end point is interpolated from the vertex behind the position.
  ///
  /// @param baseIndex  index of the vertex behind the position; one outside of `points` is refused
  /// @param basePoint  degrees
  /// @param length     metres; a negative one gives an end point behind the position, though not behind vertex
  ///                   `baseIndex`
  /// @param points     degrees: the route's vertices
  /// @param cumDist    metres from the route's start, per vertex
  /// @param out        degrees
  /// @return false only for a refused index; true also when the route ends before `length` is reached
  /// @throws std::out_of_range when `cumDist` has no entry for a vertex on the stretch; what was appended until then, the
  ///         position at least, stays
  ///
  /// Ends: position and end point included, at most the route's last vertex.
  /// Output: `out` appended; untouched when false is returned.
  /// NaN: one NaN point ends the stretch, for a NaN `length` or entry; a NaN position, or a NaN entry of vertex
  /// `baseIndex`, counts as 0 m from the route's start.
  /// Aliasing: `basePoint` may be an element of `out`; `points` must not be `out` (unchecked).
  /// Allocates: growth of `out`.
  /// Cost: one distance, one comparison per vertex of the stretch.
  static bool ChoosePointsInPolylineFromBasePoint(int baseIndex, const tarvo::GeoCoordinate& basePoint,
                                                  double length,
                                                  const std::vector<tarvo::GeoCoordinate>& points,
                                                  const std::vector<double>& cumDist,
                                                  std::vector<tarvo::GeoCoordinate>& out);

  /// A chain of route positions behind its first `offset` metres: the cut point, then the positions that follow. Metres
  /// from one position to the next are measured along the route, by `DistanceOfA2BInRoute` without its sign.
  ///
  ///     0-----1-----2-----3        positions; offset = 1.5 steps
  ///              x--2-----3        x: interpolated straight between two positions
  ///
  /// Deliberate: an offset that ends within the first step gives no cut point, only the positions from 1 on. One that ends
  /// on a position gives the position itself.
  ///
  /// @param positions  degrees: `coordinate` and `shapeIndex` (the vertex behind) are read; an empty chain is refused
  /// @param offset     metres from the first position; <= 0 is refused
  /// @param out        degrees
  /// @param points     degrees: the route's vertices
  /// @param cumDist    metres from the route's start, per vertex
  /// @return false for refused arguments, and for a chain of fewer than two positions or shorter than `offset`: that also
  ///         writes one warning record with the length reached
  /// @throws std::out_of_range as `DistanceOfA2BInRoute` does
  ///
  /// Ends: the cut may fall on a position; the last position is always included.
  /// Output: `out` appended; untouched when false is returned and when std::out_of_range leaves.
  /// NaN: no cut point but the positions from 1 on for a NaN `offset`; a step of NaN length counts as reaching the
  /// offset, with a NaN cut point behind the first step.
  /// Unchecked: at most 2147483647 positions.
  /// Aliasing: `out` may be `points`, which are read before the first point is appended.
  /// Allocates: growth of `out`; the record, if one is written.
  /// Cost: one distance per position walked, and of up to 31 beyond, measured by blocks.
  static bool ChoosePointsInPolylineWithOffset(const std::vector<tarvo::RoutePos>& positions, double offset,
                                               std::vector<tarvo::GeoCoordinate>& out,
                                               const std::vector<tarvo::GeoCoordinate>& points,
                                               const std::vector<double>& cumDist);

  /// At most `count` points spread over several lines: each line is sampled from its own start, all at one spacing, the
  /// total length over `count - 1`, truncated to whole metres.
  ///
  /// Deliberate: points found so far count twice against each further line's limit, so later lines may give their
  /// start alone even though fewer than `count` points were found.
  ///
  /// @param lines  degrees; lines without length are passed over
  /// @param count  number of points wanted; 0 and 1 are refused
  /// @param out    degrees
  /// @return whether points were found; false for refused arguments (whatever `out` held). Nothing is found when the total
  ///         is below `count - 1` metres
  ///
  /// Ends: at most `count` points; a total beyond 2147483647 m counts as that.
  /// Output: `out` cleared, then filled; untouched when `count` or no lines are refused.
  /// NaN: false: a NaN distance in any line leaves nothing to find.
  /// Unchecked: `count` <= 2147483647: beyond, the limit wraps and more than `count` points may come.
  /// Aliasing: `out` must not be one of the lines (unchecked).
  /// Allocates: growth of `out`; one length per line, within.
  /// Cost: two distances per segment.
  static bool CalculateCandidatePoints(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                       unsigned int count, std::vector<tarvo::GeoCoordinate>& out);

  // ---- Containment --------------------------------------------------------------------------------------------

  /// Whether `point` lies in the bounding box of the segment from `a` to `b` and, where whole degrees can tell, not on
  /// the wrong side of it.
  ///
  ///     (0,10) . . (10,10)     Deliberate: the side is decided on differences truncated to whole degrees, and one side
  ///        . IN  /    .        of a segment counts as on it. Segments shorter than one degree are their box.
  ///        .   / out  .
  ///      (0,0) . . . .
  ///
  /// @param a, b   degrees: ends of the segment; not unwrapped at the antimeridian
  /// @param point  degrees
  ///
  /// Products of differences wrap at 32 bits, which takes differences of some 46340 degrees.
  ///
  /// Ends: border of the box included.
  /// NaN: true: a NaN coordinate never counts as outside the box, and a NaN difference as 0 degrees.
  /// Cost: up to eight comparisons and two products.
  static bool IsPointOnLineSegment(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                                   const tarvo::GeoCoordinate& point);

  /// Whether `point` lies within `tolerance` of a vertex of a line, or on one of its segments.
  ///
  /// @param line           degrees; deliberate: a line of fewer than 2 vertices has no point on it
  /// @param point          degrees
  /// @param tolerance      metres. Deliberate: the vertices from 1 on must also pass `IsPointNearOtherOne` with the vertex
  ///                       as the centre, so that beyond 12000 only vertex 0 can match; a negative one matches no vertex
  /// @param checkSegments  flag: whether to ask `IsPointOnLineSegment` too, whose boxes know no tolerance
  ///
  /// Ends: `tolerance` included, ends of the line included.
  /// NaN: false: near no vertex, as for a NaN `tolerance`; but with `checkSegments` a NaN point counts as on a segment.
  /// Cost: one box test per vertex, a distance where it is passed; stops at the first match.
  static bool IsPointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                                float tolerance, bool checkSegments);

  /// Whether `point` lies on one of several lines: as above, line by line, stopping at the first match.
  ///
  /// @param lines          degrees
  /// @param point          degrees
  /// @param tolerance      metres
  /// @param checkSegments  flag: whether to ask `IsPointOnLineSegment` too
  ///
  /// Ends: `tolerance` included, ends of the lines included.
  /// NaN: false: near no vertex, as for a NaN `tolerance`; but with `checkSegments` a NaN point counts as on a segment.
  /// Cost: as the form for one line, per line; stops at the first match.
  static bool IsPointOnPolyline(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                tarvo::GeoCoordinate point, float tolerance, bool checkSegments);

  /// Where on a line `point` lies: the index behind `IsPointOnPolyline`, with the same arguments.
  ///
  /// @param line           degrees
  /// @param point          degrees
  /// @param tolerance      metres
  /// @param checkSegments  flag: whether to ask `IsPointOnLineSegment` too
  /// @return index: the first i with the point near vertex i or on the segment from i - 1 to i; deliberate: near vertex 0
  ///         gives 1, so that 0 never comes back; -1 when it lies nowhere
  ///
  /// Ends: `tolerance` included, ends of the line included.
  /// NaN: -1: near no vertex, as for a NaN `tolerance`; but with `checkSegments` a NaN point counts as on a segment.
  /// Unchecked: `line` has at most 2147483648 points.
  /// Cost: as `IsPointOnPolyline`.
  static int PointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                             float tolerance, bool checkSegments);

  /// Whether `point` lies on the edge from `a` to `b`; otherwise counts the edge if a ray from the point toward
  /// growing longitude crosses it. Only an edge whose latitudes span the point's takes part.
  ///
  /// @param point, a, b  degrees
  /// @param crossings    number of edges crossed so far
  /// @return true when the point lies less than 1e-7 degree of longitude from the edge (see `PointRayTestInner` for
  ///         nearly horizontal ones); `crossings` is then unchanged
  ///
  /// Ends: lower end of the edge excluded, upper end included.
  /// Output: `crossings` grows by 1 when the ray crosses the edge.
  /// NaN: false: a NaN latitude, of the point or of an end, leaves the edge out; for a NaN longitude see
  /// `PointRayTestInner`.
  /// Unchecked: `crossings` is less than the largest int.
  /// Cost: four comparisons, one division.
  static bool PointRayTest(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b,
                           int& crossings);

  /// `PointRayTest` for an edge that is known to span the point's latitude: that is not checked here, and an edge that
  /// does not is prolonged until it does.
  ///
  /// An edge that rises or falls less than 1e-7 degree is met when the point's longitude lies between its ends; otherwise
  /// it counts as crossed on whichever side the point lies (deliberate).
  ///
  /// @param point, a, b  degrees
  /// @param crossings    number of edges crossed so far
  /// @return true when the point lies on the edge; `crossings` is then unchanged
  ///
  /// Ends: ends of a nearly horizontal edge included.
  /// Output: `crossings` grows by 1 when the ray crosses the edge.
  /// NaN: false: a NaN longitude crosses nearly horizontal edges and no other.
  /// Unchecked: `crossings` is less than the largest int.
  /// Cost: a few comparisons, one division.
  static bool PointRayTestInner(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b,
                                int& crossings);

  /// Whether `point` lies inside a polygon or on its boundary, planar, by the even-odd rule.
  ///
  ///     (0,1)_____(1,1)    The top edge is inside. Deliberate: of the bottom edge only the vertices are, for an edge
  ///       |         |      counts without its lower end and a horizontal one not at all. Points within 1e-7 degree
  ///     (0,0)_____(1,0)    of longitude of any other edge count as on it.
  ///
  /// @param polygon  degrees; closed by itself: the first vertex is not repeated at the end (repeating it does no harm).
  ///                 Fewer than 3 vertices contain nothing. Not unwrapped at the antimeridian
  /// @param point    degrees
  ///
  /// Ends: boundary included, but of the bottom edge the vertices alone.
  /// NaN: false: a NaN latitude lies nowhere; neither does a NaN longitude, unless an edge that rises less than 1e-7
  /// degree spans the latitude; both edges at a vertex whose latitude is NaN are left out.
  /// Cost: a few comparisons per vertex; nothing is built or cached.
  template <class Polygon = std::vector<tarvo::GeoCoordinate>>
  static bool IsPointInPolygon(const Polygon& polygon, tarvo::GeoCoordinate point) = delete;

  // ---- Clipping to a rectangle --------------------------------------------------------------------------------

  /// The pieces of a line that run through a rectangle, as runs of whole segments: nothing is cut at the border, so that
  /// a piece drawn as a line reaches beyond it.
  ///
  ///          +-------+
  ///     0----+-1--2--+---3---4     one piece: 0 1 2 3
  ///          +-------+
  ///
  /// A segment with both ends outside that passes through (or touches a corner) is a piece of its own. A vertex between
  /// two pieces stands in both. A line of one vertex that lies inside gives one empty piece (deliberate).
  ///
  /// @param line    degrees
  /// @param rect    degrees; borders may be infinite. An inverted one contains no vertex, but a segment that meets a
  ///                diagonal of its corners is still a piece
  /// @param pieces  degrees
  /// @return false for an empty line, else true
  ///
  /// Ends: border inside; a touched corner counts.
  /// Output: `pieces` appended.
  /// NaN: true: a NaN coordinate of a vertex counts as inside; a NaN border excludes no vertex, and makes no piece of a
  /// segment with both ends outside.
  /// Unchecked: `line` has at most 4294967295 points.
  /// Aliasing: no element of `pieces` may be `line` (unchecked).
  /// Allocates: growth of `pieces`.
  /// Cost: four comparisons per vertex; per segment outside at most two segment tests.
  static bool CutPolyline(const std::vector<tarvo::GeoCoordinate>& line,
                          const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                          std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

  /// One step of `CutPolyline`: from vertex `currentIndex - 1` to vertex `currentIndex`. To be called in order of the
  /// index on one output, as `CutPolyline` does.
  ///
  /// @param previousInside, currentInside  flags: whether the two vertices count as inside
  /// @param currentIndex  index in `line` of the current vertex
  /// @param vertexCount   number of vertices; decides which step is the last one
  /// @param line, rect    degrees, as in `CutPolyline`
  /// @param pieces        degrees
  ///
  /// Ends: border inside; a touched corner counts.
  /// Output: `pieces` appended, or its last one.
  /// NaN: no piece of a segment outside when an end or the border is NaN; otherwise the flags alone decide.
  /// Unchecked: 1 <= `currentIndex` < line.size(); `pieces` holds a piece when `previousInside` is true.
  /// Aliasing: no element of `pieces` may be `line` (unchecked).
  /// Allocates: growth of `pieces`.
  /// Cost: two vertices copied; for a segment outside at most two segment tests.
  static void CutPolylineUpdate(bool previousInside, bool currentInside, unsigned long currentIndex,
                                unsigned int vertexCount, const std::vector<tarvo::GeoCoordinate>& line,
                                const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                                std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

  /// Whether the closed segments a-b and c-d meet or touch, planar, without tolerance. Collinear segments meet when their
  /// boxes do; a segment may be a point.
  ///
  /// @param a, b, c, d  degrees; with an infinite coordinate the answer depends on the order of the points
  ///
  /// Ends: closed segments: touching is meeting.
  /// NaN: false.
  /// Cost: at most eight products.
  static bool IsTwoSegmentJoined(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                                 const tarvo::GeoCoordinate& c, const tarvo::GeoCoordinate& d);

  // ---- Symbols in a view --------------------------------------------------------------------------------------

  /// Evenly spaced points on the part of a route that lies in a view: one run of points per piece of `CutPolyline`,
  /// sampled by `CalcPointsInPolyline`.
  ///
  /// A piece shorter than the spacing gives its first and its last vertex. For a route other than the main one only the
  /// points inside `area` stay; a run is not split where it leaves the area.
  ///
  /// @param shape        degrees: the route's line
  /// @param isMainRoute  flag: when true `area` is not looked at
  /// @param viewRect     degrees
  /// @param area         degrees: a polygon (see `IsPointInPolygon`); with fewer than 3 vertices it empties every run
  /// @param interval     metres: the spacing; 0 or less gives one empty run per piece
  /// @param owner        text: the caller's label in log and timing
  /// @param out          degrees: one run per piece, in order; none for an empty shape
  ///
  /// Writes one debug record with the number of points (none for an empty shape; deliberate: for the main route the
  /// closing point of a short piece is not counted) and reports its running time to the elapsed-time listener.
  ///
  /// Ends: border of the view inside; the start of each piece always, its end only if a sample falls on it or the piece
  /// is short.
  /// Output: `out` cleared, then filled.
  /// NaN: one run: a NaN vertex counts as in the view, and a segment of NaN length ends the sampling of its run, which
  /// is closed with the piece's last vertex when that was the first one.
  /// Aliasing: `area` may be `shape`; `out` must not hold either (unchecked).
  /// Allocates: growth of `out`; the pieces and a copy of `owner`, within; the record, if one is written.
  /// Cost: one rectangle test per vertex, one distance per segment inside, for a side route one polygon test per point.
  static void GetInterpolateShapePoints(const std::vector<tarvo::GeoCoordinate>& shape, bool isMainRoute,
                                        const tarvo::Rect<tarvo::GeoCoordinate>& viewRect,
                                        const std::vector<tarvo::GeoCoordinate>& area, int interval,
                                        const std::string& owner,
                                        std::vector<std::vector<tarvo::GeoCoordinate>>& out);

  // ---- Thinning of route points -------------------------------------------------------------------------------

  /// One route's segments as one sequence of points: short segments whole, long ones thinned so that kept neighbours lie
  /// more than `minSpacing` apart.
  ///
  ///     0--1--2--3--4--5     minSpacing = 1.5 steps: 0 2 4. Deliberate: the last point (5) is not forced in
  ///
  /// Thinning starts anew in each segment with its first point; a point that two segments share comes twice.
  /// Deliberate: once 1501 points are reached no further one is taken, but a short segment is not cut and may carry the
  /// result beyond.
  ///
  /// @param route       degrees: segments; empty ones add nothing
  /// @param minSpacing  metres; a point at exactly this distance from the last kept one is dropped. Deliberate: one outside
  ///                    of the box of `IsPointNearOtherOne` about the last kept point is kept unmeasured, so above 12000
  ///                    every point is. Negative keeps every point
  /// @param pointLimit  number: a segment of at most twice as many points is short. Deliberate: doubled in 32 bits,
  ///                    wrapping, and a negative double makes every segment short
  /// @return degrees: the points
  ///
  /// Ends: `minSpacing` excluded: a point at exactly that distance is dropped.
  /// NaN: kept where it starts a segment or in a short one; otherwise a point with a NaN coordinate that the other
  /// coordinate does not place outside of the box about the last kept point is dropped, and behind a NaN start of a
  /// long segment so are its other points. A NaN `minSpacing` keeps the points outside of the box.
  /// Allocates: the result.
  /// Cost: one box test per point of a long segment, a distance where it is passed.
  static std::vector<tarvo::GeoCoordinate> PreProcessRoutePoints(
      const std::vector<std::vector<tarvo::GeoCoordinate>>& route, float minSpacing, int pointLimit);

  /// The same for several routes, one result per route.
  ///
  /// @param routes      degrees: routes, each a list of segments
  /// @param routeCount  number of routes to take from the front; one beyond the number of routes means all; <= 0 none
  /// @param minSpacing  metres, see the form for one route
  /// @param pointLimit  number, see the form for one route
  /// @param owner       text: the caller's label in the timing
  /// @param out         degrees: one result per route, in order
  ///
  /// Reports its running time to the elapsed-time listener.
  ///
  /// Ends: `routeCount` clamped to the number of routes.
  /// Output: `out` cleared, then filled.
  /// NaN: kept or dropped as in the form for one route.
  /// Aliasing: `out` must not be one of the routes (unchecked).
  /// Allocates: growth of `out` and the results; a copy of `owner`, within.
  /// Cost: as the form for one route, per route.
  static void PreProcessRoutePoints(const std::vector<std::vector<std::vector<tarvo::GeoCoordinate>>>& routes,
                                    int routeCount, float minSpacing, int pointLimit,
                                    const std::string& owner,
                                    std::vector<std::vector<tarvo::GeoCoordinate>>& out);

  // ---- Projection onto a line with heights --------------------------------------------------------------------
  //
  // Common to the family: a projection drops the perpendicular on a local plane of degrees in which longitudes are
  // shrunk by the cosine of the position's latitude. Heights take no part in it. A ratio is the fraction of the way from
  // a segment's first point (0) to its second (1), a double. Position codes:
  //
  //        :               :
  //     -1 :       0       : 1        -1 before the segment's first point, 0 within (ratio 0 and 1 included),
  //        start-------->end           1 beyond its second point
  //        :               :

  /// Foot of the perpendicular from `pos` on the infinite line through `start` and `end`, and on which part of it that
  /// foot falls.
  ///
  ///              pos
  ///               :
  ///     start-----+---end   - - - -+        ratio 0.6, code 0; a foot past `end` has ratio > 1, code 1
  ///
  /// @param start, end  degrees; note that the segment comes first and the position third
  /// @param pos         degrees; its height is not looked at
  /// @param foot        degrees: before `start` or past `end` it lies on the extended line, its height extrapolated alike
  ///                    (in float)
  /// @param ratio       fraction of the way
  /// @return position code; a segment shorter than 3.2e-7 degrees (3 cm), longitudes shrunk, has none: 0, with ratio 0 and
  ///         foot `start`
  ///
  /// Ends: ratio 0 and 1 count as within; nothing is clamped.
  /// Output: `foot` and `ratio` overwritten.
  /// NaN: 0, with NaN in `ratio` and `foot` (which tells it from a short segment).
  /// Aliasing: `foot` may be one of the three points.
  /// Cost: one cosine. Not unwrapped at the antimeridian.
  static int ProjectionPosToLine(const tarvo::GeoCoordinateZ& start, const tarvo::GeoCoordinateZ& end,
                                 const tarvo::GeoCoordinateZ& pos, tarvo::GeoCoordinateZ& foot,
                                 double& ratio);

  /// Follows the projection of `pos` along a line: from segment `segmentIndex` one segment at a time toward the side on
  /// which the position falls, until it falls within a segment or into the wedge outside a bend. For a position that
  /// moves a little between calls; it finds the nearest foot only on gentle lines (`ProjectionPosToLinesDistance` looks
  /// at every segment).
  ///
  ///     0---1---2---3---4       starts at segment 0: beyond, beyond, within segment 2
  ///               pos           resultIndex 2, ratio 0.5, segmentIndex 2
  ///
  ///            : pos
  ///     0------1 . . .          beyond segment 0 and before segment 1: the shared vertex,
  ///            |                resultIndex 1, ratio 0
  ///            2
  ///
  /// @param pos           degrees. Deliberate: longitude and latitude both 0 mean "no position": false, nothing written
  /// @param line          degrees
  /// @param segmentIndex  index in `line` of the first point of the segment where the walk starts; negative: false,
  ///                      nothing written. Out: the segment where the walk stands, for the next call; after false it may
  ///                      be -1 or the last point's index
  /// @param resultIndex   index in `line` of the vertex before the foot, possibly the last one of the line (with ratio 0)
  /// @param ratio         fraction of the way from `line[resultIndex]` to the next point, in [0, 1) when true; a foot at
  ///                      ratio 1 becomes the next vertex with ratio 0
  /// @return false when the walk leaves the line at either end, and for fewer than two points
  ///
  /// Segments shorter than 0.1 m are passed over in the walk's direction.
  ///
  /// Ends: ratio 0 and 1 count as within a segment.
  /// Output: `segmentIndex` overwritten at every step, also when the walk ends in false; `ratio` (deliberate)
  /// overwritten, unclamped, by every segment the walk looks at, also when it ends in false; `resultIndex` overwritten
  /// when true is returned.
  /// NaN: true with a NaN ratio, at the first segment where a NaN of `pos` or of its points counts.
  /// Aliasing: `segmentIndex` may be `resultIndex`, which is written later.
  /// Cost: one cosine, and one distance per segment walked; the walk never turns round.
  static bool ProjectionPosToLines(const tarvo::GeoCoordinateZ& pos,
                                   const std::vector<tarvo::GeoCoordinateZ>& line, int& segmentIndex,
                                   int& resultIndex, double& ratio);

  /// The segment nearest to `pos` among those from `startIndex` on. The scan ends early at a foot that is near enough, or
  /// when the line, having been in range, stays out of range.
  ///
  ///             pos
  ///     0----1----2----3----...----9      start 0: segment 1 is nearest; with maxFarSegments 0 the first segment
  ///     `----- in range ------'           out of range after it ends the scan
  ///
  /// @param pos             degrees; longitude and latitude both 0 mean "no position": false, nothing written
  /// @param line            degrees; empty: false, nothing written
  /// @param startIndex      index in `line` of the first point of the first segment to scan; negative or beyond the last
  ///                        segment: nothing is scanned
  /// @param resultIndex     index in `line` of the first point of the nearest segment; `startIndex` when none was found
  /// @param ratio           fraction of the way along that segment; 0 when none was found
  /// @param acceptDistance  metres: a segment within which the position falls (position code 0) and that is nearer than
  ///                        this is taken at once, whatever `maxDistance`; 0 or less: never
  /// @param maxDistance     metres: the range. The result is true when the nearest segment is nearer than this
  /// @param maxFarSegments  number: how many segments farther than `maxDistance` are tolerated once one in range was
  ///                        found; one more ends the scan. Only segments out of range that are no new nearest count
  /// @return whether a segment in range was found. Deliberate: with nothing found the distance counts as 999988 m, so a
  ///         larger `maxDistance` gives true
  ///
  /// Segments shorter than 0.01 m are skipped. Equal distances: the first.
  ///
  /// Ends: `ratio` clamped to [0, 1]; `acceptDistance` and `maxDistance` excluded.
  /// Output: `resultIndex` and `ratio` overwritten, but for no position and an empty line; `startIndex` overwritten by
  /// an early accept alone, with the segment accepted.
  /// NaN: false, unless `maxDistance` exceeds the distance above: a segment with a NaN is never nearest and never far;
  /// a NaN `acceptDistance` accepts none, a NaN `maxDistance` gives false.
  /// Aliasing: `startIndex` may be `resultIndex`, which then holds the result.
  /// Cost: one cosine; a distance per segment that may matter and per one of up to 11 neighbours measured along with it, a
  /// second one where it is hardly longer than 0.01 m; a few comparisons for each other one, which may be looked at twice.
  static bool ProjectionPosToLinesDistance(const tarvo::GeoCoordinateZ& pos,
                                           const std::vector<tarvo::GeoCoordinateZ>& line, int& startIndex,
                                           int& resultIndex, double& ratio, double acceptDistance,
                                           double maxDistance, int maxFarSegments);

  /// `ProjectionPosToLinesDistance` that takes only segments which run on a heading, for lines that pass the same place
  /// in both directions.
  ///
  ///     0---1----->-----2     pos heads west (270). From segment 0: segment 3 is found, though segment 1 is
  ///            pos      |     nearer. From segment 1: that one is the result, for the first one scanned is
  ///                     |     recorded whatever its heading, and only nearer ones replace it
  ///         4-----<-----3
  ///
  /// The heading of segment i is the bearing from point i to the first later point more than 0.5 m away; a line that ends
  /// before that matches any heading (given a positive tolerance).
  ///
  /// Deliberate, all of it: an early accept does not ask for the heading. The first segment scanned is recorded whatever
  /// its heading, and hides all segments that are not nearer. No segment is skipped for being short. With nothing scanned
  /// the distance counts as 3.4028234663852886e+38 m.
  ///
  /// @param pos, line                    degrees, as in `ProjectionPosToLinesDistance`, like all that follow but for the
  ///                                     heading
  /// @param startIndex, resultIndex      indices in `line`
  /// @param ratio                        fraction of the way
  /// @param acceptDistance, maxDistance  metres
  /// @param maxFarSegments               number of segments
  /// @param heading           degrees from north, clockwise, in [0, 360): compared as it is
  /// @param headingTolerance  degrees: headings match when they differ by less than this, also across north (359 and 1
  ///                          differ by 2); 0: none match
  /// @return whether the recorded segment is nearer than `maxDistance`. Segments with a wrong heading and out of range count
  ///         as far
  ///
  /// Ends: `ratio` clamped to [0, 1]; `acceptDistance`, `maxDistance` and `headingTolerance` excluded; `heading` not
  /// folded.
  /// Output: `resultIndex` and `ratio` overwritten, but for no position and an empty line; `startIndex` overwritten by
  /// an early accept alone, with the segment accepted.
  /// NaN: false: a first segment of NaN distance is recorded, no other replaces it, and only an early accept gives
  /// true; a NaN `heading` or `headingTolerance` matches none.
  /// Aliasing: `startIndex` may be `resultIndex`, which then holds the result.
  /// Cost: one cosine, one distance per segment scanned and of up to 3 beyond, and a bearing and a distance or more per nearer one: where
  /// very many points lie within half a metre the search for the heading's second point repeats for each.
  static bool ProjectionPosToLinesDistanceOrientation(const tarvo::GeoCoordinateZ& pos, double heading,
                                                      const std::vector<tarvo::GeoCoordinateZ>& line,
                                                      int& startIndex, int& resultIndex, double& ratio,
                                                      double acceptDistance, double maxDistance,
                                                      double headingTolerance, int maxFarSegments);

  /// Places `pos` before, on or beyond the segment from `a` to `b` by distances alone: on it when the way from `a` to `b`
  /// over `pos` is at most 0.1 m longer than the straight one.
  ///
  ///        .-pos-.            |a pos| + |pos b| - |a b| <= 0.1: code 0, ratio |a pos| / |a b|
  ///      a---------b
  ///
  /// @param pos, a, b  degrees; heights are not looked at
  /// @param ratio      fraction of the way; 0 when `a` and `b` coincide
  /// @return position code: 0 on the segment; otherwise 1 when `b` is nearer or both are equally near, else -1. Deliberate:
  ///         a position off to the side of the middle also gets -1 or 1
  ///
  /// Ends: a detour of exactly 0.1 m counts as on the segment; `ratio` clamped to [0, 1].
  /// Output: `ratio` overwritten for code 0 alone.
  /// NaN: -1.
  /// Cost: three distances.
  static int PosInAB(const tarvo::GeoCoordinateZ& pos, const tarvo::GeoCoordinateZ& a,
                     const tarvo::GeoCoordinateZ& b, double& ratio);

  // ---- Parallel offset ----------------------------------------------------------------------------------------

  /// A line shifted sideways: every segment is moved along its own normal, and neighbours are joined where their lines
  /// cross. One output point per input point, with the same height.
  ///
  ///     0'----------1'     0 1 2: points, 0' 1' 2': result to the left. The joint 1' is where
  ///     0--------1  |      the two moved segments cross. At a hairpin that is too far away:
  ///              |  |      1' is then the moved end of the segment before
  ///              2  2'
  ///
  /// @param points  degrees; fewer than two give nothing. Repeated points are kept; the bearing of such a segment is north
  /// @param offset  metres; negative moves to the other side
  /// @param left    flag: false to the right of the direction of travel (bearing + 90 degrees), true to the left
  /// @param result  degrees: its points are addressed by the indices of `points`
  ///
  /// Joints: at a bend whose two moved vertices lie less than 0.01 m apart the first one stays. Otherwise the crossing is
  /// taken when it lies less than twice their gap away from the first one, which else stays (deliberate: turns of some 151
  /// degrees and more). Deliberate: moved segments that span less than 1e-6 degree of longitude (0.1 m) count as vertical;
  /// without that guard the joint then takes the longitude of the vertical segment's moved vertex, and of two verticals that
  /// of the earlier one with the mean of both latitudes. The earlier segment is taken as joined so far, not as first moved.
  /// Metres become degrees on a sphere of 6371 km (deliberate: not the ellipsoid of the distances, off by up to 0.6 %), at
  /// each point's own latitude; at a pole the longitude has no meaning. Not unwrapped at the antimeridian.
  ///
  /// Ends: every vertex, first and last included.
  /// Output: `result` appended; it must be empty.
  /// NaN: NaN coordinates, in the neighbours too; in all for a NaN `offset`.
  /// Unchecked: `result` is empty.
  /// Aliasing: `result` must not be `points` (unchecked).
  /// Allocates: room in `result` for all points, once, also when nothing is appended.
  /// Cost: per segment one sine and two cosines; a bearing or a distance only where it is close.
  static void PanLinePoints(const std::vector<tarvo::GeoCoordinateZ>& points, float offset, bool left,
                            std::vector<tarvo::GeoCoordinateZ>& result);

  // ---- Lane arrows --------------------------------------------------------------------------------------------

  /// The two edges of an arrow's shaft that follows a guide line.
  ///
  ///     +---------+-------+     left boundary       kLineAsLeftEdge: the guide line is the left boundary
  ///     o---------x---o   |     guide line          kLineAsCenter:   it runs half way between, as drawn
  ///     +---------+-+ |   |     right boundary      otherwise:       it is the right boundary
  ///                 + x   +
  ///                 | |   |     x: points added before and after the bend
  ///                 + o   +
  ///
  /// The guide line is prepared: points within 0.01 m of the one kept before are dropped; at every turn above 5 degrees a
  /// point is added on each leg, `cut` metres from the bend, if the leg is longer than cut + 1 metres, with
  /// cut = width / 2 * tan(turn / 2) + 6. Of two bends on one leg the later one measures from the point that the earlier
  /// one added. Then it is moved by `PanLinePoints` and filtered by `RelapseCheckFilter`.
  ///
  /// @param points         degrees: the guide line, from the arrow's tail to its head; fewer than two give two empty edges.
  ///                       When all lie within 0.01 m each edge is one point
  /// @param width          metres of the whole shaft, greater than 0; a negative one exchanges the sides
  /// @param arrowType      enumerator: where the guide line lies across the shaft; any unknown value counts as the right
  ///                       edge
  /// @param leftBoundary, rightBoundary  degrees: as many points on one as on the other, at most one per point of the
  ///                       prepared line, with its heights. Left and right as seen along the line
  ///
  /// For kLineAsCenter the left edge is the mirror image of the right one through the guide line (deliberate: not an offset
  /// of its own, so that at a bend the guide point halves the edge points exactly). A turn of 180 degrees has an infinite
  /// cut and gets no added points. The inner edge of a bend whose legs are short against the width may still cross itself.
  ///
  /// Ends: from the first to the last point of the guide line.
  /// Output: `leftBoundary` and `rightBoundary` cleared, then filled.
  /// NaN: one point per edge for a NaN `width` or first point; later points with a NaN, infinite or out-of-range
  /// coordinate are dropped like repeats.
  /// Aliasing: neither output may be `points` nor the other one (unchecked).
  /// Allocates: growth of the outputs; up to six times, within: four working vectors, one of which may grow twice.
  /// Cost: per point one bearing and two distances or more, and `PanLinePoints`.
  static void CalcBoundaryPoints(const std::vector<tarvo::GeoCoordinateZ>& points, float width,
                                 ArrowType arrowType, std::vector<tarvo::GeoCoordinateZ>& leftBoundary,
                                 std::vector<tarvo::GeoCoordinateZ>& rightBoundary);

  /// Drops the points where either side of a line runs backward, as an offset does that has folded over itself on the
  /// inside of a bend.
  ///
  ///     left    0---------2==1======3     the step 1-2 of the left side runs backward:
  ///     center  0--------1-2--------3     point 1 is dropped from both sides
  ///     right   0-------1----2------3
  ///
  /// Point k stays when the steps from k to k + 1 of both sides point forward along that step of `center` (dot product
  /// above 0, planar; a right angle is not forward). The last points always stay.
  ///
  /// @param center    degrees
  /// @param leftIn, rightIn    degrees, one point per point of `center`
  /// @param leftOut, rightOut  degrees. Deliberate: when the three sizes differ or `center` has fewer than two points they
  ///                  are replaced by copies of `leftIn` and `rightIn`
  ///
  /// Ends: the last points always stay; a step at a right angle does not.
  /// Output: `leftOut` and `rightOut` appended; replaced in the case above.
  /// NaN: the last points alone: a NaN in a step drops its point.
  /// Aliasing: an output may be its own input: it then keeps its points, and the filtered ones follow behind (when
  /// replaced it stays as it is).
  /// Allocates: growth of the outputs.
  /// Cost: a few products per point.
  static void RelapseCheckFilter(const std::vector<tarvo::GeoCoordinateZ>& center,
                                 const std::vector<tarvo::GeoCoordinateZ>& leftIn,
                                 std::vector<tarvo::GeoCoordinateZ>& leftOut,
                                 const std::vector<tarvo::GeoCoordinateZ>& rightIn,
                                 std::vector<tarvo::GeoCoordinateZ>& rightOut);

  // ---- Bounds and planes --------------------------------------------------------------------------------------

  /// Corners of the bounding box of the points from `first` to `last`.
  ///
  ///     3-------2
  ///     |       |      appended in this order: counter-clockwise from the south-west
  ///     0-------1
  ///
  /// @param points  degrees; heights are not looked at
  /// @param first   index in `points` of the first point
  /// @param last    index in `points` of the last point; deliberate: a negative one means the last point of `points`
  /// @param out     degrees: four corners, x longitude and y latitude. Not unwrapped at the antimeridian
  /// @return false when `first` is negative or beyond that last point
  ///
  /// Ends: `first` and `last` inclusive; deliberately `last` alone is clamped, to the last point.
  /// Output: `out` appended; untouched when false is returned.
  /// NaN: NaN where `points[first]` has it (deliberate); one of a later point is passed over.
  /// Allocates: room for four more in `out`.
  /// Cost: four comparisons per point of the range.
  static bool GetBound(const std::vector<tarvo::GeoCoordinateZ>& points, int first, int last,
                       std::vector<tarvo::MapVector2d>& out);

  /// The extreme points of a set and their indices.
  ///
  ///          .
  ///     [0].    .[2]       slot 0 smallest x, 1 smallest y, 2 largest x, 3 smallest y once more
  ///          .[1] and [3]
  ///
  /// Deliberate: slot 3 repeats slot 1; there is no slot for the largest y.
  ///
  /// @param points    any unit; fewer than two are refused
  /// @param extremes  unit of `points`: four points. Equal extremes: the one with the lowest index
  /// @param indices   indices in `points` of the four
  /// @return whether `points` has at least two elements
  ///
  /// Output: `extremes` and `indices` overwritten, resized to 4 whatever they held; untouched when false is returned.
  /// NaN: NaN where `points[0]` has it (deliberate); later ones are passed over.
  /// Aliasing: `extremes` must not be `points` (unchecked).
  /// Allocates: growth of the outputs.
  /// Cost: four comparisons per point.
  static bool GetBoundPoints(const std::vector<Vector2<double>>& points,
                             std::vector<Vector2<double>>& extremes, std::vector<int>& indices);

  /// Normal vector of the plane through the first three points: its length is twice the triangle's area, and z is positive
  /// when they run counter-clockwise as seen from above.
  ///
  ///         2
  ///        / \        (1 - 0) x (2 - 0), in which
  ///       0---1       x is y1 * z2 - z1 * x2, deliberately not y1 * z2 - z1 * y2
  ///
  /// So x is that of the true normal only where points 0 and 1 have the same height or x2 equals y2.
  ///
  /// @param plane  degrees, taken as they are beside heights in their own unit, with nothing scaled to metres; three points
  ///               are read
  /// @return degrees times height in x and y, square degrees in z: a vector, not a position, x in `longitude`, y in
  ///         `latitude`, z in `z` (narrowed to float). Zero for three points on one vertical or, up to rounding, on one line
  ///
  /// NaN: NaN.
  /// Unchecked: `plane` has at least three points.
  /// Cost: a few products.
  static tarvo::GeoCoordinateZ CalculatePlaneNormalVector(const std::vector<tarvo::GeoCoordinateZ>& plane);

  /// Height at `position` of the plane through the first three points.
  ///
  ///         2
  ///        / \   *      *: `position`, inside the triangle or not
  ///       0---1
  ///
  /// The plane is the one whose normal `CalculatePlaneNormalVector` gives: it passes through point 0, and through the other
  /// two as well when points 0 and 1 have the same height.
  ///
  /// @param plane     degrees, three points counter-clockwise as seen from above
  /// @param position  degrees
  /// @return unit of the heights; 0 when z of the normal is below 1e-12 square degrees: for points that run clockwise
  ///         (deliberate), on one line, or around less than 0.006 square metres at the equator
  ///
  /// NaN: NaN.
  /// Unchecked: `plane` has at least three points.
  /// Cost: a few products, one division.
  static double GetPointZInPlane(const std::vector<tarvo::GeoCoordinateZ>& plane,
                                 const tarvo::GeoCoordinate& position);

  // ---- Pieces of lane boundaries ------------------------------------------------------------------------------

  /// Cuts the next `length` metres out of a lane boundary, with its marked vertices.
  ///
  ///     source  0----1----2*---3----4*---5       *: marked vertices, pointIndices {2, 4}
  ///     piece          0--1----2----3--4         startIndex 1, startRatio 0.4: points 0 and 4 are interpolated,
  ///                                              the others are vertices; pointIndices {0, 1, 3}
  ///
  /// The piece's point k is source point startIndex + k, but for the first and, when the boundary is long enough, the last.
  ///
  /// @param source       degrees: the boundary
  /// @param indexCursor  index in `source.pointIndices` of the last mark already handled, behind which the scan starts, or
  ///                     -1. Out: index there of the first mark copied by this call; unchanged when none was. Pass the
  ///                     variable on from piece to piece
  /// @param startIndex   index in `source.points` of the first point of the segment where the piece starts
  /// @param startRatio   fraction of the way along that segment, narrowed to float
  /// @param length       metres. Negative: the piece ends where it starts
  /// @param piece        degrees: the points of the piece, and the marks as indices counted from the piece's start: 0 for
  ///                     the start itself, always, then v - startIndex for each marked vertex v on the way. Deliberate:
  ///                     these are not shifted by what `piece` held, so it is normally empty
  /// @return fraction of `length` that was covered: 1 when the piece ends within the boundary, less when that ends
  ///         first, 0 with nothing written when there is no segment to start on. Deliberate: the ratio length / length for
  ///         a full piece, so NaN for a length of 0 (whose cut point is NaN when it starts on a repeated vertex)
  ///
  /// A mark on the segment's first point is not copied, nor one on a vertex where the length runs out: the piece ends with
  /// a cut point before that vertex.
  /// To go on where a piece of k points ended: the next startIndex is i = startIndex + k - 2, the next startRatio is the
  /// distance from source.points[i] to the piece's last point over the length of segment i. A result below 1 says that
  /// the boundary has ended; it is narrowed to float, so a shortfall of less than 3e-8 of `length` goes unseen.
  ///
  /// Ends: start and end point included; `startRatio` clamped to [0, 1], `length` by the boundary's end.
  /// Output: `piece` appended; `indexCursor` overwritten when a mark was copied.
  /// NaN: NaN for a NaN `length`, whose end point is NaN too; a NaN vertex ends the piece with a NaN point and gives 1,
  /// a NaN `startRatio` also starts it with one.
  /// Unchecked: `startIndex` >= 0 (a negative one counts as beyond the end); `indexCursor` >= -1 (below, no mark is
  /// copied); `pointIndices` ascend (the scan ends at the first one beyond the current vertex).
  /// Aliasing: `source` must not be `piece` (unchecked).
  /// Allocates: growth of `piece`; nothing is reserved.
  /// Cost: one distance per vertex on the way, one look at each mark passed.
  static float HandleBoundaryDataByDistance(const tarvo::HAD::BoundaryData& source, int& indexCursor,
                                            int startIndex, double startRatio, double length,
                                            tarvo::HAD::BoundaryData& piece);
};

/// The only polygon container so far; others are refused at compile time.
template <>
VOREL_EXPORT bool VorelGeometryAlgorithm::IsPointInPolygon<std::vector<tarvo::GeoCoordinate>>(
    const std::vector<tarvo::GeoCoordinate>& polygon, tarvo::GeoCoordinate point);

}  // namespace vorel

#endif  // VOREL_MAP_UTILS_VOREL_GEOMETRY_ALGORITHM_H_
