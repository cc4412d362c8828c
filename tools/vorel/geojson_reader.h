#ifndef VOREL_TOOLS_VOREL_GEOJSON_READER_H_
#define VOREL_TOOLS_VOREL_GEOJSON_READER_H_

#include <simdjson.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/vorel/geojson_place.h"
#include "tools/vorel/text_source.h"

namespace vorel::tool {

enum class GeometryType {
  kPoint,
  kMultiPoint,
  kLineString,
  kMultiLineString,
  kPolygon,
  kMultiPolygon,
};

/// One geometry with coordinates. Valid only while the consumer that gets it runs.
struct Geometry {
  GeometryType type;
  simdjson::dom::array coordinates;
  const Place& place;
  const simdjson::dom::object* feature = nullptr;  ///< that it belongs to; null for a bare geometry
};

/// "LineString" for `kLineString`.
std::string_view GeometryTypeName(GeometryType type);

/// Reads the geometries of one GeoJSON input, one after the other, with buffers that are used again.
///
/// The input is one GeoJSON object (FeatureCollection, Feature, GeometryCollection or geometry), or a sequence of
/// them: one per line (newline-delimited GeoJSON), or each after a record separator (RFC 8142). Which of them is
/// decided by the content, never by the file's name:
///  - it starts with a record separator (0x1E): records end at the next one;
///  - its first line that is not blank is a whole JSON value and more follows: one record per line;
///  - otherwise: one object, over as many lines as it likes.
/// A byte-order mark is skipped, and so are blank lines.
///
/// Memory: of a sequence one record at a time, each at most `kMaxRecordBytes` long; a single object is held whole.
/// Everything that is not well-formed is thrown as `BadInput` that names the input, the place and the value.
class GeoJsonReader {
 public:
  static constexpr std::size_t kMaxRecordBytes = std::size_t{16} << 20;

  /// @param source  must outlive the reader; nothing else may read from it
  explicit GeoJsonReader(TextSource& source);

  /// Reads the whole input and calls `consumer` for each geometry. A second call reads it all again, for which a
  /// source that cannot seek needs `TextSource::KeepForSecondPass`. GeometryCollections are opened; features without
  /// a geometry and geometries without coordinates are passed over.
  void ForEachGeometry(const std::function<void(const Geometry&)>& consumer);

  /// Bytes taken from the input in this pass.
  std::uint64_t bytesRead() const { return bytesRead_; }

 private:
  enum class Layout { kUnknown, kDocument, kRecords };

  void StartPass();
  void FindLayout();
  bool FillBuffer();
  void ReadDocument();
  void ReadRecords(const std::function<void(const Geometry&)>& consumer);
  bool ParseRecord(std::size_t begin, std::size_t end, simdjson::dom::element& root, std::size_t number);

  TextSource& source_;
  simdjson::dom::parser parser_;
  std::vector<char> buffer_;  // content, then room for the padding that the parser reads beyond it
  std::size_t contentBytes_ = 0;
  bool sourceEnded_ = false;
  bool started_ = false;
  Layout layout_ = Layout::kUnknown;
  char separator_ = '\n';
  std::uint64_t bytesRead_ = 0;
  simdjson::dom::element document_;  // kDocument, once it is parsed
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_GEOJSON_READER_H_
