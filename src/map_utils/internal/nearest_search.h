#ifndef VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_
#define VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_

// The nearest segment of a line, found by cheap bounds, and what a scan for it goes by. Internal linkage as in lanes.h.

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/geo_utils.h"
#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/projection_bounds.h"

namespace vorel {
namespace internal {
namespace {

/// The best segment of a scan so far.
struct Best {
  int index;  // in the line, of its first point
  double ratio;
  double distance;  // metres
};

/// What tells one scan for the nearest segment from the other. Values, not types: the two share their code.
struct ScanRules {
  double nothingFound;     // metres: the distance of the best before there is one
  double shortestSegment;  // metres: shorter segments are skipped; 0: none is
  bool goesByHeading;  // the first segment is recorded, and a later one becomes the best on the heading only
  double heading;      // degrees
  double headingTolerance;  // degrees
};

/// A scan's line and position, and what its rules say of a segment.
struct Scan {
  const ScanRules& rules;
  const std::vector<tarvo::GeoCoordinateZ>& line;
  const tarvo::GeoCoordinate& pos;
  double scale;  // LongitudeScale(pos)
  Surroundings surroundings;

  Scan(const ScanRules& scanRules, const std::vector<tarvo::GeoCoordinateZ>& scannedLine,
       const tarvo::GeoCoordinate& position)
      : rules(scanRules),
        line(scannedLine),
        pos(position),
        scale(LongitudeScale(position)),
        surroundings(position, scale) {}

  bool IsTooShort(std::size_t i, const Offset& start, const Offset& end) const {
    return rules.shortestSegment > 0.0 &&
           surroundings.IsShorterThan(rules.shortestSegment, line[i], line[i + 1], start, end);
  }

  /// Whether a segment that is nearer than the best may replace it.
  bool IsEligible(std::size_t i, const Offset& start, const Offset& end) const {
    if (!rules.goesByHeading) return true;
    if (!(start.isInReach && end.isInReach)) return LineMatchesHeading(i);
    return SegmentMatchesHeading(i, start.longitude, start.latitude, end.longitude, end.latitude);
  }

  /// Whether the position falls between the ends of a segment, or on them.
  bool IsBeside(std::size_t i) const {
    return ProjectOntoSegment(line[i], line[i + 1], pos, scale).code == 0;
  }

  /// A single segment, the plain way.
  __attribute__((noinline)) Best Measure(std::size_t i) const {
    const double ratio = ClampRatio(ProjectOntoSegment(line[i], line[i + 1], pos, scale).ratio);
    return {static_cast<int>(i), ratio, DistanceToSegment(line[i], line[i + 1], ratio, pos)};
  }

  /// So many in a row take little longer than one.
  static constexpr std::size_t kMeasuredAtOnce = 4;

  /// Measures the segment `i` and perhaps some after it.
  /// @param ratios, distances  with room for kMeasuredAtOnce
  /// @return the number measured
  std::size_t MeasureSome(std::size_t i, double* ratios, double* distances) const {
    const std::size_t left = line.size() - 1 - i;
    const std::size_t count = left < kMeasuredAtOnce ? left : kMeasuredAtOnce;
    if (MeasureSegments(&line[i], count, pos, scale, ratios, distances)) return count;
    const Best measured = Measure(i);
    ratios[0] = measured.ratio;
    distances[0] = measured.distance;
    return 1;
  }

 private:
  // Apart, for it is long; by numbers, so that the caller's offsets can stay in registers.
  __attribute__((noinline)) bool SegmentMatchesHeading(std::size_t i, double startLongitude,
                                                       double startLatitude, double endLongitude,
                                                       double endLatitude) const {
    const Answer answer =
        surroundings.MatchesHeading(rules.heading, rules.headingTolerance,
                                    {startLongitude, startLatitude, true}, {endLongitude, endLatitude, true});
    return answer == Answer::kUnknown ? LineMatchesHeading(i) : answer == Answer::kYes;
  }

  /// Whether the line runs, from its point `index` on, on the heading. Its direction there is measured over more than
  /// half a metre, for shorter steps of a digitised line point anywhere; a line that ends before that matches itself.
  __attribute__((noinline)) bool LineMatchesHeading(std::size_t index) const {
    double segmentHeading = rules.heading;
    for (std::size_t k = index + 1; k < line.size(); ++k) {
      if (MetresBetween(line[index], line[k]) > kShortestHeadingBase) {
        segmentHeading =
            tarvo::kx::GeoUtils::GetRadianNorth(line[index], line[k]) / tarvo::geodesy::kPi * 180.0;
        break;
      }
    }
    const double difference = std::fabs(segmentHeading - rules.heading);
    return rules.headingTolerance > difference || difference > 360.0 - rules.headingTolerance;
  }
};

/// The nearest of the segments from `first` on that count, of equally near ones the first, starting from the best so far.
///
/// A scan that nothing ends leaves the segment of least distance whichever way it goes, as long as equal distances go to
/// the first; so segments come in any order, and one that is surely farther than the best need not come at all. They go by
/// blocks: one whose box is surely farther is passed over whole, the others are measured whole. To consider a segment
/// twice changes nothing.
class NearestSearch {
 public:
  /// Segments per block; the last block takes up to half as many more.
  static constexpr std::size_t kBlock = 8;

