// Which control of a window the keyboard works on, and the edit that a held key makes of it. Tab
// begins: before it, and after Escape or a press of the mouse, no key means anything here.
#pragma once

#include <vector>

#include "platform/input.hpp"
#include "toolkit/base_control.hpp"

namespace zum {

/// [main] Of one frame, which owns it.
class KeyFocus {
 public:
  explicit KeyFocus(KvFrame& owner) : frame(owner) {}

  /// Null for none.
  KvControl* get() const { return focused.get(); }
  void set(KvControl* view);
  /// A key that nothing else wanted. False for one that means nothing just now.
  bool pressKey(const WindowKey& key, bool repeats);
  /// The next walk starts where the mouse was used.
  void mousePressed(CPoint where, int buttons);
  /// Every tick, and ahead of each key: a panel may have opened or closed, a page have gone.
  void settle();
  /// Of what a key that is held moves; others may be under way.
  void beginEdit(KvControl& view);
  void endEdit();
  bool isEditing() const { return static_cast<bool>(edited); }
  void forget(const CView* view);

  /// The mark, if it belongs to what was drawn just now: a panel, or, for null, the window.
  void draw(CDrawContext& context, const KvControl* panel) const;
  /// The panel on top; null for none.
  KvControl* openPanel() const;
  /// What can have the focus just now: rows from top to bottom, each from left to right.
  std::vector<KvControl*> stops() const;

 private:
  bool walk(int direction);
  void redrawMark() const;

  KvFrame& frame;
  Held<KvControl> focused;
  Held<KvControl> behind;     // had it when the panel opened
  Held<KvControl> startsAt;   // the next walk
  Held<KvControl> edited;     // by a key that is held
  KvControl* room = nullptr;  // panel of the focus, only to be compared
};

}  // namespace zum
