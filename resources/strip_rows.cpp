#include <iterator>

#include "resources/picture_rows.hpp"
#include "resources/strip_drawing.hpp"
#include "resources/strip_pictures.hpp"
#include "resources/strip_places.hpp"

namespace zum::pictures {
namespace {

constexpr PictureRow row(int id, const Rect& place, int frames,
                         void (*draw)(cairo_t* cr, int id, int frame)) {
  return {id, place.w, frames * place.h, frames, place.h, draw};
}

constexpr PictureRow kRows[] = {
    row(1100, strip::kStrip, 1, drawStripGround),   row(1101, strip::kPlay, 2, drawPlayButton),
    row(1102, strip::kRecord, 2, drawRecordButton), row(1103, strip::kTap, 2, drawTapButton),
    row(1104, strip::kInput, 2, drawInputSwitch),   row(1105, strip::kLevelIn, 1, drawLitLevel),
    row(1106, strip::kClipIn, 2, drawClipLamp),
};

constexpr bool idsRise() {
  int id = kFirstStripPicture;
  for (const PictureRow& each : kRows) {
    if (each.id != id++) return false;
  }
  return std::size(kRows) == kStripPictures;
}
static_assert(idsRise());

}  // namespace

std::span<const PictureRow> stripPictureRows() { return kRows; }

}  // namespace zum::pictures
