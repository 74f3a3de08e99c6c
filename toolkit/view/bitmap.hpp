// A picture that views draw parts of: backgrounds, buttons, film strips.
#pragma once

#include <cairo.h>

#include <memory>

#include "toolkit/view/base_object.hpp"
#include "toolkit/view/bitmap_file.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

class CDrawContext;

class CBitmap final : public CBaseObject {
 public:
  /// A picture without pixels draws nothing.
  explicit CBitmap(const Pixels& pixels);

  int getWidth() const { return width; }
  int getHeight() const { return height; }

  /// Every pixel of this colour is left out by drawTransparent and drawAlphaBlend from now on; the
  /// colour's alpha does not count.
  void setTransparentColor(CColor key);

  // Each draws the part of the picture that starts at `offset` into `rect`, without scaling; what
  // the picture does not have stays as it is.
  void draw(CDrawContext& context, const CRect& rect, CPoint offset) const;
  void drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset) const;
  /// `alpha` from 0, nothing, to 255.
  void drawAlphaBlend(CDrawContext& context, const CRect& rect, CPoint offset, int alpha) const;

 private:
  struct Destroy {
    void operator()(cairo_surface_t* surface) const;
  };
  using Surface = std::unique_ptr<cairo_surface_t, Destroy>;

  ~CBitmap() override = default;
  /// Without the key colour, where there is one.
  cairo_surface_t* cutOut() const { return keyed ? keyed.get() : opaque.get(); }

  int width;
  int height;
  Surface opaque;
  Surface keyed;  // null without a key colour
};

}  // namespace zum
