// The two level detectors on the dry input, the only modulator work of every frame: the envelope
// follower's in lane 0 and the LFO trigger's in lane 1, where they have the same shape.
#pragma once

#include "engine/svf.hpp"

namespace zum {

class LevelDetectors {
 public:
  /// The recursions of the detectors, which a run of frames keeps in registers.
  struct State {
    SvfStage efBand;        // follower: band limit
    Float4 trigBand{};      // trigger: fixed band
    Float4 trigLow{};       // and low-pass
    Float4 peak{};          // both: peak hold with a straight fall
    Float4 decay{};         // how far the last peak falls in a frame
    Float4 smooth{};        // follower: smoothing filter
    Float4 smoothBefore{};  // a frame ago
  };

  // settings, made in the control pass
  void setFollowerBand(SvfCoeffs coeffs, bool isHeard) ZUM_REALTIME {
    efCoeffs.set(coeffs);
    efFilterIsBand = isHeard;
  }
  /// The part of a peak by which it falls in a frame: every peak takes the same time to reach 0.
  void setFollowerDecay(float rate) ZUM_REALTIME { decayRate[0] = decayRate[2] = rate; }
  void setTriggerDecay(float rate) ZUM_REALTIME { decayRate[1] = decayRate[3] = rate; }
  /// `k` of the smoothing one-pole.
  void setSmoothing(float k) ZUM_REALTIME {
    smoothK = k;
    smoothInv = splat(1.0F / (k + 1.0F));
    smoothMinus = splat(k - 1.0F);
  }

  /// Of the follower's band, which goes through beside the filter.
  const SvfLanes& bandCoeffs() const ZUM_REALTIME { return efCoeffs; }

  State enter() const ZUM_REALTIME { return kept; }
  void leave(const State& run) ZUM_REALTIME { kept = run; }
  void reset() ZUM_REALTIME { kept = State{}; }
  bool isFinite() const ZUM_REALTIME {
    return areFinite(kept.efBand.high) && areFinite(firstLane(kept.trigLow)) &&
           areFinite(lowTwice(kept.smooth));
  }

  // One or two frames, a frame a lane, in pieces. No absolute value is taken: what is negative is
  // simply below the peak.

  /// The trigger's level. `dither` changes its sign every frame and keeps the filter awake.
  template <int frames>
  static Float4 trigger(State& run, Float4 heard, Float4 dither) ZUM_REALTIME {
    Float4 lows[2];
    const Float4 woken = heard + dither;
    for (int i = 0; i < frames; ++i) {
      const Float4 trigHigh = (i == 0 ? woken : secondLane(woken)) - run.trigBand - run.trigLow;
      run.trigBand = trigHigh * splat(kTriggerTuning) + run.trigBand;
      run.trigLow = splat(kTriggerTuning) * run.trigBand + run.trigLow;
      lows[i] = run.trigLow;
    }
    return interleaveLow(lows[0], lows[frames - 1]);
  }
  /// Peak and smoothing behind them.
  template <int frames>
  void hold(State& run, Float4 heard, Float4 bands, Float4 triggers) const ZUM_REALTIME {
    const Float4 levels = interleaveLow(efFilterIsBand ? bands : heard, triggers);
    const Float4 falls = decayRate * levels;
    for (int i = 0; i < frames; ++i) {
      const Float4 level = i == 0 ? levels : highTwice(levels);
      run.peak = larger(splat(0.0F), run.peak - run.decay);
      run.decay = select(run.peak < level, i == 0 ? falls : highTwice(falls), run.decay);
      run.peak = larger(level, run.peak);
      run.smoothBefore = run.smooth;
      run.smooth = (run.peak - run.smooth * smoothMinus) * smoothInv + splat(kDenormalGuard);
    }
  }

  /// The level of the follower in the last frame, for the control pass.
  float efSmoothed() const ZUM_REALTIME {
    return (kept.smooth[0] + kept.smoothBefore[0]) * smoothK;
  }
  float trigPeak() const ZUM_REALTIME { return kept.peak[1]; }

 private:
  static constexpr float kTriggerTuning = 0.10000000149011612F;

  SvfLanes efCoeffs;
  bool efFilterIsBand = false;
  Float4 decayRate{};
  Float4 smoothInv{};
  Float4 smoothMinus{};
  float smoothK = 0.0F;
  State kept;
};

}  // namespace zum
