// What the window shows of the last control pass: where the targets of the modulators stand, and
// what becomes of them.
#pragma once

namespace zum {

/// [any] One aligned word each: written in the control pass, read by whoever draws.
struct DisplayValues {
  // sums, 0 to 1
  float vowelPosition = 0.0F;
  float master = 0.0F;
  float mix = 0.0F;
  float cutoff = 0.0F;
  float resonance = 0.0F;
  float drive = 0.0F;
  float efRange = 0.0F;
  float efAttack = 0.0F;
  float efRelease = 0.0F;
  float efGain = 0.0F;
  float lfoRate = 0.0F;
  float lfoWave = 0.0F;
  float lfoSens = 0.0F;
  float seqGlide = 0.0F;
  float seqTempo = 0.0F;

  // truncated: an entry of the note table, a wave
  float lfoNote = 0.0F;
  float lfoWaveSlot = 0.0F;
  float seqNote = 0.0F;
};

}  // namespace zum
