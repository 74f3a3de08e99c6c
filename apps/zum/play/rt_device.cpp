// A device of the system's through RtAudio.
#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "apps/zum/failure.hpp"
#include "apps/zum/play/callback_watch.hpp"
#include "apps/zum/play/rt_api.hpp"
#include "apps/zum/play/sound_device.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kUsualRate = 48000;  // Hz, where a device prefers none
constexpr unsigned kUsualBlock = 256;   // frames
constexpr auto kLongestSilence = std::chrono::seconds(1);
// The library closes a stream whose server went on a thread of its own, and not at once.
constexpr auto kClosing = std::chrono::milliseconds(500);
constexpr int kPriority = 70;

unsigned rateOf(const RtAudio::DeviceInfo& info, int wanted) {
  if (wanted != 0) return static_cast<unsigned>(wanted);
  return info.preferredSampleRate != 0 ? info.preferredSampleRate : kUsualRate;
}

/// What is to be played, in the words of RtAudio.
struct Route {
  std::span<const FoundDevice> devices;
  const FoundDevice& output;
};

class RtDevice final : public SoundDevice {
 public:
  RtDevice(const SoundApi& api, std::unique_ptr<RtAudio> system, const Route& route,
           const DeviceWish& wish, LiveSound& played)
      : sound(played),
        title(std::string(api.title) + ": " + route.output.info.name),
        its{api.name, route.output.info.name},
        rate(rateOf(route.output.info, wish.rate)),
        frames(wish.block != 0 ? static_cast<unsigned>(wish.block) : kUsualBlock),
        watch(rate),
        rtAudio(std::move(system)) {
    if (!sound.setRate(static_cast<int>(rate))) {
      throw Failure(title + " runs at " + std::to_string(rate) +
                    " Hz, which the effect does not; give another --rate");
    }
    open(route, wish.input);
  }
  ~RtDevice() override { close(); }

  bool isAlive() override;
  std::string name() const override { return title; }
  Identity identity() const override { return its; }
  int block() const override { return static_cast<int>(frames); }
  int xruns() const override { return watch.xruns(); }
  Load load() const override { return watch.load(); }

 private:
  using Buffers = std::array<std::vector<float>, 2>;

  void open(const Route& route, bool wantsInput);
  void close();
  static int call(void* out, void* in, unsigned count, double time, RtAudioStreamStatus status,
                  void* device);
  void play(float* out, const float* in, int count) ZUM_REALTIME;

  LiveSound& sound;
  const std::string title;
  const Identity its;
  const unsigned rate;  // Hz
  unsigned frames;
  unsigned outputChannels = 0;
  unsigned inputChannels = 0;
  Buffers mono;  // of a device with one output
  CallbackWatch watch;
  std::uint64_t callsSeen = 0;
  Clock::time_point lastCall = Clock::now();
  std::unique_ptr<RtAudio> rtAudio;  // first to go: it calls
};

void RtDevice::open(const Route& route, bool wantsInput) {
  const FoundDevice* const input = wantsInput ? inputBeside(route.devices, route.output) : nullptr;
  if (wantsInput && input == nullptr) throw Failure(title + " has no input; play a --loop");
  RtAudio::StreamParameters to;
  to.deviceId = route.output.number;
  to.nChannels = outputChannels = std::min(route.output.info.outputChannels, 2U);
  RtAudio::StreamParameters from;
  if (input != nullptr) {
    from.deviceId = input->number;
    from.nChannels = inputChannels = std::min(input->info.inputChannels, 2U);
  }
  RtAudio::StreamOptions options;
  options.flags = RTAUDIO_NONINTERLEAVED | RTAUDIO_SCHEDULE_REALTIME;
  options.streamName = "ZUM";
  options.priority = kPriority;
  std::string why;
  try {
    // what goes wrong later shows in isAlive()
    rtAudio->openStream(&to, input != nullptr ? &from : nullptr, RTAUDIO_FLOAT32, rate, &frames,
                        &RtDevice::call, this, &options,
                        [](RtAudioError::Type, const std::string&) {});
    for (auto& channel : mono) channel.resize(frames);
    rtAudio->startStream();
    if (rtAudio->isStreamRunning()) return;
  } catch (const RtAudioError& error) {
    why = ": " + error.getMessage();
  }
  close();
  throw Failure(title + " does not open at " + std::to_string(rate) + " Hz" + why +
                "; give another --device, --rate or --block");
}

