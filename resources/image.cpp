#include "resources/image.hpp"

#include <cstddef>
#include <stdexcept>

namespace zum::pictures {

Image::Image(int width, int height, bool hasAlpha)
    : surface(cairo_image_surface_create(hasAlpha ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, width,
                                         height)),
      drawing(cairo_create(surface.get())) {
  if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error("no memory for a picture");
  }
  cairo_set_antialias(drawing.get(), CAIRO_ANTIALIAS_GRAY);
}

std::uint32_t* Image::row(int y) const {
  cairo_surface_flush(surface.get());
  unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  // cairo keeps its rows aligned to words
  return reinterpret_cast<std::uint32_t*>(pixels + static_cast<std::size_t>(y) * stride);
}

void Image::writePng(const std::string& path) const {
  if (cairo_surface_write_to_png(surface.get(), path.c_str()) != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace zum::pictures
