// The state-variable stage behind all twenty filter types, in four lanes: left and right, or left
// and right at two frequencies; and the filter structures that are made of such stages alone.
#pragma once

#include <array>

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
  /// Lanes 2 and 3 are another's.
  void lend(const SvfLanes& guest) ZUM_REALTIME {
    f = joinLow(f, guest.f);
    q = joinLow(q, guest.q);
  }
};

/// What a frame of a stage gives.
struct SvfOutputs {
  Float4 high;
  Float4 band;
  Float4 low;
};

/// The output of a stage that a filter type takes.
enum class Tap { high, band, low };

template <Tap tap>
Float4 tapOf(const SvfOutputs& out) ZUM_REALTIME {
  if constexpr (tap == Tap::high) return out.high;
  if constexpr (tap == Tap::band) return out.band;
  if constexpr (tap == Tap::low) return out.low;
}

/// State of a stage. Band and low of a frame are outputs alone; each is kept with the guard added.
struct SvfStage {
  Float4 bandState{};
  Float4 lowState{};
  Float4 high{};  // feeds the next frame's band

  /// Lanes 2 and 3 are another's.
  void lend(const SvfStage& guest) ZUM_REALTIME {
    bandState = joinLow(bandState, guest.bandState);
    lowState = joinLow(lowState, guest.lowState);
    high = joinLow(high, guest.high);
  }
  SvfStage guest() const ZUM_REALTIME {
    return {highTwice(bandState), highTwice(lowState), highTwice(high)};
  }

  // Band and low are made of the previous frame's high, so the input is first heard in the next
  // frame. That order is part of the sound.
  SvfOutputs next(Float4 in, const SvfLanes& c) ZUM_REALTIME {
    const Float4 band = c.f * high + bandState;
    bandState = band + splat(kDenormalGuard);
    const Float4 low = c.f * bandState + lowState;
    lowState = low + splat(kDenormalGuard);
    high = in - (c.q * bandState + lowState);
    return {high, band, low};
  }
};

/// Of what a filter gives in a frame, lanes 0 and 1 are heard.
struct HeardInLowLanes {
  /// Two frames as a pair.
  static Float4 join(Float4 first, Float4 second) ZUM_REALTIME { return joinLow(first, second); }
};

/// A filter structure whose whole state is a `State`. A run of frames works on a copy of it, which
/// the compiler keeps in registers.
template <class State>
class Stateful : public HeardInLowLanes {
 public:
  State enter(std::size_t /*frames*/) const ZUM_REALTIME { return kept; }
  void leave(const State& run) ZUM_REALTIME { kept = run; }
  void reset() ZUM_REALTIME { kept = State{}; }

 private:
  State kept{};
};

/// One stage, or several in series or, by their lanes, in parallel. `stages` in series; the `tap`
/// output of one feeds the next and the last one's is the output. Lanes are left and right twice,
/// or left and right at two frequencies.
template <int stages, Tap tap>
struct Cascade : Stateful<std::array<SvfStage, stages>> {
  using State = std::array<SvfStage, stages>;
  using Coeffs = std::array<SvfLanes, stages>;
  Coeffs coeffs;

  static SvfStage& first(State& state) ZUM_REALTIME { return state[0]; }
  static SvfLanes& first(Coeffs& c) ZUM_REALTIME { return c[0]; }
  /// `band` is that of the first stage.
  static Float4 next(State& state, const Coeffs& c, Float4 in, Float4& band) ZUM_REALTIME {
    const SvfOutputs out = state[0].next(in, c[0]);
    band = out.band;
    in = tapOf<tap>(out);
    for (std::size_t i = 1; i < stages; ++i) in = tapOf<tap>(state[i].next(in, c[i]));
    return in;
  }
  static Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    Float4 band;
    return next(state, c, in, band);
  }
};

}  // namespace zum
