// Prints one line per function of the library: a digest of the bits of its results over a fixed set of inputs. Two
// builds of the library agree when they print the same. "exact" marks functions that use only + - * / sqrt, which must
// agree on every machine; "libm" marks those that call the standard math library, which must agree wherever that
// library is the same. Usage: digest [--lanes COUNT] [--raw FILE]
//   COUNT  how many segments of a line, and how many edges of a polygon, are taken at a time: 1, 2 or 4
//   FILE   is written with all results, for a comparison value by value

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "base/coordinate_util.h"
#include "base/geo_utils.h"
#include "drop_in/digest.h"
#include "map_utils/internal/polygon.h"
#include "map_utils/internal/segment_lengths.h"
#include "map_utils/internal/segment_projection.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace {

using dropin::Digest;
using dropin::Unit;
using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using tarvo::Rect;
using vorel::test::Line;
using vorel::test::LineZ;
using Algorithm = vorel::VorelGeometryAlgorithm;

/// Inputs made without the math library, so that they are the same everywhere.
struct Inputs {
  std::vector<LineZ> lines;
  std::vector<double> numbers;

  Inputs() {
    for (const vorel::test::NamedLineZ& line : vorel::test::AwkwardLinesZ()) lines.push_back(line.points);
    std::mt19937 generator(4711);
    for (int i = 0; i < 160; ++i) lines.push_back(Walk(generator, 1e-4, 120));  // a road
    // Across tier borders of the distance.
    for (int i = 0; i < 40; ++i) lines.push_back(Walk(generator, 0.05, 30));
    for (int i = 0; i < 20; ++i) lines.push_back(Walk(generator, 1e-9, 20));  // finer than any map
    for (int i = 0; i < 200; ++i) numbers.push_back((Unit(generator) - 0.5) * 1000.0);
    for (const double number :
         {0.0, -0.0, 1.0, -1.0, 90.0, 180.0, -180.0, 360.0, 1e-310, 1e6, std::nan("")}) {
      numbers.push_back(number);
    }
  }

  double Number(std::size_t index) const { return numbers[index % numbers.size()]; }

 private:
  static double Unit(std::mt19937& generator) { return static_cast<double>(generator()) / 4294967296.0; }

  static LineZ Walk(std::mt19937& generator, double stepDegrees, int vertexCount) {
    double longitude = Unit(generator) * 340.0 - 170.0;
    double latitude = Unit(generator) * 150.0 - 75.0;
    double east = Unit(generator) - 0.5;
    double north = Unit(generator) - 0.5;
    LineZ line;
    for (int i = 0; i < vertexCount; ++i) {
      line.emplace_back(longitude, latitude, static_cast<float>(Unit(generator) * 100.0));
      if (Unit(generator) < 0.05) continue;
      east += (Unit(generator) - 0.5) * 0.4;
      north += (Unit(generator) - 0.5) * 0.4;
      longitude += east * stepDegrees;
      latitude += north * stepDegrees;
    }
    return line;
  }
};

/// Calls `visit(a, b, c, index)` for all neighbouring triples of all lines.
template <class Visit>
void ForEachTriple(const Inputs& inputs, Visit visit) {
  std::size_t index = 0;
  for (const LineZ& line : inputs.lines) {
    for (std::size_t i = 0; i + 2 < line.size(); ++i) visit(line[i], line[i + 1], line[i + 2], index++);
  }
}

template <class Visit>
void ForEachLine(const Inputs& inputs, Visit visit) {
  for (const LineZ& line : inputs.lines) visit(vorel::test::WithoutHeight(line));
}

/// Beyond some degrees the distance is computed with the math library.
bool IsFar(const GeoCoordinate& a, const GeoCoordinate& b) {
  return !(std::fabs(b.latitude - a.latitude) <= 2.5 &&
           std::fabs(std::remainder(b.longitude - a.longitude, 360.0)) <= 2.5);
}

bool HasFarSegment(const Line& line) {
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (IsFar(line[i - 1], line[i])) return true;
  }
  return false;
}

/// Points closer than a centimetre, where a bearing worked out on the sphere loses most of its digits.
bool IsFinerThanMaps(const GeoCoordinate& a, const GeoCoordinate& b) {
  return std::fabs(b.latitude - a.latitude) < 1e-7 && std::fabs(b.longitude - a.longitude) < 1e-7;
}

