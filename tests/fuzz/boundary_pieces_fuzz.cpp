#include "fuzz/fuzz_target.h"

#include "reference/boundary_pieces_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::HAD::BoundaryData;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    BoundaryData source;
    source.points = input.PointLineZ(100);
    std::uint32_t marked = 0;
    for (std::size_t left = input.Below(12); left > 0; --left) {
      marked += static_cast<std::uint32_t>(input.Below(4));  // repeated ones, and ones beyond the end
      source.pointIndices.push_back(marked);
    }
    if (input.Byte() % 16 == 1) source.pointIndices.push_back(4294967295u);
    BoundaryData piece;
    if (input.Byte() % 8 == 1) piece = source;
    BoundaryData expected = piece;
    int cursor = -1, expectedCursor = -1;
    if (input.Byte() % 4 == 1) {
      cursor = input.Index(source.pointIndices.size());
      if (cursor < -1) cursor = -1;
      expectedCursor = cursor;
    }
    // One piece after another on the same cursor.
    for (int step = 0; step < 4; ++step) {
      int startIndex = input.Index(source.points.size());
      if (startIndex < 0) startIndex = 0;
      const double startRatio = input.Ratio();
      const double length = input.MetresAlong(source.points);
      EXPECT_SAME(
          Library::HandleBoundaryDataByDistance(source, cursor, startIndex, startRatio, length, piece),
          reference::HandleBoundaryDataByDistance(source, expectedCursor, startIndex, startRatio, length,
                                                  expected));
      EXPECT_SAME(cursor, expectedCursor);
      EXPECT_SAME(piece.points, expected.points);
      EXPECT_SAME(piece.pointIndices, expected.pointIndices);
    }
  } while (!input.IsAtEnd());
  return 0;
}
