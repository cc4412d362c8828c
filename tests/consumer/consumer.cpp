// The one include is enough for every function and value type.
#include <map_utils/vorel_geometry_algorithm.h>

#include <base/version.h>
#include <logging/logger.h>

#include <cstdio>
#include <vector>

int main() {
  using vorel::VorelGeometryAlgorithm;
  const std::vector<tarvo::GeoCoordinate> route = {{7.43, 43.73}, {7.431, 43.731}, {7.433, 43.731}};
  std::vector<std::vector<tarvo::GeoCoordinate>> runs;
  VorelGeometryAlgorithm::GetInterpolateShapePoints(route, true, {{7.42, 43.72}, {7.44, 43.74}}, {}, 50,
                                                    "consumer", runs);
  const bool logs = plog::Logger::TestLogLevel(0, plog::LogLevel::kError);
  const double bearing = kx::GeoUtils::GetRadianNorth(route[0], route[1]);
  std::printf("vorel %d.%d.%d: %zu symbols\n", VOREL_VERSION_MAJOR, VOREL_VERSION_MINOR, VOREL_VERSION_PATCH,
              runs.empty() ? 0 : runs[0].size());
  return runs.size() == 1 && runs[0].size() == 6 && !logs && bearing > 0.0 ? 0 : 1;
}
