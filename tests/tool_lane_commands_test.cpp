#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/boundary_data.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/feature_reading.h"
#include "support/program_runner.h"

namespace vorel::test {
namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using Algorithm = VorelGeometryAlgorithm;
using Line = std::vector<GeoCoordinateZ>;

const std::string kLanes = VOREL_SAMPLES_DIR "/lanes.geojson";
const std::string kTrace = VOREL_SAMPLES_DIR "/trace.geojson";

ProgramResult RunTool(const std::vector<std::string>& arguments, const std::string& input = "") {
  return RunProgram(VOREL_TOOL_PATH, arguments, input);
}

/// Runs a command that must succeed, and returns what it wrote.
std::string OutputOf(const std::vector<std::string>& arguments, const std::string& input = "") {
  const ProgramResult result = RunTool(arguments, input);
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  return result.out;
}

std::vector<FeatureRow> RowsOf(const std::vector<std::string>& arguments, const std::string& input = "") {
  return ReadFeatures(OutputOf(arguments, input));
}

std::vector<FeatureRow> SampleLanes() {
  return ReadFeatures(FileText(kLanes));
}

/// A line with heights as GeoJSON.
std::string LineText(const std::string& coordinates) {
  return R"({"type":"LineString","coordinates":)" + coordinates + "}";
}

Line SampleLane(const std::string& id) {
  for (const FeatureRow& row : SampleLanes()) {
    if (row.properties.at("id") == "\"" + id + "\"") return row.points;
  }
  throw std::runtime_error("no lane " + id);
}

TEST(ToolLaneHelp, ExplainsEachCommand) {
  for (const char* const command : {"match", "offset", "arrow", "cut", "plane", "bounds"}) {
    const ProgramResult result = RunTool({command, "--help"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
    for (const char* const text :
         {"Input", "Output", "a missing height", "--out FILE", "Exit status", "Examples"}) {
      EXPECT_NE(result.out.find(text), std::string::npos) << command << ": " << text;
    }
    std::size_t begin = 0;
    for (std::size_t end; (end = result.out.find('\n', begin)) != std::string::npos; begin = end + 1) {
      EXPECT_LE(end - begin, 120u) << result.out.substr(begin, end - begin);
    }
  }
}

// ---- match ------------------------------------------------------------------------------------------------------

TEST(ToolMatch, GivesEachFixTheNearestSegmentOfAllLines) {
  const std::vector<FeatureRow> lanes = SampleLanes();
  const Line trace = ReadFeatures(FileText(kTrace)).at(0).points;
  const std::vector<FeatureRow> rows = RowsOf({"match", kLanes, kTrace});
  ASSERT_EQ(rows.size(), trace.size());
  std::size_t matched = 0;
  for (std::size_t fix = 0; fix < rows.size(); ++fix) {
    SCOPED_TRACE(fix);
    double nearest = 20.0;
    std::string segment;
    for (const FeatureRow& lane : lanes) {
      int start = 0;
      int index = 0;
      double ratio = 0.0;
      if (!Algorithm::ProjectionPosToLinesDistance(trace[fix], lane.points, start, index, ratio, 0.0, 20.0,
                                                   100000))
        continue;
      const auto i = static_cast<std::size_t>(index);
      const GeoCoordinate foot{
          lane.points[i].longitude + ratio * (lane.points[i + 1].longitude - lane.points[i].longitude),
          lane.points[i].latitude + ratio * (lane.points[i + 1].latitude - lane.points[i].latitude)};
      if (trace[fix].DistanceTo(foot) >= nearest) continue;
      nearest = trace[fix].DistanceTo(foot);
      segment = lane.properties.at("id") + " " + std::to_string(index);
    }
    const FeatureRow& row = rows[fix];
    EXPECT_EQ(row.properties.at("fix"), std::to_string(fix));
    if (segment.empty()) {
      EXPECT_EQ(row.properties.at("matched"), "false");
      EXPECT_EQ(row.properties.at("distance"), "null");
      EXPECT_TRUE(row.points.at(0) == trace[fix]);
      continue;
    }
    ++matched;
    EXPECT_EQ(row.properties.at("matched"), "true");
    EXPECT_EQ(row.properties.at("id") + " " + row.properties.at("segment"), segment);
    EXPECT_EQ(row.Number("distance"), nearest);
    EXPECT_GE(row.Number("ratio"), 0.0);
    EXPECT_LE(row.Number("ratio"), 1.0);
  }
  EXPECT_EQ(matched, trace.size() - 1);  // the trace has one fix far away
}

TEST(ToolMatch, SummaryHoldsCountsShareAndMedian) {
  const std::string lane = LineText("[[8,50],[8.01,50]]");
  const TemporaryDirectory directory;
  const std::string file = directory.Write("lane.json", lane);
  const ProgramResult result = RunTool(
      {"match", file, "-"}, LineText("[[8.001,50.00001],[8.002,50.00003],[8.003,50.001],[8.004,50.00005]]"));
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  const std::vector<FeatureRow> rows = ReadFeatures(result.out);
  EXPECT_EQ(CollectionMember(result.out, "summary"),
            R"({"fixes":4,"lines":1,"matched":3,"median_distance":)" + rows[1].properties.at("distance") +
                R"(,"share":0.75})");
  EXPECT_EQ(result.err,
            "vorel: note: standard input: matched 3 of 4 fixes (75.0 %), median distance 3.34 m\n");
}

TEST(ToolMatch, HeightComesFromTheLine) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("lane.json", LineText("[[8,50,10],[8.01,50,20],[8.02,50]]"));
  const std::vector<FeatureRow> rows = RowsOf({"match", file}, LineText("[[8.005,50,99],[8.015,50]]"));
  EXPECT_FLOAT_EQ(rows.at(0).points[0].z, 15.0f);
  EXPECT_FLOAT_EQ(rows.at(1).points[0].z, 10.0f);  // half way to the missing height, 0
}

constexpr const char* kTwoWays =
    R"({"type":"FeatureCollection","features":[
{"type":"Feature","id":"east","properties":null,"geometry":{"type":"LineString","coordinates":[[8,50],[8.01,50]]}},
{"type":"Feature","id":"west","properties":null,"geometry":{"type":"LineString","coordinates":[[8.01,50.00005],[8,50.00005]]}}]})";

