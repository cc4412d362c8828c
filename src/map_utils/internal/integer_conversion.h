#ifndef VOREL_MAP_UTILS_INTERNAL_INTEGER_CONVERSION_H_
#define VOREL_MAP_UTILS_INTERNAL_INTEGER_CONVERSION_H_

#include <cstdint>
#include <limits>

namespace vorel {
namespace internal {

/// Truncates toward zero; values beyond the 32-bit range saturate and NaN gives 0, where a bare cast would be
/// undefined and differ between architectures.
inline std::int32_t TruncateToInt32(double value) {
  if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return value == value ? static_cast<std::int32_t>(value) : 0;
}

/// The product modulo 2^32, where the built-in one would be undefined beyond the range.
inline std::int32_t MultiplyWrapping(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_INTEGER_CONVERSION_H_
