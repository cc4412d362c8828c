#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/program_runner.h"
#include "support/symbol_reading.h"

namespace vorel::test {
namespace {

using tarvo::GeoCoordinate;
using Line = std::vector<GeoCoordinate>;

std::string NumberText(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string Coordinates(const Line& line) {
  std::string text = "[";
  for (const GeoCoordinate& point : line) {
    text +=
        (text.size() > 1 ? ",[" : "[") + NumberText(point.longitude) + "," + NumberText(point.latitude) + "]";
  }
  return text + "]";
}

std::string LineString(const Line& line) {
  return R"({"type":"LineString","coordinates":)" + Coordinates(line) + "}";
}

std::string Feature(const std::string& geometry) {
  return R"({"type":"Feature","properties":{"a":[1,{"b":"c"}]},"geometry":)" + geometry + "}";
}

std::string Collection(const std::vector<std::string>& features) {
  std::string text = R"({"type":"FeatureCollection","name":"x","features":[)";
  for (std::size_t i = 0; i < features.size(); ++i) text += (i == 0 ? "" : ",") + features[i];
  return text + R"(],"metadata":{"type":"none"}})";
}

ProgramResult RunSymbols(const std::string& input, std::vector<std::string> options = {}) {
  options.insert(options.begin(), "symbols");
  return RunProgram(VOREL_TOOL_PATH, options, input);
}

/// Runs without a complaint and reads what came out.
std::vector<SymbolRow> Symbols(const std::string& input, const std::vector<std::string>& options = {}) {
  const ProgramResult result = RunSymbols(input, options);
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  return result.exitStatus == 0 ? ReadSymbols(result.out) : std::vector<SymbolRow>();
}

const Line kNorthward = {{7.0, 43.0}, {7.0, 43.004}, {7.0, 43.01}};  // 1.1 km
const std::string kAround = "--view=6,42,8,44";

TEST(ToolSymbols, StandEverySpacingAlongALine) {
  const std::vector<SymbolRow> symbols = Symbols(LineString(kNorthward), {kAround, "--spacing", "100"});
  ASSERT_EQ(symbols.size(), 12u);  // 1110.9 m: 0, 100, ..., 1100
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    EXPECT_EQ(symbols[i].route, 0);
    EXPECT_EQ(symbols[i].piece, 0);
    EXPECT_EQ(symbols[i].metres, 100.0 * static_cast<double>(i));
    EXPECT_EQ(symbols[i].heading, 0.0);
    // The ratio along a segment has single precision: 2^-24 of 667 m.
    EXPECT_NEAR(symbols[i].position.DistanceTo(kNorthward[0]), symbols[i].metres, 1e-4);
  }
}

TEST(ToolSymbols, LookAlongTheSegmentAheadAndAtTheEndAlongTheLast) {
  // North, then east, then south; a symbol at the start of each segment's part, and one at the very end because the
  // piece is shorter than the spacing.
  const Line line = {{7.0, 43.0}, {7.0, 43.001}, {7.002, 43.001}, {7.002, 43.0}};
  const std::vector<SymbolRow> dense = Symbols(LineString(line), {kAround, "--spacing", "1"});
  ASSERT_GT(dense.size(), 300u);
  for (const SymbolRow& symbol : dense) {
    ASSERT_TRUE(symbol.heading.has_value());
    const bool onFirst = symbol.position.longitude == 7.0 && symbol.position.latitude < 43.001;
    const bool onLast = symbol.position.longitude == 7.002 && symbol.position.latitude < 43.001;
    const double expected = onFirst ? 0.0 : (onLast ? 180.0 : 90.0);
    // Along a parallel the bearing differs from east by half the convergence of the meridians, 0.0007 degrees.
    EXPECT_NEAR(*symbol.heading, expected, expected == 90.0 ? 0.001 : 0.0) << symbol.metres;
  }

  const std::vector<SymbolRow> ends = Symbols(LineString(line), {kAround, "--spacing", "1000"});
  ASSERT_EQ(ends.size(), 2u);
  EXPECT_EQ(ends[0].heading, 0.0);
  EXPECT_EQ(ends[0].metres, 0.0);
  EXPECT_EQ(ends[1].heading, 180.0);
  EXPECT_EQ(ends[1].position, line.back());
  const double length =
      line[1].DistanceTo(line[0]) + line[2].DistanceTo(line[1]) + line[3].DistanceTo(line[2]);
  EXPECT_EQ(ends[1].metres, length);
}

TEST(ToolSymbols, HeadWestAs270) {
  const std::vector<SymbolRow> symbols =
      Symbols(LineString({{7.0, 0.0}, {6.99, 0.0}}), {"--view=6,-1,8,1", "--spacing", "400"});
  ASSERT_EQ(symbols.size(), 3u);
  for (const SymbolRow& symbol : symbols) EXPECT_EQ(symbol.heading, 270.0);
}

TEST(ToolSymbols, RepeatedVerticesDoNotTurnTheHeading) {
  const Line line = {{7.0, 43.0}, {7.0, 43.0}, {7.0, 43.001}, {7.0, 43.001}};
  const std::vector<SymbolRow> symbols = Symbols(LineString(line), {kAround, "--spacing", "500"});
  ASSERT_EQ(symbols.size(), 2u);
  EXPECT_EQ(symbols[0].heading, 0.0);
  EXPECT_EQ(symbols[1].heading, 0.0);
}

TEST(ToolSymbols, PieceWithoutExtentHasNoHeading) {
  const std::vector<SymbolRow> symbols = Symbols(LineString({{7.0, 43.0}, {7.0, 43.0}}), {kAround});
  ASSERT_EQ(symbols.size(), 2u);
  for (const SymbolRow& symbol : symbols) {
    EXPECT_FALSE(symbol.heading.has_value());
    EXPECT_EQ(symbol.metres, 0.0);
  }
}

TEST(ToolSymbols, AreTheLibrarysToTheLastBit) {
  const std::string path = std::string(VOREL_SAMPLES_DIR) + "/city_drive.geojson";
  const nlohmann::json root = nlohmann::json::parse(FileText(path));
  Line line;
  for (const auto& position : root.at("features")[0].at("geometry").at("coordinates")) {
    line.emplace_back(position[0].get<double>(), position[1].get<double>());
  }
  const tarvo::Rect<GeoCoordinate> view{{-31.409, 47.219}, {-31.393, 47.229}};
  for (const int spacing : {1, 37, 100, 5000}) {
    SCOPED_TRACE(spacing);
    std::vector<Line> runs;
    VorelGeometryAlgorithm::GetInterpolateShapePoints(line, true, view, {}, spacing, "test", runs);
    const ProgramResult result = RunProgram(
        VOREL_TOOL_PATH,
        {"symbols", path, "--view=-31.409,47.219,-31.393,47.229", "--spacing", std::to_string(spacing)});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const std::vector<SymbolRow> symbols = ReadSymbols(result.out);
    ASSERT_GE(runs.size(), 3u);
    std::size_t index = 0;
    for (std::size_t piece = 0; piece < runs.size(); ++piece) {
      for (const GeoCoordinate& point : runs[piece]) {
        ASSERT_LT(index, symbols.size());
        EXPECT_EQ(symbols[index].position, point);
        EXPECT_EQ(symbols[index].piece, static_cast<int>(piece));
        ++index;
      }
    }
    EXPECT_EQ(index, symbols.size());
  }
}

TEST(ToolSymbols, DefaultSpacingIs100MetresAndDefaultViewTheHalvedBox) {
  // Box 6..10 by 40..44, so the view is 7..9 by 41..43.
  const std::string input = Collection({Feature(LineString({{6.0, 40.0}, {6.0, 40.001}})),
                                        Feature(LineString({{10.0, 44.0}, {10.0, 44.001}})),
                                        Feature(LineString({{8.0, 42.0}, {8.0, 42.01}}))});
  const std::vector<SymbolRow> byDefault = Symbols(input);
  EXPECT_EQ(RunSymbols(input).out, RunSymbols(input, {"--view=7,41.00025,9,43.00075", "--spacing=100"}).out);
  ASSERT_EQ(byDefault.size(), 12u);
  EXPECT_EQ(byDefault[0].route, 2);
}

TEST(ToolSymbols, DefaultViewOfOneStraightLineHoldsItsMiddle) {
  // The box has no width; its border counts as inside.
  const std::vector<SymbolRow> symbols = Symbols(LineString({{7.0, 43.0}, {7.0, 43.005}, {7.0, 43.01}}));
  EXPECT_EQ(symbols.size(), 12u);
}

TEST(ToolSymbols, AcrossTheAntimeridianAreTheSameAsElsewhere) {
  const Line here = {{-0.02, 65.0}, {-0.005, 65.004}, {0.004, 65.003}, {0.03, 65.01}};
  Line there = here;
  for (GeoCoordinate& point : there) point.longitude += point.longitude < 0.0 ? 180.0 : -180.0;
  for (const auto& [viewHere, viewThere] : std::vector<std::pair<std::string, std::string>>{
           {"--view=-0.01,64,0.01,66", "--view=179.99,64,-179.99,66"},
           {"--view=0.001,64,0.01,66", "--view=-179.999,64,-179.99,66"},
           {"--view=-0.01,64,-0.001,66", "--view=179.99,64,179.999,66"}}) {
    SCOPED_TRACE(viewThere);
    const auto expected = Symbols(LineString(here), {viewHere, "--spacing", "50"});
    const auto actual = Symbols(LineString(there), {viewThere, "--spacing", "50"});
    EXPECT_GE(expected.size(), 20u);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const double longitude = expected[i].position.longitude;
      // Near 180 a double steps by 2.8e-14 degrees; some steps add up in the segment lengths.
      EXPECT_NEAR(actual[i].position.longitude, longitude < 0.0 ? longitude + 180.0 : longitude - 180.0,
                  1e-10);
      EXPECT_NEAR(actual[i].position.latitude, expected[i].position.latitude, 1e-10);
      EXPECT_LE(std::fabs(actual[i].position.longitude), 180.0);
      EXPECT_EQ(actual[i].piece, expected[i].piece);
      EXPECT_NEAR(*actual[i].heading, *expected[i].heading, 1e-8);
    }
  }
}

TEST(ToolSymbols, DefaultViewOfALineAcrossTheAntimeridianIsSmall) {
  const std::vector<SymbolRow> symbols =
      Symbols(Collection({Feature(LineString({{179.9, 65.0}, {-179.98, 65.0}, {-179.9, 65.0}})),
                          Feature(LineString({{-179.95, 65.1}, {179.95, 65.1}})),
                          Feature(LineString({{10.0, 65.0}, {10.1, 65.0}}))}),
              {"--view=179,64,-179,66", "--spacing=1000"});
  ASSERT_FALSE(symbols.empty());
  EXPECT_EQ(symbols.back().route, 1);
  const ProgramResult result = RunSymbols(LineString({{179.9, 65.0}, {-179.98, 65.1}, {-179.9, 65.0}}));
  EXPECT_EQ(result.err, "");
  EXPECT_FALSE(ReadSymbols(result.out).empty());
}

TEST(ToolSymbols, LongitudesBeyond180AreTheSamePlace) {
  const auto expected = Symbols(LineString({{-170.0, 10.0}, {-169.9, 10.0}}), {"--view=-171,9,-169,11"});
  ASSERT_FALSE(expected.empty());
  for (const char* const view : {"--view=-171,9,-169,11", "--view=189,9,191,11"}) {
    const auto actual = Symbols(LineString({{190.0, 10.0}, {190.1, 10.0}}), {view});
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_NEAR(actual[i].position.longitude, expected[i].position.longitude, 1e-9);
    }
  }
}

