#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

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
  // Below the next greater number is at most `maxLength`; infinity stands for itself, for every sum is less.
  const double limit = std::nextafter(maxLength, std::numeric_limits<double>::infinity());
  double reached = 0.0;
  const Point* start = points.data();
  const Point* const last = start + points.size() - 1;
  while (start < last) {
    const std::size_t count =
        std::min<std::size_t>(static_cast<std::size_t>(last - start), internal::kVerticesCopiedAtOnce);
    const internal::LimitedWalk walk = internal::WalkSegmentsBelow(start, count, reached, limit);
    out.insert(out.end(), start + 1, start + 1 + walk.passed);
    start += walk.passed;
    reached = walk.metres;
    if (walk.passed < count) {
      out.push_back(internal::PointAtRatio(start[0], start[1],
                                           static_cast<float>((maxLength - reached) / walk.nextLength)));
      break;
    }
  }
  return true;
}

}  // namespace

bool VorelGeometryAlgorithm::ChoosePointsInPolyline(const GeoCoordinate* points, unsigned int count,
                                                    double distance, std::vector<GeoCoordinate>& out) {
  VOREL_PRECONDITION(points == nullptr || points != out.data());
  out.clear();
  if (points == nullptr || count < 2 || 0.0 > distance) return false;
  const internal::LimitedWalk walk = internal::WalkSegmentsBelow(points, count - 1, 0.0, distance);
  if (walk.passed == count - 1) return false;
  const GeoCoordinate* const start = points + walk.passed;
  if (walk.metres + walk.nextLength != distance) {
    out.push_back(internal::PointAtRatio(start[0], start[1],
                                         static_cast<float>((distance - walk.metres) / walk.nextLength)));
  }
  // A cut that falls on a vertex is that vertex, with which the rest starts anyway.
  out.insert(out.end(), start + 1, points + count);
  return true;
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
