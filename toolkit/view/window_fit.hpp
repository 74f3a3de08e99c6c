// Which of its sizes a window takes in the room that it is given.
#pragma once

#include <algorithm>
#include <cmath>

#include "toolkit/view/scale.hpp"

namespace zum {

/// The largest scale at which a window of `plain` size, in logical pixels, fits into `room`, in
/// those of the screen; the smallest where none does. Of the scales that make its width whole
/// pixels: so a size that came of this gives the same one again.
inline Scale scaleInside(CPoint plain, CPoint room) {
  constexpr int kMost = 1 << 15;  // more than any screen has
  room = {std::min(room.x, kMost), std::min(room.y, kMost)};
  const auto scaleOf = [plain](int width) { return static_cast<double>(width) / plain.x; };
  const auto byHeight = static_cast<int>(std::floor((room.y + 0.5) / plain.y * plain.x));
  int width = std::min(room.x, byHeight);
  while (width > plain.x && Scale(scaleOf(width)).rounded(plain.y) > room.y) --width;
  return Scale(scaleOf(width));
}

/// The nearest of these.
inline Scale wholeScale(CPoint plain, double factor) {
  return Scale(std::round(Scale(factor).factor() * plain.x) / plain.x);
}

}  // namespace zum
