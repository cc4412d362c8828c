#include "base/strict_floating_point.h"

#include "reference/boundary_pieces_reference.h"

#include <cstddef>
#include <cstdint>

#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinateZ;
using tarvo::HAD::BoundaryData;

float HandleBoundaryDataByDistance(const BoundaryData& source, int& indexCursor, int startIndex,
                                   double startRatio, double length, BoundaryData& piece) {
  const int n = static_cast<int>(source.points.size());
  const int s = startIndex;
  if (n - 1 <= s) return 0.0f;

  const double r = static_cast<double>(ClampRatio(static_cast<float>(startRatio)));
  const GeoCoordinateZ a = source.points[static_cast<std::size_t>(s)];
  const GeoCoordinateZ b = source.points[static_cast<std::size_t>(s) + 1];
  GeoCoordinateZ startPoint;
  startPoint.longitude = a.longitude + r * (b.longitude - a.longitude);
  startPoint.latitude = a.latitude + r * (b.latitude - a.latitude);
  const float startDz = b.z - a.z;
  startPoint.z = static_cast<float>(static_cast<double>(startDz) * r + static_cast<double>(a.z));
  piece.points.push_back(startPoint);
  piece.pointIndices.push_back(0);

  double covered = 0.0;
  std::int64_t m = static_cast<std::int64_t>(indexCursor) + 1;
  bool first = true;
  for (int j = s + 1; j < n; ++j) {
    const GeoCoordinateZ p = piece.points.back();
    const GeoCoordinateZ q = source.points[static_cast<std::size_t>(j)];
    const double d = p.DistanceTo(q);
    const double next = covered + d;
    if (length > next) {
      piece.points.push_back(q);
      while (m < static_cast<std::int64_t>(source.pointIndices.size())) {
        const std::uint32_t v = source.pointIndices[static_cast<std::size_t>(m)];
        if (v > static_cast<std::uint32_t>(j)) break;
        if (v > static_cast<std::uint32_t>(s)) {
          piece.pointIndices.push_back(v - static_cast<std::uint32_t>(s));
          if (first) {
            indexCursor = static_cast<int>(m);
            first = false;
          }
        }
        m += 1;
      }
      covered = next;
    } else {
      const double t = static_cast<double>(ClampRatio(static_cast<float>((length - covered) / d)));
      GeoCoordinateZ cutPoint;
      cutPoint.longitude = p.longitude + t * (q.longitude - p.longitude);
      cutPoint.latitude = p.latitude + t * (q.latitude - p.latitude);
      const float dz = q.z - p.z;
      cutPoint.z = static_cast<float>(static_cast<double>(dz) * t + static_cast<double>(p.z));
      piece.points.push_back(cutPoint);
      return static_cast<float>(length / length);
    }
  }
  return static_cast<float>(covered / length);
}

}  // namespace reference
