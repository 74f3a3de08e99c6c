#include <cstdint>
#include <span>
#include <stdexcept>

#include "resources/flattened.hpp"
#include "resources/shapes.hpp"
#include "resources/sheet.hpp"

namespace zum::pictures {
namespace {

struct Placed {
  int id;
  int x, y;
  int fixedFrame = -1;  // else by the position
  int height = 0;       // where it is less than a frame
};
using Layer = std::span<const Placed>;

// clang-format off
constexpr Placed kAlways[] = {
  {1000, 0, 0, 0}, {1053, 336, 6, 3}, {1003, 35, 36, 0}, {1005, 157, 36, 0},
  {1002, 338, 35, 0}, {1006, 409, 35, 1}, {1028, 67, 398}, {1029, 67, 398},
  {1025, 395, 399}, {1029, 395, 399}, {1042, 393, 153}, {1044, 393, 153},
  {1039, 67, 156}, {1043, 67, 156},
};
constexpr Placed kFilterLayer[] = {
  {1007, 155, 77, 0}, {1008, 211, 144}, {1009, 205, 136}, {1018, 35, 72, 0, 17}, {1055, 361, 72, 0},
};
constexpr Placed kVowelLayer[] = {
  {1054, 155, 77, 0}, {1008, 212, 144}, {1057, 205, 137}, {1018, 35, 72, 0, 17}, {1055, 361, 72, 1},
  {1056, 178, 103}, {1056, 310, 103, 4},
};
constexpr Placed kFollowerLayer[] = {
  {1015, 29, 261, 0}, {1013, 49, 323}, {1048, 49, 323}, {1011, 99, 323}, {1048, 99, 323},
  {1012, 148, 323}, {1048, 148, 323}, {1014, 197, 323}, {1048, 197, 323}, {1036, 252, 264, 0, 19},
  {1041, 197, 265, 0}, {1010, 80, 356, 0},
};
constexpr Placed kLfoLayer[] = {
  {1021, 29, 261, 0}, {1022, 49, 323}, {1048, 49, 323}, {1024, 99, 322}, {1048, 99, 323},
  {1020, 61, 286, 0}, {1038, 204, 286}, {1037, 142, 327, 1}, {1023, 197, 323}, {1048, 197, 323},
  {1036, 252, 264, 1, 19}, {1041, 197, 265, 1}, {1052, 30, 356}, {1058, 82, 356, 3},
};
constexpr Placed kSyncLayer[] = {
  {1021, 29, 261, 0}, {1022, 49, 323}, {1048, 49, 323}, {1024, 99, 322}, {1048, 99, 323},
  {1020, 61, 286, 1}, {1036, 252, 264, 1, 19}, {1041, 197, 265, 0}, {1019, 133, 280, 0},
};
constexpr Placed kSequencerLayer[] = {
  {1049, 29, 261, 0}, {1051, 49, 324}, {1048, 49, 323}, {1050, 148, 324}, {1048, 148, 323},
  {1047, 92, 327, 0, 17}, {1036, 252, 264, 2, 19}, {1041, 197, 265, 0},
};
constexpr Placed kPanelLayer[] = {
  {1032, 295, 95, 0}, {1031, 307, 131}, {1031, 307, 170, 37}, {1031, 307, 209, 10},
  {1040, 406, 99, 0}, {1030, 450, 99, 0}, {1027, 380, 240, 1}, {1026, 423, 240, 0},
  {1017, 35, 89, 0}, {1033, 75, 320, 0}, {1031, 87, 356, 60}, {1031, 87, 395, 30},
  {1040, 186, 324, 1}, {1030, 230, 324, 1}, {1027, 160, 427, 0}, {1026, 203, 427, 0},
};
constexpr Placed kAboutLayer[] = {{1001, 33, 70, 0}, {1045, 173, 168, 0}, {1016, 290, 168, 1}};
// clang-format on

void lay(const Image& window, const Placed& placed, double position) {
  constexpr std::uint32_t kColor = 0xFFFFFFU;
  const PictureRow& row = *pictureRow(placed.id);
  const Image strip = makePicture(row);
  const int frame =
      placed.fixedFrame >= 0 ? placed.fixedFrame : static_cast<int>((row.frames - 1) * position);
  const int height = placed.height > 0 ? placed.height : row.frameHeight;
  for (int y = 0; y < height; ++y) {
    const std::uint32_t* const from = strip.row(frame * row.frameHeight + y);
    std::uint32_t* const to = window.row(placed.y + y) + placed.x;
    for (int x = 0; x < row.width; ++x) {
      if (!row.isKeyed || (from[x] & kColor) != kColor) to[x] = from[x];
    }
  }
  window.touched();
}

}  // namespace

void writePreview(const std::string& path, const std::string& page, double position) {
  const Image window(kWindow.w, kWindow.h);
  const auto layAll = [&](Layer layer) {
    for (const Placed& placed : layer) lay(window, placed, position);
  };
  layAll(kAlways);
  if (page == "vowel") {
    layAll(kVowelLayer);
  } else {
    layAll(kFilterLayer);
  }
  if (page == "filter" || page == "panels" || page == "about") {
    layAll(kFollowerLayer);
  } else if (page == "vowel" || page == "sequencer") {
    layAll(kSequencerLayer);
  } else if (page == "lfo") {
    layAll(kLfoLayer);
  } else if (page == "sync") {
    layAll(kSyncLayer);
  } else {
    throw std::runtime_error("no page is called " + page);
  }
  if (page == "panels") layAll(kPanelLayer);
  if (page == "about") layAll(kAboutLayer);
  window.writePng(path);
}

}  // namespace zum::pictures
