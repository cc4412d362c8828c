#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/program_runner.h"
#include "support/tool_refusal.h"

namespace vorel::test {
namespace {

constexpr const char* kGoodRoute = R"({"type":"LineString","coordinates":[[7.41,43.73],[7.42,43.74]]})";
constexpr const char* kGoodArea =
    R"({"type":"Polygon","coordinates":[[[7.4,43.7],[7.5,43.7],[7.5,43.8],[7.4,43.8],[7.4,43.7]]]})";

std::string Line(const std::string& coordinates) {
  return R"({"type":"LineString","coordinates":)" + coordinates + "}";
}

std::string Feature(const std::string& geometry) {
  return R"({"type":"Feature","properties":null,"geometry":)" + geometry + "}";
}

std::string Collection(const std::string& features) {
  return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

struct ContentCase {
  const char* name;
  std::string content;
  std::vector<std::string> fragments;
};

class BadContents : public testing::TestWithParam<ContentCase> {};

TEST_P(BadContents, OfAFileAreRefusedInOneLine) {
  const TemporaryDirectory directory;
  directory.Write("route.json", GetParam().content);
  std::vector<std::string> fragments = GetParam().fragments;
  fragments.push_back("vorel: route.json");
  const std::vector<std::string> outputs = {"--out", "symbols.json", "--picture", "map.svg"};
  std::vector<std::string> arguments = {"symbols", "route.json"};
  ExpectRefused(arguments, "", directory, fragments);
  arguments.insert(arguments.end(), outputs.begin(), outputs.end());
  ExpectRefused(arguments, "", directory, fragments);
  arguments.insert(arguments.end(), {"--view", "7,43,8,44"});
  ExpectRefused(arguments, "", directory, fragments);
}

TEST_P(BadContents, OfStandardInputAreRefusedInOneLine) {
  const TemporaryDirectory directory;
  std::vector<std::string> fragments = GetParam().fragments;
  fragments.push_back("vorel: standard input");
  ExpectRefused({"symbols"}, GetParam().content, directory, fragments);
  ExpectRefused({"symbols", "-", "--view=7,43,8,44", "--out", "x.json"}, GetParam().content, directory,
                fragments);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadContents,
    testing::Values(
        ContentCase{"Empty", "", {"is empty"}}, ContentCase{"Blank", " \n\t\n", {"is empty"}},
        ContentCase{"OnlyAByteOrderMark", "\xEF\xBB\xBF", {"is empty"}},
        ContentCase{"Text", "hello there\n", {"not JSON", "line 1, column 1", "\"hello\""}},
        ContentCase{
            "CutShort", R"({"type":"LineString","coordinates":[[1,2],[3)", {"not JSON", "ends too early"}},
        ContentCase{"SecondLine",
                    "{\"type\":\"LineString\",\n \"coordinates\":[[1,2],[3,,4]]}",
                    {"not JSON", "line 2, column 26", "\",\""}},
        ContentCase{"TrailingText", Line("[[1,2],[3,4]]") + "x", {"not JSON", "\"x\""}},
        ContentCase{"NotANumber", Line("[[1,2],[NaN,4]]"), {"not JSON", "\"NaN\""}},
        ContentCase{"Overflow", Line("[[1,2],[1e999,4]]"), {"column 44", "1e999", "not finite"}},
        ContentCase{"HugeInteger", Line("[[1,2],[123456789012345678901234567890,4]]"), {"more than 64 bits"}},
        ContentCase{"Deep", std::string(100000, '['), {"nested more than 1024 levels deep"}},
        ContentCase{
            "DeepAndClosed", std::string(5000, '[') + std::string(5000, ']'), {"nested more than 1024"}},
        ContentCase{"NotUtf8", "{\"type\":\"Point\",\n\"x\":\"\xFF\xFE\"}", {"line 2 is not UTF-8"}},
        ContentCase{"Utf16", std::string("\xFF\xFE{\0\"\0}\0", 8), {"UTF-16"}},
        ContentCase{"Nul", std::string("\0\0\0", 3), {"not JSON"}},
        ContentCase{"Number", "17", {"17 is not a GeoJSON object"}},
        ContentCase{"Array", "[1,2]", {"[1,2] is not a GeoJSON object"}},
        ContentCase{"NoType", "{}", {"has no \"type\"", "not GeoJSON"}},
        ContentCase{"TypeIsANumber", R"({"type":7})", {"type: 7 is not a string"}},
        ContentCase{"UnknownType",
                    R"({"type":"Topology","arcs":[]})",
                    {"\"Topology\"", "not a GeoJSON geometry type"}},
        ContentCase{"MisspeltType",
                    Feature(R"({"type":"Linestring","coordinates":[]})"),
                    {"geometry.type", "\"Linestring\""}},
        ContentCase{"NoFeatures", R"({"type":"FeatureCollection"})", {"has no \"features\""}},
        ContentCase{"FeaturesIsAnObject",
                    R"({"type":"FeatureCollection","features":{}})",
                    {"features: {} is not an array"}},
        ContentCase{"FeatureIsNull", Collection("null"), {"features[0]", "null is not a Feature object"}},
        ContentCase{"FeatureIsAGeometry",
                    Collection(kGoodRoute),
                    {"features[0].type", "\"LineString\"", "\"Feature\""}},
        ContentCase{
            "NoGeometry", Collection(R"({"type":"Feature"})"), {"features[0]", "has no \"geometry\""}},
        ContentCase{"GeometryIsText", Feature("\"line\""), {"geometry: \"line\" is not a geometry object"}},
        ContentCase{
            "NoCoordinates", Feature(R"({"type":"LineString"})"), {"geometry: has no \"coordinates\""}},
        ContentCase{"CoordinatesIsText", Line("\"1,2\""), {"coordinates: \"1,2\" is not an array"}},
        ContentCase{"NoLine", Collection(""), {"holds no line"}},
        ContentCase{"OnlyNull", Feature("null"), {"holds no line"}},
        ContentCase{"OnlyAnEmptyLine", Line("[]"), {"holds no line"}},
        ContentCase{"OnlyPoints",
                    Collection(Feature(R"({"type":"Point","coordinates":[1,2]})")),
                    {"holds no line, only 1 other object"}},
        ContentCase{"OnePosition",
                    Collection(Feature(kGoodRoute) + "," + Feature(Line("[[1,2]]"))),
                    {"features[1].geometry.coordinates", "two positions or more"}},
        ContentCase{"PositionIsANumber", Line("[1,2]"), {"coordinates[0]: 1 is not a position"}},
        ContentCase{"PolygonNesting", Line("[[[1,2],[3,4]]]"), {"coordinates[0]", "[1,2] in the position"}},
        ContentCase{"OneNumber", Line("[[1,2],[3]]"), {"coordinates[1]", "[3]", "two numbers"}},
        ContentCase{"TextForNumber", Line(R"([[1,2],[3,"4"]])"), {"coordinates[1]", "\"4\"", "not a number"}},
        ContentCase{"NullForNumber", Line("[[1,2],[null,4]]"), {"coordinates[1]", "null", "not a number"}},
        ContentCase{"HeightIsText",
                    Line(R"([[1,2,"high"],[3,4,5]])"),
                    {"coordinates[0]", "\"high\"", "not a number"}},
        ContentCase{"Latitude",
                    Collection(Feature(Line("[[1,2],[3,90.5]]"))),
                    {"features[0].geometry.coordinates[1]", "latitude 90.5 is beyond 90", "other order"}},
        ContentCase{
            "LatitudeSouth", Line("[[1,2],[3,-91]]"), {"coordinates[1]", "latitude -91 is beyond 90"}},
        ContentCase{
            "Longitude", Line("[[1,2],[-360.25,4]]"), {"coordinates[1]", "longitude -360.25 is beyond 360"}},
        ContentCase{"MultiLineMember",
                    R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]],7]})",
                    {"coordinates[1]: 7 is not a line"}},
        ContentCase{"MultiLinePosition",
                    R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]],[[5,6],[7,95]]]})",
                    {"coordinates[1][1]", "latitude 95"}},
        ContentCase{
            "CollectionMember",
            R"({"type":"GeometryCollection","geometries":[{"type":"LineString","coordinates":[[1,2],[3]]}]})",
            {"geometries[0].coordinates[1]", "two numbers"}},
        ContentCase{"LineOfLines",
                    std::string(kGoodRoute) + "\n\n" + kGoodRoute + "\n" + Line("[[1,2],[3,99]]") + "\n",
                    {", line 4: coordinates[1]: latitude 99"}},
        ContentCase{"BrokenLineOfLines",
                    std::string(kGoodRoute) + "\n{\"type\":\n" + kGoodRoute,
                    {"line 2, column 9"}},
        ContentCase{"NotUtf8LineOfLines",
                    std::string(kGoodRoute) + "\n" + kGoodRoute + "\n\"\xC0\x80\"\n",
                    {"line 3 is not UTF-8"}},
        ContentCase{"RecordOfSequence",
                    "\x1E" + std::string(kGoodRoute) + "\n\x1E" + Line("[[1,2],[3,99]]") + "\n",
                    {", record 2: coordinates[1]: latitude 99"}}),
    [](const auto& row) { return row.param.name; });

