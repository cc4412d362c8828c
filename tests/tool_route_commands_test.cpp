#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"
#include "support/program_runner.h"
#include "support/tool_output_reading.h"

namespace vorel::test {
namespace {

using tarvo::GeoCoordinate;
using Strings = std::vector<std::string>;

const Line kDrive = {{7.4100, 43.7300}, {7.4112, 43.7309}, {7.4112, 43.7309}, {7.4131, 43.7311},
                     {7.4127, 43.7330}, {7.4160, 43.7342}, {7.4158, 43.7351}};
// The first three vertices unwrapped would be rounded.
const Line kAcross = {{179.97, -16.81}, {179.993, -16.80}, {-179.98001, -16.79}, {-179.95, -16.80}};
const Line kAcrossUnwrapped = {
    {179.97, -16.81}, {179.993, -16.80}, {-179.98001 + 360.0, -16.79}, {-179.95 + 360.0, -16.80}};

std::string Feature(const std::string& geometry) {
  return R"({"type":"Feature","properties":null,"geometry":)" + geometry + "}";
}

std::string Points(const Line& points) {
  std::string text = LineStringText(points);
  return text.replace(text.find("LineString"), 10, "MultiPoint");
}

/// Several lines, one per record.
std::string Records(const std::vector<Line>& lines) {
  std::string text;
  for (const Line& line : lines) text += Feature(LineStringText(line)) + "\n";
  return text;
}

ProgramResult RunTool(const Strings& arguments, const std::string& input = "") {
  return RunProgram(VOREL_TOOL_PATH, arguments, input);
}

/// Runs without a complaint and without a note, and reads what came out.
std::vector<FeatureRow> Features(const Strings& arguments, const std::string& input = "") {
  const ProgramResult result = RunTool(arguments, input);
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  return ReadFeatures(result.out);
}

Line PointsOf(const std::vector<FeatureRow>& rows) {
  Line points;
  for (const FeatureRow& row : rows) points.insert(points.end(), row.points.begin(), row.points.end());
  return points;
}

Strings PropertyOf(const std::vector<FeatureRow>& rows, const std::string& name) {
  Strings values;
  for (const FeatureRow& row : rows) values.push_back(row.properties.at(name));
  return values;
}

std::vector<Strings> CsvRows(const std::string& text) {
  std::vector<Strings> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    Strings& row = rows.emplace_back();
    std::istringstream fields(line + ",");
    for (std::string field; std::getline(fields, field, ',');) row.push_back(field);
  }
  return rows;
}

double Length(const Line& line) {
  const auto count = static_cast<unsigned int>(line.size());
  return VorelGeometryAlgorithm::GetDistance(line.data(), count, 0, count);
}

double Number(const std::string& text) {
  return std::strtod(text.c_str(), nullptr);
}

// ---- measure ----

TEST(ToolMeasure, RowsHoldTheLibrarysLengthAndTheBounds) {
  const ProgramResult result = RunTool({"measure"}, Records({kDrive, kAcross}));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  const auto rows = CsvRows(result.out);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0], (Strings{"line", "vertices", "metres", "west", "south", "east", "north"}));
  EXPECT_EQ(rows[1][0], "0");
  EXPECT_EQ(rows[1][1], "7");
  EXPECT_EQ(Number(rows[1][2]), Length(kDrive));
  EXPECT_EQ(Strings(rows[1].begin() + 3, rows[1].end()), (Strings{"7.41", "43.73", "7.416", "43.7351"}));
  EXPECT_EQ(Number(rows[2][2]), Length(kAcross));
  EXPECT_LT(Number(rows[2][2]), 10000.0);
  EXPECT_EQ(Strings(rows[2].begin() + 3, rows[2].end()), (Strings{"179.97", "-16.81", "-179.95", "-16.79"}));
}

TEST(ToolMeasure, BoundsOfUnusualLines) {
  const auto bounds = [](const Line& line) {
    const auto rows = CsvRows(RunTool({"measure"}, LineStringText(line)).out);
    return Strings(rows.at(1).begin() + 3, rows.at(1).end());
  };
  EXPECT_EQ(bounds({{190.0, 1.0}, {200.0, 2.0}}), (Strings{"-170", "1", "-160", "2"}));
  EXPECT_EQ(bounds({{-180.0, 1.0}, {180.0, 2.0}}), (Strings{"-180", "1", "180", "2"}));
  EXPECT_EQ(bounds({{0.0, 1.0}, {120.0, 1.0}, {-120.0, 1.0}, {0.0, 1.0}}),
            (Strings{"-180", "1", "180", "1"}));
}

