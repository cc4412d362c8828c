#ifndef VOREL_MAP_UTILS_INTERNAL_LANES_H_
#define VOREL_MAP_UTILS_INTERNAL_LANES_H_

// Several doubles at a time, with the vector extensions that g++ and clang++ share. Two are in every x86-64 (SSE2) and
// ARM64 (NEON) processor. Each lane is computed and rounded as a double by itself, so what is built of lanes has the
// bits of the same expression on doubles.
//
// All in here has internal linkage and is inlined: a source that is compiled for one instruction set must not lend its
// copy to others. Such a source defines VOREL_FOUR_LANES to get the wider form.

#include <cstddef>

#if defined(__SSE2__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#else
#include <cmath>
#endif

#include "base/geo_coordinate.h"

#define VOREL_LANES_INLINE static inline __attribute__((always_inline))
#define VOREL_LANES_METHOD inline __attribute__((always_inline))
#define VOREL_LANES_LAMBDA __attribute__((always_inline))

namespace vorel {
namespace internal {
namespace {

using TwoDoubles = double __attribute__((vector_size(16)));
/// What a comparison gives: all bits set in a lane where it holds.
using TwoFlags = decltype(TwoDoubles{} < TwoDoubles{});

/// Longitude in the first lane, latitude in the second.
VOREL_LANES_INLINE TwoDoubles LoadPoint(const tarvo::GeoCoordinate& point) {
  TwoDoubles lanes;
  __builtin_memcpy(&lanes, &point, sizeof lanes);
  return lanes;
}
VOREL_LANES_INLINE TwoDoubles LoadPoint(const tarvo::GeoCoordinate* point) {
  return LoadPoint(*point);
}

VOREL_LANES_INLINE bool InAnyLane(TwoFlags flags) {
#if defined(__SSE2__)
  return _mm_movemask_pd(reinterpret_cast<TwoDoubles>(flags)) != 0;
#else
  return (flags[0] | flags[1]) != 0;
#endif
}
VOREL_LANES_INLINE bool InEachLane(TwoFlags flags) {
#if defined(__SSE2__)
  return _mm_movemask_pd(reinterpret_cast<TwoDoubles>(flags)) == 3;
#else
  return (flags[0] & flags[1]) != 0;
#endif
}

/// What the distances of neighbouring points are made of, one segment per lane: differences of the coordinates, end
/// minus start, and the sum of the latitudes.
template <class Doubles>
struct Segments {
  Doubles longitudeDifference;
  Doubles latitudeDifference;
  Doubles latitudeSum;
};

struct TwoLanes {
  using Doubles = TwoDoubles;
  using Flags = TwoFlags;
  static constexpr std::size_t kCount = 2;

  VOREL_LANES_INLINE Doubles All(double value) { return Doubles{value, value}; }

  /// All bits set in the lanes of a `Load` that hold its point `first`, counted from 0, or one after it.
  VOREL_LANES_INLINE Flags PointsFrom(std::size_t first) {
    static constexpr Flags kFlags[] = {{-1, -1}, {0, -1}};
    return kFlags[first];
  }

  /// Without the sign, also of NaN.
  VOREL_LANES_INLINE Doubles Size(Doubles value) {
    return reinterpret_cast<Doubles>(reinterpret_cast<Flags>(value) & 0x7fffffffffffffff);
  }

  // The comparisons are spelled out for SSE2: g++ takes an operator that is masked afterwards for a choice, for which
  // SSE2 has no instruction, and goes lane by lane.
  VOREL_LANES_INLINE Flags Less(Doubles a, Doubles b) {
#if defined(__SSE2__)
    return reinterpret_cast<Flags>(_mm_cmplt_pd(a, b));
#else
    return a < b;
#endif
  }
  VOREL_LANES_INLINE Flags Equal(Doubles a, Doubles b) {
#if defined(__SSE2__)
    return reinterpret_cast<Flags>(_mm_cmpeq_pd(a, b));
#else
    return a == b;
#endif
  }
  VOREL_LANES_INLINE Flags LessOrEqual(Doubles a, Doubles b) {
#if defined(__SSE2__)
    return reinterpret_cast<Flags>(_mm_cmple_pd(a, b));
#else
    return a <= b;
#endif
  }

  VOREL_LANES_INLINE Doubles SquareRoot(Doubles value) {
#if defined(__SSE2__)
    return _mm_sqrt_pd(value);
#elif defined(__aarch64__)
    return vsqrtq_f64(value);
#else
    return Doubles{std::sqrt(value[0]), std::sqrt(value[1])};
#endif
  }

