#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/nearest_search.h"
#include "map_utils/internal/projection_bounds.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::kPi;

namespace {

using internal::Answer;
using internal::Best;
using internal::Box;
using internal::DistanceToSegment;
using internal::IsTooShort;
using internal::LongitudeScale;
using internal::Offset;
using internal::Projection;
using internal::ProjectOntoSegment;
using internal::Surroundings;

bool IsNoPosition(const GeoCoordinate& pos) {
  return pos.longitude == 0.0 && pos.latitude == 0.0;
}

/// Whether the line runs, from its point `index` on, on `heading`. Its direction there is measured over more than half
/// a metre, for shorter steps of a digitised line point anywhere; a line that ends before that matches itself.
bool HeadingMatches(const std::vector<GeoCoordinateZ>& line, std::size_t index, double heading,
                    double headingTolerance) {
  double segmentHeading = heading;
  for (std::size_t k = index + 1; k < line.size(); ++k) {
    if (tarvo::geodesy::Distance(line[index], line[k]) > internal::kShortestHeadingBase) {
      segmentHeading = tarvo::kx::GeoUtils::GetRadianNorth(line[index], line[k]) / kPi * 180.0;
      break;
    }
  }
  const double difference = std::fabs(segmentHeading - heading);
  return headingTolerance > difference || difference > 360.0 - headingTolerance;
}

/// What tells `ProjectionPosToLinesDistance` from the scan with headings.
struct NearestSegment {
  static constexpr double kNothingFound =
      999988.0;  // metres; deliberate: a maxDistance beyond it reports success
  static constexpr double kShortestSegment = 0.01;  // metres
  static constexpr bool kRecordsFirstSegment = false;

  /// Whether a segment that is nearer than the best may replace it.
  bool IsEligible(const Surroundings&, std::size_t /*index*/, const Offset&, const Offset&) const {
    return true;
  }
};

struct NearestSegmentOnHeading {
  static constexpr double kNothingFound = static_cast<double>(std::numeric_limits<float>::max());
  static constexpr double kShortestSegment = 0.0;  // deliberate: short segments are not skipped here
  static constexpr bool kRecordsFirstSegment = true;

  const std::vector<GeoCoordinateZ>& line;
  double heading;           // degrees
  double headingTolerance;  // degrees

