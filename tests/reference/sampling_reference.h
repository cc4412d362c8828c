#ifndef VOREL_TESTS_REFERENCE_SAMPLING_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_SAMPLING_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twins of the fixed-interval sampling functions: the same results to the last bit.
namespace reference {

/// The line after its first `distance` metres; `out` is cleared first of all.
bool ChoosePointsInPolyline(const tarvo::GeoCoordinate* points, unsigned int count, double distance,
                            std::vector<tarvo::GeoCoordinate>& out);

/// A point every `interval` metres; appends to `out`. A NaN interval is not refused.
bool ChoosePointsInPolyline(const std::vector<tarvo::GeoCoordinate>& points, double interval, int maxCount,
                            std::vector<tarvo::GeoCoordinate>& out);

/// The sampler behind it, without argument checks; returns whether `out` has room left.
bool CalcPointsInPolyline(const std::vector<tarvo::GeoCoordinate>& points, double interval, int maxCount,
                          std::vector<tarvo::GeoCoordinate>& out);

/// The first `maxLength` metres of the line; appends to `out`.
bool ChoosePointsInPolylineWithMaxLength(const std::vector<tarvo::GeoCoordinate>& points, double maxLength,
                                         std::vector<tarvo::GeoCoordinate>& out);
bool ChoosePointsInPolylineWithMaxLength(const std::vector<tarvo::GeoCoordinateZ>& points, double maxLength,
                                         std::vector<tarvo::GeoCoordinateZ>& out);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_SAMPLING_REFERENCE_H_
