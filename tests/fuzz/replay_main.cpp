// Runs a fuzz target over files instead of under a fuzzer, so that any compiler can replay them.
// Usage: <target> FILE_OR_FOLDER...

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz_target.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i])) files.push_back(entry.path());
    } else {
      files.emplace_back(argv[i]);
    }
  }
  if (files.empty()) {
    std::fprintf(stderr, "no input files\n");
    return 2;
  }
  std::sort(files.begin(), files.end());
  for (const std::filesystem::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> content((std::istreambuf_iterator<char>(stream)),
                                    std::istreambuf_iterator<char>());
    if (!stream) {
      std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
      return 2;
    }
    // Named beforehand: a failing target aborts.
    std::fprintf(stderr, "%s\n", file.filename().c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
  }
  std::printf("%zu inputs replayed\n", files.size());
  return 0;
}
