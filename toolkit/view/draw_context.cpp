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

int logicalWidth(int onScreen, const Scale& scale) {
  return scale.logical({0, 0, onScreen, 0}).right;
}

}  // namespace

CDrawContext::CDrawContext(cairo_surface_t* surface, const CRect& clip, const Scale& drawnAt)
    : cairo(cairo_create(surface)),
      screen(drawnAt),
      area(screen.logical(clip)),
      fontSize(kDefaultSize) {
  cairo_rectangle(cairo, clip.left, clip.top, clip.width(), clip.height());
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

void CDrawContext::fill(const CRect& onScreen) {
  cairo_rectangle(cairo, onScreen.left, onScreen.top, onScreen.width(), onScreen.height());
}

void CDrawContext::drawRect(const CRect& rect, DrawStyle style) {
  if (rect.isEmpty()) return;
  const CRect all = screen.rounded(rect);
  if (style != DrawStyle::stroked) {
    setSource(fillColor);
    fill(all);
    cairo_fill(cairo);
  }
  if (style == DrawStyle::filled) return;
  const int line = std::min({screen.lineWidth(), all.width(), all.height()});
  setSource(frameColor);
  fill({all.left, all.top, all.right, all.top + line});
  fill({all.left, all.bottom - line, all.right, all.bottom});
  fill({all.left, all.top, all.left + line, all.bottom});
  fill({all.right - line, all.top, all.right, all.bottom});
  cairo_fill(cairo);
}

void CDrawContext::drawDot(const CRect& rect) {
  const CRect all = screen.rounded(rect);
  setSource(fillColor);
  if (screen.isPlain()) {
    fill({all.left + 1, all.top, all.right - 1, all.bottom});
    fill({all.left, all.top + 1, all.right, all.bottom - 1});
  } else {
    constexpr double kTurn = 6.283185307179586;
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_GRAY);
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, (all.left + all.right) / 2.0, (all.top + all.bottom) / 2.0,
              std::min(all.width(), all.height()) / 2.0, 0.0, kTurn);
  }
  cairo_fill(cairo);
  cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
}

void CDrawContext::drawDiamond(CPoint middle, int reach) {
  setSource(fillColor);
  if (screen.isPlain()) {
    for (int i = -reach; i <= reach; ++i) {
      const int up = reach - std::abs(i);
      fill({middle.x + i, middle.y - up, middle.x + i + 1, middle.y + up + 1});
    }
  } else {
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_GRAY);
    const double x = (middle.x + 0.5) * screen.factor();
    const double y = (middle.y + 0.5) * screen.factor();
    const double half = (reach + 0.5) * screen.factor();
    cairo_move_to(cairo, x - half, y);
    cairo_line_to(cairo, x, y - half);
    cairo_line_to(cairo, x + half, y);
    cairo_line_to(cairo, x, y + half);
    cairo_close_path(cairo);
  }
  cairo_fill(cairo);
  cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
}

// Pixel by pixel along the longer side: what a stroke covers depends on the library's rounding.
void CDrawContext::drawLine(CPoint from, CPoint to) {
  setSource(frameColor);
  const int line = screen.lineWidth();
  const CPoint begin{screen.lineStart(from.x), screen.lineStart(from.y)};
  const CPoint end{screen.lineStart(to.x), screen.lineStart(to.y)};
  const int dx = end.x - begin.x;
  const int dy = end.y - begin.y;
  if (dx == 0 || dy == 0) {
    fill({std::min(begin.x, end.x), std::min(begin.y, end.y), std::max(begin.x, end.x) + line,
          std::max(begin.y, end.y) + line});
  } else {
    const int steps = std::max(std::abs(dx), std::abs(dy));
    for (int i = 0; i <= steps; ++i) {
      const double part = static_cast<double>(i) / steps;
      cairo_rectangle(cairo, std::round(begin.x + part * dx), std::round(begin.y + part * dy), line,
                      line);
    }
  }
  cairo_fill(cairo);
}

void CDrawContext::lineTo(CPoint point) {
  drawLine(pen, point);
  pen = point;
}

// Laid out in pixels of the screen: letters keep to those, as their outlines do.
PangoLayout* CDrawContext::layOut(const std::string& text) {
  if (font == nullptr) {
    plainFont = Held(new CFontDesc("sans-serif", fontSize));
    font = plainFont.get();
  }
  PangoLayout* const layout = font->layoutAt(fontSize * screen.factor());
  pango_cairo_update_layout(cairo, layout);
  pango_layout_set_width(layout, -1);
  setLayoutText(layout, text);
  return layout;
}

void CDrawContext::drawString(const std::string& text, const CRect& rect, bool opaque,
                              TextAlign align) {
  if (opaque) drawRect(rect, DrawStyle::filled);
  if (rect.isEmpty()) return;
  const CRect room = screen.rounded(rect);
  PangoLayout* const layout = layOut(text);
  if (widthOf(pango_layout_get_line_readonly(layout, 0)) > room.width()) {
    pango_layout_set_ellipsize(
        layout, align == TextAlign::right ? PANGO_ELLIPSIZE_START : PANGO_ELLIPSIZE_END);
    pango_layout_set_width(layout, room.width() * PANGO_SCALE);
  }
  PangoLayoutLine* const line = pango_layout_get_line_readonly(layout, 0);
  const int spare = room.width() - widthOf(line);
  const int indent = align == TextAlign::left ? 0 : align == TextAlign::right ? spare : spare / 2;
  const double middle = room.top + room.height() / 2.0;
  cairo_save(cairo);
  fill(room);
  cairo_clip(cairo);
  setSource(fontColor);
  cairo_move_to(cairo, room.left + indent, std::round(middle + font->baselineBelowMiddle()));
  pango_cairo_show_layout_line(cairo, line);
  cairo_restore(cairo);
}

int CDrawContext::getStringWidth(const std::string& text) {
  return logicalWidth(widthOf(pango_layout_get_line_readonly(layOut(text), 0)), screen);
}

int CDrawContext::getStringEnd(const std::string& text) {
  PangoLayout* const layout = layOut(text);
  const auto bytes = static_cast<int>(std::strlen(pango_layout_get_text(layout)));
  PangoRectangle cursor;
  pango_layout_get_cursor_pos(layout, bytes, &cursor, nullptr);
  return logicalWidth(PANGO_PIXELS(cursor.x), screen);
}

void CDrawContext::drawPicture(cairo_surface_t* picture, CPoint at, const CRect& part,
                               double alpha) {
  if (picture == nullptr) return;
  double left = 0.0;
  double top = 0.0;
  cairo_surface_get_device_offset(picture, &left, &top);
  const CRect held{0, 0, cairo_image_surface_get_width(picture),
                   cairo_image_surface_get_height(picture)};
  const CRect shown =
      part.meet(held.movedBy(at.x - static_cast<int>(left), at.y - static_cast<int>(top)));
  if (shown.isEmpty()) return;
  cairo_save(cairo);
  fill(shown);
  cairo_clip(cairo);
  cairo_set_source_surface(cairo, picture, at.x, at.y);
  cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_paint_with_alpha(cairo, alpha);
  cairo_restore(cairo);
}

}  // namespace zum
