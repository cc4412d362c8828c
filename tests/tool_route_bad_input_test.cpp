#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/program_runner.h"
#include "support/tool_refusal.h"

namespace vorel::test {
namespace {

using Strings = std::vector<std::string>;

struct RefusalCase {
  const char* name;
  Strings arguments;  // route.json, area.json and points.json are good
  Strings fragments;
  std::string input = "";
};

class RouteCommandsRefuse : public testing::TestWithParam<RefusalCase> {};

TEST_P(RouteCommandsRefuse, InOneLine) {
  const TemporaryDirectory directory;
  directory.Write("route.json", R"({"type":"LineString","coordinates":[[7.41,43.73],[7.42,43.74]]})");
  directory.Write("bad.json",
                  R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":null},)"
                  R"({"type":"Feature","geometry":{"type":"LineString","coordinates":[[7,43],[7,430]]}}]})");
  directory.Write("area.json",
                  R"({"type":"Polygon","coordinates":[[[7.4,43.7],[7.5,43.7],[7.5,43.8],[7.4,43.7]]]})");
  directory.Write("points.json", R"({"type":"MultiPoint","coordinates":[[7.41,43.73],[7.42,43.74]]})");
  ExpectRefused(GetParam().arguments, GetParam().input, directory, GetParam().fragments);
  if (GetParam().arguments[0] == "measure") return;
  Strings withOutputs = GetParam().arguments;
  for (const std::string& argument : withOutputs) {
    if (argument == "--out" || argument == "--picture") return;
  }
  withOutputs.insert(withOutputs.end(), {"--out", "out.json", "--picture", "map.svg"});
  ExpectRefused(withOutputs, GetParam().input, directory, GetParam().fragments);
}

INSTANTIATE_TEST_SUITE_P(
    All, RouteCommandsRefuse,
    testing::Values(
        RefusalCase{
            "SampleOfNoKind", {"sample", "route.json"}, {"one of --every, --first, --after and --count"}},
        RefusalCase{"SampleOfTwoKinds",
                    {"sample", "route.json", "--count", "3", "--every", "5"},
                    {"--every and --count: only one"}},
        RefusalCase{"MaxWithoutEvery",
                    {"sample", "route.json", "--first", "5", "--max", "2"},
                    {"--max 2: goes with"}},
        RefusalCase{"EveryNothing",
                    {"sample", "route.json", "--every", "0"},
                    {"--every 0: is not a number of metres"}},
        RefusalCase{
            "EveryNegative", {"sample", "route.json", "--every=-3"}, {"--every -3", "greater than 0"}},
        RefusalCase{"EveryInfinite", {"sample", "route.json", "--every", "inf"}, {"--every inf"}},
        RefusalCase{"EveryNan", {"sample", "route.json", "--every", "nan"}, {"--every nan"}},
        RefusalCase{"EveryBeyondDouble", {"sample", "route.json", "--every", "1e999"}, {"--every 1e999"}},
        RefusalCase{"EveryWithUnit", {"sample", "route.json", "--every", "5m"}, {"--every 5m"}},
        RefusalCase{"EveryEmpty", {"sample", "route.json", "--every", ""}, {"--every : is not"}},
        RefusalCase{"EveryTiny",
                    {"sample", "route.json", "--every", "1e-9"},
                    {"--every 1e-9: gives some 1372", "line 0 of route.json", "4000000"}},
        RefusalCase{"MaxTooGreat",
                    {"sample", "route.json", "--every", "1e-9", "--max", "4000001"},
                    {"--every 1e-9: gives some"}},
        RefusalCase{
            "MaxNothing", {"sample", "route.json", "--every", "5", "--max", "0"}, {"--max 0", "from 1 to"}},
        RefusalCase{"FirstNothing", {"sample", "route.json", "--first", "0"}, {"--first 0"}},
        RefusalCase{"AfterNegative", {"sample", "route.json", "--after=-1"}, {"--after -1", "0 or more"}},
        RefusalCase{"CountOne", {"sample", "route.json", "--count", "1"}, {"--count 1", "from 2 to 4000000"}},
        RefusalCase{"CountFraction", {"sample", "route.json", "--count", "2.5"}, {"--count 2.5"}},
        RefusalCase{"SampleBadFile",
                    {"sample", "bad.json", "--every", "5"},
                    {"bad.json: features[1].geometry.coordinates[1]: latitude 430"}},
        RefusalCase{"CountBadFile", {"sample", "bad.json", "--count", "5"}, {"bad.json: features[1]"}},
        RefusalCase{"SampleNoLine",
                    {"sample", "points.json", "--every", "5"},
                    {"points.json: holds no line, only 1 other object"}},
        RefusalCase{"MeasureBadFile", {"measure", "bad.json"}, {"bad.json: features[1]"}},
        RefusalCase{"MeasureBadFileWithTable", {"measure", "bad.json", "--table"}, {"bad.json: features[1]"}},
        RefusalCase{
            "MeasureBadFileWithOut", {"measure", "bad.json", "--out", "o.csv"}, {"bad.json: features[1]"}},
        RefusalCase{"MeasureNothing", {"measure"}, {"standard input: is empty"}},
        RefusalCase{"MeasureMissingFile", {"measure", "none.json"}, {"none.json: cannot be opened"}},
        RefusalCase{"MeasureOutIsTheInput",
                    {"measure", "route.json", "--out", "route.json"},
                    {"--out", "is the input file route.json"}},
        RefusalCase{"MeasureBadRecord",
                    {"measure"},
                    {"standard input, line 2", "latitude 91"},
                    "{\"type\":\"LineString\",\"coordinates\":[[1,2],[3,4]]}\n"
                    "{\"type\":\"LineString\",\"coordinates\":[[1,2],[3,91]]}\n"},
        RefusalCase{"ClipWithoutView", {"clip", "route.json"}, {"--view is required"}},
        RefusalCase{"ClipBadView", {"clip", "route.json", "--view", "1,2,3"}, {"--view 1,2,3: four numbers"}},
        RefusalCase{"ClipBadFile", {"clip", "bad.json", "--view", "7,43,8,44"}, {"bad.json: features[1]"}},
        RefusalCase{"ThinWithoutSpacing", {"thin", "route.json"}, {"--spacing is required"}},
        RefusalCase{
            "ThinNegativeSpacing", {"thin", "route.json", "--spacing=-1"}, {"--spacing -1", "0 or more"}},
        RefusalCase{
            "ThinNegativeLimit", {"thin", "route.json", "--spacing", "5", "--limit=-1"}, {"--limit -1"}},
        RefusalCase{"ThinLimitTooGreat",
                    {"thin", "route.json", "--spacing", "5", "--limit", "1073741824"},
                    {"--limit 1073741824", "0 to 1073741823"}},
        RefusalCase{"ThinBadFile", {"thin", "bad.json", "--spacing", "5"}, {"bad.json: features[1]"}},
        RefusalCase{"ContainsNothing", {"contains"}, {"POLYGON is required"}},
        RefusalCase{"ContainsBothFromStandardInput", {"contains", "-", "-"}, {"POINTS -", "standard input"}},
        RefusalCase{"ContainsNoPolygon",
                    {"contains", "route.json", "points.json"},
                    {"route.json: holds no polygon, only 1 other object"}},
        RefusalCase{"ContainsNoPoint",
                    {"contains", "area.json", "area.json"},
                    {"area.json: holds no point, only 1 other object"}},
        RefusalCase{
            "ContainsOpenHole",
            {"contains", "-", "points.json"},
            {"standard input: coordinates[0][1]: the ring is not closed"},
            R"({"type":"MultiPolygon","coordinates":[[[[0,0],[4,0],[4,4],[0,0]],[[1,1],[2,1],[2,2],[1,2]]]]})"},
        RefusalCase{"ContainsRingThatIsNoArray",
                    {"contains", "-", "points.json"},
                    {"coordinates[0]: 5 is not a ring"},
                    R"({"type":"Polygon","coordinates":[5]})"},
        RefusalCase{"ContainsBadPoint",
                    {"contains", "area.json"},
                    {"standard input: coordinates: latitude 95 is beyond 90"},
                    R"({"type":"Point","coordinates":[1,95]})"},
        RefusalCase{"ContainsFlatPoint",
                    {"contains", "area.json"},
                    {"standard input: coordinates: the position [1] needs two numbers"},
                    R"({"type":"Point","coordinates":[1]})"},
        RefusalCase{"ContainsBadMultiPoint",
                    {"contains", "area.json"},
                    {"standard input: coordinates[1]: 7 is not a position"},
                    R"({"type":"MultiPoint","coordinates":[[1,2],7]})"},
        RefusalCase{"ContainsOutIsThePolygon",
                    {"contains", "area.json", "points.json", "--out", "area.json"},
                    {"is the input file area.json"}},
        RefusalCase{
            "OnLineWithoutTolerance", {"on-line", "route.json", "points.json"}, {"--tolerance is required"}},
        RefusalCase{"OnLineBadTolerance",
                    {"on-line", "route.json", "points.json", "--tolerance=-1"},
                    {"--tolerance -1", "0 or more"}},
        RefusalCase{"OnLineBothFromStandardInput", {"on-line", "-", "--tolerance", "1"}, {"POINTS -"}},
        RefusalCase{"OnLineNoLine",
                    {"on-line", "points.json", "points.json", "--tolerance", "1"},
                    {"points.json: holds no line"}},
        RefusalCase{"OnLinePictureIsThePoints",
                    {"on-line", "route.json", "points.json", "--tolerance", "1", "--picture", "points.json"},
                    {"is the input file points.json"}},
        RefusalCase{"AlongWithoutFrom", {"along", "route.json", "--length", "5"}, {"--from is required"}},
        RefusalCase{"AlongWithoutLength", {"along", "route.json", "--from", "0"}, {"--length is required"}},
        RefusalCase{"AlongBeyondTheLastVertex",
                    {"along", "route.json", "--from", "2", "--length", "5"},
                    {"--from 2: line 0 of route.json has the vertices 0 to 1"}},
        RefusalCase{"AlongFromTheLastVertex",
                    {"along", "route.json", "--from", "1", "--length", "5"},
                    {"nothing is ahead", "goes on for 0 m"}},
        RefusalCase{"AlongOffsetTooGreat",
                    {"along", "route.json", "--from", "0", "--offset", "9000", "--length", "5"},
                    {"--offset 9000: nothing is ahead", "goes on for 1372."}},
        RefusalCase{
            "AlongNegativeFrom", {"along", "route.json", "--from=-1", "--length", "5"}, {"--from -1"}},
        RefusalCase{"AlongNegativeOffset",
                    {"along", "route.json", "--from", "0", "--offset=-5", "--length", "5"},
                    {"--offset -5"}},
        RefusalCase{"AlongNoLength", {"along", "route.json", "--from", "0", "--length", "0"}, {"--length 0"}},
        RefusalCase{"AlongNoSuchLine",
                    {"along", "route.json", "--line", "3", "--from", "0", "--length", "5"},
                    {"--line 3: route.json holds 1 line, counted from 0"}},
        RefusalCase{
            "AlongBadFile", {"along", "bad.json", "--from", "0", "--length", "5"}, {"bad.json: features[1]"}},
        RefusalCase{"PictureToStandardOutput",
                    {"clip", "route.json", "--view", "7,43,8,44", "--picture", "-"},
                    {"--picture -: the picture needs a file of its own"}},
        RefusalCase{"OutputsOfOneName",
                    {"thin", "route.json", "--spacing", "5", "--out", "x", "--picture", "./x"},
                    {"x"}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace vorel::test
