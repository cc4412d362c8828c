#ifndef VOREL_BENCHMARKS_PEERS_INPUTS_H_
#define VOREL_BENCHMARKS_PEERS_INPUTS_H_

// The inputs of all candidates: generated from fixed seeds, the same on every machine, and the longest real lines where
// VOREL_DATA_DIR names the real data.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"
#include "jobs.h"

namespace peers {

using Line = std::vector<tarvo::GeoCoordinate>;
using LineZ = std::vector<tarvo::GeoCoordinateZ>;
using Rect = tarvo::Rect<tarvo::GeoCoordinate>;

struct DistanceCase : JobCase {
  bool opposite = false;  // nearly opposite points: where some methods fail
  std::vector<std::pair<tarvo::GeoCoordinate, tarvo::GeoCoordinate>> pairs;
  std::vector<double> exact;  // metres between the pairs; empty where no peer gives them
};
struct LengthCase : JobCase {
  Line line;
};
struct HeightLengthCase : JobCase {
  LineZ line;
};
struct SamplingCase : JobCase {
  Line line;
  double interval = 0.0;  // metres
};
struct ClippingCase : JobCase {
  Line line;
  Rect view;
};
struct ContainmentCase : JobCase {
  Line polygon;  // counter-clockwise, first vertex not repeated
  Line points;
};
struct ProjectionCase : JobCase {
  LineZ lane;
  LineZ positions;
  double range = 1e9;  // metres: beyond it there is no match
};
struct OffsetCase : JobCase {
  LineZ lane;
};
struct ThinningCase : JobCase {
  std::vector<Line> route;
  double spacing = 0.0;  // metres
};

/// Metres to the side in the offset job.
constexpr double kOffset = 1.75;

struct Inputs {
  std::vector<DistanceCase> distance;
  std::vector<LengthCase> length;
  std::vector<HeightLengthCase> heightLength;
  std::vector<SamplingCase> sampling;
  std::vector<ClippingCase> clipping;
  std::vector<ClippingCase> symbols;
  std::vector<ContainmentCase> containment;
  std::vector<ProjectionCase> projection;
  std::vector<OffsetCase> offset;
  std::vector<ThinningCase> thinning;
  std::vector<LengthCase> walking;  // the job's name is completed by each walking function
};

Inputs MakeInputs();

/// Writes the inputs of the jobs that the scripts in node/ do, with the expected values, as JSON.
void WriteInputs(const Inputs& inputs, const Jobs& jobs, const std::string& path);

/// A point in metres east and north of the first vertex of a lane, on the plane that touches there: the form in which
/// planar peers get lanes.
struct LocalPoint {
  double x;
  double y;
};
std::vector<LocalPoint> LocalMetres(const LineZ& points, const tarvo::GeoCoordinate& origin);

/// Sum of the square roots on the plane of degrees.
double PlanarLength(const Line& line);

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_INPUTS_H_