  NearestSearch(const Scan& scan, std::size_t first, const Best& best)
      : scan_(scan), first_(first), best_(best), beyondBestSquared_(Bounds::SquareToExceed(best.distance)) {}

  const Best& best() const { return best_; }

  /// Considers all segments, those whose blocks may be nearer than a usual range first.
  void SearchAll() {
    const std::size_t segmentCount = scan_.line.size() - 1 - first_;
    // A single block is sooner measured than looked at.
    if (segmentCount <= kLargestBlock) {
      if (segmentCount > 0) Consider(first_, segmentCount);
      return;
    }
    constexpr double kUsualRange = 10.0;  // metres: finds a position on the line in one pass
    const double usualSquared = Bounds::SquareToExceed(kUsualRange);
    std::size_t nearestPutOff = scan_.line.size();
    double leastPutOffSquared = std::numeric_limits<double>::infinity();
    ForEachBlock([&](std::size_t i, std::size_t count, double lowerSquared) {
      if (!(lowerSquared > usualSquared)) {
        if (!(lowerSquared > beyondBestSquared_)) Consider(i, count);
      } else if (lowerSquared < leastPutOffSquared) {
        leastPutOffSquared = lowerSquared;
        nearestPutOff = i;
      }
    });
    if (nearestPutOff < scan_.line.size() && !(leastPutOffSquared > beyondBestSquared_)) {
      SearchBeyond(usualSquared, nearestPutOff);
    }
  }

  /// Considers the blocks whose bound exceeds a squared distance, and perhaps others. The one at the segment `nearest`
  /// comes first, so that few others can beat it.
  __attribute__((noinline)) void SearchBeyond(double squared, std::size_t nearest) {
    Consider(nearest, CountOfBlock(nearest));
    ForEachBlock([&](std::size_t i, std::size_t count, double lowerSquared) {
      if (lowerSquared > squared && !(lowerSquared > beyondBestSquared_)) Consider(i, count);
    });
  }

 private:
  using Bounds = LocalDistanceBounds;
  static constexpr std::size_t kLargestBlock = kBlock + kBlock / 2;

  std::size_t CountOfBlock(std::size_t i) const {
    const std::size_t left = scan_.line.size() - 1 - i;
    return left > kLargestBlock ? kBlock : left;
  }

  template <class Function>
  void ForEachBlock(const Function& function) const {
    for (std::size_t i = first_; i + 1 < scan_.line.size();) {
      const std::size_t count = CountOfBlock(i);
      function(i, count, scan_.surroundings.LowerSquaredOfBox(&scan_.line[i], count + 1));
      i += count;
    }
  }

  /// Considers a block of at least one segment.
  __attribute__((noinline)) void Consider(std::size_t start, std::size_t count) {
    double ratios[kLargestBlock];
    double distances[kLargestBlock];
    if (!MeasureSegments(&scan_.line[start], count, scan_.pos, scan_.scale, ratios, distances)) {
      for (std::size_t i = start; i < start + count; ++i) MayReplaceBest(scan_.Measure(i));
      return;
    }
    for (;;) {
      std::size_t nearest = 0;  // the first of the nearest
      for (std::size_t k = 1; k < count; ++k) nearest = distances[k] < distances[nearest] ? k : nearest;
      const Best found = {static_cast<int>(start + nearest), ratios[nearest], distances[nearest]};
      // Where one that is nearer than the best does not count, the next one may.
      if (!IsNearer(found) || MayReplaceBest(found)) return;
      distances[nearest] = std::numeric_limits<double>::infinity();
    }
  }

  bool IsNearer(const Best& found) const {
    return best_.distance > found.distance || (best_.distance == found.distance && best_.index > found.index);
  }

  __attribute__((noinline)) bool MayReplaceBest(const Best& found) {
    if (!IsNearer(found)) return false;
    const std::size_t i = static_cast<std::size_t>(found.index);
    const Offset start = scan_.surroundings.OffsetOf(scan_.line[i]);
    const Offset end = scan_.surroundings.OffsetOf(scan_.line[i + 1]);
    if (scan_.IsTooShort(i, start, end) || !scan_.IsEligible(i, start, end)) return false;
    best_ = found;
    beyondBestSquared_ = Bounds::SquareToExceed(found.distance);
    return true;
  }

  const Scan& scan_;
  std::size_t first_;
  Best best_;
  double beyondBestSquared_;
};

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_
