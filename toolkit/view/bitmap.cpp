#include "toolkit/view/bitmap.hpp"

#include <algorithm>
#include <cstring>

#include "toolkit/view/draw_context.hpp"

namespace zum {
namespace {

constexpr std::uint32_t kRgb = 0x00FFFFFFU;

std::uint32_t* rowOf(cairo_surface_t* surface, int row) {
  unsigned char* data = cairo_image_surface_get_data(surface);
  return reinterpret_cast<std::uint32_t*>(
      data + static_cast<std::ptrdiff_t>(cairo_image_surface_get_stride(surface)) * row);
}

}  // namespace

void CBitmap::Destroy::operator()(cairo_surface_t* surface) const {
  cairo_surface_destroy(surface);
}

CBitmap::CBitmap(const Pixels& pixels)
    : width(pixels.width),
      height(pixels.height),
      opaque(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)) {
  if (cairo_surface_status(opaque.get()) != CAIRO_STATUS_SUCCESS) {
    width = height = 0;
    return;
  }
  cairo_surface_flush(opaque.get());
  const auto columns = static_cast<std::size_t>(width);
  for (int row = 0; row < height; ++row) {
    std::copy_n(pixels.words.data() + static_cast<std::size_t>(row) * columns, columns,
                rowOf(opaque.get(), row));
  }
  cairo_surface_mark_dirty(opaque.get());
}

void CBitmap::setTransparentColor(CColor key) {
  if (width == 0) return;
  const std::uint32_t left = static_cast<std::uint32_t>(key.red) << 16U |
                             static_cast<std::uint32_t>(key.green) << 8U | key.blue;
  keyed.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  if (cairo_surface_status(keyed.get()) != CAIRO_STATUS_SUCCESS) return keyed.reset();
  cairo_surface_flush(keyed.get());
  for (int row = 0; row < height; ++row) {
    const std::uint32_t* from = rowOf(opaque.get(), row);
    std::transform(from, from + width, rowOf(keyed.get(), row), [left](std::uint32_t pixel) {
      return (pixel & kRgb) == left ? 0U : pixel | ~kRgb;
    });
  }
  cairo_surface_mark_dirty(keyed.get());
}

void CBitmap::draw(CDrawContext& context, const CRect& rect, CPoint offset) const {
  context.drawPicture(opaque.get(), {width, height}, rect, offset, 1.0);
}

void CBitmap::drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset) const {
  context.drawPicture(cutOut(), {width, height}, rect, offset, 1.0);
}

void CBitmap::drawAlphaBlend(CDrawContext& context, const CRect& rect, CPoint offset,
                             int alpha) const {
  context.drawPicture(cutOut(), {width, height}, rect, offset, std::clamp(alpha, 0, 255) / 255.0);
}

}  // namespace zum
