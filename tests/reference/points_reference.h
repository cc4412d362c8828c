#ifndef VOREL_TESTS_REFERENCE_POINTS_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_POINTS_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "base/rect.h"

// Plain, slow twins of the point and rectangle functions: the same results to the last bit.
namespace reference {

/// Bounding rectangle; false, and `bound` untouched, for no points. Only a NaN of the first point stays.
bool GetBound(const tarvo::GeoCoordinate* points, unsigned int count,
              tarvo::Rect<tarvo::GeoCoordinate>& bound);

/// The edges belong to the rectangle; a NaN never counts as outside.
bool IsRectContainsPoint(const tarvo::Rect<tarvo::GeoCoordinate>& rect, const tarvo::GeoCoordinate& point);

/// Rectangles that only touch intersect.
bool IsRectIntersectsRect(const tarvo::Rect<tarvo::GeoCoordinate>& first,
                          const tarvo::Rect<tarvo::GeoCoordinate>& second);

/// Whether `other` lies in the degree box around `point` that goes with `distance` metres.
bool IsPointNearOtherOne(const tarvo::GeoCoordinate& point, float distance,
                         const tarvo::GeoCoordinate& other);

/// The point at `ratio`, clamped to [0, 1] (NaN passes), of the way from `start` to `end`.
tarvo::GeoCoordinate GetInsertPointFromSegment(const tarvo::GeoCoordinate& start,
                                               const tarvo::GeoCoordinate& end, float ratio);
tarvo::GeoCoordinateZ GetInsertPointFromSegment(const tarvo::GeoCoordinateZ& start,
                                                const tarvo::GeoCoordinateZ& end, float ratio);

/// The point `distance` metres from `start` toward `end`; neither clamped nor guarded.
tarvo::GeoCoordinate GetLinePoint(const tarvo::GeoCoordinate& start, const tarvo::GeoCoordinate& end,
                                  double distance);

/// Foot of the perpendicular on the infinite line, in the plane of degrees.
tarvo::GeoCoordinate GetFootPoint(const tarvo::GeoCoordinate& point, const tarvo::GeoCoordinate& start,
                                  const tarvo::GeoCoordinate& end);

/// Positive left of the directed line, negative right of it.
double GetPositionOfPointToLine(const tarvo::GeoCoordinate& point, const tarvo::GeoCoordinate& start,
                                const tarvo::GeoCoordinate& end);

/// Destination of a geodesic on the WGS-84 ellipsoid (Vincenty's direct method); a NaN output becomes 200.
void ComputerThatLonLat(double longitude, double latitude, double azimuth, double distance,
                        double& outLongitude, double& outLatitude);

/// `point` turned clockwise about `center` by `angle` degrees.
tarvo::GeoCoordinate RotatePoint(const tarvo::GeoCoordinate& point, const tarvo::GeoCoordinate& center,
                                 double angle);

/// Signed side angle in degrees; 0 when no point of the chosen segment fits.
float GetFixAngleForSidePoint(const std::vector<tarvo::GeoCoordinate>& line, const tarvo::GeoCoordinate& from,
                              const tarvo::GeoCoordinate& to, double angle, double length,
                              bool useFirstSegment);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_POINTS_REFERENCE_H_
