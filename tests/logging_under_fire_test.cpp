// Logging when everything goes wrong at once: a million records from eight threads, sinks that throw, log themselves,
// block, and come and go while others log. To be run under the thread sanitizer as well.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/log_statement.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/sink.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/bits.h"
#include "tests/support/allocation_counter.h"

namespace {

using plog::CallbackSink;
using plog::Logger;
using plog::LogLevel;
using plog::Record;
using vorel::logging::vorel_log_instance_id_;

constexpr unsigned kId = 500;
constexpr unsigned kOtherId = kId + 1024;  // shares a place in the table of loggers
constexpr int kThreadCount = 8;

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
constexpr bool kIsSanitized = __has_feature(thread_sanitizer) || __has_feature(address_sanitizer);
#else
constexpr bool kIsSanitized = false;
#endif

// A million records in all; a tenth of that where each costs ten times as much. VOREL_LOG_TEST_RECORDS sets another
// number.
int RecordsPerThread() {
  const char* const text = std::getenv("VOREL_LOG_TEST_RECORDS");
  if (text != nullptr) return std::atoi(text);
  return (kIsSanitized ? 100000 : 1000000) / kThreadCount;
}

class LoggingUnderFire : public testing::Test {
 protected:
  ~LoggingUnderFire() override {
    Logger::Unregister(kId);
    Logger::Unregister(kOtherId);
  }
};

void Log(unsigned id, const std::string& message, LogLevel level = LogLevel::kError) {
  Record record(level, "Log", 1, "logging_under_fire_test.cpp", id, "");
  record.message << message;
}

// All threads begin at the same moment, so that they meet.
template <class Body>
void RunInThreads(Body body) {
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreadCount; ++thread) {
    threads.emplace_back([&body, started, thread] {
      started.wait();
      body(thread);
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
}

// ---- A million records ------------------------------------------------------------------------------------------

// The text of a record: its thread, its number, and a tail whose length and letter change from record to record, so that
// a piece of another record would show.
std::string TextOf(int thread, int number) {
  const auto length = static_cast<std::size_t>(number % 97);
  return "<" + std::to_string(thread) + " " + std::to_string(number) + " " +
         std::string(length, static_cast<char>('a' + (thread + number) % 26)) + ">";
}

// Follows the numbers of each thread, which must come in order and without a gap.
class Ledger {
 public:
  /// `text` is a whole record's text, or one fault is counted.
  void Enter(const std::string& text) {
    int thread = -1;
    int number = -1;
    if (!ReadHead(text, thread, number) || thread < 0 || thread >= kThreadCount) {
      ++torn_;
      return;
    }
    std::atomic<int>& next = next_[static_cast<std::size_t>(thread)];
    if (number != next.load(std::memory_order_relaxed)) {
      ++outOfOrder_;
      return;
    }
    next.store(number + 1, std::memory_order_relaxed);
    if (text != TextOf(thread, number)) ++torn_;
  }

  void ExpectComplete(const std::array<int, kThreadCount>& recordsOfThreads) const {
    EXPECT_EQ(torn_.load(), 0);
    EXPECT_EQ(outOfOrder_.load(), 0);
    for (std::size_t thread = 0; thread < next_.size(); ++thread) {
      EXPECT_EQ(next_[thread].load(), recordsOfThreads[thread]) << "thread " << thread;
    }
  }
  void ExpectComplete(int perThread) const {
    std::array<int, kThreadCount> recordsOfThreads{};
    recordsOfThreads.fill(perThread);
    ExpectComplete(recordsOfThreads);
  }

 private:
  static bool ReadHead(const std::string& text, int& thread, int& number) {
    if (text.empty() || text[0] != '<') return false;
    char* end = nullptr;
    thread = static_cast<int>(std::strtol(text.c_str() + 1, &end, 10));
    number = static_cast<int>(std::strtol(end, &end, 10));
    return *end == ' ';
  }

  std::array<std::atomic<int>, kThreadCount> next_{};
  std::atomic<int> torn_{0};
  std::atomic<int> outOfOrder_{0};
};

// The buffer of a stream that enters each line's message into a ledger and keeps none. One writer at a time: the sink's
// business.
class LedgerBuffer : public std::streambuf {
 public:
  explicit LedgerBuffer(Ledger& ledger) : ledger_(ledger) {}
  bool EndsWithALine() const { return line_.empty(); }

 private:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    for (std::streamsize i = 0; i < count; ++i) Take(text[i]);
    return count;
  }
  int_type overflow(int_type character) override {
    Take(static_cast<char>(character));
    return character;
  }
  void Take(char character) {
    if (character != '\n') {
      line_ += character;
      return;
    }
    const std::size_t message = line_.find('<');
    ledger_.Enter(message == std::string::npos ? line_ : line_.substr(message));
    line_.clear();
  }

  Ledger& ledger_;
  std::string line_;
};

TEST_F(LoggingUnderFire, AMillionRecordsArriveWholeAndInOrder) {
  const int perThread = RecordsPerThread();
  Ledger inPlace;
  Ledger inLines;
  LedgerBuffer buffer(inLines);
  std::ostream stream(&buffer);
  const auto callback = std::make_shared<CallbackSink>(
      [&inPlace](const Record& record) { inPlace.Enter(record.message.str()); });
  ASSERT_TRUE(
      Logger::Register(kId, LogLevel::kDebug, {callback, std::make_shared<plog::StreamSink>(stream)}));
  RunInThreads([perThread](int thread) {
    for (int number = 0; number < perThread; ++number) {
      Record record(LogLevel::kDebug, "f", 1, "file", kId, "");
      record.message << TextOf(thread, number);
    }
  });
  {
    SCOPED_TRACE("seen by a callback");
    inPlace.ExpectComplete(perThread);
  }
  SCOPED_TRACE("read back from a stream");
  inLines.ExpectComplete(perThread);
  EXPECT_TRUE(buffer.EndsWithALine());
}

// ---- Sinks that misbehave -----------------------------------------------------------------------------------------

// Among sinks that throw, log, change levels and take each other away, one that stays gets every record once.
TEST_F(LoggingUnderFire, ASinkAmongUnrulyOnesGetsEveryRecordOnce) {
  const int perThread = RecordsPerThread() / 25;
  Ledger ledger;
  std::atomic<int> fromSinks{0};
  std::atomic<int> thrown{0};
  const auto witness = std::make_shared<CallbackSink>([&](const Record& record) {
    const std::string text = record.message.str();
    if (text == "from a sink") {
      ++fromSinks;
    } else {
      ledger.Enter(text);
    }
  });
  const auto thrower = std::make_shared<CallbackSink>([&thrown](const Record& record) {
    if (++thrown % 2 == 0) throw 42;
    throw std::runtime_error(record.message.str());
  });
  const auto talker = std::make_shared<CallbackSink>([](const Record&) {
    Log(kId, "from a sink");
    throw std::string("after logging");
  });
  // Is in use on some threads while others take it away and put it back.
  std::shared_ptr<plog::Sink> comingAndGoing;
  const auto meddler = std::make_shared<CallbackSink>([&comingAndGoing](const Record&) {
    if (!Logger::RemoveSink(kId, comingAndGoing)) Logger::AddSink(kId, comingAndGoing);
    Logger::SetMinimumLevel(kId, LogLevel::kWarning);
    if (!Logger::Register(kOtherId, LogLevel::kDebug, {comingAndGoing})) Logger::Unregister(kOtherId);
    Logger::SetMinimumLevel(kId, LogLevel::kDebug);
  });
  comingAndGoing = std::make_shared<CallbackSink>([](const Record&) { throw 'x'; });
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {thrower, talker, meddler, witness}));
  RunInThreads([perThread](int thread) {
    for (int number = 0; number < perThread; ++number) {
      Log(kId, TextOf(thread, number));
      Log(kOtherId, "to whoever is there");
    }
  });
  Logger::Unregister(kId);
  Logger::Unregister(kOtherId);
  ledger.ExpectComplete(perThread);
  // The talker logs once for each record that reaches it, and not for its own.
  EXPECT_EQ(fromSinks.load(), kThreadCount * perThread);
  EXPECT_EQ(thrown.load(), 2 * kThreadCount * perThread);
  EXPECT_EQ(comingAndGoing.use_count(), 1) << "whoever used it has let go of it";
}

