#include "fuzz/fuzz_input.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace fuzz {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::Rect;

namespace {

template <class T, std::size_t count>
T Pick(FuzzInput& input, const T (&values)[count]) {
  return values[input.Below(count)];
}

template <class Points>
double LengthOfFirst(const Points& line, std::size_t segmentCount) {
  double length = 0.0;
  for (std::size_t i = 1; i <= segmentCount; ++i) length += line[i].DistanceTo(line[i - 1]);
  return length;
}

}  // namespace

std::uint8_t FuzzInput::Byte() {
  return next_ == end_ ? std::uint8_t{0} : *next_++;
}

std::size_t FuzzInput::Below(std::size_t count) {
  std::size_t value = Byte();
  if (count > 256) value = value * 256 + Byte();
  return value % count;
}

int FuzzInput::Index(std::size_t size) {
  static const int kFar[] = {-2147483647 - 1, 2147483647, -1000, 1000000, 65536, -2147483647};
  const std::size_t choice = Byte();
  if (choice == 255) return Pick(*this, kFar);
  return static_cast<int>(choice % (size + 4)) - 2;
}

unsigned FuzzInput::UnsignedIndex(std::size_t size) {
  static const unsigned kFar[] = {4294967295u, 4294967294u, 2147483648u, 2147483647u, 65536u};
  const std::size_t choice = Byte();
  if (choice >= 250) return Pick(*this, kFar);
  return static_cast<unsigned>(choice % (size + 3));
}

