#include "engine/filter_frequency.hpp"

#include "engine/powers.hpp"

namespace zum {

float ResonanceCurve::of(float sum) ZUM_REALTIME {
  if (sum != lastSum) {
    lastSum = sum;
    lastCurve = resonancePower(sum);
  }
  return lastCurve;
}

bool FilterFrequency::controlPass(float cutoffSum, float vowelPositionSum, bool vowelBank,
                                  float ticksPerMs) ZUM_REALTIME {
  const float source = curved(vowelBank ? vowelPositionSum : cutoffSum);
  const bool moved = cutoff.advance(hertzOf(source), kFilterGlideMs, ticksPerMs);
  position.advance(source, kFilterGlideMs, ticksPerMs);
  return moved;
}

}  // namespace zum
