// A row of dots, each lit while what it stands for is there: beside a knob, which modulators move
// it.
#pragma once

#include <vector>

#include "toolkit/base_control.hpp"

namespace zum {

/// [main] Presses fall through to what lies below.
class KvMarksView final : public KvControl {
 public:
  static constexpr int kDot = 4;    // pixels
  static constexpr int kPitch = 6;  // pixels

  /// Lit while the variable, which outlives the view, is not 0.
  struct Mark {
    const float* variable;
    CColor color;
  };

  /// 32 marks at most, from the left end of the rectangle.
  KvMarksView(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
              std::vector<Mark> shownMarks)
      : KvControl(rect, controlListener, controlTag, owner), marks(std::move(shownMarks)) {
    setMouseEnabled(false);
  }

  /// A bit for each, the first one lowest.
  std::uint32_t litMarks() const;

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }
  void idleStep(int flag) override;

 private:
  ~KvMarksView() override = default;

  std::vector<Mark> marks;
  std::uint32_t drawnLit = 0;  // as of the last tick
  bool wasDrawn = false;
};

}  // namespace zum
