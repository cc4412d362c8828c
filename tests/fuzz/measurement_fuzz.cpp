#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <cmath>

#include "reference/measurement_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;

namespace {

/// A table of running lengths, or of anything.
std::vector<double> Table(FuzzInput& input, const fuzz::Line& line) {
  std::vector<double> table;
  double sum = 0.0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (i > 0) sum += line[i - 1].DistanceTo(line[i]);
    table.push_back(sum);
  }
  switch (input.Byte() % 8) {
    case 0:
      table.resize(input.Below(line.size() + 3), 1e5);
      break;
    case 1:
      if (!table.empty()) table[input.Below(table.size())] = input.Metres();
      break;
    case 2:
      if (!table.empty()) table.pop_back();
      break;
    default:
      break;
  }
  return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    fuzz::LineZ lineZ = input.PointLineZ(120);
    const fuzz::Line line = fuzz::WithoutHeight(lineZ);
    const std::vector<double> table = Table(input, line);
    for (int step = 0; step < 4; ++step) {
      const unsigned from = input.UnsignedIndex(line.size()), to = input.UnsignedIndex(line.size());
      const int indexA = input.Index(line.size()), indexB = input.Index(line.size());
      const double offsetA = input.MetresAlong(line), offsetB = input.Metres();
      switch (input.Byte() % 10) {
        case 0: {
          const GeoCoordinate* points = input.Byte() % 16 == 1 ? nullptr : line.data();
          const unsigned count = static_cast<unsigned>(line.size());
          EXPECT_SAME(Library::GetDistance(points, count, from, to),
                      reference::GetDistance(points, count, from, to));
          break;
        }
        case 1:
          // The twin does not guard the empty line, for which the contract gives 0.
          EXPECT_SAME(Library::GetDistanceByVector(line, from, to),
                      line.empty() ? 0.0 : reference::GetDistanceByVector(line, from, to));
          break;
        case 2:
          EXPECT_SAME(Library::GetDistanceByVector(lineZ, from, to),
                      line.empty() ? 0.0 : reference::GetDistanceByVector(lineZ, from, to));
          break;
        case 3: {
          if (to > from && to >= line.size()) break;
          std::vector<double> cache(input.Below(3), 7.0);
          std::vector<double> expected = cache;
          EXPECT_SAME(Library::GetDistanceAndCache(line, from, to, cache),
                      reference::GetDistanceAndCache(line, from, to, expected));
          EXPECT_SAME(cache, expected);
          break;
        }
        case 4: {
          const int index = Library::FindFirstSmallerIndex(table, offsetA);
          const bool isAscending =
              std::is_sorted(table.begin(), table.end()) &&
              std::none_of(table.begin(), table.end(), [](double v) { return std::isnan(v); });
          if (isAscending) {
            EXPECT_SAME(index, reference::FindFirstSmallerIndex(table, offsetA));
          } else {
            EXPECT_HOLDS(index >= 0 && static_cast<std::size_t>(index) < table.size());
          }
          break;
        }
        case 5:
          EXPECT_SAME(Library::IsPointAInFrontOfPointB(indexA, offsetA, indexB, offsetB),
                      reference::IsPointAInFrontOfPointB(indexA, offsetA, indexB, offsetB));
          break;
        case 6: {
          if (indexA < indexB && (indexA < 0 || static_cast<std::size_t>(indexB) >= lineZ.size())) break;
          const fuzz::LineZ before = lineZ;
          EXPECT_SAME(Library::DistancePointAAndPointB(lineZ, indexA, offsetA, indexB, offsetB),
                      reference::DistancePointAAndPointB(lineZ, indexA, offsetA, indexB, offsetB));
          EXPECT_SAME(lineZ, before);
          break;
        }
        case 7:
          if (indexA < indexB && (indexA < 0 || static_cast<std::size_t>(indexA) >= table.size())) break;
          EXPECT_SAME(Library::DistancePointAAndPointB(table, indexA, offsetA, indexB, offsetB),
                      reference::DistancePointAAndPointB(table, indexA, offsetA, indexB, offsetB));
          break;
        case 8:
          EXPECT_SAME(Library::DistanceAToBackB(lineZ, indexA, offsetA, indexB, offsetB),
                      reference::DistanceAToBackB(lineZ, indexA, offsetA, indexB, offsetB));
          break;
        default: {
          const GeoCoordinate pointA = input.PointNear(line), pointB = input.PointNear(line);
          const auto actual = fuzz::UnlessOutOfRange(
              [&] { return Library::DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, table); });
          const auto expected = fuzz::UnlessOutOfRange(
              [&] { return reference::DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, table); });
          EXPECT_SAME(actual.has_value(), expected.has_value());
          if (actual) EXPECT_SAME(*actual, *expected);
          break;
        }
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
