// Angles and headings: facts that hold for random input, and the bits of the plain twins on ordinary, random and
// special input.

#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "map_utils/vorel_geometry_algorithm.h"
#include "reference/angles_reference.h"
#include "support/bits.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::MapVector3d;
using vorel::test::kNaN;
using vorel::test::Numbers;
using vorel::test::Paste;
using vorel::test::SameBits;
using Algorithm = vorel::VorelGeometryAlgorithm;

constexpr unsigned kSeed = 20261;

// ---- Properties -----------------------------------------------------------------------------------------------

double DegreesApart(double headingA, double headingB) {
  return std::fabs(std::remainder(headingA - headingB, 360.0));
}

TEST(AngleProperties, TurningAngleIsTheSameWalkedBackwardsAndMirrored) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate a = numbers.OrdinaryPoint();
    const GeoCoordinate b = numbers.PointAbout(a, 1.0);
    const GeoCoordinate c = numbers.PointAbout(b, 1.0);
    const float turn = Algorithm::GetAngle(a, b, c);
    // To the bit: the differences only change sign, and products and sums of them are the same.
    EXPECT_TRUE(SameBits(Algorithm::GetAngle(c, b, a), turn));
    const GeoCoordinate mirroredA{a.longitude, -a.latitude}, mirroredB{b.longitude, -b.latitude},
        mirroredC{c.longitude, -c.latitude};
    EXPECT_TRUE(SameBits(Algorithm::GetAngle(mirroredA, mirroredB, mirroredC), turn));
    if (!std::isnan(turn)) {
      EXPECT_GE(turn, 0.0f);
      EXPECT_LE(turn, 180.0f);
    }
  }
}

TEST(AngleProperties, TurningAngleIsTheDifferenceOfPlanarHeadings) {
  constexpr double kSlack = 7.7e-6;  // degrees; worst of 2e6 runs 7.63e-6: half a float step near 180
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const double arriving = numbers.Between(-180.0, 180.0), turn = numbers.Between(0.5, 179.5);
    const double k = 0.017453292519943295;
    const GeoCoordinate a{0.0, 0.0};
    const GeoCoordinate b{std::sin(arriving * k), std::cos(arriving * k)};
    const GeoCoordinate c{b.longitude + std::sin((arriving + turn) * k),
                          b.latitude + std::cos((arriving + turn) * k)};
    EXPECT_NEAR(static_cast<double>(Algorithm::GetAngle(a, b, c)), turn, kSlack);
  }
}

TEST(AngleProperties, BearingThereAndBackAreOppositeAtEqualLatitudes) {
  // On one parallel both bearings lean equally toward the nearer pole; every term only changes its sign.
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const double latitude = numbers.Between(-85.0, 85.0), longitude = numbers.Between(-180.0, 180.0);
    const GeoCoordinate west{longitude, latitude}, east{longitude + numbers.Between(0.01, 170.0), latitude};
    const double eastward = Algorithm::GetAngle(west, east);
    EXPECT_TRUE(SameBits(Algorithm::GetAngle(east, west), -eastward));
    EXPECT_GT(eastward, 0.0);
  }
}

TEST(AngleProperties, BearingStaysInItsRangeAndMirrorsEastAndWest) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate from = numbers.OrdinaryPoint(), to = numbers.OrdinaryPoint();
    const double bearing = Algorithm::GetAngle(from, to);
    EXPECT_GE(bearing, -180.0);
    EXPECT_LE(bearing, 180.0);
    const double mirrored =
        Algorithm::GetAngle({-from.longitude, from.latitude}, GeoCoordinate(-to.longitude, to.latitude));
    EXPECT_TRUE(SameBits(mirrored, -bearing));
  }
}

