#include "engine/multi_mode_filter.hpp"

#include <algorithm>

#include "engine/filter_frequency.hpp"

namespace zum {
namespace {

// Below 1, so that the tuned rows never reach the undamped one alone.
constexpr float kSharpest = 0.9399999976158142F;
constexpr float kFirstLowPassDamping = 0.44999998807907104F;
constexpr float kHighestShelfHz = 16000.0F;

}  // namespace

void MultiModeFilter::recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME {
  columnScale = clock.twoOverRate * 10.0F;
  comb.recompute(clock, std::min(6000.0F, clock.sampleRate), keepBuffers);
}

void MultiModeFilter::reset() ZUM_REALTIME {
  const auto each = [](auto&... types) ZUM_REALTIME { (types.reset(), ...); };
  each(highPass, highPassSteep, bandPass, bandPassSteep, lowPass, lowPassSteep, comb, bandReject,
       heldBandPass, heldLowPass);
}

void MultiModeFilter::updateFilterColumns(float cutoffHz, const KvSystemInfo& clock) ZUM_REALTIME {
  columnHz = cutoffHz;
  columnsPerHz = columnScale;
  samplesPerMs = clock.samplesPerMs;
  sampleRate = clock.sampleRate;
}

void MultiModeFilter::controlPass(int type, float feedbackAmount, float ticksPerMs) ZUM_REALTIME {
  const float resonance = feedbackAmount * kSharpest;
  const auto at = [&](float hz) { return lookup.at(hz, columnsPerHz, resonance); };
  const auto setAll = [&](auto& stages) {
    const SvfCoeffs c = at(columnHz);
    for (SvfLanes& stage : stages) stage.set(c);
  };
  const auto setHeld = [&](auto& held) {
    held.coeffs.stage.set(at(columnHz));
    held.coeffs.holdIncrement = splat(columnHz / (sampleRate * 0.5F));
  };
  switch (type) {
    case 0: return setAll(highPass.coeffs);
    case 1: return setAll(highPassSteep.coeffs);
    case 2: return setAll(bandPass.coeffs);
    case 3: return setAll(bandPassSteep.coeffs);
    case 4: return setAll(lowPass.coeffs);
    case 5:
      setAll(lowPassSteep.coeffs);
      lowPassSteep.coeffs[0].q = splat(kFirstLowPassDamping);
      return;
    case 6:
      return comb.aim(0, combDelayOf(columnHz, samplesPerMs), feedbackAmount, kFilterGlideMs,
                      ticksPerMs);
    case 7:
      return bandReject.coeffs.set(at(clampTo(columnHz * 2.0F, 0.0F, kHighestShelfHz)),
                                   secondLookup.at(columnHz * 0.5F, columnsPerHz, resonance));
    case 8: return setHeld(heldBandPass);
    case 9: return setHeld(heldLowPass);
    default: return;
  }
}

}  // namespace zum
