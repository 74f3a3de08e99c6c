// The factory loops, as tests play them through the effect.
#pragma once

#include <gtest/gtest.h>
#include <sndfile.h>

#include <string>

#include "support/test_host.hpp"

namespace zum::test {

/// All three at once: hits, a bass line and chords. `content` is a content folder.
inline Stereo factoryLoops(const std::string& content) {
  Stereo sum;
  for (const char* name : {"Drums", "Bass", "Chords"}) {
    SF_INFO info{};
    const std::string path = content + "/Samples/Factory/" + name + ".wav";
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<float> samples(static_cast<std::size_t>(2 * info.frames));
    EXPECT_EQ(sf_readf_float(file, samples.data(), info.frames), info.frames) << path;
    sf_close(file);
    if (sum.frames() == 0) sum = Stereo(static_cast<std::size_t>(info.frames));
    for (std::size_t i = 0; i < sum.frames(); ++i) {
      sum.left[i] += 0.5F * samples[2 * i];
      sum.right[i] += 0.5F * samples[2 * i + 1];
    }
  }
  return sum;
}

}  // namespace zum::test
