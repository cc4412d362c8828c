#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/program_runner.h"
#include "support/symbol_reading.h"

namespace vorel::test {
namespace {

constexpr double kPixelRounding = 0.0051;  // coordinates are written with two decimals

struct Arrow {
  double x = 0.0;
  double y = 0.0;
  double turn = 0.0;
  bool dot = false;
  std::string elementClass;
  std::string heading;
  double metres = 0.0;
  int route = -1;
  int piece = -1;
};

struct PathElement {
  int route = -1;
  int piece = -1;
  int vertices = -1;
  std::vector<std::pair<double, double>> points;
};

/// What can be read back from a map.
struct Picture {
  std::string title;
  std::string allText;
  double view[4] = {};    // west, south, east, north
  double extent[4] = {};  // of the map, longitudes continuous
  double width = 0.0;
  double height = 0.0;
  double viewBorder[4] = {};  // x, y, width, height in pixels
  double scaleMetres = 0.0;
  double scalePixels = 0.0;
  std::vector<Arrow> arrows;
  std::vector<PathElement> routes;
  std::vector<PathElement> pieces;
  std::vector<PathElement> areas;
};

void ReadFour(const char* text, double (&numbers)[4]) {
  std::sscanf(text, "%lf,%lf,%lf,%lf", &numbers[0], &numbers[1], &numbers[2], &numbers[3]);
}

PathElement ReadPath(const pugi::xml_node& node) {
  PathElement path;
  path.route = node.attribute("data-route").as_int(-1);
  path.piece = node.attribute("data-piece").as_int(-1);
  path.vertices = node.attribute("data-vertices").as_int(-1);
  std::string d = node.attribute("d").value();
  std::replace_if(
      d.begin(), d.end(), [](char c) { return c == 'M' || c == 'L' || c == 'Z'; }, ' ');
  std::istringstream numbers(d);
  for (double x, y; numbers >> x >> y;) path.points.emplace_back(x, y);
  return path;
}

Picture ReadPicture(const std::string& file) {
  Picture picture;
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_file(file.c_str(), pugi::parse_full);
  EXPECT_TRUE(parsed) << parsed.description();
  const pugi::xml_node svg = document.child("svg");
  picture.title = svg.child("title").text().get();
  ReadFour(svg.attribute("data-view").value(), picture.view);
  ReadFour(svg.attribute("data-extent").value(), picture.extent);
  for (const auto& match : document.select_nodes("//text")) {
    picture.allText += std::string(match.node().text().get()) + "\n";
  }
  const pugi::xml_node map = svg.find_child_by_attribute("class", "map");
  picture.width = map.attribute("data-width").as_double();
  picture.height = map.attribute("data-height").as_double();
  const pugi::xml_node layers = map.find_child_by_attribute("class", "layers");
  const pugi::xml_node border = layers.find_child_by_attribute("class", "view-border");
  const char* const names[4] = {"x", "y", "width", "height"};
  for (int i = 0; i < 4; ++i) picture.viewBorder[i] = border.attribute(names[i]).as_double();
  for (const auto& match : document.select_nodes("//path[@class='area']"))
    picture.areas.push_back(ReadPath(match.node()));
  for (const auto& match : document.select_nodes("//path[@class='route']"))
    picture.routes.push_back(ReadPath(match.node()));
  for (const auto& match : document.select_nodes("//path[@class='piece']"))
    picture.pieces.push_back(ReadPath(match.node()));
  for (const pugi::xml_node node : layers.find_child_by_attribute("class", "arrows").children()) {
    if (node.type() != pugi::node_element) continue;
    Arrow arrow;
    arrow.dot = std::string(node.name()) == "circle";
    arrow.elementClass = node.attribute("class").value();
    arrow.heading = node.attribute("data-heading").value();
    arrow.metres = node.attribute("data-metres").as_double(-1.0);
    arrow.route = node.attribute("data-route").as_int(-1);
    arrow.piece = node.attribute("data-piece").as_int(-1);
    const char* const transform = node.attribute("transform").value();
    const int read =
        std::sscanf(transform, "translate(%lf %lf) rotate(%lf)", &arrow.x, &arrow.y, &arrow.turn);
    EXPECT_EQ(read, arrow.dot ? 2 : 3) << transform;
    EXPECT_EQ(arrow.elementClass.rfind("arrow", 0), 0u);
    picture.arrows.push_back(arrow);
  }
  const pugi::xml_node bar = document.select_node("//g[@class='scale-bar']").node();
  picture.scaleMetres = bar.attribute("data-metres").as_double();
  for (const pugi::xml_node rectangle : bar.children("rect")) {
    picture.scalePixels += rectangle.attribute("width").as_double();
  }
  return picture;
}

/// Where a position belongs on the map, by its extent.
std::pair<double, double> Expected(const Picture& picture, const tarvo::GeoCoordinate& position) {
  double longitude = position.longitude;
  if (longitude < picture.extent[0] - 180.0) longitude += 360.0;
  return {(longitude - picture.extent[0]) / (picture.extent[2] - picture.extent[0]) * picture.width,
          (picture.extent[3] - position.latitude) / (picture.extent[3] - picture.extent[1]) * picture.height};
}

class ToolPicture : public testing::Test {
 protected:
  /// Runs `symbols` on a file and reads both of its outputs.
  void Run(const std::string& file, const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"symbols", file, "--picture", directory_.File("map.svg")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProgramResult result = RunProgram(VOREL_TOOL_PATH, arguments);
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    symbols_ = ReadSymbols(result.out);
    picture_ = ReadPicture(directory_.File("map.svg"));
  }

