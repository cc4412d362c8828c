// Loggers and records: registration, levels, delivery, threads.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/sink.h"
#include "logging/tag_names.h"
#include "tests/support/allocation_counter.h"

namespace {

using plog::Logger;
using plog::LogLevel;
using plog::Record;

constexpr unsigned kId = 100;
constexpr unsigned kCollides = 1024;  // ids that differ by it share a bucket of the table of loggers

static_assert(!std::is_copy_constructible<Record>::value && !std::is_move_constructible<Record>::value &&
                  !std::is_copy_assignable<Record>::value && !std::is_move_assignable<Record>::value,
              "a record stays where it was made");
static_assert(std::is_same<std::underlying_type<LogLevel>::type, int>::value, "any int is a level");
static_assert(static_cast<int>(LogLevel::kDebug) == 0 && static_cast<int>(LogLevel::kInfo) == 1 &&
                  static_cast<int>(LogLevel::kWarning) == 2 && static_cast<int>(LogLevel::kError) == 3,
              "callers pass levels by value");
static_assert(std::is_same<decltype(vorel::logging::vorel_log_instance_id_), std::uint32_t>::value,
              "a plain 32-bit value");

// Registers nothing, and leaves none of the ids used here behind.
class Logging : public testing::Test {
 protected:
  ~Logging() override {
    for (const unsigned id : usedIds_) Logger::Unregister(id);
  }

  bool Register(unsigned id, int minimumLevel, std::vector<std::shared_ptr<plog::Sink>> sinks = {}) {
    usedIds_.push_back(id);
    return Logger::Register(id, LogLevel{minimumLevel}, std::move(sinks));
  }

 private:
  std::vector<unsigned> usedIds_;
};

void Log(unsigned id, const std::string& message, LogLevel level = LogLevel::kError) {
  Record record(level, "Log", 1, "logging_test.cpp", id, "");
  record.message << message;
}

TEST_F(Logging, NothingIsRegisteredAtTheStart) {
  EXPECT_EQ(vorel::logging::vorel_log_instance_id_, 0u);
  for (const unsigned id : {0u, 1u, kCollides - 1, kCollides, UINT_MAX}) {
    EXPECT_FALSE(Logger::TestLogLevel(id, LogLevel{INT_MAX})) << id;
  }
  Log(0, "goes nowhere");
}

struct LevelCase {
  const char* name;
  int minimum;
  int level;
  bool accepted;
};

class LoggingLevels : public Logging, public testing::WithParamInterface<LevelCase> {};

TEST_P(LoggingLevels, CompareByValue) {
  const LevelCase& c = GetParam();
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, c.minimum, {memory}));
  EXPECT_EQ(Logger::TestLogLevel(kId, LogLevel{c.level}), c.accepted);
  Log(kId, "unasked", LogLevel{c.level});  // what the test refuses is not delivered either
  EXPECT_EQ(memory->Count(), c.accepted ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(All, LoggingLevels,
                         testing::Values(LevelCase{"Equal", 2, 2, true}, LevelCase{"Above", 2, 3, true},
                                         LevelCase{"Below", 2, 1, false},
                                         LevelCase{"DebugIsLeast", 0, 0, true},
                                         LevelCase{"NegativeBelowDebug", 0, -1, false},
                                         LevelCase{"NegativeMinimum", -5, -5, true},
                                         LevelCase{"NegativeMinimumPositiveLevel", -5, 5, true},
                                         LevelCase{"SmallestAcceptsSmallest", INT_MIN, INT_MIN, true},
                                         LevelCase{"SmallestAcceptsGreatest", INT_MIN, INT_MAX, true},
                                         LevelCase{"GreatestAcceptsGreatest", INT_MAX, INT_MAX, true},
                                         LevelCase{"GreatestRefusesNext", INT_MAX, INT_MAX - 1, false},
                                         LevelCase{"GreatestRefusesSmallest", INT_MAX, INT_MIN, false},
                                         LevelCase{"Unnamed", 2, 1000, true}),
                         [](const auto& test) { return test.param.name; });

TEST_F(Logging, ASecondRegistrationChangesNothing) {
  const auto first = std::make_shared<plog::MemorySink>();
  const auto second = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 2, {first}));
  EXPECT_FALSE(Register(kId, 0, {second}));
  EXPECT_FALSE(Logger::TestLogLevel(kId, LogLevel{1}));
  Log(kId, "for the first");
  EXPECT_EQ(first->Count(), 1u);
  EXPECT_EQ(second->Count(), 0u);
}

