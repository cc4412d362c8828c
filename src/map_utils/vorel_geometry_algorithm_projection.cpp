#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/geodesy/distance.h"
#include "base/geodesy/wgs84.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/lanes.h"
#include "map_utils/internal/near_bearing.h"

namespace vorel {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::geodesy::kPi;
using tarvo::geodesy::kRadiansPerDegree;

namespace {

/// Where a position falls along a segment, before any clamp.
struct Projection {
  int code;           // -1 before the segment's first point, 0 within, 1 beyond its second point
  double ratio;       // of the way from the first point to the second
  bool isDegenerate;  // the segment is too short to tell; code and ratio are 0
};

bool IsNoPosition(const GeoCoordinate& pos) {
  return pos.longitude == 0.0 && pos.latitude == 0.0;
}

/// By how much a difference of longitudes shrinks on the local plane of a projection.
double LongitudeScale(const GeoCoordinate& pos) {
  return std::cos(pos.latitude / 180.0 * kPi);
}

constexpr double kShortestSquaredLength = 1e-13;  // square degrees; a length of some 3 cm

/// `scale` is LongitudeScale(pos), passed in so that a walk along a line computes it once.
Projection ProjectOntoSegment(const GeoCoordinate& start, const GeoCoordinate& end, const GeoCoordinate& pos,
                              double scale) {
  const double alongLongitude = (end.longitude - start.longitude) * scale;
  const double alongLatitude = end.latitude - start.latitude;
  const double squaredLength = alongLongitude * alongLongitude + alongLatitude * alongLatitude;
  if (kShortestSquaredLength > squaredLength) return {0, 0.0, true};
  const double ratio = (alongLongitude * (scale * (pos.longitude - start.longitude)) +
                        (pos.latitude - start.latitude) * alongLatitude) /
                       squaredLength;
  return {ratio < 0.0 ? -1 : (ratio > 1.0 ? 1 : 0), ratio, false};
}

/// Metres from `pos` to the point at the clamped `ratio` of a segment.
double DistanceToSegment(const GeoCoordinate& start, const GeoCoordinate& end, double ratio,
                         const GeoCoordinate& pos) {
  const GeoCoordinate closest(start.longitude + ratio * (end.longitude - start.longitude),
                              start.latitude + ratio * (end.latitude - start.latitude));
  return tarvo::geodesy::Distance(closest, pos);
}

constexpr double kShortestHeadingBase = 0.5;  // metres

/// Whether the line runs, from its point `index` on, on `heading`. Its direction there is measured over more than half
/// a metre, for shorter steps of a digitised line point anywhere; a line that ends before that matches itself.
bool HeadingMatches(const std::vector<GeoCoordinateZ>& line, std::size_t index, double heading,
                    double headingTolerance) {
  double segmentHeading = heading;
  for (std::size_t k = index + 1; k < line.size(); ++k) {
    if (tarvo::geodesy::Distance(line[index], line[k]) > kShortestHeadingBase) {
      segmentHeading = tarvo::kx::GeoUtils::GetRadianNorth(line[index], line[k]) / kPi * 180.0;
      break;
    }
  }
  const double difference = std::fabs(segmentHeading - heading);
  return headingTolerance > difference || difference > 360.0 - headingTolerance;
}

/// A vertex of a line as seen from the position, degrees.
struct Offset {
  double longitude;
  double latitude;
  bool isInReach;  // of the bounds; false for NaN
};

/// The box around some vertices in a row as seen from the position.
struct Box {
  bool isInReach;       // of the bounds, and with it all points of the box
  double reach;         // degrees
  double lowerSquared;  // of the distance to any point of the box, square metres; 0 out of reach
};

enum class Answer { kNo, kYes, kUnknown };

/// Cheap bounds of the distances about the position of a walk or a scan.
class Surroundings {
 public:
  /// @param scale  LongitudeScale(pos)
  Surroundings(const GeoCoordinate& pos, double scale)
      : pos_(pos),
        bounds_(scale),
        cosLatitude_(scale),
        // A position that cannot be a centre has nothing in reach.
        reach_(internal::LocalDistanceBounds::CanBeCentre(pos) ? internal::LocalDistanceBounds::kReach
                                                               : -1.0) {}

