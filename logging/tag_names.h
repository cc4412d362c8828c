#ifndef VOREL_LOGGING_TAG_NAMES_H_
#define VOREL_LOGGING_TAG_NAMES_H_

#include <string>

#include "base/export.h"

namespace vorel {
namespace logging {

/// Number of the tag that the geometry functions log under.
constexpr int kGeometryTagIndex = 11;

/// Text of tag number `index`; messages carry it behind their owner.
///
/// @param index  any value; only `kGeometryTagIndex` has a text, the other numbers belong to other modules
/// @return a string that lives as long as the process; empty for an index without a text
VOREL_EXPORT const std::string& GetTagName(int index);

}  // namespace logging
}  // namespace vorel

#endif  // VOREL_LOGGING_TAG_NAMES_H_
