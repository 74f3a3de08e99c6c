// zum-loops FOLDER: synthesises the three factory loops. Run by hand when a loop is to change.
#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "apps/loops/loop.hpp"
#include "platform/standard_streams.hpp"

namespace zum::loops {
namespace {

struct Product {
  const char* name;
  Loop (*make)();
};

constexpr std::array kProducts = {
    Product{"Drums.wav", drums},
    Product{"Bass.wav", bass},
    Product{"Chords.wav", chords},
};

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

// Returns what went wrong, or an empty text. The file appears whole or not at all: it grows beside
// its place as NAME.part and is renamed at the end.
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

int run(const std::filesystem::path& folder) {
  std::error_code code;
  if (!std::filesystem::is_directory(folder, code)) {
    std::cerr << "zum-loops: " << folder << " is not a folder. Create it first (mkdir -p).\n";
    return 1;
  }
  for (const Product& product : kProducts) {
    const std::filesystem::path path = folder / product.name;
    if (const std::string error = writeWav(path, product.make()); !error.empty()) {
      std::cerr
          << "zum-loops: cannot write " << path << ": " << error
          << "\nCheck that the folder may be written and that its disk has a megabyte free.\n";
      return 1;
    }
  }
  return 0;
}

}  // namespace
}  // namespace zum::loops

int main(int argc, char** argv) {
  zum::openStandardStreams();
  if (argc != 2 || argv[1][0] == '-' || argv[1][0] == '\0') {
    std::cerr << "usage: zum-loops FOLDER\n"
                 "Writes Drums.wav, Bass.wav and Chords.wav into FOLDER, which has to exist.\n";
    return 2;
  }
  return zum::loops::run(argv[1]);
}
