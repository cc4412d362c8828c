#include "tools/vorel/geojson_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "tools/vorel/failure.h"
#include "tools/vorel/json_problem.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;
using GeometryConsumer = std::function<void(const Geometry&)>;

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr char kRecordSeparator = '\x1E';
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

// Collections hold geometries, and so other collections: as deep as the parser lets them nest.
void VisitGeometry(const element& value, const Place& place, const GeometryConsumer& consumer);

// NOLINTNEXTLINE(misc-no-recursion)
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

// NOLINTNEXTLINE(misc-no-recursion)
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
  if (error != simdjson::SUCCESS) RefuseJson(error, {buffer_.data(), contentBytes_}, source_.name(), 1);
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
    RefuseJson(error, text, source_.name() + (lines ? "" : ", record " + std::to_string(number)),
               lines ? number : 1);
  }
  return true;
}

}  // namespace vorel::tool
