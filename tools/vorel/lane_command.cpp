#include "tools/vorel/lane_command.h"

#include <unistd.h>

#include <filesystem>
#include <utility>

#include "tools/vorel/command.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"

namespace vorel::tool {

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
  arguments.add_option("--out", options.out, "Where the result goes. Default: standard output")
      ->type_name("FILE");
  if (drawn.empty()) return;
  arguments
      .add_option("--picture", options.picture, "Also draw a map of " + drawn + ", as SVG.\nDefault: none")
      ->type_name("FILE");
  arguments
      .add_option("--view", options.view,
                  "What the picture shows, in degrees: west, south, east, north,\n"
                  "with commas. Longitudes -360 to 360, latitudes -90 to 90;\n"
                  "W > E is a view across the antimeridian. Default: everything")
      ->type_name("W,S,E,N");
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

TextSource OpenLaneInput(const std::string& path, const std::string& argument) {
  if (path == "-" && isatty(STDIN_FILENO) == 1) {
    throw BadInput("no " + argument + " is given, and standard input is a terminal");
  }
  return TextSource(path);
}

void NoteLeftOut(const TextSource& source, std::size_t geometriesLeftOut) {
  if (geometriesLeftOut == 0) return;
  PrintNote(source.name() + ": left out " + Counted(geometriesLeftOut, "object") + " that are no lines");
}

std::string PictureTitle(const std::string& path, const TextSource& source) {
  constexpr std::size_t kTitleCharacters = 56;
  const std::string name = path == "-" ? source.name() : std::filesystem::path(path).filename().string();
  return Shorten(OneLine(name), kTitleCharacters);
}

LaneOutputs::LaneOutputs(const LaneOutputOptions& options, const std::vector<const TextSource*>& inputs) {
  if (options.view) {
    if (!options.picture) throw BadInput("--view: is for the picture, and no --picture is given");
    view_ = ParseView(*options.view, "--view");
  }
  out_.emplace("--out", options.out);
  if (options.picture) {
    if (*options.picture == "-") throw BadInput("--picture -: the picture needs a file of its own");
    picture_.emplace("--picture", *options.picture);
    picture_->RefuseSameFileAs(*out_);
  }
  for (const std::optional<OutputTarget>* target : {&out_, &picture_}) {
    if (!*target) continue;
    for (const TextSource* input : inputs) (*target)->RefuseSameFileAs(*input);
  }
}

MapPicture LaneOutputs::StartPicture(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                                     std::vector<PictureLayer> layers) const {
  if (view_) return MapPicture(*view_, std::move(layers));
  BoundsCollector bounds;
  for (const std::vector<tarvo::GeoCoordinate>& line : lines) bounds.Add(line);
  return MapPicture(bounds.Whole(), std::move(layers));
}

void LaneOutputs::WritePicture(MapPicture& picture, const std::string& title,
                               const std::vector<std::string>& subtitles) {
  picture.Write(title, subtitles, *picture_);
}

void LaneOutputs::Publish() {
  OutputTarget::Publish({&*out_, picture_ ? &*picture_ : nullptr});
}

}  // namespace vorel::tool
