#include "tools/vorel/map_picture.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "tools/vorel/map_clipping.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/svg_elements.h"

namespace vorel::tool {
namespace {

constexpr double kLeftPixels = 76.0;  // room for latitudes of up to four decimals
constexpr double kLeftPixelsPerByte = 7.2;
constexpr double kRightPixels = 28.0;
constexpr double kTitlePixels = 48.0;
constexpr double kSubtitlePixels = 19.0;  // each line
constexpr double kFooterPixels = 74.0;    // longitudes, scale bar and legend
constexpr double kOverlapPixels = 60.0;   // lines go on this far beyond the map's edge, under the clip
constexpr double kFarthestPixels = 1e5;   // where an arrow far outside of the map is put
constexpr double kFullArrowPixels = 14.0;
constexpr double kSmallestArrowPixels = 2.0;
constexpr double kReadableArrowPixels = 8.0;
constexpr double kLegendEntryPixels = 9.0;
constexpr double kLegendCharacterPixels = 6.0;
constexpr double kFullPointRadiusPixels = 3.6;
constexpr double kOutlinedPointRadiusPixels = 3.0;
constexpr double kSmallestPointRadiusPixels = 1.3;
constexpr double kFullSizePoints = 200.0;
constexpr const char* kSlenderStyle = "stroke-width: 1.6";
constexpr double kPointRadiusOfSpacing = 0.32;
constexpr double kArrowOfSpacing = 0.65;
constexpr double kRoomOfEnlargedArrow = 2.4;  // arrow lengths from one to the next

constexpr const char* kStyle = R"(
text { font-family: "DejaVu Sans", "Helvetica Neue", Arial, sans-serif; fill: #2b3a45; }
.title { font-size: 17px; font-weight: bold; }
.subtitle { font-size: 12.5px; fill: #55656f; }
.tick, .legend, .scale { font-size: 11.5px; fill: #55656f; }
.page { fill: #ffffff; }
.land { fill: #f1efe9; }
.frame { fill: none; stroke: #8c979e; stroke-width: 1; }
.graticule { fill: none; stroke: #dcd9d0; stroke-width: 0.8; }
.view { fill: #fffefa; stroke: none; }
.view-border { fill: none; stroke: #7b8a94; stroke-width: 1.2; stroke-dasharray: 6 4; }
.area, .legend-area { fill: #d9e6cf; fill-opacity: 0.75; fill-rule: evenodd; stroke: #8fae78; stroke-width: 1.2; }
.route, .legend-route { fill: none; stroke: #b3bcc4; stroke-width: 2.4; stroke-linejoin: round; stroke-linecap: round; }
.piece, .legend-piece { fill: none; stroke: #4f93ce; stroke-width: 4.6; stroke-linejoin: round; stroke-linecap: round; }
.arrow, .legend-arrow { fill: #b3361e; stroke: #ffffff; stroke-width: 1; stroke-linejoin: round; }
.point, .legend-point { fill: #b3361e; stroke: #ffffff; stroke-width: 0.8; }
.hollow, .legend-hollow { fill: #ffffff; stroke: #55656f; stroke-width: 1.2; }
.small { fill: #ffffff; stroke: none; }
.label { font-size: 15px; font-weight: bold; paint-order: stroke; stroke: #f1efe9; stroke-width: 4; stroke-linejoin: round; }
.bar { fill: #2b3a45; stroke: #2b3a45; stroke-width: 1; }
.bar-light { fill: #ffffff; stroke: #2b3a45; stroke-width: 1; }
)";

/// An arrow of this length that points up, about its centre.
std::string ArrowPath(double length) {
  const auto at = [&](double x, double y) { return PixelText(x * length) + " " + PixelText(y * length); };
  return "M" + at(0.0, -0.55) + "L" + at(0.42, 0.45) + "L" + at(0.0, 0.22) + "L" + at(-0.42, 0.45) + "Z";
}

void AppendLegendDot(pugi::xml_node parent, const char* elementClass) {
  pugi::xml_node node = AppendElement(parent, "circle", elementClass);
  SetAttribute(node, "cx", "20");
  SetAttribute(node, "cy", "0");
  SetAttribute(node, "r", PixelText(kFullPointRadiusPixels));
}

/// Stands where a layer's elements go; replaced by the layer's text.
std::string LayerMark(std::string_view name) {
  return "layer " + std::string(name);
}

}  // namespace

MapPicture::MapPicture(const GeoRect& view, MapLegend legend)
    : projection_(view),
      legend_(std::move(legend)),
      pointRadiusPixels_(kFullPointRadiusPixels),
      arrowPixels_(kFullArrowPixels) {}

MapPicture::MapPicture(const GeoRect& view, std::vector<PictureLayer> layers)
    : MapPicture(view, MapLegend{"", "", "", "", "", "", ""}) {
  layers_ = std::move(layers);
  layerTexts_.resize(layers_.size());
}

/// Path data of `line` wherever the map shows it: more than once where the map is as wide as the earth.
std::string MapPicture::PathText(const std::vector<tarvo::GeoCoordinate>& line, bool closed) const {
  const PixelBox box{-kOverlapPixels, -kOverlapPixels, projection_.width() + kOverlapPixels,
                     projection_.height() + kOverlapPixels};
  std::string path;
  std::vector<Pixel> pixels;
  std::vector<tarvo::GeoCoordinate> shifted;
  for (const int turns : TurnsIntoView(BoundsOf(line), projection_.Extent())) {
    shifted = line;
    ShiftByTurns(shifted, turns);
    pixels.clear();
    for (const tarvo::GeoCoordinate& point : shifted) pixels.push_back(projection_.ToPixel(point));
    path += closed ? ClippedRingPath(pixels, box) : ClippedLinePath(pixels, box);
  }
  return path;
}

std::string MapPicture::RingsPathText(const std::vector<std::vector<tarvo::GeoCoordinate>>& rings) const {
  std::string path;
  for (const std::vector<tarvo::GeoCoordinate>& ring : rings) path += PathText(ring, true);
  return path;
}

void MapPicture::AddPath(Spool& layer, const char* elementClass, const std::string& path,
                         const Attributes& attributes) {
  pugi::xml_document fragment;
  pugi::xml_node node = AppendElement(fragment, "path", elementClass);
  SetAttributes(node, attributes);
  SetAttribute(node, "d", path);
  layer.Append(ToText(node) + "\n");
}

void MapPicture::AddLine(std::size_t layer, const std::vector<tarvo::GeoCoordinate>& line,
                         const Attributes& attributes) {
  const std::string path = PathText(line, false);
  if (!path.empty()) AddPath(layerTexts_[layer], layers_[layer].elementClass.c_str(), path, attributes);
}

void MapPicture::AddPolygon(std::size_t layer, const std::vector<std::vector<tarvo::GeoCoordinate>>& rings,
                            const Attributes& attributes) {
  const std::string path = RingsPathText(rings);
  if (!path.empty()) AddPath(layerTexts_[layer], layers_[layer].elementClass.c_str(), path, attributes);
}

void MapPicture::AddDot(std::size_t layer, const tarvo::GeoCoordinate& position, double radiusPixels,
                        const Attributes& attributes) {
  for (const int turns : TurnsIntoView({position, position}, projection_.Extent())) {
    const Pixel pixel = projection_.ToPixel({position.longitude + 360.0 * turns, position.latitude});
    if (pixel.y < 0.0 || pixel.y > projection_.height()) continue;
    pugi::xml_document fragment;
    const char* const elementClass = layers_[layer].elementClass.c_str();
    layerTexts_[layer].Append(ToText(AppendCircle(fragment, elementClass, attributes, pixel, radiusPixels)) +
                              "\n");
  }
}

void MapPicture::AddLabel(const tarvo::GeoCoordinate& position, Pixel towards, const std::string& text) {
  constexpr double kHalfCapital = 5.5;  // pixels, from a text's baseline to its middle
  constexpr double kSideways =
      0.5;  // beyond it a text begins or ends at the place instead of standing over it
  const Pixel pixel = PixelInReach(position);
  const double length = std::hypot(towards.x, towards.y);
  const double sideways = length > 0.0 ? towards.x / length : 0.0;
  const char* const anchor = sideways > kSideways ? "start" : (sideways < -kSideways ? "end" : "middle");
  pugi::xml_document fragment;
  AppendText(fragment, "label", pixel.x + towards.x, pixel.y + towards.y + kHalfCapital, anchor, text);
  labels_.Append(ToText(fragment.first_child()) + "\n");
}

void MapPicture::AddPolygon(const std::vector<std::vector<tarvo::GeoCoordinate>>& rings) {
  const std::string path = RingsPathText(rings);
  if (!path.empty()) AddPath(areas_, "area", path, {});
}

void MapPicture::AddRoute(const std::vector<tarvo::GeoCoordinate>& line, std::size_t routeIndex) {
  const std::string path = PathText(line, false);
  if (!path.empty()) AddPath(routes_, "route", path, {{"data-route", std::to_string(routeIndex)}});
}

void MapPicture::AddPiece(const std::vector<tarvo::GeoCoordinate>& line, std::size_t routeIndex,
                          std::size_t pieceIndex) {
  Attributes attributes = {{"data-route", std::to_string(routeIndex)},
                           {"data-piece", std::to_string(pieceIndex)},
                           {"data-vertices", std::to_string(line.size())}};
  if (legend_.slenderPieces) attributes.emplace_back("style", kSlenderStyle);
  AddPath(pieces_, "piece", line.empty() ? std::string() : PathText(line, false), attributes);
}

void MapPicture::SetArrowSpacing(double metres) {
  const double spacingPixels = metres / projection_.metresPerPixel();
  arrowPixels_ = std::clamp(spacingPixels * kArrowOfSpacing, kSmallestArrowPixels, kFullArrowPixels);
  enlargesSome_ = arrowPixels_ < kReadableArrowPixels;
}

std::string MapPicture::ArrowNote() const {
  if (arrowPixels_ == kFullArrowPixels || arrows_.sizeBytes() == 0) return "";
  if (!enlargesSome_) return "arrows drawn smaller, for their spacing";
  const bool overlap = arrowPixels_ == kSmallestArrowPixels;
  return std::string(overlap ? "arrows stand closer than they can be drawn and overlap"
                             : "arrows drawn tiny, for their spacing") +
         "; some are enlarged to show the direction";
}

void MapPicture::AddArrow(const tarvo::GeoCoordinate& position, std::optional<double> headingDegrees,
                          std::size_t routeIndex, std::size_t pieceIndex, double metresFromPieceStart) {
  Pixel pixel = projection_.ToPixel(position);
  const bool outside =
      pixel.x < 0.0 || pixel.x > projection_.width() || pixel.y < 0.0 || pixel.y > projection_.height();
  double length = arrowPixels_;
  bool enlarged = false;
  if (outside) {
    ++arrowsOutside_;
    // Far beyond the map a drawing program's own number formats may overflow.
    pixel.x = std::clamp(pixel.x, -kFarthestPixels, kFarthestPixels);
    pixel.y = std::clamp(pixel.y, -kFarthestPixels, kFarthestPixels);
  } else if (enlargesSome_ && headingDegrees) {
    enlarged = !lastEnlarged_ || std::hypot(pixel.x - lastEnlarged_->x, pixel.y - lastEnlarged_->y) >=
                                     kRoomOfEnlargedArrow * kFullArrowPixels;
    if (enlarged) {
      lastEnlarged_ = pixel;
      length = kFullArrowPixels;
    }
  }

  pugi::xml_document fragment;
  const bool small = length < kReadableArrowPixels;
  pugi::xml_node node = AppendElement(fragment, headingDegrees ? "path" : "circle",
                                      enlarged ? "arrow enlarged" : (small ? "arrow small" : "arrow"));
  SetAttribute(node, "data-route", std::to_string(routeIndex));
  SetAttribute(node, "data-piece", std::to_string(pieceIndex));
  SetAttribute(node, "data-metres", ShortestNumber(metresFromPieceStart));
  SetAttribute(node, "data-heading", headingDegrees ? ShortestNumber(*headingDegrees) : "none");
  std::string transform = "translate(" + PixelText(pixel.x) + " " + PixelText(pixel.y) + ")";
  if (headingDegrees) transform += " rotate(" + PixelText(*headingDegrees) + ")";
  SetAttribute(node, "transform", transform);
  if (headingDegrees) {
    SetAttribute(node, "d", ArrowPath(length));
  } else {
    SetAttribute(node, "r", PixelText(length / 3.0));
  }
  arrows_.Append(ToText(node) + "\n");
}

/// Where a position lies on the picture; of several turns the first one that shows it. Far beyond the map a drawing
/// program's own number formats may overflow, so it is held within their reach.
Pixel MapPicture::PixelInReach(const tarvo::GeoCoordinate& position) const {
  std::vector<tarvo::GeoCoordinate> shifted = {position};
  const std::vector<int> turns = TurnsIntoView({position, position}, projection_.Extent());
  if (!turns.empty()) ShiftByTurns(shifted, turns.front());
  const Pixel pixel = projection_.ToPixel(shifted.front());
  return {std::clamp(pixel.x, -kFarthestPixels, kFarthestPixels),
          std::clamp(pixel.y, -kFarthestPixels, kFarthestPixels)};
}

void MapPicture::SetPointSpacing(double metres) {
  pointRadiusPixels_ = std::clamp(metres / projection_.metresPerPixel() * kPointRadiusOfSpacing,
                                  kSmallestPointRadiusPixels, kFullPointRadiusPixels);
}

void MapPicture::SetPointCount(std::size_t count) {
  pointRadiusPixels_ =
      std::clamp(kFullPointRadiusPixels * std::sqrt(kFullSizePoints / static_cast<double>(count)),
                 kSmallestPointRadiusPixels, kFullPointRadiusPixels);
}

void MapPicture::AddDot(const tarvo::GeoCoordinate& position, bool filled, const Attributes& attributes) {
  pugi::xml_document fragment;
  const char* const elementClass = filled ? "point" : "hollow";
  pugi::xml_node node =
      AppendCircle(fragment, elementClass, attributes, PixelInReach(position), pointRadiusPixels_);
  // A small dot has no room for its outline.
  if (pointRadiusPixels_ < kOutlinedPointRadiusPixels) {
    SetAttribute(node, "style", filled ? "stroke: none" : "stroke-width: 0.7");
  }
  (filled ? points_ : hollowPoints_).Append(ToText(node) + "\n");
}

void MapPicture::AppendFrame(pugi::xml_node map) const {
  const double width = projection_.width();
  const double height = projection_.height();
  AppendRectangle(map, "frame", 0.0, 0.0, width, height);
  for (const Tick& tick : projection_.LongitudeTicks()) {
    AppendPathElement(map, "frame", LinePath(tick.pixel, height, tick.pixel, height + 5.0));
    AppendText(map, "tick", tick.pixel, height + 18.0, "middle", tick.label);
  }
  for (const Tick& tick : projection_.LatitudeTicks()) {
    AppendPathElement(map, "frame", LinePath(-5.0, tick.pixel, 0.0, tick.pixel));
    AppendText(map, "tick", -8.0, tick.pixel + 4.0, "end", tick.label);
  }
}

void MapPicture::AppendScaleBar(pugi::xml_node footer) const {
  constexpr double kMostPixels = 180.0;
  const double metres = RoundNumberUpTo(kMostPixels * projection_.metresPerPixel());
  const double pixels = metres / projection_.metresPerPixel();
  pugi::xml_node bar = AppendElement(footer, "g", "scale-bar");
  SetAttribute(bar, "data-metres", ShortestNumber(metres));
  AppendRectangle(bar, "bar", 0.0, 0.0, pixels / 2.0, 5.0);
  AppendRectangle(bar, "bar-light", pixels / 2.0, 0.0, pixels / 2.0, 5.0);
  AppendText(bar, "scale", 0.0, -5.0, "middle", "0");
  AppendText(bar, "scale", pixels, -5.0, "middle", LengthText(metres));
}

void MapPicture::Write(const std::string& title, const std::vector<std::string>& subtitles,
                       OutputTarget& target) {
  const double width = projection_.width();
  const double height = projection_.height();
  double left = kLeftPixels;
  for (const Tick& tick : projection_.LatitudeTicks()) {
    left = std::max(left, kLeftPixelsPerByte * static_cast<double>(tick.label.size()));
  }
  const double top = kTitlePixels + kSubtitlePixels * static_cast<double>(subtitles.size());
  const double pageWidth = left + width + kRightPixels;
  const double pageHeight = top + height + kFooterPixels;

  pugi::xml_document document;
  pugi::xml_node svg = document.append_child("svg");
  svg.append_attribute("xmlns").set_value("http://www.w3.org/2000/svg");
  SetAttribute(svg, "width", PixelText(pageWidth));
  SetAttribute(svg, "height", PixelText(pageHeight));
  SetAttribute(svg, "viewBox", "0 0 " + PixelText(pageWidth) + " " + PixelText(pageHeight));
  const GeoRect& view = projection_.view();
  SetAttribute(svg, "data-view", ViewText(view));
  const GeoRect extent = projection_.Extent();
  SetAttribute(svg, "data-extent",
               ShortestNumber(extent.min.longitude) + "," + ShortestNumber(extent.min.latitude) + "," +
                   ShortestNumber(extent.max.longitude) + "," + ShortestNumber(extent.max.latitude));
  svg.append_child("title").text().set(XmlCharacters(title).c_str());
  std::string style = kStyle;
  for (const PictureLayer& layer : layers_) {
    style += "." + layer.elementClass + ", .legend-" + layer.elementClass + " { " + layer.style + " }\n";
  }
  svg.append_child("style").text().set(style.c_str());
  pugi::xml_node clip = svg.append_child("defs").append_child("clipPath");
  clip.append_attribute("id").set_value("map-clip");
  AppendRectangle(clip, "clip", 0.0, 0.0, width, height);
  AppendRectangle(svg, "page", 0.0, 0.0, pageWidth, pageHeight);
  AppendText(svg, "title", left, 32.0, nullptr, title);
  double baseline = 32.0;
  for (const std::string& subtitle : subtitles) {
    baseline += kSubtitlePixels;
    AppendText(svg, "subtitle", left, baseline, nullptr, subtitle);
  }

  pugi::xml_node map = AppendElement(svg, "g", "map");
  SetAttribute(map, "transform", "translate(" + PixelText(left) + " " + PixelText(top) + ")");
  SetAttribute(map, "data-width", PixelText(width));
  SetAttribute(map, "data-height", PixelText(height));
  AppendRectangle(map, "land", 0.0, 0.0, width, height);
  pugi::xml_node clipped = AppendElement(map, "g", "layers");
  clipped.append_attribute("clip-path").set_value("url(#map-clip)");
  const Pixel upperLeft = projection_.ToPixel({view.min.longitude, view.max.latitude});
  const Pixel lowerRight = projection_.ToPixel({view.max.longitude, view.min.latitude});
  const double viewWidth = lowerRight.x - upperLeft.x;
  const double viewHeight = lowerRight.y - upperLeft.y;
  if (!legend_.view.empty()) {
    AppendRectangle(clipped, "view", upperLeft.x, upperLeft.y, viewWidth, viewHeight);
  }
  for (const Tick& tick : projection_.LongitudeTicks()) {
    AppendPathElement(clipped, "graticule", LinePath(tick.pixel, 0.0, tick.pixel, height));
  }
  for (const Tick& tick : projection_.LatitudeTicks()) {
    AppendPathElement(clipped, "graticule", LinePath(0.0, tick.pixel, width, tick.pixel));
  }
  const auto appendLayer = [&](const char* name) {
    AppendElement(clipped, "g", name).append_child(pugi::node_comment).set_value(LayerMark(name).c_str());
  };
  std::vector<std::pair<std::string, Spool*>> texts = {{"areas", &areas_},
                                                       {"routes", &routes_},
                                                       {"pieces", &pieces_},
                                                       {"hollow-points", &hollowPoints_},
                                                       {"points", &points_}};
  for (std::size_t i = 0; i < layers_.size(); ++i) {
    texts.emplace_back(layers_[i].elementClass + "-layer", &layerTexts_[i]);
  }
  texts.emplace_back("arrows", &arrows_);
  texts.emplace_back("labels", &labels_);
  for (const auto& [name, text] : texts) {
    if (text == &hollowPoints_ && !legend_.view.empty()) {
      AppendRectangle(clipped, "view-border", upperLeft.x, upperLeft.y, viewWidth, viewHeight);
    }
    appendLayer(name.c_str());
  }
  AppendFrame(map);

  pugi::xml_node footer = AppendElement(svg, "g", "footer");
  SetAttribute(footer, "transform",
               "translate(" + PixelText(left) + " " + PixelText(top + height + 52.0) + ")");
  AppendScaleBar(footer);
  pugi::xml_node legend = AppendElement(footer, "g", "legend");
  double right = width;
  const auto appendEntry = [&](const std::string& label, const auto& appendSample) {
    if (label.empty()) return;
    right -= kLegendEntryPixels + kLegendCharacterPixels * static_cast<double>(label.size());
    AppendText(legend, "legend", right, 6.0, nullptr, label);
    right -= 34.0;
    pugi::xml_node sample = legend.append_child("g");
    SetAttribute(sample, "transform", "translate(" + PixelText(right) + " 2)");
    appendSample(sample);
    right -= 18.0;
  };
  // Samples carry their own class names: a reader that counts routes, pieces or arrows must not meet them here.
  for (auto layer = layers_.rbegin(); layer != layers_.rend(); ++layer) {
    const std::string sampleClass = "legend-" + layer->elementClass;
    appendEntry(layer->legend, [&](pugi::xml_node sample) {
      if (layer->shape == PictureLayer::Shape::kArea) {
        AppendRectangle(sample, sampleClass.c_str(), 2.0, -7.0, 25.0, 14.0);
      } else if (layer->shape == PictureLayer::Shape::kLine) {
        AppendPathElement(sample, sampleClass.c_str(), LinePath(2.0, 0.0, 27.0, 0.0));
      } else {
        pugi::xml_node dot = AppendElement(sample, "circle", sampleClass.c_str());
        SetAttribute(dot, "cx", PixelText(20.0));
        SetAttribute(dot, "r", PixelText(3.0));
      }
    });
  }
  appendEntry(legend_.hollowPoint, [](pugi::xml_node sample) { AppendLegendDot(sample, "legend-hollow"); });
  appendEntry(legend_.point, [](pugi::xml_node sample) { AppendLegendDot(sample, "legend-point"); });
  appendEntry(legend_.arrow, [](pugi::xml_node sample) {
    pugi::xml_node arrow = AppendElement(sample, "path", "legend-arrow");
    SetAttribute(arrow, "transform", "translate(18 0) rotate(90)");
    SetAttribute(arrow, "d", ArrowPath(kFullArrowPixels));
  });
  appendEntry(legend_.piece, [this](pugi::xml_node sample) {
    AppendPathElement(sample, "legend-piece", LinePath(2.0, 0.0, 27.0, 0.0));
    if (legend_.slenderPieces) SetAttribute(sample.last_child(), "style", kSlenderStyle);
  });
  appendEntry(legend_.route, [](pugi::xml_node sample) {
    AppendPathElement(sample, "legend-route", LinePath(2.0, 0.0, 27.0, 0.0));
  });
  appendEntry(legend_.view,
              [](pugi::xml_node sample) { AppendRectangle(sample, "view-border", 2.0, -7.0, 25.0, 14.0); });
  if (areas_.sizeBytes() > 0) {
    appendEntry(legend_.area,
                [](pugi::xml_node sample) { AppendRectangle(sample, "legend-area", 2.0, -7.0, 25.0, 14.0); });
  }

  const std::string text = ToText(document);
  std::string_view rest = text;
  for (const auto& [name, layer] : texts) {
    const std::string mark = "<!--" + LayerMark(name) + "-->";
    const std::size_t at = rest.find(mark);
    target.Write(rest.substr(0, at));
    target.Write("\n");
    layer->CopyTo([&](std::string_view piece) { target.Write(piece); });
    rest.remove_prefix(at + mark.size());
  }
  target.Write(rest);
  target.Finish();
}

}  // namespace vorel::tool
