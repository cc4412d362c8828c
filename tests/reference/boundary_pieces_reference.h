#ifndef VOREL_TESTS_REFERENCE_BOUNDARY_PIECES_REFERENCE_H_
#define VOREL_TESTS_REFERENCE_BOUNDARY_PIECES_REFERENCE_H_

#include "base/boundary_data.h"

// Plain, slow twin of the cutting of boundary data: the same result to the last bit.
namespace reference {

/// Appends to `piece` the `length` metres of `source` that start at `startRatio` of segment `startIndex` (not
/// negative), with their marked vertices; returns the fraction of `length` covered. `indexCursor` must be at
/// least -1.
float HandleBoundaryDataByDistance(const tarvo::HAD::BoundaryData& source, int& indexCursor, int startIndex,
                                   double startRatio, double length, tarvo::HAD::BoundaryData& piece);

}  // namespace reference

#endif  // VOREL_TESTS_REFERENCE_BOUNDARY_PIECES_REFERENCE_H_
