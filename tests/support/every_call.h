#ifndef VOREL_TESTS_SUPPORT_EVERY_CALL_H_
#define VOREL_TESTS_SUPPORT_EVERY_CALL_H_

// Every function of the library once, behind one form, for tests that hold something about all of them. The test
// `every_call` reads the class header and fails when a function is missing here.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/boundary_data.h"
#include "base/map_vector.h"
#include "base/rect.h"
#include "base/route_pos.h"
#include "map_utils/vorel_geometry_algorithm.h"
#include "support/lines.h"

namespace vorel::test {

/// What the calls read. Nothing of it changes once it is made, so that threads may share it.
struct CallInputs {
  /// @param lineOfCalls  at least four points
  /// @param seedOfNumbers  chooses the indices, distances and angles
  CallInputs(LineZ lineOfCalls, unsigned seedOfNumbers);

  mutable LineZ lineZ;  // some signatures ask for a non-const reference, and promise not to write
  Line line;
  std::vector<double> cumulative;
  std::vector<tarvo::RoutePos> positions;
  tarvo::HAD::BoundaryData boundary;
  std::vector<Line> lines;
  std::vector<std::vector<Line>> routes;
  std::vector<vorel::Vector2<double>> vectors;
  tarvo::Rect<tarvo::GeoCoordinate> view;
  tarvo::Rect<tarvo::GeoCoordinate> invertedView;
  std::string owner;
  tarvo::GeoCoordinateZ pos;
  int index = 0;  ///< of a vertex that has a successor
  int last = 0;   ///< of the last vertex
  double metres = 0.0;
  double degrees = 0.0;
};

/// What the calls write. Its vectors keep their room when it is cleared.
struct CallOutputs {
  Line line;
  LineZ lineZ;
  LineZ otherLineZ;
  std::vector<double> table;
  std::vector<int> indices;
  std::vector<vorel::Vector2<double>> extremes;
  std::vector<tarvo::MapVector2d> corners;
  tarvo::HAD::BoundaryData piece;
  std::vector<Line> runs;
  std::vector<double> values;  ///< what comes back by value or in single variables

  void Clear();

  CallOutputs& operator<<(double value) {
    values.push_back(value);
    return *this;
  }
  CallOutputs& operator<<(const tarvo::GeoCoordinate& point) {
    return *this << point.longitude << point.latitude;
  }
  CallOutputs& operator<<(const tarvo::GeoCoordinateZ& point) {
    return *this << point.longitude << point.latitude << static_cast<double>(point.z);
  }

  /// FNV-1a over the bits of everything; all NaNs count as one value.
  std::uint64_t Digest() const;
};

/// Stands for a function that builds vectors of vectors or returns one by value: how often it allocates is not promised.
constexpr std::size_t kAnyNumberOfAllocations = static_cast<std::size_t>(-1);

struct LibraryCall {
  const char* function;  ///< with the types that tell overloads apart
  /// The most allocations of one call whose output vectors have the room: vectors taken by value, results returned in a
  /// vector, and working vectors where the class header names them.
  std::size_t mostAllocations;
  void (*run)(const CallInputs& in, CallOutputs& out);  ///< `out` is cleared by the caller
};

const std::vector<LibraryCall>& LibraryCalls();

/// Inputs over awkward, random and long lines; seeds fixed.
std::vector<CallInputs> ManyCallInputs();

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_EVERY_CALL_H_
