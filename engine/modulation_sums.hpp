// The fifteen fixed sums through which sequencer, LFO and follower move their targets and each
// other. A sum is evaluated left to right, then held in 0 to 1; a product is an amount times the
// sequence level, kept beside the amount.
#pragma once

#include "engine/controls.hpp"
#include "engine/numbers.hpp"
#include "engine/shared_value.hpp"

namespace zum {

/// Each 0 to 1.
struct ModulatorOutputs {
  float seqOut = 0.0F;
  float lfoOut = 0.0F;
  float efOut = 0.0F;
};

class ModulationSums {
 public:
  ModulationSums(const EngineControls& values, const ModulatorOutputs& outputs)
      : c(values), m(outputs) {}

  // The sequencer reads follower and LFO of the pass before.
  float seqGlide() const ZUM_REALTIME {
    return ofTwo(ef(c.seqGlideEf), lfo(c.seqGlideLfo), c.seqGlide);
  }
  float seqTempo() const ZUM_REALTIME {
    return ofTwo(ef(c.seqTempoEf), lfo(c.seqTempoLfo), c.seqTempo);
  }
  // The LFO reads the follower of the pass before.
  float lfoRate() const ZUM_REALTIME {
    return ofTwo(ef(c.lfoRateEf), seq(c.lfoRateSeq), c.lfoRate);
  }
  float lfoWave() const ZUM_REALTIME {
    return ofTwo(ef(c.lfoWaveEf), seq(c.lfoWaveSeq), c.lfoWave);
  }
  float lfoSens() const ZUM_REALTIME {
    return ofTwo(ef(c.lfoSensEf), seq(c.lfoSensSeq), c.lfoTrigSens);
  }
  float efGain() const ZUM_REALTIME { return ofTwo(lfo(c.efGainLfo), seq(c.efGainSeq), c.efGain); }
  float efAttack() const ZUM_REALTIME {
    return ofTwo(lfo(c.efAttackLfo), seq(c.efAttackSeq), c.efAttack);
  }
  float efRelease() const ZUM_REALTIME {
    return ofTwo(lfo(c.efReleaseLfo), seq(c.efReleaseSeq), c.efRelease);
  }
  float efRange() const ZUM_REALTIME {
    return ofTwo(lfo(c.efRangeLfo), seq(c.efRangeSeq), c.efFreqRange);
  }
  // From here on all three are of this pass.
  float drive() const ZUM_REALTIME {
    return clampUnit(lfo(c.driveLfo) + ef(c.driveEf) + base(c.overdrive) + seq(c.driveSeq));
  }
  float cutoff() const ZUM_REALTIME {
    return ofThree(c.cutoffLfo, c.cutoffEf, c.cutoffSeq, c.cutoff);
  }
  float vowelPosition() const ZUM_REALTIME {
    return ofThree(c.vowelLfo, c.vowelEf, c.vowelSeq, c.vowelCutoff);
  }
  float resonance() const ZUM_REALTIME {
    return ofThree(c.resoLfo, c.resoEf, c.resoSeq, c.resonance);
  }
  float mix() const ZUM_REALTIME { return ofThree(c.mixLfo, c.mixEf, c.mixSeq, c.mixDryWet); }
  float master() const ZUM_REALTIME {
    return ofThree(c.masterLfo, c.masterEf, c.masterSeq, c.master);
  }

 private:
  static float base(const ControlValue& value) ZUM_REALTIME { return loadShared(value.raw); }
  float ef(const ControlValue& amount) const ZUM_REALTIME {
    return loadShared(amount.bipolar) * m.efOut;
  }
  float lfo(const ControlValue& amount) const ZUM_REALTIME {
    return loadShared(amount.bipolar) * m.lfoOut;
  }
  static float seq(const ControlValue& amount) ZUM_REALTIME {
    return loadShared(amount.seqProduct);
  }

  static float ofTwo(float first, float second, const ControlValue& target) ZUM_REALTIME {
    return clampUnit(first + second + base(target));
  }
  float ofThree(const ControlValue& byLfo, const ControlValue& byEf, const ControlValue& bySeq,
                const ControlValue& target) const ZUM_REALTIME {
    return clampUnit(lfo(byLfo) + ef(byEf) + seq(bySeq) + base(target));
  }

  const EngineControls& c;
  const ModulatorOutputs& m;
};

/// Every amount's product with the sequence level. Called whenever that level moves.
void refreshSeqProducts(EngineControls& controls, float seqOut) ZUM_REALTIME;

}  // namespace zum
