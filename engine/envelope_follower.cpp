#include "engine/envelope_follower.hpp"

#include <array>

#include "engine/note_table.hpp"
#include "engine/one_pole.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

// clang-format off

// Attack by position 4 to 16: what the window shows, and the smoothing filter's cutoff behind it.
constexpr std::array<float, 17> kAttackMsTable = {
    3600.0F, 2400.0F, 1800.0F, 1400.0F, 1150.0F, 1000.0F, 900.0F, 800.0F, 730.0F,
    360.0F, 180.0F, 90.0F, 45.0F, 22.0F, 9.0F, 4.5F, 0.0F,
};
constexpr std::array<float, 17> kSmoothHzTable = {
    0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0.7F, 0.8F, 0.9F, 1.0F,
    2.0F, 4.0F, 8.0F, 16.0F, 32.0F, 64.0F, 128.0F, 256.0F,
};

// clang-format on

float interpolated(const std::array<float, 17>& table, float position) ZUM_REALTIME {
  const int i = truncate(position);
  const auto at = static_cast<std::size_t>(i);
  const float slope = at + 1 < table.size() ? table[at + 1] - table[at] : 0.0F;
  return table[at] + (position - static_cast<float>(i)) * slope;
}

}  // namespace

void EnvelopeFollower::recompute(const KvSystemInfo& clock) ZUM_REALTIME {
  columnScale = clock.twoOverRate * 10.0F;
  lastRange = lastRelease = lastAttack = -1.0F;
}

void EnvelopeFollower::controlPass(const Inputs& in, const KvSystemInfo& clock,
                                   LevelDetectors& detectors) ZUM_REALTIME {
  const float efInputGain = 2.0F * in.gainSum * in.gainSum;
  const float efLevelGain = efInputGain * efInputGain * 10.0F;
  const float level = detectors.efSmoothed();  // with the settings that it was made with
  if (in.rangeSum != lastRange) setRange(in.rangeSum, detectors);
  if (in.releaseSum != lastRelease) setRelease(in.releaseSum, clock, detectors);
  if (in.attackSum != lastAttack) setAttack(in.attackSum, clock, detectors);
  out = clampUnit(efLevelGain * level);
  constexpr float kScopeTop = 0.9890000224113464F;
  scope.enter(clampTo(out * kScopeTop, 0.0F, kScopeTop));
}

void EnvelopeFollower::setRange(float rangeSum, LevelDetectors& detectors) ZUM_REALTIME {
  lastRange = rangeSum;
  const float r = rangeSum * rangeSum * rangeSum;
  const float efHz = r * 0.8999999761581421F * 8000.0F + 44.0F;
  storeShared(shown.bandHz, efHz);
  // Row 3 of the tables alone.
  constexpr RowPosition kRow{3, 0.0F};
  detectors.setFollowerBand(lookupCoefficients(columnOf(efHz, columnScale), kRow),
                            r > 0.05000000074505806F);
}

// A peak falls to 0 in a note length, whatever its height.
void EnvelopeFollower::setRelease(float releaseSum, const KvSystemInfo& clock,
                                  LevelDetectors& detectors) ZUM_REALTIME {
  lastRelease = releaseSum;
  const float length = noteLength(noteIndexOf(1.0F - releaseSum));
  const auto beatFrames = static_cast<float>(clock.samplesPerBeat);
  storeShared(shown.releaseMs, length * beatFrames / clock.samplesPerMs);
  detectors.setFollowerDecay(1.0F / (length * beatFrames + 9.999999717180685e-10F));
}

void EnvelopeFollower::setAttack(float attackSum, const KvSystemInfo& clock,
                                 LevelDetectors& detectors) ZUM_REALTIME {
  lastAttack = attackSum;
  const float position = (1.0F - attackSum * attackSum) * 12.0F + 4.0F;
  storeShared(shown.attackMs, interpolated(kAttackMsTable, position));
  const float smoothHz = clampTo(interpolated(kSmoothHzTable, position), 0.0F, clock.sampleRate);
  detectors.setSmoothing(tanApprox(smoothHz * 3.141590118408203F / clock.sampleRate));
}

}  // namespace zum
