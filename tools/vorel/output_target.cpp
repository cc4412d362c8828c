#include "tools/vorel/output_target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/vorel/failure.h"
#include "tools/vorel/text_source.h"

namespace vorel::tool {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{256} << 10;
constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

// What the signal handler may touch: plain memory only. A slot is taken while its flag is not 0; both the flag and
// the path change only while the signals are blocked.
struct TemporaryFileSlot {
  volatile std::sig_atomic_t taken = 0;
  char path[PATH_MAX] = {};
};
std::array<TemporaryFileSlot, 8> temporaryFileSlots;

extern "C" void RemoveTemporaryFilesAndEnd(int signalNumber) {
  for (TemporaryFileSlot& slot : temporaryFileSlots) {
    if (slot.taken != 0) unlink(slot.path);
  }
  signal(signalNumber, SIG_DFL);
  raise(signalNumber);
}

class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int number : kEndingSignals) sigaddset(&blocked, number);
    sigprocmask(SIG_BLOCK, &blocked, &before_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  ~SignalsBlocked() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

int TakeSlot(const std::string& path) {
  for (std::size_t i = 0; i < temporaryFileSlots.size(); ++i) {
    TemporaryFileSlot& slot = temporaryFileSlots[i];
    if (slot.taken != 0 || path.size() >= sizeof slot.path) continue;
    std::memcpy(slot.path, path.c_str(), path.size() + 1);
    slot.taken = 1;
    return static_cast<int>(i);
  }
  return -1;
}

/// `path` with the symbolic links of its last component followed; the file itself need not exist.
std::filesystem::path FollowLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;  // the kernel's own limit
  std::error_code error;
  for (int link = 0; link < kMostLinks && std::filesystem::is_symlink(path, error); ++link) {
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return path;
}

/// Writes everything or returns false with errno set.
bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// The permissions that a newly made file gets.
mode_t NewFileMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

void RemoveTemporaryFilesOnSignals() {
  for (const int number : kEndingSignals) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = RemoveTemporaryFilesAndEnd;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
  }
  signal(SIGXFSZ, SIG_IGN);
}

OutputTarget::OutputTarget(std::string option, const std::string& path)
    : option_(std::move(option)), givenPath_(path) {
  if (path == "-") {
    kind_ = Kind::kStandardOutput;
    return;
  }
  if (path.empty()) throw BadInput(option_ + ": an empty file name");
  resolvedPath_ = FollowLinks(path).string();

  mode_t mode = NewFileMode();
  struct stat status {};
  if (stat(resolvedPath_.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) throw BadInput(Label() + "is a directory, not a file");
    if (access(resolvedPath_.c_str(), W_OK) != 0) {
      throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
      kind_ = Kind::kSpecialFile;
      return;
    }
    mode = status.st_mode & 07777;
  } else if (errno != ENOENT) {
    throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  }

  const std::filesystem::path resolved(resolvedPath_);
  if (!resolved.has_filename()) throw BadInput(Label() + "is not a file name");
  const std::string pattern = (resolved.parent_path() / ".vorel-XXXXXX").string();
  std::vector<char> name(pattern.c_str(), pattern.c_str() + pattern.size() + 1);
  const SignalsBlocked blocked;
  descriptor_ = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor_ < 0) throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  temporaryPath_ = name.data();
  signalSlot_ = TakeSlot(temporaryPath_);
  // A file system without permissions may refuse this; the text still arrives.
  (void)!fchmod(descriptor_, mode);
}

OutputTarget::~OutputTarget() {
  if (descriptor_ >= 0) close(descriptor_);
  if (temporaryPath_.empty()) return;
  const SignalsBlocked blocked;
  unlink(temporaryPath_.c_str());
  if (signalSlot_ >= 0) temporaryFileSlots[static_cast<std::size_t>(signalSlot_)].taken = 0;
}

std::string OutputTarget::Label() const {
  return kind_ == Kind::kStandardOutput ? "standard output: " : option_ + " " + givenPath_ + ": ";
}

void OutputTarget::Write(std::string_view text) {
  if (kind_ != Kind::kFile) {
    spool_.Append(text);
    return;
  }
  buffer_ += text;
  if (buffer_.size() >= kBufferBytes) Flush();
}

void OutputTarget::Flush() {
  if (!WriteAll(descriptor_, buffer_)) throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  buffer_.clear();
}

void OutputTarget::Finish() {
  if (kind_ != Kind::kFile) return;
  Flush();
  // Closing reports what a network file system held back.
  if (close(std::exchange(descriptor_, -1)) != 0) {
    throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  }
}

void OutputTarget::Publish(const std::vector<OutputTarget*>& targets) {
  for (const Kind kind : {Kind::kSpecialFile, Kind::kStandardOutput, Kind::kFile}) {
    for (OutputTarget* const target : targets) {
      if (target != nullptr && target->kind_ == kind) target->PublishOne();
    }
  }
}

void OutputTarget::PublishOne() {
  if (kind_ == Kind::kFile) {
    const SignalsBlocked blocked;
    if (rename(temporaryPath_.c_str(), resolvedPath_.c_str()) != 0) {
      throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
    }
    temporaryPath_.clear();
    if (signalSlot_ >= 0) temporaryFileSlots[static_cast<std::size_t>(signalSlot_)].taken = 0;
    return;
  }
  int target = STDOUT_FILENO;
  if (kind_ == Kind::kSpecialFile) {
    target = descriptor_ = open(resolvedPath_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (target < 0) throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  }
  spool_.CopyTo([&](std::string_view text) {
    if (!WriteAll(target, text)) throw BadInput(Label() + "cannot be written: " + std::strerror(errno));
  });
}

void OutputTarget::RefuseSameFileAs(const TextSource& source) const {
  struct stat input {};
  struct stat output {};
  if (!source.GetIdentity(input) || !S_ISREG(input.st_mode)) return;
  const int found =
      kind_ == Kind::kStandardOutput ? fstat(STDOUT_FILENO, &output) : stat(resolvedPath_.c_str(), &output);
  if (found == 0 && SameFile(input, output)) {
    throw BadInput(Label() + "is the input file " + source.name() + ", which would be overwritten");
  }
}

void OutputTarget::RefuseSameFileAs(const OutputTarget& other) const {
  const auto identify = [](const OutputTarget& target, struct stat& identity) {
    return (target.kind_ == Kind::kStandardOutput ? fstat(STDOUT_FILENO, &identity)
                                                  : stat(target.resolvedPath_.c_str(), &identity)) == 0;
  };
  struct stat mine {};
  struct stat theirs {};
  const bool iExist = identify(*this, mine);
  const bool theyExist = identify(other, theirs);
  bool same = false;
  if (iExist && theyExist) {
    same = SameFile(mine, theirs) && !S_ISCHR(mine.st_mode);  // a device such as /dev/null takes both
  } else if (!iExist && !theyExist) {
    // Neither file is there yet: the same name in the same directory.
    const std::filesystem::path a(resolvedPath_);
    const std::filesystem::path b(other.resolvedPath_);
    const auto directory = [](const std::filesystem::path& path) {
      return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    };
    std::error_code error;
    same = a.filename() == b.filename() && std::filesystem::equivalent(directory(a), directory(b), error) &&
           !error;
  }
  if (same) throw BadInput(Label() + "is the same file as " + other.option_ + " " + other.givenPath_);
}

}  // namespace vorel::tool
