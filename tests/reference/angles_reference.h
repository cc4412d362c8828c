#ifndef VOREL_TESTS_REFERENCE_ANGLES_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_ANGLES_REFERENCE_H_

#include <vector>

#include "base/geo_coordinate.h"
#include "base/map_vector.h"

// Plain, slow twins of the angle functions: the same results to the last bit, one written step per line.
namespace reference {

/// Turning angle at `b` in the plane of degrees, [0, 180]; 0 when a segment has no length; NaN when rounding
/// pushes the cosine beyond 1.
float GetAngle(const tarvo::GeoCoordinate& a, const tarvo::GeoCoordinate& b, const tarvo::GeoCoordinate& c);

/// Initial great-circle bearing in degrees, [-180, 180].
double GetAngle(const tarvo::GeoCoordinate& from, const tarvo::GeoCoordinate& to);

/// Heading in degrees, [0, 360]; its quadrant is decided on hundredths of an arc-second. NaN gives 0.
double GetYaw(double lat1, double lon1, double lat2, double lon2);

/// `to - from`, corrected by 360 at most once.
float CalcAziDiff(float from, float to);

/// `to - from` in [-180, 180).
float AngleDiff(float from, float to);

/// In (-180, 180], by steps of 360. Infinite or huge angles never return.
float NormalizeAngle180(float angle);

/// In [0, 360] by steps of 360: a tiny negative angle rounds up to 360 itself. Infinite or huge angles never
/// return.
float NormalizeAngle360(float angle);

/// Zero, one or two lengths of the third side; `angle` (degrees) faces `sideA`.
std::vector<double> GetLength3OfTriangle(double sideA, double sideB, double angle);

/// Metres between the (x, y) of two vectors; z is ignored.
double Distance(tarvo::MapVector3d p, tarvo::MapVector3d q);

/// Metres per pixel at display level 20.
double Get20PixelDistanceOnePixel();

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_ANGLES_REFERENCE_H_
