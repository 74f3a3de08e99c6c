#include "engine/output_stage.hpp"

#include <algorithm>
#include <cmath>

#include "engine/shared_value.hpp"

namespace zum {

void OutputStage::pushMeters(Float4 limited) ZUM_REALTIME {
  const float peakValue = std::max(limited[0], limited[1]);
  const float level = std::fabs(clampTo(peakValue, 0.0F, 0.9800000190734863F));
  storeShared(meterValue, level);
  meter.push(level);
  meterInverse.push(1.0F - level);
}

}  // namespace zum
