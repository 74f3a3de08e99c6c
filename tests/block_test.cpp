// Catches sound that depends on how a host cuts its blocks or lays its buffers, filter states that
// are shared or cleared, and blocks that move state when they should not.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "core/tags.hpp"
#include "engine/realtime.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

class BlockOfType : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(All, BlockOfType, testing::Range(0, 20));

/// Frames, and what is set behind them, off the control grid.
const struct Segment {
  std::size_t frames;
  int tag;
  float value;
} kSegments[] = {{1003, tag::cutoff, 0.6F},      {717, tag::overdrive, 0.5F},
                 {1500, tag::bypass, 1.0F},      {90, tag::bypass, 0.0F},
                 {777, tag::resonance, 0.5F},    {1201, tag::bank, 0.9F},
                 {333, tag::master, 0.9F},       {511, tag::mixDryWet, 0.7F},
                 {1111, tag::vowelCutoff, 0.1F}, {805, tag::lfoStyle, 1.0F}};

// The host's position moves where all block sizes have a border.
TEST_P(BlockOfType, BlockSizeDoesNotMatter) {
  const std::vector<std::vector<std::int32_t>> sizes = {
      {512}, {1}, {16}, {17}, {64}, {3, 1, 31, 16, 5, 480, 2}, {65536}};
  for (const auto& [resonance, drive, moved] :
       {std::tuple{0.95F, 0.0F, false}, {0.2F, 1.0F, false}, {0.6F, 0.3F, true}}) {
    std::vector<std::vector<Stereo>> renders;
    for (const auto& blocks : sizes) {
      TestHost host(48000.0F);
      host.prepare(GetParam(), 0.8F - 0.5F * resonance, resonance, drive);
      host.set(tag::seqTempo, 1.0F);  // the shortest steps, gliding
      host.set(tag::seqGlide, 0.8F);
      host.set(tag::lfoRate, 0.9F);
      host.set(tag::lfoTrigOnOff, 1.0F);  // the level resets it
      for (int amount = tag::cutoffEf; moved && amount <= tag::masterSeq; ++amount) {
        host.set(amount, 0.3F + 0.1F * static_cast<float>((amount + 2) % 5));
      }
      std::vector<Stereo>& render = renders.emplace_back();
      double position = 0.0;
      for (const Segment& segment : kSegments) {
        const bool plays = render.size() % 3 > 0;
        host.giveTime(segment.frames < 1200 ? 120.0 : 133.0, position += 0.3,
                      plays ? kVstTransportPlaying : 0);
        host.set(tag::seqMode, static_cast<float>(render.size()) / 10.0F);
        render.push_back(host.render(noise(segment.frames), blocks));
        host.set(segment.tag, segment.value);
      }
      EXPECT_TRUE(render == renders[0]) << "blocks from " << blocks[0] << ", drive " << drive;
    }
    EXPECT_GT(energy(renders[0].back()), 1e-3);
  }
}

TEST_P(BlockOfType, SilenceSettles) {
  TestHost host;
  host.prepare(GetParam(), 0.3F, 1.0F, 0.7F);
  double before = energy(host.render(noise(44100)));
  for (int second = 1; second <= 20; ++second) {
    const double now = energy(host.render(Stereo(44100)));
    EXPECT_LE(now, std::max(before, 1e-18)) << second;
    before = now;
  }
  EXPECT_LE(before, 1e-18);
}

bool isFinite(const Stereo& sound) { return std::isfinite(energy(sound)); }

TEST_P(BlockOfType, WhatIsNotFiniteIsSilencedAndGotOver) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  Stereo broken = noise(3000);
  broken.left[100] = std::numeric_limits<float>::quiet_NaN();
  broken.right[303] = -kInfinity;
  for (std::size_t i = 1002; i < 1050; ++i) broken.left[i] = i % 3 == 0 ? 3e38F : -3e38F;
  std::fill_n(broken.right.begin() + 1500, 40, kInfinity);
  const Stereo after = noise(12000);
  for (const float bypass : {0.0F, 1.0F}) {
    const auto prepare = [bypass](TestHost& host) {
      host.prepare(GetParam(), 0.5F, 0.6F, 0.5F);
      host.set(tag::bypass, bypass);
    };
    TestHost fresh;
    prepare(fresh);
    fresh.render(noise(3000));
    const double level = energy(fresh.render(after));
    std::vector<Stereo> renders;
    for (const std::int32_t block : {512, 1, 17, 65536}) {
      TestHost host;
      prepare(host);
      const Stereo& out = renders.emplace_back(host.render(broken, {block}));
      EXPECT_TRUE(isFinite(out) && out == renders[0]) << block;
      EXPECT_EQ(out.left[100], 0.0F);
      EXPECT_EQ(out.right[111], 0.0F);  // up to the next pass
      EXPECT_NEAR(energy(host.render(after, {block})), level, 0.2 * level) << block;
    }
    Stereo shared(3000);  // one buffer for all four channels, in blocks of 1 and of 125
    for (const auto& [sound, block] : {std::pair{&shared.left, 1U}, {&shared.right, 125U}}) {
      TestHost host;
      host.set(tag::bypass, bypass);
      *sound = broken.left;
      for (std::size_t at = 0; at < sound->size(); at += block) {
        std::array<float*, 2> both = {sound->data() + at, sound->data() + at};
        host.process(both.data(), both.data(), static_cast<std::int32_t>(block));
      }
    }
    EXPECT_TRUE(isFinite(shared) && shared.left == shared.right);
  }
}

