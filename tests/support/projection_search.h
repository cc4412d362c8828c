#ifndef VOREL_TESTS_SUPPORT_PROJECTION_SEARCH_H_
#define VOREL_TESTS_SUPPORT_PROJECTION_SEARCH_H_

// What the tests of the searches for a position's place on a line share.

#include <vector>

#include "base/geo_coordinate.h"
#include "support/lines.h"
#include "support/local_metres.h"

namespace vorel::test {

inline const LocalMetres kCity(8.4, 49.0);

// What outputs hold before a call, to see what was left alone.
constexpr double kUntouchedRatio = -77.25;
constexpr int kUntouchedIndex = -77;

/// Of a scan, in metres, and how many segments beyond the distance it goes on for.
struct ScanArguments {
  double acceptDistance = 0.0;
  double maxDistance = 20.0;
  int maxFarSegments = 0;
};

inline tarvo::GeoCoordinateZ OnEquator(double longitude) {
  return {longitude, 0.0, 0.0f};
}

inline LineZ Equator(const std::vector<double>& longitudes) {
  LineZ line;
  for (const double longitude : longitudes) line.push_back(OnEquator(longitude));
  return line;
}

// Whether a latitude is exactly so far from the equator, as distances are computed.
inline bool IsExact(double metres) {
  return tarvo::GeoCoordinate(0.0, 0.0).DistanceTo({0.0, LatitudeAtLeast(metres)}) == metres;
}

// A line that leaves to the east and north and comes back to some metres from its start, and a position beside both ends.
inline const LineZ kComb = kCity.LineAt({{0, 0}, {10, 0}, {10, 200}, {60, 200}, {60, 220}, {0, 220}, {4, 5}});
inline const tarvo::GeoCoordinateZ kByTheComb = kCity.At(5, 4);

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_PROJECTION_SEARCH_H_
