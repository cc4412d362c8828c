// Each row of docs/contracts.md against what the function does: what it clears, appends and overwrites, whether it
// allocates and throws, what all-NaN input gives, and that an output may be what the row allows it to be.

#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/coordinate_util.h"
#include "base/geo_utils.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/allocation_counter.h"
#include "support/bits.h"

namespace {

using Algorithm = vorel::VorelGeometryAlgorithm;
using Point = tarvo::GeoCoordinate;
using PointZ = tarvo::GeoCoordinateZ;
using Line = std::vector<Point>;
using LineZ = std::vector<PointZ>;
using Lines = std::vector<Line>;
using Metres = std::vector<double>;
using View = tarvo::Rect<Point>;
using Boundary = tarvo::HAD::BoundaryData;
using tarvo::MapVector2d;
using tarvo::RoutePos;
using vorel::test::kNaN;
using vorel::test::kNaNFloat;
using Vector = vorel::Vector2<double>;

/// What a function was seen to do.
struct Seen {
  std::map<std::string, std::string> outputs;  ///< of each output: appended, gone, changed or same
  bool refusalLeavesOutputs = false;           ///< a refused call was made, and its outputs were as before
  bool allocates = false;
  bool throwsOutOfRange = false;
  std::string fromNaN;         ///< what input of NaN alone gives; a row's text begins with it
  bool sharesAllowed = false;  ///< an output that is also another argument was tried, and gave what it should
};

using Row = std::map<std::string, std::string>;  // column -> text

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::string cell;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '|' && line[i - 1] != '\\') {
      const std::size_t first = cell.find_first_not_of(' ');
      const std::size_t last = cell.find_last_not_of(' ');
      cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
      cell.clear();
    } else {
      cell += line[i];
    }
  }
  return cells;
}

std::string WithoutMarks(std::string text) {
  std::string plain;
  for (const char c : text) {
    if (c != '`') plain += c;
  }
  return plain;
}

/// The page's rows by function.
std::map<std::string, Row> ReadPage() {
  std::ifstream page(VOREL_CONTRACTS_PAGE);
  std::map<std::string, Row> rows;
  std::vector<std::string> columns;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("| Function", 0) == 0) columns = Cells(line);
    if (line.rfind("| `", 0) != 0) continue;
    const std::vector<std::string> cells = Cells(line);
    EXPECT_EQ(cells.size(), columns.size()) << line;
    Row& row = rows[WithoutMarks(cells.at(0))];
    for (std::size_t i = 1; i < columns.size() && i < cells.size(); ++i) row[columns[i]] = cells[i];
  }
  return rows;
}

std::string Text(double value) {
  if (std::isnan(value)) return "NaN";
  std::ostringstream text;
  text << value;
  return text.str();
}
std::string Text(bool value) {
  return value ? "true" : "false";
}
std::string Text(int value) {
  return std::to_string(value);
}
std::string Text(const Point& value) {
  return Text(value.longitude) == "NaN" ? Text(value.latitude) : "finite";
}

const Point kNaNPoint(kNaN, kNaN);
const PointZ kNaNPointZ(kNaN, kNaN, kNaNFloat);
const Line kLine = {{0.0, 0.0}, {0.001, 0.0}, {0.002, 0.0}, {0.003, 0.001}};
const LineZ kLineZ = {{0.001, 0.0, 1.0f}, {0.002, 0.0, 2.0f}, {0.003, 0.0, 3.0f}, {0.004, 0.001, 4.0f}};
const Line kNaNLine(3, kNaNPoint);
const LineZ kNaNLineZ(3, kNaNPointZ);
const View kView{{-1.0, -1.0}, {1.0, 1.0}};
const View kNaNView{kNaNPoint, kNaNPoint};
const Line kSquare = {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}};
const Metres kTable = {0.0, 111.3, 222.6, 380.0};

bool Counted(const std::function<void()>& call) {
  const vorel::test::AllocationCounter counter;
  call();
  return counter.Count() > 0;
}

/// How a container that held `before` came out of a call: in front, or not at all.
template <class Container>
std::string Fate(const Container& before, const Container& after) {
  if (after.size() < before.size()) return "gone";
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (!vorel::test::SameBits(before[i], after[i])) return "gone";
  }
  return after.size() > before.size() ? "appended" : "same";
}
std::string Fate(const std::vector<Vector>& before, const std::vector<Vector>& after) {
  return after.size() == 4 && before.size() != 4 ? "gone" : "same";
}
std::string Fate(const Lines& before, const Lines& after) {
  return after.size() < before.size() || after.front() != before.front()
             ? "gone"
             : (after.size() > before.size() ? "appended" : "same");
}
std::string Fate(const std::vector<int>& before, const std::vector<int>& after) {
  return before == after ? "same" : "gone";
}
std::string Fate(const std::vector<MapVector2d>& before, const std::vector<MapVector2d>& after) {
  return after.size() < before.size() || after[0].x != before[0].x
             ? "gone"
             : (after.size() > before.size() ? "appended" : "same");
}

/// A function with one growing output: `call` fills it, `refuse` is refused.
template <class Container>
Seen Grows(const char* name, const Container& before, const std::function<void(Container&)>& call,
           const std::function<void(Container&)>& refuse, const std::string& fromNaN) {
  Seen seen;
  Container out = before;
  call(out);
  seen.outputs[name] = Fate(before, out);
  out = before;
  if (refuse) {
    refuse(out);
    seen.refusalLeavesOutputs = Fate(before, out) == "same";
  }
  Container fresh;
  seen.allocates = Counted([&] { call(fresh); });
  seen.fromNaN = fromNaN;
  return seen;
}

