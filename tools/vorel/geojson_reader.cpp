#include "tools/vorel/geojson_reader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::element_type;
using simdjson::dom::object;
using GeometryConsumer = std::function<void(const Geometry&)>;

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr char kRecordSeparator = '\x1E';
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kValueCharacters = 40;  // of an offending value in a message

constexpr std::array<std::pair<std::string_view, GeometryType>, 6> kGeometryTypes = {{
    {"Point", GeometryType::kPoint},
    {"MultiPoint", GeometryType::kMultiPoint},
    {"LineString", GeometryType::kLineString},
    {"MultiLineString", GeometryType::kMultiLineString},
    {"Polygon", GeometryType::kPolygon},
    {"MultiPolygon", GeometryType::kMultiPolygon},
}};

bool IsJsonBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool IsBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsJsonBlank);
}

std::string JoinPath(const std::string& path, const std::string& member) {
  return path.empty() || member.empty() ? path + member : path + "." + member;
}

[[noreturn]] void Refuse(const Place& place, const std::string& member, const std::string& problem) {
  const std::string path = JoinPath(place.path, member);
  throw BadInput(place.input + ": " + (path.empty() ? "" : path + ": ") + problem);
}

/// The value as it stands in the input, shortened.
template <class Value>
std::string ValueText(const Value& value) {
  return Shorten(simdjson::minify(value), kValueCharacters);
}

std::string_view RequireType(const object& value, const Place& place) {
  element type;
  if (value.at_key("type").get(type) != simdjson::SUCCESS)
    Refuse(place, "", "has no \"type\", so it is not GeoJSON");
  std::string_view name;
  if (type.get(name) != simdjson::SUCCESS) Refuse(place, "type", ValueText(type) + " is not a string");
  return name;
}

array RequireArray(const object& value, const char* key, const Place& place) {
  element member;
  if (value.at_key(key).get(member) != simdjson::SUCCESS) {
    Refuse(place, "", "has no \"" + std::string(key) + "\"");
  }
  array result;
  if (member.get(result) != simdjson::SUCCESS) Refuse(place, key, ValueText(member) + " is not an array");
  return result;
}

void VisitGeometry(const element& value, const Place& place, const GeometryConsumer& consumer);

void VisitTypedGeometry(const object& value, std::string_view typeName, const Place& place,
                        const GeometryConsumer& consumer) {
  if (typeName == "GeometryCollection") {
    std::size_t index = 0;
    for (const element member : RequireArray(value, "geometries", place)) {
      VisitGeometry(member, {place.input, JoinPath(place.path, "geometries[" + std::to_string(index) + "]")},
                    consumer);
      ++index;
    }
    return;
  }
  const auto* const known = std::find_if(kGeometryTypes.begin(), kGeometryTypes.end(),
                                         [&](const auto& candidate) { return candidate.first == typeName; });
  if (known == kGeometryTypes.end()) {
    Refuse(place, "type", "\"" + Shorten(typeName, kValueCharacters) + "\" is not a GeoJSON geometry type");
  }
  const array coordinates = RequireArray(value, "coordinates", place);
  if (coordinates.begin() == coordinates.end()) return;
  consumer({known->second, coordinates, place});
}

void VisitGeometry(const element& value, const Place& place, const GeometryConsumer& consumer) {
  object geometry;
  if (value.get(geometry) != simdjson::SUCCESS)
    Refuse(place, "", ValueText(value) + " is not a geometry object");
  VisitTypedGeometry(geometry, RequireType(geometry, place), place, consumer);
}

void VisitFeature(const object& feature, const Place& place, const GeometryConsumer& consumer) {
  element geometry;
  if (feature.at_key("geometry").get(geometry) != simdjson::SUCCESS) Refuse(place, "", "has no \"geometry\"");
  if (geometry.is_null()) return;
  VisitGeometry(geometry, {place.input, JoinPath(place.path, "geometry")}, [&](const Geometry& member) {
    consumer({member.type, member.coordinates, member.place, &feature});
  });
}

/// Any GeoJSON object at the root of an input or record.
void VisitRoot(const element& root, const std::string& input, const GeometryConsumer& consumer) {
  const Place place{input, ""};
  object value;
  if (root.get(value) != simdjson::SUCCESS) Refuse(place, "", ValueText(root) + " is not a GeoJSON object");
  const std::string_view type = RequireType(value, place);
  if (type == "Feature") {
    VisitFeature(value, place, consumer);
    return;
  }
  if (type != "FeatureCollection") {
    VisitTypedGeometry(value, type, place, consumer);
    return;
  }
  std::size_t index = 0;
  Place member{input, ""};
  for (const element feature : RequireArray(value, "features", place)) {
    member.path = "features[" + std::to_string(index) + "]";
    object featureObject;
    if (feature.get(featureObject) != simdjson::SUCCESS) {
      Refuse(member, "", ValueText(feature) + " is not a Feature object");
    }
    const std::string_view featureType = RequireType(featureObject, member);
    if (featureType != "Feature") {
      Refuse(member, "type",
             "\"" + Shorten(featureType, kValueCharacters) + "\" stands where \"Feature\" must");
    }
    VisitFeature(featureObject, member, consumer);
    ++index;
  }
}

