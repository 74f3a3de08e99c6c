#include "toolkit/text_view.hpp"

namespace zum {
namespace {

constexpr const char* kCut = "\u2026";
constexpr std::size_t kMostBytes = 256;  // more than fits anywhere

/// What follows the first character (UTF-8).
std::string withoutFirst(const std::string& text) {
  std::size_t second = 1;
  while (second < text.size() && (text[second] & 0xC0) == 0x80) ++second;
  return text.substr(second);
}

}  // namespace

void KvTextView::setText(std::string line) {
  if (line.size() > kMostBytes) line.erase(0, line.size() - kMostBytes);
  if (line == text) return;
  text = std::move(line);
  setDirty(true);
}

void KvTextView::draw(CDrawContext& context) {
  context.setFont(font, size);
  context.setFontColor(textColor);
  std::string shown = text;
  for (std::string rest = text;
       !rest.empty() && context.getStringWidth(shown) > getViewSize().width();) {
    rest = withoutFirst(rest);
    shown = kCut + rest;
  }
  context.drawString(shown, getViewSize(), false, TextAlign::left);
}

}  // namespace zum
