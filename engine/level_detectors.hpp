// The two level detectors on the dry input, the only modulator work of every frame: the envelope
// follower's in lane 0 and the LFO trigger's in lane 1, where they have the same shape.
#pragma once

#include "engine/svf.hpp"

namespace zum {

class LevelDetectors {
 public:
  /// The recursions of the detectors, which a run of frames keeps in registers.
  struct State {
    SvfStage efBand;    // follower: band limit
    Float4 trigBand{};  // trigger: fixed band
    Float4 trigLow{};   // and low-pass
    Float4 peak{};      // both: peak hold with a straight fall
    Float4 decay{};     // how far the last peak falls in a frame
    Float4 smooth{};    // follower: smoothing filter
  };

  // settings, made in the control pass
  void setFollowerBand(SvfCoeffs coeffs, bool isHeard) ZUM_REALTIME {
    efCoeffs.set(coeffs);
    efFilterIsBand = splat(isHeard ? -1 : 0);
  }
  /// The part of a peak by which it falls in a frame: every peak takes the same time to reach 0.
  void setFollowerDecay(float rate) ZUM_REALTIME { decayRate[0] = rate; }
  void setTriggerDecay(float rate) ZUM_REALTIME { decayRate[1] = rate; }
  /// `k` of the smoothing one-pole.
  void setSmoothing(float k) ZUM_REALTIME {
    smoothK = k;
    smoothInv = splat(1.0F / (k + 1.0F));
    smoothMinus = splat(k - 1.0F);
  }

  State enter() const ZUM_REALTIME { return kept; }
  /// `before` is the smoothing filter's state ahead of the last frame.
  void leave(const State& run, Float4 before) ZUM_REALTIME {
    kept = run;
    smoothBefore = before[0];
  }

  void reset() ZUM_REALTIME {
    kept = State{};
    smoothBefore = 0.0F;
  }
  /// A sum that every recursion feeds: once one of them is not finite, it never is again.
  static Float4 ends(const State& run) ZUM_REALTIME {
    return absolute(run.efBand.high) + absolute(run.trigLow) + absolute(run.smooth);
  }
  bool isFinite() const ZUM_REALTIME {
    return areFinite(kept.efBand.high) && areFinite(kept.trigLow) && areFinite(kept.smooth);
  }

  // One frame, in two pieces. No absolute value is taken: what is negative is simply below the
  // peak.

  /// The two levels of a frame; `dry` is left and right twice, `dither` changes its sign every
  /// frame and keeps the trigger's filter awake.
  Float4 listen(State& run, Float4 dry, Float4 dither) const ZUM_REALTIME {
    const Float4 x = larger(dry, __builtin_shufflevector(dry, dry, 1, 0, 3, 2));
    const Float4 band = run.efBand.next(x, efCoeffs).band;
    const Float4 trigHigh = x + dither - run.trigBand - run.trigLow;
    run.trigBand = trigHigh * splat(kTriggerTuning) + run.trigBand;
    run.trigLow = splat(kTriggerTuning) * run.trigBand + run.trigLow;
    return __builtin_shufflevector(select(efFilterIsBand, band, x), run.trigLow, 0, 4, 1, 5);
  }

  /// Peak and smoothing behind it; gives the smoothing filter's state.
  Float4 hold(State& run, Float4 level) const ZUM_REALTIME {
    run.peak = larger(splat(0.0F), run.peak - run.decay);
    run.decay = select(run.peak < level, decayRate * level, run.decay);
    run.peak = larger(level, run.peak);
    run.smooth = (run.peak - run.smooth * smoothMinus) * smoothInv + splat(kDenormalGuard);
    return run.smooth;
  }

  /// The level of the follower in the last frame, for the control pass.
  float efSmoothed() const ZUM_REALTIME { return (kept.smooth[0] + smoothBefore) * smoothK; }
  float trigPeak() const ZUM_REALTIME { return kept.peak[1]; }

 private:
  static constexpr float kTriggerTuning = 0.10000000149011612F;

  SvfLanes efCoeffs;
  Int4 efFilterIsBand{};
  Float4 decayRate{};
  Float4 smoothInv{};
  Float4 smoothMinus{};
  float smoothK = 0.0F;
  float smoothBefore = 0.0F;
  State kept;
};

}  // namespace zum
