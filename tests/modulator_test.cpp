// The laws of the modulators: rates, orders, times and random sequences. What they are to the bit,
// and what they do to the sound, the known answers and the recorded sound tell.

#include <gtest/gtest.h>

#include <cmath>

#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr int kNotePasses = 375;  // 0.0625 bars at 120 beats per minute and 48 kHz

// ---- LFO

enum Wave { sine, square, third, triangle, random };

/// The LFO in one of its styles, one cycle in a note.
struct LfoPasses : ControlPasses {
  LfoPasses(bool sync, Wave wave, int note, float sampleRate = 48000.0F, double tempo = 120.0)
      : ControlPasses(sampleRate, tempo) {
    set(tag::lfoStyle, sync ? 1.0F : 0.0F);
    set(tag::lfoRate, sync ? 1.0F - notePosition(note) : notePosition(note));
    set(tag::lfoWave, static_cast<float>(wave) / 4.0F);
    play(sync);
  }
};

TEST(Lfo, ACycleLastsItsNote) {
  const struct {
    bool sync;
    int note;
    double tempo, beats;
  } cases[] = {{false, 4, 300.0, 4.0},  {false, 12, 120.0, 4 * 0.166667},
               {false, 16, 60.0, 0.25}, {true, 0, 50.0, 1.0 / 64.0},
               {true, 10, 173.0, 0.25}, {true, 21, 300.0, 1 / (16 * 0.020833)}};
  for (const auto& c : cases) {
    LfoPasses host(c.sync, sine, c.note, 96000.0F, c.tempo);
    host.skip(1000);
    double first = 0.0;
    int cycles = -1;
    for (int passes = 1; cycles < 4; ++passes) {
      ASSERT_LT(passes, 7.0 * host.passesOf(c.beats));
      const float before = host.lfoOut();
      const float after = host.pass(0.0F).lfoOut;
      if (!(before < 0.5F && after >= 0.5F)) continue;
      const double crossed = passes - static_cast<double>((after - 0.5F) / (after - before));
      if (++cycles == 0) first = crossed;
      const double due = cycles * host.passesOf(c.beats);
      EXPECT_NEAR(crossed - first, due, 0.1 + due * 1e-3) << c.note << ", style " << c.sync;
    }
  }
}

TEST(Lfo, TriggersAboveItsThresholdAndFallsIn200Ms) {
  for (const float sens : {0.1F, 0.5F, 0.99F}) {
    const double threshold = std::pow(1.0 - static_cast<double>(sens), 0.8);
    ControlPasses host;
    const Lfo& lfo = host.client().signal().lfoDisplay();
    host.set(tag::lfoTrigOnOff, 1.0F);
    host.set(tag::lfoTrigSens, sens);
    float level = 0.0F;
    while (level < 1.2F && (host.pass(level), lfo.triggerValue() == 0.0F)) level += 0.0005F;
    EXPECT_NEAR(level, threshold, 0.004) << sens;
    while (level < 1.0F) host.pass(level += 0.0005F);
    host.skip(50, level);
    EXPECT_EQ(lfo.lampLevel(), 1.0F);
    int passes = 0;
    while (passes < 1000 && (host.pass(0.0F), lfo.triggerValue() == 1.0F)) ++passes;
    const double fallMs = 200.0 * (1.0 - threshold / static_cast<double>(level));
    EXPECT_NEAR(passes / 3.0, fallMs, 1.5) << sens;
    // The lamp goes out in 50 ms.
    host.skip(74);
    EXPECT_NEAR(lfo.lampLevel(), 0.5F, 0.01F);
    host.skip(77);
    EXPECT_EQ(lfo.lampLevel(), 0.0F);
    host.set(tag::lfoTrigOnOff, 0.0F);
    host.skip(50, 1.2F);
    EXPECT_EQ(lfo.triggerValue(), 0.0F);
  }
}

// One draw a cycle in the free style, where the triangle turns up; one each half in the sync style.
TEST(Lfo, RandomWavesFollowTheirGenerators) {
  for (const bool sync : {false, true}) {
    LfoPasses host(sync, random, sync ? 10 : 16);
    std::int64_t seed = sync ? 153 : 12382;
    std::vector<float> expected;
    if (sync) expected.push_back(0.5F);  // up to the first half
    while (expected.size() < 40) expected.push_back((drawn(seed) + 1.0F) * 0.5F);
    std::vector<float> heard = {host.pass(0.0F).lfoOut};
    for (int i = 1; i < (sync ? 20 : 40) * kNotePasses && heard.size() < 40; ++i) {
      if (host.pass(0.0F).lfoOut != heard.back()) heard.push_back(host.lfoOut());
    }
    EXPECT_EQ(heard, expected) << "style " << sync;
  }
}

// ---- follower

constexpr float kUnityGain = 0.39763537F;  // 40 g^4 = 1

/// Unfiltered, unity gain, the fastest attack and the longest release.
struct FollowerPasses : ControlPasses {
  explicit FollowerPasses(double tempo = 120.0) : ControlPasses(48000.0F, tempo) {
    set(tag::efGain, kUnityGain);
    set(tag::efFreqRange, 0.0F);
    set(tag::efAttack, 0.0F);
    set(tag::efRelease, 1.0F);
  }
};

