#include <memory>
#include <optional>
#include <string>

#include "base/boundary_data.h"
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
using tarvo::HAD::BoundaryData;

constexpr const char* kDescription =
    "Cut a piece of given length out of a lane boundary, with its marked vertices.\n"
    "Writes the piece and its marks as GeoJSON, with how to go on from there, and can draw a picture.";

constexpr const char* kOutput = R"(
Output
  The piece, a LineString. Properties: part (piece), line (number of the line in the input, from 0), id, from and
  length as given, covered (the fraction of the length that the boundary had left, 0 to 1), marks (indices of the
  marked points in the piece: 0 for its start, always, then those of --marks that lie on the way), cursor (index in
  --marks of the first mark copied; the --cursor given when none was), next (INDEX:RATIO for the --from of the
  piece that follows; null when the boundary has ended).
  Then each mark, a Point. Properties: part (mark), line, id, mark (index in the piece), vertex (index in the
  boundary; null for the start).
  A mark on the first point of the segment where the piece starts, or on a vertex where the length runs out, is not
  copied.
)";

constexpr const char* kExamples = R"(
Examples
  vorel cut boundary.geojson --length 50 --marks 3,8,12 --picture piece.svg
  vorel cut map.geojson --only id=120678 --from 0:0.25 --length 12.5)";

constexpr double kMostMetres = 1e8;  // more than twice around the earth

struct Options {
  std::string boundary = "-";
  std::optional<std::string> only;
  std::string from = "0";
  std::string length;
  std::optional<std::string> marks;
  std::string cursor = "-1";
  LaneOutputOptions output;
};

struct Start {
  int index = 0;
  double ratio = 0.0;
};

Start ParseStart(const std::string& text) {
  const std::string option = "--from";
  constexpr const char* kProblem = "is not INDEX or INDEX:RATIO";
  if (text.find(':') == std::string::npos) return {ParseWhole(text, option, 0), 0.0};
  const auto [index, ratio] = SplitPair(text, ':', option, kProblem);
  return {ParseWhole(index, option, 0), ParseNotNegative(ratio, option, 1.0)};
}

/// Where the piece that follows starts, as --from takes it: on the segment on which this one ended.
std::string NextStart(const LaneLine& line, int startIndex, const BoundaryData& piece) {
  const std::size_t segment = static_cast<std::size_t>(startIndex) + piece.points.size() - 2;
  const GeoCoordinateZ& first = line.points[segment];
  const double segmentMetres = first.DistanceTo(line.points[segment + 1]);
  const double ratio = segmentMetres > 0.0 ? first.DistanceTo(piece.points.back()) / segmentMetres : 0.0;
  return std::to_string(segment) + ":" + ShortestNumber(ratio < 1.0 ? ratio : 1.0);
}

