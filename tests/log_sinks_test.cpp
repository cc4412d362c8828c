// Sinks: the line format, the three kinds, and sinks that misbehave.

#include "logging/sink.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <limits>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "logging/logger.h"
#include "logging/record.h"
#include "logging/record_format.h"

namespace {

using plog::CallbackSink;
using plog::Logger;
using plog::LogLevel;
using plog::MemorySink;
using plog::Record;
using plog::StreamSink;

constexpr unsigned kId = 300;

class Sinks : public testing::Test {
 protected:
  ~Sinks() override {
    Logger::Unregister(kId);
    Logger::Unregister(kId + 1);
  }

  static void Register(std::vector<std::shared_ptr<plog::Sink>> sinks) {
    ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, std::move(sinks)));
  }
};

void Log(const std::string& message, unsigned id = kId) {
  Record record(LogLevel::kInfo, "Log", 1, "log_sinks_test.cpp", id, "");
  record.message << message;
}

// A record for nobody: formatted here, submitted to a logger that does not exist.
std::string Format(std::time_t seconds, std::uint16_t milliseconds) {
  Record record(LogLevel::kInfo, "f", 1, "file", kId, "");
  record.time = {seconds, milliseconds};
  const std::string line = plog::FormatRecord(record);
  return line.substr(0, line.find(' '));
}

struct TimeCase {
  const char* name;
  long long seconds;
  std::uint16_t milliseconds;
  const char* text;
};

class FormatRecordTimes : public testing::TestWithParam<TimeCase> {};

TEST_P(FormatRecordTimes, AreUtc) {
  EXPECT_EQ(Format(static_cast<std::time_t>(GetParam().seconds), GetParam().milliseconds), GetParam().text);
}

// The counts of seconds come from GNU date; it refuses the last, which is that of year 0 less 365 days.
INSTANTIATE_TEST_SUITE_P(
    All, FormatRecordTimes,
    testing::Values(TimeCase{"Epoch", 0, 0, "1970-01-01T00:00:00.000Z"},
                    TimeCase{"BeforeTheEpoch", -1, 999, "1969-12-31T23:59:59.999Z"},
                    TimeCase{"LeapDayOfACentury", 951782400, 7, "2000-02-29T00:00:00.007Z"},
                    TimeCase{"AfterALeapDay", 1709251199, 40, "2024-02-29T23:59:59.040Z"},
                    TimeCase{"NoLeapDayIn2100", 4107542400, 0, "2100-03-01T00:00:00.000Z"},
                    TimeCase{"LastOfAYear", 1767225599, 999, "2025-12-31T23:59:59.999Z"},
                    TimeCase{"BillionSeconds", 1000000000, 1, "2001-09-09T01:46:40.001Z"},
                    TimeCase{"BeforeACycle", 951782399, 0, "2000-02-28T23:59:59.000Z"},
                    TimeCase{"FiveDigitYear", 253402300800, 0, "10000-01-01T00:00:00.000Z"},
                    TimeCase{"BeforeYearZero", -62198755200, 0, "-0001-01-01T00:00:00.000Z"}),
    [](const auto& test) { return test.param.name; });

TEST(FormatRecord, WritesAnyTime) {
  EXPECT_FALSE(Format(std::numeric_limits<std::time_t>::max(), 0).empty());
  EXPECT_FALSE(Format(std::numeric_limits<std::time_t>::min(), 0).empty());
}

// Day after day through more than two cycles of the calendar, against the plain rule for leap years.
TEST(FormatRecord, CountsDaysLikeACalendar) {
  constexpr long long kDaysFrom1600To1970 = 135140;
  long long day = -kDaysFrom1600To1970;
  for (int year = 1600; year < 2450; ++year) {
    const bool isLeapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int daysOfMonth[] = {31, isLeapYear ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
      for (int dayOfMonth = 1; dayOfMonth <= daysOfMonth[month - 1]; ++dayOfMonth, ++day) {
        char expected[64];
        std::snprintf(expected, sizeof expected, "%04d-%02d-%02dT12:34:56.789Z", year, month, dayOfMonth);
        ASSERT_EQ(Format(static_cast<std::time_t>(day * 86400 + 45296), 789), expected);
      }
    }
  }
}