// What the DC filter alone would tell of must not outlive it in the drive.
TEST(Block, AnInfinityAheadOfAPauseDoesNotOutlastIt) {
  const Stereo in = noise(4096);
  TestHost host;
  host.prepare(4, 0.9F, 0.2F, 0.8F);
  host.render(in);
  const double level = energy(host.render(in));
  Stereo last(8, 0.25F);
  last.left[7] = -std::numeric_limits<float>::infinity();
  host.render(last);
  host.dispatch(effMainsChanged, 0, 0);
  host.dispatch(effMainsChanged, 0, 1);
  host.render(in);
  EXPECT_GT(energy(host.render(in)), 0.5 * level);
}

TEST(Block, AFilterThatDivergesStartsAnew) {
  for (const auto& [rate, cutoff] : {std::pair{22050.0F, 0.8F}, {32000.0F, 0.95F}}) {
    std::vector<Stereo> renders;
    for (const std::int32_t block : {512, 1, 17}) {
      TestHost host(rate);
      host.prepare(5, cutoff, 1.0F, 0.0F);
      host.render(noise(2000));
      const Stereo& out = renders.emplace_back(host.render(noise(60000, 0.9F), {block}));
      EXPECT_TRUE(isFinite(out) && out == renders[0]) << rate << ", blocks of " << block;
    }
    const std::vector<float>& left = renders[0].left;
    const auto lost = std::count(left.begin(), left.end(), 0.0F);
    EXPECT_GT(lost, 0) << "nothing diverged at " << rate;
    EXPECT_LT(lost, 6000) << rate;  // it is heard most of the time
    EXPECT_TRUE(std::any_of(left.end() - 100, left.end(), [](float x) { return x != 0.0F; }));
  }
}

TEST(Block, FramesOfZeroOrLessAreNoBlock) {
  TestHost host;
  const Stereo in = noise(100);
  for (const std::int32_t frames : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    Stereo out(100, 7.0F);
    host.process(in, out, 0, frames);
    EXPECT_EQ(out, Stereo(100, 7.0F)) << frames;
    EXPECT_FALSE(host.client().inProcess);
  }
  EXPECT_EQ(host.render(in), TestHost().render(in));
}

TEST(StateGate, SilencesNestAndAMuteThatWasLeftOutlastsThem) {
  StateGate gate;
  using Silence = StateGate::Silence;
  const auto blockIsOpen = [&gate] { return StateGate::Block(gate).isOpen(); };
  {
    const Silence outer(gate);
    EXPECT_TRUE(outer.isComplete() && Silence(gate).isComplete());
    EXPECT_FALSE(blockIsOpen());  // the inner one left the outer one's mute
    EXPECT_FALSE(gate.inProcess.load());
  }
  EXPECT_TRUE(blockIsOpen());
  EXPECT_FALSE(gate.inProcess.load());
  Silence(gate).staysUntilAStateIsLoaded();
  EXPECT_TRUE(Silence(gate).isComplete());
  EXPECT_FALSE(blockIsOpen());
  EXPECT_TRUE(Silence(gate, Silence::Ends::withEveryMute).isComplete());  // as a load does
  EXPECT_TRUE(blockIsOpen());
  StateGate::Block(gate).leaveOffline();  // its byte stays, and nobody but a load waits for it
  EXPECT_TRUE(gate.inProcess.load() && gate.isOffline());
  EXPECT_FALSE(Silence(gate).isComplete());
  EXPECT_TRUE(blockIsOpen());
  EXPECT_FALSE(gate.inProcess.load() || gate.isOffline());
}

TEST(Block, MutedBlocksAreSilentAndMoveNothing) {
  TestHost host;
  TestHost twin;
  const Stereo in = noise(1003);
  ASSERT_EQ(host.render(in), twin.render(in));
  const int levelCalls = host.host.levelCalls;
  host.client().muteRequest = true;
  Stereo out(1003, 3.0F);
  host.process(in, out, 0, 1000);
  EXPECT_EQ(energy(out), 6 * 9.0);  // the three frames behind the block
  std::array<float*, 2> none = {nullptr, nullptr};
  std::array<float*, 2> leftOnly = {out.left.data(), nullptr};
  host.process(none.data(), leftOnly.data(), 1003);
  EXPECT_EQ(energy(out), 3 * 9.0);
  EXPECT_FALSE(host.client().inProcess);
  EXPECT_EQ(host.host.levelCalls, levelCalls);
  host.client().muteRequest = false;
  EXPECT_EQ(host.render(in), twin.render(in));
}

#if defined(__has_feature)
#if __has_feature(realtime_sanitizer)
void breakThePromise() ZUM_REALTIME {
  trusted([] {
    void* (*volatile allocate)(std::size_t) = std::malloc;
    std::free(allocate(64));
  });
}
TEST(RealtimeDeathTest, TheSanitizerWatches) {
  EXPECT_DEATH(breakThePromise(), "unsafe-library-call");
}
#endif
#endif

}  // namespace
}  // namespace zum::test
