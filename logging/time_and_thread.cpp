#include "base/strict_floating_point.h"

#include "logging/time_and_thread.h"

#include <atomic>
#include <chrono>

namespace plog {
namespace {

// Both are constant-initialised and trivially destroyed: usable from static constructors and during exit.
std::atomic<std::uint32_t> lastThreadId{0};
thread_local std::uint32_t callingThreadId = 0;

}  // namespace

std::uint32_t Util::GetTid() noexcept {
  while (callingThreadId == 0) {  // a second turn only when the count wraps around
    callingThreadId = lastThreadId.fetch_add(1, std::memory_order_relaxed) + 1;
  }
  return callingThreadId;
}

void Util::FetchTime(Time* time) noexcept {
  using std::chrono::milliseconds;
  using std::chrono::seconds;
  using std::chrono::system_clock;
  const system_clock::time_point now = system_clock::now();
  // floor, not a cast: before the epoch a cast would round up and leave negative milliseconds.
  const auto wholeSecond = std::chrono::floor<seconds>(now);
  time->seconds = system_clock::to_time_t(wholeSecond);
  time->milliseconds =
      static_cast<std::uint16_t>(std::chrono::floor<milliseconds>(now - wholeSecond).count());
}

}  // namespace plog
