#include "tools/vorel/map_projection.h"

#include <algorithm>
#include <cmath>

#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kMetresPerDegree = 111194.92664455873;  // of latitude, on the sphere of 6371 km
constexpr double kLargestWidthPixels = 1120.0;
constexpr double kLargestHeightPixels = 840.0;
constexpr double kMarginOfLongerSide = 0.12;
constexpr double kSmallestViewMetres = 20.0;
constexpr double kWidestShape = 2.0;  // width by height
constexpr double kTallestShape = 0.75;
constexpr double kPixelsPerTick = 150.0;
constexpr double kPixelsPerLabelCharacter = 6.5;
constexpr double kLabelCharactersBesideDecimals = 6.0;  // 139.°E
constexpr double kSmallestLongitudeScale = 1e-3;        // a view at the pole still gets a picture

/// Digits after the point that a multiple of the round number `step` needs.
int DecimalsOf(double step) {
  return std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
}

std::string DegreesText(double degrees, int decimals, const char* positive, const char* negative) {
  const std::string text = FixedNumber(std::fabs(degrees), decimals);
  if (text.find_first_of("123456789") == std::string::npos) return "0\xC2\xB0";
  return text + "\xC2\xB0" + (degrees < 0.0 ? negative : positive);
}

/// The multiples of a round step in [low, high], some `kPixelsPerTick` apart.
template <class Consumer>
void ForEachRoundValue(double low, double high, double pixels, const Consumer& consumer) {
  double step = RoundNumberUpTo((high - low) * kPixelsPerTick / pixels);
  const double pixelsPerDegree = pixels / (high - low);
  // A few metres apart, labels have so many digits that they would run into each other.
  while (step * pixelsPerDegree <
         kPixelsPerLabelCharacter * (kLabelCharactersBesideDecimals + DecimalsOf(step))) {
    step = RoundNumberUpTo(2.6 * step);
  }
  const int decimals = DecimalsOf(step);
  for (double index = std::ceil(low / step); index * step <= high; index += 1.0)
    consumer(index * step, decimals);
}

}  // namespace

double RoundNumberUpTo(double limit) {
  const double power = std::pow(10.0, std::floor(std::log10(limit)));
  for (const double factor : {5.0, 2.0}) {
    if (factor * power <= limit) return factor * power;
  }
  return power;
}

std::string LengthText(double metres) {
  return metres >= 1000.0 ? ShortestNumber(metres / 1000.0) + " km" : ShortestNumber(metres) + " m";
}

MapProjection::MapProjection(const GeoRect& view)
    : view_(view),
      centre_((view.min.longitude + view.max.longitude) / 2.0,
              (view.min.latitude + view.max.latitude) / 2.0) {
  longitudeScale_ = std::max(std::cos(centre_.latitude * kRadiansPerDegree), kSmallestLongitudeScale);
  // In degrees of latitude, on the map's plane.
  const double smallest = kSmallestViewMetres / kMetresPerDegree;
  double mapWidth = std::max((view.max.longitude - view.min.longitude) * longitudeScale_, smallest);
  double mapHeight = std::max(view.max.latitude - view.min.latitude, smallest);
  const double margin = kMarginOfLongerSide * std::max(mapWidth, mapHeight);
  mapWidth += 2.0 * margin;
  mapHeight += 2.0 * margin;
  mapHeight = std::max(mapHeight, mapWidth / kWidestShape);
  mapWidth = std::max(mapWidth, mapHeight * kTallestShape);
  pixelsPerDegree_ = std::min(kLargestWidthPixels / mapWidth, kLargestHeightPixels / mapHeight);
  width_ = std::round(mapWidth * pixelsPerDegree_);
  height_ = std::round(mapHeight * pixelsPerDegree_);

  // Measured on the earth over a short way; at a pole, where that way has no length, the sphere's degree serves.
  const double pixels = std::min(100.0, 0.01 * pixelsPerDegree_ * longitudeScale_);
  const double degrees = pixels / (pixelsPerDegree_ * longitudeScale_);
  metresPerPixel_ = centre_.DistanceTo({centre_.longitude + degrees, centre_.latitude}) / pixels;
  const double onSphere = kMetresPerDegree / pixelsPerDegree_;
  if (!(metresPerPixel_ > 0.5 * onSphere && metresPerPixel_ < 2.0 * onSphere)) metresPerPixel_ = onSphere;
}

Pixel MapProjection::ToPixel(const tarvo::GeoCoordinate& position) const {
  return {width_ / 2.0 + (position.longitude - centre_.longitude) * longitudeScale_ * pixelsPerDegree_,
          height_ / 2.0 - (position.latitude - centre_.latitude) * pixelsPerDegree_};
}

GeoRect MapProjection::Extent() const {
  const double halfWidth = width_ / 2.0 / pixelsPerDegree_ / longitudeScale_;
  const double halfHeight = height_ / 2.0 / pixelsPerDegree_;
  return {{centre_.longitude - halfWidth, centre_.latitude - halfHeight},
          {centre_.longitude + halfWidth, centre_.latitude + halfHeight}};
}

std::vector<Tick> MapProjection::LongitudeTicks() const {
  std::vector<Tick> ticks;
  const GeoRect extent = Extent();
  ForEachRoundValue(extent.min.longitude, extent.max.longitude, width_, [&](double longitude, int decimals) {
    const double folded = FoldLongitude(longitude);
    ticks.push_back({ToPixel({longitude, 0.0}).x, std::fabs(folded) == 180.0
                                                      ? std::string("180\xC2\xB0")
                                                      : DegreesText(folded, decimals, "E", "W")});
  });
  return ticks;
}

std::vector<Tick> MapProjection::LatitudeTicks() const {
  std::vector<Tick> ticks;
  const GeoRect extent = Extent();
  ForEachRoundValue(extent.min.latitude, extent.max.latitude, height_, [&](double latitude, int decimals) {
    if (std::fabs(latitude) > 90.0) return;
    ticks.push_back({ToPixel({0.0, latitude}).y, DegreesText(latitude, decimals, "N", "S")});
  });
  return ticks;
}

}  // namespace vorel::tool