TEST(Follower, AttackIsAOnePoleOfTheTables) {
  const struct {
    float attack;
    double hz, shownMs;
  } cases[] = {{0.0F, 256.0, 0.0},        {0.5F, 32.0, 22.0},        {0.57735027F, 16.0, 45.0},
               {0.79056942F, 1.5, 545.0}, {0.81649658F, 1.0, 730.0}, {1.0F, 0.6, 1150.0}};
  for (const auto& c : cases) {
    FollowerPasses host;
    host.set(tag::efAttack, c.attack);
    host.skip(2);
    EXPECT_NEAR(host.client().signal().followerDisplay().readout().attackMs, c.shownMs, 0.01);
    const double timeConstant = 48000.0 / 16.0 / (2.0 * 3.14159265 * c.hz);  // passes
    for (int passes = 0; passes < 3.0 * timeConstant; ++passes) {
      const double heard = static_cast<double>(host.pass(0.5F).efOut);
      const double due = 0.5 * (1.0 - std::exp(-passes / timeConstant));
      ASSERT_NEAR(heard, due, 0.01) << c.attack << ", pass " << passes;
    }
  }
}

TEST(Follower, APeakFallsInItsNoteWhateverItsHeight) {
  const struct {
    int note;
    double tempo;
    float peak;
  } cases[] = {{4, 120.0, 0.2F}, {10, 60.0, 0.5F}, {16, 100.0, 0.9F}, {21, 50.0, 0.3F}};
  for (const auto& c : cases) {
    FollowerPasses host(c.tempo);
    host.set(tag::efRelease, 1.0F - notePosition(c.note));
    host.skip(60, c.peak);
    ASSERT_NEAR(host.efOut(), c.peak, 1e-3F);
    const double length = host.passesOf(kBars[c.note]);
    EXPECT_NEAR(host.client().signal().followerDisplay().readout().releaseMs, length / 3.0,
                length * 1e-5);
    const double lag = 48000.0 / 16.0 / (2.0 * 3.14159265 * 256.0);  // of the smoothing
    int passes = 0;
    for (const float part : {0.75F, 0.5F, 0.25F}) {
      for (; host.efOut() > part * c.peak && passes < 10000; ++passes) host.pass(0.0F);
      EXPECT_NEAR(passes, (1.0 - static_cast<double>(part)) * length + lag, 2.5 + length * 1e-3)
          << c.note << " at " << c.tempo << ", " << part;
    }
    host.skip(static_cast<int>(length + 8.0 * lag) + 2);
    EXPECT_LT(host.efOut(), 1e-3F);
  }
}

// ---- sequencer

/// Steps of 375 passes in one of the modes.
struct StepPasses : ControlPasses {
  explicit StepPasses(int mode, float sampleRate = 48000.0F, double tempo = 120.0)
      : ControlPasses(sampleRate, tempo) {
    set(tag::seqMode, (static_cast<float>(mode) + 0.5F) / 5.0F);
    set(tag::seqTempo, notePosition(16));
  }
};

TEST(Sequencer, EveryModeHasItsOrder) {
  std::vector<int> byChance;
  for (std::int64_t seed = 3902; byChance.size() < 30;) {
    byChance.push_back(static_cast<int>(std::fabs(drawn(seed) * 8.0F)));
  }
  const std::vector<int> orders[] = {
      {0, 1, 2, 3, 4, 5, 6, 7, 0},
      {7, 6, 5, 4, 3, 2, 1, 0, 7},
      {0, 1, 2, 3, 4, 5, 6, 7, 6, 5, 4, 3, 2, 1, 0, 1, 2, 3, 4, 5, 6, 7, 6},
      {7, 6, 5, 4, 3, 2, 1, 0, 1, 2, 3, 4, 5, 6, 7, 6, 5, 4, 3, 2, 1, 0, 1},
      byChance,
  };
  for (int mode = 0; mode < 5; ++mode) {
    StepPasses host(mode);
    host.skip(kNotePasses / 2);  // into the middle of the steps
    for (std::size_t i = 0; i < orders[mode].size(); ++i) {
      const int step = orders[mode][i];
      EXPECT_EQ(host.seqOut(), static_cast<float>(step) / 8.0F) << "mode " << mode << ", " << i;
      EXPECT_EQ(host.client().steps().lastColumn(), static_cast<float>(step));
      host.skip(kNotePasses);
    }
  }
}

TEST(Sequencer, AStepLastsItsNote) {
  const struct {
    int note;
    double tempo;
    float rate;
  } cases[] = {{0, 500.0, 44100.0F}, {10, 173.0, 44100.0F},  {16, 60.0, 48000.0F},
               {21, 97.5, 96000.0F}, {26, 120.0, 192000.0F}, {26, 45.0, 44100.0F}};
  for (const auto& c : cases) {
    StepPasses host(0, c.rate, c.tempo);
    host.set(tag::seqTempo, notePosition(c.note));
    const double length = host.passesOf(4.0 * kBars[c.note]);
    int passes = 0;
    for (int step = 1; step <= 17; ++step) {
      const float before = host.seqOut();
      while (host.pass(0.0F).seqOut == before) ASSERT_LT(++passes, 18.0 * length + 20.0);
      ++passes;
      // The rest of the eighth step is dropped, and rounding may add a pass to it.
      const int wraps = (step - 1) / 8;
      const double due = wraps * std::ceil(8.0 * length) + (step - wraps * 8) * length;
      EXPECT_GE(passes, due - 0.01) << c.note << " at " << c.tempo << ", step " << step;
      EXPECT_LE(passes, due + 1.01 + wraps) << c.note << " at " << c.tempo << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace zum::test
