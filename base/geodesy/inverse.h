#ifndef VOREL_BASE_GEODESY_INVERSE_H_
#define VOREL_BASE_GEODESY_INVERSE_H_

namespace tarvo {
namespace geodesy {

/// Length in metres of the shortest geodesic of the WGS-84 ellipsoid between any two points, nearly antipodal ones
/// included: the inverse geodesic problem without its azimuths. Absolute error some 0.02 micrometres.
///
/// @param latitudeA, latitudeB  degrees in [-90, 90]; the same bits when they are swapped
/// @param longitudeDifference   degrees in [0, 180]: 0 or at least 1e-100 (unchecked: below it squares underflow, and two
///                              points of one latitude give NaN; pairs so close are the near series' business)
/// Other values: not checked, the result means nothing, but it always returns.
/// Cost: 0.3 to 1 microseconds; the math library's sin, cos and atan2.
///
/// C. F. F. Karney, Algorithms for geodesics, Journal of Geodesy 87, 43-55 (2013), builds on the auxiliary sphere of
/// Bessel (1825) as T. Vincenty, Survey Review 23, 88-93 (1975), did, but solves for the first azimuth by Newton's
/// method. Vincenty's iteration for the longitude on the sphere does not converge near antipodes.
double InverseDistance(double latitudeA, double latitudeB, double longitudeDifference);

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_BASE_GEODESY_INVERSE_H_
