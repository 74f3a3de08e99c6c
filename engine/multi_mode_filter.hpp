// The multi-mode bank: ten filter types at one cutoff, each with a state of its own that stands
// still while another type is selected.
#pragma once

#include "engine/comb.hpp"
#include "engine/sample_hold.hpp"
#include "engine/svf.hpp"
#include "engine/svf_lookup.hpp"

namespace zum {

/// The comb of this bank: both sides hear the left input.
struct LeftFedComb : Comb<1, 500> {
  // NOLINTNEXTLINE(bugprone-derived-*): the bank calls it by its own type
  Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    return Comb::next(state, c, firstLane(in));
  }
};

/// Low-pass below and high-pass above the cutoff, one octave off on each side.
struct BandReject : Stateful<SvfStage> {
  using State = SvfStage;
  using Coeffs = SvfLanes;
  Coeffs coeffs;  // high-pass stage in lanes 0 and 1, low-pass stage in 2 and 3

  static Float4 next(State& state, const Coeffs& c, Float4 in) ZUM_REALTIME {
    const SvfOutputs out = state.next(in, c);
    return highTwice(out.low) + out.high;
  }
};

class MultiModeFilter {
 public:
  static constexpr int kTypes = 10;

  void recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME;
  /// All types forget what they have heard.
  void reset() ZUM_REALTIME;
  /// What all types take from the cutoff. Called in each pass in which the cutoff moves: a new
  /// sample rate alone changes nothing until it does.
  void updateFilterColumns(float cutoffHz, const KvSystemInfo& clock) ZUM_REALTIME;
  /// Coefficients of the selected type. `feedbackAmount` is the bent resonance, 0 to 1.
  void controlPass(int type, float feedbackAmount, float ticksPerMs) ZUM_REALTIME;

  // the types, in the order of their numbers
  Cascade<1, Tap::high> highPass;
  Cascade<2, Tap::high> highPassSteep;
  Cascade<1, Tap::band> bandPass;
  Cascade<2, Tap::band> bandPassSteep;
  Cascade<1, Tap::low> lowPass;
  Cascade<2, Tap::low> lowPassSteep;
  LeftFedComb comb;
  BandReject bandReject;
  HeldStage<Tap::band, false> heldBandPass;
  HeldStage<Tap::low, false> heldLowPass;

 private:
  KeptLookup lookup;
  KeptLookup secondLookup;
  float columnScale = 0.0F;  // tenths of the Nyquist frequency per Hz
  // what updateFilterColumns() made of the cutoff
  float columnHz = 0.0F;
  float columnsPerHz = 0.0F;
  float samplesPerMs = 0.0F;
  float sampleRate = KvSystemInfo::kHighestSampleRate;
};

}  // namespace zum