// What is promised after `RemoveSink`: no record that is submitted afterwards reaches the sink.
TEST_F(LoggingUnderFire, ARemovedSinkGetsNoLaterRecord) {
  constexpr int kSinks = 3000;
  std::atomic<int> removed{0};  // the sinks 1 .. removed are gone for good
  std::atomic<int> tooLate{0};
  std::atomic<int> reached{0};
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  std::thread changer([&] {
    const auto self = std::this_thread::get_id();
    for (int generation = 1; generation <= kSinks; ++generation) {
      bool sawItsOwn = false;
      const auto sink = std::make_shared<CallbackSink>([&, self, generation](const Record& record) {
        // The line number says how many sinks were gone when the record was made.
        if (static_cast<int>(record.line) >= generation) ++tooLate;
        if (std::this_thread::get_id() == self) {
          sawItsOwn = true;
        } else {
          ++reached;
        }
      });
      EXPECT_TRUE(Logger::AddSink(kId, sink));
      { const Record own(LogLevel::kInfo, "f", static_cast<std::size_t>(generation - 1), "file", kId, ""); }
      EXPECT_TRUE(sawItsOwn) << "a sink gets what is logged after it was added";
      // Now and then until another thread has logged to it.
      if (generation % 100 == 0) {
        reached = 0;
        while (reached.load() == 0) std::this_thread::yield();
      }
      EXPECT_TRUE(Logger::RemoveSink(kId, sink));
      removed.store(generation);
    }
  });
  RunInThreads([&](int) {
    while (removed.load() < kSinks) {
      const int gone = removed.load();
      const Record record(LogLevel::kInfo, "f", static_cast<std::size_t>(gone), "file", kId, "");
    }
  });
  changer.join();
  EXPECT_EQ(tooLate.load(), 0);
}

