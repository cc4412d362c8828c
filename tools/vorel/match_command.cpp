#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
#include "tools/vorel/trace_matching.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;

constexpr const char* kDescription =
    "Match the fixes of a trace to the nearest lanes or roads.\n"
    "Writes one GeoJSON point per fix, on its line, and can draw a picture of the way it moved.";

constexpr const char* kHow = R"(
How a fix is matched
  Every line is scanned for its segment nearest to the fix; the nearest line wins, of equally near ones the first.
  A fix at --max metres or more from every line stays unmatched, and so does one at longitude 0, latitude 0, which
  stands for "no position".
  With --heading-tolerance only segments count that run on the heading of the fix, taken from the trace itself: the
  bearing to the next fix that lies elsewhere, from the trace's last place the bearing from the place before it. A
  trace that never moves is matched without. With --accept a segment near enough is taken whatever its heading.
  With --walk the line of the fix before is followed from the segment where that fix was put, without a look at
  headings or other lines; where the line ends, or is farther than --max, the fix is scanned for.

Output
  One Point per fix, in the order of the trace: on the line, with the line's height there. Properties: trace and
  fix, counted from 0; matched; line (number of the line in LANES, from 0), id, segment (index of its first point),
  ratio (of the way along it, 0 to 1), distance in metres, walked (true when --walk put it there). An unmatched fix
  stands where it was, with matched false and the rest null. The member "summary" holds the counts, the share
  matched and the median distance of the matched fixes; a line on standard error says the same.
)";

constexpr const char* kExamples = R"(
Examples
  vorel match lanes.geojson trace.geojson --out matched.geojson --picture match.svg
  vorel match map.geojson drive.geojson --lanes-only kind=lane --heading-tolerance 45 --max 10)";

struct Options {
  std::string lanes;
  std::string trace = "-";
  std::optional<std::string> lanesOnly;
  std::optional<std::string> traceOnly;
  std::string accept = "0";
  std::string max = "20";
  std::optional<std::string> headingTolerance;
  std::optional<std::string> farSegments;
  bool walk = false;
  LaneOutputOptions output;
};

MatchingRules ParseRules(const Options& options) {
  constexpr double kMostMetres = 100000.0;
  MatchingRules rules;
  rules.acceptMetres = ParseNotNegative(options.accept, "--accept", kMostMetres);
  rules.maxMetres = ParsePositive(options.max, "--max", kMostMetres);
  if (options.headingTolerance) {
    rules.headingToleranceDegrees = ParsePositive(*options.headingTolerance, "--heading-tolerance", 180.0);
  }
  if (options.farSegments) rules.maxFarSegments = ParseWhole(*options.farSegments, "--far-segments", 0);
  rules.walks = options.walk;
  return rules;
}

class MatchRun {
 public:
  explicit MatchRun(const Options& options)
      : rules_(ParseRules(options)),
        lanesSelection_(ParseSelection(options.lanesOnly, "--lanes-only")),
        traceSelection_(ParseSelection(options.traceOnly, "--trace-only")),
        lanesSource_(OpenLanes(options)),
        traceSource_(OpenInput(options.trace, "TRACE")),
        output_(options.output, {&lanesSource_, &traceSource_}) {}

  void Run() {
    const LaneLines lanes = ReadLaneLines(lanesSource_, lanesSelection_);
    const LaneLines traces = ReadLaneLines(traceSource_, traceSelection_);
    const TraceMatcher matcher(lanes.lines, rules_);
    GeoJsonWriter writer(output_.out());
    std::optional<MapPicture> picture;
    if (output_.wantsPicture()) picture.emplace(StartMatchPicture(lanes.lines, traces.lines));
    for (const LaneLine& trace : traces.lines) {
      const std::vector<std::optional<MatchedFix>> matches = matcher.Match(trace.points);
      for (std::size_t i = 0; i < matches.size(); ++i) {
        WriteFix(writer, lanes.lines, trace, i, matches[i]);
        if (picture) DrawFix(*picture, lanes.lines, trace, i, matches[i]);
      }
    }
    writer.Finish(Summary(lanes.lines.size()));
    if (picture) {
      picture->Write(PictureTitle(traceSource_), {SummaryText(), "lines of " + PictureTitle(lanesSource_)},
                     output_.picture());
    }
    output_.Publish();
    NoteLeftOut(lanesSource_, lanes.geometriesLeftOut, "no lines");
    NoteLeftOut(traceSource_, traces.geometriesLeftOut, "no lines");
    PrintNote(traceSource_.name() + ": " + SummaryText());
  }

