// The gallery's pictures, drawn by the program itself: film strips, rows of menus, the background.
#pragma once

#include <span>
#include <string>

#include "toolkit/view/bitmap.hpp"

namespace zum {

inline constexpr CColor kPaper{190, 192, 196};
inline constexpr CColor kInk{24, 26, 30};
inline constexpr CColor kBox{214, 216, 220};
inline constexpr CColor kAccent{186, 35, 35};
inline constexpr CColor kSecondAccent{30, 90, 170};
inline constexpr CColor kDark{36, 40, 48};

/// Of the menu that is a picture.
inline constexpr const char* kGalleryRows[] = {"low pass", "band pass", "high pass", "notch"};

/// A title at the top left corner of a frame, or, without one, a caption above its rectangle.
struct Label {
  const char* text;
  CRect place;
  bool framed;
};

// `count` pictures, one below the other, from the lowest position to the highest.
Held<CBitmap> drawKnobStrip(int size, int count, CColor pointer);
Held<CBitmap> drawSliderStrip(CPoint size, int count);
/// What a picture that moves within its view looks like.
Held<CBitmap> drawHandle(CPoint size);
/// Released and pressed for each state.
Held<CBitmap> drawButtonStrip(CPoint size, int states);
/// All rows of a menu, as they are under the pointer if `lit`.
Held<CBitmap> drawRows(CPoint rowSize, std::span<const char* const> rows, bool lit);
/// A closed menu without its text, or a panel without its controls.
Held<CBitmap> drawBox(CPoint size, CColor fill);
Held<CBitmap> drawEmblem(CPoint size);
Held<CBitmap> drawBackground(CPoint size, std::span<const Label> labels);

}  // namespace zum
