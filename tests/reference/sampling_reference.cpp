#include "base/strict_floating_point.h"

#include "reference/sampling_reference.h"

#include <cstddef>

#include "reference/points_reference.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

bool ChoosePointsInPolyline(const GeoCoordinate* points, unsigned int count, double distance,
                            std::vector<GeoCoordinate>& out) {
  out.clear();
  if (points == nullptr || count == 0 || 0.0 > distance) return false;
  if (count < 2) return false;

  double acc = 0.0;
  double prev = 0.0;
  for (unsigned int i = 1; i < count; ++i) {
    const double d = points[i].DistanceTo(points[i - 1]);
    acc = acc + d;
    if (distance > acc) {
      prev = acc;
      continue;
    }
    unsigned int next = i;
    if (acc == distance) {
      out.push_back(points[i]);
      next = i + 1;
    } else {
      const float ratio = static_cast<float>((distance - prev) / d);
      out.push_back(GetInsertPointFromSegment(points[i - 1], points[i], ratio));
      next = i;
    }
    for (unsigned int k = next; k < count; ++k) out.push_back(points[k]);
    return true;
  }
  return false;
}

bool ChoosePointsInPolyline(const std::vector<GeoCoordinate>& points, double interval, int maxCount,
                            std::vector<GeoCoordinate>& out) {
  if (0.0 >= interval) return false;
  if (points.empty()) return false;
  CalcPointsInPolyline(points, interval, maxCount, out);
  return !out.empty();
}

bool CalcPointsInPolyline(const std::vector<GeoCoordinate>& points, double interval, int maxCount,
                          std::vector<GeoCoordinate>& out) {
  out.push_back(points[0]);
  // The limit counts everything `out` holds, what the caller had in it included.
  bool roomLeft = maxCount <= 0 || out.size() < static_cast<std::size_t>(maxCount);
  if (points.size() < 2 || !roomLeft) return roomLeft;

  double carry = 0.0;
  for (std::size_t i = 1; i < points.size() && roomLeft; ++i) {
    const double d = points[i].DistanceTo(points[i - 1]);
    const double s = carry + d;
    if (interval > s) {
      carry = s;
    } else if (s == interval) {
      out.push_back(points[i]);
      carry = 0.0;
    } else {
      double rem = interval - carry;
      while (d >= rem) {
        const float ratio = static_cast<float>(rem / d);
        out.push_back(GetInsertPointFromSegment(points[i - 1], points[i], ratio));
        roomLeft = maxCount <= 0 || out.size() < static_cast<std::size_t>(maxCount);
        rem = rem + interval;
        if (!roomLeft) break;
      }
      carry = d - (rem - interval);
    }
    roomLeft = maxCount <= 0 || out.size() < static_cast<std::size_t>(maxCount);
  }
  return roomLeft;
}

bool ChoosePointsInPolylineWithMaxLength(const std::vector<GeoCoordinate>& points, double maxLength,
                                         std::vector<GeoCoordinate>& out) {
  if (0.0 >= maxLength) return false;
  if (points.empty()) return false;
  out.push_back(points[0]);
  if (points.size() < 2) return true;

  double acc = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double d = points[i].DistanceTo(points[i - 1]);
    const double s = acc + d;
    if (maxLength >= s) {
      out.push_back(points[i]);
      acc = s;
    } else {
      const float ratio = static_cast<float>((maxLength - acc) / d);
      out.push_back(GetInsertPointFromSegment(points[i - 1], points[i], ratio));
      break;
    }
  }
  return !out.empty();
}

bool ChoosePointsInPolylineWithMaxLength(const std::vector<GeoCoordinateZ>& points, double maxLength,
                                         std::vector<GeoCoordinateZ>& out) {
  if (0.0 >= maxLength) return false;
  if (points.empty()) return false;
  out.push_back(points[0]);
  if (points.size() < 2) return true;

  double acc = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double d = points[i].DistanceTo(points[i - 1]);
    const double s = acc + d;
    if (maxLength >= s) {
      out.push_back(points[i]);
      acc = s;
    } else {
      const float ratio = static_cast<float>((maxLength - acc) / d);
      out.push_back(GetInsertPointFromSegment(points[i - 1], points[i], ratio));
      break;
    }
  }
  return !out.empty();
}

}  // namespace reference
