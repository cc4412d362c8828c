#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/version.h"
#include "support/program_runner.h"

namespace vorel::test {
namespace {

ProgramResult RunTool(const std::vector<std::string>& arguments) {
  return RunProgram(VOREL_TOOL_PATH, arguments);
}

TEST(ToolUsage, VersionIsTheLibrarysOwn) {
  const ProgramResult result = RunTool({"--version"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "vorel " + std::to_string(VOREL_VERSION_MAJOR) + "." +
                            std::to_string(VOREL_VERSION_MINOR) + "." + std::to_string(VOREL_VERSION_PATCH) +
                            "\n");
}

TEST(ToolUsage, HelpListsTheCommandsAndExamples) {
  for (const char* const flag : {"--help", "-h"}) {
    const ProgramResult result = RunTool({flag});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
    for (const char* const text : {"symbols", "--version", "Exit status", "Examples"}) {
      EXPECT_NE(result.out.find(text), std::string::npos) << text;
    }
  }
}

TEST(ToolUsage, HelpOfSymbolsExplainsEachOption) {
  const ProgramResult result = RunTool({"symbols", "--help"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  for (const char* const text :
       {"ROUTE", "--view W,S,E,N", "--spacing METRES", "1 to 2147483647. Default: 100", "--area FILE",
        "--out FILE", "Default: standard output", "--picture FILE", "--verbose", "Newline-delimited",
        "Examples", "Exit status"}) {
    EXPECT_NE(result.out.find(text), std::string::npos) << text;
  }
  // No line is wider than a terminal of usual width can show.
  std::size_t begin = 0;
  for (std::size_t end; (end = result.out.find('\n', begin)) != std::string::npos; begin = end + 1) {
    EXPECT_LE(end - begin, 120u) << result.out.substr(begin, end - begin);
  }
}

struct UsageCase {
  const char* name;
  std::vector<std::string> arguments;
  const char* message;
};

class ToolUsageMistakes : public testing::TestWithParam<UsageCase> {};

TEST_P(ToolUsageMistakes, GetOneLine) {
  const ProgramResult result = RunTool(GetParam().arguments);
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, std::string("vorel: ") + GetParam().message + " (vorel --help explains)\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, ToolUsageMistakes,
    testing::Values(UsageCase{"NoCommand", {}, "no command is given"},
                    UsageCase{"UnknownCommand", {"sumbols"}, "unknown command sumbols"},
                    UsageCase{"UnknownProgramOption", {"--fast"}, "unknown option --fast"},
                    UsageCase{"UnknownOption", {"symbols", "a", "--fast"}, "unknown option --fast"},
                    UsageCase{"UnknownShortOption", {"symbols", "a", "-x"}, "unknown option -x"},
                    UsageCase{"SecondRoute", {"symbols", "a", "b"}, "unexpected argument b"},
                    UsageCase{"ValueMissing", {"symbols", "a", "--spacing"}, "--spacing: needs a value"},
                    UsageCase{"GivenTwice",
                              {"symbols", "a", "--spacing", "5", "--spacing", "6"},
                              "--spacing: is given more than once"},
                    UsageCase{"ValueForAFlag", {"symbols", "a", "--verbose=3"}, "--verbose: takes no value"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace vorel::test
