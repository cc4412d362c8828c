#include "logging/elapsed_timer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/allocation_counter.h"

namespace {

using std::chrono::nanoseconds;
using std::chrono::steady_clock;
using vorel::logging::SetElapsedTimeListener;
using vorel::logging::VorelElapsedTimer;

static_assert(!std::is_copy_constructible<VorelElapsedTimer>::value &&
                  !std::is_move_constructible<VorelElapsedTimer>::value,
              "a copy would report the scope twice");
static_assert(std::is_constructible<VorelElapsedTimer, std::string, std::string>::value,
              "two strings by value");

struct Measurement {
  std::string owner;
  std::string name;
  nanoseconds elapsed;
};

class ElapsedTimer : public testing::Test {
 protected:
  ~ElapsedTimer() override { SetElapsedTimeListener(nullptr); }

  void Listen() {
    SetElapsedTimeListener([this](const std::string& owner, const std::string& name, nanoseconds elapsed) {
      const std::lock_guard<std::mutex> lock(mutex_);
      measurements_.push_back({owner, name, elapsed});
    });
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Measurement& measurement : measurements_) names.push_back(measurement.name);
    return names;
  }

  std::mutex mutex_;
  std::vector<Measurement> measurements_;
};

// The clock never runs backwards, so these bounds hold on any machine under any load.
TEST_F(ElapsedTimer, MeasuresFromConstructionToDestruction) {
  Listen();
  nanoseconds inside{};
  const auto outerStart = steady_clock::now();
  {
    const VorelElapsedTimer timer("Demo", "Scope");
    const auto innerStart = steady_clock::now();
    while (steady_clock::now() - innerStart < std::chrono::milliseconds(2)) {
    }
    inside = steady_clock::now() - innerStart;
  }
  const nanoseconds outside = steady_clock::now() - outerStart;
  ASSERT_EQ(measurements_.size(), 1u);
  EXPECT_EQ(measurements_[0].owner, "Demo");
  EXPECT_EQ(measurements_[0].name, "Scope");
  EXPECT_GE(measurements_[0].elapsed, inside);
  EXPECT_LE(measurements_[0].elapsed, outside);
}

TEST_F(ElapsedTimer, KeepsCopiesOfItsStrings) {
  Listen();
  std::string owner(100, 'o');
  std::string name;
  {
    const VorelElapsedTimer timer(owner, name);
    owner = "changed";
    name = "changed";
  }
  ASSERT_EQ(measurements_.size(), 1u);
  EXPECT_EQ(measurements_[0].owner, std::string(100, 'o'));
  EXPECT_EQ(measurements_[0].name, "");
}

int ReturnsEarly(bool early) {
  const VorelElapsedTimer timer("Demo", early ? "early" : "late");
  if (early) return 1;
  return 2;
}

TEST_F(ElapsedTimer, ReportsHoweverTheScopeIsLeft) {
  Listen();
  ReturnsEarly(true);
  ReturnsEarly(false);
  EXPECT_THROW(
      {
        const VorelElapsedTimer timer("Demo", "thrown");
        throw std::out_of_range("as checked access does");
      },
      std::out_of_range);
  EXPECT_EQ(Names(), (std::vector<std::string>{"early", "late", "thrown"}));
}

TEST_F(ElapsedTimer, NestedScopesReportFromTheInnermostOut) {
  Listen();
  {
    const VorelElapsedTimer outer("Demo", "outer");
    const VorelElapsedTimer inner("Demo", "inner");
  }
  ASSERT_EQ(Names(), (std::vector<std::string>{"inner", "outer"}));
  EXPECT_LE(measurements_[0].elapsed, measurements_[1].elapsed);
}

TEST_F(ElapsedTimer, ReportsOnlyWhatWasListenedToFromStartToEnd) {
  { const VorelElapsedTimer timer("Demo", "no listener"); }
  {
    const VorelElapsedTimer timer("Demo", "listener comes too late");
    Listen();
  }
  {
    const VorelElapsedTimer timer("Demo", "listener goes too early");
    SetElapsedTimeListener(nullptr);
  }
  EXPECT_TRUE(measurements_.empty());
  Listen();
  { const VorelElapsedTimer timer("Demo", "reported"); }
  EXPECT_EQ(Names(), std::vector<std::string>{"reported"});
}