/// The digest of a function that gives a bearing.
struct BearingDigest {
  Digest usual;
  Digest fine;
  BearingDigest(const char* function, const char* fineName, Unit unit)
      : usual("libm", function, unit), fine("libm", fineName, unit) {}
  Digest& Between(const GeoCoordinate& a, const GeoCoordinate& b) {
    return IsFinerThanMaps(a, b) ? fine : usual;
  }
};

/// The digest of a function that measures distances: exact over lines of near points, otherwise of the math library.
struct DistanceDigest {
  Digest near;
  Digest far;
  DistanceDigest(const char* function, const char* farName)
      : near("exact", function, Unit::kMetres), far("libm", farName, Unit::kMetres) {}
  Digest& Over(const Line& line) { return HasFarSegment(line) ? far : near; }
};

/// Rectangles that a line passes, touches and misses.
std::vector<Rect<GeoCoordinate>> RectsAbout(const Line& line) {
  std::vector<Rect<GeoCoordinate>> rects = {{{0.0, 0.0}, {10.0, 10.0}}, {{7.5, 47.4}, {7.502, 47.6}}};
  Rect<GeoCoordinate> bound;
  if (!line.empty() && Algorithm::GetBound(line.data(), static_cast<unsigned>(line.size()), bound)) {
    const GeoCoordinate middle = line[line.size() / 2];
    rects.push_back(bound);
    rects.push_back({bound.min, middle});
    rects.push_back({middle, bound.max});
    rects.push_back({bound.max, bound.min});
  }
  return rects;
}

void DigestDistances(const Inputs& inputs) {
  Digest near("exact", "DistanceTo", Unit::kMetres);
  Digest far("libm", "DistanceTo far", Unit::kMetres);
  BearingDigest radian("GetRadianNorth", "GetRadianNorth under 1 cm", Unit::kRadians);
  DistanceDigest plain("DistanceOfGcj02Pos", "DistanceOfGcj02Pos far");
  Digest vectors("exact", "Distance", Unit::kMetres);
  ForEachTriple(
      inputs, [&](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c, std::size_t i) {
        const bool isFar = IsFar(a, b);
        (isFar ? far : near) << a.DistanceTo(b);
        far << a.DistanceTo(GeoCoordinate(inputs.Number(i), inputs.Number(i + 7) / 6.0)) << c.DistanceTo(a);
        radian.Between(a, b) << kx::GeoUtils::GetRadianNorth(a, b);
        (isFar ? plain.far : plain.near)
            << tarvo::CoordinateUtil::DistanceOfGcj02Pos(a.longitude, a.latitude, b.longitude, b.latitude);
        vectors << Algorithm::Distance({a.longitude, a.latitude, 1.0}, {b.longitude, b.latitude, 2.0});
      });
}

void DigestAngles(const Inputs& inputs) {
  Digest turning("libm", "GetAngle turning", Unit::kDegrees);
  BearingDigest bearing("GetAngle bearing", "GetAngle bearing under 1 cm", Unit::kDegrees);
  BearingDigest yaw("GetYaw", "GetYaw under 1 cm", Unit::kDegrees);
  Digest aziDiff("exact", "CalcAziDiff", Unit::kDegrees);
  Digest angleDiff("exact", "AngleDiff", Unit::kDegrees);
  Digest fold180("exact", "NormalizeAngle180", Unit::kDegrees);
  Digest fold360("exact", "NormalizeAngle360", Unit::kDegrees);
  Digest triangle("libm", "GetLength3OfTriangle", Unit::kMetres);
  Digest pixel("exact", "Get20PixelDistanceOnePixel");
  pixel << Algorithm::Get20PixelDistanceOnePixel();
  ForEachTriple(inputs, [&](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c,
                            std::size_t i) {
    turning << Algorithm::GetAngle(a, b, c);
    bearing.Between(a, b) << Algorithm::GetAngle(a, b);
    yaw.Between(a, b) << Algorithm::GetYaw(a.latitude, a.longitude, b.latitude, b.longitude);
    const float first = static_cast<float>(inputs.Number(i));
    const float second = static_cast<float>(inputs.Number(i + 13));
    aziDiff << Algorithm::CalcAziDiff(first, second);
    angleDiff << Algorithm::AngleDiff(first, second);
    fold180 << Algorithm::NormalizeAngle180(first * 7.0f);
    fold360 << Algorithm::NormalizeAngle360(first * 7.0f);
    triangle << Algorithm::GetLength3OfTriangle(inputs.Number(i), inputs.Number(i + 3), inputs.Number(i + 5));
  });
}

