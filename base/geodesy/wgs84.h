#ifndef VOREL_BASE_GEODESY_WGS84_H_
#define VOREL_BASE_GEODESY_WGS84_H_

namespace tarvo {
namespace geodesy {

constexpr double kPi = 3.141592653589793;
constexpr double kRadiansPerDegree = 0.017453292519943295;

// World Geodetic System 1984 (NGA.STND.0036): the two defining constants of the ellipsoid, and what follows.
constexpr double kSemiMajorAxis = 6378137.0;         // metres
constexpr double kFlattening = 1.0 / 298.257223563;  // no unit
constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_BASE_GEODESY_WGS84_H_
