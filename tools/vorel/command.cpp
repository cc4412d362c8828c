#include "tools/vorel/command.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {

int ParseWholeMetres(const std::string& text, const std::string& option) {
  int metres = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, metres);
  if (error == std::errc() && last == end && metres > 0) return metres;
  throw BadInput(option + " " + text + ": is not a whole number of metres from 1 to " +
                 std::to_string(std::numeric_limits<int>::max()));
}

double ParseMetres(const std::string& text, const std::string& option, bool zeroAllowed) {
  double metres = 0.0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, metres);
  const bool inRange = std::isfinite(metres) && (zeroAllowed ? metres >= 0.0 : metres > 0.0);
  if (error == std::errc() && last == end && inRange) return metres;
  throw BadInput(option + " " + text + ": is not a number of metres" +
                 (zeroAllowed ? ", 0 or more" : " greater than 0"));
}

int ParseWholeNumber(const std::string& text, const std::string& option, int least, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && last == end && number >= least && number <= most) return number;
  throw BadInput(option + " " + text + ": is not a whole number from " + std::to_string(least) + " to " +
                 std::to_string(most));
}

}  // namespace vorel::tool
