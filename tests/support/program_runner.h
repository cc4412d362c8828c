#ifndef VOREL_TESTS_SUPPORT_PROGRAM_RUNNER_H_
#define VOREL_TESTS_SUPPORT_PROGRAM_RUNNER_H_

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// The address sanitizer keeps freed memory, so that what a program holds says nothing there.
#if defined(__SANITIZE_ADDRESS__)
#define VOREL_TEST_SANITIZES_ADDRESSES
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VOREL_TEST_SANITIZES_ADDRESSES
#endif
#endif

namespace vorel::test {

struct ProgramResult {
  int exitStatus = -1;  ///< minus the signal's number when a signal ended it
  std::string out;
  std::string err;
  long peakKilobytes = 0;  ///< most memory that it held at once
};

/// Runs a program to its end.
/// @param input      what it reads from standard input, through a pipe
/// @param directory  where it runs; empty for the test's own
ProgramResult RunProgram(const std::string& path, const std::vector<std::string>& arguments,
                         const std::string& input = "", const std::filesystem::path& directory = {});

/// Starts a program, sends it a signal while it waits for more of its standard input, and returns its exit status as
/// in `ProgramResult`. It has begun to read by then: `input` must be longer than a pipe holds.
int SignalProgramWhileItReads(const std::string& path, const std::vector<std::string>& arguments,
                              const std::string& input, int signalNumber,
                              const std::filesystem::path& directory);

/// A new empty directory that vanishes with the object.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  const std::filesystem::path& path() const { return path_; }

  /// The full name of a file in it.
  std::string File(const std::string& name) const { return (path_ / name).string(); }

  /// Writes a file and returns its full name.
  std::string Write(const std::string& name, const std::string& text) const;

  /// Names and contents of everything in it; of anything but a regular file the contents are left out.
  std::map<std::string, std::string> Contents() const;

 private:
  std::filesystem::path path_;
};

/// The contents of a file; empty when it cannot be read.
std::string FileText(const std::filesystem::path& path);

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_PROGRAM_RUNNER_H_