void DigestPoints(const Inputs& inputs) {
  Digest bounds("exact", "GetBound");
  Digest contains("exact", "IsRectContainsPoint");
  Digest intersects("exact", "IsRectIntersectsRect");
  Digest nearby("exact", "IsPointNearOtherOne");
  Digest insert("exact", "GetInsertPointFromSegment");
  DistanceDigest linePoint("GetLinePoint", "GetLinePoint far");
  Digest foot("exact", "GetFootPoint");
  Digest side("exact", "GetPositionOfPointToLine");
  Digest direct("libm", "ComputerThatLonLat", Unit::kDegrees);
  Digest rotate("libm", "RotatePoint");
  Digest fix("libm", "GetFixAngleForSidePoint", Unit::kDegrees);
  ForEachLine(inputs, [&](const Line& line) {
    Rect<GeoCoordinate> bound;
    bounds << Algorithm::GetBound(line.data(), static_cast<unsigned>(line.size()), bound) << bound;
    for (const Rect<GeoCoordinate>& first : RectsAbout(line)) {
      for (const Rect<GeoCoordinate>& second : RectsAbout(line)) {
        intersects << Algorithm::IsRectIntersectsRect(first, second);
      }
      for (const GeoCoordinate& point : line) contains << Algorithm::IsRectContainsPoint(first, point);
    }
    for (const bool useFirst : {true, false}) {
      if (line.size() >= 4) {
        fix << Algorithm::GetFixAngleForSidePoint(line, line[0], line[3], 40.0, 8.0, useFirst)
            << Algorithm::GetFixAngleForSidePoint(line, line[1], line[2], 25.0, 3.0, useFirst);
      }
    }
  });
  ForEachTriple(
      inputs, [&](const GeoCoordinateZ& a, const GeoCoordinateZ& b, const GeoCoordinateZ& c, std::size_t i) {
        const GeoCoordinate& flatA = a;
        const GeoCoordinate& flatB = b;
        nearby << Algorithm::IsPointNearOtherOne(a, static_cast<float>(inputs.Number(i) * 3.0), b);
        const float ratio = static_cast<float>(inputs.Number(i) / 400.0);
        insert << Algorithm::GetInsertPointFromSegment(flatA, flatB, ratio)
               << Algorithm::GetInsertPointFromSegment(a, b, ratio);
        linePoint.Over({a, b}) << Algorithm::GetLinePoint(a, b, inputs.Number(i));
        foot << Algorithm::GetFootPoint(c, a, b);
        side << Algorithm::GetPositionOfPointToLine(c, a, b);
        double longitude = 0.0;
        double latitude = 0.0;
        if (!(std::fabs(a.longitude) > 1e6)) {
          Algorithm::ComputerThatLonLat(a.longitude, a.latitude, inputs.Number(i),
                                        inputs.Number(i + 1) * 1000.0, longitude, latitude);
          direct << longitude << latitude;
        }
        rotate << Algorithm::RotatePoint(a, b, inputs.Number(i));
      });
}