TEST(AngleProperties, YawAgreesWithTheBearingWhereTheArcSineIsWellConditioned) {
  // Headings within 80 degrees of north or south; both points far apart on the grid.
  constexpr double kSlack = 1e-7;  // degrees; worst of 2e6 runs 3.4e-8
  Numbers numbers(kSeed);
  int compared = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const GeoCoordinate from{numbers.Between(-170.0, 170.0), numbers.Between(-60.0, 60.0)};
    const GeoCoordinate to{from.longitude + numbers.Between(-1.0, 1.0),
                           from.latitude + numbers.Between(-1.0, 1.0)};
    const double bearing = Algorithm::GetAngle(from, to);
    if (std::fabs(std::cos(bearing * 0.017453292519943295)) < 0.17 ||
        std::fabs(to.latitude - from.latitude) + std::fabs(to.longitude - from.longitude) < 0.1) {
      continue;
    }
    ++compared;
    const double yaw = Algorithm::GetYaw(from.latitude, from.longitude, to.latitude, to.longitude);
    EXPECT_LT(DegreesApart(yaw, bearing), kSlack);
    EXPECT_GE(yaw, 0.0);
    EXPECT_LE(yaw, 360.0);
  }
  EXPECT_GT(compared, 10000);
}

TEST(AngleProperties, FoldsAreIdempotentAndKeepWholeFloatsExact) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const float angle = numbers.Between(-50000.0f, 50000.0f);
    const float folded180 = Algorithm::NormalizeAngle180(angle),
                folded360 = Algorithm::NormalizeAngle360(angle);
    EXPECT_GT(folded180, -180.0f);
    EXPECT_LE(folded180, 180.0f);
    EXPECT_GE(folded360, 0.0f);
    EXPECT_LE(folded360, 360.0f);
    EXPECT_TRUE(SameBits(Algorithm::NormalizeAngle180(folded180), folded180));
    EXPECT_TRUE(SameBits(Algorithm::NormalizeAngle360(folded360), folded360 == 360.0f ? 0.0f : folded360));
    // Floats of this size lie on a grid coarser than that of the result, so a positive angle folds exactly.
    if (angle >= 0.0f) {
      EXPECT_EQ(static_cast<double>(folded360), std::fmod(static_cast<double>(angle), 360.0));
    }
  }
}

TEST(AngleProperties, DifferencesStayInTheirRangesAndNameTheSameAngle) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    // Halves and multiples of 1/64 degree: exact in float, ties at half a turn included.
    const float from = static_cast<float>(numbers.Below(360 * 64)) / 64.0f;
    const float to = numbers.Below(8) == 0 ? (from < 180.0f ? from + 180.0f : from - 180.0f)
                                           : static_cast<float>(numbers.Below(360 * 64)) / 64.0f;
    const float corrected = Algorithm::CalcAziDiff(from, to), folded = Algorithm::AngleDiff(from, to);
    EXPECT_GE(corrected, -180.0f);
    EXPECT_LE(corrected, 180.0f);
    EXPECT_GE(folded, -180.0f);
    EXPECT_LT(folded, 180.0f);
    EXPECT_EQ(std::remainder(corrected - (to - from), 360.0f), 0.0f);
    EXPECT_EQ(corrected == 180.0f ? -180.0f : corrected, folded);
    EXPECT_EQ(Algorithm::CalcAziDiff(to, from), -corrected);
  }
}

TEST(AngleProperties, FoldedDifferenceNeverReaches180) {
  // Differences right beside half a turn, where adding the turn might have rounded up.
  for (float difference = -180.001f; difference < -179.999f; difference = std::nextafterf(difference, 0.0f)) {
    const float folded = Algorithm::AngleDiff(0.0f, difference);
    ASSERT_GE(folded, -180.0f);
    ASSERT_LT(folded, 180.0f);
  }
}

