#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/program_runner.h"

namespace vorel::test {
namespace {

constexpr const char* kLine = R"({"type":"LineString","coordinates":[[8,50,1],[8.001,50],[8.002,50.001,3]]})";

std::string Line(const std::string& coordinates) {
  return R"({"type":"LineString","coordinates":)" + coordinates + "}";
}

struct LaneCase {
  const char* name;
  std::vector<std::string> arguments;  // "line.json" is a good line, "bad.json" holds `content`
  std::string content;
  std::vector<std::string> fragments;
};

class BadLaneInput : public testing::TestWithParam<LaneCase> {};

TEST_P(BadLaneInput, IsRefusedInOneLine) {
  const TemporaryDirectory directory;
  directory.Write("line.json", kLine);
  directory.Write("bad.json", GetParam().content);
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.insert(arguments.end(), {"--out", "out.json"});
  const auto before = directory.Contents();
  const ProgramResult result = RunProgram(VOREL_TOOL_PATH, arguments, "", directory.path());
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  EXPECT_EQ(result.err.rfind("vorel: ", 0), 0u) << result.err;
  for (const std::string& fragment : GetParam().fragments) {
    EXPECT_NE(result.err.find(fragment), std::string::npos)
        << "\"" << fragment << "\" is not in: " << result.err;
  }
  EXPECT_EQ(directory.Contents(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, BadLaneInput,
    testing::Values(LaneCase{"NotJson", {"bounds", "bad.json"}, "hello", {"bad.json: not JSON", "\"hello\""}},
                    LaneCase{"NoLine",
                             {"bounds", "bad.json"},
                             R"({"type":"Point","coordinates":[1,2]})",
                             {"bad.json: holds no line, only 1 other object"}},
                    LaneCase{"HeightIsText",
                             {"offset", "bad.json", "--metres", "1", "--side", "left"},
                             Line(R"([[1,2,"x"],[3,4]])"),
                             {"bad.json: coordinates[0]: \"x\" in the position", "not a number"}},
                    LaneCase{"HeightIsNull",
                             {"arrow", "bad.json", "--width", "1"},
                             Line("[[1,2],[3,4,null]]"),
                             {"coordinates[1]: null in the position"}},
                    LaneCase{"HeightBeyondFloat",
                             {"bounds", "bad.json"},
                             Line("[[1,2,3],[3,4,1e39]]"),
                             {"bad.json: coordinates[1]: height 1e+39 is beyond what a float can hold"}},
                    LaneCase{"BadLanes",
                             {"match", "bad.json", "line.json"},
                             Line("[[1,95],[3,4]]"),
                             {"bad.json: coordinates[0]: latitude 95"}},
                    LaneCase{"BadTrace",
                             {"match", "line.json", "bad.json"},
                             Line("[[1,2]]"),
                             {"bad.json: coordinates: a line needs two positions"}},
                    LaneCase{"MissingLanes",
                             {"match", "nowhere.json", "line.json"},
                             "",
                             {"nowhere.json", "No such file"}},
                    LaneCase{"NothingSelected",
                             {"match", "line.json", "line.json", "--lanes-only", "kind=lane"},
                             "",
                             {"line.json: none of 1 line has the property kind = lane"}},
                    LaneCase{"TwoBoundaries",
                             {"cut", "bad.json", "--length", "5"},
                             R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]],[[1,2],[3,4]]]})",
                             {"bad.json: holds 2 lines", "--only"}},
                    LaneCase{"TwoPoints",
                             {"plane", "bad.json", "--at", "1,2"},
                             Line("[[1,2],[3,4]]"),
                             {"bad.json: a plane needs three points, here are 2"}},
                    LaneCase{"PointIsWrong",
                             {"plane", "bad.json", "--at", "1,2"},
                             R"({"type":"Point","coordinates":[1]})",
                             {"bad.json: coordinates: the position [1] needs two numbers"}},
                    LaneCase{"OffsetOverThePole",
                             {"offset", "bad.json", "--metres", "90000", "--side", "left"},
                             Line("[[1,89.9],[2,89.9]]"),
                             {"bad.json: the offset line leaves the map at its point 0"}},
                    LaneCase{"OffsetAtThePole",
                             {"offset", "bad.json", "--metres", "5", "--side", "left"},
                             Line("[[1,89],[1,90]]"),
                             {"bad.json: the offset line leaves the map"}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Options, BadLaneInput,
    testing::Values(
        LaneCase{"BothFromStandardInput", {"match", "-", "-"}, "", {"LANES -", "read for the trace"}},
        LaneCase{"NoLanes", {"match"}, "", {"LANES", "required"}},
        LaneCase{"Accept",
                 {"match", "line.json", "line.json", "--accept=-1"},
                 "",
                 {"--accept -1", "between 0 and"}},
        LaneCase{"Max", {"match", "line.json", "line.json", "--max", "0"}, "", {"--max 0", "greater than 0"}},
        LaneCase{
            "MaxTooLarge", {"match", "line.json", "line.json", "--max", "1e6"}, "", {"--max 1e6", "100000"}},
        LaneCase{"Tolerance",
                 {"match", "line.json", "line.json", "--heading-tolerance", "181"},
                 "",
                 {"--heading-tolerance 181", "180"}},
        LaneCase{"FarSegments",
                 {"match", "line.json", "line.json", "--far-segments", "1.5"},
                 "",
                 {"--far-segments 1.5", "whole number from 0"}},
        LaneCase{"Selection",
                 {"match", "line.json", "line.json", "--trace-only", "lane"},
                 "",
                 {"--trace-only lane", "KEY=VALUE"}},
        LaneCase{"NoMetres", {"offset", "line.json", "--side", "left"}, "", {"--metres", "required"}},
        LaneCase{"MetresText",
                 {"offset", "line.json", "--side", "left", "--metres", "3m"},
                 "",
                 {"--metres 3m: is not a number"}},
        LaneCase{"MetresNaN",
                 {"offset", "line.json", "--side", "left", "--metres", "nan"},
                 "",
                 {"--metres nan: is not a number"}},
        LaneCase{"MetresTooMany",
                 {"offset", "line.json", "--side", "left", "--metres", "1e9"},
                 "",
                 {"--metres 1e9: is beyond 100000"}},
        LaneCase{"Side",
                 {"offset", "line.json", "--side", "up", "--metres", "3"},
                 "",
                 {"--side up: is neither left nor right"}},
        LaneCase{"Width", {"arrow", "line.json", "--width", "0"}, "", {"--width 0", "greater than 0"}},
        LaneCase{"LineAs",
                 {"arrow", "line.json", "--width", "2", "--line-as", "middle"},
                 "",
                 {"--line-as middle"}},
        LaneCase{"Length", {"cut", "line.json", "--length", "-2"}, "", {"--length -2", "greater than 0"}},
        LaneCase{"FromBeyond",
                 {"cut", "line.json", "--length", "2", "--from", "2"},
                 "",
                 {"line.json: --from 2 is beyond the last segment, 1"}},
        LaneCase{"FromRatio",
                 {"cut", "line.json", "--length", "2", "--from", "1:1.5"},
                 "",
                 {"--from 1.5", "between 0 and 1"}},
        LaneCase{"FromText",
                 {"cut", "line.json", "--length", "2", "--from", "1:0:2"},
                 "",
                 {"--from 1:0:2", "INDEX:RATIO"}},
        LaneCase{"MarksDescend",
                 {"cut", "line.json", "--length", "2", "--marks", "2,1"},
                 "",
                 {"--marks 2,1", "do not ascend"}},
        LaneCase{"MarksBeyond",
                 {"cut", "line.json", "--length", "2", "--marks", "1,3"},
                 "",
                 {"line.json: --marks 3 is beyond the last point, 2"}},
        LaneCase{"MarksEmpty",
                 {"cut", "line.json", "--length", "2", "--marks", "1,"},
                 "",
                 {"\"\" is not an index"}},
        LaneCase{"Cursor",
                 {"cut", "line.json", "--length", "2", "--marks", "1", "--cursor", "1"},
                 "",
                 {"--cursor 1: is beyond the last of 1 mark"}},
        LaneCase{"CursorBelow", {"cut", "line.json", "--length", "2", "--cursor=-2"}, "", {"--cursor -2"}},
        LaneCase{"At", {"plane", "line.json", "--at", "8"}, "", {"--at 8", "LON,LAT"}},
        LaneCase{"AtLatitude",
                 {"plane", "line.json", "--at", "8,91"},
                 "",
                 {"--at 8,91: latitude 91 is beyond 90"}},
        LaneCase{"RangeBeyond",
                 {"bounds", "line.json", "--range", "3,-1"},
                 "",
                 {"line.json: --range 3,-1 begins beyond the last point, 2"}},
        LaneCase{
            "RangeBackward", {"bounds", "line.json", "--range", "2,1"}, "", {"--range 2,1", "comes before"}},
        LaneCase{"ViewWithoutPicture",
                 {"bounds", "line.json", "--view", "1,2,3,4"},
                 "",
                 {"--view", "no --picture"}},
        LaneCase{"PictureIsTheInput",
                 {"bounds", "line.json", "--picture", "line.json"},
                 "",
                 {"is the input file line.json"}},
        LaneCase{
            "PictureToStandardOutput", {"bounds", "line.json", "--picture", "-"}, "", {"a file of its own"}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace vorel::test
