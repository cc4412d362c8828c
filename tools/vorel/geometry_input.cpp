#include "tools/vorel/geometry_input.h"

#include <unistd.h>

#include <utility>

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/progress.h"

namespace vorel::tool {

const char* const kLineInputHelp =
    R"(  GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry. Each LineString,
  and each line of a MultiLineString, is one line, counted from 0; other geometries are left out. Positions are
  [longitude, latitude] in degrees; further numbers are ignored. Newline-delimited GeoJSON (one object per line,
  up to 16 MiB each) and RFC 8142 sequences are recognised by their content.
)";

GeometryInput::GeometryInput(const std::string& path, const std::string& argument, std::string noun)
    : source_(path), reader_(source_), noun_(std::move(noun)) {
  if (path == "-" && isatty(STDIN_FILENO) == 1) {
    throw BadInput("no " + argument + " is given, and standard input is a terminal");
  }
}

void GeometryInput::Read(const std::function<bool(const Geometry&)>& consumer) {
  Progress progress(source_.sizeBytes());
  count_ = 0;
  leftOut_ = 0;
  reader_.ForEachGeometry([&](const Geometry& geometry) {
    if (!consumer(geometry)) ++leftOut_;
    progress.Update(reader_.bytesRead(), count_);
  });
  if (count_ > 0) return;
  throw BadInput(name() + ": holds no " + noun_ +
                 (leftOut_ == 0 ? "" : ", only " + Counted(leftOut_, "other object")));
}

void GeometryInput::ForEachLine(const std::function<void(Line&, std::size_t)>& consumer) {
  Line line;
  Read([&](const Geometry& geometry) {
    if (geometry.type != GeometryType::kLineString && geometry.type != GeometryType::kMultiLineString) {
      return false;
    }
    tool::ForEachLine(geometry, line, [&] { consumer(line, count_++); });
    return true;
  });
}

void GeometryInput::ForEachLineGroup(const std::function<void(const std::vector<Line>&)>& consumer) {
  Line line;
  std::vector<Line> lines;
  Read([&](const Geometry& geometry) {
    if (geometry.type != GeometryType::kLineString && geometry.type != GeometryType::kMultiLineString) {
      return false;
    }
    lines.clear();
    tool::ForEachLine(geometry, line, [&] { lines.push_back(std::move(line)); });
    if (lines.empty()) return true;
    count_ += lines.size();
    consumer(lines);
    return true;
  });
}

void GeometryInput::ForEachPoint(
    const std::function<void(const tarvo::GeoCoordinate&, std::size_t)>& consumer) {
  Read([&](const Geometry& geometry) {
    return tool::ForEachPoint(geometry,
                              [&](const tarvo::GeoCoordinate& point) { consumer(point, count_++); });
  });
}

void GeometryInput::ForEachPolygon(const std::function<void(std::vector<Ring>&, std::size_t)>& consumer) {
  Read([&](const Geometry& geometry) {
    return tool::ForEachPolygon(geometry, [&](std::vector<Ring>& rings) { consumer(rings, count_++); });
  });
}

GeoRect GeometryInput::ReadLineBounds() {
  source_.KeepForSecondPass();
  BoundsCollector bounds;
  ForEachLine([&](Line& line, std::size_t) {
    UnwrapLongitudes(line);
    bounds.Add(line);
  });
  return bounds.Whole();
}

void GeometryInput::NoteWhatIsLeftOut() const {
  if (leftOut_ == 0) return;
  PrintNote(name() + ": left out " + Counted(leftOut_, "object") + " that are no " + noun_ + "s");
}

}  // namespace vorel::tool
