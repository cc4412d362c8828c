#ifndef VOREL_TOOLS_VOREL_OUTPUT_TARGET_H_
#define VOREL_TOOLS_VOREL_OUTPUT_TARGET_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/vorel/spool.h"

namespace vorel::tool {

class TextSource;

/// A place that a command writes to, all or nothing. A file is written under a temporary name in its own directory
/// and takes its real name in `Publish`; standard output and anything that is not a regular file (a device, a pipe)
/// gets its first byte in `Publish`. Destroyed unpublished, by an exception or by a signal that ends the program
/// (see `RemoveTemporaryFilesOnSignals`), it leaves nothing behind.
class OutputTarget {
 public:
  /// Opens the temporary file, so that an unwritable place is found before the work is done.
  ///
  /// @param option  how the user calls it, such as "--out"; used in messages
  /// @param path    the file; "-" for standard output. A symbolic link is followed: what it points to is replaced,
  ///                the link stays.
  OutputTarget(std::string option, const std::string& path);
  OutputTarget(const OutputTarget&) = delete;
  OutputTarget& operator=(const OutputTarget&) = delete;
  ~OutputTarget();

  void Write(std::string_view text);

  /// After the last `Write`: flushes, so that a full disk shows before any target is published.
  void Finish();

  /// After `Finish`: the texts appear under their names. What may still fail goes first: devices and pipes, then
  /// standard output; nothing but renaming is left after that.
  /// @param targets  null pointers are passed over
  static void Publish(const std::vector<OutputTarget*>& targets);

  /// Throws `BadInput` when this is the file that `source` reads, by whatever name, link or redirection.
  void RefuseSameFileAs(const TextSource& source) const;

  /// Throws `BadInput` when both write to one file.
  void RefuseSameFileAs(const OutputTarget& other) const;

 private:
  enum class Kind { kSpecialFile, kStandardOutput, kFile };  // in the order of publishing

  void Flush();
  void PublishOne();
  std::string Label() const;

  std::string option_;
  std::string givenPath_;
  std::string resolvedPath_;   // links followed; kFile and kSpecialFile
  std::string temporaryPath_;  // kFile, until it is published
  Kind kind_ = Kind::kFile;
  int descriptor_ = -1;
  int signalSlot_ = -1;
  std::string buffer_;
  Spool spool_;
};

/// From here on SIGINT, SIGTERM, SIGHUP and SIGPIPE first remove the temporary files of all targets, then end the
/// program as they always do; a file-size limit is reported as a failed write instead of ending the program.
void RemoveTemporaryFilesOnSignals();

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_OUTPUT_TARGET_H_