TEST(ToolMeasure, TableIsTheLibrarysOwn) {
  const auto rows = CsvRows(RunTool({"measure", "--table"}, Records({kAcross, kDrive})).out);
  ASSERT_EQ(rows.size(), 1 + kAcross.size() + kDrive.size());
  EXPECT_EQ(rows[0], (Strings{"line", "index", "longitude", "latitude", "metres", "heading"}));
  std::size_t row = 1;
  for (const Line* const line : {&kAcross, &kDrive}) {
    std::vector<double> table = {0.0};
    VorelGeometryAlgorithm::GetDistanceAndCache(*line, 0, static_cast<unsigned int>(line->size() - 1), table);
    for (std::size_t i = 0; i < line->size(); ++i, ++row) {
      SCOPED_TRACE(row);
      ASSERT_EQ(rows[row].size(), 6u);
      EXPECT_EQ(rows[row][0], line == &kAcross ? "0" : "1");
      EXPECT_EQ(rows[row][1], std::to_string(i));
      EXPECT_EQ(Number(rows[row][2]), (*line)[i].longitude);
      EXPECT_EQ(Number(rows[row][3]), (*line)[i].latitude);
      EXPECT_EQ(Number(rows[row][4]), table[i]);
      if (i + 1 == line->size() || (*line)[i] == (*line)[i + 1]) {
        EXPECT_EQ(rows[row][5], "");
        continue;
      }
      const double bearing = VorelGeometryAlgorithm::GetAngle((*line)[i], (*line)[i + 1]);
      EXPECT_EQ(Number(rows[row][5]), bearing < 0.0 ? bearing + 360.0 : bearing);
    }
  }
}

TEST(ToolMeasure, StreamsInBoundedMemory) {
#ifdef VOREL_TEST_SANITIZES_ADDRESSES
  GTEST_SKIP() << "the address sanitizer keeps freed memory";
#endif
  const TemporaryDirectory directory;
  const std::string file = directory.File("lines.ndjson");
  {
    std::ofstream stream(file, std::ios::binary);
    const std::string record = Records({Line(300, GeoCoordinate(7.123456, 43.123456))});
    for (std::size_t bytes = 0; bytes < (std::size_t{32} << 20); bytes += record.size()) stream << record;
  }
  const ProgramResult result = RunTool({"measure", file, "--out", directory.File("out.csv")});
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_LT(result.peakKilobytes, 24 * 1024);
}

// ---- sample ----

TEST(ToolSample, EveryGivesTheLibrarysPointsOfEachLine) {
  for (const auto& [text, metres] :
       {std::pair{"75", 75.0}, std::pair{"12.5", 12.5}, std::pair{"1e3", 1000.0}}) {
    const auto rows = Features({"sample", "--every", text}, Records({kDrive, kAcross}));
    Line expected;
    Strings lines;
    Strings offsets;
    for (const Line* const line : {&kDrive, &kAcrossUnwrapped}) {
      Line points;
      VorelGeometryAlgorithm::ChoosePointsInPolyline(*line, metres, -1, points);
      for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].longitude > 180.0) points[i].longitude -= 360.0;
        lines.push_back(line == &kDrive ? "0" : "1");
        EXPECT_EQ(Number(rows.at(expected.size()).properties.at("metres")), static_cast<double>(i) * metres);
        expected.push_back(points[i]);
      }
    }
    EXPECT_EQ(PointsOf(rows), expected);
    EXPECT_EQ(PropertyOf(rows, "line"), lines);
  }
}

TEST(ToolSample, MaxHoldsForEachLine) {
  const auto rows = Features({"sample", "--every", "100", "--max", "2"}, Records({kDrive, kAcross}));
  EXPECT_EQ(PropertyOf(rows, "line"), (Strings{"0", "0", "1", "1"}));
  EXPECT_EQ(PropertyOf(rows, "metres"), (Strings{"0", "100", "0", "100"}));
}

