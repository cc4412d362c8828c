#include "jobs.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace peers {
namespace {

/// Keeps the seconds of one run of each benchmark, by its name.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      seconds[run.run_name.function_name].push_back(run.cpu_accumulated_time /
                                                    static_cast<double>(run.iterations));
    }
  }

  std::map<std::string, std::vector<double>> seconds;
};

/// Averages of the last one, five and fifteen minutes; empty where the system does not tell.
std::vector<double> Load() {
  std::vector<double> load(3);
  if (getloadavg(load.data(), 3) != 3) load.clear();
  return load;
}

}  // namespace

void Jobs::AddChecked(const JobCase& jobCase, const std::string& candidate, double tolerance, double value,
                      std::function<void(benchmark::State&)> run) {
  const std::string key = jobCase.job + '|' + jobCase.input;
  const double expected = expected_.emplace(key, value).first->second;
  const double difference =
      value == expected ? 0.0 : std::fabs(value - expected) / std::max(1e-300, std::fabs(expected));
  if (!(difference <= tolerance)) {
    disagreements_ += "\n  " + jobCase.job + ", " + jobCase.input + ": " + candidate + " gives " +
                      std::to_string(value) + ", expected " + std::to_string(expected);
  }
  const std::size_t index = caseIndices_.emplace(key, cases_.size()).first->second;
  if (index == cases_.size()) cases_.emplace_back();
  cases_[index].push_back(
      std::make_shared<const Entry>(Entry{jobCase, candidate, difference, std::move(run)}));
}

void Jobs::ThrowOnDisagreement() const {
  if (!disagreements_.empty()) throw std::runtime_error("implausible results:" + disagreements_);
}

void Jobs::Register() const {
  for (const auto& candidates : cases_) {
    for (const auto& entry : candidates) benchmark::RegisterBenchmark(entry->Name().c_str(), entry->run);
  }
}

void Jobs::Measure(int passCount, const std::string& path) const {
  std::ofstream stream(path);
  if (!stream) throw std::runtime_error("could not write " + path);
  Register();
  nlohmann::json results = {{"load_before", Load()}, {"rows", nlohmann::json::array()}};
  Collector collector;
  for (int pass = 1; pass <= passCount; ++pass) {
    std::fprintf(stderr, "  pass %d of %d\n", pass, passCount);
    benchmark::RunSpecifiedBenchmarks(&collector);
  }
  results["load_after"] = Load();
  for (const auto& candidates : cases_) {
    for (const auto& entry : candidates) {
      const JobCase& c = entry->jobCase;
      const auto measured = collector.seconds.find(entry->Name());
      if (measured == collector.seconds.end()) continue;  // left out by a filter
      results["rows"].push_back({{"job", c.job},
                                 {"input", c.input},
                                 {"candidate", entry->candidate},
                                 {"size", c.size},
                                 {"items", c.items},
                                 {"unit", c.unit},
                                 {"difference", entry->difference},
                                 {"seconds", measured->second}});
      const auto error = largestErrors_.find(entry->Name());
      if (error != largestErrors_.end()) results["rows"].back()["largest_error"] = error->second;
    }
  }
  stream << results;
  if (!stream.flush()) throw std::runtime_error("could not write " + path);
}

}  // namespace peers
