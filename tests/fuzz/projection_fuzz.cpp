#include "fuzz/fuzz_target.h"

#include "reference/projection_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinateZ;

namespace {

/// What the functions of the family write.
struct Outputs {
  int index;
  int resultIndex;
  double ratio;
};

void CheckSame(const Outputs& actual, const Outputs& expected) {
  EXPECT_SAME(actual.index, expected.index);
  EXPECT_SAME(actual.resultIndex, expected.resultIndex);
  EXPECT_SAME(actual.ratio, expected.ratio);
}

/// Calls both sides; where the two indices are one variable, the twin's result index is what must stand in it, if it was
/// written at all.
template <class Actual, class Expected>
void Check(bool isOneVariable, int index, Actual actual, Expected expected) {
  const int untouched = isOneVariable ? index : -77;
  Outputs actualOutputs{index, untouched, 7.25};
  Outputs expectedOutputs{index, untouched, 7.25};
  const bool expectedResult =
      expected(expectedOutputs.index, expectedOutputs.resultIndex, expectedOutputs.ratio);
  if (!isOneVariable) {
    EXPECT_SAME(actual(actualOutputs.index, actualOutputs.resultIndex, actualOutputs.ratio), expectedResult);
    CheckSame(actualOutputs, expectedOutputs);
    return;
  }
  // Whether the twin wrote its result index: run again with another mark.
  Outputs marked{index, index ^ 0x40000000, 7.25};
  expected(marked.index, marked.resultIndex, marked.ratio);
  const bool isWritten = marked.resultIndex == expectedOutputs.resultIndex;
  int both = index;
  double ratio = 7.25;
  EXPECT_SAME(actual(both, both, ratio), expectedResult);
  EXPECT_SAME(both, isWritten ? expectedOutputs.resultIndex : expectedOutputs.index);
  EXPECT_SAME(ratio, expectedOutputs.ratio);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::LineZ line = input.PointLineZ(120);
    for (int step = 0; step < 5; ++step) {
      const GeoCoordinateZ pos = input.PointNear(line);
      const int index = input.Index(line.size());
      const double acceptDistance = input.Metres(), maxDistance = input.Metres();
      const int maxFarSegments = input.Index(4);
      const bool isOneVariable = input.Byte() % 8 == 1;
      switch (input.Byte() % 8) {
        case 0: {
          GeoCoordinateZ points[3] = {input.PointNear(line), input.PointNear(line), pos};
          double ratio = 7.25, expectedRatio = 7.25;
          GeoCoordinateZ foot(1.5, 2.5, 3.5f), expectedFoot = foot;
          const int expected =
              reference::ProjectionPosToLine(points[0], points[1], points[2], expectedFoot, expectedRatio);
          const std::size_t place = input.Below(5);  // the foot may be one of the three points
          GeoCoordinateZ& written = place < 3 ? points[place] : foot;
          EXPECT_SAME(Library::ProjectionPosToLine(points[0], points[1], points[2], written, ratio),
                      expected);
          EXPECT_SAME(written, expectedFoot);
          EXPECT_SAME(ratio, expectedRatio);
          break;
        }
        case 1: {
          const GeoCoordinateZ a = input.PointNear(line), b = input.PointNear(line);
          double ratio = 7.25, expectedRatio = 7.25;
          EXPECT_SAME(Library::PosInAB(pos, a, b, ratio), reference::PosInAB(pos, a, b, expectedRatio));
          EXPECT_SAME(ratio, expectedRatio);
          break;
        }
        case 2:
        case 3:
          Check(
              isOneVariable, index,
              [&](int& segmentIndex, int& resultIndex, double& ratio) {
                return Library::ProjectionPosToLines(pos, line, segmentIndex, resultIndex, ratio);
              },
              [&](int& segmentIndex, int& resultIndex, double& ratio) {
                return reference::ProjectionPosToLines(pos, line, segmentIndex, resultIndex, ratio);
              });
          break;
        case 4:
        case 5:
          Check(
              isOneVariable, index,
              [&](int& startIndex, int& resultIndex, double& ratio) {
                return Library::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio,
                                                             acceptDistance, maxDistance, maxFarSegments);
              },
              [&](int& startIndex, int& resultIndex, double& ratio) {
                return reference::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio,
                                                               acceptDistance, maxDistance, maxFarSegments);
              });
          break;
        default: {
          const double heading = input.Angle(), headingTolerance = input.Angle();
          Check(
              isOneVariable, index,
              [&](int& startIndex, int& resultIndex, double& ratio) {
                return Library::ProjectionPosToLinesDistanceOrientation(
                    pos, heading, line, startIndex, resultIndex, ratio, acceptDistance, maxDistance,
                    headingTolerance, maxFarSegments);
              },
              [&](int& startIndex, int& resultIndex, double& ratio) {
                return reference::ProjectionPosToLinesDistanceOrientation(
                    pos, heading, line, startIndex, resultIndex, ratio, acceptDistance, maxDistance,
                    headingTolerance, maxFarSegments);
              });
          break;
        }
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