TEST(ToolSample, FirstAndAfterCutEachLine) {
  const std::string input = Records({kDrive, {{7.0, 43.0}, {7.001, 43.0}}});
  Line head;
  Line rest;
  VorelGeometryAlgorithm::ChoosePointsInPolylineWithMaxLength(kDrive, 321.5, head);
  VorelGeometryAlgorithm::ChoosePointsInPolyline(kDrive.data(), 7, 321.5, rest);
  const auto first = Features({"sample", "--first", "321.5"}, input);
  ASSERT_EQ(first.size(), 2u);
  EXPECT_EQ(first[0].points, head);
  EXPECT_EQ(first[0].geometryType, "LineString");
  EXPECT_EQ(first[1].points, (Line{{7.0, 43.0}, {7.001, 43.0}}));
  EXPECT_EQ(PropertyOf(first, "line"), (Strings{"0", "1"}));

  const ProgramResult after = RunTool({"sample", "--after", "321.5"}, input);
  EXPECT_EQ(after.exitStatus, 0);
  EXPECT_EQ(after.err, "vorel: note: standard input: nothing is left of 1 line behind the first 321.5 m\n");
  const auto rows = ReadFeatures(after.out);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].points, rest);
  EXPECT_EQ(rows[0].properties.at("line"), "0");
}

TEST(ToolSample, CountSpreadsOverAllLines) {
  const std::vector<Line> lines = {kDrive, kAcrossUnwrapped, {{7.0, 43.0}, {7.0, 43.03}}};
  for (const unsigned int count : {2u, 3u, 10u, 57u}) {
    Line expected;
    ASSERT_TRUE(VorelGeometryAlgorithm::CalculateCandidatePoints(lines, count, expected));
    for (GeoCoordinate& point : expected) {
      if (point.longitude > 180.0) point.longitude -= 360.0;
    }
    const auto rows = Features({"sample", "--count", std::to_string(count)},
                               Records({kDrive, kAcross, {{7.0, 43.0}, {7.0, 43.03}}}));
    EXPECT_EQ(PointsOf(rows), expected);
    EXPECT_EQ(rows.back().properties.at("sample"), std::to_string(rows.size() - 1));
  }
  const ProgramResult none = RunTool({"sample", "--count", "1000000"}, LineStringText(kDrive));
  EXPECT_EQ(none.exitStatus, 0);
  EXPECT_TRUE(ReadFeatures(none.out).empty());
  EXPECT_EQ(none.err,
            "vorel: note: standard input: no point is placed, the lines are shorter than 999999 m in all\n");
}

// ---- clip ----

TEST(ToolClip, GivesTheLibrarysPieces) {
  std::mt19937 generator(71);  // fixed: a red run can be replayed
  std::size_t pieceCount = 0;
  for (int run = 0; run < 10; ++run) {
    SCOPED_TRACE(testing::Message() << "seed 71, run " << run);
    const Line line = RandomLine(generator, 60);
    const GeoCoordinate& centre = line[30];
    const tarvo::Rect<GeoCoordinate> view{{centre.longitude - 0.001, centre.latitude - 0.001},
                                          {centre.longitude + 0.001, centre.latitude + 0.001}};
    std::vector<Line> expected;
    VorelGeometryAlgorithm::CutPolyline(line, view, expected);
    char option[120];
    std::snprintf(option, sizeof option, "--view=%.17g,%.17g,%.17g,%.17g", view.min.longitude,
                  view.min.latitude, view.max.longitude, view.max.latitude);
    const auto rows = Features({"clip", option}, LineStringText(line));
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i].points, expected[i]);
      EXPECT_EQ(rows[i].properties.at("piece"), std::to_string(i));
      const auto first = line.begin() + std::stol(rows[i].properties.at("vertex"));
      const auto count = static_cast<std::ptrdiff_t>(rows[i].points.size());
      EXPECT_EQ(Line(first, first + count), expected[i]);
    }
    pieceCount += rows.size();
  }
  EXPECT_GE(pieceCount, 10u);
}

TEST(ToolClip, KeepsTheInputsNumbersAcrossTheAntimeridian) {
  for (const char* const view : {"--view=179.98,-17,-179.97,-16", "--view=-180.02,-17,-179.97,-16"}) {
    const auto rows = Features({"clip", view}, Records({kDrive, kAcross}));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].points, kAcross);
    EXPECT_EQ(rows[0].properties.at("line"), "1");
    EXPECT_EQ(rows[0].properties.at("vertex"), "0");
  }
}

TEST(ToolClip, RepeatedPassesAreSeparatePieces) {
  const Line line = {{0.0, 0.0}, {2.0, 0.0}, {2.0, 1.0}, {0.0, 1.0}, {0.0, 0.0}, {2.0, 0.0}};
  const auto rows = Features({"clip", "--view=0.5,-0.5,1.5,0.5"}, LineStringText(line));
  EXPECT_EQ(PropertyOf(rows, "vertex"), (Strings{"0", "4"}));
  const ProgramResult none = RunTool({"clip", "--view=10,10,11,11"}, LineStringText(line));
  EXPECT_EQ(none.exitStatus, 0);
  EXPECT_EQ(none.err, "vorel: note: standard input: no line meets the view 10,10,11,11\n");
  EXPECT_TRUE(ReadFeatures(none.out).empty());
}

