#include "toolkit/dialogs/wrapped_text.hpp"

#include "toolkit/dialogs/dialog_look.hpp"

namespace zum {
namespace {

// The most characters of a word that fit, one at least.
std::size_t fittingBytes(std::string_view word, const CDrawContext& context, int width) {
  std::size_t fitting = 0;
  for (std::size_t end = 1; end <= word.size(); ++end) {
    const bool isWhole = end == word.size() || (word[end] & 0xC0) != 0x80;  // UTF-8
    if (!isWhole) continue;
    if (fitting > 0 && context.getStringWidth(std::string(word.substr(0, end))) > width) break;
    fitting = end;
  }
  return fitting;
}

void wrapLine(std::string_view line, const CDrawContext& context, int width,
              std::vector<std::string>& lines) {
  std::string filled;
  while (!line.empty() && lines.size() < kMostLines) {
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    std::string longer = filled;
    if (!filled.empty()) longer += ' ';
    longer += word;
    if (!filled.empty() && context.getStringWidth(longer) > width) {
      lines.push_back(std::move(filled));
      longer = word;
    }
    while (lines.size() < kMostLines && context.getStringWidth(longer) > width) {
      const std::size_t fitting = fittingBytes(longer, context, width);
      if (fitting == longer.size()) break;
      lines.push_back(longer.substr(0, fitting));
      longer.erase(0, fitting);
    }
    filled = std::move(longer);
  }
  lines.push_back(std::move(filled));
}

}  // namespace

std::vector<std::string> wrapText(std::string_view text, const CFontDesc* font, int width) {
  cairo_surface_t* const ruler = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
  std::vector<std::string> lines;
  constexpr std::size_t kMostBytes = 8192;
  text = text.substr(0, kMostBytes);
  {
    CDrawContext context(ruler, {0, 0, 1, 1});
    context.setFont(font);
    for (bool more = true; more && lines.size() < kMostLines;) {
      const std::size_t end = text.find('\n');
      more = end != std::string_view::npos;
      wrapLine(text.substr(0, end), context, width, lines);
      text.remove_prefix(more ? end + 1 : text.size());
    }
  }
  cairo_surface_destroy(ruler);
  return lines;
}

void WrappedText::drawRect(CDrawContext& context, const CRect& /*area*/) {
  context.setFont(font);
  context.setFontColor(dialog_look::kText);
  CRect line = getViewSize();
  line.bottom = line.top + kLineHeight;
  for (const std::string& text : lines) {
    context.drawString(text, line, false, TextAlign::left);
    line = line.movedBy(0, kLineHeight);
  }
}

}  // namespace zum