// Records at a level that is always accepted all arrive while the level goes up and down; between them come only
// records that some setting accepts.
TEST_F(LoggingUnderFire, ChangingLevelsLoseNothingAboveThem) {
  constexpr int kRounds = 300000;
  Ledger errors;
  std::atomic<int> debugRecords{0};
  const auto sink = std::make_shared<CallbackSink>([&](const Record& record) {
    if (record.level == LogLevel::kError) {
      errors.Enter(record.message.str());
    } else {
      ++debugRecords;
    }
  });
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kInfo, {sink}));
  std::atomic<bool> done{false};
  std::thread changer([&done] {
    for (int round = 0; round < kRounds; ++round) {
      EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kError));
      EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kWarning));
      EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kInfo));
    }
    done = true;
  });
  std::atomic<int> wronglyAnswered{0};
  std::array<int, kThreadCount> recordsOfThreads{};
  RunInThreads([&](int thread) {
    int number = 0;
    for (; number < 100 || !done.load(); ++number) {
      for (int asked = 0; asked < 100; ++asked) {
        if (!Logger::TestLogLevel(kId, LogLevel::kError)) ++wronglyAnswered;
        if (Logger::TestLogLevel(kId, LogLevel::kDebug)) ++wronglyAnswered;
      }
      Log(kId, TextOf(thread, number), LogLevel::kError);
      Log(kId, "below every setting", LogLevel::kDebug);
    }
    recordsOfThreads[static_cast<std::size_t>(thread)] = number;
  });
  changer.join();
  errors.ExpectComplete(recordsOfThreads);
  EXPECT_EQ(debugRecords.load(), 0);
  EXPECT_EQ(wronglyAnswered.load(), 0);
}

// The stream ends its life right behind `Detach`, while other threads go on logging.
TEST_F(LoggingUnderFire, AStreamMayGoOnceDetachedWhileThreadsLog) {
  constexpr int kStreams = 500;
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  std::atomic<bool> done{false};
  std::atomic<int> torn{0};
  std::thread changer([&] {
    for (int i = 0; i < kStreams; ++i) {
      auto stream = std::make_unique<std::ostringstream>();
      const auto sink = std::make_shared<plog::StreamSink>(*stream);
      EXPECT_TRUE(Logger::AddSink(kId, sink));
      std::this_thread::yield();
      sink->Detach();
      const std::string text = stream->str();
      stream.reset();
      EXPECT_TRUE(Logger::RemoveSink(kId, sink));
      std::istringstream lines(text);
      for (std::string line; std::getline(lines, line);) {
        if (line.find("<hello>") != line.size() - 7) ++torn;
      }
      if (!text.empty() && text.back() != '\n') ++torn;
    }
    done = true;
  });
  RunInThreads([&](int) {
    while (!done.load()) Log(kId, "<hello>");
  });
  changer.join();
  EXPECT_EQ(torn.load(), 0);
}

// A thread that is stuck in a sink holds nobody up: not those who test, change or log, nor the one who removes the sink.
TEST_F(LoggingUnderFire, ASinkThatBlocksBlocksOnlyItsOwnThread) {
  std::promise<void> entered;
  std::promise<void> release;
  const std::shared_future<void> released = release.get_future().share();
  int calls = 0;
  std::weak_ptr<plog::Sink> blockingWeak;
  const auto memory = std::make_shared<plog::MemorySink>();
  std::thread stuck;
  {
    const std::shared_ptr<plog::Sink> blocking =
        std::make_shared<CallbackSink>([&entered, &calls, released](const Record&) {
          if (++calls == 1) {
            entered.set_value();
            released.wait();
          }
        });
    blockingWeak = blocking;
    ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {blocking, memory}));
    stuck = std::thread([] { Log(kId, "stuck"); });
    entered.get_future().wait();
    EXPECT_TRUE(Logger::TestLogLevel(kId, LogLevel::kDebug));
    EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kInfo));
    EXPECT_TRUE(Logger::RemoveSink(kId, blocking));
  }
  Log(kId, "free");
  EXPECT_EQ(memory->Count(), 1u);
  EXPECT_TRUE(Logger::Unregister(kId));
  EXPECT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  EXPECT_FALSE(blockingWeak.expired()) << "kept alive for the thread inside of it";
  release.set_value();
  stuck.join();
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(memory->Count(), 2u) << "the sinks of a record are those it was submitted to";
  EXPECT_TRUE(blockingWeak.expired());
}

