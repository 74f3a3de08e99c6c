#include "resources/faces.hpp"

#include <cstddef>

#include "resources/lettering.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {

void face(cairo_t* cr, const Rect& rect, Face state) {
  fill(cr, rect, rgb(10, 8, 8));
  switch (state) {
    case Face::raised:
      fillRound(cr, rect, 2.0, rgb(82, 76, 73), rgb(47, 43, 41));
      outlineRound(cr, rect, 2.0, kHighlight.withAlpha(0.22), kBlack.withAlpha(0.35));
      break;
    case Face::lit:
      fillRound(cr, rect, 2.0, kRed.towards(kRose, 0.18), kDeepRed);
      outlineRound(cr, rect, 2.0, kRose.withAlpha(0.8), kRed.withAlpha(0.6));
      break;
    case Face::pressed:
      fillRound(cr, rect, 2.0, rgb(28, 24, 23), rgb(44, 38, 36));
      outlineRound(cr, rect, 2.0, kBlack.withAlpha(0.7), kHighlight.withAlpha(0.08));
      break;
  }
}

Color faceLettering(Face state) {
  switch (state) {
    case Face::raised: return kLettering.towards(kPaper, 0.4);
    case Face::lit: return rgb(255, 240, 234);
    case Face::pressed: return kRose;
  }
  return kPaper;
}

void segments(cairo_t* cr, const Rect& rect, std::span<const char* const> names, int lit,
              std::span<const Color> tints) {
  constexpr double kGlyphs = 7.0;  // a mark and its distance
  fill(cr, rect, rgb(10, 8, 8));
  const int count = static_cast<int>(names.size());
  for (int i = 0; i < count; ++i) {
    const int left = rect.x + rect.w * i / count;
    const int right = rect.x + rect.w * (i + 1) / count - (i + 1 < count ? 1 : 0);
    const Rect part{left, rect.y, right - left, rect.h};
    const Face state = i == lit ? Face::lit : Face::pressed;
    const auto index = static_cast<std::size_t>(i);
    face(cr, part, state);
    const Color color = i == lit ? faceLettering(state) : kLettering.towards(kFaint, 0.4);
    if (tints.empty()) {
      textIn(cr, part, names[index], kSmallType, color);
      continue;
    }
    const double width = textWidth(cr, names[index], kSmallType) + kGlyphs;
    const int x = static_cast<int>(part.x + (part.w - width) / 2.0);
    fillRound(cr, {x, part.y + part.h / 2 - 4, 3, 8}, 1.5,
              i == lit ? tints[index].towards(kPaper, 0.5) : tints[index].withAlpha(0.75));
    textIn(cr, part.movedBy(static_cast<int>(kGlyphs / 2.0), 0), names[index], kSmallType, color);
  }
}

}  // namespace zum::pictures
