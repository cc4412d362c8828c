#ifndef VOREL_BASE_MAP_VECTOR_H_
#define VOREL_BASE_MAP_VECTOR_H_

namespace tarvo {

/// Plain vector of two doubles.
struct MapVector2d {
  double x = 0.0;
  double y = 0.0;
};

/// Plain vector of three doubles.
struct MapVector3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

}  // namespace tarvo

#endif  // VOREL_BASE_MAP_VECTOR_H_