void DigestRouteFunctions(const Inputs& inputs) {
  DistanceDigest sample("CalcPointsInPolyline", "CalcPointsInPolyline far");
  DistanceDigest choose("ChoosePointsInPolyline interval", "ChoosePointsInPolyline interval far");
  Digest ray("exact", "PointRayTest");
  Digest inner("exact", "PointRayTestInner");
  Digest polygon("exact", "IsPointInPolygon");
  Digest cut("exact", "CutPolyline");
  Digest step("exact", "CutPolylineUpdate");
  Digest joined("exact", "IsTwoSegmentJoined");
  DistanceDigest symbols("GetInterpolateShapePoints", "GetInterpolateShapePoints far");
  ForEachLine(inputs, [&](const Line& line) {
    for (const double interval : {7.5, 50.0, 1234.5}) {
      Line out;
      if (!line.empty()) {
        sample.Over(line) << Algorithm::CalcPointsInPolyline(line, interval, 500, out) << out;
      }
      choose.Over(line) << Algorithm::ChoosePointsInPolyline(line, interval, 40, out) << out;
    }
    for (const GeoCoordinate& point : line) {
      polygon << Algorithm::IsPointInPolygon(line, point)
              << Algorithm::IsPointInPolygon(line,
                                             GeoCoordinate(point.longitude - 1e-5, point.latitude + 1e-5));
    }
    for (const Rect<GeoCoordinate>& rect : RectsAbout(line)) {
      std::vector<Line> pieces;
      cut << Algorithm::CutPolyline(line, rect, pieces) << pieces;
      for (std::size_t i = 1; i < line.size(); ++i) {
        for (const int inside : {0, 1, 2, 3}) {
          std::vector<Line> grown(1);
          Algorithm::CutPolylineUpdate((inside & 1) != 0, (inside & 2) != 0, i,
                                       static_cast<unsigned>(line.size()), line, rect, grown);
          step << grown;
        }
      }
      for (const bool isMainRoute : {true, false}) {
        std::vector<Line> runs;
        // Whole turns about the world at a spacing of a kilometre stay small enough.
        Algorithm::GetInterpolateShapePoints(line, isMainRoute, rect, line, 1000, "digest", runs);
        symbols.Over(line) << runs;
      }
    }
  });
  ForEachTriple(inputs, [&](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c,
                            std::size_t i) {
    int crossings = 0;
    ray << Algorithm::PointRayTest(b, a, c, crossings) << crossings;
    inner << Algorithm::PointRayTestInner(b, a, c, crossings) << crossings;
    joined << Algorithm::IsTwoSegmentJoined(a, b, c, GeoCoordinate(inputs.Number(i), inputs.Number(i + 1)));
  });
}

/// Cumulative table of a line; empty for an empty one. Not taken from the tests' lines: the check of what is digested
/// reads this file's own calls.
std::vector<double> Table(const Line& line) {
  std::vector<double> table;
  if (line.empty()) return table;
  table.push_back(0.0);
  Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, table);
  return table;
}

void DigestLengths(const Inputs& inputs) {
  DistanceDigest length("GetDistance", "GetDistance far");
  DistanceDigest byVector("GetDistanceByVector", "GetDistanceByVector far");
  DistanceDigest cache("GetDistanceAndCache", "GetDistanceAndCache far");
  DistanceDigest onLine("DistancePointAAndPointB on a line", "DistancePointAAndPointB on a line far");
  DistanceDigest byTable("DistancePointAAndPointB by table", "DistancePointAAndPointB by table far");
  DistanceDigest back("DistanceAToBackB", "DistanceAToBackB far");
  DistanceDigest route("DistanceOfA2BInRoute", "DistanceOfA2BInRoute far");
  DistanceDigest find("FindFirstSmallerIndex", "FindFirstSmallerIndex far");
  Digest order("exact", "IsPointAInFrontOfPointB");
  std::size_t number = 0;
  for (LineZ lineZ : inputs.lines) {
    const Line line = vorel::test::WithoutHeight(lineZ);
    const std::vector<double> table = Table(line);
    cache.Over(line) << table;
    for (unsigned from = 0; from < line.size(); from += 7) {
      const auto count = static_cast<unsigned>(line.size());
      length.Over(line) << Algorithm::GetDistance(line.data(), count, from, 4294967295u);
      byVector.Over(line) << Algorithm::GetDistanceByVector(line, from, from + 40)
                          << Algorithm::GetDistanceByVector(lineZ, from, count);
      const int a = static_cast<int>(from);
      const int last = static_cast<int>(count) - 1;
      const double offsetA = inputs.Number(number++);
      const double offsetB = inputs.Number(number++);
      onLine.Over(line) << Algorithm::DistancePointAAndPointB(lineZ, a, offsetA, last, offsetB);
      byTable.Over(line) << Algorithm::DistancePointAAndPointB(table, a, offsetA, last + 1, offsetB);
      back.Over(line) << Algorithm::DistanceAToBackB(lineZ, a, offsetA, last, offsetB);
      route.Over(line) << Algorithm::DistanceOfA2BInRoute(line[from], last, line[from], a, line, table)
                       << Algorithm::DistanceOfA2BInRoute(line[from], a, line.back(), last, line, table);
      find.Over(line) << Algorithm::FindFirstSmallerIndex(table, offsetA * 3.0);
      order << Algorithm::IsPointAInFrontOfPointB(a, offsetA, a, offsetB);
    }
  }
}

