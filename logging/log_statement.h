#ifndef VOREL_LOGGING_LOG_STATEMENT_H_
#define VOREL_LOGGING_LOG_STATEMENT_H_

// Internal: how the library's own functions log. Clients need none of this.

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "base/export.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/record.h"

/// Logs one record for the function in which it stands, if the library's logger accepts the level.
///
///     VOREL_LOG(plog::LogLevel::kDebug, owner, "main route:", isMainRoute, ",pt count:", pointCount);
///
/// gives a message such as [Vorel][Demo][Geometry]main route:1,pt count:12. A bool is written as 0 or 1, a double
/// with six decimals. One statement, also as the branch of an if without braces.
///
/// @param level  a constant: it is evaluated twice
/// @param owner  std::string or string literal
/// @param ...    the pieces of the message, at least one, written in this order and with nothing between them
/// With the level disabled neither the owner nor a piece is evaluated and nothing is allocated. Nothing that goes
/// wrong while logging reaches the caller. Not for use inside a lambda, which has no name to log.
#define VOREL_LOG(level, owner, ...)                                                              \
  do {                                                                                            \
    if (::plog::Logger::TestLogLevel(::vorel::logging::vorel_log_instance_id_, (level))) {        \
      ::vorel::logging::WriteRecord((level), __func__, __LINE__, __FILE__, (owner), __VA_ARGS__); \
    }                                                                                             \
  } while (false)

namespace vorel {
namespace logging {

/// Writes what every message starts with: the module, the owner and the tag, each in brackets. Numbers that follow
/// are written in fixed notation with six decimals.
VOREL_EXPORT void BeginMessage(std::ostream& message, std::string_view owner);

/// The part of `VOREL_LOG` behind the level test. When memory runs out the record is cut short or lost.
template <class... Pieces>
__attribute__((cold)) void WriteRecord(plog::LogLevel level, const char* function, std::size_t line,
                                       const char* file, std::string_view owner,
                                       const Pieces&... pieces) noexcept {
  try {
    plog::Record record(level, function, line, file, vorel_log_instance_id_, std::string());
    BeginMessage(record.message, owner);
    (record.message << ... << pieces);
  } catch (...) {
    // Logging never reports failure to the geometry code.
  }
}

}  // namespace logging
}  // namespace vorel

#endif  // VOREL_LOGGING_LOG_STATEMENT_H_
