#ifndef VOREL_TESTS_SUPPORT_BITS_H_
#define VOREL_TESTS_SUPPORT_BITS_H_

// Comparing results to the bit: all NaNs are equal, -0 and +0 differ. What differs is printed in a form that can be
// pasted back into a test.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/geo_coordinate.h"
#include "base/map_vector.h"
#include "base/rect.h"

namespace vorel::test {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr float kNaNFloat = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinityFloat = std::numeric_limits<float>::infinity();

inline std::uint64_t Bits(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

inline std::uint32_t Bits(float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

inline std::string Paste(double value) {
  if (std::isnan(value)) return "kNaN";
  if (std::isinf(value)) return value > 0 ? "kInfinity" : "-kInfinity";
  std::ostringstream text;
  text << std::setprecision(17) << value;
  return text.str();
}
inline std::string Paste(float value) {
  if (std::isnan(value)) return "kNaNFloat";
  if (std::isinf(value)) return value > 0 ? "kInfinityFloat" : "-kInfinityFloat";
  std::ostringstream text;
  text << std::setprecision(9) << std::showpoint << value << "f";
  return text.str();
}
inline std::string Paste(bool value) {
  return value ? "true" : "false";
}
inline std::string Paste(int value) {
  return std::to_string(value);
}
inline std::string Paste(unsigned value) {
  return std::to_string(value) + "u";
}
inline std::string Paste(std::size_t value) {
  return std::to_string(value) + "u";
}
inline std::string Paste(const tarvo::GeoCoordinate& point) {
  return "{" + Paste(point.longitude) + ", " + Paste(point.latitude) + "}";
}
inline std::string Paste(const tarvo::GeoCoordinateZ& point) {
  return "{" + Paste(point.longitude) + ", " + Paste(point.latitude) + ", " + Paste(point.z) + "}";
}
inline std::string Paste(const tarvo::MapVector2d& vector) {
  return "{" + Paste(vector.x) + ", " + Paste(vector.y) + "}";
}
template <class T>
std::string Paste(const std::vector<T>& values) {
  std::string text = "{";
  for (const T& value : values) text += (text.size() > 1 ? ", " : "") + Paste(value);
  return text + "}";
}
template <class T>
std::string Paste(const tarvo::Rect<T>& rect) {
  return "{" + Paste(rect.min) + ", " + Paste(rect.max) + "}";
}

inline bool AreSameBits(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || Bits(a) == Bits(b);
}
inline bool AreSameBits(float a, float b) {
  return (std::isnan(a) && std::isnan(b)) || Bits(a) == Bits(b);
}
inline bool AreSameBits(bool a, bool b) {
  return a == b;
}
inline bool AreSameBits(int a, int b) {
  return a == b;
}
inline bool AreSameBits(unsigned a, unsigned b) {
  return a == b;
}
inline bool AreSameBits(std::size_t a, std::size_t b) {
  return a == b;
}
inline bool AreSameBits(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b) {
  return AreSameBits(a.longitude, b.longitude) && AreSameBits(a.latitude, b.latitude);
}
inline bool AreSameBits(const tarvo::GeoCoordinateZ& a, const tarvo::GeoCoordinateZ& b) {
  return AreSameBits(a.longitude, b.longitude) && AreSameBits(a.latitude, b.latitude) &&
         AreSameBits(a.z, b.z);
}
inline bool AreSameBits(const tarvo::MapVector2d& a, const tarvo::MapVector2d& b) {
  return AreSameBits(a.x, b.x) && AreSameBits(a.y, b.y);
}
template <class T>
bool AreSameBits(const tarvo::Rect<T>& a, const tarvo::Rect<T>& b) {
  return AreSameBits(a.min, b.min) && AreSameBits(a.max, b.max);
}

template <class T>
testing::AssertionResult SameBits(const T& actual, const T& expected) {
  if (AreSameBits(actual, expected)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "is " << Paste(actual) << ", should be " << Paste(expected);
}
template <class T>
testing::AssertionResult SameBits(const std::vector<T>& actual, const std::vector<T>& expected) {
  if (actual.size() != expected.size()) {
    return testing::AssertionFailure()
           << "has " << actual.size() << " elements, should have " << expected.size() << "; is "
           << Paste(actual) << ", should be " << Paste(expected);
  }
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const testing::AssertionResult same = SameBits(actual[i], expected[i]);
    if (!same) return testing::AssertionFailure() << "element " << i << " " << same.message();
  }
  return testing::AssertionSuccess();
}

}  // namespace vorel::test

namespace tarvo {

inline void PrintTo(const GeoCoordinate& point, std::ostream* out) {
  *out << vorel::test::Paste(point);
}
inline void PrintTo(const GeoCoordinateZ& point, std::ostream* out) {
  *out << vorel::test::Paste(point);
}
inline void PrintTo(const MapVector2d& vector, std::ostream* out) {
  *out << vorel::test::Paste(vector);
}

}  // namespace tarvo

#endif  // VOREL_TESTS_SUPPORT_BITS_H_