// ---- thin ----

/// Runs `thin`, whose note about the points kept is taken off.
std::vector<FeatureRow> Thinned(Strings options, const std::string& input,
                                std::string* furtherNotes = nullptr) {
  options.insert(options.begin(), "thin");
  const ProgramResult result = RunTool(options, input);
  EXPECT_EQ(result.exitStatus, 0);
  const std::size_t lineEnd = result.err.find('\n');
  EXPECT_EQ(result.err.rfind("vorel: note: standard input: kept ", 0), 0u) << result.err;
  if (furtherNotes != nullptr) {
    *furtherNotes = result.err.substr(lineEnd + 1);
  } else {
    EXPECT_EQ(lineEnd + 1, result.err.size()) << result.err;
  }
  return ReadFeatures(result.out);
}

TEST(ToolThin, GivesTheLibrarysPoints) {
  std::mt19937 generator(72);
  const Line first = RandomLine(generator, 50);
  const Line second = RandomLine(generator, 9);
  std::string both = LineStringText(second);
  both = R"({"type":"MultiLineString","coordinates":[)" +
         LineStringText(first).substr(std::string(R"({"type":"LineString","coordinates":)").size());
  both.back() = ',';
  both += LineStringText(second).substr(std::string(R"({"type":"LineString","coordinates":)").size());
  both.insert(both.size() - 1, "]");
  for (const int limit : {0, 4, 5}) {
    const Line expected = VorelGeometryAlgorithm::PreProcessRoutePoints({{first, second}}, 100.0f, limit);
    const auto rows = Thinned({"--spacing", "100", "--limit", std::to_string(limit)}, both);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].points, expected);
    EXPECT_EQ(rows[0].properties.at("points"), "59");
    EXPECT_EQ(rows[0].properties.at("kept"), std::to_string(expected.size()));
    EXPECT_LT(expected.size(), 59u);
  }
}

TEST(ToolThin, MeetsTheAntimeridianAsAnyOtherPlace) {
  // Steps of some 170 m: every second vertex is kept. On the plane of degrees 180 and -180 are far apart, and the vertex
  // behind the step would be kept unmeasured.
  Line line;
  for (int i = -3; i <= 4; ++i)
    line.emplace_back(i < 0 ? 180.0 + 0.0015 * i : -180.0 + 0.0015 * i + 0.0001, 0.0);
  const auto rows = Thinned({"--spacing", "200"}, LineStringText(line));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].points, (Line{line[0], line[2], line[4], line[6]}));
}

TEST(ToolThin, TellsOfTheCapAndOfSinglePoints) {
  Line longLine;
  for (int i = 0; i < 2000; ++i) longLine.emplace_back(7.0, 43.0 + 0.001 * i);
  std::string notes;
  const auto rows =
      Thinned({"--spacing", "50"}, Records({kDrive, longLine, {{7.0, 43.0}, {7.0, 43.0001}}}), &notes);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[1].points.size(), 1501u);
  EXPECT_EQ(rows[2].geometryType, "Point");
  EXPECT_EQ(notes,
            "vorel: note: standard input: 1 route met the cap of 1501 points (the first is route 1): points "
            "behind it were left out\n");
  EXPECT_EQ(
      Thinned({"--spacing", "50", "--limit", "1000"}, LineStringText(longLine), &notes)[0].points.size(),
      2000u);
}

// ---- contains ----

class ToolContains : public testing::Test {
 protected:
  /// The property `inside` of each point.
  Strings Inside(const std::string& polygon, const Line& points) {
    const auto rows = Features({"contains", directory_.Write("polygon.json", polygon)}, Points(points));
    EXPECT_EQ(PointsOf(rows), points);
    return PropertyOf(rows, "inside");
  }

  TemporaryDirectory directory_;
};

constexpr const char* kSquare = R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,4],[0,0]]]})";

TEST_F(ToolContains, KeepsTheBoundaryRules) {
  const std::vector<std::pair<GeoCoordinate, const char*>> cases = {
      {{2.0, 2.0}, "true"},        {{5.0, 2.0}, "false"},       {{0.0, 2.0}, "true"},
      {{4.0, 2.0}, "true"},        {{2.0, 4.0}, "true"},        {{2.0, 0.0}, "false"},
      {{0.0, 0.0}, "true"},        {{4.0, 0.0}, "true"},        {{4.0, 4.0}, "true"},
      {{4.00000005, 2.0}, "true"}, {{4.0000002, 2.0}, "false"}, {{-0.00000005, 2.0}, "true"},
      {{2.0, 4.0000001}, "false"}};
  Line points;
  Strings expected;
  for (const auto& [point, inside] : cases) {
    points.push_back(point);
    expected.push_back(inside);
  }
  EXPECT_EQ(Inside(kSquare, points), expected);
}

