#include "tools/vorel/geojson_place.h"

#include "tools/vorel/failure.h"

namespace vorel::tool {

std::string JoinPath(const std::string& path, const std::string& member) {
  return path.empty() || member.empty() ? path + member : path + "." + member;
}

std::string Indexed(const std::string& path, std::size_t index) {
  return path + "[" + std::to_string(index) + "]";
}

void Refuse(const Place& place, const std::string& member, const std::string& problem) {
  const std::string path = JoinPath(place.path, member);
  throw BadInput(place.input + ": " + (path.empty() ? "" : path + ": ") + problem);
}

}  // namespace vorel::tool
