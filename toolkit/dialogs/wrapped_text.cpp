#include "toolkit/dialogs/wrapped_text.hpp"

#include <pango/pango.h>

#include "toolkit/dialogs/dialog_look.hpp"

namespace zum {
std::vector<std::string> wrapText(std::string_view text, const CFontDesc& font, int width,
                                  const Scale& scale) {
  constexpr std::size_t kMostBytes = 8192;
  PangoLayout* const layout = pango_layout_copy(font.layoutAt(font.getSize() * scale.factor()));
  pango_layout_set_single_paragraph_mode(layout, FALSE);
  pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_NONE);
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
  pango_layout_set_width(layout, scale.rounded(width) * PANGO_SCALE);
  setLayoutText(layout, std::string(text.substr(0, kMostBytes)));

  std::vector<std::string> lines;
  const std::string_view whole = pango_layout_get_text(layout);
  const GSList* next = pango_layout_get_lines_readonly(layout);
  for (; next != nullptr && lines.size() < kMostLines; next = next->next) {
    const auto* const line = static_cast<const PangoLayoutLine*>(next->data);
    lines.emplace_back(whole.substr(static_cast<std::size_t>(line->start_index),
                                    static_cast<std::size_t>(line->length)));
    if (lines.back().ends_with(' ')) lines.back().pop_back();
  }
  if (next != nullptr) lines.back() += "\xE2\x80\xA6";  // an ellipsis
  g_object_unref(layout);
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
