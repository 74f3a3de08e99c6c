// Catches a sum that misses a modulator, adds in another order, clamps at a wrong end, or reads a
// modulator of the wrong control pass.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr int kResoEf = 23;
constexpr int kResoLfo = 24;
constexpr int kResoSeq = 25;

/// Which modulator moves, so that a change of its own sums shows. The others stand still, at
/// levels that any sum of them can be computed from.
enum class Moving { sequencer, lfo, follower, none };
enum class By { base, lfo, ef, seq };

struct Term {
  By by;
  int tag;
};

/// The terms in the order in which they are added.
struct Sum {
  const char* name;
  Moving moving;
  int bank;
  std::vector<Term> terms;
  float base;
};

const Sum kSums[] = {
    {"glide", Moving::sequencer, 0, {{By::ef, 48}, {By::lfo, 49}, {By::base, kGlide}}, 0.6F},
    {"tempo", Moving::sequencer, 0, {{By::ef, 46}, {By::lfo, 47}, {By::base, kStepTempo}}, 0.7F},
    {"rate", Moving::lfo, 0, {{By::ef, 40}, {By::seq, 41}, {By::base, kLfoRate}}, 0.7F},
    {"wave", Moving::lfo, 0, {{By::ef, 42}, {By::seq, 43}, {By::base, kLfoWave}}, 0.5F},
    {"sens", Moving::lfo, 0, {{By::ef, 44}, {By::seq, 45}, {By::base, kLfoTrigSens}}, 0.5F},
    {"gain", Moving::follower, 0, {{By::lfo, 38}, {By::seq, 39}, {By::base, kEfGain}}, 0.4F},
    {"attack", Moving::follower, 0, {{By::lfo, 34}, {By::seq, 35}, {By::base, kEfAttack}}, 0.4F},
    {"release", Moving::follower, 0, {{By::lfo, 36}, {By::seq, 37}, {By::base, kEfRelease}}, 0.6F},
    {"range", Moving::follower, 0, {{By::lfo, 32}, {By::seq, 33}, {By::base, kEfRange}}, 0.5F},
    {"drive", Moving::none, 0, {{By::lfo, 27}, {By::ef, 26}, {By::base, 5}, {By::seq, 28}}, 0.4F},
    {"cutoff", Moving::none, 0, {{By::lfo, 18}, {By::ef, 17}, {By::seq, 19}, {By::base, 3}}, 0.5F},
    {"vowel", Moving::none, 1, {{By::lfo, 21}, {By::ef, 20}, {By::seq, 22}, {By::base, 0}}, 0.5F},
    {"reso", Moving::none, 0, {{By::lfo, 24}, {By::ef, 23}, {By::seq, 25}, {By::base, 4}}, 0.5F},
    {"mix", Moving::none, 0, {{By::lfo, 30}, {By::ef, 29}, {By::seq, 31}, {By::base, 2}}, 0.5F},
    {"master", Moving::none, 1, {{By::lfo, 51}, {By::ef, 50}, {By::seq, 52}, {By::base, 1}}, 0.5F},
};

/// Everything that can be seen or heard, a control pass after the other.
using Trace = std::vector<float>;

struct RoutingPasses : ControlPasses {
  explicit RoutingPasses(const Sum& sum) {
    host.moves = false;
    prepare(sum.bank == 0 ? 4 : 15, 0.5F, 0.5F, 0.2F);
    set(kStepMode, 0.1F);
    set(kEfRange, 0.1F);
    set(kEfAttack, 0.0F);
    set(kEfRelease, sum.moving == Moving::follower ? 0.3F : 1.0F);
    set(kEfGain, sum.moving == Moving::follower ? 0.4F : 1.0F);  // at 1 it stands at its top
    set(kLfoTrigOnOff, 1.0F);
    set(kLfoStyle, sum.moving == Moving::lfo ? 0.0F : 1.0F);
    set(kLfoRate, 0.5F);
    play(true);
    host.time.ppqPos = 0.09;  // where the song's position holds the sine
    set(kStepTempo, 0.7F);
    if (sum.moving != Moving::sequencer) setSteps(0.7F);
    set(sum.terms[baseOf(sum)].tag, sum.base);
  }

  static std::size_t baseOf(const Sum& sum) {
    const auto isBase = [](const Term& term) { return term.by == By::base; };
    return static_cast<std::size_t>(std::find_if(sum.terms.begin(), sum.terms.end(), isBase) -
                                    sum.terms.begin());
  }

  /// A slow swell under noise.
  const ModulatorOutputs& swell() {
    for (std::size_t i = 0; i < 16; ++i) {
      seed = seed * 1664525U + 1013904223U;
      const float hiss = 0.05F * (static_cast<float>(seed >> 8U) * 0x1p-23F - 1.0F);
      const auto slow = static_cast<float>(std::sin(8e-4 * frame++));
      in.left[i] = 0.9F * slow + hiss;
      in.right[i] = 0.7F * slow - hiss;
    }
    return pass();
  }
  void settle() {
    for (int i = 0; i < 200; ++i) swell();
  }

