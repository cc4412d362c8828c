// Linked into the tests of every function that measures whole lines: runs them with the form of the segment lengths that
// the environment variable VOREL_TEST_SEGMENT_LANES names (1, 2 or 4 at a time), so that each form goes through every
// input of the suite. Without the variable the library chooses, as it does for its users.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "map_utils/internal/segment_lengths.h"

namespace {

class ForcedSegmentKernel : public testing::Environment {
 public:
  void SetUp() override {
    const char* lanes = std::getenv("VOREL_TEST_SEGMENT_LANES");
    if (lanes == nullptr) return;
    const auto* kernel = vorel::internal::FindSegmentKernel(std::strtoul(lanes, nullptr, 10));
    if (kernel == nullptr) GTEST_SKIP() << "skipped: this machine does not measure " << lanes << " at a time";
    vorel::internal::ForceSegmentKernel(kernel);
    std::cout << "segment lengths: " << lanes << " at a time\n";
  }
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new ForcedSegmentKernel);

}  // namespace
