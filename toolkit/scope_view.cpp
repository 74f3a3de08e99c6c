#include "toolkit/scope_view.hpp"

namespace zum {

KvScopeView::KvScopeView(const CRect& rect, CControlListener* controlListener, int controlTag,
                         KvFrame& owner, KvBufferDraw::Style traceStyle)
    : KvControl(rect, controlListener, controlTag, owner), canvas(rect), style(traceStyle) {
  setMouseEnabled(false);
}

void KvScopeView::drawRect(CDrawContext& context, const CRect& area) {
  if (!isShown()) return;
  if (!initialised) idleStep(0);
  initialised = true;
  const CRect part = area.meet(getViewSize());
  const CPoint corner = getViewSize().topLeft();
  canvas.picture().blit(context, part, {part.left - corner.x, part.top - corner.y});
  pending = false;
}

// Renders once for each time that it was drawn, so that a slow frame costs no extra traces.
void KvScopeView::idleStep(int /*flag*/) {
  pending &= isShown();  // a page comes back with a trace of its own time
  if (!isShown() || pending) return;
  canvas.setBackground(backgroundColor);
  canvas.fetch();
  canvas.render(style);
  pending = true;
  setDirty(true);
}

void KvScopeView::setBounds(int left, int top, int right, int bottom) {
  KvControl::setBounds(left, top, right, bottom);
  canvas.setBounds(getViewSize());
}

}  // namespace zum
