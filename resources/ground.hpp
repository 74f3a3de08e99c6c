// What the window is built of: brushed metal, plates on it, seats of knobs.
#pragma once

#include <cairo.h>

#include <string>

#include "resources/palette.hpp"
#include "resources/places.hpp"

namespace zum::pictures {

/// As much of `all` as is not clipped away. The streaks are the same with each run, and go on from
/// one picture to the next: they hang on the pixel of the screen, counted from the corner of `all`.
void brushedGround(cairo_t* cr, const Rect& all);
/// A part of the front that stands out a little.
void plate(cairo_t* cr, const Rect& rect);
void screw(cairo_t* cr, double x, double y, double turn);

/// The groove that a ring lights up in, and the shadow under the knob.
void knobSeat(cairo_t* cr, const KnobPlace& place);
/// Eleven marks around the groove.
void knobTicks(cairo_t* cr, const KnobPlace& place);
/// The round recess of the big knob. It covers all that the knob's picture covers and has no
/// streaks, so that the picture fits on both pages, which hold it one pixel apart.
void bigWell(cairo_t* cr, const KnobPlace& place);

/// A name above a ring, with the ends of its range beside the gap at the bottom.
void knobLabel(cairo_t* cr, const KnobPlace& place, const std::string& name, const std::string& low,
               const std::string& high);
/// The three letters, `height` pixels high.
void logo(cairo_t* cr, double x, double y, double height);
double logoWidth(double height);

}  // namespace zum::pictures
