#include "toolkit/dialogs/text_field.hpp"

#include <algorithm>
#include <utility>

#include "toolkit/dialogs/typed_text.hpp"

namespace zum {
namespace {

constexpr int kIndent = 6;  // pixels
constexpr int kCursorSpace = 3;

}  // namespace

void TextField::setText(std::string fresh) {
  text = std::move(fresh);
  setDirty(true);
}

bool TextField::type(const WindowKey& key) {
  const bool empties = isSelected && (key.virt == keys::kBack || key.virt == keys::kDelete);
  std::string fresh = isSelected ? std::string() : text;
  if (!empties && !typeInto(fresh, key)) return false;
  isSelected = false;
  setText(std::move(fresh));
  return true;
}

// Of a text that is too long its end is shown. The cursor stands at the end, which is on the left
// in scripts that are read from the right.
void TextField::draw(CDrawContext& context) {
  const CRect& size = getViewSize();
  context.setFillColor(isWrong ? look.wrong : look.ground);
  context.setFrameColor(look.edge);
  context.drawRect(size, DrawStyle::filledAndStroked);
  context.setFont(font, fontSize);
  context.setFontColor(isWrong ? kWhiteColor : look.text);
  const CRect inside{size.left + kIndent, size.top, size.right - kIndent, size.bottom};
  const int width = context.getStringWidth(text);
  const bool fits = width < inside.width() - kCursorSpace;
  if (isSelected) {
    context.setFillColor(look.selection);
    context.drawRect({inside.left - 1, inside.top + 3,
                      std::min(inside.left + width + 1, inside.right), inside.bottom - 3},
                     DrawStyle::filled);
  }
  context.drawString(text, {inside.left, inside.top, inside.right - kCursorSpace, inside.bottom},
                     false, fits ? TextAlign::left : TextAlign::right);
  if (!hasCursor || isSelected) return;
  const int end = context.getStringEnd(text);
  const int cursor = end == 0 ? inside.left - 1 : fits ? inside.left + end + 1 : inside.right - 1;
  context.setFrameColor(look.text);
  context.drawLine({cursor, inside.top + 4}, {cursor, inside.bottom - 5});
}

}  // namespace zum
