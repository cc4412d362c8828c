#ifndef VOREL_TESTS_REFERENCE_CONTAINMENT_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_CONTAINMENT_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"

// Plain, slow twins of the point-on-line and point-in-polygon tests: the same results to the last bit.
namespace reference {

/// Box test, then a comparison of products of differences truncated to whole degrees.
bool IsPointOnLineSegment(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b,
                          const tarvo::GeoCoordinate& p);

/// Whether `point` lies within `tolerance` metres of a vertex or, with `checkSegments`, on a segment.
bool IsPointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                       float tolerance, bool checkSegments);

/// The step (from 1) at which the walk matches, -1 for none. A match of vertex 0 is reported as 1.
int PointOnPolyline(const std::vector<tarvo::GeoCoordinate>& line, tarvo::GeoCoordinate point,
                    float tolerance, bool checkSegments);

/// The same test on several polylines: true for the first that matches.
bool IsPointOnPolyline(const std::vector<std::vector<tarvo::GeoCoordinate>>& lines,
                       tarvo::GeoCoordinate point, float tolerance, bool checkSegments);

/// Ray test of one edge; the edge takes part only when the point's latitude lies in its half-open span.
bool PointRayTest(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b, int& crossings);

/// The same without the latitude check.
bool PointRayTestInner(tarvo::GeoCoordinate point, tarvo::GeoCoordinate a, tarvo::GeoCoordinate b,
                       int& crossings);

/// True inside the implicitly closed polygon, at its vertices and where an edge test finds the point on it.
bool IsPointInPolygon(const std::vector<tarvo::GeoCoordinate>& polygon, tarvo::GeoCoordinate point);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_CONTAINMENT_REFERENCE_H_
