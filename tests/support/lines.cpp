#include "support/lines.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/uniform.h"

namespace vorel::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

LineZ WithHeights(const Line& line) {
  LineZ result;
  for (std::size_t i = 0; i < line.size(); ++i) {
    // 0.1 is not a float, so that interpolated heights round.
    result.emplace_back(line[i].longitude, line[i].latitude, 12.5f + 0.1f * static_cast<float>(i * i % 17));
  }
  return result;
}

std::vector<NamedLine> MakeAwkwardLines() {
  constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
  return {
      {"Empty", {}},
      {"OneVertex", {{7.5, 47.5}}},
      {"OneVertexAtZero", {{0.0, 0.0}}},
      {"TwoEqual", {{7.5, 47.5}, {7.5, 47.5}}},
      {"Straight", {{7.5, 47.5}, {7.501, 47.5}, {7.502, 47.5}, {7.503, 47.5}}},
      {"RepeatedFirst", {{7.5, 47.5}, {7.5, 47.5}, {7.501, 47.501}}},
      {"RepeatedMiddle", {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.5}, {7.501, 47.5}, {7.502, 47.501}}},
      {"RepeatedLast", {{7.5, 47.5}, {7.501, 47.5}, {7.501, 47.5}}},
      {"Spike", {{7.5, 47.5}, {7.51, 47.5}, {7.5, 47.5}, {7.5, 47.51}}},
      {"Loop", {{7.5, 47.5}, {7.51, 47.5}, {7.51, 47.51}, {7.505, 47.49}, {7.5, 47.51}}},
      {"Closed", {{7.5, 47.5}, {7.51, 47.5}, {7.51, 47.51}, {7.5, 47.51}, {7.5, 47.5}}},
      {"AcrossAntimeridian", {{179.998, -17.0}, {179.9995, -17.001}, {-179.999, -17.002}, {-179.99, -17.0}}},
      {"OnAntimeridian", {{180.0, 10.0}, {-180.0, 10.001}, {180.0, 10.002}}},
      {"OverNorthPole", {{20.0, 89.999}, {20.0, 90.0}, {-160.0, 89.999}, {110.0, 89.9995}}},
      {"AtSouthPole", {{0.0, -90.0}, {90.0, -90.0}, {180.0, -89.9999}}},
      {"AroundTheWorld", {{0.0, 0.0}, {120.0, 10.0}, {-120.0, -10.0}, {0.0, 0.0}}},
      {"NearlyAntipodal", {{0.0, 0.1}, {179.7, -0.1}, {0.0, 0.0}, {180.0, 0.0}}},
      {"WholeTurns", {{367.5, 47.5}, {7.501, 47.5}, {-352.498, 47.5}, {727.503, 47.5}}},
      {"Huge", {{1e300, 47.5}, {-1e300, 47.5}, {1e18, 47.6}}},
      {"LargestDouble",
       {{std::numeric_limits<double>::max(), 1.0}, {-std::numeric_limits<double>::max(), 1.0}}},
      {"BeyondThePole", {{7.5, 90.5}, {7.5, 89.9}, {7.5, -90.0000001}, {7.5, 1e5}}},
      {"Tiny", {{0.0, 0.0}, {1e-12, 1e-12}, {2e-12, -1e-12}, {3e-12, 0.0}}},
      {"Denormal", {{0.0, 0.0}, {kDenormal, 0.0}, {0.0, kDenormal}, {-kDenormal, -kDenormal}}},
      {"SignedZeros", {{0.0, -0.0}, {-0.0, 0.0}, {-0.0, -0.0}, {0.001, 0.0}, {-0.0, 0.001}}},
      {"NaNFirst", {{kNaN, 47.5}, {7.501, 47.5}, {7.502, 47.5}}},
      {"NaNMiddle", {{7.5, 47.5}, {7.501, kNaN}, {7.502, 47.5}, {7.503, 47.5}}},
      {"NaNLast", {{7.5, 47.5}, {7.501, 47.5}, {kNaN, kNaN}}},
      {"NaNOnly", {{kNaN, kNaN}, {kNaN, kNaN}, {kNaN, kNaN}}},
      {"InfiniteMiddle", {{7.5, 47.5}, {kInfinity, 47.5}, {7.502, -kInfinity}, {7.503, 47.5}}},
      {"InfiniteEqual", {{kInfinity, kInfinity}, {kInfinity, kInfinity}, {-kInfinity, kInfinity}}},
  };
}

