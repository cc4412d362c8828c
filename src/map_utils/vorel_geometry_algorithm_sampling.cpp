#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"

namespace vorel {

using tarvo::GeoCoordinate;

bool VorelGeometryAlgorithm::ChoosePointsInPolyline(const std::vector<GeoCoordinate>& points, double interval,
                                                    int maxCount, std::vector<GeoCoordinate>& out) {
  if (0.0 >= interval || points.empty()) return false;
  CalcPointsInPolyline(points, interval, maxCount, out);
  return !out.empty();
}

bool VorelGeometryAlgorithm::CalcPointsInPolyline(const std::vector<GeoCoordinate>& points, double interval,
                                                  int maxCount, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(!points.empty());
  VOREL_PRECONDITION(!(0.0 >= interval));
  VOREL_PRECONDITION(&points != &out);
  // Deliberate: the limit counts what `out` held before as well.
  const auto hasRoom = [maxCount, &out] {
    return maxCount <= 0 || out.size() < static_cast<std::size_t>(maxCount);
  };
  out.push_back(points[0]);
  bool roomLeft = hasRoom();
  double metresSinceLastSample = 0.0;
  for (std::size_t i = 1; i < points.size() && roomLeft; ++i) {
    const double segmentLength = tarvo::geodesy::Distance(points[i], points[i - 1]);
    const double reached = metresSinceLastSample + segmentLength;
    if (interval > reached) {
      metresSinceLastSample = reached;
    } else if (reached == interval) {
      out.push_back(points[i]);
      roomLeft = hasRoom();
      metresSinceLastSample = 0.0;
    } else {
      double sampleOffset = interval - metresSinceLastSample;  // from points[i - 1]
      while (segmentLength >= sampleOffset) {
        out.push_back(internal::PointAtRatio(points[i - 1], points[i],
                                             static_cast<float>(sampleOffset / segmentLength)));
        roomLeft = hasRoom();
        sampleOffset = sampleOffset + interval;
        if (!roomLeft) break;
      }
      metresSinceLastSample = segmentLength - (sampleOffset - interval);
    }
  }
  return roomLeft;
}

}  // namespace vorel
