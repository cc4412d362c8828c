#include "fuzz/fuzz_target.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>

#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/sink.h"
#include "logging/tag_names.h"
#include "reference/route_sampling_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;
using tarvo::RoutePos;

namespace {

plog::MemorySink& Records() {
  static const auto sink = [] {
    auto made = std::make_shared<plog::MemorySink>();
    plog::Logger::Register(vorel::logging::vorel_log_instance_id_, plog::LogLevel::kDebug, {made});
    return made;
  }();
  return *sink;
}

std::string SixDecimals(double value) {
  char text[400];
  std::snprintf(text, sizeof text, "%f", value);
  return text;
}

std::vector<double> Table(FuzzInput& input, const fuzz::Line& points) {
  std::vector<double> table;
  double sum = input.Byte() % 8 == 1 ? input.Metres() : 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i > 0) sum += points[i - 1].DistanceTo(points[i]);
    table.push_back(sum);
  }
  const std::size_t kind = input.Byte() % 8;
  if (kind == 1 && !table.empty()) table[input.Below(table.size())] = input.Metres();
  if (kind == 2) table.resize(input.Below(points.size() + 2), sum);
  return table;
}

void CheckFromBasePoint(FuzzInput& input, const fuzz::Line& points, const std::vector<double>& table) {
  const int baseIndex = input.Index(points.size());
  const double length = input.MetresAlong(points);
  std::vector<GeoCoordinate> out(input.Below(3), GeoCoordinate(1.5, 2.5));
  GeoCoordinate basePoint = input.PointNear(points);
  const bool isInOut = input.Flag() && !out.empty();
  if (isInOut) out[0] = basePoint;
  std::vector<GeoCoordinate> expected = out;
  const GeoCoordinate& passed = isInOut ? out[0] : basePoint;
  const auto actualResult = fuzz::UnlessOutOfRange([&] {
    return Library::ChoosePointsInPolylineFromBasePoint(baseIndex, passed, length, points, table, out);
  });
  const auto expectedResult = fuzz::UnlessOutOfRange([&] {
    return reference::ChoosePointsInPolylineFromBasePoint(baseIndex, basePoint, length, points, table,
                                                          expected);
  });
  EXPECT_SAME(actualResult.has_value(), expectedResult.has_value());
  if (actualResult) EXPECT_SAME(*actualResult, *expectedResult);
  EXPECT_SAME(out, expected);
}

void CheckWithOffset(FuzzInput& input, fuzz::Line points, const std::vector<double>& table) {
  std::vector<RoutePos> positions(input.Below(12));
  for (RoutePos& position : positions) {
    position.coordinate = input.PointNear(points);
    position.shapeIndex = input.Index(points.size());
  }
  const double offset = input.MetresAlong(points);
  std::vector<GeoCoordinate> out(input.Below(3), GeoCoordinate(1.5, 2.5));
  std::vector<GeoCoordinate> expected = out;
  const bool outIsPoints = input.Byte() % 8 == 1;
  if (outIsPoints) expected = points;
  const fuzz::Line pointsBefore = points;
  Records().Clear();
  const auto actualResult = fuzz::UnlessOutOfRange([&] {
    return Library::ChoosePointsInPolylineWithOffset(positions, offset, outIsPoints ? points : out, points,
                                                     table);
  });
  double reached = std::numeric_limits<double>::infinity();  // no chain of finite steps gets there
  const auto expectedResult = fuzz::UnlessOutOfRange([&] {
    return reference::ChoosePointsInPolylineWithOffset(positions, offset, expected, pointsBefore, table,
                                                       &reached);
  });
  EXPECT_SAME(actualResult.has_value(), expectedResult.has_value());
  if (actualResult) EXPECT_SAME(*actualResult, *expectedResult);
  EXPECT_SAME(outIsPoints ? points : out, expected);
  if (!actualResult || *actualResult || positions.empty() || offset <= 0.0) {
    EXPECT_HOLDS(Records().Count() == 0);
    return;
  }
  EXPECT_HOLDS(Records().Count() == 1);
  const plog::StoredRecord record = Records().Records()[0];
  EXPECT_HOLDS(record.level == plog::LogLevel::kWarning);
  const std::string message =
      "[Vorel][Vorel]" + vorel::logging::GetTagName(vorel::logging::kGeometryTagIndex) +
      "accumulative_distance:" + SixDecimals(reached) + "< offset_length :" + SixDecimals(offset);
  if (record.message != message) fuzz::Fail(record.message.c_str(), message.c_str(), __FILE__, __LINE__);
}

void CheckCandidates(FuzzInput& input) {
  std::vector<fuzz::Line> lines(input.Below(5));
  double length = 0.0;
  for (fuzz::Line& line : lines) {
    line = input.PointLine(60);
    length += fuzz::FiniteLength(line);
  }
  unsigned count = input.Byte() % 16 == 1 ? input.UnsignedIndex(0) : static_cast<unsigned>(input.Below(3000));
  if (count > 5000 && length / count >= 1.0) count = 5000;  // as many points are found, at most
  std::vector<GeoCoordinate> out(input.Below(3), GeoCoordinate(1.5, 2.5));
  std::vector<GeoCoordinate> expected = out;
  const bool isRefused = count < 2 || lines.empty();
  EXPECT_SAME(Library::CalculateCandidatePoints(lines, count, out),
              reference::CalculateCandidatePoints(lines, count, expected));
  EXPECT_SAME(out, expected);
  EXPECT_HOLDS(isRefused || out.size() <= count);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::Line points = input.PointLine(100);
    const std::vector<double> table = Table(input, points);
    for (int step = 0; step < 3; ++step) {
      switch (input.Byte() % 3) {
        case 0:
          CheckFromBasePoint(input, points, table);
          break;
        case 1:
          CheckWithOffset(input, points, table);
          break;
        default:
          CheckCandidates(input);
          break;
      }
    }
  } while (!input.IsAtEnd());
  return 0;
}