TEST_F(Logging, AnIdCanBeRegisteredAgain) {
  const auto first = std::make_shared<plog::MemorySink>();
  const auto second = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {first}));
  EXPECT_TRUE(Logger::Unregister(kId));
  EXPECT_EQ(first.use_count(), 1) << "the logger let go of its sink";
  EXPECT_FALSE(Logger::Unregister(kId));
  EXPECT_FALSE(Logger::TestLogLevel(kId, LogLevel::kError));
  Log(kId, "for nobody");
  ASSERT_TRUE(Register(kId, 3, {second}));
  EXPECT_FALSE(Logger::TestLogLevel(kId, LogLevel::kWarning));
  Log(kId, "for the second");
  EXPECT_EQ(first->Count(), 0u);
  EXPECT_EQ(second->Count(), 1u);
}

TEST_F(Logging, UnknownIdsAreRefused) {
  const auto memory = std::make_shared<plog::MemorySink>();
  EXPECT_FALSE(Logger::Unregister(kId));
  EXPECT_FALSE(Logger::SetMinimumLevel(kId, LogLevel::kDebug));
  EXPECT_FALSE(Logger::AddSink(kId, memory));
  EXPECT_FALSE(Logger::RemoveSink(kId, memory));
}

TEST_F(Logging, SinksAreAddedOnceAndRemovedOnce) {
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {nullptr, memory, memory}));
  EXPECT_FALSE(Logger::AddSink(kId, memory));
  EXPECT_FALSE(Logger::AddSink(kId, nullptr));
  Log(kId, "one");
  EXPECT_EQ(memory->Count(), 1u);
  EXPECT_TRUE(Logger::RemoveSink(kId, memory));
  EXPECT_FALSE(Logger::RemoveSink(kId, memory));
  EXPECT_FALSE(Logger::RemoveSink(kId, nullptr));
  Log(kId, "none");
  EXPECT_EQ(memory->Count(), 1u);
  EXPECT_TRUE(Logger::TestLogLevel(kId, LogLevel::kDebug)) << "a logger without sinks still accepts";
  EXPECT_TRUE(Logger::AddSink(kId, memory));
  Log(kId, "two");
  EXPECT_EQ(memory->Count(), 2u);
}

TEST_F(Logging, ARecordIsDeliveredOnceInPlaceAndInOrder) {
  std::vector<std::pair<char, const Record*>> calls;
  const auto sinkNamed = [&calls](char name) {
    return std::make_shared<plog::CallbackSink>(
        [&calls, name](const Record& r) { calls.emplace_back(name, &r); });
  };
  ASSERT_TRUE(Register(kId, 0, {sinkNamed('a'), sinkNamed('b')}));
  ASSERT_TRUE(Logger::AddSink(kId, sinkNamed('c')));
  ASSERT_TRUE(Register(kId + 1, 0, {sinkNamed('x')}));
  const Record* address = nullptr;
  {
    const Record record(LogLevel::kInfo, "f", 1, "file", kId, "tag");
    address = &record;
    EXPECT_TRUE(calls.empty()) << "not before the record is complete";
  }
  const std::vector<std::pair<char, const Record*>> expected{{'a', address}, {'b', address}, {'c', address}};
  EXPECT_EQ(calls, expected);
}

TEST_F(Logging, TheTagArgumentIsTheOnlyTag) {
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {memory}));
  { const Record record(LogLevel::kInfo, "f", 7, "file", kId, "some tag"); }
  ASSERT_EQ(memory->Count(), 1u);
  EXPECT_EQ(memory->Records()[0].tags, std::vector<std::string>{"some tag"});
}

TEST_F(Logging, ALevelRaisedWhileARecordIsFilledHoldsItBack) {
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {memory}));
  {
    Record record(LogLevel::kInfo, "f", 1, "file", kId, "");
    Logger::SetMinimumLevel(kId, LogLevel::kWarning);
  }
  EXPECT_EQ(memory->Count(), 0u);
}

TEST_F(Logging, OneSinkMayServeSeveralLoggers) {
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {memory}));
  ASSERT_TRUE(Register(kId + 1, 0, {memory}));
  Log(kId, "a");
  Log(kId + 1, "b");
  EXPECT_EQ(memory->Count(), 2u);
}

