#include "base/strict_floating_point.h"

#include "base/geo_coordinate.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "base/boundary_data.h"
#include "base/map_vector.h"
#include "base/rect.h"
#include "base/route_pos.h"
#include "support/bits.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using vorel::test::SameBits;

// Callers copy coordinates as raw memory and read the longitude as the first number.
TEST(GeoCoordinateLayout, IsLongitudeThenLatitude) {
  static_assert(sizeof(GeoCoordinate) == 16 && alignof(GeoCoordinate) == alignof(double), "");
  static_assert(offsetof(GeoCoordinate, longitude) == 0, "");
  static_assert(offsetof(GeoCoordinate, latitude) == 8, "");
  static_assert(std::is_trivially_copyable<GeoCoordinate>::value, "");
  static_assert(std::is_standard_layout<GeoCoordinate>::value, "");
  const GeoCoordinate point(116.3, 39.9);
  double numbers[2];
  std::memcpy(numbers, &point, sizeof numbers);
  EXPECT_EQ(numbers[0], 116.3);
  EXPECT_EQ(numbers[1], 39.9);
}

TEST(GeoCoordinateZLayout, IsAGeoCoordinateThenASinglePrecisionHeight) {
  static_assert(sizeof(GeoCoordinateZ) == 24, "");
  static_assert(std::is_base_of<GeoCoordinate, GeoCoordinateZ>::value, "");
  static_assert(std::is_trivially_copyable<GeoCoordinateZ>::value, "");
  static_assert(std::is_same<decltype(GeoCoordinateZ::z), float>::value, "");
  const GeoCoordinateZ point(116.3, 39.9, 12.5f);
  unsigned char bytes[sizeof point];
  std::memcpy(bytes, &point, sizeof bytes);
  double numbers[2];
  float height;
  std::memcpy(numbers, bytes, sizeof numbers);
  std::memcpy(&height, bytes + 16, sizeof height);
  EXPECT_EQ(numbers[0], 116.3);
  EXPECT_EQ(numbers[1], 39.9);
  EXPECT_EQ(height, 12.5f);
  // The leading part is usable as a GeoCoordinate in place.
  const GeoCoordinate& leading = point;
  EXPECT_EQ(static_cast<const void*>(&leading), static_cast<const void*>(&point));
}

TEST(GeoCoordinate, StartsAtZero) {
  EXPECT_TRUE(SameBits(GeoCoordinate(), GeoCoordinate(0.0, 0.0)));
  EXPECT_TRUE(SameBits(GeoCoordinateZ(), GeoCoordinateZ(0.0, 0.0, 0.0f)));
}

TEST(GeoCoordinate, IsUsableInConstantExpressions) {
  constexpr GeoCoordinate a(1.0, 2.0);
  constexpr GeoCoordinateZ b(1.0, 2.0, 3.0f);
  static_assert(a.longitude == 1.0 && a.latitude == 2.0, "");
  static_assert(b.longitude == 1.0 && b.latitude == 2.0 && b.z == 3.0f, "");
  static_assert(a == GeoCoordinate(1.0, 2.0) && a != GeoCoordinate(2.0, 1.0), "");
  static_assert(b == GeoCoordinateZ(1.0, 2.0, 3.0f) && b != GeoCoordinateZ(1.0, 2.0, 4.0f), "");
  constexpr GeoCoordinateZ list[] = {{1.0, 2.0, 3.0f}, {}};
  static_assert(list[0] == b && list[1] == GeoCoordinateZ(), "");
}

TEST(GeoCoordinateZ, IsNeverMadeWithoutItsHeight) {
  static_assert(!std::is_constructible<GeoCoordinateZ, double, double>::value,
                "a height must not be forgotten");
  static_assert(!std::is_constructible<GeoCoordinateZ, GeoCoordinate>::value, "");
  static_assert(!std::is_convertible<GeoCoordinate, GeoCoordinateZ>::value, "");
  static_assert(std::is_constructible<GeoCoordinateZ, double, double, float>::value, "");
  static_assert(std::is_convertible<const GeoCoordinateZ&, const GeoCoordinate&>::value, "");
}

struct EqualityCase {
  const char* name;
  GeoCoordinateZ a;
  GeoCoordinateZ b;
  bool flatEqual;  // as GeoCoordinate
  bool equal;      // as GeoCoordinateZ
};

class GeoCoordinateEquality : public testing::TestWithParam<EqualityCase> {};

TEST_P(GeoCoordinateEquality, Holds) {
  const EqualityCase& equality = GetParam();
  const GeoCoordinate& flatA = equality.a;
  const GeoCoordinate& flatB = equality.b;
  EXPECT_EQ(flatA == flatB, equality.flatEqual);
  EXPECT_EQ(flatB == flatA, equality.flatEqual);
  EXPECT_NE(flatA != flatB, equality.flatEqual);
  EXPECT_EQ(equality.a == equality.b, equality.equal);
  EXPECT_EQ(equality.b == equality.a, equality.equal);
  EXPECT_NE(equality.a != equality.b, equality.equal);
}

