#include "tools/vorel/view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

#include "tools/vorel/failure.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

constexpr double kTurnDegrees = 360.0;

/// `view` moved by whole turns so that its west end lies in [-180, 180).
GeoRect StartWithinOneTurn(GeoRect view) {
  const double turns = std::floor((view.min.longitude + 180.0) / kTurnDegrees);
  if (turns != 0.0) {
    view.min.longitude -= turns * kTurnDegrees;
    view.max.longitude -= turns * kTurnDegrees;
  }
  return view;
}

template <class Point>
void Unwrap(std::vector<Point>& points) {
  double shift = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    double longitude = points[i].longitude + shift;
    while (longitude - points[i - 1].longitude > 180.0) {
      shift -= kTurnDegrees;
      longitude = points[i].longitude + shift;
    }
    while (points[i - 1].longitude - longitude > 180.0) {
      shift += kTurnDegrees;
      longitude = points[i].longitude + shift;
    }
    points[i].longitude = longitude;
  }
}

}  // namespace

GeoRect ParseView(const std::string& text, const std::string& option) {
  const std::string label = option + " " + text + ": ";
  std::array<double, 4> numbers{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t end = i + 1 < numbers.size() ? rest.find(',') : rest.size();
    if (end == std::string_view::npos) throw BadInput(label + "four numbers W,S,E,N are needed");
    std::string_view field = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    while (!field.empty() && field.front() == ' ') field.remove_prefix(1);
    while (!field.empty() && field.back() == ' ') field.remove_suffix(1);
    if (i + 1 == numbers.size() && field.find(',') != std::string_view::npos) {
      throw BadInput(label + "more than the four numbers W,S,E,N");
    }
    const std::optional<double> number = ReadNumber(field);
    if (!number) throw BadInput(label + "\"" + std::string(field) + "\" is not a number of degrees");
    numbers[i] = *number;
  }
  const auto [west, south, east, north] = numbers;
  for (const double longitude : {west, east}) {
    if (std::fabs(longitude) > 360.0) {
      throw BadInput(label + "longitude " + ShortestNumber(longitude) + " is beyond 360 degrees");
    }
  }
  for (const double latitude : {south, north}) {
    if (std::fabs(latitude) > 90.0) {
      throw BadInput(label + "latitude " + ShortestNumber(latitude) +
                     " is beyond 90 degrees (the order is west,south,east,north)");
    }
  }
  if (south > north) {
    throw BadInput(label + "south " + ShortestNumber(south) + " is greater than north " +
                   ShortestNumber(north));
  }
  double eastOfWest = east;
  while (eastOfWest < west) eastOfWest += kTurnDegrees;
  if (eastOfWest - west > kTurnDegrees) {
    throw BadInput(label + "is more than 360 degrees wide");
  }
  return StartWithinOneTurn({{west, south}, {eastOfWest, north}});
}

std::string ViewText(const GeoRect& view) {
  return ShortestNumber(view.min.longitude) + "," + ShortestNumber(view.min.latitude) + "," +
         ShortestNumber(FoldLongitude(view.max.longitude)) + "," + ShortestNumber(view.max.latitude);
}

void UnwrapLongitudes(std::vector<tarvo::GeoCoordinate>& points) {
  Unwrap(points);
}

void UnwrapLongitudes(std::vector<tarvo::GeoCoordinateZ>& points) {
  Unwrap(points);
}

GeoRect BoundsOf(const std::vector<tarvo::GeoCoordinate>& points) {
  GeoRect bounds{points.front(), points.front()};
  for (const tarvo::GeoCoordinate& point : points) {
    bounds.min.longitude = std::min(bounds.min.longitude, point.longitude);
    bounds.min.latitude = std::min(bounds.min.latitude, point.latitude);
    bounds.max.longitude = std::max(bounds.max.longitude, point.longitude);
    bounds.max.latitude = std::max(bounds.max.latitude, point.latitude);
  }
  return bounds;
}

std::vector<int> TurnsIntoView(const GeoRect& bounds, const GeoRect& view) {
  // bounds.max + 360 k >= view.min and bounds.min + 360 k <= view.max. The division may round a touching pair the
  // wrong way, so one more turn on either side is tried and each candidate is tested as it will be used.
  const int first =
      static_cast<int>(std::ceil((view.min.longitude - bounds.max.longitude) / kTurnDegrees)) - 1;
  const int last =
      static_cast<int>(std::floor((view.max.longitude - bounds.min.longitude) / kTurnDegrees)) + 1;
  std::vector<int> turns;
  for (int k = first; k <= last; ++k) {
    const double shift = kTurnDegrees * k;
    if (bounds.max.longitude + shift >= view.min.longitude &&
        bounds.min.longitude + shift <= view.max.longitude) {
      turns.push_back(k);
    }
  }
  return turns;
}

std::vector<int> TurnsAlongLine(const std::vector<tarvo::GeoCoordinate>& line, const GeoRect& view) {
  std::vector<int> turns = TurnsIntoView(BoundsOf(line), view);
  if (line.front().longitude < line.back().longitude) std::reverse(turns.begin(), turns.end());
  return turns;
}

void ShiftByTurns(std::vector<tarvo::GeoCoordinate>& points, int turns) {
  if (turns == 0) return;
  for (tarvo::GeoCoordinate& point : points) point.longitude += kTurnDegrees * turns;
}

double FoldLongitude(double longitude) {
  while (longitude > 180.0) longitude -= kTurnDegrees;
  while (longitude < -180.0) longitude += kTurnDegrees;
  return longitude;
}

void BoundsCollector::Add(const std::vector<tarvo::GeoCoordinate>& unwrappedPoints) {
  GeoRect bounds = BoundsOf(unwrappedPoints);
  if (empty_) {
    bounds_ = bounds;
    empty_ = false;
    return;
  }
  const double centre = (bounds.min.longitude + bounds.max.longitude) / 2.0;
  const double centreBefore = (bounds_.min.longitude + bounds_.max.longitude) / 2.0;
  const double shift = kTurnDegrees * std::round((centreBefore - centre) / kTurnDegrees);
  bounds_.min.longitude = std::min(bounds_.min.longitude, bounds.min.longitude + shift);
  bounds_.max.longitude = std::max(bounds_.max.longitude, bounds.max.longitude + shift);
  bounds_.min.latitude = std::min(bounds_.min.latitude, bounds.min.latitude);
  bounds_.max.latitude = std::max(bounds_.max.latitude, bounds.max.latitude);
}

GeoRect BoundsCollector::Whole() const {
  GeoRect whole = bounds_;
  if (whole.max.longitude - whole.min.longitude > kTurnDegrees) {
    const double centre = (whole.min.longitude + whole.max.longitude) / 2.0;
    whole.min.longitude = centre - kTurnDegrees / 2.0;
    whole.max.longitude = centre + kTurnDegrees / 2.0;
  }
  return StartWithinOneTurn(whole);
}

GeoRect BoundsCollector::HalvedAboutCentre() const {
  const double centreLongitude = (bounds_.min.longitude + bounds_.max.longitude) / 2.0;
  const double centreLatitude = (bounds_.min.latitude + bounds_.max.latitude) / 2.0;
  const double quarterWidth =
      std::min((bounds_.max.longitude - bounds_.min.longitude) / 4.0, kTurnDegrees / 2.0);
  const double quarterHeight = (bounds_.max.latitude - bounds_.min.latitude) / 4.0;
  return StartWithinOneTurn({{centreLongitude - quarterWidth, centreLatitude - quarterHeight},
                             {centreLongitude + quarterWidth, centreLatitude + quarterHeight}});
}

}  // namespace vorel::tool
