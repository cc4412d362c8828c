#ifndef VOREL_TESTS_SUPPORT_TOOL_REFUSAL_H_
#define VOREL_TESTS_SUPPORT_TOOL_REFUSAL_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/program_runner.h"

namespace vorel::test {

/// Exactly one line on standard error that holds all of `fragments`, status 2, nothing on standard output, and the
/// directory as it was.
inline void ExpectRefused(const std::vector<std::string>& arguments, const std::string& input,
                          const TemporaryDirectory& directory, const std::vector<std::string>& fragments) {
  const auto before = directory.Contents();
  const ProgramResult result = RunProgram(VOREL_TOOL_PATH, arguments, input, directory.path());
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  EXPECT_EQ(result.err.rfind("vorel: ", 0), 0u) << result.err;
  EXPECT_FALSE(result.err.empty() || result.err.back() != '\n');
  for (const std::string& fragment : fragments) {
    EXPECT_NE(result.err.find(fragment), std::string::npos)
        << "\"" << fragment << "\" is not in: " << result.err;
  }
  EXPECT_EQ(directory.Contents(), before);
}

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_TOOL_REFUSAL_H_
