#include <algorithm>
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
#include "tools/vorel/progress.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

constexpr const char* kDescription =
    "Make the shaft of an arrow that follows a line, as on a lane to be taken.\n"
    "Writes its two edges and its outline as GeoJSON, and can draw a picture.";

constexpr const char* kOutput = R"(
Output
  For each line three features: the shaft's outline, a Polygon whose ring runs counter-clockwise; the left and the
  right edge, LineStrings of equally many points from the arrow's tail to its head. Properties: part (shaft, left
  edge, right edge), line (number of the line in the input, from 0), id, width. Left and right are as seen along
  the line. The edges may have more points than the line: one is added before and after each bend; and fewer, for
  those that would run backward on the inside of a bend are dropped. Where bends follow each other within the width
  the outline may cross itself. A line of which no edge of two points is left (such as one shorter than 1 cm) has
  no shaft and is left out, with a note on standard error.
)";

constexpr const char* kExamples = R"(
Examples
  vorel arrow lane.geojson --width 2.5 --line-as centre --out arrow.geojson --picture arrow.svg
  vorel arrow map.geojson --only id=1103 --width 3 --line-as left)";

struct Options {
  std::string line = "-";
  std::optional<std::string> only;
  std::string width;
  std::string lineAs = "centre";
  LaneOutputOptions output;
};

ArrowType ParseArrowType(const std::string& text) {
  if (text == "left") return ArrowType::kLineAsLeftEdge;
  if (text == "centre" || text == "center") return ArrowType::kLineAsCenter;
  if (text == "right") return ArrowType::kLineAsRightEdge;
  RefuseOption("--line-as", text, "is neither left, centre nor right");
}

/// The outline from the edges: along the right one and back along the left one, closed, counter-clockwise.
std::vector<GeoCoordinateZ> Outline(const std::vector<GeoCoordinateZ>& left,
                                    const std::vector<GeoCoordinateZ>& right) {
  std::vector<GeoCoordinateZ> ring = right;
  ring.insert(ring.end(), left.rbegin(), left.rend());
  ring.push_back(ring.front());
  // A shaft that crosses itself may enclose more of its area the other way round.
  double doubleArea = 0.0;
  const GeoCoordinateZ& origin = ring.front();
  for (std::size_t i = 1; i < ring.size(); ++i) {
    doubleArea += (ring[i - 1].longitude - origin.longitude) * (ring[i].latitude - origin.latitude) -
                  (ring[i].longitude - origin.longitude) * (ring[i - 1].latitude - origin.latitude);
  }
  if (doubleArea < 0.0) std::reverse(ring.begin(), ring.end());
  return ring;
}

struct Shaft {
  const LaneLine* line = nullptr;
  std::vector<GeoCoordinateZ> left;
  std::vector<GeoCoordinateZ> right;
  std::vector<GeoCoordinateZ> outline;
};

void WriteShaft(GeoJsonWriter& writer, const Shaft& shaft, float width) {
  const auto finish = [&](const char* part) {
    writer.JsonProperty("part", part);
    writer.Property("line", shaft.line->index);
    writer.JsonProperty("id", shaft.line->id);
    writer.JsonProperty("width", ShortestNumber(width));
    writer.EndFeature();
  };
  writer.StartPolygon(shaft.outline);
  finish("\"shaft\"");
  writer.StartLine(shaft.left);
  finish("\"left edge\"");
  writer.StartLine(shaft.right);
  finish("\"right edge\"");
}

void RunArrow(const Options& options) {
  const auto width = static_cast<float>(ParsePositive(options.width, "--width", 1000.0));
  const ArrowType arrowType = ParseArrowType(options.lineAs);
  const std::optional<LineSelection> selection = ParseSelection(options.only, "--only");
  TextSource source = OpenInput(options.line, "LINE");
  LaneOutput output(options.output, {&source});

  const LaneLines input = ReadLaneLines(source, selection);
  GeoJsonWriter writer(output.out());
  std::vector<Shaft> shafts;
  for (const LaneLine& line : input.lines) {
    Shaft shaft;
    shaft.line = &line;
    VorelGeometryAlgorithm::CalcBoundaryPoints(line.points, width, arrowType, shaft.left, shaft.right);
    if (shaft.left.size() < 2) continue;
    RefuseOffTheMap(line, shaft.left, "the arrow's left edge");
    RefuseOffTheMap(line, shaft.right, "the arrow's right edge");
    shaft.outline = Outline(shaft.left, shaft.right);
    WriteShaft(writer, shaft, width);
    shafts.push_back(std::move(shaft));
  }
  writer.Finish();
  if (output.wantsPicture()) {
    std::vector<std::vector<GeoCoordinate>> extent;
    for (const LaneLine& line : input.lines) extent.push_back(WithoutHeights(line.points));
    for (const Shaft& shaft : shafts) extent.push_back(WithoutHeights(shaft.outline));
    using Shape = PictureLayer::Shape;
    MapPicture picture = output.StartPicture(
        extent, {{"shaft", "shaft", "fill: #f0c36a; fill-opacity: 0.55; stroke: none", Shape::kArea},
                 {"lane", "line", "fill: none; stroke: #55656f; stroke-width: 1", Shape::kLine},
                 {"left-edge", "left", "fill: none; stroke: #c8321e; stroke-width: 1.6", Shape::kLine},
                 {"right-edge", "right", "fill: none; stroke: #2f7d4f; stroke-width: 1.6", Shape::kLine}});
    for (const LaneLine& line : input.lines) {
      picture.AddLine(1, WithoutHeights(line.points), {{"data-line", std::to_string(line.index)}});
    }
    for (const Shaft& shaft : shafts) {
      const Attributes attributes = {{"data-line", std::to_string(shaft.line->index)}};
      std::vector<GeoCoordinate> ring = WithoutHeights(shaft.outline);
      ring.pop_back();
      picture.AddPolygon(0, {ring}, attributes);
      picture.AddLine(2, WithoutHeights(shaft.left), attributes);
      picture.AddLine(3, WithoutHeights(shaft.right), attributes);
    }
    picture.Write(PictureTitle(source),
                  {Counted(shafts.size(), "arrow shaft") + ", " + ShortestNumber(width) +
                   " m wide, line as " + options.lineAs},
                  output.picture());
  }
  output.Publish();
  NoteLeftOut(source, input.geometriesLeftOut, "no lines");
  const std::size_t withoutShaft = input.lines.size() - shafts.size();
  if (withoutShaft > 0) {
    PrintNote(source.name() + ": left out " + Counted(withoutShaft, "line") + " too short for a shaft");
  }
}

}  // namespace

Command AddArrowCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("arrow", kDescription);
  arguments
      ->add_option("LINE", options->line,
                   "GeoJSON file with the lines, each from an arrow's tail to its\n"
                   "head; standard input when absent or -")
      ->type_name("FILE");
  arguments->add_option("--width", options->width, "Of the whole shaft: metres, greater than 0, at most 1000")
      ->type_name("METRES")
      ->required();
  arguments
      ->add_option("--line-as", options->lineAs,
                   "Where the line runs in the shaft: as its left edge, its centre\n"
                   "or its right edge. Default: centre")
      ->type_name("left|centre|right");
  AddSelectionOption(*arguments, "--only", "LINE", options->only);
  AddLaneOutputOptions(*arguments, options->output, "lines, edges and shafts");
  arguments->footer(std::string(kLaneInputHelp) + kOutput + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { RunArrow(*options); }};
}

}  // namespace vorel::tool
