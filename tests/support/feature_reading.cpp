#include "support/feature_reading.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace vorel::test {

using nlohmann::json;

std::vector<FeatureRow> ReadFeatures(const std::string& text) {
  const json root = json::parse(text);
  if (root.at("type") != "FeatureCollection") throw std::runtime_error("not a collection");
  std::vector<FeatureRow> rows;
  for (const json& feature : root.at("features")) {
    if (feature.at("type") != "Feature") throw std::runtime_error("not a feature: " + feature.dump());
    FeatureRow row;
    const json& geometry = feature.at("geometry");
    row.type = geometry.at("type").get<std::string>();
    json positions = geometry.at("coordinates");
    if (row.type == "Point") positions = json::array({positions});
    if (row.type == "Polygon") {
      if (positions.size() != 1) throw std::runtime_error("not one ring: " + feature.dump());
      positions = json(positions[0]);
    }
    for (const json& position : positions) {
      if (position.size() != 3) throw std::runtime_error("no height: " + feature.dump());
      row.points.emplace_back(position[0].get<double>(), position[1].get<double>(), position[2].get<float>());
    }
    for (const auto& [name, value] : feature.at("properties").items()) row.properties[name] = value.dump();
    rows.push_back(row);
  }
  return rows;
}

std::string CollectionMember(const std::string& text, const std::string& name) {
  return json::parse(text).at(name).dump();
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

}  // namespace vorel::test
