#include "tools/vorel/label_room.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "map_utils/vorel_geometry_algorithm.h"

namespace vorel::tool {
namespace {

constexpr int kWorseThanAStroke = 4;  // a label over another one, as against one over a stroke

}  // namespace

bool LabelRoom::Meet(const Box& a, const Box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/// Whether a stroke between two places of the picture touches a box: it has an end in it or crosses a diagonal of it.
bool LabelRoom::Meet(const Pixel& from, const Pixel& to, const Box& box) {
  const auto inPlane = [](double x, double y) { return tarvo::GeoCoordinate(x, y); };
  const tarvo::GeoCoordinate a = inPlane(from.x, from.y);
  const tarvo::GeoCoordinate b = inPlane(to.x, to.y);
  const bool isWithin =
      box.left <= from.x && from.x <= box.right && box.top <= from.y && from.y <= box.bottom;
  return isWithin ||
         VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, inPlane(box.left, box.top),
                                                    inPlane(box.right, box.bottom)) ||
         VorelGeometryAlgorithm::IsTwoSegmentJoined(a, b, inPlane(box.left, box.bottom),
                                                    inPlane(box.right, box.top));
}

LabelRoom::Box LabelRoom::BoxOf(const Pixel& at, const Pixel& towards, const std::string& text) {
  constexpr double kCharacterPixels = 9.0;
  constexpr double kHalfHeight = 8.0;
  constexpr double kGap = 3.0;  // to the next label
  const double width = kCharacterPixels * static_cast<double>(text.size());
  const double length = std::hypot(towards.x, towards.y);
  const double sideways = length > 0.0 ? towards.x / length : 0.0;
  const double start = sideways > 0.5 ? 0.0 : (sideways < -0.5 ? -width : -width / 2.0);
  const double left = at.x + towards.x + start;
  const double middle = at.y + towards.y;
  return {left - kGap, middle - kHalfHeight, left + width + kGap, middle + kHalfHeight};
}

Pixel LabelRoom::Place(const Pixel& at, const std::vector<Pixel>& directions, const std::string& text) {
  std::size_t best = 0;
  std::size_t fewest = std::numeric_limits<std::size_t>::max();
  for (std::size_t i = 0; i < directions.size(); ++i) {
    const Box box = BoxOf(at, directions[i], text);
    const auto isHidden = [&](const auto& stroke) { return Meet(stroke.first, stroke.second, box); };
    const auto overlaps = [&](const Box& other) { return Meet(box, other); };
    const auto strokes = std::count_if(strokes_.begin(), strokes_.end(), isHidden);
    const auto labels = std::count_if(labels_.begin(), labels_.end(), overlaps);
    const auto hidden = static_cast<std::size_t>(strokes + kWorseThanAStroke * labels);
    if (hidden >= fewest) continue;
    fewest = hidden;
    best = i;
  }
  labels_.push_back(BoxOf(at, directions[best], text));
  return directions[best];
}

std::vector<Pixel> DirectionsFrom(const Pixel& first) {
  std::vector<Pixel> directions;
  const double diagonal = std::sqrt(0.5);  // cosine and sine of 45 degrees
  for (const auto& [cosine, sine] :
       {std::pair(1.0, 0.0), std::pair(diagonal, diagonal), std::pair(diagonal, -diagonal),
        std::pair(-1.0, 0.0), std::pair(0.0, 1.0), std::pair(0.0, -1.0), std::pair(-diagonal, diagonal),
        std::pair(-diagonal, -diagonal)}) {
    directions.push_back({first.x * cosine - first.y * sine, first.x * sine + first.y * cosine});
  }
  return directions;
}

}  // namespace vorel::tool
