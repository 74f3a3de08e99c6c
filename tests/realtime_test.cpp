// The block call under everything that a session does to it. The real-time sanitizer watches each
// block and stops the program at a violation; other builds learn that sound comes out.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "engine/realtime.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

/// One block and what the host does ahead of it.
struct Step {
  std::int32_t frames;
  double tempo;       // told by the host
  double takenTempo;  // what the effect makes of it
  int transport;      // flags of the time record
  int tag;            // set to `value` ahead of the block
  float value;
  bool mute = false;
};

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr int kBypass = 222;
constexpr int kStopped = 0;

// A tempo is taken every 16 frames, and each new one computes the engine anew inside the block; so
// does every pass of a tempo that is refused.
constexpr Step kSteps[] = {
    {1, 120.0, 120.0, kStopped, 3, 0.6F},
    {2, 121.5, 120.0, kVstTransportPlaying, 4, 0.9F},
    {3, 121.5, 120.0, kVstTransportPlaying, 58, 1.0F},
    {15, 20.0, 45.0, kVstTransportPlaying, 59, 0.0F},
    {16, 500.0, 500.0, kVstTransportPlaying, 0, 1.0F},
    {17, 501.0, 500.0, kVstTransportPlaying, 165, 0.4F},
    {300, kNoNumber, 500.0, kStopped, 65, 1.0F},
    {64, 90.0, 90.0, kVstTransportPlaying, 199, 1.0F},
    {512, 90.0, 90.0, kVstTransportPlaying, 3, 1.0F},
    {255, 91.0, 90.0, kVstTransportPlaying, 1, 0.7F, true},
    {100, 91.0, 91.0, kVstTransportPlaying, kBypass, 1.0F},
    {100, 91.0, 91.0, kStopped, kBypass, 0.0F},
    {1024, 140.0, 140.0, kVstTransportPlaying, 3, 0.5F},
};

/// What an output block holds: a value that is no number makes it no number.
double energyOf(const Stereo& block, std::int32_t frames) {
  double sum = 0.0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
    sum += std::fabs(block.left[i]) + std::fabs(block.right[i]);
  }
  return sum;
}

void playAllSteps(int bank, int type, float drive) {
  HostState state;
  state.hasTime = true;
  TestHost host(48000.0F, state);
  host.selectFilter(bank, type);
  host.set(2, 1.0F);  // wet alone
  host.set(5, drive);
  const Stereo in = noise(1024);
  double wetEnergy = 0.0;
  double beat = -1.0;
  for (const Step& step : kSteps) {
    SCOPED_TRACE(testing::Message() << "block of " << step.frames << " at " << step.tempo);
    host.host.time.tempo = step.tempo;
    host.host.time.ppqPos = beat += 0.5;
    host.host.time.flags = step.transport;
    host.set(step.tag, step.value);
    host.client().muteRequest.store(step.mute);
    Stereo out(1024);
    host.process(in, out, 0, step.frames);
    const double energy = energyOf(out, step.frames);
    ASSERT_TRUE(std::isfinite(energy));
    EXPECT_EQ(energy == 0.0, step.mute);
    if (step.frames == 1024) wetEnergy = energy / step.frames;
    EXPECT_EQ(host.client().timing().tempoBpm, step.takenTempo);
  }
  EXPECT_GT(wetEnergy, 0.001);
}

TEST(Realtime, everyFilterKeepsThePromise) {
  for (int filter = 0; filter < 20; ++filter) {
    for (const float drive : {0.0F, 1.0F}) {
      SCOPED_TRACE(testing::Message() << "filter " << filter << ", drive " << drive);
      playAllSteps(filter / 10, filter % 10, drive);
    }
  }
}

#if defined(__has_feature)
#if __has_feature(realtime_sanitizer)
void breakThePromise() ZUM_REALTIME {
  trusted([] {
    void* (*volatile allocate)(std::size_t) = std::malloc;
    std::free(allocate(64));
  });
}
TEST(RealtimeDeathTest, sanitizerWatches) {
  EXPECT_DEATH(breakThePromise(), "unsafe-library-call");
}
#endif
#endif

}  // namespace
}  // namespace zum::test
