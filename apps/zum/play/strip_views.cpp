#include "apps/zum/play/strip_views.hpp"

#include <cmath>
#include <utility>

#include "editor/palette_color.hpp"
#include "engine/clock.hpp"
#include "resources/strip_places.hpp"

namespace zum {

TextButton::TextButton(const CRect& rect, CControlListener* told, int buttonTag, KvFrame& owner,
                       int textSize)
    : KvButton(rect, told, buttonTag, owner, nullptr, 0.0F, ButtonMode::click), size(textSize) {
  setStateCount(1);
}

void TextButton::setText(std::string line, CColor color) {
  if (line == shown && color == textColor) return;
  shown = std::move(line);
  textColor = color;
  setDirty(true);
}

void TextButton::draw(CDrawContext& context) {
  const CRect& rect = getViewSize();
  context.setFont(font, size);
  context.setFontColor(isPressed() ? kWhiteColor : textColor);
  context.drawString(shown, {rect.left + 5, rect.top, rect.right - 4, rect.bottom}, false,
                     TextAlign::left);
}

TempoView::TempoView(const CRect& rect, CControlListener* told, int displayTag, KvFrame& owner,
                     const float* variable)
    : KvDisplay(rect, told, displayTag, owner, nullptr, 0, 0), tempo(variable) {
  setMin(static_cast<float>(KvSystemInfo::kLowestTempo));
  setMax(static_cast<float>(KvSystemInfo::kHighestTempo));
  bind(tempo, getMax(), getMin(), false);
  showNumber = true;
  noBackground = true;
  decimalsWidth = 0;
  sensitivity = 50.0F;  // half a beat a pixel
  setMouseEnabled(true);
}

bool TempoView::onWheel(CPoint& where, float distance, int buttons) {
  if (!getMouseableArea().contains(where)) return false;
  const float parts = (buttons & buttons::kShift) != 0 ? 10.0F : 1.0F;
  const float now = std::round(*tempo * 100.0F) / 100.0F * parts;
  beginEdit();
  moveTo((distance > 0.0F ? std::floor(now) : std::ceil(now)) / parts + distance / parts);
  endEdit();
  return true;
}

LevelView::LevelView(const CRect& rect, CControlListener* told, int viewTag, KvFrame& owner,
                     const CBitmap* litSegments, const float* segments, const float* top)
    : KvControl(rect, told, viewTag, owner),
      lit(litSegments),
      wantedLevel(segments),
      wantedHighest(top) {
  setMouseEnabled(false);
}

void LevelView::draw(CDrawContext& context) {
  using namespace pictures::strip;
  drawnLevel = static_cast<int>(*wantedLevel);
  drawnHighest = static_cast<int>(*wantedHighest);
  const CRect& rect = getViewSize();
  const auto light = [&](int from, int to) {
    const int left = from * kSegmentWidth;
    lit->draw(context, {rect.left + left, rect.top, rect.left + to * kSegmentWidth, rect.bottom},
              {left, 0});
  };
  if (lit == nullptr) return;
  if (drawnLevel > 0) light(0, drawnLevel);
  if (drawnHighest > drawnLevel) light(drawnHighest - 1, drawnHighest);
}

void LevelView::idleStep(int /*flag*/) {
  const bool changed = static_cast<int>(*wantedLevel) != drawnLevel ||
                       static_cast<int>(*wantedHighest) != drawnHighest;
  if (changed) setDirty(true);
}

}  // namespace zum
