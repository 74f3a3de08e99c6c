// Opening, checking and reading of the input file.
#include "apps/zum/audio_input.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "apps/zum/failure.hpp"
#include "apps/zum/input_file.hpp"
#include "engine/clock.hpp"

namespace zum {
namespace {

// Rates that the effect runs at, in Hz.
constexpr auto kLowestRate = static_cast<int>(KvSystemInfo::kLowestSampleRate);
constexpr auto kHighestRate = static_cast<int>(KvSystemInfo::kHighestSampleRate);

// libsndfile mends a header that promises more than there is, and says so only in its log.
bool shorterThanItsHeader(SNDFILE* file) {
  std::array<char, 16384> log{};
  sf_command(file, SFC_GET_LOG_INFO, log.data(), static_cast<int>(log.size() - 1));
  return std::strstr(log.data(), "should be") != nullptr;
}

}  // namespace

std::string libraryError(SNDFILE* file) {
  std::string text = sf_strerror(file);
  if (!text.empty() && text.back() == '.') text.pop_back();
  return text;
}

AudioInput::AudioInput(const std::filesystem::path& path) : name(path.string()) {
  const InputFile checked(path, "music file");  // libsndfile would wait for a pipe
  file.reset(sf_open(path.c_str(), SFM_READ, &info));
  if (file == nullptr) {
    throw Failure("cannot read " + name + ": " + libraryError(nullptr) +
                  "; give a music file such as .wav or .flac");
  }
  if (info.channels > 2) {
    throw Failure(name + " has " + std::to_string(info.channels) +
                  " channels; mix it down to mono or stereo first");
  }
  if (info.samplerate < kLowestRate || info.samplerate > kHighestRate) {
    throw Failure(name + " has a sample rate of " + std::to_string(info.samplerate) +
                  " Hz; resample it first to one from " + std::to_string(kLowestRate) + " to " +
                  std::to_string(kHighestRate) + " Hz");
  }
  if (shorterThanItsHeader(file.get())) {
    warn(name + " does not have the length that its header tells; all that is there is taken");
  }
}

std::vector<std::pair<int, std::string>> AudioInput::texts() const {
  std::vector<std::pair<int, std::string>> found;
  for (int type = SF_STR_FIRST; type <= SF_STR_LAST; ++type) {
    const char* text = type == SF_STR_SOFTWARE ? nullptr : sf_get_string(file.get(), type);
    if (text != nullptr) found.emplace_back(type, text);
  }
  return found;
}

int AudioInput::read(float* left, float* right, int count) {
  const int channels = info.channels;
  interleaved.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(channels));
  const auto got = static_cast<int>(sf_readf_float(file.get(), interleaved.data(), count));
  framesRead += got;
  if (framesRead == 0) throw Failure(name + " has no sound in it; give a file that has some");
  const bool lengthIsExact = (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG;
  const bool early = lengthIsExact && framesRead < frames();
  if (got < count && (early || sf_error(file.get()) != SF_ERR_NO_ERROR)) {
    throw Failure(name + " breaks off after " + std::to_string(framesRead) +
                  " frames; copy or export it again");
  }
  const auto samples = interleaved.begin() + std::ptrdiff_t{got} * channels;
  nonFinite +=
      std::count_if(interleaved.begin(), samples, [](float x) { return !std::isfinite(x); });
  const float* sample = interleaved.data();
  for (int i = 0; i < got; ++i, sample += channels) {
    left[i] = sample[0];
    right[i] = sample[channels - 1];
  }
  return got;
}

void AudioInput::rewind() {
  if (sf_seek(file.get(), 0, SEEK_SET) != 0) {
    throw Failure(name + " cannot be read from its begin again; copy it into a file first");
  }
  framesRead = 0;
}

void AudioInput::warnOfDamage() const {
  if (nonFinite == 0) return;
  warn(name + " has " + std::to_string(nonFinite) +
       " samples that are no finite numbers; export it again");
}

}  // namespace zum
