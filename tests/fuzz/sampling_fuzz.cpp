#include "fuzz/fuzz_target.h"

#include <cmath>

#include "reference/sampling_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::LineZ lineZ = input.PointLineZ(150);
    const fuzz::Line line = fuzz::WithoutHeight(lineZ);
    const double length = fuzz::FiniteLength(line);
    for (int step = 0; step < 4; ++step) {
      const double metres = input.MetresAlong(line);
      std::vector<GeoCoordinate> out(input.Below(3), GeoCoordinate(1.5, 2.5));
      std::vector<GeoCoordinate> expected = out;
      // Without a limit a sampler's output has length / interval points.
      int maxCount = input.Index(40);
      double interval = metres;
      if ((maxCount <= 0 || maxCount > 3000) && length / interval > 3000.0) interval = length / 3000.0;
      switch (input.Byte() % 5) {
        case 0: {
          const GeoCoordinate* points = input.Byte() % 16 == 1 ? nullptr : line.data();
          const unsigned count = static_cast<unsigned>(line.size());
          EXPECT_SAME(Library::ChoosePointsInPolyline(points, count, metres, out),
                      reference::ChoosePointsInPolyline(points, count, metres, expected));
          EXPECT_SAME(out, expected);
          break;
        }
        case 1:
          EXPECT_SAME(Library::ChoosePointsInPolyline(line, interval, maxCount, out),
                      reference::ChoosePointsInPolyline(line, interval, maxCount, expected));
          EXPECT_SAME(out, expected);
          break;
        case 2:
          if (line.empty() || interval <= 0.0) break;
          EXPECT_SAME(Library::CalcPointsInPolyline(line, interval, maxCount, out),
                      reference::CalcPointsInPolyline(line, interval, maxCount, expected));
          EXPECT_SAME(out, expected);
          break;
        case 3:
          EXPECT_SAME(Library::ChoosePointsInPolylineWithMaxLength(line, metres, out),
                      reference::ChoosePointsInPolylineWithMaxLength(line, metres, expected));
          EXPECT_SAME(out, expected);
          break;
        default: {
          std::vector<GeoCoordinateZ> outZ(input.Below(3), GeoCoordinateZ(1.5, 2.5, 3.5f));
          std::vector<GeoCoordinateZ> expectedZ = outZ;
          EXPECT_SAME(Library::ChoosePointsInPolylineWithMaxLength(lineZ, metres, outZ),
                      reference::ChoosePointsInPolylineWithMaxLength(lineZ, metres, expectedZ));
          EXPECT_SAME(outZ, expectedZ);
          break;
        }
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
