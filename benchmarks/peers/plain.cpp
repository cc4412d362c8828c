// The usual formula on a sphere, and jobs written plainly on it.

#include <algorithm>
#include <cmath>

#include "base/geodesy/wgs84.h"
#include "candidates.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace peers {
namespace {

using tarvo::GeoCoordinate;

/// Sinnott 1984; off by up to 0.56 percent.
double Haversine(const GeoCoordinate& a, const GeoCoordinate& b) {
  constexpr double kRadian = tarvo::geodesy::kRadiansPerDegree;
  const double sinHalfLatitude = std::sin(0.5 * kRadian * (b.latitude - a.latitude));
  const double sinHalfLongitude = std::sin(0.5 * kRadian * (b.longitude - a.longitude));
  const double h = sinHalfLatitude * sinHalfLatitude + std::cos(a.latitude * kRadian) *
                                                           std::cos(b.latitude * kRadian) * sinHalfLongitude *
                                                           sinHalfLongitude;
  return 2.0 * kMeanRadius * std::asin(std::min(1.0, std::sqrt(h)));
}

template <class AnyLine>
double Length(const AnyLine& line) {
  double sum = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) sum += Haversine(line[i - 1], line[i]);
  return sum;
}

/// Keeps the first point of each segment and every later one outside of the box about the last kept or farther than
/// `spacing` from it; no further one once 1501 are reached.
Line Thinned(const std::vector<Line>& route, float spacing) {
  Line kept;
  for (const Line& segment : route) {
    for (std::size_t i = 0; i < segment.size() && kept.size() < 1501; ++i) {
      if (i == 0 || !vorel::VorelGeometryAlgorithm::IsPointNearOtherOne(kept.back(), spacing, segment[i]) ||
          Haversine(kept.back(), segment[i]) > static_cast<double>(spacing)) {
        kept.push_back(segment[i]);
      }
    }
  }
  return kept;
}

}  // namespace

void AddPlain(const Inputs& inputs, Jobs& jobs) {
  for (const DistanceCase& c : inputs.distance) {
    AddDistances(c, jobs, "haversine", kSphereTolerance, c.pairs,
                 [](const auto& pair) { return Haversine(pair.first, pair.second); });
  }
  for (const LengthCase& c : inputs.length)
    jobs.Add(c, "haversine", kSphereTolerance, [&c] { return Length(c.line); });
  for (const HeightLengthCase& c : inputs.heightLength)
    jobs.Add(c, "haversine", kSphereTolerance, [&c] { return Length(c.line); });
  for (const ThinningCase& c : inputs.thinning)
    jobs.Add(c, "plain on haversine", 0.02,
             [&c] { return Thinned(c.route, static_cast<float>(c.spacing)).size(); });
}

}  // namespace peers
