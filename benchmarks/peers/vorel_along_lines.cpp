// This library's functions that walk along a line.

#include <memory>

#include "candidates.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "vector_paths.h"

namespace peers {
namespace {

using tarvo::GeoCoordinate;
using tarvo::HAD::BoundaryData;
using Algorithm = vorel::VorelGeometryAlgorithm;

double Length(const Line& line) {
  return Algorithm::GetDistance(line.data(), static_cast<unsigned>(line.size()), 0, 4294967295u);
}

double CountAll(const std::vector<Line>& lines) {
  std::size_t count = 0;
  for (const Line& line : lines) count += line.size();
  return static_cast<double>(count);
}

void AddLengths(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const DistanceCase& c : inputs.distance) {
    const auto distance = [](const auto& pair) { return pair.first.DistanceTo(pair.second); };
    AddDistances(c, jobs, path.candidate, 0.0, c.pairs, distance, path.choose);
  }
  for (const LengthCase& c : inputs.length) {
    const auto work = [&c] { return Length(c.line); };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
  for (const HeightLengthCase& c : inputs.heightLength) {
    const auto work = [&c] { return Algorithm::GetDistanceByVector(c.line, 0, 4294967295u); };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
}

void AddSampling(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const SamplingCase& c : inputs.sampling) {
    const auto work = [&c, out = Line()]() mutable {
      out.clear();
      Algorithm::CalcPointsInPolyline(c.line, c.interval, 0, out);
      return static_cast<double>(out.size());
    };
    jobs.Add(c, path.candidate, 0.0, work, work, path.choose);
  }
}

/// Beside the one call stands the sum of its parts: the cut, then the samples of each piece. Like the call they end a piece
/// of one sample with its last vertex; unlike it they log nothing and ask no clock.
void AddSymbols(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  for (const ClippingCase& c : inputs.symbols) {
    const auto whole = [&c, out = std::vector<Line>(), area = Line(),
                        owner = std::string("bench")]() mutable {
      Algorithm::GetInterpolateShapePoints(c.line, true, c.view, area, 50, owner, out);
      return CountAll(out);
    };
    jobs.Add(c, path.candidate, 0.0, whole, whole, path.choose);
    const auto parts = [&c, out = std::vector<Line>(), pieces = std::vector<Line>()]() mutable {
      out.clear();
      pieces.clear();
      Algorithm::CutPolyline(c.line, c.view, pieces);
      for (const Line& piece : pieces) {
        out.emplace_back();
        Algorithm::CalcPointsInPolyline(piece, 50, 0, out.back());
        if (out.back().size() == 1) out.back().push_back(piece.back());
      }
      return CountAll(out);
    };
    jobs.Add(c, path.candidate + ": sum of its parts", 0.0, parts, parts, path.choose);
  }
}

/// Functions that walk a line and measure each segment, each beside the bare length of the same segments.
template <class Make>
void AddWalk(const Inputs& inputs, Jobs& jobs, const VectorPath& path, const std::string& job,
             double walkedShare, const Make& makeWork) {
  for (const LengthCase& walked : inputs.walking) {
    JobCase c = walked;
    c.job = job;
    const auto vertexCount = static_cast<std::size_t>(walkedShare * c.size);
    c.items = static_cast<double>(vertexCount);
    const auto length =
        [line = Line(walked.line.begin(), walked.line.begin() + static_cast<std::ptrdiff_t>(vertexCount))] {
          return Length(line);
        };
    const double metres = length();
    const auto work = makeWork(walked.line, metres);
    jobs.Add(
        c, path.candidate, 0.0, work, [metres] { return metres; }, path.choose);
    jobs.Add(c, path.candidate + ": bare length", 0.0, length, length, path.choose);
  }
}

void AddWalks(const Inputs& inputs, Jobs& jobs, const VectorPath& path) {
  AddWalk(inputs, jobs, path, "GetDistanceAndCache", 1.0, [](const Line& line, double) {
    return [&line, cache = std::vector<double>()]() mutable {
      cache.clear();
      return Algorithm::GetDistanceAndCache(line, 0, static_cast<unsigned>(line.size()) - 1, cache);
    };
  });
  const auto behind = [](const Line& line, double metres) {
    return [&line, metres, out = Line()]() mutable {
      return Algorithm::ChoosePointsInPolyline(line.data(), static_cast<unsigned>(line.size()), metres - 1e-6,
                                               out);
    };
  };
  AddWalk(inputs, jobs, path, "ChoosePointsInPolyline, cut half way", 0.5, behind);
  AddWalk(inputs, jobs, path, "ChoosePointsInPolyline, cut at the far end", 1.0, behind);
  const auto before = [](const Line& line, double metres) {
    return [&line, metres, out = Line()]() mutable {
      out.clear();
      Algorithm::ChoosePointsInPolylineWithMaxLength(line, metres - 1e-6, out);
      return out.size();
    };
  };
  AddWalk(inputs, jobs, path, "ChoosePointsInPolylineWithMaxLength, half way", 0.5, before);
  AddWalk(inputs, jobs, path, "ChoosePointsInPolylineWithMaxLength, far end", 1.0, before);
  const auto boundary = [](std::uint32_t markSpacing) {
    return [markSpacing](const Line& line, double metres) {
      auto source = std::make_shared<BoundaryData>();
      for (std::size_t i = 0; i < line.size(); ++i) {
        source->points.emplace_back(line[i].longitude, line[i].latitude, 0.0f);
        if (i % markSpacing == 0) source->pointIndices.push_back(static_cast<std::uint32_t>(i));
      }
      return [source, metres, piece = BoundaryData()]() mutable {
        piece.points.clear();
        piece.pointIndices.clear();
        int cursor = -1;
        return Algorithm::HandleBoundaryDataByDistance(*source, cursor, 0, 0.0, metres - 1e-6, piece);
      };
    };
  };
  AddWalk(inputs, jobs, path, "HandleBoundaryDataByDistance, half", 0.5, boundary(10));
  AddWalk(inputs, jobs, path, "HandleBoundaryDataByDistance, whole, all marked", 1.0, boundary(1));
}

}  // namespace

void AddVorelAlongLines(const Inputs& inputs, Jobs& jobs) {
  for (const VectorPath& path : VectorPaths()) {
    AddLengths(inputs, jobs, path);
    AddSampling(inputs, jobs, path);
    AddSymbols(inputs, jobs, path);
    AddWalks(inputs, jobs, path);
  }
}

}  // namespace peers