TEST(ToolMatch, HeadingToleranceTakesTheWayThatIsDriven) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("ways.json", kTwoWays);
  // Westward, but nearer to the eastward way; the last fix stands still.
  const std::string trace = LineText("[[8.008,50.00002],[8.005,50.00002],[8.002,50.00002],[8.002,50.00002]]");
  for (const FeatureRow& row : RowsOf({"match", file}, trace)) EXPECT_EQ(row.properties.at("id"), "\"east\"");
  for (const FeatureRow& row : RowsOf({"match", file, "--heading-tolerance", "30"}, trace))
    EXPECT_EQ(row.properties.at("id"), "\"west\"");
}

TEST(ToolMatch, TraceInOnePlaceIsMatchedWithoutHeading) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("ways.json", kTwoWays);
  const std::vector<FeatureRow> rows =
      RowsOf({"match", file, "--heading-tolerance", "1"}, LineText("[[8.005,50.00002],[8.005,50.00002]]"));
  for (const FeatureRow& row : rows) EXPECT_EQ(row.properties.at("id"), "\"east\"");
}

TEST(ToolMatch, WalkStaysOnItsLineAndScansWhereItEnds) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("ways.json", kTwoWays);
  // The second fix is nearer to the westward way, the third beyond the end of both, the fourth far from both.
  const std::string trace =
      LineText("[[8.002,50.00001],[8.005,50.00004],[8.01001,50.00001],[8.02,50],[8.003,50]]");
  const std::vector<FeatureRow> rows = RowsOf({"match", file, "--walk"}, trace);
  const char* const walked[] = {"false", "true", "false", "null", "false"};
  const char* const ids[] = {"\"east\"", "\"east\"", "\"east\"", "null", "\"east\""};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].properties.at("walked"), walked[i]) << i;
    EXPECT_EQ(rows[i].properties.at("id"), ids[i]) << i;
  }
  EXPECT_EQ(RowsOf({"match", file}, trace).at(1).properties.at("id"), "\"west\"");
}

TEST(ToolMatch, WalkLeavesALineThatIsOutOfRange) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("ways.json", kTwoWays);
  const std::vector<FeatureRow> rows =
      RowsOf({"match", file, "--walk"}, LineText("[[8.002,50],[8.003,50.001],[8.004,50]]"));
  EXPECT_EQ(rows.at(1).properties.at("matched"), "false");
  EXPECT_EQ(rows.at(2).properties.at("walked"), "false");
}