std::string FormatWithoutTime(const Record& record) {
  const std::string line = plog::FormatRecord(record);
  return line.substr(line.find(' ') + 1);
}

TEST(FormatRecord, WritesTheHeaderThenTheMessage) {
  Record record(LogLevel::kWarning, "Function", 120, "some/where/file.cpp", kId, "");
  record.threadId = 3;
  record.message << "the message";
  EXPECT_EQ(FormatWithoutTime(record), "WARNING [3] Function file.cpp:120 the message");
  record.tags = {"", "one", "", "two\n"};
  record.file = "C:\\some\\where\\file.cpp";
  EXPECT_EQ(FormatWithoutTime(record), "WARNING [3] Function file.cpp:120 [one] [two\\n] the message");
}

TEST(FormatRecord, NamesTheLevels) {
  Record record(LogLevel::kDebug, "f", 1, "file", kId, "");
  record.threadId = 1;
  EXPECT_EQ(FormatWithoutTime(record), "DEBUG [1] f file:1 ");
  record.level = LogLevel::kInfo;
  EXPECT_EQ(FormatWithoutTime(record), "INFO [1] f file:1 ");
  record.level = LogLevel::kError;
  EXPECT_EQ(FormatWithoutTime(record), "ERROR [1] f file:1 ");
  record.level = LogLevel{7};
  EXPECT_EQ(FormatWithoutTime(record), "LEVEL 7 [1] f file:1 ");
  record.level = LogLevel{-1};
  EXPECT_EQ(FormatWithoutTime(record), "LEVEL -1 [1] f file:1 ");
}

TEST(FormatRecord, IsOneLineWhateverTheMessageHolds) {
  Record record(LogLevel::kDebug, nullptr, 1, nullptr, kId, "");
  record.threadId = 1;
  record.message << "a\nb\rc\td\x1b[0m\x7f" << '\0' << "back\\slash \xc3\xa9";
  EXPECT_EQ(FormatWithoutTime(record), "DEBUG [1] ? ?:1 a\\nb\\rc\\td\\x1b[0m\\x7f\\x00back\\slash \xc3\xa9");
}

TEST_F(Sinks, AStreamGetsOneLinePerRecord) {
  std::ostringstream stream;
  Register({std::make_shared<StreamSink>(stream)});
  Log("one");
  Log("two\nlines");
  std::istringstream lines(stream.str());
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line.substr(line.find(' ') + 1),
            "INFO [" + std::to_string(plog::Util::GetTid()) + "] Log log_sinks_test.cpp:1 one");
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line.substr(line.size() - 10), "two\\nlines");
  EXPECT_FALSE(std::getline(lines, line));
}

TEST_F(Sinks, AStreamIsFlushedAfterEachLine) {
  struct CountingBuffer : std::stringbuf {
    int sync() override {
      ++flushes;
      return 0;
    }
    int flushes = 0;
  };
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  const auto sink = std::make_shared<StreamSink>(stream);
  Register({sink});
  Log("one");
  EXPECT_EQ(buffer.flushes, 1);
  Log("two");
  EXPECT_EQ(buffer.flushes, 2);
  sink->Detach();
}

TEST_F(Sinks, AStreamIsLeftAloneOnceDetached) {
  const auto sink = [] {
    std::ostringstream shortLived;
    const auto streamSink = std::make_shared<StreamSink>(shortLived);
    Register({streamSink});
    Log("while it lives");
    EXPECT_NE(shortLived.str(), "");
    streamSink->Detach();
    return streamSink;
  }();
  Log("afterwards");
  sink->Detach();
}

TEST_F(Sinks, LinesOfSeveralThreadsDoNotMix) {
  constexpr int kThreads = 8;
  constexpr int kRecords = 1000;
  std::ostringstream stream;
  Register({std::make_shared<StreamSink>(stream)});
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < kRecords; ++i) Log("begin " + std::to_string(t * kRecords + i) + " end");
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<int> seen;
  std::istringstream lines(stream.str());
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = line.find("begin ");
    ASSERT_NE(begin, std::string::npos) << line;
    const int number = std::stoi(line.substr(begin + 6));
    ASSERT_EQ(line.substr(begin), "begin " + std::to_string(number) + " end");
    ASSERT_TRUE(seen.insert(number).second) << number << " came twice";
  }
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(kThreads * kRecords));
}

