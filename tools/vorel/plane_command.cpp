#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/lane_command.h"
#include "tools/vorel/lane_input.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

constexpr const char* kDescription =
    "Tell the height of a place on the plane through three points.\n"
    "Writes the place as a GeoJSON point with that height.";

constexpr const char* kExplanation = R"(Input
  GeoJSON in UTF-8. The first three positions of its Points, MultiPoints and LineStrings count, in their order;
  other geometries are left out. Positions are [longitude, latitude, height] in degrees and metres; a missing height
  is 0. They must run counter-clockwise as seen from above. Give the first two the same height: otherwise the plane
  passes through the first point only.

Output
  One Point at the place, its third number the height. Properties: height; plane, which is
    upward      the points run counter-clockwise, and the height is that of the plane
    downward    they run clockwise; the height is 0
    degenerate  they lie on one line, or within some thousandths of a square metre; the height is 0
  normal, the plane's normal vector [x, y, z] in degrees and metres as they are. For the last two a line on standard
  error says so.
)";

constexpr const char* kExamples = R"(
Examples
  vorel plane corners.geojson --at 139.9331,35.9030
  vorel plane corners.geojson --at=-31.4180,47.2140 --out height.geojson)";

struct Options {
  std::string points = "-";
  std::string at;
  LaneOutputOptions output;
};

GeoCoordinate ParsePlace(const std::string& text) {
  const std::string option = "--at";
  const auto [longitudeText, latitudeText] =
      SplitPair(text, ',', option, "is not LON,LAT, two numbers of degrees");
  const GeoCoordinate place{ParseNumber(longitudeText, option), ParseNumber(latitudeText, option)};
  if (std::fabs(place.longitude) > 360.0) {
    RefuseOption(option, text, "longitude " + ShortestNumber(place.longitude) + " is beyond 360 degrees");
  }
  if (std::fabs(place.latitude) > 90.0) {
    RefuseOption(option, text,
                 "latitude " + ShortestNumber(place.latitude) +
                     " is beyond 90 degrees (the order is longitude,latitude)");
  }
  return place;
}

/// What becomes of a plane with this z of its normal; the library's own bound.
const char* PlaneKind(float normalZ) {
  constexpr double kLeastNormal = 1e-12;  // square degrees
  const auto z = static_cast<double>(normalZ);
  if (z >= kLeastNormal) return "upward";
  return z <= -kLeastNormal ? "downward" : "degenerate";
}

void RunPlane(const Options& options) {
  GeoCoordinate place = ParsePlace(options.at);
  TextSource source = OpenInput(options.points, "POINTS");
  LaneOutput output(options.output, {&source});
  std::vector<GeoCoordinateZ> points;
  std::size_t leftOut = 0;
  GeoJsonReader(source).ForEachGeometry([&](const Geometry& geometry) {
    if (!AppendPositions(geometry, points)) ++leftOut;
  });
  if (points.size() < 3) {
    throw BadInput(source.name() + ": a plane needs three points, here " +
                   (points.size() == 1 ? "is " : "are ") + std::to_string(points.size()));
  }
  points.resize(3);
  std::vector<GeoCoordinate> strip = WithoutHeights(points);
  strip.push_back(place);
  UnwrapLongitudes(points);
  UnwrapLongitudes(strip);
  place = strip.back();

  const GeoCoordinateZ normal = VorelGeometryAlgorithm::CalculatePlaneNormalVector(points);
  const double height = VorelGeometryAlgorithm::GetPointZInPlane(points, place);
  const std::string kind = PlaneKind(normal.z);
  const auto narrowHeight = static_cast<float>(height);
  if (!std::isfinite(height) || !std::isfinite(narrowHeight) || !std::isfinite(normal.z)) {
    throw BadInput(source.name() + ": the height of the plane at " + options.at + " is beyond all numbers");
  }
  GeoJsonWriter writer(output.out());
  writer.StartPoint(GeoCoordinateZ{place.longitude, place.latitude, narrowHeight});
  writer.Property("height", height);
  writer.JsonProperty("plane", "\"" + kind + "\"");
  writer.JsonProperty("normal", "[" + ShortestNumber(normal.longitude) + "," +
                                    ShortestNumber(normal.latitude) + "," + ShortestNumber(normal.z) + "]");
  writer.EndFeature();
  writer.Finish();
  output.Publish();
  NoteLeftOut(source, leftOut, "neither points nor lines");
  if (kind == "downward") PrintNote(source.name() + ": the three points run clockwise, so the height is 0");
  if (kind == "degenerate") {
    PrintNote(source.name() + ": the three points lie on one line or too close together, so the height is 0");
  }
}

}  // namespace

Command AddPlaneCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("plane", kDescription);
  arguments
      ->add_option("POINTS", options->points,
                   "GeoJSON file with three points or more; standard input when\nabsent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--at", options->at,
                   "The place, in degrees: longitude, -360 to 360, and latitude, -90\n"
                   "to 90, with a comma")
      ->type_name("LON,LAT")
      ->required();
  AddLaneOutputOptions(*arguments, options->output, "");
  arguments->footer(std::string(kExplanation) + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { RunPlane(*options); }};
}

}  // namespace vorel::tool
