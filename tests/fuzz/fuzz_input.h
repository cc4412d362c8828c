#ifndef VOREL_TESTS_FUZZ_FUZZ_INPUT_H_
#define VOREL_TESTS_FUZZ_FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"

namespace fuzz {

using Line = std::vector<tarvo::GeoCoordinate>;
using LineZ = std::vector<tarvo::GeoCoordinateZ>;

/// Turns a fuzzer's bytes into arguments, so that few bytes give what matters: repeated points, ties, round numbers,
/// thresholds and their neighbours, road-like lines, NaN and infinities. The same bytes give the same arguments
/// everywhere; behind the last byte zeros follow.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool IsAtEnd() const { return next_ == end_; }
  std::uint8_t Byte();
  bool Flag() { return (Byte() & 1) != 0; }

  /// In [0, count).
  std::size_t Below(std::size_t count);

  /// Mostly an index into `size` elements or just outside, now and then any int.
  int Index(std::size_t size);
  /// The same, unsigned.
  unsigned UnsignedIndex(std::size_t size);

  /// Any double at all: round, special, a neighbour of a round one, raw bits.
  double Number();
  float NumberFloat();

  /// An angle or heading, mostly within some turns.
  double Angle();
  /// A length: thresholds of the library and their neighbours, everyday lengths, any double.
  double Metres();
  /// The length of the first segments of `line`, summed in order, or a part of it: hits vertices exactly. Otherwise as `Metres`.
  double MetresAlong(const Line& line);
  double MetresAlong(const LineZ& line);
  /// A fraction, mostly in [0, 1].
  double Ratio();

  tarvo::GeoCoordinate Point();
  tarvo::GeoCoordinateZ PointZ();
  /// A point that has to do with `line`: a vertex, beside a vertex or between two of them. Otherwise as `Point`.
  tarvo::GeoCoordinate PointNear(const Line& line);
  tarvo::GeoCoordinateZ PointNear(const LineZ& line);

  /// A line of up to `maxCount` points.
  Line PointLine(std::size_t maxCount);
  LineZ PointLineZ(std::size_t maxCount);

  /// A rectangle whose borders have to do with `line`; now and then inverted or not finite.
  tarvo::Rect<tarvo::GeoCoordinate> RectNear(const Line& line);

  std::string Text(std::size_t maxLength);

 private:
  double Special();
  double Raw();
  double OnGrid();
  double Neighbour(double value);
  float Height();
  tarvo::GeoCoordinate Origin();

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  Line seen_;  // points given out so far, to be given out again
};

Line WithoutHeight(const LineZ& line);

/// Sum of the distances between neighbours, NaN ones left out: how much there is to sample.
double FiniteLength(const Line& line);

}  // namespace fuzz

#endif  // VOREL_TESTS_FUZZ_FUZZ_INPUT_H_