TEST(ToolMatch, WalkToTheVeryEndStaysOnTheLastSegment) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("lane.json", LineText("[[8,50,1],[8.01,50,2]]"));
  const FeatureRow row = RowsOf({"match", file, "--walk"}, LineText("[[8.005,50],[8.01,50]]")).at(1);
  EXPECT_EQ(row.properties.at("walked"), "true");
  EXPECT_EQ(row.properties.at("segment"), "0");
  EXPECT_EQ(row.Number("ratio"), 1.0);
  EXPECT_EQ(row.points[0].z, 2.0f);
}

TEST(ToolMatch, AcceptAndFarSegmentsEndTheSearchEarly) {
  const TemporaryDirectory directory;
  // Out, a long way round, and back past the start, nearer to the fix.
  const std::string file = directory.Write(
      "loop.json",
      LineText("[[8,50],[8.001,50],[8.001,50.01],[8.0005,50.01],[8,50.01],[8,50.00005],[8.001,50.00005]]"));
  const std::string trace = LineText("[[8.0005,50.00003],[8.0006,50.00003]]");
  EXPECT_EQ(RowsOf({"match", file}, trace).at(0).properties.at("segment"), "5");
  EXPECT_EQ(RowsOf({"match", file, "--accept", "4"}, trace).at(0).properties.at("segment"), "0");
  EXPECT_EQ(RowsOf({"match", file, "--accept", "3"}, trace).at(0).properties.at("segment"), "5");
  EXPECT_EQ(RowsOf({"match", file, "--far-segments", "0"}, trace).at(0).properties.at("segment"), "0");
}

TEST(ToolMatch, FollowsLinesAcrossTheAntimeridian) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("lane.json", LineText("[[179.99,10],[-179.99,10]]"));
  const std::vector<FeatureRow> rows =
      RowsOf({"match", file}, LineText("[[179.995,10.00001],[-179.995,10.00001]]"));
  EXPECT_NEAR(rows.at(0).Number("ratio"), 0.25, 1e-9);
  EXPECT_NEAR(rows.at(1).Number("ratio"), 0.75, 1e-9);
  EXPECT_NEAR(rows.at(1).points[0].longitude, -179.995, 1e-9);
  // The other way round the trace lies a whole turn beside the line.
  const std::vector<FeatureRow> back =
      RowsOf({"match", file}, LineText("[[-179.995,10.00001],[179.995,10.00001]]"));
  EXPECT_EQ(back.at(0).properties.at("matched"), "true");
  EXPECT_NEAR(back.at(1).Number("ratio"), 0.25, 1e-9);
}

TEST(ToolMatch, SelectsByProperty) {
  for (const FeatureRow& row :
       RowsOf({"match", kLanes, kTrace, "--lanes-only", "kind=boundary", "--max", "40"})) {
    const std::string id = row.properties.at("id");
    EXPECT_TRUE(id == "\"kerb\"" || id == "\"centre\"" || id == "null") << id;
  }
}

TEST(ToolMatch, PictureHasOneStrokePerMatchAndOneDotPerFix) {
  const TemporaryDirectory directory;
  const std::string picture = directory.File("match.svg");
  const std::vector<FeatureRow> rows = RowsOf({"match", kLanes, kTrace, "--picture", picture});
  const std::string text = FileText(picture);
  EXPECT_EQ(CountOf(text, "class=\"stroke\""), rows.size() - 1);
  EXPECT_EQ(CountOf(text, "class=\"fix\""), rows.size() - 1);
  EXPECT_EQ(CountOf(text, "class=\"unmatched\""), 1u);
  EXPECT_EQ(CountOf(text, "class=\"trace\""), 1u);
  EXPECT_EQ(CountOf(text, "class=\"lane\""), 5u);
}

// ---- offset -----------------------------------------------------------------------------------------------------

