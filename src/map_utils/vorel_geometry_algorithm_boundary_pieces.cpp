#include "base/strict_floating_point.h"

#include "map_utils/vorel_geometry_algorithm.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/geodesy/distance.h"
#include "base/precondition.h"
#include "map_utils/internal/interpolation.h"
#include "map_utils/internal/segment_lengths.h"

namespace vorel {

using tarvo::GeoCoordinateZ;
using tarvo::HAD::BoundaryData;

namespace {

/// Copies the marked vertices that a piece reaches into its own list, a run at a time. That a run serves as well as a
/// scan after each vertex: either way an entry is passed as soon as the piece has reached it and all before it.
class MarkCopier {
 public:
  /// @param next   position in `marks` of the first entry to look at
  /// @param start  vertex that starts the segment in which the piece starts
  MarkCopier(const std::vector<std::uint32_t>& marks, std::size_t next, std::uint32_t start)
      : marks_(marks), next_(next), start_(start) {}

  /// Passes the entries up to `vertex`, which lies beyond the start, and appends those beyond the start, counted from
  /// there.
  void CopyUpTo(std::size_t vertex, std::vector<std::uint32_t>& out) {
    while (next_ < marks_.size() && marks_[next_] <= vertex) {
      if (marks_[next_] <= start_) {
        ++next_;
        continue;
      }
      const std::size_t end = EndOfRun(vertex);
      if (!isAnyCopied_) firstCopied_ = next_;
      isAnyCopied_ = true;
      const std::size_t held = out.size();
      out.insert(out.end(), marks_.data() + next_, marks_.data() + end);
      for (std::size_t i = held; i < out.size(); ++i) out[i] -= start_;
      next_ = end;
    }
  }

  /// Sets `cursor` to the position of the first entry copied; leaves it alone when there is none.
  void SetCursor(int& cursor) const {
    if (isAnyCopied_) cursor = static_cast<int>(firstCopied_);
  }

 private:
  /// Position of the first entry from the next one on that is not beyond the start or beyond `vertex`, else the end.
  std::size_t EndOfRun(std::size_t vertex) const {
    constexpr std::size_t kAtOnce = 8;
    // Unsigned: an entry up to the start wraps to a number beyond every span.
    const std::uint32_t first = start_ + 1;
    const std::uint32_t span =
        static_cast<std::uint32_t>(std::min<std::size_t>(vertex - start_, 0xffffffffu));
    const std::uint32_t* const marks = marks_.data();
    std::size_t end = next_;
    for (; end + kAtOnce <= marks_.size(); end += kAtOnce) {
      std::uint32_t outside = 0;
      for (std::size_t i = 0; i < kAtOnce; ++i) outside |= marks[end + i] - first >= span ? 1u : 0u;
      if (outside != 0) break;
    }
    while (end < marks_.size() && marks[end] - first < span) ++end;
    return end;
  }

  const std::vector<std::uint32_t>& marks_;
  std::size_t next_;
  const std::uint32_t start_;
  bool isAnyCopied_ = false;
  std::size_t firstCopied_ = 0;
};

}  // namespace

float VorelGeometryAlgorithm::HandleBoundaryDataByDistance(const BoundaryData& source, int& indexCursor,
                                                           int startIndex, double startRatio, double length,
                                                           BoundaryData& piece) {
  VOREL_PRECONDITION(startIndex >= 0);
  VOREL_PRECONDITION(indexCursor >= -1);
  VOREL_PRECONDITION(&source != &piece);
  const std::size_t pointCount = source.points.size();
  const std::size_t start = static_cast<std::size_t>(startIndex);
  if (pointCount < 2 || start >= pointCount - 1) return 0.0f;

  const GeoCoordinateZ* const points = source.points.data();
  const GeoCoordinateZ first =
      internal::PointAtRatio(points[start], points[start + 1], static_cast<float>(startRatio));
  piece.points.push_back(first);
  piece.pointIndices.push_back(0);
  MarkCopier marks(source.pointIndices, static_cast<std::size_t>(std::int64_t{indexCursor} + 1),
                   static_cast<std::uint32_t>(start));
  // Ends the piece in the segment from `from` to vertex `to`. A mark there is left out even where the cut falls on it.
  const auto cut = [&](const GeoCoordinateZ& from, std::size_t to, double covered, double segmentLength) {
    piece.points.push_back(
        internal::PointAtRatio(from, points[to], static_cast<float>((length - covered) / segmentLength)));
    marks.SetCursor(indexCursor);
    return static_cast<float>(length / length);  // 1; NaN for 0 metres
  };

  const double firstLength = tarvo::geodesy::Distance(first, points[start + 1]);
  double covered = 0.0 + firstLength;  // metres from the start point to vertex i
  if (!(length > covered)) return cut(first, start + 1, 0.0, firstLength);
  std::size_t i = start + 1;
  std::size_t stored = i;  // the first vertex that is not in the piece yet
  for (;;) {
    const std::size_t count = std::min(pointCount - 1 - i, internal::kVerticesCopiedAtOnce);
    const internal::LimitedWalk walk = internal::WalkSegmentsBelow(points + i, count, covered, length);
    i += walk.passed;
    covered = walk.metres;
    piece.points.insert(piece.points.end(), points + stored, points + i + 1);
    stored = i + 1;
    marks.CopyUpTo(i, piece.pointIndices);
    if (walk.passed < count) return cut(points[i], i + 1, covered, walk.nextLength);
    if (i == pointCount - 1) break;
  }
  marks.SetCursor(indexCursor);
  return static_cast<float>(covered / length);
}

}  // namespace vorel