TEST_F(ToolContains, HonoursHolesAndNamesThePolygon) {
  const std::string polygons =
      Feature(
          R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,4],[0,0]],[[1,1],[3,1],[3,3],[1,3],[1,1]]]})") +
      "\n" +
      Feature(
          R"({"type":"MultiPolygon","coordinates":[[],[[[1.5,1.5],[2,1.5],[2,2],[1.5,1.5]]],[[[9,9],[10,9],[9,10],[9,9]]]]})") +
      "\n";
  const auto rows = Features({"contains", directory_.Write("polygon.json", polygons)},
                             Points({{0.5, 2.0}, {2.5, 2.5}, {1.9, 1.6}, {9.1, 9.1}, {3.0, 2.0}}));
  EXPECT_EQ(PropertyOf(rows, "inside"), (Strings{"true", "false", "true", "true", "false"}));
  EXPECT_EQ(PropertyOf(rows, "polygon"), (Strings{"0", "null", "1", "2", "null"}));
  EXPECT_EQ(PropertyOf(rows, "point"), (Strings{"0", "1", "2", "3", "4"}));
}

TEST_F(ToolContains, MeetsTheAntimeridianAsAnyOtherPlace) {
  const std::string across =
      R"({"type":"Polygon","coordinates":[[[179,0],[-179,0],[-179,4],[179,4],[179,0]]]})";
  EXPECT_EQ(
      Inside(across, {{179.5, 1.0}, {-179.5, 1.0}, {180.0, 1.0}, {-180.0, 1.0}, {178.5, 1.0}, {0.0, 1.0}}),
      (Strings{"true", "true", "true", "true", "false", "false"}));
}

TEST_F(ToolContains, TakesPointsOfEveryKindAndLeavesPolygonsOut) {
  const std::string square = directory_.Write("square.json", kSquare);
  const std::string input = Feature(R"({"type":"Point","coordinates":[1,1,7]})") + "\n" + Feature("null") +
                            "\n" + kSquare + "\n" + Records({{{2.0, 2.0}, {5.0, 5.0}}});
  const ProgramResult result = RunTool({"contains", square}, input);
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "vorel: note: standard input: left out 1 object that are no points\n");
  EXPECT_EQ(PropertyOf(ReadFeatures(result.out), "inside"), (Strings{"true", "true", "false"}));
  // The other way round: the polygon from standard input.
  const std::string points = directory_.Write("points.json", Points({{1.0, 1.0}, {9.0, 9.0}}));
  EXPECT_EQ(PropertyOf(Features({"contains", "-", points}, kSquare), "inside"), (Strings{"true", "false"}));
}

TEST_F(ToolContains, IsTheLibrarysAnswerOnRandomRings) {
  std::mt19937 generator(73);
  std::uniform_real_distribution<double> place(-1.0, 1.0);
  Line ring;
  for (int i = 0; i < 12; ++i) ring.emplace_back(place(generator), place(generator));
  Line points;
  Strings expected;
  for (int i = 0; i < 400; ++i) {
    points.emplace_back(place(generator), place(generator));
    expected.push_back(VorelGeometryAlgorithm::IsPointInPolygon(ring, points.back()) ? "true" : "false");
  }
  Line closed = ring;
  closed.push_back(ring.front());
  std::string polygon = LineStringText(closed);
  polygon.replace(polygon.find("LineString"), 10, "Polygon");
  polygon.insert(polygon.find("[["), "[");
  polygon.insert(polygon.size() - 1, "]");
  EXPECT_EQ(Inside(polygon, points), expected) << "seed 73";
}

// ---- on-line ----

