// The block call under everything that a session does to it. The real-time sanitizer watches each
// block and stops the program at a violation; other builds learn that sound comes out.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/tags.hpp"
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
constexpr int kStopped = 0;

// A tempo is taken every 16 frames, and each new one computes the engine anew inside the block; so
// does every pass of a tempo that is refused.
constexpr Step kSteps[] = {
    {1, 120.0, 120.0, kStopped, tag::cutoff, 0.6F},
    {2, 121.5, 120.0, kVstTransportPlaying, tag::resonance, 0.9F},
    {3, 121.5, 120.0, kVstTransportPlaying, tag::vowelA, 1.0F},
    {15, 20.0, 45.0, kVstTransportPlaying, tag::vowelB, 0.0F},
    {16, 500.0, 500.0, kVstTransportPlaying, tag::vowelCutoff, 1.0F},
    {17, 501.0, 500.0, kVstTransportPlaying, tag::modChoice, 0.4F},
    {300, kNoNumber, 500.0, kStopped, tag::lfoStyle, 1.0F},
    {64, 90.0, 90.0, kVstTransportPlaying, tag::resetAll, 1.0F},
    {512, 90.0, 90.0, kVstTransportPlaying, tag::cutoff, 1.0F},
    {255, 91.0, 90.0, kVstTransportPlaying, tag::master, 0.7F, true},
    {100, 91.0, 91.0, kVstTransportPlaying, tag::bypass, 1.0F},
    {100, 91.0, 91.0, kStopped, tag::bypass, 0.0F},
    {1024, 140.0, 140.0, kVstTransportPlaying, tag::cutoff, 0.5F},
};

// Which filter and how much drive changes what a block runs.
TEST(Realtime, EveryFilterKeepsThePromise) {
  const Stereo in = noise(1024);
  for (int patch = 0; patch < 40; ++patch) {
    TestHost host(48000.0F);
    host.prepare(patch / 2, 0.5F, 0.5F, static_cast<float>(patch % 2));
    double beat = -1.0;
    for (const Step& step : kSteps) {
      SCOPED_TRACE(testing::Message() << patch << ", block of " << step.frames);
      host.giveTime(step.tempo, beat += 0.5, step.transport);
      host.set(step.tag, step.value);
      host.client().muteRequest.store(step.mute);
      Stereo out(1024);
      host.process(in, out, 0, step.frames);
      const double heard = energy(out);  // no number, if any sample is none
      ASSERT_TRUE(std::isfinite(heard));
      EXPECT_EQ(heard == 0.0, step.mute);
      EXPECT_TRUE(step.frames < 1024 || heard > 0.01);
      EXPECT_EQ(host.client().timing().tempoBpm, step.takenTempo);
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
TEST(RealtimeDeathTest, TheSanitizerWatches) {
  EXPECT_DEATH(breakThePromise(), "unsafe-library-call");
}
#endif
#endif

}  // namespace
}  // namespace zum::test