std::string Indexed(const std::string& path, std::size_t index) {
  return path + "[" + std::to_string(index) + "]";
}

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

/// Takes note of the first problem that the slower parser finds, and where.
class ProblemFinder : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return Open(); }
  bool key(string_t&) override { return true; }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(); }
  bool end_array() override { return Close(); }
  bool parse_error(std::size_t position, const std::string& token,
                   const nlohmann::detail::exception& what) override {
    position_ = position;
    token_ = token;
    numberOverflows_ = dynamic_cast<const nlohmann::detail::out_of_range*>(&what) != nullptr;
    return false;
  }

  std::size_t position() const { return position_; }
  const std::string& token() const { return token_; }
  bool numberOverflows() const { return numberOverflows_; }
  bool isTooDeep() const { return depth_ > simdjson::DEFAULT_MAX_DEPTH; }

 private:
  bool Open() { return ++depth_ <= simdjson::DEFAULT_MAX_DEPTH; }
  bool Close() {
    --depth_;
    return true;
  }

  std::size_t depth_ = 0;
  std::size_t position_ = 0;  // bytes taken when the problem showed
  std::string token_;
  bool numberOverflows_ = false;
};

}  // namespace

std::string_view GeometryTypeName(GeometryType type) {
  for (const auto& [name, candidate] : kGeometryTypes) {
    if (candidate == type) return name;
  }
  return "unknown";
}

GeoJsonReader::GeoJsonReader(TextSource& source) : source_(source) {}

bool GeoJsonReader::FillBuffer() {
  if (sourceEnded_) return false;
  // Grown by doubling: a single object may be long. The padding behind the content is the parser's condition.
  const std::size_t needed = contentBytes_ + kChunkBytes + simdjson::SIMDJSON_PADDING;
  if (buffer_.size() < needed) buffer_.resize(std::max(needed, buffer_.size() + buffer_.size() / 2));
  const std::size_t count = source_.Read(buffer_.data() + contentBytes_, kChunkBytes);
  contentBytes_ += count;
  bytesRead_ += count;
  sourceEnded_ = count < kChunkBytes;
  return count > 0;
}

void GeoJsonReader::StartPass() {
  if (started_) source_.Rewind();
  started_ = true;
  contentBytes_ = 0;
  bytesRead_ = 0;
  sourceEnded_ = false;
  FillBuffer();
  if (std::string_view(buffer_.data(), contentBytes_).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    std::fill_n(buffer_.begin(), kByteOrderMark.size(), ' ');
  }
}

void GeoJsonReader::FindLayout() {
  const auto content = [&] { return std::string_view(buffer_.data(), contentBytes_); };
  std::size_t begin = 0;
  const auto skipBlank = [&] {
    do {
      while (begin < contentBytes_ && IsJsonBlank(buffer_[begin])) ++begin;
    } while (begin == contentBytes_ && FillBuffer());
    return begin < contentBytes_;
  };
  if (!skipBlank()) throw BadInput(source_.name() + ": is empty");
  if (buffer_[begin] == kRecordSeparator) {
    layout_ = Layout::kRecords;
    separator_ = kRecordSeparator;
    return;
  }
  std::size_t end = content().find('\n', begin);
  while (end == std::string_view::npos && contentBytes_ - begin <= kMaxRecordBytes && FillBuffer()) {
    end = content().find('\n', begin);
  }
  layout_ = Layout::kDocument;
  if (end == std::string_view::npos) return;
  element firstLine;
  if (parser_.parse(buffer_.data() + begin, end - begin, false).get(firstLine) != simdjson::SUCCESS) return;
  begin = end;
  if (skipBlank()) layout_ = Layout::kRecords;
}

void GeoJsonReader::ReadDocument() {
  source_.StopKeeping();
  if (source_.sizeBytes() > contentBytes_) {
    buffer_.resize(std::max<std::size_t>(buffer_.size(), static_cast<std::size_t>(source_.sizeBytes()) +
                                                             kChunkBytes + simdjson::SIMDJSON_PADDING));
  }
  while (FillBuffer()) {
  }
  const simdjson::error_code error = parser_.parse(buffer_.data(), contentBytes_, false).get(document_);
  if (error != simdjson::SUCCESS)
    ThrowParseProblem(error, {buffer_.data(), contentBytes_}, source_.name(), 1);
}

void GeoJsonReader::ForEachGeometry(const GeometryConsumer& consumer) {
  if (layout_ == Layout::kUnknown) {
    StartPass();
    FindLayout();
    if (layout_ == Layout::kDocument) ReadDocument();
  } else if (layout_ == Layout::kRecords) {
    StartPass();
  }
  if (layout_ == Layout::kDocument) {
    VisitRoot(document_, source_.name(), consumer);
  } else {
    ReadRecords(consumer);
  }
}

