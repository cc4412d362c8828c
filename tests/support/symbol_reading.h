#ifndef VOREL_TESTS_SUPPORT_SYMBOL_READING_H_
#define VOREL_TESTS_SUPPORT_SYMBOL_READING_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"

namespace vorel::test {

/// One feature of the tool's symbol output.
struct SymbolRow {
  tarvo::GeoCoordinate position;
  int route = -1;
  int piece = -1;
  double metres = -1.0;
  std::optional<double> heading;
};

/// Reads the tool's symbol output; throws when it is not what the tool's help says it is.
inline std::vector<SymbolRow> ReadSymbols(const std::string& text) {
  const nlohmann::json root = nlohmann::json::parse(text);
  if (root.at("type") != "FeatureCollection" || root.size() != 2)
    throw std::runtime_error("not a collection");
  std::vector<SymbolRow> symbols;
  for (const nlohmann::json& feature : root.at("features")) {
    const nlohmann::json& geometry = feature.at("geometry");
    const nlohmann::json& properties = feature.at("properties");
    if (feature.at("type") != "Feature" || geometry.at("type") != "Point" || properties.size() != 4 ||
        geometry.at("coordinates").size() != 2) {
      throw std::runtime_error("not a symbol: " + feature.dump());
    }
    SymbolRow row;
    row.position = {geometry.at("coordinates")[0].get<double>(), geometry.at("coordinates")[1].get<double>()};
    row.route = properties.at("route").get<int>();
    row.piece = properties.at("piece").get<int>();
    row.metres = properties.at("metres").get<double>();
    if (!properties.at("heading").is_null()) row.heading = properties.at("heading").get<double>();
    symbols.push_back(row);
  }
  return symbols;
}

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_SYMBOL_READING_H_
