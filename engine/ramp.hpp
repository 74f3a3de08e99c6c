// The two ways in which a value moves: a line over one control block, advanced every frame, and a
// line over a count of control passes. Used by every stage that smooths.
#pragma once

#include <array>
#include <cstdint>

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// The longest run of frames between two control passes.
inline constexpr std::int32_t kRunFrames = 16;

/// A line that reaches its target in one control block, laid out for the frames of a run: the
/// frame loop reads `at[i]` and keeps no ramp in a register.
class FrameRamp {
 public:
  /// `controlStep` is 1 / frames of a control block. Control pass only.
  void aim(float target, float controlStep) ZUM_REALTIME {
    constexpr float kStill = 1.0000000116860974e-07F;
    step = (target - current) * controlStep;
    if (step > -kStill && step < kStill) {
      level = level && current == target;
      step = 0.0F;
      current = target;
    } else {
      level = false;
    }
  }

  /// Moves over a run of at most kRunFrames frames.
  void advance(std::int32_t frames) ZUM_REALTIME {
    if (level) return;
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
      current = current + step;
      at[i] = splat(current);
    }
    level = step == 0.0F && frames == kRunFrames;
  }

  std::array<Float4, kRunFrames> at{};  // value in each frame of the run, the same in all lanes

 private:
  float current = 0.0F;
  float step = 0.0F;
  bool level = true;  // `at` holds `current` throughout
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
