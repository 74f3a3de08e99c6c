// The finished plug-in file in a host without a window. Run twice: as it is, and with
// realtime_check preloaded, which watches every block. What it plays is proved by the tests of the
// linked effect; here the file plays the same.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "core/tags.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {
namespace {

const PluginFile& file() {
  static const PluginFile loaded(ZUM_PLUGIN);
  return loaded;
}

constexpr std::int32_t kPlaying = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;

TEST(PluginFile, ShowsBothEntriesAndWhatItIs) {
  ASSERT_EQ(std::getenv("ZUM_RT_STATUS") != nullptr, realtimeEnter != nullptr) << "not preloaded";
  void* const library = dlopen(ZUM_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  for (const char* entry : {"main", "VSTPluginMain"}) EXPECT_NE(dlsym(library, entry), nullptr);
  dlclose(library);
  TestHost host(file());
  EXPECT_EQ(host.text(effGetEffectName) + host.text(effGetVendorString), "ZUMZelvane");
  constexpr int kFlags = effFlagsHasEditor | effFlagsProgramChunks | effFlagsCanReplacing;
  EXPECT_EQ(host.effect->flags & kFlags, kFlags);
}

// The shipped file is compiled and linked as one; other blocks, and a neighbour that plays louder.
TEST(PluginFile, PlaysWhatTheLinkedEffectPlays) {
  const Stereo in = noise(6000);
  TestHost neighbour(file());
  for (int type = 0; type < 20; ++type) {
    for (const float drive : {0.0F, 1.0F}) {
      SCOPED_TRACE(testing::Message() << type << ", drive " << drive);
      TestHost linked;
      TestHost loaded(file());
      for (TestHost* host : {&linked, &loaded}) {
        host->prepare(type, 0.6F, 0.7F, drive);
        for (const int amount : {tag::cutoffEf, tag::vowelLfo, tag::resoSeq})
          host->set(amount, 0.8F);
        host->giveTime(133.0, 0.0, kPlaying);
      }
      neighbour.prepare(19 - type, 0.9F, 1.0F, 1.0F);
      neighbour.render(in);
      const Stereo out = loaded.render(in, {1, 16, 17, 512});
      EXPECT_EQ(out, linked.render(in));
      EXPECT_GT(energy(out), 10.0);
    }
  }
}

// Work for the checker and the sanitizers.
TEST(PluginFile, PlaysOnWhateverMovesAheadOfABlock) {
  TestHost host(file(), 48000.0F);
  const Stereo in = noise(1024);
  Stereo out(1024);
  int step = 0;
  const auto play = [&](std::int32_t frames) {
    host.giveTime(20.0 + step % 600, 0.1 * step, step % 50 < 40 ? kPlaying : 0);
    host.send({{0, 0xB0, step % 128, 64}, {0, 0x90, 60, step % 128}, {0, 0xD0, step % 128, 0}});
    {
      const RealtimeWatch watch;
      host.set(step % 60, static_cast<float>(step % 9) / 8.0F);
    }
    host.process(in, out, 0, frames);
    for (const float x : out.left) ASSERT_LT(std::fabs(x), 8.0F);
    ++step;
  };
  for (int type = 0; type < 20; ++type) {
    for (const float choice : {0.0F, 0.5F, 1.0F}) {
      host.selectFilter(type);
      host.set(tag::modChoice, choice);
      host.set(tag::lfoStyle, static_cast<float>(type % 2));
      for (const std::int32_t frames : {1, 7, 16, 17, 64, 333, 1024}) play(frames), play(frames);
    }
    host.dispatch(effSetProgram, 0, type);
    play(64);
    host.suspend();
    host.resume(type % 2 == 0 ? 192000.0F : 44100.0F, 1024);
    play(64);
  }
}

}  // namespace
}  // namespace zum::test