  Offset OffsetOf(const GeoCoordinate& vertex) const {
    const double longitude = vertex.longitude - pos_.longitude;
    const double latitude = vertex.latitude - pos_.latitude;
    const bool isInReach = (std::fabs(longitude) <= reach_) & (std::fabs(latitude) <= reach_);
    return {longitude, latitude, isInReach};
  }

  // The next two bound the distance of the position to every point of a segment in reach, by the nearest and the
  // farthest point of the box around it: whatever the projection and its roundings make of the closest point.

  double LowerSquared(const Offset& start, const Offset& end) const {
    const double reach = Larger(Larger(std::fabs(start.latitude), std::fabs(end.latitude)),
                                Larger(std::fabs(start.longitude), std::fabs(end.longitude)));
    return bounds_.LowerSquared(LeastSize(start.latitude, end.latitude),
                                LeastSize(start.longitude, end.longitude), reach);
  }

  double UpperSquared(const Offset& start, const Offset& end) const {
    return bounds_.UpperSquared(Larger(std::fabs(start.latitude), std::fabs(end.latitude)),
                                Larger(std::fabs(start.longitude), std::fabs(end.longitude)));
  }

  /// The box around `vertexCount` vertices, both coordinates at once.
  Box BoxAround(const GeoCoordinateZ* vertices, std::size_t vertexCount) const {
    using internal::TwoDoubles;
    using internal::TwoLanes;
    TwoDoubles lowest = internal::LoadPoint(vertices[0]);
    TwoDoubles highest = lowest;
    TwoDoubles sum = lowest;  // the least and the largest pass over NaN
    for (std::size_t k = 1; k < vertexCount; ++k) {
      const TwoDoubles vertex = internal::LoadPoint(vertices[k]);
      lowest = TwoLanes::Smaller(vertex, lowest);
      highest = TwoLanes::Larger(vertex, highest);
      sum += vertex;
    }
    const TwoDoubles pos = internal::LoadPoint(pos_);
    const TwoDoubles toLowest = lowest - pos;
    const TwoDoubles toHighest = highest - pos;
    const TwoDoubles largest = TwoLanes::Larger(-toLowest, toHighest);
    const double reach = Larger(largest[0], largest[1]);
    if (!((reach <= reach_) & (sum[0] == sum[0]) & (sum[1] == sum[1]))) return {false, 0.0, 0.0};
    const TwoDoubles least = TwoLanes::Larger(TwoLanes::Larger(toLowest, -toHighest), TwoLanes::All(0.0));
    return {true, reach, bounds_.LowerSquared(least[1], least[0], reach)};
  }

