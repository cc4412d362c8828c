#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

template <class Point>
bool AppendFirstMetres(const std::vector<Point>& points, double maxLength, std::vector<Point>& out) {
  VOREL_PRECONDITION(&points != &out);
  if (0.0 >= maxLength || points.empty()) return false;
  out.push_back(points[0]);
  double reached = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double segmentLength = tarvo::geodesy::Distance(points[i], points[i - 1]);
    const double reachedNext = reached + segmentLength;
    if (!(maxLength >= reachedNext)) {
      out.push_back(internal::PointAtRatio(points[i - 1], points[i],
                                           static_cast<float>((maxLength - reached) / segmentLength)));
      break;
    }
    out.push_back(points[i]);
    reached = reachedNext;
  }
  return true;
}

}  // namespace

bool VorelGeometryAlgorithm::ChoosePointsInPolyline(const GeoCoordinate* points, unsigned int count,
                                                    double distance, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(points == nullptr || points != out.data());
  out.clear();
  if (points == nullptr || count < 2 || 0.0 > distance) return false;
  double reached = 0.0;
  for (unsigned int i = 1; i < count; ++i) {
    const double segmentLength = tarvo::geodesy::Distance(points[i], points[i - 1]);
    const double reachedNext = reached + segmentLength;
    if (distance > reachedNext) {
      reached = reachedNext;
      continue;
    }
    if (reachedNext != distance) {
      out.push_back(internal::PointAtRatio(points[i - 1], points[i],
                                           static_cast<float>((distance - reached) / segmentLength)));
    }
    // A cut that falls on vertex i is that vertex, with which the rest starts anyway.
    out.insert(out.end(), points + i, points + count);
    return true;
  }
  return false;
}

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

bool VorelGeometryAlgorithm::ChoosePointsInPolylineWithMaxLength(const std::vector<GeoCoordinate>& points,
                                                                 double maxLength,
                                                                 std::vector<GeoCoordinate>& out) {
  return AppendFirstMetres(points, maxLength, out);
}

bool VorelGeometryAlgorithm::ChoosePointsInPolylineWithMaxLength(const std::vector<GeoCoordinateZ>& points,
                                                                 double maxLength,
                                                                 std::vector<GeoCoordinateZ>& out) {
  return AppendFirstMetres(points, maxLength, out);
}

}  // namespace vorel
