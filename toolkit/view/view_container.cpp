#include "toolkit/view/view_container.hpp"

#include <algorithm>

namespace zum {

bool CViewContainer::removeView(CView* view) {
  if (capture.get() == view) capture = {};
  return std::erase_if(views, [view](const auto& held) { return held.get() == view; }) != 0;
}

bool CViewContainer::isChild(const CView* view) const {
  return std::ranges::any_of(views, [view](const auto& held) { return held.get() == view; });
}

void CViewContainer::drawRect(CDrawContext& context, const CRect& area) {
  CView::drawRect(context, area);
  for (const Held<CView>& view : views) {
    if (view->isVisible() && view->drawnArea().intersects(area)) view->drawRect(context, area);
  }
}

bool CViewContainer::isDirty() const {
  return CView::isDirty() ||
         std::ranges::any_of(views, [](const auto& view) { return view->isDirty(); });
}

void CViewContainer::gatherDamage(Damage& damage) {
  if (CView::isDirty()) damage.add(drawnArea());
  setDirty(false);
  for (const Held<CView>& view : views) view->gatherDamage(damage);
}

MouseResult CViewContainer::onMouseDown(CPoint& where, int buttons) {
  if (capture) return MouseResult::handled;  // one gesture at a time
  // By index: what is pressed may add and remove views.
  for (std::size_t i = views.size(); i-- > 0;) {
    if (i >= views.size() || !views[i]->hitTest(where, buttons)) continue;
    const Held<CView> view = views[i];
    capture = view;  // ahead of the press, which may let go of all
    const MouseResult result = view->onMouseDown(where, buttons);
    if (result != MouseResult::handled) capture = {};
    if (result != MouseResult::notHandled) return result;
  }
  return MouseResult::notHandled;
}

MouseResult CViewContainer::onMouseUp(CPoint& where, int buttons) {
  if (!capture) return MouseResult::notHandled;
  const Held<CView> view = std::move(capture);
  return view->onMouseUp(where, buttons);
}

MouseResult CViewContainer::onMouseMoved(CPoint& where, int buttons) {
  const Held<CView> view = capture;
  return view ? view->onMouseMoved(where, buttons) : MouseResult::notHandled;
}

bool CViewContainer::onWheel(CPoint& where, float distance, int buttons) {
  if (capture) return Held<CView>(capture)->onWheel(where, distance, buttons);
  for (std::size_t i = views.size(); i-- > 0;) {
    if (i >= views.size() || !views[i]->hitTest(where, buttons)) continue;
    const Held<CView> view = views[i];
    if (view->onWheel(where, distance, buttons)) return true;
  }
  return false;
}

bool CViewContainer::onKeyDown(const WindowKey& key) {
  for (std::size_t i = views.size(); i-- > 0;) {
    if (i < views.size() && Held<CView>(views[i])->onKeyDown(key)) return true;
  }
  return false;
}

bool CViewContainer::onKeyUp(const WindowKey& key) {
  for (std::size_t i = views.size(); i-- > 0;) {
    if (i < views.size() && Held<CView>(views[i])->onKeyUp(key)) return true;
  }
  return false;
}

CView* CViewContainer::getViewAt(CPoint where, int buttons) const {
  const auto view = std::find_if(views.rbegin(), views.rend(),
                                 [&](const auto& child) { return child->hitTest(where, buttons); });
  return view != views.rend() ? view->get() : nullptr;
}

}  // namespace zum