TEST(ToolOffset, IsTheLibrarysOwnToTheBit) {
  for (const bool left : {false, true}) {
    const std::vector<FeatureRow> rows =
        RowsOf({"offset", kLanes, "--metres", "1.8", "--side", left ? "left" : "right"});
    const std::vector<FeatureRow> lanes = SampleLanes();
    ASSERT_EQ(rows.size(), lanes.size());
    for (std::size_t i = 0; i < lanes.size(); ++i) {
      Line expected;
      Algorithm::PanLinePoints(lanes[i].points, 1.8f, left, expected);
      EXPECT_EQ(rows[i].type, "LineString");
      EXPECT_TRUE(rows[i].points == expected) << i;
      EXPECT_EQ(rows[i].properties.at("id"), lanes[i].properties.at("id"));
      EXPECT_EQ(rows[i].properties.at("metres"), "1.8");
    }
  }
}

TEST(ToolOffset, KeepsRepeatedVerticesAndHairpins) {
  const std::string line = LineText("[[8,50,1],[8,50,1],[8.001,50,2],[8,50,3]]");
  const std::vector<FeatureRow> rows = RowsOf({"offset", "--metres", "2", "--side", "right"}, line);
  ASSERT_EQ(rows.at(0).points.size(), 4u);
  for (const GeoCoordinateZ& point : rows[0].points) EXPECT_TRUE(std::isfinite(point.longitude));
}

TEST(ToolOffset, CrossesTheAntimeridian) {
  const std::vector<FeatureRow> rows =
      RowsOf({"offset", "--metres", "10", "--side", "left"}, LineText("[[179.9,10],[-179.9,10]]"));
  ASSERT_EQ(rows.at(0).points.size(), 2u);
  EXPECT_NEAR(rows[0].points[1].longitude, -179.9, 1e-4);  // 10 m are 1e-4 degrees, to the north
  EXPECT_GT(rows[0].points[1].latitude, 10.00008);
}

TEST(ToolOffset, PictureHasTheLinesBeforeAndAfter) {
  const TemporaryDirectory directory;
  const std::string picture = directory.File("offset.svg");
  OutputOf(
      {"offset", kLanes, "--metres", "1.75", "--side", "left", "--only", "kind=lane", "--picture", picture});
  const std::string text = FileText(picture);
  EXPECT_EQ(CountOf(text, "class=\"lane\""), 3u);
  EXPECT_EQ(CountOf(text, "class=\"moved\""), 3u);
}

// ---- arrow ------------------------------------------------------------------------------------------------------

double DoubleArea(const Line& ring) {
  double area = 0.0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    area += (ring[i - 1].longitude - ring[0].longitude) * (ring[i].latitude - ring[0].latitude) -
            (ring[i].longitude - ring[0].longitude) * (ring[i - 1].latitude - ring[0].latitude);
  }
  return area;
}

TEST(ToolArrow, EdgesAreTheLibrarysOwnAndTheShaftJoinsThem) {
  const std::pair<const char*, ArrowType> types[] = {{"left", ArrowType::kLineAsLeftEdge},
                                                     {"centre", ArrowType::kLineAsCenter},
                                                     {"right", ArrowType::kLineAsRightEdge}};
  const std::vector<FeatureRow> lanes = SampleLanes();
  for (const auto& [name, type] : types) {
    const std::vector<FeatureRow> rows = RowsOf({"arrow", kLanes, "--width", "2.5", "--line-as", name});
    ASSERT_EQ(rows.size(), 3 * lanes.size());
    for (std::size_t i = 0; i < lanes.size(); ++i) {
      Line left;
      Line right;
      Algorithm::CalcBoundaryPoints(lanes[i].points, 2.5f, type, left, right);
      const FeatureRow& shaft = rows[3 * i];
      EXPECT_EQ(shaft.type, "Polygon");
      EXPECT_EQ(shaft.properties.at("part"), "\"shaft\"");
      EXPECT_EQ(rows[3 * i + 1].properties.at("part"), "\"left edge\"");
      EXPECT_TRUE(rows[3 * i + 1].points == left);
      EXPECT_TRUE(rows[3 * i + 2].points == right);
      ASSERT_EQ(shaft.points.size(), left.size() + right.size() + 1);
      EXPECT_TRUE(shaft.points.front() == shaft.points.back());
      EXPECT_GT(DoubleArea(shaft.points), 0.0);
      for (const GeoCoordinateZ& point : left)
        EXPECT_NE(std::find(shaft.points.begin(), shaft.points.end(), point), shaft.points.end());
    }
  }
}

