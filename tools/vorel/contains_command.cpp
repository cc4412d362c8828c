#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/point_query.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Tell for each point whether it lies inside a polygon.\n"
    "Several polygons are asked in their order; holes are honoured.";

constexpr const char* kExplanation = R"(Input
  Both files are GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry, or one
  of them per line. POLYGON: each Polygon, and each polygon of a MultiPolygon, counted from 0; held in memory. Rings
  must be closed and may not run around a pole. POINTS: each Point, each position of a MultiPoint, and each vertex
  of a LineString or MultiLineString. Other geometries are left out. Points are read one record at a time, twice
  for a picture (what comes through a pipe is then kept in a temporary file).

Output
  One Point per point, in order. Properties: inside, true or false; polygon, the first polygon that holds the point,
  counted from 0, or null; point, counted from 0. Longitudes are written in [-180, 180].
  Files appear complete or not at all.

Boundary rules
  Planar, in degrees, by the even-odd rule. A point less than 1e-7 degree of longitude (about a centimetre) from an
  edge lies on it and is inside. Of an edge that runs exactly east-west on the south side only the ends are, and one
  on the north side is inside. A point that a hole holds by the same rules is outside. Polygons and points on
  either side of the antimeridian are laid next to each other.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel contains district.geojson stops.geojson --picture stops.svg
  vorel contains counties.geojson < drive.geojson > drive-by-county.geojson)";

/// Beyond the box of a ring by this much, nothing is inside: the library's tolerance at an edge is a tenth of it.
constexpr double kBoxMarginDegrees = 1e-6;

/// One ring with the box that decides quickly.
struct BoxedRing {
  Ring ring;
  GeoRect box;
};

bool RingHolds(const BoxedRing& boxed, const tarvo::GeoCoordinate& point) {
  if (point.latitude < boxed.box.min.latitude || point.latitude > boxed.box.max.latitude) return false;
  for (const int turns : TurnsIntoView({point, point}, boxed.box)) {
    const tarvo::GeoCoordinate shifted(point.longitude + 360.0 * turns, point.latitude);
    if (VorelGeometryAlgorithm::IsPointInPolygon(boxed.ring, shifted)) return true;
  }
  return false;
}

/// Whether the outer ring, the first one, holds the point and no hole does.
bool PolygonHolds(const std::vector<BoxedRing>& polygon, const tarvo::GeoCoordinate& point) {
  if (!RingHolds(polygon.front(), point)) return false;
  for (std::size_t i = 1; i < polygon.size(); ++i) {
    if (RingHolds(polygon[i], point)) return false;
  }
  return true;
}

class ContainsQuery : public PointQuery {
 public:
  explicit ContainsQuery(const PointQueryOptions& options) : PointQuery(options, "POLYGON", "polygon") {}

 private:
  void ReadFigures(GeometryInput& input, BoundsCollector& bounds) override {
    input.ForEachPolygon([&](std::vector<Ring>& rings, std::size_t) {
      bounds.Add(rings.front());
      std::vector<BoxedRing>& polygon = polygons_.emplace_back();
      for (Ring& ring : rings) {
        GeoRect box = BoundsOf(ring);
        box.min.longitude -= kBoxMarginDegrees;
        box.min.latitude -= kBoxMarginDegrees;
        box.max.longitude += kBoxMarginDegrees;
        box.max.latitude += kBoxMarginDegrees;
        polygon.push_back({std::move(ring), box});
      }
    });
  }

  bool WriteAnswer(const tarvo::GeoCoordinate& point, GeoJsonWriter& writer) override {
    std::size_t holder = 0;
    while (holder < polygons_.size() && !PolygonHolds(polygons_[holder], point)) ++holder;
    const bool inside = holder < polygons_.size();
    writer.Property("inside", inside);
    if (inside) {
      writer.Property("polygon", holder);
    } else {
      writer.NullProperty("polygon");
    }
    return inside;
  }

  void NameInLegend(MapLegend& legend) const override {
    legend.area = "polygon";
    legend.point = "inside";
    legend.hollowPoint = "outside";
  }

  void DrawFigures(MapPicture& picture) const override {
    std::vector<Ring> rings;
    for (const std::vector<BoxedRing>& polygon : polygons_) {
      rings.clear();
      for (const BoxedRing& boxed : polygon) rings.push_back(boxed.ring);
      picture.AddPolygon(rings);
    }
  }

  std::vector<std::string> Subtitles(const std::string& insideText, const std::string& outsideText,
                                     const std::string& polygonTitle) const override {
    return {insideText + " inside, " + outsideText + " outside" + kDot +
            Counted(polygons_.size(), "polygon") + " of " + polygonTitle};
  }

  std::vector<std::vector<BoxedRing>> polygons_;
};

}  // namespace

Command AddContainsCommand(CLI::App& program) {
  const auto options = std::make_shared<PointQueryOptions>();
  CLI::App* const arguments = program.add_subcommand("contains", kDescription);
  AddPointQueryArguments(*arguments, *options, "POLYGON", "polygons");
  AddPointQueryOutput(*arguments, *options, "polygons");
  arguments->footer(kExplanation);
  return {arguments, [options] { ContainsQuery(*options).Run(); }};
}

}  // namespace vorel::tool
