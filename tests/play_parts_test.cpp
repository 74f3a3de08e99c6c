// The parts of live sound alone: the ring between two threads, loops from files, recordings, the
// tempo that a hand taps, the watch over the callback.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fstream>
#include <numbers>
#include <thread>

#include "apps/zum/audio_output.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/play/callback_watch.hpp"
#include "apps/zum/play/frame_ring.hpp"
#include "apps/zum/play/loop_source.hpp"
#include "apps/zum/play/midi_lanes.hpp"
#include "apps/zum/play/recorder.hpp"
#include "apps/zum/play/tap_tempo.hpp"
#include "support/process_use.hpp"
#include "support/sound_file.hpp"
#include "support/temporary_folder.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Frame i is i, and -i on the right.
Stereo count(std::size_t frames, std::size_t from = 0) {
  Stereo sides(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    sides.left[i] = static_cast<float>(from + i);
    sides.right[i] = -sides.left[i];
  }
  return sides;
}

// ---- rings

TEST(FrameRing, GoesAroundItsEndAndTakesNoMoreThanItHasRoomFor) {
  FrameRing ring(6);
  ASSERT_EQ(ring.room(), 8U);
  std::size_t in = 0;
  std::size_t out = 0;
  for (const auto& [offered, asked] :
       {std::pair{5U, 3U}, {8U, 0U}, {1U, 9U}, {8U, 8U}, {7U, 6U}, {3U, 3U}, {9U, 2U}}) {
    const Stereo next = count(offered, in);
    const std::size_t fits = std::min<std::size_t>(offered, 8 - (in - out));
    EXPECT_EQ(ring.write(next.left.data(), next.right.data(), offered), fits);
    in += fits;
    Stereo got(asked);
    const std::size_t there = std::min<std::size_t>(asked, in - out);
    EXPECT_EQ(ring.read(got.left.data(), got.right.data(), asked), there);
    Stereo wanted = count(there, out);
    wanted.left.resize(asked), wanted.right.resize(asked);
    EXPECT_EQ(got, wanted);
    out += there;
    EXPECT_EQ(ring.filled(), in - out);
  }
}

TEST(FrameRing, HandsOverEachFrameOnceBetweenTwoThreads) {
  constexpr std::size_t kFrames = 400'000;
  FrameRing ring(1000);
  const Stereo all = count(kFrames);
  const std::jthread writer([&] {
    for (std::size_t at = 0; at < kFrames;) {
      const std::size_t part = std::min<std::size_t>(1 + at % 700, kFrames - at);
      at += ring.write(all.left.data() + at, all.right.data() + at, part);
    }
  });
  Stereo got(kFrames);
  for (std::size_t at = 0; at < kFrames;) {
    const std::size_t part = std::min<std::size_t>(1 + at % 333, kFrames - at);
    at += ring.read(got.left.data() + at, got.right.data() + at, part);
  }
  EXPECT_EQ(got, all);
}

TEST(MidiLane, KeepsTheOrderBetweenTwoThreadsAndRefusesWhatHasNoRoom) {
  MidiLane lane;
  const auto message = [](int i) ZUM_REALTIME {
    return MidiLane::Message{0x90, static_cast<std::uint8_t>(i >> 7),
                             static_cast<std::uint8_t>(i & 127)};
  };
  constexpr int kMessages = 16'000;
  const std::jthread port([&] {
    for (int i = 0; i < kMessages;) i += lane.write(message(i)) ? 1 : 0;
  });
  int next = 0;
  int wrong = 0;
  while (next < kMessages) {
    lane.read([&](const MidiLane::Message& got) ZUM_REALTIME {
      wrong += got != message(next) ? 1 : 0;
      ++next;
    });
  }
  EXPECT_EQ(wrong, 0);
  int taken = 0;
  while (lane.write(message(taken))) ++taken;
  EXPECT_EQ(taken, 1024);
}

// ---- loops

class LoopFile : public testing::Test {
 protected:
  std::string file(const std::string& name) const { return (folder / name).string(); }

