// The LFO: waves of a free phase at a tempo's rate, or computed from the song's position. Runs in
// the control pass; its trigger detector is one of the LevelDetectors.
#pragma once

#include "engine/clock.hpp"
#include "engine/level_detectors.hpp"
#include "engine/ramp.hpp"
#include "engine/random_generator.hpp"
#include "engine/wave_tables.hpp"

namespace zum {

class Lfo {
 public:
  /// What a control pass is given; sums 0 to 1.
  struct Inputs {
    float rateSum;
    float waveSum;
    float sensSum;
    bool sync;         // waves follow the song's position
    bool trigEnabled;  // the level detector may reset the phase
    float startPulse;  // of the sequencer
    float trigPeak;    // of the level detector
  };

  void recompute(const KvSystemInfo& clock, LevelDetectors& detectors) ZUM_REALTIME;
  void controlPass(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME;

  /// 0 to 1.
  float lfoOut() const ZUM_REALTIME { return out; }
  /// The number of the wave that plays, plus a fraction that tells how near the next one is.
  static float slotPlace(float waveSum) ZUM_REALTIME {
    return waveSum * 4.0F + 0.5F + 1.0000000116860974e-07F;
  }
  /// [any] A wave of the song's position, -1 to 1; `phase` 0 to 1, `drawn` the level of random.
  static float syncWave(int slot, float phase, float drawn) ZUM_REALTIME;
  /// [any] 0 or 1: the level is above the threshold.
  float triggerValue() const ZUM_REALTIME;
  /// [any] Rises with a trigger and falls in 50 ms.
  const float& lampLevel() const ZUM_REALTIME { return lamp; }

 private:
  enum Slot { sine, square, third, triangle, random };

  void movePhase(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME;
  void followCycle() ZUM_REALTIME;
  float freeWave(int slot) const ZUM_REALTIME;
  float movePosition(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME;
  void fadeLamp() ZUM_REALTIME;

  const WaveTables& waves = waveTables();

  // threshold, kept while nothing moves
  float thresholdSens = -1.0F;
  float threshold = 0.0F;

  float lfoPhase = 0.0F;  // 0 to 1
  float trigger = 0.0F;
  float lastTrigger = 0.0F;
  TickRamp ppqRamp;  // quarter notes
  float lastTriangle = 0.0F;
  bool lastRising = false;
  float freeRandom = 0.0F;
  float syncRandom = 0.0F;
  bool lastSyncHalf = false;
  RandomGenerator shSeedFree{12382};
  RandomGenerator noiseSeed{292};
  RandomGenerator shSeedSync{153};
  float out = 0.0F;

  float lamp = 0.0F;
  float lampDecay = 0.0F;
  float lampDecayRate = 0.0F;
};

}  // namespace zum
