// Catches a sum that misses a modulator, adds in another order, clamps at a wrong end, or reads a
// modulator of the wrong control pass.

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "support/control_passes.hpp"

namespace zum::test {
namespace {

using D = DisplayValues;

enum class By { base, ef, lfo, seq };

struct Term {
  By by;
  int tag;
};

/// A sum, and its terms in the order in which they are added.
struct Sum {
  float D::*shown;
  std::vector<Term> terms;
};

// clang-format off
using enum By;
// The sequencer reads follower and LFO of the pass before,
const Sum kSequencerSums[] = {
    {&D::seqGlide, {{ef, tag::seqGlideEf}, {lfo, tag::seqGlideLfo}, {base, tag::seqGlide}}},
    {&D::seqTempo, {{ef, tag::seqTempoEf}, {lfo, tag::seqTempoLfo}, {base, tag::seqTempo}}}};
// the LFO the follower of the pass before,
const Sum kLfoSums[] = {
    {&D::lfoRate, {{ef, tag::lfoRateEf}, {seq, tag::lfoRateSeq}, {base, tag::lfoRate}}},
    {&D::lfoWave, {{ef, tag::lfoWaveEf}, {seq, tag::lfoWaveSeq}, {base, tag::lfoWave}}},
    {&D::lfoSens, {{ef, tag::lfoSensEf}, {seq, tag::lfoSensSeq}, {base, tag::lfoTrigSens}}}};
// and all that comes behind them the newest ones.
const Sum kLaterSums[] = {
    {&D::efGain,    {{lfo, tag::efGainLfo},    {seq, tag::efGainSeq},    {base, tag::efGain}}},
    {&D::efAttack,  {{lfo, tag::efAttackLfo},  {seq, tag::efAttackSeq},  {base, tag::efAttack}}},
    {&D::efRelease, {{lfo, tag::efReleaseLfo}, {seq, tag::efReleaseSeq}, {base, tag::efRelease}}},
    {&D::efRange,   {{lfo, tag::efRangeLfo},   {seq, tag::efRangeSeq},   {base, tag::efFreqRange}}},
    {&D::drive,
     {{lfo, tag::driveLfo}, {ef, tag::driveEf}, {base, tag::overdrive}, {seq, tag::driveSeq}}},
    {&D::cutoff,
     {{lfo, tag::cutoffLfo}, {ef, tag::cutoffEf}, {seq, tag::cutoffSeq}, {base, tag::cutoff}}},
    {&D::vowelPosition,
     {{lfo, tag::vowelLfo}, {ef, tag::vowelEf}, {seq, tag::vowelSeq}, {base, tag::vowelCutoff}}},
    {&D::resonance,
     {{lfo, tag::resoLfo}, {ef, tag::resoEf}, {seq, tag::resoSeq}, {base, tag::resonance}}},
    {&D::mix, {{lfo, tag::mixLfo}, {ef, tag::mixEf}, {seq, tag::mixSeq}, {base, tag::mixDryWet}}},
    {&D::master,
     {{lfo, tag::masterLfo}, {ef, tag::masterEf}, {seq, tag::masterSeq}, {base, tag::master}}}};
// clang-format on

struct RoutingPasses : ControlPasses {
  /// A random number of 0 to 1.
  float any() {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<float>(seed >> 8U) * 0x1p-24F;
  }
  /// New values for all that is added, some on either side of the ends.
  void moveAll() {
    for (const auto& sums : {std::span<const Sum>(kSequencerSums), {kLfoSums}, {kLaterSums}}) {
      for (const Sum& sum : sums) {
        for (const auto& [by, tag] : sum.terms) set(tag, 0.25F + 0.5F * any());
      }
    }
    set(tag::efFreqRange, 0.0F);              // where it hears a level
    set(tag::seqTempo, 0.8F + 0.2F * any());  // gliding half of the time
    set(tag::seqGlide, 0.6F + 0.4F * any());
    set(tag::lfoTrigOnOff, 1.0F);
  }
  /// To the bit, from what the modulators gave.
  void expectSums(std::span<const Sum> sums, float efOut, float lfoOut, float seqOut) {
    for (const Sum& sum : sums) {
      float due = 0.0F;
      for (const auto& [by, tag] : sum.terms) {
        const float bipolar = 2.0F * get(tag) - 1.0F;
        const float term = by == base  ? get(tag)
                           : by == ef  ? bipolar * efOut
                           : by == lfo ? bipolar * lfoOut
                                       : bipolar * seqOut;
        due = &by == &sum.terms.front().by ? term : due + term;
      }
      clamps += due < 0.0F || due > 1.0F ? 1 : 0;
      ASSERT_EQ(client().signal().display().*sum.shown, std::clamp(due, 0.0F, 1.0F))
          << "sum with " << sum.terms.front().tag;
    }
  }

  std::uint32_t seed = 1;
  int clamps = 0;
};

TEST(Routing, EverySumAddsInItsOrderWhatItsPassHas) {
  RoutingPasses host;
  ModulatorOutputs before;
  int efMoved = 0;
  int lfoMoved = 0;
  int seqMoved = 0;
  for (int pass = 0; pass < 6000 && !testing::Test::HasFailure(); ++pass) {
    SCOPED_TRACE(pass);
    if (pass % 25 == 0) host.moveAll();
    const ModulatorOutputs m = host.pass(pass / 40 % 2 == 0 ? 0.6F : 0.05F);
    host.expectSums(kSequencerSums, before.efOut, before.lfoOut, 0.0F);
    host.expectSums(kLfoSums, before.efOut, 0.0F, m.seqOut);
    host.expectSums(kLaterSums, m.efOut, m.lfoOut, m.seqOut);
    efMoved += m.efOut != before.efOut ? 1 : 0;
    lfoMoved += m.lfoOut != before.lfoOut ? 1 : 0;
    seqMoved += m.seqOut != before.seqOut ? 1 : 0;
    before = m;
  }
  EXPECT_GT(efMoved, 2000);
  EXPECT_GT(lfoMoved, 2000);
  EXPECT_GT(seqMoved, 500);
  EXPECT_LT(seqMoved, 5000);  // or no amount is set while the sequence stands
  EXPECT_GT(host.clamps, 500);
}

TEST(Routing, ThePageFollowsTheTabStripWhileItIsHeld) {
  ControlPasses host;
  host.prepare(4, 0.5F, 0.3F, 0.0F);
  KvUniClient& client = host.client();
  const auto pageAt = [&](float held, float x) {
    client.setMouseArea({held, 0.0F, x, 0.0F, 0.0F, 0.0F});
    client.setParameter(tag::mouseArea, x);
    host.pass(0.0F);
    return client.value(tag::modChoice).integer;
  };
  EXPECT_EQ(pageAt(0.0F, 0.9F), 0);
  EXPECT_EQ(pageAt(1.0F, 0.9F), 2);
  EXPECT_EQ(pageAt(1.0F, 0.4F), 1);  // slid along
  EXPECT_EQ(pageAt(0.0F, 0.4F), 1);  // and stays
  client.setParameter(tag::modChoice, 1.0F);
  host.pass(0.0F);
  EXPECT_EQ(client.value(tag::modChoice).integer, 2);
  EXPECT_EQ(pageAt(1.0F, 0.0F), 0);
}

}  // namespace
}  // namespace zum::test
