#ifndef VOREL_TOOLS_VOREL_FEATURE_PROPERTY_H_
#define VOREL_TOOLS_VOREL_FEATURE_PROPERTY_H_

#include <simdjson.h>

#include <optional>
#include <string>

namespace vorel::tool {

/// A property of a feature; none where the feature is null or lacks it.
/// @param key  "id" means the feature's own id first
std::optional<simdjson::dom::element> PropertyOf(const simdjson::dom::object* feature,
                                                 const std::string& key);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_FEATURE_PROPERTY_H_
