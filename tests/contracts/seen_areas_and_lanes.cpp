#include "contracts/seen.h"

namespace vorel::test::contracts {

SeenFunctions SeeContainment() {
  SeenFunctions seen;
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

SeenFunctions SeeRoutes() {
  SeenFunctions seen;
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

SeenFunctions SeeProjection() {
  SeenFunctions seen;
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

SeenFunctions SeeLanes() {
  SeenFunctions seen;
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

SeenFunctions SeeBoundsAndPieces() {
  SeenFunctions seen;
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

}  // namespace vorel::test::contracts
