#ifndef VOREL_LOGGING_RECORD_FORMAT_H_
#define VOREL_LOGGING_RECORD_FORMAT_H_

#include <string>

#include "base/export.h"

namespace plog {

struct Record;

/// A record as one line of text, without a line end: UTC time, level, thread id, function, file name without its
/// directories, line, each tag that is not empty in brackets, then the message.
///
///     2026-03-01T08:15:30.042Z WARNING [3] NameOfFunction file_name.cpp:120 [tag] the message
///
/// Control characters, in the message or elsewhere, are written as \n, \r, \t or \x and two hexadecimal digits, so
/// that one record is always one line; a backslash stays as it is. A level without a name is written as "LEVEL 7", a
/// null pointer for function or file as "?".
VOREL_EXPORT std::string FormatRecord(const Record& record);

}  // namespace plog

#endif  // VOREL_LOGGING_RECORD_FORMAT_H_
