#include "tools/vorel/number_option.h"

#include <charconv>
#include <cmath>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

/// Whether all of `text` is a number, which is then in `number`.
template <class Number>
bool ReadAll(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && last == end;
}

}  // namespace

void RefuseOption(const std::string& option, const std::string& text, const std::string& problem) {
  throw BadInput(option + " " + text + ": " + problem);
}

std::optional<double> ReadNumber(std::string_view text) {
  double number = 0.0;
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  if (!ReadAll(plus ? text.substr(1) : text, number) || !std::isfinite(number)) return std::nullopt;
  return number;
}

double ParseNumber(const std::string& text, const std::string& option) {
  const std::optional<double> number = ReadNumber(text);
  if (!number) RefuseOption(option, text, "is not a number");
  return *number;
}

double ParsePositive(const std::string& text, const std::string& option, double most) {
  const double number = ParseNumber(text, option);
  if (number > 0.0 && number <= most) return number;
  RefuseOption(option, text, "is not greater than 0 and at most " + FixedNumber(most, 0));
}

double ParseNotNegative(const std::string& text, const std::string& option, double most) {
  const double number = ParseNumber(text, option);
  if (number >= 0.0 && number <= most) return number;
  RefuseOption(option, text, "is not between 0 and " + FixedNumber(most, 0));
}

double ParseMetres(const std::string& text, const std::string& option, bool zeroAllowed) {
  double metres = 0.0;
  if (ReadAll(text, metres) && std::isfinite(metres) && (zeroAllowed ? metres >= 0.0 : metres > 0.0)) {
    return metres;
  }
  RefuseOption(option, text,
               std::string("is not a number of metres") + (zeroAllowed ? ", 0 or more" : " greater than 0"));
}

int ParseWholeMetres(const std::string& text, const std::string& option) {
  int metres = 0;
  if (ReadAll(text, metres) && metres > 0) return metres;
  RefuseOption(
      option, text,
      "is not a whole number of metres from 1 to " + std::to_string(std::numeric_limits<int>::max()));
}

int ParseWhole(const std::string& text, const std::string& option, int least, int most) {
  int number = 0;
  if (ReadAll(text, number) && number >= least && number <= most) return number;
  RefuseOption(option, text,
               "is not a whole number from " + std::to_string(least) + " to " + std::to_string(most));
}

std::vector<std::uint32_t> ParseAscendingIndices(const std::string& text, const std::string& option) {
  std::vector<std::uint32_t> indices;
  std::size_t begin = 0;
  for (bool more = true; more;) {
    const std::size_t comma = text.find(',', begin);
    more = comma != std::string::npos;
    const std::string field = text.substr(begin, more ? comma - begin : std::string::npos);
    begin = comma + 1;
    int index = 0;
    if (!ReadAll(field, index) || index < 0) {
      RefuseOption(option, text, "\"" + field + "\" is not an index (a whole number from 0 on)");
    }
    if (!indices.empty() && static_cast<std::uint32_t>(index) <= indices.back()) {
      RefuseOption(option, text,
                   "the indices do not ascend: " + field + " follows " + std::to_string(indices.back()));
    }
    indices.push_back(static_cast<std::uint32_t>(index));
  }
  return indices;
}

std::pair<std::string, std::string> SplitPair(const std::string& text, char separator,
                                              const std::string& option, const std::string& problem) {
  const std::size_t at = text.find(separator);
  if (at == std::string::npos || text.find(separator, at + 1) != std::string::npos) {
    RefuseOption(option, text, problem);
  }
  return {text.substr(0, at), text.substr(at + 1)};
}

}  // namespace vorel::tool
