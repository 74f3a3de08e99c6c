// The transport strip: its ground with all lettering, and what changes on it.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawStripGround(cairo_t* cr, int id, int frame);
void drawPlayButton(cairo_t* cr, int id, int frame);
void drawRecordButton(cairo_t* cr, int id, int frame);
void drawTapButton(cairo_t* cr, int id, int frame);
void drawInputSwitch(cairo_t* cr, int id, int frame);
/// Every segment as it looks when it is lit.
void drawLitLevel(cairo_t* cr, int id, int frame);
void drawClipLamp(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
