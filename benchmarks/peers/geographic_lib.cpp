// GeographicLib: exact geodesics on the ellipsoid.

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/GeodesicExact.hpp>

#include "candidates.h"

namespace peers {

/// By elliptic integrals instead of series.
void SetExactDistances(Inputs& inputs) {
  const GeographicLib::GeodesicExact& wgs84 = GeographicLib::GeodesicExact::WGS84();
  for (DistanceCase& c : inputs.distance) {
    for (const auto& [from, to] : c.pairs) {
      double metres = 0.0;
      wgs84.Inverse(from.latitude, from.longitude, to.latitude, to.longitude, metres);
      c.exact.push_back(metres);
    }
  }
}

void AddGeographicLib(const Inputs& inputs, Jobs& jobs) {
  const GeographicLib::Geodesic& wgs84 = GeographicLib::Geodesic::WGS84();
  const auto distance = [&wgs84](const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b) {
    double metres = 0.0;
    wgs84.Inverse(a.latitude, a.longitude, b.latitude, b.longitude, metres);
    return metres;
  };
  for (const DistanceCase& c : inputs.distance) {
    AddDistances(c, jobs, "GeographicLib", kEllipsoidTolerance, c.pairs,
                 [distance](const auto& pair) { return distance(pair.first, pair.second); });
  }
  for (const LengthCase& c : inputs.length) {
    jobs.Add(c, "GeographicLib", kEllipsoidTolerance, [&c, distance] {
      double sum = 0.0;
      for (std::size_t i = 1; i < c.line.size(); ++i) sum += distance(c.line[i - 1], c.line[i]);
      return sum;
    });
  }
}

}  // namespace peers
