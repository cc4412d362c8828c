#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
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

/// What is wrong with the command line, in the words of the other messages.
std::string ArgumentProblem(const CLI::App& program, const CLI::ParseError& problem) {
  const std::string text = problem.what();
  if (dynamic_cast<const CLI::ExtrasError*>(&problem) != nullptr) {
    const std::vector<std::string> unknown = program.remaining(true);
    if (unknown.empty()) return text;
    if (unknown[0].size() > 1 && unknown[0][0] == '-') return "unknown option " + unknown[0];
    return (program.get_subcommands().empty() ? "unknown command " : "unexpected argument ") + unknown[0];
  }
  const std::string option = text.substr(0, text.find(':'));
  if (text.find(" required but received ") != std::string::npos) return option + ": is given more than once";
  if (text.find(" required ") != std::string::npos) return option + ": needs a value";
  const std::size_t overridden = text.find(" was given a disallowed flag override");
  if (overridden != std::string::npos) return "--" + text.substr(0, overridden) + ": takes no value";
  return text;
}

/// A standard stream that the caller closed must not become the number of a file opened here.
void OccupyClosedStandardStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) != -1) continue;
    // The wrong direction on purpose: using the stream fails as it would have.
    (void)!open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
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
      "  vorel measure drive.geojson\n"
      "  vorel symbols --help");

  program.require_subcommand(0, 1);

  const std::vector<Command> commands = {
      vorel::tool::AddSymbolsCommand(program), vorel::tool::AddSampleCommand(program),
      vorel::tool::AddMeasureCommand(program), vorel::tool::AddClipCommand(program),
      vorel::tool::AddThinCommand(program),    vorel::tool::AddContainsCommand(program),
      vorel::tool::AddOnLineCommand(program),  vorel::tool::AddAlongCommand(program),
      vorel::tool::AddMatchCommand(program),   vorel::tool::AddOffsetCommand(program),
      vorel::tool::AddArrowCommand(program),   vorel::tool::AddCutCommand(program),
      vorel::tool::AddPlaneCommand(program),   vorel::tool::AddBoundsCommand(program),
      vorel::tool::AddDrawCommand(program),
  };
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForVersion&) {
    return PrintToStandardOutput(VersionText() + "\n");
  } catch (const CLI::CallForHelp&) {
    return PrintToStandardOutput(program.help());
  } catch (const CLI::ParseError& problem) {
    return PrintFailure(ArgumentProblem(program, problem) + " (vorel --help explains)",
                        vorel::tool::kExitBadInput);
  }
  const auto chosen = std::find_if(commands.begin(), commands.end(),
                                   [](const Command& command) { return command.arguments->parsed(); });
  if (chosen == commands.end()) {
    return PrintFailure("no command is given (vorel --help explains)", vorel::tool::kExitBadInput);
  }
  chosen->run();
  return vorel::tool::kExitFine;
}

}  // namespace

int main(int argc, char** argv) {
  OccupyClosedStandardStreams();
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