TEST(AngleProperties, TrianglesFoundFulfilTheLawOfCosines) {
  constexpr double kSlack = 1e-15;  // of sideA^2 + sideB^2 + c^2; worst of 1e6 runs 4.2e-16
  Numbers numbers(kSeed);
  int found = 0;
  for (int run = 0; run < 20000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const double a = numbers.Between(0.1, 100.0), b = numbers.Between(0.1, 100.0),
                 angle = numbers.Between(1.0, 179.0);
    const std::vector<double> lengths = Algorithm::GetLength3OfTriangle(a, b, angle);
    EXPECT_TRUE(lengths.size() < 2 || lengths[0] >= lengths[1]) << Paste(lengths);
    for (const double c : lengths) {
      ++found;
      EXPECT_LT(c, a + b);
      EXPECT_GT(c, std::fabs(a - b));
      const double cosine = std::cos(angle * 0.017453292519943295);
      EXPECT_NEAR((b * b + c * c - 2.0 * b * c * cosine - a * a) / (a * a + b * b + c * c), 0.0, kSlack);
    }
  }
  EXPECT_GT(found, 5000);
}

// ---- The bits of the plain twins ------------------------------------------------------------------------------

TEST(AngleTwins, TurningAngle) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 60000; ++run) {
    GeoCoordinate a = numbers.OrdinaryPoint();
    GeoCoordinate b = numbers.PointAbout(a, 10.0);
    GeoCoordinate c = numbers.PointAbout(b, 10.0);
    if (run % 3 == 1) c = {2 * b.longitude - a.longitude, 2 * b.latitude - a.latitude};  // nearly straight on
    if (run % 3 == 2) {
      a = numbers.Point();
      b = numbers.Point();
      if (run % 2 == 0) c = numbers.Point();
    }
    ASSERT_TRUE(SameBits(Algorithm::GetAngle(a, b, c), reference::GetAngle(a, b, c)))
        << Paste(a) << " " << Paste(b) << " " << Paste(c);
  }
}

TEST(AngleTwins, Bearing) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 60000; ++run) {
    const GeoCoordinate from = run % 2 == 0 ? numbers.OrdinaryPoint() : numbers.Point();
    const GeoCoordinate to = run % 4 < 2 ? numbers.PointAbout(from, 1.0) : numbers.Point();
    ASSERT_TRUE(SameBits(Algorithm::GetAngle(from, to), reference::GetAngle(from, to)))
        << Paste(from) << " " << Paste(to);
  }
}

/// A degree value about which the grid of `GetYaw` decides: ordinary, between two cells, or at the end of 32 bits.
double GridDegrees(Numbers& numbers, double limit) {
  constexpr double kEnd = 2147483648.0 / 360000.0;
  switch (numbers.Below(8)) {
    case 0:
      return numbers.Special();
    case 1:
      return (static_cast<double>(numbers.Below(20)) - 10.5) / 360000.0;
    case 2:
      return (static_cast<double>(numbers.Below(40)) / 4.0 - 5.0) / 360000.0;
    case 3:
      return (numbers.Below(2) == 0 ? kEnd : -kEnd) +
             (static_cast<double>(numbers.Below(16)) / 4.0 - 2.0) / 360000.0;
    case 4:
      return numbers.Between(-7000.0, 7000.0);
    default:
      return numbers.Between(-limit, limit);
  }
}

TEST(AngleTwins, Yaw) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 100000; ++run) {
    const double lat1 = run % 2 == 0 ? numbers.Between(-90.0, 90.0) : GridDegrees(numbers, 90.0);
    const double lon1 = run % 2 == 0 ? numbers.Between(-180.0, 180.0) : GridDegrees(numbers, 180.0);
    double lat2 = GridDegrees(numbers, 90.0);
    double lon2 = GridDegrees(numbers, 180.0);
    if (numbers.Below(2) == 0) lat2 = lat1 + numbers.Magnitude(1e-9, 1.0);
    if (numbers.Below(2) == 0) lon2 = lon1 + numbers.Magnitude(1e-9, 1.0);
    if (numbers.Below(8) == 0) lat2 = lat1;
    if (numbers.Below(8) == 0) lon2 = lon1;
    ASSERT_TRUE(
        SameBits(Algorithm::GetYaw(lat1, lon1, lat2, lon2), reference::GetYaw(lat1, lon1, lat2, lon2)))
        << Paste(lat1) << ", " << Paste(lon1) << ", " << Paste(lat2) << ", " << Paste(lon2);
  }
}

