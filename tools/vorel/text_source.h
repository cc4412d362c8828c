#ifndef VOREL_TOOLS_VOREL_TEXT_SOURCE_H_
#define VOREL_TOOLS_VOREL_TEXT_SOURCE_H_

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/vorel/spool.h"

namespace vorel::tool {

/// The bytes of one input: a file, standard input, or a text in memory. Opened on construction; errors are thrown as
/// `BadInput` that names the input.
class TextSource {
 public:
  /// @param path  a file, or "-" for standard input
  explicit TextSource(const std::string& path);

  /// A text that is already there, for tests and fuzzing; `name` stands for the file in messages. `text` is copied.
  static TextSource FromMemory(const std::string& name, const std::string& text);

  TextSource(TextSource&& other) noexcept;
  TextSource& operator=(TextSource&&) = delete;
  ~TextSource();

  /// Up to `capacity` bytes into `buffer`; fewer than `capacity` only at the end.
  std::size_t Read(char* buffer, std::size_t capacity);

  /// Makes `Rewind` possible for an input that cannot seek, such as a pipe: from here on everything read is also kept
  /// (in memory, beyond some megabytes in an unnamed temporary file). Must be called before the first `Read`.
  void KeepForSecondPass();

  /// Ends what `KeepForSecondPass` began; for a reader that holds all it needs.
  void StopKeeping();

  /// Starts again at the first byte. An input that cannot seek needs `KeepForSecondPass` and must have been read to
  /// its end.
  void Rewind();

  /// For messages and titles: the path as it was given, "standard input" for "-".
  const std::string& name() const { return name_; }

  /// Size in bytes when it is known beforehand, otherwise 0.
  std::uint64_t sizeBytes() const { return sizeBytes_; }

  /// Device and inode, to tell whether two names mean one file. False for a text in memory.
  bool GetIdentity(struct stat& identity) const;

 private:
  TextSource() = default;

  std::string name_;
  int descriptor_ = -1;
  bool ownsDescriptor_ = false;
  bool seekable_ = false;
  bool keeps_ = false;
  bool readsKept_ = false;  // the second pass over what was kept
  std::uint64_t sizeBytes_ = 0;
  std::uint64_t keptOffset_ = 0;
  Spool kept_;
};

/// The input that the user names on the command line.
/// @param path      a file, or "-" for standard input, which is refused when it is a terminal
/// @param argument  how the command's help calls the input, such as "LINE"
TextSource OpenInput(const std::string& path, const std::string& argument);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_TEXT_SOURCE_H_