/// A function without outputs.
Seen Plain(const std::function<void()>& call, const std::string& fromNaN) {
  Seen seen;
  seen.allocates = Counted(call);
  seen.fromNaN = fromNaN;
  return seen;
}

template <class Function>
bool ThrowsOutOfRange(const Function& function) {
  try {
    function();
  } catch (const std::out_of_range&) {
    return true;
  }
  return false;
}

std::string OneNaNPoint(const Line& out, std::size_t at) {
  return out.size() > at && std::isnan(out[at].longitude) ? "one NaN point" : "none";
}

std::map<std::string, Seen> SeeAngles() {
  std::map<std::string, Seen> seen;
  const Point a(1.0, 2.0), b(1.5, 2.5), c(3.0, 2.0);
  seen["GetAngle(a, b, c)"] =
      Plain([&] { Algorithm::GetAngle(a, b, c); },
            Text(static_cast<double>(Algorithm::GetAngle(kNaNPoint, kNaNPoint, kNaNPoint))));
  seen["GetAngle(from, to)"] =
      Plain([&] { Algorithm::GetAngle(a, b); }, Text(Algorithm::GetAngle(kNaNPoint, kNaNPoint)));
  seen["GetYaw(lat1, lon1, lat2, lon2)"] =
      Plain([&] { Algorithm::GetYaw(1.0, 2.0, 3.0, 4.0); }, Text(Algorithm::GetYaw(kNaN, kNaN, kNaN, kNaN)));
  seen["CalcAziDiff(from, to)"] =
      Plain([&] { Algorithm::CalcAziDiff(1.0f, 2.0f); },
            Text(static_cast<double>(Algorithm::CalcAziDiff(kNaNFloat, kNaNFloat))));
  seen["AngleDiff(from, to)"] = Plain([&] { Algorithm::AngleDiff(1.0f, 2.0f); },
                                      Text(static_cast<double>(Algorithm::AngleDiff(kNaNFloat, kNaNFloat))));
  seen["NormalizeAngle180(angle)"] =
      Plain([&] { Algorithm::NormalizeAngle180(500.0f); },
            Text(static_cast<double>(Algorithm::NormalizeAngle180(kNaNFloat))));
  seen["NormalizeAngle360(angle)"] =
      Plain([&] { Algorithm::NormalizeAngle360(500.0f); },
            Text(static_cast<double>(Algorithm::NormalizeAngle360(kNaNFloat))));
  seen["GetLength3OfTriangle(sideA, sideB, angle)"] =
      Plain([&] { Algorithm::GetLength3OfTriangle(3.0, 4.0, 30.0); },
            Algorithm::GetLength3OfTriangle(kNaN, kNaN, kNaN).empty() ? "empty" : "lengths");
  seen["Distance(p, q)"] = Plain(
      [&] {
        Algorithm::Distance({1.0, 2.0, 3.0}, {2.0, 3.0, 4.0});
      },
      Text(Algorithm::Distance({kNaN, kNaN, kNaN}, {kNaN, kNaN, kNaN})));
  seen["Get20PixelDistanceOnePixel()"] = Plain([&] { Algorithm::Get20PixelDistanceOnePixel(); }, "no input");
  seen["GeoCoordinate::DistanceTo(other)"] =
      Plain([&] { a.DistanceTo(c); }, Text(kNaNPoint.DistanceTo(kNaNPoint)));
  seen["kx::GeoUtils::GetRadianNorth(a, b)"] =
      Plain([&] { tarvo::kx::GeoUtils::GetRadianNorth(a, b); },
            Text(tarvo::kx::GeoUtils::GetRadianNorth(kNaNPoint, kNaNPoint)));
  seen["CoordinateUtil::DistanceOfGcj02Pos(x1, y1, x2, y2)"] =
      Plain([&] { tarvo::CoordinateUtil::DistanceOfGcj02Pos(1.0, 2.0, 3.0, 4.0); },
            Text(tarvo::CoordinateUtil::DistanceOfGcj02Pos(kNaN, kNaN, kNaN, kNaN)));
  return seen;
}

