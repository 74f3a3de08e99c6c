#include "toolkit/display.hpp"

#include <algorithm>
#include <cmath>

#include "toolkit/control_frame.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {
namespace {

constexpr int kWidestNumber = 40;

std::string number(float value, int width, int decimals, bool whole) {
  width = std::clamp(width, 0, kWidestNumber);
  decimals = std::clamp(decimals, 0, kWidestNumber);
  if (whole) {
    value = std::trunc(value) + 0.0F;  // not -0
    decimals = 0;
  }
  return numberText(value, width, decimals);
}

}  // namespace

KvDisplay::KvDisplay(const CRect& rect, CControlListener* controlListener, int controlTag,
                     KvFrame& owner, CBitmap* stripBitmap, int frameHeight, int frameCount)
    : KvControl(rect, controlListener, controlTag, owner),
      strip{stripBitmap, frameHeight, frameCount} {
  setMouseEnabled(false);
}

void KvDisplay::bind(const float* variable, float max, float min, bool frameNumber) {
  boundValue = {variable, max, min};
  intIndex = frameNumber;
  needsValueDraw = true;
}

void KvDisplay::setFont(const CFontDesc* textFont, int size, CColor color) {
  font = textFont;
  fontSize = size;
  textColor = color;
}

void KvDisplay::setOffBelow(float limit, std::string word) {
  offBelow = limit;
  offText = std::move(word);
  hasOff = true;
}

float KvDisplay::shownValue() const {
  if (linkedMenu != nullptr) return linkedMenu->getValue();
  return boundValue && !drag.isOn() ? boundValue.raw() : getValue();
}

int KvDisplay::shownFrame() const {
  const float half = roundFrame ? 0.5F : 0.0F;
  if (intIndex && boundValue) {
    const float index = shownValue() + half;
    const auto outside = static_cast<float>(strip.frameCount);
    return index > -1.0F ? static_cast<int>(std::min(index, outside)) : -1;
  }
  const float position = boundValue && !drag.isOn() ? boundValue.position() : getValue();
  return strip.frameAt(roundFrame
                           ? position + half / static_cast<float>(std::max(strip.frameCount - 1, 1))
                           : position,
                       false);
}

std::string KvDisplay::textOf(float value) const {
  if (linkedMenu != nullptr) return linkedMenu->currentText();
  if (formatter != nullptr) return formatter(value);
  if (hasOff && value < offBelow) return offText;
  const std::string digits = number(value, decimalsWidth, decimals, intFormat);
  return caption + (prefix.empty() ? digits : prefix + " " + digits) + unit;
}

/// True when it looks otherwise from now on.
bool KvDisplay::look() {
  const bool number = showNumber || strip.bitmap == nullptr;
  const float value = shownValue();
  const int frame = shownFrame();
  const bool changed = number ? value != drawnValue : frame != drawnFrame;
  drawnValue = value;
  drawnFrame = frame;
  return changed;
}

void KvDisplay::draw(CDrawContext& context) {
  const CRect& size = getViewSize();
  const bool hasPicture = strip.bitmap != nullptr && strip.frameCount > 0;
  if (needsValueDraw) look();
  needsValueDraw = false;
  if (hasPicture) {
    strip.draw(context, size, drawnFrame, getTransparency());
  } else if (!showNumber) {
    context.setFrameColor(kWhiteColor);
    context.drawRect(size, DrawStyle::stroked);
  } else if (!noBackground) {
    context.setFillColor(backgroundColor);
    context.drawRect(size, DrawStyle::filled);
  }
  if (showNumber || !hasPicture) {
    context.setFont(font, fontSize);
    context.setFontColor(textColor);
    context.drawString(textOf(drawnValue),
                       {size.left + insets.left, size.top + insets.top, size.right - insets.right,
                        size.bottom - insets.bottom},
                       false, textAlign);
  }
  KvControl::draw(context);
}

MouseResult KvDisplay::onMouseDown(CPoint& where, int buttons) {
  if (!isDraggable() || !getMouseableArea().contains(where)) return MouseResult::notHandled;
  if (opensPanel(popupPanel, where, buttons)) return MouseResult::done;
  showCompanions();
  if (boundValue) setValue(boundValue.raw());
  drag.begin(where);
  beginEdit();
  return MouseResult::handled;
}

MouseResult KvDisplay::onMouseMoved(CPoint& where, int buttons) {
  const auto way = drag.move(where, buttons, sensitivity, horizontal);
  if (!way) return MouseResult::notHandled;
  moveTo(getValue() + *way);
  return MouseResult::handled;
}

MouseResult KvDisplay::onMouseUp(CPoint& where, int /*buttons*/) {
  if (!drag.isOn()) return MouseResult::notHandled;
  if (!getMouseableArea().contains(where)) startExit();
  drag.end();
  endEdit();
  setDirty(true);
  return MouseResult::handled;
}

bool KvDisplay::onWheel(CPoint& where, float distance, int /*buttons*/) {
  if (!isDraggable() || drag.isOn() || !getMouseableArea().contains(where)) return false;
  if (boundValue) setValue(boundValue.raw());
  beginEdit();
  moveTo(getValue() + distance * kWheelStep);
  endEdit();
  return true;
}

void KvDisplay::idleStep(int /*flag*/) {
  if (isShown()) {
    const bool changed = look();
    if (changed && boundValue && !drag.isOn()) setValue(boundValue.raw());
    if (changed || needsValueDraw) setDirty(true);
  }
  companionTick();
}

}  // namespace zum