TEST(BadFiles, MissingFile) {
  const TemporaryDirectory directory;
  ExpectRefused({"symbols", "nowhere.json"}, "", directory, {"nowhere.json", "No such file"});
}

TEST(BadFiles, Directory) {
  const TemporaryDirectory directory;
  ExpectRefused({"symbols", "."}, "", directory, {".: is a directory"});
}

TEST(BadFiles, MissingArea) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  ExpectRefused({"symbols", "route.json", "--area", "nowhere.json"}, "", directory,
                {"nowhere.json", "No such file"});
  ExpectRefused({"symbols", "route.json", "--area", "."}, "", directory, {".: is a directory"});
}

TEST(BadFiles, NameThatWouldBreakTheLine) {
  const TemporaryDirectory directory;
  ExpectRefused({"symbols", "a\nb\x1b[31m\xFF"}, "", directory, {"a\\x0ab\\x1b[31m\\xff: cannot be opened"});
}

struct OptionCase {
  const char* name;
  const char* option;
  const char* value;
  std::vector<std::string> fragments;
};

class BadOptions : public testing::TestWithParam<OptionCase> {};

TEST_P(BadOptions, AreRefusedInOneLine) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  directory.Write("file", "");
  std::vector<std::string> fragments = GetParam().fragments;
  fragments.push_back(GetParam().option);
  fragments.push_back(GetParam().value);
  ExpectRefused({"symbols", "route.json", GetParam().option, GetParam().value}, "", directory, fragments);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadOptions,
    testing::Values(OptionCase{"HalfMetres", "--spacing", "12.5", {"whole number of metres"}},
                    OptionCase{"NoMetres", "--spacing", "0", {"from 1 to 2147483647"}},
                    OptionCase{"NegativeMetres", "--spacing", "-5", {"from 1 to 2147483647"}},
                    OptionCase{"TooManyMetres", "--spacing", "2147483648", {"from 1 to 2147483647"}},
                    OptionCase{"EmptyMetres", "--spacing", "", {"whole number"}},
                    OptionCase{"MetresWithUnit", "--spacing", "50m", {"whole number"}},
                    OptionCase{"MetresWithBlank", "--spacing", " 50", {"whole number"}},
                    OptionCase{"MetresWithExponent", "--spacing", "1e2", {"whole number"}},
                    OptionCase{"ThreeNumbers", "--view", "1,2,3", {"four numbers"}},
                    OptionCase{"FiveNumbers", "--view", "1,2,3,4,5", {"more than the four numbers"}},
                    OptionCase{"EmptyNumber", "--view", "1,,3,4", {"\"\" is not a number"}},
                    OptionCase{"EmptyView", "--view", "", {"four numbers"}},
                    OptionCase{"ViewText", "--view", "1,2,3,north", {"\"north\" is not a number"}},
                    OptionCase{"ViewNotANumber", "--view", "1,2,nan,4", {"\"nan\" is not a number"}},
                    OptionCase{"ViewInfinite", "--view", "1,2,inf,4", {"\"inf\" is not a number"}},
                    OptionCase{"ViewTwoSigns", "--view", "+-1,2,3,4", {"\"+-1\" is not a number"}},
                    OptionCase{"ViewUpsideDown", "--view", "1,4,3,2", {"south 4 is greater than north 2"}},
                    OptionCase{"ViewLatitude", "--view", "1,2,3,91", {"latitude 91 is beyond 90"}},
                    OptionCase{"ViewLongitude", "--view", "-361,2,3,4", {"longitude -361 is beyond 360"}},
                    OptionCase{"ViewTooWide", "--view", "-181,2,180,4", {"more than 360 degrees wide"}},
                    OptionCase{"OutIsADirectory", "--out", ".", {"is a directory"}},
                    OptionCase{"OutInNoDirectory", "--out", "no/where", {"cannot be written"}},
                    OptionCase{"OutUnderAFile", "--out", "file/x", {"cannot be written"}},
                    OptionCase{"OutEmpty", "--out", "", {"empty file name"}},
                    OptionCase{"OutFull", "--out", "/dev/full", {"No space left"}},
                    OptionCase{"OutIsTheRoute", "--out", "./route.json", {"is the input file route.json"}},
                    OptionCase{"PictureIsADirectory", "--picture", ".", {"is a directory"}},
                    OptionCase{"PictureInNoDirectory", "--picture", "no/map.svg", {"cannot be written"}},
                    OptionCase{
                        "PictureIsTheRoute", "--picture", "route.json", {"is the input file route.json"}},
                    OptionCase{"PictureToStandardOutput", "--picture", "-", {"a file of its own"}},
                    OptionCase{"PictureEmpty", "--picture", "", {"empty file name"}},
                    OptionCase{"PictureFull", "--picture", "/dev/full", {"No space left"}}),
    [](const auto& row) { return row.param.name; });