  void RunText(const std::string& text, const std::vector<std::string>& options) {
    Run(directory_.Write("route.json", text), options);
  }

  /// Each symbol is one arrow in its place, turned to its heading.
  void ExpectAnArrowPerSymbol() {
    ASSERT_EQ(picture_.arrows.size(), symbols_.size());
    for (std::size_t i = 0; i < symbols_.size(); ++i) {
      const Arrow& arrow = picture_.arrows[i];
      const SymbolRow& symbol = symbols_[i];
      EXPECT_EQ(arrow.route, symbol.route);
      EXPECT_EQ(arrow.piece, symbol.piece);
      EXPECT_EQ(arrow.metres, symbol.metres);
      const auto [x, y] = Expected(picture_, symbol.position);
      EXPECT_NEAR(arrow.x, x, kPixelRounding);
      EXPECT_NEAR(arrow.y, y, kPixelRounding);
      ASSERT_EQ(arrow.dot, !symbol.heading.has_value());
      if (arrow.dot) {
        EXPECT_EQ(arrow.heading, "none");
      } else {
        EXPECT_EQ(std::strtod(arrow.heading.c_str(), nullptr), *symbol.heading);
        EXPECT_NEAR(arrow.turn, *symbol.heading, kPixelRounding);
      }
    }
  }

  /// The view lies in the map with a margin, and the map has one scale in both directions.
  void ExpectTheViewInItsFrame() {
    const auto [left, top] = Expected(picture_, {picture_.view[0], picture_.view[3]});
    const auto [right, bottom] = Expected(picture_, {picture_.view[2], picture_.view[1]});
    EXPECT_NEAR(picture_.viewBorder[0], left, kPixelRounding);
    EXPECT_NEAR(picture_.viewBorder[1], top, kPixelRounding);
    EXPECT_NEAR(picture_.viewBorder[2], right - left, 2.0 * kPixelRounding);
    EXPECT_NEAR(picture_.viewBorder[3], bottom - top, 2.0 * kPixelRounding);
    EXPECT_GT(left, 40.0);
    EXPECT_GT(top, 40.0);
    EXPECT_LT(right, picture_.width - 40.0);
    EXPECT_LT(bottom, picture_.height - 40.0);
    const double middle = (picture_.view[1] + picture_.view[3]) / 2.0;
    const double xPerDegree = picture_.width / (picture_.extent[2] - picture_.extent[0]);
    const double yPerDegree = picture_.height / (picture_.extent[3] - picture_.extent[1]);
    EXPECT_NEAR(xPerDegree / yPerDegree, std::cos(middle * 3.141592653589793 / 180.0), 1e-9);
  }