TEST_F(Sinks, AFailedStreamDropsLinesQuietly) {
  std::ostringstream stream;
  Register({std::make_shared<StreamSink>(stream)});
  stream.setstate(std::ios_base::badbit);
  Log("dropped");
  stream.clear();
  stream.exceptions(std::ios_base::badbit);
  EXPECT_THROW(stream.setstate(std::ios_base::badbit), std::ios_base::failure);
  Log("dropped as well, by an exception");
  stream.exceptions(std::ios_base::goodbit);
  stream.clear();
  EXPECT_EQ(stream.str(), "");
  Log("kept");
  EXPECT_NE(stream.str().find("kept\n"), std::string::npos);
}

TEST_F(Sinks, AnEmptyCallbackIsHarmless) {
  CallbackSink sink(nullptr);
  const Record record(LogLevel::kInfo, "f", 1, "file", kId, "");
  EXPECT_NO_THROW(sink.Write(record));
}

TEST_F(Sinks, MemoryKeepsCopiesUntilCleared) {
  const auto memory = std::make_shared<MemorySink>();
  ASSERT_TRUE(Logger::Register(kId, LogLevel{-7}, {memory}));
  {
    std::string function = "a function";
    std::string file = "a file";
    Record record(LogLevel{-7}, function.c_str(), 12, file.c_str(), kId, "tag");
    record.time = {};
    record.message << "text";
  }
  { const Record record(LogLevel::kError, nullptr, 0, nullptr, kId, ""); }
  ASSERT_EQ(memory->Count(), 2u);
  const std::vector<plog::StoredRecord> records = memory->Records();
  EXPECT_EQ(records[0].time.seconds, 0);
  EXPECT_EQ(records[0].time.milliseconds, 0);
  EXPECT_EQ(records[0].level, LogLevel{-7});
  EXPECT_EQ(records[0].threadId, plog::Util::GetTid());
  EXPECT_EQ(records[0].line, 12u);
  EXPECT_EQ(records[0].function, "a function");
  EXPECT_EQ(records[0].file, "a file");
  EXPECT_EQ(records[0].instanceId, kId);
  EXPECT_EQ(records[0].tags, std::vector<std::string>{"tag"});
  EXPECT_EQ(records[0].message, "text");
  EXPECT_EQ(records[1].function, "");
  EXPECT_EQ(records[1].file, "");
  memory->Clear();
  EXPECT_EQ(memory->Count(), 0u);
  EXPECT_TRUE(memory->Records().empty());
}

TEST_F(Sinks, WhatOneThrowsStopsThere) {
  const auto memory = std::make_shared<MemorySink>();
  Register({std::make_shared<CallbackSink>([](const Record&) { throw std::runtime_error("a sink failed"); }),
            std::make_shared<CallbackSink>([](const Record&) { throw 42; }), memory});
  EXPECT_NO_THROW(Log("one"));
  EXPECT_NO_THROW(Log("two"));
  EXPECT_EQ(memory->Count(), 2u) << "the sinks behind still get every record";
}

TEST_F(Sinks, MayThrowWhileTheLoggingScopeUnwinds) {
  Register({std::make_shared<CallbackSink>([](const Record&) { throw 42; })});
  try {
    const Record record(LogLevel::kInfo, "f", 1, "file", kId, "");
    throw std::runtime_error("the caller's own");
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the caller's own");
  }
}

TEST_F(Sinks, OneThatLogsDoesNotGetItsOwnRecords) {
  const auto memory = std::make_shared<MemorySink>();
  int calls = 0;
  const auto talkative = std::make_shared<CallbackSink>([&calls](const Record&) {
    ++calls;
    Log("from the sink");
  });
  Register({talkative, memory});
  Log("first");
  Log("second");
  EXPECT_EQ(calls, 2);
  std::vector<std::string> messages;
  for (const plog::StoredRecord& record : memory->Records()) messages.push_back(record.message);
  // What a sink logs comes before the record that made it log: that one is still on its way.
  EXPECT_EQ(messages, (std::vector<std::string>{"from the sink", "first", "from the sink", "second"}));
}

