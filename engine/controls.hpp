// What a player can set, in the forms that the engine reads. Written by the effect's parameter
// calls on any thread, read in the control pass; every form is one aligned word.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// One parameter's stored forms, side by side.
struct ControlValue {
  float raw = 0.0F;          // as it came in
  float bipolar = 0.0F;      // 2 raw - 1
  float stepped = 0.0F;      // position of a step or button value
  std::int32_t integer = 0;  // truncation of raw, of bipolar, or the position
};

/// The two formants that a vowel selector picks.
struct VowelFormants {
  float vowelPos = 0.0F;  // 8 raw
  float position = 0.0F;  // the same, truncated
  float formantOneHz = 0.0F;
  float formantTwoHz = 0.0F;
};

/// Tells a reader that something was set since it last looked.
class ControlsVersion {
 public:
  /// [any] Behind every change.
  void bump() ZUM_REALTIME { std::atomic_ref(count).fetch_add(1, std::memory_order_release); }
  /// [audio] Who sees a bump sees what was set ahead of it.
  std::uint32_t current() const ZUM_REALTIME {
    // an atomic_ref wants a mutable word; nothing is written
    return std::atomic_ref(const_cast<std::uint32_t&>(count)).load(std::memory_order_acquire);
  }

 private:
  std::uint32_t count = 1;
};

/// Whoever sets a value bumps the version behind it.
struct EngineControls {
  ControlsVersion version;

  ControlValue vowelCutoff, master, mixDryWet, cutoff, resonance, overdrive;
  ControlValue efFreqRange, efAttack, efRelease, efGain;
  ControlValue lfoRate, lfoWave, lfoTrigOnOff, lfoTrigSens, lfoStyle;
  ControlValue seqGlide, seqMode, seqTempo;

  // amounts of modulation; a name tells what is moved, and by what
  ControlValue cutoffEf, cutoffLfo, cutoffSeq;
  ControlValue vowelEf, vowelLfo, vowelSeq;
  ControlValue resoEf, resoLfo, resoSeq;
  ControlValue driveEf, driveLfo, driveSeq;
  ControlValue mixEf, mixLfo, mixSeq;
  ControlValue masterEf, masterLfo, masterSeq;
  ControlValue efRangeLfo, efRangeSeq, efAttackLfo, efAttackSeq;
  ControlValue efReleaseLfo, efReleaseSeq, efGainLfo, efGainSeq;
  ControlValue lfoRateEf, lfoRateSeq, lfoWaveEf, lfoWaveSeq, lfoSensEf, lfoSensSeq;
  ControlValue seqTempoEf, seqTempoLfo, seqGlideEf, seqGlideLfo;

  ControlValue vowelA, vowelB;
  VowelFormants formantsA, formantsB;

  ControlValue bank;       // 0 multi-mode, 1 vowel
  ControlValue multiType;  // 0 to 9
  ControlValue vowelType;  // 0 to 9
  ControlValue modChoice;  // page of the editor: 0 follower, 1 LFO, 2 sequencer
  ControlValue bypass;

  // The window's tab strip: left and right button, x, y, Shift, Control, as they are just now, and
  // where it is held.
  std::array<float, 6> mouseArea{};
  ControlValue areaPosition;
};

}  // namespace zum
