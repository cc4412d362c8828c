#include "support/tool_output_reading.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>

namespace vorel::test {
namespace {

tarvo::GeoCoordinate ReadPosition(const nlohmann::json& position) {
  if (position.size() != 2) throw std::runtime_error("not a position: " + position.dump());
  return {position[0].get<double>(), position[1].get<double>()};
}

}  // namespace

std::vector<FeatureRow> ReadFeatures(const std::string& text) {
  const nlohmann::json root = nlohmann::json::parse(text);
  if (root.at("type") != "FeatureCollection" || root.size() != 2)
    throw std::runtime_error("not a collection");
  std::vector<FeatureRow> rows;
  for (const nlohmann::json& feature : root.at("features")) {
    const nlohmann::json& coordinates = feature.at("geometry").at("coordinates");
    FeatureRow row;
    row.geometryType = feature.at("geometry").at("type").get<std::string>();
    if (row.geometryType == "Point") {
      row.points.push_back(ReadPosition(coordinates));
    } else if (row.geometryType == "LineString" && coordinates.size() >= 2) {
      for (const nlohmann::json& position : coordinates) row.points.push_back(ReadPosition(position));
    } else {
      throw std::runtime_error("not a point or line: " + feature.dump());
    }
    for (const auto& [name, value] : feature.at("properties").items()) row.properties[name] = value.dump();
    rows.push_back(row);
  }
  return rows;
}

std::vector<MapElement> MapReading::OfClass(const std::string& elementClass) const {
  std::vector<MapElement> found;
  std::copy_if(elements.begin(), elements.end(), std::back_inserter(found),
               [&](const MapElement& element) { return element.elementClass == elementClass; });
  return found;
}

MapReading ReadMap(const std::string& file) {
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_file(file.c_str(), pugi::parse_full);
  if (!parsed) throw std::runtime_error(file + ": " + parsed.description());
  MapReading map;
  const pugi::xml_node svg = document.child("svg");
  map.title = svg.child("title").text().get();
  for (const auto& match : document.select_nodes("//text")) {
    map.allText += std::string(match.node().text().get()) + "\n";
  }
  const pugi::xml_node group = svg.find_child_by_attribute("class", "map");
  map.width = group.attribute("data-width").as_double();
  map.height = group.attribute("data-height").as_double();
  for (const auto& match : group.select_nodes(".//path|.//circle|.//rect")) {
    MapElement element;
    for (const pugi::xml_attribute& attribute : match.node().attributes()) {
      element.attributes[attribute.name()] = attribute.value();
    }
    element.elementClass = element.attributes["class"];
    if (element.attributes.count("cx") > 0) {
      element.pixels.emplace_back(match.node().attribute("cx").as_double(),
                                  match.node().attribute("cy").as_double());
    }
    std::string d = element.attributes["d"];
    std::replace_if(
        d.begin(), d.end(), [](char c) { return c == 'M' || c == 'L' || c == 'Z'; }, ' ');
    std::istringstream numbers(d);
    for (double x, y; numbers >> x >> y;) element.pixels.emplace_back(x, y);
    map.elements.push_back(element);
  }
  return map;
}

std::string LineStringText(const std::vector<tarvo::GeoCoordinate>& line) {
  std::string text = R"({"type":"LineString","coordinates":)";
  char separator = '[';
  for (const tarvo::GeoCoordinate& point : line) {
    char position[80];
    std::snprintf(position, sizeof position, "%c[%.17g,%.17g]", separator, point.longitude, point.latitude);
    separator = ',';
    text += position;
  }
  return text + "]}";
}

}  // namespace vorel::test
