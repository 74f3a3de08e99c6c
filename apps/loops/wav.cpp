// 16-bit WAV files through libsndfile.
#include "apps/loops/wav.hpp"

#include <sndfile.h>

#include <cmath>
#include <cstdint>
#include <system_error>

namespace zum::loops {
namespace {

std::vector<std::int16_t> quantised(const Loop& loop) {
  const auto round = [](double sample) {
    return static_cast<std::int16_t>(std::lround(sample * 32767.0));
  };
  std::vector<std::int16_t> samples;
  samples.reserve(2 * loop.frames.size());
  for (const Frame& frame : loop.frames) {
    samples.push_back(round(frame.left));
    samples.push_back(round(frame.right));
  }
  return samples;
}

std::string writeSamples(const std::filesystem::path& path, const Loop& loop) {
  const std::vector<std::int16_t> samples = quantised(loop);
  const auto count = static_cast<sf_count_t>(samples.size());
  SF_INFO info{};
  info.samplerate = kRate;
  info.channels = 2;
  info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file == nullptr) return sf_strerror(nullptr);
  std::string error;
  if (sf_write_short(file, samples.data(), count) != count) error = sf_strerror(file);
  if (const int code = sf_close(file); code != 0 && error.empty()) error = sf_error_number(code);
  return error;
}

}  // namespace

std::string writeWav(const std::filesystem::path& path, const Loop& loop) {
  std::filesystem::path part = path;
  part += ".part";
  std::string error = writeSamples(part, loop);
  std::error_code code;
  if (error.empty()) {
    std::filesystem::rename(part, path, code);
    if (code) error = code.message();
  }
  if (!error.empty()) std::filesystem::remove(part, code);
  return error;
}

}  // namespace zum::loops