TEST(ToolSymbols, ALineAroundTheEarthPassesTheViewOnEachTurn) {
  Line line;
  for (int step = 0; step <= 16; ++step) {
    double longitude = 45.0 * step;
    while (longitude > 180.0) longitude -= 360.0;
    line.emplace_back(longitude, step * 0.5);
  }
  const auto symbols = Symbols(LineString(line), {"--view=80,-10,100,10", "--spacing=1000000"});
  ASSERT_FALSE(symbols.empty());
  EXPECT_EQ(symbols.back().piece, 1);
  EXPECT_LT(symbols.front().position.latitude, 4.0);
  EXPECT_GE(symbols.back().position.latitude, 4.0);
}

TEST(ToolSymbols, AreaKeepsWhatLiesInsideWithItsMetres) {
  const TemporaryDirectory directory;
  const std::string area = directory.Write(
      "area.json",
      Feature(
          R"({"type":"Polygon","coordinates":[[[6.9,43.002],[7.1,43.002],[7.1,43.006],[6.9,43.006],[6.9,43.002]]]})"));
  const auto all = Symbols(LineString(kNorthward), {kAround, "--spacing", "50"});
  const auto kept = Symbols(LineString(kNorthward), {kAround, "--spacing", "50", "--area", area});
  std::vector<SymbolRow> expected;
  for (const SymbolRow& symbol : all) {
    if (symbol.position.latitude > 43.002 && symbol.position.latitude < 43.006) expected.push_back(symbol);
  }
  ASSERT_EQ(kept.size(), expected.size());
  EXPECT_GT(expected.size(), 5u);
  for (std::size_t i = 0; i < kept.size(); ++i) {
    EXPECT_EQ(kept[i].position, expected[i].position);
    EXPECT_EQ(kept[i].metres, expected[i].metres);
    EXPECT_EQ(kept[i].heading, expected[i].heading);
  }
}

