#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Keep the pieces of lines that run through a map view.\n"
    "A piece is a run of whole segments: nothing is cut at the border, so that a piece reaches beyond it.";

constexpr const char* kExplanation =
    R"(  Newline-delimited input is read in one pass and in bounded memory.

Output
  One LineString per piece, with the input's own vertices. Properties: line and piece, counted from 0 (the line in
  the input, and the piece of that line); vertex, the index in its line of the piece's first vertex. The border
  belongs to the view. A segment with both ends outside that passes through the view, or touches a corner of it,
  is a piece of its own; a vertex between two pieces stands in both. Lines are followed across the antimeridian;
  longitudes are written in [-180, 180].
  Files appear complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel clip drive.geojson --view 7.41,43.72,7.43,43.74 --picture pieces.svg
  zcat tracks.ndjson.gz | vorel clip --view=179,-20,-179,-15 > pieces.geojson)";

struct Options {
  std::string line = "-";
  std::string view;
  OutputOptions output;
};

/// Index in `line`, at `from` or behind it, of the vertex that starts `piece`, a run of its vertices.
std::size_t FindPiece(const Line& line, const Line& piece, std::size_t from) {
  const auto found =
      std::search(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(), piece.begin(), piece.end());
  if (found == line.end()) throw std::logic_error("a piece is not on its line");
  return static_cast<std::size_t>(found - line.begin());
}

class ClipRun {
 public:
  explicit ClipRun(const Options& options)
      : view_(ParseView(options.view, "--view")),
        lines_(options.line, "LINE", "line"),
        output_(options.output, {&lines_.source()}) {}

  void Run() {
    if (output_.wantsPicture()) {
      MapLegend legend;
      legend.route = "line";
      legend.arrow.clear();
      picture_.emplace(view_, legend);
    }
    GeoJsonWriter writer(output_.out());
    lines_.ForEachLine([&](Line& line, std::size_t lineIndex) {
      WritePieces(line, lineIndex, writer);
      ++lineCount_;
    });
    writer.Finish();
    if (picture_) {
      picture_->Write(PictureTitle(lines_.source()),
                      {Counted(pieceCount_, "piece") + " in view" + kDot + Counted(lineCount_, "line")},
                      output_.picture());
    }
    output_.Publish();
    lines_.NoteWhatIsLeftOut();
    if (pieceCount_ == 0) PrintNote(lines_.name() + ": no line meets the view " + ViewText(view_));
  }

 private:
  void WritePieces(const Line& line, std::size_t lineIndex, GeoJsonWriter& writer) {
    Line strip = line;
    UnwrapLongitudes(strip);
    if (picture_) picture_->AddRoute(strip, lineIndex);
    std::size_t pieceIndex = 0;
    for (const int turns : TurnsAlongLine(strip, view_)) {
      Line shifted = strip;
      ShiftByTurns(shifted, turns);
      std::vector<Line> pieces;
      VorelGeometryAlgorithm::CutPolyline(shifted, view_, pieces);
      std::size_t vertex = 0;
      for (const Line& piece : pieces) {
        vertex = FindPiece(shifted, piece, vertex);
        if (picture_) picture_->AddPiece(piece, lineIndex, pieceIndex);
        const auto first = line.begin() + static_cast<std::ptrdiff_t>(vertex);
        writer.StartLine(Line(first, first + static_cast<std::ptrdiff_t>(piece.size())));
        writer.Property("line", lineIndex);
        writer.Property("piece", pieceIndex);
        writer.Property("vertex", vertex);
        writer.EndFeature();
        vertex += piece.size() - 1;
        ++pieceIndex;
      }
    }
    pieceCount_ += pieceIndex;
  }

  GeoRect view_;
  GeometryInput lines_;
  CommandOutput output_;
  std::optional<MapPicture> picture_;
  std::size_t lineCount_ = 0;
  std::size_t pieceCount_ = 0;
};

}  // namespace

Command AddClipCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("clip", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--view", options->view,
                   "The map view in degrees: west, south, east, north, with commas.\n"
                   "Longitudes -360 to 360, latitudes -90 to 90; W > E is a view\n"
                   "across the antimeridian. No default")
      ->type_name("W,S,E,N")
      ->required();
  AddOutputOptions(*arguments, options->output, "Where the pieces go.",
                   "Also draw a map of view, lines and pieces, as SVG.");
  arguments->footer(std::string("Input\n") + kLineInputHelp + kExplanation);
  return {arguments, [options] { ClipRun(*options).Run(); }};
}

}  // namespace vorel::tool
