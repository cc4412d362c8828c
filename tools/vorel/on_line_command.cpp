#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/point_query.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Tell for each point on which line it lies and at which vertex or segment.\n"
    "Several lines are asked in their order; each in the order of its vertices.";

constexpr const char* kExplanation = R"(Input
  Both files are GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry, or one
  of them per line. LINE: each LineString, and each line of a MultiLineString, counted from 0; held in memory.
  POINTS: each Point, each position of a MultiPoint, and each vertex of a LineString or MultiLineString. Other
  geometries are left out. Points are read one record at a time, twice for a picture (what comes through a pipe is
  then kept in a temporary file).

Output
  One Point per point, in order. Properties: line, the first line that the point lies on, counted from 0; index, the
  first i such that the point is near vertex i of it or on the segment from vertex i - 1 to i; both -1 when it lies
  on none; point, counted from 0. Longitudes are written in [-180, 180].
  Files appear complete or not at all.

Boundary rules
  Near a vertex: at most the tolerance away, exactly that included. Near vertex 0 gives index 1, so that 0 never
  comes. From vertex 1 on, a point must first lie in a square about the vertex, border included: 0.0001, 0.001, 0.01
  or 0.1 degrees to each side for a tolerance below 11, 111, 1113 m or beyond, so that a point due east far from the
  equator may be missed though it is within the tolerance; above 12000 m only vertex 0 is ever near.
  On a segment (--segments): in the segment's box of longitude and latitude, border included, without tolerance. For
  segments longer than one degree a point on the wrong side is refused as well, as far as whole degrees can tell.
  Lines and points on either side of the antimeridian are laid next to each other.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel on-line drive.geojson stops.geojson --tolerance 10 --picture stops.svg
  vorel on-line roads.geojson --tolerance 5 --segments < trace.geojson > matched.geojson)";

constexpr double kLargestSquareDegrees = 0.1;  // half width of the library's largest square about a vertex

struct Options {
  PointQueryOptions query;
  std::string tolerance;
  bool segments = false;
};

class OnLineQuery : public PointQuery {
 public:
  OnLineQuery(const Options& options, double toleranceMetres)
      : PointQuery(options.query, "LINE", "line"),
        toleranceMetres_(toleranceMetres),
        asksSegments_(options.segments) {}

 private:
  /// A line, longitudes unwrapped, with the box around the places that may be near it.
  struct BoxedLine {
    Line line;
    GeoRect box;
  };

  void ReadFigures(GeometryInput& input, BoundsCollector& bounds) override {
    input.ForEachLine([&](Line& line, std::size_t) {
      UnwrapLongitudes(line);
      bounds.Add(line);
      GeoRect box = BoundsOf(line);
      box.min.longitude -= kLargestSquareDegrees;
      box.max.longitude += kLargestSquareDegrees;
      lines_.push_back({line, box});
    });
  }

  bool WriteAnswer(const tarvo::GeoCoordinate& point, GeoJsonWriter& writer) override {
    int lineIndex = -1;
    int index = -1;
    for (std::size_t i = 0; i < lines_.size() && index == -1; ++i) {
      index = IndexOnLine(lines_[i], point);
      if (index != -1) lineIndex = static_cast<int>(i);
    }
    writer.Property("line", lineIndex);
    writer.Property("index", index);
    return index != -1;
  }

  /// The index that the library gives, for the point laid next to the line; -1 when it lies nowhere.
  int IndexOnLine(const BoxedLine& boxed, const tarvo::GeoCoordinate& point) const {
    std::vector<int> candidates = TurnsIntoView({point, point}, boxed.box);
    if (candidates.empty()) candidates.push_back(0);  // vertex 0 is asked by distance alone
    int index = -1;
    for (const int turns : candidates) {
      const tarvo::GeoCoordinate shifted(point.longitude + 360.0 * turns, point.latitude);
      const int found =
          VorelGeometryAlgorithm::PointOnPolyline(boxed.line, shifted, tolerance_, asksSegments_);
      if (found != -1 && (index == -1 || found < index)) index = found;
    }
    return index;
  }

  void NameInLegend(MapLegend& legend) const override {
    legend.route = "line";
    legend.point = "on a line";
    legend.hollowPoint = "on none";
  }

  void DrawFigures(MapPicture& picture) const override {
    for (std::size_t i = 0; i < lines_.size(); ++i) picture.AddRoute(lines_[i].line, i);
  }

  std::vector<std::string> Subtitles(const std::string& onLineText, const std::string& elsewhereText,
                                     const std::string& linesTitle) const override {
    return {onLineText + " within " + ShortestNumber(toleranceMetres_) + " m of a vertex" +
                (asksSegments_ ? " or on a segment" : "") + ", " + elsewhereText + " elsewhere",
            Counted(lines_.size(), "line") + " of " + linesTitle};
  }

  double toleranceMetres_;
  float tolerance_ =
      static_cast<float>(std::min<double>(toleranceMetres_, std::numeric_limits<float>::max()));
  bool asksSegments_;
  std::vector<BoxedLine> lines_;
};

}  // namespace

Command AddOnLineCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("on-line", kDescription);
  AddPointQueryArguments(*arguments, options->query, "LINE", "lines");
  arguments
      ->add_option("--tolerance", options->tolerance,
                   "How far from a vertex a point may lie, in metres: 0 or more;\n"
                   "see Boundary rules for far ones. No default")
      ->type_name("METRES")
      ->required();
  arguments
      ->add_flag("--segments", options->segments,
                 "Ask whether a point lies in the box of a segment too. Default: off")
      ->disable_flag_override();
  AddPointQueryOutput(*arguments, options->query, "lines");
  arguments->footer(kExplanation);
  return {arguments, [options] {
            // The tolerance is refused before any file is opened.
            const double toleranceMetres = ParseMetres(options->tolerance, "--tolerance", true);
            OnLineQuery(*options, toleranceMetres).Run();
          }};
}

}  // namespace vorel::tool
