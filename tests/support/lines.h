#ifndef VOREL_TESTS_SUPPORT_LINES_H_
#define VOREL_TESTS_SUPPORT_LINES_H_

// The lines that tests run over: awkward ones by name, random ones from a fixed seed, real ones where present.

#include <random>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"

namespace vorel::test {

using Line = std::vector<tarvo::GeoCoordinate>;
using LineZ = std::vector<tarvo::GeoCoordinateZ>;

struct NamedLine {
  std::string name;
  Line points;
};
struct NamedLineZ {
  std::string name;
  LineZ points;
};

/// Every line that a line function must survive: empty, one vertex, repeats, spike, loop, closed, antimeridian, pole,
/// huge, tiny, NaN, infinite. The ones with height have the same names and horizontal positions.
const std::vector<NamedLine>& AwkwardLines();
const std::vector<NamedLineZ>& AwkwardLinesZ();

/// Adds one test that runs `check(line)` on every awkward line; `check` takes a `Line` (or a `LineZ`).
///
///     JOIN_AWKWARD_LINES(CutPolyline, [](const Line& line) { ... });
#define JOIN_AWKWARD_LINES(Function, ...)                                        \
  TEST(AwkwardLinesSuite, Function) {                                            \
    const auto check = __VA_ARGS__;                                              \
    for (const ::vorel::test::NamedLine& line : ::vorel::test::AwkwardLines()) { \
      SCOPED_TRACE(line.name);                                                   \
      check(line.points);                                                        \
    }                                                                            \
  }
#define JOIN_AWKWARD_LINES_Z(Function, ...)                                        \
  TEST(AwkwardLinesZSuite, Function) {                                             \
    const auto check = __VA_ARGS__;                                                \
    for (const ::vorel::test::NamedLineZ& line : ::vorel::test::AwkwardLinesZ()) { \
      SCOPED_TRACE(line.name);                                                     \
      check(line.points);                                                          \
    }                                                                              \
  }

/// A road-like line of `vertexCount` vertices, steps of 1 to 60 m, gentle and sharp turns, some repeated vertices,
/// anywhere between the latitudes -80 and 80.
Line RandomLine(std::mt19937& generator, int vertexCount);
LineZ RandomLineZ(std::mt19937& generator, int vertexCount);

/// A line that mixes scales from a micrometre to half the earth and now and then holds a special value (NaN, infinity,
/// signed zero, a pole, the antimeridian, beyond the pole).
Line WildLine(std::mt19937& generator, int vertexCount);
LineZ WildLineZ(std::mt19937& generator, int vertexCount);

/// All line strings of one folder of the real data ("routes", "traces", "lanes"), rings included for "polygons"; empty
/// when the environment variable VOREL_DATA_DIR names no such folder. Heights are 0 where the data have none.
const std::vector<NamedLineZ>& RealLinesZ(const std::string& folder);
std::vector<NamedLine> RealLines(const std::string& folder);

Line WithoutHeight(const LineZ& line);

/// Metres from the start of `line` to each of its vertices, as the library's own table has them; empty for no vertices.
std::vector<double> CumulativeTable(const Line& line);

/// In a test over real lines: leaves it with one line of explanation when there are none.
#define SKIP_WITHOUT_REAL_LINES(lines) \
  if ((lines).empty()) GTEST_SKIP() << "skipped: VOREL_DATA_DIR does not name the real data"

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_LINES_H_
