#include "tools/vorel/spool.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/vorel/failure.h"

namespace vorel::tool {
namespace {

constexpr std::size_t kMemoryBytes = std::size_t{2} << 20;
constexpr std::size_t kCopyBytes = std::size_t{64} << 10;

[[noreturn]] void ThrowTemporaryFileProblem(const char* what) {
  throw BadInput(std::string("temporary file: cannot be ") + what + ": " + std::strerror(errno));
}

}  // namespace

void Spool::Append(std::string_view text) {
  memory_ += text;
  sizeBytes_ += text.size();
  if (memory_.size() > kMemoryBytes) WriteOut();
}

void Spool::WriteOut() {
  if (!file_) {
    file_.reset(std::tmpfile());
    if (!file_) ThrowTemporaryFileProblem("made");
  }
  // By descriptor and offset: the stream is only a holder that removes the file.
  for (std::string_view rest = memory_; !rest.empty();) {
    const ssize_t count =
        pwrite(fileno(file_.get()), rest.data(), rest.size(), static_cast<off_t>(fileBytes_));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) ThrowTemporaryFileProblem("written");
    fileBytes_ += static_cast<std::uint64_t>(count);
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
  memory_.clear();
}

std::size_t Spool::ReadAt(std::uint64_t offset, char* buffer, std::size_t capacity) {
  std::size_t total = 0;
  while (total < capacity && offset < fileBytes_) {
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(capacity - total, fileBytes_ - offset));
    const ssize_t count = pread(fileno(file_.get()), buffer + total, wanted, static_cast<off_t>(offset));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) ThrowTemporaryFileProblem("read");
    total += static_cast<std::size_t>(count);
    offset += static_cast<std::uint64_t>(count);
  }
  if (total < capacity && offset < sizeBytes_) {
    const auto start = static_cast<std::size_t>(offset - fileBytes_);
    const std::size_t count = std::min(capacity - total, memory_.size() - start);
    std::memcpy(buffer + total, memory_.data() + start, count);
    total += count;
  }
  return total;
}

void Spool::CopyTo(const std::function<void(std::string_view)>& sink) {
  std::string buffer(kCopyBytes, '\0');
  for (std::uint64_t offset = 0; offset < sizeBytes_;) {
    const std::size_t count = ReadAt(offset, buffer.data(), buffer.size());
    sink({buffer.data(), count});
    offset += count;
  }
}

void Spool::Clear() {
  memory_.clear();
  file_.reset();
  fileBytes_ = 0;
  sizeBytes_ = 0;
}

}  // namespace vorel::tool
