#include "engine/filter_frequency.hpp"

#include <cmath>

namespace zum {
namespace {

constexpr float curved(float sum) ZUM_REALTIME {
  return (sum + 0.12999999523162842F) * 0.8700000047683716F;
}

}  // namespace

float ResonanceCurve::of(float sum) ZUM_REALTIME {
  if (sum != lastSum) {
    lastSum = sum;
    lastCurve = std::pow(sum, 0.8399999737739563F);
  }
  return lastCurve;
}

bool FilterFrequency::controlPass(float cutoffSum, float vowelPositionSum, bool vowelBank,
                                  float ticksPerMs) ZUM_REALTIME {
  constexpr float kTopHz = 16011.0F;
  const float source = curved(vowelBank ? vowelPositionSum : cutoffSum);
  const bool moved = cutoff.advance(source * source * source * kTopHz, kFilterGlideMs, ticksPerMs);
  position.advance(source, kFilterGlideMs, ticksPerMs);
  return moved;
}

}  // namespace zum
