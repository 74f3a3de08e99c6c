// Catches waves of a wrong rate, range or random sequence, and a phase that a loud input or the
// start of the transport does not reset.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "engine/wave_tables.hpp"
#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr int kCyclePasses = 375;

enum Wave { sine, square, third, triangle, random };

/// The LFO in one of its styles, one cycle in 375 passes or in a note of one's own.
struct LfoPasses : ControlPasses {
  LfoPasses(bool sync, Wave wave) : LfoPasses(sync, wave, sync ? 10 : 16, 48000.0F, 120.0) {}
  LfoPasses(bool sync, Wave wave, int note, float sampleRate, double tempo)
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

// What those of the free style are, the tables tell.
TEST(Lfo, SyncWavesHaveTheirRanges) {
  const struct {
    Wave wave;
    float low, high, mean;
  } cases[] = {{sine, 0.0F, 1.0F, 0.5F},
               {square, 0.0F, 1.0F, 0.5F},
               {third, 0.0F, 1.0F, 0.5F},
               {triangle, 0.0F, 0.5F, 0.25F}};
  for (const auto& c : cases) {
    LfoPasses host(true, c.wave);
    host.skip(100);
    std::vector<float> heard;
    while (heard.size() < 4 * kCyclePasses) heard.push_back(host.pass(0.0F).lfoOut);
    const auto [low, high] = std::minmax_element(heard.begin(), heard.end());
    const double sum = std::accumulate(heard.begin(), heard.end(), 0.0);
    EXPECT_NEAR(*low, c.low, 0.01F) << c.wave;
    EXPECT_NEAR(*high, c.high, 0.01F) << c.wave;
    EXPECT_NEAR(sum / (4 * kCyclePasses), c.mean, 0.01) << c.wave;
  }
}

// At phase 0 the waves of the song's position tell themselves apart.
TEST(Lfo, SyncWavesStandAtAStoppedTransport) {
  for (const auto& [position, still] : {std::pair{0.0F, 0.5F}, {0.124F, 0.5F}, {0.125F, 0.0F}}) {
    LfoPasses host(true, sine);
    host.set(tag::lfoWave, position);
    host.skip(1000);
    host.play(false);
    host.skip(16);  // 5 ms
    for (int i = 0; i < 500; ++i) ASSERT_EQ(host.pass(0.0F).lfoOut, still) << position;
  }
}

// The transport's start resets with the trigger off, too: 0.75 is the trough of the sine.
TEST(Lfo, ResetsToThreeQuartersOfTheCycle) {
  const std::pair<Wave, float> cases[] = {
      {sine, 0.0F}, {square, 0.0F}, {third, 0.2683F}, {triangle, 0.07375F}};
  for (const auto& [wave, value] : cases) {
    for (const bool byLevel : {false, true}) {
      LfoPasses host(false, wave);
      host.set(tag::lfoTrigOnOff, byLevel ? 1.0F : 0.0F);
      host.set(tag::lfoTrigSens, 0.7F);
      host.skip(120);
      if (byLevel) {
        const Lfo& lfo = host.client().signal().lfoDisplay();
        for (int i = 0; i < 100 && lfo.triggerValue() == 0.0F; ++i) host.pass(0.8F);
        EXPECT_NEAR(host.lfoOut(), value, 1e-4F) << wave;
        host.skip(200, 0.8F);
        ASSERT_GT(std::fabs(host.lfoOut() - value), 0.01F) << "a held trigger resets once";
      }
      host.play(true);
      EXPECT_NEAR(host.pass(0.8F).lfoOut, value, 1e-4F) << wave << ", held " << byLevel;
      const float before = host.lfoOut();
      host.skip(8, 0.8F);  // over the pulse's end
      EXPECT_TRUE(wave == square || host.lfoOut() != before);
    }
  }
}

TEST(Lfo, ALevelAtTheThresholdDoesNotTrigger) {
  ControlPasses host;
  host.set(tag::lfoTrigOnOff, 1.0F);
  host.set(tag::lfoTrigSens, 0.0F);
  host.skip(300, 1.0F);
  EXPECT_EQ(host.client().signal().lfoDisplay().triggerValue(), 0.0F);
  host.skip(300, 1.01F);
  EXPECT_EQ(host.client().signal().lfoDisplay().triggerValue(), 1.0F);
  ControlPasses silent;  // level and threshold are 0
  silent.set(tag::lfoTrigOnOff, 1.0F);
  silent.set(tag::lfoTrigSens, 1.0F);
  silent.skip(1);
  EXPECT_EQ(silent.client().signal().lfoDisplay().triggerValue(), 0.0F);
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
    LfoPasses host(sync, random);
    std::int64_t seed = sync ? 153 : 12382;
    std::vector<float> expected;
    if (sync) expected.push_back(0.5F);  // up to the first half
    while (expected.size() < 40) expected.push_back((drawn(seed) + 1.0F) * 0.5F);
    std::vector<float> heard = {host.pass(0.0F).lfoOut};
    for (int i = 1; i < (sync ? 20 : 40) * kCyclePasses && heard.size() < 40; ++i) {
      if (host.pass(0.0F).lfoOut != heard.back()) heard.push_back(host.lfoOut());
    }
    EXPECT_EQ(heard, expected) << "style " << sync;
  }
}

TEST(Lfo, TheOtherStyleDrawsMeanwhile) {
  LfoPasses host(true, random);
  host.set(tag::lfoStyle, 0.0F);
  host.skip(kCyclePasses * 11 / 4);  // halves begin at 0.5, 1, 1.5, 2 and 2.5
  host.set(tag::lfoStyle, 1.0F);
  std::int64_t seed = 153;
  for (int i = 0; i < 4; ++i) drawn(seed);
  EXPECT_EQ(host.pass(0.0F).lfoOut, (drawn(seed) + 1.0F) * 0.5F);
}

TEST(Lfo, WaveTablesHaveTheirEntries) {
  constexpr std::size_t kEntries[] = {0, 128, 256, 512, 768, 1023};
  const WaveTables& waves = waveTables();
  const std::pair<const WaveTable*, std::array<float, 6>> cases[] = {
      {&waves.sine, {0.0F, 0.7071F, 1.0F, 0.0F, -1.0F, -0.0061F}},
      {&waves.square, {1.0F, 1.0F, 1.0F, -1.0F, -1.0F, -1.0F}},
      {&waves.falling, {0.981445F, 0.7135F, 0.4334F, -0.0558F, -0.4634F, -0.4876F}},
      {&waves.triangle, {0.003143F, 0.4477F, 0.8534F, -0.0022F, -0.8525F, -0.0024F}}};
  for (const auto& [table, values] : cases) {
    for (std::size_t i = 0; i < 6; ++i) {
      EXPECT_NEAR(table->entries[kEntries[i]], values[i], 5.1e-5F) << kEntries[i];
    }
    EXPECT_EQ(table->entries[1024], table->entries[0]);
    EXPECT_EQ(table->at(1.0F), table->entries[0]);
  }
  EXPECT_NEAR(waves.sine.at(100.25F / 1024.0F), std::sin(100.25 * 6.2831853 / 1024.0), 1e-5);
  const auto& slopes = waves.triangle.differences;
  int turns = 0;
  for (std::size_t i = 0; i < 1024; ++i) {
    turns += (slopes[i] > 0.0F) != (slopes[(i + 1) % 1024] > 0.0F) ? 1 : 0;
  }
  EXPECT_EQ(turns, 2);
}

}  // namespace
}  // namespace zum::test
