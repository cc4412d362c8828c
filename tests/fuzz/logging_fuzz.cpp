#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/log_statement.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/record_format.h"
#include "logging/sink.h"
#include "logging/tag_names.h"

// The twin is a model: a map from ids to loggers, and for each sink the messages that should have arrived.

using fuzz::FuzzInput;

namespace {

/// Throws after it has noted the message: the sinks behind it must still be served.
class ThrowingSink final : public plog::Sink {
 public:
  explicit ThrowingSink(std::vector<std::string>& messages) : messages_(messages) {}
  void Write(const plog::Record& record) override {
    messages_.push_back(record.message.str());
    throw 1;
  }

 private:
  std::vector<std::string>& messages_;
};

/// Logs to the same logger from inside: its own record must not come back to it.
class LoggingSink final : public plog::Sink {
 public:
  explicit LoggingSink(std::vector<std::string>& messages) : messages_(messages) {}
  void Write(const plog::Record& record) override {
    const std::string message = record.message.str();
    messages_.push_back(message);
    if (message.rfind("inner", 0) == 0) return;
    plog::Record inner(record.level, "Write", 1, "sink", record.instanceId, "");
    inner.message << "inner " << message;
  }

 private:
  std::vector<std::string>& messages_;
};

constexpr std::size_t kSinkCount = 6;

struct Model {
  struct LoggerState {
    int minimumLevel;
    std::vector<std::size_t> sinks;
  };
  std::map<unsigned, LoggerState> loggers;
  std::vector<std::string> messages[kSinkCount];

  bool Accepts(unsigned id, int level) const {
    const auto found = loggers.find(id);
    return found != loggers.end() && level >= found->second.minimumLevel;
  }

  void Submit(unsigned id, int level, const std::string& message, std::size_t except = kSinkCount) {
    if (!Accepts(id, level)) return;
    for (const std::size_t sink : loggers.at(id).sinks) {
      if (sink == except) continue;
      messages[sink].push_back(message);
      if (sink == 4 && message.rfind("inner", 0) != 0) Submit(id, level, "inner " + message, 4);
    }
  }
};

unsigned Id(FuzzInput& input) {
  static const unsigned kIds[] = {0, 1, 2, 1023, 1024, 1025, 2048, 4294967295u, 4294966271u, 2147483648u};
  return kIds[input.Below(sizeof kIds / sizeof kIds[0])];
}

int Level(FuzzInput& input) {
  return input.Index(4);
}

std::string Escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    char code[8];
    const unsigned value = static_cast<unsigned char>(character);
    std::snprintf(code, sizeof code, "\\x%02x", value);
    if (character == '\n')
      result += "\\n";
    else if (character == '\r')
      result += "\\r";
    else if (character == '\t')
      result += "\\t";
    else if (value < 32 || value == 127)
      result += code;
    else
      result += character;
  }
  return result;
}