std::map<std::string, Seen> SeePoints() {
  std::map<std::string, Seen> seen;
  const Point a(1.0, 2.0), b(1.5, 2.5), c(3.0, 2.0);
  {
    Seen& bound = seen["GetBound(points, count, bound)"];
    View box = kView;
    bound.allocates = Counted([&] { Algorithm::GetBound(kLine.data(), 4, box); });
    bound.outputs["bound"] = box.min.longitude == 0.0 ? "changed" : "same";
    box = kView;
    bound.refusalLeavesOutputs =
        !Algorithm::GetBound(nullptr, 4, box) && !Algorithm::GetBound(kLine.data(), 0, box) &&
        vorel::test::SameBits(box.min, kView.min) && vorel::test::SameBits(box.max, kView.max);
    Algorithm::GetBound(kNaNLine.data(), 3, box);
    bound.fromNaN = Text(box.min);
    View within[2] = {{{5.0, 5.0}, {4.0, 6.0}}, {{7.0, 1.0}, {2.0, 2.0}}};
    Algorithm::GetBound(&within[0].min, 4, within[0]);
    bound.sharesAllowed = within[0].min == Point(2.0, 1.0) && within[0].max == Point(7.0, 6.0);
  }
  seen["IsRectContainsPoint(rect, point)"] = Plain([&] { Algorithm::IsRectContainsPoint(kView, a); },
                                                   Text(Algorithm::IsRectContainsPoint(kNaNView, kNaNPoint)));
  seen["IsRectIntersectsRect(first, second)"] =
      Plain([&] { Algorithm::IsRectIntersectsRect(kView, kView); },
            Text(Algorithm::IsRectIntersectsRect(kNaNView, kNaNView)));
  seen["IsPointNearOtherOne(point, distance, other)"] =
      Plain([&] { Algorithm::IsPointNearOtherOne(a, 10.0f, b); },
            Text(Algorithm::IsPointNearOtherOne(kNaNPoint, kNaNFloat, kNaNPoint)));
  seen["GetInsertPointFromSegment(start, end, ratio) without heights"] =
      Plain([&] { Algorithm::GetInsertPointFromSegment(a, b, 0.5f); },
            Text(Algorithm::GetInsertPointFromSegment(a, b, kNaNFloat)));
  seen["GetInsertPointFromSegment(start, end, ratio) with heights"] =
      Plain([&] { Algorithm::GetInsertPointFromSegment(kLineZ[0], kLineZ[1], 0.5f); },
            Text(Algorithm::GetInsertPointFromSegment(kLineZ[0], kLineZ[1], kNaNFloat)));
  seen["GetLinePoint(start, end, distance)"] =
      Plain([&] { Algorithm::GetLinePoint(a, b, 10.0); }, Text(Algorithm::GetLinePoint(a, b, kNaN)));
  seen["GetFootPoint(point, start, end)"] =
      Plain([&] { Algorithm::GetFootPoint(a, b, c); },
            Text(Algorithm::GetFootPoint(kNaNPoint, kNaNPoint, kNaNPoint)));
  seen["GetPositionOfPointToLine(point, start, end)"] =
      Plain([&] { Algorithm::GetPositionOfPointToLine(a, b, c); },
            Text(Algorithm::GetPositionOfPointToLine(kNaNPoint, kNaNPoint, kNaNPoint)));
  {
    Seen& reached =
        seen["ComputerThatLonLat(longitude, latitude, azimuth, distance, outLongitude, outLatitude)"];
    double longitude = -1.0, latitude = -1.0;
    reached.allocates =
        Counted([&] { Algorithm::ComputerThatLonLat(1.0, 2.0, 30.0, 1e5, longitude, latitude); });
    reached.outputs["outLongitude"] = longitude != -1.0 ? "changed" : "same";
    reached.outputs["outLatitude"] = latitude != -1.0 ? "changed" : "same";
    double shared[2] = {1.0, 2.0};
    Algorithm::ComputerThatLonLat(shared[0], shared[1], 30.0, 1e5, shared[0], shared[1]);
    reached.sharesAllowed = shared[0] == longitude && shared[1] == latitude;
    Algorithm::ComputerThatLonLat(kNaN, kNaN, kNaN, kNaN, longitude, latitude);
    reached.fromNaN = longitude == latitude ? Text(latitude) : "two values";
  }
  seen["RotatePoint(point, center, angle)"] = Plain([&] { Algorithm::RotatePoint(a, b, 400.0); },
                                                    Text(Algorithm::RotatePoint(kNaNPoint, kNaNPoint, kNaN)));
  seen["GetFixAngleForSidePoint(line, from, to, angle, length, useFirstSegment)"] =
      Plain([&] { Algorithm::GetFixAngleForSidePoint(kLine, kLine[1], kLine[2], 30.0, 150.0, true); },
            Text(static_cast<double>(
                Algorithm::GetFixAngleForSidePoint(kNaNLine, kNaNPoint, kNaNPoint, kNaN, kNaN, true))));
  return seen;
}

