// The factory loops in content/ are what zum-loops makes, and fit to be played round and round.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr sf_count_t kFrames = 176400;  // two bars at 120 BPM
constexpr const char* kFactory = ZUM_SOURCE_DIR "/content/Samples/Factory/";

int make(const std::string& folder) {
  return std::system(("'" ZUM_LOOPS_PROGRAM "' '" + folder + "' 2>/dev/null").c_str());
}

std::vector<short> readLoop(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16) << path;
  EXPECT_EQ(info.samplerate * info.channels, 44100 * 2) << path;
  EXPECT_EQ(info.frames, kFrames) << path;
  std::vector<short> samples(std::size_t{2} * kFrames);
  EXPECT_EQ(sf_readf_short(file, samples.data(), kFrames), kFrames) << path;
  sf_close(file);
  return samples;
}

TEST(Loops, committedFilesAreMadeByTheProgramAndLoopCleanly) {
  const std::string folder = testing::TempDir() + "zum-loops-test/";
  std::filesystem::create_directories(folder);
  ASSERT_EQ(make(folder), 0);
  for (const std::string name : {"Drums.wav", "Bass.wav", "Chords.wav"}) {
    const std::vector<short> made = readLoop(folder + name), kept = readLoop(kFactory + name);
    int difference = 0, peak = 0;
    double sum[2] = {}, steps[2] = {};
    for (std::size_t i = 0; i < kept.size(); ++i) {
      difference = std::max(difference, std::abs(kept[i] - made[i]));
      peak = std::max(peak, std::abs(kept[i]));
      sum[i % 2] += kept[i];
      if (i >= 2) steps[i % 2] += std::pow(kept[i] - kept[i - 2], 2);
    }
    EXPECT_LE(difference, 2) << name;
    EXPECT_NEAR(peak, 23197, 300) << name;  // -3 dBFS
    for (std::size_t side : {0U, 1U}) {
      EXPECT_LT(std::abs(sum[side] / kFrames), 1.0) << name;
      const double border = std::abs(kept[side] - kept[kept.size() - 2 + side]);
      EXPECT_LT(border, 2.0 * std::sqrt(steps[side] / kFrames))
          << name << ": a jump where the loop closes";
    }
  }
  std::filesystem::remove_all(folder);
  EXPECT_NE(make(folder), 0) << "a missing folder has to be an error";
}

}  // namespace
