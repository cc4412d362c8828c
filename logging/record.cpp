#include "base/strict_floating_point.h"

#include "logging/record.h"

#include <locale>

#include "logging/logger.h"

namespace plog {

Record::Record(LogLevel recordLevel, const char* recordFunction, std::size_t recordLine,
               const char* recordFile, unsigned loggerInstanceId, const std::string& tag)
    : time(),
      level(recordLevel),
      threadId(Util::GetTid()),
      line(recordLine),
      function(recordFunction),
      file(recordFile),
      instanceId(loggerInstanceId),
      flags(0) {
  // A client's global locale may group digits or write a decimal comma: not in a message that tools read.
  message.imbue(std::locale::classic());
  Util::FetchTime(&time);
  tags.push_back(tag);
}

Record::~Record() {
  Logger::Submit(*this);
}

}  // namespace plog
