#include "toolkit/raw_blit.hpp"

#include <algorithm>

namespace zum {

// The stride is 4 * width: cairo asks for no padding behind rows of 32-bit pixels.
KvRawBlit::KvRawBlit(int pixelWidth, int pixelHeight)
    : width(std::max(pixelWidth, 1)),
      height(std::max(pixelHeight, 1)),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
      surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                                  CAIRO_FORMAT_RGB24, width, height, 4 * width)) {}

void KvRawBlit::fill(std::uint32_t pixel) { std::fill(pixels.begin(), pixels.end(), pixel); }

void KvRawBlit::blit(CDrawContext& context, const CRect& rect, CPoint offset) {
  cairo_surface_mark_dirty(surface.get());
  const Scale& scale = context.scale();
  const CPoint corner = scale.rounded(CPoint{rect.left - offset.x, rect.top - offset.y});
  const CRect all = CRect{0, 0, width, height}.movedBy(corner.x, corner.y);
  context.drawPicture(surface.get(), corner, all.meet(scale.rounded(rect)), 1.0);
}

}  // namespace zum
