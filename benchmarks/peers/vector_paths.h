#ifndef VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_
#define VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_

#include <functional>
#include <string>
#include <vector>

#include "map_utils/internal/polygon.h"
#include "map_utils/internal/segment_lengths.h"
#include "map_utils/internal/segment_projection.h"

namespace peers {

/// One way in which the library can be made to compute.
struct VectorPath {
  std::string candidate;         ///< its name in the table
  std::function<void()> choose;  ///< called before each measurement
};

/// The paths to measure, all in one run: the one that the library picks for this machine stands first, as "vorel"; on a
/// machine with AVX2 the path of one without follows.
inline std::vector<VectorPath> VectorPaths() {
  using namespace vorel::internal;
  std::vector<VectorPath> paths = {{"vorel", [] {
                                      ForceSegmentKernel(nullptr);
                                      ForceLocateInPolygon(nullptr);
                                      ForceMeasureSegments(nullptr);
                                    }}};
  if (FindSegmentKernel(4) != nullptr) {
    paths.push_back({"vorel, SSE2", [] {
                       ForceSegmentKernel(FindSegmentKernel(2));
                       ForceLocateInPolygon(FindLocateInPolygon(2));
                       ForceMeasureSegments(FindMeasureSegments(2));
                     }});
  }
  return paths;
}

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_
