// The fifteen fixed sums through which sequencer, LFO and follower move their targets and each
// other, four at a time. A sum is evaluated left to right, then held in 0 to 1.
#pragma once

#include "engine/controls.hpp"
#include "engine/simd.hpp"

namespace zum {

/// Each 0 to 1.
struct ModulatorOutputs {
  float seqOut = 0.0F;
  float lfoOut = 0.0F;
  float efOut = 0.0F;
};

/// A copy of what the sums read of the controls, made anew when one of them was set: a control pass
/// then hears all of them as of its beginning.
class ModulationSums {
 public:
  /// At the beginning of a control pass.
  void follow(const EngineControls& controls, float seqOut) ZUM_REALTIME;
  /// The thirteen products of an amount with the sequence level. Whenever that level moves.
  void refreshSeqProducts(float seqOut) ZUM_REALTIME;

  // The sequencer reads follower and LFO of the pass before.
  /// Glide and tempo.
  Float4 sequencer(const ModulatorOutputs& m) const ZUM_REALTIME {
    return held(sequencerEf * splat(m.efOut) + sequencerLfo * splat(m.lfoOut) + sequencerBase);
  }
  // The LFO reads the follower of the pass before.
  /// Rate, wave and sensitivity.
  Float4 lfo(const ModulatorOutputs& m) const ZUM_REALTIME {
    return held(lfoEf * splat(m.efOut) + lfoSeqProduct + lfoBase);
  }
  /// Gain, attack, release and range.
  Float4 follower(const ModulatorOutputs& m) const ZUM_REALTIME {
    return held(followerLfo * splat(m.lfoOut) + followerSeqProduct + followerBase);
  }
  // From here on all three are of this pass.
  /// Cutoff, vowel position, resonance and mix.
  Float4 filter(const ModulatorOutputs& m) const ZUM_REALTIME {
    return held(filterLfo * splat(m.lfoOut) + filterEf * splat(m.efOut) + filterSeqProduct +
                filterBase);
  }
  /// Master and drive; the drive adds its base ahead of the sequence.
  Float4 level(const ModulatorOutputs& m) const ZUM_REALTIME {
    return held(levelLfo * splat(m.lfoOut) + levelEf * splat(m.efOut) + levelThird + levelFourth);
  }

 private:
  static Float4 held(Float4 sum) ZUM_REALTIME {
    return smaller(larger(sum, splat(0.0F)), splat(1.0F));
  }

  std::uint32_t version = 0;  // of the controls that were copied
  // amounts -1 to 1, and the values that they move
  Float4 sequencerEf{}, sequencerLfo{}, sequencerBase{};
  Float4 lfoEf{}, lfoSeq{}, lfoBase{};
  Float4 followerLfo{}, followerSeq{}, followerBase{};
  Float4 filterLfo{}, filterEf{}, filterSeq{}, filterBase{};
  Float4 levelLfo{}, levelEf{}, levelSeq{};
  // amounts times the sequence level
  Float4 lfoSeqProduct{}, followerSeqProduct{}, filterSeqProduct{};
  Float4 levelThird{}, levelFourth{};  // a product and a base in turn
};

}  // namespace zum
