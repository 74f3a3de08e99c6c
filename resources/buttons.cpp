#include "resources/buttons.hpp"

#include <array>
#include <span>
#include <string_view>

#include "resources/faces.hpp"
#include "resources/lettering.hpp"
#include "resources/row_of.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

struct ButtonRow {
  int id;
  int width, height;
  std::array<const char*, 2> names;  // of the two states
  Face second;                       // of the second state
  Type type;
};
// clang-format off
constexpr ButtonRow kButtons[] = {
  {1002,  62, 17, {"ABOUT",     "ABOUT"},     Face::pressed, kLabelType},
  {1006,  62, 17, {"BYPASS",    "BYPASS"},    Face::lit,     kLabelType},
  {1016, 100, 17, {"RESET",     "RESET"},     Face::pressed, kLabelType},
  {1026,  39, 11, {"CLEAR",     "CLEAR"},     Face::pressed, kSmallType},
  {1027,  39, 11, {"LEARN",     "LEARN"},     Face::lit,     kSmallType},
  {1037,  40, 17, {"OFF",       "ON"},        Face::lit,     kLabelType},
  {1040,  39, 11, {"ZERO",      "ZERO"},      Face::lit,     kSmallType},  // amounts of a panel
  {1045, 100, 17, {"SELECT",    "SELECT"},    Face::pressed, kLabelType},
};

// At factor 1 no type of the family has room for these words on their button.
constexpr const char* kZeroAllMod[] = {
  "###.###.##..###....#..#..#....#...#.###.##.",
  "..#.#...#.#.#.#...#.#.#..#....##.##.#.#.#.#",
  ".#..##..##..#.#...###.#..#....#.#.#.#.#.#.#",
  "#...#...#.#.#.#...#.#.#..#....#...#.#.#.#.#",
  "###.###.#.#.###...#.#.##.##...#...#.###.##.",
};

struct SegmentRow {
  int id;
  Rect rect;
  std::span<const char* const> names;
  std::span<const Color> tints;
};
constexpr const char* kStyles[] = {"FREE", "SYNC"};
constexpr const char* kModulators[] = {"FOLLOWER", "LFO", "SEQUENCER"};
constexpr const char* kBanks[] = {"FILTER", "VOWEL"};
constexpr Color kTints[] = {kFollowerTint, kLfoTint, kSequencerTint};
constexpr SegmentRow kSegmentRows[] = {
  {1020, {0, 0,  67, 13}, kStyles,     {}},
  {1036, {0, 0, 220, 19}, kModulators, kTints},
  {1055, {0, 0, 111, 17}, kBanks,      {}},
};
// clang-format on

}  // namespace

void drawButton(cairo_t* cr, int id, int frame) {
  const ButtonRow& row = rowOf(kButtons, id);
  const Rect rect{0, 0, row.width, row.height};
  const Face state = frame == 0 ? Face::raised : row.second;
  face(cr, rect, state);
  textIn(cr, rect.movedBy(0, state == Face::pressed ? 1 : 0),
         row.names.at(static_cast<std::size_t>(frame)), row.type, faceLettering(state));
}

void drawZeroAllButton(cairo_t* cr, int /*id*/, int frame) {
  const Face state = frame == 0 ? Face::raised : Face::lit;
  face(cr, {0, 0, 45, 11}, state);
  constexpr double kRoomForType = 1.5;
  if (factorOf(cr) >= kRoomForType) {
    return textIn(cr, {0, 0, 45, 11}, "ZERO ALL MOD", {5.5, true, 0.1}, faceLettering(state));
  }
  int y = 3;
  for (const std::string_view row : kZeroAllMod) {
    for (int x = 0; x < static_cast<int>(row.size()); ++x) {
      if (row[static_cast<std::size_t>(x)] == '#') fill(cr, {x + 1, y, 1, 1}, faceLettering(state));
    }
    ++y;
  }
}

void drawSegments(cairo_t* cr, int id, int frame) {
  const SegmentRow& row = rowOf(kSegmentRows, id);
  segments(cr, row.rect, row.names, frame, row.tints);
}

void drawPresetArrow(cairo_t* cr, int id, int /*frame*/) {
  const bool back = id == 1003;
  const Rect& place = back ? kPreviousPreset : kNextPreset;
  face(cr, {0, 0, place.w, place.h}, Face::raised);
  if (back) {
    triangle(cr, 2.5, 7.5, 7.5, 3.5, 7.5, 11.5, kPaper);
  } else {
    triangle(cr, 8.5, 7.5, 3.5, 3.5, 3.5, 11.5, kPaper);
  }
}

void drawSubFolderArrow(cairo_t* cr, int /*id*/, int frame) {
  fill(cr, {0, 0, 11, 17}, frame == 0 ? kBlack : kMenuRed);
  triangle(cr, 8.0, 8.5, 3.0, 4.5, 3.0, 12.5, frame == 0 ? kPaleRose : rgb(254, 254, 254));
}

void drawClose(cairo_t* cr, int /*id*/, int frame) {
  const Face state = frame == 0 ? Face::raised : Face::pressed;
  face(cr, {0, 0, 12, 11}, state);
  line(cr, 4.0, 3.5, 8.0, 7.5, 1.4, faceLettering(state));
  line(cr, 8.0, 3.5, 4.0, 7.5, 1.4, faceLettering(state));
}

}  // namespace zum::pictures
