#include "fuzz/fuzz_target.h"

#include "reference/lane_arrow_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using fuzz::LineZ;

namespace {

void CheckBoundaries(FuzzInput& input) {
  const LineZ points = input.PointLineZ(100);
  const float width = static_cast<float>(input.Flag() ? input.Metres() : 3.5);
  const auto arrowType = static_cast<vorel::ArrowType>(input.Index(3));
  LineZ left(input.Below(3)), right(input.Below(3)), expectedLeft = left, expectedRight = right;
  Library::CalcBoundaryPoints(points, width, arrowType, left, right);
  reference::CalcBoundaryPoints(points, width, arrowType, expectedLeft, expectedRight);
  EXPECT_SAME(left, expectedLeft);
  EXPECT_SAME(right, expectedRight);
  EXPECT_HOLDS(left.size() == right.size());
}

void CheckFilter(FuzzInput& input) {
  const LineZ center = input.PointLineZ(40);
  LineZ sides[2] = {center, center};
  for (LineZ& side : sides) {
    const std::size_t kind = input.Byte() % 8;
    if (kind == 0) side = input.PointLineZ(40);
    if (kind < 6) {
      for (auto& point : side) point = input.PointNear(center);
    }
  }
  LineZ leftOut(input.Below(3)), rightOut(input.Below(3));
  const bool leftInPlace = input.Byte() % 8 == 1, rightInPlace = input.Byte() % 8 == 1;
  LineZ expectedLeft = leftInPlace ? sides[0] : leftOut, expectedRight = rightInPlace ? sides[1] : rightOut;
  reference::RelapseCheckFilter(center, sides[0], expectedLeft, sides[1], expectedRight);
  LineZ& actualLeft = leftInPlace ? sides[0] : leftOut;
  LineZ& actualRight = rightInPlace ? sides[1] : rightOut;
  Library::RelapseCheckFilter(center, sides[0], actualLeft, sides[1], actualRight);
  EXPECT_SAME(actualLeft, expectedLeft);
  EXPECT_SAME(actualRight, expectedRight);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    if (input.Byte() % 4 == 1) {
      CheckFilter(input);
    } else {
      CheckBoundaries(input);
    }
  } while (!input.IsAtEnd());
  return 0;
}
