#include <memory>
#include <optional>
#include <string>
#include <utility>
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
#include "tools/vorel/progress.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Sample lines: points at even distances, or the head or the rest of each line, cut at a distance.\n"
    "Exactly one of --every, --first, --after and --count says which.";

constexpr const char* kExplanation =
    R"(  With --count all lines are held in memory. Otherwise newline-delimited input is read in bounded memory: in one
  pass, and twice for a picture (what comes through a pipe is then kept in a temporary file).

Output
  --every: one Point at the start of each line and one every METRES along it, across its vertices; its last vertex
  comes only if a point falls on it. Properties: line, counted from 0; metres, from the start of the line.
  --first: each line's first METRES as a LineString; a line no longer than that comes whole.
  --after: each line without its first METRES; of a line no longer than that nothing is left, which a note on
  standard error counts. Properties of both: line.
  --count: at most COUNT Points over all lines. Each line is sampled from its own start, all at one spacing: their
  total length over COUNT - 1, truncated to whole metres; nothing is found when that is below one metre. Points found
  count twice against the later lines' share, so that fewer than COUNT may come. Property: sample, counted from 0.
  Points are placed straight between two vertices, in degrees. Lines are followed across the antimeridian;
  longitudes are written in [-180, 180].
  Files appear complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel sample drive.geojson --every 12.5 --picture points.svg
  vorel sample drive.geojson --first 1000 > first-kilometre.geojson
  zcat tracks.ndjson.gz | vorel sample --every 100 --max 10 --out points.geojson)";

constexpr int kMostPoints = 4000000;  // of one line, and of --count

struct Options {
  std::string line = "-";
  std::optional<std::string> every;
  std::optional<std::string> max;
  std::optional<std::string> first;
  std::optional<std::string> after;
  std::optional<std::string> count;
  OutputOptions output;
};

/// Refuses a command line that asks for none, or several, of the four kinds of samples.
void RequireOneKind(const Options& options) {
  std::vector<std::string> given;
  for (const auto& [name, value] :
       {std::pair{"--every", &options.every}, std::pair{"--first", &options.first},
        std::pair{"--after", &options.after}, std::pair{"--count", &options.count}}) {
    if (*value) given.emplace_back(name);
  }
  if (given.empty()) throw BadInput("one of --every, --first, --after and --count is needed");
  if (given.size() > 1) throw BadInput(given[0] + " and " + given[1] + ": only one of them can be given");
  if (options.max && !options.every) throw BadInput("--max " + *options.max + ": goes with --every only");
}

class SampleRun {
 public:
  explicit SampleRun(const Options& options) : options_(options) {
    RequireOneKind(options);
    if (options.every) metres_ = ParseMetres(*options.every, "--every", false);
    if (options.max) maxCount_ = ParseWhole(*options.max, "--max", 1);
    if (options.first) metres_ = ParseMetres(*options.first, "--first", false);
    if (options.after) metres_ = ParseMetres(*options.after, "--after", true);
    if (options.count) count_ = ParseWhole(*options.count, "--count", 2, kMostPoints);
    lines_.emplace(options.line, "LINE", "line");
    output_.emplace(options.output, std::vector<const TextSource*>{&lines_->source()});
  }

  void Run() {
    if (output_->wantsPicture()) StartPicture();
    GeoJsonWriter writer(output_->out());
    if (options_.count) {
      SpreadOverAll(writer);
    } else {
      lines_->ForEachLine([&](Line& line, std::size_t lineIndex) {
        UnwrapLongitudes(line);
        if (picture_) picture_->AddRoute(line, lineIndex);
        if (options_.every) {
          WritePoints(line, lineIndex, writer);
        } else {
          WriteCut(line, lineIndex, writer);
        }
        ++lineCount_;
      });
    }
    writer.Finish();
    if (picture_) picture_->Write(PictureTitle(lines_->source()), {Subtitle()}, output_->picture());
    output_->Publish();
    lines_->NoteWhatIsLeftOut();
    if (options_.after && featureCount_ < lineCount_) {
      PrintNote(lines_->name() + ": nothing is left of " + Counted(lineCount_ - featureCount_, "line") +
                " behind the first " + ShortestNumber(metres_) + " m");
    }
    if (options_.count && featureCount_ == 0) {
      PrintNote(lines_->name() + ": no point is placed, the lines are shorter than " +
                std::to_string(count_ - 1) + " m in all");
    }
  }

 private:
  void StartPicture() {
    MapLegend legend;
    legend.view.clear();
    legend.route = "line";
    legend.piece.clear();
    legend.arrow.clear();
    if (options_.first) {
      legend.piece = "head";
    } else if (options_.after) {
      legend.piece = "rest";
    } else {
      legend.point = "sample";
    }
    picture_.emplace(lines_->ReadLineBounds().Whole(), legend);
    if (options_.every) picture_->SetPointSpacing(metres_);
  }

