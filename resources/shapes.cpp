#include "resources/shapes.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zum::pictures {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kSweep = 1.5 * kPi;  // of a knob
constexpr double kStart = 0.75 * kPi;

void roundPath(cairo_t* cr, double x, double y, double w, double h, double radius) {
  radius = std::max(std::min({radius, w / 2.0, h / 2.0}), 0.0);
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + w - radius, y + radius, radius, -kPi / 2.0, 0.0);
  cairo_arc(cr, x + w - radius, y + h - radius, radius, 0.0, kPi / 2.0);
  cairo_arc(cr, x + radius, y + h - radius, radius, kPi / 2.0, kPi);
  cairo_arc(cr, x + radius, y + radius, radius, kPi, 1.5 * kPi);
  cairo_close_path(cr);
}

struct Edges {
  double x, y, w, h;
};

Edges edgesOf(cairo_t* cr, const Rect& rect) {
  const auto at = [cr](int x, int y) {
    return onScreen(cr, {static_cast<double>(x), static_cast<double>(y)});
  };
  const Point first = at(rect.x, rect.y);
  const Point last = at(rect.x + rect.w, rect.y + rect.h);
  return {first.x, first.y, last.x - first.x, last.y - first.y};
}

void addStop(cairo_pattern_t* pattern, double at, const Color& c) {
  cairo_pattern_add_color_stop_rgba(pattern, at, c.r, c.g, c.b, c.a);
}

void setGradient(cairo_t* cr, double y0, double y1, const Color& top, const Color& bottom) {
  cairo_pattern_t* const pattern = cairo_pattern_create_linear(0.0, y0, 0.0, y1);
  addStop(pattern, 0.0, top);
  addStop(pattern, 1.0, bottom);
  cairo_set_source(cr, pattern);
  cairo_pattern_destroy(pattern);
}

void setRadial(cairo_t* cr, double x, double y, double radius, double spotX, double spotY,
               const Color& inner, const Color& outer) {
  cairo_pattern_t* const pattern = cairo_pattern_create_radial(spotX, spotY, 0.0, x, y, radius);
  addStop(pattern, 0.0, inner);
  addStop(pattern, 1.0, outer);
  cairo_set_source(cr, pattern);
  cairo_pattern_destroy(pattern);
}

}  // namespace

void setColor(cairo_t* cr, const Color& c) { cairo_set_source_rgba(cr, c.r, c.g, c.b, c.a); }

double factorOf(cairo_t* cr) {
  double x = 1.0;
  double y = 0.0;
  cairo_user_to_device_distance(cr, &x, &y);
  return x;
}

Point onScreen(cairo_t* cr, Point point) {
  constexpr double kHalf = 0.5 + 1e-6;  // as the window's views round
  cairo_user_to_device(cr, &point.x, &point.y);
  point = {std::floor(point.x + kHalf), std::floor(point.y + kHalf)};
  cairo_device_to_user(cr, &point.x, &point.y);
  return point;
}

void fill(cairo_t* cr, const Rect& rect, const Color& color) {
  const auto [x, y, w, h] = edgesOf(cr, rect);
  setColor(cr, color);
  cairo_rectangle(cr, x, y, w, h);
  cairo_fill(cr);
}

void fillRound(cairo_t* cr, const Rect& rect, double radius, const Color& color) {
  fillRound(cr, rect, radius, color, color);
}

void fillRound(cairo_t* cr, const Rect& rect, double radius, const Color& top,
               const Color& bottom) {
  const auto [x, y, w, h] = edgesOf(cr, rect);
  setGradient(cr, y, y + h, top, bottom);
  roundPath(cr, x, y, w, h, radius);
  cairo_fill(cr);
}

void outlineRound(cairo_t* cr, const Rect& rect, double radius, const Color& top,
                  const Color& bottom) {
  const auto [x, y, w, h] = edgesOf(cr, rect);
  const double factor = factorOf(cr);
  const double line = std::round(factor) / factor;
  const double half = line / 2.0;
  setGradient(cr, y, y + h, top, bottom);
  cairo_set_line_width(cr, line);
  roundPath(cr, x + half, y + half, w - line, h - line, radius - half);
  cairo_stroke(cr);
}

void outlineRound(cairo_t* cr, const Rect& rect, double radius, const Color& color) {
  outlineRound(cr, rect, radius, color, color);
}

