// The inputs of the scripts in node/, with the values that they are to give.

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "inputs.h"
#include "support/lines.h"

namespace peers {
namespace {

using tarvo::GeoCoordinate;

nlohmann::json Positions(const Line& line) {
  nlohmann::json positions = nlohmann::json::array();
  for (const GeoCoordinate& point : line) positions.push_back({point.longitude, point.latitude});
  return positions;
}
nlohmann::json Positions(const LineZ& line) {
  return Positions(vorel::test::WithoutHeight(line));
}
nlohmann::json Positions(const std::vector<std::pair<GeoCoordinate, GeoCoordinate>>& pairs) {
  Line points;
  for (const auto& [from, to] : pairs) {
    points.push_back(from);
    points.push_back(to);
  }
  return Positions(points);
}

}  // namespace

void WriteInputs(const Inputs& inputs, const Jobs& jobs, const std::string& path) {
  nlohmann::json cases = nlohmann::json::array();
  const auto add = [&](const char* kind, const JobCase& c, nlohmann::json data) {
    data["kind"] = kind;
    data["job"] = c.job;
    data["input"] = c.input;
    data["size"] = c.size;
    data["items"] = c.items;
    data["unit"] = c.unit;
    data["expected"] = jobs.Expected(c);
    cases.push_back(std::move(data));
  };
  for (const auto& c : inputs.distance)
    add("distance", c, {{"points", Positions(c.pairs)}, {"exact", c.exact}});
  for (const auto& c : inputs.length) add("length", c, {{"line", Positions(c.line)}});
  for (const auto& c : inputs.clipping) {
    add("clipping", c,
        {{"line", Positions(c.line)},
         {"view", {c.view.min.longitude, c.view.min.latitude, c.view.max.longitude, c.view.max.latitude}}});
  }
  for (const auto& c : inputs.sampling) {
    // The peers there walk from the start for each point: beyond this size they take minutes.
    if (c.size <= 100.0) add("sampling", c, {{"line", Positions(c.line)}, {"interval", c.interval}});
  }
  for (const auto& c : inputs.containment)
    add("containment", c, {{"line", Positions(c.polygon)}, {"points", Positions(c.points)}});
  for (const auto& c : inputs.projection)
    add("projection", c, {{"line", Positions(c.lane)}, {"points", Positions(c.positions)}});
  for (const auto& c : inputs.offset) add("offset", c, {{"line", Positions(c.lane)}, {"metres", kOffset}});
  std::ofstream stream(path);
  stream << cases;
  if (!stream.flush()) throw std::runtime_error("could not write " + path);
}

}  // namespace peers
