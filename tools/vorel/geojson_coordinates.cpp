#include "tools/vorel/geojson_coordinates.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_place.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

using simdjson::dom::array;
using simdjson::dom::element;

/// The numbers of a position; the height is not checked yet.
struct Position {
  double longitude = 0.0;
  double latitude = 0.0;
  double height = 0.0;  // 0 when there is no third number
};

/// Reads one position, or says what is wrong with it. `path()` says where it stands in the geometry.
template <class Path>
Position CheckedPosition(const array& value, const Place& place, const Path& path) {
  std::array<double, 3> numbers{};
  std::size_t count = 0;
  for (const element field : value) {
    double number = 0.0;
    if (field.get(number) != simdjson::SUCCESS) {
      Refuse(place, path(), ValueText(field) + " in the position " + ValueText(value) + " is not a number");
    }
    if (count < numbers.size()) numbers[count] = number;
    ++count;
  }
  if (count < 2) {
    Refuse(place, path(), "the position " + ValueText(value) + " needs two numbers, longitude and latitude");
  }
  const auto [longitude, latitude, height] = numbers;
  if (!(std::fabs(latitude) <= 90.0)) {
    Refuse(place, path(),
           "latitude " + ShortestNumber(latitude) +
               " is beyond 90 degrees (a position is [longitude, latitude]; is " + ValueText(value) +
               " in the other order?)");
  }
  if (!(std::fabs(longitude) <= 360.0)) {
    Refuse(place, path(), "longitude " + ShortestNumber(longitude) + " is beyond 360 degrees");
  }
  return {longitude, latitude, height};
}

/// The position number `index` of the array at `path`.
void ReadPosition(const element& value, const Place& place, const std::string& path, std::size_t index,
                  Position& position) {
  array numbers;
  if (value.get(numbers) != simdjson::SUCCESS) {
    Refuse(place, Indexed(path, index), ValueText(value) + " is not a position [longitude, latitude]");
  }
  position = CheckedPosition(numbers, place, [&] { return Indexed(path, index); });
}

tarvo::GeoCoordinate ReadPosition(const element& value, const Place& place, const std::string& path,
                                  std::size_t index) {
  Position position;
  ReadPosition(value, place, path, index, position);
  return {position.longitude, position.latitude};
}

template <class Path>
tarvo::GeoCoordinateZ WithHeight(const Position& position, const Place& place, const Path& path) {
  if (!(std::fabs(position.height) <= std::numeric_limits<float>::max())) {
    Refuse(place, path(), "height " + ShortestNumber(position.height) + " is beyond what a float can hold");
  }
  return {position.longitude, position.latitude, static_cast<float>(position.height)};
}

void AppendPosition(const element& value, const Place& place, const std::string& path,
                    std::vector<tarvo::GeoCoordinate>& points) {
  points.push_back(ReadPosition(value, place, path, points.size()));
}

void AppendPosition(const element& value, const Place& place, const std::string& path,
                    std::vector<tarvo::GeoCoordinateZ>& points) {
  Position position;
  const std::size_t index = points.size();
  ReadPosition(value, place, path, index, position);
  points.push_back(WithHeight(position, place, [&] { return Indexed(path, index); }));
}

template <class Point>
void ReadPoints(const array& coordinates, const Place& place, const std::string& pathInGeometry,
                std::vector<Point>& points) {
  points.clear();
  for (const element position : coordinates) AppendPosition(position, place, pathInGeometry, points);
  if (points.size() < 2)
    Refuse(place, pathInGeometry, "a line needs two positions or more, this one has one");
}

template <class Point>
void VisitLines(const Geometry& geometry, std::vector<Point>& points, const std::function<void()>& consumer) {
  if (geometry.type == GeometryType::kLineString) {
    ReadPoints(geometry.coordinates, geometry.place, "coordinates", points);
    consumer();
    return;
  }
  if (geometry.type != GeometryType::kMultiLineString) return;
  std::size_t index = 0;
  for (const element member : geometry.coordinates) {
    const std::string path = Indexed("coordinates", index);
    ++index;
    array line;
    if (member.get(line) != simdjson::SUCCESS) {
      Refuse(geometry.place, path, ValueText(member) + " is not a line (an array of positions)");
    }
    if (line.begin() == line.end()) continue;
    ReadPoints(line, geometry.place, path, points);
    consumer();
  }
}

/// The rings of one polygon at `path`, which are not none.
void ReadRings(const array& rings, const Place& place, const std::string& polygonPath,
               std::vector<Ring>& polygon) {
  polygon.clear();
  for (const element value : rings) {
    const std::string path = Indexed(polygonPath, polygon.size());
    array positions;
    if (value.get(positions) != simdjson::SUCCESS) {
      Refuse(place, path, ValueText(value) + " is not a ring (an array of positions)");
    }
    Ring& ring = polygon.emplace_back();
    for (const element position : positions) ring.push_back(ReadPosition(position, place, path, ring.size()));
    if (ring.size() < 4) {
      Refuse(place, path, "a ring needs four positions or more, this one has " + std::to_string(ring.size()));
    }
    const bool turned =
        std::fabs(ring.front().longitude - ring.back().longitude) == 360.0;  // one meridian, two names
    if (ring.front().latitude != ring.back().latitude ||
        !(turned || ring.front().longitude == ring.back().longitude)) {
      Refuse(place, path, "the ring is not closed: its first and last position differ");
    }
    UnwrapLongitudes(ring);
    if (ring.front().longitude != ring.back().longitude) {
      Refuse(place, path, "the ring runs around a pole, which an area on a flat map cannot");
    }
    const GeoRect bounds = BoundsOf(ring);
    if (!(bounds.min.longitude < bounds.max.longitude) || !(bounds.min.latitude < bounds.max.latitude)) {
      Refuse(place, path,
             "the ring encloses nothing (steps of more than 180 degrees are taken the short way round)");
    }
    ring.pop_back();
  }
}

}  // namespace

