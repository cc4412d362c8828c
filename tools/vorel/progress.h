#ifndef VOREL_TOOLS_VOREL_PROGRESS_H_
#define VOREL_TOOLS_VOREL_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace vorel::tool {

/// One line on standard error that says how far a long run is. Silent when standard error is not a terminal, and
/// during the first seconds. The line is wiped when the object goes, so that a message can follow.
class Progress {
 public:
  /// @param totalBytes  of the input; 0 when it is not known
  explicit Progress(std::uint64_t totalBytes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// To be called often; looks at the clock once in a while.
  void Update(std::uint64_t bytesDone, std::uint64_t linesDone);

 private:
  using Clock = std::chrono::steady_clock;

  const bool enabled_;
  const std::uint64_t totalBytes_;
  Clock::time_point nextReport_;
  unsigned callsUntilLook_ = 0;
  bool shown_ = false;
};

/// One line on standard error for what a user may want to know about a run that went well.
void PrintNote(const std::string& note);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_PROGRESS_H_