void horizontal(cairo_t* cr, int x, int y, int length, const Color& color) {
  fill(cr, {x, y, length, 1}, color);
}

void vertical(cairo_t* cr, int x, int y, int length, const Color& color) {
  fill(cr, {x, y, 1, length}, color);
}

void line(cairo_t* cr, double x0, double y0, double x1, double y1, double width,
          const Color& color) {
  const Point points[] = {{x0, y0}, {x1, y1}};
  polyline(cr, points, width, color);
}

void polyline(cairo_t* cr, std::span<const Point> corners, double width, const Color& color) {
  setColor(cr, color);
  cairo_set_line_width(cr, width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  for (const Point& corner : corners) cairo_line_to(cr, corner.x, corner.y);
  cairo_stroke(cr);
}

void curveThrough(cairo_t* cr, std::span<const Point> corners, double width, const Color& color) {
  setColor(cr, color);
  cairo_set_line_width(cr, width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  const std::size_t last = corners.size() - 1;
  cairo_move_to(cr, corners[0].x, corners[0].y);
  for (std::size_t i = 0; i < last; ++i) {
    // each piece leaves along the line between its neighbours
    const Point& before = corners[i > 0 ? i - 1 : 0];
    const Point& from = corners[i];
    const Point& to = corners[i + 1];
    const Point& after = corners[std::min(i + 2, last)];
    cairo_curve_to(cr, from.x + (to.x - before.x) / 6.0, from.y + (to.y - before.y) / 6.0,
                   to.x - (after.x - from.x) / 6.0, to.y - (after.y - from.y) / 6.0, to.x, to.y);
  }
  cairo_stroke(cr);
}

void disc(cairo_t* cr, double x, double y, double radius, const Color& color) {
  setColor(cr, color);
  cairo_arc(cr, x, y, radius, 0.0, 2.0 * kPi);
  cairo_fill(cr);
}

void setBall(cairo_t* cr, double x, double y, double radius, const Color& bright,
             const Color& edge) {
  setRadial(cr, x, y, radius * 1.05, x - radius * 0.35, y - radius * 0.45, bright, edge);
}

void ball(cairo_t* cr, double x, double y, double radius, const Color& bright, const Color& edge) {
  setBall(cr, x, y, radius, bright, edge);
  cairo_arc(cr, x, y, radius, 0.0, 2.0 * kPi);
  cairo_fill(cr);
}

void circle(cairo_t* cr, double x, double y, double radius, double width, const Color& color) {
  setColor(cr, color);
  cairo_set_line_width(cr, width);
  cairo_new_sub_path(cr);
  cairo_arc(cr, x, y, radius, 0.0, 2.0 * kPi);
  cairo_stroke(cr);
}

void glow(cairo_t* cr, double x, double y, double radius, const Color& color) {
  setRadial(cr, x, y, radius, x, y, color, color.withAlpha(0.0));
  cairo_arc(cr, x, y, radius, 0.0, 2.0 * kPi);
  cairo_fill(cr);
}

void triangle(cairo_t* cr, double x0, double y0, double x1, double y1, double x2, double y2,
              const Color& color) {
  setColor(cr, color);
  cairo_move_to(cr, x0, y0);
  cairo_line_to(cr, x1, y1);
  cairo_line_to(cr, x2, y2);
  cairo_close_path(cr);
  cairo_fill(cr);
}

double knobAngle(double position) { return kStart + kSweep * position; }

void knobArc(cairo_t* cr, double x, double y, double radius, double from, double to, double width,
             const Color& color) {
  setColor(cr, color);
  cairo_set_line_width(cr, width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  cairo_new_sub_path(cr);
  cairo_arc(cr, x, y, radius, knobAngle(from), knobAngle(to));
  cairo_stroke(cr);
}

void sunkenGlass(cairo_t* cr, const Rect& rect) {
  outlineRound(cr, rect.inset(-2), 3.0, kBlack.withAlpha(0.75), kHighlight.withAlpha(0.16));
  outlineRound(cr, rect.inset(-1), 2.0, kBlack, rgb(20, 17, 17));
  fill(cr, rect, kGlass);
}

void slot(cairo_t* cr, const Rect& rect) {
  outlineRound(cr, rect.inset(-1), 2.0, kBlack.withAlpha(0.8), kHighlight.withAlpha(0.12));
}

}  // namespace zum::pictures
