#include <algorithm>
#include <limits>
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
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Thin the vertices of routes, so that those kept lie more than a spacing apart.\n"
    "Writes each thinned route as one line with the number of points kept.";

constexpr const char* kExplanation =
    R"(  Each LineString is a route, and so is each MultiLineString: its lines are the segments of one route, thinned one
  by one and joined. Newline-delimited input is read in bounded memory.

Output
  One LineString per route, of the input's own vertices (a Point where one vertex is kept). Properties: route,
  counted from 0; points, the number of vertices of the route; kept, how many of them are left. The total is also
  told on standard error.
  The first vertex of a segment is kept; the last one is not forced in. A vertex exactly at the spacing from the one
  kept before is dropped. Vertices are compared with the one kept before in steps of a coarse square, so that above
  12000 m all are kept.
  Cap: once a route has 1501 points, no further one is taken, only segments short enough for --limit still come
  whole. A run in which a route met the cap says so on standard error.
  Longitudes are written in [-180, 180]. Files appear complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel thin drive.geojson --spacing 25 --picture thinned.svg
  vorel thin links.geojson --spacing 100 --limit 5 > thinned.geojson)";

constexpr std::size_t kCapPoints = 1501;
constexpr int kMostLimit = std::numeric_limits<int>::max() / 2;  // the library doubles it

struct Options {
  std::string line = "-";
  std::string spacing;
  std::string limit = "0";
  OutputOptions output;
};

class ThinRun {
 public:
  explicit ThinRun(const Options& options)
      : spacingMetres_(ParseMetres(options.spacing, "--spacing", true)),
        pointLimit_(ParseWhole(options.limit, "--limit", 0, kMostLimit)),
        lines_(options.line, "LINE", "line"),
        output_(options.output, {&lines_.source()}) {}

  void Run() {
    if (output_.wantsPicture()) {
      MapLegend legend;
      legend.view.clear();
      legend.piece = "thinned route";
      legend.arrow.clear();
      legend.point = "point kept";
      legend.slenderPieces = true;
      picture_.emplace(lines_.ReadLineBounds().Whole(), legend);
      picture_->SetPointSpacing(std::max(spacingMetres_, 1.0));
    }
    GeoJsonWriter writer(output_.out());
    lines_.ForEachLineGroup([&](const std::vector<Line>& segments) { WriteRoute(segments, writer); });
    writer.Finish();
    const std::string counts =
        "kept " + std::to_string(keptCount_) + " of " + std::to_string(pointCount_) + " points";
    if (picture_) {
      picture_->Write(PictureTitle(lines_.source()),
                      {counts + ", more than " + ShortestNumber(spacingMetres_) + " m apart" + kDot +
                       Counted(routeCount_, "route")},
                      output_.picture());
    }
    output_.Publish();
    lines_.NoteWhatIsLeftOut();
    PrintNote(lines_.name() + ": " + counts);
    if (cappedCount_ > 0) {
      PrintNote(lines_.name() + ": " + Counted(cappedCount_, "route") + " met the cap of " +
                std::to_string(kCapPoints) + " points (the first is route " + std::to_string(firstCapped_) +
                "): points behind it were left out");
    }
  }

 private:
  void WriteRoute(const std::vector<Line>& segments, GeoJsonWriter& writer) {
    // All segments on one strip of longitudes: each is laid next to the end of the one before.
    Line original;
    for (const Line& segment : segments) original.insert(original.end(), segment.begin(), segment.end());
    Line strip = original;
    UnwrapLongitudes(strip);
    std::vector<Line> shifted;
    auto begin = strip.begin();
    for (const Line& segment : segments) {
      const auto end = begin + static_cast<std::ptrdiff_t>(segment.size());
      shifted.emplace_back(begin, end);
      begin = end;
    }
    const float spacing =
        static_cast<float>(std::min<double>(spacingMetres_, std::numeric_limits<float>::max()));
    const Line thinned = VorelGeometryAlgorithm::PreProcessRoutePoints(shifted, spacing, pointLimit_);
    const Line kept = AsInTheInput(thinned, strip, original);

    if (kept.size() == 1) {
      writer.StartPoint(kept.front());
    } else {
      writer.StartLine(kept);
    }
    writer.Property("route", routeCount_);
    writer.Property("points", original.size());
    writer.Property("kept", kept.size());
    writer.EndFeature();
    if (picture_) {
      for (const Line& segment : shifted) picture_->AddRoute(segment, routeCount_);
      if (thinned.size() > 1) picture_->AddPiece(thinned, routeCount_, 0);
      for (const tarvo::GeoCoordinate& point : thinned) {
        picture_->AddDot(point, true, {{"data-route", std::to_string(routeCount_)}});
      }
    }
    if (kept.size() >= kCapPoints) {
      if (cappedCount_ == 0) firstCapped_ = routeCount_;
      ++cappedCount_;
    }
    pointCount_ += original.size();
    keptCount_ += kept.size();
    ++routeCount_;
  }

  /// The vertices that were kept, with the input's own numbers: unwrapping may round.
  static Line AsInTheInput(const Line& thinned, const Line& strip, const Line& original) {
    Line kept;
    kept.reserve(thinned.size());
    std::size_t i = 0;
    for (const tarvo::GeoCoordinate& point : thinned) {
      while (i < strip.size() && strip[i] != point) ++i;
      if (i == strip.size()) throw std::logic_error("a thinned point is not on its route");
      kept.push_back(original[i++]);
    }
    return kept;
  }

  double spacingMetres_;
  int pointLimit_;
  GeometryInput lines_;
  CommandOutput output_;
  std::optional<MapPicture> picture_;
  std::size_t routeCount_ = 0;
  std::size_t pointCount_ = 0;
  std::size_t keptCount_ = 0;
  std::size_t cappedCount_ = 0;
  std::size_t firstCapped_ = 0;
};

}  // namespace

Command AddThinCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("thin", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--spacing", options->spacing,
                   "From one kept point to the next, in metres: 0 or more; 0 drops\n"
                   "repeated vertices only, above 12000 all are kept. No default")
      ->type_name("METRES")
      ->required();
  arguments
      ->add_option("--limit", options->limit,
                   "Segments of at most twice as many points come whole: a whole number,\n"
                   "0 to 1073741823. Default: 0, all are thinned")
      ->type_name("COUNT");
  AddOutputOptions(*arguments, options->output, "Where the thinned routes go.",
                   "Also draw a map of the routes before and after, as SVG.");
  arguments->footer(std::string("Input\n") + kLineInputHelp + kExplanation);
  return {arguments, [options] { ThinRun(*options).Run(); }};
}

}  // namespace vorel::tool
