#ifndef VOREL_TOOLS_VOREL_NUMBER_OPTION_H_
#define VOREL_TOOLS_VOREL_NUMBER_OPTION_H_

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorel::tool {

// Numbers on the command line. `option` is how the user calls the option; every message begins with it and the text.
// All `Parse...` throw `BadInput` for what they cannot read. Lengths and whole numbers take no leading +.

/// Throws `BadInput` that says "OPTION TEXT: PROBLEM".
[[noreturn]] void RefuseOption(const std::string& option, const std::string& text,
                               const std::string& problem);

/// The finite number that all of `text` is, perhaps behind one +; nothing for anything else.
std::optional<double> ReadNumber(std::string_view text);

/// The same, which `text` must be.
double ParseNumber(const std::string& text, const std::string& option);

/// A number in (0, most]; `most` is whole.
double ParsePositive(const std::string& text, const std::string& option, double most);

/// A number in [0, most]; `most` is whole.
double ParseNotNegative(const std::string& text, const std::string& option, double most);

/// A length in metres: a finite number greater than 0, or of 0 too.
double ParseMetres(const std::string& text, const std::string& option, bool zeroAllowed);

/// A whole number of metres in [1, 2147483647].
int ParseWholeMetres(const std::string& text, const std::string& option);

/// A whole number in [least, most].
int ParseWhole(const std::string& text, const std::string& option, int least,
               int most = std::numeric_limits<int>::max());

/// Whole numbers in [0, 2147483647] in ascending order, with commas; equal neighbours are refused.
std::vector<std::uint32_t> ParseAscendingIndices(const std::string& text, const std::string& option);

/// The two fields of "A,B" (or with another separator); refused with `problem` unless there are exactly two.
std::pair<std::string, std::string> SplitPair(const std::string& text, char separator,
                                              const std::string& option, const std::string& problem);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_NUMBER_OPTION_H_
