// PROJ: exact geodesics on the ellipsoid, the C form.

#include <geodesic.h>

#include "candidates.h"

namespace peers {

void AddProj(const Inputs& inputs, Jobs& jobs) {
  geod_geodesic wgs84;
  geod_init(&wgs84, 6378137.0, 1.0 / 298.257223563);
  for (const DistanceCase& c : inputs.distance) {
    AddDistances(c, jobs, "PROJ", kEllipsoidTolerance, c.pairs, [wgs84](const auto& pair) {
      double metres = 0.0;
      geod_inverse(&wgs84, pair.first.latitude, pair.first.longitude, pair.second.latitude,
                   pair.second.longitude, &metres, nullptr, nullptr);
      return metres;
    });
  }
}

}  // namespace peers