 private:
  enum Layer : std::size_t { kLaneLayer, kTraceLayer, kFixLayer, kUnmatchedLayer, kStrokeLayer };
  static constexpr double kFixPixels = 1.7;
  static constexpr double kUnmatchedPixels = 3.4;

  static TextSource OpenLanes(const Options& options) {
    if (options.lanes == "-" && options.trace == "-") {
      throw BadInput("LANES -: standard input is read for the trace already");
    }
    return OpenInput(options.lanes, "LANES");
  }

  void WriteFix(GeoJsonWriter& writer, const std::vector<LaneLine>& lanes, const LaneLine& trace,
                std::size_t fix, const std::optional<MatchedFix>& match) {
    writer.StartPoint(match ? match->position : trace.points[fix]);
    writer.Property("trace", trace.index);
    writer.Property("fix", fix);
    writer.JsonProperty("matched", match ? "true" : "false");
    ++fixes_;
    if (match) {
      writer.Property("line", lanes[match->line].index);
      writer.JsonProperty("id", lanes[match->line].id);
      writer.Property("segment", match->segment);
      writer.Property("ratio", match->ratio);
      writer.Property("distance", match->distanceMetres);
      writer.JsonProperty("walked", match->walked ? "true" : "false");
      distances_.push_back(match->distanceMetres);
    } else {
      for (const char* const name : {"line", "id", "segment", "ratio", "distance", "walked"})
        writer.NullProperty(name);
    }
    writer.EndFeature();
  }

  MapPicture StartMatchPicture(const std::vector<LaneLine>& lanes,
                               const std::vector<LaneLine>& traces) const {
    std::vector<std::vector<GeoCoordinate>> traceLines;
    for (const LaneLine& trace : traces) traceLines.push_back(WithoutHeights(trace.points));
    using Shape = PictureLayer::Shape;
    MapPicture picture = output_.StartPicture(
        traceLines,
        {{"lane", "line", "fill: none; stroke: #9fb4c4; stroke-width: 2.6", Shape::kLine},
         {"trace", "trace", "fill: none; stroke: #3d6fa5; stroke-width: 0.8", Shape::kLine},
         {"fix", "fix", "fill: #3d6fa5; stroke: none", Shape::kPoint},
         {"unmatched", "no match", "fill: #ffffff; stroke: #8a4fa8; stroke-width: 1.4", Shape::kPoint},
         {"stroke", "match", "fill: none; stroke: #d1361f; stroke-width: 1.2", Shape::kLine}});
    for (const LaneLine& lane : lanes) {
      picture.AddLine(kLaneLayer, WithoutHeights(lane.points), {{"data-line", std::to_string(lane.index)}});
    }
    for (std::size_t i = 0; i < traces.size(); ++i) {
      picture.AddLine(kTraceLayer, traceLines[i], {{"data-trace", std::to_string(traces[i].index)}});
    }
    return picture;
  }

