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
  {1003,   11,    15,   1,  15, drawPresetArrow, {Scene::base, 35, 36}},
  {1004,   11,    34,   2,  17, drawSubFolderArrow},
  {1005,   11,    15,   1,  15, drawPresetArrow, {Scene::base, 157, 36}},
  {1006,   62,    34,   2,  17, drawButton},
  {1007,  195,   178,   1, 178, drawPage},
  {1008,   81,  9344, 128,  73, drawKnob, {Scene::filter, 211, 144}},
  {1009,   96, 10496, 128,  82, drawRing, {}, true},
  {1010,   64,    19,   1,  19, drawNumberGround},
  {1011,   33,  4224, 128,  33, drawKnob, {Scene::follower, 99, 323}},
  {1012,   33,  4224, 128,  33, drawKnob, {Scene::follower, 148, 323}},
  {1013,   33,  4224, 128,  33, drawKnob, {Scene::follower, 49, 323}},
  {1014,   33,  4224, 128,  33, drawKnob, {Scene::follower, 197, 323}},
  {1015,  217,    96,   1,  96, drawPage},
  {1016,  100,    34,   2,  17, drawButton},
  {1017,  111,   172,   1, 172, drawTypeList},
  {1018,  111,   172,  10,  17, drawTypeRow},
  {1019,  111,    78,   1,  78, drawTriggerCover},
  {1020,   67,    26,   2,  13, drawSegments},
  {1021,  217,    96,   1,  96, drawPage},
  {1022,   33,  4224, 128,  33, drawKnob, {Scene::lfo, 49, 323}},
  {1023,   33,  4224, 128,  33, drawKnob, {Scene::lfo, 197, 323}},
  {1024,   33,  4224, 128,  33, drawKnob, {Scene::lfo, 99, 322}},
  {1025,   45,  4864, 128,  38, drawKnob, {Scene::base, 395, 399}},
  {1026,   39,    22,   2,  11, drawButton},
  {1027,   39,    22,   2,  11, drawButton},
  {1028,   45,  4864, 128,  38, drawKnob, {Scene::base, 67, 398}},
  {1029,   45,  4864, 128,  38, drawRing, {}, true},
  {1030,   12,    22,   2,  11, drawClose},
  {1031,  146,   975,  75,  13, drawAmountSlider},
  {1032,  170,   160,   1, 160, drawAmountPanel},
  {1033,  170,   122,   1, 122, drawAmountPanel},
  {1034,  170,   122,   1, 122, drawAmountPanel},
  {1035,  170,   122,   1, 122, drawAmountPanel},
  {1036,  220,    59,   3,  20, drawSegments},  // one row short: the window shows 19 of a frame
  {1037,   40,    34,   2,  17, drawButton},
  {1038,   15,   480,  32,  15, drawLamp, {Scene::lfo, 204, 286}},
  {1039,   45,  4864, 128,  38, drawKnob, {Scene::base, 67, 156}},
  {1040,   39,    22,   2,  11, drawButton},
  {1041,   45,    22,   2,  11, drawZeroAllButton},
  {1042,   59,  7552, 128,  59, drawKnob, {Scene::base, 393, 153}},
  {1043,   45,  4864, 128,  38, drawRing, {}, true},
  {1044,   59,  7552, 128,  59, drawRing, {}, true},
  {1045,  100,    34,   2,  17, drawButton},
  {1046,   40,    85,   1,  85, drawOrderList},
  {1047,   40,    85,   5,  17, drawOrderRow},
  {1048,   33,  4224, 128,  33, drawRing, {}, true},
  {1049,  217,    96,   1,  96, drawPage},
  {1050,   33,  4224, 128,  33, drawKnob, {Scene::sequencer, 148, 324}},
  {1051,   33,  4224, 128,  33, drawKnob, {Scene::sequencer, 49, 324}},
  {1052,   64,   513,  27,  19, drawNoteName},
  {1053,  138,    95,   5,  19, drawStatusStrip},
  {1054,  195,   178,   1, 178, drawPage},
  {1055,  111,    34,   2,  17, drawSegments},
  {1056,   17,   153,   9,  17, drawVowelSelector},
  {1057,   96, 10368, 128,  81, drawRing, {}, true},
  {1058,   64,    95,   5,  19, drawWaveName},
};
// clang-format on

constexpr int kFirstId = 1000;
constexpr int kShortStrip = 1036;
constexpr int kLongStrip = 1018;  // as high as the list with its margins

constexpr bool rowsAreSound() {
  int id = kFirstId;
  for (const PictureRow& row : kRows) {
    const int missing = row.id == kShortStrip ? 1 : row.id == kLongStrip ? -2 : 0;
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

}  // namespace zum::pictures
