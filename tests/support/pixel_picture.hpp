// Pictures that a test makes of pixels.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "toolkit/view/bitmap.hpp"

namespace zum::test {

/// One frame of 0xFFRRGGBB, row by row from the top; finer screens show squares.
class PixelPicture final : public PictureFrames {
 public:
  PixelPicture(int width, int height, std::vector<std::uint32_t> rows)
      : columns(width), words(std::move(rows)), all{width, height, 1, height} {}

  PictureShape shape() const override { return all; }
  void copy(int /*frame*/, std::uint32_t* rows, std::size_t stride) const override {
    for (int y = 0; y < all.height; ++y) {
      std::copy_n(words.begin() + std::ptrdiff_t{y} * columns, columns,
                  rows + static_cast<std::size_t>(y) * stride);
    }
  }
  void draw(cairo_t* cr, int /*frame*/) const override {
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    for (int i = 0; i < columns * all.height; ++i) {
      const std::uint32_t word = words[static_cast<std::size_t>(i)];
      cairo_set_source_rgb(cr, (word >> 16U & 0xFFU) / 255.0, (word >> 8U & 0xFFU) / 255.0,
                           (word & 0xFFU) / 255.0);
      const int row = i / columns;
      cairo_rectangle(cr, i % columns, row, 1.0, 1.0);
      cairo_fill(cr);
    }
  }

 private:
  int columns;
  std::vector<std::uint32_t> words;
  PictureShape all;
};

inline Held<CBitmap> pixelPicture(int width, int height, std::vector<std::uint32_t> words) {
  return Held<CBitmap>(
      new CBitmap(std::make_unique<PixelPicture>(width, height, std::move(words))));
}

}  // namespace zum::test
