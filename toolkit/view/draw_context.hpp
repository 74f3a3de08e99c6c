// What views draw with, into a picture in memory. They count in logical pixels; lines and
// rectangles come out sharp, on whole pixels of the screen; only text has soft edges.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>

#include "toolkit/view/font.hpp"
#include "toolkit/view/scale.hpp"

struct _PangoLayout;  // NOLINT(bugprone-reserved-identifier): Pango's own name

namespace zum {

enum class DrawStyle : std::uint8_t { stroked, filled, filledAndStroked };
enum class TextAlign : std::uint8_t { left, centre, right };

class CDrawContext {
 public:
  /// Draws into `surface`, which outlives it, and nowhere outside of `clip`, which counts in pixels
  /// of the screen.
  CDrawContext(cairo_surface_t* surface, const CRect& clip, const Scale& drawnAt = {});
  ~CDrawContext();
  CDrawContext(const CDrawContext&) = delete;
  CDrawContext& operator=(const CDrawContext&) = delete;

  /// All that has to be drawn so that the clip is.
  const CRect& clip() const { return area; }
  const Scale& scale() const { return screen; }

  void setFillColor(CColor color) { fillColor = color; }
  void setFrameColor(CColor color) { frameColor = color; }
  void setFontColor(CColor color) { fontColor = color; }
  /// Outlives the drawing. Null keeps the face that there is, at first the system's plain one.
  /// `size` in logical pixels; 0 takes the font's own.
  void setFont(const CFontDesc* wanted, int size = 0);

  /// The frame lies inside of the rectangle.
  void drawRect(const CRect& rect, DrawStyle style);
  /// As round as the screen allows, in the fill colour; at factor 1 without its corners.
  void drawDot(const CRect& rect);
  /// In the fill colour, `reach` pixels to each side of the middle one.
  void drawDiamond(CPoint middle, int reach);
  /// With both ends, in the frame's colour.
  void drawLine(CPoint from, CPoint to);
  void moveTo(CPoint point) { pen = point; }
  /// From where the pen is; moves it.
  void lineTo(CPoint point);
  /// Any bytes as one line of UTF-8, in the middle of the rectangle's height. What is too long ends
  /// in an ellipsis; on the right side it begins with one. `opaque` fills the rectangle first.
  void drawString(const std::string& text, const CRect& rect, bool opaque, TextAlign align);
  /// In pixels, rounded up.
  int getStringWidth(const std::string& text);
  /// Where the next letter of a text would stand, in pixels from its left edge: 0 in a text that is
  /// read from the right.
  int getStringEnd(const std::string& text);

  /// In pixels of the screen: as much of a picture whose corner is `at` as lies inside of `part`.
  /// One with a device offset is a part of a larger one.
  /// `alpha` from 0 to 1; null draws nothing.
  void drawPicture(cairo_surface_t* picture, CPoint at, const CRect& part, double alpha);

 private:
  void setSource(CColor color);
  void fill(const CRect& onScreen);
  /// In the current font, without an end to its width; until the next one.
  _PangoLayout* layOut(const std::string& text);

  cairo_t* cairo;
  Scale screen;
  CRect area;
  CColor fillColor = kWhiteColor;
  CColor frameColor = kBlackColor;
  CColor fontColor = kBlackColor;
  CPoint pen;
  const CFontDesc* font = nullptr;
  int fontSize;               // logical pixels
  Held<CFontDesc> plainFont;  // for those who set none
};

}  // namespace zum
