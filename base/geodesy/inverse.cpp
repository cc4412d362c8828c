#include "base/strict_floating_point.h"

#include "base/geodesy/inverse.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/geodesy/series_coefficients.h"
#include "base/geodesy/wgs84.h"

// Numbers in brackets are the equations of Karney (2013). A geodesic is mapped to a great circle of the auxiliary
// sphere: the reduced latitude beta stands for the latitude, sigma is the arc from the northward crossing of the
// equator, omega the longitude on the sphere, alpha the azimuth, alpha0 the azimuth at the equator.
namespace tarvo {
namespace geodesy {

namespace {

constexpr double kAxisRatio = 1.0 - kFlattening;                // b / a
constexpr double kSemiMinorAxis = kSemiMajorAxis * kAxisRatio;  // metres
constexpr double kSecondEccentricitySquared = kEccentricitySquared / (kAxisRatio * kAxisRatio);

/// The search for the azimuth ends when the next step would change the length by less than this, metres.
constexpr double kLengthTolerance = 1e-9;
/// Never reached: each step at least halves an interval of azimuths or converges quadratically.
constexpr int kMaxSteps = 100;

/// Latitudes up to this count as the equator, degrees: 1e-15 metres.
constexpr double kEquatorLatitude = 1e-20;

struct SineCosine {
  double sine;
  double cosine;
};

SineCosine Normalized(double sine, double cosine) {
  const double length = std::sqrt(sine * sine + cosine * cosine);
  return {sine / length, cosine / length};
}

/// Reduced latitude of a latitude in [-90, 90] degrees (6).
SineCosine ReducedLatitude(double latitude) {
  // Beyond 45 degrees the angle is taken from the pole, which is exact: the cosine keeps its digits there and is 0 at
  // the pole itself.
  const double fromEquator = std::fabs(latitude);
  const bool isHigh = fromEquator > 45.0;
  const double radians = (isHigh ? 90.0 - fromEquator : fromEquator) * kRadiansPerDegree;
  double sine = std::sin(radians);
  double cosine = std::cos(radians);
  if (isHigh) std::swap(sine, cosine);
  return Normalized(std::copysign(kAxisRatio * sine, latitude), cosine);
}

/// sum over l of factors[l - 1] * (sin(2 l sigma2) - sin(2 l sigma1)), by Clenshaw's recurrence.
template <int count>
double SineSumDifference(const double (&factors)[count], const SineCosine& sigma1, const SineCosine& sigma2) {
  const auto sum = [&factors](const SineCosine& sigma) {
    const double twiceCosine = 2.0 * (sigma.cosine - sigma.sine) * (sigma.cosine + sigma.sine);
    double last = 0.0;
    double current = 0.0;
    for (int l = count - 1; l >= 0; --l) {
      const double next = twiceCosine * current - last + factors[l];
      last = current;
      current = next;
    }
    return 2.0 * sigma.sine * sigma.cosine * current;
  };
  return sum(sigma2) - sum(sigma1);
}

template <int count>
double Polynomial(const double (&factors)[count], double x) {
  double value = factors[count - 1];
  for (int i = count - 2; i >= 0; --i) value = value * x + factors[i];
  return value;
}

/// The three integrals along a geodesic between two arcs, over their common parameter epsilon (16).
class GeodesicIntegrals {
 public:
  GeodesicIntegrals(double epsilon, const SineCosine& sigma1, const SineCosine& sigma2)
      : epsilon_(epsilon), sigma1_(sigma1), sigma2_(sigma2) {
    sigma12_ = std::atan2(std::max(0.0, sigma1.cosine * sigma2.sine - sigma1.sine * sigma2.cosine),
                          sigma1.cosine * sigma2.cosine + sigma1.sine * sigma2.sine);
  }

  /// I1 (15): the length over the semi-minor axis.
  double Length() const {
    const double e = epsilon_, ee = e * e;
    const double sines[] = {e * Polynomial(kLengthSine2, e), ee * Polynomial(kLengthSine4, e),
                            ee * e * Polynomial(kLengthSine6, e), ee * ee * Polynomial(kLengthSine8, e),
                            ee * ee * e * Polynomial(kLengthSine10, e)};
    return Polynomial(kLengthMean, e) * sigma12_ + SineSumDifference(sines, sigma1_, sigma2_);
  }

  /// I3 (23).
  double Longitude() const {
    const double e = epsilon_, ee = e * e;
    const double sines[] = {e * Polynomial(kLongitudeSine2, e), ee * Polynomial(kLongitudeSine4, e),
                            ee * e * Polynomial(kLongitudeSine6, e),
                            ee * ee * Polynomial(kLongitudeSine8, e)};
    return Polynomial(kLongitudeMean, e) * sigma12_ + SineSumDifference(sines, sigma1_, sigma2_);
  }

  /// J (40): to the third order, which is ample for a slope.
  double ReducedLength() const {
    const double e = epsilon_, ee = e * e;
    const double sines[] = {e * Polynomial(kReducedSine2, e), ee * Polynomial(kReducedSine4, e),
                            ee * e * Polynomial(kReducedSine6, e)};
    return e * Polynomial(kReducedMean, e) * sigma12_ + SineSumDifference(sines, sigma1_, sigma2_);
  }

