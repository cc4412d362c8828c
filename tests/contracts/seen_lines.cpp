#include "contracts/seen.h"

namespace vorel::test::contracts {

SeenFunctions SeeAngles() {
  SeenFunctions seen;
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

SeenFunctions SeePoints() {
  SeenFunctions seen;
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

SeenFunctions SeeMeasurement() {
  SeenFunctions seen;
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

SeenFunctions SeeSampling() {
  SeenFunctions seen;
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

SeenFunctions SeeRouteSampling() {
  SeenFunctions seen;
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

}  // namespace vorel::test::contracts