TEST(ToolOnLine, IsTheLibrarysIndexOnTheFirstLineThatHasOne) {
  const TemporaryDirectory directory;
  std::mt19937 generator(74);
  const Line other = {{7.4131, 43.7311}, {7.42, 43.74}};
  const std::vector<Line> lines = {kDrive, other};
  const std::string file = directory.Write("lines.json", Records(lines));
  std::uniform_real_distribution<double> step(-0.0003, 0.0003);
  Line points = {kDrive[0], kDrive[2], other[1], {8.0, 43.0}, {7.42, 43.735}};
  for (int i = 0; i < 60; ++i) {
    const GeoCoordinate& near = kDrive[static_cast<std::size_t>(i) % kDrive.size()];
    points.emplace_back(near.longitude + step(generator), near.latitude + step(generator));
  }
  for (const bool segments : {false, true}) {
    for (const char* const tolerance : {"0", "10.5", "30", "20000"}) {
      SCOPED_TRACE(testing::Message() << "seed 74, tolerance " << tolerance << ", segments " << segments);
      Strings arguments = {"on-line", file, "--tolerance", tolerance};
      if (segments) arguments.emplace_back("--segments");
      const auto rows = Features(arguments, Points(points));
      ASSERT_EQ(rows.size(), points.size());
      for (std::size_t i = 0; i < points.size(); ++i) {
        int line = -1;
        int index = -1;
        for (int j = 0; j < 2 && index == -1; ++j) {
          index = VorelGeometryAlgorithm::PointOnPolyline(lines[static_cast<std::size_t>(j)], points[i],
                                                          static_cast<float>(Number(tolerance)), segments);
          if (index != -1) line = j;
        }
        EXPECT_EQ(rows[i].properties.at("line"), std::to_string(line));
        EXPECT_EQ(rows[i].properties.at("index"), std::to_string(index));
        EXPECT_EQ(rows[i].properties.at("point"), std::to_string(i));
      }
    }
  }
}

TEST(ToolOnLine, MeetsTheAntimeridianAsAnyOtherPlace) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("lines.json", LineStringText(kAcross));
  const auto index = [&](const GeoCoordinate& point, const Strings& options) {
    Strings arguments = {"on-line", file};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Features(arguments, Points({point})).at(0).properties.at("index");
  };
  EXPECT_EQ(index(kAcross[2], {"--tolerance", "1"}), "2");
  EXPECT_EQ(index({-179.98001 + 360.0, -16.79}, {"--tolerance", "1"}), "2");
  EXPECT_EQ(index({180.0, -16.795}, {"--tolerance", "1"}), "-1");
  EXPECT_EQ(index({180.0, -16.795}, {"--tolerance", "1", "--segments"}), "2");
  EXPECT_EQ(index({-180.0, -16.795}, {"--tolerance", "1", "--segments"}), "2");
  EXPECT_EQ(index({0.0, -16.795}, {"--tolerance", "1", "--segments"}), "-1");
  // Vertex 0 is asked by distance alone, however far it lies on the plane.
  EXPECT_EQ(index({-179.9, -16.81}, {"--tolerance", "15000"}), "1");
}

// ---- along ----

TEST(ToolAlong, GivesTheLibrarysStretch) {
  std::vector<double> table = {0.0};
  VorelGeometryAlgorithm::GetDistanceAndCache(kDrive, 0, 6, table);
  const GeoCoordinate base = VorelGeometryAlgorithm::GetLinePoint(kDrive[3], kDrive[4], 20.75);
  Line expected;
  VorelGeometryAlgorithm::ChoosePointsInPolylineFromBasePoint(3, base, 300.0, kDrive, table, expected);
  const auto rows = Features({"along", "--line", "1", "--from", "3", "--offset", "20.75", "--length", "300"},
                             Records({kAcross, kDrive}));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].points, expected);
  EXPECT_EQ(rows[0].properties.at("line"), "1");
  EXPECT_EQ(rows[0].properties.at("vertex"), "3");
  EXPECT_EQ(Number(rows[0].properties.at("metres")), table[3] + 20.75);
  EXPECT_EQ(Number(rows[0].properties.at("length")), Length(expected));
}

TEST(ToolAlong, TruncatesTheStartToWholeMetres) {
  // Due north, 110.57 m per thousandth of a degree.
  const Line line = {{7.0, 0.0}, {7.0, 0.01}};
  for (const double offset : {10.125, 10.25, 10.75}) {
    const auto rows =
        Features({"along", "--from", "0", "--offset", std::to_string(offset), "--length", "100"},
                 LineStringText(line));
    // The end is interpolated with a ratio in float: 3e-8 of a segment of 1.1 km.
    EXPECT_NEAR(Number(rows.at(0).properties.at("length")), 110.0 - offset, 1e-4);
  }
}

