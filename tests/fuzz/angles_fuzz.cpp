#include "fuzz/fuzz_target.h"

#include <cmath>

#include "reference/angles_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;

namespace {

/// A float that the folding steps bring home in bearable time. The contract reaches to 2^33, which takes 0.1 s: rare.
float FoldableAngle(FuzzInput& input) {
  const float angle = input.Flag() ? static_cast<float>(input.Angle()) : input.NumberFloat();
  const float limit = input.Byte() == 255 ? 8589934592.0f : 1e6f;
  return std::fabs(angle) > limit ? 0.0f : angle;  // NaN stays
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    switch (input.Byte() % 10) {
      case 0: {
        const auto a = input.Point(), b = input.Point(), c = input.Point();
        EXPECT_SAME(Library::GetAngle(a, b, c), reference::GetAngle(a, b, c));
        break;
      }
      case 1: {
        const auto from = input.Point(), to = input.Point();
        EXPECT_SAME(Library::GetAngle(from, to), reference::GetAngle(from, to));
        break;
      }
      case 2: {
        const auto from = input.Point(), to = input.Point();
        const double yaw = Library::GetYaw(from.latitude, from.longitude, to.latitude, to.longitude);
        EXPECT_SAME(yaw, reference::GetYaw(from.latitude, from.longitude, to.latitude, to.longitude));
        EXPECT_HOLDS(yaw >= 0.0 && yaw <= 360.0);
        break;
      }
      case 3: {
        const float from = input.NumberFloat(), to = input.NumberFloat();
        EXPECT_SAME(Library::CalcAziDiff(from, to), reference::CalcAziDiff(from, to));
        break;
      }
      case 4: {
        const float from = static_cast<float>(input.Angle()), to = input.NumberFloat();
        const float difference = Library::AngleDiff(from, to);
        EXPECT_SAME(difference, reference::AngleDiff(from, to));
        EXPECT_HOLDS(std::isnan(difference) || (difference >= -180.0f && difference < 180.0f));
        break;
      }
      case 5: {
        const float angle = FoldableAngle(input);
        const float folded = Library::NormalizeAngle180(angle);
        EXPECT_SAME(folded, reference::NormalizeAngle180(angle));
        EXPECT_HOLDS(std::isnan(folded) || (folded > -180.0f && folded <= 180.0f));
        break;
      }
      case 6: {
        const float angle = FoldableAngle(input);
        const float folded = Library::NormalizeAngle360(angle);
        EXPECT_SAME(folded, reference::NormalizeAngle360(angle));
        EXPECT_HOLDS(std::isnan(folded) || (folded >= 0.0f && folded <= 360.0f));
        break;
      }
      case 7: {
        const double sideA = input.Metres(), sideB = input.Metres(), angle = input.Angle();
        EXPECT_SAME(Library::GetLength3OfTriangle(sideA, sideB, angle),
                    reference::GetLength3OfTriangle(sideA, sideB, angle));
        break;
      }
      case 8: {
        const auto p = input.Point(), q = input.Point();
        const tarvo::MapVector3d pVector{p.longitude, p.latitude, input.Number()};
        const tarvo::MapVector3d qVector{q.longitude, q.latitude, input.Number()};
        EXPECT_SAME(Library::Distance(pVector, qVector), reference::Distance(pVector, qVector));
        break;
      }
      default:
        EXPECT_SAME(Library::Get20PixelDistanceOnePixel(), reference::Get20PixelDistanceOnePixel());
        break;
    }
  } while (!input.IsAtEnd());
  return 0;
}
