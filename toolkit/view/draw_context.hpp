// What views draw with, into a picture in memory. Lines and rectangles are sharp: one pixel wide,
// on whole pixels; only text has soft edges.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>

#include "toolkit/view/font.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum {

enum class DrawStyle : std::uint8_t { stroked, filled, filledAndStroked };
enum class TextAlign : std::uint8_t { left, centre, right };

class CDrawContext {
 public:
  /// Draws into `surface`, which outlives it, and nowhere outside of `clip`.
  CDrawContext(cairo_surface_t* surface, const CRect& clip);
  ~CDrawContext();
  CDrawContext(const CDrawContext&) = delete;
  CDrawContext& operator=(const CDrawContext&) = delete;

  const CRect& clip() const { return area; }

  void setFillColor(CColor color) { fillColor = color; }
  void setFrameColor(CColor color) { frameColor = color; }
  void setFontColor(CColor color) { fontColor = color; }
  /// Null keeps the face that there is, at first the system's plain one. `size` in pixels; 0 takes
  /// the font's own.
  void setFont(const CFontDesc* font, int size = 0);

  /// The frame lies inside of the rectangle.
  void drawRect(const CRect& rect, DrawStyle style);
  /// With both ends, in the frame's colour.
  void drawLine(CPoint from, CPoint to);
  void moveTo(CPoint point) { pen = point; }
  /// From where the pen is; moves it.
  void lineTo(CPoint point);
  /// One line in the middle of the rectangle's height and cut at its edges. `opaque` fills
  /// the rectangle first.
  void drawString(const std::string& text, const CRect& rect, bool opaque, TextAlign align);
  /// In pixels, rounded up.
  int getStringWidth(const std::string& text) const;

  /// The part of a picture that starts at `offset`, into `rect`, without scaling; what the picture
  /// does not have stays as it is. `alpha` from 0 to 1.
  void drawPicture(cairo_surface_t* picture, CPoint pictureSize, const CRect& rect, CPoint offset,
                   double alpha);

 private:
  void setSource(CColor color);

  cairo_t* cairo;
  CRect area;
  CColor fillColor = kWhiteColor;
  CColor frameColor = kBlackColor;
  CColor fontColor = kBlackColor;
  CPoint pen;
};

}  // namespace zum
