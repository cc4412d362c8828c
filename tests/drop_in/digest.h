#ifndef VOREL_TESTS_DROP_IN_DIGEST_H_
#define VOREL_TESTS_DROP_IN_DIGEST_H_

// What the digest program keeps of the results of a function.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/boundary_data.h"
#include "base/geo_coordinate.h"
#include "base/map_vector.h"
#include "base/rect.h"

namespace dropin {

/// Of numbers that are no coordinates. A float has the same letter as a capital.
enum class Unit : char { kNumber = 'n', kDegrees = 'd', kMetres = 'm', kRadians = 'r' };

/// Where the raw results go, value by value; null for digests alone.
inline std::FILE*& RawResults() {
  static std::FILE* file = nullptr;
  return file;
}

/// FNV-1a over the bits of everything added; all NaNs count as one value. Printed at the end of its life. The raw results
/// are one header line "kind function<TAB>count" followed by `count` unit letters ('i' for whole numbers) and `count`
/// values of eight bytes, floats widened to doubles.
class Digest {
 public:
  Digest(const char* kind, const char* function, Unit unit = Unit::kNumber)
      : kind_(kind), function_(function), unit_(static_cast<char>(unit)) {}
  ~Digest() {
    std::printf("%-5s %-40s %016llx\n", kind_, function_, static_cast<unsigned long long>(hash_));
    if (RawResults() == nullptr) return;
    std::fprintf(RawResults(), "%s %s\t%zu\n", kind_, function_, values_.size());
    std::fwrite(units_.data(), 1, units_.size(), RawResults());
    std::fwrite(values_.data(), sizeof(std::uint64_t), values_.size(), RawResults());
  }
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;

  Digest& operator<<(std::uint64_t value) { return Add('i', value); }
  Digest& operator<<(bool value) { return Add('i', std::uint64_t{value}); }
  Digest& operator<<(int value) {
    return Add('i', static_cast<std::uint64_t>(static_cast<std::int64_t>(value)));
  }
  Digest& operator<<(double value) { return AddDouble(unit_, value); }
  Digest& operator<<(float value) { return AddFloat(unit_, value); }
  Digest& operator<<(const tarvo::GeoCoordinate& point) {
    return AddDouble('d', point.longitude).AddDouble('d', point.latitude);
  }
  Digest& operator<<(const tarvo::GeoCoordinateZ& point) {
    return AddDouble('d', point.longitude).AddDouble('d', point.latitude).AddFloat('m', point.z);
  }
  Digest& operator<<(const tarvo::MapVector2d& vector) {
    return AddDouble('d', vector.x).AddDouble('d', vector.y);
  }
  Digest& operator<<(const tarvo::Rect<tarvo::GeoCoordinate>& rect) { return *this << rect.min << rect.max; }
  template <class T>
  Digest& operator<<(const std::vector<T>& values) {
    *this << static_cast<std::uint64_t>(values.size());
    for (const T& value : values) *this << value;
    return *this;
  }

 private:
  Digest& AddFloat(char unit, float value) {
    return AddDouble(static_cast<char>(unit - 'a' + 'A'), static_cast<double>(value));
  }
  Digest& AddDouble(char unit, double value) {
    std::uint64_t bits = 0x7ff8000000000000u;
    if (!std::isnan(value)) std::memcpy(&bits, &value, sizeof bits);
    return Add(unit, bits);
  }
  Digest& Add(char unit, std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) {
      hash_ = (hash_ ^ (value >> shift & 0xff)) * 0x100000001b3u;
    }
    if (RawResults() != nullptr) {
      units_.push_back(unit);
      values_.push_back(value);
    }
    return *this;
  }

  const char* kind_;
  const char* function_;
  char unit_;
  std::uint64_t hash_ = 0xcbf29ce484222325u;
  std::string units_;
  std::vector<std::uint64_t> values_;
};

}  // namespace dropin

#endif  // VOREL_TESTS_DROP_IN_DIGEST_H_
