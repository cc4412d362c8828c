#include "support/every_call.h"

#include <cmath>
#include <cstring>
#include <random>
#include <utility>

#include "support/uniform.h"

namespace vorel::test {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using Algorithm = vorel::VorelGeometryAlgorithm;

namespace {

GeoCoordinate Moved(const GeoCoordinate& point, double longitudes, double latitudes) {
  return GeoCoordinate(point.longitude + longitudes, point.latitude + latitudes);
}

class Hash {
 public:
  void Add(double value) {
    std::uint64_t bits = 0x7ff8000000000000u;
    if (!std::isnan(value)) std::memcpy(&bits, &value, sizeof bits);
    AddBits(bits);
  }
  void Add(int value) { AddBits(static_cast<std::uint32_t>(value)); }
  void Add(std::uint32_t value) { AddBits(value); }
  void Add(const GeoCoordinate& point) {
    Add(point.longitude);
    Add(point.latitude);
  }
  void Add(const GeoCoordinateZ& point) {
    Add(point.longitude);
    Add(point.latitude);
    Add(static_cast<double>(point.z));
  }
  void Add(const vorel::Vector2<double>& vector) {
    Add(vector.x);
    Add(vector.y);
  }
  void Add(const tarvo::MapVector2d& vector) {
    Add(vector.x);
    Add(vector.y);
  }
  template <class T>
  void Add(const std::vector<T>& elements) {
    AddBits(elements.size());
    for (const T& element : elements) Add(element);
  }

  std::uint64_t value() const { return value_; }

 private:
  void AddBits(std::uint64_t bits) {
    for (int shift = 0; shift < 64; shift += 8) value_ = (value_ ^ (bits >> shift & 0xff)) * 0x100000001b3u;
  }

  std::uint64_t value_ = 0xcbf29ce484222325u;
};

}  // namespace

CallInputs::CallInputs(LineZ lineOfCalls, unsigned seedOfNumbers)
    : lineZ(std::move(lineOfCalls)),
      line(WithoutHeight(lineZ)),
      owner("a caller's label that is longer than a string's own buffer") {
  std::mt19937 generator(seedOfNumbers);
  last = static_cast<int>(line.size()) - 1;
  index = static_cast<int>(generator() % static_cast<unsigned>(last));
  metres = Uniform(generator, 1.0, 300.0);
  degrees = Uniform(generator, -720.0, 720.0);
  const std::size_t middle = line.size() / 2;
  pos = GeoCoordinateZ(line[middle].longitude + 2e-5, line[middle].latitude - 3e-5, 4.5f);
  view = {Moved(line[middle], -0.002, -0.001), Moved(line[middle], 0.001, 0.002)};
  invertedView = {view.max, view.min};
  cumulative.push_back(0.0);
  Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(last), cumulative);
  for (int i = 0; i <= last; i += 2) {
    tarvo::RoutePos position;
    position.coordinate = Moved(line[static_cast<std::size_t>(i)], 1e-6, -1e-6);
    position.shapeIndex = i;
    positions.push_back(position);
  }
  boundary.points = lineZ;
  for (unsigned mark = 0; mark < line.size(); mark += 3) boundary.pointIndices.push_back(mark);
  lines = {line, Line(line.rbegin(), line.rend())};
  routes = {lines, {line}};
  for (const GeoCoordinate& point : line) vectors.push_back({point.longitude, point.latitude});
}

void CallOutputs::Clear() {
  line.clear();
  lineZ.clear();
  otherLineZ.clear();
  table.clear();
  indices.clear();
  extremes.clear();
  corners.clear();
  piece.points.clear();
  piece.pointIndices.clear();
  runs.clear();
  values.clear();
}

std::uint64_t CallOutputs::Digest() const {
  Hash hash;
  hash.Add(line);
  hash.Add(lineZ);
  hash.Add(otherLineZ);
  hash.Add(table);
  hash.Add(indices);
  hash.Add(extremes);
  hash.Add(corners);
  hash.Add(piece.points);
  hash.Add(piece.pointIndices);
  hash.Add(runs);
  hash.Add(values);
  return hash.value();
}

