// The factory loops in content/ are what zum-loops makes, and fit to be played round and round.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "support/sound_file.hpp"
#include "support/temporary_folder.hpp"

namespace zum::test {
namespace {

constexpr sf_count_t kFrames = 176400;  // two bars at 120 BPM

TEST(Loops, CommittedFilesAreMadeByTheProgramAndLoopCleanly) {
  const TemporaryFolder folder;
  const std::string make = "'" ZUM_LOOPS_PROGRAM "' " + folder.string();
  ASSERT_EQ(std::system(make.c_str()), 0);
  EXPECT_NE(std::system((make + "/missing 2>/dev/null").c_str()), 0);
  for (const std::string name : {"Drums.wav", "Bass.wav", "Chords.wav"}) {
    SCOPED_TRACE(name);
    const Sound made = readSound((folder / name).string());
    const Sound kept = readSound(ZUM_SOURCE_DIR "/content/Samples/Factory/" + name);
    for (const SF_INFO& info : {made.info, kept.info}) {
      EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
      EXPECT_EQ(info.samplerate * info.channels, 44100 * 2);
      ASSERT_EQ(info.frames, kFrames);
    }
    float difference = 0.0F, peak = 0.0F;
    double sum[2] = {}, steps[2] = {};
    const auto& samples = kept.samples;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      difference = std::max(difference, std::fabs(samples[i] - made.samples[i]));
      peak = std::max(peak, std::fabs(samples[i]));
      sum[i % 2] += samples[i];
      if (i >= 2) steps[i % 2] += std::pow(samples[i] - samples[i - 2], 2);
    }
    EXPECT_LE(difference, 0x2p-15F);
    EXPECT_NEAR(peak, 0.708, 0.01);  // -3 dBFS
    for (const std::size_t side : {0U, 1U}) {
      EXPECT_LT(std::abs(sum[side] / kFrames), 0x1p-15);
      const double border = std::fabs(samples[side] - samples[samples.size() - 2 + side]);
      EXPECT_LT(border, 2.0 * std::sqrt(steps[side] / kFrames)) << "a jump where it closes";
    }
  }
}

}  // namespace
}  // namespace zum::test
