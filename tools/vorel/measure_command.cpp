#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/route_symbols.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr const char* kDescription =
    "Measure lines: length along the vertices, number of vertices, and bounds, one CSV row per line.\n"
    "With --table one row per vertex: its metres from the start of the line and the heading to the next.";

constexpr const char* kExplanation = R"(  Newline-delimited input is read in one pass and in bounded memory.

Output
  CSV: a header, then one row per line. Lengths are metres on the WGS-84 ellipsoid, without heights.
    line,vertices,metres,west,south,east,north
  The bounds are degrees, longitudes in [-180, 180]; west is greater than east where a line crosses the
  antimeridian (as --view of other commands reads it), and a line around the whole earth has -180 and 180.
  With --table instead, one row per vertex:
    line,index,longitude,latitude,metres,heading
  index counts the vertices of the line from 0; metres are from its first vertex; heading is in degrees, at least
  0 and less than 360, clockwise from north, to the next vertex, and empty at the last vertex and where the next
  one is at the same place.
  Numbers are the shortest that read back as the same double.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel measure drive.geojson
  zcat tracks.ndjson.gz | vorel measure --out lengths.csv
  vorel measure drive.geojson --table --out table.csv)";

struct Options {
  std::string line = "-";
  bool table = false;
  OutputOptions output;
};

void AppendField(std::string& row, double value) {
  row += ',';
  row += ShortestNumber(value);
}

/// West, south, east and north of a line. Those of a line across the antimeridian are still the input's own numbers.
GeoRect FoldedBounds(const Line& line) {
  bool unwrapped = true;
  for (std::size_t i = 1; i < line.size() && unwrapped; ++i) {
    unwrapped = std::fabs(line[i].longitude - line[i - 1].longitude) <= 180.0;
  }
  GeoRect bounds;
  double width = 0.0;
  if (unwrapped) {
    bounds = BoundsOf(line);
    width = bounds.max.longitude - bounds.min.longitude;
  } else {
    Line strip = line;
    UnwrapLongitudes(strip);
    bounds = BoundsOf(strip);
    const auto [west, east] = std::minmax_element(
        strip.begin(), strip.end(),
        [](const auto& first, const auto& second) { return first.longitude < second.longitude; });
    width = east->longitude - west->longitude;
    bounds.min.longitude = line[static_cast<std::size_t>(west - strip.begin())].longitude;
    bounds.max.longitude = line[static_cast<std::size_t>(east - strip.begin())].longitude;
  }
  bounds.min.longitude = width >= 360.0 ? -180.0 : FoldLongitude(bounds.min.longitude);
  bounds.max.longitude = width >= 360.0 ? 180.0 : FoldLongitude(bounds.max.longitude);
  return bounds;
}

void WriteSummary(const Line& line, std::size_t lineIndex, OutputTarget& out) {
  const auto count = static_cast<unsigned int>(line.size());
  const GeoRect bounds = FoldedBounds(line);
  std::string row = std::to_string(lineIndex) + "," + std::to_string(count);
  AppendField(row, VorelGeometryAlgorithm::GetDistance(line.data(), count, 0, count));
  AppendField(row, bounds.min.longitude);
  AppendField(row, bounds.min.latitude);
  AppendField(row, bounds.max.longitude);
  AppendField(row, bounds.max.latitude);
  row += '\n';
  out.Write(row);
}

void WriteTable(const Line& line, std::size_t lineIndex, OutputTarget& out) {
  std::vector<double> metres = {0.0};
  const std::size_t last = line.size() - 1;
  VorelGeometryAlgorithm::GetDistanceAndCache(line, 0, static_cast<unsigned int>(last), metres);
  const std::string label = std::to_string(lineIndex);
  std::string row;
  for (std::size_t i = 0; i <= last; ++i) {
    row = label + "," + std::to_string(i);
    AppendField(row, FoldLongitude(line[i].longitude));
    AppendField(row, line[i].latitude);
    AppendField(row, metres[i]);
    if (i < last && line[i].DistanceTo(line[i + 1]) > 0.0) {
      AppendField(row, HeadingDegrees(line[i], line[i + 1]));
    } else {
      row += ',';
    }
    row += '\n';
    out.Write(row);
  }
}

void Run(const Options& options) {
  GeometryInput lines(options.line, "LINE", "line");
  CommandOutput output(options.output, {&lines.source()});
  output.out().Write(options.table ? "line,index,longitude,latitude,metres,heading\n"
                                   : "line,vertices,metres,west,south,east,north\n");
  lines.ForEachLine([&](const Line& line, std::size_t lineIndex) {
    (options.table ? WriteTable : WriteSummary)(line, lineIndex, output.out());
  });
  output.out().Finish();
  output.Publish();
  lines.NoteWhatIsLeftOut();
}

}  // namespace

Command AddMeasureCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("measure", kDescription);
  arguments->add_option("LINE", options->line, "GeoJSON file with lines; standard input when absent or -")
      ->type_name("FILE");
  arguments
      ->add_flag("--table", options->table,
                 "Write the cumulative table of each line instead of one row per\nline. Default: off")
      ->disable_flag_override();
  AddOutputOptions(*arguments, options->output, "Where the CSV goes.", "");
  arguments->footer(std::string("Input\n") + kLineInputHelp + kExplanation);
  return {arguments, [options] { Run(*options); }};
}

}  // namespace vorel::tool
