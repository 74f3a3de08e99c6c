#include "toolkit/panel.hpp"

#include <algorithm>

#include "toolkit/control_frame.hpp"

namespace zum {
namespace {

void moveBy(KvControl& view, int dx, int dy) {
  view.setMouseableArea(view.getMouseableArea().movedBy(dx, dy));
  const CRect to = view.getViewSize().movedBy(dx, dy);
  view.setBounds(to.left, to.top, to.right, to.bottom);
}

}  // namespace

void KvViewContainer::addView(KvControl* fresh, int left, int top) {
  views.add(fresh);
  if (left == kUnmoved) return;
  const CPoint corner = getViewSize().topLeft();
  const CRect& size = fresh->getViewSize();
  moveBy(*fresh, corner.x + left - size.left, corner.y + top - size.top);
}

void KvViewContainer::drawRect(CDrawContext& context, const CRect& area) {
  const CRect part = area.meet(getViewSize());
  if (!isShown()) return;
  if ((flags & kHasShadow) != 0) drawShadow(context);
  const CBitmap* const bitmap = getBackground();
  if ((flags & kDrawsBitmap) != 0 && bitmap != nullptr) {
    bitmap->draw(context, part, {part.left - getViewSize().left, part.top - getViewSize().top});
  } else if ((flags & kFillsBackground) != 0) {
    context.setFillColor(backgroundColor);
    context.drawRect(part, DrawStyle::filled);
  }
  views.draw(context, area);
}

void KvViewContainer::drawShadow(CDrawContext& context) const {
  const CRect& size = getViewSize();
  context.setFillColor({0, 0, 0, static_cast<std::uint8_t>(std::clamp(shadowAlpha, 0, 255))});
  const int behind = -shadowOffset;
  context.drawRect({size.right, size.top + behind, size.right + shadowSize, size.bottom},
                   DrawStyle::filled);
  context.drawRect(
      {size.left + behind, size.bottom, size.right + shadowSize, size.bottom + shadowSize},
      DrawStyle::filled);
}

CRect KvViewContainer::drawnArea() const {
  CRect area = getViewSize();
  if ((flags & kHasShadow) != 0) {
    area.right += shadowSize;
    area.bottom += shadowSize;
  }
  return area;
}

void KvViewContainer::gatherDamage(Damage& damage) {
  if (!isShown()) return;
  KvControl::gatherDamage(damage);
  views.gatherDamage(damage);
}

MouseResult KvViewContainer::onMouseDown(CPoint& where, int buttons) {
  if (!isShown()) return MouseResult::notHandled;
  for (std::size_t i = 0; i < children().size(); ++i) {
    const MouseResult result = views.press(children()[i], where, buttons);
    if (!isShown()) views.takeCaptured();
    if (result != MouseResult::notHandled) return result;
  }
  const bool inside = getViewSize().contains(where);
  const bool closes =
      inside ? popupMode == PopupMode::closesInside : popupMode == PopupMode::closesOutside;
  if (!closes) return MouseResult::notHandled;
  closePopup();
  return MouseResult::done;
}

bool KvViewContainer::onWheel(CPoint& where, float distance, int buttons) {
  if (!isShown()) return false;
  if (views.captured()) {
    return Held<KvControl>(views.captured())->onWheel(where, distance, buttons);
  }
  KvControl* const view = getViewAt(where, buttons);
  return view != nullptr && view->onWheel(where, distance, buttons);
}

bool KvViewContainer::onKeyDown(const WindowKey& key) {
  if (views.pressKey(key)) return true;
  if (key.virt != keys::kEscape || getFrame().getModalView() != this) return false;
  closePopup();
  return true;
}

void KvViewContainer::popup(PopupMode mode, const CPoint* where, int popupTag) {
  if (where != nullptr) {
    const CRect& room = getFrame().getViewSize();
    const CRect& size = getViewSize();
    const int left = std::max(std::min(where->x, room.right - size.width()), 0);
    const int top = std::max(std::min(where->y, room.bottom - size.height()), 0);
    setBounds(left, top, left + size.width(), top + size.height());
  }
  popupMode = mode;
  openedFor = popupTag;
  setVisible(true);
  KvControl::popup(mode, where, popupTag);
}

void KvViewContainer::closePopup() {
  letGo();
  for (const auto& view : children()) view->closePopup();
  KvControl::closePopup();
  getFrame().setDirty(true);
  getFrame().requestRedraw();
  hoverOver(nullptr, {-1, -1});
  setVisible(false);
}

void KvViewContainer::letGo() {
  if (const Held<KvControl> view = views.takeCaptured(); view) view->letGo();
}

void KvViewContainer::idleStep(int flag) {
  if (!isShown()) return;
  companionTick();
  for (const auto& view : children()) view->idleStep(flag);
  if (views.captured()) return;
  const auto pointer = getFrame().pointerPosition();
  const KvControl* const modal = getFrame().getModalView();
  const bool hasInput = modal == nullptr || modal == this;
  hoverOver(pointer && hasInput ? getViewAt(*pointer, 0) : nullptr,
            pointer.value_or(CPoint{-1, -1}));
}

void KvViewContainer::hoverOver(KvControl* view, CPoint where) {
  if (view == lastHover.get()) return;
  if (lastHover) lastHover->onMouseExited(where, 0);
  if (view != nullptr) view->remember();
  lastHover = Held<KvControl>(view);
  if (view != nullptr) view->onMouseEntered(where, 0);
}

void KvViewContainer::setBounds(int left, int top, int right, int bottom) {
  const CPoint from = getViewSize().topLeft();
  for (const auto& view : children()) moveBy(*view.get(), left - from.x, top - from.y);
  setMouseableArea({left, top, right, bottom});
  KvControl::setBounds(left, top, right, bottom);
}

}  // namespace zum
