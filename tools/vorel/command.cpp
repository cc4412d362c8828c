#include "tools/vorel/command.h"

#include <charconv>
#include <cstdio>
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

void PrintNote(const std::string& note) {
  std::fprintf(stderr, "vorel: note: %s\n", OneLine(note).c_str());
}

}  // namespace vorel::tool