  static void DrawFix(MapPicture& picture, const std::vector<LaneLine>& lanes, const LaneLine& trace,
                      std::size_t fix, const std::optional<MatchedFix>& match) {
    const Attributes attributes = {{"data-trace", std::to_string(trace.index)},
                                   {"data-fix", std::to_string(fix)},
                                   {"data-line", match ? std::to_string(lanes[match->line].index) : "none"}};
    if (match) {
      std::vector<GeoCoordinate> stroke = {trace.points[fix], match->position};
      UnwrapLongitudes(stroke);
      picture.AddLine(kStrokeLayer, stroke, attributes);
    }
    picture.AddDot(match ? kFixLayer : kUnmatchedLayer, trace.points[fix],
                   match ? kFixPixels : kUnmatchedPixels, attributes);
  }

  std::optional<double> MedianDistance() const {
    if (distances_.empty()) return std::nullopt;
    std::vector<double> sorted = distances_;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t half = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[half] : (sorted[half - 1] + sorted[half]) / 2.0;
  }

  double ShareMatched() const { return static_cast<double>(distances_.size()) / static_cast<double>(fixes_); }

  std::string Summary(std::size_t lines) const {
    const std::optional<double> median = MedianDistance();
    return "\"summary\":{\"lines\":" + std::to_string(lines) + ",\"fixes\":" + std::to_string(fixes_) +
           ",\"matched\":" + std::to_string(distances_.size()) +
           ",\"share\":" + ShortestNumber(ShareMatched()) +
           ",\"median_distance\":" + (median ? ShortestNumber(*median) : "null") + "}";
  }

  std::string SummaryText() const {
    std::string text = "matched " + std::to_string(distances_.size()) + " of " + std::to_string(fixes_) +
                       " fixes (" + FixedNumber(100.0 * ShareMatched(), 1) + " %)";
    const std::optional<double> median = MedianDistance();
    if (median) text += ", median distance " + FixedNumber(*median, 2) + " m";
    return text;
  }

  MatchingRules rules_;
  std::optional<LineSelection> lanesSelection_;
  std::optional<LineSelection> traceSelection_;
  TextSource lanesSource_;
  TextSource traceSource_;
  LaneOutput output_;
  std::size_t fixes_ = 0;
  std::vector<double> distances_;
};

}  // namespace

Command AddMatchCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("match", kDescription);
  arguments->add_option("LANES", options->lanes, "GeoJSON file with the lines; - for standard input")
      ->type_name("FILE")
      ->required();
  arguments
      ->add_option("TRACE", options->trace,
                   "GeoJSON file with the trace, or several, each a line of fixes;\n"
                   "standard input when absent or -. May be the same file as LANES")
      ->type_name("FILE");
  AddSelectionOption(*arguments, "--lanes-only", "LANES", options->lanesOnly);
  AddSelectionOption(*arguments, "--trace-only", "TRACE", options->traceOnly);
  arguments
      ->add_option("--max", options->max,
                   "Only lines nearer than this count: metres, greater than 0, at\nmost 100000. Default: 20")
      ->type_name("METRES");
  arguments
      ->add_option("--accept", options->accept,
                   "A segment beside the fix and nearer than this ends the search on\n"
                   "its line: metres, 0 to 100000. Default: 0, the nearest segment")
      ->type_name("METRES");
  arguments
      ->add_option("--heading-tolerance", options->headingTolerance,
                   "Only segments count whose heading differs from that of the fix\n"
                   "by less than this: degrees, greater than 0, at most 180.\n"
                   "Default: headings are not looked at")
      ->type_name("DEGREES");
  arguments
      ->add_option("--far-segments", options->farSegments,
                   "After a segment in range, the search on a line ends at the next\n"
                   "one out of range beyond this many: 0 to 2147483647.\n"
                   "Default: all segments are searched")
      ->type_name("COUNT");
  arguments
      ->add_flag("--walk", options->walk, "Follow the line of the fix before, searching only where it ends")
      ->disable_flag_override();
  AddLaneOutputOptions(*arguments, options->output, "trace, lines and what was matched to what");
  arguments->footer(std::string(kLaneInputHelp) + kHow + kLaneOutputHelp + kExitStatusHelp + kExamples);
  return {arguments, [options] { MatchRun(*options).Run(); }};
}

}  // namespace vorel::tool
