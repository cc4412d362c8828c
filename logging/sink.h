#ifndef VOREL_LOGGING_SINK_H_
#define VOREL_LOGGING_SINK_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include "base/export.h"
#include "logging/log_level.h"
#include "logging/time_and_thread.h"

namespace plog {

struct Record;

/// Where records go. Held by shared pointers; derive from it for a destination of your own.
class VOREL_EXPORT Sink {
 public:
  Sink() = default;
  virtual ~Sink();
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  /// Takes one record, on the thread that made it. Called by several threads at once: implementations guard what
  /// they share. What it throws is dropped, and the next sink still gets the record.
  ///
  /// It may log, and call every function of `Logger`. Records that it makes go to other sinks but never to a sink
  /// that the same thread is inside of, and not further than four sinks deep: beyond that they are dropped.
  ///
  /// @param record  valid until the call returns
  virtual void Write(const Record& record) = 0;
};

/// Writes each record as one line (see `FormatRecord`) to a stream, in one piece, and flushes it: a log is read
/// after a crash. Lines of several threads do not mix as long as nobody else writes to the stream.
class VOREL_EXPORT StreamSink final : public Sink {
 public:
  /// @param stream  must live until `Detach` is called or the sink is destroyed; a failed stream drops the lines
  explicit StreamSink(std::ostream& stream);
  ~StreamSink() override;

  void Write(const Record& record) override;

  /// Ends the use of the stream: when it returns, no thread is writing to it or ever will. Must not be called by
  /// the stream's own buffer.
  void Detach();

 private:
  std::mutex mutex_;
  std::ostream* stream_;
};

/// Hands each record to a function.
class VOREL_EXPORT CallbackSink final : public Sink {
 public:
  /// Receives one record, valid until the call returns.
  using Callback = std::function<void(const Record&)>;

  /// @param callback  called under the rules of `Sink::Write`, so by several threads at once; may be empty
  explicit CallbackSink(Callback callback);
  ~CallbackSink() override;

  void Write(const Record& record) override;

 private:
  const Callback callback_;
};

/// What `MemorySink` keeps of a record.
struct StoredRecord {
  Time time;                          ///< when it was made
  LogLevel level = LogLevel::kDebug;  ///< its severity
  std::uint32_t threadId = 0;         ///< the thread that made it
  std::size_t line = 0;               ///< of the logging statement in `file`
  std::string function;               ///< empty for a null pointer
  std::string file;                   ///< empty for a null pointer
  std::uint32_t instanceId = 0;       ///< the logger that it was made for
  std::vector<std::string> tags;      ///< in their order
  std::string message;                ///< all that was streamed into it
};

/// Keeps the records in memory, without a limit: for tests.
class VOREL_EXPORT MemorySink final : public Sink {
 public:
  MemorySink();
  ~MemorySink() override;

  void Write(const Record& record) override;

  /// A copy of all records so far, in the order in which they arrived.
  std::vector<StoredRecord> Records() const;

  /// Number of records so far.
  std::size_t Count() const;

  /// Forgets all records.
  void Clear();

 private:
  mutable std::mutex mutex_;
  std::vector<StoredRecord> records_;
};

}  // namespace plog

#endif  // VOREL_LOGGING_SINK_H_
