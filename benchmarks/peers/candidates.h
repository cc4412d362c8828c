#ifndef VOREL_BENCHMARKS_PEERS_CANDIDATES_H_
#define VOREL_BENCHMARKS_PEERS_CANDIDATES_H_

// Each candidate has a source file of its own, so that no peer's headers meet another's.

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "inputs.h"
#include "jobs.h"

namespace peers {

/// This library. Comes first: its results are those the others are checked against.
void AddVorelAlongLines(const Inputs& inputs, Jobs& jobs);
void AddVorelInPlaces(const Inputs& inputs, Jobs& jobs);

/// The jobs written plainly on the haversine formula.
void AddPlain(const Inputs& inputs, Jobs& jobs);

void AddBoost(const Inputs& inputs, Jobs& jobs);
void AddGeos(const Inputs& inputs, Jobs& jobs);
void AddGeographicLib(const Inputs& inputs, Jobs& jobs);
/// Fills in the exact distances, which say how accurate each candidate is.
void SetExactDistances(Inputs& inputs);
void AddS2(const Inputs& inputs, Jobs& jobs);
void AddProj(const Inputs& inputs, Jobs& jobs);

/// How far a result on a sphere may lie from one on the ellipsoid.
constexpr double kSphereTolerance = 6e-3;
/// How far two results on the ellipsoid may lie apart.
constexpr double kEllipsoidTolerance = 1e-6;
/// How far two counts of samples may lie apart: by the sphere, and by one sample of the shortest line.
constexpr double kSampleTolerance = 0.03;
/// How far two numbers of kept points may lie apart: peers have no box beside the distance, and ours is narrower than a
/// long spacing.
constexpr double kThinningTolerance = 0.4;
/// The sphere of the peers.
constexpr double kMeanRadius = 6371008.8;  // metres

/// Adds the job of single distances, and how far they lie from the exact ones: `distance` gives the metres between the two
/// points of one of `pairs`, which are those of the case in the candidate's own form.
template <class Pair, class Distance>
void AddDistances(const DistanceCase& c, Jobs& jobs, const std::string& candidate, double tolerance,
                  const std::vector<Pair>& pairs, const Distance& distance,
                  const std::function<void()>& prepare = {}) {
  const auto work = [pairs, distance] {
    double sum = 0.0;
    for (const Pair& pair : pairs) sum += distance(pair);
    return sum;
  };
  jobs.Add(c, candidate, tolerance, work, work, prepare);
  if (c.exact.empty()) return;
  double largestError = 0.0;
  for (std::size_t i = 0; i < pairs.size(); ++i)
    largestError = std::max(largestError, std::fabs(distance(pairs[i]) - c.exact[i]));
  jobs.SetLargestError(c, candidate, largestError);
}

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_CANDIDATES_H_