std::map<std::string, Seen> SeeMeasurement() {
  std::map<std::string, Seen> seen;
  seen["GetDistance(points, count, from, to)"] =
      Plain([&] { Algorithm::GetDistance(kLine.data(), 4, 0, 4); },
            Text(Algorithm::GetDistance(kNaNLine.data(), 3, 0, 3)));
  seen["GetDistanceByVector(line, from, to) with heights"] =
      Plain([&] { Algorithm::GetDistanceByVector(kLineZ, 0, 3); },
            Text(Algorithm::GetDistanceByVector(kNaNLineZ, 0, 2)));
  seen["GetDistanceByVector(line, from, to) without heights"] =
      Plain([&] { Algorithm::GetDistanceByVector(kLine, 0, 3); },
            Text(Algorithm::GetDistanceByVector(kNaNLine, 0, 2)));
  Metres sums;
  Algorithm::GetDistanceAndCache(kNaNLine, 0, 2, sums);
  seen["GetDistanceAndCache(line, from, to, cache)"] = Grows<Metres>(
      "cache", Metres{7.0}, [&](Metres& out) { Algorithm::GetDistanceAndCache(kLine, 0, 3, out); },
      [&](Metres& out) { Algorithm::GetDistanceAndCache(kLine, 2, 2, out); }, Text(sums.at(0)));
  seen["FindFirstSmallerIndex(values, target)"] =
      Plain([&] { Algorithm::FindFirstSmallerIndex(kTable, 200.0); },
            Text(Algorithm::FindFirstSmallerIndex(Metres(3, kNaN), kNaN)));
  seen["IsPointAInFrontOfPointB(indexA, offsetA, indexB, offsetB)"] =
      Plain([&] { Algorithm::IsPointAInFrontOfPointB(1, 2.0, 1, 3.0); },
            Text(Algorithm::IsPointAInFrontOfPointB(1, kNaN, 1, kNaN)));
  {
    Seen& between = seen["DistancePointAAndPointB(line, indexA, offsetA, indexB, offsetB)"];
    LineZ line = kLineZ, nan = kNaNLineZ;
    between.allocates = Counted([&] { Algorithm::DistancePointAAndPointB(line, 0, 1.0, 2, 3.0); });
    between.outputs["line"] = Fate(kLineZ, line);
    between.fromNaN = Text(Algorithm::DistancePointAAndPointB(nan, 0, kNaN, 2, kNaN));
  }
  seen["DistancePointAAndPointB(cumulative, indexA, offsetA, indexB, offsetB)"] =
      Plain([&] { Algorithm::DistancePointAAndPointB(kTable, 0, 1.0, 2, 3.0); },
            Text(Algorithm::DistancePointAAndPointB(Metres(4, kNaN), 0, kNaN, 2, kNaN)));
  seen["DistanceAToBackB(line, indexA, offsetA, indexB, offsetB)"] =
      Plain([&] { Algorithm::DistanceAToBackB(kLineZ, 0, 1.0, 2, 3.0); },
            Text(Algorithm::DistanceAToBackB(kNaNLineZ, 0, kNaN, 2, kNaN)));
  const Metres nanTable(3, kNaN), shortTable(2, 1.0);
  Seen& signedWay = seen["DistanceOfA2BInRoute(pointA, indexA, pointB, indexB, line, cumulative)"];
  signedWay = Plain([&] { Algorithm::DistanceOfA2BInRoute(kLine[2], 2, kLine[0], 0, kLine, kTable); },
                    Text(Algorithm::DistanceOfA2BInRoute(kNaNPoint, 2, kNaNPoint, 0, kNaNLine, nanTable)));
  signedWay.throwsOutOfRange =
      ThrowsOutOfRange([&] { Algorithm::DistanceOfA2BInRoute(kLine[2], 2, kLine[0], 0, kLine, shortTable); });
  return seen;
}

std::map<std::string, Seen> SeeSampling() {
  std::map<std::string, Seen> seen;
  const Line before = {{5.0, 5.0}};
  const LineZ beforeZ = {{5.0, 5.0, 5.0f}};
  const auto startAlone = [](const Line& out) {
    return out.size() == 1 ? "the start alone" : "more than the start";
  };
  Line out;
  Algorithm::ChoosePointsInPolyline(kLine.data(), 4, kNaN, out);
  seen["ChoosePointsInPolyline(points, count, distance, out)"] = Grows<Line>(
      "out", before, [](Line& o) { Algorithm::ChoosePointsInPolyline(kLine.data(), 4, 150.0, o); },
      [](Line& o) { Algorithm::ChoosePointsInPolyline(nullptr, 4, 150.0, o); }, OneNaNPoint(out, 0));
  out.clear();
  Algorithm::ChoosePointsInPolyline(kNaNLine, kNaN, 0, out);
  seen["ChoosePointsInPolyline(points, interval, maxCount, out)"] = Grows<Line>(
      "out", before, [](Line& o) { Algorithm::ChoosePointsInPolyline(kLine, 50.0, 0, o); },
      [](Line& o) { Algorithm::ChoosePointsInPolyline(kLine, 0.0, 0, o); }, startAlone(out));
  out.clear();
  Algorithm::CalcPointsInPolyline(kNaNLine, kNaN, 0, out);
  seen["CalcPointsInPolyline(points, interval, maxCount, out)"] = Grows<Line>(
      "out", before, [](Line& o) { Algorithm::CalcPointsInPolyline(kLine, 50.0, 0, o); }, nullptr,
      startAlone(out));
  out.clear();
  Algorithm::ChoosePointsInPolylineWithMaxLength(kLine, kNaN, out);
  seen["ChoosePointsInPolylineWithMaxLength(points, maxLength, out) without heights"] = Grows<Line>(
      "out", before, [](Line& o) { Algorithm::ChoosePointsInPolylineWithMaxLength(kLine, 150.0, o); },
      [](Line& o) { Algorithm::ChoosePointsInPolylineWithMaxLength(kLine, 0.0, o); }, OneNaNPoint(out, 1));
  seen["ChoosePointsInPolylineWithMaxLength(points, maxLength, out) with heights"] = Grows<LineZ>(
      "out", beforeZ, [](LineZ& o) { Algorithm::ChoosePointsInPolylineWithMaxLength(kLineZ, 150.0, o); },
      [](LineZ& o) { Algorithm::ChoosePointsInPolylineWithMaxLength(kLineZ, 0.0, o); }, OneNaNPoint(out, 1));
  return seen;
}

