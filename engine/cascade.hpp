// Filter structures made of state-variable stages alone: one, two in series, two or four in
// parallel. A type of a bank is one of these with a state of its own.
#pragma once

#include <array>

#include "engine/svf.hpp"

namespace zum {

/// `stages` in series; the `tap` output of one feeds the next and the last one's is the output.
/// Lanes are left and right twice, or left and right at two frequencies.
template <int stages, Tap tap>
struct Cascade : Stateful<std::array<SvfStage, stages>> {
  using State = std::array<SvfStage, stages>;
  using Coeffs = std::array<SvfLanes, stages>;
  Coeffs coeffs;

  static Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    for (std::size_t i = 0; i < stages; ++i) in = tapOf<tap>(state[i].next(in, c[i]));
    return in;
  }
};

}  // namespace zum
