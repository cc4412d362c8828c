#ifndef VOREL_TOOLS_VOREL_GEOMETRY_INPUT_H_
#define VOREL_TOOLS_VOREL_GEOMETRY_INPUT_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/text_source.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

using Line = std::vector<tarvo::GeoCoordinate>;

/// One input of a command and the kind of thing it takes from it: lines, points or polygons, counted from 0 in the order
/// of the input. Other geometries are passed over and counted. Shows progress while it reads.
class GeometryInput {
 public:
  /// @param path, argument  as for `OpenInput`
  /// @param noun            what is read from it: "line", "point" or "polygon"
  GeometryInput(const std::string& path, const std::string& argument, std::string noun);

  /// Each of these reads the whole input; a second call needs `source().KeepForSecondPass()` before the first one.
  /// Throws `BadInput` when the input holds none of the things asked for.

  /// @param consumer  gets each line as it stands in the input, in a buffer that it may change, and its index
  void ForEachLine(const std::function<void(Line& line, std::size_t lineIndex)>& consumer);

  /// @param consumer  gets the lines of each LineString (one line) and MultiLineString, unchanged
  void ForEachLineGroup(const std::function<void(const std::vector<Line>& lines)>& consumer);

  void ForEachPoint(const std::function<void(const tarvo::GeoCoordinate& point, std::size_t pointIndex)>&);

  void ForEachPolygon(const std::function<void(std::vector<Ring>& rings, std::size_t polygonIndex)>&);

  /// Reads all lines for the rectangle around them, and gets ready to read them again.
  BoundsCollector ReadLineBounds();

  TextSource& source() { return source_; }
  const std::string& name() const { return source_.name(); }

  /// Tells the user when something was passed over.
  void NoteWhatIsLeftOut() const;

 private:
  void Read(const std::function<bool(const Geometry&)>& consumer);

  TextSource source_;
  GeoJsonReader reader_;
  std::string noun_;
  std::size_t count_ = 0;
  std::size_t leftOut_ = 0;
};

/// Throws the `BadInput` of an input that holds nothing of the kind `noun`.
/// @param leftOut  how many other objects it holds
[[noreturn]] void RefuseWithout(const std::string& noun, const TextSource& source, std::size_t leftOut);

/// Tells the user how many objects of an input were passed over, if any.
/// @param whatTheyAre  such as "no lines"
void NoteLeftOut(const TextSource& source, std::size_t leftOut, const std::string& whatTheyAre);

/// How the help of every command describes the input that holds its lines.
extern const char* const kLineInputHelp;

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_GEOMETRY_INPUT_H_
