#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/plain_text.h"
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

struct Options {
  std::string polygon;
  std::string points = "-";
  OutputOptions output;
};

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

class ContainsRun {
 public:
  explicit ContainsRun(const Options& options) {
    if (options.polygon == "-" && options.points == "-") {
      throw BadInput("POINTS -: standard input is read for the polygon already");
    }
    polygonInput_.emplace(options.polygon, "POLYGON", "polygon");
    pointInput_.emplace(options.points, "POINTS", "point");
    output_.emplace(options.output,
                    std::vector<const TextSource*>{&polygonInput_->source(), &pointInput_->source()});
  }

  void Run() {
    ReadPolygons();
    if (output_->wantsPicture()) StartPicture();
    GeoJsonWriter writer(output_->out());
    pointInput_->ForEachPoint([&](const tarvo::GeoCoordinate& point, std::size_t pointIndex) {
      WritePoint(point, pointIndex, writer);
    });
    writer.Finish();
    if (picture_) {
      picture_->Write(PictureTitle(pointInput_->source()),
                      {Counted(insideCount_, "point") + " inside, " +
                       Counted(pointCount_ - insideCount_, "point") + " outside" + kDot +
                       Counted(polygons_.size(), "polygon") + " of " + PictureTitle(polygonInput_->source())},
                      output_->picture());
    }
    output_->Publish();
    polygonInput_->NoteWhatIsLeftOut();
    pointInput_->NoteWhatIsLeftOut();
  }

 private:
  void ReadPolygons() {
    polygonInput_->ForEachPolygon([&](std::vector<Ring>& rings, std::size_t) {
      bounds_.Add(rings.front());
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

  void StartPicture() {
    pointInput_->source().KeepForSecondPass();
    std::size_t count = 0;
    pointInput_->ForEachPoint([&](const tarvo::GeoCoordinate& point, std::size_t pointIndex) {
      bounds_.Add({point});
      count = pointIndex + 1;
    });
    MapLegend legend;
    legend.view.clear();
    legend.route.clear();
    legend.piece.clear();
    legend.arrow.clear();
    legend.area = "polygon";
    legend.point = "inside";
    legend.hollowPoint = "outside";
    picture_.emplace(bounds_.Whole(), legend);
    picture_->SetPointCount(count);
    std::vector<Ring> rings;
    for (const std::vector<BoxedRing>& polygon : polygons_) {
      rings.clear();
      for (const BoxedRing& boxed : polygon) rings.push_back(boxed.ring);
      picture_->AddPolygon(rings);
    }
  }

  void WritePoint(const tarvo::GeoCoordinate& point, std::size_t pointIndex, GeoJsonWriter& writer) {
    std::size_t holder = 0;
    while (holder < polygons_.size() && !PolygonHolds(polygons_[holder], point)) ++holder;
    const bool inside = holder < polygons_.size();
    writer.StartPoint(point);
    writer.Property("inside", inside);
    if (inside) {
      writer.Property("polygon", holder);
    } else {
      writer.NullProperty("polygon");
    }
    writer.Property("point", pointIndex);
    writer.EndFeature();
    if (picture_) {
      picture_->AddPoint(point, inside, {{"data-point", std::to_string(pointIndex)}});
    }
    if (inside) ++insideCount_;
    ++pointCount_;
  }

  std::optional<GeometryInput> polygonInput_;
  std::optional<GeometryInput> pointInput_;
  std::optional<CommandOutput> output_;
  std::optional<MapPicture> picture_;
  std::vector<std::vector<BoxedRing>> polygons_;
  BoundsCollector bounds_;
  std::size_t pointCount_ = 0;
  std::size_t insideCount_ = 0;
};

}  // namespace

Command AddContainsCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("contains", kDescription);
  arguments->add_option("POLYGON", options->polygon, "GeoJSON file with polygons; - for standard input")
      ->type_name("FILE")
      ->required();
  arguments
      ->add_option("POINTS", options->points, "GeoJSON file with points; standard input when absent or -")
      ->type_name("FILE");
  AddOutputOptions(*arguments, options->output, "Where the points go.",
                   "Also draw a map of polygons and points, as SVG.");
  arguments->footer(kExplanation);
  return {arguments, [options] { ContainsRun(*options).Run(); }};
}

}  // namespace vorel::tool
