// PROJ: exact geodesics on the ellipsoid, the C form.

#include <geodesic.h>

#include "candidates.h"

namespace peers {

void AddProj(const Inputs& inputs, Jobs& jobs) {
  geod_geodesic wgs84;
  geod_init(&wgs84, 6378137.0, 1.0 / 298.257223563);
  for (const DistanceCase& c : inputs.distance) {
    jobs.Add(c, "PROJ", kEllipsoidTolerance, [&c, wgs84] {
      double sum = 0.0;
      for (const auto& [from, to] : c.pairs) {
        double metres = 0.0;
        geod_inverse(&wgs84, from.latitude, from.longitude, to.latitude, to.longitude, &metres, nullptr,
                     nullptr);
        sum += metres;
      }
      return sum;
    });
  }
}

}  // namespace peers