INSTANTIATE_TEST_SUITE_P(
    All, GeoCoordinateEquality,
    testing::Values(
        EqualityCase{"Same", {1.0, 2.0, 3.0f}, {1.0, 2.0, 3.0f}, true, true},
        EqualityCase{"OtherHeight", {1.0, 2.0, 3.0f}, {1.0, 2.0, 4.0f}, true, false},
        EqualityCase{"OtherLongitude", {1.0, 2.0, 3.0f}, {1.5, 2.0, 3.0f}, false, false},
        EqualityCase{"OtherLatitude", {1.0, 2.0, 3.0f}, {1.0, 2.5, 3.0f}, false, false},
        EqualityCase{"Swapped", {1.0, 2.0, 3.0f}, {2.0, 1.0, 3.0f}, false, false},
        // Exact: no tolerance of any size.
        EqualityCase{"OneStepApart", {1.0, 2.0, 3.0f}, {1.0000000000000002, 2.0, 3.0f}, false, false},
        // By value, not by place: a whole turn is another value.
        EqualityCase{"OneTurn", {-180.0, 2.0, 3.0f}, {180.0, 2.0, 3.0f}, false, false},
        EqualityCase{"MinusZero", {0.0, 0.0, 0.0f}, {-0.0, -0.0, -0.0f}, true, true},
        EqualityCase{"Infinite", {kInfinity, -kInfinity, 0.0f}, {kInfinity, -kInfinity, 0.0f}, true, true},
        EqualityCase{"NaNLongitude", {kNaN, 2.0, 3.0f}, {kNaN, 2.0, 3.0f}, false, false},
        EqualityCase{"NaNLatitude", {1.0, kNaN, 3.0f}, {1.0, kNaN, 3.0f}, false, false},
        EqualityCase{"NaNHeight", {1.0, 2.0, kNaNFloat}, {1.0, 2.0, kNaNFloat}, true, false}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(GeoCoordinateZ, MeasuresWithoutItsHeight) {
  const GeoCoordinateZ low(8.4, 49.0, -10.0f);
  const GeoCoordinateZ high(8.41, 49.01, 8000.0f);
  const GeoCoordinateZ unknown(8.41, 49.01, kNaNFloat);
  const double metres = GeoCoordinate(8.4, 49.0).DistanceTo({8.41, 49.01});
  EXPECT_TRUE(SameBits(low.DistanceTo(high), metres));
  EXPECT_TRUE(SameBits(low.DistanceTo(unknown), metres));
  EXPECT_TRUE(SameBits(high.DistanceTo(unknown), 0.0));
}

TEST(OtherValueTypes, StartEmpty) {
  const tarvo::Rect<GeoCoordinate> rect{};
  EXPECT_TRUE(SameBits(rect.min, GeoCoordinate()));
  EXPECT_TRUE(SameBits(rect.max, GeoCoordinate()));
  const tarvo::MapVector2d flat{};
  EXPECT_TRUE(SameBits(flat.x, 0.0) && SameBits(flat.y, 0.0));
  const tarvo::MapVector3d solid{};
  EXPECT_TRUE(SameBits(solid.x, 0.0) && SameBits(solid.y, 0.0) && SameBits(solid.z, 0.0));
  const tarvo::RoutePos position{};
  EXPECT_TRUE(SameBits(position.coordinate, GeoCoordinate()));
  EXPECT_EQ(position.shapeIndex, 0);
  const tarvo::HAD::BoundaryData boundary{};
  EXPECT_TRUE(boundary.points.empty());
  EXPECT_TRUE(boundary.pointIndices.empty());
}

TEST(OtherValueTypes, ArePlain) {
  static_assert(sizeof(tarvo::MapVector2d) == 16 && std::is_trivially_copyable<tarvo::MapVector2d>::value,
                "");
  static_assert(sizeof(tarvo::MapVector3d) == 24 && std::is_trivially_copyable<tarvo::MapVector3d>::value,
                "");
  static_assert(sizeof(tarvo::Rect<GeoCoordinate>) == 32, "");
  static_assert(offsetof(tarvo::RoutePos, coordinate) == 0, "the coordinate leads");
  static_assert(std::is_same<decltype(tarvo::RoutePos::shapeIndex), std::int32_t>::value, "");
  // An inverted rectangle stays as it was given.
  const tarvo::Rect<GeoCoordinate> inverted = {{10.0, 20.0}, {-10.0, -20.0}};
  EXPECT_EQ(inverted.min.longitude, 10.0);
  EXPECT_EQ(inverted.max.latitude, -20.0);
}

}  // namespace