  /// a < b ? a : b and a > b ? a : b in each lane: `b` where one is NaN.
  VOREL_LANES_INLINE Doubles Smaller(Doubles a, Doubles b) {
#if defined(__SSE2__)
    return _mm_min_pd(a, b);
#else
    return a < b ? a : b;
#endif
  }
  VOREL_LANES_INLINE Doubles Larger(Doubles a, Doubles b) {
#if defined(__SSE2__)
    return _mm_max_pd(a, b);
#else
    return a > b ? a : b;
#endif
  }

  /// The coordinates of two points, a point in each lane; of `points[0]` and `points[1]`, or of any two.
  VOREL_LANES_INLINE void Load(const tarvo::GeoCoordinate* points, Doubles& longitudes, Doubles& latitudes) {
    Split(LoadPoint(points[0]), LoadPoint(points[1]), longitudes, latitudes);
  }
  VOREL_LANES_INLINE void Gather(const tarvo::GeoCoordinate* const* points, Doubles& longitudes,
                                 Doubles& latitudes) {
    Split(LoadPoint(*points[0]), LoadPoint(*points[1]), longitudes, latitudes);
  }

  /// The coordinates of points in a row, each in the lane of its place.
  VOREL_LANES_INLINE void LoadInOrder(const tarvo::GeoCoordinateZ* points, Doubles& longitudes,
                                      Doubles& latitudes) {
    Split(LoadPoint(points[0]), LoadPoint(points[1]), longitudes, latitudes);
  }

  /// The latitudes of two points in a row.
  VOREL_LANES_INLINE Doubles LoadLatitudes(const tarvo::GeoCoordinate* points) {
    return Doubles{points[0].latitude, points[1].latitude};
  }

  /// The segments from points[0] to points[1] and from points[kStride] to points[kStride + 1]: with a stride of 1 two
  /// steps of a line, with 2 two pairs. The points may be pointers to points. Differences and sums are taken while a
  /// point's coordinates stand side by side; that leaves three shuffles.
  template <std::size_t kStride, class Point>
  VOREL_LANES_INLINE Segments<Doubles> LoadSegments(const Point* points) {
    const Doubles start0 = LoadPoint(points[0]);
    const Doubles end0 = LoadPoint(points[1]);
    const Doubles start1 = LoadPoint(points[kStride]);
    const Doubles end1 = LoadPoint(points[kStride + 1]);
    Segments<Doubles> segments;
    Split(end0 - start0, end1 - start1, segments.longitudeDifference, segments.latitudeDifference);
    segments.latitudeSum = SecondOfEach(start0 + end0, start1 + end1);
    return segments;
  }

  VOREL_LANES_INLINE bool InAny(Flags flags) {
    return InAnyLane(flags);
  }
  VOREL_LANES_INLINE bool InEach(Flags flags) {
    return InEachLane(flags);
  }
  VOREL_LANES_INLINE bool AreBothWithin(Doubles a, double limitA, Doubles b, double limitB) {
    return InEach(LessOrEqual(a, All(limitA)) & LessOrEqual(b, All(limitB)));
  }
  VOREL_LANES_INLINE bool InOddNumber(Flags flags) {
    return (flags[0] ^ flags[1]) != 0;
  }

 private:
  VOREL_LANES_INLINE void Split(TwoDoubles first, TwoDoubles second, Doubles& longitudes,
                                Doubles& latitudes) {
    longitudes = Doubles{first[0], second[0]};
    latitudes = SecondOfEach(first, second);
  }
  VOREL_LANES_INLINE Doubles SecondOfEach(Doubles first, Doubles second) {
    return Doubles{first[1], second[1]};
  }
};

#ifdef VOREL_FOUR_LANES
/// For AVX2. The points of a load stand in the lanes in the order 0 2 1 3, which saves crossing the halves.
struct FourLanes {
  using Doubles = double __attribute__((vector_size(32)));
  using Flags = decltype(Doubles{} < Doubles{});
  static constexpr std::size_t kCount = 4;

  VOREL_LANES_INLINE Doubles All(double value) { return Doubles{value, value, value, value}; }

