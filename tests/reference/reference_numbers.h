#ifndef VOREL_TESTS_REFERENCE_REFERENCE_NUMBERS_H_
#define VOREL_TESTS_REFERENCE_REFERENCE_NUMBERS_H_

#include <cstdint>
#include <limits>

namespace reference {

constexpr double kPi = 3.141592653589793;
constexpr double kRadiansPerDegree = 0.017453292519943295;

/// Toward zero; values beyond the 32-bit range give its nearest end, NaN gives 0.
inline std::int32_t TruncateToInt32(double value) {
  if (value != value) return 0;
  if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

/// The low 32 bits of the product, as a signed number.
inline std::int32_t MultiplyInt32Wrapping(std::int32_t a, std::int32_t b) {
  const std::int64_t product = static_cast<std::int64_t>(a) * static_cast<std::int64_t>(b);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(product)));
}

/// The larger of 0 and `ratio`, then the smaller of 1 and that. NaN and -0 pass unchanged.
inline float ClampRatio(float ratio) {
  float clamped = ratio;
  if (clamped < 0.0f) clamped = 0.0f;
  if (clamped > 1.0f) clamped = 1.0f;
  return clamped;
}

/// The same in double.
inline double ClampRatio(double ratio) {
  double clamped = ratio;
  if (clamped < 0.0) clamped = 0.0;
  if (clamped > 1.0) clamped = 1.0;
  return clamped;
}

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_REFERENCE_NUMBERS_H_
