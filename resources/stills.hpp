// The background and the pages, as pictures of their own.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawBackground(cairo_t* cr, int id, int frame);
void drawPage(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
