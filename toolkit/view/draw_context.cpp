#include "toolkit/view/draw_context.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "toolkit/view/utf8_text.hpp"

namespace zum {
namespace {

constexpr int kDefaultSize = 12;

}  // namespace

CDrawContext::CDrawContext(cairo_surface_t* surface, const CRect& clip)
    : cairo(cairo_create(surface)), area(clip) {
  cairo_rectangle(cairo, area.left, area.top, area.width(), area.height());
  cairo_clip(cairo);
  cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
  cairo_set_font_size(cairo, kDefaultSize);
}

CDrawContext::~CDrawContext() { cairo_destroy(cairo); }

void CDrawContext::setSource(CColor color) {
  constexpr double kFull = 255.0;
  cairo_set_source_rgba(cairo, color.red / kFull, color.green / kFull, color.blue / kFull,
                        color.alpha / kFull);
}

void CDrawContext::setFont(const CFontDesc* font, int size) {
  if (font != nullptr) {
    cairo_set_font_face(cairo, font->getFace());
    if (size <= 0) size = font->getSize();
  }
  if (size > 0) cairo_set_font_size(cairo, size);
}

void CDrawContext::drawRect(const CRect& rect, DrawStyle style) {
  if (rect.isEmpty()) return;
  if (style != DrawStyle::stroked) {
    setSource(fillColor);
    cairo_rectangle(cairo, rect.left, rect.top, rect.width(), rect.height());
    cairo_fill(cairo);
  }
  if (style == DrawStyle::filled) return;
  const int right = rect.right - 1;
  const int bottom = rect.bottom - 1;
  drawLine({rect.left, rect.top}, {right, rect.top});
  drawLine({rect.left, bottom}, {right, bottom});
  drawLine({rect.left, rect.top}, {rect.left, bottom});
  drawLine({right, rect.top}, {right, bottom});
}

// Pixel by pixel along the longer side: what a stroke covers depends on the library's rounding.
void CDrawContext::drawLine(CPoint from, CPoint to) {
  setSource(frameColor);
  const int dx = to.x - from.x;
  const int dy = to.y - from.y;
  if (dx == 0 || dy == 0) {
    cairo_rectangle(cairo, std::min(from.x, to.x), std::min(from.y, to.y), std::abs(dx) + 1,
                    std::abs(dy) + 1);
  } else {
    const int steps = std::max(std::abs(dx), std::abs(dy));
    for (int i = 0; i <= steps; ++i) {
      const double part = static_cast<double>(i) / steps;
      cairo_rectangle(cairo, std::round(from.x + part * dx), std::round(from.y + part * dy), 1, 1);
    }
  }
  cairo_fill(cairo);
}

void CDrawContext::lineTo(CPoint point) {
  drawLine(pen, point);
  pen = point;
}

void CDrawContext::drawString(const std::string& text, const CRect& rect, bool opaque,
                              TextAlign align) {
  if (opaque) drawRect(rect, DrawStyle::filled);
  cairo_font_extents_t font;
  cairo_font_extents(cairo, &font);
  const int spare = rect.width() - getStringWidth(text);
  const int indent = align == TextAlign::left ? 0 : align == TextAlign::right ? spare : spare / 2;
  const double baseline = rect.top + (rect.height() + font.ascent - font.descent) / 2.0;
  cairo_save(cairo);
  cairo_rectangle(cairo, rect.left, rect.top, rect.width(), rect.height());
  cairo_clip(cairo);
  setSource(fontColor);
  cairo_move_to(cairo, rect.left + indent, std::round(baseline));
  cairo_show_text(cairo, drawableText(text).c_str());
  cairo_restore(cairo);
}

void CDrawContext::drawPicture(cairo_surface_t* picture, CPoint pictureSize, const CRect& rect,
                               CPoint offset, double alpha) {
  const CRect whole =
      CRect{0, 0, pictureSize.x, pictureSize.y}.movedBy(rect.left - offset.x, rect.top - offset.y);
  const CRect part = rect.meet(whole);
  if (part.isEmpty()) return;
  cairo_save(cairo);
  cairo_rectangle(cairo, part.left, part.top, part.width(), part.height());
  cairo_clip(cairo);
  cairo_set_source_surface(cairo, picture, whole.left, whole.top);
  cairo_paint_with_alpha(cairo, alpha);
  cairo_restore(cairo);
}

int CDrawContext::getStringWidth(const std::string& text) const {
  cairo_text_extents_t extents;
  cairo_text_extents(cairo, drawableText(text).c_str(), &extents);
  return static_cast<int>(std::ceil(extents.x_advance));
}

}  // namespace zum
