#include "editor/value_field.hpp"

#include <algorithm>
#include <utility>

#include "editor/palette_color.hpp"
#include "toolkit/control_frame.hpp"

namespace zum {
namespace {

/// Hosts may name a key without the letter that it writes.
WindowKey written(WindowKey key) {
  if (key.character != 0) return key;
  if (key.virt == keys::kSpace) key.character = ' ';
  if (key.virt >= keys::kNumpad0 && key.virt < keys::kNumpad0 + 10) {
    key.character = '0' + key.virt - keys::kNumpad0;
  }
  return key;
}

}  // namespace

ValueField::ValueField(const CRect& rect, CControlListener* controlListener, int controlTag,
                       KvFrame& owner)
    : TextField(rect, controlListener, controlTag, owner) {
  look = {.ground = colorOf(pictures::kGlass),
          .edge = colorOf(pictures::kRose),
          .text = colorOf(pictures::kReadoutGreen),
          .selection = colorOf(pictures::kDeepRed),
          .wrong = colorOf(pictures::kMenuRed)};
  fontSize = 11;
  setVisible(false);
}

void ValueField::ask(KvControl& control, const std::string& value, Reader whatItSays) {
  constexpr int kGap = 3;  // pixels
  const CRect& room = getFrame().getViewSize();
  const CRect& size = control.getViewSize();
  const int left =
      std::clamp((size.left + size.right - kWidth) / 2, 0, std::max(room.right - kWidth, 0));
  const int top = std::min(size.bottom + kGap, room.bottom - kHeight);
  setBoundsAndArea(left, top, left + kWidth, top + kHeight);
  setText(value);
  isSelected = true;
  isWrong = false;
  control.remember();
  target = Held<KvControl>(&control);
  reader = std::move(whatItSays);
  setVisible(true);
  popup(PopupMode::closesOutside, nullptr, control.getTag());
}

void ValueField::closePopup() {
  if (!target) return;
  target = {};
  getFrame().invalidRect(drawnArea());
  KvControl::closePopup();
  setVisible(false);
}

void ValueField::takeOver() {
  const std::optional<float> value = reader(getText());
  isWrong = !value;
  isSelected = false;
  setDirty(true);
  if (!value) return;
  const Held<KvControl> control = target;
  closePopup();  // first: a host that hears of the value may close the window
  control->enter(*value);
}

bool ValueField::onKeyDown(const WindowKey& key) {
  if (!target) return false;
  if (key.virt == keys::kReturn || key.virt == keys::kEnter) {
    takeOver();
  } else if (key.virt == keys::kEscape) {
    closePopup();
  } else if (type(written(key))) {
    isWrong = false;
  }
  return true;
}

MouseResult ValueField::onMouseDown(CPoint& where, int /*buttons*/) {
  if (!target) return MouseResult::notHandled;
  if (getViewSize().contains(where)) {
    isSelected = false;
    setDirty(true);
  } else {
    closePopup();
  }
  return MouseResult::done;
}

void ValueField::idleStep(int /*flag*/) {
  if (target && !target->isShown()) closePopup();  // its page went away
}

}  // namespace zum
