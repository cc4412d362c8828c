// Does one job of the library a number of times and nothing else that depends on that number: the instructions of one
// time are the difference between two runs of this program. scripts/arm_instructions.sh counts them.
//
//   repeated_job            lists the jobs, one per line
//   repeated_job NAME TIMES [scalar]
//
// Prints how many items one time handles, and their name. "scalar" measures segments one at a time.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "base/geodesy/wgs84.h"
#include "benchmarks/bench_lines.h"
#include "map_utils/internal/segment_lengths.h"
#include "map_utils/vorel_geometry_algorithm.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::HAD::BoundaryData;
using Algorithm = vorel::VorelGeometryAlgorithm;
using Line = std::vector<GeoCoordinate>;
using LineZ = std::vector<GeoCoordinateZ>;
using Rect = tarvo::Rect<GeoCoordinate>;

/// Work on data that were made beforehand; its result is kept from being left out.
struct Job {
  double items = 0.0;  ///< of one time
  const char* unit = "";
  std::function<double()> work;
};

constexpr int kVertexCount = 1000;
constexpr unsigned kAll = 4294967295u;

double CountOf(const std::vector<Line>& lines) {
  std::size_t count = 0;
  for (const Line& line : lines) count += line.size();
  return static_cast<double>(count);
}

double Haversine(const GeoCoordinate& a, const GeoCoordinate& b) {
  constexpr double kRadian = tarvo::geodesy::kRadiansPerDegree;
  const double sinHalfLatitude = std::sin(0.5 * kRadian * (b.latitude - a.latitude));
  const double sinHalfLongitude = std::sin(0.5 * kRadian * (b.longitude - a.longitude));
  const double h = sinHalfLatitude * sinHalfLatitude + std::cos(a.latitude * kRadian) *
                                                           std::cos(b.latitude * kRadian) * sinHalfLongitude *
                                                           sinHalfLongitude;
  return 2.0 * 6371008.8 * std::asin(std::sqrt(h));
}

/// The segments between vertices: as many as there are but one.
Job OverRoute(const std::function<double(const Line&)>& work) {
  return {kVertexCount - 1, "vertex", [line = bench::Route(kVertexCount), work] { return work(line); }};
}

Job Clip(double fromShare, double toShare) {
  const Line line = bench::Route(kVertexCount);
  const double west = line.front().longitude;
  const double span = line.back().longitude - west;
  const Rect view{{west + fromShare * span, -90.0}, {west + toShare * span, 90.0}};
  return {kVertexCount, "vertex", [line, view, pieces = std::vector<Line>()]() mutable {
            pieces.clear();
            Algorithm::CutPolyline(line, view, pieces);
            return CountOf(pieces);
          }};
}

Job Symbols() {
  const Line line = bench::Route(kVertexCount);
  const GeoCoordinate& middle = line[kVertexCount / 2];
  const Rect view{{middle.longitude - 0.02, 47.0}, {middle.longitude + 0.02, 48.0}};
  return {kVertexCount, "vertex",
          [line, view, out = std::vector<Line>(), owner = std::string("count")]() mutable {
            Algorithm::GetInterpolateShapePoints(line, true, view, {}, 50, owner, out);
            return CountOf(out);
          }};
}

/// Points on a grid in and about the star: per vertex of the polygon and point.
Job Contain(int vertexCount) {
  constexpr int kAcross = 8;
  Line points;
  for (int i = 0; i < kAcross * kAcross; ++i)
    points.emplace_back(-1.05 + 0.3 * (i % kAcross) + 0.01 * (i / kAcross), -1.03 + 0.29 * (i / kAcross));
  return {static_cast<double>(vertexCount) * kAcross * kAcross, "vertex and point",
          [polygon = bench::Star(vertexCount), points] {
            int inside = 0;
            for (const GeoCoordinate& point : points)
              inside += Algorithm::IsPointInPolygon(polygon, point) ? 1 : 0;
            return static_cast<double>(inside);
          }};
}

/// Positions beside every tenth of the lane.
Job Project(int vertexCount) {
  const LineZ lane = bench::Lane(vertexCount);
  LineZ positions;
  for (int i = 0; i < 10; ++i) {
    const GeoCoordinateZ& at = lane[static_cast<std::size_t>(i * (vertexCount - 1) / 10)];
    positions.emplace_back(at.longitude + 4e-5, at.latitude - 1e-5, at.z);
  }
  return {10.0 * (vertexCount - 1), "segment", [lane, positions] {
            double sum = 0.0;
            for (const GeoCoordinateZ& position : positions) {
              int start = 0;
              int segment = 0;
              double ratio = 0.0;
              Algorithm::ProjectionPosToLinesDistance(position, lane, start, segment, ratio, 0.0, 1e9,
                                                      std::numeric_limits<int>::max());
              sum += segment + ratio;
            }
            return sum;
          }};
}

