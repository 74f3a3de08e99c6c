#include "toolkit/film_strip.hpp"

#include <algorithm>
#include <cmath>

namespace zum {

int FilmStrip::frameAt(float position, bool rounded) const {
  const float wanted = rounded ? std::round(static_cast<float>(frameCount) * position)
                               : static_cast<float>(frameCount - 1) * position;
  const auto last = static_cast<float>(rounded ? frameCount - 1 : frameCount);
  return wanted > -1.0F ? static_cast<int>(std::min(wanted, last)) : -1;
}

void FilmStrip::draw(CDrawContext& context, const CRect& view, int frame, bool keyed) const {
  if (frame < 0 || frame >= frameCount) return;
  const CPoint offset{0, frame * frameHeight};
  if (keyed) {
    bitmap->drawTransparent(context, view, offset);
  } else {
    bitmap->draw(context, view, offset);
  }
}

}  // namespace zum
