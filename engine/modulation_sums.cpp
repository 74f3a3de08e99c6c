#include "engine/modulation_sums.hpp"

#include "engine/shared_value.hpp"

namespace zum {
namespace {

float base(const ControlValue& target) ZUM_REALTIME { return loadShared(target.raw); }
float by(const ControlValue& amount) ZUM_REALTIME { return loadShared(amount.bipolar); }

}  // namespace

void ModulationSums::follow(const EngineControls& c, float seqOut) ZUM_REALTIME {
  const std::uint32_t now = c.version.current();
  if (now == version) return;
  version = now;

  sequencerEf = Float4{by(c.seqGlideEf), by(c.seqTempoEf)};
  sequencerLfo = Float4{by(c.seqGlideLfo), by(c.seqTempoLfo)};
  sequencerBase = Float4{base(c.seqGlide), base(c.seqTempo)};

  lfoEf = Float4{by(c.lfoRateEf), by(c.lfoWaveEf), by(c.lfoSensEf)};
  lfoSeq = Float4{by(c.lfoRateSeq), by(c.lfoWaveSeq), by(c.lfoSensSeq)};
  lfoBase = Float4{base(c.lfoRate), base(c.lfoWave), base(c.lfoTrigSens)};

  followerLfo = Float4{by(c.efGainLfo), by(c.efAttackLfo), by(c.efReleaseLfo), by(c.efRangeLfo)};
  followerSeq = Float4{by(c.efGainSeq), by(c.efAttackSeq), by(c.efReleaseSeq), by(c.efRangeSeq)};
  followerBase = Float4{base(c.efGain), base(c.efAttack), base(c.efRelease), base(c.efFreqRange)};

  filterLfo = Float4{by(c.cutoffLfo), by(c.vowelLfo), by(c.resoLfo), by(c.mixLfo)};
  filterEf = Float4{by(c.cutoffEf), by(c.vowelEf), by(c.resoEf), by(c.mixEf)};
  filterSeq = Float4{by(c.cutoffSeq), by(c.vowelSeq), by(c.resoSeq), by(c.mixSeq)};
  filterBase = Float4{base(c.cutoff), base(c.vowelCutoff), base(c.resonance), base(c.mixDryWet)};

  levelLfo = Float4{by(c.masterLfo), by(c.driveLfo)};
  levelEf = Float4{by(c.masterEf), by(c.driveEf)};
  levelSeq = Float4{by(c.masterSeq), by(c.driveSeq)};
  levelThird = Float4{0.0F, base(c.overdrive)};
  levelFourth = Float4{base(c.master)};
  refreshSeqProducts(seqOut);
}

void ModulationSums::refreshSeqProducts(float seqOut) ZUM_REALTIME {
  const Float4 level = splat(seqOut);
  lfoSeqProduct = lfoSeq * level;
  followerSeqProduct = followerSeq * level;
  filterSeqProduct = filterSeq * level;
  const Float4 products = levelSeq * level;
  levelThird[0] = products[0];
  levelFourth[1] = products[1];
}

}  // namespace zum