class BadAreas : public testing::TestWithParam<ContentCase> {};

TEST_P(BadAreas, AreRefusedInOneLine) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  directory.Write("area.json", GetParam().content);
  std::vector<std::string> fragments = GetParam().fragments;
  fragments.push_back("vorel: area.json: ");
  ExpectRefused({"symbols", "route.json", "--area", "area.json", "--out", "out.json"}, "", directory,
                fragments);
}

std::string Polygon(const std::string& rings) {
  return R"({"type":"Polygon","coordinates":)" + rings + "}";
}

INSTANTIATE_TEST_SUITE_P(
    All, BadAreas,
    testing::Values(
        ContentCase{"Empty", "", {"is empty"}}, ContentCase{"NotJson", "{", {"not JSON"}},
        ContentCase{"Line", kGoodRoute, {"a LineString", "one polygon"}},
        ContentCase{"NoPolygon", Collection(""), {"no polygon"}},
        ContentCase{"Hole",
                    Feature(Polygon("[[[0,0],[9,0],[9,9],[0,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]")),
                    {"geometry.coordinates", "1 hole", "one ring without holes"}},
        ContentCase{"TwoPolygons",
                    Collection(Feature(kGoodArea) + "," + Feature(kGoodArea)),
                    {"features[1].geometry", "a second polygon"}},
        ContentCase{
            "TwoParts",
            R"({"type":"MultiPolygon","coordinates":[[[[0,0],[9,0],[9,9],[0,0]]],[[[0,0],[9,0],[9,9],[0,0]]]]})",
            {"MultiPolygon of 2 polygons"}},
        ContentCase{"NotClosed", Polygon("[[[0,0],[9,0],[9,9],[0,9]]]"), {"coordinates[0]", "not closed"}},
        ContentCase{"TooShort", Polygon("[[[0,0],[9,0],[0,0]]]"), {"four positions or more", "has 3"}},
        ContentCase{"RingIsANumber", Polygon("[5]"), {"5 is not a ring"}},
        ContentCase{
            "Latitude", Polygon("[[[0,0],[9,0],[9,99],[0,0]]]"), {"coordinates[0][2]", "latitude 99"}},
        ContentCase{"AroundThePole", Polygon("[[[0,80],[120,80],[-120,80],[0,80]]]"), {"around a pole"}},
        ContentCase{"Flat", Polygon("[[[0,5],[9,5],[4,5],[0,5]]]"), {"encloses nothing"}},
        ContentCase{"WholeWorld",
                    Polygon("[[[-180,-90],[180,-90],[180,90],[-180,90],[-180,-90]]]"),
                    {"encloses nothing", "180 degrees"}}),
    [](const auto& row) { return row.param.name; });

