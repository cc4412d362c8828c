#include "inputs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include "base/geodesy/wgs84.h"
#include "bench_lines.h"
#include "support/lines.h"
#include "support/uniform.h"

namespace peers {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::Uniform;

constexpr double kMetresPerDegree = 111195.0;  // of latitude, on a sphere: right enough to lay out inputs
constexpr double kLatitude = 47.5;
constexpr double kLongitude = 7.5;

double CosDegrees(double degrees) {
  return std::cos(degrees * tarvo::geodesy::kRadiansPerDegree);
}

std::string WithThousands(std::size_t count) {
  std::string digits = std::to_string(count);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
  return digits;
}

/// A road that winds eastward: steps of 10 to 30 m, the heading drifts and is pulled back. The middle of the route lies
/// near (7.5, 47.5) whatever its size.
Line Road(std::size_t vertexCount) {
  std::mt19937 generator(50001);
  Line line;
  double longitude = kLongitude - 1.1e-4 * static_cast<double>(vertexCount);
  double latitude = kLatitude;
  double turn = 0.0;  // radians to the left of due east
  for (std::size_t i = 0; i < vertexCount; ++i) {
    line.emplace_back(longitude, latitude);
    const double step = Uniform(generator, 10.0, 30.0) / kMetresPerDegree;
    turn = 0.97 * turn + Uniform(generator, -0.25, 0.25) - 0.5 * (latitude - kLatitude);
    longitude += step * std::cos(turn) / CosDegrees(kLatitude);
    latitude += step * std::sin(turn);
  }
  return line;
}

/// A road straight to the north-east with some jitter, 18 m a step.
Line Diagonal(std::size_t vertexCount) {
  std::mt19937 generator(50002);
  Line line;
  const double middle = 0.5 * static_cast<double>(vertexCount);
  for (std::size_t i = 0; i < vertexCount; ++i) {
    const double along = 1.2e-4 * (static_cast<double>(i) - middle);
    line.emplace_back(along + Uniform(generator, -3e-5, 3e-5), along + Uniform(generator, -3e-5, 3e-5));
  }
  return line;
}

DistanceCase MakePairs(const char* name, double largestDifference) {
  std::mt19937 generator(50003);
  DistanceCase c;
  for (int i = 0; i < 1024; ++i) {
    const GeoCoordinate from{Uniform(generator, -150.0, 150.0), Uniform(generator, -60.0, 60.0)};
    const double sign = i % 2 == 0 ? 1.0 : -1.0;
    const double east = Uniform(generator, 0.5, 1.0) * largestDifference;
    const double north = Uniform(generator, 0.5, 1.0) * largestDifference;
    c.pairs.emplace_back(from, GeoCoordinate(from.longitude + sign * east, from.latitude + north));
  }
  static_cast<JobCase&>(c) = {"DistanceTo", name, 1024, 1024, "pair"};
  return c;
}

/// Nearly opposite points: where the shortest path is hardest to find.
DistanceCase OppositePairs() {
  std::mt19937 generator(50007);
  DistanceCase c;
  c.opposite = true;
  for (int i = 0; i < 1024; ++i) {
    const GeoCoordinate from{Uniform(generator, -179.0, -1.0), Uniform(generator, -60.0, 60.0)};
    c.pairs.emplace_back(from, GeoCoordinate(from.longitude + 180.0 + Uniform(generator, -0.6, 0.6),
                                             -from.latitude + Uniform(generator, -0.6, 0.6)));
  }
  static_cast<JobCase&>(c) = {"DistanceTo", "nearly opposite points", 1024, 1024, "pair"};
  return c;
}

template <class Case>
Case Named(const char* job, std::string input, std::size_t size, const char* unit) {
  Case c;
  const double count = static_cast<double>(size);
  static_cast<JobCase&>(c) = {job, std::move(input), count, count, unit};
  return c;
}

template <class Case>
Case OfLine(const char* job, const std::string& input, Line line) {
  Case c = Named<Case>(job, input, line.size(), "vertex");
  c.line = std::move(line);
  return c;
}

Rect Around(const GeoCoordinate& centre, double halfWidth) {
  return {{centre.longitude - halfWidth, centre.latitude - halfWidth},
          {centre.longitude + halfWidth, centre.latitude + halfWidth}};
}

ClippingCase Clipping(const std::string& input, Line line, const Rect& view) {
  ClippingCase c = OfLine<ClippingCase>("CutPolyline", input, std::move(line));
  c.view = view;
  return c;
}

/// Where a view two kilometres wide stands half way along the route.
Rect SmallView(const Line& line) {
  return Around(line[line.size() / 2], 0.01);
}
/// From the route's first quarter to its third, by longitude.
Rect HalfView(const Line& line) {
  return {{line[line.size() / 4].longitude, -90.0}, {line[3 * line.size() / 4].longitude, 90.0}};
}
/// A city of some 20 km.
Rect CityView(const Line& line) {
  return Around(line[line.size() / 2], 0.1);
}

void AddClipping(Inputs& inputs) {
  for (const std::size_t size : {100u, 10000u, 1000000u}) {
    const Line road = Road(size);
    inputs.clipping.push_back(Clipping("small view, route of " + WithThousands(size), road, SmallView(road)));
    inputs.clipping.push_back(Clipping("half the route of " + WithThousands(size), road, HalfView(road)));
    const Line diagonal = Diagonal(size);
    const double span = 1.2e-4 * static_cast<double>(size);
    inputs.clipping.push_back(Clipping("diagonal of " + WithThousands(size) + " misses the view", diagonal,
                                       Around({0.2 * span, -0.2 * span}, 0.1 * span)));
  }
  for (const std::size_t size : {100u, 10000u}) {
    Line zigzag;
    for (std::size_t i = 0; i < size; ++i)
      zigzag.emplace_back(kLongitude + 2e-4 * static_cast<double>(i), kLatitude + (i % 2 ? 1e-4 : -1e-4));
    inputs.clipping.push_back(Clipping("each of " + WithThousands(size) + " segments crosses the border",
                                       zigzag, {{0.0, kLatitude}, {90.0, 90.0}}));
  }
}

void AddSymbols(Inputs& inputs) {
  for (const std::size_t size : {100u, 10000u, 1000000u}) {
    const Line road = Road(size);
    ClippingCase c =
        OfLine<ClippingCase>("GetInterpolateShapePoints", "city view, route of " + WithThousands(size), road);
    c.view = CityView(road);
    inputs.symbols.push_back(c);
  }
  for (const std::size_t size : {100u, 10000u}) {
    ClippingCase c = OfLine<ClippingCase>(
        "GetInterpolateShapePoints", "in and out of the view, route of " + WithThousands(size), Road(size));
    c.view = {{-90.0, kLatitude}, {90.0, 90.0}};
    inputs.symbols.push_back(c);
  }
}

/// A star about (7.5, 47.5), about a kilometre across, with a jagged border.
Line Star(std::size_t vertexCount) {
  std::mt19937 generator(50004);
  Line polygon;
  for (std::size_t i = 0; i < vertexCount; ++i) {
    const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(vertexCount);
    const double radius = 0.01 * (i % 2 == 0 ? Uniform(generator, 0.8, 1.0) : Uniform(generator, 0.5, 0.7));
    polygon.emplace_back(kLongitude + radius * std::cos(angle), kLatitude + radius * std::sin(angle));
  }
  return polygon;
}

/// A comb whose teeth all span the latitudes between its two rows of tips.
Line Comb(std::size_t vertexCount) {
  Line polygon{{kLongitude - 0.01, kLatitude - 0.011}, {kLongitude + 0.01, kLatitude - 0.011}};
  const std::size_t tips = vertexCount - 2;
  for (std::size_t i = 0; i < tips; ++i) {
    polygon.emplace_back(kLongitude + 0.01 - 0.02 * static_cast<double>(i) / static_cast<double>(tips - 1),
                         kLatitude + (i % 2 == 0 ? 0.01 : -0.01));
  }
  return polygon;
}

ContainmentCase Containment(const std::string& input, Line polygon, Line points) {
  ContainmentCase c = Named<ContainmentCase>("IsPointInPolygon", input, polygon.size(), "point");
  c.items = static_cast<double>(points.size());
  c.polygon = std::move(polygon);
  c.points = std::move(points);
  return c;
}

void AddContainment(Inputs& inputs) {
  std::mt19937 generator(50005);
  Line points;
  for (int i = 0; i < 1024; ++i) {
    points.emplace_back(kLongitude + Uniform(generator, -0.0105, 0.0105),
                        kLatitude + Uniform(generator, -0.0105, 0.0105));
  }
  for (const std::size_t size : {10u, 100u, 1000u}) {
    inputs.containment.push_back(Containment("star of " + WithThousands(size), Star(size), points));
  }
  for (const std::size_t size : {10u, 100u, 1000u}) {
    Line star = Star(size);
    star[1].latitude = star[0].latitude;
    Line level = points;
    for (GeoCoordinate& point : level) point.latitude = star[0].latitude;
    inputs.containment.push_back(
        Containment("an edge of " + WithThousands(size) + " level with every point", star, level));
  }
  for (const std::size_t size : {10u, 100u, 1000u}) {
    Line inner = points;
    for (GeoCoordinate& point : inner) point.latitude = kLatitude + 0.9 * (point.latitude - kLatitude);
    inputs.containment.push_back(
        Containment("comb of " + WithThousands(size) + ", every edge takes part", Comb(size), inner));
  }
}

ProjectionCase Projection(const std::string& input, LineZ lane, bool farEnd) {
  std::mt19937 generator(50006);
  ProjectionCase c = Named<ProjectionCase>("ProjectionPosToLinesDistance", input, lane.size(), "segment");
  for (int i = 0; i < 64; ++i) {
    const std::size_t at = farEnd ? lane.size() - 2 : generator() % (lane.size() - 1);
    const double ratio = Uniform(generator, 0.1, 0.9);
    const double cosine = CosDegrees(lane[at].latitude);
    c.positions.emplace_back(lane[at].longitude + ratio * (lane[at + 1].longitude - lane[at].longitude) +
                                 Uniform(generator, -5.0, 5.0) / kMetresPerDegree / cosine,
                             lane[at].latitude + ratio * (lane[at + 1].latitude - lane[at].latitude) +
                                 Uniform(generator, -5.0, 5.0) / kMetresPerDegree,
                             lane[at].z);
  }
  c.items = 64.0 * static_cast<double>(lane.size() - 1);
  c.lane = std::move(lane);
  return c;
}

/// An arc of 100 m about the only position: no vertex is nearer than another.
ProjectionCase ProjectionFromCentre(std::size_t vertexCount) {
  ProjectionCase c = Named<ProjectionCase>("ProjectionPosToLinesDistance",
                                           "lane of " + WithThousands(vertexCount) + " around the position",
                                           vertexCount, "segment");
  const double radius = 100.0 / kMetresPerDegree;
  for (std::size_t i = 0; i < vertexCount; ++i) {
    const double angle = 6.2 * static_cast<double>(i) / static_cast<double>(vertexCount);
    c.lane.emplace_back(kLongitude + radius * std::cos(angle) / CosDegrees(kLatitude),
                        kLatitude + radius * std::sin(angle), 0.0f);
  }
  c.positions.assign(64, GeoCoordinateZ(kLongitude, kLatitude, 0.0f));
  c.items = 64.0 * static_cast<double>(vertexCount - 1);
  return c;
}

/// Every segment lies beyond the range.
ProjectionCase ProjectionOutOfRange(std::size_t vertexCount) {
  ProjectionCase c = Projection("lane of " + WithThousands(vertexCount) + ", everything far",
                                bench::Lane(static_cast<std::int64_t>(vertexCount)), false);
  for (GeoCoordinateZ& position : c.positions) {
    position.longitude += 5000.0 / kMetresPerDegree;
    position.latitude -= 5000.0 / kMetresPerDegree;
  }
  c.range = 50.0;
  return c;
}

void AddLanes(Inputs& inputs) {
  for (const int size : {10, 100, 1000}) {
    const std::string count = WithThousands(static_cast<std::size_t>(size));
    inputs.projection.push_back(Projection("lane of " + count, bench::Lane(size), false));
    inputs.projection.push_back(
        Projection("lane of " + count + ", match at the far end", bench::Lane(size), true));
    inputs.projection.push_back(ProjectionOutOfRange(static_cast<std::size_t>(size)));
    inputs.projection.push_back(ProjectionFromCentre(static_cast<std::size_t>(size)));
    OffsetCase lane =
        Named<OffsetCase>("PanLinePoints", "lane of " + count, static_cast<std::size_t>(size), "point");
    lane.lane = bench::Lane(size);
    inputs.offset.push_back(lane);
    OffsetCase stairs =
        Named<OffsetCase>("PanLinePoints", "right angles, " + count, static_cast<std::size_t>(size), "point");
    stairs.lane = bench::Stairs(size);
    inputs.offset.push_back(stairs);
  }
}

void AddThinning(Inputs& inputs) {
  for (const std::size_t size : {100u, 1000u, 10000u}) {
    for (const double spacing : {200.0, 10000.0}) {
      ThinningCase c = Named<ThinningCase>(
          "PreProcessRoutePoints",
          (spacing < 1000.0 ? "200 m, route of " : "10 km, route of ") + WithThousands(size), size, "vertex");
      const Line road = Road(size);
      c.spacing = spacing;
      for (auto from = road.begin(); from != road.end(); from += static_cast<std::ptrdiff_t>(size / 10))
        c.route.emplace_back(from, from + static_cast<std::ptrdiff_t>(size / 10));
      inputs.thinning.push_back(c);
    }
  }
}

/// The longest of the real lines in `folder` among files whose name starts with `file`; empty where there are none.
LineZ LongestRealLine(const std::string& folder, const std::string& file) {
  LineZ longest;
  for (const vorel::test::NamedLineZ& line : vorel::test::RealLinesZ(folder)) {
    if (line.name.compare(0, file.size(), file) == 0 && line.points.size() > longest.size())
      longest = line.points;
  }
  return longest;
}

HeightLengthCase HeightLength(const std::string& input, LineZ line) {
  HeightLengthCase c = Named<HeightLengthCase>("GetDistanceByVector, 3-D", input, line.size(), "vertex");
  c.line = std::move(line);
  return c;
}

void AddRealRoutes(Inputs& inputs) {
  for (const auto& [file, name] :
       {std::pair<const char*, const char*>{"andorra_mountain", "real mountain route"},
        {"monaco_city", "real city route"}}) {
    const LineZ withHeight = LongestRealLine("routes", file);
    if (withHeight.empty()) continue;
    const Line line = vorel::test::WithoutHeight(withHeight);
    const std::string label = std::string(name) + ", " + WithThousands(line.size());
    inputs.length.push_back(OfLine<LengthCase>("GetDistance", label, line));
    inputs.walking.push_back(OfLine<LengthCase>("", label, line));
    SamplingCase sampling = OfLine<SamplingCase>("CalcPointsInPolyline", label, line);
    sampling.interval = 50.0;
    inputs.sampling.push_back(sampling);
    inputs.clipping.push_back(Clipping("small view, " + label, line, SmallView(line)));
    ClippingCase symbols = OfLine<ClippingCase>("GetInterpolateShapePoints", label, line);
    symbols.view = SmallView(line);
    inputs.symbols.push_back(symbols);
    ThinningCase thinning =
        Named<ThinningCase>("PreProcessRoutePoints", "200 m, " + label, line.size(), "vertex");
    thinning.spacing = 200.0;
    thinning.route = {line};
    inputs.thinning.push_back(thinning);
  }
  const LineZ heights = LongestRealLine("routes", "norway_roads_3d");
  if (!heights.empty())
    inputs.heightLength.push_back(HeightLength("real road, " + WithThousands(heights.size()), heights));
}

void AddRealLanes(Inputs& inputs) {
  const LineZ lane = LongestRealLine("lanes", "testfeld");
  if (lane.empty()) return;
  const std::string label = "real motorway lane, " + WithThousands(lane.size());
  inputs.heightLength.push_back(HeightLength(label, lane));
  inputs.projection.push_back(Projection(label, lane, false));
  OffsetCase offset = Named<OffsetCase>("PanLinePoints", label, lane.size(), "point");
  offset.lane = lane;
  inputs.offset.push_back(offset);
}

void AddRealPolygon(Inputs& inputs) {
  Line polygon = vorel::test::WithoutHeight(LongestRealLine("polygons", "andorra"));
  if (polygon.empty()) return;
  polygon.pop_back();  // rings repeat their first vertex
  const auto [west, east] = std::minmax_element(
      polygon.begin(), polygon.end(),
      [](const GeoCoordinate& a, const GeoCoordinate& b) { return a.longitude < b.longitude; });
  const auto [south, north] = std::minmax_element(
      polygon.begin(), polygon.end(),
      [](const GeoCoordinate& a, const GeoCoordinate& b) { return a.latitude < b.latitude; });
  std::mt19937 generator(50008);
  Line points;
  for (int i = 0; i < 1024; ++i) {
    points.emplace_back(Uniform(generator, west->longitude, east->longitude),
                        Uniform(generator, south->latitude, north->latitude));
  }
  inputs.containment.push_back(Containment("real area, " + WithThousands(polygon.size()), polygon, points));
}

}  // namespace

