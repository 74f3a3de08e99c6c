// A face and a size, as views name them.
#pragma once

#include <cairo.h>

#include <string>
#include <utility>

#include "toolkit/view/base_object.hpp"

namespace zum {

class CFontDesc final : public CBaseObject {
 public:
  /// `face` is looked up among the system's fonts, and a near one taken where there is none of that
  /// name. `size` in pixels, of an em.
  CFontDesc(std::string face, int size)
      : faceName(std::move(face)),
        pixels(size),
        fontFace(cairo_toy_font_face_create(faceName.c_str(), CAIRO_FONT_SLANT_NORMAL,
                                            CAIRO_FONT_WEIGHT_NORMAL)) {}

  const std::string& getName() const { return faceName; }
  int getSize() const { return pixels; }
  /// Made once: looking a face up costs more than drawing a word with it.
  cairo_font_face_t* getFace() const { return fontFace; }

 private:
  ~CFontDesc() override { cairo_font_face_destroy(fontFace); }

  std::string faceName;
  int pixels;
  cairo_font_face_t* fontFace;
};

}  // namespace zum
