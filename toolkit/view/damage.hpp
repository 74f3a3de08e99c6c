// What a frame has to draw again: a few rectangles that do not touch, so that a knob above and a
// scope below do not cost the whole window.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "toolkit/view/geometry.hpp"

namespace zum {

/// Of a fixed size: a rectangle too many is joined with the one that grows least.
class Damage {
 public:
  static constexpr std::size_t kRects = 16;

  void add(CRect rect) {
    if (rect.isEmpty()) return;
    for (std::size_t i = 0; i < count;) {
      if (!rects[i].intersects(rect)) {
        ++i;
        continue;
      }
      rect = rect.join(rects[i]);
      rects[i] = rects[--count];
      i = 0;  // it grew: those before may touch it now
    }
    if (count == kRects) return add(rect.join(takeNearest(rect)));
    rects[count++] = rect;
  }
  void clear() { count = 0; }
  bool isEmpty() const { return count == 0; }
  std::span<const CRect> parts() const { return {rects.data(), count}; }

 private:
  static long area(const CRect& rect) { return long{rect.width()} * rect.height(); }
  CRect takeNearest(const CRect& rect) {
    std::size_t nearest = 0;
    const auto growth = [&](std::size_t i) { return area(rects[i].join(rect)) - area(rects[i]); };
    for (std::size_t i = 1; i < count; ++i) {
      if (growth(i) < growth(nearest)) nearest = i;
    }
    const CRect taken = rects[nearest];
    rects[nearest] = rects[--count];
    return taken;
  }

  std::array<CRect, kRects> rects{};
  std::size_t count = 0;
};

}  // namespace zum
