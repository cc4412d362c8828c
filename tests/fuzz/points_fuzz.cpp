#include "fuzz/fuzz_target.h"

#include <cmath>

#include "reference/points_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::Rect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    switch (input.Byte() % 12) {
      case 0: {
        const fuzz::Line line = input.PointLine(80);
        Rect<GeoCoordinate> bound{{1.5, 2.5}, {3.5, 4.5}};
        Rect<GeoCoordinate> expected = bound;
        const GeoCoordinate* points = input.Byte() % 16 == 1 ? nullptr : line.data();
        const unsigned count = static_cast<unsigned>(line.size());
        EXPECT_SAME(Library::GetBound(points, count, bound), reference::GetBound(points, count, expected));
        EXPECT_SAME(bound, expected);
        break;
      }
      case 1: {
        const fuzz::Line line = input.PointLine(4);
        const auto rect = input.RectNear(line);
        const GeoCoordinate point = input.PointNear(line);
        EXPECT_SAME(Library::IsRectContainsPoint(rect, point), reference::IsRectContainsPoint(rect, point));
        break;
      }
      case 2: {
        const fuzz::Line line = input.PointLine(4);
        const auto first = input.RectNear(line), second = input.RectNear(line);
        EXPECT_SAME(Library::IsRectIntersectsRect(first, second),
                    reference::IsRectIntersectsRect(first, second));
        break;
      }
      case 3: {
        const fuzz::Line line{input.Point()};
        const GeoCoordinate other = input.PointNear(line);
        const float distance = static_cast<float>(input.Metres());
        EXPECT_SAME(Library::IsPointNearOtherOne(line[0], distance, other),
                    reference::IsPointNearOtherOne(line[0], distance, other));
        break;
      }
      case 4: {
        const GeoCoordinate start = input.Point(), end = input.Point();
        const float ratio = input.Flag() ? static_cast<float>(input.Ratio()) : input.NumberFloat();
        EXPECT_SAME(Library::GetInsertPointFromSegment(start, end, ratio),
                    reference::GetInsertPointFromSegment(start, end, ratio));
        break;
      }
      case 5: {
        const GeoCoordinateZ start = input.PointZ(), end = input.PointZ();
        const float ratio = input.Flag() ? static_cast<float>(input.Ratio()) : input.NumberFloat();
        EXPECT_SAME(Library::GetInsertPointFromSegment(start, end, ratio),
                    reference::GetInsertPointFromSegment(start, end, ratio));
        break;
      }
      case 6: {
        const GeoCoordinate start = input.Point(), end = input.Point();
        const double distance = input.Metres();
        EXPECT_SAME(Library::GetLinePoint(start, end, distance),
                    reference::GetLinePoint(start, end, distance));
        break;
      }
      case 7: {
        const GeoCoordinate point = input.Point(), start = input.Point(), end = input.Point();
        EXPECT_SAME(Library::GetFootPoint(point, start, end), reference::GetFootPoint(point, start, end));
        break;
      }
      case 8: {
        const GeoCoordinate point = input.Point(), start = input.Point(), end = input.Point();
        EXPECT_SAME(Library::GetPositionOfPointToLine(point, start, end),
                    reference::GetPositionOfPointToLine(point, start, end));
        break;
      }
      case 9: {
        const GeoCoordinate start = input.Point();
        const double azimuth = input.Angle();
        double distance = input.Metres() * (input.Flag() ? 1.0 : 1e6);
        // Infinite and NaN distances return; finite ones beyond the stated range may not.
        if (std::isfinite(distance) && std::fabs(distance) > 5e10) distance = std::copysign(5e10, distance);
        double longitude = 1.5, latitude = 2.5, expectedLongitude = 1.5, expectedLatitude = 2.5;
        reference::ComputerThatLonLat(start.longitude, start.latitude, azimuth, distance, expectedLongitude,
                                      expectedLatitude);
        if (input.Flag()) {  // the outputs may be the inputs
          longitude = start.longitude;
          latitude = start.latitude;
          Library::ComputerThatLonLat(longitude, latitude, azimuth, distance, longitude, latitude);
        } else {
          Library::ComputerThatLonLat(start.longitude, start.latitude, azimuth, distance, longitude,
                                      latitude);
        }
        EXPECT_SAME(longitude, expectedLongitude);
        EXPECT_SAME(latitude, expectedLatitude);
        break;
      }
      case 10: {
        const GeoCoordinate point = input.Point(), center = input.Point();
        double angle = input.Angle();
        // The contract reaches to 3.6e9, which takes 0.05 s: rare.
        const double limit = input.Byte() == 255 ? 3.6e9 : 1e6;
        if (std::fabs(angle) > limit) angle = std::copysign(limit, angle);
        EXPECT_SAME(Library::RotatePoint(point, center, angle), reference::RotatePoint(point, center, angle));
        break;
      }
      default: {
        fuzz::Line line = input.PointLine(8);
        const bool useFirstSegment = input.Flag();
        while (line.size() < (useFirstSegment ? 2u : 4u)) line.push_back(input.Point());
        const GeoCoordinate from = input.PointNear(line), to = input.PointNear(line);
        const double angle = input.Angle();
        const double length = input.MetresAlong(line);
        EXPECT_SAME(Library::GetFixAngleForSidePoint(line, from, to, angle, length, useFirstSegment),
                    reference::GetFixAngleForSidePoint(line, from, to, angle, length, useFirstSegment));
        break;
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
