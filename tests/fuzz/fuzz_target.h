#ifndef VOREL_TESTS_FUZZ_FUZZ_TARGET_H_
#define VOREL_TESTS_FUZZ_FUZZ_TARGET_H_

// What every fuzz target includes. A target turns one input into arguments inside the contract of the functions under
// test, calls each function and its plain twin, and aborts where a bit differs.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <type_traits>

#include "fuzz/fuzz_input.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/bits.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

using Library = vorel::VorelGeometryAlgorithm;

[[noreturn]] inline void Fail(const char* what, const char* message, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: %s: %s\n", file, line, what, message);
  std::abort();
}

template <class T>
void ExpectSame(const T& actual, const T& expected, const char* what, const char* file, int line) {
  const testing::AssertionResult same = vorel::test::SameBits(actual, expected);
  if (!same) Fail(what, same.message(), file, line);
}

/// What `function` returns; nothing when it throws std::out_of_range.
template <class Function>
auto UnlessOutOfRange(Function function) -> std::optional<decltype(function())> {
  try {
    return function();
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
}

}  // namespace fuzz

/// Aborts with both values unless they have the same bits (all NaNs equal).
#define EXPECT_SAME(actual, expected) ::fuzz::ExpectSame((actual), (expected), #actual, __FILE__, __LINE__)

#define EXPECT_HOLDS(condition) \
  ((condition) ? static_cast<void>(0) : ::fuzz::Fail(#condition, "does not hold", __FILE__, __LINE__))

#endif  // VOREL_TESTS_FUZZ_FUZZ_TARGET_H_