  Trace trace(int passes) {
    Trace seen;
    const Engine& engine = client().signal();
    for (int i = 0; i < passes; ++i) {
      const ModulatorOutputs& m = swell();
      seen.insert(seen.end(),
                  {m.seqOut, m.lfoOut, m.efOut, engine.cutoffHz(), engine.resonanceSum(),
                   engine.lfoDisplay().triggerValue(), engine.followerDisplay().readout().attackMs,
                   out.left[5], out.right[15]});
    }
    return seen;
  }

  std::uint32_t seed = 1;
  int frame = 0;
};

float clamped(float x) { return std::clamp(x, 0.0F, 1.0F); }

/// The sum with the amounts given, a raw value for each term.
float slowly(const Sum& sum, const std::vector<float>& raws, const ModulatorOutputs& m) {
  float total = 0.0F;
  for (std::size_t i = 0; i < sum.terms.size(); ++i) {
    const float amount = 2.0F * raws[i] - 1.0F;
    const By by = sum.terms[i].by;
    const float term = by == By::base  ? sum.base
                       : by == By::lfo ? amount * m.lfoOut
                       : by == By::ef  ? amount * m.efOut
                                       : amount * m.seqOut;
    total = i == 0 ? term : total + term;
  }
  return clamped(total);
}

// An amount does what the same move of the base does, to the bit.
TEST(Routing, EverySumAddsItsAmountsAndClamps) {
  for (const Sum& sum : kSums) {
    const std::size_t base = RoutingPasses::baseOf(sum);
    std::vector<std::vector<float>> cases;
    for (std::size_t i = 0; i < sum.terms.size(); ++i) {
      for (const float raw : {0.6F, 0.37F, 1.0F, 0.0F}) {
        if (i == base) continue;
        cases.emplace_back(sum.terms.size(), 0.5F)[i] = raw;
      }
    }
    const std::size_t singles = cases.size();
    cases.push_back({0.531F, 0.417F, 0.553F, 0.459F});  // all at once, inside of the ends
    cases.push_back({0.443F, 0.571F, 0.471F, 0.591F});
    RoutingPasses still(sum);
    still.settle();
    const Trace unmoved = still.trace(400);
    for (std::size_t at = 0; at < cases.size(); ++at) {
      const std::vector<float>& raws = cases[at];
      SCOPED_TRACE(testing::Message() << sum.name << ' ' << testing::PrintToString(raws));
      RoutingPasses byAmount(sum);
      RoutingPasses byBase(sum);
      byAmount.settle();
      byBase.settle();
      const ModulatorOutputs m = byAmount.client().signal().modulation();
      for (std::size_t i = 0; i < sum.terms.size(); ++i) {
        if (i != base) byAmount.set(sum.terms[i].tag, raws[i]);
      }
      byBase.set(sum.terms[base].tag, slowly(sum, raws, m));
      const Trace moved = byAmount.trace(400);
      EXPECT_TRUE(moved == byBase.trace(400));
      EXPECT_FALSE(at < singles && moved == unmoved);
    }
  }
}

TEST(Routing, AmountsInTheMiddleLeaveTheBase) {
  ControlPasses host;
  ControlPasses other;
  for (ControlPasses* each : {&host, &other}) each->prepare(4, 0.37F, 0.61F, 0.3F);
  other.setSteps(0.0F);
  other.set(kLfoRate, 1.0F);
  other.set(kEfGain, 0.0F);
  host.set(kStepTempo, 1.0F);
  host.set(kLfoRate, 0.7F);
  const Stereo in = noise(8000);
  EXPECT_EQ(host.render(in), other.render(in));
  EXPECT_EQ(host.client().signal().resonanceSum(), 0.61F);
  EXPECT_NE(host.efOut(), other.efOut());
}

TEST(Routing, ThePageFollowsTheTabStripWhileItIsHeld) {
  ControlPasses host;
  host.prepare(4, 0.5F, 0.3F, 0.0F);
  KvUniClient& client = host.client();
  const auto pageAt = [&](float held, float x) {
    client.setMouseArea({held, 0.0F, x, 0.0F, 0.0F, 0.0F});
    client.setParameter(163, x);
    host.pass(0.0F);
    return client.value(165).integer;
  };
  EXPECT_EQ(pageAt(0.0F, 0.9F), 0);
  EXPECT_EQ(pageAt(1.0F, 0.9F), 2);
  EXPECT_EQ(pageAt(1.0F, 0.4F), 1);  // slid along
  EXPECT_EQ(pageAt(0.0F, 0.4F), 1);  // and stays
  client.setParameter(165, 1.0F);
  host.pass(0.0F);
  EXPECT_EQ(client.value(165).integer, 2);
  EXPECT_EQ(pageAt(1.0F, 0.0F), 0);
}

