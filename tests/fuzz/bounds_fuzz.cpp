#include "fuzz/fuzz_target.h"

#include "reference/bounds_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::MapVector2d;
using vorel::Vector2;

namespace {

std::vector<MapVector2d> AsMapVectors(const std::vector<Vector2<double>>& vectors) {
  std::vector<MapVector2d> result;
  for (const Vector2<double>& vector : vectors) result.push_back({vector.x, vector.y});
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    fuzz::LineZ points = input.PointLineZ(150);
    switch (input.Byte() % 4) {
      case 0: {
        const int first = input.Index(points.size()), last = input.Index(points.size());
        std::vector<MapVector2d> out(input.Below(3), MapVector2d{1.5, 2.5});
        std::vector<MapVector2d> expected = out;
        EXPECT_SAME(Library::GetBound(points, first, last, out),
                    reference::GetBound(points, first, last, expected));
        EXPECT_SAME(out, expected);
        break;
      }
      case 1: {
        std::vector<Vector2<double>> vectors;
        for (const auto& point : points) vectors.push_back({point.longitude, point.latitude});
        std::vector<Vector2<double>> extremes(input.Below(6)), expectedExtremes = extremes;
        std::vector<int> indices(input.Below(6)), expectedIndices = indices;
        EXPECT_SAME(Library::GetBoundPoints(vectors, extremes, indices),
                    reference::GetBoundPoints(vectors, expectedExtremes, expectedIndices));
        EXPECT_SAME(AsMapVectors(extremes), AsMapVectors(expectedExtremes));
        EXPECT_SAME(indices, expectedIndices);
        break;
      }
      default: {
        while (points.size() < 3) points.push_back(input.PointNear(points));
        const tarvo::GeoCoordinate position = input.PointNear(fuzz::WithoutHeight(points));
        EXPECT_SAME(Library::CalculatePlaneNormalVector(points),
                    reference::CalculatePlaneNormalVector(points));
        EXPECT_SAME(Library::GetPointZInPlane(points, position),
                    reference::GetPointZInPlane(points, position));
        break;
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