TEST(ToolArrow, LineWithoutExtentIsLeftOutWithANote) {
  const ProgramResult result = RunTool({"arrow", "--width", "2"}, LineText("[[8,50],[8,50]]"));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_TRUE(ReadFeatures(result.out).empty());
  EXPECT_EQ(result.err, "vorel: note: standard input: left out 1 line too short for a shaft\n");
}

TEST(ToolArrow, PictureHasShaftAndEdges) {
  const TemporaryDirectory directory;
  const std::string picture = directory.File("arrow.svg");
  OutputOf({"arrow", kLanes, "--width", "2", "--only", "id=loop", "--picture", picture});
  const std::string text = FileText(picture);
  for (const char* const element : {"shaft", "lane", "left-edge", "right-edge"})
    EXPECT_EQ(CountOf(text, std::string("class=\"") + element + "\""), 1u) << element;
}

// ---- cut --------------------------------------------------------------------------------------------------------

TEST(ToolCut, IsTheLibrarysOwnToTheBit) {
  const std::vector<FeatureRow> rows = RowsOf(
      {"cut", kLanes, "--only", "id=kerb", "--from", "3:0.25", "--length", "41.5", "--marks", "2,5,9,30"});
  tarvo::HAD::BoundaryData source;
  source.points = SampleLane("kerb");
  source.pointIndices = {2, 5, 9, 30};
  tarvo::HAD::BoundaryData expected;
  int cursor = -1;
  Algorithm::HandleBoundaryDataByDistance(source, cursor, 3, 0.25, 41.5, expected);
  ASSERT_EQ(rows.size(), 4u);
  const FeatureRow& piece = rows[0];
  EXPECT_TRUE(piece.points == expected.points);
  EXPECT_EQ(piece.properties.at("marks"), "[0,2,6]");
  EXPECT_EQ(piece.properties.at("covered"), "1");
  EXPECT_EQ(piece.properties.at("cursor"), std::to_string(cursor));
  for (std::size_t i = 0; i < expected.pointIndices.size(); ++i) {
    EXPECT_TRUE(rows[1 + i].points.at(0) == expected.points[expected.pointIndices[i]]);
  }
  EXPECT_EQ(rows[1].properties.at("vertex"), "null");
  EXPECT_EQ(rows[3].properties.at("vertex"), "9");
}

TEST(ToolCut, PiecesOneAfterAnotherCoverTheBoundary) {
  std::string from = "0";
  double metres = 0.0;
  int pieces = 0;
  GeoCoordinateZ end = SampleLane("centre").front();
  for (; from != "ull" && pieces < 100; ++pieces) {
    const FeatureRow piece =
        RowsOf({"cut", kLanes, "--only", "id=centre", "--from", from, "--length", "60"}).at(0);
    EXPECT_LT(end.DistanceTo(piece.points.front()), 1e-5);  // the ratio is narrowed to float
    end = piece.points.back();
    metres += 60.0 * piece.Number("covered");
    from = piece.properties.at("next").substr(1);
    if (!from.empty() && from.back() == '"') from.pop_back();
  }
  EXPECT_EQ(pieces, 6);
  double whole = 0.0;
  const Line centre = SampleLane("centre");
  for (std::size_t i = 1; i < centre.size(); ++i) whole += centre[i - 1].DistanceTo(centre[i]);
  EXPECT_NEAR(metres, whole, 1e-4);
  EXPECT_TRUE(end == centre.back());
}

TEST(ToolCut, PictureHasPieceAndMarks) {
  const TemporaryDirectory directory;
  const std::string picture = directory.File("cut.svg");
  OutputOf({"cut", kLanes, "--only", "id=kerb", "--length", "30", "--marks", "2,4,60", "--picture", picture});
  const std::string text = FileText(picture);
  EXPECT_EQ(CountOf(text, "class=\"boundary\""), 1u);
  EXPECT_EQ(CountOf(text, "class=\"cut-piece\""), 1u);
  EXPECT_EQ(CountOf(text, "class=\"mark\""), 3u);
  EXPECT_EQ(CountOf(text, "class=\"source-mark\""), 3u);
}

// ---- plane ------------------------------------------------------------------------------------------------------

