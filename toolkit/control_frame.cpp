#include "toolkit/control_frame.hpp"

#include <algorithm>
#include <utility>

namespace zum {
namespace {

Held<KvControl> hold(KvControl* view) {
  view->remember();
  return Held<KvControl>(view);
}

/// True as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : raised(flag) { raised = true; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;
  ~Raised() { raised = false; }

 private:
  bool& raised;
};

/// What chooses and closes; keys that walk or write go on while they are held.
bool actsOnce(const WindowKey& key) {
  return key.virt == keys::kEscape || key.virt == keys::kReturn || key.virt == keys::kEnter ||
         key.virt >= keys::kF1;
}

}  // namespace

bool KvFrame::removeView(CView* view) {
  std::erase(onTop, view);
  leaveModal(view);
  focus.forget(view);
  if (inUse.get() == view) inUse = {};
  return CFrame::removeView(view);
}

void KvFrame::addOnTop(KvControl* view) {
  if (!isOnTop(view)) onTop.push_back(view);
}

void KvFrame::removeFromTop(KvControl* view) { std::erase(onTop, view); }

bool KvFrame::isOnTop(const CView* view) const {
  return std::find(onTop.begin(), onTop.end(), view) != onTop.end();
}

void KvFrame::setInUse(KvControl* view) {
  if (view != nullptr) view->remember();
  inUse = Held<KvControl>(view);
}

void KvFrame::leaveModal(const CView* view) {
  KvControl** link = &modalView;
  while (*link != nullptr && *link != view) link = &(*link)->popupOwner;
  if (*link != nullptr) *link = std::exchange((*link)->popupOwner, nullptr);
}

void KvFrame::setDirty(bool state) {
  CFrame::setDirty(state);
  if (state) invalidate();
}

// A host may call again from inside of what a control tells it, or close the window there.
void KvFrame::idle() {
  if (ticking) return;
  ticking = true;
  try {
    heldKey.tick();
    pollWindow();
    isGone() ? letGo() : tick();  // the host may leave a window open whose server went
  } catch (...) {                 // a tick without memory is not the last one
    ticking = false;
    throw;
  }
  ticking = false;
}

// Nobody tells of the release of a key once the focus is elsewhere.
void KvFrame::tick() {
  const bool lost = std::exchange(hadFocus, hasFocus()) && !hadFocus;
  if (lost) heldKey.forget(), usedKeys.clear();
  if (focus.isEditing() && !heldKey.isHeld()) focus.endEdit();
  focus.settle();
  if (redrawRequested) invalidate();
  redrawRequested = false;
  for (std::size_t i = 0; i < children().size() && !isGone(); ++i) children()[i]->idleStep(0);
  followPointer(0);  // what is under it may have come or gone
  paint();
  if (modalView != nullptr && !isChild(modalView)) modalView->idleStep(0);
}

void KvFrame::drawRect(CDrawContext& context, const CRect& area) {
  if (area.isEmpty()) return;
  if (getBackground() == nullptr) {
    context.setFillColor(kBlackColor);
    context.drawRect(area, DrawStyle::filled);
  }
  drawBackground(context, area);
  const auto drawPart = [&](CView* view) {
    if (view->isVisible() && view->drawnArea().intersects(area)) view->drawRect(context, area);
  };
  for (const Held<CView>& view : children()) {
    if (!isOnTop(view.get())) drawPart(view.get());
  }
  focus.draw(context, nullptr);
  for (KvControl* view : onTop) {
    drawPart(view);
    focus.draw(context, view);
  }
}

void KvFrame::gatherDamage(Damage& damage) {
  CFrame::gatherDamage(damage);
  for (KvControl* view : onTop) view->gatherDamage(damage);
}