TEST(ToolAlong, OffsetMayPassVerticesAndTheLineMayEnd) {
  std::vector<double> table = {0.0};
  VorelGeometryAlgorithm::GetDistanceAndCache(kDrive, 0, 6, table);
  const double offset = table[4] + 12.0;
  const auto rows = Features({"along", "--from", "0", "--offset", std::to_string(offset), "--length", "1e6"},
                             LineStringText(kDrive));
  EXPECT_EQ(rows.at(0).properties.at("vertex"), "4");
  EXPECT_EQ(rows[0].points.size(), 3u);
  EXPECT_EQ(rows[0].points.back(), kDrive.back());
  // Laid off in degrees, on a slanted segment of 300 m: measured 9.2e-5.
  EXPECT_NEAR(rows[0].points.front().DistanceTo(kDrive[4]), 12.0, 2e-4);
}

TEST(ToolAlong, CrossesTheAntimeridian) {
  const auto rows = Features({"along", "--from", "1", "--length", "5000"}, LineStringText(kAcross));
  ASSERT_EQ(rows.at(0).points.size(), 3u);
  EXPECT_EQ(rows[0].points[0], kAcross[1]);
  EXPECT_NEAR(rows[0].points[1].longitude, kAcross[2].longitude, 1e-12);
  EXPECT_GT(rows[0].points[2].longitude, -180.0);
  EXPECT_LT(rows[0].points[2].longitude, -179.9);
  EXPECT_NEAR(Length(rows[0].points), 5000.0, 1.0);
}

// ---- pictures ----

TEST(ToolRoutePictures, HoldOneElementPerThing) {
  const TemporaryDirectory directory;
  const std::string lines =
      directory.Write("lines.json", Records({kDrive, {{7.411, 43.735}, {7.414, 43.736}}}));
  const std::string polygon = directory.Write(
      "polygon.json",
      R"({"type":"Polygon","coordinates":[[[7.41,43.73],[7.414,43.73],[7.414,43.736],[7.41,43.736],[7.41,43.73]],[[7.411,43.7305],[7.412,43.7305],[7.412,43.7315],[7.411,43.7305]]]})");
  struct Case {
    Strings arguments;
    std::size_t routes, pieces, points, hollow, areas;
    const char* text;
  };
  const std::vector<Case> cases = {
      {{"sample", lines, "--every", "100"}, 2, 0, 13, 0, 0, "sample"},
      {{"sample", lines, "--first", "200"}, 2, 2, 0, 0, 0, "head"},
      {{"sample", lines, "--after", "200"}, 2, 2, 0, 0, 0, "rest"},
      {{"sample", lines, "--count", "5"}, 2, 0, 5, 0, 0, "5 points of 5"},
      {{"clip", lines, "--view=7.4105,43.7295,7.4125,43.732"}, 1, 1, 0, 0, 0, "piece in view"},
      {{"thin", lines, "--spacing", "150"}, 2, 2, 6, 0, 0, "point kept"},
      {{"along", lines, "--from", "1", "--length", "100"}, 1, 1, 1, 0, 0, "stretch ahead"},
      {{"on-line", lines, lines, "--tolerance", "1"}, 2, 0, 9, 0, 0, "on a line"},
      {{"contains", polygon, lines}, 0, 0, 7, 2, 1, "outside"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.arguments[0] + " " + row.arguments[2]);
    const std::string file = directory.File("map.svg");
    Strings arguments = row.arguments;
    arguments.insert(arguments.end(), {"--picture", file});
    const ProgramResult plain = RunTool(row.arguments);
    const ProgramResult result = RunTool(arguments);
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, plain.out) << "the picture changes nothing else";
    const MapReading map = ReadMap(file);
    EXPECT_EQ(map.title, "lines.json");
    EXPECT_EQ(map.OfClass("route").size(), row.routes);
    EXPECT_EQ(map.OfClass("piece").size(), row.pieces);
    EXPECT_EQ(map.OfClass("point").size(), row.points);
    EXPECT_EQ(map.OfClass("hollow").size(), row.hollow);
    EXPECT_EQ(map.OfClass("area").size(), row.areas);
    EXPECT_EQ(map.OfClass("view-border").size(), row.arguments[0] == "clip" ? 1u : 0u);
    EXPECT_NE(map.allText.find(row.text), std::string::npos) << map.allText;
    for (const char* const elementClass : {"point", "hollow"}) {
      for (const MapElement& element : map.OfClass(elementClass)) {
        EXPECT_GT(element.pixels.at(0).first, 0.0);
        EXPECT_LT(element.pixels[0].first, map.width);
        EXPECT_GT(element.pixels[0].second, 0.0);
        EXPECT_LT(element.pixels[0].second, map.height);
      }
    }
  }
}

