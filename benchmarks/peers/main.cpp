// Measures every job with every candidate, after checking that they agree. Besides the flags of Google Benchmark:
//   --write-inputs=FILE   writes the inputs for the scripts in node/ and measures nothing

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <string>

#include "candidates.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const std::string writeInputs = "--write-inputs=";
  const bool onlyInputs =
      argc == 2 && writeInputs.compare(0, writeInputs.size(), argv[1], 0, writeInputs.size()) == 0;
  if (!onlyInputs && benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    const peers::Inputs inputs = peers::MakeInputs();
    peers::Jobs jobs;
    peers::AddVorelAlongLines(inputs, jobs);
    peers::AddVorelInPlaces(inputs, jobs);
    if (onlyInputs) {
      peers::WriteInputs(inputs, jobs, argv[1] + writeInputs.size());
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
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "peers_bench: %s\n", failure.what());
    return 1;
  }
  return 0;
}
