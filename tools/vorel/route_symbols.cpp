#include "tools/vorel/route_symbols.h"

#include <stdexcept>
#include <utility>

#include "map_utils/vorel_geometry_algorithm.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

using tarvo::GeoCoordinate;
using Line = std::vector<GeoCoordinate>;

/// A symbol this close before a vertex stands on it and looks along the segment behind the vertex: the position of a
/// symbol on a vertex is known no better than that, after sums of many segment lengths.
constexpr double kOnVertexMetres = 1e-6;

/// Metres from the start of `line` to each of its vertices.
std::vector<double> MetresToVertices(const Line& line) {
  std::vector<double> metres(line.size(), 0.0);
  for (std::size_t i = 1; i < line.size(); ++i) metres[i] = metres[i - 1] + line[i].DistanceTo(line[i - 1]);
  return metres;
}

/// Finds the headings of symbols that come in order along one line.
class HeadingFinder {
 public:
  HeadingFinder(const Line& line, const std::vector<double>& metresToVertices)
      : line_(line), metres_(metresToVertices) {
    // The last segment with an extent serves all symbols at or beyond its end.
    for (std::size_t i = 1; i < line.size(); ++i) {
      if (metres_[i] > metres_[i - 1]) lastSegment_ = i;
    }
  }

  std::optional<double> HeadingAhead(double metresFromStart) {
    if (lastSegment_ == 0) return std::nullopt;
    while (segment_ < lastSegment_ && metres_[segment_] <= metresFromStart + kOnVertexMetres) ++segment_;
    return HeadingDegrees(line_[segment_ - 1], line_[segment_]);
  }

 private:
  const Line& line_;
  const std::vector<double>& metres_;
  std::size_t segment_ = 1;      // index of the segment's second vertex
  std::size_t lastSegment_ = 0;  // 0: the line has no extent
};

}  // namespace

double HeadingDegrees(const GeoCoordinate& from, const GeoCoordinate& to) {
  double heading = VorelGeometryAlgorithm::GetAngle(from, to);
  if (heading < 0.0) heading += 360.0;
  // A tiny negative angle rounds up to a full turn.
  return heading < 360.0 && heading > 0.0 ? heading : 0.0;
}

RouteSymbolPlacer::RouteSymbolPlacer(const GeoRect& view, int spacingMetres, Line area)
    : view_(view), spacingMetres_(spacingMetres), area_(std::move(area)) {
  if (!isMainRoute()) areaBounds_ = BoundsOf(area_);
}

void RouteSymbolPlacer::Place(const Line& line, const std::string& owner,
                              std::vector<RoutePiece>& pieces) const {
  pieces.clear();
  Line shifted;
  for (const int turns : TurnsAlongLine(line, view_)) {
    if (turns == 0) {
      PlaceShifted(line, owner, pieces);
      continue;
    }
    shifted = line;
    ShiftByTurns(shifted, turns);
    PlaceShifted(shifted, owner, pieces);
  }
}

/// Which symbols of `runs` the library keeps in the area. It tells them by place only, not by how far along the piece
/// they stand; as it keeps their order, they are found again among all symbols of the piece.
std::vector<std::vector<char>> RouteSymbolPlacer::KeptInArea(const Line& line, const std::string& owner,
                                                             const std::vector<Line>& runs) const {
  std::vector<std::vector<char>> kept;
  std::optional<GeoRect> runBounds;
  for (const Line& run : runs) {
    kept.emplace_back(run.size(), char{0});
    if (run.empty()) continue;
    GeoRect bounds = BoundsOf(run);
    if (runBounds) bounds = BoundsOf({bounds.min, bounds.max, runBounds->min, runBounds->max});
    runBounds = bounds;
  }
  // The area lies anywhere on the strip; it counts at each turn at which it meets the symbols.
  std::vector<int> turnsOfArea;
  if (runBounds) turnsOfArea = TurnsIntoView(areaBounds_, *runBounds);
  if (turnsOfArea.empty()) turnsOfArea.push_back(0);
  std::vector<Line> inArea;
  for (const int turns : turnsOfArea) {
    Line area = area_;
    ShiftByTurns(area, turns);
    VorelGeometryAlgorithm::GetInterpolateShapePoints(line, false, view_, area, spacingMetres_, owner,
                                                      inArea);
    if (inArea.size() != runs.size()) throw std::logic_error("the view symbols do not match the pieces");
    for (std::size_t j = 0; j < runs.size(); ++j) {
      std::size_t i = 0;
      for (const GeoCoordinate& point : inArea[j]) {
        while (i < runs[j].size() && runs[j][i] != point) ++i;
        if (i == runs[j].size()) throw std::logic_error("a view symbol is not on its piece");
        kept[j][i++] = 1;
      }
    }
  }
  return kept;
}

void RouteSymbolPlacer::PlaceShifted(const Line& line, const std::string& owner,
                                     std::vector<RoutePiece>& pieces) const {
  std::vector<Line> cut;
  VorelGeometryAlgorithm::CutPolyline(line, view_, cut);
  std::vector<std::vector<double>> metresToVertices;
  double mostSymbols = 0.0;
  for (const Line& piece : cut) {
    metresToVertices.push_back(MetresToVertices(piece));
    if (!piece.empty()) mostSymbols += 2.0 + metresToVertices.back().back() / spacingMetres_;
  }
  if (mostSymbols > kMostSymbolsPerLine) {
    throw BadInput("--spacing " + std::to_string(spacingMetres_) + ": gives some " +
                   FixedNumber(mostSymbols, 0) + " symbols on one line, more than " +
                   FixedNumber(kMostSymbolsPerLine, 0));
  }

  std::vector<Line> runs;
  std::vector<std::vector<char>> kept;
  if (isMainRoute()) {
    VorelGeometryAlgorithm::GetInterpolateShapePoints(line, true, view_, {}, spacingMetres_, owner, runs);
  } else {
    for (const Line& piece : cut) {
      Line run;
      if (!piece.empty()) VorelGeometryAlgorithm::CalcPointsInPolyline(piece, spacingMetres_, -1, run);
      if (run.size() == 1) run.push_back(piece.back());
      runs.push_back(std::move(run));
    }
    kept = KeptInArea(line, owner, runs);
  }
  if (runs.size() != cut.size()) throw std::logic_error("the view symbols do not match the pieces");

  const std::size_t firstPiece = pieces.size();
  pieces.resize(firstPiece + cut.size());
  for (std::size_t j = 0; j < cut.size(); ++j) {
    RoutePiece& piece = pieces[firstPiece + j];
    piece.points = std::move(cut[j]);
    const Line& run = runs[j];
    const std::vector<double>& metres = metresToVertices[j];
    HeadingFinder headings(piece.points, metres);
    // A piece shorter than the spacing carries its end as second symbol.
    const bool endsAtLastVertex = run.size() == 2 && metres.back() < spacingMetres_;
    for (std::size_t i = 0; i < run.size(); ++i) {
      if (!isMainRoute() && kept[j][i] == 0) continue;
      RouteSymbol symbol;
      symbol.position = run[i];
      symbol.metresFromPieceStart =
          i == 1 && endsAtLastVertex ? metres.back() : static_cast<double>(i) * spacingMetres_;
      symbol.headingDegrees = headings.HeadingAhead(symbol.metresFromPieceStart);
      piece.symbols.push_back(symbol);
    }
  }
}

}  // namespace vorel::tool
