#include "base/strict_floating_point.h"

#include "reference/view_symbols_reference.h"

#include <cstddef>

#include "reference/clipping_reference.h"
#include "reference/containment_reference.h"
#include "reference/sampling_reference.h"

namespace reference {

using tarvo::GeoCoordinate;
using tarvo::Rect;

int GetInterpolateShapePoints(const std::vector<GeoCoordinate>& shape, bool isMainRoute,
                              const Rect<GeoCoordinate>& viewRect, const std::vector<GeoCoordinate>& area,
                              int interval, const std::string& /*owner*/,
                              std::vector<std::vector<GeoCoordinate>>& out) {
  out.clear();
  std::vector<std::vector<GeoCoordinate>> pieces;
  if (!CutPolyline(shape, viewRect, pieces)) return -1;

  std::vector<std::vector<GeoCoordinate>> samples(pieces.size());
  int count = 0;
  for (std::size_t j = 0; j < pieces.size(); ++j) {
    if (interval > 0 && !pieces[j].empty()) {
      CalcPointsInPolyline(pieces[j], static_cast<double>(interval), -1, samples[j]);
    }
    const std::size_t s = samples[j].size();
    if (s == 1) samples[j].push_back(pieces[j].back());
    // The end point just added is not counted.
    count += static_cast<int>(s);
  }

  if (isMainRoute) {
    out = samples;
  } else {
    count = 0;
    for (std::size_t j = 0; j < samples.size(); ++j) {
      out.push_back(std::vector<GeoCoordinate>());
      for (std::size_t k = 0; k < samples[j].size(); ++k) {
        if (IsPointInPolygon(area, samples[j][k])) {
          out.back().push_back(samples[j][k]);
          count += 1;
        }
      }
    }
  }
  return count;
}

}  // namespace reference