  /// Of each of `segmentCount` segments whose box is in reach: the clamped ratio of the position's projection, and a lower
  /// bound of the distance to the point there, which is tight. Two segments at a time, by the expressions of
  /// ProjectOntoSegment and DistanceToSegment: the ratios have their bits.
  /// @param segmentCount           at least 1
  /// @param ratios, lowersSquared  with room for an even number
  /// @return the least of the bounds
  double ProjectOntoSegments(const GeoCoordinateZ* vertices, std::size_t segmentCount, double reach,
                             double* ratios, double* lowersSquared) const {
    using internal::TwoDoubles;
    using internal::TwoLanes;
    const double perLatitude = bounds_.LeastPerSquaredLatitude();
    const double perLongitude = bounds_.LeastPerSquaredLongitude(reach);
    TwoDoubles leastSquared = TwoLanes::All(std::numeric_limits<double>::infinity());
    std::size_t k = 0;
    do {
      // The last one twice where their number is odd.
      const std::size_t second = k + 1 < segmentCount ? k + 1 : k;
      const GeoCoordinate* const starts[] = {&vertices[k], &vertices[second]};
      const GeoCoordinate* const ends[] = {&vertices[k + 1], &vertices[second + 1]};
      TwoDoubles startLongitude, startLatitude, endLongitude, endLatitude;
      TwoLanes::Gather(starts, startLongitude, startLatitude);
      TwoLanes::Gather(ends, endLongitude, endLatitude);
      const TwoDoubles longitudes = endLongitude - startLongitude;
      const TwoDoubles alongLongitude = longitudes * cosLatitude_;
      const TwoDoubles alongLatitude = endLatitude - startLatitude;
      const TwoDoubles squaredLength = alongLongitude * alongLongitude + alongLatitude * alongLatitude;
      const TwoDoubles anyRatio = (alongLongitude * (cosLatitude_ * (pos_.longitude - startLongitude)) +
                                   (pos_.latitude - startLatitude) * alongLatitude) /
                                  squaredLength;
      const auto isDegenerate = TwoLanes::Less(squaredLength, TwoLanes::All(kShortestSquaredLength));
      const TwoDoubles ratio =
          reinterpret_cast<TwoDoubles>(reinterpret_cast<internal::TwoFlags>(anyRatio) & ~isDegenerate);
      const TwoDoubles clampedRatio =
          TwoLanes::Smaller(TwoLanes::All(1.0), TwoLanes::Larger(TwoLanes::All(0.0), ratio));
      const TwoDoubles toLongitude = startLongitude + clampedRatio * longitudes - pos_.longitude;
      const TwoDoubles toLatitude = startLatitude + clampedRatio * alongLatitude - pos_.latitude;
      const TwoDoubles lowerSquared =
          perLatitude * (toLatitude * toLatitude) + perLongitude * (toLongitude * toLongitude);
      __builtin_memcpy(ratios + k, &clampedRatio, sizeof clampedRatio);
      __builtin_memcpy(lowersSquared + k, &lowerSquared, sizeof lowerSquared);
      leastSquared = TwoLanes::Smaller(lowerSquared, leastSquared);
      k += 2;
    } while (k < segmentCount);
    return Smaller(leastSquared[0], leastSquared[1]);
  }

  /// Whether the segment is shorter than `metres`: what its `Distance` says, which is rarely asked.
  bool IsShorterThan(double metres, const GeoCoordinate& start, const GeoCoordinate& end,
                     const Offset& startOffset, const Offset& endOffset) const {
    const bool isSurelyLonger = startOffset.isInReach && endOffset.isInReach &&
                                bounds_.LowerSquared(endOffset.latitude - startOffset.latitude,
                                                     endOffset.longitude - startOffset.longitude) >
                                    internal::LocalDistanceBounds::SquareToExceed(metres);
    return !isSurelyLonger && tarvo::geodesy::Distance(start, end) < metres;
  }

  /// What HeadingMatches says of a segment in reach, where a cheap bearing of that segment tells for sure.
  ///
  /// The sine and cosine at the segment's points come from the position's by two terms of Taylor's series, with errors
  /// below 1.1e-7, or a relative 6.4e-6 at 89 degrees. They turn the bearing by less than 7e-6, the two ways to
  /// subtract longitudes in radians by less than 2e-8 for half a metre: together less than 0.001 degree.
  Answer MatchesHeading(double heading, double headingTolerance, const Offset& start,
                        const Offset& end) const {
    constexpr double kRoom = 0.002;          // degrees
    constexpr double kLargestHeading = 1e6;  // degrees; differences from it round by far less than the room
    constexpr double kLargestError = 1e-5;   // radians
    const double longitudes = end.longitude - start.longitude;
    const bool isBase = bounds_.LowerSquared(end.latitude - start.latitude, longitudes) >
                        internal::LocalDistanceBounds::SquareToExceed(kShortestHeadingBase);
    if (!isBase || !(std::fabs(heading) <= kLargestHeading)) return Answer::kUnknown;
    const double sinLatitude = std::copysign(std::sqrt(1.0 - cosLatitude_ * cosLatitude_), pos_.latitude);
    const double toStart = start.latitude * kRadiansPerDegree;
    const double toEnd = end.latitude * kRadiansPerDegree;
    const internal::NearBearing bearing = internal::NearBearingBetween(
        toStart + pos_.latitude * kRadiansPerDegree, toEnd + pos_.latitude * kRadiansPerDegree,
        longitudes * kRadiansPerDegree,
        sinLatitude + cosLatitude_ * toStart - 0.5 * sinLatitude * (toStart * toStart),
        cosLatitude_ - sinLatitude * toEnd - 0.5 * cosLatitude_ * (toEnd * toEnd));
    if (!(bearing.error <= kLargestError)) return Answer::kUnknown;
    const double degrees = bearing.radians / kRadiansPerDegree;
    const double segmentHeading = degrees < 0.0 ? degrees + 360.0 : degrees;
    // It may be 0 as well as almost 360.
    if (!(segmentHeading > kRoom && segmentHeading < 360.0 - kRoom)) return Answer::kUnknown;
    const double difference = std::fabs(segmentHeading - heading);
    if (headingTolerance > difference + kRoom || difference - kRoom > 360.0 - headingTolerance) {
      return Answer::kYes;
    }
    if (headingTolerance <= difference - kRoom && difference + kRoom <= 360.0 - headingTolerance) {
      return Answer::kNo;
    }
    return Answer::kUnknown;
  }