TEST(ToolSymbols, AreaOnALoopKeepsTheMetresOfEachPass) {
  // Out and back over the same road: each place comes twice, at different metres.
  const Line line = {{7.0, 43.0}, {7.0, 43.01}, {7.0, 43.0}};
  const TemporaryDirectory directory;
  const std::string area = directory.Write(
      "area.json",
      R"({"type":"MultiPolygon","coordinates":[[[[6.9,43.004],[7.1,43.004],[7.1,43.02],[6.9,43.004]]]]})");
  const auto all = Symbols(LineString(line), {kAround, "--spacing", "10"});
  const auto kept = Symbols(LineString(line), {kAround, "--spacing", "10", "--area", area});
  EXPECT_LT(kept.size(), all.size());
  std::size_t at = 0;
  for (const SymbolRow& symbol : kept) {
    while (at < all.size() && all[at].metres != symbol.metres) ++at;
    ASSERT_LT(at, all.size());
    EXPECT_EQ(all[at].position, symbol.position);
    EXPECT_EQ(all[at].heading, symbol.heading);
  }
  EXPECT_EQ(kept.back().heading, 180.0);
}

TEST(ToolSymbols, AreaKeepsBothOfTwoSymbolsInOnePlace) {
  const TemporaryDirectory directory;
  const std::string area = directory.Write(
      "area.json", R"({"type":"Polygon","coordinates":[[[6,42],[8,42],[8,44],[6,44],[6,42]]]})");
  const auto kept = Symbols(LineString({{7.0, 43.0}, {7.0, 43.0}}), {kAround, "--area", area});
  EXPECT_EQ(kept.size(), 2u);
}

