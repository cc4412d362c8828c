#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cstddef>
#include <cstdint>

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using tarvo::GeoCoordinateZ;
using tarvo::HAD::BoundaryData;

float VorelGeometryAlgorithm::HandleBoundaryDataByDistance(const BoundaryData& source, int& indexCursor,
                                                           int startIndex, double startRatio, double length,
                                                           BoundaryData& piece) {
  VOREL_PRECONDITION(startIndex >= 0);
  VOREL_PRECONDITION(indexCursor >= -1);
  VOREL_PRECONDITION(&source != &piece);
  const std::size_t pointCount = source.points.size();
  const std::size_t start = static_cast<std::size_t>(startIndex);
  if (pointCount < 2 || start >= pointCount - 1) return 0.0f;

  const GeoCoordinateZ* const points = source.points.data();
  const GeoCoordinateZ first =
      internal::PointAtRatio(points[start], points[start + 1], static_cast<float>(startRatio));
  piece.points.push_back(first);
  piece.pointIndices.push_back(0);
  double covered = 0.0;  // metres from the start point
  bool isFirstMark = true;
  std::size_t mark = static_cast<std::size_t>(std::int64_t{indexCursor} + 1);
  // Goes on to vertex j, `step` metres from `previous`; false when the piece ends before it.
  const auto goTo = [&](const GeoCoordinateZ& previous, std::size_t j, double step) {
    const double reached = covered + step;
    if (!(length > reached)) {
      // The mark of the vertex is left out even where the cut falls on it.
      piece.points.push_back(
          internal::PointAtRatio(previous, points[j], static_cast<float>((length - covered) / step)));
      return false;
    }
    piece.points.push_back(points[j]);
    for (; mark < source.pointIndices.size() && source.pointIndices[mark] <= j; ++mark) {
      const std::uint32_t markedVertex = source.pointIndices[mark];
      if (markedVertex <= start) continue;
      piece.pointIndices.push_back(markedVertex - static_cast<std::uint32_t>(start));
      if (isFirstMark) indexCursor = static_cast<int>(mark);
      isFirstMark = false;
    }
    covered = reached;
    return true;
  };
  bool isWhole = goTo(first, start + 1, tarvo::geodesy::Distance(first, points[start + 1]));
  if (isWhole) {
    const auto goOverBlock = [&](std::size_t i, std::size_t count, const double* lengths) {
      for (std::size_t k = 0; k < count && isWhole; ++k) isWhole = goTo(points[i + k], i + k + 1, lengths[k]);
      return isWhole;
    };
    internal::WalkSegments(points, start + 1, pointCount - 1, goOverBlock);
  }
  if (!isWhole) return static_cast<float>(length / length);  // 1; NaN for 0 metres
  return static_cast<float>(covered / length);
}

}  // namespace vorel
