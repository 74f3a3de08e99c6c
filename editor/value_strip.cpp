#include "editor/value_strip.hpp"

#include <array>

#include "editor/palette_color.hpp"

namespace zum {
namespace {

constexpr int kEdge = 2;  // of the glass, pixels as all here
constexpr int kSide = 7;
constexpr int kSpace = 5;
constexpr int kArrow = 9;
constexpr int kSmallest = 9;  // letters; what is longer goes without its name

struct Part {
  const std::string& text;
  CColor color;
};

/// Without the unit that the second number repeats.
std::string withoutUnit(const std::string& value, const std::string& moved) {
  const std::size_t unit = value.rfind(' ');
  const bool counts = value.find_first_of("0123456789") != std::string::npos;
  const bool same = unit != std::string::npos && counts && value.find('/') == std::string::npos &&
                    moved.ends_with(value.substr(unit));
  return same ? value.substr(0, unit) : value;
}

/// The ground of the strip's picture, inside of its edge.
void drawGlass(CDrawContext& context, const CRect& rect) {
  const int rows = rect.height();
  for (int row = 0; row < rows; ++row) {
    const auto shade = [row, rows](int top, int bottom) {
      return static_cast<std::uint8_t>(top + (bottom - top) * row / rows);
    };
    context.setFillColor({shade(8, 19), shade(7, 17), shade(7, 16), 255});
    context.drawRect({rect.left, rect.top + row, rect.right, rect.top + row + 1},
                     DrawStyle::filled);
  }
}

void drawArrow(CDrawContext& context, int left, int middle) {
  const int tip = left + kArrow - 1;
  context.drawLine({left, middle}, {tip, middle});
  context.drawLine({tip - 2, middle - 2}, {tip, middle});
  context.drawLine({tip - 2, middle + 2}, {tip, middle});
}

}  // namespace

void ValueStrip::idleStep(int /*flag*/) {
  Reading now = source();
  if (now == shown) return;
  shown = std::move(now);
  setDirty(true);
}

// The name on the left, what the modulators make of it on the right: so nothing wanders while the
// numbers run.
void ValueStrip::draw(CDrawContext& context) {
  if (shown.name.empty()) return;
  const CRect& size = getViewSize();
  drawGlass(context, size.grownBy(-kEdge));
  const std::string value =
      shown.moved.empty() ? shown.value : withoutUnit(shown.value, shown.moved);
  const CColor green = colorOf(pictures::kReadoutGreen);
  const CColor dim = colorOf(pictures::kReadoutGreen.towards(pictures::kBlack, 0.3));
  const std::array<Part, 3> parts = {
      Part{shown.name, dim}, {shown.by, shown.byColor}, {value, green}};
  const auto fitsAt = [&](int fontSize) {
    context.setFont(font, fontSize);
    int width = shown.moved.empty() ? 0 : kArrow + kSpace + context.getStringWidth(shown.moved);
    for (const Part& part : parts) {
      if (!part.text.empty()) width += context.getStringWidth(part.text) + kSpace;
    }
    return width - (shown.moved.empty() ? kSpace : 0) <= size.width() - 2 * kSide;
  };
  int fontSize = 11;
  bool fits = fitsAt(fontSize);
  while (!fits && fontSize > kSmallest) fits = fitsAt(--fontSize);
  CRect place{size.left + kSide, size.top, size.right - kSide, size.bottom};
  for (const Part& part : parts) {
    if (part.text.empty() || (!fits && &part == parts.data())) continue;
    context.setFontColor(part.color);
    context.drawString(part.text, place, false, TextAlign::left);
    place.left += context.getStringWidth(part.text) + kSpace;
  }
  if (shown.moved.empty()) return;
  const int from = std::max(place.right - context.getStringWidth(shown.moved), place.left);
  context.setFrameColor(colorOf(pictures::kRose));
  if (from - kSpace - kArrow >= place.left - kSpace) {
    drawArrow(context, from - kSpace + 1 - kArrow, (size.top + size.bottom) / 2);
  }
  context.setFontColor(colorOf(pictures::kRose));
  context.drawString(shown.moved, {from, place.top, place.right, place.bottom}, false,
                     TextAlign::left);
}

}  // namespace zum