void DigestCuts(const Inputs& inputs) {
  DistanceDigest tail("ChoosePointsInPolyline tail", "ChoosePointsInPolyline tail far");
  DistanceDigest head("ChoosePointsInPolylineWithMaxLength", "ChoosePointsInPolylineWithMaxLength far");
  DistanceDigest ahead("ChoosePointsInPolylineFromBasePoint", "ChoosePointsInPolylineFromBasePoint far");
  DistanceDigest behind("ChoosePointsInPolylineWithOffset", "ChoosePointsInPolylineWithOffset far");
  DistanceDigest candidates("CalculateCandidatePoints", "CalculateCandidatePoints far");
  DistanceDigest thinned("PreProcessRoutePoints", "PreProcessRoutePoints far");
  DistanceDigest thinnedRoutes("PreProcessRoutePoints of routes", "PreProcessRoutePoints of routes far");
  DistanceDigest onLine("PointOnPolyline", "PointOnPolyline far");
  DistanceDigest isOnLine("IsPointOnPolyline", "IsPointOnPolyline far");
  DistanceDigest isOnLines("IsPointOnPolyline of lines", "IsPointOnPolyline of lines far");
  Digest onSegment("exact", "IsPointOnLineSegment");
  for (const LineZ& lineZ : inputs.lines) {
    const Line line = vorel::test::WithoutHeight(lineZ);
    const std::vector<double> table = Table(line);
    std::vector<tarvo::RoutePos> positions(line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
      positions[i].coordinate = line[i];
      positions[i].shapeIndex = static_cast<int>(i);
    }
    for (const double metres : {0.0, 3.25, 77.0, 1234.5}) {
      Line out;
      tail.Over(line) << Algorithm::ChoosePointsInPolyline(line.data(), static_cast<unsigned>(line.size()),
                                                           metres, out)
                      << out;
      out.clear();
      LineZ outZ;
      head.Over(line) << Algorithm::ChoosePointsInPolylineWithMaxLength(line, metres, out) << out
                      << Algorithm::ChoosePointsInPolylineWithMaxLength(lineZ, metres, outZ) << outZ;
      out.clear();
      if (!line.empty()) {
        ahead.Over(line) << Algorithm::ChoosePointsInPolylineFromBasePoint(0, line[0], metres, line, table,
                                                                           out)
                         << out;
      }
      out.clear();
      behind.Over(line) << Algorithm::ChoosePointsInPolylineWithOffset(positions, metres, out, line, table)
                        << out;
      thinned.Over(line) << Algorithm::PreProcessRoutePoints({line, line}, static_cast<float>(metres), 3);
      std::vector<Line> routes;
      Algorithm::PreProcessRoutePoints({{line, line}, {line}}, 2, static_cast<float>(metres), 3, "digest",
                                       routes);
      thinnedRoutes.Over(line) << routes;
      candidates.Over(line) << Algorithm::CalculateCandidatePoints(
                                   {line, line}, 3 + static_cast<unsigned>(metres) / 10, out)
                            << out;
      for (std::size_t i = 1; i < line.size(); i += 5) {
        for (const bool checkSegments : {false, true}) {
          const auto tolerance = static_cast<float>(metres);
          const GeoCoordinate aside(line[i].longitude + 2e-5, line[i].latitude - 1e-5);
          onLine.Over(line) << Algorithm::PointOnPolyline(line, line[i], tolerance, checkSegments)
                            << Algorithm::PointOnPolyline(line, aside, tolerance, checkSegments);
          isOnLine.Over(line) << Algorithm::IsPointOnPolyline(line, aside, tolerance, checkSegments);
          isOnLines.Over(line) << Algorithm::IsPointOnPolyline({{aside}, line}, aside, tolerance,
                                                               checkSegments);
        }
      }
    }
  }
  ForEachTriple(inputs, [&](const GeoCoordinate& a, const GeoCoordinate& b, const GeoCoordinate& c,
                            std::size_t i) {
    onSegment << Algorithm::IsPointOnLineSegment(a, c, b)
              << Algorithm::IsPointOnLineSegment(a, GeoCoordinate(inputs.Number(i), inputs.Number(i + 1)), b);
  });
}