// A record may be made while the last things of a thread go.
TEST_F(LoggingUnderFire, AThreadMayLogToItsVeryEnd) {
  struct LogsAtTheEndOfItsThread {
    ~LogsAtTheEndOfItsThread() { Log(kId, "end of thread"); }
    int touched = 0;
  };
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory}));
  std::uint32_t threadId = 0;
  std::thread([&threadId] {
    static thread_local LogsAtTheEndOfItsThread last;
    last.touched = 1;
    threadId = plog::Util::GetTid();
  }).join();
  ASSERT_EQ(memory->Count(), 1u);
  EXPECT_EQ(memory->Records()[0].threadId, threadId);
}

// ---- Disabled statements ------------------------------------------------------------------------------------------

// While other threads register, unregister and change levels, a disabled statement evaluates and allocates nothing.
TEST_F(LoggingUnderFire, ADisabledStatementStaysFreeWhileLoggersChange) {
  const int perThread = RecordsPerThread();
  vorel_log_instance_id_ = kId;
  std::atomic<bool> done{false};
  const auto memory = std::make_shared<plog::MemorySink>();
  std::thread changer([&done, &memory] {
    while (!done.load()) {
      EXPECT_TRUE(Logger::Register(kId, LogLevel::kError, {memory}));
      EXPECT_TRUE(Logger::Register(kOtherId, LogLevel::kDebug, {memory}));
      EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kWarning));
      EXPECT_TRUE(Logger::Unregister(kId));
      EXPECT_TRUE(Logger::Unregister(kOtherId));
    }
  });
  std::atomic<int> evaluated{0};
  std::atomic<std::size_t> allocated{0};
  RunInThreads([&](int) {
    const vorel::test::AllocationCounter allocations;
    for (int number = 0; number < perThread; ++number) {
      VOREL_LOG(LogLevel::kInfo, "Demo", "evaluated ", ++evaluated);
    }
    allocated += allocations.Count();
  });
  done = true;
  changer.join();
  vorel_log_instance_id_ = 0;
  EXPECT_EQ(evaluated.load(), 0);
  EXPECT_EQ(allocated.load(), 0u);
  EXPECT_EQ(memory->Count(), 0u);
}

// ---- The library's own records --------------------------------------------------------------------------------------

// Functions that log and are timed, called by eight threads, from inside of a sink and from inside of a listener; both
// throw. No result differs from that of a silent call.
TEST_F(LoggingUnderFire, GeometryIsUntouchedByWhatItsRecordsMeet) {
  using Lines = std::vector<std::vector<tarvo::GeoCoordinate>>;
  std::vector<tarvo::GeoCoordinate> route;
  for (int i = 0; i < 50; ++i) route.emplace_back(7.5 + 0.001 * i, 47.5 + 0.0005 * (i % 3));
  const tarvo::Rect<tarvo::GeoCoordinate> view{{7.51, 47.0}, {7.53, 48.0}};
  const auto symbols = [&route, &view] {
    Lines out;
    vorel::VorelGeometryAlgorithm::GetInterpolateShapePoints(route, true, view, {}, 25, "under fire", out);
    return out;
  };
  const Lines expected = symbols();
  ASSERT_FALSE(expected.empty());
  const std::string wanted = "[Vorel][under fire]";

  const int perThread = RecordsPerThread() / 1000;
  std::atomic<int> differing{0};
  std::atomic<int> records{0};
  std::atomic<int> measurements{0};
  const auto sink = std::make_shared<CallbackSink>([&](const Record& record) {
    ++records;
    if (record.message.str().rfind(wanted, 0) != 0) ++differing;
    if (!vorel::test::SameBits(symbols(), expected)) ++differing;
    throw std::runtime_error("from a sink");
  });
  vorel::logging::SetElapsedTimeListener(
      [&](const std::string& owner, const std::string& name, std::chrono::nanoseconds) {
        ++measurements;
        if (owner != "under fire" || name != "GetInterpolateShapePoints") ++differing;
        throw std::runtime_error("from a listener");
      });
  vorel_log_instance_id_ = kId;
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {sink}));
  RunInThreads([&](int) {
    for (int number = 0; number < perThread; ++number) {
      if (!vorel::test::SameBits(symbols(), expected)) ++differing;
    }
  });
  vorel::logging::SetElapsedTimeListener(nullptr);
  vorel_log_instance_id_ = 0;
  EXPECT_EQ(differing.load(), 0);
  EXPECT_EQ(records.load(), kThreadCount * perThread) << "a sink does not get what it logs itself";
  EXPECT_EQ(measurements.load(), 2 * kThreadCount * perThread) << "calls inside of a sink are timed as well";
}

}  // namespace
