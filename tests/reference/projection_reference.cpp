#include "base/strict_floating_point.h"

#include "reference/projection_reference.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/geo_utils.h"
#include "reference/reference_numbers.h"

namespace reference {

using tarvo::GeoCoordinateZ;

int ProjectionPosToLine(const GeoCoordinateZ& start, const GeoCoordinateZ& end, const GeoCoordinateZ& pos,
                        GeoCoordinateZ& foot, double& ratio) {
  const double c = std::cos((pos.latitude / 180.0) * kPi);
  const double dx = (end.longitude - start.longitude) * c;
  const double dy = end.latitude - start.latitude;
  const double len2 = dx * dx + dy * dy;
  if (1e-13 > len2) {
    ratio = 0.0;
    foot = start;
    return 0;
  }
  ratio = (dx * (c * (pos.longitude - start.longitude)) + (pos.latitude - start.latitude) * dy) / len2;
  foot.longitude = (end.longitude - start.longitude) * ratio + start.longitude;
  foot.latitude = (end.latitude - start.latitude) * ratio + start.latitude;
  const float dz = end.z - start.z;
  const float scaled = static_cast<float>(static_cast<double>(dz) * ratio);
  foot.z = start.z + scaled;
  if (ratio < 0.0) return -1;
  if (ratio > 1.0) return 1;
  return 0;
}

bool ProjectionPosToLines(const GeoCoordinateZ& pos, const std::vector<GeoCoordinateZ>& line,
                          int& segmentIndex, int& resultIndex, double& ratio) {
  if (pos.longitude == 0.0 && pos.latitude == 0.0) return false;
  int direction = 0;
  int i = segmentIndex;
  if (i < 0) return false;
  while (true) {
    if (static_cast<std::int64_t>(i) + 1 >= static_cast<std::int64_t>(line.size())) return false;
    const std::size_t first = static_cast<std::size_t>(i);
    const std::size_t second = first + 1;
    if (line[first].DistanceTo(line[second]) < 0.1) {
      if (direction == 0) {
        i = segmentIndex + 1;
      } else {
        i = segmentIndex + direction;
      }
    } else {
      GeoCoordinateZ scratch;
      const int r = ProjectionPosToLine(line[first], line[second], pos, scratch, ratio);
      if (r == 0) {
        resultIndex = segmentIndex;
        if (ratio >= 1.0) {
          resultIndex = i + 1;
          ratio = 0.0;
        }
        return true;
      }
      if (direction * r < 0) {
        if (r == 1) {
          resultIndex = i + 1;
        } else {
          resultIndex = i;
        }
        ratio = 0.0;
        return true;
      }
      i = segmentIndex + r;
      direction = r;
    }
    segmentIndex = i;
    if (i < 0) return false;
  }
}

bool ProjectionPosToLinesDistance(const GeoCoordinateZ& pos, const std::vector<GeoCoordinateZ>& line,
                                  int& startIndex, int& resultIndex, double& ratio, double acceptDistance,
                                  double maxDistance, int maxFarSegments) {
  if (pos.longitude == 0.0 && pos.latitude == 0.0) return false;
  if (line.empty()) return false;
  int bestIndex = startIndex;
  double bestRatio = 0.0;
  double bestDistance = 999988.0;
  int farCount = 0;
  // Sign-extended and compared as unsigned: a negative index is larger than any size.
  const std::uint64_t begin = static_cast<std::uint64_t>(static_cast<std::int64_t>(startIndex));
  for (std::uint64_t i = begin; i < line.size() - 1; ++i) {
    if (line[i].DistanceTo(line[i + 1]) < 0.01) continue;
    GeoCoordinateZ scratch;
    const int r = ProjectionPosToLine(line[i], line[i + 1], pos, scratch, ratio);
    ratio = ClampRatio(ratio);
    GeoCoordinateZ closest;
    closest.longitude = line[i].longitude + ratio * (line[i + 1].longitude - line[i].longitude);
    closest.latitude = line[i].latitude + ratio * (line[i + 1].latitude - line[i].latitude);
    const float dz = line[i + 1].z - line[i].z;
    closest.z = line[i].z + static_cast<float>(static_cast<double>(dz) * ratio);
    const double d = closest.DistanceTo(pos);
    if (r == 0 && acceptDistance > d) {
      resultIndex = static_cast<int>(i);
      startIndex = static_cast<int>(i);
      return true;
    }
    if (bestDistance > d) {
      bestRatio = ratio;
      bestIndex = static_cast<int>(i);
      bestDistance = d;
    } else if (maxDistance > bestDistance && d > maxDistance) {
      if (farCount >= maxFarSegments) break;
      farCount += 1;
    }
  }
  resultIndex = bestIndex;
  ratio = bestRatio;
  return maxDistance > bestDistance;
}

bool ProjectionPosToLinesDistanceOrientation(const GeoCoordinateZ& pos, double heading,
                                             const std::vector<GeoCoordinateZ>& line, int& startIndex,
                                             int& resultIndex, double& ratio, double acceptDistance,
                                             double maxDistance, double headingTolerance,
                                             int maxFarSegments) {
  if (pos.longitude == 0.0 && pos.latitude == 0.0) return false;
  if (line.empty()) return false;
  const double sentinel = 3.4028234663852886e+38;
  int bestIndex = startIndex;
  double bestRatio = 0.0;
  double bestDistance = sentinel;
  int farCount = 0;
  // Sign-extended and compared as unsigned: a negative index is larger than any size.
  const std::uint64_t begin = static_cast<std::uint64_t>(static_cast<std::int64_t>(startIndex));
  for (std::uint64_t i = begin; i < line.size() - 1; ++i) {
    GeoCoordinateZ scratch;
    const int r = ProjectionPosToLine(line[i], line[i + 1], pos, scratch, ratio);
    ratio = ClampRatio(ratio);
    GeoCoordinateZ closest;
    closest.longitude = line[i].longitude + ratio * (line[i + 1].longitude - line[i].longitude);
    closest.latitude = line[i].latitude + ratio * (line[i + 1].latitude - line[i].latitude);
    const float dz = line[i + 1].z - line[i].z;
    closest.z = line[i].z + static_cast<float>(static_cast<double>(dz) * ratio);
    const double d = closest.DistanceTo(pos);
    if (r == 0 && acceptDistance > d) {
      resultIndex = static_cast<int>(i);
      startIndex = static_cast<int>(i);
      return true;
    }

    double segmentHeading = heading;
    for (std::uint64_t k = i + 1; k < line.size(); ++k) {
      if (line[i].DistanceTo(line[k]) > 0.5) {
        segmentHeading = (tarvo::kx::GeoUtils::GetRadianNorth(line[i], line[k]) / kPi) * 180.0;
        break;
      }
    }
    const double diff = std::fabs(segmentHeading - heading);
    const bool headingMatches = headingTolerance > diff || diff > 360.0 - headingTolerance;

    if ((bestDistance > d && headingMatches) || bestDistance == sentinel) {
      bestRatio = ratio;
      bestIndex = static_cast<int>(i);
      bestDistance = d;
    } else if (maxDistance > bestDistance && d > maxDistance) {
      if (farCount >= maxFarSegments) break;
      farCount += 1;
    }
  }
  resultIndex = bestIndex;
  ratio = bestRatio;
  return maxDistance > bestDistance;
}

int PosInAB(const GeoCoordinateZ& pos, const GeoCoordinateZ& a, const GeoCoordinateZ& b, double& ratio) {
  const double dA = pos.DistanceTo(a);
  const double dB = pos.DistanceTo(b);
  const double dAB = b.DistanceTo(a);
  if (std::fabs(dA + dB - dAB) <= 0.1) {
    double fraction = 0.0;
    if (dAB != 0.0) fraction = dA / dAB;
    ratio = ClampRatio(fraction);
    return 0;
  }
  if (dB <= dA) return 1;
  return -1;
}

}  // namespace reference
