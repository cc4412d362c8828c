#include "fuzz/fuzz_target.h"

#include "reference/clipping_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::Line line = input.PointLine(200);
    for (int step = 0; step < 4; ++step) {
      std::vector<fuzz::Line> pieces(input.Below(3), fuzz::Line{{1.5, 2.5}});
      const auto rect = input.RectNear(line);
      std::vector<fuzz::Line> expected = pieces;
      switch (input.Byte() % 4) {
        case 0:
          EXPECT_SAME(Library::CutPolyline(line, rect, pieces), reference::CutPolyline(line, rect, expected));
          EXPECT_SAME(pieces, expected);
          break;
        case 1: {
          if (line.size() < 2) break;
          const unsigned long index = 1 + input.Below(line.size() - 1);
          const bool previousInside = input.Flag() && !pieces.empty();
          const bool currentInside = input.Flag();
          const unsigned vertexCount = input.UnsignedIndex(line.size());
          Library::CutPolylineUpdate(previousInside, currentInside, index, vertexCount, line, rect, pieces);
          reference::CutPolylineUpdate(previousInside, currentInside, index, vertexCount, line, rect,
                                       expected);
          EXPECT_SAME(pieces, expected);
          break;
        }
        default: {
          const GeoCoordinate a = input.PointNear(line), b = input.PointNear(line);
          const GeoCoordinate c = input.PointNear(line), d = input.PointNear(line);
          EXPECT_SAME(Library::IsTwoSegmentJoined(a, b, c, d), reference::IsTwoSegmentJoined(a, b, c, d));
          EXPECT_SAME(Library::IsTwoSegmentJoined(a, b, a, d), reference::IsTwoSegmentJoined(a, b, a, d));
          break;
        }
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
