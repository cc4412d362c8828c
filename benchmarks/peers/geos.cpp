// GEOS: planar. Routes and polygons are given in degrees, lanes in local metres; indexes are built beforehand.

#define USE_UNSTABLE_GEOS_CPP_API  // the C form would create a point for every question

#include <geos/algorithm/PointLocation.h>
#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/CoordinateSequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LineString.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Location.h>
#include <geos/geom/Point.h>
#include <geos/geom/Polygon.h>
#include <geos/linearref/LengthIndexedLine.h>
#include <geos/operation/buffer/BufferBuilder.h>
#include <geos/operation/buffer/BufferParameters.h>
#include <geos/operation/buffer/OffsetCurve.h>
#include <geos/operation/distance/DistanceOp.h>
#include <geos/operation/distance/IndexedFacetDistance.h>
#include <geos/operation/intersection/Rectangle.h>
#include <geos/operation/intersection/RectangleIntersection.h>

#include <memory>

#include "candidates.h"

namespace peers {
namespace {

using geos::algorithm::locate::IndexedPointInAreaLocator;
using geos::geom::Coordinate;
using geos::geom::CoordinateArraySequence;
using geos::geom::CoordinateSequence;
using geos::geom::Geometry;
using geos::geom::GeometryFactory;
using geos::geom::LineString;
using geos::geom::Location;
using geos::geom::Point;
using geos::operation::buffer::BufferBuilder;
using geos::operation::buffer::BufferParameters;
using geos::operation::buffer::OffsetCurve;
using geos::operation::distance::DistanceOp;
using geos::operation::distance::IndexedFacetDistance;
using geos::operation::intersection::Rectangle;
using geos::operation::intersection::RectangleIntersection;

const GeometryFactory& Factory() {
  return *GeometryFactory::getDefaultInstance();
}

std::vector<Coordinate> Prepared(const Line& line) {
  std::vector<Coordinate> coordinates;
  for (const tarvo::GeoCoordinate& point : line) coordinates.emplace_back(point.longitude, point.latitude);
  return coordinates;
}

std::vector<Coordinate> Prepared(const std::vector<LocalPoint>& points) {
  std::vector<Coordinate> coordinates;
  for (const LocalPoint& point : points) coordinates.emplace_back(point.x, point.y);
  return coordinates;
}

std::unique_ptr<CoordinateSequence> Sequence(std::vector<Coordinate> coordinates) {
  return std::make_unique<CoordinateArraySequence>(std::move(coordinates), 2);
}

template <class Points>
std::shared_ptr<LineString> PreparedLine(const Points& points) {
  return Factory().createLineString(Sequence(Prepared(points)));
}

void AddLengths(const Inputs& inputs, Jobs& jobs) {
  for (const LengthCase& c : inputs.length) {
    const std::shared_ptr<LineString> line = PreparedLine(c.line);
    const double planarLength = PlanarLength(c.line);
    const double expected = jobs.Expected(c);
    jobs.Add(
        c, "GEOS planar", 1e-9, [line] { return line->getLength(); },
        [=] { return expected * (line->getLength() / planarLength); });
  }
}

void AddClipping(const Inputs& inputs, Jobs& jobs) {
  for (const ClippingCase& c : inputs.clipping) {
    const std::shared_ptr<LineString> line = PreparedLine(c.line);
    const Rectangle view(c.view.min.longitude, c.view.min.latitude, c.view.max.longitude,
                         c.view.max.latitude);
    const auto clip = [line, view] { return RectangleIntersection::clip(*line, view); };
    jobs.Add(c, "GEOS", 0.5, clip, [clip] {
      const std::unique_ptr<Geometry> pieces = clip();
      return pieces->isEmpty() ? std::size_t{0} : pieces->getNumGeometries();
    });
  }
}

void AddContainment(const Inputs& inputs, Jobs& jobs) {
  for (const ContainmentCase& c : inputs.containment) {
    Line ring = c.polygon;
    ring.push_back(ring.front());
    const std::shared_ptr<CoordinateSequence> sequence = Sequence(Prepared(ring));
    const std::shared_ptr<Geometry> polygon =
        Factory().createPolygon(Factory().createLinearRing(Sequence(Prepared(ring))));
    const auto locator = std::make_shared<IndexedPointInAreaLocator>(*polygon);
    const std::vector<Coordinate> points = Prepared(c.points);
    locator->locate(&points[0]);  // builds the index
    jobs.Add(c, "GEOS plain", 0.03, [sequence, points] {
      std::size_t inside = 0;
      for (const Coordinate& point : points) {
        inside +=
            geos::algorithm::PointLocation::locateInRing(point, *sequence) != Location::EXTERIOR ? 1u : 0u;
      }
      return inside;
    });
    jobs.Add(c, "GEOS indexed", 0.03, [polygon, locator, points] {
      std::size_t inside = 0;
      for (const Coordinate& point : points)
        inside += locator->locate(&point) != Location::EXTERIOR ? 1u : 0u;
      return inside;
    });
  }
}

void AddProjection(const Inputs& inputs, Jobs& jobs) {
  for (const ProjectionCase& c : inputs.projection) {
    const std::shared_ptr<LineString> lane = PreparedLine(LocalMetres(c.lane, c.lane.front()));
    const std::vector<Coordinate> positions = Prepared(LocalMetres(c.positions, c.lane.front()));
    auto points = std::make_shared<std::vector<std::unique_ptr<Point>>>();
    for (const Coordinate& position : positions) points->emplace_back(Factory().createPoint(position));
    jobs.Add(
        c, "GEOS project", 0.01,
        [lane, positions] {
          const geos::linearref::LengthIndexedLine indexed(lane.get());
          double sum = 0.0;
          for (const Coordinate& position : positions) sum += indexed.project(position);
          return sum;
        },
        [lane, positions] {
          const geos::linearref::LengthIndexedLine indexed(lane.get());
          double sum = 0.0;
          for (const Coordinate& position : positions)
            sum += indexed.extractPoint(indexed.project(position)).distance(position);
          return sum;
        });
    const auto nearest = [lane, points] {
      double sum = 0.0;
      for (const auto& point : *points) {
        const auto ends = DistanceOp::nearestPoints(lane.get(), point.get());
        sum += ends->getAt(0).distance(ends->getAt(1));
      }
      return sum;
    };
    jobs.Add(c, "GEOS nearest", 0.01, nearest);
    const auto facets = std::make_shared<IndexedFacetDistance>(lane.get());
    jobs.Add(c, "GEOS indexed", 0.01, [lane, facets, points] {
      double sum = 0.0;
      for (const auto& point : *points) {
        const std::vector<Coordinate> ends = facets->nearestPoints(point.get());
        sum += ends[0].distance(ends[1]);
      }
      return sum;
    });
  }
}

void AddOffset(const Inputs& inputs, Jobs& jobs) {
  for (const OffsetCase& c : inputs.offset) {
    const std::shared_ptr<LineString> lane = PreparedLine(LocalMetres(c.lane, c.lane.front()));
    BufferParameters parameters;
    parameters.setJoinStyle(BufferParameters::JOIN_MITRE);
    parameters.setEndCapStyle(BufferParameters::CAP_FLAT);
    auto offset = [lane, parameters]() mutable {
      OffsetCurve curve(*lane, kOffset, parameters);
      return curve.getCurve();
    };
    jobs.Add(c, "GEOS offset curve", 0.05, offset, [offset]() mutable { return offset()->getLength(); });
    parameters.setSingleSided(true);
    auto buffer = [lane, parameters]() mutable {
      BufferBuilder builder(parameters);
      return std::unique_ptr<Geometry>(builder.buffer(lane.get(), kOffset));
    };
    // The area of the strip between the line and its offset is their mean length times the offset.
    jobs.Add(c, "GEOS one-sided buffer", 0.05, buffer,
             [buffer, lane]() mutable { return 2.0 * buffer()->getArea() / kOffset - lane->getLength(); });
  }
}

}  // namespace

void AddGeos(const Inputs& inputs, Jobs& jobs) {
  AddLengths(inputs, jobs);
  AddClipping(inputs, jobs);
  AddContainment(inputs, jobs);
  AddProjection(inputs, jobs);
  AddOffset(inputs, jobs);
}

}  // namespace peers
