// The library's logging statement. Linked with the counting GetTagName and the counting operator new.

#include "logging/log_statement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <locale>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "logging/sink.h"
#include "tests/support/allocation_counter.h"
#include "tests/support/counting_tag_names.h"

namespace {

using plog::Logger;
using plog::LogLevel;
using vorel::logging::vorel_log_instance_id_;

constexpr unsigned kId = 4200;
constexpr unsigned kOtherId = 4201;

class LogStatement : public testing::Test {
 protected:
  LogStatement() {
    vorel_log_instance_id_ = kId;
    vorel::test::ResetTagNameCalls();
  }
  ~LogStatement() override {
    Logger::Unregister(kId);
    Logger::Unregister(kOtherId);
    vorel_log_instance_id_ = 0;
  }

  // The only message there is; empty with a failure otherwise.
  std::string OnlyMessage() {
    const std::vector<plog::StoredRecord> records = memory_->Records();
    EXPECT_EQ(records.size(), 1u);
    return records.size() == 1 ? records[0].message : std::string();
  }

  const std::shared_ptr<plog::MemorySink> memory_ = std::make_shared<plog::MemorySink>();
};

std::size_t lineOfStatement = 0;

void FunctionThatLogs(const std::string& owner, bool isMainRoute, int pointCount) {
  lineOfStatement = __LINE__ + 1;
  VOREL_LOG(LogLevel::kDebug, owner, "main route:", isMainRoute, ",pt count:", pointCount);
}

void LogDistances(double reached, double wanted) {
  VOREL_LOG(LogLevel::kWarning, "Vorel", "accumulative_distance:", reached, "< offset_length :", wanted);
}

long long Milliseconds(const plog::Time& time) {
  return static_cast<long long>(time.seconds) * 1000 + time.milliseconds;
}

TEST_F(LogStatement, FillsEveryField) {
  struct Seen {
    int records = 0;
    plog::Time time;
    bool addressesAscend = false;
    std::string reserved;
    int flags = -1;
  } seen;
  const auto callback = std::make_shared<plog::CallbackSink>([&seen](const plog::Record& r) {
    ++seen.records;
    seen.time = r.time;
    const std::vector<const void*> fields{&r.time,          &r.level,          &r.threadId,   &r.line,
                                          &r.function,      &r.file,           &r.instanceId, &r.tags,
                                          &r.firstReserved, &r.secondReserved, &r.message,    &r.flags};
    seen.addressesAscend = std::is_sorted(fields.begin(), fields.end(), std::less<const void*>());
    seen.reserved = r.firstReserved + r.secondReserved;
    seen.flags = r.flags;
  });
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_, callback}));

  plog::Time before;
  plog::Util::FetchTime(&before);
  FunctionThatLogs("Demo", true, 12);
  plog::Time after;
  plog::Util::FetchTime(&after);

  const std::vector<plog::StoredRecord> records = memory_->Records();
  ASSERT_EQ(records.size(), 1u);
  const plog::StoredRecord& record = records[0];
  EXPECT_EQ(record.level, LogLevel{0});
  EXPECT_EQ(record.threadId, plog::Util::GetTid());
  EXPECT_EQ(record.line, lineOfStatement);
  EXPECT_EQ(record.function, "FunctionThatLogs");
  EXPECT_EQ(record.file, __FILE__);
  EXPECT_EQ(record.instanceId, kId);
  EXPECT_EQ(record.tags, std::vector<std::string>{""});
  EXPECT_EQ(record.message, "[Vorel][Demo][Geometry]main route:1,pt count:12");
  EXPECT_EQ(vorel::test::TagNameCalls(), std::vector<int>{11});

  EXPECT_EQ(seen.records, 1);
  EXPECT_TRUE(seen.addressesAscend);
  EXPECT_EQ(seen.reserved, "");
  EXPECT_EQ(seen.flags, 0);
  EXPECT_LE(Milliseconds(before), Milliseconds(seen.time));
  EXPECT_LE(Milliseconds(seen.time), Milliseconds(after));
}

TEST_F(LogStatement, WritesBoolsAsDigits) {
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  FunctionThatLogs("", false, -3);
  EXPECT_EQ(OnlyMessage(), "[Vorel][][Geometry]main route:0,pt count:-3");
}

struct NumberCase {
  const char* name;
  double reached;
  double wanted;
  const char* text;
};

class LogStatementNumbers : public LogStatement, public testing::WithParamInterface<NumberCase> {};

TEST_P(LogStatementNumbers, HaveSixDecimals) {
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  LogDistances(GetParam().reached, GetParam().wanted);
  EXPECT_EQ(OnlyMessage(), std::string("[Vorel][Vorel][Geometry]") + GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    All, LogStatementNumbers,
    testing::Values(
        NumberCase{"Plain", 10.5, 20.0, "accumulative_distance:10.500000< offset_length :20.000000"},
        NumberCase{"Zeros", 0.0, -0.0, "accumulative_distance:0.000000< offset_length :-0.000000"},
        NumberCase{"Rounded", 1e-7, 0.9999996, "accumulative_distance:0.000000< offset_length :1.000000"},
        NumberCase{"Large", 1e15, 123456789.125,
                   "accumulative_distance:1000000000000000.000000< offset_length :123456789.125000"},
        NumberCase{"NotFinite", std::numeric_limits<double>::quiet_NaN(),
                   std::numeric_limits<double>::infinity(), "accumulative_distance:nan< offset_length :inf"}),
    [](const auto& test) { return test.param.name; });

TEST_F(LogStatement, IgnoresTheGlobalLocale) {
  struct Punctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Punctuation));
  LogDistances(1234567.5, 1000.0);
  std::locale::global(before);
  EXPECT_EQ(OnlyMessage(),
            "[Vorel][Vorel][Geometry]accumulative_distance:1234567.500000< offset_length :1000.000000");
}