// Every call against a plain map, with ids that share a place in the table of loggers and such that do not.
TEST_F(Logging, BehavesLikeAMapFromIdToMinimumLevel) {
  constexpr unsigned kSeed = 1404;
  std::mt19937 random(kSeed);
  const std::array<unsigned, 14> ids{0,
                                     1,
                                     2,
                                     kCollides,
                                     2 * kCollides,
                                     3 * kCollides,
                                     kCollides - 1,
                                     kCollides + 1,
                                     2 * kCollides + 1,
                                     0x80000000u,
                                     0x7fffffffu,
                                     UINT_MAX - kCollides,
                                     UINT_MAX,
                                     UINT_MAX - 1};
  const std::array<int, 7> levels{INT_MIN, -1, 0, 1, 2, 3, INT_MAX};
  std::map<unsigned, int> reference;
  for (int step = 0; step < 20000; ++step) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", step " << step);
    const unsigned id = ids[random() % ids.size()];
    const int level = levels[random() % levels.size()];
    switch (random() % 3) {
      case 0:
        ASSERT_EQ(Register(id, level), reference.emplace(id, level).second);
        break;
      case 1:
        ASSERT_EQ(Logger::Unregister(id), reference.erase(id) == 1);
        break;
      default:
        ASSERT_EQ(Logger::SetMinimumLevel(id, LogLevel{level}), reference.count(id) == 1);
        if (reference.count(id) == 1) reference[id] = level;
    }
    for (const unsigned asked : ids) {
      const auto found = reference.find(asked);
      const int askedLevel = levels[random() % levels.size()];
      ASSERT_EQ(Logger::TestLogLevel(asked, LogLevel{askedLevel}),
                found != reference.end() && askedLevel >= found->second)
          << asked << " at " << askedLevel;
    }
  }
}

// Unregistered places serve again: registering and removing costs no memory in the long run.
TEST_F(Logging, PlacesAreReused) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  Logger::Unregister(kId);
  const vorel::test::AllocationCounter first;
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  Logger::Unregister(kId);
  const std::size_t allocationsInAUsedPlace = first.Count();
  for (unsigned step = 1; step < 50; ++step) {
    const vorel::test::AllocationCounter later;
    ASSERT_TRUE(Logger::Register(kId + kCollides * step, LogLevel::kDebug));
    Logger::Unregister(kId + kCollides * step);
    EXPECT_EQ(later.Count(), allocationsInAUsedPlace);
  }
}

// Each allocation of a change fails in turn: it throws and changes nothing, or it has worked.
TEST_F(Logging, ChangesWithoutMemoryChangeNothing) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const auto kept = std::make_shared<plog::MemorySink>();
  const auto added = std::make_shared<plog::MemorySink>();
  const auto failsCleanly = [](auto change) {
    std::size_t failures = 0;
    for (std::size_t allowed = 0;; ++allowed) {
      bool threw = false;
      bool worked = false;
      {
        const vorel::test::AllocationLimit limit(allowed);
        try {
          worked = change();
        } catch (const std::bad_alloc&) {
          threw = true;
        }
      }
      if (!threw) {
        EXPECT_TRUE(worked);
        return failures;
      }
      ++failures;
    }
  };
  EXPECT_GT(failsCleanly([&] { return Logger::Register(kId, LogLevel::kDebug, {kept}); }), 0u);
  EXPECT_GT(failsCleanly([&] { return Logger::AddSink(kId, added); }), 0u);
  Log(kId, "to both");
  EXPECT_EQ(kept->Count() * 10 + added->Count(), 11u);
  EXPECT_GT(failsCleanly([&] { return Logger::RemoveSink(kId, kept); }), 0u);
  Log(kId, "to one");
  EXPECT_EQ(kept->Count() * 10 + added->Count(), 12u);
  EXPECT_EQ(failsCleanly([&] { return Logger::Unregister(kId); }), 0u);
  EXPECT_EQ(kept.use_count() * 10 + added.use_count(), 11);
}

TEST(TagNames, OnlyTheLibrarysOwnIndexHasAText) {
  EXPECT_EQ(vorel::logging::GetTagName(11), "[Geometry]");
  for (const int index : {INT_MIN, -1, 0, 1, 10, 12, 1000, INT_MAX}) {
    EXPECT_EQ(vorel::logging::GetTagName(index), "") << index;
  }
  EXPECT_EQ(&vorel::logging::GetTagName(11), &vorel::logging::GetTagName(11)) << "the string lives on";
}

