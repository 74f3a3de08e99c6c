#include "resources/picture_rows.hpp"

#include <iterator>

#include "resources/buttons.hpp"
#include "resources/knobs.hpp"
#include "resources/lists.hpp"
#include "resources/panels.hpp"
#include "resources/readouts.hpp"
#include "resources/rings.hpp"
#include "resources/stills.hpp"

namespace zum::pictures {
namespace {

// clang-format off
constexpr PictureRow kRows[] = {
//  id   width height frames height
  {1000,  508,   470,   1, 470, drawBackground},
  {1001,  441,   188,   1, 188, drawAboutPanel},
  {1002,   62,    34,   2,  17, drawButton},
  {1003,   11,    15,   1,  15, drawPresetArrow},
  {1004,   11,    34,   2,  17, drawSubFolderArrow},
  {1005,   11,    15,   1,  15, drawPresetArrow},
  {1006,   62,    34,   2,  17, drawButton},
  {1007,  195,   178,   1, 178, drawPage},
  {1008,   81,  9344, 128,  73, drawKnob},
  {1009,   96, 10496, 128,  82, drawRing},
  {1010,   64,    19,   1,  19, drawNumberGround},
  {1011,   33,  4224, 128,  33, drawKnob},
  {1012,   33,  4224, 128,  33, drawKnob},
  {1013,   33,  4224, 128,  33, drawKnob},
  {1014,   33,  4224, 128,  33, drawKnob},
  {1015,  217,    96,   1,  96, drawPage},
  {1016,  100,    34,   2,  17, drawButton},
  {1017,  111,   172,   1, 172, drawTypeList},
  {1018,  111,   172,   1, 172, drawTypeRows},
  {1019,  111,    78,   1,  78, drawTriggerCover},
  {1020,   67,    26,   2,  13, drawSegments},
  {1021,  217,    96,   1,  96, drawPage},
  {1022,   33,  4224, 128,  33, drawKnob},
  {1023,   33,  4224, 128,  33, drawKnob},
  {1024,   33,  4224, 128,  33, drawKnob},
  {1025,   45,  4864, 128,  38, drawKnob},
  {1026,   39,    22,   2,  11, drawButton},
  {1027,   39,    22,   2,  11, drawButton},
  {1028,   45,  4864, 128,  38, drawKnob},
  {1029,   45,  4864, 128,  38, drawRing},
  {1030,   12,    22,   2,  11, drawClose},
  {1031,  146,   975,  75,  13, drawAmountSlider},
  {1032,  170,   160,   1, 160, drawAmountPanel},
  {1033,  170,   122,   1, 122, drawAmountPanel},
  {1034,  170,   122,   1, 122, drawAmountPanel},
  {1035,  170,   122,   1, 122, drawAmountPanel},
  {1036,  220,    59,   3,  20, drawSegments},  // one row short: the window shows 19 of a frame
  {1037,   40,    34,   2,  17, drawButton},
  {1038,   15,   480,  32,  15, drawLamp},
  {1039,   45,  4864, 128,  38, drawKnob},
  {1040,   39,    22,   2,  11, drawButton},
  {1041,   45,    22,   2,  11, drawZeroAllButton},
  {1042,   59,  7552, 128,  59, drawKnob},
  {1043,   45,  4864, 128,  38, drawRing},
  {1044,   59,  7552, 128,  59, drawRing},
  {1045,  100,    34,   2,  17, drawButton},
  {1046,   40,    85,   1,  85, drawOrderList},
  {1047,   40,    85,   1,  85, drawOrderRows},
  {1048,   33,  4224, 128,  33, drawRing},
  {1049,  217,    96,   1,  96, drawPage},
  {1050,   33,  4224, 128,  33, drawKnob},
  {1051,   33,  4224, 128,  33, drawKnob},
  {1052,   64,   513,  27,  19, drawNoteName},
  {1053,  138,    95,   5,  19, drawStatusStrip},
  {1054,  195,   178,   1, 178, drawPage},
  {1055,  111,    34,   2,  17, drawSegments},
  {1056,   17,   153,   9,  17, drawVowelSelector},
  {1057,   96, 10368, 128,  81, drawRing},
  {1058,   64,    95,   5,  19, drawWaveName},
};
// clang-format on

constexpr int kFirstId = 1000;
constexpr int kShortStrip = 1036;

constexpr bool rowsAreSound() {
  int id = kFirstId;
  for (const PictureRow& row : kRows) {
    const int missing = row.id == kShortStrip ? 1 : 0;
    if (row.id != id++ || row.frames * row.frameHeight - missing != row.height) return false;
  }
  return id == 1059;
}
static_assert(rowsAreSound());

}  // namespace

std::span<const PictureRow> pictureRows() { return kRows; }

const PictureRow* pictureRow(int id) {
  const int index = id - kFirstId;
  return index >= 0 && index < static_cast<int>(std::size(kRows)) ? &kRows[index] : nullptr;
}

Image makePicture(const PictureRow& row) {
  Image image(row.width, row.height);
  cairo_t* const cr = image.context();
  for (int frame = 0; frame < row.frames; ++frame) {
    cairo_save(cr);
    cairo_translate(cr, 0.0, frame * row.frameHeight);
    cairo_rectangle(cr, 0.0, 0.0, row.width, row.frameHeight);
    cairo_clip(cr);
    row.draw(cr, row.id, frame);
    cairo_restore(cr);
  }
  return image;
}

}  // namespace zum::pictures
