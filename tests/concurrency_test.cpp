// Every function of the library from several threads at once, on shared inputs: no result differs from that of a single
// thread. To be run under the thread sanitizer as well.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "map_utils/internal/polygon.h"
#include "map_utils/internal/segment_lengths.h"
#include "support/every_call.h"

namespace {

using testsupport::CallInputs;
using testsupport::CallOutputs;
using testsupport::LibraryCall;
using testsupport::LibraryCalls;
using testsupport::ManyCallInputs;

constexpr std::size_t kThreadCount = 4;

// All threads begin at the same moment, so that they meet.
template <class Body>
void RunInThreads(Body body) {
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreadCount; ++thread) {
    threads.emplace_back([&body, started, thread] {
      started.wait();
      body(thread);
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
}

// Digests of all calls on one input, the first call being number `first`, in the order of the table.
std::vector<std::uint64_t> DigestsOf(const CallInputs& in, std::size_t first) {
  const std::vector<LibraryCall>& calls = LibraryCalls();
  std::vector<std::uint64_t> digests(calls.size());
  CallOutputs out;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const std::size_t call = (first + i) % calls.size();
    out.Clear();
    calls[call].run(in, out);
    digests[call] = out.Digest();
  }
  return digests;
}

// Comes first in this program, before anything else has called the library: the threads choose the instruction set of
// the vector kernels while others already use it.
TEST(Concurrency, TheFirstCallsMayCoincide) {
  const std::vector<LibraryCall>& calls = LibraryCalls();
  tarvo::GeoCoordinate corner(7.5, 47.5);
  testsupport::Line line;
  for (int i = 0; i < 40; ++i) {
    line.push_back(corner);
    corner.longitude += 1e-4;
    corner.latitude += i % 2 == 0 ? 1e-4 : -1e-4;
  }
  const tarvo::GeoCoordinate inside(7.5005, 47.50005);
  for (int round = 0; round < 100; ++round) {
    // From the second round on: the state of a program that has called nothing yet.
    if (round > 0) {
      vorel::internal::ForceSegmentKernel(nullptr);
      vorel::internal::ForceLocateInPolygon(nullptr);
    }
    std::vector<double> lengths(kThreadCount);
    std::vector<int> containments(kThreadCount);
    RunInThreads([&](std::size_t thread) {
      using Algorithm = vorel::VorelGeometryAlgorithm;
      lengths[thread] = Algorithm::GetDistance(line.data(), static_cast<unsigned>(line.size()), 0, 40);
      containments[thread] = Algorithm::IsPointInPolygon(line, inside) ? 1 : 0;
    });
    double expected = 0.0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) expected = expected + line[i].DistanceTo(line[i + 1]);
    ASSERT_EQ(lengths, std::vector<double>(kThreadCount, expected)) << "round " << round;
    ASSERT_EQ(containments, std::vector<int>(kThreadCount, containments[0])) << "round " << round;
  }
  EXPECT_GE(calls.size(), 60u);
}

TEST(Concurrency, AllFunctionsAgreeWithASingleThread) {
  const std::vector<CallInputs> inputs = ManyCallInputs();
  std::vector<std::vector<std::uint64_t>> expected;
  for (const CallInputs& in : inputs) expected.push_back(DigestsOf(in, 0));

  std::mutex failuresMutex;
  std::vector<std::string> failures;
  const std::size_t callCount = LibraryCalls().size();
  RunInThreads([&](std::size_t thread) {
    for (std::size_t round = 0; round < 2; ++round) {
      for (std::size_t i = 0; i < inputs.size(); ++i) {
        // Each thread starts elsewhere in the table and goes through the inputs in step with the others.
        const std::size_t first = thread * callCount / kThreadCount + round;
        const std::vector<std::uint64_t> digests = DigestsOf(inputs[i], first);
        for (std::size_t call = 0; call < callCount; ++call) {
          if (digests[call] == expected[i][call]) continue;
          const std::lock_guard<std::mutex> lock(failuresMutex);
          failures.push_back(std::string(LibraryCalls()[call].function) + " on input " + std::to_string(i));
        }
      }
    }
  });
  for (const std::string& failure : failures) ADD_FAILURE() << failure;
}

// Would the test above see a wrong result? Different inputs must give different digests.
TEST(Concurrency, DigestsTellResultsApart) {
  const std::vector<CallInputs> inputs = ManyCallInputs();
  const std::vector<LibraryCall>& calls = LibraryCalls();
  for (std::size_t call = 0; call < calls.size(); ++call) {
    if (std::string(calls[call].function) == "Get20PixelDistanceOnePixel") continue;
    bool differs = false;
    CallOutputs first;
    calls[call].run(inputs[0], first);
    for (const CallInputs& in : inputs) {
      CallOutputs out;
      calls[call].run(in, out);
      differs = differs || out.Digest() != first.Digest();
    }
    EXPECT_TRUE(differs) << calls[call].function;
  }
}

}  // namespace
