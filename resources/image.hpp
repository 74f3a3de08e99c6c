// A cairo picture that is drawn into and then read pixel by pixel.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>

namespace zum::pictures {

class Image {
 public:
  /// `hasAlpha`: starts transparent, else black.
  Image(int width, int height, bool hasAlpha = false);

  int width() const { return cairo_image_surface_get_width(surface.get()); }
  int height() const { return cairo_image_surface_get_height(surface.get()); }
  cairo_t* context() const { return drawing.get(); }
  cairo_surface_t* picture() const { return surface.get(); }

  /// Width words of 0xAARRGGBB, colours multiplied by alpha. What was drawn before is in them; call
  /// `touched` after a change.
  std::uint32_t* row(int y) const;
  void touched() const { cairo_surface_mark_dirty(surface.get()); }
  void writePng(const std::string& path) const;

 private:
  struct Release {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
    void operator()(cairo_t* c) const { cairo_destroy(c); }
  };
  std::unique_ptr<cairo_surface_t, Release> surface;
  std::unique_ptr<cairo_t, Release> drawing;
};

}  // namespace zum::pictures