 private:
  /// The least size of any value between the two.
  static double LeastSize(double a, double b) {
    // Negative where 0 lies between them.
    const double outside = Larger(Smaller(a, b), -Larger(a, b));
    return Larger(outside, 0.0);
  }

  // As one machine instruction: std::max returns a reference, which compilers are slower to see through.
  static double Larger(double a, double b) { return a < b ? b : a; }
  static double Smaller(double a, double b) { return b < a ? b : a; }

  GeoCoordinate pos_;
  internal::LocalDistanceBounds bounds_;
  double cosLatitude_;
  double reach_;
};

/// The best segment of a scan so far.
struct Best {
  int index;
  double ratio;
  double distance;  // metres
};

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

template <class Rules>
bool IsTooShort(const Surroundings& surroundings, const GeoCoordinate& start, const GeoCoordinate& end,
                const Offset& startOffset, const Offset& endOffset) {
  return Rules::kShortestSegment > 0.0 &&
         surroundings.IsShorterThan(Rules::kShortestSegment, start, end, startOffset, endOffset);
}

/// The nearest of the segments from `first` on that count, of equally near ones the first: in any order, since a scan that
/// nothing ends comes to the same whichever way it goes. What the best so far is to the caller, it is to the search.
///
/// Segments go by blocks. One whose box is surely farther than the best is passed over whole; of the others those segments
/// are measured whose own bound leaves it open that they are nearer, that with the least bound first.
template <class Rules>
class NearestSearch {
 public:
  /// Segments per block; the last block takes up to half as many more.
  static constexpr std::size_t kBlock = 8;

  NearestSearch(const Rules& rules, const Surroundings& surroundings, const GeoCoordinate& pos, double scale,
                const std::vector<GeoCoordinateZ>& line, std::size_t first, const Best& best)
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
  void SearchAll() {
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
  void SearchBeyond(double squared, std::size_t nearest) {
    const std::size_t count = CountOfBlock(nearest);
    Consider(nearest, count, BoxOfBlock(nearest, count));
    ForEachBlock([&](std::size_t i, std::size_t blockCount, const Box& box) {
      if (box.lowerSquared > squared && !(box.lowerSquared > beyondBestSquared_))
        Consider(i, blockCount, box);
    });
  }

 private:
  using Bounds = internal::LocalDistanceBounds;
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

  // Once in the program for each kind of scan, as the next one: they are long.
  __attribute__((noinline)) void Consider(std::size_t blockStart, std::size_t count, const Box& box) {
    const GeoCoordinateZ* vertices = &line_[blockStart];
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
      ConsiderSegment(i,
                      internal::ClampRatio(ProjectOntoSegment(line_[i], line_[i + 1], pos_, scale_).ratio));
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
  const GeoCoordinate& pos_;
  double scale_;
  const std::vector<GeoCoordinateZ>& line_;
  std::size_t first_;
  Best best_;
  double beyondBestSquared_;
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
  using Search = NearestSearch<Rules>;
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
