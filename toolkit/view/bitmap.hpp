// A picture that views draw parts of: backgrounds, buttons, film strips.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "toolkit/view/base_object.hpp"
#include "toolkit/view/frame_cache.hpp"
#include "toolkit/view/geometry.hpp"
#include "toolkit/view/picture_frames.hpp"

namespace zum {

class CDrawContext;
class Scale;

/// [main] At factor 1 its pixels are those that were made for it, at any other it is drawn anew;
/// either when a frame is first shown.
class CBitmap final : public CBaseObject {
 public:
  /// A picture without pixels draws nothing.
  explicit CBitmap(std::unique_ptr<const PictureFrames> shown);

  int getWidth() const { return shape.width; }
  int getHeight() const { return shape.height; }

  /// Every pixel of this colour is left out by drawTransparent and drawAlphaBlend from now on; the
  /// colour's alpha does not count. Drawn anew a picture has alpha of its own, and no key.
  void setTransparentColor(CColor keyColor);

  // Each draws the part of the picture that starts at `offset` into `rect`, without scaling; what
  // the picture does not have stays as it is.
  void draw(CDrawContext& context, const CRect& rect, CPoint offset) const;
  void drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset) const;
  /// `alpha` from 0, nothing, to 255.
  void drawAlphaBlend(CDrawContext& context, const CRect& rect, CPoint offset, int alpha) const;

 private:
  ~CBitmap() override;
  void paint(CDrawContext& context, const CRect& rect, CPoint offset, double alpha,
             bool isCut) const;
  /// Of a frame at a place of the window; null without memory.
  cairo_surface_t* surfaceOf(int frame, const CRect& place, const Scale& scale, bool isCut) const;
  Surface copied(int frame, CPoint size, bool isCut) const;
  Surface drawn(int frame, CPoint size, CPoint phase, double factor) const;

  const std::unique_ptr<const PictureFrames> frames;
  PictureShape shape;
  std::optional<std::uint32_t> key;  // 0xRRGGBB
};

}  // namespace zum