std::map<std::string, Seen> SeeRouteSampling() {
  std::map<std::string, Seen> seen;
  const Line before = {{5.0, 5.0}};
  {
    Line out;
    Algorithm::ChoosePointsInPolylineFromBasePoint(0, kLine[0], kNaN, kLine, kTable, out);
    Seen& ahead =
        seen["ChoosePointsInPolylineFromBasePoint(baseIndex, basePoint, length, points, cumDist, out)"];
    const auto call = [](Line& o) {
      Algorithm::ChoosePointsInPolylineFromBasePoint(0, kLine[0], 150.0, kLine, kTable, o);
    };
    ahead = Grows<Line>(
        "out", before, call,
        [](Line& o) {
          Algorithm::ChoosePointsInPolylineFromBasePoint(-1, kLine[0], 150.0, kLine, kTable, o);
        },
        OneNaNPoint(out, 1));
    ahead.throwsOutOfRange = ThrowsOutOfRange([&] {
      Algorithm::ChoosePointsInPolylineFromBasePoint(0, kLine[0], 1e6, kLine, {0.0, 111.3}, out);
    });
    Line plain, shared = {kLine[0]};
    call(plain);
    Algorithm::ChoosePointsInPolylineFromBasePoint(0, shared[0], 150.0, kLine, kTable, shared);
    shared.erase(shared.begin());
    ahead.sharesAllowed = vorel::test::SameBits(plain, shared);
  }
  std::vector<RoutePos> chain(3);
  for (int i = 0; i < 3; ++i) {
    chain[static_cast<std::size_t>(i)].coordinate = kLine[static_cast<std::size_t>(i)];
    chain[static_cast<std::size_t>(i)].shapeIndex = i;
  }
  {
    Line out;
    Algorithm::ChoosePointsInPolylineWithOffset(chain, kNaN, out, kLine, kTable);
    const std::string fromNaN =
        vorel::test::SameBits(out, Line{kLine[1], kLine[2]}) ? "no cut point" : "another point";
    const auto call = [&](Line& o) {
      Algorithm::ChoosePointsInPolylineWithOffset(chain, 150.0, o, kLine, kTable);
    };
    Seen& behind = seen["ChoosePointsInPolylineWithOffset(positions, offset, out, points, cumDist)"];
    behind = Grows<Line>(
        "out", before, call,
        [&](Line& o) {
          Algorithm::ChoosePointsInPolylineWithOffset(chain, 0.0, o, kLine, kTable);
          Algorithm::ChoosePointsInPolylineWithOffset(chain, 1e6, o, kLine, kTable);
          ThrowsOutOfRange([&] {
            Algorithm::ChoosePointsInPolylineWithOffset(chain, 150.0, o, kLine, {0.0, 1.0});
          });
        },
        fromNaN);
    behind.throwsOutOfRange = ThrowsOutOfRange([&] {
      Algorithm::ChoosePointsInPolylineWithOffset(chain, 1e6, out, kLine, {0.0, 111.3});
    });
    Line plain = kLine, shared = kLine;
    call(plain);
    Algorithm::ChoosePointsInPolylineWithOffset(chain, 150.0, shared, shared, kTable);
    behind.sharesAllowed = vorel::test::SameBits(plain, shared);
  }
  Line out;
  seen["CalculateCandidatePoints(lines, count, out)"] = Grows<Line>(
      "out", before,
      [](Line& o) {
        Algorithm::CalculateCandidatePoints({kLine, kLine}, 5, o);
      },
      [](Line& o) {
        Algorithm::CalculateCandidatePoints({kLine}, 1, o);
        Algorithm::CalculateCandidatePoints({}, 5, o);
      },
      Text(Algorithm::CalculateCandidatePoints({kNaNLine}, 5, out)));
  return seen;
}

std::map<std::string, Seen> SeeContainment() {
  std::map<std::string, Seen> seen;
  const Point point(0.5, 0.5);
  seen["IsPointOnLineSegment(a, b, point)"] =
      Plain([&] { Algorithm::IsPointOnLineSegment(kLine[0], kLine[3], point); },
            Text(Algorithm::IsPointOnLineSegment(kNaNPoint, kNaNPoint, kNaNPoint)));
  seen["IsPointOnPolyline(line, point, tolerance, checkSegments)"] =
      Plain([&] { Algorithm::IsPointOnPolyline(kLine, point, 5.0f, true); },
            Text(Algorithm::IsPointOnPolyline(kNaNLine, kNaNPoint, kNaNFloat, false)));
  const Lines lines(2, kLine), nanLines(2, kNaNLine);
  seen["IsPointOnPolyline(lines, point, tolerance, checkSegments)"] =
      Plain([&] { Algorithm::IsPointOnPolyline(lines, point, 5.0f, true); },
            Text(Algorithm::IsPointOnPolyline(nanLines, kNaNPoint, kNaNFloat, false)));
  seen["PointOnPolyline(line, point, tolerance, checkSegments)"] =
      Plain([&] { Algorithm::PointOnPolyline(kLine, point, 5.0f, true); },
            Text(Algorithm::PointOnPolyline(kNaNLine, kNaNPoint, kNaNFloat, false)));
  int crossings = 7;
  for (const bool inner : {false, true}) {
    const auto test = inner ? Algorithm::PointRayTestInner : Algorithm::PointRayTest;
    Seen& ray =
        seen[inner ? "PointRayTestInner(point, a, b, crossings)" : "PointRayTest(point, a, b, crossings)"];
    crossings = 7;
    ray.allocates = Counted([&] { test(point, kSquare[1], kSquare[2], crossings); });
    ray.outputs["crossings"] = crossings == 8 ? "grown" : "same";
    ray.fromNaN = Text(test(kNaNPoint, kNaNPoint, kNaNPoint, crossings));
  }
  seen["IsPointInPolygon(polygon, point)"] = Plain([&] { Algorithm::IsPointInPolygon(kSquare, point); },
                                                   Text(Algorithm::IsPointInPolygon(kNaNLine, kNaNPoint)));
  return seen;
}

