#ifndef VOREL_TESTS_REFERENCE_PROJECTION_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_PROJECTION_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twins of the projection functions: the same results to the last bit. Position codes: -1 before a
// segment's first point, 0 within, 1 beyond its second point.
namespace reference {

/// `pos` onto the line through `start` and `end`; neither `foot` nor `ratio` is clamped.
int ProjectionPosToLine(const tarvo::GeoCoordinateZ& start, const tarvo::GeoCoordinateZ& end,
                        const tarvo::GeoCoordinateZ& pos, tarvo::GeoCoordinateZ& foot, double& ratio);

/// Walk from `segmentIndex` toward the side on which `pos` falls. `segmentIndex` and `ratio` follow the walk, also
/// when it ends in false.
bool ProjectionPosToLines(const tarvo::GeoCoordinateZ& pos, const std::vector<tarvo::GeoCoordinateZ>& line,
                          int& segmentIndex, int& resultIndex, double& ratio);

/// Nearest segment from `startIndex` on.
bool ProjectionPosToLinesDistance(const tarvo::GeoCoordinateZ& pos,
                                  const std::vector<tarvo::GeoCoordinateZ>& line, int& startIndex,
                                  int& resultIndex, double& ratio, double acceptDistance, double maxDistance,
                                  int maxFarSegments);

/// The same with a filter on the segments' own headings.
bool ProjectionPosToLinesDistanceOrientation(const tarvo::GeoCoordinateZ& pos, double heading,
                                             const std::vector<tarvo::GeoCoordinateZ>& line, int& startIndex,
                                             int& resultIndex, double& ratio, double acceptDistance,
                                             double maxDistance, double headingTolerance, int maxFarSegments);

/// Position of `pos` on the segment a-b by distances alone; `ratio` is written only for code 0.
int PosInAB(const tarvo::GeoCoordinateZ& pos, const tarvo::GeoCoordinateZ& a, const tarvo::GeoCoordinateZ& b,
            double& ratio);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_PROJECTION_REFERENCE_H_
