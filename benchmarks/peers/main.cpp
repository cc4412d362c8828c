// Measures every job with every candidate, after checking that they agree. Besides the flags of Google Benchmark:
//   --passes=N --out=FILE  measures everything N times in turn and writes the seconds of each time as JSON
//   --write-inputs=FILE    writes the inputs for the scripts in node/ and measures nothing

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "candidates.h"

namespace {

/// Takes "--name=value" out of the arguments; empty when it is not there.
std::string TakeFlag(int& argc, char** argv, const std::string& name) {
  const std::string start = "--" + name + "=";
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.compare(0, start.size(), start) != 0) continue;
    std::rotate(argv + i, argv + i + 1, argv + argc);
    --argc;
    return argument.substr(start.size());
  }
  return {};
}

int PassCount(const std::string& text) {
  char* end = nullptr;
  const long count = std::strtol(text.c_str(), &end, 10);
  if (*end != '\0' || count < 1 || count > 1000)
    throw std::runtime_error("--passes needs a number from 1 to 1000, not \"" + text + "\"");
  return static_cast<int>(count);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string inputsPath = TakeFlag(argc, argv, "write-inputs");
    const std::string passes = TakeFlag(argc, argv, "passes");
    const std::string resultsPath = TakeFlag(argc, argv, "out");
    if (passes.empty() != resultsPath.empty()) throw std::runtime_error("--passes and --out go together");
    const int passCount = passes.empty() ? 0 : PassCount(passes);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

    peers::Inputs inputs = peers::MakeInputs();
#ifdef VOREL_BENCHMARK_PEERS
    peers::SetExactDistances(inputs);
#endif
    peers::Jobs jobs;
    peers::AddVorelAlongLines(inputs, jobs);
    peers::AddVorelInPlaces(inputs, jobs);
    if (!inputsPath.empty()) {
      peers::WriteInputs(inputs, jobs, inputsPath);
      return 0;
    }
    peers::AddPlain(inputs, jobs);
#ifdef VOREL_BENCHMARK_PEERS
    peers::AddBoost(inputs, jobs);
    peers::AddGeos(inputs, jobs);
    peers::AddGeographicLib(inputs, jobs);
    peers::AddS2(inputs, jobs);
    peers::AddProj(inputs, jobs);
#endif
    jobs.ThrowOnDisagreement();
    if (passCount > 0) {
      jobs.Measure(passCount, resultsPath);
    } else {
      jobs.Register();
      benchmark::RunSpecifiedBenchmarks();
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "peers_bench: %s\n", failure.what());
    return 1;
  }
  return 0;
}
