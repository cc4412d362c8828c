#ifndef VOREL_BASE_PRECONDITION_H_
#define VOREL_BASE_PRECONDITION_H_

// VOREL_PRECONDITION(condition): states what a function leaves unchecked by design. In builds with
// VOREL_CHECK_PRECONDITIONS (the debug preset) a broken one names itself on standard error and aborts; otherwise
// the condition is not evaluated. Not assert(): a client's build without NDEBUG must not abort in here.
#ifndef VOREL_CHECK_PRECONDITIONS
#define VOREL_CHECK_PRECONDITIONS 0
#endif

#if VOREL_CHECK_PRECONDITIONS
#include <cstdio>
#include <cstdlib>
#define VOREL_PRECONDITION(condition)                                                                       \
  ((condition) ? static_cast<void>(0)                                                                       \
               : (std::fprintf(stderr, "%s:%d: precondition broken: %s\n", __FILE__, __LINE__, #condition), \
                  std::abort()))
#else
#define VOREL_PRECONDITION(condition) static_cast<void>(sizeof((condition) ? 1 : 0))
#endif

#endif  // VOREL_BASE_PRECONDITION_H_
