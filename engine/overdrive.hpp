// The overdrive before the filter: a clipper and shaper on what lies above 60 Hz, with the low band
// added back, cross-faded with the clean input. Two frames a register.
#pragma once

#include "engine/clock.hpp"
#include "engine/one_pole.hpp"
#include "engine/ramp.hpp"

namespace zum {

class Overdrive {
 public:
  /// The recursions, which a run of frames keeps in registers.
  struct State {
    // the high-pass at 60 Hz: the two frames before
    Float4 in{};
    Float4 out{};  // what lies below 60 Hz
    OnePole lows;  // lanes 0 and 1: low-pass behind the clipper; 2 and 3: bass path, a pair later
  };

  /// Fixed filters of the sample rate.
  void recompute(const KvSystemInfo& clock) ZUM_REALTIME;
  /// `driveSum` 0 to 1.
  void controlPass(float driveSum) ZUM_REALTIME;
  /// Where the frame ramps go.
  float thresholdTarget() const ZUM_REALTIME { return threshold; }
  float makeupTarget() const ZUM_REALTIME { return makeup; }

  State enter() const ZUM_REALTIME { return kept; }
  void leave(const State& run) ZUM_REALTIME { kept = run; }
  /// Forgets what it has heard; settings stay.
  void reset() ZUM_REALTIME { kept = State{}; }

  // `frames` frames in a register, in four pieces.

  /// What lies above 60 Hz, clipped.
  template <int frames>
  Float4 clip(State& run, Float4 x, Float4 limit) const ZUM_REALTIME {
    // The feedback hears the output of two frames back; that is the tuning of this tracker.
    const Float4 y = dcA * run.out + splat(kDenormalGuard) + dcB * x + dcB * lastTwo(run.in, x, 1);
    run.in = lastTwo(run.in, x, frames);
    run.out = lastTwo(run.out, y, frames);
    return smaller(limit, larger(-limit, x - y));
  }
  struct Lows {
    Float4 clip;  // smoothed, times 4
    Float4 bass;
  };
  /// The low-pass behind the clipper, and the bass path on frames that were shaped earlier; one of
  /// them alone where the other one stands still.
  template <int frames>
  Lows smooth(State& run, Float4 clipped, Float4 shaped, bool clipMoves, bool bassMoves) const
      ZUM_REALTIME {
    const Float4 before = run.lows.w;
    const Float4 first = run.lows.next(joinLow(clipped, shaped), lowCoeffs);
    const Float4 second = frames == 2 ? run.lows.next(joinHigh(clipped, shaped), lowCoeffs) : first;
    if (!clipMoves) run.lows.w = joinEnds(before, run.lows.w);
    if (!bassMoves) run.lows.w = joinEnds(run.lows.w, before);
    return {joinLow(first, second), joinHigh(first, second)};
  }
  Float4 shape(Float4 v) const ZUM_REALTIME { return v * (one - absolute(v) * shaperCurve); }
  /// Joined by the low band and cross-faded with the clean input.
  Float4 join(Float4 shaped, Float4 bass, Float4 x, Float4 gain) const ZUM_REALTIME {
    const Float4 driven = gain * shaped + bass;
    const Float4 from = drivenOnly ? driven : x;
    return from + crossfade * ((cleanOnly ? x : driven) - from);
  }

 private:
  // derived from the sample rate
  OnePoleCoeffs lowCoeffs;   // the clip low-pass with a gain of 4 in its k: exact, and cheaper
  Float4 one = splat(1.0F);  // a member for the reason told in OutputStage
  Float4 dcA{};
  Float4 dcB{};

  // set by the control pass
  Float4 shaperCurve{};
  Float4 crossfade{};       // weight of the driven signal
  bool drivenOnly = false;  // cross-fade at its end
  bool cleanOnly = false;   // at its start: whatever the driven path holds is not heard
  float lastDriveSum = -1.0F;
  float threshold = 0.0F;
  float makeup = 0.0F;

  State kept;
};

}  // namespace zum
