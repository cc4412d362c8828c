#ifndef VOREL_BASE_EXPORT_H_
#define VOREL_BASE_EXPORT_H_

// Marks what a client may link to. Everything else is hidden in a shared library (the project builds with
// -fvisibility=hidden); in a static library the mark does nothing.
#if defined(_WIN32) && defined(VOREL_SHARED)
#ifdef VOREL_BUILDING_LIBRARY
#define VOREL_EXPORT __declspec(dllexport)
#else
#define VOREL_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VOREL_EXPORT __attribute__((visibility("default")))
#else
#define VOREL_EXPORT
#endif

#endif  // VOREL_BASE_EXPORT_H_
