#ifndef VOREL_BASE_GEODESY_NEAR_SERIES_H_
#define VOREL_BASE_GEODESY_NEAR_SERIES_H_

#include "base/geodesy/series_coefficients.h"

// The squared WGS-84 distance of two near points as a short series in the squares of the latitude and longitude
// differences. The coefficients depend on the mid latitude through its squared cosine only, and that is a polynomial
// of the latitude sum: no trigonometric function is called, and nothing but + - * / is used, so the results are the
// same bits on every IEEE machine.
//
// Terms up to the fourth order: the mid-latitude formulas of Gauss (1846) with their first correction, written for
// the squared length; the sixth order follows from the eikonal equation (tools/derive_distance_series.py has the
// derivation and prints every coefficient).
//
// `Value` is double or a vector of doubles (a compiler's vector extension): a kernel that measures several segments
// at once calls these very functions and gets, lane by lane, the bits of the scalar call. Each expression below is
// therefore part of the result: no factor, sum or pair of brackets may be moved. Everything is symmetric in the two
// points to the bit, because they enter only through the squares of differences and through the commutative sum.
//
// All functions have internal linkage and are always inlined: a source compiled for another instruction set keeps
// its own copies and leaves none behind for the linker to pick.

#if defined(__GNUC__)
#define VOREL_SERIES_INLINE static inline __attribute__((always_inline))
#else
#define VOREL_SERIES_INLINE static inline
#endif

namespace tarvo {
namespace geodesy {

/// Largest latitude difference and longitude difference, degrees, both included, of the near and the mid series.
constexpr double kNearLimit = 0.1;
constexpr double kMidLimit = 2.75;
/// Largest valid |latitude|, degrees, included.
constexpr double kPoleLatitude = 90.0;

/// Squared cosine of the mid latitude, relative error 9.2e-12; exactly 0 when both points are one pole.
/// @param latitudeSum  sum of the two latitudes, degrees in [-180, 180]
template <class Value>
VOREL_SERIES_INLINE Value CosSquaredOfMidLatitude(Value latitudeSum) {
  const Value z = latitudeSum * latitudeSum;
  const Value zz = z * z;
  const Value poleFactor = 32400.0 - z;
  const Value power0 = kCosSquared[0] + kCosSquared[1] * z;
  const Value power2 = kCosSquared[2] + kCosSquared[3] * z;
  const Value power4 = kCosSquared[4] + kCosSquared[5] * z;
  const Value power6 = kCosSquared[6] * zz;
  return (poleFactor * poleFactor) * ((power0 + zz * power2) + (zz * zz) * (power4 + power6));
}

/// Squared distance, square metres, for differences up to `kNearLimit`. Its square root errs by at most 5 nm up to
/// 200 m and 0.5 micrometres up to the limit.
/// @param latitudeDifference, longitudeDifference  degrees
/// @param latitudeSum  as above
template <class Value>
VOREL_SERIES_INLINE Value NearSquaredDistance(Value latitudeDifference, Value longitudeDifference,
                                              Value latitudeSum) {
  const Value cosSquared = CosSquaredOfMidLatitude(latitudeSum);
  const Value squareMetres = (kSquareMetres[0] + kSquareMetres[1] * cosSquared) +
                             (cosSquared * cosSquared) * (kSquareMetres[2] + kSquareMetres[3] * cosSquared);
  const Value uu = latitudeDifference * latitudeDifference;
  const Value vv = longitudeDifference * longitudeDifference;
  const Value alongParallel = vv * cosSquared;
  const Value vvSinSquared = vv - alongParallel;
  const Value meridianFactor =
      (kMeridianRatio + (kMeridianFourth[0] + kMeridianFourth[1] * cosSquared) * uu) -
      kMeridianSagitta * vvSinSquared;
  const Value parallelFactor =
      (kParallelFourth[0] + kParallelFourth[1] * cosSquared) * uu + kTwelfth * vvSinSquared;
  return squareMetres * ((uu * meridianFactor) * (squareMetres * squareMetres) +
                         (alongParallel - alongParallel * parallelFactor));
}

/// Squared distance, square metres, for differences up to `kMidLimit`. Its square root errs by at most 0.73
/// micrometres up to 150 km and 8 micrometres up to the limit.
/// @param latitudeDifference, longitudeDifference, latitudeSum  as above
template <class Value>
VOREL_SERIES_INLINE Value MidSquaredDistance(Value latitudeDifference, Value longitudeDifference,
                                             Value latitudeSum) {
  const Value cosSquared = CosSquaredOfMidLatitude(latitudeSum);
  const Value sinSquared = 1.0 - cosSquared;
  // 1 / W with W = 1 - e^2 sin^2.
  const Value inverseW = 1.0 / (kOneMinusESquared + kESquared * cosSquared);
  const Value uu = latitudeDifference * latitudeDifference;
  const Value vv = longitudeDifference * longitudeDifference;
  const Value meridianRatio = kOneMinusESquared * inverseW;
  const Value alongMeridian = uu * (meridianRatio * meridianRatio);
  const Value alongParallel = vv * cosSquared;
  const Value sagitta = kTwelfth * (vv * sinSquared);
  const Value k1 = (kMeridianFactor * inverseW) *
                   ((1.0 - 2.0 * sinSquared) + kFiveESquared * ((sinSquared * cosSquared) * inverseW));
  const Value k2 = (kParallelFactor * inverseW) * (1.0 + kNineESquared * (sinSquared * inverseW));
  const Value meridianFourth = k1 * uu - 3.0 * sagitta;
  const Value parallelFourth = k2 * uu + sagitta;
  const Value u6 = kSixthU6[0] + sinSquared * (kSixthU6[1] + sinSquared * kSixthU6[2]);
  const Value u4v2 = kSixthU4V2[0] + sinSquared * (kSixthU4V2[1] + sinSquared * kSixthU4V2[2]);
  const Value u2v4 = kSixthU2V4[0] +
                     sinSquared * (kSixthU2V4[1] + sinSquared * (kSixthU2V4[2] + sinSquared * kSixthU2V4[3]));
  const Value v6 =
      (kSixthV6[0] + sinSquared * (kSixthV6[1] + sinSquared * kSixthV6[2])) * (sinSquared * cosSquared);
  const Value sixth = (uu * uu) * (u6 * uu + u4v2 * vv) + (vv * vv) * (u2v4 * uu + v6 * vv);
  return (kSquareMetresAtEquator * inverseW) * ((alongMeridian + alongMeridian * meridianFourth) +
                                                (alongParallel - alongParallel * parallelFourth)) +
         sixth;
}

}  // namespace geodesy
}  // namespace tarvo

#undef VOREL_SERIES_INLINE

#endif  // VOREL_BASE_GEODESY_NEAR_SERIES_H_