TEST(ToolRoutePictures, PutThePointsOnTheirLine) {
  const TemporaryDirectory directory;
  const std::string file = directory.File("map.svg");
  const auto rows = Features({"sample", "--every", "500", "--picture", file}, LineStringText(kAcross));
  const MapReading map = ReadMap(file);
  const auto dots = map.OfClass("point");
  const auto line = map.OfClass("route").at(0).pixels;
  ASSERT_EQ(dots.size(), rows.size());
  ASSERT_EQ(line.size(), kAcross.size());
  for (std::size_t i = 0; i < dots.size(); ++i) {
    EXPECT_EQ(dots[i].attributes.at("data-metres"), std::to_string(500 * i));
    double nearest = 1e9;
    for (std::size_t k = 1; k < line.size(); ++k) {
      const double dx = line[k].first - line[k - 1].first;
      const double dy = line[k].second - line[k - 1].second;
      const double x = dots[i].pixels[0].first - line[k - 1].first;
      const double y = dots[i].pixels[0].second - line[k - 1].second;
      const double along = std::min(1.0, std::max(0.0, (x * dx + y * dy) / (dx * dx + dy * dy)));
      nearest = std::min(nearest, std::hypot(x - along * dx, y - along * dy));
    }
    EXPECT_LT(nearest, 0.02) << i;  // three numbers rounded to a hundredth of a pixel
  }
}

// ---- help, samples, real data ----

TEST(ToolRouteHelp, ExplainsEachOptionAndRule) {
  const std::vector<std::pair<const char*, Strings>> cases = {
      {"sample",
       {"--every METRES", "--max COUNT", "--first METRES", "--after METRES", "--count COUNT",
        "greater than 0"}},
      {"measure",
       {"--table", "line,vertices,metres,west,south,east,north",
        "line,index,longitude,latitude,metres,heading"}},
      {"clip", {"--view W,S,E,N", "The border\n  belongs to the view"}},
      {"thin", {"--spacing METRES", "--limit COUNT", "Default: 0", "1501"}},
      {"contains", {"POLYGON", "POINTS", "Boundary rules", "1e-7 degree", "hole"}},
      {"on-line", {"LINE", "POINTS", "--tolerance METRES", "--segments", "Boundary rules", "12000 m"}},
      {"along",
       {"--from INDEX", "--offset METRES", "--length METRES", "--line INDEX", "truncated to whole metres"}},
  };
  const std::string overview = RunTool({"--help"}).out;
  for (const auto& [command, texts] : cases) {
    SCOPED_TRACE(command);
    EXPECT_NE(overview.find(command), std::string::npos);
    const ProgramResult result = RunTool({command, "--help"});
    EXPECT_EQ(result.exitStatus, 0);
    Strings wanted = texts;
    wanted.insert(wanted.end(), {"--out FILE", "Default: standard output", "Exit status", "Examples"});
    if (std::string(command) != "measure") wanted.emplace_back("--picture FILE");
    for (const std::string& text : wanted) {
      EXPECT_NE(result.out.find(text), std::string::npos) << text << "\n" << result.out;
    }
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 120u) << line;
  }
}

TEST(ToolRouteRealData, EveryFileGoesThroughEveryCommand) {
  const char* const directory = std::getenv("VOREL_DATA_DIR");
  if (directory == nullptr) GTEST_SKIP() << "skipped: VOREL_DATA_DIR does not name the real data";
  const std::filesystem::path data(directory);
  const std::string island = (data / "polygons" / "islands.geojson").string();
  for (const auto& entry : std::filesystem::directory_iterator(data / "routes")) {
    const std::string file = entry.path().string();
    SCOPED_TRACE(file);
    for (const Strings& arguments :
         {Strings{"sample", file, "--every", "500"}, Strings{"sample", file, "--count", "50"},
          Strings{"clip", file, "--view=-10,40,10,60"}, Strings{"thin", file, "--spacing", "200"},
          Strings{"along", file, "--from", "3", "--length", "900"}, Strings{"contains", island, file}}) {
      const ProgramResult result = RunTool(arguments);
      ASSERT_EQ(result.exitStatus, 0) << result.err;
      EXPECT_NO_THROW(ReadFeatures(result.out));
    }
    const auto lengths = CsvRows(RunTool({"measure", file}).out);
    const auto table = CsvRows(RunTool({"measure", "--table", file}).out);
    ASSERT_GE(lengths.size(), 2u);
    EXPECT_EQ(table.back()[4], lengths.back()[2]);
  }
}

}  // namespace
}  // namespace vorel::test