  TemporaryDirectory directory_;
  std::vector<SymbolRow> symbols_;
  Picture picture_;
};

const std::string kDrive = std::string(VOREL_SAMPLES_DIR) + "/city_drive.geojson";
const std::string kDistrict = std::string(VOREL_SAMPLES_DIR) + "/district.geojson";

TEST_F(ToolPicture, OfTheSampleHoldsEachSymbolAndPiece) {
  Run(kDrive, {"--spacing", "40"});
  EXPECT_EQ(symbols_.size(), 54u);
  ExpectAnArrowPerSymbol();
  ExpectTheViewInItsFrame();
  EXPECT_EQ(picture_.routes.size(), 1u);
  ASSERT_EQ(picture_.pieces.size(), 3u);
  for (int piece = 0; piece < 3; ++piece) {
    const PathElement& path = picture_.pieces[static_cast<std::size_t>(piece)];
    EXPECT_EQ(path.route, 0);
    EXPECT_EQ(path.piece, piece);
    EXPECT_EQ(static_cast<int>(path.points.size()), path.vertices);
    // It begins where its first symbol stands.
    const auto first = std::find_if(picture_.arrows.begin(), picture_.arrows.end(),
                                    [&](const Arrow& arrow) { return arrow.piece == piece; });
    ASSERT_NE(first, picture_.arrows.end());
    EXPECT_EQ(path.points.front(), std::make_pair(first->x, first->y));
  }
  EXPECT_EQ(picture_.title, "city_drive.geojson");
  EXPECT_NE(picture_.allText.find("54 symbols, one every 40 m"), std::string::npos) << picture_.allText;
  EXPECT_NE(picture_.allText.find("3 pieces in view"), std::string::npos) << picture_.allText;
}

TEST_F(ToolPicture, ShowsTheAreaAndOnlyItsSymbols) {
  Run(kDrive, {"--spacing", "40", "--area", kDistrict});
  EXPECT_EQ(symbols_.size(), 29u);
  ExpectAnArrowPerSymbol();
  ASSERT_EQ(picture_.areas.size(), 1u);
  EXPECT_EQ(picture_.areas[0].points.size(), 28u);
  EXPECT_EQ(picture_.pieces.size(), 3u) << "pieces without symbols are drawn too";
}

TEST_F(ToolPicture, ScaleBarIsRoundAndTrue) {
  for (const double size : {0.0015, 0.05, 0.7, 3.0}) {  // degrees of latitude: 160 m to 330 km
    const std::string half = std::to_string(size / 2.0);
    RunText(R"({"type":"LineString","coordinates":[[10,60],[10.001,60.0003]]})",
            {"--view=" + std::to_string(10.0 - size) + "," + std::to_string(60.0 - size / 2.0) + "," +
             std::to_string(10.0 + size) + "," + std::to_string(60.0 + size / 2.0)});
    SCOPED_TRACE(size);
    ExpectTheViewInItsFrame();
    EXPECT_GT(picture_.scalePixels, 60.0);
    EXPECT_LE(picture_.scalePixels, 180.01);
    const double firstDigit =
        picture_.scaleMetres / std::pow(10.0, std::floor(std::log10(picture_.scaleMetres) + 1e-9));
    EXPECT_TRUE(std::fabs(firstDigit - 1.0) < 1e-9 || std::fabs(firstDigit - 2.0) < 1e-9 ||
                std::fabs(firstDigit - 5.0) < 1e-9)
        << picture_.scaleMetres;
    const double degrees = picture_.scalePixels / picture_.width * (picture_.extent[2] - picture_.extent[0]);
    const double metres =
        tarvo::GeoCoordinate(10.0 - degrees / 2.0, 60.0).DistanceTo({10.0 + degrees / 2.0, 60.0});
    // The bar runs along a parallel, the distance along a geodesic: 3e-5 apart for the widest of these views.
    EXPECT_NEAR(metres / picture_.scaleMetres, 1.0, 1e-3);
  }
}

TEST_F(ToolPicture, DropsNoArrowHoweverDense) {
  const std::string line = R"({"type":"LineString","coordinates":[[7,43],[7.3,43.1],[7.5,43.4]]})";
  RunText(line, {"--view=6,42,9,45", "--spacing", "20"});
  EXPECT_GT(symbols_.size(), 2000u);
  ExpectAnArrowPerSymbol();
  const auto enlarged = std::count_if(picture_.arrows.begin(), picture_.arrows.end(), [](const Arrow& arrow) {
    return arrow.elementClass == "arrow enlarged";
  });
  EXPECT_GT(enlarged, 3);
  EXPECT_LT(enlarged, 20);
  EXPECT_NE(picture_.allText.find("overlap"), std::string::npos);
  RunText(line, {"--view=6,42,9,45", "--spacing", "20000"});
  EXPECT_EQ(picture_.allText.find("arrows"), std::string::npos) << "nothing to explain";
}

TEST_F(ToolPicture, SaysHowManySymbolsLieBeyondItsEdge) {
  RunText(R"({"type":"LineString","coordinates":[[7,43],[8,43]]})",
          {"--view=7.49,42.99,7.51,43.01", "--spacing=1000"});
  EXPECT_EQ(symbols_.size(), 82u);
  ExpectAnArrowPerSymbol();
  const auto beyond = std::count_if(picture_.arrows.begin(), picture_.arrows.end(), [&](const Arrow& arrow) {
    return arrow.x < 0.0 || arrow.x > picture_.width || arrow.y < 0.0 || arrow.y > picture_.height;
  });
  EXPECT_GT(beyond, 70);
  EXPECT_NE(picture_.allText.find(std::to_string(beyond) + " symbols beyond the edge"), std::string::npos)
      << picture_.allText;
}

TEST_F(ToolPicture, FarAwayPartsOfARouteStayInReachOfDrawingPrograms) {
  RunText(R"({"type":"LineString","coordinates":[[-170,-80],[7,43],[7.0001,43.0001],[170,80]]})",
          {"--view=6.9999,42.9999,7.0002,43.0002", "--spacing=100000"});
  EXPECT_EQ(picture_.arrows.size(), symbols_.size());
  for (const Arrow& arrow : picture_.arrows) {
    EXPECT_LE(std::fabs(arrow.x), 1e5);
    EXPECT_LE(std::fabs(arrow.y), 1e5);
  }
  ASSERT_EQ(picture_.routes.size(), 1u);
  EXPECT_GE(picture_.routes[0].points.size(), 4u);
  for (const auto& [x, y] : picture_.routes[0].points) {
    EXPECT_GE(x, -61.0);
    EXPECT_LE(x, picture_.width + 61.0);
    EXPECT_GE(y, -61.0);
    EXPECT_LE(y, picture_.height + 61.0);
  }
}

TEST_F(ToolPicture, AcrossTheAntimeridianIsOneMap) {
  RunText(R"({"type":"LineString","coordinates":[[179.98,65],[-179.99,65.01],[-179.97,65]]})",
          {"--view=179.97,64.99,-179.96,65.02", "--spacing=200"});
  EXPECT_GT(symbols_.size(), 10u);
  ExpectAnArrowPerSymbol();
  for (std::size_t i = 1; i < picture_.arrows.size(); ++i)
    EXPECT_GT(picture_.arrows[i].x, picture_.arrows[i - 1].x);
  EXPECT_LT(picture_.extent[2] - picture_.extent[0], 0.2);
  EXPECT_NE(picture_.allText.find("180\xC2\xB0"), std::string::npos);
  EXPECT_NE(picture_.allText.find("\xC2\xB0"
                                  "E"),
            std::string::npos);
  EXPECT_NE(picture_.allText.find("\xC2\xB0W"), std::string::npos);
}

TEST_F(ToolPicture, OfAPlaceWithoutExtent) {
  RunText(R"({"type":"LineString","coordinates":[[7,43],[7,43]]})", {});
  ASSERT_EQ(picture_.arrows.size(), 2u);
  EXPECT_TRUE(picture_.arrows[0].dot);
  ExpectAnArrowPerSymbol();
  ExpectTheViewInItsFrame();
  EXPECT_EQ(picture_.scaleMetres, 5.0);
}

TEST_F(ToolPicture, OfAWorldWideAndAPolarView) {
  const std::string line = R"({"type":"LineString","coordinates":[[-179,-89],[0,10],[179,89.9]]})";
  for (const char* const view : {"--view=-180,-90,180,90", "--view=10,89.9,20,90", "--view=10,90,10,90"}) {
    SCOPED_TRACE(view);
    RunText(line, {view, "--spacing=1000000"});
    EXPECT_EQ(picture_.arrows.size(), symbols_.size());
    EXPECT_GT(picture_.scalePixels, 10.0);
    EXPECT_LE(picture_.scalePixels, 180.01);
  }
}

TEST_F(ToolPicture, TitleSurvivesAnyFileName) {
  const std::string line = R"({"type":"LineString","coordinates":[[7,43],[7.1,43]]})";
  const std::vector<std::pair<std::string, std::string>> names = {
      {"a & b <c> \"d\" 'e'.json", "a & b <c> \"d\" 'e'.json"},
      {"]]> <!-- layer pieces -->", "]]> <!-- layer pieces -->"},
      {"Stra\xC3\x9F"
       "e \xE9\x81\x93.json",
       "Stra\xC3\x9F"
       "e \xE9\x81\x93.json"},
      {"tab\tbell\a.json", "tab\\x09bell\\x07.json"},
      {"broken\xFF.json", "broken\\xff.json"},
      {"no character \xEF\xBF\xBE.json", "no character \xEF\xBF\xBD.json"},
  };
  for (const auto& [name, title] : names) {
    SCOPED_TRACE(title);
    Run(directory_.Write(name, line), {"--view=6,42,8,44"});
    EXPECT_EQ(picture_.title, title);
    EXPECT_NE(picture_.allText.find(title + "\n"), std::string::npos) << picture_.allText;
    EXPECT_EQ(picture_.pieces.size(), 1u);
  }
  Run(directory_.Write(std::string(200, 'n') + ".json", line), {"--view=6,42,8,44"});
  EXPECT_EQ(picture_.title.rfind("nnnnnnnnnn", 0), 0u);
  EXPECT_LT(picture_.title.size(), 70u);
  EXPECT_NE(picture_.title.find("nnn.json"), std::string::npos);
}

}  // namespace
}  // namespace vorel::test
