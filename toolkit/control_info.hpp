// A control as whoever reads a window aloud, or drives it from outside, sees it.
#pragma once

#include <cstdint>
#include <string>

#include "toolkit/view/geometry.hpp"

namespace zum {

enum class ControlRole : std::uint8_t {
  window,
  panel,
  knob,
  slider,
  button,  // does something
  toggle,  // stays as it was set
  menu,
  tabs,
  steps,
};

struct ControlInfo {
  int parent = -1;  // place in the tree's list, ahead of its children; -1 for the window
  int tag = -1;
  ControlRole role = ControlRole::window;
  std::string name;   // unique within the parent
  std::string value;  // as a player reads it; empty for what only holds others
  CRect rect;         // pixels of the window
  bool isFocused = false;
  bool isShown = false;
};

}  // namespace zum