void CheckFormat(FuzzInput& input) {
  const std::string function = input.Text(6), file = input.Text(10), tag = input.Text(4),
                    message = input.Text(12);
  const std::size_t line = input.Below(65536);
  const int level = Level(input);
  const bool hasFunction = input.Flag(), hasFile = input.Flag();
  plog::Record record(static_cast<plog::LogLevel>(level), hasFunction ? function.c_str() : nullptr, line,
                      hasFile ? file.c_str() : nullptr, 77u, tag);
  EXPECT_HOLDS(record.tags.size() == 1 && record.tags[0] == tag);
  for (std::size_t more = input.Below(3); more > 0; --more) record.tags.push_back(input.Text(3));
  record.message << message;
  // Years 0 to 9999, where the C library and four digits agree.
  std::int64_t seconds = 0;
  for (int i = 0; i < 5; ++i) seconds = seconds << 8 | input.Byte();
  seconds = seconds % (253402300800 + 62167219200) - 62167219200;
  record.time.seconds = static_cast<std::time_t>(seconds);
  record.time.milliseconds = static_cast<std::uint16_t>(input.Below(1000));
  std::tm calendar{};
  gmtime_r(&record.time.seconds, &calendar);
  char time[80];
  std::snprintf(time, sizeof time, "%04d-%02d-%02dT%02d:%02d:%02d.%03uZ", calendar.tm_year + 1900,
                calendar.tm_mon + 1, calendar.tm_mday, calendar.tm_hour, calendar.tm_min, calendar.tm_sec,
                static_cast<unsigned>(record.time.milliseconds));
  static const char* const kNames[] = {"DEBUG", "INFO", "WARNING", "ERROR"};
  std::string expected = std::string(time) + " " +
                         (level >= 0 && level < 4 ? kNames[level] : "LEVEL " + std::to_string(level)) + " [" +
                         std::to_string(plog::Util::GetTid()) + "] ";
  expected += hasFunction ? Escaped(function.c_str()) : "?";
  std::string name = hasFile ? file.c_str() : "?";
  const std::size_t slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  expected += " " + Escaped(name) + ":" + std::to_string(line) + " ";
  for (const std::string& each : record.tags) {
    if (!each.empty()) expected += "[" + Escaped(each) + "] ";
  }
  expected += Escaped(message);
  const std::string actual = plog::FormatRecord(record);
  if (actual != expected) fuzz::Fail(actual.c_str(), expected.c_str(), __FILE__, __LINE__);
}

void CheckTimer(FuzzInput& input) {
  std::vector<std::pair<std::string, std::string>> reports;
  const auto listener = [&reports](const std::string& owner, const std::string& name,
                                   std::chrono::nanoseconds elapsed) {
    EXPECT_HOLDS(elapsed.count() >= 0);
    const vorel::logging::VorelElapsedTimer inner("inside", "a listener");  // not reported
    reports.emplace_back(owner, name);
    if (owner.size() % 2 == 1) throw 1;
  };
  const std::string owner = input.Text(4), name = input.Text(4);
  const std::size_t kind = input.Below(4);
  if (kind != 0) vorel::logging::SetElapsedTimeListener(listener);
  try {
    const vorel::logging::VorelElapsedTimer timer(owner, name);
    if (kind == 1) vorel::logging::SetElapsedTimeListener(nullptr);
    if (kind == 2) throw 2;
  } catch (int) {
  }
  vorel::logging::SetElapsedTimeListener(nullptr);
  EXPECT_HOLDS(reports.size() == (kind >= 2 ? 1u : 0u));
  EXPECT_HOLDS(reports.empty() || (reports[0].first == owner && reports[0].second == name));
}

