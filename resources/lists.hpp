// The menus whose rows are pictures: filter types and step orders.
#pragma once

#include <cairo.h>

namespace zum::pictures {

// Two pictures each. In the one, every frame is a row as it looks in a closed menu, or under the
// pointer. The other one is the open list, with its margin.
void drawTypeRow(cairo_t* cr, int id, int frame);
void drawTypeList(cairo_t* cr, int id, int frame);
void drawOrderRow(cairo_t* cr, int id, int frame);
void drawOrderList(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
