#ifndef VOREL_BENCHMARKS_PEERS_JOBS_H_
#define VOREL_BENCHMARKS_PEERS_JOBS_H_

// One job is done by several candidates - this library, plain forms, public peers - on the same input in one program,
// so that a run compares them under the same conditions.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace peers {

/// What is done to what. Rows of the table are named by it.
struct JobCase {
  std::string job;
  std::string input;
  double size = 0.0;   ///< of the input, for the growth: vertices, in the distance job pairs
  double items = 0.0;  ///< done in one run: the time is reported per item
  std::string unit;    ///< name of one item
};

class Jobs {
 public:
  /// Registers one candidate. `work` does the whole job once and is what is timed; its data are prepared beforehand.
  /// `check` gives one number that says what came out, in the same unit for every candidate of the job; the first
  /// candidate of a case sets the expected value, and later ones may differ from it by `tolerance`, relative.
  template <class Work, class Check>
  void Add(const JobCase& jobCase, const std::string& candidate, double tolerance, Work work, Check check,
           const std::function<void()>& prepare = {}) {
    const double difference = Compare(jobCase, candidate, tolerance, static_cast<double>(check()));
    benchmark::RegisterBenchmark((jobCase.job + '|' + jobCase.input + '|' + candidate).c_str(),
                                 [=](benchmark::State& state) mutable {
                                   if (prepare) prepare();
                                   for (auto _ : state) {
                                     benchmark::DoNotOptimize(work());
                                     benchmark::ClobberMemory();
                                   }
                                   state.counters["size"] = jobCase.size;
                                   state.counters["items"] = jobCase.items;
                                   state.counters["difference"] = difference;
                                   state.SetLabel(jobCase.unit);
                                 });
  }

  /// The same where the result of `work` is the number to compare.
  template <class Work>
  void Add(const JobCase& jobCase, const std::string& candidate, double tolerance, Work work) {
    Add(jobCase, candidate, tolerance, work, work);
  }

  /// Candidates that disagree measure different things: nothing may then be measured.
  void ThrowOnDisagreement() const {
    if (!disagreements_.empty()) throw std::runtime_error("implausible results:" + disagreements_);
  }

  double Expected(const JobCase& jobCase) const { return expected_.at(jobCase.job + '|' + jobCase.input); }

 private:
  double Compare(const JobCase& jobCase, const std::string& candidate, double tolerance, double value) {
    const double expected = expected_.emplace(jobCase.job + '|' + jobCase.input, value).first->second;
    const double difference = std::fabs(value - expected) / std::max(1e-300, std::fabs(expected));
    if (!(value == expected || difference <= tolerance)) {
      disagreements_ += "\n  " + jobCase.job + ", " + jobCase.input + ": " + candidate + " gives " +
                        std::to_string(value) + ", expected " + std::to_string(expected);
    }
    return value == expected ? 0.0 : difference;
  }

  std::map<std::string, double> expected_;  // by case
  std::string disagreements_;
};

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_JOBS_H_
