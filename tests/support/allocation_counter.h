#ifndef VOREL_TESTS_SUPPORT_ALLOCATION_COUNTER_H_
#define VOREL_TESTS_SUPPORT_ALLOCATION_COUNTER_H_

#include <cstddef>

namespace vorel::test {

// Linking allocation_counter.cpp into a test replaces every form of operator new and delete of that program. The
// memory still comes from malloc, so leak and overrun checks of sanitizers go on working. All counts are those of
// the calling thread: what other threads allocate meanwhile does not disturb them.

/// False in builds whose operator new cannot be replaced (clang with its thread sanitizer): all counts stay zero and
/// no limit works there. Tests that would mean nothing then skip themselves with the text below.
bool CanCountAllocations() noexcept;
constexpr char kCannotCountAllocations[] = "skipped: this build's operator new cannot be replaced";

/// Number of allocations by operator new on this thread so far, refused ones included.
std::size_t AllocationCount() noexcept;

/// Counts the allocations of this thread in a scope.
class AllocationCounter {
 public:
  AllocationCounter() noexcept : atStart_(AllocationCount()) {}
  std::size_t Count() const noexcept { return AllocationCount() - atStart_; }

 private:
  const std::size_t atStart_;
};

/// Lets this thread's operator new succeed `allowedAllocations` times and then fail with std::bad_alloc until the
/// end of the scope. Not to be nested.
class AllocationLimit {
 public:
  explicit AllocationLimit(std::size_t allowedAllocations) noexcept;
  ~AllocationLimit();
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;

  /// Number of allocations that were refused so far.
  std::size_t RefusedCount() const noexcept;
};

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_ALLOCATION_COUNTER_H_