// What makes a level disabled: in each case nothing may be evaluated.
struct DisabledCase {
  const char* name;
  void (*arrange)();
};

class DisabledLogStatement : public LogStatement, public testing::WithParamInterface<DisabledCase> {};

TEST_P(DisabledLogStatement, EvaluatesAndAllocatesNothing) {
  GetParam().arrange();
  Logger::AddSink(kId, memory_);
  Logger::AddSink(kOtherId, memory_);
  int evaluated = 0;
  const std::string owner = "an owner that is too long for the buffer inside a string";
  const auto count = [&evaluated](const std::string& text) {
    ++evaluated;
    return text;
  };
  const vorel::test::AllocationCounter allocations;
  for (int run = 0; run < 100; ++run) {
    VOREL_LOG(LogLevel::kWarning, count(owner), "piece", count(std::string(100, 'x')));
  }
  EXPECT_EQ(allocations.Count(), 0u);
  EXPECT_EQ(evaluated, 0);
  EXPECT_TRUE(vorel::test::TagNameCalls().empty());
  EXPECT_EQ(memory_->Count(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    All, DisabledLogStatement,
    testing::Values(DisabledCase{"NoLogger", [] {}},
                    DisabledCase{"HigherMinimum", [] { Logger::Register(kId, LogLevel::kError); }},
                    DisabledCase{"MinimumRaisedLater",
                                 [] {
                                   Logger::Register(kId, LogLevel::kDebug);
                                   Logger::SetMinimumLevel(kId, LogLevel{3});
                                 }},
                    DisabledCase{"AnotherLogger", [] { Logger::Register(kOtherId, LogLevel::kDebug); }},
                    DisabledCase{"LoggerGone",
                                 [] {
                                   Logger::Register(kId, LogLevel::kDebug);
                                   Logger::Unregister(kId);
                                 }}),
    [](const auto& test) { return test.param.name; });

// Without this the zero above would mean nothing.
TEST(AllocationCounter, SeesAllocations) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  const vorel::test::AllocationCounter allocations;
  // Called by name: a new expression may be optimised away.
  ::operator delete(::operator new(1));
  ::operator delete[](::operator new[](1));
  EXPECT_EQ(allocations.Count(), 2u);
}

TEST_F(LogStatement, EvaluatesEachPieceOnceWhenEnabled) {
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  int evaluated = 0;
  VOREL_LOG(LogLevel::kInfo, "Demo", ++evaluated);
  EXPECT_EQ(evaluated, 1);
  EXPECT_EQ(OnlyMessage(), "[Vorel][Demo][Geometry]1");
}

// The pieces are evaluated between the two reads of the id: a piece that changes it shows both.
TEST_F(LogStatement, ReadsTheInstanceIdTwice) {
  const auto other = std::make_shared<plog::MemorySink>();
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  ASSERT_TRUE(Logger::Register(kOtherId, LogLevel::kDebug, {other}));
  VOREL_LOG(LogLevel::kDebug, "Demo", (vorel_log_instance_id_ = kOtherId, "moved"));
  EXPECT_EQ(memory_->Count(), 0u);
  ASSERT_EQ(other->Count(), 1u);
  EXPECT_EQ(other->Records()[0].instanceId, kOtherId);

  // The next statement asks the new logger.
  Logger::SetMinimumLevel(kOtherId, LogLevel::kError);
  FunctionThatLogs("Demo", true, 1);
  EXPECT_EQ(memory_->Count() + other->Count(), 1u);
}

TEST_F(LogStatement, IsOneStatement) {
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kError, {memory_}));
  bool elseRan = false;
  // Deliberate: no braces. A macro that ends in an if would take this else for its own.
  if (memory_ == nullptr)
    VOREL_LOG(LogLevel::kDebug, "Demo", "never");
  else
    elseRan = true;
  EXPECT_TRUE(elseRan);
}

// Each allocation of an enabled statement fails in turn: no failure reaches the caller, and at most one record,
// complete or cut short, reaches the sink.
TEST_F(LogStatement, KeepsAllocationFailuresToItself) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  int records = 0;
  const auto sink = std::make_shared<plog::CallbackSink>([&records](const plog::Record& record) {
    ++records;
    if (record.message.str().empty()) throw 1;  // allocates, so it fails as well
  });
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {sink}));
  const std::string owner(1000, 'o');
  bool wasRefused = true;
  std::size_t allowed = 0;
  for (; wasRefused; ++allowed) {
    ASSERT_LT(allowed, 1000u);
    records = 0;
    {
      const vorel::test::AllocationLimit limit(allowed);
      VOREL_LOG(LogLevel::kDebug, owner, "number ", 1.5, " and ", 7);
      wasRefused = limit.RefusedCount() != 0;
    }
    EXPECT_LE(records, 1);
  }
  EXPECT_GT(allowed, 2u) << "the statement should have allocated several times";
  EXPECT_EQ(records, 1) << "the last run had all the memory it wanted";
}

TEST_F(LogStatement, SurvivesAPieceThatThrowsWhileItIsWritten) {
  ASSERT_TRUE(Logger::Register(kId, LogLevel::kDebug, {memory_}));
  struct Bomb {
    static std::ostream& Explode(std::ostream&) { throw 42; }
  };
  std::ostream& (*const bomb)(std::ostream&) = &Bomb::Explode;
  VOREL_LOG(LogLevel::kDebug, "Demo", "before", bomb, "after");
  EXPECT_EQ(OnlyMessage(), "[Vorel][Demo][Geometry]before");
}

}  // namespace
