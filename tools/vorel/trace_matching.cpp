#include "tools/vorel/trace_matching.h"

#include <algorithm>
#include <cmath>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/route_symbols.h"

namespace vorel::tool {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
// Less than a degree of the ellipsoid has anywhere, of latitude or (times the cosine) of longitude, so that the box
// drawn with it is never too small.
constexpr double kFewestMetresPerDegree = 110000.0;
constexpr double kNearPoleDegrees = 89.0;

bool SamePlace(const GeoCoordinateZ& a, const GeoCoordinateZ& b) {
  return static_cast<const GeoCoordinate&>(a) == static_cast<const GeoCoordinate&>(b);
}

/// The point at `ratio` of the way; in double, for the library's own helper takes a float ratio and would be off by a
/// hundredth of a millimetre on a segment of 200 m.
GeoCoordinateZ PointAlong(const GeoCoordinateZ& start, const GeoCoordinateZ& end, double ratio) {
  const double height = (1.0 - ratio) * static_cast<double>(start.z) + ratio * static_cast<double>(end.z);
  return {start.longitude + ratio * (end.longitude - start.longitude),
          start.latitude + ratio * (end.latitude - start.latitude), static_cast<float>(height)};
}

/// The scan's own rule for the heading of a segment.
bool RunsOnHeading(const std::vector<GeoCoordinateZ>& points, std::size_t segment, double heading,
                   double tolerance) {
  constexpr double kFarEnoughMetres = 0.5;
  std::size_t ahead = segment + 1;
  while (ahead < points.size() && !(points[segment].DistanceTo(points[ahead]) > kFarEnoughMetres)) ++ahead;
  if (ahead == points.size()) return true;
  const double difference = std::fabs(HeadingDegrees(points[segment], points[ahead]) - heading);
  return std::min(difference, 360.0 - difference) < tolerance;
}

}  // namespace

std::vector<std::optional<double>> TraceHeadings(const std::vector<GeoCoordinateZ>& trace) {
  std::vector<std::optional<double>> headings(trace.size());
  for (std::size_t i = trace.size(); i-- > 1;) {
    headings[i - 1] =
        SamePlace(trace[i - 1], trace[i]) ? headings[i] : HeadingDegrees(trace[i - 1], trace[i]);
  }
  std::size_t last = trace.size();  // first fix of the run at the trace's last place
  while (last > 0 && SamePlace(trace[last - 1], trace.back())) --last;
  if (last == 0) return headings;
  const double arriving = HeadingDegrees(trace[last - 1], trace[last]);
  std::fill(headings.begin() + static_cast<std::ptrdiff_t>(last), headings.end(), arriving);
  return headings;
}

TraceMatcher::TraceMatcher(const std::vector<LaneLine>& lines, const MatchingRules& rules)
    : lines_(lines), rules_(rules) {
  bounds_.reserve(lines.size());
  for (const LaneLine& line : lines) bounds_.push_back(BoundsOf(WithoutHeights(line.points)));
}

/// The fix on the strip of longitudes on which the line lies.
GeoCoordinateZ TraceMatcher::NextTo(std::size_t line, const GeoCoordinateZ& fix) const {
  const double centre = (bounds_[line].min.longitude + bounds_[line].max.longitude) / 2.0;
  const double turns = std::round((centre - fix.longitude) / 360.0);
  GeoCoordinateZ shifted = fix;
  if (turns != 0.0) shifted.longitude += 360.0 * turns;
  return shifted;
}

/// False only for a line that is certainly farther than the range: the scan would not find it either.
bool TraceMatcher::MayBeInRange(const GeoCoordinateZ& fix, const GeoRect& bounds) const {
  const double latitudes = rules_.maxMetres / kFewestMetresPerDegree;
  if (fix.latitude + latitudes < bounds.min.latitude || fix.latitude - latitudes > bounds.max.latitude) {
    return false;
  }
  const double highest = std::fabs(fix.latitude) + latitudes;
  if (highest >= kNearPoleDegrees) return true;
  const double longitudes = latitudes / std::cos(highest * kRadiansPerDegree);
  return fix.longitude + longitudes >= bounds.min.longitude &&
         fix.longitude - longitudes <= bounds.max.longitude;
}

