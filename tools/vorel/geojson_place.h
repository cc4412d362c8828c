#ifndef VOREL_TOOLS_VOREL_GEOJSON_PLACE_H_
#define VOREL_TOOLS_VOREL_GEOJSON_PLACE_H_

#include <simdjson.h>

#include <cstddef>
#include <string>

#include "tools/vorel/plain_text.h"

namespace vorel::tool {

/// Where in the input a geometry stands, as messages spell it.
struct Place {
  std::string input;  ///< "route.geojson", or "route.geojsonl, line 12"
  std::string path;   ///< such as "features[3].geometry"; empty for a bare geometry
};

/// Of an offending value in a message.
constexpr std::size_t kValueCharacters = 40;

/// `path`, then `member` of what stands there.
std::string JoinPath(const std::string& path, const std::string& member);

/// `path`, then the element number `index` of the array that stands there.
std::string Indexed(const std::string& path, std::size_t index);

/// Throws the `BadInput` of what stands at `member` of `place`, or at `place` itself where `member` is empty.
[[noreturn]] void Refuse(const Place& place, const std::string& member, const std::string& problem);

/// The value as it stands in the input, shortened.
template <class Value>
std::string ValueText(const Value& value) {
  return Shorten(simdjson::minify(value), kValueCharacters);
}

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_GEOJSON_PLACE_H_
