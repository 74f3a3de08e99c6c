#include "toolkit/mouse_area.hpp"

#include <algorithm>

namespace zum {

void KvMouseArea::publish(CPoint where, int buttons) {
  const CRect& size = getViewSize();
  const auto flag = [buttons](int bit) { return (buttons & bit) != 0 ? 1.0F : 0.0F; };
  const auto share = [this](int at, int length) {
    const float part = static_cast<float>(at) / static_cast<float>(std::max(length, 1));
    return clampToArea ? std::clamp(part, 0.0F, 1.0F) : part;
  };
  fields = {flag(buttons::kLeft),
            flag(buttons::kRight),
            share(where.x - size.left, size.width()),
            share(where.y - size.top, size.height()),
            flag(buttons::kShift),
            flag(buttons::kControl)};
  take(fields[x]);
}

MouseResult KvMouseArea::onMouseDown(CPoint& where, int buttons) {
  if (KvControl::onMouseDown(where, buttons) != MouseResult::handled) {
    return MouseResult::notHandled;
  }
  showCompanions();
  publish(where, buttons);
  if (editBracket) beginEdit();
  report();
  pressed = true;
  return MouseResult::handled;
}

bool KvMouseArea::onFocusKey(const WindowKey& key, bool repeats) {
  const bool around = key.virt == keys::kSpace;
  const int direction = key.virt == keys::kUp ? -1 : around || key.virt == keys::kDown ? 1 : 0;
  if (direction == 0) return false;
  if (repeats || !atPlace) return true;
  const int at = static_cast<int>(std::clamp(atPlace.raw(), 0.0F, static_cast<float>(places - 1)));
  const int next = around ? (at + 1) % places : std::clamp(at + direction, 0, places - 1);
  const CRect& size = getViewSize();
  CPoint where{size.left + size.width() * (2 * next + 1) / (2 * places),
               (size.top + size.bottom) / 2};
  if (next != at && onMouseDown(where, buttons::kLeft) == MouseResult::handled) {
    onMouseUp(where, 0);
  }
  return true;
}

MouseResult KvMouseArea::onMouseMoved(CPoint& where, int buttons) {
  if (!pressed) return MouseResult::notHandled;
  publish(where, buttons);
  report();
  return MouseResult::handled;
}

MouseResult KvMouseArea::onMouseUp(CPoint& /*where*/, int /*buttons*/) {
  if (!pressed) return MouseResult::notHandled;
  pressed = false;
  fields[left] = fields[right] = fields[shift] = fields[control] = 0.0F;
  setDirty(true);
  report();
  if (editBracket) endEdit();
  startExit();
  return MouseResult::handled;
}

}  // namespace zum
