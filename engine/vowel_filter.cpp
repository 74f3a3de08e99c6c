#include "engine/vowel_filter.hpp"

#include <algorithm>

#include "engine/filter_frequency.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

// Nearer to 1 than in the multi-mode bank: formants ring harder.
constexpr float kSharpest = 0.9800000190734863F;
constexpr float kFirstOfPairDamping = 1.7999999523162842F;

float morphed(const float& a, const float& b, float p) ZUM_REALTIME {
  const float from = loadShared(a);
  return (loadShared(b) - from) * p + from;
}

}  // namespace

void VowelFilter::recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME {
  columnScale = clock.twoOverRate * 10.0F;
  combs.recompute(clock, std::min(6000.0F, clock.sampleRate), keepBuffers);
}

void VowelFilter::reset() ZUM_REALTIME {
  const auto each = [](auto&... types) ZUM_REALTIME { (types.reset(), ...); };
  each(highPass, highPassSteep, bandPass, bandPassSteep, bandPassTwin, lowPassSteep, combs, shelves,
       heldBandPass, heldLowPass);
}

void VowelFilter::controlPass(int type, const VowelFormants& a, const VowelFormants& b,
                              float position, float vowelFeedback, const KvSystemInfo& clock)
    ZUM_REALTIME {
  morphRamp.advance(position, kFilterGlideMs, clock.ticksPerMs);
  const float p = morphRamp.current;
  const float firstHz = morphed(a.formantOneHz, b.formantOneHz, p);
  const float secondHz = morphed(a.formantTwoHz, b.formantTwoHz, p);

  const float resonance = vowelFeedback * kSharpest;
  const auto at = [&](std::size_t stage, float hz) {
    return lookups[stage].at(hz, columnScale, resonance);
  };
  const auto setStages = [&](auto& stages) {
    const SvfCoeffs first = at(0, firstHz);
    const SvfCoeffs second = at(1, secondHz);
    for (SvfLanes& stage : stages) stage.set(first, second);
  };
  const auto setDampedPair = [&](auto& stages) {
    setStages(stages);
    stages[0].q = splat(kFirstOfPairDamping);
  };
  const auto setHeld = [&](auto& held) {
    held.coeffs.stage.set(at(0, firstHz), at(1, secondHz));
    const float nyquist = clock.sampleRate * 0.5F;
    held.coeffs.holdIncrement = halves(firstHz / nyquist, secondHz / nyquist);
  };
  switch (type) {
    case 0: return setStages(highPass.coeffs);
    case 1: return setStages(highPassSteep.coeffs);
    case 2: return setStages(bandPass.coeffs);
    case 3: return setDampedPair(bandPassSteep.coeffs);
    case 4: return setStages(bandPassTwin.coeffs);
    case 5: return setDampedPair(lowPassSteep.coeffs);
    case 6:
      combs.aim(0, combDelayOf(firstHz, clock.samplesPerMs), vowelFeedback, kFilterGlideMs,
                clock.ticksPerMs);
      combs.aim(1, combDelayOf(secondHz, clock.samplesPerMs), vowelFeedback, kFilterGlideMs,
                clock.ticksPerMs);
      return;
    case 7:
      shelves.coeffs.first.set(at(0, firstHz * 1.2F), at(1, firstHz * 0.8F));
      shelves.coeffs.second.set(at(2, secondHz * 2.0F), at(3, secondHz * 0.5F));
      return;
    case 8: return setHeld(heldBandPass);
    case 9: return setHeld(heldLowPass);
    default: return;
  }
}

}  // namespace zum
