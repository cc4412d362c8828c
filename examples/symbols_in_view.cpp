// Direction symbols along the part of a route that is in view, kept to an area for a route other than the main one.
#include <cstdio>

#include "map_utils/vorel_geometry_algorithm.h"

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;

int main() {
  const std::vector<GeoCoordinate> route = {
      {7.420, 43.730}, {7.425, 43.734}, {7.430, 43.734}, {7.436, 43.731}};
  const tarvo::Rect<GeoCoordinate> view{{7.422, 43.729}, {7.433, 43.736}};
  const std::vector<GeoCoordinate> area = {
      {7.424, 43.730}, {7.431, 43.730}, {7.431, 43.737}, {7.424, 43.737}};

  // One run of symbols per piece of the route in view, one symbol every 200 m.
  std::vector<std::vector<GeoCoordinate>> runs;
  const bool isMainRoute = false;
  VorelGeometryAlgorithm::GetInterpolateShapePoints(route, isMainRoute, view, area, 200, "example", runs);
  for (const std::vector<GeoCoordinate>& run : runs) {
    for (std::size_t i = 0; i < run.size(); ++i) {
      std::printf("%.5f %.5f", run[i].longitude, run[i].latitude);
      // A symbol points to the next one; west of north is negative here.
      if (i + 1 < run.size())
        std::printf(" heading %.0f", VorelGeometryAlgorithm::GetAngle(run[i], run[i + 1]));
      std::printf("\n");
    }
  }
}
