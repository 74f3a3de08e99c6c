// The overdrive before the filter: a clipper and shaper on what lies above 60 Hz, with the low band
// added back, cross-faded with the clean input. Left and right in lanes 0 and 1.
#pragma once

#include "engine/clock.hpp"
#include "engine/one_pole.hpp"
#include "engine/ramp.hpp"

namespace zum {

class Overdrive {
 public:
  /// Fixed filters of the sample rate.
  void recompute(const KvSystemInfo& clock) ZUM_REALTIME;
  /// `driveSum` 0 to 1.
  void controlPass(float driveSum, float controlStep) ZUM_REALTIME;

  /// First half of a frame: what lies above 60 Hz, clipped and smoothed.
  Float4 clip(Float4 x) ZUM_REALTIME {
    threshold.current += threshold.step;
    // The feedback hears the output of two frames back; that is the tuning of this tracker.
    const Float4 bx = dcB * x;
    const Float4 y = dcA * dcOutPrev2 + splat(kDenormalGuard) + bx + dcBInPrev;
    dcOutPrev2 = dcOutPrev1;
    dcOutPrev1 = y;
    dcBInPrev = bx;
    return clipState.next(smaller(threshold.current, larger(-threshold.current, x - y)),
                          clipLowpass);
  }

  /// Second half: shaped, joined by its low band, cross-faded with the frame's clean input.
  Float4 shape(Float4 clipped, Float4 x) ZUM_REALTIME {
    makeup.current += makeup.step;
    const Float4 v = clipped * splat(4.0F);
    const Float4 shaped = v * (splat(1.0F) - absolute(v) * shaperCurve);
    const Float4 driven = makeup.current * shaped + bassState.next(shaped, bassPath);
    return drivenOnly ? driven : x + crossfade * (driven - x);
  }

 private:
  // of the sample rate
  OnePoleCoeffs clipLowpass;
  OnePoleCoeffs bassPath;
  Float4 dcA{};
  Float4 dcB{};

  // of the control pass
  Float4 shaperCurve{};
  Float4 crossfade{};       // weight of the driven signal
  bool drivenOnly = false;  // cross-fade at its end
  float lastDriveSum = -1.0F;
  float thresholdTarget = 0.0F;
  float makeupTarget = 0.0F;

  // state
  FrameRamp threshold;
  FrameRamp makeup;
  Float4 dcBInPrev{};  // dcB times the previous input
  Float4 dcOutPrev1{};
  Float4 dcOutPrev2{};
  OnePole clipState;
  OnePole bassState;
};

}  // namespace zum
