#ifndef VOREL_TOOLS_VOREL_GEOJSON_WRITER_H_
#define VOREL_TOOLS_VOREL_GEOJSON_WRITER_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/output_target.h"

namespace vorel::tool {

/// Writes a FeatureCollection, one feature per line. Numbers are the shortest that read back as the same double;
/// longitudes are folded into [-180, 180].
///
///     GeoJsonWriter writer(target);
///     writer.StartPoint({7.41, 43.73});
///     writer.Property("heading", 12.5);
///     writer.EndFeature();
///     writer.Finish();
class GeoJsonWriter {
 public:
  /// @param target  must outlive the writer
  explicit GeoJsonWriter(OutputTarget& target);

  void StartPoint(const tarvo::GeoCoordinate& position);

  /// @param points  two or more; a step across the antimeridian comes out as a jump from 180 to -180
  void StartLine(const std::vector<tarvo::GeoCoordinate>& points);

  /// With heights, each the shortest number that reads back as the same float. Coordinates must be finite.
  void StartPoint(const tarvo::GeoCoordinateZ& position);
  void StartLine(const std::vector<tarvo::GeoCoordinateZ>& points);
  /// @param ring  the outer ring, last point equal to the first
  void StartPolygon(const std::vector<tarvo::GeoCoordinateZ>& ring);

  /// Between start and end of a feature, in any number. Names need no escaping: plain ASCII letters.
  void Property(std::string_view name, double value);
  void Property(std::string_view name, std::size_t value);
  void Property(std::string_view name, int value);
  void Property(std::string_view name, bool value);
  void NullProperty(std::string_view name);
  /// A value that is JSON already, such as an id copied from the input.
  void JsonProperty(std::string_view name, std::string_view json);

  void EndFeature();

  /// Closes the collection and finishes the target.
  /// @param members  foreign members after the features, such as `"summary":{"fixes":3}`; none when empty
  void Finish(std::string_view members = {});

 private:
  void StartFeature(std::string_view geometryType);
  void AppendPosition(const tarvo::GeoCoordinate& position);
  void AppendPosition(const tarvo::GeoCoordinateZ& position);
  template <class Point>
  void AppendPositions(const std::vector<Point>& points);
  void StartProperties();
  void StartProperty(std::string_view name);

  OutputTarget& target_;
  std::string line_;
  bool firstFeature_ = true;
  bool firstProperty_ = true;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_GEOJSON_WRITER_H_
