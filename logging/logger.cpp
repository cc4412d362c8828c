#include "base/strict_floating_point.h"

#include "logging/logger.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

#include "logging/record.h"
#include "logging/sink.h"

namespace plog {
namespace {

using SinkList = std::vector<std::shared_ptr<Sink>>;

// A logger's place. `TestLogLevel` reads places without a lock, so they are never freed or unlinked; an unused one
// serves the next logger of its bucket. Id and minimum level share one word: a reader never sees the id of one
// logger with the level of another.
struct Slot {
  Slot(std::uint64_t firstWord, Slot* nextSlot, std::shared_ptr<const SinkList> firstSinks)
      : word(firstWord), next(nextSlot), sinks(std::move(firstSinks)) {}

  std::atomic<std::uint64_t> word;  // written under the registry lock only
  Slot* const next;
  std::shared_ptr<const SinkList> sinks;  // under the registry lock; the list itself never changes
};

// Ids are small numbers, given out in sequence: with their remainder as the bucket, a thousand loggers are all
// found at the first look.
constexpr std::uint32_t kBucketCount = 1024;

// Constant-initialised and trivially destroyed, so that the test works before main and during exit.
std::array<std::atomic<Slot*>, kBucketCount> bucketHeads{};

// Never destroyed, for the same reason. No sink is called, and none destroyed, under this lock.
std::mutex& RegistryMutex() {
  static std::mutex& mutex = *new std::mutex;
  return mutex;
}

std::uint32_t BucketOf(unsigned instanceId) {
  return instanceId % kBucketCount;
}

// Maps the order of int to the order of unsigned.
std::uint32_t OrderedLevel(LogLevel level) {
  return static_cast<std::uint32_t>(level) ^ 0x80000000u;
}

std::uint64_t Word(unsigned instanceId, LogLevel minimumLevel) {
  return std::uint64_t{instanceId} << 32 | OrderedLevel(minimumLevel);
}

std::uint32_t IdOf(std::uint64_t word) {
  return static_cast<std::uint32_t>(word >> 32);
}

bool Accepts(std::uint64_t word, LogLevel level) {
  return OrderedLevel(level) >= static_cast<std::uint32_t>(word);
}

// Marks a slot as unused: all 2^32 ids and all 2^32 levels being valid, it is an id that belongs in another bucket.
std::uint64_t UnusedWord(std::uint32_t bucket) {
  return Word(bucket ^ 1u, LogLevel{0});
}

Slot* FirstSlot(std::uint32_t bucket) {
  return bucketHeads[bucket].load(std::memory_order_acquire);
}

// The slot with this id, or null.
Slot* FindSlot(unsigned instanceId) {
  for (Slot* slot = FirstSlot(BucketOf(instanceId)); slot != nullptr; slot = slot->next) {
    if (IdOf(slot->word.load(std::memory_order_acquire)) == instanceId) return slot;
  }
  return nullptr;
}

// The sinks that the calling thread is inside of, innermost first.
struct SinkAtWork {
  const Sink* sink;
  const SinkAtWork* outer;
};
thread_local const SinkAtWork* sinksAtWork = nullptr;

// Four sinks inside each other are enough for any honest use, and keep sinks that all log from calling each other
// in every possible order.
constexpr int kDeepestNesting = 4;

// Whether the calling thread may enter `sink`: not if it is inside of it already, or nested too deep.
bool MayEnter(const Sink& sink) {
  int depth = 0;
  for (const SinkAtWork* frame = sinksAtWork; frame != nullptr; frame = frame->outer) {
    if (frame->sink == &sink || ++depth == kDeepestNesting) return false;
  }
  return true;
}

void WriteTo(Sink& sink, const Record& record) noexcept {
  if (!MayEnter(sink)) return;
  const SinkAtWork frame{&sink, sinksAtWork};
  sinksAtWork = &frame;
  try {
    sink.Write(record);
  } catch (...) {
    // Logging never reports failure to the code that logs.
  }
  sinksAtWork = frame.outer;
}

}  // namespace

bool Logger::TestLogLevel(unsigned instanceId, LogLevel level) noexcept {
  for (const Slot* slot = FirstSlot(BucketOf(instanceId)); slot != nullptr; slot = slot->next) {
    const std::uint64_t word = slot->word.load(std::memory_order_acquire);
    if (IdOf(word) == instanceId) return Accepts(word, level);
  }
  return false;
}

bool Logger::Register(unsigned instanceId, LogLevel minimumLevel, std::vector<std::shared_ptr<Sink>> sinks) {
  SinkList distinct;
  for (std::shared_ptr<Sink>& sink : sinks) {
    const bool known = std::find(distinct.begin(), distinct.end(), sink) != distinct.end();
    if (sink != nullptr && !known) distinct.push_back(std::move(sink));
  }
  auto list = std::make_shared<const SinkList>(std::move(distinct));

  const std::uint32_t bucket = BucketOf(instanceId);
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  if (FindSlot(instanceId) != nullptr) return false;
  for (Slot* slot = FirstSlot(bucket); slot != nullptr; slot = slot->next) {
    if (slot->word.load(std::memory_order_relaxed) != UnusedWord(bucket)) continue;
    slot->sinks = std::move(list);
    slot->word.store(Word(instanceId, minimumLevel), std::memory_order_release);
    return true;
  }
  Slot* const added = new Slot(Word(instanceId, minimumLevel), FirstSlot(bucket), std::move(list));
  bucketHeads[bucket].store(added, std::memory_order_release);
  return true;
}

bool Logger::Unregister(unsigned instanceId) {
  std::shared_ptr<const SinkList> released;  // outlives the lock: a sink's destructor may log
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  Slot* const slot = FindSlot(instanceId);
  if (slot == nullptr) return false;
  slot->word.store(UnusedWord(BucketOf(instanceId)), std::memory_order_release);
  released = std::move(slot->sinks);
  return true;
}

bool Logger::SetMinimumLevel(unsigned instanceId, LogLevel minimumLevel) {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  Slot* const slot = FindSlot(instanceId);
  if (slot == nullptr) return false;
  slot->word.store(Word(instanceId, minimumLevel), std::memory_order_release);
  return true;
}

bool Logger::AddSink(unsigned instanceId, const std::shared_ptr<Sink>& sink) {
  if (sink == nullptr) return false;
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  Slot* const slot = FindSlot(instanceId);
  if (slot == nullptr) return false;
  const SinkList& current = *slot->sinks;
  if (std::find(current.begin(), current.end(), sink) != current.end()) return false;
  SinkList longer = current;
  longer.push_back(sink);
  slot->sinks = std::make_shared<const SinkList>(std::move(longer));
  return true;
}

bool Logger::RemoveSink(unsigned instanceId, const std::shared_ptr<Sink>& sink) {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  Slot* const slot = FindSlot(instanceId);
  if (slot == nullptr) return false;
  SinkList shorter = *slot->sinks;
  const auto found = std::find(shorter.begin(), shorter.end(), sink);
  if (found == shorter.end()) return false;
  shorter.erase(found);
  slot->sinks =
      std::make_shared<const SinkList>(std::move(shorter));  // no sink dies here: the caller holds it
  return true;
}

void Logger::Submit(const Record& record) noexcept {
  try {
    std::shared_ptr<const SinkList> sinks;
    {
      const std::lock_guard<std::mutex> lock(RegistryMutex());
      const Slot* const slot = FindSlot(record.instanceId);
      // Tested again: the level may have changed since, or the record may have been made without asking.
      if (slot == nullptr || !Accepts(slot->word.load(std::memory_order_relaxed), record.level)) return;
      sinks = slot->sinks;
    }
    for (const std::shared_ptr<Sink>& sink : *sinks) WriteTo(*sink, record);
  } catch (...) {
    // Only the lock can fail here. Logging never reports failure to the code that logs.
  }
}

}  // namespace plog
