// Film strips of knobs, of the amount slider and of the vowel selector.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawKnob(cairo_t* cr, int id, int frame);
void drawAmountSlider(cairo_t* cr, int id, int frame);
void drawVowelSelector(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
