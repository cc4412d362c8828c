#include <memory>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Take the stretch of a line ahead of a position: the position, the vertices that follow, and the end.\n"
    "The position is a vertex index and an offset in metres from that vertex, forward along the line.";

constexpr const char* kExplanation = R"(
Output
  One LineString. Properties: line, counted from 0; vertex, the index of the last vertex not beyond the position;
  metres, from the start of the line to the position; length, of the stretch. It ends early where the line ends.
  The position's metres from the start of the line are truncated to whole metres before --length is added, so the
  stretch may be up to one metre shorter than asked for; one of less than a metre may even end behind the position.
  Distances come from the cumulative table of the line (see vorel measure --table). Lines are followed across the
  antimeridian; longitudes are written in [-180, 180].
  Files appear complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel along drive.geojson --from 12 --offset 3.5 --length 400 --picture ahead.svg
  vorel along tracks.geojson --line 3 --from 0 --length 1000 > ahead.geojson)";

struct Options {
  std::string line = "-";
  std::string lineIndex = "0";
  std::string from;
  std::string offset = "0";
  std::string length;
  OutputOptions output;
};

/// A place on a line.
struct Position {
  int vertex = 0;             ///< index of the last vertex that is not beyond it
  double metresBehind = 0.0;  ///< from that vertex
  double metresFromStart = 0.0;
};

class AlongRun {
 public:
  explicit AlongRun(const Options& options)
      : options_(options),
        lineIndex_(ParseWhole(options.lineIndex, "--line", 0)),
        fromVertex_(ParseWhole(options.from, "--from", 0)),
        offsetMetres_(ParseMetres(options.offset, "--offset", true)),
        lengthMetres_(ParseMetres(options.length, "--length", false)),
        lines_(options.line, "LINE", "line"),
        output_(options.output, {&lines_.source()}) {}

  void Run() {
    ReadLine();
    cumulative_ = {0.0};
    VorelGeometryAlgorithm::GetDistanceAndCache(line_, 0, static_cast<unsigned int>(line_.size() - 1),
                                                cumulative_);
    const Position position = FindPosition();
    const auto vertex = static_cast<std::size_t>(position.vertex);
    const tarvo::GeoCoordinate base =
        position.metresBehind > 0.0
            ? VorelGeometryAlgorithm::GetLinePoint(line_[vertex], line_[vertex + 1], position.metresBehind)
            : line_[vertex];
    Line stretch;
    VorelGeometryAlgorithm::ChoosePointsInPolylineFromBasePoint(position.vertex, base, lengthMetres_, line_,
                                                                cumulative_, stretch);
    const auto count = static_cast<unsigned int>(stretch.size());
    const double stretchMetres = VorelGeometryAlgorithm::GetDistance(stretch.data(), count, 0, count);
    GeoJsonWriter writer(output_.out());
    writer.StartLine(stretch);
    writer.Property("line", lineIndex_);
    writer.Property("vertex", position.vertex);
    writer.Property("metres", position.metresFromStart);
    writer.Property("length", stretchMetres);
    writer.EndFeature();
    writer.Finish();
    if (output_.wantsPicture()) Draw(base, stretch, stretchMetres);
    output_.Publish();
    lines_.NoteWhatIsLeftOut();
  }

 private:
  void ReadLine() {
    std::size_t count = 0;
    lines_.ForEachLine([&](const Line& line, std::size_t index) {
      if (index == static_cast<std::size_t>(lineIndex_)) line_ = line;
      ++count;
    });
    if (line_.empty()) {
      throw BadInput("--line " + options_.lineIndex + ": " + lines_.name() + " holds " +
                     Counted(count, "line") + ", counted from 0");
    }
    UnwrapLongitudes(line_);
  }

  Position FindPosition() const {
    const std::string where = "line " + std::to_string(lineIndex_) + " of " + lines_.name();
    if (static_cast<std::size_t>(fromVertex_) >= line_.size()) {
      throw BadInput("--from " + options_.from + ": " + where + " has the vertices 0 to " +
                     std::to_string(line_.size() - 1));
    }
    const double fromMetres = cumulative_[static_cast<std::size_t>(fromVertex_)];
    Position position;
    position.metresFromStart = fromMetres + offsetMetres_;
    if (!(position.metresFromStart < cumulative_.back())) {
      throw BadInput("--from " + options_.from + " --offset " + options_.offset + ": nothing is ahead, " +
                     where + " goes on for " + ShortestNumber(cumulative_.back() - fromMetres) +
                     " m from that vertex");
    }
    position.vertex = VorelGeometryAlgorithm::FindFirstSmallerIndex(cumulative_, position.metresFromStart);
    // Without the detour over the table where it is not needed: the table's sums are rounded.
    position.metresBehind =
        position.vertex == fromVertex_
            ? offsetMetres_
            : position.metresFromStart - cumulative_[static_cast<std::size_t>(position.vertex)];
    return position;
  }

  void Draw(const tarvo::GeoCoordinate& base, const Line& stretch, double stretchMetres) {
    MapLegend legend;
    legend.view.clear();
    legend.route = "line";
    legend.piece = "stretch ahead";
    legend.arrow.clear();
    legend.point = "position";
    BoundsCollector bounds;
    bounds.Add(stretch);
    MapPicture picture(bounds.Whole(), legend);
    picture.AddRoute(line_, static_cast<std::size_t>(lineIndex_));
    picture.AddPiece(stretch, static_cast<std::size_t>(lineIndex_), 0);
    picture.AddDot(base, true, {{"data-line", std::to_string(lineIndex_)}});
    picture.Write(PictureTitle(lines_.source()),
                  {FixedNumber(stretchMetres, 1) + " m ahead of vertex " + options_.from + " + " +
                   ShortestNumber(offsetMetres_) + " m" + kDot + "line " + std::to_string(lineIndex_)},
                  output_.picture());
  }

  const Options& options_;
  int lineIndex_;
  int fromVertex_;
  double offsetMetres_;
  double lengthMetres_;
  GeometryInput lines_;
  CommandOutput output_;
  Line line_;  // longitudes unwrapped
  std::vector<double> cumulative_;
};

}  // namespace

Command AddAlongCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("along", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--line", options->lineIndex,
                   "Which line of the input: a whole number, 0 to 2147483647.\nDefault: 0, the first")
      ->type_name("INDEX");
  arguments
      ->add_option("--from", options->from,
                   "Index of a vertex of the line: a whole number from 0 to its last\nvertex. No default")
      ->type_name("INDEX")
      ->required();
  arguments
      ->add_option("--offset", options->offset,
                   "From that vertex forward to the position, in metres: 0 or more, less\n"
                   "than what is left of the line; may pass further vertices. Default: 0")
      ->type_name("METRES");
  arguments
      ->add_option("--length", options->length,
                   "Of the stretch in metres: greater than 0. The start is truncated to\n"
                   "whole metres (see Output). No default")
      ->type_name("METRES")
      ->required();
  AddOutputOptions(*arguments, options->output, "Where the stretch goes.",
                   "Also draw a map of line, position and stretch, as SVG.");
  arguments->footer(std::string("Input\n") + kLineInputHelp + kExplanation);
  return {arguments, [options] { AlongRun(*options).Run(); }};
}

}  // namespace vorel::tool
