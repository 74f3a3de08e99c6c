// The wave that is chosen, as a picture that is drawn when the choice changes.
#pragma once

#include <array>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/buffer_draw.hpp"

namespace zum {

/// [main] Presses fall through to what lies below.
class KvWaveFormView final : public KvControl {
 public:
  static constexpr int kPoints = 1024;
  using Waves = std::array<const float*, 5>;  // of so many points from -1 to 1

  /// The variables choose the wave: the style, free at 0, and the number of the wave. They and the
  /// waves outlive the view.
  KvWaveFormView(const CRect& rect, CControlListener* controlListener, int controlTag,
                 KvFrame& owner, const Waves& fiveWaves, const float* styleVariable,
                 const float* waveVariable);
  /// What is drawn in the synced style, at first the same.
  void setSyncedWaves(const Waves& fiveWaves) { syncedWaves = fiveWaves; }

  void setColors(CColor trace, CColor shade, CColor highlight) {
    canvas.setColors(trace, shade, highlight);
  }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }
  void idleStep(int flag) override;

  bool frozen = false;  // keeps its picture

 private:
  ~KvWaveFormView() override = default;
  void render();

  KvBufferDraw canvas;
  Waves freeWaves;
  Waves syncedWaves;
  // What is no number reads as -1, which is no wave.
  BoundValue formA;  // style
  BoundValue formB;  // wave
  float drawnA = -1.0F;
  float drawnB = -1.0F;
};

}  // namespace zum