TEST(ToolPlane, HeightIsTheLibrarysOwn) {
  const Line plane = {{8.0, 50.0, 10.0f}, {8.001, 50.0, 10.0f}, {8.001, 50.001, 12.5f}};
  const ProgramResult result = RunTool({"plane", "--at", "8.0004,50.0003"},
                                       LineText("[[8,50,10],[8.001,50,10],[8.001,50.001,12.5],[0,0]]"));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  const FeatureRow row = ReadFeatures(result.out).at(0);
  EXPECT_EQ(row.Number("height"), Algorithm::GetPointZInPlane(plane, {8.0004, 50.0003}));
  EXPECT_NEAR(row.Number("height"), 10.75, 1e-4);
  EXPECT_EQ(row.properties.at("plane"), "\"upward\"");
}

TEST(ToolPlane, SaysWhenTheHeightMeansNothing) {
  const ProgramResult clockwise =
      RunTool({"plane", "--at", "8,50"}, LineText("[[8,50,10],[8.001,50.001,12],[8.001,50,10]]"));
  EXPECT_EQ(clockwise.err,
            "vorel: note: standard input: the three points run clockwise, so the height is 0\n");
  EXPECT_EQ(ReadFeatures(clockwise.out).at(0).properties.at("plane"), "\"downward\"");
  EXPECT_EQ(ReadFeatures(clockwise.out).at(0).properties.at("height"), "0");
  const ProgramResult onALine =
      RunTool({"plane", "--at", "8,50"}, LineText("[[8,50,10],[8.001,50,12],[8.002,50,10]]"));
  EXPECT_NE(onALine.err.find("on one line or too close together"), std::string::npos);
  EXPECT_EQ(ReadFeatures(onALine.out).at(0).properties.at("plane"), "\"degenerate\"");
}

TEST(ToolPlane, TakesPointsOfSeveralFeaturesAcrossTheAntimeridian) {
  const std::string points =
      R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[179.999,10,5]},
{"type":"MultiPoint","coordinates":[[-179.999,10,5],[-179.999,10.002,7]]}]})";
  EXPECT_NEAR(RowsOf({"plane", "--at", "180,10.001"}, points).at(0).Number("height"), 6.0, 1e-6);
  EXPECT_NEAR(RowsOf({"plane", "--at=-180,10.001"}, points).at(0).Number("height"), 6.0, 1e-6);
}

// ---- bounds -----------------------------------------------------------------------------------------------------

TEST(ToolBounds, CornersAreTheLibrarysOwn) {
  const std::vector<FeatureRow> lanes = SampleLanes();
  const std::vector<FeatureRow> rows = RowsOf({"bounds", kLanes, "--range", "2,7"});
  ASSERT_EQ(rows.size(), lanes.size());
  for (std::size_t i = 0; i < lanes.size(); ++i) {
    std::vector<tarvo::MapVector2d> corners;
    ASSERT_TRUE(Algorithm::GetBound(lanes[i].points, 2, 7, corners));
    ASSERT_EQ(rows[i].points.size(), 5u);
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_EQ(rows[i].points[k].longitude, corners[k].x);
      EXPECT_EQ(rows[i].points[k].latitude, corners[k].y);
    }
    EXPECT_EQ(rows[i].Number("west"), corners[0].x);
    EXPECT_EQ(rows[i].Number("north"), corners[2].y);
    EXPECT_EQ(rows[i].properties.at("last"), "7");
  }
}

TEST(ToolBounds, RangeToTheEndAndAcrossTheAntimeridian) {
  const std::string line = LineText("[[170,1],[179,2],[-179,3]]");
  const FeatureRow row = RowsOf({"bounds", "--range", "1,-1"}, line).at(0);
  EXPECT_EQ(row.properties.at("last"), "2");
  EXPECT_EQ(row.Number("west"), 179.0);
  EXPECT_EQ(row.Number("east"), -179.0);
  EXPECT_EQ(RowsOf({"bounds", "--range", "0,99"}, line).at(0).properties.at("last"), "2");
}

TEST(ToolBounds, PictureHasOneBoxPerLine) {
  const TemporaryDirectory directory;
  const std::string picture = directory.File("bounds.svg");
  OutputOf({"bounds", kLanes, "--picture", picture});
  EXPECT_EQ(CountOf(FileText(picture), "class=\"box\""), 5u);
}

}  // namespace
}  // namespace vorel::test
