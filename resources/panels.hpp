// What opens above the window: the panels of modulation amounts, and the one about the program.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawAmountPanel(cairo_t* cr, int id, int frame);
void drawAboutPanel(cairo_t* cr, int id, int frame);
/// Lies over the controls of the trigger while the song drives the LFO.
void drawTriggerCover(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
