// The overdrive before the filter: a clipper and shaper on what lies above 60 Hz, with the low band
// added back, cross-faded with the clean input. Left and right in lanes 0 and 1.
#pragma once

#include "engine/clock.hpp"
#include "engine/one_pole.hpp"
#include "engine/ramp.hpp"

namespace zum {

class Overdrive {
 public:
  /// The short recursions of a run, for registers.
  struct State {
    OnePole clipLowpass;
    OnePole bassPath;
  };
  /// The long ones, for memory, with what is left of the run before in front.
  struct Lines {
    std::array<Float4, kRunFrames + 1> in;   // dcB times the input
    std::array<Float4, kRunFrames + 2> out;  // what lies below 60 Hz
  };

  /// Fixed filters of the sample rate.
  void recompute(const KvSystemInfo& clock) ZUM_REALTIME;
  /// `driveSum` 0 to 1.
  void controlPass(float driveSum, float controlStep) ZUM_REALTIME;

  State enter(Lines& lines, std::int32_t frames) ZUM_REALTIME {
    threshold.advance(frames);
    makeup.advance(frames);
    lines.in[0] = dcBInPrev;
    lines.out[0] = dcOutPrev2;
    lines.out[1] = dcOutPrev1;
    return kept;
  }
  void leave(const State& run, const Lines& lines, std::int32_t frames) ZUM_REALTIME {
    kept = run;
    const auto n = static_cast<std::size_t>(frames);
    dcBInPrev = lines.in[n];
    dcOutPrev2 = lines.out[n];
    dcOutPrev1 = lines.out[n + 1];
  }

  /// First half of frame `i` of a run: what lies above 60 Hz, clipped and smoothed, times 4.
  Float4 clip(State& run, Lines& lines, Float4 x, std::size_t i) const ZUM_REALTIME {
    // The feedback hears the output of two frames back; that is the tuning of this tracker.
    const Float4 bx = dcB * x;
    const Float4 y = dcA * lines.out[i] + splat(kDenormalGuard) + bx + lines.in[i];
    lines.in[i + 1] = bx;
    lines.out[i + 2] = y;
    const Float4 limit = threshold.at[i];
    return run.clipLowpass.next(smaller(limit, larger(-limit, x - y)), clipLowpassTimesFour);
  }

  /// Second half: shaped, joined by its low band, cross-faded with the frame's clean input.
  Float4 shape(State& run, Float4 v, Float4 x, std::size_t i) const ZUM_REALTIME {
    const Float4 shaped = v * (splat(1.0F) - absolute(v) * shaperCurve);
    const Float4 driven = makeup.at[i] * shaped + run.bassPath.next(shaped, bassPath);
    const Float4 from = select(drivenOnly, driven, x);
    return from + crossfade * (driven - from);
  }

 private:
  // of the sample rate
  OnePoleCoeffs clipLowpassTimesFour;  // gain of 4 in its k: exact, and a multiplication less
  OnePoleCoeffs bassPath;
  Float4 dcA{};
  Float4 dcB{};

  // of the control pass
  Float4 shaperCurve{};
  Float4 crossfade{};  // weight of the driven signal
  Int4 drivenOnly{};   // cross-fade at its end
  float lastDriveSum = -1.0F;
  float thresholdTarget = 0.0F;
  float makeupTarget = 0.0F;
  FrameRamp threshold;
  FrameRamp makeup;

  State kept;
  Float4 dcBInPrev{};
  Float4 dcOutPrev1{};
  Float4 dcOutPrev2{};
};

}  // namespace zum