Inputs MakeInputs() {
  Inputs inputs;
  inputs.distance = {MakePairs("near: 100 m", 0.001), MakePairs("middle: 2 degrees", 2.0),
                     MakePairs("far: 25 degrees", 25.0), OppositePairs()};
  for (const std::size_t size : {100u, 10000u, 1000000u}) {
    const std::string label = "route of " + WithThousands(size);
    const Line road = Road(size);
    inputs.length.push_back(OfLine<LengthCase>("GetDistance", label, road));
    inputs.walking.push_back(OfLine<LengthCase>("", label, road));
    HeightLengthCase withHeight = Named<HeightLengthCase>("GetDistanceByVector, 3-D", label, size, "vertex");
    for (std::size_t i = 0; i < size; ++i)
      withHeight.line.emplace_back(road[i].longitude, road[i].latitude, static_cast<float>(i % 100));
    inputs.heightLength.push_back(withHeight);
    SamplingCase sampling = OfLine<SamplingCase>("CalcPointsInPolyline", "50 m, " + label, road);
    sampling.interval = 50.0;
    inputs.sampling.push_back(sampling);
  }
  for (const std::size_t size : {100u, 10000u}) {
    Line longSteps;
    LineZ withHeight;
    for (std::size_t i = 0; i < size; ++i) {
      longSteps.emplace_back(i % 2 == 0 ? -4.0 : 4.0,
                             -40.0 + 80.0 * static_cast<double>(i) / static_cast<double>(size));
      withHeight.emplace_back(longSteps.back().longitude, longSteps.back().latitude, 100.0f);
    }
    const std::string label = WithThousands(size) + " steps of 8 degrees";
    inputs.length.push_back(OfLine<LengthCase>("GetDistance", label, longSteps));
    inputs.walking.push_back(OfLine<LengthCase>("", label, longSteps));
    inputs.heightLength.push_back(HeightLength(label, withHeight));
    SamplingCase dense =
        OfLine<SamplingCase>("CalcPointsInPolyline", "1 m, route of " + WithThousands(size), Road(size));
    dense.interval = 1.0;
    inputs.sampling.push_back(dense);
  }
  AddClipping(inputs);
  AddSymbols(inputs);
  AddContainment(inputs);
  AddLanes(inputs);
  AddThinning(inputs);
  AddRealRoutes(inputs);
  AddRealLanes(inputs);
  AddRealPolygon(inputs);
  return inputs;
}

std::vector<LocalPoint> LocalMetres(const LineZ& points, const GeoCoordinate& origin) {
  std::vector<LocalPoint> local;
  for (const GeoCoordinateZ& point : points) {
    local.push_back({(point.longitude - origin.longitude) * kMetresPerDegree * CosDegrees(origin.latitude),
                     (point.latitude - origin.latitude) * kMetresPerDegree});
  }
  return local;
}

double PlanarLength(const Line& line) {
  double sum = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const double east = line[i].longitude - line[i - 1].longitude;
    const double north = line[i].latitude - line[i - 1].latitude;
    sum += std::sqrt(east * east + north * north);
  }
  return sum;
}

}  // namespace peers
