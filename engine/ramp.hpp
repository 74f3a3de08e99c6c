// The two ways in which a value moves: a line over one control block, advanced every frame, and a
// line over a count of control passes. Used by every stage that smooths.
#pragma once

#include <array>
#include <cstdint>

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// Frames that are worked on as one piece, a few control blocks.
inline constexpr std::size_t kChunkFrames = 64;

/// A line that reaches its target in one control block, laid out for the frames of a chunk: the
/// frame loop reads `at[i]` and keeps no ramp in a register.
class FrameRamp {
 public:
  /// `controlStep` is 1 / frames of a control block. Control pass only.
  void aim(float target, float controlStep) ZUM_REALTIME {
    constexpr float kStill = 1.0000000116860974e-07F;
    step = (target - current) * controlStep;
    if (step > -kStill && step < kStill) {
      isFlat = isFlat && current == target;
      step = 0.0F;
      current = target;
    } else {
      isFlat = false;
    }
  }

  /// At the start of a chunk. A ramp at rest is laid out once and then left alone.
  void beginChunk() ZUM_REALTIME {
    if (isFlat || step != 0.0F) return;
    at.fill(splat(current));
    isFlat = true;
  }

  /// Lays out the chunk's frames `from` to `to`, within one control block.
  void advance(std::size_t from, std::size_t to) ZUM_REALTIME {
    if (isFlat) return;
    for (std::size_t i = from; i < to; ++i) {
      current = current + step;
      at[i] = splat(current);
    }
  }

  std::array<Float4, kChunkFrames> at{};  // value in each frame, the same in all lanes

 private:
  float current = 0.0F;
  float step = 0.0F;
  bool isFlat = true;  // all of `at` holds `current`
};

/// A line that reaches its target in `durationMs`, counted in control passes.
struct TickRamp {
  float current = 0.0F;
  float target = 0.0F;
  float step = 0.0F;
  float ticksLeft = 0.0F;

  /// Moves one pass on towards `input`. True if the value moved.
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