TEST(ThreadIds, DifferBetweenThreadsAndStayTheSame) {
  constexpr std::size_t kThreads = 16;
  std::array<std::uint32_t, kThreads> first{};
  std::array<std::uint32_t, kThreads> second{};
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&first, &second, i] {
      first[i] = plog::Util::GetTid();
      second[i] = plog::Util::GetTid();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(first, second);
  std::map<std::uint32_t, int> seen{{plog::Util::GetTid(), 1}};
  for (const std::uint32_t id : first) ++seen[id];
  EXPECT_EQ(seen.size(), kThreads + 1);
  EXPECT_EQ(seen.count(0), 0u);
}

TEST(ThreadIds, StartAtOne) {
  // The main thread was the first to ask, before main: see LogsFromAStaticConstructor.
  EXPECT_EQ(plog::Util::GetTid(), 1u);
}

TEST(FetchTime, RoundsDownToAWholeMillisecond) {
  using std::chrono::milliseconds;
  const auto now = [] {
    return std::chrono::floor<milliseconds>(std::chrono::system_clock::now()).time_since_epoch().count();
  };
  for (int run = 0; run < 1000; ++run) {
    const auto before = now();
    plog::Time time;
    plog::Util::FetchTime(&time);
    const auto after = now();
    const auto fetched = std::int64_t{time.seconds} * 1000 + time.milliseconds;
    ASSERT_LE(before, fetched);
    ASSERT_LE(fetched, after);
  }
}

TEST(FetchTime, FollowsTheWallClock) {
  const std::time_t before = std::time(nullptr);
  plog::Time time{-1, 65535};
  plog::Util::FetchTime(&time);
  const std::time_t after = std::time(nullptr);
  // std::time may read a coarser clock that lags by some milliseconds.
  EXPECT_LE(before, time.seconds);
  EXPECT_LE(time.seconds, after + 1);
  EXPECT_LT(time.milliseconds, 1000);
}

// Records logged per thread in the thread tests. VOREL_LOG_TEST_RECORDS sets another number, for long runs.
int RecordsPerThread() {
  const char* const text = std::getenv("VOREL_LOG_TEST_RECORDS");
  return text != nullptr ? std::atoi(text) : 5000;
}

constexpr int kThreadCount = 8;

template <class Body>
void RunInThreads(Body body) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreadCount; ++thread) threads.emplace_back(body, thread);
  for (std::thread& thread : threads) thread.join();
}

TEST_F(Logging, EightThreadsLoseAndTearNothing) {
  const int perThread = RecordsPerThread();
  const auto memory = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Register(kId, 0, {memory}));
  RunInThreads([perThread](int thread) {
    for (int i = 0; i < perThread; ++i) {
      Record record(LogLevel::kInfo, "f", static_cast<std::size_t>(i), "file", kId, "");
      record.message << "thread " << thread << " record " << i << " end";
    }
  });
  std::map<std::uint32_t, int> nextOfThread;
  std::map<std::uint32_t, std::string> nameOfThread;
  for (const plog::StoredRecord& record : memory->Records()) {
    const int expected = nextOfThread[record.threadId]++;
    ASSERT_EQ(record.line, static_cast<std::size_t>(expected)) << "one thread's records come in its order";
    const std::size_t split = record.message.find(" record ");
    ASSERT_NE(split, std::string::npos) << record.message;
    std::string& name = nameOfThread[record.threadId];
    if (name.empty()) name = record.message.substr(0, split);
    ASSERT_EQ(record.message, name + " record " + std::to_string(expected) + " end");
  }
  ASSERT_EQ(nextOfThread.size(), static_cast<std::size_t>(kThreadCount));
  for (const auto& [threadId, count] : nextOfThread) EXPECT_EQ(count, perThread) << threadId;
}

