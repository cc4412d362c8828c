#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/geodesy/distance.h"
#include "logging/elapsed_timer.h"
#include "map_utils/internal/distance_bounds.h"
#include "map_utils/internal/integer_conversion.h"
#include "map_utils/internal/rectangle.h"

namespace vorel {

using tarvo::GeoCoordinate;

namespace {

constexpr std::size_t kMaxRoutePoints = 1501;

/// Tells for most pairs of points on which side of a spacing their distance lies, without measuring it. What it says is
/// what measuring would have said; pairs with a NaN or an infinity or a latitude beyond 90, for which the distance is
/// NaN, and pairs close to the spacing it leaves open.
///
/// Rests on the metres per degree of distance_bounds.h, which leave more than 0.06 % to the true ones: from
/// `kLeastSpacing` on that is more than 0.06 mm and covers the error of the distance, at most 0.01 mm, and all
/// roundings here.
class SpacingBounds {
 public:
  explicit SpacingBounds(float minSpacing) {
    constexpr float kLeastSpacing = 0.1f;
    constexpr float kLargestSpacing = 11000.0f;  // less than 0.1 degree
    if (!(minSpacing >= kLeastSpacing && minSpacing <= kLargestSpacing)) return;
    const double metres = static_cast<double>(minSpacing);
    withinSquare_ = (metres / internal::kMostMetresPerDegree) * (metres / internal::kMostMetresPerDegree);
    beyondLatitude_ = metres / internal::kLeastMetresPerDegreeOfLatitude;
  }

  /// The distance is at most the spacing, and `other` lies in the box of `internal::IsInNearnessBox`: each half width
  /// of that is at least the largest spacing it serves, at 111,800 m per degree.
  bool IsSurelyWithin(const GeoCoordinate& anchor, const GeoCoordinate& other) const {
    const double northward = other.latitude - anchor.latitude;
    const double eastward = other.longitude - anchor.longitude;
    // Less than 0.1 degree apart, so that one test keeps both off the poles.
    return (northward * northward + eastward * eastward <= withinSquare_) &
           (std::fabs(anchor.latitude) <= 89.9);
  }

  /// The distance exceeds the spacing, or `other` lies outside of the box.
  bool IsSurelyBeyond(const GeoCoordinate& anchor, const GeoCoordinate& other) const {
    const double eastward = other.longitude - anchor.longitude;
    return (std::fabs(other.latitude - anchor.latitude) > beyondLatitude_) &
           (std::fabs(anchor.latitude) <= 90.0) & (std::fabs(other.latitude) <= 90.0) &
           !std::isnan(eastward);  // an infinite one is outside of the box
  }

 private:
  double withinSquare_ = -1.0;                                       // square degrees; nothing is within
  double beyondLatitude_ = std::numeric_limits<double>::infinity();  // degrees; nothing is beyond
};

void AppendThinned(const std::vector<GeoCoordinate>& segment, float minSpacing,
                   std::vector<GeoCoordinate>& result) {
  const SpacingBounds bounds(minSpacing);
  GeoCoordinate anchor = segment.front();  // a value: the growing result moves its points
  result.push_back(anchor);
  // Deliberate: the last point is not forced in.
  for (std::size_t i = 1; i < segment.size() && result.size() < kMaxRoutePoints; ++i) {
    const GeoCoordinate& point = segment[i];
    if (bounds.IsSurelyWithin(anchor, point)) continue;
    if (!bounds.IsSurelyBeyond(anchor, point) && internal::IsInNearnessBox(anchor, minSpacing, point) &&
        !(tarvo::geodesy::Distance(anchor, point) > static_cast<double>(minSpacing))) {
      continue;
    }
    result.push_back(point);
    anchor = point;
  }
}

}  // namespace

std::vector<GeoCoordinate> VorelGeometryAlgorithm::PreProcessRoutePoints(
    const std::vector<std::vector<GeoCoordinate>>& route, float minSpacing, int pointLimit) {
  // Deliberate: a negative double, which wrapping may also give, becomes a limit that no segment exceeds.
  const std::uint64_t limit = static_cast<std::uint64_t>(internal::MultiplyWrapping(2, pointLimit));
  std::vector<GeoCoordinate> result;
  for (const std::vector<GeoCoordinate>& segment : route) {
    if (result.size() >= kMaxRoutePoints) break;
    if (segment.size() <= limit) {
      result.insert(result.end(), segment.begin(), segment.end());
    } else {
      AppendThinned(segment, minSpacing, result);
    }
  }
  return result;
}

void VorelGeometryAlgorithm::PreProcessRoutePoints(
    const std::vector<std::vector<std::vector<GeoCoordinate>>>& routes, int routeCount, float minSpacing,
    int pointLimit, const std::string& owner, std::vector<std::vector<GeoCoordinate>>& out) {
  const logging::VorelElapsedTimer timer(owner, "PreProcessRoutePoints");
  out.clear();
  if (routeCount <= 0) return;
  const std::size_t taken = std::min(static_cast<std::size_t>(routeCount), routes.size());
  for (std::size_t k = 0; k < taken; ++k) {
    out.push_back(PreProcessRoutePoints(routes[k], minSpacing, pointLimit));
  }
}

}  // namespace vorel
