#include "base/strict_floating_point.h"

#include "base/geodesy/distance.h"

#include <cmath>
#include <limits>

#include "base/geodesy/inverse.h"

namespace tarvo {
namespace geodesy {

namespace {

/// |longitudeB - longitudeA| folded into [0, 180] by whole turns, for finite longitudes of any size. Exact but for
/// one last rounding; the same bits when the two are swapped.
double FoldedLongitudeDifference(double longitudeA, double longitudeB) {
  // Each longitude is folded first: their plain difference may overflow or lose the very digits that matter.
  const double a = std::remainder(longitudeA, 360.0);
  const double b = std::remainder(longitudeB, 360.0);
  const double difference = b - a;
  // What the rounding of the difference lost (Knuth 1969, the exact error of a floating-point sum).
  const double bPart = difference + a;
  const double lost = (b - bPart) - (a - (bPart - difference));
  return std::fabs(std::remainder(difference, 360.0) + lost);
}

}  // namespace

double DistanceBeyondNear(double longitudeA, double latitudeA, double longitudeB, double latitudeB) {
  if (longitudeA == longitudeB && latitudeA == latitudeB) return 0.0;
  const bool isValid = std::fabs(latitudeA) <= kPoleLatitude && std::fabs(latitudeB) <= kPoleLatitude &&
                       std::isfinite(longitudeA) && std::isfinite(longitudeB);
  if (!isValid) return std::numeric_limits<double>::quiet_NaN();
  const double latitudeDifference = latitudeB - latitudeA;
  double longitudeDifference = std::fabs(longitudeB - longitudeA);
  if (!(longitudeDifference <= 180.0)) {
    longitudeDifference = FoldedLongitudeDifference(longitudeA, longitudeB);
  }
  if (IsNear(latitudeA, latitudeB, latitudeDifference, longitudeDifference)) {
    return std::sqrt(NearSquaredDistance(latitudeDifference, longitudeDifference, latitudeA + latitudeB));
  }
  if (std::fabs(latitudeDifference) <= kMidLimit && longitudeDifference <= kMidLimit) {
    return std::sqrt(MidSquaredDistance(latitudeDifference, longitudeDifference, latitudeA + latitudeB));
  }
  return InverseDistance(latitudeA, latitudeB, longitudeDifference);
}

}  // namespace geodesy
}  // namespace tarvo
