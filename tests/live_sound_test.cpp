// Live sound over a device that is a thread of the test's own: what is heard, what is recorded, and
// that the user's side may change all of it while blocks run.
#include "apps/zum/play/live_sound.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

#include "apps/zum/failure.hpp"
#include "support/own_home.hpp"
#include "support/realtime_watch.hpp"
#include "support/sound_file.hpp"
#include "support/temporary_folder.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const NoHome home;
constexpr int kRate = 44100;

class LiveSoundTest : public testing::Test {
 protected:
  std::string loopFile(const std::string& name, const Stereo& sides, int rate = kRate) const {
    const std::string path = (folder / name).string();
    writeStereo(path, SF_FORMAT_WAV | SF_FORMAT_FLOAT, rate, sides);
    return path;
  }
  /// Of a device of the test's own, in blocks of all sizes.
  Stereo hear(std::size_t frames, const Stereo* input = nullptr) {
    Stereo out(frames);
    for (std::size_t done = 0, block = 1; done < frames;
         done += block, block = block % 9001 + 800) {
      block = std::min(block, frames - done);
      const std::array<float*, 2> to = {out.left.data() + done, out.right.data() + done};
      std::array<const float*, 2> from{};
      if (input != nullptr) from = {input->left.data() + done, input->right.data() + done};
      const RealtimeWatch watch;
      sound.process(input != nullptr ? from.data() : nullptr, to.data(), static_cast<int>(block));
    }
    return out;
  }
  /// What the effect makes of `in`, from the first beat of a song at `tempo` or in silence.
  static Stereo filtered(const Stereo& in, double tempo) {
    zum::HostSide other(nullptr, nullptr, "");
    other.activate(kRate, LiveSound::kMostFrames);
    Stereo out(in.frames());
    for (std::size_t done = 0, block = 0; done < in.frames(); done += block) {
      block = std::min<std::size_t>(LiveSound::kMostFrames, in.frames() - done);
      const std::array<const float*, 2> from = {in.left.data() + done, in.right.data() + done};
      const std::array<float*, 2> to = {out.left.data() + done, out.right.data() + done};
      zum::HostSide::Song song = other.song();
      song.isPlaying = tempo != 0.0;
      if (tempo != 0.0) {
        song.tempo = tempo;
        song.beats = static_cast<double>(done) / kRate * tempo / 60.0;
      }
      const zum::HostSide::Block played(
          other, {from.data(), nullptr, to.data(), static_cast<std::int32_t>(block)}, song);
    }
    return out;
  }
  static Stereo repeated(const Stereo& loop, std::size_t frames) {
    Stereo all(frames);
    for (std::size_t i = 0; i < frames; ++i) {
      all.left[i] = loop.left[i % loop.frames()];
      all.right[i] = loop.right[i % loop.frames()];
    }
    return all;
  }

  const TemporaryFolder folder;
  zum::HostSide effect{nullptr, nullptr, ""};
  LiveSound sound{effect};
};

