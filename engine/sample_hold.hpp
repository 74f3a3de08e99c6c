// The resampling in front of the hold types: the input stands still until the phase enters a new
// cell. Two holds in the lanes, as far as the filter type uses two.
#pragma once

#include "engine/svf.hpp"

namespace zum {

struct SampleHold {
  Float4 holdPhase{};  // 0 to 16
  Int4 heldCell{};
  Float4 heldSample{};

  /// `in` is left and right twice, `increment` in cells a frame. With `inSeries` the second hold
  /// takes what the first one holds.
  template <bool inSeries>
  Float4 next(Float4 in, Float4 increment) ZUM_REALTIME {
    const Float4 phase = holdPhase + increment;
    holdPhase = select(phase >= splat(16.0F), splat(0.0F), phase);  // only bounds the value
    const Int4 cell = truncateLanes(holdPhase);
    const Int4 moved = cell != heldCell;
    heldCell = cell;
    if constexpr (inSeries) in = lowTwice(select(moved, in, heldSample));
    heldSample = select(moved, in, heldSample);
    return heldSample;
  }
};

struct HeldStageState {
  SampleHold hold;
  SvfStage stage;
};
struct HeldStageCoeffs {
  SvfLanes stage;
  Float4 holdIncrement{};
};

/// A hold and one stage on the held signal.
template <Tap tap, bool inSeries>
struct HeldStage : Stateful<HeldStageState> {
  using State = HeldStageState;
  using Coeffs = HeldStageCoeffs;
  Coeffs coeffs;

  static SvfStage& first(State& state) ZUM_REALTIME { return state.stage; }
  static SvfLanes& first(Coeffs& c) ZUM_REALTIME { return c.stage; }
  static Float4 next(State& state, const Coeffs& c, Float4 in, Float4& band) ZUM_REALTIME {
    Float4 held = state.hold.template next<inSeries>(in, c.holdIncrement);
    if constexpr (!inSeries) held = joinEnds(held, in);
    const SvfOutputs out = state.stage.next(held, c.stage);
    band = out.band;
    return tapOf<tap>(out);
  }
  static Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    Float4 band;
    return next(state, c, in, band);
  }
};

}  // namespace zum
