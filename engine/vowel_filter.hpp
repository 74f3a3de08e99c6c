// The vowel bank: ten filter types at two formants at once, which glide from one vowel to another.
// Each type has a state of its own that stands still while another type is selected.
#pragma once

#include "engine/comb.hpp"
#include "engine/controls.hpp"
#include "engine/sample_hold.hpp"
#include "engine/svf.hpp"
#include "engine/svf_lookup.hpp"

namespace zum {

/// Gain of the whole bank.
inline constexpr float kVowelLevel = 0.699999988079071F;

/// Any structure with the first formant in lanes 0 and 1, the second in 2 and 3; gives their sum.
template <class Structure>
struct FormantPair : Structure {
  static void first(auto&) = delete;  // no lane is free
  static Float4 join(Float4 first, Float4 second) ZUM_REALTIME {
    return (joinLow(first, second) + joinHigh(first, second)) * splat(kVowelLevel);
  }
};

struct FormantShelvesState {
  SvfStage first;
  SvfStage second;
};

struct FormantShelvesCoeffs {
  SvfLanes first;   // high-pass at 1.2, low-pass at 0.8 of the first formant
  SvfLanes second;  // high-pass at 2, low-pass at 0.5 of the second
};

/// A high-pass and a low-pass round each formant.
struct FormantShelves : Stateful<FormantShelvesState> {
  using State = FormantShelvesState;
  using Coeffs = FormantShelvesCoeffs;
  Coeffs coeffs;

  static Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    const SvfOutputs first = state.first.next(in, c.first);
    const SvfOutputs second = state.second.next(in, c.second);
    return (highTwice(second.low) + highTwice(first.low)) + second.high + first.high;
  }
  static Float4 join(Float4 first, Float4 second) ZUM_REALTIME {
    return joinLow(first, second) * splat(kVowelLevel);
  }
};

class VowelFilter {
 public:
  static constexpr int kTypes = 10;

  void recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME;
  /// All types forget what they have heard.
  void reset() ZUM_REALTIME;
  /// Morph, formants and coefficients of the selected type. Only while this bank is selected.
  /// `position` 0 to 1 from vowel a to b; `vowelFeedback` is the bent resonance, 0 to 1.
  void controlPass(int type, const VowelFormants& a, const VowelFormants& b, float position,
                   float vowelFeedback, const KvSystemInfo& clock) ZUM_REALTIME;

  // the types, in the order of their numbers
  FormantPair<Cascade<1, Tap::high>> highPass;
  FormantPair<Cascade<2, Tap::high>> highPassSteep;
  FormantPair<Cascade<1, Tap::band>> bandPass;
  FormantPair<Cascade<2, Tap::band>> bandPassSteep;
  FormantPair<Cascade<1, Tap::band>> bandPassTwin;  // same structure, a type of its own
  FormantPair<Cascade<2, Tap::low>> lowPassSteep;
  FormantPair<Comb<2, 512>> combs;
  FormantShelves shelves;
  FormantPair<HeldStage<Tap::band, true>> heldBandPass;
  FormantPair<HeldStage<Tap::low, true>> heldLowPass;

 private:
  std::array<KeptLookup, 4> lookups;
  float columnScale = 0.0F;  // tenths of the Nyquist frequency per Hz
  TickRamp morphRamp;
};

}  // namespace zum
