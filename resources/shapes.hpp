// The strokes that all pictures are made of. Coordinates are logical pixels, those of factor 1; y
// runs downwards. Edges of rectangles lie on whole pixels of the screen at every factor, as those
// of the window's views do.
#pragma once

#include <cairo.h>

#include <span>

#include "resources/palette.hpp"
#include "resources/places.hpp"

namespace zum::pictures {

struct Point {
  double x, y;
};

void setColor(cairo_t* cr, const Color& color);
/// Pixels of the screen for a logical one.
double factorOf(cairo_t* cr);
/// The nearest corner of four pixels of the screen.
Point onScreen(cairo_t* cr, Point point);

void fill(cairo_t* cr, const Rect& rect, const Color& color);
void fillRound(cairo_t* cr, const Rect& rect, double radius, const Color& color);
void fillRound(cairo_t* cr, const Rect& rect, double radius, const Color& top, const Color& bottom);
/// A line of one logical pixel just inside of the rectangle.
void outlineRound(cairo_t* cr, const Rect& rect, double radius, const Color& top,
                  const Color& bottom);
void outlineRound(cairo_t* cr, const Rect& rect, double radius, const Color& color);

/// One logical pixel thick.
void horizontal(cairo_t* cr, int x, int y, int length, const Color& color);
void vertical(cairo_t* cr, int x, int y, int length, const Color& color);
void line(cairo_t* cr, double x0, double y0, double x1, double y1, double width,
          const Color& color);
/// From one corner to the next.
void polyline(cairo_t* cr, std::span<const Point> corners, double width, const Color& color);
/// A smooth line through all corners, of which there are two at least.
void curveThrough(cairo_t* cr, std::span<const Point> corners, double width, const Color& color);

void disc(cairo_t* cr, double x, double y, double radius, const Color& color);
/// Shaded from a bright spot up left of the middle to the edge.
void ball(cairo_t* cr, double x, double y, double radius, const Color& bright, const Color& edge);
/// The same shades as a source, to fill another shape with.
void setBall(cairo_t* cr, double x, double y, double radius, const Color& bright,
             const Color& edge);
void circle(cairo_t* cr, double x, double y, double radius, double width, const Color& color);
/// Fades from the middle to nothing at the radius.
void glow(cairo_t* cr, double x, double y, double radius, const Color& color);
void triangle(cairo_t* cr, double x0, double y0, double x1, double y1, double x2, double y2,
              const Color& color);

/// Where a knob points: position 0 is half past seven, 1 half past four. Radians, clockwise from
/// three o'clock.
double knobAngle(double position);
/// An arc between two positions of a knob.
void knobArc(cairo_t* cr, double x, double y, double radius, double from, double to, double width,
             const Color& color);

/// A display: sunk into the ground, dark, with a lit lower edge. `rect` is the glass; the frame
/// lies outside, 2 pixels wide.
void sunkenGlass(cairo_t* cr, const Rect& rect);
/// A slot for something opaque of the size of `rect`: a frame of 1 pixel outside.
void slot(cairo_t* cr, const Rect& rect);

}  // namespace zum::pictures
