#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/sink.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"
#include "tools/vorel/route_symbols.h"
#include "tools/vorel/text_source.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Place evenly spaced symbols along the part of a route that a map view shows.\n"
    "Writes them as GeoJSON points with position, heading and distance, and can draw a picture.";

constexpr const char* kExplanation = R"(Input
  GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry. Each LineString,
  and each line of a MultiLineString, is one route; other geometries are left out. Positions are [longitude,
  latitude] in degrees; further numbers are ignored.
  Newline-delimited GeoJSON (one object per line, up to 16 MiB each) and RFC 8142 sequences are recognised by
  their content, not by the file's name. With --view they are read in one pass and in bounded memory. Without,
  they are read twice: first for the bounding box; what comes through a pipe is kept in a temporary file.

Output
  One Point per symbol. Properties: route and piece, counted from 0 (the line in the input, and the run of whole
  segments of that line through the view); metres from the start of the piece; heading in degrees, at least 0 and
  less than 360, clockwise from north, of the segment ahead, or of the last segment at the end of a piece; null
  where a piece has no extent. A piece shorter than the spacing has a symbol at either end. Lines are followed
  across the antimeridian; longitudes are written in [-180, 180].
  Files appear complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel symbols drive.geojson --spacing 50 --out symbols.geojson --picture drive.svg
  zcat tracks.ndjson.gz | vorel symbols --view=-77.40,38.50,-77.20,38.70 > symbols.geojson)";

struct Options {
  std::string route = "-";
  std::optional<std::string> view;
  std::string spacing = "100";
  std::optional<std::string> area;
  OutputOptions output;
  bool verbose = false;
};

/// While it lives, the library's log records and time measurements go to standard error.
class VerboseLogging {
 public:
  VerboseLogging() {
    plog::Logger::Register(logging::vorel_log_instance_id_, plog::LogLevel::kDebug,
                           {std::make_shared<plog::StreamSink>(std::cerr)});
    logging::SetElapsedTimeListener(
        [](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
          const double milliseconds = std::chrono::duration<double, std::milli>(elapsed).count();
          std::cerr << "[" << OneLine(owner) << "] " << name << ": elapsed " << FixedNumber(milliseconds, 3)
                    << " ms\n";
        });
  }
  VerboseLogging(const VerboseLogging&) = delete;
  VerboseLogging& operator=(const VerboseLogging&) = delete;
  ~VerboseLogging() {
    logging::SetElapsedTimeListener({});
    plog::Logger::Unregister(logging::vorel_log_instance_id_);
  }
};

/// Length with two digits, for a subtitle.
std::string RoughLengthText(double metres) {
  if (metres >= 9950.0) return FixedNumber(metres / 1000.0, 0) + " km";
  if (metres >= 995.0) return FixedNumber(metres / 1000.0, 1) + " km";
  return FixedNumber(metres, 0) + " m";
}

class SymbolsRun {
 public:
  explicit SymbolsRun(const Options& options)
      : options_(options),
        spacingMetres_(ParseWholeMetres(options.spacing, "--spacing")),
        routes_(options.route, "ROUTE", "line") {
    if (options.view) view_ = ParseView(*options.view, "--view");
    if (options.area) {
      if (*options.area == "-" && options.route == "-") {
        throw BadInput("--area -: standard input is read for the route already");
      }
      area_.emplace(*options.area);
    }
    output_.emplace(options.output,
                    std::vector<const TextSource*>{&routes_.source(), area_ ? &*area_ : nullptr});
  }

  void Run() {
    Ring area;
    if (area_) area = ReadSinglePolygon(*area_);
    if (!view_) view_ = routes_.ReadLineBounds().HalvedAboutCentre();

    std::optional<VerboseLogging> logging;
    if (options_.verbose) logging.emplace();
    std::optional<MapPicture> picture;
    if (output_->wantsPicture()) {
      picture.emplace(*view_);
      picture->SetArrowSpacing(spacingMetres_);
      if (!area.empty()) picture->AddPolygon({area});
    }
    const RouteSymbolPlacer placer(*view_, spacingMetres_, area);
    GeoJsonWriter writer(output_->out());
    std::vector<RoutePiece> pieces;
    routes_.ForEachLine([&](Line& route, std::size_t routeIndex) {
      UnwrapLongitudes(route);
      if (picture) picture->AddRoute(route, routeIndex);
      placer.Place(route, "vorel symbols", pieces);
      for (std::size_t i = 0; i < pieces.size(); ++i) {
        WritePiece(pieces[i], routeIndex, i, writer, picture ? &*picture : nullptr);
      }
      routeCount_ = routeIndex + 1;
    });
    writer.Finish();
    if (picture) picture->Write(PictureTitle(routes_.source()), Subtitles(*picture), output_->picture());
    output_->Publish();
    routes_.NoteWhatIsLeftOut();
    if (symbolCount_ == 0) {
      PrintNote(routes_.name() + ": no symbol lies in the view " + ViewText(*view_));
    }
  }

