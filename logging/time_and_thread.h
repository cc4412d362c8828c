#ifndef VOREL_LOGGING_TIME_AND_THREAD_H_
#define VOREL_LOGGING_TIME_AND_THREAD_H_

#include <cstdint>
#include <ctime>

#include "base/export.h"

namespace plog {

/// A wall-clock time stamp.
struct Time {
  std::time_t seconds = 0;         ///< since the epoch of `std::time_t`
  std::uint16_t milliseconds = 0;  ///< 0 to 999, always counted forward from `seconds`
};

/// What a record needs to know about the moment and the thread it is made in.
class VOREL_EXPORT Util {
 public:
  Util() = delete;

  /// Id of the calling thread: 1 for the first thread that asks, 2 for the second, and so on. Stays the same as
  /// long as the thread lives; two threads share an id only after 2^32 - 1 threads have asked. Never 0.
  ///
  /// A count of our own, not the operating system's number: portable, and free of the collisions of a hash.
  /// Cost: one thread-local read after a thread's first call.
  static std::uint32_t GetTid() noexcept;

  /// Stores the current wall-clock time, rounded down to a whole millisecond.
  ///
  /// @param time  overwritten; must not be null (unchecked)
  static void FetchTime(Time* time) noexcept;
};

}  // namespace plog

#endif  // VOREL_LOGGING_TIME_AND_THREAD_H_