TEST(BadFiles, AreaAndRouteBothFromStandardInput) {
  const TemporaryDirectory directory;
  ExpectRefused({"symbols", "--area", "-"}, kGoodRoute, directory, {"--area -", "standard input"});
}

TEST(BadFiles, OutputsOfOneName) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  ExpectRefused({"symbols", "route.json", "--out", "x", "--picture", "./x"}, "", directory,
                {"the same file as --out x"});
}

TEST(BadFiles, OutputsThatMeetThroughALink) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  std::filesystem::create_symlink("x", directory.path() / "link");  // leads nowhere yet
  ExpectRefused({"symbols", "route.json", "--out", "x", "--picture", "link"}, "", directory,
                {"the same file as"});
  directory.Write("x", "old");
  ExpectRefused({"symbols", "route.json", "--out", "x", "--picture", "link"}, "", directory,
                {"the same file as"});
}

TEST(BadFiles, OutputsThatMeetThroughAHardLink) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  directory.Write("x", "old");
  std::filesystem::create_hard_link(directory.path() / "x", directory.path() / "y");
  ExpectRefused({"symbols", "route.json", "--out", "x", "--picture", "y"}, "", directory,
                {"the same file as"});
}

TEST(BadFiles, OutputThatIsTheRouteOrTheAreaThroughALink) {
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  directory.Write("area.json", kGoodArea);
  std::filesystem::create_symlink("route.json", directory.path() / "link");
  std::filesystem::create_symlink("area.json", directory.path() / "area link");
  ExpectRefused({"symbols", "route.json", "--out", "link"}, "", directory,
                {"--out link", "is the input file"});
  ExpectRefused({"symbols", "link", "--out", "route.json"}, "", directory,
                {"--out route.json", "is the input file"});
  ExpectRefused({"symbols", "route.json", "--area", "area.json", "--picture", "area link"}, "", directory,
                {"--picture area link", "is the input file area.json"});
}

