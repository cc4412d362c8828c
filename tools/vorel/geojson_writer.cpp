#include "tools/vorel/geojson_writer.h"

#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

GeoJsonWriter::GeoJsonWriter(OutputTarget& target) : target_(target) {
  target_.Write("{\"type\":\"FeatureCollection\",\"features\":[");
}

void GeoJsonWriter::StartPoint(const tarvo::GeoCoordinate& position) {
  line_ = firstFeature_ ? "\n" : ",\n";
  firstFeature_ = false;
  line_ += "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Point\",\"coordinates\":[";
  line_ += ShortestNumber(FoldLongitude(position.longitude));
  line_ += ',';
  line_ += ShortestNumber(position.latitude);
  line_ += "]},\"properties\":{";
  firstProperty_ = true;
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

void GeoJsonWriter::NullProperty(std::string_view name) {
  StartProperty(name);
  line_ += "null";
}

void GeoJsonWriter::EndFeature() {
  line_ += "}}";
  target_.Write(line_);
}

void GeoJsonWriter::Finish() {
  target_.Write("\n]}\n");
  target_.Finish();
}

}  // namespace vorel::tool
