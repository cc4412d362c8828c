#ifndef VOREL_LOGGING_ELAPSED_TIMER_H_
#define VOREL_LOGGING_ELAPSED_TIMER_H_

#include <chrono>
#include <functional>
#include <string>

#include "base/export.h"

namespace vorel {
namespace logging {

/// Receives one measurement: who called, what was measured, how long it took (never negative).
using ElapsedTimeListener =
    std::function<void(const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed)>;

/// Makes `listener` the one receiver of all measurements in the process, in place of the one before; an empty one
/// ends the reports, which is how the process starts. May be called from any thread at any time, also by a listener.
///
/// The listener is called on the thread whose scope ends, by several threads at once. What it throws is dropped;
/// timers that run inside of it are not reported. After this function has returned, calls of the listener before may
/// still be running on other threads; it is kept alive for them.
/// Throws std::bad_alloc; the listener before stays then.
VOREL_EXPORT void SetElapsedTimeListener(ElapsedTimeListener listener);

/// Measures the time from its construction to its destruction, however the scope is left, and reports it to the
/// listener. Steady clock: changes of the wall clock do not matter.
///
///     void Draw(const std::string& owner) {
///       vorel::logging::VorelElapsedTimer timer(owner, "Draw");
///       ...
///     }
///
/// Reports only if a listener is set both when the timer starts and when it ends. Without one no clock is read: the
/// cost is that of the two strings.
class VOREL_EXPORT VorelElapsedTimer {
 public:
  /// @param owner  the caller's label; any text
  /// @param name   what is measured; any text
  VorelElapsedTimer(std::string owner, std::string name) noexcept;
  ~VorelElapsedTimer();

  VorelElapsedTimer(const VorelElapsedTimer&) = delete;
  VorelElapsedTimer& operator=(const VorelElapsedTimer&) = delete;

 private:
  const std::string owner_;
  const std::string name_;
  const bool measures_;
  const std::chrono::steady_clock::time_point start_;
};

}  // namespace logging
}  // namespace vorel

#endif  // VOREL_LOGGING_ELAPSED_TIMER_H_