std::map<std::string, Seen> SeeRoutes() {
  std::map<std::string, Seen> seen;
  const Lines before = {{{5.0, 5.0}}};
  Lines pieces;
  seen["CutPolyline(line, rect, pieces)"] = Grows<Lines>(
      "pieces", before, [](Lines& o) { Algorithm::CutPolyline(kLine, kView, o); }, nullptr,
      Text(Algorithm::CutPolyline(kNaNLine, kNaNView, pieces)));
  pieces.clear();
  Algorithm::CutPolylineUpdate(false, false, 1, 3, kNaNLine, kNaNView, pieces);
  const char* const kStep =
      "CutPolylineUpdate(previousInside, currentInside, currentIndex, vertexCount, line, rect, pieces)";
  seen[kStep] = Grows<Lines>(
      "pieces", before, [](Lines& o) { Algorithm::CutPolylineUpdate(false, true, 1, 4, kLine, kView, o); },
      nullptr, pieces.empty() ? "no piece" : "a piece");
  seen["IsTwoSegmentJoined(a, b, c, d)"] =
      Plain([&] { Algorithm::IsTwoSegmentJoined(kLine[0], kLine[1], kLine[2], kLine[3]); },
            Text(Algorithm::IsTwoSegmentJoined(kNaNPoint, kNaNPoint, kNaNPoint, kNaNPoint)));
  {
    const char* const kSymbols =
        "GetInterpolateShapePoints(shape, isMainRoute, viewRect, area, interval, owner, out)";
    Lines out;
    Algorithm::GetInterpolateShapePoints(kNaNLine, true, kNaNView, {}, 50, "", out);
    seen[kSymbols] = Grows<Lines>(
        "out", before,
        [](Lines& o) { Algorithm::GetInterpolateShapePoints(kLine, true, kView, {}, 50, "", o); }, nullptr,
        out.size() == 1 && out[0].size() == 2 ? "one run" : "other runs");
    const Line area = kSquare;
    Lines plain, shared;
    Algorithm::GetInterpolateShapePoints(kSquare, false, kView, area, 50000, "", plain);
    Algorithm::GetInterpolateShapePoints(kSquare, false, kView, kSquare, 50000, "", shared);
    seen[kSymbols].sharesAllowed = plain == shared && !plain.at(0).empty();
  }
  const auto keptStart = [](const Line& points) {
    return points.size() == 1 ? "kept where it starts a segment" : "kept elsewhere";
  };
  seen["PreProcessRoutePoints(route, minSpacing, pointLimit)"] =
      Plain([&] { Algorithm::PreProcessRoutePoints({kLine}, 10.0f, 0); },
            keptStart(Algorithm::PreProcessRoutePoints({kNaNLine}, kNaNFloat, 0)));
  Lines nanOut;
  Algorithm::PreProcessRoutePoints({{kNaNLine}}, 1, kNaNFloat, 0, "", nanOut);
  seen["PreProcessRoutePoints(routes, routeCount, minSpacing, pointLimit, owner, out)"] = Grows<Lines>(
      "out", before, [](Lines& o) { Algorithm::PreProcessRoutePoints({{kLine}}, 1, 10.0f, 0, "", o); },
      nullptr, nanOut.at(0).size() == 1 ? "kept or dropped" : "kept");
  return seen;
}

std::map<std::string, Seen> SeeProjection() {
  std::map<std::string, Seen> seen;
  const PointZ pos(0.0015, 0.0001, 0.0f);
  {
    Seen& line = seen["ProjectionPosToLine(start, end, pos, foot, ratio)"];
    PointZ foot(9.0, 9.0, 9.0f);
    double ratio = 9.0;
    line.allocates = Counted([&] { Algorithm::ProjectionPosToLine(kLineZ[0], kLineZ[1], pos, foot, ratio); });
    line.outputs = {{"foot", foot.longitude != 9.0 ? "changed" : "same"},
                    {"ratio", ratio != 9.0 ? "changed" : "same"}};
    PointZ shared = kLineZ[0];
    Algorithm::ProjectionPosToLine(shared, kLineZ[1], pos, shared, ratio);
    line.sharesAllowed = vorel::test::SameBits(shared, foot);
    line.fromNaN = Text(Algorithm::ProjectionPosToLine(kNaNPointZ, kNaNPointZ, kNaNPointZ, foot, ratio));
  }
  {
    Seen& walk = seen["ProjectionPosToLines(pos, line, segmentIndex, resultIndex, ratio)"];
    const PointZ far(0.0025, 0.0001, 0.0f);
    int segment = 0, result = 99;
    double ratio = 9.0;
    walk.allocates = Counted([&] { Algorithm::ProjectionPosToLines(far, kLineZ, segment, result, ratio); });
    walk.outputs = {{"segmentIndex", segment == 1 ? "changed" : "same"},
                    {"resultIndex", result == 1 ? "changed" : "same"},
                    {"ratio", ratio != 9.0 ? "changed" : "same"}};
    int shared = 0;
    walk.sharesAllowed = Algorithm::ProjectionPosToLines(far, kLineZ, shared, shared, ratio) && shared == 1;
    segment = 0;
    walk.fromNaN = Text(Algorithm::ProjectionPosToLines(kNaNPointZ, kNaNLineZ, segment, result, ratio));
  }
  for (const bool oriented : {false, true}) {
    const auto scan = [&](const PointZ& at, const LineZ& line, int& start, int& result, double& ratio,
                          double accept, double range) {
      return oriented
                 ? Algorithm::ProjectionPosToLinesDistanceOrientation(at, std::isnan(range) ? kNaN : 90.0,
                                                                      line, start, result, ratio, accept,
                                                                      range, 30.0, 2)
                 : Algorithm::ProjectionPosToLinesDistance(at, line, start, result, ratio, accept, range, 2);
    };
    Seen& found = seen[oriented ? "ProjectionPosToLinesDistanceOrientation(pos, heading, line, startIndex, "
                                  "resultIndex, ratio, acceptDistance, maxDistance, headingTolerance, "
                                  "maxFarSegments)"
                                : "ProjectionPosToLinesDistance(pos, line, startIndex, resultIndex, ratio, "
                                  "acceptDistance, maxDistance, maxFarSegments)"];
    const PointZ at(0.0025, 0.0001, 0.0f);
    int start = 0, result = 99;
    double ratio = 9.0;
    found.allocates = Counted([&] { scan(at, kLineZ, start, result, ratio, 20.0, 50.0); });
    found.outputs = {{"startIndex", start == 1 ? "changed" : "same"},
                     {"resultIndex", result == 1 ? "changed" : "same"},
                     {"ratio", ratio != 9.0 ? "changed" : "same"}};
    int shared = 0;
    found.sharesAllowed = scan(at, kLineZ, shared, shared, ratio, 0.0, 50.0) && shared == 1;
    start = 0;
    found.fromNaN = Text(scan(kNaNPointZ, kNaNLineZ, start, result, ratio, kNaN, kNaN));
  }
  {
    Seen& on = seen["PosInAB(pos, a, b, ratio)"];
    double ratio = 9.0;
    on.allocates = Counted([&] { Algorithm::PosInAB(kLineZ[1], kLineZ[0], kLineZ[2], ratio); });
    on.outputs["ratio"] = ratio != 9.0 ? "changed" : "same";
    on.fromNaN = Text(Algorithm::PosInAB(kNaNPointZ, kNaNPointZ, kNaNPointZ, ratio));
  }
  return seen;
}

