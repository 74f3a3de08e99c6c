// The two ways in which a value moves: a line over one control block, advanced every frame, and a
// line over a count of control passes. Used by every stage that smooths.
#pragma once

#include <array>
#include <cstdint>

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// Frames of a run: all from one control pass to the next.
inline constexpr std::size_t kRunFrames = 16;
/// Frames go through the chain in pairs, {left, right, left, right}.
inline constexpr std::size_t kRunPairs = kRunFrames / 2;
using PairLine = std::array<Float4, kRunPairs>;

/// Four lines, one a lane, that reach their targets in one control block. They are laid out for the
/// frames of a run, so that the frame loop keeps none of them in a register.
class FrameRamps {
 public:
  /// `controlStep` is 1 / frames of a control block. Control pass only.
  void aim(Float4 targets, float controlStep) ZUM_REALTIME {
    constexpr float kStill = 1.0000000116860974e-07F;
    step = (targets - current) * splat(controlStep);
    const Int4 isStill = (step > splat(-kStill)) & (step < splat(kStill));
    const Float4 next = select(isStill, targets, current);
    step = select(isStill, splat(0.0F), step);
    moves = anyLaneSet(~isStill);
    isLaidOut = isLaidOut && !moves && !anyLaneSet(next != current);
    current = next;
  }

  /// Lays out the next `frames`, within one control block. What rests is laid out once.
  void advance(std::size_t frames) ZUM_REALTIME {
    if (isLaidOut) return;
    for (std::size_t i = 0; i < kRunFrames; i += 2) {
      const Float4 first = current + step;
      const Float4 second = first + step;
      at[0][i / 2] = __builtin_shufflevector(first, second, 0, 0, 4, 4);
      at[1][i / 2] = __builtin_shufflevector(first, second, 1, 1, 5, 5);
      at[2][i / 2] = __builtin_shufflevector(first, second, 2, 2, 6, 6);
      at[3][i / 2] = __builtin_shufflevector(first, second, 3, 3, 7, 7);
      if (i + 2 >= frames && moves) {
        current = i + 2 == frames ? second : first;
        return;
      }
      current = second;
    }
    isLaidOut = true;
  }

  std::array<PairLine, 4> at{};  // value in each frame, by ramp

 private:
  Float4 current{};
  Float4 step{};
  bool moves = false;
  bool isLaidOut = true;  // all of `at` holds `current`, which rests
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
