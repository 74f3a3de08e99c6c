#include "engine/modulation_sums.hpp"

namespace zum {
namespace {

using C = EngineControls;

// In the order of the sums that read them.
constexpr ControlValue C::*kSequencedAmounts[] = {
    &C::lfoRateSeq,   &C::lfoWaveSeq, &C::lfoSensSeq, &C::efGainSeq, &C::efAttackSeq,
    &C::efReleaseSeq, &C::efRangeSeq, &C::driveSeq,   &C::cutoffSeq, &C::vowelSeq,
    &C::resoSeq,      &C::mixSeq,     &C::masterSeq,
};

}  // namespace

void refreshSeqProducts(EngineControls& controls, float seqOut) ZUM_REALTIME {
  for (ControlValue C::*const member : kSequencedAmounts) {
    ControlValue& amount = controls.*member;
    storeShared(amount.seqProduct, loadShared(amount.bipolar) * seqOut);
  }
}

}  // namespace zum
