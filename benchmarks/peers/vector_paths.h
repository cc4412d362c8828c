#ifndef VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_
#define VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_

#include <functional>
#include <string>
#include <vector>

namespace peers {

/// One way in which the library can be made to compute.
struct VectorPath {
  std::string candidate;         ///< its name in the table
  std::function<void()> choose;  ///< called before each measurement; empty when there is nothing to choose
};

/// The paths to measure, all in one run: the one that the library picks for this machine stands first, as "vorel". A
/// further one that can be forced is one more entry here, named "vorel, " and the path.
inline std::vector<VectorPath> VectorPaths() {
  return {{"vorel", {}}};
}

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_VECTOR_PATHS_H_
