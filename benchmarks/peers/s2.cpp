// S2: unit vectors on the sphere. They are prepared beforehand, and so are the indexes.

#include <s2/mutable_s2shape_index.h>
#include <s2/s2closest_edge_query.h>
#include <s2/s2contains_point_query.h>
#include <s2/s2edge_distances.h>
#include <s2/s2latlng.h>
#include <s2/s2loop.h>
#include <s2/s2polyline.h>

#include <memory>

#include "candidates.h"

namespace peers {
namespace {

S2Point Prepared(const tarvo::GeoCoordinate& point) {
  return S2LatLng::FromDegrees(point.latitude, point.longitude).ToPoint();
}

template <class AnyLine>
std::vector<S2Point> PreparedLine(const AnyLine& line) {
  std::vector<S2Point> points;
  for (const tarvo::GeoCoordinate& point : line) points.push_back(Prepared(point));
  return points;
}

template <class AnyLine>
std::shared_ptr<S2Polyline> PreparedPolyline(const AnyLine& line) {
  return std::make_shared<S2Polyline>(PreparedLine(line), S2Debug::DISABLE);
}

void AddLengths(const Inputs& inputs, Jobs& jobs) {
  for (const DistanceCase& c : inputs.distance) {
    std::vector<std::pair<S2Point, S2Point>> pairs;
    for (const auto& [from, to] : c.pairs) pairs.emplace_back(Prepared(from), Prepared(to));
    AddDistances(c, jobs, "S2", kSphereTolerance, pairs,
                 [](const auto& pair) { return kMeanRadius * S1Angle(pair.first, pair.second).radians(); });
  }
  for (const LengthCase& c : inputs.length) {
    jobs.Add(c, "S2", kSphereTolerance,
             [line = PreparedPolyline(c.line)] { return kMeanRadius * line->GetLength().radians(); });
  }
}

/// A walk along the line: `S2Polyline::Interpolate` starts anew for each point and would make it quadratic.
void AddSampling(const Inputs& inputs, Jobs& jobs) {
  for (const SamplingCase& c : inputs.sampling) {
    const double interval = c.interval / kMeanRadius;
    jobs.Add(c, "S2 walk", kSampleTolerance,
             [points = PreparedLine(c.line), interval, out = std::vector<S2Point>()]() mutable {
               out.clear();
               out.push_back(points[0]);
               double next = interval;  // radians from the segment's start to the next sample
               for (std::size_t i = 1; i < points.size(); ++i) {
                 const double length = S1Angle(points[i - 1], points[i]).radians();
                 for (; next <= length; next += interval)
                   out.push_back(S2::GetPointOnLine(points[i - 1], points[i], S1Angle::Radians(next)));
                 next -= length;
               }
               return out.size();
             });
  }
}

/// A walk by the chord between the prepared unit vectors.
void AddThinning(const Inputs& inputs, Jobs& jobs) {
  for (const ThinningCase& c : inputs.thinning) {
    std::vector<std::vector<S2Point>> route;
    for (const Line& segment : c.route) route.push_back(PreparedLine(segment));
    const S1ChordAngle limit(S1Angle::Radians(c.spacing / kMeanRadius));
    jobs.Add(c, "S2 walk", kThinningTolerance, [route, limit] {
      std::vector<S2Point> kept;
      for (const std::vector<S2Point>& segment : route) {
        for (std::size_t i = 0; i < segment.size(); ++i) {
          if (i == 0 || S1ChordAngle(kept.back(), segment[i]) > limit) kept.push_back(segment[i]);
        }
      }
      return kept.size();
    });
  }
}

void AddContainment(const Inputs& inputs, Jobs& jobs) {
  for (const ContainmentCase& c : inputs.containment) {
    auto loop = std::make_shared<S2Loop>(PreparedLine(c.polygon), S2Debug::DISABLE);
    const std::vector<S2Point> points = PreparedLine(c.points);
    const auto index = std::make_shared<MutableS2ShapeIndex>();
    index->Add(std::make_unique<S2Loop::Shape>(loop.get()));
    index->ForceBuild();
    jobs.Add(c, "S2 loop", 0.03, [loop, points] {
      std::size_t inside = 0;
      for (const S2Point& point : points) inside += loop->Contains(point) ? 1u : 0u;
      return inside;
    });
    jobs.Add(c, "S2 index", 0.03, [loop, index, points] {
      auto query = MakeS2ContainsPointQuery(index.get());
      std::size_t inside = 0;
      for (const S2Point& point : points) inside += query.Contains(point) ? 1u : 0u;
      return inside;
    });
  }
}

void AddProjection(const Inputs& inputs, Jobs& jobs) {
  for (const ProjectionCase& c : inputs.projection) {
    const std::shared_ptr<S2Polyline> lane = PreparedPolyline(c.lane);
    const std::vector<S2Point> positions = PreparedLine(c.positions);
    const auto metres = [lane, positions] {
      double sum = 0.0;
      for (const S2Point& position : positions) {
        int nextVertex = 0;
        sum += kMeanRadius * S1Angle(position, lane->Project(position, &nextVertex)).radians();
      }
      return sum;
    };
    jobs.Add(
        c, "S2 polyline", 0.01,
        [lane, positions] {
          double sum = 0.0;
          for (const S2Point& position : positions) {
            int nextVertex = 0;
            sum += lane->Project(position, &nextVertex).x();
          }
          return sum;
        },
        metres);
    const auto index = std::make_shared<MutableS2ShapeIndex>();
    index->Add(std::make_unique<S2Polyline::Shape>(lane.get()));
    index->ForceBuild();
    jobs.Add(
        c, "S2 index", 0.01,
        [lane, index, positions] {
          S2ClosestEdgeQuery query(index.get());
          double sum = 0.0;
          for (const S2Point& position : positions) {
            S2ClosestEdgeQuery::PointTarget target(position);
            sum += query.Project(position, query.FindClosestEdge(&target)).x();
          }
          return sum;
        },
        metres);
  }
}

}  // namespace

void AddS2(const Inputs& inputs, Jobs& jobs) {
  AddLengths(inputs, jobs);
  AddSampling(inputs, jobs);
  AddThinning(inputs, jobs);
  AddContainment(inputs, jobs);
  AddProjection(inputs, jobs);
}

}  // namespace peers
