#include "tools/vorel/number_option.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

template <class Number>
bool ReadWhole(const std::string& text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && last == end;
}

}  // namespace

void RefuseOption(const std::string& option, const std::string& text, const std::string& problem) {
  throw BadInput(option + " " + text + ": " + problem);
}

double ParseNumber(const std::string& text, const std::string& option) {
  double number = 0.0;
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  if (!ReadWhole(plus ? text.substr(1) : text, number) || !std::isfinite(number)) {
    RefuseOption(option, text, "is not a number");
  }
  return number;
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

int ParseWhole(const std::string& text, const std::string& option, int least) {
  int number = 0;
  if (ReadWhole(text, number) && number >= least) return number;
  RefuseOption(option, text,
               "is not a whole number from " + std::to_string(least) + " to " +
                   std::to_string(std::numeric_limits<int>::max()));
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
    if (!ReadWhole(field, index) || index < 0) {
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
