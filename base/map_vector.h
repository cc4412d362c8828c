#ifndef VOREL_BASE_MAP_VECTOR_H_
#define VOREL_BASE_MAP_VECTOR_H_

namespace tarvo {

/// Plain vector of two doubles.
struct MapVector2d {
  double x = 0.0;  ///< first component; of a position the longitude, degrees
  double y = 0.0;  ///< second component; of a position the latitude, degrees
};

/// Plain vector of three doubles.
struct MapVector3d {
  double x = 0.0;  ///< first component; of a position the longitude, degrees
  double y = 0.0;  ///< second component; of a position the latitude, degrees
  double z = 0.0;  ///< third component; of a position the height, metres
};

}  // namespace tarvo

#endif  // VOREL_BASE_MAP_VECTOR_H_
