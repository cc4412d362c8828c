#ifndef VOREL_TESTS_SUPPORT_LOCAL_METRES_H_
#define VOREL_TESTS_SUPPORT_LOCAL_METRES_H_

// Lines of some hundred metres written in metres east and north of an origin, and random numbers for them.

#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "base/geo_coordinate.h"
#include "support/lines.h"
#include "support/uniform.h"

namespace vorel::test {

/// One of the values, each as likely as the others.
template <class T>
T OneOf(std::mt19937& generator, const std::vector<T>& values) {
  return values[generator() % values.size()];
}

/// The least latitude on the prime meridian whose distance from (0, 0) is at least `metres`: for thresholds that a test wants
/// to hit to the last bit. The distance below it is the next smaller one.
inline double LatitudeAtLeast(double metres) {
  const auto distance = [](double latitude) {
    return tarvo::GeoCoordinate(0.0, 0.0).DistanceTo({0.0, latitude});
  };
  double latitude = metres / 110574.27582159439;  // metres per degree there
  while (distance(latitude) >= metres) latitude = std::nextafter(latitude, 0.0);
  while (distance(latitude) < metres) latitude = std::nextafter(latitude, 1.0);
  return latitude;
}
inline double LatitudeBelow(double metres) {
  return std::nextafter(LatitudeAtLeast(metres), 0.0);
}
inline double LatitudeAbove(double metres) {
  return LatitudeAtLeast(std::nextafter(metres, 1e9));
}

/// The tangent plane at an origin, in metres. Good to some 1e-5 of the distance from it.
class LocalMetres {
 public:
  LocalMetres(double longitude, double latitude)
      : origin_(longitude, latitude),
        metresPerDegreeEast_(origin_.DistanceTo({longitude + 1e-3, latitude}) / 1e-3),
        metresPerDegreeNorth_(origin_.DistanceTo({longitude, latitude + 1e-3}) / 1e-3) {}

  tarvo::GeoCoordinateZ At(double east, double north, float z = 0.0f) const {
    return {origin_.longitude + east / metresPerDegreeEast_, origin_.latitude + north / metresPerDegreeNorth_,
            z};
  }
  LineZ LineAt(const std::vector<std::pair<double, double>>& eastNorth) const {
    LineZ line;
    for (const auto& [east, north] : eastNorth) line.push_back(At(east, north));
    return line;
  }
  double East(const tarvo::GeoCoordinate& point) const {
    return (point.longitude - origin_.longitude) * metresPerDegreeEast_;
  }
  double North(const tarvo::GeoCoordinate& point) const {
    return (point.latitude - origin_.latitude) * metresPerDegreeNorth_;
  }

 private:
  tarvo::GeoCoordinate origin_;
  double metresPerDegreeEast_;
  double metresPerDegreeNorth_;
};

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_LOCAL_METRES_H_