void RunCut(const Options& options) {
  const Start start = ParseStart(options.from);
  const double length = ParsePositive(options.length, "--length", kMostMetres);
  BoundaryData source;
  if (options.marks) source.pointIndices = ParseAscendingIndices(*options.marks, "--marks");
  int cursor = ParseWhole(options.cursor, "--cursor", -1);
  const std::optional<LineSelection> selection = ParseSelection(options.only, "--only");
  TextSource input = OpenInput(options.boundary, "BOUNDARY");
  LaneOutput output(options.output, {&input});

  const LaneLines lines = ReadLaneLines(input, selection);
  if (lines.lines.size() > 1) {
    throw BadInput(input.name() + ": holds " + Counted(lines.lines.size(), "line") +
                   "; a boundary is one (--only KEY=VALUE takes one of several)");
  }
  const LaneLine& line = lines.lines.front();
  source.points = line.points;
  const std::size_t pointCount = source.points.size();
  if (static_cast<std::size_t>(start.index) + 1 >= pointCount) {
    throw BadInput(line.label + ": --from " + options.from + " is beyond the last segment, " +
                   std::to_string(pointCount - 2));
  }
  if (!source.pointIndices.empty() && source.pointIndices.back() >= pointCount) {
    throw BadInput(line.label + ": --marks " + std::to_string(source.pointIndices.back()) +
                   " is beyond the last point, " + std::to_string(pointCount - 1));
  }
  if (cursor >= static_cast<int>(source.pointIndices.size())) {
    RefuseOption("--cursor", options.cursor,
                 "is beyond the last of " + Counted(source.pointIndices.size(), "mark"));
  }

  BoundaryData piece;
  const float covered = VorelGeometryAlgorithm::HandleBoundaryDataByDistance(source, cursor, start.index,
                                                                             start.ratio, length, piece);
  RefuseOffTheMap(line, piece.points, "the piece");
  GeoJsonWriter writer(output.out());
  writer.StartLine(piece.points);
  writer.JsonProperty("part", "\"piece\"");
  writer.Property("line", line.index);
  writer.JsonProperty("id", line.id);
  writer.JsonProperty("from", "\"" + std::to_string(start.index) + ":" + ShortestNumber(start.ratio) + "\"");
  writer.Property("length", length);
  writer.JsonProperty("covered", ShortestNumber(covered));
  std::string marks;
  for (const std::uint32_t mark : piece.pointIndices)
    marks += (marks.empty() ? "" : ",") + std::to_string(mark);
  writer.JsonProperty("marks", "[" + marks + "]");
  writer.JsonProperty("cursor", std::to_string(cursor));
  if (covered < 1.0f) {
    writer.NullProperty("next");
  } else {
    writer.JsonProperty("next", "\"" + NextStart(line, start.index, piece) + "\"");
  }
  writer.EndFeature();
  for (std::size_t i = 0; i < piece.pointIndices.size(); ++i) {
    const std::uint32_t mark = piece.pointIndices[i];
    writer.StartPoint(piece.points[mark]);
    writer.JsonProperty("part", "\"mark\"");
    writer.Property("line", line.index);
    writer.JsonProperty("id", line.id);
    writer.Property("mark", std::size_t{mark});
    if (i == 0) {
      writer.NullProperty("vertex");
    } else {
      writer.Property("vertex", std::size_t{mark} + static_cast<std::size_t>(start.index));
    }
    writer.EndFeature();
  }
  writer.Finish();
  if (output.wantsPicture()) {
    using Shape = PictureLayer::Shape;
    MapPicture picture = output.StartPicture(
        {WithoutHeights(line.points)},
        {{"boundary", "boundary", "fill: none; stroke: #9fb4c4; stroke-width: 2", Shape::kLine},
         {"cut-piece", "piece", "fill: none; stroke: #c8321e; stroke-width: 3.4", Shape::kLine},
         {"source-mark", "marked", "fill: #ffffff; stroke: #55656f; stroke-width: 1.2", Shape::kPoint},
         {"mark", "mark", "fill: #2b3a45; stroke: #ffffff; stroke-width: 0.8", Shape::kPoint}});
    picture.AddLine(0, WithoutHeights(line.points), {{"data-line", std::to_string(line.index)}});
    picture.AddLine(1, WithoutHeights(piece.points), {{"data-points", std::to_string(piece.points.size())}});
    for (const std::uint32_t vertex : source.pointIndices) {
      picture.AddDot(2, source.points[vertex], 4.0, {{"data-vertex", std::to_string(vertex)}});
    }
    for (const std::uint32_t mark : piece.pointIndices) {
      picture.AddDot(3, piece.points[mark], 4.0, {{"data-mark", std::to_string(mark)}});
    }
    picture.Write(PictureTitle(input),
                  {ShortestNumber(length) + " m from " + options.from + ", " +
                   FixedNumber(100.0 * static_cast<double>(covered), 1) + " % covered, " +
                   Counted(piece.pointIndices.size(), "mark")},
                  output.picture());
  }
  output.Publish();
  NoteLeftOut(input, lines.geometriesLeftOut, "no lines");
}

}  // namespace

Command AddCutCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("cut", kDescription);
  arguments
      ->add_option("BOUNDARY", options->boundary,
                   "GeoJSON file with the boundary, one line; standard input when\nabsent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--from", options->from,
                   "Where the piece starts: the segment, by the index of its first\n"
                   "point, from 0, and how far along it, 0 to 1. Default: 0:0")
      ->type_name("INDEX[:RATIO]");
  arguments
      ->add_option("--length", options->length, "Of the piece: metres, greater than 0, at most 100000000")
      ->type_name("METRES")
      ->required();
  arguments
      ->add_option("--marks", options->marks,
                   "The boundary's marked vertices: indices of its points, from 0,\n"
                   "ascending, with commas. Default: none")
      ->type_name("I,J,...");
  arguments
      ->add_option("--cursor", options->cursor,
                   "The last mark already handled, by its place in --marks, from 0;\n"
                   "-1: none yet (--cursor=-1). Default: -1")
      ->type_name("PLACE");
  AddSelectionOption(*arguments, "--only", "BOUNDARY", options->only);
  AddLaneOutputOptions(*arguments, options->output, "boundary, piece and marks");
  arguments->footer(std::string(kLaneInputHelp) + kOutput + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { RunCut(*options); }};
}

}  // namespace vorel::tool