double FuzzInput::Raw() {
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = bits << 8 | Byte();
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

double FuzzInput::Special() {
  using Limits = std::numeric_limits<double>;
  static const double kValues[] = {Limits::quiet_NaN(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   0.0,
                                   -0.0,
                                   Limits::denorm_min(),
                                   -Limits::denorm_min(),
                                   Limits::min(),
                                   Limits::max(),
                                   Limits::lowest(),
                                   1e300,
                                   -1e300,
                                   1e-300,
                                   1e154,
                                   1e-160,
                                   1.0,
                                   -1.0,
                                   90.0,
                                   -90.0,
                                   180.0,
                                   -180.0,
                                   360.0,
                                   -360.0,
                                   90.00000000000001,
                                   2147483647.0,
                                   2147483648.0,
                                   -2147483648.0,
                                   -2147483649.0,
                                   4294967296.0,
                                   9007199254740993.0,
                                   3.4028234663852886e+38,
                                   3.5e+38,
                                   1e-46};
  return Pick(*this, kValues);
}

double FuzzInput::OnGrid() {
  static const double kSteps[] = {1.0, 0.25, 10.0, 0.1, 1e-3, 1e-5, 1e-7, 3.0};
  const double step = Pick(*this, kSteps);
  return static_cast<double>(static_cast<std::int8_t>(Byte())) * step;
}

double FuzzInput::Neighbour(double value) {
  const int ulps = static_cast<int>(Byte() % 7) - 3;
  for (int i = ulps; i < 0; ++i) value = std::nextafter(value, -std::numeric_limits<double>::infinity());
  for (int i = 0; i < ulps; ++i) value = std::nextafter(value, std::numeric_limits<double>::infinity());
  return value;
}

double FuzzInput::Number() {
  switch (Byte() % 8) {
    case 0:
      return Special();
    case 1:
      return Raw();
    case 2:
      return Neighbour(Special());
    case 3:
      return Neighbour(OnGrid());
    default:
      return OnGrid();
  }
}

float FuzzInput::NumberFloat() {
  if (Byte() % 8 != 0) return static_cast<float>(std::fmin(std::fmax(OnGrid(), -3e38), 3e38));
  std::uint32_t bits = 0;
  for (int i = 0; i < 4; ++i) bits = bits << 8 | Byte();
  float value = 0.0f;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

double FuzzInput::Angle() {
  switch (Byte() % 8) {
    case 0:
      return Number();
    case 1:
      return Neighbour(45.0 * static_cast<double>(static_cast<std::int8_t>(Byte())));
    case 2:
      return 45.0 * static_cast<double>(static_cast<std::int8_t>(Byte()) % 9);
    case 3:
      return static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-6;
    case 4:
      return static_cast<double>(Below(65536)) * 0.02 - 655.36;
    default:
      return static_cast<double>(Below(65536)) * 360.0 / 65536.0;
  }
}

double FuzzInput::Metres() {
  static const double kThresholds[] = {0.0,  -0.0,   0.01,    0.1,      0.5,        1.0,   2.0,   5.0,
                                       6.0,  10.0,   11.0,    25.0,     50.0,       100.0, 111.0, 1000.0,
                                       -1.0, 1113.0, 12000.0, 999988.0, 20003931.0, -10.0, 0.3,   1e-9};
  switch (Byte() % 8) {
    case 0:
      return Number();
    case 1:
    case 2:
      return Pick(*this, kThresholds);
    case 3:
      return Neighbour(Pick(*this, kThresholds));
    case 4:
      return static_cast<double>(Below(65536));
    default:
      return static_cast<double>(Below(65536)) * (1.0 / 256.0);
  }
}

double FuzzInput::MetresAlong(const Line& line) {
  const std::size_t choice = Byte() % 4;
  if (choice == 0 || line.size() < 2) return Metres();
  double length = LengthOfFirst(line, Below(line.size()));
  if (choice == 1) length = Neighbour(length);
  if (choice == 2) length = length * Ratio();
  // A spacing that divides the length: samples fall on vertices.
  if (choice == 3) length = length / static_cast<double>(1 + Byte() % 8);
  return length;
}

double FuzzInput::MetresAlong(const LineZ& line) {
  return MetresAlong(WithoutHeight(line));
}

double FuzzInput::Ratio() {
  switch (Byte() % 8) {
    case 0:
      return Number();
    case 1:
      return Neighbour(0.25 * static_cast<double>(Byte() % 6));
    case 2:
      return 0.25 * static_cast<double>(Byte() % 6);
    default:
      return static_cast<double>(Below(65536)) / 65535.0;
  }
}

float FuzzInput::Height() {
  static const float kValues[] = {std::numeric_limits<float>::quiet_NaN(),
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity(),
                                  std::numeric_limits<float>::max(),
                                  std::numeric_limits<float>::denorm_min(),
                                  -0.0f,
                                  0.1f,
                                  16777216.0f};
  const std::uint8_t choice = Byte();
  if (choice >= 248) return kValues[choice - 248];
  return static_cast<float>(choice) * 0.1f;
}

GeoCoordinate FuzzInput::Origin() {
  static const GeoCoordinate kOrigins[] = {
      {0.0, 0.0},     {7.5, 47.5},        {116.39, 39.9},    {179.9999, -17.0},
      {-180.0, 10.0}, {20.0, 89.999},     {0.0, -90.0},      {11.0, 60.0},
      {-0.0, -0.0},   {-70.0, -33.5},     {359.9999, 5.0},   {179.9, 0.0},
      {1e-9, -1e-9},  {90.0, 89.9999999}, {-179.9999, 66.5}, {30.0, 75.0}};
  return Pick(*this, kOrigins);
}

GeoCoordinate FuzzInput::Point() {
  GeoCoordinate point;
  const std::size_t choice = Byte() % 16;
  if (choice < 6 && !seen_.empty()) {
    point = seen_[Below(seen_.size())];
    switch (choice) {
      case 0:
        break;
      case 1:
        point.longitude = Neighbour(point.longitude);
        point.latitude = Neighbour(point.latitude);
        break;
      case 2:
        point.longitude = seen_[Below(seen_.size())].longitude;
        break;
      case 3:
        point.latitude += static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-5;
        break;
      default:
        point.longitude += static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-5;
        point.latitude += static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-5;
        break;
    }
  } else if (choice < 8) {
    point = Origin();
  } else if (choice < 10) {
    point.longitude = Number();
    point.latitude = Number();
  } else if (choice < 13) {
    point.longitude = static_cast<double>(Below(65536)) * (360.0 / 65536.0) - 180.0;
    point.latitude = static_cast<double>(Below(65536)) * (180.0 / 65536.0) - 90.0;
  } else {
    const GeoCoordinate origin = Origin();
    point.longitude = origin.longitude + static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-4;
    point.latitude = origin.latitude + static_cast<double>(static_cast<std::int8_t>(Byte())) * 1e-4;
  }
  if (seen_.size() < 64) seen_.push_back(point);
  return point;
}

GeoCoordinateZ FuzzInput::PointZ() {
  const GeoCoordinate point = Point();
  return {point.longitude, point.latitude, Height()};
}

GeoCoordinate FuzzInput::PointNear(const Line& line) {
  const std::size_t choice = Byte() % 8;
  if (line.empty() || choice == 0) return Point();
  GeoCoordinate point = line[Below(line.size())];
  if (choice == 1) return point;
  if (choice == 2) {
    point.longitude = Neighbour(point.longitude);
    point.latitude = Neighbour(point.latitude);
  } else if (choice < 5) {
    const GeoCoordinate& other = line[Below(line.size())];
    const double ratio = Ratio();
    point.longitude += (other.longitude - point.longitude) * ratio;
    point.latitude += (other.latitude - point.latitude) * ratio;
  } else {
    const double step = choice == 5 ? 1e-7 : choice == 6 ? 1e-5 : 1e-3;
    point.longitude += static_cast<double>(static_cast<std::int8_t>(Byte())) * step;
    point.latitude += static_cast<double>(static_cast<std::int8_t>(Byte())) * step;
  }
  return point;
}

GeoCoordinateZ FuzzInput::PointNear(const LineZ& line) {
  const GeoCoordinate point = PointNear(WithoutHeight(line));
  return {point.longitude, point.latitude, Height()};
}

LineZ FuzzInput::PointLineZ(std::size_t maxCount) {
  static const double kSteps[] = {1.0, 0.25, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 30.0};
  LineZ line;
  const std::size_t kind = Byte() % 8;
  // Long lines repeat a few steps, so that they do not need many bytes.
  std::size_t count = Below(std::size_t{16});
  const bool isLong = count == 15;
  if (isLong) count = Below(std::size_t{65536});
  if (count > maxCount) count = maxCount;
  if (kind < 5) {
    const GeoCoordinate origin = Origin();
    const bool isRoad = kind < 2;
    const double step = Pick(*this, kSteps);
    std::uint8_t pattern[16][2] = {};
    const std::size_t patternSize = isLong ? 1 + Below(std::size_t{16}) : 0;
    for (std::size_t i = 0; i < patternSize; ++i) {
      pattern[i][0] = Byte();
      pattern[i][1] = Byte();
    }
    double longitude = origin.longitude;
    double latitude = origin.latitude;
    double heading = 0.0;
    float height = Height();
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint8_t first = isLong ? pattern[i % patternSize][0] : Byte();
      const std::uint8_t second = isLong ? pattern[i % patternSize][1] : Byte();
      const double eastward = static_cast<double>(static_cast<std::int8_t>(first));
      const double northward = static_cast<double>(static_cast<std::int8_t>(second));
      if (isRoad) {
        // Turn and metres. Even turns are right angles and half turns, which planar formulas stumble over.
        heading += (first & 1) != 0 ? eastward * 0.01 : std::floor(eastward / 32.0) * 0.7853981633974483;
        const double metres = static_cast<double>(second) * (kind == 0 ? 0.25 : 0.01);
        longitude += metres * std::sin(heading) / (111195.0 * std::cos(origin.latitude * 0.0174532925));
        latitude += metres * std::cos(heading) / 111195.0;
        line.emplace_back(longitude, latitude, height);
      } else if (kind == 2) {
        line.emplace_back(origin.longitude + eastward * step, origin.latitude + northward * step, height);
      } else {
        longitude += eastward * step;
        latitude += northward * step;
        line.emplace_back(longitude, latitude, height);
      }
      height += static_cast<float>(first % 5) * 0.1f;
    }
  } else {
    if (count > 64) count = 64;
    for (std::size_t i = 0; i < count; ++i) line.push_back(PointZ());
  }
  // One point spoilt in an otherwise ordinary line.
  if (Byte() % 4 == 1 && !line.empty()) {
    GeoCoordinateZ& point = line[Below(line.size())];
    switch (Byte() % 4) {
      case 0:
        point.longitude = Special();
        break;
      case 1:
        point.latitude = Special();
        break;
      case 2:
        point = line[Below(line.size())];
        break;
      default:
        point.z = Height();
        break;
    }
  }
  for (std::size_t i = 0; i < line.size() && seen_.size() < 64; ++i) seen_.push_back(line[i]);
  return line;
}

Line FuzzInput::PointLine(std::size_t maxCount) {
  return WithoutHeight(PointLineZ(maxCount));
}

Rect<GeoCoordinate> FuzzInput::RectNear(const Line& line) {
  Rect<GeoCoordinate> rect{PointNear(line), PointNear(line)};
  const std::size_t choice = Byte() % 16;
  if (choice == 1) rect.min.longitude = Special();
  if (choice == 2) rect.max.latitude = Special();
  if (choice == 3) return rect;  // perhaps inverted
  if (rect.min.longitude > rect.max.longitude) std::swap(rect.min.longitude, rect.max.longitude);
  if (rect.min.latitude > rect.max.latitude) std::swap(rect.min.latitude, rect.max.latitude);
  return rect;
}

std::string FuzzInput::Text(std::size_t maxLength) {
  std::string text;
  for (std::size_t left = Below(maxLength + 1); left > 0; --left) text.push_back(static_cast<char>(Byte()));
  return text;
}

Line WithoutHeight(const LineZ& line) {
  return Line(line.begin(), line.end());
}

double FiniteLength(const Line& line) {
  double length = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const double metres = line[i].DistanceTo(line[i - 1]);
    if (!std::isnan(metres)) length += metres;
  }
  return length;
}

}  // namespace fuzz
