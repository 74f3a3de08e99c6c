// The envelope follower: the level of the input in a chosen range as a modulator. Its frame work
// is one of the LevelDetectors; here is what the control pass does.
#pragma once

#include "engine/clock.hpp"
#include "engine/display_values.hpp"
#include "engine/level_detectors.hpp"
#include "engine/svf_lookup.hpp"

namespace zum {

using FollowerScope = DisplayRing<2048>;

/// [any] The settings in a player's units, one aligned word each.
struct FollowerReadout {
  float attackMs = 0.0F;
  float releaseMs = 0.0F;  // from a peak down to 0
  float bandHz = 0.0F;
};

class EnvelopeFollower {
 public:
  /// What a control pass is given, each 0 to 1.
  struct Inputs {
    float gainSum;
    float attackSum;
    float releaseSum;
    float rangeSum;
  };

  void recompute(const KvSystemInfo& clock) ZUM_REALTIME;
  void controlPass(const Inputs& in, const KvSystemInfo& clock, LevelDetectors& detectors)
      ZUM_REALTIME;

  /// Centre of the band that is heard where hearsBand(), otherwise all is heard. `sum` 0 to 1.
  static constexpr float bandHz(float sum) ZUM_REALTIME {
    return sum * sum * sum * 0.8999999761581421F * 8000.0F + 44.0F;
  }
  static constexpr bool hearsBand(float sum) ZUM_REALTIME {
    return sum * sum * sum > 0.05000000074505806F;
  }

  /// 0 to 1.
  float efOut() const ZUM_REALTIME { return out; }
  const FollowerReadout& readout() const { return shown; }
  const FollowerScope& scopeRing() const { return scope; }

 private:
  void setRange(float rangeSum, LevelDetectors& detectors) ZUM_REALTIME;
  void setRelease(float releaseSum, const KvSystemInfo& clock, LevelDetectors& detectors)
      ZUM_REALTIME;
  void setAttack(float attackSum, const KvSystemInfo& clock, LevelDetectors& detectors)
      ZUM_REALTIME;

  float columnScale = 0.0F;
  // the sums that the settings were made from; they are made anew only when one moves
  float lastRange = -1.0F;
  float lastRelease = -1.0F;
  float lastAttack = -1.0F;

  FollowerReadout shown;
  float out = 0.0F;
  FollowerScope scope;
};

}  // namespace zum
