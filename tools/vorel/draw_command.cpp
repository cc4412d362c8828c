#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/command.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/feature_property.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/label_room.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/number_option.h"
#include "tools/vorel/output_target.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/view.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;

constexpr const char* kDescription =
    "Draw what GeoJSON files hold, each in a colour of its own, as one picture.\n"
    "Vertices can be numbered and features labelled, so that results of other commands explain themselves.";

constexpr const char* kExplanation = R"(Input
  GeoJSON in UTF-8: a FeatureCollection, a Feature, a GeometryCollection or a bare geometry, or one of them per
  line. Everything that has coordinates is drawn: lines, polygons, and points as dots. Longitudes beyond the
  antimeridian are laid next to the rest. All is held in memory.

Output
  One SVG picture, north up, with a scale bar. Files are drawn in their order, later ones above, in these colours:
  grey, blue, red, green, violet, amber; at most six files.
  A vertex number counts from 0 along its line. A label is the text of a property; a number has its property's
  name before it and up to two decimals. It stands beside a point, at the middle of a line, or inside of a polygon,
  where it hides little; a property "side" (above, below, left or right) says where instead.
  The file appears complete or not at all.

Exit status
  0 done; 2 something given cannot be used (one line on standard error, nothing written); 1 internal failure.

Examples
  vorel sample drive.geojson --every 100 --out points.geojson
  vorel draw line=drive.geojson samples=points.geojson --number-vertices line --label samples=metres \
      --picture explained.svg)";

struct Colour {
  const char* line;
  const char* fill;
};
constexpr Colour kColours[] = {{"#8c979e", "#c9d0d5"}, {"#2f78c4", "#bcd6ef"}, {"#b3361e", "#f0c9c1"},
                               {"#3f8f4f", "#c6e3cb"}, {"#7a4fa3", "#dccdea"}, {"#b97a10", "#f2dfbd"}};
constexpr std::size_t kMostFiles = sizeof kColours / sizeof kColours[0];
constexpr double kDotPixels = 4.5;
constexpr double kVertexPixels = 4.0;
constexpr double kNumberPixels = 15.0;  // from a vertex to its number
constexpr double kLabelPixels = 16.0;
constexpr double kArrowPlace = 0.62;  // of the way along a segment: its middle is for the label

enum class Kind : std::size_t { kArea, kLine, kPoint };
constexpr std::size_t kKinds = 3;

struct Options {
  std::vector<std::string> files;
  std::string picture;
  std::optional<std::string> view;
  std::optional<std::string> title;
  std::optional<std::string> subtitle;
  std::vector<std::string> numbered;
  std::vector<std::string> dashed;
  std::vector<std::string> arrows;
  std::vector<std::string> labels;
};

/// One thing to draw.
struct Shape {
  std::size_t file;
  Kind kind;
  std::vector<Line> parts;  // one line or point, or the rings of a polygon
  std::string label;
  std::string side;
};

struct File {
  std::string name;
  std::string path;
  std::vector<std::string> labelKeys;
  bool numbered = false;
  bool dashed = false;
  bool arrows = false;
};

/// "NAME=FILE", or a path, whose file's name then serves.
File ParseFile(const std::string& text) {
  const std::size_t equals = text.find('=');
  File file;
  if (equals != std::string::npos && equals > 0 && text.find('/') > equals) {
    file.name = text.substr(0, equals);
    file.path = text.substr(equals + 1);
  } else {
    file.path = text;
    const std::size_t slash = text.rfind('/');
    file.name = text.substr(slash == std::string::npos ? 0 : slash + 1);
    file.name = file.name.substr(0, file.name.find('.'));
  }
  if (file.path.empty() || file.path == "-") throw BadInput("FILE " + text + ": names no file");
  return file;
}

File& Find(std::vector<File>& files, const std::string& name, const std::string& option) {
  const auto found =
      std::find_if(files.begin(), files.end(), [&](const File& file) { return file.name == name; });
  if (found == files.end()) RefuseOption(option, name, "no file is called so");
  return *found;
}