TEST(ToolSymbols, AreaAndViewMeetAcrossTheAntimeridian) {
  const TemporaryDirectory directory;
  const std::string line = LineString({{179.0, 10.0}, {-179.0, 10.0}});
  const auto all = Symbols(line, {"--view=178,9,-178,11", "--spacing", "10000"});
  const std::string eastOfIt = directory.Write(
      "east.json", R"({"type":"Polygon","coordinates":[[[-180,9],[-170,9],[-170,11],[-180,11],[-180,9]]]})");
  const std::string across = directory.Write(
      "across.json", R"({"type":"Polygon","coordinates":[[[170,9],[-170,9],[-170,11],[170,11],[170,9]]]})");
  const auto east = Symbols(line, {"--view=178,9,-178,11", "--spacing", "10000", "--area", eastOfIt});
  EXPECT_EQ(Symbols(line, {"--view=178,9,-178,11", "--spacing", "10000", "--area", across}).size(),
            all.size());
  EXPECT_EQ(east.size(), all.size() / 2);
  for (const SymbolRow& symbol : east) EXPECT_LT(symbol.position.longitude, -178.0);
}

TEST(ToolSymbols, EachLineOfTheInputIsARoute) {
  const std::string lineA = Coordinates(kNorthward);
  const std::string lineB = Coordinates({{7.5, 43.0}, {7.5, 43.01}});
  const std::string input = Collection(
      {Feature(R"({"type":"MultiLineString","coordinates":[)" + lineA + ",[]," + lineB + "]}"),
       Feature("null"),
       Feature(R"({"type":"GeometryCollection","geometries":[{"type":"GeometryCollection","geometries":[)" +
               LineString(kNorthward) + "]}]}"),
       Feature(R"({"type":"LineString","coordinates":[[7.0,43.0,5.5],[7.0,43.01,6,7,8]]})")});
  const auto symbols = Symbols(input, {kAround, "--spacing", "1000"});
  ASSERT_EQ(symbols.size(), 8u);
  for (std::size_t i = 0; i < symbols.size(); ++i) EXPECT_EQ(symbols[i].route, static_cast<int>(i / 2));
  EXPECT_EQ(symbols[2].position, GeoCoordinate(7.5, 43.0));
}

