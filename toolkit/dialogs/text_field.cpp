#include "toolkit/dialogs/text_field.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

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
  const bool replaces = std::exchange(isSelected, false);
  if (replaces && (key.virt == keys::kBack || key.virt == keys::kDelete)) {
    text.clear();
  } else if (key.virt == keys::kBack) {
    const char* const last = g_utf8_find_prev_char(text.data(), text.data() + text.size());
    text.resize(last != nullptr ? static_cast<std::size_t>(last - text.data()) : 0);
  } else if (const auto code = static_cast<gunichar>(key.character);
             g_unichar_validate(code) != FALSE && g_unichar_iscntrl(code) == FALSE &&
             (key.modifier & kCommands) == 0) {
    if (replaces) text.clear();
    std::array<char, 6> bytes{};
    text.append(bytes.data(), static_cast<std::size_t>(g_unichar_to_utf8(code, bytes.data())));
  } else {
    isSelected = replaces;
    return false;
  }
  setDirty(true);
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
