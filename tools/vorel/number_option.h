#ifndef VOREL_TOOLS_VOREL_NUMBER_OPTION_H_
#define VOREL_TOOLS_VOREL_NUMBER_OPTION_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vorel::tool {

// Numbers on the command line. `option` is how the user calls the option; every message begins with it and the text.
// All throw `BadInput` for what they cannot read.

/// Throws `BadInput` that says "OPTION TEXT: PROBLEM".
[[noreturn]] void RefuseOption(const std::string& option, const std::string& text,
                               const std::string& problem);

/// A finite number.
double ParseNumber(const std::string& text, const std::string& option);

/// A number in (0, most]; `most` is whole.
double ParsePositive(const std::string& text, const std::string& option, double most);

/// A number in [0, most]; `most` is whole.
double ParseNotNegative(const std::string& text, const std::string& option, double most);

/// A whole number in [least, 2147483647].
int ParseWhole(const std::string& text, const std::string& option, int least);

/// Whole numbers in [0, 2147483647] in ascending order, with commas; equal neighbours are refused.
std::vector<std::uint32_t> ParseAscendingIndices(const std::string& text, const std::string& option);

/// The two fields of "A,B" (or with another separator); refused with `problem` unless there are exactly two.
std::pair<std::string, std::string> SplitPair(const std::string& text, char separator,
                                              const std::string& option, const std::string& problem);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_NUMBER_OPTION_H_
