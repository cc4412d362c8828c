#include "tools/vorel/plain_text.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace vorel::tool {
namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
constexpr std::string_view kNarrowNoBreakSpace = "\xE2\x80\xAF";

struct Character {
  char32_t codePoint = 0;
  std::size_t length = 1;  // bytes
  bool valid = false;
};

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// The character at the start of `text`, which is not empty. Overlong forms, surrogates and values beyond U+10FFFF
/// are invalid; an invalid byte is taken by itself.
Character FirstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80u) return {lead, 1, true};
  std::size_t length = 0;
  char32_t codePoint = 0;
  if ((lead & 0xE0u) == 0xC0u) {
    length = 2;
    codePoint = lead & 0x1Fu;
  } else if ((lead & 0xF0u) == 0xE0u) {
    length = 3;
    codePoint = lead & 0x0Fu;
  } else if ((lead & 0xF8u) == 0xF0u) {
    length = 4;
    codePoint = lead & 0x07u;
  } else {
    return {};
  }
  if (text.size() < length) return {};
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[i])) return {};
    codePoint = (codePoint << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
  }
  constexpr std::array<char32_t, 5> kSmallestOfLength = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (codePoint < kSmallestOfLength[length] || codePoint > 0x10FFFF || surrogate) return {};
  return {codePoint, length, true};
}

/// Whether a terminal might take the character for a command or a line end.
bool IsControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

bool IsXmlCharacter(char32_t c) {
  return !(c < 0x20) && !(c >= 0x7F && c < 0xA0) && c != 0xFFFE && c != 0xFFFF;
}

template <class Number>
std::string ShortestText(Number value) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  return std::string(buffer, end);
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (character.valid && !IsControl(character.codePoint)) {
      line += text.substr(0, character.length);
    } else {
      for (std::size_t i = 0; i < character.length; ++i) {
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(text[i]));
        line += escaped;
      }
    }
    text.remove_prefix(character.length);
  }
  return line;
}

std::string XmlCharacters(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    const bool keep = character.valid && IsXmlCharacter(character.codePoint);
    result += keep ? text.substr(0, character.length) : kReplacementCharacter;
    text.remove_prefix(character.length);
  }
  return result;
}

std::string Shorten(std::string_view text, std::size_t maxCharacters) {
  std::size_t characters = 0;
  for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(FirstCharacter(rest).length))
    ++characters;
  if (characters <= maxCharacters) return std::string(text);
  const std::size_t headCharacters = maxCharacters / 2;
  const std::size_t tailCharacters = maxCharacters - headCharacters - 1;
  std::string shortened;
  std::size_t index = 0;
  for (std::string_view rest = text; !rest.empty(); ++index) {
    const std::size_t length = FirstCharacter(rest).length;
    if (index == headCharacters) shortened += kEllipsis;
    if (index < headCharacters || index >= characters - tailCharacters) shortened += rest.substr(0, length);
    rest.remove_prefix(length);
  }
  return shortened;
}

std::string ShortestNumber(double value) {
  return ShortestText(value == 0.0 ? 0.0 : value);
}

std::string ShortestNumber(float value) {
  return ShortestText(value == 0.0f ? 0.0f : value);
}

std::string FixedNumber(double value, int decimals) {
  char buffer[352];  // the largest double has 309 digits before the point
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals).ptr;
  std::string text(buffer, end);
  if (text[0] == '-' && text.find_first_of("123456789") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string Counted(std::size_t count, std::string_view noun) {
  std::string digits = std::to_string(count);
  for (std::size_t fromEnd = 3; fromEnd < digits.size(); fromEnd += 3 + kNarrowNoBreakSpace.size()) {
    digits.insert(digits.size() - fromEnd, kNarrowNoBreakSpace);
  }
  return digits + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace vorel::tool
