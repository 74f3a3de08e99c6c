#include "engine/overdrive.hpp"

#include <algorithm>
#include <cmath>

namespace zum {

void Overdrive::recompute(const KvSystemInfo& clock) ZUM_REALTIME {
  const float rate = clock.sampleRate;
  const float trackHz = clampTo(60.0F, rate * 4.069010537932627e-05F, rate * 0.4638219177722931F);
  const float k = onePoleGain(trackHz, rate);
  dcA = splat((1.0F - k) / (1.0F + k));
  dcB = splat(k / (1.0F + k));
  clipLowpassTimesFour.tune(std::min(8000.0F, rate), rate);
  clipLowpassTimesFour.k *= splat(4.0F);
  bassPath.tune(std::min(60.0F, rate), rate);
}

void Overdrive::controlPass(float driveSum, float controlStep) ZUM_REALTIME {
  if (driveSum != lastDriveSum) {  // the roots are worth keeping while nothing moves
    lastDriveSum = driveSum;
    const float g = std::sqrt(driveSum);
    // The cross-fade is a lookup in {clean, driven, driven}: from entry i towards entry j.
    const int i = truncate(g + 1e-06F);
    const int j = truncate(g + 0.9999989867210388F);
    drivenOnly = splat(i > 0 ? -1 : 0);
    cleanOnly = splat(j == 0 ? -1 : 0);
    crossfade = splat(j > i ? g - static_cast<float>(truncate(g)) : 0.0F);
    const float d = 1.0F - driveSum;
    thresholdTarget = d * d * d + 0.10000000149011612F;
    shaperCurve = splat(0.25F / clampTo(thresholdTarget, 0.25F, 10.0F));
    makeupTarget = 1.0F / std::sqrt(thresholdTarget + 0.30000001192092896F);
  }
  threshold.aim(thresholdTarget, controlStep);
  makeup.aim(makeupTarget, controlStep);
}

}  // namespace zum