  /// As a device takes it, with time for the reader now and then.
  static Stereo play(LoopSource& loop, std::size_t frames) {
    Stereo got(frames);
    for (std::size_t done = 0; done < frames;) {
      const std::size_t part = std::min<std::size_t>(1 + done % 1999, frames - done);
      loop.read(got.left.data() + done, got.right.data() + done, static_cast<int>(part));
      done += part;
      std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(loop.lateFrames(), 0);
    EXPECT_EQ(loop.problem(), "");
    return got;
  }

  const TemporaryFolder folder;
};

TEST_F(LoopFile, PlaysAroundItsEndWithoutAGap) {
  struct Row {
    const char* name;
    int format;
    int channels;
    std::size_t frames;
  };
  constexpr int kWav = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  constexpr int kFlac = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
  const Row rows[] = {
      {"one.wav", kWav, 1, 1},        {"ten.wav", kWav, 2, 10},       {"part.wav", kWav, 2, 4096},
      {"over.wav", kWav, 1, 4097},    {"long.wav", kWav, 2, 100'003}, {"ten.flac", kFlac, 2, 10},
      {"some.flac", kFlac, 1, 5'000}, {"most.wav", kWav, 2, 65'536},
  };
  for (const Row& row : rows) {
    std::vector<float> samples(row.frames * static_cast<std::size_t>(row.channels));
    for (std::size_t i = 0; i < samples.size(); ++i) {
      samples[i] = static_cast<float>(static_cast<double>(i % 30'011) / 32768.0);
    }
    writeSound(file(row.name), row.format, row.channels, 44100, samples);
    LoopSource loop(file(row.name), 44100);
    const Stereo got = play(loop, 130'000);
    const auto channels = static_cast<std::size_t>(row.channels);
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < got.frames(); ++i) {
      const std::size_t at = i % row.frames * channels;
      wrong += got.left[i] != samples[at] || got.right[i] != samples[at + channels - 1] ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0U) << row.name;
  }
}

/// What is left of `samples` without a sine of `perFrame` radians, in dB of it.
double impurity(const std::vector<float>& samples, double perFrame) {
  double inPhase = 0.0;
  double across = 0.0;
  double all = 0.0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double at = perFrame * static_cast<double>(i);
    inPhase += samples[i] * std::sin(at);
    across += samples[i] * std::cos(at);
    all += static_cast<double>(samples[i]) * samples[i];
  }
  const double sine =
      2.0 * (inPhase * inPhase + across * across) / static_cast<double>(samples.size());
  return 10.0 * std::log10(std::max(all - sine, 1e-30) / sine);
}

// The seam comes by several times in each.
TEST_F(LoopFile, ResampledStaysAPureSineAcrossItsSeam) {
  struct Row {
    int from;  // Hz
    int to;
  };
  for (const auto& [from, to] : {Row{44100, 48000}, Row{44100, 192000}, Row{48000, 44100},
                                 Row{96000, 44100}, Row{192000, 11050}, Row{11050, 192000}}) {
    const double turn = 2.0 * std::numbers::pi;
    Stereo sine(static_cast<std::size_t>(from / 10));
    for (std::size_t i = 0; i < sine.frames(); ++i) {
      sine.left[i] =
          static_cast<float>(0.5 * std::sin(turn * 1000.0 * static_cast<double>(i) / from));
      sine.right[i] = -sine.left[i];
    }
    writeStereo(file("sine.wav"), SF_FORMAT_WAV | SF_FORMAT_FLOAT, from, sine);
    LoopSource loop(file("sine.wav"), to);
    static_cast<void>(play(loop, static_cast<std::size_t>(to / 10)));  // it swings in
    const Stereo got = play(loop, static_cast<std::size_t>(to / 2));
    EXPECT_LT(impurity(got.left, turn * 1000.0 / to), -80.0) << from << " to " << to;
    EXPECT_LT(impurity(got.right, turn * 1000.0 / to), -80.0) << from << " to " << to;
  }
}

TEST_F(LoopFile, WhatIsNoLoopIsRefusedWithAWord) {
  std::ofstream(file("text.wav")) << "no music in here, only words, and quite some of them\n";
  std::ofstream(file("empty.wav")).close();
  ASSERT_EQ(mkfifo(file("pipe.wav").c_str(), 0600), 0);
  writeSound(file("silent.wav"), SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 44100, {});
  writeSound(file("three.wav"), SF_FORMAT_WAV | SF_FORMAT_FLOAT, 3, 44100, {0.0F, 0.0F, 0.0F});
  writeStereo(file("broken.flac"), SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, noise(12 * 44100));
  fs::resize_file(file("broken.flac"), fs::file_size(file("broken.flac")) / 100);
  for (const char* name : {"text.wav", "empty.wav", "pipe.wav", "silent.wav", "three.wav",
                           "missing.wav", ".", "broken.flac"}) {
    EXPECT_THROW(LoopSource(file(name), 44100), Failure) << name;
  }
}

// A file with a hole in place of its sound, which takes no room on the disk.
TEST_F(LoopFile, ThreeHoursOfItAreStreamed) {
  const std::string name = file("hours.wav");
  writeSound(name, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 44100, std::vector<float>(2 * 1024));
  const std::uint32_t bytes = 3U * 3600U * 44100U * 8U;
  const auto header = static_cast<std::uint32_t>(fs::file_size(name) - 2 * 1024 * sizeof(float));
  fs::resize_file(name, std::uintmax_t{header} + bytes);
  std::fstream wav(name, std::ios::in | std::ios::out | std::ios::binary);
  const auto put = [&wav](std::streamoff at, std::uint32_t word) {
    wav.seekp(at).write(reinterpret_cast<const char*>(&word), sizeof word);
  };
  put(4, header + bytes - 8);
  put(header - 4, bytes);
  wav.close();

  const std::size_t before = residentBytes();
  const auto start = std::chrono::steady_clock::now();
  LoopSource loop(name, 48000);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
  static_cast<void>(play(loop, 20 * 48000));
  EXPECT_LT(residentBytes(), before + (64U << 20U));
}

// ---- recordings

class RecordingTest : public testing::Test {
 protected:
  RecordingTest() { static_cast<void>(std::signal(SIGXFSZ, SIG_IGN)); }
  /// All of `music`, block by block, as long as it runs.
  std::size_t write(Recorder& recorder) const {
    std::size_t at = 0;
    while (at < music.frames() && recorder.isRunning()) {
      const std::size_t part = std::min<std::size_t>(1 + at % 511, music.frames() - at);
      recorder.write(music.left.data() + at, music.right.data() + at, static_cast<int>(part));
      at += part;
      if (at % 7 == 0) std::this_thread::sleep_for(1ms);
    }
    return at;
  }
  /// The highest difference between both, as far as `got` goes.
  float difference(const Stereo& got) const {
    float most = 0.0F;
    for (std::size_t i = 0; i < std::min(got.frames(), music.frames()); ++i) {
      most = std::max(
          {most, std::fabs(got.left[i] - music.left[i]), std::fabs(got.right[i] - music.right[i])});
    }
    return most;
  }

  const TemporaryFolder folder;
  const Stereo music = noise(100'000);
};

TEST_F(RecordingTest, IsCompleteInEachFormat) {
  struct Row {
    const char* name;
    float difference;
  };
  const Row rows[] = {{"a.wav", 0.0F}, {"a.aiff", 0.0F}, {"a.caf", 0.0F},
                      {"a.w64", 0.0F}, {"a.rf64", 0.0F}, {"a.flac", 1e-6F},
                      {"a.au", 0.0F},  {"a.ogg", 2.0F}};  // noise is not its strength
  for (const Row& row : rows) {
    Recorder recorder(folder / row.name, 44100);
    EXPECT_EQ(write(recorder), music.frames());
    EXPECT_FALSE(fs::exists(folder / row.name)) << row.name;
    recorder.finish();
    EXPECT_EQ(recorder.problem(), "");
    EXPECT_EQ(recorder.lostFrames(), 0);
    const Stereo got = readStereo((folder / row.name).string());
    EXPECT_EQ(got.frames(), music.frames()) << row.name;
    EXPECT_LE(difference(got), row.difference) << row.name;
  }
}

TEST_F(RecordingTest, WithoutRoomForMoreTheFileIsWholeUpToThere) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  for (const char* name : {"full.wav", "full.aiff", "full.w64"}) {
    Recorder recorder(folder / name, 44100);
    const rlimit tight{150'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    static_cast<void>(write(recorder));
    recorder.finish();
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(recorder.isRunning()) << name;
    EXPECT_TRUE(has(recorder.problem(), "ended early: ")) << recorder.problem();
    SCOPED_TRACE(name);
    const Stereo got = readStereo((folder / name).string());
    EXPECT_GT(got.frames(), 8'000U) << name;
    EXPECT_LT(got.frames(), music.frames()) << name;
    EXPECT_LE(difference(got), 1e-6F) << name;
  }
  const auto entries = std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  EXPECT_EQ(entries, 3);
}

TEST_F(RecordingTest, FramesThatTheDiskIsTooSlowForAreCounted) {
  Recorder recorder(folder / "slow.wav", 8000);
  recorder.write(music.left.data(), music.right.data(), static_cast<int>(music.frames()));
  recorder.finish();
  const auto kept = readStereo((folder / "slow.wav").string()).frames();
  EXPECT_GT(recorder.lostFrames(), 0);
  EXPECT_EQ(kept + static_cast<std::size_t>(recorder.lostFrames()), music.frames());
}

TEST_F(RecordingTest, WhatCannotBeMadeIsRefused) {
  std::ofstream(folder / "file").close();
  for (const char* name : {"no/a.wav", "file/a.wav", "a.txt", ".", "/proc/a.wav"}) {
    EXPECT_THROW(Recorder(folder / name, 44100), Failure) << name;
  }
}

TEST_F(RecordingTest, FormatsThatHaveALimitKnowIt) {
  const auto hours = [this](const char* name) {
    const AudioOutput output(folder / name, 48000);
    return static_cast<double>(output.mostFrames()) / 48000.0 / 3600.0;
  };
  EXPECT_NEAR(hours("a.wav"), 3.1, 0.05);
  EXPECT_NEAR(hours("a.aiff"), 3.1, 0.05);
  EXPECT_GT(hours("a.w64"), 1e6);
}

// ---- taps and callbacks

TEST(TapTempo, IsTheMeanOfTheLastBeatsAndBeginsAnewBehindAPause) {
  struct Tap {
    std::chrono::milliseconds after;
    double tempo;  // 0 for none
  };
  const Tap taps[] = {{0ms, 0.0},    {500ms, 120.0}, {400ms, 133.333}, {600ms, 120.0},
                      {1501ms, 0.0}, {1500ms, 40.0}, {0ms, 80.0},      {3000ms, 0.0},
                      {0ms, 0.0},    {250ms, 480.0}};
  TapTempo taken;
  TapTempo::Time now{};
  for (const Tap& each : taps) {
    now += each.after;
    EXPECT_NEAR(taken.tap(now).value_or(0.0), each.tempo, 0.001);
  }
  // what was tapped before the last eight does not count
  for (int i = 0; i < 7; ++i) now += 500ms, static_cast<void>(taken.tap(now));
  now += 500ms;
  EXPECT_NEAR(taken.tap(now).value_or(0.0), 120.0, 0.001);
}

TEST(CallbackWatch, TellsThePartOfTheTimeThatGoesIntoBlocks) {
  CallbackWatch watch(1000.0);  // Hz: a frame is a millisecond
  EXPECT_EQ(watch.load().average, 0.0);
  for (const auto spent : {0ms, 20ms, 0ms, 0ms}) {
    EXPECT_EQ(watch.load().ownXruns, 0);
    watch.begin();
    std::this_thread::sleep_for(spent);
    watch.end(100);
  }
  EXPECT_EQ(watch.load().ownXruns, 0);
  watch.begin();
  std::this_thread::sleep_for(20ms);
  watch.end(10);
  EXPECT_EQ(watch.load().ownXruns, 1);
  watch.noteXrun();
  EXPECT_EQ(watch.callCount(), 5U);
  EXPECT_EQ(watch.xruns(), 1);
  EXPECT_GE(watch.load().most, 0.2);
  EXPECT_GE(watch.load().average, 0.05);
  EXPECT_LT(watch.load().average, 0.6 * watch.load().most);
}

}  // namespace
}  // namespace zum::test
