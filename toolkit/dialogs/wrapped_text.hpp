// Text in several lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "toolkit/view/view.hpp"

namespace zum {

/// Lines that are no wider than `width` logical pixels where they are drawn at `scale`: cut at line
/// ends, between words, and inside of a word that is too wide, as paths are.
std::vector<std::string> wrapText(std::string_view text, const CFontDesc& font, int width,
                                  const Scale& scale = {});
/// More of a text is not shown, it may come from a file: the last line then ends in an ellipsis.
inline constexpr std::size_t kMostLines = 30;

class WrappedText final : public CView {
 public:
  static constexpr int kLineHeight = 16;  // pixels

  /// The font outlives it.
  WrappedText(const CRect& rect, std::vector<std::string> shownLines, const CFontDesc* textFont)
      : CView(rect), lines(std::move(shownLines)), font(textFont) {}

  void drawRect(CDrawContext& context, const CRect& area) override;

 private:
  ~WrappedText() override = default;

  std::vector<std::string> lines;
  const CFontDesc* font;
};

}  // namespace zum