void DigestLanes(const Inputs& inputs) {
  Digest project("libm", "ProjectionPosToLine");
  Digest walk("libm", "ProjectionPosToLines");
  Digest scan("libm", "ProjectionPosToLinesDistance");
  Digest headingScan("libm", "ProjectionPosToLinesDistanceOrientation");
  DistanceDigest between("PosInAB", "PosInAB far");
  Digest offset("libm", "PanLinePoints");
  Digest arrow("libm", "CalcBoundaryPoints");
  Digest filter("exact", "RelapseCheckFilter");
  Digest corners("exact", "GetBound of a range");
  Digest extremes("exact", "GetBoundPoints");
  Digest normal("exact", "CalculatePlaneNormalVector");
  Digest height("exact", "GetPointZInPlane");
  DistanceDigest piece("HandleBoundaryDataByDistance", "HandleBoundaryDataByDistance far");
  for (const LineZ& line : inputs.lines) {
    const Line flat = vorel::test::WithoutHeight(line);
    const int middle = static_cast<int>(line.size() / 2);
    for (std::size_t i = 0; i < line.size(); i += 7) {
      const GeoCoordinateZ pos(line[i].longitude + 3e-5, line[i].latitude - 2e-5, 0.0f);
      int segmentIndex = middle;
      int resultIndex = -7;
      double ratio = -7.0;
      walk << Algorithm::ProjectionPosToLines(pos, line, segmentIndex, resultIndex, ratio) << segmentIndex
           << resultIndex << ratio;
      int startIndex = 0;
      scan << Algorithm::ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio, 0.5, 25.0, 3)
           << startIndex << resultIndex << ratio;
      startIndex = 0;
      headingScan << Algorithm::ProjectionPosToLinesDistanceOrientation(
                         pos, inputs.Number(i), line, startIndex, resultIndex, ratio, 0.5, 25.0, 60.0, 3)
                  << startIndex << resultIndex << ratio;
    }
    for (const bool left : {false, true}) {
      LineZ moved;
      Algorithm::PanLinePoints(line, 1.75f, left, moved);
      offset << moved;
    }
    for (const int type : {0, 1, 2}) {
      LineZ left;
      LineZ right;
      Algorithm::CalcBoundaryPoints(line, 3.5f, static_cast<vorel::ArrowType>(type), left, right);
      arrow << left << right;
    }
    LineZ left;
    LineZ right;
    const LineZ reversed(line.rbegin(), line.rend());
    Algorithm::RelapseCheckFilter(line, line, left, reversed, right);
    filter << left << right;
    std::vector<tarvo::MapVector2d> box;
    corners << Algorithm::GetBound(line, 1, middle, box) << box;
    std::vector<vorel::Vector2<double>> vectors;
    for (const GeoCoordinate& point : flat) vectors.push_back({point.longitude, point.latitude});
    std::vector<vorel::Vector2<double>> extremeVectors;
    std::vector<int> indices;
    extremes << Algorithm::GetBoundPoints(vectors, extremeVectors, indices) << indices;
    const tarvo::HAD::BoundaryData source{line, {1, 3, 4, 9}};
    for (const double length : {3.0, 40.0, 1e4}) {
      tarvo::HAD::BoundaryData cut;
      int cursor = -1;
      piece.Over(flat) << Algorithm::HandleBoundaryDataByDistance(source, cursor, 1, 0.3, length, cut)
                       << cut.points << cursor;
    }
  }
  ForEachTriple(inputs,
                [&](const GeoCoordinateZ& a, const GeoCoordinateZ& b, const GeoCoordinateZ& c, std::size_t) {
                  GeoCoordinateZ foot;
                  double ratio = -7.0;
                  project << Algorithm::ProjectionPosToLine(a, b, c, foot, ratio) << foot << ratio;
                  between.Over({a, b, c, a}) << Algorithm::PosInAB(b, a, c, ratio) << ratio;
                  const LineZ plane = {a, b, c};
                  normal << Algorithm::CalculatePlaneNormalVector(plane);
                  height << Algorithm::GetPointZInPlane(plane, a) << Algorithm::GetPointZInPlane(plane, b);
                });
}

