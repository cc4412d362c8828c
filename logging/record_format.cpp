#include "base/strict_floating_point.h"

#include "logging/record_format.h"

#include <cstddef>
#include <string_view>

#include "logging/record.h"

namespace plog {
namespace {

// Decimal digits of a value that is not negative, with leading zeros up to `width`.
std::string Padded(long long value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

// UTC date and time to the millisecond, as in ISO 8601. Calculated here because the C library's calendar functions
// share one buffer between all threads.
std::string FormatTime(const Time& time) {
  constexpr long long kSecondsPerDay = 86400;
  const long long seconds = static_cast<long long>(time.seconds);
  long long day = seconds / kSecondsPerDay;  // since 1970-01-01
  long long secondOfDay = seconds % kSecondsPerDay;
  if (secondOfDay < 0) {
    secondOfDay += kSecondsPerDay;
    --day;
  }

  // Years run from March to February here, so that the leap day is the last one. The Gregorian calendar repeats
  // every 400 years.
  constexpr long long kDaysPerCycle = 400 * 365 + 97;
  constexpr long long kDaysTo1970 = 719468;  // from 0000-03-01 to 1970-01-01
  const long long daysFromMarch0 = day + kDaysTo1970;
  long long cycle = daysFromMarch0 / kDaysPerCycle;
  long long dayOfCycle = daysFromMarch0 % kDaysPerCycle;
  if (dayOfCycle < 0) {
    dayOfCycle += kDaysPerCycle;
    --cycle;
  }
  // 36524 days in a century, but the fourth has a day more; 1461 in four years, but the last four of a century may
  // lack one: in both cases the extra day must not start a new period.
  const long long century = dayOfCycle == kDaysPerCycle - 1 ? 3 : dayOfCycle / 36524;
  const long long dayOfCentury = dayOfCycle - century * 36524;
  const long long fourYears = dayOfCentury / 1461;
  const long long dayOfFourYears = dayOfCentury - fourYears * 1461;
  const long long yearOfFour = dayOfFourYears == 1460 ? 3 : dayOfFourYears / 365;
  long long dayOfYear = dayOfFourYears - yearOfFour * 365;  // from March 1st
  long long year = cycle * 400 + century * 100 + fourYears * 4 + yearOfFour;

  constexpr int kDaysOfMonth[] = {31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 31, 29};  // March to February
  int month = 0;
  while (dayOfYear >= kDaysOfMonth[month]) dayOfYear -= kDaysOfMonth[month++];
  const int calendarMonth = month < 10 ? month + 3 : month - 9;
  if (calendarMonth <= 2) ++year;

  std::string text;
  if (year < 0) text += '-';
  text += Padded(year < 0 ? -year : year, 4);
  text += '-';
  text += Padded(calendarMonth, 2);
  text += '-';
  text += Padded(dayOfYear + 1, 2);
  text += 'T';
  text += Padded(secondOfDay / 3600, 2);
  text += ':';
  text += Padded(secondOfDay / 60 % 60, 2);
  text += ':';
  text += Padded(secondOfDay % 60, 2);
  text += '.';
  text += Padded(time.milliseconds, 3);
  text += 'Z';
  return text;
}

std::string LevelName(LogLevel level) {
  switch (level) {
    case LogLevel::kDebug:
      return "DEBUG";
    case LogLevel::kInfo:
      return "INFO";
    case LogLevel::kWarning:
      return "WARNING";
    case LogLevel::kError:
      return "ERROR";
  }
  return "LEVEL " + std::to_string(static_cast<int>(level));
}

void AppendEscaped(std::string_view from, std::string& to) {
  constexpr char kHexDigits[] = "0123456789abcdef";
  for (const char character : from) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '\n') {
      to += "\\n";
    } else if (character == '\r') {
      to += "\\r";
    } else if (character == '\t') {
      to += "\\t";
    } else if (code < 0x20 || code == 0x7f) {
      to += "\\x";
      to += kHexDigits[code / 16];
      to += kHexDigits[code % 16];
    } else {
      to += character;
    }
  }
}

std::string_view TextOrQuestionMark(const char* text) {
  return text != nullptr ? text : "?";
}

std::string_view WithoutDirectories(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::string FormatRecord(const Record& record) {
  std::string text = FormatTime(record.time);
  text += ' ';
  text += LevelName(record.level);
  text += " [";
  text += std::to_string(record.threadId);
  text += "] ";
  AppendEscaped(TextOrQuestionMark(record.function), text);
  text += ' ';
  AppendEscaped(WithoutDirectories(TextOrQuestionMark(record.file)), text);
  text += ':';
  text += std::to_string(record.line);
  text += ' ';
  for (const std::string& tag : record.tags) {
    if (tag.empty()) continue;
    text += '[';
    AppendEscaped(tag, text);
    text += "] ";
  }
  AppendEscaped(record.message.str(), text);
  return text;
}

}  // namespace plog
