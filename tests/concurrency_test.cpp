// Every function of the library from several threads at once, on shared inputs: no result differs from that of a single
// thread. To be run under the thread sanitizer as well.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <future>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "map_utils/internal/polygon.h"
#include "map_utils/internal/segment_lengths.h"
#include "map_utils/internal/segment_projection.h"
#include "support/every_call.h"

namespace {

using vorel::test::CallInputs;
using vorel::test::CallOutputs;
using vorel::test::LibraryCall;
using vorel::test::LibraryCalls;
using vorel::test::ManyCallInputs;

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

// Lets threads wait for each other.
class Barrier {
 public:
  void Wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    const std::size_t generation = generation_;
    if (++waiting_ == kThreadCount) {
      waiting_ = 0;
      ++generation_;
      arrived_.notify_all();
      return;
    }
    arrived_.wait(lock, [this, generation] { return generation_ != generation; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::size_t waiting_ = 0;
  std::size_t generation_ = 0;
};

// Comes first in this program, before anything else has called the library: the threads choose the instruction set of
// the vector kernels while others already use it.
TEST(Concurrency, TheFirstCallsMayCoincide) {
  const std::vector<LibraryCall>& calls = LibraryCalls();
  tarvo::GeoCoordinate corner(7.5, 47.5);
  vorel::test::Line line;
  for (int i = 0; i < 40; ++i) {
    line.push_back(corner);
    corner.longitude += 1e-4;
    corner.latitude += i % 2 == 0 ? 1e-4 : -1e-4;
  }
  const tarvo::GeoCoordinate inside(7.5005, 47.50005);
  vorel::test::LineZ lineZ;
  for (const tarvo::GeoCoordinate& point : line) lineZ.emplace_back(point.longitude, point.latitude, 0.0f);
  for (int round = 0; round < 100; ++round) {
    // From the second round on: the state of a program that has called nothing yet.
    if (round > 0) {
      vorel::internal::ForceSegmentKernel(nullptr);
      vorel::internal::ForceLocateInPolygon(nullptr);
      vorel::internal::ForceMeasureSegments(nullptr);
    }
    std::vector<double> lengths(kThreadCount);
    std::vector<int> containments(kThreadCount);
    std::vector<int> nearest(kThreadCount);
    RunInThreads([&](std::size_t thread) {
      using Algorithm = vorel::VorelGeometryAlgorithm;
      lengths[thread] = Algorithm::GetDistance(line.data(), static_cast<unsigned>(line.size()), 0, 40);
      containments[thread] = Algorithm::IsPointInPolygon(line, inside) ? 1 : 0;
      int startIndex = 0;
      double ratio = 0.0;
      Algorithm::ProjectionPosToLinesDistance(lineZ[20], lineZ, startIndex, nearest[thread], ratio, 0.0, 20.0,
                                              99);
    });
    double expected = 0.0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) expected = expected + line[i].DistanceTo(line[i + 1]);
    ASSERT_EQ(lengths, std::vector<double>(kThreadCount, expected)) << "round " << round;
    ASSERT_EQ(containments, std::vector<int>(kThreadCount, containments[0])) << "round " << round;
    ASSERT_EQ(nearest, std::vector<int>(kThreadCount, 19)) << "round " << round;
  }
  EXPECT_GE(calls.size(), 60u);
}

// All threads are in the same function at the same time, each on another of the inputs that they share.
TEST(Concurrency, AllFunctionsAgreeWithASingleThread) {
  const std::vector<CallInputs> inputs = ManyCallInputs();
  const std::vector<LibraryCall>& calls = LibraryCalls();
  std::vector<std::vector<std::uint64_t>> expected(calls.size());
  // Fast functions run so often that no thread is through before the last one has started.
  std::vector<std::size_t> rounds(calls.size());
  for (std::size_t call = 0; call < calls.size(); ++call) {
    for (const CallInputs& in : inputs) {
      CallOutputs out;
      calls[call].run(in, out);
      expected[call].push_back(out.Digest());
    }
    std::chrono::nanoseconds duration = std::chrono::hours(1);
    for (int attempt = 0; attempt < 3; ++attempt) {
      CallOutputs out;
      const auto start = std::chrono::steady_clock::now();
      for (const CallInputs& in : inputs) calls[call].run(in, out);
      duration = std::min<std::chrono::nanoseconds>(duration, std::chrono::steady_clock::now() - start);
    }
    const auto wanted = std::chrono::milliseconds(5) / std::max(duration, std::chrono::nanoseconds(1));
    rounds[call] = 1 + static_cast<std::size_t>(std::min<long long>(wanted, 1000));
  }

  Barrier barrier;
  std::mutex failuresMutex;
  std::set<std::string> failures;
  RunInThreads([&](std::size_t thread) {
    CallOutputs out;
    for (std::size_t call = 0; call < calls.size(); ++call) {
      barrier.Wait();
      for (std::size_t round = 0; round < rounds[call]; ++round) {
        for (std::size_t k = 0; k < inputs.size(); ++k) {
          const std::size_t i = (k + thread * inputs.size() / kThreadCount) % inputs.size();
          out.Clear();
          calls[call].run(inputs[i], out);
          if (out.Digest() == expected[call][i]) continue;
          const std::lock_guard<std::mutex> lock(failuresMutex);
          failures.insert(std::string(calls[call].function) + " on input " + std::to_string(i));
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