/// Takes the given number of segments or edges at a time; false when the machine has no such form.
bool ForceLanes(unsigned long count) {
  const auto* kernel = vorel::internal::FindSegmentKernel(count);
  if (kernel == nullptr) return false;
  vorel::internal::ForceSegmentKernel(kernel);
  // Polygons and projections have no form with one at a time: the widest one stays.
  vorel::internal::ForceLocateInPolygon(vorel::internal::FindLocateInPolygon(count));
  vorel::internal::ForceMeasureSegments(vorel::internal::FindMeasureSegments(count));
  return true;
}

/// Whether the inputs hold each kind of line at which formulas break; says which one is missing.
bool HasEveryAwkwardKind(const Inputs& inputs) {
  const struct {
    const char* name;
    bool (*is)(const GeoCoordinateZ& point, const GeoCoordinateZ& next);
  } kinds[] = {
      {"NaN", [](const auto& p, const auto&) { return std::isnan(p.longitude) || std::isnan(p.latitude); }},
      {"infinity",
       [](const auto& p, const auto&) { return std::isinf(p.longitude) && std::isinf(p.latitude); }},
      {"pole", [](const auto& p, const auto&) { return std::fabs(p.latitude) == 90.0; }},
      {"latitude beyond the pole", [](const auto& p, const auto&) { return std::fabs(p.latitude) > 90.0; }},
      {"antimeridian",
       [](const auto& p, const auto& q) { return p.longitude > 179.0 && q.longitude < -179.0; }},
      {"repeated vertex",
       [](const auto& p, const auto& q) { return p.longitude == q.longitude && p.latitude == q.latitude; }},
      {"special height", [](const auto& p, const auto&) { return !std::isfinite(p.z); }},
  };
  bool hasEvery = true;
  for (const auto& kind : kinds) {
    bool isThere = false;
    for (const LineZ& line : inputs.lines) {
      for (std::size_t i = 0; i + 1 < line.size(); ++i) isThere = isThere || kind.is(line[i], line[i + 1]);
    }
    if (!isThere) std::fprintf(stderr, "digest: no input has a %s\n", kind.name);
    hasEvery = hasEvery && isThere;
  }
  return hasEvery;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const char* rawPath = nullptr;
  for (int i = 1; i < argumentCount; i += 2) {
    const std::string option = arguments[i];
    const char* value = i + 1 < argumentCount ? arguments[i + 1] : nullptr;
    if (option == "--raw" && value != nullptr) {
      rawPath = value;
    } else if (option == "--lanes" && value != nullptr) {
      if (!ForceLanes(std::strtoul(value, nullptr, 10))) {
        std::fprintf(stderr, "digest: this machine does not take %s at a time\n", value);
        return 1;
      }
    } else {
      std::fprintf(stderr, "usage: digest [--lanes COUNT] [--raw FILE]\n");
      return 2;
    }
  }
  if (rawPath != nullptr) {
    dropin::RawResults() = std::fopen(rawPath, "wb");
    if (dropin::RawResults() == nullptr) {
      std::fprintf(stderr, "digest: cannot write %s\n", rawPath);
      return 1;
    }
  }
  const Inputs inputs;
  if (!HasEveryAwkwardKind(inputs)) return 1;
  DigestDistances(inputs);
  DigestAngles(inputs);
  DigestPoints(inputs);
  DigestRouteFunctions(inputs);
  DigestLengths(inputs);
  DigestCuts(inputs);
  DigestLanes(inputs);
  if (rawPath != nullptr && std::fclose(dropin::RawResults()) != 0) {
    std::fprintf(stderr, "digest: cannot write %s\n", rawPath);
    return 1;
  }
  return 0;
}
