#include "base/strict_floating_point.h"

#include "logging/instance_id.h"

namespace vorel {
namespace logging {

std::uint32_t vorel_log_instance_id_ = 0;

}  // namespace logging
}  // namespace vorel
