// The strips of buttons and of what is chosen by a press.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawButton(cairo_t* cr, int id, int frame);
void drawZeroAllButton(cairo_t* cr, int id, int frame);
void drawSegments(cairo_t* cr, int id, int frame);
void drawPresetArrow(cairo_t* cr, int id, int frame);
void drawSubFolderArrow(cairo_t* cr, int id, int frame);
void drawClose(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