 private:
  double epsilon_;
  SineCosine sigma1_;
  SineCosine sigma2_;
  double sigma12_;
};

/// The pair in Karney's normal position (44): latitude1 <= 0, |latitude2| <= -latitude1, 0 <= longitude <= pi.
struct NormalPair {
  SineCosine beta1;
  SineCosine beta2;
  double longitudeDifference;   // radians
  double cosSquaredDifference;  // cos^2 beta2 - cos^2 beta1
  double root1, root2;          // sqrt(1 + e'^2 sin^2 beta)
  bool isOnEquator;             // both points
};

NormalPair MakeNormalPair(double latitudeA, double latitudeB, double longitudeDifference) {
  const bool keepsOrder = std::fabs(latitudeA) >= std::fabs(latitudeB);
  double latitude1 = keepsOrder ? latitudeA : latitudeB;
  double latitude2 = keepsOrder ? latitudeB : latitudeA;
  if (latitude1 > 0.0) {
    latitude1 = -latitude1;
    latitude2 = -latitude2;
  }
  NormalPair pair;
  pair.beta1 = ReducedLatitude(latitude1);
  pair.beta2 = ReducedLatitude(latitude2);
  // Two points on the equator are held apart from it by nothing measurable, so that no direction becomes 0 / 0. The
  // squares of smaller latitudes would underflow.
  pair.isOnEquator = std::fabs(latitude1) <= kEquatorLatitude;
  if (pair.isOnEquator) {
    constexpr double kOffEquator = 1e-100;
    pair.beta1.sine = -kOffEquator;
    pair.beta2.sine = kOffEquator;
  }
  pair.longitudeDifference = longitudeDifference * kRadiansPerDegree;
  const double cosSquaredDifference =
      pair.beta1.cosine < -pair.beta1.sine
          ? (pair.beta2.cosine - pair.beta1.cosine) * (pair.beta2.cosine + pair.beta1.cosine)
          : (pair.beta1.sine - pair.beta2.sine) * (pair.beta1.sine + pair.beta2.sine);
  pair.cosSquaredDifference =
      std::max(0.0, cosSquaredDifference);  // may round below for almost equal latitudes
  pair.root1 = std::sqrt(1.0 + kSecondEccentricitySquared * (pair.beta1.sine * pair.beta1.sine));
  pair.root2 = std::sqrt(1.0 + kSecondEccentricitySquared * (pair.beta2.sine * pair.beta2.sine));
  return pair;
}

/// epsilon (16) of the geodesic that leaves the equator with the given cosine of its azimuth.
double EpsilonOf(double cosAlpha0) {
  const double kk = kSecondEccentricitySquared * (cosAlpha0 * cosAlpha0);
  return kk / (2.0 * (1.0 + std::sqrt(1.0 + kk)) + kk);
}

/// Along the meridian of both points, or from a pole.
double MeridianLength(const NormalPair& pair) {
  return kSemiMinorAxis * GeodesicIntegrals(EpsilonOf(1.0), pair.beta1, pair.beta2).Length();
}

/// The geodesic that leaves point 1 with a trial azimuth and ends where it comes to the latitude of point 2.
struct Trial {
  double length;               // metres
  double longitudeDifference;  // radians
  double sinAlpha0;
  double slope;  // of the longitude difference over the azimuth; NaN or infinite at a turning point
};

Trial Follow(const NormalPair& pair, const SineCosine& alpha1) {
  const SineCosine& beta1 = pair.beta1;
  const SineCosine& beta2 = pair.beta2;
  const double sinAlpha0 = alpha1.sine * beta1.cosine;  // (5)
  const double crossSine = alpha1.sine * beta1.sine;
  const double cosAlpha0 = std::sqrt(alpha1.cosine * alpha1.cosine + crossSine * crossSine);
  const double north1 = alpha1.cosine * beta1.cosine;
  const double north2 = std::sqrt(north1 * north1 + pair.cosSquaredDifference);  // cos alpha2 cos beta2 (45)
  const SineCosine sigma1 = Normalized(beta1.sine, north1);                      // (11)
  const SineCosine sigma2 = Normalized(beta2.sine, north2);
  const double omegaSine1 = sinAlpha0 * beta1.sine;  // (12)
  const double omegaSine2 = sinAlpha0 * beta2.sine;
  const double omega12 = std::atan2(std::max(0.0, north1 * omegaSine2 - omegaSine1 * north2),
                                    north1 * north2 + omegaSine1 * omegaSine2);
  const GeodesicIntegrals integrals(EpsilonOf(cosAlpha0), sigma1, sigma2);
  Trial trial;
  trial.length = kSemiMinorAxis * integrals.Length();
  trial.longitudeDifference = omega12 - kFlattening * sinAlpha0 * integrals.Longitude();  // (8)
  trial.sinAlpha0 = sinAlpha0;
  const double reducedLength = pair.root2 * (sigma1.cosine * sigma2.sine) -
                               pair.root1 * (sigma1.sine * sigma2.cosine) -
                               sigma1.cosine * sigma2.cosine * integrals.ReducedLength();  // (38), over b
  trial.slope = kAxisRatio * reducedLength / north2;                                       // (46)
  return trial;
}

/// Azimuth to start with where the points are not nearly antipodal: a great circle (48, 49).
SineCosine GreatCircleAzimuth(const NormalPair& pair) {
  const double meanCosine = 0.5 * (pair.beta1.cosine + pair.beta2.cosine);
  const double omega12 = std::min(
      pair.longitudeDifference / std::sqrt(1.0 - kEccentricitySquared * (meanCosine * meanCosine)), kPi);
  const double north =
      pair.beta1.cosine * pair.beta2.sine - pair.beta1.sine * pair.beta2.cosine * std::cos(omega12);
  const double east = pair.beta2.cosine * std::sin(omega12);
  return Normalized(east, north);
}

/// Azimuth to start with near the antipode, where geodesics envelop an astroid. x and y place point 2 on the plane
/// of the astroid, which has half-axes of 1 (53).
SineCosine AstroidAzimuth(double x, double y) {
  // The positive root mu of x^2 / (1 + mu)^2 + y^2 / mu^2 = 1, an equal form of (55). The left side is convex and
  // falls, so Newton's method climbs to the root from any start below it.
  double mu = std::max(std::fabs(y), std::fabs(x) - 1.0);
  if (mu <= 0.0) return {-x, -std::sqrt(std::max(0.0, (1.0 - x) * (1.0 + x)))};  // (57)
  for (int step = 0; step < 6; ++step) {
    const double xRatio = x / (1.0 + mu);
    const double yRatio = y / mu;
    const double xx = xRatio * xRatio;
    const double yy = yRatio * yRatio;
    mu += 0.5 * (xx + yy - 1.0) / (xx / (1.0 + mu) + yy / mu);
  }
  return Normalized(-x / (1.0 + mu), y / mu);  // (56)
}

SineCosine StartAzimuth(const NormalPair& pair) {
  constexpr double kAstroidReach = 3.0;  // half-axes; farther out the great circle is the better guess
  const double unit = kFlattening * kPi * pair.beta1.cosine;
  const double x = (pair.longitudeDifference - kPi) / unit;
  const double sinBetaSum = pair.beta1.sine * pair.beta2.cosine + pair.beta1.cosine * pair.beta2.sine;
  const double y = sinBetaSum / (unit * pair.beta1.cosine);
  if (x > -kAstroidReach && y > -kAstroidReach) return AstroidAzimuth(x, y);
  return GreatCircleAzimuth(pair);
}

}  // namespace

double InverseDistance(double latitudeA, double latitudeB, double longitudeDifference) {
  const NormalPair pair = MakeNormalPair(latitudeA, latitudeB, longitudeDifference);
  const bool isAtPole = pair.beta1.cosine == 0.0;
  if (longitudeDifference == 0.0 || isAtPole) return MeridianLength(pair);
  if (pair.isOnEquator && longitudeDifference <= 180.0 * kAxisRatio) {
    return kSemiMajorAxis * pair.longitudeDifference;
  }
  // The azimuth lies between these two; each trial replaces one of them.
  constexpr double kNearlyNorth = 1e-100;
  SineCosine tooSmall = {kNearlyNorth, 1.0};
  SineCosine tooLarge = {kNearlyNorth, -1.0};
  SineCosine alpha1 = StartAzimuth(pair);
  for (int step = 0;; ++step) {
    const Trial trial = Follow(pair, alpha1);
    const double missing = pair.longitudeDifference - trial.longitudeDifference;
    const bool hasSlope = trial.slope > 0.0 && trial.slope < std::numeric_limits<double>::infinity();
    const double turn = missing / trial.slope;
    const bool isDone =
        missing == 0.0 || (hasSlope && std::fabs(kSemiMajorAxis * missing * turn) <= kLengthTolerance);
    // Along the parallel of point 2 the length grows by a sin(alpha0) per radian (Clairaut): what is left after this
    // first-order step is of the order of missing * turn.
    if (isDone || step == kMaxSteps) return trial.length + kSemiMajorAxis * trial.sinAlpha0 * missing;
    (missing > 0.0 ? tooSmall : tooLarge) = alpha1;
    if (hasSlope && std::fabs(turn) < 1.0) {
      const SineCosine next =
          Normalized(alpha1.sine + turn * alpha1.cosine, alpha1.cosine - turn * alpha1.sine);
      const bool isInside = next.sine > 0.0 &&
                            next.sine * tooSmall.cosine - next.cosine * tooSmall.sine > 0.0 &&
                            tooLarge.sine * next.cosine - tooLarge.cosine * next.sine > 0.0;
      if (isInside) {
        alpha1 = next;
        continue;
      }
    }
    alpha1 = Normalized(tooSmall.sine + tooLarge.sine, tooSmall.cosine + tooLarge.cosine);
  }
}

}  // namespace geodesy
}  // namespace tarvo
