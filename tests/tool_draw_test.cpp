// The command that draws any files as one picture: what is drawn, numbered and labelled, and what is refused.

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "support/program_runner.h"

namespace vorel::test {
namespace {

const std::string kLine = R"({"type":"Feature","properties":{"name":"lane"},"geometry":{"type":"LineString",)"
                          R"("coordinates":[[7.0,43.0],[7.001,43.0],[7.001,43.001]]}})";
const std::string kPoints =
    R"({"type":"FeatureCollection","features":[
    {"type":"Feature","properties":{"metres":12.504,"ratio":0.25,"name":"a < b"},
     "geometry":{"type":"Point","coordinates":[7.0002,43.0004]}},
    {"type":"Feature","properties":{"inside":true,"metres":-0.0001,"side":"below"},
     "geometry":{"type":"MultiPoint","coordinates":[[7.0006,43.0004],[7.0008,43.0004]]}}]})";
// An angular U: the middle of its box lies outside of it.
const std::string kHook =
    R"({"type":"Feature","properties":{"name":"hook"},"geometry":{"type":"Polygon","coordinates":)"
    R"([[[7.0,43.0],[7.003,43.0],[7.003,43.003],[7.002,43.003],[7.002,43.001],[7.001,43.001],[7.001,43.003],)"
    R"([7.0,43.003],[7.0,43.0]]]}})";

struct Drawn {
  ProgramResult result;
  pugi::xml_document picture;
  std::map<std::string, int> classes;  // how many elements carry which
  std::vector<std::string> labels;
  std::vector<pugi::xml_node> labelNodes;
};

void Read(const pugi::xml_node& node, Drawn& drawn) {
  for (const pugi::xml_node& child : node.children()) {
    const std::string elementClass = child.attribute("class").value();
    ++drawn.classes[elementClass];
    if (elementClass == "label") {
      drawn.labels.emplace_back(child.text().get());
      drawn.labelNodes.push_back(child);
    }
    Read(child, drawn);
  }
}

class ToolDraw : public testing::Test {
 protected:
  std::string Line() { return directory_.Write("line.geojson", kLine); }
  std::string Points() { return directory_.Write("points.geojson", kPoints); }
  std::string Picture() { return directory_.File("picture.svg"); }

  void Draw(std::vector<std::string> arguments, Drawn& drawn) {
    arguments.insert(arguments.begin(), "draw");
    arguments.insert(arguments.end(), {"--picture", Picture()});
    drawn.result = RunProgram(VOREL_TOOL_PATH, arguments);
    EXPECT_EQ(drawn.result.exitStatus, 0) << drawn.result.err;
    EXPECT_EQ(drawn.result.out, "");
    ASSERT_TRUE(drawn.picture.load_string(FileText(Picture()).c_str()));
    Read(drawn.picture, drawn);
  }

  TemporaryDirectory directory_;
};

TEST_F(ToolDraw, DrawsEachFileInItsColour) {
  Drawn drawn;
  Draw({Line(), "places=" + Points(), directory_.Write("hook.geojson", kHook)}, drawn);
  EXPECT_EQ(drawn.classes["lineA"], 1);
  EXPECT_EQ(drawn.classes["dotB"], 3);
  EXPECT_EQ(drawn.classes["areaC"], 1);
  EXPECT_EQ(drawn.classes["arrow"], 0);
  EXPECT_TRUE(drawn.labels.empty());
  std::vector<std::string> legend;
  for (const pugi::xpath_node& entry : drawn.picture.select_nodes("//text[@class='legend']")) {
    legend.emplace_back(entry.node().text().get());
  }
  EXPECT_EQ(legend, (std::vector<std::string>{"places", "line", "hook"}));  // from the right
  EXPECT_STREQ(drawn.picture.select_node("//text[@class='title']").node().text().get(), "line, places, hook");
}

TEST_F(ToolDraw, NumbersTheVerticesOfTheFilesAskedForOnly) {
  Drawn drawn;
  Draw({Line(), "other=" + directory_.Write("other.geojson", kLine), "--number-vertices", "line"}, drawn);
  EXPECT_EQ(drawn.labels, (std::vector<std::string>{"0", "1", "2"}));
  EXPECT_EQ(drawn.classes["dotA"], 3);
  EXPECT_EQ(drawn.classes["dotB"], 0);
}

TEST_F(ToolDraw, LabelsFeaturesWithTheirProperties) {
  Drawn drawn;
  Draw({Line(), Points(), "--label", "points=name,metres,ratio,inside", "--label", "line=name"}, drawn);
  EXPECT_EQ(drawn.labels, (std::vector<std::string>{"lane", "a < b, metres 12.5, ratio 0.25",
                                                    "metres 0, inside true", "metres 0, inside true"}));
}

TEST_F(ToolDraw, PutsALabelOnTheSideAskedFor) {
  Drawn drawn;
  Draw({Points(), "--label", "points=inside"}, drawn);
  ASSERT_EQ(drawn.labelNodes.size(), 2u);
  const pugi::xpath_node_set dots = drawn.picture.select_nodes("//circle[@class='dotA']");
  ASSERT_EQ(dots.size(), 3u);
  EXPECT_GT(drawn.labelNodes[0].attribute("y").as_double(),
            dots[1].node().attribute("cy").as_double() + 10.0);
  EXPECT_STREQ(drawn.labelNodes[0].attribute("x").value(), dots[1].node().attribute("cx").value());
}

