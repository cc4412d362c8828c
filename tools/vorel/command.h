#ifndef VOREL_TOOLS_VOREL_COMMAND_H_
#define VOREL_TOOLS_VOREL_COMMAND_H_

#include <CLI/CLI.hpp>
#include <functional>

namespace vorel::tool {

/// One command of the program: its part of the command line, and what to do when it is the one that was asked for.
struct Command {
  CLI::App* arguments = nullptr;  ///< owned by the program's own `CLI::App`
  std::function<void()> run;      ///< after parsing; throws `BadInput`
};

/// Each command lives in a file of its own, <name>_command.cpp, and is listed in main.cpp.
Command AddAlongCommand(CLI::App& program);
Command AddClipCommand(CLI::App& program);
Command AddContainsCommand(CLI::App& program);
Command AddMeasureCommand(CLI::App& program);
Command AddOnLineCommand(CLI::App& program);
Command AddSampleCommand(CLI::App& program);
Command AddSymbolsCommand(CLI::App& program);
Command AddThinCommand(CLI::App& program);
Command AddMatchCommand(CLI::App& program);
Command AddOffsetCommand(CLI::App& program);
Command AddArrowCommand(CLI::App& program);
Command AddCutCommand(CLI::App& program);
Command AddPlaneCommand(CLI::App& program);
Command AddBoundsCommand(CLI::App& program);
Command AddDrawCommand(CLI::App& program);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_COMMAND_H_
