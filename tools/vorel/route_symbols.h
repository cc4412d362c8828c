#ifndef VOREL_TOOLS_VOREL_ROUTE_SYMBOLS_H_
#define VOREL_TOOLS_VOREL_ROUTE_SYMBOLS_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// One symbol to be drawn along a route.
struct RouteSymbol {
  tarvo::GeoCoordinate position;
  double metresFromPieceStart = 0.0;  ///< along the piece
  /// [0, 360), clockwise from north: of the segment ahead, for the last symbol of a piece that ends there of the
  /// segment behind. None where the piece has no extent.
  std::optional<double> headingDegrees;
};

/// A run of whole segments through the view, and the symbols on it.
struct RoutePiece {
  std::vector<tarvo::GeoCoordinate> points;
  std::vector<RouteSymbol> symbols;
};

/// The compass heading from one point to the next: the library's bearing, folded from [-180, 180] to [0, 360).
double HeadingDegrees(const tarvo::GeoCoordinate& from, const tarvo::GeoCoordinate& to);

/// Places symbols on routes: the library's view symbols, with what it takes to draw them.
class RouteSymbolPlacer {
 public:
  /// A line that would get more symbols than this is refused.
  static constexpr double kMostSymbolsPerLine = 4e6;

  /// @param spacingMetres  greater than 0
  /// @param area           empty for the main route; otherwise a ring (not closed, longitudes unwrapped) that the
  ///                       symbols of the route must lie in
  RouteSymbolPlacer(const GeoRect& view, int spacingMetres, std::vector<tarvo::GeoCoordinate> area);

  /// The pieces of one line, in order along it; of a line that passes the view on several turns around the earth,
  /// turn by turn in the direction in which it ends. `pieces` is cleared first.
  ///
  /// @param line   longitudes unwrapped, anywhere on the strip; shifted to the view here
  /// @param owner  what log records call it
  /// Throws `BadInput` for a line that would get too many symbols.
  void Place(const std::vector<tarvo::GeoCoordinate>& line, const std::string& owner,
             std::vector<RoutePiece>& pieces) const;

 private:
  bool isMainRoute() const { return area_.empty(); }
  std::vector<std::vector<char>> KeptInArea(const std::vector<tarvo::GeoCoordinate>& line,
                                            const std::string& owner,
                                            const std::vector<std::vector<tarvo::GeoCoordinate>>& runs) const;
  void PlaceShifted(const std::vector<tarvo::GeoCoordinate>& line, const std::string& owner,
                    std::vector<RoutePiece>& pieces) const;

  GeoRect view_;
  int spacingMetres_;
  std::vector<tarvo::GeoCoordinate> area_;
  GeoRect areaBounds_;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_ROUTE_SYMBOLS_H_
