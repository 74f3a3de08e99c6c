// What the window shows of the engine. The control pass writes it, the window reads it without a
// lock.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/shared_value.hpp"

namespace zum {

/// [any] The last control pass, one aligned word each: where the targets of the modulators stand.
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

/// The last points of a level for a scope, the oldest overwritten; a torn read costs a pixel.
template <std::int32_t size>
struct DisplayRing {
  static constexpr std::int32_t kPoints = size;
  std::array<float, kPoints> points{};
  std::int32_t writeIndex = 0;  // of the newest point; the one behind it is the oldest

  void push(float point) ZUM_REALTIME {
    const std::int32_t after = writeIndex + 1;
    const std::int32_t at = after < kPoints ? after : 0;
    storeShared(points[static_cast<std::size_t>(at)], point);
    storeShared(writeIndex, at);
  }
};

}  // namespace zum
