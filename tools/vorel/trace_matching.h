#ifndef VOREL_TOOLS_VOREL_TRACE_MATCHING_H_
#define VOREL_TOOLS_VOREL_TRACE_MATCHING_H_

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/lane_input.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

struct MatchingRules {
  double acceptMetres = 0.0;  ///< a segment nearer than this ends the scan of its line; 0: none does
  double maxMetres = 20.0;    ///< fixes this far from every line, or farther, stay unmatched; at most 100000
  std::optional<double> headingToleranceDegrees;  ///< none: headings are not looked at
  int maxFarSegments = std::numeric_limits<int>::max();
  bool walks = false;  ///< follow the line of the fix before, as long as that goes
};

/// Where on a line a fix was put.
struct MatchedFix {
  std::size_t line = 0;         ///< position in the lines given to the matcher
  std::size_t segment = 0;      ///< index of the segment's first point; never that of the line's last point
  double ratio = 0.0;           ///< of the way along the segment, in [0, 1]
  double distanceMetres = 0.0;  ///< from the fix
  tarvo::GeoCoordinateZ position;  ///< on the line
  bool walked = false;             ///< by the walk, not by the scan
};

/// The heading at each fix: the bearing to the next fix that lies elsewhere, in [0, 360); from the last place of the
/// trace, the bearing from the place before. None when all fixes lie in one place.
std::vector<std::optional<double>> TraceHeadings(const std::vector<tarvo::GeoCoordinateZ>& trace);

/// Matches traces to lines, each fix by itself or, walking, after the one before.
class TraceMatcher {
 public:
  /// @param lines  must outlive the matcher
  TraceMatcher(const std::vector<LaneLine>& lines, const MatchingRules& rules);

  /// One entry per fix; none for a fix that no line is near enough to.
  std::vector<std::optional<MatchedFix>> Match(const std::vector<tarvo::GeoCoordinateZ>& trace) const;

 private:
  std::optional<MatchedFix> Scan(const tarvo::GeoCoordinateZ& fix, std::optional<double> heading) const;
  std::optional<MatchedFix> ScanLine(const tarvo::GeoCoordinateZ& fix, std::optional<double> heading,
                                     std::size_t line) const;
  std::optional<MatchedFix> Walk(const tarvo::GeoCoordinateZ& fix, std::size_t line, int& segmentIndex) const;
  bool MayBeInRange(const tarvo::GeoCoordinateZ& fix, const GeoRect& bounds) const;
  tarvo::GeoCoordinateZ NextTo(std::size_t line, const tarvo::GeoCoordinateZ& fix) const;
  MatchedFix Placed(const tarvo::GeoCoordinateZ& fix, std::size_t line, int segment, double ratio) const;

  const std::vector<LaneLine>& lines_;
  MatchingRules rules_;
  std::vector<GeoRect> bounds_;  // of each line
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_TRACE_MATCHING_H_
