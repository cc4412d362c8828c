#include "tools/vorel/text_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/vorel/failure.h"

namespace vorel::tool {

TextSource::TextSource(const std::string& path) {
  if (path == "-") {
    name_ = "standard input";
    descriptor_ = STDIN_FILENO;
  } else {
    name_ = path;
    descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor_ < 0) throw BadInput(name_ + ": cannot be opened: " + std::strerror(errno));
    ownsDescriptor_ = true;
  }
  struct stat status {};
  const char* problem = nullptr;
  if (fstat(descriptor_, &status) != 0) {
    problem = std::strerror(errno);
  } else if (S_ISDIR(status.st_mode)) {
    problem = "is a directory, not a file";
  }
  if (problem != nullptr) {
    if (ownsDescriptor_) close(descriptor_);
    throw BadInput(name_ + ": " + problem);
  }
  // Reading starts where the descriptor stands: standard input may have been partly read by someone else. Only a
  // regular file at its start is taken as one that can be read again.
  seekable_ = S_ISREG(status.st_mode) && lseek(descriptor_, 0, SEEK_CUR) == 0;
  if (seekable_) sizeBytes_ = static_cast<std::uint64_t>(status.st_size);
}

TextSource TextSource::FromMemory(const std::string& name, const std::string& text) {
  TextSource source;
  source.name_ = name;
  source.kept_.Append(text);
  source.readsKept_ = true;
  source.sizeBytes_ = text.size();
  return source;
}

TextSource::TextSource(TextSource&& other) noexcept
    : name_(std::move(other.name_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      ownsDescriptor_(std::exchange(other.ownsDescriptor_, false)),
      seekable_(other.seekable_),
      keeps_(other.keeps_),
      readsKept_(other.readsKept_),
      sizeBytes_(other.sizeBytes_),
      keptOffset_(other.keptOffset_),
      kept_(std::move(other.kept_)) {}

TextSource::~TextSource() {
  if (ownsDescriptor_) close(descriptor_);
}

std::size_t TextSource::Read(char* buffer, std::size_t capacity) {
  if (readsKept_) {
    const std::size_t count = kept_.ReadAt(keptOffset_, buffer, capacity);
    keptOffset_ += count;
    return count;
  }
  std::size_t total = 0;
  while (total < capacity) {
    const ssize_t count = read(descriptor_, buffer + total, capacity - total);
    if (count == 0) break;
    if (count < 0) {
      if (errno == EINTR) continue;
      throw BadInput(name_ + ": cannot be read: " + std::strerror(errno));
    }
    total += static_cast<std::size_t>(count);
  }
  if (keeps_) kept_.Append({buffer, total});
  return total;
}

void TextSource::KeepForSecondPass() {
  keeps_ = !seekable_ && !readsKept_;
}

void TextSource::StopKeeping() {
  keeps_ = false;
  if (!readsKept_) kept_.Clear();
}

void TextSource::Rewind() {
  if (seekable_) {
    if (lseek(descriptor_, 0, SEEK_SET) != 0) {
      throw BadInput(name_ + ": cannot be read a second time: " + std::strerror(errno));
    }
    return;
  }
  keeps_ = false;
  readsKept_ = true;
  keptOffset_ = 0;
}

bool TextSource::GetIdentity(struct stat& identity) const {
  return descriptor_ >= 0 && fstat(descriptor_, &identity) == 0;
}

TextSource OpenInput(const std::string& path, const std::string& argument) {
  if (path == "-" && isatty(STDIN_FILENO) == 1) {
    throw BadInput("no " + argument + " is given, and standard input is a terminal");
  }
  return TextSource(path);
}

}  // namespace vorel::tool
