// The two ways in which a value moves: a line over one control block, advanced every frame, and a
// line over a count of control passes. Used by every stage that smooths.
#pragma once

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// A line that reaches its target in one control block. All four lanes hold the same value.
struct FrameRamp {
  Float4 current{};
  Float4 step{};

  /// `controlStep` is 1 / frames of a control block. Control pass only.
  void aim(float target, float controlStep) ZUM_REALTIME {
    constexpr float kStill = 1.0000000116860974e-07F;
    const float move = (target - current[0]) * controlStep;
    if (move > -kStill && move < kStill) {
      step = splat(0.0F);
      current = splat(target);
    } else {
      step = splat(move);
    }
  }
};

/// A line that reaches its target in `durationMs`, counted in control passes.
struct TickRamp {
  float current = 0.0F;
  float target = 0.0F;
  float step = 0.0F;
  float ticksLeft = 0.0F;

  /// Takes the pass's input and makes this pass's move. True if the value moved.
  bool advance(float input, float durationMs, float ticksPerMs) ZUM_REALTIME {
    if (input != target) {
      target = input;
      ticksLeft = durationMs * ticksPerMs;
      step = (-1.0F / ticksLeft) * (target - current);
    }
    if (target == current) return false;
    current = current - step;
    ticksLeft = ticksLeft - 1.0F;
    if (ticksLeft <= 0.0F) {
      current = target;
      step = 0.0F;
    }
    return true;
  }
};

}  // namespace zum
