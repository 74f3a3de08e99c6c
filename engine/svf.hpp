// The state-variable stage behind all twenty filter types, in four lanes: left and right, or left
// and right at two frequencies.
#pragma once

#include "engine/numbers.hpp"
#include "engine/simd.hpp"

namespace zum {

/// What the coefficient lookup gives.
struct SvfCoeffs {
  float f = 0.0F;  // frequency coefficient
  float q = 0.0F;  // damping coefficient
};

/// `SvfCoeffs` of every lane.
struct SvfLanes {
  Float4 f{};
  Float4 q{};

  void set(SvfCoeffs all) ZUM_REALTIME { set(all, all); }
  /// `low` for lanes 0 and 1, `high` for lanes 2 and 3.
  void set(SvfCoeffs low, SvfCoeffs high) ZUM_REALTIME {
    f = halves(low.f, high.f);
    q = halves(low.q, high.q);
  }
};

struct SvfStage {
  Float4 band{};
  Float4 bandState{};
  Float4 low{};
  Float4 lowState{};
  Float4 high{};

  // Band and low are made of the previous frame's high, so the input is first heard in the next
  // frame. That order is part of the sound.
  void next(Float4 in, const SvfLanes& c) ZUM_REALTIME {
    band = c.f * high + bandState;
    bandState = band + splat(kDenormalGuard);
    low = c.f * bandState + lowState;
    lowState = low + splat(kDenormalGuard);
    high = in - (c.q * bandState + lowState);
  }
};

/// The output of a stage that a filter type takes.
enum class Tap { high, band, low };

template <Tap tap>
Float4 tapOf(const SvfStage& stage) ZUM_REALTIME {
  if constexpr (tap == Tap::high) return stage.high;
  if constexpr (tap == Tap::band) return stage.band;
  if constexpr (tap == Tap::low) return stage.low;
}

}  // namespace zum