namespace {

using In = const CallInputs&;
using Out = CallOutputs&;

const GeoCoordinateZ& At(In in, int index) {
  return in.lineZ[static_cast<std::size_t>(index)];
}
// A vertex as a point without height, so that the form for such points is called.
const GeoCoordinate& FlatAt(In in, int index) {
  return in.line[static_cast<std::size_t>(index)];
}
unsigned Count(In in) {
  return static_cast<unsigned>(in.line.size());
}

std::vector<LibraryCall> AngleCalls() {
  return {
      {"GetAngle(a, b, c)", 0,
       [](In in, Out out) { out << Algorithm::GetAngle(in.line[0], in.line[1], in.line[2]); }},
      {"GetAngle(from, to)", 0, [](In in, Out out) { out << Algorithm::GetAngle(in.line[0], in.pos); }},
      {"GetYaw", 0,
       [](In in, Out out) {
         out << Algorithm::GetYaw(in.line[0].latitude, in.line[0].longitude, in.line[1].latitude,
                                  in.line[1].longitude);
       }},
      {"CalcAziDiff", 0,
       [](In in, Out out) {
         out << Algorithm::CalcAziDiff(static_cast<float>(in.degrees), static_cast<float>(in.metres));
       }},
      {"AngleDiff", 0,
       [](In in, Out out) {
         out << Algorithm::AngleDiff(static_cast<float>(in.degrees), static_cast<float>(in.metres));
       }},
      {"NormalizeAngle180", 0,
       [](In in, Out out) { out << Algorithm::NormalizeAngle180(static_cast<float>(in.degrees)); }},
      {"NormalizeAngle360", 0,
       [](In in, Out out) { out << Algorithm::NormalizeAngle360(static_cast<float>(in.degrees)); }},
      {"GetLength3OfTriangle", 2,
       [](In in, Out out) {
         for (const double length : Algorithm::GetLength3OfTriangle(in.metres, in.metres * 1.2, 40.0))
           out << length;
       }},
      {"Distance", 0,
       [](In in, Out out) {
         out << Algorithm::Distance({in.line[0].longitude, in.line[0].latitude, 1.0},
                                    {in.line[1].longitude, in.line[1].latitude, 2.0});
       }},
      {"Get20PixelDistanceOnePixel", 0, [](In, Out out) { out << Algorithm::Get20PixelDistanceOnePixel(); }},
      {"DistanceTo", 0, [](In in, Out out) { out << in.line[0].DistanceTo(in.line[2]); }},
      {"GetRadianNorth", 0,
       [](In in, Out out) { out << tarvo::kx::GeoUtils::GetRadianNorth(in.line[0], in.line[2]); }},
      {"DistanceOfGcj02Pos", 0,
       [](In in, Out out) {
         out << tarvo::CoordinateUtil::DistanceOfGcj02Pos(in.line[0].longitude, in.line[0].latitude,
                                                          in.line[1].longitude, in.line[1].latitude);
       }},
  };
}

std::vector<LibraryCall> PointCalls() {
  return {
      {"GetBound(points)", 0,
       [](In in, Out out) {
         tarvo::Rect<GeoCoordinate> bound;
         out << Algorithm::GetBound(in.line.data(), Count(in), bound) << bound.min << bound.max;
       }},
      {"IsRectContainsPoint", 0,
       [](In in, Out out) { out << Algorithm::IsRectContainsPoint(in.view, in.line[1]); }},
      {"IsRectIntersectsRect", 0,
       [](In in, Out out) {
         out << Algorithm::IsRectIntersectsRect(in.view, {in.line[0], in.line[3]})
             << Algorithm::IsRectIntersectsRect(in.view, in.invertedView);
       }},
      {"IsPointNearOtherOne", 0,
       [](In in, Out out) {
         out << Algorithm::IsPointNearOtherOne(in.line[0], static_cast<float>(in.metres), in.pos);
       }},
      {"GetInsertPointFromSegment(GeoCoordinate)", 0,
       [](In in, Out out) { out << Algorithm::GetInsertPointFromSegment(in.line[0], in.line[1], 0.3f); }},
      {"GetInsertPointFromSegment(GeoCoordinateZ)", 0,
       [](In in, Out out) { out << Algorithm::GetInsertPointFromSegment(in.lineZ[0], in.lineZ[1], 0.3f); }},
      {"GetLinePoint", 0,
       [](In in, Out out) { out << Algorithm::GetLinePoint(in.line[0], in.line[1], in.metres); }},
      {"GetFootPoint", 0,
       [](In in, Out out) { out << Algorithm::GetFootPoint(in.pos, in.line[0], in.line[1]); }},
      {"GetPositionOfPointToLine", 0,
       [](In in, Out out) { out << Algorithm::GetPositionOfPointToLine(in.pos, in.line[0], in.line[1]); }},
      {"ComputerThatLonLat", 0,
       [](In in, Out out) {
         double longitude = 0.0;
         double latitude = 0.0;
         Algorithm::ComputerThatLonLat(in.pos.longitude, in.pos.latitude, in.degrees, in.metres * 1000.0,
                                       longitude, latitude);
         out << longitude << latitude;
       }},
      {"RotatePoint", 0,
       [](In in, Out out) { out << Algorithm::RotatePoint(in.pos, in.line[0], in.degrees); }},
      {"GetFixAngleForSidePoint", 2,
       [](In in, Out out) {
         const double length = 1.2 * in.line[0].DistanceTo(in.line[3]);  // two candidates
         out << Algorithm::GetFixAngleForSidePoint(in.line, in.line[0], in.line[3], 40.0, length,
                                                   in.index % 2 == 0);
       }},
  };
}

std::vector<LibraryCall> LengthCalls() {
  return {
      {"GetDistance", 0,
       [](In in, Out out) {
         out << Algorithm::GetDistance(in.line.data(), Count(in), static_cast<unsigned>(in.index),
                                       4294967295u);
       }},
      {"GetDistanceByVector(GeoCoordinate)", 0,
       [](In in, Out out) { out << Algorithm::GetDistanceByVector(in.line, 0, Count(in)); }},
      {"GetDistanceByVector(GeoCoordinateZ)", 0,
       [](In in, Out out) { out << Algorithm::GetDistanceByVector(in.lineZ, 0, Count(in)); }},
      {"GetDistanceAndCache", 1,
       [](In in, Out out) { out << Algorithm::GetDistanceAndCache(in.line, 0, Count(in) - 1, out.table); }},
      {"FindFirstSmallerIndex", 1,
       [](In in, Out out) { out << Algorithm::FindFirstSmallerIndex(in.cumulative, in.metres); }},
      {"IsPointAInFrontOfPointB", 0,
       [](In in, Out out) {
         out << Algorithm::IsPointAInFrontOfPointB(in.index, in.metres, in.index, in.degrees);
       }},
      {"DistancePointAAndPointB(line)", 0,
       [](In in, Out out) {
         out << Algorithm::DistancePointAAndPointB(in.lineZ, in.index, in.metres, in.last, in.degrees);
       }},
      {"DistancePointAAndPointB(table)", 0,
       [](In in, Out out) {
         out << Algorithm::DistancePointAAndPointB(in.cumulative, in.index, in.metres, in.last, in.degrees);
       }},
      {"DistanceAToBackB", 0,
       [](In in, Out out) {
         out << Algorithm::DistanceAToBackB(in.lineZ, in.index, in.metres, in.last, in.degrees);
       }},
      {"DistanceOfA2BInRoute", 0,
       [](In in, Out out) {
         out << Algorithm::DistanceOfA2BInRoute(in.pos, in.last, in.line[0], in.index, in.line,
                                                in.cumulative);
       }},
  };
}

std::vector<LibraryCall> SamplingCalls() {
  return {
      {"ChoosePointsInPolyline(distance)", 0,
       [](In in, Out out) {
         out << Algorithm::ChoosePointsInPolyline(in.line.data(), Count(in), in.metres, out.line);
       }},
      {"ChoosePointsInPolyline(interval)", 0,
       [](In in, Out out) { out << Algorithm::ChoosePointsInPolyline(in.line, in.metres, 500, out.line); }},
      {"CalcPointsInPolyline", 0,
       [](In in, Out out) { out << Algorithm::CalcPointsInPolyline(in.line, in.metres, 500, out.line); }},
      {"ChoosePointsInPolylineWithMaxLength(GeoCoordinate)", 0,
       [](In in, Out out) {
         out << Algorithm::ChoosePointsInPolylineWithMaxLength(in.line, in.metres, out.line);
       }},
      {"ChoosePointsInPolylineWithMaxLength(GeoCoordinateZ)", 0,
       [](In in, Out out) {
         out << Algorithm::ChoosePointsInPolylineWithMaxLength(in.lineZ, 10.0 * in.metres, out.lineZ);
       }},
      {"ChoosePointsInPolylineFromBasePoint", 0,
       [](In in, Out out) {
         out << Algorithm::ChoosePointsInPolylineFromBasePoint(in.index, FlatAt(in, in.index), in.metres,
                                                               in.line, in.cumulative, out.line);
       }},
      {"ChoosePointsInPolylineWithOffset", 0,
       [](In in, Out out) {
         out << Algorithm::ChoosePointsInPolylineWithOffset(in.positions, in.metres, out.line, in.line,
                                                            in.cumulative);
       }},
      {"CalculateCandidatePoints", 1,
       [](In in, Out out) { out << Algorithm::CalculateCandidatePoints(in.lines, 40, out.line); }},
  };
}

std::vector<LibraryCall> ViewCalls() {
  return {
      {"IsPointOnLineSegment", 0,
       [](In in, Out out) { out << Algorithm::IsPointOnLineSegment(in.line[0], in.line[2], in.line[1]); }},
      {"IsPointOnPolyline(line)", 0,
       [](In in, Out out) {
         out << Algorithm::IsPointOnPolyline(in.line, in.pos, static_cast<float>(in.metres / 40.0), false);
       }},
      {"IsPointOnPolyline(lines)", 0,
       [](In in, Out out) { out << Algorithm::IsPointOnPolyline(in.lines, in.pos, 3.0f, true); }},
      {"PointOnPolyline", 0,
       [](In in, Out out) {
         out << Algorithm::PointOnPolyline(in.line, in.pos, static_cast<float>(in.metres), false);
       }},
      {"PointRayTest", 0,
       [](In in, Out out) {
         int crossings = 3;
         out << Algorithm::PointRayTest(in.pos, in.line[0], in.line[1], crossings) << crossings;
       }},
      {"PointRayTestInner", 0,
       [](In in, Out out) {
         int crossings = 3;
         out << Algorithm::PointRayTestInner(in.pos, in.line[0], in.line[1], crossings) << crossings;
       }},
      {"IsPointInPolygon", 0, [](In in, Out out) { out << Algorithm::IsPointInPolygon(in.line, in.pos); }},
      {"CutPolyline", kAnyNumberOfAllocations,
       [](In in, Out out) {
         out << Algorithm::CutPolyline(in.line, in.view, out.runs)
             << Algorithm::CutPolyline(in.line, in.invertedView, out.runs);
       }},
      {"CutPolylineUpdate", kAnyNumberOfAllocations,
       [](In in, Out out) {
         Algorithm::CutPolylineUpdate(false, true, 1, Count(in), in.line, in.view, out.runs);
         Algorithm::CutPolylineUpdate(true, false, 2, Count(in), in.line, in.view, out.runs);
       }},
      {"IsTwoSegmentJoined", 0,
       [](In in, Out out) {
         out << Algorithm::IsTwoSegmentJoined(in.line[0], in.line[2], in.line[1], in.line[3]);
       }},
      {"GetInterpolateShapePoints", kAnyNumberOfAllocations,
       [](In in, Out out) {
         Algorithm::GetInterpolateShapePoints(in.line, in.index % 2 == 0, in.view, in.line, 20, in.owner,
                                              out.runs);
       }},
      {"PreProcessRoutePoints(route)", kAnyNumberOfAllocations,
       [](In in, Out out) {
         for (const GeoCoordinate& point :
              Algorithm::PreProcessRoutePoints(in.lines, static_cast<float>(in.metres), 5)) {
           out << point;
         }
       }},
      {"PreProcessRoutePoints(routes)", kAnyNumberOfAllocations,
       [](In in, Out out) {
         Algorithm::PreProcessRoutePoints(in.routes, 2, static_cast<float>(in.metres), 5, in.owner, out.runs);
       }},
  };
}

std::vector<LibraryCall> LaneCalls() {
  return {
      {"ProjectionPosToLine", 0,
       [](In in, Out out) {
         GeoCoordinateZ foot;
         double ratio = -7.0;
         out << Algorithm::ProjectionPosToLine(in.lineZ[0], in.lineZ[1], in.pos, foot, ratio) << foot
             << ratio;
       }},
      {"ProjectionPosToLines", 0,
       [](In in, Out out) {
         int segmentIndex = in.index;
         int resultIndex = -7;
         double ratio = -7.0;
         out << Algorithm::ProjectionPosToLines(in.pos, in.lineZ, segmentIndex, resultIndex, ratio)
             << segmentIndex << resultIndex << ratio;
       }},
      {"ProjectionPosToLinesDistance", 0,
       [](In in, Out out) {
         int startIndex = 0;
         int resultIndex = -7;
         double ratio = -7.0;
         out << Algorithm::ProjectionPosToLinesDistance(in.pos, in.lineZ, startIndex, resultIndex, ratio, 0.5,
                                                        25.0, 3)
             << startIndex << resultIndex << ratio;
       }},
      {"ProjectionPosToLinesDistanceOrientation", 0,
       [](In in, Out out) {
         int startIndex = 0;
         int resultIndex = -7;
         double ratio = -7.0;
         out << Algorithm::ProjectionPosToLinesDistanceOrientation(in.pos, 120.0, in.lineZ, startIndex,
                                                                   resultIndex, ratio, 0.5, 2500.0, 60.0, 3)
             << startIndex << resultIndex << ratio;
       }},
      {"PosInAB", 0,
       [](In in, Out out) {
         double ratio = -7.0;
         out << Algorithm::PosInAB(in.lineZ[1], in.lineZ[0], in.lineZ[2], ratio) << ratio;
       }},
      {"PanLinePoints", 0,
       [](In in, Out out) {
         out.lineZ.clear();  // its output must come empty
         Algorithm::PanLinePoints(in.lineZ, 1.75f, in.index % 2 == 0, out.lineZ);
       }},
      // Four working vectors, of which the guide line grows by up to two points per bend and so up to twice.
      {"CalcBoundaryPoints", 6,
       [](In in, Out out) {
         Algorithm::CalcBoundaryPoints(in.lineZ, 3.5f, static_cast<vorel::ArrowType>(in.index % 3), out.lineZ,
                                       out.otherLineZ);
       }},
      {"RelapseCheckFilter", 0,
       [](In in, Out out) {
         Algorithm::RelapseCheckFilter(in.lineZ, in.lineZ, out.lineZ, in.boundary.points, out.otherLineZ);
       }},
      {"GetBound(range)", 0,
       [](In in, Out out) { out << Algorithm::GetBound(in.lineZ, in.index, -1, out.corners); }},
      {"GetBoundPoints", 0,
       [](In in, Out out) { out << Algorithm::GetBoundPoints(in.vectors, out.extremes, out.indices); }},
      {"CalculatePlaneNormalVector", 0,
       [](In in, Out out) { out << Algorithm::CalculatePlaneNormalVector(in.lineZ); }},
      {"GetPointZInPlane", 0, [](In in, Out out) { out << Algorithm::GetPointZInPlane(in.lineZ, in.pos); }},
      {"HandleBoundaryDataByDistance", 0,
       [](In in, Out out) {
         int cursor = -1;
         out << Algorithm::HandleBoundaryDataByDistance(in.boundary, cursor, in.index, 0.3, in.metres,
                                                        out.piece)
             << cursor << At(in, in.index);
       }},
  };
}

}  // namespace

const std::vector<LibraryCall>& LibraryCalls() {
  static const std::vector<LibraryCall> calls = [] {
    std::vector<LibraryCall> all;
    for (const auto& family :
         {AngleCalls(), PointCalls(), LengthCalls(), SamplingCalls(), ViewCalls(), LaneCalls()}) {
      all.insert(all.end(), family.begin(), family.end());
    }
    return all;
  }();
  return calls;
}

std::vector<CallInputs> ManyCallInputs() {
  std::vector<CallInputs> inputs;
  unsigned seed = 6003;
  for (const NamedLineZ& line : AwkwardLinesZ()) {
    if (line.points.size() >= 4) inputs.emplace_back(line.points, ++seed);
  }
  std::mt19937 generator(6002);
  for (const int vertexCount : {4, 5, 9, 17, 40, 100, 333, 1000}) {
    inputs.emplace_back(RandomLineZ(generator, vertexCount), ++seed);
    inputs.emplace_back(WildLineZ(generator, vertexCount), ++seed);
  }
  return inputs;
}

}  // namespace vorel::test
