// Small type, hinted to whole pixels of the screen so that it comes out the same wherever the font
// is the same.
#pragma once

#include <cairo.h>

#include <string>

#include "resources/palette.hpp"
#include "resources/places.hpp"

namespace zum::pictures {

/// A size and weight of the one family that the window uses.
struct Type {
  double size = 8.0;  // pixels
  bool bold = false;
  double spacing = 0.0;  // pixels between characters
};

inline constexpr Type kTitleType{9.0, true, 1.0};
inline constexpr Type kLabelType{8.0, true, 1.0};
inline constexpr Type kSmallType{7.0, true, 1.0};
inline constexpr Type kTinyType{7.0, false, 0.0};

enum class Align { left, centre, right };

double textWidth(cairo_t* cr, const std::string& utf8, const Type& type);
/// `x` is the side or the middle that is aligned, `baseline` the foot of the capitals.
void text(cairo_t* cr, double x, double baseline, Align align, const std::string& utf8,
          const Type& type, const Color& color);
/// In the middle of a rectangle, by the height of the capitals.
void textIn(cairo_t* cr, const Rect& rect, const std::string& utf8, const Type& type,
            const Color& color);

}  // namespace zum::pictures
