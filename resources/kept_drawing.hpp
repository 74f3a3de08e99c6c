// Drawing that costs much and is the same in all frames of a strip: done once, then painted from
// its pixels.
#pragma once

#include <cairo.h>

namespace zum::pictures {

struct Circle {
  double x, y, radius;
};

/// [main] Fills the circle with what `draw` draws in the square around it, the same each time.
void fillKept(cairo_t* cr, const Circle& circle, void (*draw)(cairo_t*, const Circle&));

}  // namespace zum::pictures
