#include "engine/envelope_follower.hpp"

#include "engine/attack_table.hpp"
#include "engine/note_table.hpp"
#include "engine/one_pole.hpp"
#include "engine/shared_value.hpp"

namespace zum {
void EnvelopeFollower::recompute(const KvSystemInfo& clock) ZUM_REALTIME {
  columnScale = clock.twoOverRate * 10.0F;
  lastRange = lastRelease = lastAttack = -1.0F;
}

void EnvelopeFollower::controlPass(const Inputs& in, const KvSystemInfo& clock,
                                   LevelDetectors& detectors) ZUM_REALTIME {
  const float efInputGain = 2.0F * in.gainSum * in.gainSum;
  const float efLevelGain = efInputGain * efInputGain * 10.0F;
  const float level = detectors.efSmoothed();  // read before new settings change its scale
  if (in.rangeSum != lastRange) setRange(in.rangeSum, detectors);
  if (in.releaseSum != lastRelease) setRelease(in.releaseSum, clock, detectors);
  if (in.attackSum != lastAttack) setAttack(in.attackSum, clock, detectors);
  out = clampUnit(efLevelGain * level);
  constexpr float kScopeTop = 0.9890000224113464F;
  scope.push(clampTo(out * kScopeTop, 0.0F, kScopeTop));
}

void EnvelopeFollower::setRange(float rangeSum, LevelDetectors& detectors) ZUM_REALTIME {
  lastRange = rangeSum;
  const float efHz = bandHz(rangeSum);
  storeShared(shown.bandHz, efHz);
  // The band uses row 3 of the tables alone.
  constexpr RowPosition kRow{3, 0.0F};
  detectors.setFollowerBand(lookupCoefficients(columnOf(efHz, columnScale), kRow),
                            hearsBand(rangeSum));
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
  const AttackRow attack = attackOf(attackSum);
  storeShared(shown.attackMs, attack.ms);
  const float smoothHz = clampTo(attack.smoothHz, 0.0F, clock.sampleRate);
  detectors.setSmoothing(tanApprox(smoothHz * 3.141590118408203F / clock.sampleRate));
}

}  // namespace zum
