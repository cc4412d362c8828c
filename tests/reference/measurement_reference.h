#ifndef VOREL_TESTS_REFERENCE_MEASUREMENT_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_MEASUREMENT_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twins of the length and along-route distance functions: the same results to the last bit.
namespace reference {

/// Length from vertex `from` to vertex `to` - 1; 4294967295 means `count`.
double GetDistance(const tarvo::GeoCoordinate* points, unsigned int count, unsigned int from,
                   unsigned int to);

/// Length from vertex `from` to vertex `to`, clamped to the last one. An empty line is not guarded.
double GetDistanceByVector(const std::vector<tarvo::GeoCoordinateZ>& line, unsigned int from,
                           unsigned int to);
double GetDistanceByVector(const std::vector<tarvo::GeoCoordinate>& line, unsigned int from, unsigned int to);

/// The same without clamping; appends the running sums to `cache`.
double GetDistanceAndCache(std::vector<tarvo::GeoCoordinate> line, unsigned int from, unsigned int to,
                           std::vector<double>& cache);

/// Index of the last value not greater than `target`; 0 when there is none, -2 for no values.
int FindFirstSmallerIndex(std::vector<double> values, double target);

/// Whether position A comes before position B or equals it.
bool IsPointAInFrontOfPointB(int indexA, double offsetA, int indexB, double offsetB);

/// From A forward to B on the line; offset A is cut at the end of its segment. No index is checked.
double DistancePointAAndPointB(std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                               int indexB, double offsetB);

/// From A forward to B by a table of cumulative lengths; a B beyond the table moves to its last vertex.
double DistancePointAAndPointB(const std::vector<double>& cumulative, int indexA, double offsetA, int indexB,
                               double offsetB);

/// From A forward to B on the line, offsets not cut, indices checked.
double DistanceAToBackB(const std::vector<tarvo::GeoCoordinateZ>& line, int indexA, double offsetA,
                        int indexB, double offsetB);

/// Signed distance along the route, positive when A lies beyond B. Throws std::out_of_range when `cumulative`
/// has exactly as many entries as the larger index.
double DistanceOfA2BInRoute(const tarvo::GeoCoordinate& pointA, int indexA,
                            const tarvo::GeoCoordinate& pointB, int indexB,
                            const std::vector<tarvo::GeoCoordinate>& line,
                            const std::vector<double>& cumulative);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_MEASUREMENT_REFERENCE_H_
