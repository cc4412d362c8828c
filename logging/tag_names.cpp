#include "base/strict_floating_point.h"

#include "logging/tag_names.h"

namespace vorel {
namespace logging {

// Alone in its source file: a test that links the static library with a definition of its own takes this one's
// place.
const std::string& GetTagName(int index) {
  // Never destroyed: a message may be written during exit.
  static const std::string& geometry = *new std::string("[Geometry]");
  static const std::string& none = *new std::string;
  return index == kGeometryTagIndex ? geometry : none;
}

}  // namespace logging
}  // namespace vorel
