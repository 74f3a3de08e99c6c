#include "toolkit/knob.hpp"

#include "toolkit/control_frame.hpp"
#include "toolkit/panel.hpp"

namespace zum {

KvKnob::KvKnob(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
               CBitmap* stripBitmap, int frameHeight, int frameCount, float knobSensitivity)
    : KvControl(rect, controlListener, controlTag, owner),
      strip{stripBitmap, frameHeight, frameCount},
      sensitivity(knobSensitivity) {
  kind = kKnob;
}

void KvKnob::bind(const float* variable, float max, float min) {
  boundValue = {variable, max, min};
  if (boundValue) take(boundValue.position());
}

void KvKnob::setHandleBorder(int pixels) {
  handleBorder = pixels;
  const CRect& size = getViewSize();
  setBounds(size.left, size.top, size.right, size.bottom);
}

void KvKnob::setBounds(int left, int top, int right, int bottom) {
  setMouseableArea(CRect{left, top, right, bottom}.grownBy(handleBorder));
  KvControl::setBounds(left, top, right, bottom);
}

void KvKnob::draw(CDrawContext& context) {
  if (noPaint) return;
  const CRect& size = getViewSize();
  if (underlayBitmap != nullptr) underlayBitmap->draw(context, size, {0, 0});
  const float position = getValue();
  if (strip.bitmap == nullptr) {
    drawFallback(context);
  } else if (jumpMode == kMovesPicture) {
    const CRect place = movedPicture(*strip.bitmap, position);
    if (getTransparency()) {
      strip.bitmap->drawTransparent(context, place, {0, 0});
    } else {
      strip.bitmap->draw(context, place, {0, 0});
    }
  } else {
    strip.draw(context, size, strip.frameAt(position, roundFrame), getTransparency());
  }
  drawOverlay(context);
  KvControl::draw(context);
}

void KvKnob::drawFallback(CDrawContext& context) const {
  const float shown = boundValue ? boundValue.raw() : getValue();
  context.setFrameColor(kWhiteColor);
  context.drawRect(getViewSize(), DrawStyle::stroked);
  context.setFont(font);
  context.setFontColor(kBlackColor);
  context.drawString(numberText(shown, 2, 2), getViewSize(), false, TextAlign::centre);
}

void KvKnob::drawOverlay(CDrawContext& context) const {
  if (overlayBitmap == nullptr) return;
  const float position = overlayValue != nullptr ? overlayLast : getValue();
  const CRect place = movedPicture(*overlayBitmap, position);
  if (overlayMode != 0 || overlayAlpha < 255) {
    overlayBitmap->drawAlphaBlend(context, place, {0, 0}, overlayAlpha);
  } else {
    overlayBitmap->draw(context, place, {0, 0});
  }
}

CRect KvKnob::movedPicture(const CBitmap& bitmap, float position) const {
  const CRect& size = getViewSize();
  const auto part = [](int room, float share) {
    return static_cast<int>(static_cast<float>(room) *
                            (share > 0.0F ? std::min(share, 1.0F) : 0.0F));
  };
  CRect place{size.left, size.top, size.left + bitmap.getWidth(), size.top + bitmap.getHeight()};
  if (overlayStyle == OverlayStyle::horizontal) {
    return place.movedBy(part(size.width() - bitmap.getWidth(), position), 0);
  }
  if (overlayStyle == OverlayStyle::vertical) {
    return place.movedBy(0, part(size.height() - bitmap.getHeight(), 1.0F - position));
  }
  return place;
}

void KvKnob::storeFlag(float held) const {
  if (pressFlag != nullptr) storeShared(*pressFlag, held);
}

void KvKnob::jumpTo(CPoint where) {
  const CRect& size = getViewSize();
  const float across =
      static_cast<float>(where.x - size.left) / static_cast<float>(std::max(size.width(), 1));
  const float up =
      static_cast<float>(size.bottom - where.y) / static_cast<float>(std::max(size.height(), 1));
  moveTo(horizontal ? across : up);
}

MouseResult KvKnob::onMouseDown(CPoint& where, int buttons) {
  if (!takesMouse(where)) return MouseResult::notHandled;
  if (opensPanel(popupPanel, where, buttons)) return MouseResult::done;
  const bool twice = (buttons & buttons::kDoubleClick) != 0 && jumpMode == kDrags;
  if (twice && (buttons & buttons::kAlt) != 0 && getFrame().typeValue(*this)) {
    return MouseResult::done;
  }
  if ((buttons & buttons::kControl) != 0 || twice) {
    take(getDefaultValue());
    reportEdit();
    return MouseResult::done;
  }
  showCompanions();
  follow();
  drag.begin(where);
  storeFlag(1.0F);
  beginEdit();
  if (jumpMode != kDrags) jumpTo(where);
  return MouseResult::handled;
}

MouseResult KvKnob::onMouseMoved(CPoint& where, int buttons) {
  const auto way = drag.move(where, buttons, sensitivity, horizontal);
  if (!way) return MouseResult::notHandled;
  if (jumpMode != kDrags && horizontal) {
    jumpTo(where);
  } else {
    moveTo(getValue() + *way);
  }
  return MouseResult::handled;
}

MouseResult KvKnob::onMouseUp(CPoint& where, int /*buttons*/) {
  if (!drag.isOn()) return MouseResult::notHandled;
  if (!getMouseableArea().contains(where)) startExit();
  drag.end();
  storeFlag(0.0F);
  if (springBack) {
    moveTo(0.5F);
  } else if (pressFlag != nullptr) {
    report();
  }
  endEdit();
  setDirty(true);
  return MouseResult::handled;
}

bool KvKnob::onWheel(CPoint& where, float distance, int buttons) {
  if (!takesMouse(where) || springBack || drag.isOn()) return false;
  const float step = (buttons & buttons::kShift) != 0 ? kFineWheelStep : kWheelStep;
  follow();
  take(getValue() + distance * step);
  beginEdit();
  report();
  endEdit();
  return true;
}

bool KvKnob::stepByKey(float way) {
  follow();
  moveByKey(getValue() + way);
  return true;
}

bool KvKnob::onFocusKey(const WindowKey& key, bool repeats) {
  constexpr float kPages = 0.1F;
  const bool fine = (key.modifier & keys::kShiftBit) != 0;
  const float step = fine ? keyStep * kFineWheelStep / kWheelStep : keyStep;
  const float page = std::max(kPages, keyStep);
  switch (key.virt) {
    case keys::kUp: return stepByKey(step);
    case keys::kDown: return stepByKey(-step);
    case keys::kPageUp: return stepByKey(page);
    case keys::kPageDown: return stepByKey(-page);
    case keys::kHome: return stepByKey(-1.0F);
    case keys::kEnd: return stepByKey(1.0F);
    case keys::kDelete: moveByKey(getDefaultValue()); return true;
    case keys::kReturn:
    case keys::kEnter: return getFrame().typeValue(*this);
    case keys::kSpace: {
      const CPoint below{getViewSize().left, getViewSize().bottom};
      return repeats || opensPanel(popupPanel, below, buttons::kRight);
    }
    default: return false;
  }
}

// Not during a drag: the engine answers later than the hand moves. A press reads the variable, too,
// since it may come ahead of the first tick.
void KvKnob::follow() {
  if (!boundValue || drag.isOn()) return;
  const float before = getValue();
  setValue(boundValue.position());
  if (getValue() != before) setDirty(true);
}

void KvKnob::idleStep(int /*flag*/) {
  if (!isShown()) return companionTick();
  follow();
  if (overlayValue != nullptr) {
    const float position = loadShared(*overlayValue);
    if (position != overlayLast) setDirty(true);
    overlayLast = position;
  }
  companionTick();
}

}  // namespace zum
