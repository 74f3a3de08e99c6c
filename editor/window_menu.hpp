// The menu of the window, which a right press on the ground opens: what can be done with the sound
// and with the window as a whole.
#pragma once

#include "toolkit/menu_rows.hpp"

namespace zum {

class KvUniClient;
class KvUniClientEditor;

/// [main] Keeps nothing: its rows are made anew for each opening.
struct WindowMenu {
  /// As things stand just now. A row that does something carries its place in the table.
  MenuRows rows() const;
  /// The host may close the window meanwhile.
  void act(long place) const;

  KvUniClient& effect;
  KvUniClientEditor& editor;
};

}  // namespace zum
