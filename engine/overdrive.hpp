// The overdrive before the filter: a clipper and shaper on what lies above 60 Hz, with the low band
// added back, cross-faded with the clean input. Left and right in lanes 0 and 1.
#pragma once

#include "engine/clock.hpp"
#include "engine/one_pole.hpp"
#include "engine/ramp.hpp"

namespace zum {

class Overdrive {
 public:
  /// The long recursion, the high-pass at 60 Hz, frame by frame through a chunk. It lies in memory,
  /// behind the last values of the chunk before.
  struct Lines {
    std::array<Float4, kChunkFrames + 1> in;   // dcB times the input
    std::array<Float4, kChunkFrames + 2> out;  // what lies below 60 Hz
  };

  /// Fixed filters of the sample rate.
  void recompute(const KvSystemInfo& clock) ZUM_REALTIME;
  /// `driveSum` 0 to 1.
  void controlPass(float driveSum, float controlStep) ZUM_REALTIME;

  /// Copies out the states of the two short recursions: a run keeps these in registers.
  void enter(Lines& lines, OnePole& clipState, OnePole& bassState) ZUM_REALTIME {
    threshold.beginChunk();
    makeup.beginChunk();
    lines.in[0] = dcB * dcInPrev;
    lines.out[0] = dcOutPrev2;
    lines.out[1] = dcOutPrev1;
    clipState = clipKept;
    bassState = bassKept;
  }
  void advance(std::size_t from, std::size_t to) ZUM_REALTIME {
    threshold.advance(from, to);
    makeup.advance(from, to);
  }
  /// `lastIn` is the input of the last of `frames`.
  void leave(const Lines& lines, const OnePole& clipState, const OnePole& bassState, Float4 lastIn,
             std::size_t frames) ZUM_REALTIME {
    dcInPrev = lastIn;
    dcOutPrev2 = lines.out[frames];
    dcOutPrev1 = lines.out[frames + 1];
    clipKept = clipState;
    bassKept = bassState;
  }

  /// Forgets what it has heard; ramps and settings stay.
  void reset() ZUM_REALTIME {
    clipKept = bassKept = OnePole{};
    dcInPrev = dcOutPrev1 = dcOutPrev2 = Float4{};
  }

  // Frame `i` of a chunk, in three pieces.

  /// What lies above 60 Hz, clipped.
  Float4 clip(Lines& lines, Float4 x, std::size_t i) const ZUM_REALTIME {
    // The feedback hears the output of two frames back; that is the tuning of this tracker.
    const Float4 bx = dcB * x;
    const Float4 y = dcA * lines.out[i] + splat(kDenormalGuard) + bx + lines.in[i];
    lines.in[i + 1] = bx;
    lines.out[i + 2] = y;
    const Float4 limit = threshold.at[i];
    return smaller(limit, larger(-limit, x - y));
  }

  /// Smoothed, times 4, and shaped.
  Float4 shape(OnePole& state, Float4 clipped) const ZUM_REALTIME {
    const Float4 v = state.next(clipped, clipLowpassTimesFour);
    return v * (one - absolute(v) * shaperCurve);
  }

  /// Joined by its low band and cross-faded with the frame's clean input.
  Float4 join(OnePole& state, Float4 shaped, Float4 x, std::size_t i) const ZUM_REALTIME {
    const Float4 driven = makeup.at[i] * shaped + state.next(shaped, bassPath);
    const Float4 from = select(drivenOnly, driven, x);
    return from + crossfade * (select(cleanOnly, x, driven) - from);
  }

 private:
  // derived from the sample rate
  OnePoleCoeffs clipLowpassTimesFour;  // gain of 4 in its k: exact, and a multiplication less
  OnePoleCoeffs bassPath;
  Float4 one = splat(1.0F);  // a member for the reason told in OutputStage
  Float4 dcA{};
  Float4 dcB{};

  // set by the control pass
  Float4 shaperCurve{};
  Float4 crossfade{};  // weight of the driven signal
  Int4 drivenOnly{};   // cross-fade at its end
  Int4 cleanOnly{};    // at its start: whatever the driven path holds is not heard
  float lastDriveSum = -1.0F;
  float thresholdTarget = 0.0F;
  float makeupTarget = 0.0F;
  FrameRamp threshold;
  FrameRamp makeup;

  OnePole clipKept;
  OnePole bassKept;
  Float4 dcInPrev{};
  Float4 dcOutPrev1{};
  Float4 dcOutPrev2{};
};

}  // namespace zum
