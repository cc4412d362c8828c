#ifndef VOREL_LOGGING_LOG_LEVEL_H_
#define VOREL_LOGGING_LOG_LEVEL_H_

namespace plog {

/// Severity of a record; a greater value is more severe. The underlying type is fixed, so every `int` is a valid
/// level: levels between, below and above the named ones compare by their value.
enum class LogLevel : int {
  kDebug = 0,
  kInfo = 1,
  kWarning = 2,
  kError = 3,
};

}  // namespace plog

#endif  // VOREL_LOGGING_LOG_LEVEL_H_
