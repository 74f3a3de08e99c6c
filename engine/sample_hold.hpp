// The resampling in front of the hold types: the input stands still until the phase enters a new
// cell. Two holds in the lanes, as far as the filter type uses two.
#pragma once

#include "engine/svf.hpp"

namespace zum {

struct SampleHold {
  Float4 holdIncrement{};  // cells a frame
  Float4 holdPhase{};      // 0 to 16
  Int4 heldCell{};
  Float4 heldSample{};

  /// `in` is left and right twice. With `inSeries` the second hold takes what the first one holds.
  template <bool inSeries>
  Float4 next(Float4 in) ZUM_REALTIME {
    const Float4 phase = holdPhase + holdIncrement;
    holdPhase = select(phase >= splat(16.0F), splat(0.0F), phase);  // only bounds the value
    const Int4 cell = truncateLanes(holdPhase);
    const Int4 moved = cell != heldCell;
    heldCell = cell;
    if constexpr (inSeries) in = lowTwice(select(moved, in, heldSample));
    heldSample = select(moved, in, heldSample);
    return heldSample;
  }
};

/// A hold and one stage on the held signal.
template <Tap tap, bool inSeries>
struct HeldStage {
  SampleHold hold;
  SvfLanes coeffs;
  SvfStage state;

  Float4 next(Float4 in) ZUM_REALTIME {
    state.next(hold.next<inSeries>(in), coeffs);
    return tapOf<tap>(state);
  }
};

}  // namespace zum