void GeoJsonReader::ReadRecords(const GeometryConsumer& consumer) {
  const bool lines = separator_ == '\n';
  const std::string label = source_.name() + (lines ? ", line " : ", record ");
  std::size_t begin = 0;
  std::size_t searched = 0;            // no separator lies before this
  std::size_t number = lines ? 1 : 0;  // before the first record separator there is only blank space
  std::string input;
  for (bool more = true; more;) {
    const void* const found = std::memchr(buffer_.data() + searched, separator_, contentBytes_ - searched);
    std::size_t end = contentBytes_;
    if (found != nullptr) {
      end = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
    } else if (!sourceEnded_) {
      if (contentBytes_ - begin > kMaxRecordBytes) {
        throw BadInput(label + std::to_string(number) + ": is longer than " +
                       std::to_string(kMaxRecordBytes >> 20) + " MiB");
      }
      std::memmove(buffer_.data(), buffer_.data() + begin, contentBytes_ - begin);
      contentBytes_ -= begin;
      begin = 0;
      searched = contentBytes_;
      FillBuffer();
      continue;
    } else {
      more = false;
    }
    element root;
    if (ParseRecord(begin, end, root, number)) {
      input = label + std::to_string(number);
      VisitRoot(root, input, consumer);
    }
    begin = searched = end + 1;
    ++number;
  }
}

bool GeoJsonReader::ParseRecord(std::size_t begin, std::size_t end, element& root, std::size_t number) {
  const std::string_view text(buffer_.data() + begin, end - begin);
  if (IsBlank(text)) return false;
  const simdjson::error_code error = parser_.parse(text.data(), text.size(), false).get(root);
  if (error != simdjson::SUCCESS) {
    const bool lines = separator_ == '\n';
    ThrowParseProblem(error, text, source_.name() + (lines ? "" : ", record " + std::to_string(number)),
                      lines ? number : 1);
  }
  return true;
}

void GeoJsonReader::ThrowParseProblem(simdjson::error_code error, std::string_view text,
                                      const std::string& input, std::size_t firstLine) {
  const auto lineAt = [&](std::size_t offset) {
    return firstLine + static_cast<std::size_t>(std::count(text.begin(), text.begin() + offset, '\n'));
  };
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  if (error == simdjson::CAPACITY) {
    throw BadInput(input +
                   ": is too long for one GeoJSON object (more than 4 GiB); write one feature per line");
  }
  if (!simdjson::validate_utf8(text.data(), text.size())) {
    if (text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF") {
      throw BadInput(input + ": is UTF-16, not UTF-8");
    }
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find('\n', begin)) != std::string_view::npos; begin = end + 1) {
      if (!simdjson::validate_utf8(text.data() + begin, end - begin)) break;
    }
    throw BadInput(input + ": line " + std::to_string(lineAt(begin)) + " is not UTF-8");
  }
  // The fast parser does not say where; this path runs once, so a second, slower one may look for the place.
  ProblemFinder finder;
  nlohmann::json::sax_parse(text.begin(), text.end(), &finder);
  if (finder.isTooDeep()) {
    throw BadInput(input + ": is nested more than " + std::to_string(simdjson::DEFAULT_MAX_DEPTH) +
                   " levels deep");
  }
  if (finder.position() == 0) {
    throw BadInput(input + ": " +
                   (error == simdjson::NUMBER_ERROR
                        ? "holds an integer of more than 64 bits"
                        : std::string("not JSON: ") + simdjson::error_message(error)));
  }
  std::size_t offset = std::min(finder.position() - 1, text.size());
  if (finder.numberOverflows())
    offset -= std::min(offset, finder.token().size() - 1);  // to the number's first digit
  const std::size_t lineStart = offset == 0 ? 0 : text.rfind('\n', offset - 1) + 1;  // npos + 1 is 0
  const std::string where =
      "line " + std::to_string(lineAt(offset)) + ", column " + std::to_string(offset - lineStart + 1) + ": ";
  if (finder.numberOverflows()) {
    throw BadInput(input + ": " + where + "the number " + Shorten(finder.token(), kValueCharacters) +
                   " is not finite");
  }
  const std::string_view rest = text.substr(offset);
  if (rest.empty()) throw BadInput(input + ": not JSON: " + where + "ends too early");
  const auto wordEnd = std::find_if_not(
      rest.begin(), rest.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
  const auto wordLength = std::max<std::size_t>(1, static_cast<std::size_t>(wordEnd - rest.begin()));
  throw BadInput(input + ": not JSON: " + where + "unexpected \"" +
                 Shorten(rest.substr(0, wordLength), kValueCharacters) + "\"");
}

void ReadLinePoints(const array& coordinates, const Place& place, const std::string& pathInGeometry,
                    std::vector<tarvo::GeoCoordinate>& points) {
  ReadPoints(coordinates, place, pathInGeometry, points);
}

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
    const auto place = [&] { return path; };
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
