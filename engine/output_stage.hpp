// Clip, soft limits, master gain, dry/wet mix and bypass, behind the filter; and the points of the
// two level meters. Left and right in lanes 0 and 1.
#pragma once

#include "engine/display_values.hpp"
#include "engine/numbers.hpp"
#include "engine/ramp.hpp"

namespace zum {

using MeterRing = DisplayRing<139>;

class OutputStage {
 public:
  /// Both sums 0 to 1; master 0.5 is unity gain.
  void controlPass(float mixSum, float masterSum, float controlStep) ZUM_REALTIME;
  /// One point of the meters: the frame ahead of a control pass, as limit() gave it.
  void pushMeters(Float4 limited) ZUM_REALTIME;

  /// A hard switch, without a cross-fade.
  void setBypass(bool on) ZUM_REALTIME { bypassed = splat(on ? -1 : 0); }

  void enter() ZUM_REALTIME {
    mix.beginChunk();
    master.beginChunk();
  }
  void advance(std::size_t from, std::size_t to) ZUM_REALTIME {
    mix.advance(from, to);
    master.advance(from, to);
  }

  /// Frame `i` of a chunk up to the master's soft limit.
  Float4 limit(Float4 wet, std::size_t i) const ZUM_REALTIME {
    const Float4 m1 = smaller(clipHigh, larger(clipLow, wet));
    const Float4 m2 = m1 * (one - absolute(m1) * splat(kShapeOne));
    const Float4 m3 = m2 * master.at[i];
    return m3 * (one - absolute(m3) * splat(kShapeTwo));
  }
  /// The rest of the frame: dry/wet mix by a linear law, and bypass.
  Float4 blend(Float4 limited, Float4 dry, std::size_t i) const ZUM_REALTIME {
    return select(bypassed, dry, (limited - dry) * mix.at[i] + dry);
  }

  MeterRing meter;         // level of the frame before each control pass, 0 to 0.98
  MeterRing meterInverse;  // 1 - level
  float meterValue = 0.0F;

 private:
  static constexpr float kShapeOne = 0.25F;
  static constexpr float kShapeTwo = 0.22727271914482117F;  // 0.25 / 1.1 of head room

  Int4 bypassed{};
  // Members, not constants: compilers build a constant anew from a scalar wherever it is a first
  // operand.
  Float4 clipHigh = splat(2.0F);
  Float4 clipLow = splat(-2.0F);
  Float4 one = splat(1.0F);

  FrameRamp mix;
  FrameRamp master;
};

}  // namespace zum
