#include <cstdio>

#include "map_utils/vorel_geometry_algorithm.h"

int main() {
  using tarvo::GeoCoordinate;
  const std::vector<GeoCoordinate> route = {{7.420, 43.730}, {7.425, 43.734}, {7.430, 43.734}};
  const tarvo::Rect<GeoCoordinate> view{{7.418, 43.728}, {7.427, 43.736}};
  std::vector<std::vector<GeoCoordinate>> runs;
  vorel::VorelGeometryAlgorithm::GetInterpolateShapePoints(route, true, view, {}, 50, "demo", runs);
  for (const GeoCoordinate& symbol : runs.at(0)) std::printf("%f %f\n", symbol.longitude, symbol.latitude);
}
