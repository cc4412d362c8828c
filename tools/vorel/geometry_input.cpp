#include "tools/vorel/geometry_input.h"

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

void RefuseWithout(const std::string& noun, const TextSource& source, std::size_t leftOut) {
  throw BadInput(source.name() + ": holds no " + noun +
                 (leftOut == 0 ? "" : ", only " + Counted(leftOut, "other object")));
}

void NoteLeftOut(const TextSource& source, std::size_t leftOut, const std::string& whatTheyAre) {
  if (leftOut == 0) return;
  PrintNote(source.name() + ": left out " + Counted(leftOut, "object") + " that are " + whatTheyAre);
}

GeometryInput::GeometryInput(const std::string& path, const std::string& argument, std::string noun)
    : source_(OpenInput(path, argument)), reader_(source_), noun_(std::move(noun)) {}

void GeometryInput::Read(const std::function<bool(const Geometry&)>& consumer) {
  Progress progress(source_.sizeBytes());
  count_ = 0;
  leftOut_ = 0;
  reader_.ForEachGeometry([&](const Geometry& geometry) {
    if (!consumer(geometry)) ++leftOut_;
    progress.Update(reader_.bytesRead(), count_);
  });
  if (count_ == 0) RefuseWithout(noun_, source_, leftOut_);
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

BoundsCollector GeometryInput::ReadLineBounds() {
  source_.KeepForSecondPass();
  BoundsCollector bounds;
  ForEachLine([&](Line& line, std::size_t) {
    UnwrapLongitudes(line);
    bounds.Add(line);
  });
  return bounds;
}

void GeometryInput::NoteWhatIsLeftOut() const {
  NoteLeftOut(source_, leftOut_, "no " + noun_ + "s");
}

}  // namespace vorel::tool
