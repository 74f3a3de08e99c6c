#include "toolkit/dialogs/text_field.hpp"

#include <algorithm>

#include "toolkit/dialogs/dialog_look.hpp"
#include "toolkit/view/utf8_text.hpp"

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
  constexpr std::uint8_t kCommands = keys::kControlBit | keys::kAltBit | keys::kCommandBit;
  if (key.virt == keys::kBack) {
    dropLastCharacter(text);
  } else if (key.character >= ' ' && key.character != 0x7F && (key.modifier & kCommands) == 0) {
    text += utf8Character(static_cast<char32_t>(key.character));
  } else {
    return false;
  }
  setDirty(true);
  return true;
}

// The end is what is seen of a text that is too long.
void TextField::draw(CDrawContext& context) {
  const CRect& size = getViewSize();
  context.setFillColor(dialog_look::kField);
  context.setFrameColor(dialog_look::kEdge);
  context.drawRect(size, DrawStyle::filledAndStroked);
  context.setFont(font);
  context.setFontColor(dialog_look::kText);
  const CRect inside{size.left + kIndent, size.top, size.right - kIndent, size.bottom};
  const int width = context.getStringWidth(text);
  const bool fits = width < inside.width() - kCursorSpace;
  context.drawString(text, {inside.left, inside.top, inside.right - kCursorSpace, inside.bottom},
                     false, fits ? TextAlign::left : TextAlign::right);
  if (!hasCursor) return;
  const int cursor = fits ? inside.left + width + 1 : inside.right - 1;
  context.setFrameColor(dialog_look::kText);
  context.drawLine({cursor, inside.top + 4}, {cursor, inside.bottom - 5});
}

}  // namespace zum