 private:
  void WritePiece(const RoutePiece& piece, std::size_t routeIndex, std::size_t pieceIndex,
                  GeoJsonWriter& writer, MapPicture* picture) {
    if (picture != nullptr) picture->AddPiece(piece.points, routeIndex, pieceIndex);
    for (const RouteSymbol& symbol : piece.symbols) {
      writer.StartPoint(symbol.position);
      writer.Property("route", routeIndex);
      writer.Property("piece", pieceIndex);
      writer.Property("metres", symbol.metresFromPieceStart);
      if (symbol.headingDegrees) {
        writer.Property("heading", *symbol.headingDegrees);
      } else {
        writer.NullProperty("heading");
      }
      writer.EndFeature();
      if (picture != nullptr) {
        picture->AddArrow(symbol.position, symbol.headingDegrees, routeIndex, pieceIndex,
                          symbol.metresFromPieceStart);
      }
    }
    symbolCount_ += piece.symbols.size();
    ++pieceCount_;
  }

  std::vector<std::string> Subtitles(const MapPicture& picture) const {
    std::string counts = Counted(symbolCount_, "symbol") + ", one every " + std::to_string(spacingMetres_) +
                         " m" + kDot + Counted(pieceCount_, "piece") + " in view" + kDot +
                         Counted(routeCount_, "route");
    if (area_) counts += std::string(kDot) + "in the area only";
    const MapProjection& projection = picture.projection();
    const Pixel upperLeft = projection.ToPixel({view_->min.longitude, view_->max.latitude});
    const Pixel lowerRight = projection.ToPixel({view_->max.longitude, view_->min.latitude});
    std::vector<std::string> lines = {
        counts, "view " + RoughLengthText((lowerRight.x - upperLeft.x) * projection.metresPerPixel()) +
                    " \xC3\x97 " +
                    RoughLengthText((lowerRight.y - upperLeft.y) * projection.metresPerPixel())};
    if (picture.arrowsOutside() > 0) {
      lines.back() += kDot + Counted(picture.arrowsOutside(), "symbol") + " beyond the edge of this map";
    }
    const std::string note = picture.ArrowNote();
    if (!note.empty()) lines.push_back(note);
    return lines;
  }

  const Options& options_;
  int spacingMetres_;
  GeometryInput routes_;
  std::optional<GeoRect> view_;
  std::optional<TextSource> area_;
  std::optional<CommandOutput> output_;
  std::size_t routeCount_ = 0;
  std::size_t pieceCount_ = 0;
  std::size_t symbolCount_ = 0;
};

}  // namespace

Command AddSymbolsCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("symbols", kDescription);
  arguments
      ->add_option("ROUTE", options->route, "GeoJSON file with the route; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--view", options->view,
                   "The map view in degrees: west, south, east, north, with commas.\n"
                   "Longitudes -360 to 360, latitudes -90 to 90; W > E is a view\n"
                   "across the antimeridian.\n"
                   "Default: the route's bounding box halved about its centre")
      ->type_name("W,S,E,N");
  arguments
      ->add_option("--spacing", options->spacing,
                   "From one symbol to the next along the route: a whole number of\n"
                   "metres, 1 to 2147483647. Default: 100")
      ->type_name("METRES");
  arguments
      ->add_option("--area", options->area,
                   "GeoJSON file with one polygon without holes: the route is taken\n"
                   "as one other than the main route, and only symbols inside the\n"
                   "polygon are kept. Default: none, the main route")
      ->type_name("FILE");
  AddOutputOptions(*arguments, options->output, "Where the symbols go.",
                   "Also draw a map of route, view, pieces and symbols, as SVG.");
  arguments
      ->add_flag("--verbose", options->verbose,
                 "Show the library's log records and elapsed times on standard error")
      ->disable_flag_override();
  arguments->footer(kExplanation);
  return {arguments, [options] { SymbolsRun(*options).Run(); }};
}

}  // namespace vorel::tool
