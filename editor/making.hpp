// How the window's controls are made: each is known by its tag, belongs to a group, and goes to the
// frame.
#pragma once

#include <string>
#include <string_view>

#include "editor/layout.hpp"
#include "editor/uni_client_editor.hpp"
#include "toolkit/control_frame.hpp"

namespace zum {

/// Titles as the window writes them.
inline std::string upperCase(std::string_view text) {
  std::string letters(text);
  for (char& letter : letters) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return letters;
}

template <class Control, class... More>
Control* KvUniClientEditor::make(const CRect& rect, int tag, const More&... more) {
  auto* const control = new Control(rect, this, tag, *getFrame(), more...);
  control->remember();
  making = Held<CView>(control);
  if (tag >= 0 && tag <= kLastTag) controls[static_cast<std::size_t>(tag)] = control;
  return control;
}

template <class Control>
Control* KvUniClientEditor::add(Control* control, groups::Group group) {
  control->group = group;
  control->groupMask = &getGroupMask();
  getFrame()->addView(control);
  return control;
}

}  // namespace zum
