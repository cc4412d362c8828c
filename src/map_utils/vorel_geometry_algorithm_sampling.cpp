#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cstddef>

#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/segment_lengths.h"

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
  const auto appendBlock = [&](std::size_t first, std::size_t count, const double* lengths) {
    for (std::size_t i = 0; i < count; ++i) {
      const double reachedNext = reached + lengths[i];
      if (!(maxLength >= reachedNext)) {
        const Point* const start = points.data() + first;
        out.insert(out.end(), start + 1, start + 1 + i);
        out.push_back(internal::PointAtRatio(start[i], start[i + 1],
                                             static_cast<float>((maxLength - reached) / lengths[i])));
        return false;
      }
      reached = reachedNext;
    }
    out.insert(out.end(), points.data() + first + 1, points.data() + first + 1 + count);
    return true;
  };
  internal::WalkSegments(points.data(), 0, points.size() - 1, appendBlock);
  return true;
}

}  // namespace

bool VorelGeometryAlgorithm::ChoosePointsInPolyline(const GeoCoordinate* points, unsigned int count,
                                                    double distance, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(points == nullptr || points != out.data());
  out.clear();
  if (points == nullptr || count < 2 || 0.0 > distance) return false;
  double reached = 0.0;
  bool isReached = false;
  const auto findCut = [&](std::size_t first, std::size_t segmentCount, const double* lengths) {
    for (std::size_t i = 0; i < segmentCount; ++i) {
      const double reachedNext = reached + lengths[i];
      if (distance > reachedNext) {
        reached = reachedNext;
        continue;
      }
      const GeoCoordinate* const start = points + first + i;
      if (reachedNext != distance) {
        out.push_back(internal::PointAtRatio(start[0], start[1],
                                             static_cast<float>((distance - reached) / lengths[i])));
      }
      // A cut that falls on a vertex is that vertex, with which the rest starts anyway.
      out.insert(out.end(), start + 1, points + count);
      isReached = true;
      return false;
    }
    return true;
  };
  internal::WalkSegments(points, 0, count - 1, findCut);
  return isReached;
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
  if (!roomLeft) return false;
  const auto sampleBlock = [&](std::size_t first, std::size_t count, const double* lengths) {
    for (std::size_t i = 0; i < count && roomLeft; ++i) {
      const GeoCoordinate& start = points[first + i];
      const GeoCoordinate& end = points[first + i + 1];
      const double segmentLength = lengths[i];
      const double reached = metresSinceLastSample + segmentLength;
      if (interval > reached) {
        metresSinceLastSample = reached;
      } else if (reached == interval) {
        out.push_back(end);
        roomLeft = hasRoom();
        metresSinceLastSample = 0.0;
      } else {
        double sampleOffset = interval - metresSinceLastSample;  // from `start`
        while (segmentLength >= sampleOffset) {
          out.push_back(internal::PointAtRatio(start, end, static_cast<float>(sampleOffset / segmentLength)));
          roomLeft = hasRoom();
          sampleOffset = sampleOffset + interval;
          if (!roomLeft) break;
        }
        metresSinceLastSample = segmentLength - (sampleOffset - interval);
      }
    }
    return roomLeft;
  };
  internal::WalkSegments(points.data(), 0, points.size() - 1, sampleBlock);
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