std::vector<File> ParseFiles(const Options& options) {
  if (options.files.size() > kMostFiles) {
    throw BadInput("FILE: " + Counted(options.files.size(), "file") + " are given, more than " +
                   std::to_string(kMostFiles));
  }
  std::vector<File> files;
  for (const std::string& text : options.files) {
    const File file = ParseFile(text);
    for (const File& other : files) {
      if (other.name == file.name) {
        throw BadInput("FILE " + text + ": another file is called " + file.name +
                       " too (NAME=FILE names it)");
      }
    }
    files.push_back(file);
  }
  for (const std::string& name : options.numbered) Find(files, name, "--number-vertices").numbered = true;
  for (const std::string& name : options.dashed) Find(files, name, "--dashed").dashed = true;
  for (const std::string& name : options.arrows) Find(files, name, "--arrows").arrows = true;
  for (const std::string& text : options.labels) {
    const auto [name, keys] = SplitPair(text, '=', "--label", "is not NAME=KEY");
    if (keys.empty()) RefuseOption("--label", text, "is not NAME=KEY");
    File& file = Find(files, name, "--label");
    for (std::size_t begin = 0; begin <= keys.size();) {
      const std::size_t end = std::min(keys.find(',', begin), keys.size());
      file.labelKeys.push_back(keys.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  return files;
}

/// Up to two decimals, without zeros at the end.
std::string ShortNumber(double value) {
  std::string text = FixedNumber(value, 2);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string LabelOf(const simdjson::dom::object* feature, const std::vector<std::string>& keys) {
  std::string label;
  for (const std::string& key : keys) {
    const std::optional<simdjson::dom::element> value = PropertyOf(feature, key);
    if (!value || value->is_null()) continue;
    std::string_view text;
    double number = 0.0;
    if (!label.empty()) label += ", ";
    if (value->get(text) == simdjson::SUCCESS) {
      label += text;
    } else if (value->get(number) == simdjson::SUCCESS) {
      label += key + " " + ShortNumber(number);
    } else {
      label += key + " " + simdjson::minify(*value);
    }
  }
  return label;
}

std::string SideOf(const simdjson::dom::object* feature) {
  const std::optional<simdjson::dom::element> value = PropertyOf(feature, "side");
  std::string_view text;
  return value && value->get(text) == simdjson::SUCCESS ? std::string(text) : "";
}

/// A place inside of a polygon for its label: the middle of the widest stretch at half its height.
GeoCoordinate LabelPlaceOf(const Ring& ring) {
  const GeoRect bounds = BoundsOf(ring);
  const double latitude = (bounds.min.latitude + bounds.max.latitude) / 2.0;
  std::vector<double> crossings;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const GeoCoordinate& a = ring[i];
    const GeoCoordinate& b = ring[(i + 1) % ring.size()];
    if ((a.latitude < latitude) == (b.latitude < latitude)) continue;
    const double ratio = (latitude - a.latitude) / (b.latitude - a.latitude);
    crossings.push_back(a.longitude + ratio * (b.longitude - a.longitude));
  }
  std::sort(crossings.begin(), crossings.end());
  double widest = -1.0;
  double longitude = (bounds.min.longitude + bounds.max.longitude) / 2.0;
  for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
    if (crossings[i + 1] - crossings[i] <= widest) continue;
    widest = crossings[i + 1] - crossings[i];
    longitude = (crossings[i] + crossings[i + 1]) / 2.0;
  }
  return {longitude, latitude};
}

/// Everything that a file holds.
void ReadShapes(TextSource& source, const File& file, std::size_t fileIndex, std::vector<Shape>& shapes) {
  GeoJsonReader(source).ForEachGeometry([&](const Geometry& geometry) {
    const auto add = [&](Kind kind, std::vector<Line> parts) {
      for (Line& part : parts) UnwrapLongitudes(part);
      shapes.push_back({fileIndex, kind, std::move(parts), LabelOf(geometry.feature, file.labelKeys),
                        SideOf(geometry.feature)});
    };
    if (geometry.type == GeometryType::kPoint || geometry.type == GeometryType::kMultiPoint) {
      ForEachPoint(geometry, [&](const GeoCoordinate& point) { add(Kind::kPoint, {{point}}); });
      return;
    }
    if (ForEachPolygon(geometry, [&](std::vector<Ring>& rings) { add(Kind::kArea, rings); })) return;
    Line points;
    ForEachLine(geometry, points, [&] { add(Kind::kLine, {points}); });
  });
}

/// From one place of the picture to another, one pixel long; (0, 0) where they are one place.
Pixel Normalised(const Pixel& from, const Pixel& to) {
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  if (!(length > 0.0)) return {};
  return {(to.x - from.x) / length, (to.y - from.y) / length};
}

class Drawing {
 public:
  Drawing(const std::vector<File>& files, const std::vector<Shape>& shapes, const GeoRect& view)
      : files_(files), shapes_(shapes), picture_(view, Layers(files, shapes)) {}

  MapPicture& Draw() {
    for (const Shape& shape : shapes_) Draw(shape);
    // When all strokes are known.
    for (const Shape& shape : shapes_) {
      if (shape.kind == Kind::kLine && files_[shape.file].numbered)
        NumberVertices(shape.parts.front(), shape.file);
    }
    for (const Shape& shape : shapes_) AddLabel(shape);
    return picture_;
  }

 private:
  /// Areas of all files from below, then lines, then points. A file's first kind has its entry in the legend.
  static std::vector<PictureLayer> Layers(const std::vector<File>& files, const std::vector<Shape>& shapes) {
    constexpr const char* kNames[kKinds] = {"area", "line", "dot"};
    std::vector<PictureLayer> layers;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      for (std::size_t i = 0; i < files.size(); ++i) {
        const auto isOfFile = [&](const Shape& shape) { return shape.file == i; };
        const auto first = std::find_if(shapes.begin(), shapes.end(), isOfFile);
        const bool named = first != shapes.end() && static_cast<std::size_t>(first->kind) == kind;
        const std::string line = std::string("stroke: ") + kColours[i].line;
        const std::string dashes = files[i].dashed ? "; stroke-dasharray: 7 5" : "";
        const std::string width = files[i].dashed ? "1.8" : (i == 0 ? "2.6" : "4.2");
        PictureLayer layer;
        layer.elementClass = std::string(kNames[kind]) + static_cast<char>('A' + i);
        layer.legend = named ? files[i].name : "";
        if (kind == static_cast<std::size_t>(Kind::kArea)) {
          layer.shape = PictureLayer::Shape::kArea;
          layer.style = std::string("fill: ") + kColours[i].fill +
                        "; fill-opacity: 0.55; fill-rule: evenodd; " + line + "; stroke-width: 1.6" + dashes;
        } else if (kind == static_cast<std::size_t>(Kind::kLine)) {
          layer.style = "fill: none; " + line + "; stroke-width: " + width +
                        "; stroke-linejoin: round; stroke-linecap: " + (files[i].dashed ? "butt" : "round") +
                        dashes;
        } else {
          layer.shape = PictureLayer::Shape::kPoint;
          layer.style = std::string("fill: ") + kColours[i].line + "; stroke: #ffffff; stroke-width: 1.2";
        }
        layers.push_back(std::move(layer));
      }
    }
    return layers;
  }

  std::size_t LayerOf(Kind kind, std::size_t file) const {
    return static_cast<std::size_t>(kind) * files_.size() + file;
  }

  void Draw(const Shape& shape) {
    const std::size_t layer = LayerOf(shape.kind, shape.file);
    const Attributes attributes = {{"data-file", files_[shape.file].name}};
    const Line& first = shape.parts.front();
    if (shape.kind == Kind::kPoint) {
      picture_.AddDot(layer, first.front(), kDotPixels, attributes);
      const Pixel at = picture_.projection().ToPixel(first.front());
      room_.AddStroke(at, at);
    } else if (shape.kind == Kind::kArea) {
      picture_.AddPolygon(layer, shape.parts, attributes);
      for (const Ring& ring : shape.parts) AddStrokes(ring, true);
    } else {
      picture_.AddLine(layer, first, attributes);
      AddStrokes(first, false);
      if (files_[shape.file].arrows) AddArrows(first, shape.file);
    }
  }

  void AddStrokes(const Line& line, bool closed) {
    const MapProjection& projection = picture_.projection();
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      room_.AddStroke(projection.ToPixel(line[i]), projection.ToPixel(line[i + 1]));
    }
    if (closed) room_.AddStroke(projection.ToPixel(line.back()), projection.ToPixel(line.front()));
  }

  void AddLabel(const Shape& shape) {
    if (shape.label.empty()) return;
    const Line& first = shape.parts.front();
    const MapProjection& projection = picture_.projection();
    GeoCoordinate position = first.front();
    std::vector<Pixel> directions = DirectionsFrom({0.0, -kLabelPixels});
    if (shape.kind == Kind::kArea) {
      position = LabelPlaceOf(first);
      directions = {{0.0, 0.0}};
    } else if (shape.kind == Kind::kLine) {
      const std::size_t segment = (first.size() - 1) / 2;
      position = VorelGeometryAlgorithm::GetInsertPointFromSegment(first[segment], first[segment + 1], 0.5f);
      const Pixel along =
          Normalised(projection.ToPixel(first[segment]), projection.ToPixel(first[segment + 1]));
      const double up = along.x < 0.0 ? -kLabelPixels : kLabelPixels;  // above, or to the right when upright
      directions = {{along.y * up, -along.x * up},
                    {-along.y * up, along.x * up},
                    {1.6 * along.y * up, -1.6 * along.x * up},
                    {-1.6 * along.y * up, 1.6 * along.x * up},
                    {0.0, -1.5 * kLabelPixels},
                    {0.0, 1.5 * kLabelPixels}};
    }
    if (shape.side == "above") directions = {{0.0, -kLabelPixels}};
    if (shape.side == "below") directions = {{0.0, kLabelPixels}};
    if (shape.side == "left") directions = {{-kLabelPixels, 0.0}};
    if (shape.side == "right") directions = {{kLabelPixels, 0.0}};
    picture_.AddLabel(position, room_.Place(projection.ToPixel(position), directions, shape.label),
                      shape.label);
  }

  /// One on each segment, in the direction of travel.
  void AddArrows(const Line& line, std::size_t file) {
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      if (line[i] == line[i + 1]) continue;
      const GeoCoordinate place = VorelGeometryAlgorithm::GetInsertPointFromSegment(
          line[i], line[i + 1], static_cast<float>(kArrowPlace));
      picture_.AddArrow(place, VorelGeometryAlgorithm::GetAngle(line[i], line[i + 1]), file, i, 0.0);
    }
  }

  /// Dots with their numbers on the outer side of the bend; above a straight line.
  void NumberVertices(const Line& line, std::size_t file) {
    const MapProjection& projection = picture_.projection();
    for (std::size_t i = 0; i < line.size(); ++i) {
      const Pixel here = projection.ToPixel(line[i]);
      const Pixel back = i > 0 ? Normalised(here, projection.ToPixel(line[i - 1])) : Pixel{};
      const Pixel ahead = i + 1 < line.size() ? Normalised(here, projection.ToPixel(line[i + 1])) : Pixel{};
      Pixel outward{-(back.x + ahead.x), -(back.y + ahead.y)};
      const double length = std::hypot(outward.x, outward.y);
      const bool isEnd = i == 0 || i + 1 == line.size();
      if (isEnd || length < 0.3) {
        const Pixel along = i > 0 ? Pixel{-back.x, -back.y} : ahead;
        outward = along.x < 0.0 ? Pixel{-along.y, along.x} : Pixel{along.y, -along.x};
      } else {
        outward = {outward.x / length, outward.y / length};
      }
      picture_.AddDot(LayerOf(Kind::kPoint, file), line[i], kVertexPixels,
                      {{"data-vertex", std::to_string(i)}});
      const std::vector<Pixel> directions =
          DirectionsFrom({outward.x * kNumberPixels, outward.y * kNumberPixels});
      picture_.AddLabel(line[i], room_.Place(here, directions, std::to_string(i)), std::to_string(i));
    }
  }

  const std::vector<File>& files_;
  const std::vector<Shape>& shapes_;
  MapPicture picture_;
  LabelRoom room_;
};