TEST(ToolSymbols, OtherGeometriesAreLeftOutWithANote) {
  const ProgramResult result = RunSymbols(
      Collection({Feature(R"({"type":"Point","coordinates":[1,2]})"), Feature(LineString(kNorthward))}));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "vorel: note: standard input: left out 1 object that are no lines\n");
}

TEST(ToolSymbols, ViewBesideTheRouteGivesAnEmptyCollection) {
  const ProgramResult result = RunSymbols(LineString(kNorthward), {"--view=20,42,21,44"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_TRUE(ReadSymbols(result.out).empty());
  EXPECT_EQ(result.err, "vorel: note: standard input: no symbol lies in the view 20,42,21,44\n");
}

TEST(ToolSymbols, InputMayComeInAnyLayout) {
  const std::string a = LineString(kNorthward);
  const std::string b = Feature(LineString({{6.999, 43.004}, {7.001, 43.006}}));
  const std::string expected = RunSymbols(Collection({Feature(a), b})).out;
  ASSERT_GT(ReadSymbols(expected).size(), 4u);
  const std::vector<std::pair<const char*, std::string>> layouts = {
      {"newline-delimited", a + "\n" + b + "\n"},
      {"without a last line end", a + "\n" + b},
      {"blank lines", "\n\n" + a + "\n \n\t\n" + b + "\n\n"},
      {"line ends of two characters", a + "\r\n" + b + "\r\n"},
      {"byte-order mark", "\xEF\xBB\xBF" + a + "\n" + b},
      {"byte-order mark before a document", "\xEF\xBB\xBF" + Collection({Feature(a), b})},
      {"collections, one per line", Collection({Feature(a)}) + "\n" + Collection({b})},
      {"record separators", "\x1E" + a + "\n\x1E" + b + "\n"},
      {"record separators and broken lines", "\x1E{\n" + a.substr(1) + "\n\x1E\n" + b + "\n"},
      {"indented document", "\n" + nlohmann::json::parse(Collection({Feature(a), b})).dump(2) + "\n"},
      {"document on one line", Collection({Feature(a), b})},
  };
  const TemporaryDirectory directory;
  for (const auto& [name, text] : layouts) {
    SCOPED_TRACE(name);
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, std::vector<std::string>{"--view=6.5,42.99,7.6,43.02"}}) {
      const ProgramResult piped = RunSymbols(text, options);
      EXPECT_EQ(piped.err, "");
      std::vector<std::string> arguments = {"symbols", directory.Write("input", text)};
      arguments.insert(arguments.end(), options.begin(), options.end());
      const ProgramResult fromFile = RunProgram(VOREL_TOOL_PATH, arguments);
      EXPECT_EQ(fromFile.err, "");
      EXPECT_EQ(fromFile.out, piped.out);
      if (options.empty()) {
        EXPECT_EQ(piped.out, expected);
      }
      EXPECT_FALSE(ReadSymbols(piped.out).empty());
    }
  }
}

