#include "tests/support/counting_tag_names.h"

#include <mutex>
#include <string>

#include "logging/tag_names.h"

namespace vorel::test {
namespace {

std::mutex callsMutex;
std::vector<int> calls;

}  // namespace

std::vector<int> TagNameCalls() {
  const std::lock_guard<std::mutex> lock(callsMutex);
  return calls;
}

void ResetTagNameCalls() {
  const std::lock_guard<std::mutex> lock(callsMutex);
  calls.clear();
}

}  // namespace vorel::test

namespace vorel {
namespace logging {

const std::string& GetTagName(int index) {
  static const std::string geometry = "[Geometry]";
  static const std::string none;
  const std::lock_guard<std::mutex> lock(vorel::test::callsMutex);
  vorel::test::calls.push_back(index);
  return index == 11 ? geometry : none;
}

}  // namespace logging
}  // namespace vorel
