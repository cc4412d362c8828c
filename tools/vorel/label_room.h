#ifndef VOREL_TOOLS_VOREL_LABEL_ROOM_H_
#define VOREL_TOOLS_VOREL_LABEL_ROOM_H_

#include <string>
#include <utility>
#include <vector>

#include "tools/vorel/map_projection.h"

namespace vorel::tool {

/// Finds room on a picture for labels beside lines, dots and each other.
class LabelRoom {
 public:
  /// What labels should not hide: a stroke between two places, or a dot where both are one.
  void AddStroke(const Pixel& from, const Pixel& to) { strokes_.emplace_back(from, to); }

  /// Which of some directions hides least; of equals the first. The label's room is then taken.
  /// @param at          the place that the label names
  /// @param directions  from there to the label, in pixels; their length counts; one or more
  Pixel Place(const Pixel& at, const std::vector<Pixel>& directions, const std::string& text);

 private:
  /// In pixels of the picture.
  struct Box {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
  };

  static bool Meet(const Box& a, const Box& b);
  static bool Meet(const Pixel& from, const Pixel& to, const Box& box);
  static Box BoxOf(const Pixel& at, const Pixel& towards, const std::string& text);

  std::vector<std::pair<Pixel, Pixel>> strokes_;
  std::vector<Box> labels_;
};

/// `first` and the seven directions at multiples of 45 degrees from it.
std::vector<Pixel> DirectionsFrom(const Pixel& first);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_LABEL_ROOM_H_
