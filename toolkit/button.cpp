#include "toolkit/button.hpp"

#include <utility>

#include "toolkit/control_frame.hpp"

namespace zum {

KvButton::KvButton(const CRect& rect, CControlListener* controlListener, int controlTag,
                   KvFrame& owner, const char* buttonCaption, float initialValue,
                   ButtonMode buttonMode)
    : KvControl(rect, controlListener, controlTag, owner),
      mode(buttonMode),
      caption(buttonCaption != nullptr ? buttonCaption : "") {
  kind = kButton;
  setValue(initialValue);
}

void KvButton::setStateCount(int count) {
  stateCount = std::max(count, 1);
  setMax(static_cast<float>(std::max(stateCount - 1, 1)));
}

float KvButton::shownState() const {
  if (condition) return condition->isTrue() ? 1.0F : 0.0F;
  return boundValue ? boundValue.raw() : getValue();
}

// A button that is held shows what the user does.
void KvButton::refresh() {
  drawnState = shownState();
  if (!held) setValue(drawnState);
}

// What it is bound to is looked at once a tick: a part of it may be drawn later, for a neighbour.
void KvButton::draw(CDrawContext& context) {
  const bool isOwn = !boundValue && condition == nullptr;
  if (!std::exchange(wasDrawn, true) || isOwn) {
    refresh();
  } else if (!held) {
    setValue(drawnState);
  }
  const bool hasPressed = (drawFlags & kPressedPicture) != 0;
  const bool hasHover = (drawFlags & kHoverPicture) != 0;
  const int perState = 1 + (hasPressed ? 1 : 0) + (hasHover ? 1 : 0);
  int picture = static_cast<int>(getValue()) * perState;
  if (pressed && hasPressed) {
    ++picture;
  } else if (hovering && hasHover) {
    picture += hasPressed ? 2 : 1;
  }
  const CRect& size = getViewSize();
  if (const CBitmap* const bitmap = getBackground(); bitmap == nullptr) {
    context.setFrameColor(kWhiteColor);
    context.drawRect(size, DrawStyle::stroked);
    context.setFont(font);
    context.setFontColor(textColor);
    context.drawString(caption.empty() ? numberText(getValue(), 2, 2) : caption, size, false,
                       TextAlign::centre);
  } else if (getTransparency()) {
    bitmap->drawTransparent(context, size, {0, picture * size.height()});
  } else {
    bitmap->draw(context, size, {0, picture * size.height()});
  }
  KvControl::draw(context);
}

void KvButton::send(float state) {
  take(state);
  reportEdit();
}

void KvButton::nextState(int buttons) {
  const int next = static_cast<int>(getValue()) + 1;
  const bool first = (buttons & buttons::kRight) != 0 && stateCount > 2;
  send(first || next >= stateCount ? 0.0F : static_cast<float>(next));
}

MouseResult KvButton::onMouseDown(CPoint& where, int buttons) {
  const bool hidden = takesHiddenPresses && held && isVisible();
  if (!getMouseableArea().contains(where) || (!isShown() && !hidden)) {
    return MouseResult::notHandled;
  }
  if (mode == ButtonMode::opensMenu && menu != nullptr) {
    const CPoint corner = getViewSize().topLeft();
    menu->popup(PopupMode::none, &corner, getTag());
    return MouseResult::notHandled;
  }
  if (opensPanel(popupPanel, where, buttons)) return MouseResult::done;
  showCompanions();
  refresh();
  pressed = held = true;
  setDirty(true);
  switch (mode) {
    case ButtonMode::cycle: nextState(buttons); break;
    case ButtonMode::toggle:
      send(getValue() != 0.0F ? 0.0F : ((buttons & buttons::kRight) != 0 ? 2.0F : 1.0F));
      break;
    case ButtonMode::click:
    case ButtonMode::opensMenu: break;
    default: send(1.0F);
  }
  return MouseResult::handled;
}

MouseResult KvButton::onMouseMoved(CPoint& where, int buttons) {
  if (!held) return MouseResult::notHandled;
  if (mode == ButtonMode::pulse && (buttons & buttons::kAny) == 0) reportEdit();
  if (mode == ButtonMode::click && pressed != getMouseableArea().contains(where)) {
    pressed = !pressed;
    setDirty(true);
  }
  return MouseResult::handled;
}

MouseResult KvButton::onMouseUp(CPoint& where, int buttons) {
  if (!held) return MouseResult::notHandled;
  const bool free = (buttons & buttons::kAny) == 0;
  pressed = held = false;
  setDirty(true);
  switch (mode) {
    case ButtonMode::momentary:
      if (getValue() != 0.0F) send(0.0F);
      break;
    case ButtonMode::untilFree:
      if (free) send(0.0F);
      break;
    case ButtonMode::pulse: send(0.0F); break;
    case ButtonMode::click:
      if (free && getMouseableArea().contains(where)) nextState(buttons);
      break;
    default: break;
  }
  if (!getMouseableArea().contains(where)) startExit();
  return MouseResult::handled;
}

void KvButton::onMouseEntered(CPoint& where, int buttons) {
  KvControl::onMouseEntered(where, buttons);
  hovering = true;
  if ((drawFlags & kHoverPicture) != 0) setDirty(true);
}

void KvButton::onMouseExited(CPoint& where, int buttons) {
  KvControl::onMouseExited(where, buttons);
  hovering = false;
  if ((drawFlags & kHoverPicture) != 0) setDirty(true);
}

void KvButton::idleStep(int /*flag*/) {
  if (isShown() && shownState() != drawnState) {
    refresh();
    setDirty(true);
  }
  companionTick();
}

void KvButton::letGo() {
  const bool springsBack =
      mode == ButtonMode::momentary || mode == ButtonMode::untilFree || mode == ButtonMode::pulse;
  const bool springs = held && springsBack;
  pressed = held = hovering = false;
  if (!springs) return;
  if (boundValue) {
    send(0.0F);  // what it is bound to was pressed, too
  } else {
    setValue(0.0F);
  }
}

bool KvButton::onFocusKey(const WindowKey& key, bool repeats) {
  const bool presses =
      key.virt == keys::kSpace || key.virt == keys::kReturn || key.virt == keys::kEnter;
  return presses && click(repeats);
}

void KvButton::menuChose(int entry) {
  setMax(std::max(getMax(), static_cast<float>(entry)));
  send(static_cast<float>(entry));
}

}  // namespace zum
