#include "base/strict_floating_point.h"

// The form of the segment lengths for machines with AVX2, compiled for them whatever the flags: four segments at a
// time. Without code on other architectures. What it includes before the pragma is shared with other sources and stays
// as they have it.

#include "map_utils/internal/segment_kernel.h"

#if defined(__x86_64__)

#include <immintrin.h>

#define VOREL_FOUR_LANES

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "map_utils/internal/segment_lengths_kernel.h"

namespace {
constexpr vorel::internal::SegmentKernel kAvx2Kernel =
    vorel::internal::MakeSegmentKernel<vorel::internal::FourLanes>();
}  // namespace

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif

namespace vorel {
namespace internal {

const SegmentKernel* Avx2SegmentKernel() {
#if defined(__x86_64__)
  return &kAvx2Kernel;
#else
  return nullptr;
#endif
}

}  // namespace internal
}  // namespace vorel
