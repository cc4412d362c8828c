#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/map_vector.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/lane_command.h"
#include "tools/vorel/lane_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

constexpr const char* kDescription =
    "Find the bounding boxes of lines, or of a range of their points.\n"
    "Writes each as a GeoJSON polygon, and can draw a picture.";

constexpr const char* kOutput = R"(
Output
  One Polygon per line, counter-clockwise from the south-west corner; its heights are 0. Properties: line (number of
  the line in the input, from 0), id, first and last (indices of the points at either end of the range), west,
  south, east, north in degrees. A box across the antimeridian has a west greater than its east.
)";

constexpr const char* kExamples = R"(
Examples
  vorel bounds lanes.geojson --out boxes.geojson --picture boxes.svg
  vorel bounds lanes.geojson --only id=1103 --range 2,5)";

struct Options {
  std::string line = "-";
  std::optional<std::string> only;
  std::optional<std::string> range;
  LaneOutputOptions output;
};

std::pair<int, int> ParseRange(const std::string& text) {
  const std::string option = "--range";
  const auto [first, last] = SplitPair(text, ',', option, "is not I,J, two indices of points");
  const std::pair<int, int> range{ParseWhole(first, option, 0), ParseWhole(last, option, -1)};
  if (range.second >= 0 && range.second < range.first) {
    RefuseOption(option, text, "its last point comes before its first");
  }
  return range;
}

void RunBounds(const Options& options) {
  const auto [first, last] = ParseRange(options.range.value_or("0,-1"));
  const std::optional<LineSelection> selection = ParseSelection(options.only, "--only");
  TextSource source = OpenInput(options.line, "LINE");
  LaneOutput output(options.output, {&source});

  const LaneLines input = ReadLaneLines(source, selection);
  GeoJsonWriter writer(output.out());
  std::vector<std::vector<GeoCoordinate>> lines;
  std::vector<std::vector<GeoCoordinate>> boxes;
  for (const LaneLine& line : input.lines) {
    std::vector<tarvo::MapVector2d> corners;
    if (!VorelGeometryAlgorithm::GetBound(line.points, first, last, corners)) {
      throw BadInput(line.label + ": --range " + *options.range + " begins beyond the last point, " +
                     std::to_string(line.points.size() - 1));
    }
    std::vector<GeoCoordinateZ> ring;
    for (const tarvo::MapVector2d& corner : corners) ring.emplace_back(corner.x, corner.y, 0.0f);
    ring.push_back(ring.front());
    const bool toTheEnd = last < 0 || static_cast<std::size_t>(last) >= line.points.size();
    writer.StartPolygon(ring);
    writer.Property("line", line.index);
    writer.JsonProperty("id", line.id);
    writer.Property("first", static_cast<std::size_t>(first));
    writer.Property("last", toTheEnd ? line.points.size() - 1 : static_cast<std::size_t>(last));
    writer.Property("west", FoldLongitude(corners[0].x));
    writer.Property("south", corners[0].y);
    writer.Property("east", FoldLongitude(corners[2].x));
    writer.Property("north", corners[2].y);
    writer.EndFeature();
    if (!output.wantsPicture()) continue;
    lines.push_back(WithoutHeights(line.points));
    ring.pop_back();
    boxes.push_back(WithoutHeights(ring));
  }
  writer.Finish();
  if (output.wantsPicture()) {
    using Shape = PictureLayer::Shape;
    MapPicture picture = output.StartPicture(
        lines,
        {{"box", "box", "fill: #d9e6cf; fill-opacity: 0.5; stroke: #6f9455; stroke-width: 1.2", Shape::kArea},
         {"lane", "line", "fill: none; stroke: #3d6fa5; stroke-width: 1.6", Shape::kLine}});
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const Attributes attributes = {{"data-line", std::to_string(input.lines[i].index)}};
      picture.AddPolygon(0, {boxes[i]}, attributes);
      picture.AddLine(1, lines[i], attributes);
    }
    std::string subtitle = Counted(input.lines.size(), "line");
    if (options.range) subtitle += ", points " + *options.range;
    picture.Write(PictureTitle(source), {subtitle}, output.picture());
  }
  output.Publish();
  NoteLeftOut(source, input.geometriesLeftOut, "no lines");
}

}  // namespace

Command AddBoundsCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("bounds", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with the lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--range", options->range,
                   "Only the points I to J, both included, by their index from 0; a\n"
                   "J of -1 or beyond the end is the last point. Default: all")
      ->type_name("I,J");
  AddSelectionOption(*arguments, "--only", "LINE", options->only);
  AddLaneOutputOptions(*arguments, options->output, "lines and boxes");
  arguments->footer(std::string(kLaneInputHelp) + kOutput + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { RunBounds(*options); }};
}

}  // namespace vorel::tool