MouseResult KvFrame::onMouseDown(CPoint& where, int buttons) {
  takeFocus();
  if (isBlocked()) return MouseResult::done;
  if (isHolding()) return MouseResult::handled;  // one at a time
  focus.mousePressed(where, buttons);
  if (modalView == nullptr) {
    const MouseResult result = CFrame::onMouseDown(where, buttons);
    return result == MouseResult::notHandled ? pressGround(where, buttons) : result;
  }
  const Held<KvControl> view = hold(modalView);
  gesture = view;  // ahead of the press, which may let go of all
  const MouseResult result = view->onMouseDown(where, buttons);
  if (result != MouseResult::handled) gesture = {};
  return result;
}

// What opens takes over the gesture.
MouseResult KvFrame::pressGround(CPoint where, int buttons) {
  const bool asks = (buttons & (buttons::kRight | buttons::kCommand)) != 0;
  if (!asks || isGone() || editor == nullptr || !editor->groundPressed(where)) {
    return MouseResult::notHandled;
  }
  if (modalView != nullptr) gesture = hold(modalView);
  return MouseResult::handled;
}

// The view that took the press gets all moves and the release, whatever has become modal meanwhile;
// with several buttons held, the release is that of the last one.
MouseResult KvFrame::onMouseUp(CPoint& where, int buttons) {
  if (isHolding() && (buttons & buttons::kAny) != 0) return MouseResult::handled;
  if (gesture) {
    const Held<KvControl> view = std::move(gesture);
    return view->onMouseUp(where, buttons);
  }
  if (captured() != nullptr || modalView == nullptr) return CFrame::onMouseUp(where, buttons);
  return hold(modalView)->onMouseUp(where, buttons);
}

void KvFrame::letGo() {
  CPoint outside{-1, -1};
  if (isHolding()) onMouseUp(outside, 0);
  focus.endEdit();
}

MouseResult KvFrame::onMouseMoved(CPoint& where, int buttons) {
  // A release may be lost, as when a host hides the window.
  if (isHolding() && (buttons & buttons::kAny) == 0) {
    letGo();
    return MouseResult::handled;
  }
  if (gesture) return Held<KvControl>(gesture)->onMouseMoved(where, buttons);
  if (captured() != nullptr || modalView == nullptr) return CFrame::onMouseMoved(where, buttons);
  return hold(modalView)->onMouseMoved(where, buttons);
}

bool KvFrame::onWheel(CPoint& where, float distance, int buttons) {
  if (isBlocked()) return false;
  focus.endEdit();
  const Raised wheel(repeating);
  if (gesture) return Held<KvControl>(gesture)->onWheel(where, distance, buttons);
  if (captured() != nullptr || modalView == nullptr) {
    return CFrame::onWheel(where, distance, buttons);
  }
  return hold(modalView)->onWheel(where, distance, buttons);
}

// The repeats of a held Escape close nothing further, and do not reach the host either.
bool KvFrame::onKeyDown(const WindowKey& key) {
  const bool repeats = heldKey.press(key);
  if (!repeats) focus.endEdit();
  if (!repeats || !actsOnce(key)) keyUsed = !isBlocked() && tellKey(key, repeats);
  usedKeys.note(key, keyUsed);
  return keyUsed;
}

bool KvFrame::tellKey(const WindowKey& key, bool repeats) {
  const Raised held(repeating);
  const bool used = modalView != nullptr ? hold(modalView)->onKeyDown(key) : CFrame::onKeyDown(key);
  return used || (walksByKeys && focus.pressKey(key, repeats)) ||
         (editor != nullptr && editor->keyPressed(key));
}

bool KvFrame::onKeyUp(const WindowKey& key) {
  heldKey.release(key);
  const bool wasUsed = usedKeys.take(key);
  const bool used = modalView != nullptr ? hold(modalView)->onKeyUp(key) : CFrame::onKeyUp(key);
  return (!used && editor != nullptr && editor->keyReleased(key)) || used || wasUsed;
}

void KvFrame::takeFiles(CPoint /*where*/, const std::vector<std::string>& paths) {
  if (editor != nullptr && !isBlocked()) editor->filesDropped(paths);
}

CView* KvFrame::getViewAt(CPoint where, int buttons) const {
  return modalView == nullptr ? CFrame::getViewAt(where, buttons) : nullptr;
}

}  // namespace zum
