#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/geodesy/distance.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/nearest_search.h"
#include "map_utils/internal/projection_bounds.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

using internal::Best;
using internal::LongitudeScale;
using internal::Offset;
using internal::Projection;
using internal::ProjectOntoSegment;
using internal::Scan;
using internal::ScanRules;
using internal::Surroundings;

bool IsNoPosition(const GeoCoordinate& pos) {
  return pos.longitude == 0.0 && pos.latitude == 0.0;
}

/// Both scans. Their rules, plainly: segment by segment, skip a short one, project, measure, accept, become the best, or
/// count as far; at the end report the best. Most segments are spared the projection and both distances:
///
/// - A scan that neither an accepted segment nor far ones can end is a search for the nearest.
/// - One that is surely farther than `acceptDistance` and `maxDistance` is not accepted. Once a best in range is known, it
///   counts as far, unless it is short, and cannot become the best. Before that it counts as nothing, and could be the
///   best only of a scan that finds none in range: it is put off, and searched when the scan ends like that. Whole blocks
///   are put off at once.
/// - One that is surely farther than the best and than `acceptDistance` can only count as far, and it does not if it is
///   surely in range.
///
/// "Surely" is LocalDistanceBounds' word: it compares as the measured distance would. Segments that it does not reach,
/// all invalid ones among them, take the plain way.
bool ScanSegments(const ScanRules& rules, const GeoCoordinateZ& pos, const std::vector<GeoCoordinateZ>& line,
                  int& startIndex, int& resultIndex, double& ratio, double acceptDistance, double maxDistance,
                  int maxFarSegments) {
  using Bounds = internal::LocalDistanceBounds;
  using Search = internal::NearestSearch;
  if (IsNoPosition(pos) || line.empty()) return false;
  Best best{startIndex, 0.0, rules.nothingFound};
  const std::size_t segmentCount = line.size() - 1;
  // A negative start becomes a huge index: nothing is scanned.
  const std::size_t first = static_cast<std::size_t>(startIndex);
  if (first < segmentCount) {
    const Scan scan(rules, line, pos);
    const Surroundings& surroundings = scan.surroundings;
    const bool canFarSegmentsEndScan =
        maxFarSegments < 0 || static_cast<std::size_t>(maxFarSegments) < segmentCount - first;
    const auto acceptBest = [&] {
      startIndex = best.index;
      resultIndex = best.index;
      ratio = best.ratio;
      return true;
    };
    std::size_t next = first;
    if (rules.goesByHeading) {
      // Deliberate: the first segment scanned with headings is not asked for its own.
      best = scan.Measure(first);
      if (acceptDistance > best.distance && scan.IsBeside(first)) return acceptBest();
      ++next;
    }
    if (!canFarSegmentsEndScan && !(acceptDistance > 0.0)) {
      Search search(scan, next, best);
      search.SearchAll();
      best = search.best();
    } else {
      const double accept = acceptDistance > 0.0 ? acceptDistance : 0.0;  // also for NaN
      double putOffBeyond = maxDistance > 0.0 ? maxDistance : 0.0;
      if (putOffBeyond < accept) putOffBeyond = accept;
      const double putOffBeyondSquared = Bounds::SquareToExceed(putOffBeyond);
      const double inRangeSquared = Bounds::SquareToStayBelow(maxDistance);
      const auto squareBeyondBest = [&] {
        return Bounds::SquareToExceed(best.distance < accept ? accept : best.distance);
      };
      double notBestBeyondSquared = squareBeyondBest();

      double leastPutOffSquared = std::numeric_limits<double>::infinity();
      std::size_t leastPutOff = next;
      const auto putOff = [&](std::size_t i, double lowerSquared) {
        if (lowerSquared < leastPutOffSquared) {
          leastPutOffSquared = lowerSquared;
          leastPutOff = i;
        }
      };
      // Measured already, a few more than the walk has come to; such segments need no bounds.
      double ratios[Scan::kMeasuredAtOnce];
      double distances[Scan::kMeasuredAtOnce];
      std::size_t measuredBegin = next;
      std::size_t measuredEnd = next;
      int farCount = 0;
      // A short line is sooner walked than looked at by blocks.
      std::size_t nextBlock = segmentCount - next > 2 * Search::kBlock ? next : segmentCount;
      Offset start = surroundings.OffsetOf(line[next]);
      Offset end = start;
      for (std::size_t i = next; i < segmentCount; ++i, start = end) {
        const bool mayCountAsFar = canFarSegmentsEndScan && maxDistance > best.distance;
        if (i == nextBlock) {
          while (!mayCountAsFar && i + Search::kBlock <= segmentCount) {
            const double lowerSquared = surroundings.LowerSquaredOfBox(&line[i], Search::kBlock + 1);
            if (!(lowerSquared > putOffBeyondSquared)) break;
            putOff(i, lowerSquared);
            i += Search::kBlock;
          }
          if (i >= segmentCount) break;
          if (i > nextBlock) start = surroundings.OffsetOf(line[i]);
          nextBlock = i + Search::kBlock;
        }
        end = surroundings.OffsetOf(line[i + 1]);
        if (i >= measuredEnd && start.isInReach & end.isInReach) {
          const double lowerSquared = surroundings.LowerSquared(start, end);
          if (lowerSquared > putOffBeyondSquared) {
            if (!mayCountAsFar) {
              putOff(i, lowerSquared);
            } else if (!scan.IsTooShort(i, start, end)) {
              if (farCount >= maxFarSegments) break;
              ++farCount;
            }
            continue;
          }
          if (lowerSquared > notBestBeyondSquared &&
              (!mayCountAsFar || surroundings.UpperSquared(start, end) < inRangeSquared)) {
            continue;
          }
        }
        if (scan.IsTooShort(i, start, end)) continue;
        if (i >= measuredEnd) {
          measuredBegin = i;
          measuredEnd = i + scan.MeasureSome(i, ratios, distances);
        }
        const Best found = {static_cast<int>(i), ratios[i - measuredBegin], distances[i - measuredBegin]};
        // Deliberate: an early accept does not ask for the heading.
        if (acceptDistance > found.distance && scan.IsBeside(i)) {
          best = found;
          return acceptBest();
        }
        if (best.distance > found.distance && scan.IsEligible(i, start, end)) {
          best = found;
          notBestBeyondSquared = squareBeyondBest();
        } else if (maxDistance > best.distance && found.distance > maxDistance) {
          if (farCount >= maxFarSegments) break;
          ++farCount;
        }
      }

      const bool isAnyPutOff = leastPutOffSquared < std::numeric_limits<double>::infinity();
      if (isAnyPutOff && best.distance > putOffBeyond) {
        Search search(scan, next, best);
        // What was measured already is considered once more, and changes nothing.
        search.SearchBeyond(-1.0, leastPutOff);
        best = search.best();
      }
    }
  }
  resultIndex = best.index;
  ratio = best.ratio;
  return maxDistance > best.distance;
}

}  // namespace