TEST(ToolSymbols, RecordsMayLieAcrossTheBordersOfTheReadBuffer) {
  // Records of many lengths, some longer than the buffer that is read at once.
  std::string input;
  std::size_t records = 0;
  for (const std::size_t padding : {10u, 1000000u, 3u, 1048000u, 1048576u, 2500000u, 7u, 500u}) {
    input += R"({"type":"Feature","properties":")" + std::string(padding, 'x') + R"(","geometry":)" +
             LineString({{7.0, 43.0}, {7.0, 43.001}}) + "}\n";
    ++records;
  }
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--spacing=1000"}, std::vector<std::string>{"--spacing=1000", kAround}}) {
    const auto symbols = Symbols(input, options);
    ASSERT_EQ(symbols.size(), 2 * records);
    EXPECT_EQ(symbols.back().route, static_cast<int>(records) - 1);
  }
}

TEST(ToolSymbols, LinesOfInputStreamInBoundedMemory) {
#ifdef VOREL_TEST_SANITIZES_ADDRESSES
  GTEST_SKIP() << "the address sanitizer keeps freed memory";
#endif
  // Written and piped without holding it here: what this process holds would be counted for the one it starts.
  const TemporaryDirectory directory;
  const std::string file = directory.File("routes.ndjson");
  {
    std::ofstream stream(file, std::ios::binary);
    Line straight;
    for (int i = 0; i < 200; ++i) straight.emplace_back(7.0, 43.0 + 1e-5 * i);
    const std::string record = Feature(LineString(straight)) + "\n";
    for (std::size_t bytes = 0; bytes < (std::size_t{32} << 20); bytes += record.size()) stream << record;
  }
  const std::string tool = std::string(VOREL_TOOL_PATH) + " symbols --spacing 1000 ";
  const std::string outputs =
      " --out " + directory.File("out.json") + " --picture " + directory.File("map.svg");
  for (const std::string& command :
       {tool + file + " " + kAround + outputs, tool + file + outputs,
        tool + kAround + " < " + file + " > " + file + ".out", "cat " + file + " | " + tool + outputs}) {
    SCOPED_TRACE(command);
    const ProgramResult result = RunProgram("/bin/sh", {"-c", command});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_LT(result.peakKilobytes, 24 * 1024);
  }
}

TEST(ToolSymbols, OutputFileIsReplacedWholeAndKeepsItsPermissions) {
  const TemporaryDirectory directory;
  const std::string expected = RunSymbols(LineString(kNorthward)).out;
  const std::string out = directory.Write("out.json", std::string(100000, 'x'));
  ASSERT_EQ(chmod(out.c_str(), 0640), 0);
  std::filesystem::create_symlink("out.json", directory.path() / "link");
  const ProgramResult result = RunSymbols(LineString(kNorthward), {"--out", directory.File("link")});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(FileText(out), expected);
  EXPECT_TRUE(std::filesystem::is_symlink(directory.path() / "link"));
  struct stat status {};
  ASSERT_EQ(stat(out.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(directory.Contents().size(), 2u) << "no temporary file stays";
}

TEST(ToolSymbols, DevicesAreWrittenNotReplaced) {
  const ProgramResult result =
      RunSymbols(LineString(kNorthward), {"--out", "/dev/null", "--picture", "/dev/null"});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  struct stat status {};
  ASSERT_EQ(stat("/dev/null", &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST(ToolSymbols, VerboseShowsTheLogRecordAndTheTime) {
  const ProgramResult quiet = RunSymbols(LineString(kNorthward));
  const ProgramResult result = RunSymbols(LineString(kNorthward), {"--verbose"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, quiet.out);
  EXPECT_NE(result.err.find("[Vorel][vorel symbols]"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("main route:1,pt count:12"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("GetInterpolateShapePoints: elapsed "), std::string::npos) << result.err;
  EXPECT_NE(result.err.find(" ms\n"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace vorel::test
