#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cstdint>

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"

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

  GeoCoordinateZ previous =
      internal::PointAtRatio(source.points[start], source.points[start + 1], static_cast<float>(startRatio));
  piece.points.push_back(previous);
  piece.pointIndices.push_back(0);
  double covered = 0.0;  // metres from the start point
  bool isFirstMark = true;
  std::size_t mark = static_cast<std::size_t>(std::int64_t{indexCursor} + 1);
  for (std::size_t j = start + 1; j < pointCount; ++j) {
    const GeoCoordinateZ& vertex = source.points[j];
    const double step = tarvo::geodesy::Distance(previous, vertex);
    const double reached = covered + step;
    if (!(length > reached)) {
      // The piece ends before `vertex`, whose mark is left out even where the cut falls on it.
      piece.points.push_back(
          internal::PointAtRatio(previous, vertex, static_cast<float>((length - covered) / step)));
      return static_cast<float>(length / length);  // 1; NaN for 0 metres
    }
    piece.points.push_back(vertex);
    for (; mark < source.pointIndices.size() && source.pointIndices[mark] <= j; ++mark) {
      const std::uint32_t markedVertex = source.pointIndices[mark];
      if (markedVertex <= start) continue;
      piece.pointIndices.push_back(markedVertex - static_cast<std::uint32_t>(start));
      if (isFirstMark) indexCursor = static_cast<int>(mark);
      isFirstMark = false;
    }
    covered = reached;
    previous = vertex;
  }
  return static_cast<float>(covered / length);
}

}  // namespace vorel
