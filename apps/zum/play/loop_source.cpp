#include "apps/zum/play/loop_source.hpp"

#include <samplerate.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <vector>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/failure.hpp"

namespace zum {
namespace {

constexpr std::size_t kPartFrames = 4096;
constexpr std::size_t kMostPartFrames = 20 * kPartFrames;  // resampled by as much as there is
// One that is no longer is kept: going to its begin again and again would take more time than there
// is, above all in compressed files.
constexpr std::size_t kMostKeptFrames = 65536;
constexpr std::size_t kAheadSeconds = 2;
constexpr auto kPause = std::chrono::milliseconds(10);

/// Two channels as the resampler has them.
std::vector<float> interleave(const std::vector<float>& left, const std::vector<float>& right) {
  std::vector<float> both(2 * left.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    both[2 * i] = left[i];
    both[2 * i + 1] = right[i];
  }
  return both;
}

}  // namespace

/// The file, going round, at the rate that is wanted.
class LoopSource::Reader {
 public:
  Reader(const std::filesystem::path& path, int rate)
      : input(path), ratio(static_cast<double>(rate) / input.sampleRate()) {
    keepIfShort();
    if (ratio == 1.0) return;
    int error = 0;
    resampler.reset(src_new(SRC_SINC_MEDIUM_QUALITY, 2, &error));
    if (resampler == nullptr) throw std::bad_alloc();
  }

  /// Some frames more. Throws Failure.
  void next() {
    readAround();
    if (resampler != nullptr) resample();
  }

  std::vector<float> left;
  std::vector<float> right;

  // [thread of the reader] Ahead of the flag.
  std::string trouble;
  std::atomic<bool> failed{false};

 private:
  void keepIfShort() {
    for (auto& channel : kept) channel.resize(kMostKeptFrames);
    const auto got = static_cast<std::size_t>(
        input.read(kept[0].data(), kept[1].data(), static_cast<int>(kMostKeptFrames)));
    for (auto& channel : kept) {
      channel.resize(got < kMostKeptFrames ? got : 0);
      channel.shrink_to_fit();
    }
    if (got == kMostKeptFrames) input.rewind();  // what cannot go there is told now
  }

  // The end of the file and its begin are one sound to the resampler, too.
  void readAround() {
    left.resize(kPartFrames);
    right.resize(kPartFrames);
    for (std::size_t done = 0; done < kPartFrames;) {
      done += kept[0].empty() ? readFile(done) : repeat(done);
    }
  }
  std::size_t readFile(std::size_t at) {
    const auto wanted = static_cast<int>(kPartFrames - at);
    const int got = input.read(left.data() + at, right.data() + at, wanted);
    if (got < wanted) input.rewind();
    return static_cast<std::size_t>(got);
  }
  std::size_t repeat(std::size_t at) {
    const std::size_t count = std::min(kPartFrames - at, kept[0].size() - place);
    std::copy_n(kept[0].data() + place, count, left.data() + at);
    std::copy_n(kept[1].data() + place, count, right.data() + at);
    place = (place + count) % kept[0].size();
    return count;
  }

  void resample() {
    const std::vector<float> from = interleave(left, right);
    std::vector<float> to(2 * (static_cast<std::size_t>(ratio * kPartFrames) + 64));
    SRC_DATA data{};
    data.data_in = from.data();
    data.input_frames = static_cast<long>(kPartFrames);
    data.data_out = to.data();
    data.output_frames = static_cast<long>(to.size() / 2);
    data.src_ratio = ratio;
    left.clear();
    right.clear();
    while (data.input_frames > 0) {
      if (const int error = src_process(resampler.get(), &data); error != 0) {
        throw Failure(std::string("cannot resample the loop: ") + src_strerror(error) +
                      "; give one at the device's rate");
      }
      for (long i = 0; i < data.output_frames_gen; ++i) {
        left.push_back(to[static_cast<std::size_t>(2 * i)]);
        right.push_back(to[static_cast<std::size_t>(2 * i + 1)]);
      }
      data.data_in += 2 * data.input_frames_used;
      data.input_frames -= data.input_frames_used;
    }
  }

  struct CloseResampler {
    void operator()(SRC_STATE* state) const { src_delete(state); }
  };

  AudioInput input;
  std::array<std::vector<float>, 2> kept;  // empty for a long one
  std::size_t place = 0;                   // in it
  const double ratio;
  std::unique_ptr<SRC_STATE, CloseResampler> resampler;  // null where the rates are the same
};

LoopSource::LoopSource(const std::filesystem::path& path, int rate)
    : ring(static_cast<std::size_t>(rate) * kAheadSeconds + kMostPartFrames),
      reader(std::make_unique<Reader>(path, rate)) {
  const auto fill = [this](std::size_t frames) {
    while (ring.filled() < frames) {
      reader->next();
      ring.write(reader->left.data(), reader->right.data(), reader->left.size());
    }
  };
  const std::size_t full = static_cast<std::size_t>(rate) * kAheadSeconds;
  fill(full / 2);
  thread = std::jthread([this, fill, full](const std::stop_token& end) {
    try {
      for (; !end.stop_requested(); std::this_thread::sleep_for(kPause)) fill(full);
    } catch (const std::exception& error) {
      reader->trouble = error.what();
      reader->failed.store(true);
    }
  });
}

LoopSource::~LoopSource() = default;

void LoopSource::read(float* left, float* right, int count) ZUM_REALTIME {
  const auto wanted = static_cast<std::size_t>(count);
  const std::size_t got = ring.read(left, right, wanted);
  if (got == wanted) return;
  std::fill(left + got, left + wanted, 0.0F);
  std::fill(right + got, right + wanted, 0.0F);
  late.fetch_add(static_cast<std::int64_t>(wanted - got), std::memory_order_relaxed);
}

std::string LoopSource::problem() const { return reader->failed.load() ? reader->trouble : ""; }

}  // namespace zum
