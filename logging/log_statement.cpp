#include "base/strict_floating_point.h"

#include "logging/log_statement.h"

#include "logging/tag_names.h"

namespace vorel {
namespace logging {

void BeginMessage(std::ostream& message, std::string_view owner) {
  message << "[Vorel][" << owner << "]" << GetTagName(kGeometryTagIndex);
  message.setf(std::ios_base::fixed);
  message.precision(6);
}

}  // namespace logging
}  // namespace vorel
