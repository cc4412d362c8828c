#ifndef VOREL_TESTS_SUPPORT_SPECIAL_VALUES_H_
#define VOREL_TESTS_SUPPORT_SPECIAL_VALUES_H_

// Numbers for differential tests: ordinary ones, and those at which formulas break.

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>

#include "base/geo_coordinate.h"
#include "support/bits.h"

namespace vorel::test {

/// Random numbers that are the same with every standard library.
class Numbers {
 public:
  explicit Numbers(unsigned seed) : generator_(seed) {}

  std::size_t Below(std::size_t count) { return generator_() % count; }

  /// In [low, high), of 53 random bits.
  double Between(double low, double high) {
    const double upper = static_cast<double>(generator_() >> 5);
    const double lower = static_cast<double>(generator_() >> 6);
    return low + (high - low) * ((upper * 67108864.0 + lower) / 9007199254740992.0);
  }
  float Between(float low, float high) {
    return static_cast<float>(Between(static_cast<double>(low), static_cast<double>(high)));
  }

  /// Random sign and mantissa, magnitude spread evenly over the decades from `smallest` to `largest`.
  double Magnitude(double smallest, double largest) {
    const double magnitude = std::pow(10.0, Between(std::log10(smallest), std::log10(largest)));
    return Below(2) == 0 ? magnitude : -magnitude;
  }

  /// NaN, infinities, signed zeros, denormals, the largest and smallest doubles, neighbours of 1.
  double Special() {
    using Limits = std::numeric_limits<double>;
    static const double kValues[] = {
        kNaN,        kInfinity, -kInfinity,    0.0,   -0.0,   Limits::denorm_min(), -Limits::denorm_min(),
        2.2e-310,    -2.2e-310, Limits::min(), 1e300, -1e300, Limits::max(),        Limits::lowest(),
        1e-300,      1e154,     -1e-160,       1.0,   -1.0,   1.0000000000000002,   0.9999999999999999,
        4294967296.0};
    return kValues[Below(sizeof kValues / sizeof kValues[0])];
  }
  float SpecialFloat() {
    using Limits = std::numeric_limits<float>;
    static const float kValues[] = {kNaNFloat, kInfinityFloat, -kInfinityFloat,  0.0f,  -0.0f,
                                    1.0f,      -1.0f,          Limits::max(),    1e30f, Limits::denorm_min(),
                                    -1e-40f,   0.5f,           Limits::lowest(), 1e-7f, 1.0000001f};
    return kValues[Below(sizeof kValues / sizeof kValues[0])];
  }

  /// A longitude anywhere; in one case of eight a round or special one, or one beyond a whole turn.
  double Longitude() { return Degrees(180.0); }
  /// A latitude anywhere; in one case of eight a round or special one, or one beyond the pole.
  double Latitude() { return Degrees(90.0); }
  tarvo::GeoCoordinate Point() {
    const double longitude = Longitude();
    return {longitude, Latitude()};
  }

  /// A point anywhere up to a latitude of 85 degrees.
  tarvo::GeoCoordinate OrdinaryPoint() {
    const double longitude = Between(-180.0, 180.0);
    return {longitude, Between(-85.0, 85.0)};
  }

  /// A point up to `degrees` from `other`, near and far alike; in one case of sixteen `other` itself.
  tarvo::GeoCoordinate PointAbout(const tarvo::GeoCoordinate& other, double degrees) {
    if (Below(16) == 0) return other;
    const double eastward = Below(16) == 0 ? 0.0 : Magnitude(degrees * 1e-9, degrees);
    const double northward = Below(16) == 0 ? 0.0 : Magnitude(degrees * 1e-9, degrees);
    return {other.longitude + eastward, other.latitude + northward};
  }

 private:
  double Degrees(double limit) {
    switch (Below(16)) {
      case 0:
        return Special();
      case 1: {
        static const double kRound[] = {0.0,   1.0,   45.0,  60.0,  89.0,  90.0,
                                        179.0, 180.0, 270.0, 359.0, 360.0, 720.0};
        const double round = kRound[Below(sizeof kRound / sizeof kRound[0])];
        return Below(2) == 0 ? round : -round;
      }
      case 2:
        return Between(-5.0 * limit, 5.0 * limit);
      default:
        return Between(-limit, limit);
    }
  }

  std::mt19937 generator_;
};

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_SPECIAL_VALUES_H_
