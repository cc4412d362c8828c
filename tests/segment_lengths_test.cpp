// The lengths of many segments against the distance of each pair, for every form that this machine runs.

#include "map_utils/internal/segment_lengths.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "support/bits.h"
#include "support/lines.h"
#include "support/special_values.h"

namespace {

using tarvo::GeoCoordinate;
using tarvo::GeoCoordinateZ;
using vorel::internal::AddSegmentLengths;
using vorel::internal::FindSegmentKernel;
using vorel::internal::ForceSegmentKernel;
using vorel::internal::StorePairLengths;
using vorel::internal::StoreSegmentLengths;
using vorel::internal::StoreSegmentSums;
using vorel::internal::WalkSegments;
using vorel::test::kInfinity;
using vorel::test::kNaN;
using vorel::test::Line;
using vorel::test::LineZ;
using vorel::test::SameBits;

constexpr double kUntouched = -7.25;

/// One test per form: 1, 2 or 4 segments at once.
class SegmentLengths : public testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override {
    const vorel::internal::SegmentKernel* kernel = FindSegmentKernel(GetParam());
    if (kernel == nullptr)
      GTEST_SKIP() << "skipped: this machine does not measure " << GetParam() << " at once";
    ForceSegmentKernel(kernel);
  }
  void TearDown() override { ForceSegmentKernel(nullptr); }
};

INSTANTIATE_TEST_SUITE_P(Lanes, SegmentLengths, testing::Values(1u, 2u, 4u),
                         testing::PrintToStringParamName());

/// The plain twin: each pair by itself.
template <class Point>
std::vector<double> PlainLengths(const Point* points, std::size_t segmentCount) {
  std::vector<double> lengths;
  for (std::size_t i = 0; i < segmentCount; ++i) lengths.push_back(points[i].DistanceTo(points[i + 1]));
  return lengths;
}

/// `stored` begins with `expected`, and nothing was written beyond.
void CheckStored(std::vector<double> stored, const std::vector<double>& expected) {
  for (std::size_t i = expected.size(); i < stored.size(); ++i)
    ASSERT_EQ(stored[i], kUntouched) << "beyond the end";
  stored.resize(expected.size());
  ASSERT_TRUE(SameBits(stored, expected));
}

/// Walks below limits at, just below and just above sums of every part of the line, against one comparison per segment.
template <class Point>
void CheckLimits(const Point* points, double start, const std::vector<double>& lengths,
                 const std::vector<double>& sums) {
  std::vector<double> limits{start, 0.0, kNaN, kInfinity, -kInfinity};
  const std::size_t step = 1 + sums.size() / 8;
  for (std::size_t i = 0; i < sums.size(); i += step) {
    limits.push_back(sums[i]);
    limits.push_back(std::nextafter(sums[i], -kInfinity));
    limits.push_back(std::nextafter(sums[i], kInfinity));
  }
  for (const double limit : limits) {
    std::size_t passed = 0;
    double metres = start;
    for (; passed < lengths.size() && limit > metres + lengths[passed]; ++passed) {
      metres = metres + lengths[passed];
    }
    const vorel::internal::LimitedWalk walk =
        vorel::internal::WalkSegmentsBelow(points, lengths.size(), start, limit);
    ASSERT_EQ(walk.passed, passed) << "limit " << limit;
    ASSERT_TRUE(SameBits(walk.metres, metres)) << "limit " << limit;
    if (passed < lengths.size()) {
      ASSERT_TRUE(SameBits(walk.nextLength, lengths[passed])) << "limit " << limit;
    }
  }
}

/// Stored, added and walked lengths of `segmentCount` segments from points[0].
template <class Point>
void CheckSegments(const Point* points, std::size_t segmentCount) {
  const std::vector<double> expected = PlainLengths(points, segmentCount);

  for (const double start : {0.0, -0.0, 1234.5678901, kNaN, kInfinity}) {
    SCOPED_TRACE(testing::Message() << "from " << start);
    std::vector<double> sums;
    double sum = start;
    for (const double length : expected) sums.push_back(sum = sum + length);
    ASSERT_TRUE(SameBits(AddSegmentLengths(points, segmentCount, start), sum));
    CheckLimits(points, start, expected, sums);
    if constexpr (std::is_same_v<Point, GeoCoordinate>) {
      std::vector<double> stored(segmentCount + 4, kUntouched);
      ASSERT_TRUE(SameBits(StoreSegmentSums(points, segmentCount, start, stored.data()), sum));
      CheckStored(stored, sums);
    }
  }

  if constexpr (std::is_same_v<Point, GeoCoordinate>) {
    std::vector<double> stored(segmentCount + 4, kUntouched);
    StoreSegmentLengths(points, segmentCount, stored.data());
    CheckStored(stored, expected);

    // The same segments as pairs, and in between those from each vertex to itself.
    std::vector<const GeoCoordinate*> pairs;
    std::vector<double> pairLengths;
    for (std::size_t i = 0; i < segmentCount; ++i) {
      pairs.insert(pairs.end(), {points + i, points + i + 1});
      pairLengths.push_back(expected[i]);
      if (i % 3 != 0) continue;
      pairs.insert(pairs.end(), {points + i, points + i});
      pairLengths.push_back(points[i].DistanceTo(points[i]));
    }
    std::vector<double> storedPairs(pairLengths.size() + 4, kUntouched);
    StorePairLengths(pairs.data(), pairLengths.size(), storedPairs.data());
    CheckStored(storedPairs, pairLengths);

    std::vector<double> walked;
    WalkSegments(points, 0, segmentCount, [&](std::size_t i, std::size_t count, const double* lengths) {
      EXPECT_EQ(i, walked.size());
      walked.insert(walked.end(), lengths, lengths + count);
      return true;
    });
    ASSERT_TRUE(SameBits(walked, expected));
  }
}

