#include "tools/vorel/feature_property.h"

namespace vorel::tool {

std::optional<simdjson::dom::element> PropertyOf(const simdjson::dom::object* feature,
                                                 const std::string& key) {
  simdjson::dom::element value;
  if (feature == nullptr) return std::nullopt;
  if (key == "id" && feature->at_key("id").get(value) == simdjson::SUCCESS && !value.is_null()) return value;
  simdjson::dom::object properties;
  if (feature->at_key("properties").get(properties) != simdjson::SUCCESS) return std::nullopt;
  if (properties.at_key(key).get(value) != simdjson::SUCCESS) return std::nullopt;
  return value;
}

}  // namespace vorel::tool
