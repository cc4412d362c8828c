#include "base/strict_floating_point.h"

#include "logging/elapsed_timer.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace vorel {
namespace logging {
namespace {

struct ListenerState {
  std::mutex mutex;
  std::shared_ptr<const ElapsedTimeListener> listener;  // null: none is set
};

// Never destroyed, and the other two trivially: scopes may be timed before main and during exit.
ListenerState& State() {
  static ListenerState& state = *new ListenerState;
  return state;
}
std::atomic<bool> hasListener{false};
thread_local bool insideListener = false;

}  // namespace

void SetElapsedTimeListener(ElapsedTimeListener listener) {
  std::shared_ptr<const ElapsedTimeListener> replacement;
  if (listener) replacement = std::make_shared<const ElapsedTimeListener>(std::move(listener));
  ListenerState& state = State();
  const std::lock_guard<std::mutex> lock(state.mutex);
  hasListener.store(replacement != nullptr, std::memory_order_relaxed);
  state.listener.swap(replacement);
  // The lock is released before the old listener, whose destructor may do anything, goes.
}

VorelElapsedTimer::VorelElapsedTimer(std::string owner, std::string name) noexcept
    : owner_(std::move(owner)),
      name_(std::move(name)),
      measures_(hasListener.load(std::memory_order_relaxed)),
      start_(measures_ ? std::chrono::steady_clock::now() : std::chrono::steady_clock::time_point()) {}

VorelElapsedTimer::~VorelElapsedTimer() {
  if (!measures_ || insideListener) return;
  const auto elapsed = std::chrono::steady_clock::now() - start_;
  try {
    std::shared_ptr<const ElapsedTimeListener> listener;
    {
      ListenerState& state = State();
      const std::lock_guard<std::mutex> lock(state.mutex);
      listener = state.listener;
    }
    if (listener == nullptr) return;
    insideListener = true;
    (*listener)(owner_, name_, std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed));
  } catch (...) {
    // Timing never reports failure to the geometry code.
  }
  insideListener = false;
}

}  // namespace logging
}  // namespace vorel
