#ifndef VOREL_LOGGING_LOGGER_H_
#define VOREL_LOGGING_LOGGER_H_

#include <memory>
#include <vector>

#include "base/export.h"
#include "logging/log_level.h"

namespace plog {

struct Record;
class Sink;

/// The process-wide loggers. Each has an instance id (any unsigned value), a minimum level and any number of sinks.
/// None is registered at the start, so nothing is written anywhere.
///
///     auto sink = std::make_shared<plog::StreamSink>(std::clog);
///     plog::Logger::Register(vorel::logging::vorel_log_instance_id_, plog::LogLevel::kInfo, {sink});
///
/// Every function may be called from any thread at any time, also from inside a sink, from static constructors and
/// during exit. Loggers still registered when the process ends are left as they are; their sinks are not destroyed.
///
/// What may still run after `Unregister` or `RemoveSink` has returned: records that other threads submitted before
/// may still be on their way into a removed sink. It is kept alive for them and destroyed, on whichever thread is
/// the last to let go of it, when they have ended. No record submitted afterwards reaches it.
class VOREL_EXPORT Logger {
 public:
  Logger() = delete;

  /// Whether a logger with this id exists and accepts this level, which means `level` >= its minimum level.
  /// A logger without sinks accepts as well.
  /// Cost: some 3 ns, no lock, no allocation. Loggers whose ids differ by a multiple of 1024 slow each other down,
  /// by about 1 ns each.
  static bool TestLogLevel(unsigned instanceId, LogLevel level) noexcept;

  /// Creates a logger.
  ///
  /// @param instanceId    how records and the other functions name it; any value
  /// @param minimumLevel  the least level it accepts; any value
  /// @param sinks         where its records go; null pointers and repetitions are left out
  /// @return false when the id is taken: the logger that has it stays exactly as it is
  /// Throws std::bad_alloc; no logger is registered then.
  static bool Register(unsigned instanceId, LogLevel minimumLevel,
                       std::vector<std::shared_ptr<Sink>> sinks = {});

  /// Removes the logger and lets go of its sinks; the id is free again.
  /// @return false when there is no such logger
  static bool Unregister(unsigned instanceId);

  /// Changes the least level that the logger accepts. Records on their way are tested against the new one.
  /// @return false when there is no such logger
  static bool SetMinimumLevel(unsigned instanceId, LogLevel minimumLevel);

  /// Adds a sink behind those the logger has; records go to the sinks in this order. One sink may serve several
  /// loggers.
  ///
  /// @return false, and nothing changes, when there is no such logger, `sink` is null or the logger has it already
  ///         (it would get each record twice)
  /// Throws std::bad_alloc; nothing has changed then.
  static bool AddSink(unsigned instanceId, const std::shared_ptr<Sink>& sink);

  /// Takes a sink away from the logger.
  /// @return false when there is no such logger or it does not have this sink
  /// Throws std::bad_alloc; nothing has changed then.
  static bool RemoveSink(unsigned instanceId, const std::shared_ptr<Sink>& sink);

 private:
  friend struct Record;
  static void Submit(const Record& record) noexcept;
};

}  // namespace plog

#endif  // VOREL_LOGGING_LOGGER_H_
