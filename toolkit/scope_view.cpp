#include "toolkit/scope_view.hpp"

#include "toolkit/control_frame.hpp"

namespace zum {

KvScopeView::KvScopeView(const CRect& rect, CControlListener* controlListener, int controlTag,
                         KvFrame& owner, KvBufferDraw::Style traceStyle)
    : KvControl(rect, controlListener, controlTag, owner),
      canvas(rect, owner.scale()),
      style(traceStyle) {
  setMouseEnabled(false);
}

void KvScopeView::drawRect(CDrawContext& context, const CRect& area) {
  if (!isShown()) return;
  if (canvas.fit(getViewSize(), context.scale()) || !initialised) render();
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
  canvas.fit(getViewSize(), getFrame().scale());
  render();
  pending = true;
  setDirty(true);
}

void KvScopeView::render() {
  canvas.setBackground(backgroundColor);
  canvas.fetch();
  canvas.render(style);
}

}  // namespace zum