std::map<std::string, Seen> SeeLanes() {
  std::map<std::string, Seen> seen;
  LineZ out;
  Algorithm::PanLinePoints(kNaNLineZ, kNaNFloat, true, out);
  Seen& moved = seen["PanLinePoints(points, offset, left, result)"];
  moved = Grows<LineZ>(
      "result", {}, [](LineZ& o) { Algorithm::PanLinePoints(kLineZ, 2.0f, true, o); }, nullptr,
      Text(out.at(1)));
  {
    Seen& arrow = seen["CalcBoundaryPoints(points, width, arrowType, leftBoundary, rightBoundary)"];
    const LineZ before = {{5.0, 5.0, 5.0f}};
    LineZ left = before, right = before;
    arrow.allocates = Counted(
        [&] { Algorithm::CalcBoundaryPoints(kLineZ, 3.0f, vorel::ArrowType::kLineAsCenter, left, right); });
    arrow.outputs = {{"leftBoundary", Fate(before, left)}, {"rightBoundary", Fate(before, right)}};
    Algorithm::CalcBoundaryPoints(kLineZ, kNaNFloat, vorel::ArrowType::kLineAsCenter, left, right);
    arrow.fromNaN = left.size() == 1 && right.size() == 1 ? "one point per edge" : "more points";
  }
  {
    Seen& filter = seen["RelapseCheckFilter(center, leftIn, leftOut, rightIn, rightOut)"];
    const LineZ before = {{5.0, 5.0, 5.0f}};
    LineZ left = before, right = before;
    filter.allocates = Counted([&] { Algorithm::RelapseCheckFilter(kLineZ, kLineZ, left, kLineZ, right); });
    filter.outputs = {{"leftOut", Fate(before, left)}, {"rightOut", Fate(before, right)}};
    LineZ ownLeft = kLineZ, ownRight = kLineZ;
    Algorithm::RelapseCheckFilter(kLineZ, ownLeft, ownLeft, ownRight, ownRight);
    filter.sharesAllowed = ownLeft.size() == 2 * kLineZ.size() && Fate(kLineZ, ownLeft) == "appended" &&
                           ownRight.size() == ownLeft.size();
    LineZ nanLeft, nanRight;
    Algorithm::RelapseCheckFilter(kNaNLineZ, kNaNLineZ, nanLeft, kNaNLineZ, nanRight);
    filter.fromNaN = nanLeft.size() == 1 && nanRight.size() == 1 ? "the last points alone" : "other points";
  }
  return seen;
}

