#ifndef VOREL_TOOLS_VOREL_JSON_PROBLEM_H_
#define VOREL_TOOLS_VOREL_JSON_PROBLEM_H_

#include <simdjson.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace vorel::tool {

/// Throws the `BadInput` that says why and where a text could not be parsed.
/// @param error      what the parser said, not `SUCCESS`; it does not say where
/// @param text       all that was parsed
/// @param input      name of the input, for the message
/// @param firstLine  number in the input of the text's first line
[[noreturn]] void RefuseJson(simdjson::error_code error, std::string_view text, const std::string& input,
                             std::size_t firstLine);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_JSON_PROBLEM_H_
