// A picture of many, one below the other, of which a control shows one.
#pragma once

#include "toolkit/view/bitmap.hpp"

namespace zum {

/// The bitmap outlives it.
struct FilmStrip {
  CBitmap* bitmap = nullptr;  // null: the control draws itself
  int frameHeight = 0;        // pixels
  int frameCount = 0;

  /// The picture for a position, 0 for the first to 1 for the last. A position outside gives one
  /// that is not there, as does one that is no number. `rounded` shares the range out evenly.
  int frameAt(float position, bool rounded) const;
  /// What is not there leaves the view as it is.
  void draw(CDrawContext& context, const CRect& view, int frame, bool keyed) const;
};

}  // namespace zum
