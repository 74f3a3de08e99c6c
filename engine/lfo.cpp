#include "engine/lfo.hpp"

#include "engine/note_table.hpp"
#include "engine/powers.hpp"
#include "engine/shared_value.hpp"
#include "engine/sine.hpp"

namespace zum {
namespace {

constexpr float kGuard = 9.999999717180685e-10F;  // keeps a division from 0
constexpr float kHalfCycle = 0.5F;

}  // namespace

void Lfo::recompute(const KvSystemInfo& clock, LevelDetectors& detectors) ZUM_REALTIME {
  constexpr float kTriggerFallMs = 200.0F;
  constexpr float kLampFallMs = 50.0F;
  detectors.setTriggerDecay(1.0F / (clock.samplesPerMs * kTriggerFallMs + kGuard));
  lampDecayRate = 1.0F / (kGuard + clock.ticksPerMs * kLampFallMs);
}

// What has a memory in either style goes on while the other one sounds.
void Lfo::controlPass(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME {
  const int slot = clampIndex(truncate(slotPlace(in.waveSum)), random);
  if (in.trigEnabled && in.sensSum != thresholdSens) {
    thresholdSens = in.sensSum;
    threshold = triggerPower(1.0F - in.sensSum);
  }
  storeShared(trigger, in.trigEnabled && threshold < in.trigPeak ? 1.0F : 0.0F);
  movePhase(in, clock);
  followCycle();
  const float syncPhase = movePosition(in, clock);
  const float wave = in.sync ? syncWave(slot, syncPhase, syncRandom) : freeWave(slot);
  out = clampUnit((wave + 1.0F) * 0.5F);
  fadeLamp();
}

void Lfo::movePhase(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME {
  const auto beatFrames = static_cast<float>(clock.samplesPerBeat);
  const float rateHz = clock.sampleRate / (4.0F * noteLength(noteIndexOf(in.rateSum)) * beatFrames);
  lfoPhase += clock.controlPeriod * rateHz;
  while (lfoPhase > 1.0F) lfoPhase -= 1.0F;  // exactly 1 stays for this pass
  // One value for both causes: a start during a held trigger is a change, too.
  const float edge = trigger + in.startPulse;
  if (edge == lastTrigger) return;
  lastTrigger = edge;
  if (edge > 0.0F) lfoPhase = 0.75F;
}

// The free random wave draws a new level once a cycle, where the triangle begins to rise.
void Lfo::followCycle() ZUM_REALTIME {
  const float nowTriangle = waves.triangle.at(lfoPhase);
  noiseSeed.next();  // drawn in every pass, and read by no wave so far
  const bool rising = lastTriangle < nowTriangle;
  lastTriangle = nowTriangle;
  if (rising != lastRising) {
    lastRising = rising;
    if (rising) freeRandom = shSeedFree.next();
  }
}

float Lfo::freeWave(int slot) const ZUM_REALTIME {
  switch (slot) {
    case sine: return waves.sine.at(lfoPhase);
    case square: return waves.square.at(lfoPhase);
    case third: return waves.falling.at(lfoPhase);
    case triangle: return lastTriangle;
    default: return freeRandom;
  }
}

float Lfo::movePosition(const Inputs& in, const KvSystemInfo& clock) ZUM_REALTIME {
  constexpr float kGlideMs = 5.0F;
  ppqRamp.advance(clock.transportPpq, kGlideMs, clock.ticksPerMs);
  const float syncCycles = noteLength(noteIndexOf(1.0F - in.rateSum)) * 16.0F;
  const float position = syncCycles * ppqRamp.current;
  const float phase = position - static_cast<float>(truncate(position));
  const bool half = phase > kHalfCycle;
  if (half != lastSyncHalf) {
    lastSyncHalf = half;
    syncRandom = shSeedSync.next();
  }
  return phase;
}

float Lfo::syncWave(int slot, float phase, float drawn) ZUM_REALTIME {
  switch (slot) {
    case sine: return sineOf(phase * 6.283185958862305F);
    case square: return phase > kHalfCycle ? 1.0F : -1.0F;
    case third: return phase * 2.0F - 1.0F;
    case triangle: {
      // Spans -1 to 0 only: u peaks at a half.
      const float u = phase > 0.4999989867210388F ? 1.0F - phase : phase;
      return clampTo(u * 2.0F - 1.0F, -1.0F, 1.0F);
    }
    default: return drawn;
  }
}

void Lfo::fadeLamp() ZUM_REALTIME {
  float level = lamp - lampDecay;
  if (level < 0.0F) level = 0.0F;
  if (level < trigger) {
    level = trigger;
    lampDecay = lampDecayRate * trigger;
  }
  storeShared(lamp, level);
}

float Lfo::triggerValue() const ZUM_REALTIME { return loadShared(trigger); }

}  // namespace zum
