#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <string>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/log_statement.h"
#include "logging/logger.h"
#include "logging/sink.h"

namespace {

using plog::Logger;
using plog::LogLevel;
using vorel::logging::vorel_log_instance_id_;

void LogOnce(const std::string& owner, bool isMainRoute, int pointCount) {
  VOREL_LOG(LogLevel::kDebug, owner, "main route:", isMainRoute, ",pt count:", pointCount);
}

void RunLogStatement(benchmark::State& state) {
  const std::string owner = "Demo";
  int pointCount = 12;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pointCount);
    LogOnce(owner, true, pointCount);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_LogDisabledNoLogger(benchmark::State& state) {
  RunLogStatement(state);
}
BENCHMARK(BM_LogDisabledNoLogger);

// The argument is the number of other loggers in the process.
void BM_LogDisabledHigherMinimum(benchmark::State& state) {
  const auto others = static_cast<unsigned>(state.range(0));
  for (unsigned id = 1; id <= others; ++id) Logger::Register(id, LogLevel::kDebug);
  Logger::Register(vorel_log_instance_id_, LogLevel::kWarning);
  RunLogStatement(state);
  for (unsigned id = 0; id <= others; ++id) Logger::Unregister(id);
}
BENCHMARK(BM_LogDisabledHigherMinimum)->Arg(0)->Arg(10)->Arg(1000);

std::shared_ptr<plog::Sink> SinkThatDoesNothing() {
  return std::make_shared<plog::CallbackSink>(
      [](const plog::Record& record) { benchmark::DoNotOptimize(&record); });
}

void BM_LogToCallback(benchmark::State& state) {
  if (state.thread_index() == 0) {
    Logger::Register(vorel_log_instance_id_, LogLevel::kDebug, {SinkThatDoesNothing()});
  }
  RunLogStatement(state);
  if (state.thread_index() == 0) Logger::Unregister(vorel_log_instance_id_);
}
BENCHMARK(BM_LogToCallback)->Threads(1)->Threads(4)->UseRealTime();

constexpr char kMeasuredName[] = "GetInterpolateShapePoints";

// What the two strings of a timer cost by themselves.
void BM_TwoStrings(benchmark::State& state) {
  const std::string label = "Demo";
  for (auto _ : state) {
    std::string owner(label);
    std::string name(kMeasuredName);
    benchmark::DoNotOptimize(owner.data());
    benchmark::DoNotOptimize(name.data());
  }
}
BENCHMARK(BM_TwoStrings);

void RunTimer(benchmark::State& state) {
  const std::string owner = "Demo";
  for (auto _ : state) {
    const vorel::logging::VorelElapsedTimer timer(owner, kMeasuredName);
    benchmark::ClobberMemory();
  }
}

void BM_TimerWithoutListener(benchmark::State& state) {
  RunTimer(state);
}
BENCHMARK(BM_TimerWithoutListener);

void BM_TimerWithListener(benchmark::State& state) {
  vorel::logging::SetElapsedTimeListener(
      [](const std::string&, const std::string&, std::chrono::nanoseconds elapsed) {
        benchmark::DoNotOptimize(elapsed.count());
      });
  RunTimer(state);
  vorel::logging::SetElapsedTimeListener(nullptr);
}
BENCHMARK(BM_TimerWithListener);

}  // namespace
