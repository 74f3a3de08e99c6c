#include "toolkit/base_control.hpp"

#include <array>

#include "toolkit/control_frame.hpp"
#include "toolkit/panel.hpp"

namespace zum {

KvControl::KvControl(const CRect& rect, CControlListener* controlListener, int controlTag,
                     KvFrame& owner)
    : CControl(rect, controlListener, controlTag),
      font(owner.getDefaultFont()),
      idleDivider(owner.idleDivider),
      ownerFrame(owner) {
  textColor = kBlackColor;
}

void KvControl::draw(CDrawContext& context) {
  if (labelText == nullptr) return;
  context.setFont(font, kCaptionHeight);
  context.setFontColor(textColor);
  // Letters such as g reach below the line, a little into the control.
  constexpr int kDescent = 2;
  CRect line = KvControl::drawnArea();
  line.bottom = line.top + kCaptionHeight + kDescent;
  line.top -= kDescent;
  context.drawString(labelText, line, false, TextAlign::centre);
}

void KvControl::drawRect(CDrawContext& context, const CRect& /*area*/) {
  if (isShown()) draw(context);
}

// A caption may be wider than its control, by so much on either side.
CRect KvControl::drawnArea() const {
  const CRect& size = getViewSize();
  if (labelText == nullptr) return size;
  constexpr int kSide = 40;
  return {size.left - kSide, size.top - kCaptionHeight, size.right + kSide, size.bottom};
}

MouseResult KvControl::onMouseDown(CPoint& where, int /*buttons*/) {
  return isShown() && getViewSize().contains(where) ? MouseResult::handled
                                                    : MouseResult::notHandled;
}

void KvControl::onMouseEntered(CPoint& /*where*/, int /*buttons*/) {
  enterCountdown = ownerFrame.enterTicks;
  exitCountdown = kNotRunning;
}

void KvControl::onMouseExited(CPoint& /*where*/, int /*buttons*/) { startExit(); }

void KvControl::startExit() {
  exitCountdown = ownerFrame.exitTicks;
  enterCountdown = kNotRunning;
}

bool KvControl::hitTest(CPoint where, int /*buttons*/) const {
  return getMouseableArea().contains(where) && isShown() && getMouseEnabled();
}

void KvControl::popup(PopupMode /*mode*/, const CPoint* /*where*/, int /*popupTag*/) {
  ownerFrame.leaveModal(this);
  popupOwner = ownerFrame.getModalView();
  ownerFrame.setModalView(this);
  ownerFrame.addOnTop(this);
  CRect area = drawnArea();
  if ((flags & kHasShadow) != 0) {
    area.right += shadowSize;
    area.bottom += shadowSize;
  }
  ownerFrame.invalidRect(area);
  setDirty(true);
}

void KvControl::closePopup() {
  ownerFrame.leaveModal(this);
  ownerFrame.removeFromTop(this);
  if (companionsOut) hideCompanions();
}

void KvControl::letGo() {
  CPoint outside{-1, -1};
  onMouseUp(outside, 0);
}

void KvControl::idleStep(int /*flag*/) { companionTick(); }

void KvControl::setBounds(int left, int top, int right, int bottom) {
  setViewSize({left, top, right, bottom});
}

void KvControl::setBoundsAndArea(int left, int top, int right, int bottom) {
  setMouseableArea({left, top, right, bottom});
  setBounds(left, top, right, bottom);
}

void KvControl::addShownCompanion(CView* view) {
  shownCompanions.push_back(view);
  view->setVisible(false);
}

void KvControl::addHiddenCompanion(CView* view) {
  hiddenCompanions.push_back(view);
  view->setVisible(false);
}

void KvControl::companionTick() {
  if (!isShown()) {
    if (companionsOut) hideCompanions();
    return;
  }
  if (companionsOut) {
    if (exitCountdown > 0 && --exitCountdown == 0) hideCompanions();
  } else if (enterCountdown > 0 && --enterCountdown == 0) {
    showCompanions();
  }
}

void KvControl::showCompanions() {
  for (const auto* list : std::array{&shownCompanions, &hiddenCompanions}) {
    for (CView* view : *list) {
      view->setVisible(true);
      view->setDirty(true);
      ownerFrame.invalidRect(view->drawnArea());
    }
  }
  exitCountdown = enterCountdown = kNotRunning;
  companionsOut = true;
  ownerFrame.setInUse(this);
}

void KvControl::hideCompanions() {
  for (const auto* list : std::array{&shownCompanions, &hiddenCompanions}) {
    for (CView* view : *list) {
      if (!view->isVisible()) continue;
      ownerFrame.invalidRect(view->drawnArea());
      view->setVisible(false);
    }
  }
  companionsOut = false;
  if (ownerFrame.controlInUse() == this) ownerFrame.setInUse(ownerFrame.keyFocus().get());
}

bool KvControl::opensPanel(KvViewContainer* panel, CPoint where, int buttons, int popupTag) {
  if (panel == nullptr || (buttons & (buttons::kRight | buttons::kCommand)) == 0) return false;
  panel->setTag(getTag());
  panel->popup(PopupMode::closesOutside, &where, popupTag);
  return true;
}

std::string KvControl::getInfoString() const { return ownerFrame.infoOf(*this); }

bool KvControl::hasFocus() const { return ownerFrame.keyFocus().get() == this; }

void KvControl::moveByKey(float newValue) {
  ownerFrame.keyFocus().beginEdit(*this);
  moveTo(newValue);
}

bool KvControl::click(bool repeats) {
  if (repeats) return true;
  const CRect& size = getViewSize();
  CPoint middle{(size.left + size.right) / 2, (size.top + size.bottom) / 2};
  if (onMouseDown(middle, buttons::kLeft) == MouseResult::handled) onMouseUp(middle, 0);
  return true;
}

void KvControl::reportEdit() {
  if (editBracket) beginEdit();
  report();
  if (editBracket) endEdit();
}

}  // namespace zum