TEST_F(ElapsedTimer, TheListenerAtTheEndGetsTheReport) {
  int first = 0;
  int second = 0;
  SetElapsedTimeListener([&first](const std::string&, const std::string&, nanoseconds) { ++first; });
  {
    const VorelElapsedTimer timer("Demo", "Scope");
    SetElapsedTimeListener([&second](const std::string&, const std::string&, nanoseconds) { ++second; });
  }
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

TEST_F(ElapsedTimer, WhatTheListenerThrowsStopsThere) {
  int calls = 0;
  SetElapsedTimeListener([&calls](const std::string&, const std::string&, nanoseconds) {
    ++calls;
    throw std::runtime_error("the listener failed");
  });
  EXPECT_NO_THROW({ const VorelElapsedTimer timer("Demo", "one"); });
  try {
    const VorelElapsedTimer timer("Demo", "two");
    throw 42;  // the listener throws while this unwinds
  } catch (const int number) {
    EXPECT_EQ(number, 42);
  }
  EXPECT_EQ(calls, 2) << "a listener that has thrown is called again";
}

TEST_F(ElapsedTimer, TimersInsideTheListenerAreNotReported) {
  int calls = 0;
  SetElapsedTimeListener([&calls](const std::string&, const std::string&, nanoseconds) {
    ++calls;
    const VorelElapsedTimer timer("Demo", "inside the listener");
  });
  { const VorelElapsedTimer timer("Demo", "outside"); }
  EXPECT_EQ(calls, 1);
  { const VorelElapsedTimer timer("Demo", "outside"); }
  EXPECT_EQ(calls, 2);
}

TEST_F(ElapsedTimer, TheListenerMayReplaceItself) {
  struct State {
    int calls = 0;
    std::string seen;
  };
  const auto state = std::make_shared<State>();
  SetElapsedTimeListener([state](const std::string&, const std::string& name, nanoseconds) {
    ++state->calls;
    SetElapsedTimeListener(nullptr);
    state->seen = name;  // this function object still lives
  });
  { const VorelElapsedTimer timer("Demo", "one"); }
  { const VorelElapsedTimer timer("Demo", "two"); }
  EXPECT_EQ(state->calls, 1);
  EXPECT_EQ(state->seen, "one");
  EXPECT_EQ(state.use_count(), 1) << "the replaced listener is gone";
}

TEST_F(ElapsedTimer, AListenerThatCannotBeStoredChangesNothing) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  Listen();
  vorel::logging::ElapsedTimeListener another = [](const std::string&, const std::string&, nanoseconds) {};
  {
    const vorel::test::AllocationLimit limit(0);
    EXPECT_THROW(SetElapsedTimeListener(std::move(another)), std::bad_alloc);
  }
  { const VorelElapsedTimer timer("Demo", "reported"); }
  EXPECT_EQ(Names(), std::vector<std::string>{"reported"});
}

TEST_F(ElapsedTimer, AllocatesNothingOfItsOwn) {
  if (!vorel::test::CanCountAllocations()) GTEST_SKIP() << vorel::test::kCannotCountAllocations;
  std::string owner(100, 'o');
  std::string name(100, 'n');
  for (const bool isListenedTo : {false, true}) {
    if (isListenedTo) SetElapsedTimeListener([](const std::string&, const std::string&, nanoseconds) {});
    std::string movedOwner = owner;
    std::string movedName = name;
    const vorel::test::AllocationCounter allocations;
    { const VorelElapsedTimer timer(std::move(movedOwner), std::move(movedName)); }
    EXPECT_EQ(allocations.Count(), 0u) << isListenedTo;
  }
}

TEST_F(ElapsedTimer, ListenersMayChangeWhileThreadsMeasure) {
  constexpr int kThreads = 8;
  constexpr int kScopes = 2000;
  struct Listener {
    ~Listener() { alive = 0; }
    int alive = 12345;
  };
  std::atomic<int> total{0};
  std::atomic<bool> done{false};
  const auto listenerOf = [&total](std::shared_ptr<Listener> listener) {
    return [&total, listener](const std::string& owner, const std::string& name, nanoseconds elapsed) {
      EXPECT_EQ(listener->alive, 12345);
      EXPECT_EQ(owner + name, "DemoScope");
      EXPECT_GE(elapsed.count(), 0);
      ++total;
    };
  };
  SetElapsedTimeListener(listenerOf(std::make_shared<Listener>()));
  std::thread changer([&] {
    while (!done.load()) SetElapsedTimeListener(listenerOf(std::make_shared<Listener>()));
  });
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < kScopes; ++i) const VorelElapsedTimer timer("Demo", "Scope");
    });
  }
  for (std::thread& thread : threads) thread.join();
  done = true;
  changer.join();
  // There was a listener at every moment, so nothing is lost.
  EXPECT_EQ(total.load(), kThreads * kScopes);
}

}  // namespace
