#include "tools/vorel/lane_command.h"

#include <utility>

#include "tools/vorel/failure.h"

namespace vorel::tool {
namespace {

std::optional<GeoRect> ParsePictureView(const LaneOutputOptions& options) {
  if (!options.view) return std::nullopt;
  if (!options.picture) throw BadInput("--view: is for the picture, and no --picture is given");
  return ParseView(*options.view, "--view");
}

}  // namespace

const char* const kLaneInputHelp =
    R"(Input
  GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry, or one of them per
  line. Each LineString, and each line of a MultiLineString, is one line; other geometries are left out. Positions
  are [longitude, latitude, height] in degrees and metres; a missing height is 0, also beside positions that have
  one. Heights are held as floats. A line's id is that of its feature, else the property "id", else its number in
  the input, from 0. Lines are followed across the antimeridian.
)";

const char* const kLaneOutputHelp =
    R"(  Longitudes are written in [-180, 180]. Files appear complete or not at all.
)";

const char* const kExitStatusHelp =
    R"(
Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.
)";

void AddLaneOutputOptions(CLI::App& arguments, LaneOutputOptions& options, const std::string& drawn) {
  AddOutputOptions(arguments, options, "Where the result goes.",
                   drawn.empty() ? "" : "Also draw a map of " + drawn + ", as SVG.");
  if (!drawn.empty()) AddPictureViewOption(arguments, options.view);
}

void AddSelectionOption(CLI::App& arguments, const std::string& name, const std::string& input,
                        std::optional<std::string>& selection) {
  arguments
      .add_option(name, selection,
                  "Take only those lines of " + input +
                      " whose feature has this\n"
                      "property with this value; KEY id also means the feature's own\n"
                      "id. Default: all lines")
      ->type_name("KEY=VALUE");
}

LaneOutput::LaneOutput(const LaneOutputOptions& options, const std::vector<const TextSource*>& inputs)
    : view_(ParsePictureView(options)), output_(options, inputs) {}

MapPicture LaneOutput::StartPicture(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                    std::vector<PictureLayer> layers) const {
  if (view_) return MapPicture(*view_, std::move(layers));
  BoundsCollector bounds;
  for (const std::vector<tarvo::GeoCoordinate>& line : lines) bounds.Add(line);
  return MapPicture(bounds.Whole(), std::move(layers));
}

}  // namespace vorel::tool
