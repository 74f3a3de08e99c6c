#include <iterator>

#include "resources/picture_rows.hpp"
#include "resources/strip_drawing.hpp"
#include "resources/strip_pictures.hpp"
#include "resources/strip_places.hpp"

namespace zum::pictures {
namespace {

constexpr PictureRow stripRow(int id, const Rect& place, int frames,
                              void (*draw)(cairo_t* cr, int id, int frame),
                              const Backdrop& backdrop = {}) {
  return {id, place.w, frames * place.h, frames, place.h, draw, backdrop};
}

constexpr PictureRow kStripRows[] = {
    stripRow(1100, strip::kStrip, 1, drawStripGround),
    stripRow(1101, strip::kPlay, 2, drawPlayButton),
    stripRow(1102, strip::kRecord, 2, drawRecordButton),
    stripRow(1103, strip::kTap, 2, drawTapButton),
    stripRow(1104, strip::kInput, 2, drawInputSwitch),
    stripRow(1105, strip::kLevelIn, 1, drawLitLevel),
    stripRow(1106, strip::kClipIn, 2, drawClipLamp,
             {Scene::strip, strip::kClipIn.x, strip::kClipIn.y}),
};

constexpr bool idsRise() {
  int id = kFirstStripPicture;
  for (const PictureRow& each : kStripRows) {
    if (each.id != id++) return false;
  }
  return std::size(kStripRows) == kStripPictures;
}
static_assert(idsRise());

}  // namespace

std::span<const PictureRow> stripPictureRows() { return kStripRows; }

}  // namespace zum::pictures