TEST_F(ToolDraw, KeepsLabelsOffTheLines) {
  Drawn drawn;
  Draw({Line(), "--number-vertices", "line"}, drawn);
  const auto at = [&](std::size_t i, const char* axis) {
    return drawn.labelNodes.at(i).attribute(axis).as_double();
  };
  const pugi::xpath_node_set dots = drawn.picture.select_nodes("//circle[@class='dotA']");
  // Vertex 1 is the lower right corner of the bend: its number stands outside of it.
  EXPECT_GT(at(1, "x"), dots[1].node().attribute("cx").as_double());
  EXPECT_GT(at(1, "y"), dots[1].node().attribute("cy").as_double());
}

TEST_F(ToolDraw, PutsAPolygonsLabelInsideOfIt) {
  Drawn drawn;
  Draw({directory_.Write("hook.geojson", kHook), "--label", "hook=name"}, drawn);
  ASSERT_EQ(drawn.labelNodes.size(), 1u);
  // Its box is 3 wide: in the outer thirds at half the height lies the polygon, in the middle one it does not.
  const pugi::xml_node map = drawn.picture.select_node("//g[@class='map']").node();
  const double middle = map.attribute("data-width").as_double() / 2.0;
  EXPECT_GT(std::abs(drawn.labelNodes[0].attribute("x").as_double() - middle), 30.0);
}

TEST_F(ToolDraw, ShowsDirectionsAndDashes) {
  Drawn drawn;
  Draw({Line(), "--arrows", "line", "--dashed", "line", "--title", "Two legs", "--subtitle", "east, north"},
       drawn);
  const pugi::xpath_node_set arrows = drawn.picture.select_nodes("//path[@class='arrow']");
  ASSERT_EQ(arrows.size(), 2u);
  EXPECT_NE(std::strstr(arrows[0].node().attribute("transform").value(), "rotate(90.00)"), nullptr);
  EXPECT_NE(std::strstr(arrows[1].node().attribute("transform").value(), "rotate(0.00)"), nullptr);
  EXPECT_NE(std::strstr(drawn.picture.select_node("//style").node().text().get(),
                        "stroke-linecap: butt; stroke-dasharray: 7 5"),
            nullptr);
  EXPECT_STREQ(drawn.picture.select_node("//text[@class='title']").node().text().get(), "Two legs");
  EXPECT_STREQ(drawn.picture.select_node("//text[@class='subtitle']").node().text().get(), "east, north");
}

TEST_F(ToolDraw, DrawsTheSamePictureTwice) {
  Drawn once, twice;
  Draw({Line(), Points(), "--number-vertices", "line"}, once);
  const std::string text = FileText(Picture());
  Draw({Line(), Points(), "--number-vertices", "line"}, twice);
  EXPECT_EQ(FileText(Picture()), text);
}

TEST_F(ToolDraw, RefusesWhatItCannotUseInOneLineAndWritesNothing) {
  const std::string line = Line();
  const std::string empty =
      directory_.Write("empty.geojson", R"({"type":"FeatureCollection","features":[]})");
  const std::string broken =
      directory_.Write("broken.geojson", R"({"type":"LineString","coordinates":[[1,2]]})");
  const struct {
    std::vector<std::string> arguments;
    const char* message;
  } cases[] = {
      {{"a=" + line, "a=" + line}, "another file is called a too"},
      {{line, "--number-vertices", "route"}, "--number-vertices route: no file is called so"},
      {{line, "--label", "line"}, "--label line: is not NAME=KEY"},
      {{line, "--label", "line="}, "--label line=: is not NAME=KEY"},
      {{line, "--label", "route=name"}, "--label route: no file is called so"},
      {{line, "--dashed", "x"}, "--dashed x: no file is called so"},
      {{line, "--arrows", "x"}, "--arrows x: no file is called so"},
      {{"-"}, "FILE -: names no file"},
      {{"a="}, "FILE a=: names no file"},
      {{directory_.File("missing.geojson")}, "missing.geojson"},
      {{empty}, "FILE: there is nothing to draw"},
      {{line, broken}, "broken.geojson"},
      {{line, "--view", "1,2,3"}, "--view 1,2,3"},
      {{"a=" + line, "b=" + line, "c=" + line, "d=" + line, "e=" + line, "f=" + line, "g=" + line},
       "FILE: 7 files are given, more than 6"},
  };
  for (const auto& each : cases) {
    std::vector<std::string> arguments = each.arguments;
    arguments.insert(arguments.begin(), "draw");
    arguments.insert(arguments.end(), {"--picture", Picture()});
    const ProgramResult result = RunProgram(VOREL_TOOL_PATH, arguments);
    EXPECT_EQ(result.exitStatus, 2) << each.message;
    EXPECT_NE(result.err.find(each.message), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    EXPECT_EQ(FileText(Picture()), "");
  }
  EXPECT_EQ(RunProgram(VOREL_TOOL_PATH, {"draw", line, "--picture", line}).exitStatus, 2);
  EXPECT_EQ(FileText(line), kLine);
  EXPECT_EQ(RunProgram(VOREL_TOOL_PATH, {"draw", line, "--picture", "-"}).exitStatus, 2);
}

TEST_F(ToolDraw, HelpExplainsEachOption) {
  const ProgramResult result = RunProgram(VOREL_TOOL_PATH, {"draw", "--help"});
  EXPECT_EQ(result.exitStatus, 0);
  for (const char* const text : {"[NAME=]FILE", "--number-vertices NAME", "--label NAME=KEY,KEY",
                                 "--arrows NAME", "--dashed NAME", "Exit status", "Examples"}) {
    EXPECT_NE(result.out.find(text), std::string::npos) << text;
  }
  std::size_t begin = 0;
  for (std::size_t end; (end = result.out.find('\n', begin)) != std::string::npos; begin = end + 1) {
    EXPECT_LE(end - begin, 120u) << result.out.substr(begin, end - begin);
  }
}

}  // namespace
}  // namespace vorel::test
