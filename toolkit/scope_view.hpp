// A trace of a ring that the audio thread writes: input level, filter, clipping.
#pragma once

#include "toolkit/base_control.hpp"
#include "toolkit/buffer_draw.hpp"

namespace zum {

/// [main] Presses fall through to what lies below.
class KvScopeView final : public KvControl {
 public:
  KvScopeView(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
              KvBufferDraw::Style traceStyle);

  /// `samples` of `length` and the place that was written last outlive the view.
  void setRing(const float* samples, const std::int32_t* writeIndex, int length) {
    canvas.setRing(samples, writeIndex, length);
  }
  void setColors(CColor trace, CColor shade, CColor highlight) {
    canvas.setColors(trace, shade, highlight);
  }

  void draw(CDrawContext& context) override { drawRect(context, getViewSize()); }
  void drawRect(CDrawContext& context, const CRect& area) override;
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }
  void idleStep(int flag) override;

 private:
  ~KvScopeView() override = default;
  void render();

  KvBufferDrawAuto canvas;
  KvBufferDraw::Style style;
  bool initialised = false;
  bool pending = false;  // rendered, not drawn yet
};

}  // namespace zum
