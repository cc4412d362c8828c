#include "tools/vorel/command_output.h"

#include <filesystem>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {

void AddOutputOptions(CLI::App& arguments, OutputOptions& options, const std::string& outHelp,
                      const std::string& pictureHelp) {
  arguments.add_option("--out", options.out, outHelp + " Default: standard output")->type_name("FILE");
  if (pictureHelp.empty()) return;
  arguments.add_option("--picture", options.picture, pictureHelp + "\nDefault: none")->type_name("FILE");
}

void AddPictureViewOption(CLI::App& arguments, std::optional<std::string>& view) {
  arguments
      .add_option("--view", view,
                  "What the picture shows, in degrees: west, south, east, north,\n"
                  "with commas. Longitudes -360 to 360, latitudes -90 to 90;\n"
                  "W > E is a view across the antimeridian. Default: everything")
      ->type_name("W,S,E,N");
}

CommandOutput::CommandOutput(const OutputOptions& options, const std::vector<const TextSource*>& inputs) {
  out_.emplace("--out", options.out);
  if (options.picture) {
    if (*options.picture == "-") throw BadInput("--picture -: the picture needs a file of its own");
    picture_.emplace("--picture", *options.picture);
    picture_->RefuseSameFileAs(*out_);
  }
  for (const std::optional<OutputTarget>* target : {&out_, &picture_}) {
    if (!*target) continue;
    for (const TextSource* const input : inputs) {
      if (input != nullptr) (*target)->RefuseSameFileAs(*input);
    }
  }
}

void CommandOutput::Publish() {
  OutputTarget::Publish({&*out_, picture_ ? &*picture_ : nullptr});
}

std::string PictureTitle(const TextSource& source) {
  constexpr std::size_t kTitleCharacters = 56;
  return Shorten(OneLine(std::filesystem::path(source.name()).filename().string()), kTitleCharacters);
}

}  // namespace vorel::tool