// Targets behind the modulators read all three of this pass.
TEST(Routing, TargetsReadTheNewestOutputs) {
  ControlPasses host;
  host.prepare(4, 0.5F, 0.3F, 0.0F);
  host.set(kStepTempo, notePosition(24));
  host.set(kLfoRate, notePosition(20));
  host.set(kEfRange, 0.0F);
  host.set(kEfRelease, 0.2F);
  host.set(kResoEf, 0.7F);
  host.set(kResoLfo, 0.35F);
  host.set(kResoSeq, 0.83F);
  host.set(32, 0.8F);  // the follower's range: LFO and sequencer
  host.set(33, 0.41F);
  for (int i = 0; i < 2000; ++i) {
    const ModulatorOutputs m = host.pass(i / 50 % 2 == 0 ? 0.6F : 0.0F);
    const float reso = clamped((2.0F * 0.35F - 1.0F) * m.lfoOut + (2.0F * 0.7F - 1.0F) * m.efOut +
                               (2.0F * 0.83F - 1.0F) * m.seqOut + 0.3F);
    ASSERT_EQ(host.client().signal().resonanceSum(), reso) << i;
    const float range =
        clamped((2.0F * 0.8F - 1.0F) * m.lfoOut + (2.0F * 0.41F - 1.0F) * m.seqOut + 0.0F);
    ASSERT_NEAR(host.client().signal().followerDisplay().readout().bandHz,
                44.0F + 7200.0F * range * range * range, 0.01F)
        << i;
  }
}

// At a stopped transport the sine stands in the middle and the square at 0: the sum tells itself.
TEST(Routing, TheLfoReadsTheFollowerOfThePassBefore) {
  for (const bool bySequencer : {false, true}) {
    ControlPasses host;
    host.set(kLfoStyle, 1.0F);
    host.set(kLfoWave, 0.0F);
    host.set(bySequencer ? 43 : 42, 0.62F);
    host.set(kStepTempo, notePosition(26));
    host.set(kEfGain, 0.4F);
    host.set(kEfRange, 0.0F);
    host.set(kEfRelease, 0.1F);
    float efBefore = 0.0F;
    int wouldDiffer = 0;
    for (int i = 0; i < 2000; ++i) {
      const ModulatorOutputs m = host.pass(i / 30 % 2 == 0 ? 1.0F : 0.0F);
      const auto due = [](float mover) {
        return (2.0F * 0.62F - 1.0F) * mover * 4.0F + 0.5F < 1.0F ? 0.5F : 0.0F;
      };
      ASSERT_EQ(m.lfoOut, due(bySequencer ? m.seqOut : efBefore)) << i;
      wouldDiffer += due(efBefore) != due(m.efOut) ? 1 : 0;
      efBefore = m.efOut;
    }
    EXPECT_GT(wouldDiffer, 20);
  }
}

TEST(Routing, TheSequencerReadsThePassBefore) {
  ControlPasses host;
  host.set(kStepMode, 0.1F);
  host.set(kStepTempo, notePosition(17));
  host.set(47, 0.5F + 8.0F / 52.0F);  // the LFO: up to eight notes
  host.set(46, 0.5F - 3.0F / 52.0F);  // the follower: down to three less
  host.set(kLfoWave, 0.25F);
  host.set(kLfoRate, notePosition(21));
  host.set(kEfRange, 0.0F);
  host.set(kEfRelease, 0.1F);
  ModulatorOutputs before;
  double phase = 0.0;
  double otherPhase = 0.0;
  int wouldDiffer = 0;
  for (int i = 0; i < 4000; ++i) {
    const auto advance = [](const ModulatorOutputs& m) {
      const float sum = clamped((2.0F * (0.5F - 3.0F / 52.0F) - 1.0F) * m.efOut +
                                (2.0F * (0.5F + 8.0F / 52.0F) - 1.0F) * m.lfoOut + 17.0F / 26.0F);
      return 16.0 / (kBars[std::lround(sum * 26.0F)] * 4.0 * 24000.0);
    };
    const auto move = [](double& at, double by) { at = at + by < 8.0 ? at + by : 0.0; };
    const ModulatorOutputs m = host.pass(i / 37 % 2 == 0 ? 1.0F : 0.0F);
    move(phase, advance(before));
    move(otherPhase, advance(m));
    const float step = std::floor(static_cast<float>(phase));
    ASSERT_EQ(host.client().steps().lastColumn(), step) << i;
    wouldDiffer += std::floor(static_cast<float>(otherPhase)) != step ? 1 : 0;
    before = m;
  }
  EXPECT_GT(wouldDiffer, 5);
}

TEST(Routing, AnAmountActsAtOnceWhileTheSequenceIsStill) {
  ControlPasses host;
  host.prepare(4, 0.5F, 0.2F, 0.0F);
  host.setSteps(0.75F);
  host.skip(10);
  host.set(kResoSeq, 0.9F);
  EXPECT_EQ(host.client().controls().resoSeq.seqProduct, (2.0F * 0.9F - 1.0F) * 0.75F);
  host.pass(0.0F);
  EXPECT_EQ(host.client().signal().resonanceSum(), (2.0F * 0.9F - 1.0F) * 0.75F + 0.2F);
}

}  // namespace
}  // namespace zum::test
