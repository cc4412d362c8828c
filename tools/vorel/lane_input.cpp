#include "tools/vorel/lane_input.h"

#include <cmath>

#include "tools/vorel/failure.h"
#include "tools/vorel/feature_property.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

using simdjson::dom::element;
using simdjson::dom::object;

// A line on its strip of continuous longitudes may wind round the earth, but a shift of metres does not take it there.
constexpr double kFarthestLongitude = 1e5;

bool IsSelected(const object* feature, const LineSelection& selection) {
  const std::optional<element> property = PropertyOf(feature, selection.key);
  if (!property) return false;
  std::string_view text;
  if (property->get(text) == simdjson::SUCCESS) return text == selection.value;
  return simdjson::minify(*property) == selection.value;
}

std::string IdOf(const object* feature, std::size_t index) {
  const std::optional<element> id = PropertyOf(feature, "id");
  if (id && (id->is_string() || id->is_number())) return simdjson::minify(*id);
  return std::to_string(index);
}

}  // namespace

std::optional<LineSelection> ParseSelection(const std::optional<std::string>& text,
                                            const std::string& option) {
  if (!text) return std::nullopt;
  const std::size_t equals = text->find('=');
  if (equals == std::string::npos || equals == 0) RefuseOption(option, *text, "is not KEY=VALUE");
  return LineSelection{text->substr(0, equals), text->substr(equals + 1)};
}

LaneLines ReadLaneLines(TextSource& source, const std::optional<LineSelection>& selection) {
  LaneLines result;
  std::size_t index = 0;
  std::vector<tarvo::GeoCoordinateZ> points;
  GeoJsonReader(source).ForEachGeometry([&](const Geometry& geometry) {
    if (geometry.type != GeometryType::kLineString && geometry.type != GeometryType::kMultiLineString) {
      ++result.geometriesLeftOut;
      return;
    }
    const bool selected = !selection || IsSelected(geometry.feature, *selection);
    ForEachLine(geometry, points, [&] {
      const std::size_t lineIndex = index++;
      if (!selected) return;
      UnwrapLongitudes(points);
      const std::string& path = geometry.place.path;
      result.lines.push_back({points, lineIndex, IdOf(geometry.feature, lineIndex),
                              geometry.place.input + (path.empty() ? "" : ": " + path)});
    });
  });
  if (!result.lines.empty()) return result;
  if (index > 0) {
    throw BadInput(source.name() + ": none of " + Counted(index, "line") + " has the property " +
                   selection->key + " = " + selection->value);
  }
  RefuseWithout("line", source, result.geometriesLeftOut);
}

std::vector<tarvo::GeoCoordinate> WithoutHeights(const std::vector<tarvo::GeoCoordinateZ>& points) {
  return {points.begin(), points.end()};
}

void RefuseOffTheMap(const LaneLine& line, const std::vector<tarvo::GeoCoordinateZ>& points,
                     const std::string& what) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    const tarvo::GeoCoordinateZ& point = points[i];
    const bool onTheMap = std::fabs(point.longitude) <= kFarthestLongitude &&
                          std::fabs(point.latitude) <= 90.0 && std::isfinite(point.z);
    if (onTheMap) continue;
    throw BadInput(line.label + ": " + what + " leaves the map at its point " + std::to_string(i) +
                   ", longitude " + ShortestNumber(point.longitude) + ", latitude " +
                   ShortestNumber(point.latitude) + ", height " + ShortestNumber(point.z));
  }
}

}  // namespace vorel::tool
