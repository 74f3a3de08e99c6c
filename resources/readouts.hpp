// Displays: the grounds of numbers, words in place of numbers, the level strip and the lamp.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawNumberGround(cairo_t* cr, int id, int frame);
void drawNoteName(cairo_t* cr, int id, int frame);
void drawWaveName(cairo_t* cr, int id, int frame);
/// One more of four segments is lit with each frame.
void drawStatusStrip(cairo_t* cr, int id, int frame);
void drawLamp(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
