#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    "Shift lines sideways, as from the middle of a lane to its border.\n"
    "Writes each as a GeoJSON line with as many points and the same heights, and can draw a picture.";

constexpr const char* kOutput = R"(
Output
  One LineString per line. Properties: line (number of the line in the input, from 0), id, metres, side.
  Left and right are as seen along the line. Each segment moves along its own normal; neighbours are joined where
  they cross, but at a hairpin, where the crossing is far away, the joint is the moved end of the segment before.
  On the inside of a bend tighter than the offset the line folds over itself.
)";

constexpr const char* kExamples = R"(
Examples
  vorel offset lanes.geojson --metres 1.75 --side left --out borders.geojson --picture offset.svg
  vorel offset map.geojson --only kind=lane --metres 3.5 --side right)";

struct Options {
  std::string line = "-";
  std::optional<std::string> only;
  std::string metres;
  std::string side;
  LaneOutputOptions output;
};

float ParseOffset(const std::string& text) {
  const double metres = ParseNumber(text, "--metres");
  if (std::fabs(metres) <= 100000.0) return static_cast<float>(metres);
  RefuseOption("--metres", text, "is beyond 100000");
}

bool ParseLeft(const std::string& text) {
  if (text == "left") return true;
  if (text == "right") return false;
  RefuseOption("--side", text, "is neither left nor right");
}

void RunOffset(const Options& options) {
  const float metres = ParseOffset(options.metres);
  const bool left = ParseLeft(options.side);
  const std::optional<LineSelection> selection = ParseSelection(options.only, "--only");
  TextSource source = OpenInput(options.line, "LINE");
  LaneOutput output(options.output, {&source});

  const LaneLines input = ReadLaneLines(source, selection);
  GeoJsonWriter writer(output.out());
  std::vector<std::vector<GeoCoordinate>> lines;  // before, after, before, after...
  for (const LaneLine& line : input.lines) {
    std::vector<GeoCoordinateZ> moved;
    VorelGeometryAlgorithm::PanLinePoints(line.points, metres, left, moved);
    RefuseOffTheMap(line, moved, "the offset line");
    writer.StartLine(moved);
    writer.Property("line", line.index);
    writer.JsonProperty("id", line.id);
    writer.JsonProperty("metres", ShortestNumber(metres));
    writer.JsonProperty("side", left ? "\"left\"" : "\"right\"");
    writer.EndFeature();
    if (!output.wantsPicture()) continue;
    lines.push_back(WithoutHeights(line.points));
    lines.push_back(WithoutHeights(moved));
  }
  writer.Finish();
  if (output.wantsPicture()) {
    MapPicture picture = output.StartPicture(
        lines, {{"lane", "line", "fill: none; stroke: #8296a5; stroke-width: 1.6", {}},
                {"moved", "offset", "fill: none; stroke: #c8321e; stroke-width: 1.6", {}}});
    for (std::size_t i = 0; i < lines.size(); ++i) {
      picture.AddLine(i % 2, lines[i], {{"data-line", std::to_string(input.lines[i / 2].index)}});
    }
    picture.Write(
        PictureTitle(source),
        {Counted(input.lines.size(), "line") + ", " + ShortestNumber(metres) + " m to the " + options.side},
        output.picture());
  }
  output.Publish();
  NoteLeftOut(source, input.geometriesLeftOut, "no lines");
}

}  // namespace

Command AddOffsetCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("offset", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with the lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--metres", options->metres,
                   "How far: metres, -100000 to 100000; a negative number moves to\n"
                   "the other side (--metres=-2)")
      ->type_name("METRES")
      ->required();
  arguments->add_option("--side", options->side, "To which side of the line: left or right")
      ->type_name("left|right")
      ->required();
  AddSelectionOption(*arguments, "--only", "LINE", options->only);
  AddLaneOutputOptions(*arguments, options->output, "the lines before and after");
  arguments->footer(std::string(kLaneInputHelp) + kOutput + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { RunOffset(*options); }};
}

}  // namespace vorel::tool
