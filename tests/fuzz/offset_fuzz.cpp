#include "fuzz/fuzz_target.h"

#include "reference/offset_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::LineZ points = input.PointLineZ(150);
    const float offset = static_cast<float>(input.MetresAlong(points));
    for (const bool left : {false, true}) {
      fuzz::LineZ result, expected;
      Library::PanLinePoints(points, offset, left, result);
      reference::PanLinePoints(points, offset, left, expected);
      EXPECT_SAME(result, expected);
      EXPECT_HOLDS(result.size() == (points.size() < 2 ? 0 : points.size()));
      EXPECT_HOLDS(result.capacity() >= points.size());
    }
  } while (!input.IsAtEnd());
  return 0;
}
