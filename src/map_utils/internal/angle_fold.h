#ifndef VOREL_MAP_UTILS_INTERNAL_ANGLE_FOLD_H_
#define VOREL_MAP_UTILS_INTERNAL_ANGLE_FOLD_H_

namespace vorel {
namespace internal {

// Both folds step by whole turns in the value's own type. They end at once for NaN and never for an infinity or
// for a value so large that 360 is lost in rounding (beyond 2^33 in float, beyond 2^62 in double).

/// Folds degrees into (-180, 180].
template <class Float>
Float FoldInto180(Float degrees) {
  while (degrees > Float(180)) degrees -= Float(360);
  while (degrees <= Float(-180)) degrees += Float(360);
  return degrees;
}

/// Folds degrees into [0, 360); a negative value so small that adding a turn rounds to 360 gives 360 itself.
template <class Float>
Float FoldInto360(Float degrees) {
  while (degrees >= Float(360)) degrees -= Float(360);
  while (degrees < Float(0)) degrees += Float(360);
  return degrees;
}

}  // namespace internal
}  // namespace vorel

#endif  // VOREL_MAP_UTILS_INTERNAL_ANGLE_FOLD_H_
