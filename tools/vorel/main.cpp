#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "base/version.h"
#include "tools/vorel/command.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/output_target.h"
#include "tools/vorel/plain_text.h"

namespace {

using vorel::tool::Command;

std::string VersionText() {
  return "vorel " + std::to_string(VOREL_VERSION_MAJOR) + "." + std::to_string(VOREL_VERSION_MINOR) + "." +
         std::to_string(VOREL_VERSION_PATCH);
}

int PrintFailure(const std::string& message, int status) {
  std::fprintf(stderr, "vorel: %s\n", vorel::tool::OneLine(message).c_str());
  return status;
}

int PrintToStandardOutput(const std::string& text) {
  const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? vorel::tool::kExitFine
                 : PrintFailure("standard output: cannot be written", vorel::tool::kExitBadInput);
}

int RunProgram(int argc, char** argv) {
  CLI::App program(
      "Geometry of map and navigation clients, on GeoJSON files.\n"
      "Each command reads lines in longitude and latitude and writes GeoJSON or a picture.",
      "vorel");
  program.set_version_flag("--version", VersionText(), "Print the version and end");
  program.set_help_flag("-h,--help", "Print this help and end");
  program.get_formatter()->column_width(24);
  program.footer(
      "vorel COMMAND --help explains a command.\n"
      "\n"
      "Exit status\n"
      "  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal "
      "failure.\n"
      "\n"
      "Examples\n"
      "  vorel symbols drive.geojson --spacing 50 --picture drive.svg\n"
      "  vorel symbols --help");
  program.require_subcommand(1);

  const std::vector<Command> commands = {vorel::tool::AddSymbolsCommand(program)};
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForVersion&) {
    return PrintToStandardOutput(VersionText() + "\n");
  } catch (const CLI::CallForHelp&) {
    return PrintToStandardOutput(program.help());
  } catch (const CLI::ParseError& problem) {
    return PrintFailure(std::string(problem.what()) + " (vorel --help explains)", vorel::tool::kExitBadInput);
  }
  const auto chosen = std::find_if(commands.begin(), commands.end(),
                                   [](const Command& command) { return command.arguments->parsed(); });
  chosen->run();
  return vorel::tool::kExitFine;
}

}  // namespace

int main(int argc, char** argv) {
  vorel::tool::RemoveTemporaryFilesOnSignals();
  try {
    return RunProgram(argc, argv);
  } catch (const vorel::tool::BadInput& problem) {
    return PrintFailure(problem.what(), vorel::tool::kExitBadInput);
  } catch (const std::bad_alloc&) {
    return PrintFailure("out of memory", vorel::tool::kExitInternalFailure);
  } catch (const std::exception& problem) {
    return PrintFailure(std::string("internal failure: ") + problem.what(),
                        vorel::tool::kExitInternalFailure);
  }
}