TEST(BadFiles, OutputInADirectoryThatMayNotBeWritten) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
  const TemporaryDirectory directory;
  directory.Write("route.json", kGoodRoute);
  ASSERT_EQ(chmod(directory.path().c_str(), 0555), 0);
  ExpectRefused({"symbols", "route.json", "--out", "x"}, "", directory, {"--out x", "Permission denied"});
  chmod(directory.path().c_str(), 0755);
}

TEST(BadFiles, TooManySymbolsOnOneLine) {
  const TemporaryDirectory directory;
  directory.Write("route.json", Line("[[0,0],[90,0]]"));
  ExpectRefused({"symbols", "route.json", "--spacing", "1"}, "", directory,
                {"--spacing 1", "10018756 symbols"});
}

TEST(BadFiles, AnEarlierOutputStaysAsItWas) {
  const TemporaryDirectory directory;
  directory.Write("route.json", std::string(kGoodRoute) + "\n" + Line("[[1,2],[3,99]]"));
  directory.Write("out.json", "earlier symbols");
  directory.Write("map.svg", "earlier map");
  ExpectRefused({"symbols", "route.json", "--view", "7,43,8,44", "--out", "out.json", "--picture", "map.svg"},
                "", directory, {"line 2", "latitude 99"});
}

TEST(BadFiles, ASignalLeavesNothingBehind) {
  for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signalNumber);
    const TemporaryDirectory directory;
    directory.Write("map.svg", "earlier map");
    const auto before = directory.Contents();
    // Half a document, longer than a pipe holds: both outputs are open when the tool has taken the first part.
    const std::string half = R"({"type":"LineString","coordinates":[[7,43])" + std::string(500000, ' ');
    EXPECT_EQ(
        SignalProgramWhileItReads(VOREL_TOOL_PATH, {"symbols", "--out", "out.json", "--picture", "map.svg"},
                                  half, signalNumber, directory.path()),
        -signalNumber);
    EXPECT_EQ(directory.Contents(), before);
  }
}

TEST(BadFiles, RecordBeyondTheLimit) {
  const TemporaryDirectory directory;
  directory.Write("routes.ndjson", std::string(kGoodRoute) + "\n" + kGoodRoute + "\n\"" +
                                       std::string((std::size_t{17} << 20), 'x') + "\"\n" + kGoodRoute +
                                       "\n");
  const ProgramResult result =
      RunProgram(VOREL_TOOL_PATH, {"symbols", "routes.ndjson"}, "", directory.path());
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "vorel: routes.ndjson, line 3: is longer than 16 MiB\n");
}

}  // namespace
}  // namespace vorel::test
