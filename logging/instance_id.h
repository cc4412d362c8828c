#ifndef VOREL_LOGGING_INSTANCE_ID_H_
#define VOREL_LOGGING_INSTANCE_ID_H_

#include <cstdint>

#include "base/export.h"

namespace vorel {
namespace logging {

/// Id of the logger that this library writes to; 0 until a client changes it. Read anew at every logging statement,
/// once for the level test and once for the record.
///
/// Not atomic: change it before threads call the geometry functions, not while they run. To turn a logger on or off
/// at any time, use `plog::Logger`.
extern VOREL_EXPORT std::uint32_t vorel_log_instance_id_;

}  // namespace logging
}  // namespace vorel

#endif  // VOREL_LOGGING_INSTANCE_ID_H_
