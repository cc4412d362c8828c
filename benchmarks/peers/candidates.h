#ifndef VOREL_BENCHMARKS_PEERS_CANDIDATES_H_
#define VOREL_BENCHMARKS_PEERS_CANDIDATES_H_

// Each candidate has a source file of its own, so that no peer's headers meet another's.

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

}  // namespace peers

#endif  // VOREL_BENCHMARKS_PEERS_CANDIDATES_H_
