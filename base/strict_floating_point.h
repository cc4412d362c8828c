#ifndef VOREL_BASE_STRICT_FLOATING_POINT_H_
#define VOREL_BASE_STRICT_FLOATING_POINT_H_

// Included first by every source of the library and by no installed header: from here to the end of the file each
// + - * / and sqrt is rounded by itself, so that a source copied into any build gives the same bits on every
// compiler and architecture. A fused multiply-add rounds once where two roundings are meant; the sign of a
// side-of-line value near zero can hang on that difference.
#if defined(__clang__)
#pragma STDC FP_CONTRACT OFF
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#elif defined(_MSC_VER)
#pragma fp_contract(off)
#endif

#include <cfloat>
#include <limits>

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) ||             \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__) || \
    defined(_M_FP_FAST)
#error "This library needs exact IEEE arithmetic: build it without -ffast-math and without any of its parts."
#endif
#if FLT_EVAL_METHOD != 0
#error "This library needs double arithmetic without excess precision (on 32-bit x86: -msse2 -mfpmath=sse)."
#endif
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559,
              "float and double must be IEEE 754 binary32 and binary64");

#endif  // VOREL_BASE_STRICT_FLOATING_POINT_H_
