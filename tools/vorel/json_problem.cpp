#include "tools/vorel/json_problem.h"

#include <algorithm>
#include <cctype>
#include <new>
#include <nlohmann/json.hpp>

#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_place.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

/// Takes note of the first problem that the slower parser finds, and where.
class ProblemFinder : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return Open(); }
  bool key(string_t&) override { return true; }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(); }
  bool end_array() override { return Close(); }
  bool parse_error(std::size_t position, const std::string& token,
                   const nlohmann::detail::exception& what) override {
    position_ = position;
    token_ = token;
    numberOverflows_ = dynamic_cast<const nlohmann::detail::out_of_range*>(&what) != nullptr;
    return false;
  }

  std::size_t position() const { return position_; }
  const std::string& token() const { return token_; }
  bool numberOverflows() const { return numberOverflows_; }
  bool isTooDeep() const { return depth_ > simdjson::DEFAULT_MAX_DEPTH; }

 private:
  bool Open() { return ++depth_ <= simdjson::DEFAULT_MAX_DEPTH; }
  bool Close() {
    --depth_;
    return true;
  }

  std::size_t depth_ = 0;
  std::size_t position_ = 0;  // bytes taken when the problem showed
  std::string token_;
  bool numberOverflows_ = false;
};

}  // namespace

void RefuseJson(simdjson::error_code error, std::string_view text, const std::string& input,
                std::size_t firstLine) {
  const auto lineAt = [&](std::size_t offset) {
    return firstLine + static_cast<std::size_t>(std::count(text.begin(), text.begin() + offset, '\n'));
  };
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  if (error == simdjson::CAPACITY) {
    throw BadInput(input +
                   ": is too long for one GeoJSON object (more than 4 GiB); write one feature per line");
  }
  if (!simdjson::validate_utf8(text.data(), text.size())) {
    if (text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF") {
      throw BadInput(input + ": is UTF-16, not UTF-8");
    }
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find('\n', begin)) != std::string_view::npos; begin = end + 1) {
      if (!simdjson::validate_utf8(text.data() + begin, end - begin)) break;
    }
    throw BadInput(input + ": line " + std::to_string(lineAt(begin)) + " is not UTF-8");
  }
  // The fast parser does not say where; this path runs once, so a second, slower one may look for the place.
  ProblemFinder finder;
  nlohmann::json::sax_parse(text.begin(), text.end(), &finder);
  if (finder.isTooDeep()) {
    throw BadInput(input + ": is nested more than " + std::to_string(simdjson::DEFAULT_MAX_DEPTH) +
                   " levels deep");
  }
  if (finder.position() == 0) {
    throw BadInput(input + ": " +
                   (error == simdjson::NUMBER_ERROR
                        ? "holds an integer of more than 64 bits"
                        : std::string("not JSON: ") + simdjson::error_message(error)));
  }
  std::size_t offset = std::min(finder.position() - 1, text.size());
  if (finder.numberOverflows())
    offset -= std::min(offset, finder.token().size() - 1);  // to the number's first digit
  const std::size_t lineStart = offset == 0 ? 0 : text.rfind('\n', offset - 1) + 1;  // npos + 1 is 0
  const std::string where =
      "line " + std::to_string(lineAt(offset)) + ", column " + std::to_string(offset - lineStart + 1) + ": ";
  if (finder.numberOverflows()) {
    throw BadInput(input + ": " + where + "the number " + Shorten(finder.token(), kValueCharacters) +
                   " is not finite");
  }
  const std::string_view rest = text.substr(offset);
  if (rest.empty()) throw BadInput(input + ": not JSON: " + where + "ends too early");
  const auto wordEnd = std::find_if_not(
      rest.begin(), rest.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
  const auto wordLength = std::max<std::size_t>(1, static_cast<std::size_t>(wordEnd - rest.begin()));
  throw BadInput(input + ": not JSON: " + where + "unexpected \"" +
                 Shorten(rest.substr(0, wordLength), kValueCharacters) + "\"");
}

}  // namespace vorel::tool