TEST_F(Sinks, OneThatThrowsAfterLoggingIsEnteredAgain) {
  int calls = 0;
  Register({std::make_shared<CallbackSink>([&calls](const Record&) {
    ++calls;
    Log("from the sink");
    throw 42;
  })});
  Log("first");
  Log("second");
  EXPECT_EQ(calls, 2);
}

// Ten sinks that all log: without a limit they would call each other in all 10! orders. With it each record goes
// through at most 10 + 10*9 + 10*9*8 + 10*9*8*7 calls.
TEST_F(Sinks, ThatAllLogComeToAnEnd) {
  constexpr int kSinks = 10;
  int calls = 0;
  std::vector<std::shared_ptr<plog::Sink>> sinks;
  for (int i = 0; i < kSinks; ++i) {
    sinks.push_back(std::make_shared<CallbackSink>([&calls](const Record&) {
      ++calls;
      Log("again");
    }));
  }
  Register(sinks);
  Log("first");
  EXPECT_EQ(calls, 10 + 90 + 720 + 5040);
}

TEST_F(Sinks, OfTwoLoggersMayLogToEachOther) {
  int callsOfFirst = 0;
  int callsOfSecond = 0;
  Register({std::make_shared<CallbackSink>([&callsOfFirst](const Record&) {
    ++callsOfFirst;
    Log("to the second", kId + 1);
  })});
  ASSERT_TRUE(Logger::Register(kId + 1, LogLevel::kDebug,
                               {std::make_shared<CallbackSink>([&callsOfSecond](const Record&) {
                                 ++callsOfSecond;
                                 Log("to the first", kId);
                               })}));
  Log("start");
  EXPECT_EQ(callsOfFirst, 1);
  EXPECT_EQ(callsOfSecond, 1);
}

// The rule is per thread: a sink may be inside itself on two threads, and a thread that it waits for may log.
TEST_F(Sinks, ThatLogOnAnotherThreadDoNotDeadlock) {
  const auto memory = std::make_shared<MemorySink>();
  std::atomic<int> calls{0};
  Register({std::make_shared<CallbackSink>([&calls](const Record& record) {
              ++calls;
              if (record.message.str() == "first") std::thread([] { Log("second"); }).join();
            }),
            memory});
  Log("first");
  EXPECT_EQ(calls.load(), 2);
  EXPECT_EQ(memory->Count(), 2u);
}

TEST_F(Sinks, MayChangeTheLoggerTheyServe) {
  std::shared_ptr<CallbackSink> remover;
  int calls = 0;
  remover = std::make_shared<CallbackSink>([&](const Record&) {
    ++calls;
    EXPECT_TRUE(Logger::RemoveSink(kId, remover));
    EXPECT_TRUE(Logger::SetMinimumLevel(kId, LogLevel::kError));
    EXPECT_TRUE(Logger::Unregister(kId));
    EXPECT_TRUE(Logger::Register(kId, LogLevel::kDebug));
  });
  Register({remover});
  Log("first");
  Log("second");
  EXPECT_EQ(calls, 1);
}

// The sink dies while its last record is delivered, and logs even then.
TEST_F(Sinks, MayLogWhenDestroyed) {
  struct LogsLastWords final : plog::Sink {
    ~LogsLastWords() override { Log("last words", kId + 1); }
    void Write(const Record&) override { Logger::Unregister(kId); }
  };
  const auto memory = std::make_shared<MemorySink>();
  ASSERT_TRUE(Logger::Register(kId + 1, LogLevel::kDebug, {memory}));
  Register({std::make_shared<LogsLastWords>()});
  Log("first");
  EXPECT_EQ(memory->Count(), 1u);

  // And when it goes with its logger, or is taken away.
  Register({std::make_shared<LogsLastWords>()});
  EXPECT_TRUE(Logger::Unregister(kId));
  EXPECT_EQ(memory->Count(), 2u);
}

}  // namespace
