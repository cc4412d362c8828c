#ifndef VOREL_TOOLS_VOREL_LANE_INPUT_H_
#define VOREL_TOOLS_VOREL_LANE_INPUT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/text_source.h"

namespace vorel::tool {

/// A line with heights, and what names it.
struct LaneLine {
  std::vector<tarvo::GeoCoordinateZ> points;  ///< two or more, longitudes unwrapped
  std::size_t index = 0;                      ///< among the lines of the input, before any selection, from 0
  std::string id;     ///< JSON text of the feature's id, else of its property "id", else of `index`
  std::string label;  ///< input and place, for messages
};

/// Which lines of an input a command takes: those whose feature has a property with a given value.
struct LineSelection {
  std::string key;  ///< "id" also means the feature's own id
  std::string value;
};

/// Reads "KEY=VALUE", or nothing where no option is given; throws `BadInput` for anything else.
/// @param option  how the user calls it; used in messages
std::optional<LineSelection> ParseSelection(const std::optional<std::string>& text,
                                            const std::string& option);

struct LaneLines {
  std::vector<LaneLine> lines;        ///< one or more
  std::size_t geometriesLeftOut = 0;  ///< objects that are no lines
};

/// Reads all lines of an input into memory. Throws `BadInput` when none is left.
/// @param selection  compared with the text of a string property, or with the JSON text of any other
LaneLines ReadLaneLines(TextSource& source, const std::optional<LineSelection>& selection);

/// The longitudes and latitudes, for pictures.
std::vector<tarvo::GeoCoordinate> WithoutHeights(const std::vector<tarvo::GeoCoordinateZ>& points);

/// Throws `BadInput` when the result of a computation on `line` cannot be written: a coordinate that is not finite, a
/// latitude beyond 90 degrees or a longitude that is no longer near the map.
/// @param what  such as "the offset line"
void RefuseOffTheMap(const LaneLine& line, const std::vector<tarvo::GeoCoordinateZ>& points,
                     const std::string& what);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_LANE_INPUT_H_
