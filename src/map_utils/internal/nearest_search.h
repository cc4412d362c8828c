#ifndef VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_
#define VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_

// The nearest segment of a line, found by cheap bounds. Internal linkage as in lanes.h.

#include <cstddef>
#include <limits>
#include <vector>

#include "base/geo_coordinate.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/projection_bounds.h"

namespace vorel {
namespace internal {
namespace {

/// The best segment of a scan so far.
struct Best {
  int index;
  double ratio;
  double distance;  // metres
};

template <class Rules>
bool IsTooShort(const Surroundings& surroundings, const tarvo::GeoCoordinate& start,
                const tarvo::GeoCoordinate& end, const Offset& startOffset, const Offset& endOffset) {
  return Rules::kShortestSegment > 0.0 &&
         surroundings.IsShorterThan(Rules::kShortestSegment, start, end, startOffset, endOffset);
}

/// The nearest of the segments from `first` on that count, of equally near ones the first, starting from the best so far.
///
/// A scan that nothing ends leaves the segment of least distance whichever way it goes, as long as equal distances go to
/// the first; so segments come in any order, and one that is surely farther than the best need not come at all. They go by
/// blocks. A block whose box is surely farther is passed over whole; of the others those segments are measured whose own
/// bound leaves it open that they are nearer, that with the least bound first. To consider a segment twice changes nothing.
/// Blocks out of reach of the bounds, with an invalid point or without, are measured segment by segment.
///
/// Its steps are kept out of line: they are too long to stand at each place that calls them.
template <class Rules>
class NearestSearch {
 public:
  /// Segments per block; the last block takes up to half as many more.
  static constexpr std::size_t kBlock = 8;

  NearestSearch(const Rules& rules, const Surroundings& surroundings, const tarvo::GeoCoordinate& pos,
                double scale, const std::vector<tarvo::GeoCoordinateZ>& line, std::size_t first,
                const Best& best)
      : rules_(rules),
        surroundings_(surroundings),
        pos_(pos),
        scale_(scale),
        line_(line),
        first_(first),
        best_(best),
        beyondBestSquared_(Bounds::SquareToExceed(best.distance)) {}

  const Best& best() const { return best_; }

  /// Considers all segments, those whose blocks may be nearer than a usual range first.
  __attribute__((noinline)) void SearchAll() {
    const std::size_t segmentCount = line_.size() - 1 - first_;
    if (segmentCount <= kMeasuredAtOnce) {
      ConsiderEach(first_, segmentCount);
      return;
    }
    if (segmentCount <= kLargestBlock) {
      Consider(first_, segmentCount, BoxOfBlock(first_, segmentCount));
      return;
    }
    constexpr double kUsualRange = 10.0;  // metres: finds a position on the line in one pass
    const double usualSquared = Bounds::SquareToExceed(kUsualRange);
    std::size_t nearestPutOff = line_.size();
    double leastPutOffSquared = std::numeric_limits<double>::infinity();
    ForEachBlock([&](std::size_t i, std::size_t count, const Box& box) {
      if (!(box.lowerSquared > usualSquared)) {
        if (!(box.lowerSquared > beyondBestSquared_)) Consider(i, count, box);
      } else if (box.lowerSquared < leastPutOffSquared) {
        leastPutOffSquared = box.lowerSquared;
        nearestPutOff = i;
      }
    });
    if (nearestPutOff < line_.size() && !(leastPutOffSquared > beyondBestSquared_)) {
      SearchBeyond(usualSquared, nearestPutOff);
    }
  }

  /// Considers the blocks whose bound exceeds a squared distance, and perhaps others. The one at the segment `nearest`
  /// comes first, so that few others can beat it.
  __attribute__((noinline)) void SearchBeyond(double squared, std::size_t nearest) {
    const std::size_t count = CountOfBlock(nearest);
    Consider(nearest, count, BoxOfBlock(nearest, count));
    ForEachBlock([&](std::size_t i, std::size_t blockCount, const Box& box) {
      if (box.lowerSquared > squared && !(box.lowerSquared > beyondBestSquared_))
        Consider(i, blockCount, box);
    });
  }

 private:
  using Bounds = LocalDistanceBounds;
  static constexpr std::size_t kLargestBlock = kBlock + kBlock / 2;
  /// So few segments are sooner measured than bounded.
  static constexpr std::size_t kMeasuredAtOnce = 2;

  std::size_t CountOfBlock(std::size_t i) const {
    const std::size_t left = line_.size() - 1 - i;
    return left > kLargestBlock ? kBlock : left;
  }

  Box BoxOfBlock(std::size_t i, std::size_t count) const {
    return surroundings_.BoxAround(&line_[i], count + 1);
  }

  template <class Function>
  void ForEachBlock(const Function& function) const {
    for (std::size_t i = first_; i + 1 < line_.size();) {
      const std::size_t count = CountOfBlock(i);
      function(i, count, BoxOfBlock(i, count));
      i += count;
    }
  }

  __attribute__((noinline)) void Consider(std::size_t blockStart, std::size_t count, const Box& box) {
    const tarvo::GeoCoordinateZ* vertices = &line_[blockStart];
    if (!box.isInReach) {
      ConsiderEach(blockStart, count);
      return;
    }
    double ratios[kLargestBlock];
    double lowersSquared[kLargestBlock];
    const double leastSquared =
        surroundings_.ProjectOntoSegments(vertices, count, box.reach, ratios, lowersSquared);
    if (leastSquared > beyondBestSquared_) return;
    std::size_t least = 0;
    for (std::size_t k = 1; k < count; ++k) least = lowersSquared[k] == leastSquared ? k : least;
    ConsiderSegment(blockStart + least, ratios[least]);
    for (std::size_t k = 0; k < count; ++k) {
      if (!(lowersSquared[k] > beyondBestSquared_) && k != least) ConsiderSegment(blockStart + k, ratios[k]);
    }
  }

  void ConsiderEach(std::size_t start, std::size_t count) {
    for (std::size_t i = start; i < start + count; ++i) {
      ConsiderSegment(i, ClampRatio(ProjectOntoSegment(line_[i], line_[i + 1], pos_, scale_).ratio));
    }
  }

  __attribute__((noinline)) void ConsiderSegment(std::size_t i, double clampedRatio) {
    const double distance = DistanceToSegment(line_[i], line_[i + 1], clampedRatio, pos_);
    const int index = static_cast<int>(i);
    const bool isNearer = best_.distance > distance || (best_.distance == distance && best_.index > index);
    if (!isNearer) return;
    const Offset start = surroundings_.OffsetOf(line_[i]);
    const Offset end = surroundings_.OffsetOf(line_[i + 1]);
    if (IsTooShort<Rules>(surroundings_, line_[i], line_[i + 1], start, end) ||
        !rules_.IsEligible(surroundings_, i, start, end)) {
      return;
    }
    best_ = {index, clampedRatio, distance};
    beyondBestSquared_ = Bounds::SquareToExceed(distance);
  }

  const Rules& rules_;
  const Surroundings& surroundings_;
  const tarvo::GeoCoordinate& pos_;
  double scale_;
  const std::vector<tarvo::GeoCoordinateZ>& line_;
  std::size_t first_;
  Best best_;
  double beyondBestSquared_;
};

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_NEAREST_SEARCH_H_
