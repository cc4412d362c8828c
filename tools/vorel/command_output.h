#ifndef VOREL_TOOLS_VOREL_COMMAND_OUTPUT_H_
#define VOREL_TOOLS_VOREL_COMMAND_OUTPUT_H_

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/vorel/output_target.h"
#include "tools/vorel/text_source.h"

namespace vorel::tool {

/// Set apart in a picture's subtitle.
constexpr const char* kDot = " \xC2\xB7 ";

/// Where a command writes to.
struct OutputOptions {
  std::string out = "-";
  std::optional<std::string> picture;
};

/// Adds --out and, unless `pictureHelp` is empty, --picture.
void AddOutputOptions(CLI::App& arguments, OutputOptions& options, const std::string& outHelp,
                      const std::string& pictureHelp);

/// Adds --view, for a command whose picture shows everything without it.
void AddPictureViewOption(CLI::App& arguments, std::optional<std::string>& view);

/// The files of one run: all appear, complete, or none.
class CommandOutput {
 public:
  /// Opens them, and refuses those that are one file with each other or with an input.
  /// @param inputs  null pointers are passed over
  CommandOutput(const OutputOptions& options, const std::vector<const TextSource*>& inputs);

  OutputTarget& out() { return *out_; }
  bool wantsPicture() const { return picture_.has_value(); }
  OutputTarget& picture() { return *picture_; }

  /// After all is written and finished.
  void Publish();

 private:
  std::optional<OutputTarget> out_;
  std::optional<OutputTarget> picture_;
};

/// The title of a picture: the name of the file that was read.
std::string PictureTitle(const TextSource& source);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_COMMAND_OUTPUT_H_