template <class Point>
void CheckLine(const std::vector<Point>& line) {
  if (!line.empty()) CheckSegments(line.data(), line.size() - 1);
}

/// Every length and offset, which moves each vertex through each lane of a vector and through each kind of rest.
template <class Point>
void CheckEveryPart(const std::vector<Point>& line) {
  for (std::size_t offset = 0; offset < 5 && offset < line.size(); ++offset) {
    for (std::size_t count = 0; offset + count < line.size(); ++count) {
      SCOPED_TRACE(testing::Message() << "offset " << offset << ", " << count << " segments");
      CheckSegments(line.data() + offset, count);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

LineZ WithHeight(const Line& line) {
  LineZ result;
  for (const GeoCoordinate& point : line) result.emplace_back(point.longitude, point.latitude, 12.5f);
  return result;
}

/// A road whose segments are all near.
Line Road(std::size_t vertexCount) {
  std::mt19937 generator(51001);
  return vorel::test::RandomLine(generator, static_cast<int>(vertexCount));
}

TEST_P(SegmentLengths, OfAwkwardLines) {
  for (const vorel::test::NamedLineZ& line : vorel::test::AwkwardLinesZ()) {
    SCOPED_TRACE(line.name);
    CheckEveryPart(line.points);
    CheckEveryPart(vorel::test::WithoutHeight(line.points));
  }
}

TEST_P(SegmentLengths, OfRandomLinesOfEveryLength) {
  constexpr unsigned kSeed = 51002;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 10; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ line = vorel::test::RandomLineZ(generator, 76);
    CheckEveryPart(line);
    CheckEveryPart(vorel::test::WithoutHeight(line));
  }
}

TEST_P(SegmentLengths, OfWildLines) {
  constexpr unsigned kSeed = 51003;
  std::mt19937 generator(kSeed);
  for (int run = 0; run < 3000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    const LineZ line = vorel::test::WildLineZ(generator, 1 + run % 90);
    CheckLine(line);
    CheckLine(vorel::test::WithoutHeight(line));
    if (HasFatalFailure()) return;
  }
}

TEST_P(SegmentLengths, OfRealLines) {
  for (const char* folder : {"routes", "traces", "lanes", "polygons"}) {
    SKIP_WITHOUT_REAL_LINES(vorel::test::RealLinesZ(folder));
    for (const vorel::test::NamedLineZ& line : vorel::test::RealLinesZ(folder)) {
      SCOPED_TRACE(line.name);
      CheckLine(line.points);
      CheckLine(vorel::test::WithoutHeight(line.points));
    }
  }
}

/// One vertex that makes its segments far, NaN or invalid, at each position of a road.
TEST_P(SegmentLengths, AroundOneVertexThatIsNotNear) {
  const double values[] = {kNaN,   kInfinity, -kInfinity, 90.5, -90.5, 1e300,
                           -1e300, 7.0,       0.0,        -0.0, 180.0, 360.0};
  for (std::size_t count : {3u, 4u, 5u, 8u, 11u, 17u}) {
    for (std::size_t position = 0; position <= count; ++position) {
      for (const double value : values) {
        for (const bool isLatitude : {false, true}) {
          SCOPED_TRACE(testing::Message() << count << " segments, vertex " << position << ", "
                                          << (isLatitude ? "latitude " : "longitude ") << value);
          Line line = Road(count + 1);
          (isLatitude ? line[position].latitude : line[position].longitude) = value;
          CheckLine(line);
          CheckLine(WithHeight(line));
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

/// On either side of the limits of the near distance, and of those at which the vectors leave off.
TEST_P(SegmentLengths, AtTheLimits) {
  std::vector<double> steps;
  for (const double limit : {0.1, std::sqrt(0.0099), std::sqrt(0.0099 / 2.0), 0.0705, 2.75}) {
    for (const double step : {std::nextafter(limit, 0.0), limit, std::nextafter(limit, 4.0)}) {
      steps.push_back(step);
      steps.push_back(-step);
    }
  }
  steps.push_back(0.0);
  steps.push_back(1e-170);  // its square is 0
  const double latitudes[] = {0.0,
                              47.0,
                              -47.0,
                              89.65,
                              89.75,
                              89.7,
                              std::nextafter(89.75, 90.0),
                              89.9,
                              -89.9,
                              90.0,
                              -90.0,
                              std::nextafter(90.0, 91.0)};
  for (const double latitude : latitudes) {
    for (const double northward : steps) {
      for (const double eastward : steps) {
        Line line(9, {0.0, latitude});
        line[3] = line[6] = {eastward, latitude + northward};
        SCOPED_TRACE(testing::Message()
                     << "latitude " << latitude << ", steps " << northward << ", " << eastward);
        CheckLine(line);
        if (HasFatalFailure()) return;
      }
    }
  }
}

/// Memory between two pages that must not be read.
class GuardedMemory {
 public:
  GuardedMemory() : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
    void* memory = mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    begin_ = static_cast<char*>(memory) + page_;
    if (mprotect(begin_, page_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  }
  ~GuardedMemory() { munmap(begin_ - page_, 3 * page_); }
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;

  /// A copy of the line that starts where this memory does, or ends there.
  template <class Point>
  const Point* PutAtStart(const std::vector<Point>& line) {
    return Put(line, begin_);
  }
  template <class Point>
  const Point* PutAtEnd(const std::vector<Point>& line) {
    return Put(line, begin_ + page_ - line.size() * sizeof(Point));
  }

 private:
  template <class Point>
  const Point* Put(const std::vector<Point>& line, char* place) {
    if (line.size() * sizeof(Point) > page_) throw std::length_error("the line is longer than a page");
    return std::uninitialized_copy(line.begin(), line.end(), reinterpret_cast<Point*>(place)) - line.size();
  }

  std::size_t page_;
  char* begin_;
};

/// Neither beyond the last vertex of a line nor before its first one, near or not.
TEST_P(SegmentLengths, ReadNoOtherVertices) {
  GuardedMemory memory;
  for (std::size_t vertexCount = 1; vertexCount <= 90; ++vertexCount) {
    for (const bool isLastVertexValid : {true, false}) {
      SCOPED_TRACE(testing::Message() << vertexCount << " vertices");
      Line line = Road(vertexCount);
      if (!isLastVertexValid) line.back().latitude = kNaN;
      const LineZ lineZ = WithHeight(line);
      CheckSegments(memory.PutAtStart(line), vertexCount - 1);
      CheckSegments(memory.PutAtEnd(line), vertexCount - 1);
      CheckSegments(memory.PutAtStart(lineZ), vertexCount - 1);
      CheckSegments(memory.PutAtEnd(lineZ), vertexCount - 1);
      if (HasFatalFailure()) return;
    }
  }
}

TEST_P(SegmentLengths, AcrossTheAntimeridian) {
  Line line;
  for (int i = 0; i < 40; ++i)
    line.emplace_back((i % 7 < 3 ? 179.9999 : -179.9999) + 1e-5 * i, 10.0 + 1e-5 * i);
  CheckEveryPart(line);
}

TEST_P(SegmentLengths, LeaveTheDirectionOfAPairOutOfIt) {
  Line line = Road(60);
  const std::vector<double> forward = PlainLengths(line.data(), line.size() - 1);
  std::vector<double> backward;
  for (std::size_t i = 0; i + 1 < line.size(); ++i) backward.push_back(line[i + 1].DistanceTo(line[i]));
  EXPECT_TRUE(SameBits(backward, forward));
}

/// A walk that stops in its first block has measured no more than that block.
TEST_P(SegmentLengths, WalkStopsWhenTold) {
  const Line line = Road(200);
  std::size_t blocks = 0;
  std::size_t measured = 0;
  WalkSegments(line.data(), 3, 199, [&](std::size_t i, std::size_t count, const double*) {
    EXPECT_EQ(i, 3 + measured);
    ++blocks;
    measured += count;
    EXPECT_LE(count, vorel::internal::kSegmentsPerBlock);
    return blocks < 2;
  });
  EXPECT_EQ(blocks, 2u);
  EXPECT_EQ(measured, 3 * vorel::internal::kSegmentsInFirstBlock);
}

TEST(SegmentKernels, AreFoundByTheirLanes) {
  EXPECT_NE(FindSegmentKernel(1), nullptr);
  EXPECT_EQ(FindSegmentKernel(3), nullptr);
  EXPECT_EQ(FindSegmentKernel(0), nullptr);
#if defined(__x86_64__) || defined(__aarch64__)
  ASSERT_NE(FindSegmentKernel(2), nullptr);
  EXPECT_EQ(FindSegmentKernel(2)->lanes, 2u);
#endif
}

}  // namespace