  VOREL_LANES_INLINE Flags PointsFrom(std::size_t first) {
    static constexpr Flags kFlags[] = {{-1, -1, -1, -1}, {0, -1, -1, -1}, {0, -1, 0, -1}, {0, 0, 0, -1}};
    return kFlags[first];
  }
  VOREL_LANES_INLINE Doubles Size(Doubles value) {
    return reinterpret_cast<Doubles>(reinterpret_cast<Flags>(value) & 0x7fffffffffffffff);
  }
  VOREL_LANES_INLINE Flags Less(Doubles a, Doubles b) {
    return reinterpret_cast<Flags>(_mm256_cmp_pd(a, b, _CMP_LT_OQ));
  }
  VOREL_LANES_INLINE Flags Equal(Doubles a, Doubles b) {
    return reinterpret_cast<Flags>(_mm256_cmp_pd(a, b, _CMP_EQ_OQ));
  }
  VOREL_LANES_INLINE Flags LessOrEqual(Doubles a, Doubles b) {
    return reinterpret_cast<Flags>(_mm256_cmp_pd(a, b, _CMP_LE_OQ));
  }

  VOREL_LANES_INLINE Doubles SquareRoot(Doubles value) { return _mm256_sqrt_pd(value); }

  VOREL_LANES_INLINE Doubles Smaller(Doubles a, Doubles b) { return _mm256_min_pd(a, b); }
  VOREL_LANES_INLINE Doubles Larger(Doubles a, Doubles b) { return _mm256_max_pd(a, b); }

  VOREL_LANES_INLINE void Load(const tarvo::GeoCoordinate* points, Doubles& longitudes, Doubles& latitudes) {
    Split(LoadTwo(points), LoadTwo(points + 2), longitudes, latitudes);
  }
  VOREL_LANES_INLINE void Gather(const tarvo::GeoCoordinate* const* points, Doubles& longitudes,
                                 Doubles& latitudes) {
    Split(Pair(*points[0], *points[1]), Pair(*points[2], *points[3]), longitudes, latitudes);
  }

  VOREL_LANES_INLINE void LoadInOrder(const tarvo::GeoCoordinateZ* points, Doubles& longitudes,
                                      Doubles& latitudes) {
    Split(Pair(points[0], points[2]), Pair(points[1], points[3]), longitudes, latitudes);
  }

  VOREL_LANES_INLINE Doubles LoadLatitudes(const tarvo::GeoCoordinate* points) {
    return _mm256_unpackhi_pd(LoadTwo(points), LoadTwo(points + 2));
  }

  /// As with two lanes. Every other segment stands side by side, so that these come in order.
  template <std::size_t kStride, class Point>
  VOREL_LANES_INLINE Segments<Doubles> LoadSegments(const Point* points) {
    const Doubles starts02 = Pair(points[0], points[2 * kStride]);
    const Doubles ends02 = Pair(points[1], points[2 * kStride + 1]);
    const Doubles starts13 = Pair(points[kStride], points[3 * kStride]);
    const Doubles ends13 = Pair(points[kStride + 1], points[3 * kStride + 1]);
    Segments<Doubles> segments;
    Split(ends02 - starts02, ends13 - starts13, segments.longitudeDifference, segments.latitudeDifference);
    segments.latitudeSum = _mm256_unpackhi_pd(starts02 + ends02, starts13 + ends13);
    return segments;
  }

  VOREL_LANES_INLINE bool InAny(Flags flags) { return Signs(flags) != 0; }
  VOREL_LANES_INLINE bool InEach(Flags flags) { return Signs(flags) == 0xf; }
  VOREL_LANES_INLINE bool AreBothWithin(Doubles a, double limitA, Doubles b, double limitB) {
    return InEach(LessOrEqual(a, All(limitA)) & LessOrEqual(b, All(limitB)));
  }
  VOREL_LANES_INLINE bool InOddNumber(Flags flags) {
    return ((flags[0] ^ flags[1]) ^ (flags[2] ^ flags[3])) != 0;
  }

 private:
  VOREL_LANES_INLINE Doubles LoadTwo(const tarvo::GeoCoordinate* points) {
    Doubles lanes;
    __builtin_memcpy(&lanes, points, sizeof lanes);
    return lanes;
  }
  template <class Point>
  VOREL_LANES_INLINE Doubles Pair(const Point& low, const Point& high) {
    return _mm256_set_m128d(LoadPoint(high), LoadPoint(low));
  }
  VOREL_LANES_INLINE int Signs(Flags flags) { return _mm256_movemask_pd(reinterpret_cast<Doubles>(flags)); }
  VOREL_LANES_INLINE void Split(Doubles first, Doubles second, Doubles& longitudes, Doubles& latitudes) {
    longitudes = _mm256_unpacklo_pd(first, second);
    latitudes = _mm256_unpackhi_pd(first, second);
  }
};
#endif

}  // namespace
}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_LANES_H_
