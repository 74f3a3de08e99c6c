// Cutoff and vowel position on their way to the filters: curves, cube law and 24 ms ramps. First
// of the filter's steps in the control pass.
#pragma once

#include "engine/clock.hpp"
#include "engine/ramp.hpp"

namespace zum {

/// Length of every frequency, position and delay ramp.
inline constexpr float kFilterGlideMs = 24.0F;

/// The bend that both banks put on resonance before it becomes damping or feedback.
class ResonanceCurve {
 public:
  /// `sum` 0 to 1.
  float of(float sum) ZUM_REALTIME;

 private:
  float lastSum = 0.0F;  // kept with its result: a power is costly, and most passes move nothing
  float lastCurve = 0.0F;
};

class FilterFrequency {
 public:
  /// The bent knob: 0.11 to 0.98.
  static constexpr float curved(float sum) ZUM_REALTIME {
    return (sum + 0.12999999523162842F) * 0.8700000047683716F;
  }
  /// Hz, by the bent knob.
  static constexpr float hertzOf(float bent) ZUM_REALTIME { return bent * bent * bent * 16011.0F; }

  /// Both sums 0 to 1. True if the cutoff moved in this pass.
  bool controlPass(float cutoffSum, float vowelPositionSum, bool vowelBank, float ticksPerMs)
      ZUM_REALTIME;

  float cutoffHz() const ZUM_REALTIME { return cutoff.current; }
  /// The chosen curve, smoothed and not cubed: where the vowel morph stands.
  float positionRamped() const ZUM_REALTIME { return position.current; }

 private:
  TickRamp cutoff;    // Hz
  TickRamp position;  // 0.11 to 0.98
};

}  // namespace zum
