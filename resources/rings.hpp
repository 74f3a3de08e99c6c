// Film strips of the rings around knobs, which show where modulation has moved a value.
#pragma once

#include <cairo.h>

namespace zum::pictures {

void drawRing(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
