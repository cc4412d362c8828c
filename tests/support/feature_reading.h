#ifndef VOREL_TESTS_SUPPORT_FEATURE_READING_H_
#define VOREL_TESTS_SUPPORT_FEATURE_READING_H_

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"

namespace vorel::test {

/// One feature of a command's output.
struct FeatureRow {
  std::string type;                               ///< of the geometry
  std::vector<tarvo::GeoCoordinateZ> points;      ///< of a Polygon, its one ring
  std::map<std::string, std::string> properties;  ///< JSON texts

  double Number(const std::string& name) const { return std::stod(properties.at(name)); }
};

/// Reads a collection of Points, LineStrings and Polygons with heights; throws when it is anything else.
std::vector<FeatureRow> ReadFeatures(const std::string& text);

/// The JSON text of a member of the collection.
std::string CollectionMember(const std::string& text, const std::string& name);

/// How often `part` occurs in `text`.
std::size_t CountOf(const std::string& text, const std::string& part);

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_FEATURE_READING_H_
