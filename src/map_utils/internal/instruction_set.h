#ifndef VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_
#define VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <cpuid.h>
#endif

namespace vorel {
namespace internal {

/// Whether the machine at hand runs AVX2. May be asked at any time, also from constructors of static objects.
///
/// Asked of the processor itself: the compilers' own test brings a table of every processor known to them into the
/// library, some 4.5 KB.
inline bool HasAvx2() {
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0) return false;
  constexpr unsigned kAvxAndSavedState = 1u << 27 | 1u << 28;
  if ((ecx & kAvxAndSavedState) != kAvxAndSavedState) return false;
  // The operating system must keep the upper halves of the registers when it switches threads (XCR0, bits 1 and 2).
  unsigned savedLow = 0;
  unsigned savedHigh = 0;
  __asm__ volatile("xgetbv" : "=a"(savedLow), "=d"(savedHigh) : "c"(0));
  constexpr unsigned kVectorRegisters = 6;
  if ((savedLow & kVectorRegisters) != kVectorRegisters) return false;
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & 1u << 5) != 0;
#else
  return false;
#endif
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_
