// Where everything stands in the window, and what it shows. Rectangles are left, top, right, bottom
// in pixels of the window.
#pragma once

#include <span>

#include "core/group_selector.hpp"
#include "engine/display_values.hpp"
#include "toolkit/view/geometry.hpp"

namespace zum::layout {

inline constexpr CRect kWindow{0, 0, 508, 470};

using namespace groups;

/// A main knob. It shows the parameter of its tag.
struct Knob {
  int tag;
  CRect rect;
  int picture;
  int frames;
  int frameHeight;
  float sensitivity;
  int border;  // by which the mouse may miss, pixels
  Group group;
};

/// Lies over a knob and shows where its modulators have moved it.
struct Ring {
  int tag;
  int knob;
  CRect rect;
  int picture;
  int frameHeight;
  Group group;
  float DisplayValues::*shown;
};

/// A picture that only stands there.
struct Still {
  int tag;
  CRect rect;
  int picture;
  Group group;
};

/// A picture of several, which the parameter of `tag` chooses; 1 a press.
struct Switch {
  int tag;
  CRect rect;
  int picture;
  Group group;
};

/// Opens a list; the parameter of `tag` chooses the row.
struct Menu {
  int tag;
  CRect rect;
  int rows;
  int closedPicture;  // its rows, one below the other: closed it shows one, open the pointed one
  int openPicture;    // the list
  Group group;
};

/// Comes up below a knob that is touched, and shows its setting as a number...
struct NumberReadout {
  int tag;
  int knob;
  CRect rect;
  const char* unit;
  int width;
  int decimals;
  Group group;
};

/// ...or as a picture.
struct PictureReadout {
  int tag;
  int knob;
  CRect rect;
  int picture;
  int frames;
  float DisplayValues::*shown;  // number of the picture
  Group group;
};

/// The panel of a knob. What stands in it is told by the knob's row of the parameter table.
struct Panel {
  int knob;
  CPoint marks;  // of the knob: the dots beside its name
  CRect rect;    // where it would stand if it were not opened at the pointer
  int picture;
  int firstLeft;  // of the first slider, pixels from the panel's corner
};

inline constexpr int kReadoutPicture = 1010;
inline constexpr int kReadoutHeight = 19;

extern const std::span<const Still> kPages;
extern const std::span<const Knob> kUpperKnobs;
extern const std::span<const Knob> kLowerKnobs;
extern const std::span<const Ring> kRings;
extern const std::span<const Switch> kSwitches;
extern const std::span<const Menu> kMenus;
extern const std::span<const NumberReadout> kNumberReadouts;
extern const std::span<const PictureReadout> kPictureReadouts;
extern const std::span<const Panel> kPanels;

}  // namespace zum::layout
