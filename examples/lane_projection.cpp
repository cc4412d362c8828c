// Puts a moving position on a lane: the nearest segment first, then following along from fix to fix.
#include <cstdio>

#include "map_utils/vorel_geometry_algorithm.h"

using tarvo::GeoCoordinateZ;
using vorel::VorelGeometryAlgorithm;

int main() {
  const std::vector<GeoCoordinateZ> lane = {
      {7.4200, 43.7300, 12.0f}, {7.4204, 43.7302, 12.2f}, {7.4208, 43.7303, 12.5f}, {7.4213, 43.7303, 12.6f}};
  const std::vector<GeoCoordinateZ> fixes = {
      {7.42021, 43.73013, 0.0f}, {7.42052, 43.73021, 0.0f}, {7.42095, 43.73032, 0.0f}};

  int segment = 0;  // where the search starts, then where the position is
  double ratio = 0.0;
  // Any segment nearer than 10 m; a foot within 2 m is taken at once.
  int found = 0;
  if (!VorelGeometryAlgorithm::ProjectionPosToLinesDistance(fixes[0], lane, segment, found, ratio, 2.0, 10.0,
                                                            3)) {
    std::printf("the first fix is not on the lane\n");
    return 1;
  }
  segment = found;
  for (const GeoCoordinateZ& fix : fixes) {
    int vertex = 0;
    if (!VorelGeometryAlgorithm::ProjectionPosToLines(fix, lane, segment, vertex, ratio)) {
      std::printf("the lane has ended\n");
      return 1;
    }
    const std::size_t start = static_cast<std::size_t>(vertex);
    const GeoCoordinateZ foot = start + 1 < lane.size()
                                    ? VorelGeometryAlgorithm::GetInsertPointFromSegment(
                                          lane[start], lane[start + 1], static_cast<float>(ratio))
                                    : lane[start];
    std::printf("segment %d, ratio %.2f, height %.2f m, %.2f m away\n", vertex, ratio,
                static_cast<double>(foot.z), foot.DistanceTo(fix));
  }
}
