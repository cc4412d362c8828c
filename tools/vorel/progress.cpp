#include "tools/vorel/progress.h"

#include <unistd.h>

#include <cstdio>

#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

constexpr auto kSilentAtFirst = std::chrono::seconds(2);
constexpr auto kBetweenReports = std::chrono::milliseconds(250);
constexpr unsigned kCallsPerLook = 16;
constexpr const char* kWipeLine = "\r\x1b[K";

}  // namespace

Progress::Progress(std::uint64_t totalBytes)
    : enabled_(isatty(STDERR_FILENO) == 1),
      totalBytes_(totalBytes),
      nextReport_(Clock::now() + kSilentAtFirst) {}

Progress::~Progress() {
  if (shown_) std::fputs(kWipeLine, stderr);
}

void Progress::Update(std::uint64_t bytesDone, std::uint64_t linesDone) {
  if (!enabled_ || ++callsUntilLook_ < kCallsPerLook) return;
  callsUntilLook_ = 0;
  const Clock::time_point now = Clock::now();
  if (now < nextReport_) return;
  nextReport_ = now + kBetweenReports;
  std::string text = FixedNumber(static_cast<double>(bytesDone) / 1e6, 1) + " MB read";
  if (totalBytes_ > 0) {
    const double percent = 100.0 * static_cast<double>(bytesDone) / static_cast<double>(totalBytes_);
    text += " (" + FixedNumber(percent, 0) + " %)";
  }
  text += ", " + Counted(static_cast<std::size_t>(linesDone), "line");
  std::fprintf(stderr, "%s%s", kWipeLine, text.c_str());
  std::fflush(stderr);
  shown_ = true;
}

void PrintNote(const std::string& note) {
  std::fprintf(stderr, "vorel: note: %s\n", OneLine(note).c_str());
}

}  // namespace vorel::tool