void ForEachLine(const Geometry& geometry, std::vector<tarvo::GeoCoordinate>& points,
                 const std::function<void()>& consumer) {
  VisitLines(geometry, points, consumer);
}

void ForEachLine(const Geometry& geometry, std::vector<tarvo::GeoCoordinateZ>& points,
                 const std::function<void()>& consumer) {
  VisitLines(geometry, points, consumer);
}

bool AppendPositions(const Geometry& geometry, std::vector<tarvo::GeoCoordinateZ>& points) {
  std::vector<tarvo::GeoCoordinateZ> positions;  // of its own, so that messages count from 0
  const std::string path = "coordinates";
  if (geometry.type == GeometryType::kPoint) {
    const auto place = [&]() -> const std::string& { return path; };
    const Position position = CheckedPosition(geometry.coordinates, geometry.place, place);
    positions.push_back(WithHeight(position, geometry.place, place));
  } else if (geometry.type == GeometryType::kMultiPoint) {
    for (const element position : geometry.coordinates)
      AppendPosition(position, geometry.place, path, positions);
  } else if (geometry.type == GeometryType::kLineString) {
    ReadPoints(geometry.coordinates, geometry.place, path, positions);
  } else {
    return false;
  }
  points.insert(points.end(), positions.begin(), positions.end());
  return true;
}

bool ForEachPoint(const Geometry& geometry,
                  const std::function<void(const tarvo::GeoCoordinate&)>& consumer) {
  const Place& place = geometry.place;
  std::vector<tarvo::GeoCoordinate> points;
  switch (geometry.type) {
    case GeometryType::kPoint: {
      const Position position =
          CheckedPosition(geometry.coordinates, place, [] { return std::string("coordinates"); });
      consumer({position.longitude, position.latitude});
      return true;
    }
    case GeometryType::kMultiPoint: {
      std::size_t index = 0;
      for (const element position : geometry.coordinates) {
        consumer(ReadPosition(position, place, "coordinates", index));
        ++index;
      }
      return true;
    }
    case GeometryType::kLineString:
    case GeometryType::kMultiLineString:
      ForEachLine(geometry, points, [&] {
        for (const tarvo::GeoCoordinate& point : points) consumer(point);
      });
      return true;
    case GeometryType::kPolygon:
    case GeometryType::kMultiPolygon:
      break;
  }
  return false;
}

bool ForEachPolygon(const Geometry& geometry, const std::function<void(std::vector<Ring>&)>& consumer) {
  std::vector<Ring> polygon;
  if (geometry.type == GeometryType::kPolygon) {
    ReadRings(geometry.coordinates, geometry.place, "coordinates", polygon);
    consumer(polygon);
    return true;
  }
  if (geometry.type != GeometryType::kMultiPolygon) return false;
  std::size_t index = 0;
  for (const element member : geometry.coordinates) {
    const std::string path = Indexed("coordinates", index);
    ++index;
    array rings;
    if (member.get(rings) != simdjson::SUCCESS) {
      Refuse(geometry.place, path, ValueText(member) + " is not a polygon (an array of rings)");
    }
    if (rings.begin() == rings.end()) continue;
    ReadRings(rings, geometry.place, path, polygon);
    consumer(polygon);
  }
  return true;
}

Ring ReadSinglePolygon(TextSource& source) {
  Ring ring;
  GeoJsonReader(source).ForEachGeometry([&](const Geometry& geometry) {
    const Place& place = geometry.place;
    const bool multiple = geometry.type == GeometryType::kMultiPolygon;
    if (multiple && geometry.coordinates.size() > 1) {
      Refuse(place, "",
             "a MultiPolygon of " + std::to_string(geometry.coordinates.size()) +
                 " polygons; an area is one polygon");
    }
    const bool polygonal = ForEachPolygon(geometry, [&](std::vector<Ring>& rings) {
      if (!ring.empty()) Refuse(place, "", "a second polygon; an area is one polygon");
      if (rings.size() > 1) {
        Refuse(place, multiple ? "coordinates[0]" : "coordinates",
               "a polygon with " + Counted(rings.size() - 1, "hole") + "; an area is one ring without holes");
      }
      ring = std::move(rings[0]);
    });
    if (!polygonal) {
      Refuse(place, "", "a " + std::string(GeometryTypeName(geometry.type)) + "; an area is one polygon");
    }
  });
  if (ring.empty()) throw BadInput(source.name() + ": holds no polygon for the area");
  return ring;
}

}  // namespace vorel::tool
