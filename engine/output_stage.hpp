// Clip, soft limits, master gain, dry/wet mix and bypass, behind the filter; and the points of the
// two level meters. Two frames a register.
#pragma once

#include "engine/display_values.hpp"
#include "engine/numbers.hpp"
#include "engine/ramp.hpp"

namespace zum {

using MeterRing = DisplayRing<139>;

class OutputStage {
 public:
  /// One point of the meters: the frame ahead of a control pass, as limit() gave it.
  void pushMeters(Float4 limited) ZUM_REALTIME;

  /// A hard switch, without a cross-fade.
  void setBypass(bool on) ZUM_REALTIME { bypassed = on; }

  /// A pair of frames up to the master's soft limit.
  Float4 limit(Float4 wet, Float4 gain) const ZUM_REALTIME {
    const Float4 m1 = smaller(clipHigh, larger(clipLow, wet));
    const Float4 m2 = m1 * (one - absolute(m1) * splat(kShapeOne));
    const Float4 m3 = m2 * gain;
    return m3 * (one - absolute(m3) * splat(kShapeTwo));
  }
  /// The rest of it: dry/wet mix by a linear law, and bypass.
  Float4 blend(Float4 limited, Float4 dry, Float4 mix) const ZUM_REALTIME {
    return bypassed ? dry : (limited - dry) * mix + dry;
  }

  MeterRing meter;         // level of the frame before each control pass, 0 to 0.98
  MeterRing meterInverse;  // 1 - level
  float meterValue = 0.0F;

 private:
  static constexpr float kShapeOne = 0.25F;
  static constexpr float kShapeTwo = 0.22727271914482117F;  // 0.25 / 1.1 of head room

  bool bypassed = false;
  // Members, not constants: compilers build a constant anew from a scalar wherever it is a first
  // operand.
  Float4 clipHigh = splat(2.0F);
  Float4 clipLow = splat(-2.0F);
  Float4 one = splat(1.0F);
};

}  // namespace zum
