#ifndef VOREL_TESTS_CONTRACTS_SEEN_H_
#define VOREL_TESTS_CONTRACTS_SEEN_H_

// What the functions of the library are seen to do: calls them, and looks at what came of it.

#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "map_utils/vorel_geometry_algorithm.h"
#include "support/allocation_counter.h"
#include "support/bits.h"

namespace vorel::test::contracts {

using Algorithm = vorel::VorelGeometryAlgorithm;
using Point = tarvo::GeoCoordinate;
using PointZ = tarvo::GeoCoordinateZ;
using Line = std::vector<Point>;
using LineZ = std::vector<PointZ>;
using Lines = std::vector<Line>;
using Metres = std::vector<double>;
using View = tarvo::Rect<Point>;
using Boundary = tarvo::HAD::BoundaryData;
using tarvo::MapVector2d;
using tarvo::RoutePos;
using Vector = vorel::Vector2<double>;

/// What a function was seen to do.
struct Seen {
  std::map<std::string, std::string> outputs;  ///< of each output: appended, gone, changed or same
  bool refusalLeavesOutputs = false;           ///< a refused call was made, and its outputs were as before
  bool allocates = false;
  bool throwsOutOfRange = false;
  std::string fromNaN;         ///< what input of NaN alone gives; a row's text begins with it
  bool sharesAllowed = false;  ///< an output that is also another argument was tried, and gave what it should
};

using SeenFunctions = std::map<std::string, Seen>;  // by the function, as the page calls it

/// Tries each function of one family.
SeenFunctions SeeAngles();
SeenFunctions SeePoints();
SeenFunctions SeeMeasurement();
SeenFunctions SeeSampling();
SeenFunctions SeeRouteSampling();
SeenFunctions SeeContainment();
SeenFunctions SeeRoutes();
SeenFunctions SeeProjection();
SeenFunctions SeeLanes();
SeenFunctions SeeBoundsAndPieces();

inline const Point kNaNPoint(kNaN, kNaN);
inline const PointZ kNaNPointZ(kNaN, kNaN, kNaNFloat);
inline const Line kLine = {{0.0, 0.0}, {0.001, 0.0}, {0.002, 0.0}, {0.003, 0.001}};
inline const LineZ kLineZ = {
    {0.001, 0.0, 1.0f}, {0.002, 0.0, 2.0f}, {0.003, 0.0, 3.0f}, {0.004, 0.001, 4.0f}};
inline const Line kNaNLine(3, kNaNPoint);
inline const LineZ kNaNLineZ(3, kNaNPointZ);
inline const View kView{{-1.0, -1.0}, {1.0, 1.0}};
inline const View kNaNView{kNaNPoint, kNaNPoint};
inline const Line kSquare = {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}};
inline const Metres kTable = {0.0, 111.3, 222.6, 380.0};

inline std::string Text(double value) {
  if (std::isnan(value)) return "NaN";
  std::ostringstream text;
  text << value;
  return text.str();
}
inline std::string Text(bool value) {
  return value ? "true" : "false";
}
inline std::string Text(int value) {
  return std::to_string(value);
}
inline std::string Text(const Point& value) {
  return Text(value.longitude) == "NaN" ? Text(value.latitude) : "finite";
}

inline bool Counted(const std::function<void()>& call) {
  const vorel::test::AllocationCounter counter;
  call();
  return counter.Count() > 0;
}

/// How a container that held `before` came out of a call: in front, or not at all.
template <class Container>
std::string Fate(const Container& before, const Container& after) {
  if (after.size() < before.size()) return "gone";
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (!vorel::test::SameBits(before[i], after[i])) return "gone";
  }
  return after.size() > before.size() ? "appended" : "same";
}
inline std::string Fate(const std::vector<Vector>& before, const std::vector<Vector>& after) {
  return after.size() == 4 && before.size() != 4 ? "gone" : "same";
}
inline std::string Fate(const Lines& before, const Lines& after) {
  return after.size() < before.size() || after.front() != before.front()
             ? "gone"
             : (after.size() > before.size() ? "appended" : "same");
}
inline std::string Fate(const std::vector<int>& before, const std::vector<int>& after) {
  return before == after ? "same" : "gone";
}
inline std::string Fate(const std::vector<MapVector2d>& before, const std::vector<MapVector2d>& after) {
  return after.size() < before.size() || after[0].x != before[0].x
             ? "gone"
             : (after.size() > before.size() ? "appended" : "same");
}

/// A function with one growing output: `call` fills it, `refuse` is refused.
template <class Container>
Seen Grows(const char* name, const Container& before, const std::function<void(Container&)>& call,
           const std::function<void(Container&)>& refuse, const std::string& fromNaN) {
  Seen seen;
  Container out = before;
  call(out);
  seen.outputs[name] = Fate(before, out);
  out = before;
  if (refuse) {
    refuse(out);
    seen.refusalLeavesOutputs = Fate(before, out) == "same";
  }
  Container fresh;
  seen.allocates = Counted([&] { call(fresh); });
  seen.fromNaN = fromNaN;
  return seen;
}

/// A function without outputs.
inline Seen Plain(const std::function<void()>& call, const std::string& fromNaN) {
  Seen seen;
  seen.allocates = Counted(call);
  seen.fromNaN = fromNaN;
  return seen;
}

template <class Function>
bool ThrowsOutOfRange(const Function& function) {
  try {
    function();
  } catch (const std::out_of_range&) {
    return true;
  }
  return false;
}

inline std::string OneNaNPoint(const Line& out, std::size_t at) {
  return out.size() > at && std::isnan(out[at].longitude) ? "one NaN point" : "none";
}

}  // namespace vorel::test::contracts

#endif  // VOREL_TESTS_CONTRACTS_SEEN_H_
