#include "toolkit/view/draw_context.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace zum {
namespace {

constexpr int kDefaultSize = 12;

int widthOf(PangoLayoutLine* line) {
  PangoRectangle logical;
  pango_layout_line_get_extents(line, nullptr, &logical);
  return PANGO_PIXELS_CEIL(logical.width);
}

}  // namespace

CDrawContext::CDrawContext(cairo_surface_t* surface, const CRect& clip)
    : cairo(cairo_create(surface)), area(clip), fontSize(kDefaultSize) {
  cairo_rectangle(cairo, area.left, area.top, area.width(), area.height());
  cairo_clip(cairo);
  cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
}

CDrawContext::~CDrawContext() { cairo_destroy(cairo); }

void CDrawContext::setSource(CColor color) {
  constexpr double kFull = 255.0;
  cairo_set_source_rgba(cairo, color.red / kFull, color.green / kFull, color.blue / kFull,
                        color.alpha / kFull);
}

void CDrawContext::setFont(const CFontDesc* wanted, int size) {
  if (wanted != nullptr) {
    font = wanted;
    if (size <= 0) size = font->getSize();
  }
  if (size > 0) fontSize = size;
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

PangoLayout* CDrawContext::layOut(const std::string& text) {
  if (font == nullptr) {
    plainFont = Held(new CFontDesc("sans-serif", fontSize));
    font = plainFont.get();
  }
  PangoLayout* const layout = font->layoutAt(fontSize);
  pango_cairo_update_layout(cairo, layout);
  pango_layout_set_width(layout, -1);
  setLayoutText(layout, text);
  return layout;
}

void CDrawContext::drawString(const std::string& text, const CRect& rect, bool opaque,
                              TextAlign align) {
  if (opaque) drawRect(rect, DrawStyle::filled);
  if (rect.isEmpty()) return;
  PangoLayout* const layout = layOut(text);
  if (widthOf(pango_layout_get_line_readonly(layout, 0)) > rect.width()) {
    pango_layout_set_ellipsize(
        layout, align == TextAlign::right ? PANGO_ELLIPSIZE_START : PANGO_ELLIPSIZE_END);
    pango_layout_set_width(layout, rect.width() * PANGO_SCALE);
  }
  PangoLayoutLine* const line = pango_layout_get_line_readonly(layout, 0);
  const int spare = rect.width() - widthOf(line);
  const int indent = align == TextAlign::left ? 0 : align == TextAlign::right ? spare : spare / 2;
  const double middle = rect.top + rect.height() / 2.0;
  cairo_save(cairo);
  cairo_rectangle(cairo, rect.left, rect.top, rect.width(), rect.height());
  cairo_clip(cairo);
  setSource(fontColor);
  cairo_move_to(cairo, rect.left + indent, std::round(middle + font->baselineBelowMiddle()));
  pango_cairo_show_layout_line(cairo, line);
  cairo_restore(cairo);
}

int CDrawContext::getStringWidth(const std::string& text) {
  return widthOf(pango_layout_get_line_readonly(layOut(text), 0));
}

int CDrawContext::getStringEnd(const std::string& text) {
  PangoLayout* const layout = layOut(text);
  const auto bytes = static_cast<int>(std::strlen(pango_layout_get_text(layout)));
  PangoRectangle cursor;
  pango_layout_get_cursor_pos(layout, bytes, &cursor, nullptr);
  return PANGO_PIXELS(cursor.x);
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

}  // namespace zum
