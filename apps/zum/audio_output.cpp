// Encoding of the output through libsndfile into the temporary file.
#include "apps/zum/audio_output.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "apps/zum/failure.hpp"
#include "apps/zum/output_format.hpp"

namespace zum {
namespace {

// Chunk sizes of 32 bits, less room for the header.
constexpr sf_count_t kLargestChunk = 0xFFFFFFFFLL - 65536;

sf_count_t mostFramesOf(int format, int bits) {
  const int type = format & SF_FORMAT_TYPEMASK;
  const sf_count_t bytesPerFrame = 2 * (bits == 0 ? 32 : bits) / 8;
  return type == SF_FORMAT_WAV || type == SF_FORMAT_AIFF ? kLargestChunk / bytesPerFrame
                                                         : SF_COUNT_MAX;
}

// Rounded to full integers of `bits`, at the top of 32: reading such a file and writing it again
// changes nothing, which libsndfile's own conversion from float does not promise.
int quantise(float sample, int bits) {
  if (std::isnan(sample)) return 0;
  const double scale = std::ldexp(1.0, bits - 1);
  const double level = std::clamp(std::nearbyint(sample * scale), -scale, scale - 1.0);
  return static_cast<int>(std::ldexp(level, 32 - bits));
}

}  // namespace

AudioOutput::AudioOutput(const std::filesystem::path& path, const AudioInput& input,
                         sf_count_t frames)
    : AudioOutput(path, input.format(), input.sampleRate(), frames) {
  for (const auto& [type, text] : input.texts()) sf_set_string(file.get(), type, text.c_str());
}

AudioOutput::AudioOutput(const std::filesystem::path& path, int rate)
    : AudioOutput(path, SF_FORMAT_FLOAT, rate, 0) {}

AudioOutput::AudioOutput(const std::filesystem::path& path, int inputFormat, int rate,
                         sf_count_t frames)
    : name(path.string()),
      format(outputFormat(path, inputFormat)),
      bits(integerBits(format)),
      temporary(path) {
  SF_INFO info{};
  info.channels = 2;
  info.samplerate = rate;
  info.format = format;
  if (frames > mostFrames()) {
    throw Failure(name +
                  " would be longer than its format allows; write a .caf, .rf64 or .w64 file");
  }
  SF_VIRTUAL_IO functions = sinkFunctions();
  file.reset(sf_open_virtual(&functions, SFM_WRITE, &info, &temporary));
  checkWrite(true);
  if (file == nullptr) {
    throw Failure("cannot write " + name + " at " + std::to_string(info.samplerate) + " Hz: " +
                  libraryError(nullptr) + "; choose another format, such as .wav or .flac");
  }
  // The peak chunk holds the time of day: without it, equal renders are equal files.
  sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  // Where it was dropped from a header that stands already, as in AIFF, the sound would begin
  // behind its gap.
  if (sf_seek(file.get(), 0, SEEK_SET) == 0) dropBehindHeader();
}

void AudioOutput::dropBehindHeader() const {
  const off_t end = lseek(temporary.descriptor(), 0, SEEK_CUR);
  if (end > 0 && ftruncate(temporary.descriptor(), end) != 0) checkWrite(false);
}

// libsndfile gets our own functions to write through, because it keeps failures in the middle and
// at the end of compressed files to itself.
SF_VIRTUAL_IO AudioOutput::sinkFunctions() {
  SF_VIRTUAL_IO functions{};
  functions.get_filelen = [](void* user) -> sf_count_t {
    struct stat status {};
    return fstat(static_cast<TemporaryFile*>(user)->descriptor(), &status) == 0 ? status.st_size
                                                                                : -1;
  };
  functions.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
    return lseek(static_cast<TemporaryFile*>(user)->descriptor(), offset, whence);
  };
  functions.tell = [](void* user) -> sf_count_t {
    return lseek(static_cast<TemporaryFile*>(user)->descriptor(), 0, SEEK_CUR);
  };
  functions.write = [](const void* data, sf_count_t count, void* user) -> sf_count_t {
    return static_cast<sf_count_t>(
        static_cast<TemporaryFile*>(user)->write(data, static_cast<std::size_t>(count)));
  };
  return functions;
}

void AudioOutput::checkWrite(bool complete) const {
  const int error = temporary.writeError();
  if (complete && error == 0) return;
  const std::string why = error != 0 ? std::strerror(error) : libraryError(file.get());
  throw Failure("cannot write " + name + ": " + why +
                "; free space or choose another folder, and try again");
}

void AudioOutput::measure(float sample) {
  const float level = std::fabs(sample);
  if (std::isfinite(level)) highest = std::max(highest, level);
  if (bits != 0 && level > 1.0F) ++clipped;
}

void AudioOutput::write(const float* left, const float* right, int count) {
  const std::size_t samples = 2 * static_cast<std::size_t>(count);
  length = lseek(temporary.descriptor(), 0, SEEK_END);
  floats.resize(samples);
  for (int i = 0; i < count; ++i) {
    const std::size_t at = 2 * static_cast<std::size_t>(i);
    measure(floats[at] = left[i]);
    measure(floats[at + 1] = right[i]);
  }
  if (bits == 0) {
    checkWrite(sf_writef_float(file.get(), floats.data(), count) == count);
    return;
  }
  integers.resize(samples);
  std::transform(floats.begin(), floats.end(), integers.begin(),
                 [this](float sample) { return quantise(sample, bits); });
  checkWrite(sf_writef_int(file.get(), integers.data(), count) == count);
}

sf_count_t AudioOutput::mostFrames() const { return mostFramesOf(format, bits); }

void AudioOutput::warnOfDamage() const {
  if (clipped == 0) return;
  warn(name + " clips in " + std::to_string(clipped) +
       " samples; turn the level down, or render from a float file to a float format");
}

void AudioOutput::close() {
  const int closed = sf_close(file.release());
  checkWrite(closed == 0);
}

void AudioOutput::finish() {
  close();
  temporary.commit();
}

void AudioOutput::keep() {
  close();
  temporary.keep();
}

void AudioOutput::keepWhatFits() {
  if (!temporary.forgive(length)) checkWrite(false);
  keep();
}

}  // namespace zum
