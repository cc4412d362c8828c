#ifndef VOREL_TOOLS_VOREL_MAP_PICTURE_H_
#define VOREL_TOOLS_VOREL_MAP_PICTURE_H_

#include <cstddef>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/map_projection.h"
#include "tools/vorel/output_target.h"
#include "tools/vorel/spool.h"
#include "tools/vorel/svg_elements.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// One kind of element of a picture, with a style and an entry in the legend.
struct PictureLayer {
  enum class Shape { kLine, kArea, kPoint };

  std::string elementClass;  ///< plain ASCII letters
  std::string legend;        ///< one or two words
  std::string style;         ///< CSS declarations
  Shape shape = Shape::kLine;
};

/// What the legend calls the things on a map. Those with an empty name are left out of it.
struct MapLegend {
  std::string view = "view";  ///< empty: the view is only what the map is laid out for, and is not drawn
  std::string route = "route";
  std::string piece = "piece in view";
  std::string arrow = "symbol";
  std::string area = "area";  ///< left out too where there is no area
  std::string point;          ///< filled dots
  std::string hollowPoint;
  bool slenderPieces = false;  ///< pieces are drawn narrower than routes, so that both can be seen
};

/// The picture of a map as SVG: what lies under the view and around it, with frame, graticule, scale bar and title.
///
/// Every element that stands for something on the map carries a class (area, route, piece, arrow, view) and data-
/// attributes, so that a program can read the picture back. Lines are clipped a little outside of the map, and
/// vertices closer than a fraction of a pixel are left out. Layers are collected in spools: the memory needed does
/// not grow with the number of elements.
class MapPicture {
 public:
  explicit MapPicture(const GeoRect& view, MapLegend legend = {});

  /// A picture made of the given layers alone, in this order from below; `view` is not outlined.
  MapPicture(const GeoRect& view, std::vector<PictureLayer> layers);

  /// Adds to the layer number `layer` what the map shows of it, in each turn of the earth that it shows.
  void AddLine(std::size_t layer, const std::vector<tarvo::GeoCoordinate>& line,
               const Attributes& attributes);
  /// @param rings  not closed: the outer one, then the holes
  void AddPolygon(std::size_t layer, const std::vector<std::vector<tarvo::GeoCoordinate>>& rings,
                  const Attributes& attributes);
  void AddDot(std::size_t layer, const tarvo::GeoCoordinate& position, double radiusPixels,
              const Attributes& attributes);

  /// A text above all layers, some pixels away from the place that it names.
  ///
  /// @param towards  in which direction from the place it stands, in pixels: x to the right, y down; its length counts
  void AddLabel(const tarvo::GeoCoordinate& position, Pixel towards, const std::string& text);

  const MapProjection& projection() const { return projection_; }

  /// A filled polygon under everything else.
  /// @param rings  not closed: the outer one, then the holes
  void AddPolygon(const std::vector<std::vector<tarvo::GeoCoordinate>>& rings);

  /// A line in the light style of what is not in focus. Elements that would be empty are left out.
  void AddRoute(const std::vector<tarvo::GeoCoordinate>& line, std::size_t routeIndex);

  /// A line in the strong style of what is in focus.
  void AddPiece(const std::vector<tarvo::GeoCoordinate>& line, std::size_t routeIndex,
                std::size_t pieceIndex);

  /// How far apart the arrows that follow stand along their line. Arrows shrink when they would overlap; where they
  /// become too small to read, the next one that has room around it is drawn at full size.
  void SetArrowSpacing(double metres);

  /// An arrow at `position` turned to its heading; a dot without one. Always one element, also outside of the map.
  void AddArrow(const tarvo::GeoCoordinate& position, std::optional<double> headingDegrees,
                std::size_t routeIndex, std::size_t pieceIndex, double metresFromPieceStart);

  /// How far apart the dots that follow stand along their line: dots shrink, to a limit, before they overlap.
  void SetPointSpacing(double metres);

  /// How many dots follow, anywhere on the map: many are drawn smaller.
  void SetPointCount(std::size_t count);

  /// A dot; hollow ones lie under the filled ones. Always one element, also outside of the map.
  /// @param attributes  such as {"data-point", "12"}
  void AddDot(const tarvo::GeoCoordinate& position, bool filled, const Attributes& attributes);

  std::size_t arrowsOutside() const { return arrowsOutside_; }

  /// What a reader must know about the arrows' size; empty when all have full size.
  std::string ArrowNote() const;

  /// The finished picture; the picture takes no more afterwards.
  ///
  /// @param title      the line above the map, in bold
  /// @param subtitles  the lines below it
  void Write(const std::string& title, const std::vector<std::string>& subtitles, OutputTarget& target);

 private:
  std::string PathText(const std::vector<tarvo::GeoCoordinate>& line, bool closed) const;
  std::string RingsPathText(const std::vector<std::vector<tarvo::GeoCoordinate>>& rings) const;
  void AddPath(Spool& layer, const char* elementClass, const std::string& path, const Attributes& attributes);
  Pixel PixelInReach(const tarvo::GeoCoordinate& position) const;
  void AppendFrame(pugi::xml_node map) const;
  void AppendScaleBar(pugi::xml_node footer) const;

  MapProjection projection_;
  MapLegend legend_;
  Spool areas_;
  Spool routes_;
  Spool pieces_;
  Spool hollowPoints_;
  Spool points_;
  Spool arrows_;
  Spool labels_;
  double pointRadiusPixels_;
  std::vector<PictureLayer> layers_;
  std::vector<Spool> layerTexts_;  // one for each of `layers_`
  double arrowPixels_;
  bool enlargesSome_ = false;
  std::optional<Pixel> lastEnlarged_;
  std::size_t arrowsOutside_ = 0;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_MAP_PICTURE_H_