float Heading(Numbers& numbers) {
  switch (numbers.Below(6)) {
    case 0:
      return numbers.SpecialFloat();
    case 1:
      return static_cast<float>(numbers.Below(9)) * 90.0f - 360.0f;
    case 2: {
      const float border = static_cast<float>(numbers.Below(9)) * 180.0f - 720.0f;
      return std::nextafterf(border, numbers.Below(2) == 0 ? 1e9f : -1e9f);
    }
    case 3:
      return numbers.Between(-1e5f, 1e5f);
    default:
      return numbers.Between(0.0f, 360.0f);
  }
}

TEST(AngleTwins, DifferencesOfHeadings) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 100000; ++run) {
    const float from = Heading(numbers), to = Heading(numbers);
    ASSERT_TRUE(SameBits(Algorithm::CalcAziDiff(from, to), reference::CalcAziDiff(from, to)))
        << Paste(from) << ", " << Paste(to);
    ASSERT_TRUE(SameBits(Algorithm::AngleDiff(from, to), reference::AngleDiff(from, to)))
        << Paste(from) << ", " << Paste(to);
  }
}

TEST(AngleTwins, Folds) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 100000; ++run) {
    float angle = Heading(numbers);
    if (run % 64 == 0) angle = static_cast<float>(numbers.Magnitude(1e-45, 1e7));
    if (std::fabs(angle) > 1e7f) continue;  // special values beyond the contract, or too many steps
    ASSERT_TRUE(SameBits(Algorithm::NormalizeAngle180(angle), reference::NormalizeAngle180(angle)))
        << Paste(angle);
    ASSERT_TRUE(SameBits(Algorithm::NormalizeAngle360(angle), reference::NormalizeAngle360(angle)))
        << Paste(angle);
  }
}

TEST(AngleTwins, Triangles) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 60000; ++run) {
    double sideA = numbers.Between(0.0, 100.0), sideB = numbers.Between(0.0, 100.0);
    double angle = numbers.Between(-360.0, 360.0);
    if (numbers.Below(8) == 0) sideA = sideB;
    if (numbers.Below(8) == 0) angle = 30.0 * static_cast<double>(numbers.Below(13));
    if (numbers.Below(8) == 0) sideA = sideB * std::sin(angle * 3.141592653589793 / 180.0);
    if (numbers.Below(16) == 0) sideA = numbers.Special();
    if (numbers.Below(16) == 0) sideB = numbers.Special();
    if (numbers.Below(16) == 0) angle = numbers.Special();
    ASSERT_TRUE(SameBits(Algorithm::GetLength3OfTriangle(sideA, sideB, angle),
                         reference::GetLength3OfTriangle(sideA, sideB, angle)))
        << Paste(sideA) << ", " << Paste(sideB) << ", " << Paste(angle);
  }
}

TEST(AngleTwins, Distance) {
  Numbers numbers(kSeed);
  for (int run = 0; run < 20000; ++run) {
    const GeoCoordinate a = numbers.Point(), b = run % 2 == 0 ? numbers.Point() : numbers.PointAbout(a, 1.0);
    const MapVector3d p{a.longitude, a.latitude, numbers.Special()},
        q{b.longitude, b.latitude, numbers.Special()};
    ASSERT_TRUE(SameBits(Algorithm::Distance(p, q), reference::Distance(p, q)))
        << Paste(a) << " " << Paste(b);
    ASSERT_TRUE(SameBits(Algorithm::Distance(p, q), a.DistanceTo(b))) << Paste(a) << " " << Paste(b);
  }
  EXPECT_TRUE(SameBits(Algorithm::Get20PixelDistanceOnePixel(), reference::Get20PixelDistanceOnePixel()));
}

}  // namespace
