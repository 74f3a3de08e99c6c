// Pixels that a program sets one by one and shows in one go: traces that change with every tick.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "toolkit/view/draw_context.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

/// [main]
class KvRawBlit {
 public:
  /// Sides in pixels of the screen, at least 1 each.
  KvRawBlit(int pixelWidth, int pixelHeight);

  int getWidth() const { return width; }
  int getHeight() const { return height; }
  /// 0xRRGGBB, from the left; `y` inside the height.
  std::uint32_t* row(int y) { return pixels.data() + std::size_t(y) * std::size_t(width); }
  void fill(std::uint32_t pixel);
  /// The part that starts at `offset`, into `rect`, both logical.
  void blit(CDrawContext& context, const CRect& rect, CPoint offset);

  static constexpr std::uint32_t pixelOf(CColor color) {
    return std::uint32_t{color.red} << 16U | std::uint32_t{color.green} << 8U | color.blue;
  }

 private:
  struct Destroy {
    void operator()(cairo_surface_t* drawn) const { cairo_surface_destroy(drawn); }
  };
  int width;
  int height;
  std::vector<std::uint32_t> pixels;
  std::unique_ptr<cairo_surface_t, Destroy> surface;  // over the pixels
};

}  // namespace zum
