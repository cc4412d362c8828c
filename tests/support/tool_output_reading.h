#ifndef VOREL_TESTS_SUPPORT_TOOL_OUTPUT_READING_H_
#define VOREL_TESTS_SUPPORT_TOOL_OUTPUT_READING_H_

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/geo_coordinate.h"

namespace vorel::test {

/// One feature of the tool's GeoJSON output.
struct FeatureRow {
  std::string geometryType;                       ///< Point or LineString
  std::vector<tarvo::GeoCoordinate> points;       ///< one for a Point
  std::map<std::string, std::string> properties;  ///< values as JSON spells them
};

/// Reads the tool's GeoJSON output; throws when it is not one FeatureCollection of points and lines.
std::vector<FeatureRow> ReadFeatures(const std::string& text);

/// One element of a picture's map, in the order of the file.
struct MapElement {
  std::string elementClass;
  std::map<std::string, std::string> attributes;
  std::vector<std::pair<double, double>> pixels;  ///< vertices of a path, centre of a circle
};

struct MapReading {
  std::string title;
  std::string allText;  ///< each text on the picture, one per line
  double width = 0.0;   ///< of the map, in pixels
  double height = 0.0;
  std::vector<MapElement> elements;

  std::vector<MapElement> OfClass(const std::string& elementClass) const;
};

/// Reads one of the tool's pictures back; throws when it is not well-formed XML.
MapReading ReadMap(const std::string& file);

/// A line as a bare GeoJSON geometry, with numbers that read back as the same doubles.
std::string LineStringText(const std::vector<tarvo::GeoCoordinate>& line);

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_TOOL_OUTPUT_READING_H_
