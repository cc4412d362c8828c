#include "tools/vorel/command_output.h"

#include <filesystem>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {

void AddOutputOptions(CLI::App& arguments, OutputOptions& options, const std::string& outHelp,
                      const char* pictureHelp) {
  arguments.add_option("--out", options.out, outHelp + " Default: standard output")->type_name("FILE");
  if (pictureHelp == nullptr) return;
  arguments.add_option("--picture", options.picture, std::string(pictureHelp) + "\nDefault: none")
      ->type_name("FILE");
}

CommandOutput::CommandOutput(const OutputOptions& options, std::initializer_list<const TextSource*> inputs) {
  out_.emplace("--out", options.out);
  if (options.picture) {
    if (*options.picture == "-") throw BadInput("--picture -: the picture needs a file of its own");
    picture_.emplace("--picture", *options.picture);
    picture_->RefuseSameFileAs(*out_);
  }
  for (const std::optional<OutputTarget>* target : {&out_, &picture_}) {
    if (!*target) continue;
    for (const TextSource* const input : inputs) (*target)->RefuseSameFileAs(*input);
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
