#ifndef VOREL_BENCHMARKS_PEERS_JOBS_H_
#define VOREL_BENCHMARKS_PEERS_JOBS_H_

// One job is done by several candidates - this library, plain forms, public peers - on the same input in one program,
// so that a run compares them under the same conditions.

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <memory>
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
  /// Adds one candidate. `work` does the whole job once and is what is timed; its data are prepared beforehand.
  /// `check` gives one number that says what came out, in the same unit for every candidate of the job; the first
  /// candidate of a case sets the expected value, and later ones may differ from it by `tolerance`, relative. `prepare`
  /// runs before the check and, untimed, before each measurement.
  template <class Work, class Check>
  void Add(const JobCase& jobCase, const std::string& candidate, double tolerance, Work work, Check check,
           const std::function<void()>& prepare = {}) {
    if (prepare) prepare();
    AddChecked(jobCase, candidate, tolerance, static_cast<double>(check()),
               [prepare, work](benchmark::State& state) mutable {
                 if (prepare) prepare();
                 for (auto _ : state) {
                   benchmark::DoNotOptimize(work());
                   benchmark::ClobberMemory();
                 }
               });
  }

  /// The same where the result of `work` is the number to compare.
  template <class Work>
  void Add(const JobCase& jobCase, const std::string& candidate, double tolerance, Work work) {
    Add(jobCase, candidate, tolerance, work, work);
  }

  /// Notes how far a candidate's distances lie from the exact ones at most, in metres.
  void SetLargestError(const JobCase& jobCase, const std::string& candidate, double metres) {
    largestErrors_[jobCase.job + '|' + jobCase.input + '|' + candidate] = metres;
  }

  /// Candidates that disagree measure different things: nothing may then be measured.
  void ThrowOnDisagreement() const;

  double Expected(const JobCase& jobCase) const { return expected_.at(jobCase.job + '|' + jobCase.input); }

  /// Registers the candidates, case by case: those to be compared run one right after the other.
  void Register() const;

  /// Measures every candidate `passCount` times, going round all of them each time, so that a slow minute of the machine
  /// meets all; writes the seconds of one run of each job to `path` as JSON and the progress to stderr.
  void Measure(int passCount, const std::string& path) const;

 private:
  struct Entry {
    JobCase jobCase;
    std::string candidate;
    double difference = 0.0;  ///< of its result from the expected one, relative
    std::function<void(benchmark::State&)> run;

    std::string Name() const { return jobCase.job + '|' + jobCase.input + '|' + candidate; }
  };

  void AddChecked(const JobCase& jobCase, const std::string& candidate, double tolerance, double value,
                  std::function<void(benchmark::State&)> run);

  std::vector<std::vector<std::shared_ptr<const Entry>>> cases_;  // in the order of their first candidate
  std::map<std::string, std::size_t> caseIndices_;                // by job and input
  std::map<std::string, double> expected_;                        // by job and input
  std::map<std::string, double> largestErrors_;                   // by job, input and candidate
  std::string disagreements_;
};

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_JOBS_H_
