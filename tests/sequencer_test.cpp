// Catches steps played in a wrong order or length, glides that miss their step, and a transport
// start that does not line the sequence up.

#include <gtest/gtest.h>

#include <cmath>

#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr int kStepPasses = 375;  // 0.0625 bars at 120 beats per minute and 48 kHz

/// Steps of 375 passes in one of the modes.
struct StepPasses : ControlPasses {
  explicit StepPasses(int mode, float sampleRate = 48000.0F, double tempo = 120.0)
      : ControlPasses(sampleRate, tempo) {
    set(tag::seqMode, (static_cast<float>(mode) + 0.5F) / 5.0F);
    set(tag::seqTempo, notePosition(16));
  }
};

TEST(Sequencer, EveryModeHasItsOrder) {
  std::vector<int> random;
  for (std::int64_t seed = 3902; random.size() < 30;) {
    random.push_back(static_cast<int>(std::fabs(drawn(seed) * 8.0F)));
  }
  const std::vector<int> orders[] = {
      {0, 1, 2, 3, 4, 5, 6, 7, 0},
      {7, 6, 5, 4, 3, 2, 1, 0, 7},
      {0, 1, 2, 3, 4, 5, 6, 7, 6, 5, 4, 3, 2, 1, 0, 1, 2, 3, 4, 5, 6, 7, 6},
      {7, 6, 5, 4, 3, 2, 1, 0, 1, 2, 3, 4, 5, 6, 7, 6, 5, 4, 3, 2, 1, 0, 1},
      random,
  };
  for (int mode = 0; mode < 5; ++mode) {
    StepPasses host(mode);
    host.skip(kStepPasses / 2);  // into the middle of the steps
    for (std::size_t i = 0; i < orders[mode].size(); ++i) {
      const int step = orders[mode][i];
      EXPECT_EQ(host.seqOut(), static_cast<float>(step) / 8.0F) << "mode " << mode << ", " << i;
      EXPECT_EQ(host.client().steps().lastColumn(), static_cast<float>(step));
      host.skip(kStepPasses);
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

// A glide's length is the step's times the cube of the parameter.
TEST(Sequencer, AGlideIsALineOfItsLength) {
  for (const float glide : {0.2F, 0.5F, 0.8F, 1.0F}) {
    StepPasses host(0);
    host.set(tag::seqGlide, glide);
    for (int i = 0; i < 8; ++i) host.client().steps().setValue(i, i % 2 == 0 ? 0.1F : 0.9F);
    const double length = kStepPasses * std::pow(static_cast<double>(glide), 3.0);
    float column = 1.0F;
    while (host.client().steps().lastColumn() != column) host.pass(0.0F);
    host.skip(kStepPasses - 5);
    for (int passes = 0, steps = 0; steps < 4; ++passes) {
      const bool up = std::fmod(column, 2.0F) == 1.0F;
      if (steps > 0) {
        const double way = std::min(1.0, passes / length);
        ASSERT_NEAR(host.seqOut(), up ? 0.1 + 0.8 * way : 0.9 - 0.8 * way, 2.5e-3) << glide;
      }
      host.pass(0.0F);
      if (host.client().steps().lastColumn() == column) continue;
      column = host.client().steps().lastColumn();
      passes = 0;
      ++steps;
    }
  }
}

TEST(Sequencer, AGlideThatBecomesNoneOnItsWayGoesOn) {
  StepPasses host(0);
  host.set(tag::seqGlide, 1.0F);
  while (host.client().steps().lastColumn() != 1.0F) host.pass(0.0F);
  host.skip(kStepPasses / 3);
  host.set(tag::seqGlide, 0.0F);
  const float before = host.seqOut();
  ASSERT_LT(before, 0.1F);
  EXPECT_NEAR(host.pass(0.0F).seqOut - before, 0.125 / kStepPasses, 1e-5);
  host.skip(kStepPasses * 2 / 3);
  EXPECT_EQ(host.seqOut(), 0.25F);  // the next step is there at once
}

// Both edges of a pulse of a millisecond put the sequence to its start.
TEST(Sequencer, TheStartOfTheTransportLinesUp) {
  for (const int mode : {0, 2}) {
    StepPasses host(mode, 96000.0F);  // six passes a millisecond, 750 a step
    host.skip(10 * 750 + 300);
    ASSERT_NE(host.seqOut(), 0.0F);
    host.play(true);
    EXPECT_EQ(host.pass(0.0F).seqOut, 0.0F);
    host.skip(750 + 4);
    EXPECT_EQ(host.seqOut(), 0.0F) << mode;
    host.skip(4);
    EXPECT_EQ(host.seqOut(), 0.125F) << mode;
    host.play(false);  // a stop lets it run on
    host.skip(744);
    EXPECT_EQ(host.seqOut(), 0.125F) << mode;
    host.skip(8);
    EXPECT_EQ(host.seqOut(), 0.25F) << mode;
  }
}

}  // namespace
}  // namespace zum::test
