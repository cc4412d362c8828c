#ifndef VOREL_TOOLS_VOREL_LANE_COMMAND_H_
#define VOREL_TOOLS_VOREL_LANE_COMMAND_H_

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/lane_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/output_target.h"
#include "tools/vorel/text_source.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// What all commands on lanes say about their input, output and exit status, for the end of a help text.
extern const char* const kLaneInputHelp;
extern const char* const kLaneOutputHelp;
extern const char* const kExitStatusHelp;

/// Options for where results go, the same for every command on lanes.
struct LaneOutputOptions {
  std::string out = "-";
  std::optional<std::string> picture;
  std::optional<std::string> view;
};

/// @param drawn  what the picture shows; no picture options when empty
void AddLaneOutputOptions(CLI::App& arguments, LaneOutputOptions& options, const std::string& drawn);

/// The option --only (or of another name) for a `LineSelection`.
void AddSelectionOption(CLI::App& arguments, const std::string& name, const std::string& input,
                        std::optional<std::string>& selection);

/// The input named on the command line; "-" is standard input, refused when that is a terminal.
TextSource OpenLaneInput(const std::string& path, const std::string& argument);

/// A note on what an input held besides lines, if anything.
void NoteLeftOut(const TextSource& source, std::size_t geometriesLeftOut);

/// The file's own name, as the title of a picture.
std::string PictureTitle(const std::string& path, const TextSource& source);

/// The places a command writes to, opened before the work begins.
class LaneOutputs {
 public:
  /// @param inputs  no output may be one of them
  LaneOutputs(const LaneOutputOptions& options, const std::vector<const TextSource*>& inputs);

  OutputTarget& out() { return *out_; }
  bool wantsPicture() const { return picture_.has_value(); }

  /// An empty picture of the view asked for, or else of all `lines`.
  MapPicture StartPicture(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                          std::vector<PictureLayer> layers) const;
  void WritePicture(MapPicture& picture, const std::string& title, const std::vector<std::string>& subtitles);

  /// After everything is written.
  void Publish();

 private:
  std::optional<OutputTarget> out_;
  std::optional<OutputTarget> picture_;
  std::optional<GeoRect> view_;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_LANE_COMMAND_H_
