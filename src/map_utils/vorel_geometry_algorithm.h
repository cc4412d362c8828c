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
  T x{};
  T y{};
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
/// - Output vectors are appended to, not cleared, and must not be one of the inputs.
/// - Nothing is thrown but what a growing container throws. A function without output vectors allocates nothing.
/// - Argument checks are written so that a NaN passes them; what comes of it is said at the function.
/// - Any thread may call any function at any time, provided nobody changes the arguments meanwhile.
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
  /// @return degrees in [0, 180]; 0 when either segment has no length; NaN for NaN input, and (deliberate) where
  ///         rounding pushes the cosine beyond 1: for about one in six exactly straight or reversed turns
  /// Cost: one square root, one arc cosine.
  static float GetAngle(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                        const tarvo::GeoCoordinate& c);

  /// Bearing: the heading on which the great circle from `from` to `to` starts.
  ///
  /// @param from, to  degrees
  /// @return degrees from north, clockwise, in [-180, 180]: west is negative; 0 for equal points; NaN for NaN or infinite
  ///         input
  /// Cost: six sines and cosines, one arc tangent. Formula: spherical trigonometry, four-parts formula.
  static double GetAngle(const tarvo::GeoCoordinate& from, const tarvo::GeoCoordinate& to);

  /// Heading from point 1 to point 2 in [0, 360], decided on a grid of one hundredth of an arc-second (3 dm).
  /// Points on one grid meridian give exactly 0 or 180; points in one grid cell give 0.
  ///
  /// Deliberate: the grid rounds by adding 0.5 and truncating toward zero, which is lopsided for negative degrees; due
  /// west gives a value near 270; exactly 360 can come back.
  ///
  /// @param lat1, lat2  latitudes in degrees; note that the latitude comes first
  /// @param lon1, lon2  longitudes in degrees; not folded, so a step across the antimeridian counts the long way round
  /// @return degrees from north, clockwise; 0 when the formula gives NaN: for NaN input, and where rounding pushes a
  ///         sine or cosine beyond 1, so that a heading close to due east or west, or one to an antipode, may come back as 0.
  ///         Beyond 5965 degrees the grid saturates
  /// Cost: up to eight calls of the math library. Formula: spherical law of cosines, then law of sines.
  static double GetYaw(double lat1, double lon1, double lat2, double lon2);

  /// `to - from`, corrected once by a whole turn into [-180, 180]. -180 and 180 both stay; see `AngleDiff`.
  ///
  /// @param from, to  headings in degrees, meant to be in [0, 360): a difference beyond 540 stays beyond 180 (deliberate:
  ///                  one correction only)
  /// @return degrees; NaN for NaN input
  static float CalcAziDiff(float from, float to);

  /// `to - from`, folded into [-180, 180): a difference of 180 gives -180 (deliberate; `CalcAziDiff` keeps +180).
  ///
  /// @param from, to  degrees, any finite value
  /// @return degrees; NaN where the difference is NaN or infinite
  static float AngleDiff(float from, float to);

  /// Folds an angle into (-180, 180] by steps of 360 in float.
  ///
  /// @param angle  degrees, |angle| <= 8589934592 (2^33): beyond it, and for infinities, the loop never ends. Unchecked
  /// @return degrees; NaN for NaN
  /// Cost: |angle| / 360 steps; 2^33 takes some 0.1 s.
  static float NormalizeAngle180(float angle);

  /// Folds an angle into [0, 360) by steps of 360 in float. Deliberate: a negative angle closer to 0 than 1.5e-5 gives
  /// 360 itself, to which the sum rounds.
  ///
  /// @param angle  degrees, |angle| <= 8589934592 (2^33): beyond it, and for infinities, the loop never ends. Unchecked
  /// @return degrees; NaN for NaN
  /// Cost: |angle| / 360 steps; 2^33 takes some 0.1 s.
  static float NormalizeAngle360(float angle);

  /// Candidates for the third side of a triangle of which two sides and the angle facing one of them are known.
  ///
  ///          *
  ///         / \            angle: between sideB and the unknown side c
  ///   sideB/   \sideA
  ///       /_____\          c: none, one or two lengths fit
  ///     angle  c
  ///
  /// @param sideA, sideB  lengths, in one unit
  /// @param angle         degrees, between `sideB` and the unknown side
  /// @return the lengths that make a real triangle, in the unit of the sides, the longer candidate first; empty when none
  ///         does and for NaN input. Deliberate: where both candidates coincide the length comes twice
  /// Cost: one sine, one cosine, one square root; allocates when there is a result. Formula: law of cosines.
  static std::vector<double> GetLength3OfTriangle(double sideA, double sideB, double angle);

  /// Distance between (p.x, p.y) and (q.x, q.y), longitude and latitude in degrees: what
  /// `CoordinateUtil::DistanceOfGcj02Pos` gives. Deliberate: `z` takes no part.
  ///
  /// @return metres; NaN for NaN input
  static double Distance(tarvo::MapVector3d p, tarvo::MapVector3d q);

  /// Ground length in metres that one pixel spans at display level 20. A constant.
  static double Get20PixelDistanceOnePixel();

  // ---- Points and rectangles ----------------------------------------------------------------------------------

  /// Smallest rectangle around `points[0 .. count - 1]`.
  ///
  /// @param points  degrees; may be null
  /// @param count   number of points
  /// @param bound   overwritten; untouched when false is returned
  /// @return false for null or no points
  /// NaN: a NaN coordinate of a later point is passed over; one of the first point stays in the result (deliberate).
  /// Cost: four comparisons per point.
  static bool GetBound(const tarvo::GeoCoordinate* points, unsigned int count,
                       tarvo::Rect<tarvo::GeoCoordinate>& bound);

  /// Refused at compile time: an array of points with height has another stride.
  template <class Point, std::enable_if_t<std::is_base_of<tarvo::GeoCoordinateZ, Point>::value, int> = 0>
  static bool GetBound(const Point* points, unsigned int count,
                       tarvo::Rect<tarvo::GeoCoordinate>& bound) = delete;

  /// Whether `point` lies in `rect`, border included.
  ///
  /// @param rect   degrees; an inverted one contains nothing
  /// @param point  degrees; a NaN coordinate never counts as outside
  static bool IsRectContainsPoint(const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                                  const tarvo::GeoCoordinate& point);

  /// Whether two rectangles share a point; those that only touch do. Degrees; a NaN border never separates.
  static bool IsRectIntersectsRect(const tarvo::Rect<tarvo::GeoCoordinate>& first,
                                   const tarvo::Rect<tarvo::GeoCoordinate>& second);

  /// Coarse nearness, to be asked before an exact distance: whether `other` lies in a square about `point` (border
  /// included) whose half width is 0.0001, 0.001, 0.01 or 0.1 degree, for a `distance` below 11, 111, 1113 m or beyond.
  ///
  /// @param point     degrees; the centre of the square
  /// @param distance  metres; above 12000 the answer is always false (deliberate); NaN counts as below 11
  /// @param other     degrees; a NaN coordinate counts as near
  /// The square does not hold every point within `distance`: 0.01 degree spans 1106 (equator) to 1117 m (pole) due north,
  /// and due east 1113 m at the equator but 558 m at latitude 60. So a point within the radius may be refused: due east
  /// away from the equator, due north for a distance just below a threshold (from 1106 m in this example) or near 12000 m.
  /// Cost: up to eight comparisons.
  static bool IsPointNearOtherOne(const tarvo::GeoCoordinate& point, float distance,
                                  const tarvo::GeoCoordinate& other);

  /// The point at `ratio` of the way from `start` to `end`, planar.
  ///
  /// @param start, end  degrees
  /// @param ratio       clamped to [0, 1]; NaN is not and gives NaN coordinates
  /// Deliberate: ratio 1 gives start + (end - start), which may differ from `end` in the last bit.
  static tarvo::GeoCoordinate GetInsertPointFromSegment(const tarvo::GeoCoordinate& start,
                                                        const tarvo::GeoCoordinate& end, float ratio);

  /// The same with a height in metres, interpolated alike and rounded to float.
  static tarvo::GeoCoordinateZ GetInsertPointFromSegment(const tarvo::GeoCoordinateZ& start,
                                                         const tarvo::GeoCoordinateZ& end, float ratio);

  /// The point `distance` metres from `start` on the straight line (planar) through `start` and `end`.
  ///
  /// @param start, end  degrees
  /// @param distance    metres; deliberately unclamped: negative lies before `start`, beyond the length past `end`
  /// @return degrees; NaN when `start` equals `end`; infinite or NaN when the two differ but name one place (a whole turn
  ///         of longitude, a pole)
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
  /// @return degrees; `start` for a segment shorter than 3.2e-7 degrees; NaN for NaN input
  static tarvo::GeoCoordinate GetFootPoint(const tarvo::GeoCoordinate& point,
                                           const tarvo::GeoCoordinate& start,
                                           const tarvo::GeoCoordinate& end);

  /// Side of the directed line from `start` to `end` on which `point` lies, planar.
  ///
  /// @param point, start, end  degrees
  /// @return twice the signed area of the triangle in square degrees: positive on the left (north up), negative on the
  ///         right, 0 on the line; NaN for NaN input
  static double GetPositionOfPointToLine(const tarvo::GeoCoordinate& point, const tarvo::GeoCoordinate& start,
                                         const tarvo::GeoCoordinate& end);

  /// The point reached from a start after `distance` metres on an initial heading, on the WGS-84 ellipsoid.
  ///
  /// @param longitude     start, degrees; only added in the end
  /// @param latitude      start, degrees in [-90, 90]; 100 is taken for -80, which has the same tangent
  /// @param azimuth       initial heading, degrees
  /// @param distance      metres, |distance| <= 5e10 (1250 times round the earth; unchecked): the iteration may never
  ///                      settle from 5.2e10 on, where neighbouring arcs differ by more than its threshold. Negative:
  ///                      backwards. Deliberate: where the arc on the auxiliary sphere is one whole turn to 1e-12 radians,
  ///                      the iteration is left out and the result lies on the equator
  /// @param outLongitude  degrees, not folded into [-180, 180]; 200 where the result is NaN: for any NaN argument and for
  ///                      an infinite latitude, azimuth or distance. An infinite longitude stays infinite
  /// @param outLatitude   degrees; 200 where the result is NaN, independently of the longitude: for a NaN or infinite
  ///                      latitude or azimuth and an infinite distance. Deliberate: a NaN distance gives 0
  /// The outputs may be the variables passed as inputs.
  /// Error against an exact geodesic, measured: 7 micrometres up to 100 km, 0.15 mm up to 20000 km.
  /// Cost: some 20 calls of the math library. Formula: T. Vincenty, Direct and inverse solutions of geodesics on the
  /// ellipsoid with application of nested equations, Survey Review XXIII 176 (1975), equations 1-11.
  static void ComputerThatLonLat(double longitude, double latitude, double azimuth, double distance,
                                 double& outLongitude, double& outLatitude);

  /// `point` turned about `center` by `angle`, clockwise on a north-up map. Local: meant for some kilometres about the
  /// centre, whose distance and bearing are laid off on a sphere.
  ///
  /// @param point, center  degrees
  /// @param angle          degrees, |angle| <= 3.6e9 (unchecked): the turn is folded by steps of 360, which takes some
  ///                       0.05 s for 3.6e9, longer in proportion, and never ends beyond 2^62 and for infinities
  /// @return degrees; NaN for NaN input. By 0 degrees: the point itself up to the difference of sphere and ellipsoid
  ///         (0.6 % of the radius); about a pole the longitude has no meaning
  /// Cost: one bearing, one distance, three sines and cosines, |angle| / 360 steps.
  static tarvo::GeoCoordinate RotatePoint(const tarvo::GeoCoordinate& point,
                                          const tarvo::GeoCoordinate& center, double angle);

  /// Signed angle at `from` between the directions to `to` and to a point Q that fixes a point beside a line: Q lies on
  /// the line's first segment (from `line[1]` toward `line[0]`) or its third (from `line[2]` toward `line[3]`), where a
  /// triangle with the sides |from to| and `length` and the given angle closes.
  ///
  /// @param line             degrees; at least two points for the first segment, four for the third (unchecked)
  /// @param from, to         degrees
  /// @param angle            degrees, facing the side |from to| (see `GetLength3OfTriangle`)
  /// @param length           metres
  /// @param useFirstSegment  true: the first segment, a result >= 0 wanted; false: the third, <= 0 wanted
  /// @return degrees in (-180, 180]: the first candidate with the wanted sign; 0 when there is none and for NaN input
  /// Cost: one bearing and distance, and per candidate (at most two) one more of each; allocates.
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

  /// Length of the part of a line from vertex `from` to vertex `to - 1`: the end is exclusive. See
  /// `GetDistanceByVector` for an inclusive one.
  ///
  /// @param points  degrees; may be null
  /// @param count   number of points
  /// @param from    index of the first vertex; any value
  /// @param to      index after the last vertex; clamped to `count`; 4294967295 means `count`
  /// @return metres; 0 for null, for fewer than 2 points and for an empty part (so also for `to` = `from` + 1); NaN when
  ///         the distance of a segment of the part is
  /// Cost: one distance per segment of the part.
  static double GetDistance(const tarvo::GeoCoordinate* points, unsigned int count, unsigned int from,
                            unsigned int to);

  /// Refused at compile time: an array of points with height has another stride.
  template <class Point, std::enable_if_t<std::is_base_of<tarvo::GeoCoordinateZ, Point>::value, int> = 0>
  static double GetDistance(const Point* points, unsigned int count, unsigned int from,
                            unsigned int to) = delete;

  /// Length of the part of a line from vertex `from` to vertex `to`: the end is inclusive. See `GetDistance` for an
  /// exclusive one.
  ///
  /// @param line  degrees; heights take no part; an empty line gives 0
  /// @param from  index of the first vertex; any value
  /// @param to    index of the last vertex; clamped to the last one of the line
  /// @return metres; 0 for an empty part; NaN when the distance of a segment of the part is
  /// Cost: one distance per segment of the part.
  static double GetDistanceByVector(const std::vector<tarvo::GeoCoordinateZ>& line, unsigned int from,
                                    unsigned int to);
  static double GetDistanceByVector(const std::vector<tarvo::GeoCoordinate>& line, unsigned int from,
                                    unsigned int to);

  /// Length of the part of a line from vertex `from` to vertex `to` (inclusive), and the running sums on the way. For a
  /// cumulative table of a whole line put a 0 in front and measure from 0.
  ///
  ///     0-----1-----2-----3      from 1 to 3 appends: metres 1..2, metres 1..3
  ///
  /// @param line   degrees; copied on every call (deliberate: the signature is part of the contract)
  /// @param from   index of the first vertex
  /// @param to     index of the last vertex, at most line.size() - 1 (unchecked, and not clamped)
  /// @param cache  appended to: `to - from` sums, from `from` to each later vertex; untouched when `to` <= `from`. Room
  ///               is reserved for `to - from` elements in all (deliberate: what it held before is not added)
  /// @return metres, the last sum; 0 when `to` <= `from`; NaN from the first NaN distance on
  /// Cost: the copy, one distance per segment of the part.
  static double GetDistanceAndCache(std::vector<tarvo::GeoCoordinate> line, unsigned int from,
                                    unsigned int to, std::vector<double>& cache);

  /// Index of the last element that is not greater than `target`: in a cumulative table, the vertex that starts the
  /// segment in which the distance `target` lies. Of equal elements the last one.
  ///
  /// @param values  ascending (unchecked: otherwise some index of it comes back); copied on every call (deliberate: the
  ///                signature is part of the contract). At most 2147483647 elements
  /// @param target  in the unit of the values
  /// @return an index of `values`; deliberate: 0 also when the first element is already greater, and for NaN; -2 for no
  ///         values
  /// Cost: the copy, and one comparison per halving.
  static int FindFirstSmallerIndex(std::vector<double> values, double target);

  /// Whether position A comes before position B on a route, or is the same.
  ///
  /// @param indexA, indexB    vertex indices; any values, only compared
  /// @param offsetA, offsetB  metres from those vertices, compared when the indices are equal; a NaN one is not before
  static bool IsPointAInFrontOfPointB(int indexA, double offsetA, int indexB, double offsetB);

  /// Metres along a line from position A to position B behind it.
  ///
  ///     0-----1--A--2-----3-B---4      from A to B
  ///
  /// @param line              degrees; heights take no part; not modified
  /// @param indexA, indexB    vertex indices. When `indexA` < `indexB`: `indexA` >= 0, `indexB` < line.size() (unchecked)
  /// @param offsetA           metres; with different indices at most the length of its segment counts (NaN counts as
  ///                          that length), a negative one lengthens the way
  /// @param offsetB           metres; not clamped (deliberate)
  /// @return metres; 0 when B lies before A by index, or on the same segment unless `offsetB` > `offsetA`; may be negative
  ///         for a negative `offsetB`
  /// Cost: one distance per segment touched, that of B not included.
  static double DistancePointAAndPointB(std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                                        int indexB, double offsetB);

  /// The same from a cumulative table, without any distance.
  ///
  /// @param cumulative        metres from the route's start, per vertex
  /// @param indexA            vertex index. When `indexA` < `indexB`: 0 .. cumulative.size() - 1 (unchecked)
  /// @param indexB            vertex index; one beyond the table moves B to the last vertex, and `offsetB` is ignored
  /// @param offsetA, offsetB  metres; deliberate: neither is clamped, unlike `offsetA` of the form on the line
  /// @return metres; 0 as in the form on the line; negative when `offsetA` reaches beyond B
  static double DistancePointAAndPointB(const std::vector<double>& cumulative, int indexA, double offsetA,
                                        int indexB, double offsetB);

  /// Metres along a line from position A to position B behind it, with its indices checked. Deliberate: unlike
  /// `DistancePointAAndPointB` it does not clamp `offsetA`.
  ///
  /// @param line              degrees; heights take no part
  /// @param indexA, indexB    vertex indices; any values
  /// @param offsetA, offsetB  metres
  /// @return metres; 0 for a negative `indexA`, an `indexB` beyond the line, and when B lies before A (by index, or by
  ///         offset on the same segment); otherwise negative when `offsetA` reaches beyond B; NaN for NaN offsets
  /// Cost: one distance per segment from A's vertex to B's.
  static double DistanceAToBackB(const std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                                 int indexB, double offsetB);

  /// Signed metres along a route from B to A, each position given as a point near the route and the vertex before it: it
  /// counts as lying as far behind that vertex as the point is from it.
  ///
  ///     0-----1--B--2-----3-A---4      positive: A lies beyond B. Swapping A and B negates
  ///
  /// @param pointA, pointB  degrees
  /// @param indexA, indexB  vertex indices; a negative one or one beyond the line gives 0
  /// @param line            degrees
  /// @param cumulative      metres from the route's start, per vertex; not looked at when the indices are equal
  /// @return metres; 0 for refused indices and for a table that lacks two or more entries up to the larger index; NaN when
  ///         a distance or an entry is
  /// @throws std::out_of_range when the table lacks the entry of the larger index alone (deliberate: its size then equals
  ///         that index, which the guard lets pass)
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
  /// @param distance  metres from `points[0]`; a negative one is refused; NaN gives one NaN point, then vertex 1 onward. A
  ///                  segment before the cut whose own distance is NaN likewise ends the walk: one NaN point, then the
  ///                  vertices from its end on
  /// @param out       cleared, first of all: empty when false is returned; must not hold `points`
  /// @return false for refused arguments and for a line shorter than `distance`
  /// Cost: one distance per segment up to the cut.
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
  /// @param interval  metres; <= 0 is refused; NaN gives the start alone
  /// @param maxCount  see `CalcPointsInPolyline`
  /// @param out       appended to; untouched when false is returned for a refused argument; must not be `points`
  /// @return whether `out` is non-empty: false only for a refused argument (with whatever `out` held)
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
  /// of its segment's length beside its place. A segment whose length is NaN ends the sampling.
  ///
  /// @param points    degrees, at least one point (unchecked)
  /// @param interval  metres, greater than 0 (unchecked); NaN gives the start alone. Some length / interval points are
  ///                  appended: without a limit a tiny interval (as 0 and less) ends with the vector's exception when
  ///                  memory runs out. Before the offsets could stand still, below 1.2e-16 of a segment's length, 8e15
  ///                  points would be appended
  /// @param maxCount  limit on the size of `out`, points that it held before included (deliberate); <= 0: no limit. The
  ///                  start is appended even when the limit is already reached
  /// @param out       appended to; must not be `points`
  /// @return whether there is still room under the limit
  /// Cost: one distance per segment walked; stops at the limit.
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
  /// @param maxLength  metres; <= 0 is refused; NaN, like a NaN distance, gives one NaN point and ends the walk
  /// @param out        appended to; untouched when false is returned; must not be `points`
  /// @return false for refused arguments, else true
  /// Cost: one distance per segment walked; stops at the end point.
  static bool ChoosePointsInPolylineWithMaxLength(const std::vector<tarvo::GeoCoordinate>& points,
                                                  double maxLength, std::vector<tarvo::GeoCoordinate>& out);
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
  /// @param basePoint  degrees; may be an element of `out`
  /// @param length     metres; not checked: a negative one gives an end point behind the position, though not behind
  ///                   vertex `baseIndex`; NaN gives a NaN end point
  /// @param points     the route's vertices, degrees
  /// @param cumDist    metres from the route's start, per vertex; a NaN entry ends the stretch in a NaN end point
  /// @param out        appended to; untouched when false is returned; must not be `points`
  /// @return false only for a refused index; true also when the route ends before `length` is reached
  /// @throws std::out_of_range when `cumDist` has no entry for a vertex on the stretch; what was appended until then, the
  ///         position at least, stays
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
  /// @param positions  `coordinate` and `shapeIndex` (the vertex behind) are read; an empty chain is refused. At most
  ///                   2147483647 positions
  /// @param offset     metres from the first position; <= 0 is refused; NaN gives the positions from 1 on. A step whose
  ///                   distance is NaN counts as reaching the offset, with a NaN cut point
  /// @param out        appended to; untouched when false is returned and when std::out_of_range leaves; may be `points`,
  ///                   which are read before the first point is appended
  /// @param points     the route's vertices, degrees
  /// @param cumDist    metres from the route's start, per vertex
  /// @return false for refused arguments, and for a chain of fewer than two positions or shorter than `offset`: that also
  ///         writes one warning record with the length reached
  /// @throws std::out_of_range as `DistanceOfA2BInRoute` does
  /// Cost: two distances per step walked.
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
  /// @param count  number of points wanted, 2 to 2147483647 (0 and 1 are refused; beyond, the limit wraps and more than
  ///               `count` points may come)
  /// @param out    untouched when `count` or no lines are refused; otherwise cleared, then filled; must not be one of the
  ///               lines
  /// @return whether points were found; false for refused arguments (whatever `out` held). Nothing is found when the total
  ///         is below `count - 1` metres, nor when any line has a NaN distance
  /// A total beyond 2147483647 m counts as that. Cost: two distances per segment; allocates one length per line.
  static bool CalculateCandidatePoints(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                       unsigned int count, std::vector<tarvo::GeoCoordinate>& out);

  // ---- Containment --------------------------------------------------------------------------------------------

  /// Whether `point` lies in the bounding box of the segment from `a` to `b` (border included) and, where whole degrees
  /// can tell, not on the wrong side of it.
  ///
  ///     (0,10) . . (10,10)     Deliberate: the side is decided on differences truncated to whole degrees, and one side
  ///        . IN  /    .        of a segment counts as on it. Segments shorter than one degree are their box.
  ///        .   / out  .
  ///      (0,0) . . . .
  ///
  /// @param a, b   ends of the segment, degrees; not unwrapped at the antimeridian
  /// @param point  degrees; a NaN coordinate never counts as outside the box, and a NaN difference as 0 degrees
  /// Products of differences wrap at 32 bits, which takes differences of some 46340 degrees.
  /// Cost: up to eight comparisons and two products.
  static bool IsPointOnLineSegment(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                                   const tarvo::GeoCoordinate& point);

  /// Whether `point` lies within `tolerance` of a vertex of a line, or on one of its segments.
  ///
  /// @param line           degrees; deliberate: a line of fewer than 2 vertices has no point on it
  /// @param point          degrees; NaN is near no vertex, but `IsPointOnLineSegment` takes it for on a segment
  /// @param tolerance      metres, border included. Deliberate: the vertices from 1 on must also pass
  ///                       `IsPointNearOtherOne` with the vertex as the centre, so that beyond 12000 only vertex 0 can
  ///                       match; negative and NaN match no vertex
  /// @param checkSegments  whether to ask `IsPointOnLineSegment` too, whose boxes know no tolerance
  /// Cost: one box test per vertex, a distance where it is passed; stops at the first match.
  static bool IsPointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                                float tolerance, bool checkSegments);

  /// Whether `point` lies on one of several lines: as above, line by line, stopping at the first match.
  static bool IsPointOnPolyline(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                tarvo::GeoCoordinate point, float tolerance, bool checkSegments);

  /// Where on a line `point` lies: the index behind `IsPointOnPolyline`, with the same arguments.
  ///
  /// @param line  at most 2147483648 points
  /// @return the first i with the point near vertex i or on the segment from i - 1 to i; deliberate: near vertex 0 gives 1,
  ///         so that 0 never comes back; -1 when it lies nowhere
  static int PointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                             float tolerance, bool checkSegments);

  /// Whether `point` lies on the edge from `a` to `b`; otherwise counts the edge if a ray from the point toward
  /// growing longitude crosses it. Only an edge whose latitudes span the point's (lower end excluded) takes part.
  ///
  /// @param point, a, b  degrees; a NaN latitude, of the point or of an end, leaves the edge out
  /// @param crossings    grows by 1 when the ray crosses the edge; less than the largest int (unchecked)
  /// @return true when the point lies less than 1e-7 degree of longitude from the edge (see `PointRayTestInner` for
  ///         nearly horizontal ones); `crossings` is then unchanged
  /// Cost: four comparisons, one division.
  static bool PointRayTest(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b,
                           int& crossings);

  /// `PointRayTest` for an edge that is known to span the point's latitude: that is not checked here, and an edge that
  /// does not is prolonged until it does.
  ///
  /// An edge that rises or falls less than 1e-7 degree is met when the point's longitude lies between its ends (the ends
  /// included); otherwise it counts as crossed on whichever side the point lies (deliberate). A NaN longitude counts
  /// there too, but crosses no other edge.
  static bool PointRayTestInner(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b,
                                int& crossings);

  /// Whether `point` lies inside a polygon or on its boundary, planar, by the even-odd rule.
  ///
  ///     (0,1)_____(1,1)    The top edge is inside. Deliberate: of the bottom edge only the vertices are, for an edge
  ///       |         |      counts without its lower end and a horizontal one not at all. Points within 1e-7 degree
  ///     (0,0)_____(1,0)    of longitude of any other edge count as on it.
  ///
  /// @param polygon  degrees; closed by itself: the first vertex is not repeated at the end (repeating it does no harm).
  ///                 Fewer than 3 vertices contain nothing. Not unwrapped at the antimeridian. Both edges at a vertex
  ///                 whose latitude is NaN are left out
  /// @param point    degrees; may be a vertex of `polygon`. A NaN latitude lies nowhere; neither does a NaN longitude,
  ///                 unless an edge that rises less than 1e-7 degree spans the latitude (see `PointRayTestInner`)
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
  /// @param line    degrees; a NaN coordinate counts as inside. At most 4294967295 points
  /// @param rect    degrees, border inside; borders may be infinite. An inverted one contains no vertex, but a segment
  ///                that meets a diagonal of its corners is still a piece. A NaN border excludes no vertex, and no
  ///                segment with both ends outside is then a piece
  /// @param pieces  appended to; no element of it may be `line`
  /// @return false for an empty line, else true
  /// Cost: four comparisons per vertex; per segment outside at most two segment tests.
  static bool CutPolyline(const std::vector<tarvo::GeoCoordinate>& line,
                          const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                          std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

  /// One step of `CutPolyline`: from vertex `currentIndex - 1` to vertex `currentIndex`. To be called in order of the
  /// index on one output, as `CutPolyline` does.
  ///
  /// @param previousInside, currentInside  whether the two vertices count as inside
  /// @param currentIndex  index in `line` of the current vertex, 1 .. line.size() - 1 (unchecked)
  /// @param vertexCount   number of vertices; decides which step is the last one
  /// @param line, rect    as in `CutPolyline`
  /// @param pieces        appended to; holds a piece when `previousInside` is true (unchecked)
  static void CutPolylineUpdate(bool previousInside, bool currentInside, unsigned long currentIndex,
                                unsigned int vertexCount, const std::vector<tarvo::GeoCoordinate>& line,
                                const tarvo::Rect<tarvo::GeoCoordinate>& rect,
                                std::vector<std::vector<tarvo::GeoCoordinate>>& pieces);

  /// Whether the closed segments a-b and c-d meet or touch, planar, without tolerance. Collinear segments meet when their
  /// boxes do; a segment may be a point.
  ///
  /// @param a, b, c, d  degrees; may be the same objects. False when a coordinate is NaN; with an infinite one the answer
  ///                    depends on the order of the points
  /// Cost: at most eight products.
  static bool IsTwoSegmentJoined(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                                 const tarvo::GeoCoordinate& c, const tarvo::GeoCoordinate& d);

  // ---- Symbols in a view --------------------------------------------------------------------------------------

  /// Evenly spaced points on the part of a route that lies in a view: one run of points per piece of `CutPolyline`,
  /// sampled by `CalcPointsInPolyline`.
  ///
  /// A piece shorter than the spacing (or whose first segment has NaN for its length) gives its first and its last
  /// vertex. For a route other than the main one only the points inside `area` stay; a run is not split where it leaves
  /// the area.
  ///
  /// @param shape        the route's line, degrees
  /// @param isMainRoute  true: `area` is not looked at
  /// @param viewRect     degrees, border inside
  /// @param area         polygon, degrees (see `IsPointInPolygon`); with fewer than 3 vertices it empties every run. May
  ///                     be `shape` itself
  /// @param interval     spacing in whole metres; 0 or less gives one empty run per piece
  /// @param owner        the caller's label in log and timing
  /// @param out          cleared, then one run per piece, in order; empty for an empty shape; must not hold `shape` or
  ///                     `area`
  /// Writes one debug record with the number of points (none for an empty shape; deliberate: for the main route the
  /// closing point of a short piece is not counted) and reports its running time to the elapsed-time listener.
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
  /// @param route       segments, degrees; empty ones add nothing
  /// @param minSpacing  metres; a point at exactly this distance from the last kept one is dropped. Deliberate: one outside
  ///                    of the box of `IsPointNearOtherOne` about the last kept point is kept unmeasured, so above 12000
  ///                    every point is. Negative keeps all but NaN points; NaN keeps those outside of the box
  /// @param pointLimit  a segment of at most 2 * `pointLimit` points is short. Deliberate: doubled in 32 bits, wrapping,
  ///                    and a negative double makes every segment short
  /// @return the points. NaN: a point with a NaN coordinate that the other coordinate does not place outside of the box
  ///         is dropped; behind a NaN start of a long segment this goes for its other points
  /// Cost: one box test per point of a long segment, a distance where it is passed.
  static std::vector<tarvo::GeoCoordinate> PreProcessRoutePoints(
      const std::vector<std::vector<tarvo::GeoCoordinate>>& route, float minSpacing, int pointLimit);

  /// The same for several routes, one result per route.
  ///
  /// @param routes      routes, each a list of segments, degrees
  /// @param routeCount  number of routes to take from the front; one beyond the number of routes means all; <= 0 none
  /// @param minSpacing, pointLimit  see the form for one route
  /// @param owner       the caller's label in the timing
  /// @param out         cleared, then one result per route, in order; must not be one of the routes
  /// Reports its running time to the elapsed-time listener.
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
  /// @param foot        overwritten; not clamped: before `start` or past `end` it lies on the extended line, its height
  ///                    extrapolated alike (in float). May be one of the three points
  /// @param ratio       overwritten; not clamped
  /// @return position code. A segment shorter than 3.2e-7 degrees (3 cm), longitudes shrunk, has none: 0, with ratio 0 and
  ///         foot `start`. NaN input gives 0 as well, with NaN in ratio and foot (the ratio tells the two apart)
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
  /// @param segmentIndex  in: index in `line` of the first point of the segment where the walk starts; negative: false,
  ///                      nothing written. Out: the segment where the walk stands, for the next call; after false it may
  ///                      be -1 or the last point's index. It follows every step, also when the walk ends in false. May
  ///                      be the variable of `resultIndex`, which is written later
  /// @param resultIndex   written when true: index in `line` of the vertex before the foot, possibly the last one of the
  ///                      line (with ratio 0)
  /// @param ratio         of the way from `line[resultIndex]` to the next point, in [0, 1) when true; a foot at ratio 1
  ///                      becomes the next vertex with ratio 0. Deliberate: it is overwritten, unclamped, by every segment
  ///                      the walk looks at, also when it ends in false
  /// @return false when the walk leaves the line at either end, and for fewer than two points
  /// Segments shorter than 0.1 m are passed over in the walk's direction. NaN in `pos` or in a segment's points gives true
  /// with a NaN ratio at the first segment where it counts.
  /// Cost: one cosine, and one distance per segment walked; the walk never turns round. Allocates nothing.
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
  /// @param startIndex      in: index in `line` of the first point of the first segment to scan; negative or beyond the
  ///                        last segment: nothing is scanned. Out: the accepted segment after an early accept, otherwise
  ///                        unchanged. May be the variable of `resultIndex`, which then holds the result
  /// @param resultIndex     index in `line` of the first point of the nearest segment; `startIndex` when none was found
  /// @param ratio           of the way along that segment, clamped to [0, 1]; 0 when none was found
  /// @param acceptDistance  metres: a segment within which the position falls (position code 0) and that is nearer than
  ///                        this is taken at once, whatever `maxDistance`; 0, less or NaN: never
  /// @param maxDistance     metres: the range. The result is true when the nearest segment is nearer than this; NaN: false
  /// @param maxFarSegments  how many segments farther than `maxDistance` are tolerated once one in range was found; one
  ///                        more ends the scan. Only segments out of range that are no new nearest count
  /// @return whether a segment in range was found. resultIndex and ratio are written also when false, but for no position
  ///         and an empty line. Deliberate: with nothing found the distance counts as 999988 m, so a larger `maxDistance`
  ///         gives true
  /// Segments shorter than 0.01 m are skipped; ones with NaN are never nearest and never far. Equal distances: the first.
  /// Cost: one cosine; two distances per segment that may matter, a few comparisons for each other one, which may be looked
  /// at twice. Allocates nothing.
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
  /// its heading, and hides all segments that are not nearer; when its distance is NaN no other replaces it, and only an
  /// early accept gives true. No segment is skipped for being short. With nothing scanned the
  /// distance counts as 3.4028234663852886e+38 m.
  ///
  /// @param pos, line, startIndex, resultIndex, ratio, acceptDistance, maxDistance, maxFarSegments
  ///                          as in `ProjectionPosToLinesDistance`
  /// @param heading           degrees from north, clockwise, in [0, 360): compared as it is, not folded
  /// @param headingTolerance  degrees: headings match when they differ by less than this, also across north (359 and 1
  ///                          differ by 2); 0 or NaN: none match
  /// @return whether the recorded segment is nearer than `maxDistance`. Segments with a wrong heading and out of range count
  ///         as far
  /// Cost: one cosine, one distance per segment scanned, and a bearing and a distance or more per nearer one: where very
  /// many points lie within half a metre the search for the heading's second point repeats for each. Allocates nothing.
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
  /// @param ratio      written for code 0 only: clamped to [0, 1]; 0 when `a` and `b` coincide
  /// @return 0 on the segment; otherwise 1 when `b` is nearer or both are equally near, else -1. Deliberate: a position
  ///         off to the side of the middle also gets -1 or 1. NaN gives -1
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
  /// @param offset  metres; negative moves to the other side. NaN gives NaN coordinates
  /// @param left    false: to the right of the direction of travel (bearing + 90 degrees), true: to the left
  /// @param result  must be empty (unchecked) and not `points`: appended to, while its points are addressed by the indices
  ///                of `points`. Room for all points is reserved, also when nothing is appended
  /// Joints: at a bend whose two moved vertices lie less than 0.01 m apart the first one stays. Otherwise the crossing is
  /// taken when it lies less than twice their gap away from the first one, which else stays (deliberate: turns of some 151
  /// degrees and more). Deliberate: moved segments that span less than 1e-6 degree of longitude (0.1 m) count as vertical;
  /// without that guard the joint then takes the longitude of the vertical segment's moved vertex, and of two verticals that
  /// of the earlier one with the mean of both latitudes. The earlier segment is taken as joined so far, not as first moved.
  /// Metres become degrees on a sphere of 6371 km (deliberate: not the ellipsoid of the distances, off by up to 0.6 %), at
  /// each point's own latitude; at a pole the longitude has no meaning. Not unwrapped at the antimeridian. NaN spreads to
  /// the neighbours.
  /// Cost: per segment one sine and two cosines; a bearing or a distance only where it is close. One reservation.
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
  /// @param points         guide line in degrees, from the arrow's tail to its head; fewer than two give two empty edges.
  ///                       When all lie within 0.01 m each edge is one point
  /// @param width          metres of the whole shaft, greater than 0; a negative one exchanges the sides; NaN leaves one point per edge
  /// @param arrowType      where the guide line lies across the shaft; any unknown value counts as the right edge
  /// @param leftBoundary, rightBoundary  cleared, then filled: as many points on one as on the other, at most one per point
  ///                       of the prepared line, with its heights. Left and right as seen along the line. Neither may be
  ///                       `points` nor the other (unchecked)
  /// For kLineAsCenter the left edge is the mirror image of the right one through the guide line (deliberate: not an offset
  /// of its own, so that at a bend the guide point halves the edge points exactly). A turn of 180 degrees has an infinite
  /// cut and gets no added points. The inner edge of a bend whose legs are short against the width may still cross itself.
  /// NaN: points with a NaN, infinite or out-of-range coordinate are dropped like repeats; a first one is kept instead of
  /// all others, and each edge is one such point.
  /// Cost: per point one bearing and two distances or more, and `PanLinePoints`. Up to four working vectors are allocated.
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
  /// @param leftOut, rightOut  appended to. Deliberate: when the three sizes differ or `center` has fewer than two points
  ///                  the outputs are replaced by copies of `leftIn` and `rightIn`. An output may be its own input: it
  ///                  then keeps its points, and the filtered ones follow behind (in the fallback it stays as it is)
  /// NaN in a step drops its point.
  /// Cost: a few products per point.
  static void RelapseCheckFilter(const std::vector<tarvo::GeoCoordinateZ>& center,
                                 const std::vector<tarvo::GeoCoordinateZ>& leftIn,
                                 std::vector<tarvo::GeoCoordinateZ>& leftOut,
                                 const std::vector<tarvo::GeoCoordinateZ>& rightIn,
                                 std::vector<tarvo::GeoCoordinateZ>& rightOut);

  // ---- Bounds and planes --------------------------------------------------------------------------------------

  /// Corners of the bounding box of `points[first .. last]`, both ends included.
  ///
  ///     3-------2
  ///     |       |      appended in this order: counter-clockwise from the south-west
  ///     0-------1
  ///
  /// @param points  degrees; heights are not looked at
  /// @param first   index in `points` of the first point
  /// @param last    index in `points` of the last point; deliberate: a negative one or one past the end means the last
  ///                point of `points`
  /// @param out     four corners are appended, x longitude and y latitude in degrees; untouched when false is returned
  /// @return false when `first` is negative or beyond that last point
  /// NaN: a NaN coordinate of a later point is passed over; one of `points[first]` stays in the result (deliberate).
  /// Cost: four comparisons per point of the range. Not unwrapped at the antimeridian.
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
  /// @param extremes  resized to 4 and overwritten, whatever it held; untouched when false is returned. Must not be `points`
  ///                  (unchecked)
  /// @param indices   the same for the indices in `points` of the four
  /// @return whether `points` has at least two elements
  /// Equal extremes: the lowest index. A NaN of `points[0]` stays (deliberate), later ones are passed over.
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
  /// @param plane  at least three points (unchecked), of which three are read: degrees taken as they are beside heights in
  ///               their own unit, with nothing scaled to metres
  /// @return a vector, not a position: x in `longitude`, y in `latitude`, z in `z` (narrowed to float). Zero for three
  ///         points on one vertical or, up to rounding, on one line; NaN for NaN input
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
  /// @param plane     at least three points (unchecked); they must run counter-clockwise as seen from above
  /// @param position  degrees
  /// @return in the unit of the heights; 0 when z of the normal is below 1e-12 square degrees: for points that run clockwise
  ///         (deliberate), on one line, or around less than 0.006 square metres at the equator. NaN for NaN input
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
  /// @param source       the boundary; its `pointIndices` ascend (unchecked: the scan ends at the first one beyond the
  ///                     current vertex). Must not be `piece` (unchecked)
  /// @param indexCursor  in: index in `source.pointIndices` of the last mark already handled; the scan starts behind it.
  ///                     -1: at the beginning; not below (unchecked: no mark is then copied). Out: index there of the
  ///                     first mark copied by this call; unchanged when none was. Pass the variable on from piece to piece
  /// @param startIndex   index in `source.points` of the first point of the segment where the piece starts; not negative
  ///                     (unchecked: counts as beyond the end)
  /// @param startRatio   of the way along that segment, narrowed to float, then clamped to [0, 1]; NaN gives a NaN start
  /// @param length       metres. Negative: the piece ends where it starts. NaN, like a NaN vertex, ends it with a NaN point
  /// @param piece        appended to: the points of the piece, and the marks as indices counted from the piece's start: 0
  ///                     for the start itself, always, then v - startIndex for each marked vertex v on the way. Deliberate:
  ///                     these are not shifted by what `piece` held, so it is normally empty
  /// @return the fraction of `length` that was covered: 1 when the piece ends within the boundary, less when that ends
  ///         first, 0 with nothing written when there is no segment to start on. Deliberate: the ratio length / length for
  ///         a full piece, so NaN for a length of 0 (whose cut point is NaN when it starts on a repeated vertex)
  ///
  /// A mark on the segment's first point is not copied, nor one on a vertex where the length runs out: the piece ends with
  /// a cut point before that vertex.
  /// To go on where a piece of k points ended: the next startIndex is i = startIndex + k - 2, the next startRatio is the
  /// distance from source.points[i] to the piece's last point over the length of segment i. A result below 1 says that
  /// the boundary has ended; it is narrowed to float, so a shortfall of less than 3e-8 of `length` goes unseen.
  /// Cost: one distance per vertex on the way, one look at each mark passed. Nothing is reserved.
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
