#include "tools/vorel/geojson_writer.h"

#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

constexpr std::size_t kWriteAtBytes = std::size_t{1} << 16;  // of one feature

}  // namespace

GeoJsonWriter::GeoJsonWriter(OutputTarget& target) : target_(target) {
  target_.Write("{\"type\":\"FeatureCollection\",\"features\":[");
}

void GeoJsonWriter::StartFeature(std::string_view geometryType) {
  line_ = firstFeature_ ? "\n" : ",\n";
  firstFeature_ = false;
  line_ += "{\"type\":\"Feature\",\"geometry\":{\"type\":\"";
  line_ += geometryType;
  line_ += "\",\"coordinates\":";
}

void GeoJsonWriter::AppendPosition(const tarvo::GeoCoordinate& position) {
  line_ += '[';
  line_ += ShortestNumber(FoldLongitude(position.longitude));
  line_ += ',';
  line_ += ShortestNumber(position.latitude);
  line_ += ']';
}

void GeoJsonWriter::AppendPosition(const tarvo::GeoCoordinateZ& position) {
  AppendPosition(static_cast<const tarvo::GeoCoordinate&>(position));
  line_.back() = ',';
  line_ += ShortestNumber(position.z);
  line_ += ']';
}

template <class Point>
void GeoJsonWriter::AppendPositions(const std::vector<Point>& points) {
  char separator = '[';
  for (const Point& point : points) {
    line_ += separator;
    separator = ',';
    AppendPosition(point);
    if (line_.size() < kWriteAtBytes) continue;
    target_.Write(line_);
    line_.clear();
  }
  line_ += ']';
}

void GeoJsonWriter::StartProperties() {
  line_ += "},\"properties\":{";
  firstProperty_ = true;
}

void GeoJsonWriter::StartPoint(const tarvo::GeoCoordinate& position) {
  StartFeature("Point");
  AppendPosition(position);
  StartProperties();
}

void GeoJsonWriter::StartLine(const std::vector<tarvo::GeoCoordinate>& points) {
  StartFeature("LineString");
  AppendPositions(points);
  StartProperties();
}

void GeoJsonWriter::StartPoint(const tarvo::GeoCoordinateZ& position) {
  StartFeature("Point");
  AppendPosition(position);
  StartProperties();
}

void GeoJsonWriter::StartLine(const std::vector<tarvo::GeoCoordinateZ>& points) {
  StartFeature("LineString");
  AppendPositions(points);
  StartProperties();
}

void GeoJsonWriter::StartPolygon(const std::vector<tarvo::GeoCoordinateZ>& ring) {
  StartFeature("Polygon");
  line_ += '[';
  AppendPositions(ring);
  line_ += ']';
  StartProperties();
}

void GeoJsonWriter::StartProperty(std::string_view name) {
  line_ += firstProperty_ ? "\"" : ",\"";
  firstProperty_ = false;
  line_ += name;
  line_ += "\":";
}

void GeoJsonWriter::Property(std::string_view name, double value) {
  StartProperty(name);
  line_ += ShortestNumber(value);
}

void GeoJsonWriter::Property(std::string_view name, std::size_t value) {
  StartProperty(name);
  line_ += std::to_string(value);
}

void GeoJsonWriter::Property(std::string_view name, int value) {
  StartProperty(name);
  line_ += std::to_string(value);
}

void GeoJsonWriter::Property(std::string_view name, bool value) {
  StartProperty(name);
  line_ += value ? "true" : "false";
}

void GeoJsonWriter::NullProperty(std::string_view name) {
  StartProperty(name);
  line_ += "null";
}

void GeoJsonWriter::JsonProperty(std::string_view name, std::string_view json) {
  StartProperty(name);
  line_ += json;
}

void GeoJsonWriter::EndFeature() {
  line_ += "}}";
  target_.Write(line_);
}

void GeoJsonWriter::Finish(std::string_view members) {
  target_.Write("\n]");
  if (!members.empty()) target_.Write(",");
  target_.Write(members);
  target_.Write("}\n");
  target_.Finish();
}

}  // namespace vorel::tool
