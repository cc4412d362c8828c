#include "fuzz/fuzz_target.h"

#include <limits>

#include "reference/containment_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::Line line = input.PointLine(150);
    for (int step = 0; step < 6; ++step) {
      const GeoCoordinate point = input.PointNear(line);
      const GeoCoordinate a = input.PointNear(line), b = input.PointNear(line);
      const float tolerance = static_cast<float>(input.MetresAlong(line));
      const bool checkSegments = input.Flag();
      switch (input.Byte() % 7) {
        case 0:
          EXPECT_SAME(Library::IsPointOnLineSegment(a, b, point),
                      reference::IsPointOnLineSegment(a, b, point));
          break;
        case 1:
          EXPECT_SAME(Library::IsPointOnPolyline(line, point, tolerance, checkSegments),
                      reference::IsPointOnPolyline(line, point, tolerance, checkSegments));
          break;
        case 2: {
          std::vector<fuzz::Line> lines(input.Below(4), line);
          for (fuzz::Line& other : lines) {
            if (input.Flag()) other = input.PointLine(20);
          }
          EXPECT_SAME(Library::IsPointOnPolyline(lines, point, tolerance, checkSegments),
                      reference::IsPointOnPolyline(lines, point, tolerance, checkSegments));
          break;
        }
        case 3:
          EXPECT_SAME(Library::PointOnPolyline(line, point, tolerance, checkSegments),
                      reference::PointOnPolyline(line, point, tolerance, checkSegments));
          break;
        case 4:
        case 5: {
          int crossings = input.Index(10);
          if (crossings == std::numeric_limits<int>::max()) --crossings;
          int expected = crossings;
          if (input.Flag()) {
            EXPECT_SAME(Library::PointRayTest(point, a, b, crossings),
                        reference::PointRayTest(point, a, b, expected));
          } else {
            EXPECT_SAME(Library::PointRayTestInner(point, a, b, crossings),
                        reference::PointRayTestInner(point, a, b, expected));
          }
          EXPECT_SAME(crossings, expected);
          break;
        }
        default:
          EXPECT_SAME(Library::IsPointInPolygon(line, point), reference::IsPointInPolygon(line, point));
          break;
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
