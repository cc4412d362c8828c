// Lengths along a line, the place at a distance, and points at a fixed spacing.
#include <cstdio>

#include "map_utils/vorel_geometry_algorithm.h"

using tarvo::GeoCoordinate;
using vorel::VorelGeometryAlgorithm;

int main() {
  const std::vector<GeoCoordinate> line = {{7.420, 43.730}, {7.425, 43.734}, {7.430, 43.734}};
  const unsigned int last = static_cast<unsigned int>(line.size() - 1);

  // The cumulative table: a 0 for the first vertex, then what `GetDistanceAndCache` appends.
  std::vector<double> metresToVertex = {0.0};
  const double length = VorelGeometryAlgorithm::GetDistanceAndCache(line, 0, last, metresToVertex);
  std::printf("length %.3f m\n", length);

  // Where on the line are 700 m?
  const int segment = VorelGeometryAlgorithm::FindFirstSmallerIndex(metresToVertex, 700.0);
  std::printf("700 m lie on segment %d, %.3f m behind its vertex\n", segment,
              700.0 - metresToVertex[static_cast<std::size_t>(segment)]);

  // A point at the start and one every 250 m, without a limit on their number.
  std::vector<GeoCoordinate> samples;
  VorelGeometryAlgorithm::ChoosePointsInPolyline(line, 250.0, 0, samples);
  for (const GeoCoordinate& sample : samples) std::printf("%.6f %.6f\n", sample.longitude, sample.latitude);
}