void CheckTagName(FuzzInput& input) {
  const int index = input.Index(30);
  EXPECT_HOLDS(vorel::logging::GetTagName(index).empty() == (index != vorel::logging::kGeometryTagIndex));
  EXPECT_HOLDS(&vorel::logging::GetTagName(index) == &vorel::logging::GetTagName(index));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  Model model;
  std::ostringstream stream;
  std::vector<std::string> callbackMessages, throwingMessages, loggingMessages;
  const auto streamSink = std::make_shared<plog::StreamSink>(stream);
  const auto memorySink = std::make_shared<plog::MemorySink>();
  const std::vector<std::shared_ptr<plog::Sink>> sinks = {
      streamSink,
      memorySink,
      std::make_shared<plog::CallbackSink>(
          [&](const plog::Record& record) { callbackMessages.push_back(record.message.str()); }),
      std::make_shared<ThrowingSink>(throwingMessages),
      std::make_shared<LoggingSink>(loggingMessages),
      std::make_shared<plog::CallbackSink>(nullptr)};
  bool isDetached = false;
  std::size_t streamedLines = 0;  // up to the detachment
  do {
    const unsigned id = Id(input);
    const int level = Level(input);
    const std::size_t sink = input.Below(kSinkCount + 1);
    const std::shared_ptr<plog::Sink> passed = sink < kSinkCount ? sinks[sink] : nullptr;
    const auto logger = model.loggers.find(id);
    const bool isKnown = logger != model.loggers.end();
    const auto has = [&](const std::vector<std::size_t>& list) {
      return std::find(list.begin(), list.end(), sink) != list.end();
    };
    switch (input.Byte() % 11) {
      case 0: {
        std::vector<std::size_t> list;
        std::vector<std::shared_ptr<plog::Sink>> arguments;
        for (std::size_t left = input.Below(4); left > 0; --left) {
          const std::size_t each = input.Below(kSinkCount + 1);
          arguments.push_back(each < kSinkCount ? sinks[each] : nullptr);
          if (each < kSinkCount && std::find(list.begin(), list.end(), each) == list.end())
            list.push_back(each);
        }
        EXPECT_SAME(plog::Logger::Register(id, static_cast<plog::LogLevel>(level), arguments), !isKnown);
        if (!isKnown) model.loggers[id] = {level, list};
        break;
      }
      case 1:
        EXPECT_SAME(plog::Logger::Unregister(id), isKnown);
        model.loggers.erase(id);
        break;
      case 2:
        EXPECT_SAME(plog::Logger::SetMinimumLevel(id, static_cast<plog::LogLevel>(level)), isKnown);
        if (isKnown) logger->second.minimumLevel = level;
        break;
      case 3: {
        const bool isAdded = isKnown && passed != nullptr && !has(logger->second.sinks);
        EXPECT_SAME(plog::Logger::AddSink(id, passed), isAdded);
        if (isAdded) logger->second.sinks.push_back(sink);
        break;
      }
      case 4: {
        const bool isRemoved = isKnown && has(logger->second.sinks);
        EXPECT_SAME(plog::Logger::RemoveSink(id, passed), isRemoved);
        if (isRemoved) {
          auto& list = logger->second.sinks;
          list.erase(std::find(list.begin(), list.end(), sink));
        }
        break;
      }
      case 5:
        CheckFormat(input);
        break;
      case 6:
        CheckTimer(input);
        break;
      case 7:
        CheckTagName(input);
        break;
      case 8: {
        // The library's own statement, which asks for the level first.
        vorel::logging::vorel_log_instance_id_ = id;
        const std::string owner = input.Text(3);
        const double value = input.Metres();
        VOREL_LOG(plog::LogLevel::kInfo, owner, "value:", value, ' ', true);
        vorel::logging::vorel_log_instance_id_ = 0;
        std::ostringstream message;
        message << std::fixed << "[Vorel][" << owner << "]"
                << vorel::logging::GetTagName(vorel::logging::kGeometryTagIndex) << "value:" << value << " 1";
        model.Submit(id, 1, message.str());
        break;
      }
      case 9:
        if (input.Byte() % 8 == 1 && !isDetached) {
          isDetached = true;
          streamedLines = model.messages[0].size();
          streamSink->Detach();
        }
        break;
      default: {
        const std::string message = input.Text(8);
        {
          plog::Record record(static_cast<plog::LogLevel>(level), "Function", 3, "folder/file.cpp", id,
                              "tag");
          record.message << message;
        }
        model.Submit(id, level, message);
        break;
      }
    }
    for (int each = -1; each < 5; ++each) {
      EXPECT_SAME(plog::Logger::TestLogLevel(id, static_cast<plog::LogLevel>(each)), model.Accepts(id, each));
    }
  } while (!input.IsAtEnd());

  const std::string text = stream.str();
  EXPECT_HOLDS(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) ==
               (isDetached ? streamedLines : model.messages[0].size()));
  std::vector<std::string> stored;
  for (const plog::StoredRecord& record : memorySink->Records()) stored.push_back(record.message);
  EXPECT_HOLDS(memorySink->Count() == stored.size());
  EXPECT_HOLDS(stored == model.messages[1]);
  EXPECT_HOLDS(callbackMessages == model.messages[2]);
  EXPECT_HOLDS(throwingMessages == model.messages[3]);
  EXPECT_HOLDS(loggingMessages == model.messages[4]);
  for (const auto& each : model.loggers) EXPECT_HOLDS(plog::Logger::Unregister(each.first));
  for (const auto& each : sinks)
    EXPECT_HOLDS(each.use_count() == (each == memorySink || each == streamSink ? 2 : 1));
  return 0;
}
