// A line of text over whatever lies below it.
#pragma once

#include <string>

#include "toolkit/base_control.hpp"

namespace zum {

/// [main] Presses fall through to what lies below.
class KvTextView final : public KvControl {
 public:
  /// `textSize` in pixels.
  KvTextView(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
             int textSize)
      : KvControl(rect, controlListener, controlTag, owner), size(textSize) {
    setMouseEnabled(false);
  }

  /// Of a line that is too long the end is shown, as of a path.
  void setText(std::string line);
  const std::string& getText() const { return text; }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }

 private:
  ~KvTextView() override = default;

  std::string text;
  int size;
};

}  // namespace zum
