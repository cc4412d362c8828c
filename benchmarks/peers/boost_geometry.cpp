// Boost.Geometry: on the sphere, on the ellipsoid, or planar, by the job. Lanes are given in local metres.

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/multi_linestring.hpp>
#include <boost/geometry/geometries/multi_point.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

#include "candidates.h"

namespace peers {
namespace {

namespace bg = boost::geometry;

using SpherePoint = bg::model::point<double, 2, bg::cs::spherical_equatorial<bg::degree>>;
using EllipsoidPoint = bg::model::point<double, 2, bg::cs::geographic<bg::degree>>;
using PlanarPoint = bg::model::d2::point_xy<double>;
using SphereLine = bg::model::linestring<SpherePoint>;
using EllipsoidLine = bg::model::linestring<EllipsoidPoint>;
using PlanarLine = bg::model::linestring<PlanarPoint>;
using PlanarPolygon = bg::model::polygon<PlanarPoint, false>;  // counter-clockwise, closed

using Haversine = bg::strategy::distance::haversine<double>;
using Vincenty = bg::strategy::distance::vincenty<bg::srs::spheroid<double>>;
using Andoyer = bg::strategy::distance::andoyer<bg::srs::spheroid<double>>;

const Haversine kHaversine(kMeanRadius);
const bg::srs::spheroid<double> kWgs84(6378137.0, 6356752.314245179);
const Vincenty kVincenty(kWgs84);
const Andoyer kAndoyer(kWgs84);

/// A formula of the first order of the flattening, measured on these inputs.
constexpr double kAndoyerTolerance = 1e-4;

template <class BoostLine>
BoostLine Prepared(const Line& line) {
  BoostLine prepared;
  for (const tarvo::GeoCoordinate& point : line) prepared.emplace_back(point.longitude, point.latitude);
  return prepared;
}

PlanarLine Prepared(const std::vector<LocalPoint>& points) {
  PlanarLine prepared;
  for (const LocalPoint& point : points) prepared.emplace_back(point.x, point.y);
  return prepared;
}

template <class Point, class Strategy>
void AddDistance(const DistanceCase& c, Jobs& jobs, const char* name, double tolerance,
                 const Strategy& strategy) {
  struct PointPair {
    Point from;
    Point to;
  };
  std::vector<PointPair> pairs;
  for (const auto& [from, to] : c.pairs)
    pairs.push_back({Point(from.longitude, from.latitude), Point(to.longitude, to.latitude)});
  AddDistances(c, jobs, name, tolerance, pairs, [strategy](const PointPair& pair) -> double {
    return bg::distance(pair.from, pair.to, strategy);
  });
}

void AddLengths(const Inputs& inputs, Jobs& jobs) {
  for (const DistanceCase& c : inputs.distance) {
    AddDistance<SpherePoint>(c, jobs, "Boost haversine", kSphereTolerance, kHaversine);
    if (c.opposite) continue;  // there the sums of the two are off by 2e-4 and 5e-4
    AddDistance<EllipsoidPoint>(c, jobs, "Boost andoyer", kAndoyerTolerance, kAndoyer);
    AddDistance<EllipsoidPoint>(c, jobs, "Boost vincenty", kEllipsoidTolerance, kVincenty);
  }
  for (const LengthCase& c : inputs.length) {
    jobs.Add(c, "Boost haversine", kSphereTolerance,
             [line = Prepared<SphereLine>(c.line)] { return bg::length(line, kHaversine); });
    jobs.Add(c, "Boost vincenty", kEllipsoidTolerance,
             [line = Prepared<EllipsoidLine>(c.line)] { return bg::length(line, kVincenty); });
  }
}

void AddSampling(const Inputs& inputs, Jobs& jobs) {
  const bg::strategy::line_interpolate::spherical<double, Haversine> strategy(kHaversine);
  for (const SamplingCase& c : inputs.sampling) {
    jobs.Add(c, "Boost haversine", kSampleTolerance,
             [line = Prepared<SphereLine>(c.line), strategy, interval = c.interval,
              out = bg::model::multi_point<SpherePoint>()]() mutable {
               out.clear();
               bg::line_interpolate(line, interval, out, strategy);
               return out.size();
             });
  }
}

void AddClipping(const Inputs& inputs, Jobs& jobs) {
  for (const ClippingCase& c : inputs.clipping) {
    const bg::model::box<PlanarPoint> view({c.view.min.longitude, c.view.min.latitude},
                                           {c.view.max.longitude, c.view.max.latitude});
    jobs.Add(c, "Boost", 0.5,
             [line = Prepared<PlanarLine>(c.line), view,
              pieces = bg::model::multi_linestring<PlanarLine>()]() mutable {
               pieces.clear();
               bg::intersection(line, view, pieces);
               return pieces.size();
             });
  }
}

void AddContainment(const Inputs& inputs, Jobs& jobs) {
  for (const ContainmentCase& c : inputs.containment) {
    PlanarPolygon polygon;
    for (const tarvo::GeoCoordinate& point : c.polygon)
      polygon.outer().emplace_back(point.longitude, point.latitude);
    polygon.outer().push_back(polygon.outer().front());
    const PlanarLine points = Prepared<PlanarLine>(c.points);
    // Points on the border do not count: on the level edge that is a fifth of them.
    jobs.Add(c, "Boost within", 0.3, [polygon, points] {
      std::size_t inside = 0;
      for (const PlanarPoint& point : points) inside += bg::within(point, polygon) ? 1u : 0u;
      return inside;
    });
    jobs.Add(c, "Boost covered_by", 0.03, [polygon, points] {
      std::size_t inside = 0;
      for (const PlanarPoint& point : points) inside += bg::covered_by(point, polygon) ? 1u : 0u;
      return inside;
    });
  }
}

/// A walk with the part of the formula that orders distances: no root and no arc sine.
void AddThinning(const Inputs& inputs, Jobs& jobs) {
  using Comparable = bg::strategy::distance::comparable::haversine<double>;
  for (const ThinningCase& c : inputs.thinning) {
    std::vector<SphereLine> route;
    for (const Line& segment : c.route) route.push_back(Prepared<SphereLine>(segment));
    const Comparable comparable(kMeanRadius);
    const double halfChord = std::sin(0.5 * c.spacing / kMeanRadius);
    jobs.Add(c, "Boost walk", kThinningTolerance, [route, comparable, limit = halfChord * halfChord] {
      SphereLine kept;
      for (const SphereLine& segment : route) {
        for (std::size_t i = 0; i < segment.size(); ++i) {
          if (i == 0 || bg::distance(kept.back(), segment[i], comparable) > limit) kept.push_back(segment[i]);
        }
      }
      return kept.size();
    });
  }
}

/// The distance alone: this version of Boost has no function that gives the foot.
void AddProjection(const Inputs& inputs, Jobs& jobs) {
  for (const ProjectionCase& c : inputs.projection) {
    jobs.Add(c, "Boost distance", 0.01,
             [lane = Prepared(LocalMetres(c.lane, c.lane.front())),
              positions = Prepared(LocalMetres(c.positions, c.lane.front()))] {
               double sum = 0.0;
               for (const PlanarPoint& position : positions) sum += bg::distance(position, lane);
               return sum;
             });
  }
}

void AddOffset(const Inputs& inputs, Jobs& jobs) {
  namespace buffer = bg::strategy::buffer;
  for (const OffsetCase& c : inputs.offset) {
    const PlanarLine lane = Prepared(LocalMetres(c.lane, c.lane.front()));
    const auto work = [lane] {
      bg::model::multi_polygon<PlanarPolygon> strip;
      bg::buffer(lane, strip, buffer::distance_symmetric<double>(kOffset), buffer::side_straight(),
                 buffer::join_miter(), buffer::end_flat(), buffer::point_square());
      return strip;
    };
    // The area of the strip on both sides of a line is its length times twice the offset.
    jobs.Add(c, "Boost buffer", 0.05, work, [work] { return bg::area(work()) / (2.0 * kOffset); });
  }
}

}  // namespace

void AddBoost(const Inputs& inputs, Jobs& jobs) {
  AddLengths(inputs, jobs);
  AddSampling(inputs, jobs);
  AddThinning(inputs, jobs);
  AddClipping(inputs, jobs);
  AddContainment(inputs, jobs);
  AddProjection(inputs, jobs);
  AddOffset(inputs, jobs);
}

}  // namespace peers
