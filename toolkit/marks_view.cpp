#include "toolkit/marks_view.hpp"

#include <cmath>
#include <utility>

#include "engine/shared_value.hpp"

namespace zum {

std::uint32_t KvMarksView::litMarks() const {
  constexpr float kNothing = 1e-4F;  // a reset leaves a little less, a slider makes more
  std::uint32_t lit = 0;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    if (std::fabs(loadShared(*marks[i].variable)) > kNothing) lit |= 1U << i;
  }
  return lit;
}

void KvMarksView::draw(CDrawContext& context) {
  if (!std::exchange(wasDrawn, true)) drawnLit = litMarks();
  CRect dot = getViewSize();
  dot.right = dot.left + kDot;
  dot.bottom = dot.top + kDot;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    if ((drawnLit >> i & 1U) != 0) {
      context.setFillColor(marks[i].color);
      context.drawDot(dot);
    }
    dot = dot.movedBy(kPitch, 0);
  }
}

void KvMarksView::idleStep(int /*flag*/) {
  if (!isShown()) return;
  const std::uint32_t lit = litMarks();
  if (std::exchange(drawnLit, lit) != lit) setDirty(true);
}

}  // namespace zum
