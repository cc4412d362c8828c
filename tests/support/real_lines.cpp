#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include <nlohmann/json.hpp>

#include "support/lines.h"

namespace vorel::test {

const std::vector<NamedLineZ>& RealLinesZ(const std::string& folder) {
  static std::map<std::string, std::vector<NamedLineZ>> loaded;
  const auto known = loaded.find(folder);
  if (known != loaded.end()) return known->second;
  std::vector<NamedLineZ>& lines = loaded[folder];
  const char* root = std::getenv("VOREL_DATA_DIR");
  if (root == nullptr) return lines;
  const std::filesystem::path path = std::filesystem::path(root) / folder;
  if (!std::filesystem::is_directory(path)) return lines;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.path().extension() == ".geojson") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (const std::filesystem::path& file : files) {
    std::ifstream stream(file);
    const nlohmann::json collection = nlohmann::json::parse(stream);
    int featureIndex = 0;
    for (const nlohmann::json& feature : collection.at("features")) {
      const std::string type = feature.at("geometry").at("type");
      const nlohmann::json& coordinates = feature.at("geometry").at("coordinates");
      std::vector<nlohmann::json> parts;
      if (type == "LineString") {
        parts = {coordinates};
      } else if (type == "MultiLineString" || type == "Polygon") {
        parts = coordinates.get<std::vector<nlohmann::json>>();
      } else if (type == "MultiPolygon") {
        for (const nlohmann::json& polygon : coordinates)
          parts.insert(parts.end(), polygon.begin(), polygon.end());
      }
      for (const nlohmann::json& part : parts) {
        LineZ line;
        for (const nlohmann::json& position : part) {
          line.emplace_back(position.at(0).get<double>(), position.at(1).get<double>(),
                            position.size() > 2 ? position.at(2).get<float>() : 0.0f);
        }
        lines.push_back({file.stem().string() + " feature " + std::to_string(featureIndex), std::move(line)});
      }
      ++featureIndex;
    }
  }
  return lines;
}

std::vector<NamedLine> RealLines(const std::string& folder) {
  std::vector<NamedLine> lines;
  for (const NamedLineZ& line : RealLinesZ(folder)) lines.push_back({line.name, WithoutHeight(line.points)});
  return lines;
}

}  // namespace vorel::test
