// This library's functions about where things lie: views, polygons, lanes.

#include <limits>

#include "candidates.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "vector_paths.h"

namespace peers {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using Algorithm = vorel::VorelGeometryAlgorithm;

void AddClipping(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const ClippingCase& c : inputs.clipping) {
    const auto work = [&c, pieces = std::vector<Line>()]() mutable {
      pieces.clear();
      Algorithm::CutPolyline(c.line, c.view, pieces);
      return pieces.size();
    };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
}

void AddContainment(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const ContainmentCase& c : inputs.containment) {
    const auto work = [&c] {
      std::size_t inside = 0;
      for (const GeoCoordinate& point : c.points)
        inside += Algorithm::IsPointInPolygon(c.polygon, point) ? 1u : 0u;
      return inside;
    };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
}

/// The whole lane is scanned: nothing is near enough to end the scan, and any number of far segments is tolerated. The
/// nearest one is found in and out of the range.
void AddProjection(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const ProjectionCase& c : inputs.projection) {
    const auto project = [&c](const GeoCoordinateZ& position, int& segment, double& ratio) {
      int start = 0;
      return Algorithm::ProjectionPosToLinesDistance(position, c.lane, start, segment, ratio, 0.0, c.range,
                                                     std::numeric_limits<int>::max());
    };
    const auto work = [&c, project] {
      double sum = 0.0;
      for (const GeoCoordinateZ& position : c.positions) {
        int segment = 0;
        double ratio = 0.0;
        project(position, segment, ratio);
        sum += segment + ratio;
      }
      return sum;
    };
    const auto metres = [&c, project] {
      double sum = 0.0;
      for (const GeoCoordinateZ& position : c.positions) {
        int segment = 0;
        double ratio = 0.0;
        project(position, segment, ratio);
        const GeoCoordinateZ& start = c.lane[static_cast<std::size_t>(segment)];
        const GeoCoordinateZ& end = c.lane[static_cast<std::size_t>(segment) + 1];
        const GeoCoordinate foot(start.longitude + ratio * (end.longitude - start.longitude),
                                 start.latitude + ratio * (end.latitude - start.latitude));
        sum += foot.DistanceTo(position);
      }
      return sum;
    };
    jobs.Add(c, path.candidate, 0.0, work, metres, path.choose);
  }
}

void AddOffset(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const OffsetCase& c : inputs.offset) {
    const auto work = [&c, result = LineZ()]() mutable {
      result.clear();
      Algorithm::PanLinePoints(c.lane, static_cast<float>(kOffset), true, result);
      return result.data();
    };
    const auto metres = [&c] {
      LineZ result;
      Algorithm::PanLinePoints(c.lane, static_cast<float>(kOffset), true, result);
      return Algorithm::GetDistanceByVector(result, 0, 4294967295u);
    };
    jobs.Add(c, path.candidate, 0.0, work, metres, path.choose);
  }
}

void AddThinning(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const ThinningCase& c : inputs.thinning) {
    const auto work = [&c] {
      return Algorithm::PreProcessRoutePoints(c.route, static_cast<float>(c.spacing), 0).size();
    };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
}

}  // namespace

void AddVorelInPlaces(const Inputs& inputs, Jobs& jobs) {
  for (const VectorPath& path : VectorPaths()) {
    AddClipping(inputs, jobs, path);
    AddContainment(inputs, jobs, path);
    AddProjection(inputs, jobs, path);
    AddOffset(inputs, jobs, path);
    AddThinning(inputs, jobs, path);
  }
}

}  // namespace peers
