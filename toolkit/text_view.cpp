#include "toolkit/text_view.hpp"

namespace zum {

void KvTextView::setText(std::string line) {
  constexpr std::size_t kMostBytes = 256;  // more than fits anywhere
  if (line.size() > kMostBytes) line.erase(0, line.size() - kMostBytes);
  if (line == text) return;
  text = std::move(line);
  setDirty(true);
}

void KvTextView::draw(CDrawContext& context) {
  context.setFont(font, size);
  context.setFontColor(textColor);
  const bool fits = context.getStringWidth(text) <= getViewSize().width();
  context.drawString(text, getViewSize(), false, fits ? TextAlign::left : TextAlign::right);
}

}  // namespace zum
