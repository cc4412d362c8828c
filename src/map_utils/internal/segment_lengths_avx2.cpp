#include "base/strict_floating_point.h"

// The form of the segment lengths for machines with AVX2, compiled for them whatever the flags: four segments at a
// time. Empty on other architectures. All standard headers come before the pragma, for what they define is shared.

#include "map_utils/internal/segment_lengths.h"

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))

#include <immintrin.h>

#define VOREL_KERNEL_FOUR_LANES

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "map_utils/internal/segment_lengths_kernel.h"

#ifdef VOREL_HAVE_SEGMENT_VECTORS
namespace {
constexpr vorel::internal::SegmentKernel kAvx2Kernel =
    vorel::internal::MakeSegmentKernel<vorel::internal::FourLanes>();
}  // namespace
#endif

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif

namespace vorel {
namespace internal {

const SegmentKernel* Avx2SegmentKernel() {
#if defined(VOREL_KERNEL_FOUR_LANES) && defined(VOREL_HAVE_SEGMENT_VECTORS)
  return &kAvx2Kernel;
#else
  return nullptr;
#endif
}

}  // namespace internal
}  // namespace vorel