  void WritePoints(const Line& line, std::size_t lineIndex, GeoJsonWriter& writer) {
    const auto vertices = static_cast<unsigned int>(line.size());
    const double most =
        1.0 + VorelGeometryAlgorithm::GetDistance(line.data(), vertices, 0, vertices) / metres_;
    if (most > kMostPoints && (maxCount_ < 0 || maxCount_ > kMostPoints)) {
      throw BadInput("--every " + *options_.every + ": gives some " + FixedNumber(most, 0) +
                     " points on line " + std::to_string(lineIndex) + " of " + lines_->name() +
                     ", more than " + std::to_string(kMostPoints) + " (--max sets a limit)");
    }
    samples_.clear();
    VorelGeometryAlgorithm::ChoosePointsInPolyline(line, metres_, maxCount_, samples_);
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const double metresFromStart = static_cast<double>(i) * metres_;
      writer.StartPoint(samples_[i]);
      writer.Property("line", lineIndex);
      writer.Property("metres", metresFromStart);
      writer.EndFeature();
      if (picture_) {
        picture_->AddDot(
            samples_[i], true,
            {{"data-line", std::to_string(lineIndex)}, {"data-metres", ShortestNumber(metresFromStart)}});
      }
    }
    featureCount_ += samples_.size();
  }

  void WriteCut(const Line& line, std::size_t lineIndex, GeoJsonWriter& writer) {
    samples_.clear();
    if (options_.first) {
      VorelGeometryAlgorithm::ChoosePointsInPolylineWithMaxLength(line, metres_, samples_);
    } else {
      VorelGeometryAlgorithm::ChoosePointsInPolyline(line.data(), static_cast<unsigned int>(line.size()),
                                                     metres_, samples_);
    }
    if (samples_.size() < 2) return;  // a single point is no line
    writer.StartLine(samples_);
    writer.Property("line", lineIndex);
    writer.EndFeature();
    if (picture_) picture_->AddPiece(samples_, lineIndex, 0);
    ++featureCount_;
  }

  void SpreadOverAll(GeoJsonWriter& writer) {
    std::vector<Line> lines;
    double totalMetres = 0.0;
    lines_->ForEachLine([&](Line& line, std::size_t lineIndex) {
      UnwrapLongitudes(line);
      const auto vertices = static_cast<unsigned int>(line.size());
      totalMetres += VorelGeometryAlgorithm::GetDistance(line.data(), vertices, 0, vertices);
      if (picture_) picture_->AddRoute(line, lineIndex);
      lines.push_back(line);
    });
    lineCount_ = lines.size();
    if (picture_) picture_->SetPointSpacing(totalMetres / (count_ - 1));
    VorelGeometryAlgorithm::CalculateCandidatePoints(lines, static_cast<unsigned int>(count_), samples_);
    for (const tarvo::GeoCoordinate& sample : samples_) {
      writer.StartPoint(sample);
      writer.Property("sample", featureCount_);
      writer.EndFeature();
      if (picture_) picture_->AddDot(sample, true, {{"data-sample", std::to_string(featureCount_)}});
      ++featureCount_;
    }
  }

  std::string Subtitle() const {
    const std::string lines = kDot + Counted(lineCount_, "line");
    if (options_.every) {
      return Counted(featureCount_, "point") + ", one every " + ShortestNumber(metres_) + " m" + lines;
    }
    if (options_.first) return "the first " + ShortestNumber(metres_) + " m" + lines;
    if (options_.after) return "what follows the first " + ShortestNumber(metres_) + " m" + lines;
    return Counted(featureCount_, "point") + " of " + std::to_string(count_) + lines;
  }

  const Options& options_;
  double metres_ = 0.0;
  int maxCount_ = -1;  // no limit
  int count_ = 0;
  std::optional<GeometryInput> lines_;
  std::optional<CommandOutput> output_;
  std::optional<MapPicture> picture_;
  Line samples_;
  std::size_t lineCount_ = 0;
  std::size_t featureCount_ = 0;
};

}  // namespace

Command AddSampleCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("sample", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_option("--every", options->every,
                   "Points, one every so many metres: greater than 0, fractions allowed,\n"
                   "at most 4000000 points on a line")
      ->type_name("METRES");
  arguments
      ->add_option("--max", options->max,
                   "With --every, at most so many points on each line: a whole number,\n"
                   "1 to 2147483647. Default: no limit")
      ->type_name("COUNT");
  arguments->add_option("--first", options->first, "The head of each line, in metres: greater than 0")
      ->type_name("METRES");
  arguments->add_option("--after", options->after, "The rest of each line behind so many metres: 0 or more")
      ->type_name("METRES");
  arguments
      ->add_option("--count", options->count,
                   "At most so many points, spread over all lines: a whole number,\n2 to 4000000")
      ->type_name("COUNT");
  AddOutputOptions(*arguments, options->output, "Where points or lines go.",
                   "Also draw a map of the lines and the samples, as SVG.");
  arguments->footer(std::string("Input\n") + kLineInputHelp + kExplanation);
  return {arguments, [options] { SampleRun(*options).Run(); }};
}

}  // namespace vorel::tool
