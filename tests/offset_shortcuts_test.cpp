// The offset of a line where its shortcuts are close to being wrong: bearings that round to one float or the next,
// joints at their thresholds, high latitudes, tiny and long segments. Against the plain twin, to the bit.

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/offset_reference.h"
#include "support/bits.h"
#include "support/lines.h"
#include "support/local_metres.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::LineZ;
using vorel::test::LocalMetres;
using vorel::test::Numbers;
using vorel::test::SameBits;

testing::AssertionResult IsAsThePlainOffset(const LineZ& line, float offset, bool left) {
  LineZ expected, actual;
  reference::PanLinePoints(line, offset, left, expected);
  VorelGeometryAlgorithm::PanLinePoints(line, offset, left, actual);
  testing::AssertionResult same = SameBits(actual, expected);
  if (!same)
    same << " for " << vorel::test::Paste(line) << ", offset " << offset << (left ? " left" : " right");
  return same;
}

double AnyLatitude(Numbers& numbers) {
  switch (numbers.Below(8)) {
    case 0:
      return numbers.Magnitude(1e-9, 1.0);
    case 1:
      return std::copysign(90.0 - std::fabs(numbers.Magnitude(1e-6, 2.0)), numbers.Between(-1.0, 1.0));
    case 2:
      return std::copysign(89.0, numbers.Between(-1.0, 1.0)) + numbers.Magnitude(1e-6, 1e-3);
    default:
      return numbers.Between(-85.0, 85.0);
  }
}

TEST(OffsetShortcuts, RandomBearings) {
  Numbers numbers(53021);
  for (int run = 0; run < 300000; ++run) {
    const double reach = std::fabs(numbers.Magnitude(1e-9, 1.0));  // degrees: 0.1 mm to 100 km
    LineZ line;
    GeoCoordinateZ point(numbers.Between(-181.0, 181.0), AnyLatitude(numbers), 1.0f);
    for (int i = 0; i < 4; ++i) {
      line.push_back(point);
      if (numbers.Below(8) != 0) point.longitude += reach * numbers.Between(-1.0, 1.0);
      if (numbers.Below(8) != 0) point.latitude += reach * numbers.Between(-1.0, 1.0);
    }
    const float offset = static_cast<float>(numbers.Magnitude(1e-3, 50.0));
    ASSERT_TRUE(IsAsThePlainOffset(line, offset, numbers.Below(2) == 0));
  }
}

// Where the bearing, as the math library has it, crosses from one float to the next: there the ends of two segments that
// differ by one double round to different floats.
TEST(OffsetShortcuts, BearingsBetweenTwoFloats) {
  Numbers numbers(53022);
  int flips = 0;
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinateZ start(numbers.Between(-180.0, 180.0), numbers.Between(-85.0, 85.0), 1.0f);
    const double reach = std::fabs(numbers.Magnitude(1e-6, 0.1));
    const double latitude = start.latitude + reach * numbers.Between(-1.0, 1.0);
    const auto bearing = [&](double longitude) {
      return static_cast<float>(VorelGeometryAlgorithm::GetAngle(start, GeoCoordinate(longitude, latitude)));
    };
    double near = start.longitude + reach * numbers.Between(-1.0, 1.0);
    double far = near + 1e-4 * reach;
    if (bearing(near) == bearing(far)) continue;
    while (std::nextafter(near, far) != far) {
      const double middle = near + 0.5 * (far - near);
      if (middle == near || middle == far) break;
      (bearing(middle) == bearing(near) ? near : far) = middle;
    }
    flips += bearing(near) != bearing(far);
    double longitude = near - 8.0 * (far - near);
    for (int step = 0; step < 20; ++step, longitude = std::nextafter(longitude, 1e9)) {
      ASSERT_TRUE(IsAsThePlainOffset({start, {longitude, latitude, 2.0f}}, 3.5f, step % 2 == 0));
    }
  }
  EXPECT_GT(flips, 15000);
}

TEST(OffsetShortcuts, AlongMeridiansAndParallels) {
  for (const double longitude : {0.0, -0.0, 11.5, 180.0, -180.0}) {
    for (const double latitude : {0.0, -0.0, 48.1, -60.0, 89.5, -90.0, 90.0}) {
      for (const double size : {1e-15, 1e-13, 1e-9, 1e-6, 1e-3, 0.11, 0.12, 3.0}) {
        for (const double sign : {1.0, -1.0}) {
          const GeoCoordinateZ start(longitude, latitude, 0.0f);
          EXPECT_TRUE(IsAsThePlainOffset({start, {longitude, latitude + sign * size, 0.0f}}, 2.0f, true));
          EXPECT_TRUE(IsAsThePlainOffset({start, {longitude + sign * size, latitude, 0.0f}}, 2.0f, false));
          EXPECT_TRUE(IsAsThePlainOffset({start, {-longitude, latitude + sign * size, 0.0f}}, 2.0f, true));
        }
      }
    }
  }
}

// Joints by the angle of the bend: fine steps through every turn, so that the gap passes a centimetre and the crossing
// passes twice the gap.
TEST(OffsetShortcuts, JointsAroundTheirThresholds) {
  Numbers numbers(53023);
  for (const double latitude : {0.0, 49.0, -70.0, 88.99, 89.01}) {
    const LocalMetres place(8.4, latitude);
    for (int run = 0; run < 40000; ++run) {
      const float offset = static_cast<float>(numbers.Magnitude(0.01, 30.0));
      const double size = std::fabs(static_cast<double>(offset));
      double turn = numbers.Between(-3.15, 3.15);
      if (run % 3 == 1) turn = std::copysign(2.636232 + numbers.Magnitude(1e-9, 0.03), turn);  // 151 degrees
      if (run % 3 == 2) turn = std::copysign(0.01 / size * numbers.Between(0.99, 1.01), turn);
      const double heading = numbers.Between(0.0, 6.28);
      const double length = std::fabs(numbers.Magnitude(0.5, 100.0));
      const double east = length * std::sin(heading), north = length * std::cos(heading);
      const LineZ line = {
          place.At(0, 0), place.At(east, north),
          place.At(east + length * std::sin(heading + turn), north + length * std::cos(heading + turn)),
          place.At(east + 2 * length * std::sin(heading + turn), north)};
      ASSERT_TRUE(IsAsThePlainOffset(line, offset, run % 2 == 0));
    }
  }
}

TEST(OffsetShortcuts, InvalidPointsAtEveryPlace) {
  for (const double bad : {kNaN, kInfinity, -kInfinity, 90.00000000000001, -100.0, 1e300, -0.0, 0.0}) {
    for (std::size_t i = 0; i < 5; ++i) {
      for (const bool isLatitude : {true, false}) {
        LineZ line = LocalMetres(8.4, 49.0).LineAt({{0, 0}, {5, 1}, {9, 4}, {10, 9}, {10, 14}});
        (isLatitude ? line[i].latitude : line[i].longitude) = bad;
        for (const float offset : {1.5f, -40.0f, 0.0f, vorel::test::kNaNFloat, vorel::test::kInfinityFloat}) {
          EXPECT_TRUE(IsAsThePlainOffset(line, offset, true));
        }
      }
    }
  }
}

}  // namespace