void RtDevice::close() {
  if (!rtAudio->isStreamOpen()) return;
  try {
    if (rtAudio->isStreamRunning()) rtAudio->abortStream();
    if (rtAudio->isStreamOpen()) rtAudio->closeStream();
  } catch (const RtAudioError&) {
    // it is gone
  }
}

bool RtDevice::isAlive() {
  const std::uint64_t calls = watch.callCount();
  if (std::exchange(callsSeen, calls) != calls) lastCall = Clock::now();
  const auto silence = Clock::now() - lastCall;
  if (!rtAudio->isStreamRunning()) return silence < kClosing;
  return silence < kLongestSilence;
}

// ---- [audio]

int RtDevice::call(void* out, void* in, unsigned count, double /*time*/, RtAudioStreamStatus status,
                   void* device) {
  RtDevice& self = *static_cast<RtDevice*>(device);
  if (status != 0) self.watch.noteXrun();
  self.watch.begin();
  self.play(static_cast<float*>(out), static_cast<const float*>(in), static_cast<int>(count));
  self.watch.end(static_cast<int>(count));
  return 0;
}

// One channel behind the other. A device with one plays the middle, and is heard on both sides.
void RtDevice::play(float* out, const float* in, int count) ZUM_REALTIME {
  const std::array<const float*, 2> inputs = {in, inputChannels == 2 ? in + count : in};
  const float* const* const heard = in != nullptr ? inputs.data() : nullptr;
  if (outputChannels == 2) {
    const std::array<float*, 2> outputs = {out, out + count};
    return sound.process(heard, outputs.data(), count);
  }
  const std::array<float*, 2> outputs = {mono[0].data(), mono[1].data()};
  sound.process(heard, outputs.data(), count);
  for (int i = 0; i < count; ++i) out[i] = 0.5F * (outputs[0][i] + outputs[1][i]);
}

std::string namesOf(std::span<const FoundDevice> devices) {
  std::string names;
  for (const FoundDevice& each : devices) {
    if (each.info.outputChannels > 0) names += (names.empty() ? "" : ", ") + each.info.name;
  }
  return names;
}

}  // namespace

bool isThere(const DeviceWish& wish) {
  const auto apis = soundApis();
  return std::any_of(apis.begin(), apis.end(), [&](const SoundApi& api) {
    if (!wish.api.empty() && wish.api != api.name) return false;
    return chooseOutput(devicesOf(*makeRtAudio(api)), wish.device) != nullptr;
  });
}

std::unique_ptr<SoundDevice> openSoundDevice(const DeviceWish& wish, LiveSound& played) {
  std::string others;
  std::string why;
  for (const SoundApi& api : soundApis()) {
    if (!wish.api.empty() && wish.api != api.name) continue;
    auto system = makeRtAudio(api);
    const std::vector<FoundDevice> devices = devicesOf(*system);
    const FoundDevice* const output = chooseOutput(devices, wish.device);
    if (output == nullptr) {
      if (const std::string names = namesOf(devices); !names.empty()) {
        others += (others.empty() ? "" : ", ") + names;
      }
      continue;
    }
    try {
      return std::make_unique<RtDevice>(api, std::move(system), Route{devices, *output}, wish,
                                        played);
    } catch (const Failure& failure) {
      if (why.empty()) why = failure.what();
    }
  }
  if (!why.empty()) throw Failure(why);
  if (!wish.device.empty() && !others.empty()) {
    throw Failure("there is no sound device " + wish.device + "; there are " + others);
  }
  throw Failure("there is no sound device" + std::string(wish.api.empty() ? "" : " at ") +
                wish.api + "; start JACK or PulseAudio, or plug one in");
}

}  // namespace zum