MatchedFix TraceMatcher::Placed(const GeoCoordinateZ& fix, std::size_t line, int segment,
                                double ratio) const {
  const std::vector<GeoCoordinateZ>& points = lines_[line].points;
  MatchedFix match;
  match.line = line;
  match.segment = static_cast<std::size_t>(segment);
  match.ratio = ratio;
  if (match.segment + 1 == points.size()) {  // the walk may end on the line's last point
    --match.segment;
    match.ratio = 1.0;
  }
  match.position = PointAlong(points[match.segment], points[match.segment + 1], match.ratio);
  match.distanceMetres = fix.DistanceTo(match.position);
  return match;
}

std::optional<MatchedFix> TraceMatcher::ScanLine(const GeoCoordinateZ& fix, std::optional<double> heading,
                                                 std::size_t line) const {
  const std::vector<GeoCoordinateZ>& points = lines_[line].points;
  int segment = 0;
  double ratio = 0.0;
  if (!heading || !rules_.headingToleranceDegrees) {
    int startIndex = 0;
    if (!VorelGeometryAlgorithm::ProjectionPosToLinesDistance(fix, points, startIndex, segment, ratio,
                                                              rules_.acceptMetres, rules_.maxMetres,
                                                              rules_.maxFarSegments)) {
      return std::nullopt;
    }
    return Placed(fix, line, segment, ratio);
  }
  // The scan may return its first segment whatever its heading: it is then begun again behind that one.
  for (int first = 0; first + 1 < static_cast<int>(points.size()); ++first) {
    int startIndex = first;
    if (!VorelGeometryAlgorithm::ProjectionPosToLinesDistanceOrientation(
            fix, *heading, points, startIndex, segment, ratio, rules_.acceptMetres, rules_.maxMetres,
            *rules_.headingToleranceDegrees, rules_.maxFarSegments)) {
      return std::nullopt;
    }
    const MatchedFix match = Placed(fix, line, segment, ratio);
    const bool accepted = match.distanceMetres < rules_.acceptMetres;
    if (segment != first || accepted ||
        RunsOnHeading(points, match.segment, *heading, *rules_.headingToleranceDegrees)) {
      return match;
    }
  }
  return std::nullopt;
}

std::optional<MatchedFix> TraceMatcher::Scan(const GeoCoordinateZ& fix, std::optional<double> heading) const {
  std::optional<MatchedFix> best;
  for (std::size_t line = 0; line < lines_.size(); ++line) {
    const GeoCoordinateZ position = NextTo(line, fix);
    if (!MayBeInRange(position, bounds_[line])) continue;
    const std::optional<MatchedFix> match = ScanLine(position, heading, line);
    if (match && (!best || match->distanceMetres < best->distanceMetres)) best = match;
  }
  return best;
}

std::optional<MatchedFix> TraceMatcher::Walk(const GeoCoordinateZ& fix, std::size_t line,
                                             int& segmentIndex) const {
  const GeoCoordinateZ position = NextTo(line, fix);
  int segment = 0;
  double ratio = 0.0;
  if (!VorelGeometryAlgorithm::ProjectionPosToLines(position, lines_[line].points, segmentIndex, segment,
                                                    ratio)) {
    return std::nullopt;
  }
  MatchedFix match = Placed(position, line, segment, ratio);
  if (!(match.distanceMetres < rules_.maxMetres)) return std::nullopt;
  match.walked = true;
  return match;
}

std::vector<std::optional<MatchedFix>> TraceMatcher::Match(const std::vector<GeoCoordinateZ>& trace) const {
  std::vector<std::optional<double>> headings(trace.size());
  if (rules_.headingToleranceDegrees) headings = TraceHeadings(trace);
  std::vector<std::optional<MatchedFix>> matches;
  matches.reserve(trace.size());
  int segmentIndex = 0;  // where the walk stands on the line of the fix before
  for (std::size_t i = 0; i < trace.size(); ++i) {
    std::optional<MatchedFix> match;
    if (rules_.walks && i > 0 && matches[i - 1]) match = Walk(trace[i], matches[i - 1]->line, segmentIndex);
    if (!match) {
      match = Scan(trace[i], headings[i]);
      if (match) segmentIndex = static_cast<int>(match->segment);
    }
    matches.push_back(match);
  }
  return matches;
}

}  // namespace vorel::tool
