#ifndef VOREL_TOOLS_VOREL_SPOOL_H_
#define VOREL_TOOLS_VOREL_SPOOL_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vorel::tool {

/// A text of any length that is written once and read back: in memory while it is short, beyond that in an unnamed
/// temporary file that vanishes with the process. A full disk is thrown as `BadInput`.
class Spool {
 public:
  void Append(std::string_view text);

  /// Up to `capacity` bytes from `offset` on into `buffer`; 0 at the end.
  std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t capacity);

  /// The whole text in pieces, in order.
  void CopyTo(const std::function<void(std::string_view)>& sink);

  void Clear();

  std::uint64_t sizeBytes() const { return sizeBytes_; }

 private:
  struct FileCloser {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
  };

  void WriteOut();

  std::string memory_;  // what has not gone to the file yet: the end of the text
  std::unique_ptr<std::FILE, FileCloser> file_;
  std::uint64_t fileBytes_ = 0;
  std::uint64_t sizeBytes_ = 0;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_SPOOL_H_
