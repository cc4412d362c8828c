#ifndef VOREL_BASE_VERSION_H_
#define VOREL_BASE_VERSION_H_

// The one place that holds the version number: CMake and the packages read these three lines.
#define VOREL_VERSION_MAJOR 0
#define VOREL_VERSION_MINOR 1
#define VOREL_VERSION_PATCH 0

#endif  // VOREL_BASE_VERSION_H_
