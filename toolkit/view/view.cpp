#include "toolkit/view/view.hpp"

namespace zum {

void CView::draw(CDrawContext& context) {
  drawRect(context, viewSize);
  setDirty(false);
}

void CView::drawBackground(CDrawContext& context, const CRect& area) const {
  const CRect part = area.meet(viewSize);
  if (!background || part.isEmpty()) return;
  const CPoint offset{part.left - viewSize.left, part.top - viewSize.top};
  if (transparent) {
    background->drawTransparent(context, part, offset);
  } else {
    background->draw(context, part, offset);
  }
}

void CView::gatherDamage(Damage& damage) {
  if (!isDirty()) return;
  damage.add(drawnArea());
  setDirty(false);
}

}  // namespace zum