std::vector<NamedLineZ> MakeAwkwardLinesZ() {
  std::vector<NamedLineZ> lines;
  for (const NamedLine& line : AwkwardLines()) lines.push_back({line.name, WithHeights(line.points)});
  LineZ special = WithHeights({{7.5, 47.5}, {7.501, 47.5}, {7.502, 47.501}, {7.503, 47.501}, {7.504, 47.5}});
  special[1].z = std::numeric_limits<float>::quiet_NaN();
  special[2].z = std::numeric_limits<float>::infinity();
  special[3].z = -std::numeric_limits<float>::max();
  special[4].z = -0.0f;
  lines.push_back({"SpecialHeights", special});
  return lines;
}

}  // namespace

const std::vector<NamedLine>& AwkwardLines() {
  static const std::vector<NamedLine> lines = MakeAwkwardLines();
  return lines;
}

const std::vector<NamedLineZ>& AwkwardLinesZ() {
  static const std::vector<NamedLineZ> lines = MakeAwkwardLinesZ();
  return lines;
}

LineZ RandomLineZ(std::mt19937& generator, int vertexCount) {
  LineZ line;
  double longitude = Uniform(generator, -179.0, 179.0);
  double latitude = Uniform(generator, -80.0, 80.0);
  double heading = Uniform(generator, 0.0, 6.283);
  float height = static_cast<float>(Uniform(generator, -5.0, 900.0));
  for (int i = 0; i < vertexCount; ++i) {
    line.emplace_back(longitude, latitude, height);
    const double kind = Uniform(generator, 0.0, 1.0);
    if (kind < 0.03) continue;  // a repeated vertex
    heading += kind < 0.1 ? Uniform(generator, -3.0, 3.0) : Uniform(generator, -0.15, 0.15);
    const double metres = Uniform(generator, 1.0, 60.0);
    longitude += metres * std::sin(heading) / (111195.0 * std::cos(latitude * 0.0174532925));
    latitude += metres * std::cos(heading) / 111195.0;
    height += static_cast<float>(Uniform(generator, -0.4, 0.4));
  }
  return line;
}

Line RandomLine(std::mt19937& generator, int vertexCount) {
  return WithoutHeight(RandomLineZ(generator, vertexCount));
}

LineZ WildLineZ(std::mt19937& generator, int vertexCount) {
  static const double kSpecial[] = {kNaN,  kInfinity,  -kInfinity, 0.0,   -0.0,  180.0, -180.0, 90.0,
                                    -90.0, 90.0000001, 1e-310,     1e300, 359.0, 1.0,   -1.0};
  LineZ line;
  double longitude = Uniform(generator, -180.0, 180.0);
  double latitude = Uniform(generator, -90.0, 90.0);
  for (int i = 0; i < vertexCount; ++i) {
    tarvo::GeoCoordinateZ point(longitude, latitude, static_cast<float>(Uniform(generator, -100.0, 1000.0)));
    const double kind = Uniform(generator, 0.0, 1.0);
    if (kind < 0.04) point.longitude = kSpecial[generator() % 15];
    if (kind > 0.02 && kind < 0.06) point.latitude = kSpecial[generator() % 15];
    if (kind > 0.06 && kind < 0.08) point.z = static_cast<float>(kSpecial[generator() % 15]);
    line.push_back(point);
    if (kind > 0.9) continue;                                            // a repeated vertex
    const double step = std::pow(10.0, Uniform(generator, -11.0, 2.0));  // degrees
    const bool straight = kind > 0.8;
    longitude += step * (straight ? 1.0 : Uniform(generator, -1.0, 1.0));
    latitude += straight ? 0.0 : step * Uniform(generator, -1.0, 1.0);
    if (std::fabs(longitude) > 200.0) longitude = std::remainder(longitude, 360.0);
    latitude = std::min(90.0, std::max(-90.0, latitude));
  }
  return line;
}

Line WildLine(std::mt19937& generator, int vertexCount) {
  return WithoutHeight(WildLineZ(generator, vertexCount));
}

Line WithoutHeight(const LineZ& line) {
  return Line(line.begin(), line.end());
}

std::vector<double> CumulativeTable(const Line& line) {
  std::vector<double> table;
  if (line.empty()) return table;
  table.push_back(0.0);
  VorelGeometryAlgorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, table);
  return table;
}

}  // namespace vorel::test
