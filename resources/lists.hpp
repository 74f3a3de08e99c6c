// The menus whose rows are pictures: filter types and step orders.
#pragma once

#include <cairo.h>

namespace zum::pictures {

// Two pictures each. In the one, row n begins at n times 17 pixels and looks as a closed menu does,
// or as a row under the pointer. The other one is the open list, with its margin.
void drawTypeRows(cairo_t* cr, int id, int frame);
void drawTypeList(cairo_t* cr, int id, int frame);
void drawOrderRows(cairo_t* cr, int id, int frame);
void drawOrderList(cairo_t* cr, int id, int frame);

}  // namespace zum::pictures