TEST_F(LiveSoundTest, LoopIsHeardAsTheEffectFiltersItAndRecordedFromItsFirstFrame) {
  const Stereo loop = noise(10'007);
  sound.setTempo(97.0);
  sound.setLoop(loopFile("loop.wav", loop));
  sound.record(folder / "heard.wav");
  sound.play();
  EXPECT_FALSE(sound.setRate(300'000));
  ASSERT_TRUE(sound.setRate(kRate));
  const Stereo heard = hear(40'000);
  sound.endAll();
  EXPECT_EQ(heard, filtered(repeated(loop, 40'000), 97.0));
  EXPECT_EQ(readStereo((folder / "heard.wav").string()), heard);
  const auto [in, out] = sound.takePeaks();
  EXPECT_NEAR(in, 0.5F, 0.01F);
  EXPECT_GT(out, 0.1F);
  EXPECT_EQ(sound.takePeaks().in, 0.0F);
  EXPECT_EQ(sound.lateFrames(), 0);
  EXPECT_TRUE(sound.takeProblems().empty());
}

TEST_F(LiveSoundTest, StopIsSilenceAndPlayBeginsAtTheFirstFrame) {
  const Stereo loop = noise(30'000);
  sound.setLoop(loopFile("loop.wav", loop));
  ASSERT_TRUE(sound.setRate(kRate));
  static_cast<void>(hear(1000));
  EXPECT_EQ(sound.takePeaks().in, 0.0F);
  for (int round = 0; round < 2; ++round) {
    sound.play();
    static_cast<void>(hear(1));  // the first block is one frame
    EXPECT_EQ(sound.takePeaks().in, std::max(std::fabs(loop.left[0]), std::fabs(loop.right[0])));
    static_cast<void>(hear(500));
    sound.stop();
    static_cast<void>(hear(500));
    static_cast<void>(sound.takePeaks());
    static_cast<void>(hear(500));
    EXPECT_EQ(sound.takePeaks().in, 0.0F);
    EXPECT_FALSE(sound.isPlaying());
    sound.sweep(true);
  }
}

TEST_F(LiveSoundTest, InputTakesThePlaceOfTheLoop) {
  const Stereo loop(1000, 0.25F);
  const Stereo input = noise(20'000);
  sound.setLoop(loopFile("loop.wav", loop));
  ASSERT_TRUE(sound.setRate(kRate));
  sound.hearInput(true);
  EXPECT_EQ(hear(20'000, &input), filtered(input, 0.0));
  static_cast<void>(sound.takePeaks());
  static_cast<void>(hear(100));  // of a device without inputs
  EXPECT_EQ(sound.takePeaks().in, 0.0F);
  sound.hearInput(false);
  sound.play();
  static_cast<void>(hear(100, &input));
  EXPECT_EQ(sound.takePeaks().in, 0.25F);
}

TEST_F(LiveSoundTest, MidiOfAPortMovesWhatWasLearned) {
  ASSERT_TRUE(sound.setRate(kRate));
  effect.client().controllers().controllers[74].append({tag::cutoff, 0});
  for (const int value : {0, 127}) {
    ASSERT_TRUE(sound.midi()[31].write({0xB0, 74, static_cast<std::uint8_t>(value)}));
    static_cast<void>(hear(64));
    EXPECT_EQ(effect.plainValue(tag::cutoff), static_cast<float>(value) / 127.0F);
  }
}

TEST_F(LiveSoundTest, AnotherRateBeginsAnewAndEndsTheRecording) {
  sound.setLoop(loopFile("loop.wav", Stereo(44'100, 0.25F)));
  ASSERT_TRUE(sound.setRate(kRate));
  sound.play();
  sound.record(folder / "first.wav");
  static_cast<void>(hear(5'000));
  ASSERT_TRUE(sound.setRate(kRate));  // the same: all goes on
  static_cast<void>(hear(5'000));
  ASSERT_TRUE(sound.setRate(48'000));
  EXPECT_EQ(sound.recorder(), nullptr);
  static_cast<void>(hear(20'000));
  EXPECT_NEAR(sound.takePeaks().in, 0.25F, 0.05F);
  sound.sweep(true);
  EXPECT_EQ(readStereo((folder / "first.wav").string()).frames(), 10'000U);
  EXPECT_EQ(sound.takeProblems().size(), 1U);
}

TEST_F(LiveSoundTest, WhatCannotBeIsRefusedAndWhatBreaksOffIsToldOnce) {
  EXPECT_THROW(sound.record(folder / "no/a.wav"), Failure);  // ahead of the first rate, too
  EXPECT_THROW(sound.setLoop(folder / "none.wav"), Failure);
  EXPECT_TRUE(fs::is_empty(folder));
  ASSERT_TRUE(sound.setRate(kRate));
  EXPECT_THROW(sound.record(folder / "no/a.wav"), Failure);
  sound.play();
  sound.record(folder / "a.wav");
  EXPECT_THROW(sound.record(folder / "no/a.wav"), Failure);
  EXPECT_NE(sound.recorder(), nullptr);
  sound.endRecord();

  const std::string broken = (folder / "broken.flac").string();
  writeStereo(broken, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, kRate, noise(12 * kRate));
  fs::resize_file(broken, fs::file_size(broken) / 4);
  sound.setLoop(broken);
  std::vector<std::string> told;
  for (int i = 0; i < 100; ++i) {
    static_cast<void>(hear(4'000));
    sound.sweep(true);
    for (const std::string& each : sound.takeProblems()) told.push_back(each);
    std::this_thread::sleep_for(2ms);
  }
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(has(told[0], "breaks off")) << told[0];
  static_cast<void>(sound.takePeaks());
  static_cast<void>(hear(4'000));
  EXPECT_EQ(sound.takePeaks().in, 0.0F);
}

// All that a user can do, in no order, while blocks run: for the sanitizers, and each recording has
// to be whole.
TEST_F(LiveSoundTest, EverythingMayChangeWhileBlocksRun) {
  const std::string loops[] = {loopFile("a.wav", noise(10)), loopFile("b.wav", noise(90'000)),
                               loopFile("c.wav", noise(3'000), 48'000), ""};
  ASSERT_TRUE(sound.setRate(kRate));
  std::atomic<bool> ends{false};
  std::atomic<int> blocks{0};
  std::jthread device([&] {
    const Stereo input = noise(512);
    const std::array<const float*, 2> from = {input.left.data(), input.right.data()};
    Stereo out(512);
    const std::array<float*, 2> to = {out.left.data(), out.right.data()};
    for (int i = 0; !ends.load(); i = (i + 1) % 512) {
      {
        const RealtimeWatch watch;
        sound.process(from.data(), to.data(), i + 1);
      }
      ++blocks;
      std::this_thread::sleep_for(500us);
    }
  });
  std::jthread port([&] {
    for (std::uint8_t i = 0; !ends.load(); i = (i + 1) & 127U) {
      sound.midi()[0].write({0xB0, 74, i});
      std::this_thread::sleep_for(200us);
    }
  });
  std::mt19937 random(9);  // NOLINT(bugprone-random-generator-seed): the same each time
  int recordings = 0;
  const auto end = std::chrono::steady_clock::now() + 2s;
  while (std::chrono::steady_clock::now() < end) {
    switch (random() % 8) {
      case 0: sound.play(); break;
      case 1: sound.stop(); break;
      case 2: sound.setTempo(60.0 + static_cast<double>(random() % 100)); break;
      case 3: sound.setLoop(loops[random() % std::size(loops)]); break;
      case 4: sound.record(folder / ("take" + std::to_string(recordings++) + ".wav")); break;
      case 5: sound.endRecord(); break;
      case 6: sound.hearInput(random() % 2 != 0); break;
      default: static_cast<void>(sound.takePeaks());
    }
    sound.sweep(true);
    if (random() % 4 == 0) std::this_thread::sleep_for(3ms);
  }
  ends = true;
  device.join();
  port.join();
  sound.endAll();
  EXPECT_TRUE(sound.takeProblems().empty());
  EXPECT_GT(blocks.load(), 100);
  EXPECT_GT(recordings, 0);
  for (int i = 0; i < recordings; ++i) {
    static_cast<void>(readSound((folder / ("take" + std::to_string(i) + ".wav")).string()));
  }
}

}  // namespace
}  // namespace zum::test