std::map<std::string, Seen> SeeBoundsAndPieces() {
  std::map<std::string, Seen> seen;
  std::vector<MapVector2d> corners;
  Algorithm::GetBound(kNaNLineZ, 0, 2, corners);
  seen["GetBound(points, first, last, out)"] = Grows<std::vector<MapVector2d>>(
      "out", {{5.0, 5.0}}, [](std::vector<MapVector2d>& o) { Algorithm::GetBound(kLineZ, 0, 3, o); },
      [](std::vector<MapVector2d>& o) { Algorithm::GetBound(kLineZ, -1, 3, o); }, Text(corners.at(0).x));
  {
    Seen& bounds = seen["GetBoundPoints(points, extremes, indices)"];
    const std::vector<Vector> points = {{0.0, 5.0}, {1.0, 2.0}}, before(6, Vector{9.0, 9.0});
    const std::vector<int> beforeIndices(6, 9);
    std::vector<Vector> extremes = before, fresh;
    std::vector<int> indices = beforeIndices, freshIndices;
    bounds.allocates = Counted([&] { Algorithm::GetBoundPoints(points, fresh, freshIndices); });
    bounds.refusalLeavesOutputs = !Algorithm::GetBoundPoints({{1.0, 1.0}}, extremes, indices) &&
                                  Fate(before, extremes) == "same" && Fate(beforeIndices, indices) == "same";
    Algorithm::GetBoundPoints(points, extremes, indices);
    bounds.outputs = {{"extremes", Fate(before, extremes)}, {"indices", Fate(beforeIndices, indices)}};
    Algorithm::GetBoundPoints({{kNaN, kNaN}, {kNaN, kNaN}}, extremes, indices);
    bounds.fromNaN = Text(extremes.at(0).x);
  }
  seen["CalculatePlaneNormalVector(plane)"] = Plain([&] { Algorithm::CalculatePlaneNormalVector(kLineZ); },
                                                    Text(Algorithm::CalculatePlaneNormalVector(kNaNLineZ)));
  seen["GetPointZInPlane(plane, position)"] = Plain([&] { Algorithm::GetPointZInPlane(kLineZ, kLine[0]); },
                                                    Text(Algorithm::GetPointZInPlane(kNaNLineZ, kNaNPoint)));
  {
    Seen& cut =
        seen["HandleBoundaryDataByDistance(source, indexCursor, startIndex, startRatio, length, piece)"];
    const Boundary source{kLineZ, {1, 2}}, nan{kNaNLineZ, {1}};
    const Boundary before{{{5.0, 5.0, 5.0f}}, {9}};
    Boundary piece = before, fresh;
    int cursor = -1, unused = -1;
    cut.allocates =
        Counted([&] { Algorithm::HandleBoundaryDataByDistance(source, unused, 0, 0.5, 150.0, fresh); });
    Algorithm::HandleBoundaryDataByDistance(source, cursor, 0, 0.5, 150.0, piece);
    cut.outputs = {{"piece", Fate(before.points, piece.points)},
                   {"indexCursor", cursor == 0 ? "changed" : "same"}};
    EXPECT_EQ(piece.pointIndices.at(0), 9u);
    cut.fromNaN =
        Text(static_cast<double>(Algorithm::HandleBoundaryDataByDistance(nan, unused, 0, kNaN, kNaN, piece)));
  }
  return seen;
}

std::map<std::string, Seen> SeeAll() {
  std::map<std::string, Seen> all;
  for (const auto& see : {SeeAngles, SeePoints, SeeMeasurement, SeeSampling, SeeRouteSampling, SeeContainment,
                          SeeRoutes, SeeProjection, SeeLanes, SeeBoundsAndPieces}) {
    for (auto& [name, seen] : see()) all[name] = std::move(seen);
  }
  return all;
}

/// What the page says of an output: the first verb behind its name.
std::string SaidOf(const std::string& cell, const std::string& output) {
  const std::size_t start = cell.find("`" + output + "`");
  std::string said;
  std::size_t nearest = std::string::npos;
  for (const char* verb : {"appended", "cleared", "overwritten", "grows", "not modified"}) {
    const std::size_t at = start == std::string::npos ? start : cell.find(verb, start);
    if (at < nearest) {
      nearest = at;
      said = verb;
    }
  }
  return said;
}

bool Agrees(const std::string& said, const std::string& seen) {
  if (seen == "gone") return said == "cleared" || said == "overwritten";
  if (seen == "changed") return said == "overwritten";
  if (seen == "grown") return said == "grows";
  if (seen == "same") return said == "not modified";
  return said == seen;
}

TEST(Contracts, ThePageAndTheFunctionsAgree) {
  const std::map<std::string, Row> rows = ReadPage();
  ASSERT_GE(rows.size(), 60u) << "the page could not be read";
  const std::map<std::string, Seen> all = SeeAll();
  for (const auto& [name, row] : rows) EXPECT_EQ(all.count(name), 1u) << name << " is not tried here";
  for (const auto& [name, seen] : all) {
    SCOPED_TRACE(name);
    ASSERT_EQ(rows.count(name), 1u) << "no such row";
    const Row& row = rows.at(name);

    const std::string& output = row.at("Output");
    if (seen.outputs.empty()) {
      EXPECT_EQ(output, "the result");
    }
    for (const auto& [parameter, fate] : seen.outputs) {
      EXPECT_TRUE(Agrees(SaidOf(output, parameter), fate))
          << parameter << ": \"" << output << "\", seen: " << fate;
    }
    EXPECT_EQ(output.find("untouched") != std::string::npos, seen.refusalLeavesOutputs) << output;

    EXPECT_EQ(row.at("Throws").rfind("std::out_of_range", 0) == 0, seen.throwsOutOfRange) << row.at("Throws");
    if (!seen.throwsOutOfRange) {
      EXPECT_EQ(row.at("Throws"), "nothing");
    }

    if (vorel::test::CanCountAllocations()) {
      EXPECT_EQ(row.at("Allocates") != "nothing", seen.allocates) << row.at("Allocates");
    }

    EXPECT_FALSE(seen.fromNaN.empty());
    EXPECT_EQ(row.at("NaN gives").rfind(seen.fromNaN, 0), 0u)
        << row.at("NaN gives") << ", seen: " << seen.fromNaN;

    EXPECT_EQ(row.at("Aliasing").find("may be") != std::string::npos ||
                  row.at("Aliasing").find("may lie in") != std::string::npos,
              seen.sharesAllowed || row.at("Aliasing").find("no element") == 0 ||
                  row.at("Aliasing").find("neither output may") == 0)
        << row.at("Aliasing");
  }
}

}  // namespace
