// Silent time, and the choice of a device.
#include "apps/zum/play/sound_device.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "apps/zum/failure.hpp"
#include "apps/zum/play/callback_watch.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSilentBlock = 256;  // frames
constexpr int kSilentRate = 44100;
// How far blocks may be behind and still be made up for. What a longer halt cost is left out, or
// they would come in one burst.
constexpr auto kMostBehind = std::chrono::milliseconds(200);

class SilentTime final : public SoundDevice {
 public:
  SilentTime(int rate, int blockFrames, LiveSound& played)
      : sound(played),
        frames(blockFrames),
        watch(static_cast<double>(rate)),
        outputs{std::vector<float>(static_cast<std::size_t>(frames)),
                std::vector<float>(static_cast<std::size_t>(frames))},
        thread([this, rate](const std::stop_token& end) { run(end, rate); }) {}

  bool isAlive() override { return true; }
  std::string name() const override { return ""; }
  Identity identity() const override { return {}; }
  int block() const override { return frames; }
  int xruns() const override { return 0; }
  Load load() const override { return watch.load(); }

 private:
  void run(const std::stop_token& end, int rate) {
    const auto blockTime = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(frames) / rate));
    const std::array<float*, 2> out = {outputs[0].data(), outputs[1].data()};
    for (auto due = Clock::now(); !end.stop_requested(); std::this_thread::sleep_until(due)) {
      watch.begin();
      sound.process(nullptr, out.data(), frames);
      watch.end(frames);
      due = std::max(due + blockTime, Clock::now() - kMostBehind);
    }
  }

  LiveSound& sound;
  const int frames;
  CallbackWatch watch;
  std::array<std::vector<float>, 2> outputs;
  std::jthread thread;  // last: uses all of the above
};

}  // namespace

std::unique_ptr<SoundDevice> openSilentTime(const DeviceWish& wish, LiveSound& played) {
  const int before = played.sampleRate();
  const int rate = wish.rate != 0 ? wish.rate : before != 0 ? before : kSilentRate;
  if (!played.setRate(rate))
    throw Failure("the effect does not run at " + std::to_string(rate) + " Hz");
  return std::make_unique<SilentTime>(rate, wish.block != 0 ? wish.block : kSilentBlock, played);
}

}  // namespace zum
