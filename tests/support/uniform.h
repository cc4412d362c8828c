#ifndef VOREL_TESTS_SUPPORT_UNIFORM_H_
#define VOREL_TESTS_SUPPORT_UNIFORM_H_

#include <random>

namespace vorel::test {

/// A random number in [low, high). Not std::uniform_real_distribution, whose values differ between standard libraries.
inline double Uniform(std::mt19937& generator, double low, double high) {
  return low + (high - low) * (static_cast<double>(generator()) / 4294967296.0);
}

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_UNIFORM_H_
