#include "resources/flattened.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "resources/palette.hpp"
#include "resources/places.hpp"
#include "resources/strip_drawing.hpp"

namespace zum::pictures {
namespace {

constexpr std::uint32_t kKey = 0xFFFFFFU;  // is not drawn
constexpr std::uint32_t kThinnest = 28;    // coverage below which a pixel is left out, of 255

void paintScene(cairo_t* cr, const Backdrop& backdrop) {
  static std::array<std::unique_ptr<Image>, kScenes> made;
  auto& image = made.at(static_cast<std::size_t>(backdrop.scene));
  if (!image) {
    image = std::make_unique<Image>(kWindow.w, kWindow.h);
    if (backdrop.scene == Scene::strip) {
      drawStripGround(image->context(), 0, 0);
    } else {
      drawScene(image->context(), backdrop.scene, 0, 0);
    }
  }
  cairo_set_source_surface(cr, image->picture(), -backdrop.x, -backdrop.y);
  cairo_paint(cr);
}

// What the arc covers in part is mixed with the groove below it, since the key is all or nothing.
std::uint32_t keyed(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24U;
  if (alpha < kThinnest) return kKey;
  constexpr double kGround[] = {kGroove.r * 255.0, kGroove.g * 255.0, kGroove.b * 255.0};
  std::uint32_t mixed = 0;
  for (unsigned i = 0; i < 3; ++i) {
    const std::uint32_t own = pixel >> (16U - 8U * i) & 0xFFU;
    const auto under = static_cast<std::uint32_t>(kGround[i] * (255 - alpha) / 255.0);
    mixed = mixed << 8U | std::min(own + under, 254U);
  }
  return mixed;
}

void drawKeyed(cairo_t* cr, const PictureRow& row, int frame) {
  const Image lit(row.width, row.frameHeight, true);
  row.draw(lit.context(), row.id, frame);
  const Image out(row.width, row.frameHeight);
  for (int y = 0; y < row.frameHeight; ++y) {
    const std::uint32_t* const from = lit.row(y);
    std::uint32_t* const to = out.row(y);
    for (int x = 0; x < row.width; ++x) to[x] = keyed(from[x]);
  }
  out.touched();
  cairo_set_source_surface(cr, out.picture(), 0.0, 0.0);
  cairo_paint(cr);
}

}  // namespace

Image makePicture(const PictureRow& row) {
  Image image(row.width, row.height);
  cairo_t* const cr = image.context();
  for (int frame = 0; frame < row.frames; ++frame) {
    cairo_save(cr);
    cairo_translate(cr, 0.0, frame * row.frameHeight);
    cairo_rectangle(cr, 0.0, 0.0, row.width, row.frameHeight);
    cairo_clip(cr);
    if (row.backdrop.scene != Scene::none) paintScene(cr, row.backdrop);
    if (row.isKeyed) {
      drawKeyed(cr, row, frame);
    } else {
      row.draw(cr, row.id, frame);
    }
    cairo_restore(cr);
  }
  return image;
}

}  // namespace zum::pictures
