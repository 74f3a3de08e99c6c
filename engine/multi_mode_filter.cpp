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

void MultiModeFilter::updateFilterColumns(float cutoffHz, const KvSystemInfo& clock) ZUM_REALTIME {
  cutoffColumn = columnOf(cutoffHz, columnScale);
  doubleColumn = columnOf(clampTo(cutoffHz * 2.0F, 0.0F, kHighestShelfHz), columnScale);
  halfColumn = columnOf(cutoffHz * 0.5F, columnScale);
  combDelayTarget = combDelayOf(cutoffHz, clock.samplesPerMs);
  const Float4 increment = splat(cutoffHz / (clock.sampleRate * 0.5F));
  heldBandPass.coeffs.holdIncrement = increment;
  heldLowPass.coeffs.holdIncrement = increment;
}

void MultiModeFilter::controlPass(int type, float feedbackAmount, float ticksPerMs) ZUM_REALTIME {
  const RowPosition row = rowOf(feedbackAmount * kSharpest);
  const SvfCoeffs c = lookupCoefficients(cutoffColumn, row);
  const auto setAll = [c](auto& stages) {
    for (SvfLanes& stage : stages) stage.set(c);
  };
  switch (type) {
    case 0: return setAll(highPass.coeffs);
    case 1: return setAll(highPassSteep.coeffs);
    case 2: return setAll(bandPass.coeffs);
    case 3: return setAll(bandPassSteep.coeffs);
    case 4: return setAll(lowPass.coeffs);
    case 5:
      lowPassSteep.coeffs[0].set({c.f, kFirstLowPassDamping});
      lowPassSteep.coeffs[1].set(c);
      return;
    case 6: return comb.aim(0, combDelayTarget, feedbackAmount, kFilterGlideMs, ticksPerMs);
    case 7:
      return bandReject.coeffs.set(lookupCoefficients(doubleColumn, row),
                                   lookupCoefficients(halfColumn, row));
    case 8: return heldBandPass.coeffs.stage.set(c);
    case 9: return heldLowPass.coeffs.stage.set(c);
    default: return;
  }
}

}  // namespace zum
