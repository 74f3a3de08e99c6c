// The faces of buttons: raised and unlit, lit in red, or pressed.
#pragma once

#include <cairo.h>

#include <span>

#include "resources/palette.hpp"
#include "resources/places.hpp"

namespace zum::pictures {

enum class Face { raised, lit, pressed };

/// Fills the rectangle, which a slot surrounds.
void face(cairo_t* cr, const Rect& rect, Face state);
Color faceLettering(Face state);

/// Buttons side by side of which one is lit. `tints` marks each, empty for none.
void segments(cairo_t* cr, const Rect& rect, std::span<const char* const> names, int lit,
              std::span<const Color> tints);

}  // namespace zum::pictures
