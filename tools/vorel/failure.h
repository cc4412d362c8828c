#ifndef VOREL_TOOLS_VOREL_FAILURE_H_
#define VOREL_TOOLS_VOREL_FAILURE_H_

#include <stdexcept>
#include <string>

namespace vorel::tool {

constexpr int kExitFine = 0;
constexpr int kExitInternalFailure = 1;
constexpr int kExitBadInput = 2;

/// What the user gave cannot be used: arguments, a file's contents, or a place to write to. The message says what is
/// wrong and where, without the program's name; the program prints it as one line and ends with `kExitBadInput`.
class BadInput : public std::runtime_error {
 public:
  explicit BadInput(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_FAILURE_H_