void RunDraw(const Options& options) {
  const std::vector<File> files = ParseFiles(options);
  std::optional<GeoRect> view;
  if (options.view) view = ParseView(*options.view, "--view");
  if (options.picture == "-") throw BadInput("--picture -: the picture needs a file of its own");
  std::deque<TextSource> sources;
  for (const File& file : files) sources.emplace_back(file.path);
  OutputTarget target("--picture", options.picture);
  for (const TextSource& source : sources) target.RefuseSameFileAs(source);

  std::vector<Shape> shapes;
  BoundsCollector bounds;
  for (std::size_t i = 0; i < files.size(); ++i) ReadShapes(sources[i], files[i], i, shapes);
  for (const Shape& shape : shapes) bounds.Add(shape.parts.front());
  if (shapes.empty()) throw BadInput("FILE: there is nothing to draw");
  std::string names;
  for (const File& file : files) names += (names.empty() ? "" : ", ") + file.name;
  Drawing drawing(files, shapes, view.value_or(bounds.Whole()));
  drawing.Draw().Write(
      options.title.value_or(names),
      options.subtitle ? std::vector<std::string>{*options.subtitle} : std::vector<std::string>{}, target);
  OutputTarget::Publish({&target});
}

}  // namespace

Command AddDrawCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const arguments = program.add_subcommand("draw", kDescription);
  arguments
      ->add_option(
          "FILE", options->files,
          "GeoJSON files, each with a name for legend and options;\nwithout one, the file's own name")
      ->type_name("[NAME=]FILE")
      ->required();
  arguments->add_option("--picture", options->picture, "Where the picture goes, as SVG. No default")
      ->type_name("FILE")
      ->required();
  arguments
      ->add_option("--number-vertices", options->numbered,
                   "Mark the vertices of this file's lines and number them.\nMay be given for several files")
      ->type_name("NAME")
      ->take_all()
      ->allow_extra_args(false);
  arguments
      ->add_option(
          "--label", options->labels,
          "Write these properties of this file's features beside them.\nMay be given for several files")
      ->type_name("NAME=KEY,KEY")
      ->take_all()
      ->allow_extra_args(false);
  arguments
      ->add_option("--arrows", options->arrows,
                   "Show the direction of this file's lines.\nMay be given for several files")
      ->type_name("NAME")
      ->take_all()
      ->allow_extra_args(false);
  arguments->add_option("--dashed", options->dashed, "Dash this file's lines. May be given for several files")
      ->type_name("NAME")
      ->take_all()
      ->allow_extra_args(false);
  arguments->add_option("--title", options->title, "Above the picture. Default: the files' names")
      ->type_name("TEXT");
  arguments->add_option("--subtitle", options->subtitle, "The line below the title. Default: none")
      ->type_name("TEXT");
  AddPictureViewOption(*arguments, options->view);
  arguments->footer(kExplanation);
  return {arguments, [options] { RunDraw(*options); }};
}

}  // namespace vorel::tool
