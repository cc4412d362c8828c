#ifndef VOREL_TOOLS_VOREL_LANE_COMMAND_H_
#define VOREL_TOOLS_VOREL_LANE_COMMAND_H_

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/vorel/command_output.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/text_source.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// What all commands on lanes say about their input, output and exit status, for the end of a help text.
extern const char* const kLaneInputHelp;
extern const char* const kLaneOutputHelp;
extern const char* const kExitStatusHelp;

/// Where results go, the same for every command on lanes.
struct LaneOutputOptions : OutputOptions {
  std::optional<std::string> view;  ///< what the picture shows
};

/// @param drawn  what the picture shows; no picture options when empty
void AddLaneOutputOptions(CLI::App& arguments, LaneOutputOptions& options, const std::string& drawn);

/// The option --only (or of another name) for a `LineSelection`.
void AddSelectionOption(CLI::App& arguments, const std::string& name, const std::string& input,
                        std::optional<std::string>& selection);

/// The files of one run of a command on lanes.
class LaneOutput {
 public:
  /// @param inputs  no output may be one of them
  LaneOutput(const LaneOutputOptions& options, const std::vector<const TextSource*>& inputs);

  OutputTarget& out() { return output_.out(); }
  bool wantsPicture() const { return output_.wantsPicture(); }
  OutputTarget& picture() { return output_.picture(); }

  /// An empty picture of the view asked for, or else of all `lines`.
  MapPicture StartPicture(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                          std::vector<PictureLayer> layers) const;

  /// After all is written and finished.
  void Publish() { output_.Publish(); }

 private:
  std::optional<GeoRect> view_;
  CommandOutput output_;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_LANE_COMMAND_H_
