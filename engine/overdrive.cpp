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
  OnePoleCoeffs clip;
  OnePoleCoeffs bass;
  clip.tune(std::min(8000.0F, rate), rate);
  clip.k *= splat(4.0F);
  bass.tune(std::min(60.0F, rate), rate);
  lowCoeffs = {joinLow(clip.k, bass.k), joinLow(clip.inv, bass.inv),
               joinLow(clip.minus, bass.minus)};
}

void Overdrive::controlPass(float driveSum) ZUM_REALTIME {
  if (driveSum == lastDriveSum) return;  // the roots are worth keeping while nothing moves
  lastDriveSum = driveSum;
  const float g = std::sqrt(driveSum);
  // The cross-fade is a lookup in {clean, driven, driven}: from entry i towards entry j.
  const int i = truncate(g + 1e-06F);
  const int j = truncate(g + 0.9999989867210388F);
  drivenOnly = i > 0;
  cleanOnly = j == 0;
  crossfade = splat(j > i ? g - static_cast<float>(truncate(g)) : 0.0F);
  const float d = 1.0F - driveSum;
  threshold = d * d * d + 0.10000000149011612F;
  shaperCurve = splat(0.25F / clampTo(threshold, 0.25F, 10.0F));
  makeup = 1.0F / std::sqrt(threshold + 0.30000001192092896F);
}

}  // namespace zum
