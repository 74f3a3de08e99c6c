#include "toolkit/view/view.hpp"

namespace zum {

void CView::draw(CDrawContext& context) {
  drawRect(context, size);
  setDirty(false);
}

void CView::drawRect(CDrawContext& context, const CRect& area) {
  const CRect part = area.meet(size);
  if (!background || part.isEmpty()) return;
  const CPoint offset{part.left - size.left, part.top - size.top};
  if (transparent) {
    background->drawTransparent(context, part, offset);
  } else {
    background->draw(context, part, offset);
  }
}

}  // namespace zum
