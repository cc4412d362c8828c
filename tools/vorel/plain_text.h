#ifndef VOREL_TOOLS_VOREL_PLAIN_TEXT_H_
#define VOREL_TOOLS_VOREL_PLAIN_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace vorel::tool {

/// `text` as part of one terminal line: control characters, line separators and bytes that are not UTF-8 become
/// \xNN, one per byte.
std::string OneLine(std::string_view text);

/// `text` as something XML 1.0 can hold: each character that it cannot hold and each byte that is not UTF-8 becomes
/// U+FFFD. Escaping of markup is left to the XML library.
std::string XmlCharacters(std::string_view text);

/// `text` with its middle replaced by an ellipsis when it is longer than `maxCharacters` (at least 3) code points.
std::string Shorten(std::string_view text, std::size_t maxCharacters);

/// The shortest decimal text that reads back as the same value; "0" for both zeros.
std::string ShortestNumber(double value);
std::string ShortestNumber(float value);

/// `value` with `decimals` (0 to 15) digits after the point; "0.00" rather than "-0.00".
std::string FixedNumber(double value, int decimals);

/// "1 symbol", "2 symbols"; thousands are set apart by a narrow no-break space.
std::string Counted(std::size_t count, std::string_view noun);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_PLAIN_TEXT_H_
