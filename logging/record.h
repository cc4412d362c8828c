#ifndef VOREL_LOGGING_RECORD_H_
#define VOREL_LOGGING_RECORD_H_

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "base/export.h"
#include "logging/log_level.h"
#include "logging/time_and_thread.h"

namespace plog {

/// One log entry. Made on the stack where something is logged, filled by streaming into `message`, handed to the
/// sinks of its logger when it is destroyed: once, in place, never copied.
///
///     {
///       plog::Record record(plog::LogLevel::kInfo, __func__, __LINE__, __FILE__, instanceId, "");
///       record.message << "points: " << 12;
///     }  // here the sinks see it
///
/// Ask `Logger::TestLogLevel` first: building a record costs about a microsecond.
struct VOREL_EXPORT Record {
  /// Fills every field; the current time is taken last but for the tag.
  ///
  /// @param recordLevel        any value
  /// @param recordFunction     bare name of the function that logs; not copied, must outlive the record; may be null
  /// @param recordLine         line of the logging statement, from 1
  /// @param recordFile         path of its source file; not copied, must outlive the record; may be null
  /// @param loggerInstanceId   the logger that is to receive the record; need not exist
  /// @param tag                becomes the only element of `tags`, also when it is empty
  /// Throws what the standard containers throw when memory runs out, and nothing is submitted then.
  Record(LogLevel recordLevel, const char* recordFunction, std::size_t recordLine, const char* recordFile,
         unsigned loggerInstanceId, const std::string& tag);

  /// Submits the record to the logger with id `instanceId`, if there is one and it accepts `level`. Whatever a sink
  /// throws ends here. Runs the sinks on the calling thread; see `Logger` and `Sink`.
  ~Record();

  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  Time time;                      ///< when the record was made
  LogLevel level;                 ///< severity
  std::uint32_t threadId;         ///< the thread that made the record, see `Util::GetTid`
  std::size_t line;               ///< source line of the logging statement
  const char* function;           ///< bare name of the function that logs
  const char* file;               ///< path of the source file, as `__FILE__` gives it
  std::uint32_t instanceId;       ///< the logger the record is meant for
  std::vector<std::string> tags;  ///< the constructor's tag; more may be appended
  std::string firstReserved;      ///< empty; never read or written by this library
  std::string secondReserved;     ///< empty; never read or written by this library
  /// Receives the message. Writes numbers the same way in every client: the "C" locale, whatever the global one is.
  std::ostringstream message;
  std::uint16_t flags;  ///< zero; never read or written by this library
};

static_assert(sizeof(unsigned) == sizeof(std::uint32_t), "instance ids have 32 bits");

}  // namespace plog

#endif  // VOREL_LOGGING_RECORD_H_
