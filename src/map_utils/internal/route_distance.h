#ifndef VOREL_MAP_UTILS_INTERNAL_ROUTE_DISTANCE_H_
#define VOREL_MAP_UTILS_INTERNAL_ROUTE_DISTANCE_H_

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vorel {
namespace internal {

/// Signed metres along a route from position B to position A, each given by the vertex that starts its segment and its
/// distance from there. The order of the operations differs between the two directions; 0 where the table ends before.
/// @param cumulative  metres from the route's first vertex to each vertex; not looked at for one and the same vertex
/// @throws std::out_of_range  where `cumulative` is one entry short of the later vertex (deliberate: one entry short
///                            passes the test and throws at the access)
inline double RouteDistance(std::size_t vertexA, double beyondA, std::size_t vertexB, double beyondB,
                            const std::vector<double>& cumulative) {
  if (vertexA == vertexB) return beyondA - beyondB;
  if (cumulative.size() < std::max(vertexA, vertexB)) return 0.0;
  if (vertexA > vertexB) return (beyondA - beyondB) + (cumulative.at(vertexA) - cumulative.at(vertexB));
  return -(((0.0 - beyondA) + beyondB) + (cumulative.at(vertexB) - cumulative.at(vertexA)));
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_ROUTE_DISTANCE_H_