  bool IsEligible(const Surroundings& surroundings, std::size_t index, const Offset& start,
                  const Offset& end) const {
    if (start.isInReach && end.isInReach) {
      const Answer answer = surroundings.MatchesHeading(heading, headingTolerance, start, end);
      if (answer != Answer::kUnknown) return answer == Answer::kYes;
    }
    return HeadingMatches(line, index, heading, headingTolerance);
  }
};

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
template <class Rules>
bool ScanSegments(const Rules& rules, const GeoCoordinateZ& pos, const std::vector<GeoCoordinateZ>& line,
                  int& startIndex, int& resultIndex, double& ratio, double acceptDistance, double maxDistance,
                  int maxFarSegments) {
  using Bounds = internal::LocalDistanceBounds;
  using Search = internal::NearestSearch<Rules>;
  if (IsNoPosition(pos) || line.empty()) return false;
  Best best{startIndex, 0.0, Rules::kNothingFound};
  const std::size_t segmentCount = line.size() - 1;
  // A negative start becomes a huge index: nothing is scanned.
  const std::size_t first = static_cast<std::size_t>(startIndex);
  if (first < segmentCount) {
    const double scale = LongitudeScale(pos);
    const Surroundings surroundings(pos, scale);
    const bool canFarSegmentsEndScan =
        maxFarSegments < 0 || static_cast<std::size_t>(maxFarSegments) < segmentCount - first;
    if (!canFarSegmentsEndScan && !(acceptDistance > 0.0)) {
      std::size_t next = first;
      if (Rules::kRecordsFirstSegment) {
        const double clampedRatio =
            internal::ClampRatio(ProjectOntoSegment(line[first], line[first + 1], pos, scale).ratio);
        best = {startIndex, clampedRatio, DistanceToSegment(line[first], line[first + 1], clampedRatio, pos)};
        ++next;
      }
      Search search(rules, surroundings, pos, scale, line, next, best);
      search.SearchAll();
      best = search.best();
    } else {
      const double accept = acceptDistance > 0.0 ? acceptDistance : 0.0;  // also for NaN
      double putOffBeyond = maxDistance > 0.0 ? maxDistance : 0.0;
      if (putOffBeyond < accept) putOffBeyond = accept;
      const double putOffBeyondSquared = Bounds::SquareToExceed(putOffBeyond);
      const double inRangeSquared = Bounds::SquareToStayBelow(maxDistance);
      double notBestBeyondSquared = Bounds::SquareToExceed(best.distance);

      double leastPutOffSquared = std::numeric_limits<double>::infinity();
      std::size_t leastPutOff = first;
      const auto putOff = [&](std::size_t i, double lowerSquared) {
        if (lowerSquared < leastPutOffSquared) {
          leastPutOffSquared = lowerSquared;
          leastPutOff = i;
        }
      };
      int farCount = 0;
      // A short line is sooner walked than looked at by blocks.
      std::size_t nextBlock = segmentCount - first > 2 * Search::kBlock
                                  ? first + (Rules::kRecordsFirstSegment ? 1 : 0)
                                  : segmentCount;
      Offset start = surroundings.OffsetOf(line[first]);
      Offset end = start;
      for (std::size_t i = first; i < segmentCount; ++i, start = end) {
        const bool mayCountAsFar = canFarSegmentsEndScan && maxDistance > best.distance;
        if (i == nextBlock) {
          while (!mayCountAsFar && i + Search::kBlock <= segmentCount) {
            const Box box = surroundings.BoxAround(&line[i], Search::kBlock + 1);
            if (!(box.lowerSquared > putOffBeyondSquared)) break;
            putOff(i, box.lowerSquared);
            i += Search::kBlock;
          }
          if (i >= segmentCount) break;
          if (i > nextBlock) start = surroundings.OffsetOf(line[i]);
          nextBlock = i + Search::kBlock;
        }
        end = surroundings.OffsetOf(line[i + 1]);
        if (start.isInReach & end.isInReach && !(Rules::kRecordsFirstSegment && i == first)) {
          const double lowerSquared = surroundings.LowerSquared(start, end);
          if (lowerSquared > putOffBeyondSquared) {
            if (!mayCountAsFar) {
              putOff(i, lowerSquared);
            } else if (!IsTooShort<Rules>(surroundings, line[i], line[i + 1], start, end)) {
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
        if (IsTooShort<Rules>(surroundings, line[i], line[i + 1], start, end)) continue;
        const Projection projection = ProjectOntoSegment(line[i], line[i + 1], pos, scale);
        const double clampedRatio = internal::ClampRatio(projection.ratio);
        const double distance = DistanceToSegment(line[i], line[i + 1], clampedRatio, pos);
        // Deliberate: an early accept does not ask for the heading.
        if (projection.code == 0 && acceptDistance > distance) {
          startIndex = static_cast<int>(i);
          resultIndex = static_cast<int>(i);
          ratio = clampedRatio;
          return true;
        }
        // Deliberate: the first segment scanned with headings is not asked for its own.
        const bool isNewBest = (Rules::kRecordsFirstSegment && best.distance == Rules::kNothingFound) ||
                               (best.distance > distance && rules.IsEligible(surroundings, i, start, end));
        if (isNewBest) {
          best = {static_cast<int>(i), clampedRatio, distance};
          notBestBeyondSquared = Bounds::SquareToExceed(distance < accept ? accept : distance);
        } else if (maxDistance > best.distance && distance > maxDistance) {
          if (farCount >= maxFarSegments) break;
          ++farCount;
        }
      }

      const bool isAnyPutOff = leastPutOffSquared < std::numeric_limits<double>::infinity();
      if (isAnyPutOff && best.distance > putOffBeyond) {
        Search search(rules, surroundings, pos, scale, line, first, best);
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
  return ScanSegments(NearestSegment{}, pos, line, startIndex, resultIndex, ratio, acceptDistance,
                      maxDistance, maxFarSegments);
}

bool VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
    const GeoCoordinateZ& pos, double heading, const std::vector<GeoCoordinateZ>& line, int& startIndex,
    int& resultIndex, double& ratio, double acceptDistance, double maxDistance, double headingTolerance,
    int maxFarSegments) {
  return ScanSegments(NearestSegmentOnHeading{line, heading, headingTolerance}, pos, line, startIndex,
                      resultIndex, ratio, acceptDistance, maxDistance, maxFarSegments);
}

int VorelGeometryAlgorithm::PosInAB(const GeoCoordinateZ& pos, const GeoCoordinateZ& a,
                                    const GeoCoordinateZ& b, double& ratio) {
  constexpr double kLongestDetour = 0.1;  // metres
  const double metresToA = tarvo::geodesy::Distance(pos, a);
  const double metresToB = tarvo::geodesy::Distance(pos, b);
  const double length = tarvo::geodesy::Distance(b, a);
  if (std::fabs(metresToA + metresToB - length) <= kLongestDetour) {
    ratio = internal::ClampRatio(length == 0.0 ? 0.0 : metresToA / length);
    return 0;
  }
  return metresToB <= metresToA ? 1 : -1;
}

}  // namespace vorel
