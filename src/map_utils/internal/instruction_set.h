#ifndef VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_
#define VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_

namespace vorel {
namespace internal {

/// Whether the machine at hand runs AVX2. May be asked at any time, also from constructors of static objects.
inline bool HasAvx2() {
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") != 0;
#else
  return false;
#endif
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_INSTRUCTION_SET_H_