// One place changes hands between a logger that refuses debug records and one that takes them. A reader that paired
// the id of the one with the level of the other would see debug accepted.
TEST_F(Logging, TheTestNeverMixesTwoLoggers) {
  constexpr unsigned kRefusing = 5;
  constexpr unsigned kAccepting = kRefusing + kCollides;
  std::atomic<bool> done{false};
  std::atomic<int> mixed{0};
  std::vector<std::thread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&done, &mixed] {
      while (!done.load()) {
        if (Logger::TestLogLevel(kRefusing, LogLevel::kDebug)) ++mixed;
        if (Logger::TestLogLevel(kAccepting, LogLevel{-1})) ++mixed;
      }
    });
  }
  for (int i = 0; i < 20000; ++i) {
    EXPECT_TRUE(Register(kRefusing, 3));
    EXPECT_TRUE(Logger::Unregister(kRefusing));
    EXPECT_TRUE(Register(kAccepting, 0));
    EXPECT_TRUE(Logger::Unregister(kAccepting));
  }
  done = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(mixed.load(), 0);
}

// Loggers and sinks come and go while threads log to them; a sink that stays gets everything.
TEST_F(Logging, EverythingMayChangeWhileThreadsLog) {
  constexpr unsigned kComingAndGoing = kId + kCollides;
  const int perThread = RecordsPerThread() / 5;
  std::atomic<int> stayed{0};
  std::atomic<int> destroyed{0};
  struct Mortal final : plog::Sink {
    explicit Mortal(std::atomic<int>& counter) : destroyedCount(counter) {}
    ~Mortal() override {
      alive = 0;
      ++destroyedCount;
    }
    void Write(const Record& record) override {
      EXPECT_EQ(alive, 12345);
      EXPECT_EQ(record.message.str(), "hello");
    }
    std::atomic<int>& destroyedCount;
    int alive = 12345;
  };
  const auto permanent = std::make_shared<plog::CallbackSink>([&stayed](const Record&) { ++stayed; });
  ASSERT_TRUE(Register(kId, 0, {permanent}));
  std::atomic<bool> done{false};
  int made = 0;
  std::thread changer([&] {
    while (!done.load()) {
      const auto one = std::make_shared<Mortal>(destroyed);
      const auto two = std::make_shared<Mortal>(destroyed);
      made += 2;
      EXPECT_TRUE(Logger::AddSink(kId, one));
      EXPECT_TRUE(Logger::Register(kComingAndGoing, LogLevel::kInfo, {two}));
      EXPECT_TRUE(Logger::SetMinimumLevel(kComingAndGoing, LogLevel::kError));
      EXPECT_TRUE(Logger::RemoveSink(kId, one));
      EXPECT_TRUE(Logger::Unregister(kComingAndGoing));
    }
  });
  RunInThreads([perThread](int) {
    for (int i = 0; i < perThread; ++i) {
      Log(kId, "hello");
      if (Logger::TestLogLevel(kComingAndGoing, LogLevel::kWarning)) Log(kComingAndGoing, "hello");
    }
  });
  done = true;
  changer.join();
  EXPECT_EQ(stayed.load(), kThreadCount * perThread);
  EXPECT_EQ(destroyed.load(), made) << "each removed sink is destroyed, once";
}

// A static object may log in its constructor and in its destructor.
struct LogsFromAStaticConstructor {
  LogsFromAStaticConstructor() {
    const auto memory = std::make_shared<plog::MemorySink>();
    registered = Logger::Register(kIdOfStatics, LogLevel::kDebug, {memory});
    Log(kIdOfStatics, "before main");
    count = memory->Count();
    Logger::Unregister(kIdOfStatics);
  }
  static constexpr unsigned kIdOfStatics = 777;
  bool registered = false;
  std::size_t count = 0;
};
const LogsFromAStaticConstructor logsBeforeMain;

TEST(LoggingStatics, WorkBeforeMain) {
  EXPECT_TRUE(logsBeforeMain.registered);
  EXPECT_EQ(logsBeforeMain.count, 1u);
}

// Constructed before any other part of logging in the child process is used, so destroyed after all of it.
struct LogsDuringExit {
  ~LogsDuringExit() {
    if (sink == nullptr) return;
    Log(kId, vorel::logging::GetTagName(11));
    const std::vector<plog::StoredRecord> records = sink->Records();
    std::_Exit(records.size() == 1 && records[0].message == "[Geometry]" ? 7 : 8);
  }
  std::shared_ptr<plog::MemorySink> sink;
};

TEST(LoggingStaticsDeathTest, WorkDuringExit) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        static LogsDuringExit logsDuringExit;
        logsDuringExit.sink = std::make_shared<plog::MemorySink>();
        Logger::Register(kId, LogLevel::kDebug, {logsDuringExit.sink});
        std::exit(1);
      },
      testing::ExitedWithCode(7), "");
}

}  // namespace
