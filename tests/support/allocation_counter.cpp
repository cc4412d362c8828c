#include "tests/support/allocation_counter.h"

#include <cstdlib>
#include <new>

// Clang's thread sanitizer comes with an operator new of its own that cannot be replaced.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VOREL_TEST_KEEPS_OPERATOR_NEW 1
#endif
#endif

namespace vorel::test {
namespace {

thread_local std::size_t allocationCount = 0;
thread_local bool isLimited = false;
thread_local std::size_t allowedCount = 0;
thread_local std::size_t refusedCount = 0;

}  // namespace

bool CanCountAllocations() noexcept {
#ifdef VOREL_TEST_KEEPS_OPERATOR_NEW
  return false;
#else
  return true;
#endif
}

std::size_t AllocationCount() noexcept {
  return allocationCount;
}

AllocationLimit::AllocationLimit(std::size_t allowedAllocations) noexcept {
  allowedCount = allowedAllocations;
  refusedCount = 0;
  isLimited = true;
}

AllocationLimit::~AllocationLimit() {
  isLimited = false;
}

std::size_t AllocationLimit::RefusedCount() const noexcept {
  return refusedCount;
}

#ifndef VOREL_TEST_KEEPS_OPERATOR_NEW

namespace {

bool CountAndAllow() noexcept {
  ++allocationCount;
  if (!isLimited) return true;
  if (allowedCount == 0) {
    ++refusedCount;
    return false;
  }
  --allowedCount;
  return true;
}

void* Allocate(std::size_t size) noexcept {
  return CountAndAllow() ? std::malloc(size == 0 ? 1 : size) : nullptr;
}

void* AllocateAligned(std::size_t size, std::align_val_t alignment) noexcept {
  if (!CountAndAllow()) return nullptr;
  const auto step = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(step, size == 0 ? step : (size + step - 1) / step * step);
}

void* OrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

#endif

}  // namespace vorel::test

#ifndef VOREL_TEST_KEEPS_OPERATOR_NEW

using vorel::test::Allocate;
using vorel::test::AllocateAligned;
using vorel::test::OrThrow;

void* operator new(std::size_t size) {
  return OrThrow(Allocate(size));
}
void* operator new[](std::size_t size) {
  return OrThrow(Allocate(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return OrThrow(AllocateAligned(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return OrThrow(AllocateAligned(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateAligned(size, alignment);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}

#endif  // VOREL_TEST_KEEPS_OPERATOR_NEW