Job Boundary() {
  const Line line = bench::Route(kVertexCount);
  BoundaryData source;
  for (int i = 0; i < kVertexCount; ++i) {
    const GeoCoordinate& point = line[static_cast<std::size_t>(i)];
    source.points.emplace_back(point.longitude, point.latitude, 0.0f);
    if (i % 10 == 0) source.pointIndices.push_back(static_cast<std::uint32_t>(i));
  }
  return {kVertexCount - 1, "vertex", [source, piece = BoundaryData()]() mutable {
            piece.points.clear();
            piece.pointIndices.clear();
            int cursor = -1;
            return Algorithm::HandleBoundaryDataByDistance(source, cursor, 0, 0.0, 1e9, piece);
          }};
}

/// By the name in the table; it starts with a number that gives the order.
std::map<std::string, std::function<Job()>> Jobs() {
  return {
      {"01 haversine loop, for comparison",
       [] {
         return OverRoute([](const Line& line) {
           double sum = 0.0;
           for (std::size_t i = 1; i < line.size(); ++i) sum += Haversine(line[i - 1], line[i]);
           return sum;
         });
       }},
      {"02 DistanceTo, near",
       [] {
         return OverRoute([](const Line& line) {
           double sum = 0.0;
           for (std::size_t i = 1; i < line.size(); ++i) sum += line[i - 1].DistanceTo(line[i]);
           return sum;
         });
       }},
      {"03 GetDistance",
       [] {
         return OverRoute([](const Line& line) {
           return Algorithm::GetDistance(line.data(), static_cast<unsigned>(line.size()), 0, kAll);
         });
       }},
      {"04 GetDistanceByVector, 3-D",
       [] {
         return Job{kVertexCount - 1, "vertex", [line = bench::Lane(kVertexCount)] {
                      return Algorithm::GetDistanceByVector(line, 0, kAll);
                    }};
       }},
      {"05 CalcPointsInPolyline, 50 m",
       [] {
         return OverRoute([out = Line()](const Line& line) mutable {
           out.clear();
           Algorithm::CalcPointsInPolyline(line, 50.0, 0, out);
           return static_cast<double>(out.size());
         });
       }},
      {"06 GetDistanceAndCache",
       [] {
         return OverRoute([cache = std::vector<double>()](const Line& line) mutable {
           cache.clear();
           return Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, cache);
         });
       }},
      {"07 ChoosePointsInPolylineWithMaxLength",
       [] {
         return OverRoute([out = Line()](const Line& line) mutable {
           out.clear();
           Algorithm::ChoosePointsInPolylineWithMaxLength(line, 1e9, out);
           return static_cast<double>(out.size());
         });
       }},
      {"08 HandleBoundaryDataByDistance", Boundary},
      {"09 CutPolyline, all outside", [] { return Clip(2.0, 3.0); }},
      {"10 CutPolyline, half the route", [] { return Clip(0.25, 0.75); }},
      {"11 GetInterpolateShapePoints", Symbols},
      {"12 IsPointInPolygon, 10 vertices", [] { return Contain(10); }},
      {"13 IsPointInPolygon, 100 vertices", [] { return Contain(100); }},
      {"14 IsPointInPolygon, 1000 vertices", [] { return Contain(1000); }},
      {"15 ProjectionPosToLinesDistance, lane of 10", [] { return Project(10); }},
      {"16 ProjectionPosToLinesDistance, lane of 100", [] { return Project(100); }},
      {"17 PanLinePoints, lane of 100",
       [] {
         return Job{100, "point", [lane = bench::Lane(100), out = LineZ()]() mutable {
                      out.clear();
                      Algorithm::PanLinePoints(lane, 1.75f, true, out);
                      return static_cast<double>(out.size());
                    }};
       }},
      {"18 PreProcessRoutePoints, 200 m",
       [] {
         return Job{kVertexCount, "vertex", [route = std::vector<Line>{bench::Route(kVertexCount)}] {
                      return static_cast<double>(Algorithm::PreProcessRoutePoints(route, 200.0f, 0).size());
                    }};
       }},
  };
}

}  // namespace

int main(int argc, char** argv) {
  const auto jobs = Jobs();
  if (argc == 1) {
    for (const auto& [name, make] : jobs) std::puts(name.c_str());
    return 0;
  }
  const auto job = jobs.find(argv[1]);
  const bool scalar = argc == 4 && std::strcmp(argv[3], "scalar") == 0;
  if (argc < 3 || argc > 4 || (argc == 4 && !scalar) || job == jobs.end()) {
    std::fputs("usage: repeated_job [NAME TIMES [scalar]]\n", stderr);
    return 2;
  }
  if (scalar) vorel::internal::ForceSegmentKernel(vorel::internal::FindSegmentKernel(1));
  const Job made = job->second();
  double sum = 0.0;
  for (int i = std::atoi(argv[2]); i > 0; --i) sum += made.work();
  std::printf("%.0f %s\n", made.items, made.unit);
  return sum >= 0.0 ? 0 : 1;
}