int VorelGeometryAlgorithm::ProjectionPosToLine(const GeoCoordinateZ& start, const GeoCoordinateZ& end,
                                                const GeoCoordinateZ& pos, GeoCoordinateZ& foot,
                                                double& ratio) {
  const Projection projection = ProjectOntoSegment(start, end, pos, LongitudeScale(pos));
  if (projection.isDegenerate) {
    foot = start;  // copied: an infinite height difference times 0 would give NaN
  } else {
    foot = GeoCoordinateZ((end.longitude - start.longitude) * projection.ratio + start.longitude,
                          (end.latitude - start.latitude) * projection.ratio + start.latitude,
                          internal::HeightAddedInFloat(start.z, end.z, projection.ratio));
  }
  ratio = projection.ratio;
  return projection.code;
}

bool VorelGeometryAlgorithm::ProjectionPosToLines(const GeoCoordinateZ& pos,
                                                  const std::vector<GeoCoordinateZ>& line, int& segmentIndex,
                                                  int& resultIndex, double& ratio) {
  constexpr double kShortestSegment = 0.1;  // metres
  if (IsNoPosition(pos)) return false;
  const double scale = LongitudeScale(pos);
  const Surroundings surroundings(pos, scale);
  int direction = 0;  // of the walk: 0 until the first projection outside a segment
  std::int64_t i = segmentIndex;
  while (i >= 0) {
    if (i + 1 >= static_cast<std::int64_t>(line.size())) return false;
    const GeoCoordinateZ& start = line[static_cast<std::size_t>(i)];
    const GeoCoordinateZ& end = line[static_cast<std::size_t>(i) + 1];
    if (surroundings.IsShorterThan(kShortestSegment, start, end, surroundings.OffsetOf(start),
                                   surroundings.OffsetOf(end))) {
      i += direction == 0 ? 1 : direction;
    } else {
      const Projection projection = ProjectOntoSegment(start, end, pos, scale);
      ratio = projection.ratio;
      if (projection.code == 0) {
        const bool isAtSecondPoint = ratio >= 1.0;
        resultIndex = static_cast<int>(isAtSecondPoint ? i + 1 : i);
        if (isAtSecondPoint) ratio = 0.0;
        return true;
      }
      if (direction * projection.code < 0) {
        // The walk came from the other side: the position lies in the wedge outside the shared vertex.
        resultIndex = static_cast<int>(projection.code == 1 ? i + 1 : i);
        ratio = 0.0;
        return true;
      }
      direction = projection.code;
      i += direction;
    }
    segmentIndex = static_cast<int>(i);
  }
  return false;
}

bool VorelGeometryAlgorithm::ProjectionPosToLinesDistance(const GeoCoordinateZ& pos,
                                                          const std::vector<GeoCoordinateZ>& line,
                                                          int& startIndex, int& resultIndex, double& ratio,
                                                          double acceptDistance, double maxDistance,
                                                          int maxFarSegments) {
  // Deliberate: a maxDistance beyond the distance of nothing found reports success.
  constexpr ScanRules kRules{999988.0, 0.01, false, 0.0, 0.0};
  return ScanSegments(kRules, pos, line, startIndex, resultIndex, ratio, acceptDistance, maxDistance,
                      maxFarSegments);
}

bool VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
    const GeoCoordinateZ& pos, double heading, const std::vector<GeoCoordinateZ>& line, int& startIndex,
    int& resultIndex, double& ratio, double acceptDistance, double maxDistance, double headingTolerance,
    int maxFarSegments) {
  constexpr double kNothingFound = static_cast<double>(std::numeric_limits<float>::max());
  // Deliberate: short segments are not skipped here.
  return ScanSegments({kNothingFound, 0.0, true, heading, headingTolerance}, pos, line, startIndex,
                      resultIndex, ratio, acceptDistance, maxDistance, maxFarSegments);
}

int VorelGeometryAlgorithm::PosInAB(const GeoCoordinateZ& pos, const GeoCoordinateZ& a,
                                    const GeoCoordinateZ& b, double& ratio) {
  constexpr double kLongestDetour = 0.1;  // metres
  const double metresToA = internal::MetresBetween(pos, a);
  const double metresToB = internal::MetresBetween(pos, b);
  const double length = internal::MetresBetween(b, a);
  if (std::fabs(metresToA + metresToB - length) <= kLongestDetour) {
    ratio = internal::ClampRatio(length == 0.0 ? 0.0 : metresToA / length);
    return 0;
  }
  return metresToB <= metresToA ? 1 : -1;
}

}  // namespace vorel
