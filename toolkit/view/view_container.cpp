#include "toolkit/view/view_container.hpp"

namespace zum {

void CViewContainer::drawRect(CDrawContext& context, const CRect& area) {
  CView::drawRect(context, area);
  views.draw(context, area);
}

void CViewContainer::gatherDamage(Damage& damage) {
  if (CView::isDirty()) damage.add(drawnArea());
  setDirty(false);
  views.gatherDamage(damage);
}

MouseResult CViewContainer::onMouseDown(CPoint& where, int buttons) {
  if (captured() != nullptr) return MouseResult::handled;  // one gesture at a time
  // By index: what is pressed may add and remove views.
  for (std::size_t i = children().size(); i-- > 0;) {
    if (i >= children().size() || !children()[i]->hitTest(where, buttons)) continue;
    const MouseResult result = views.press(children()[i], where, buttons);
    if (result != MouseResult::notHandled) return result;
  }
  return MouseResult::notHandled;
}

bool CViewContainer::onWheel(CPoint& where, float distance, int buttons) {
  if (captured() != nullptr)
    return Held<CView>(views.captured())->onWheel(where, distance, buttons);
  for (std::size_t i = children().size(); i-- > 0;) {
    if (i >= children().size() || !children()[i]->hitTest(where, buttons)) continue;
    if (Held<CView>(children()[i])->onWheel(where, distance, buttons)) return true;
  }
  return false;
}

}  // namespace zum
