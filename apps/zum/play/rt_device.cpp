// A device of PulseAudio's or ALSA's through RtAudio.
#include <pthread.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <utility>

#include "apps/zum/failure.hpp"
#include "apps/zum/play/callback_watch.hpp"
#include "apps/zum/play/device_channels.hpp"
#include "apps/zum/play/device_kinds.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kUsualRate = 48000;  // Hz, where a device prefers none
constexpr unsigned kUsualBlock = 256;   // frames
constexpr auto kLongestSilence = std::chrono::seconds(3);
// What PulseAudio is given ahead: of itself it would take two seconds of it.
constexpr double kPulseAhead = 0.06;  // seconds
constexpr unsigned kFewestBuffers = 4;
// A device that went fails at each block; one block can fail on a busy machine.
constexpr int kMostFailures = 8;
constexpr int kPriority = 70;
constexpr int kAbort = 2;  // as an answer to a call

unsigned rateOf(const RtAudio::DeviceInfo& info, int wanted) {
  if (wanted != 0) return static_cast<unsigned>(wanted);
  return info.preferredSampleRate != 0 ? info.preferredSampleRate : kUsualRate;
}

class RtDevice final : public SoundDevice {
 public:
  RtDevice(const SoundApi& api, std::unique_ptr<RtAudio> system, const Route& route,
           const DeviceWish& wish, LiveSound& played)
      : sound(played),
        title(std::string(api.title) + ": " + route.output.info.name),
        its{api.name, route.output.info.name},
        rate(rateOf(route.output.info, wish.rate)),
        frames(wish.block != 0 ? static_cast<unsigned>(wish.block) : kUsualBlock),
        channels(route.input != nullptr ? route.input->info.inputChannels : 0,
                 route.output.info.outputChannels),
        watch(rate),
        rtAudio(std::move(system)) {
    if (!sound.setRate(static_cast<int>(rate))) {
      throw Failure(title + " runs at " + std::to_string(rate) +
                    " Hz, which the effect does not; give another --rate");
    }
    open(route);
  }
  ~RtDevice() override { close(); }

  bool isAlive() override;
  std::string name() const override { return title; }
  Identity identity() const override { return its; }
  int block() const override { return static_cast<int>(frames); }
  int xruns() const override { return watch.xruns(); }
  Load load() const override { return watch.load(); }

 private:
  void open(const Route& route);
  void close();
  static int call(void* out, void* in, unsigned count, double time, RtAudioStreamStatus status,
                  void* device);
  static void noteError(RtAudioError::Type type, const std::string& text);
  static void hurry();
  bool isBroken();

  LiveSound& sound;
  const std::string title;
  const Identity its;
  const unsigned rate;  // Hz
  unsigned frames;
  DeviceChannels channels;
  CallbackWatch watch;
  std::uint64_t callsSeen = 0;
  Clock::time_point lastCall = Clock::now();
  std::atomic<bool> broken{false};
  std::unique_ptr<RtAudio> rtAudio;  // first to go: it calls

  // [audio]
  bool hasFailed = false;  // the last block
  int failures = 0;        // in a row
  static thread_local RtDevice* calling;
};

thread_local RtDevice* RtDevice::calling = nullptr;

void RtDevice::open(const Route& route) {
  RtAudio::StreamParameters to;
  to.deviceId = route.output.number;
  to.nChannels = channels.outputs();
  RtAudio::StreamParameters from;
  from.deviceId = route.input != nullptr ? route.input->number : 0;
  from.nChannels = channels.inputs();
  RtAudio::StreamOptions options;
  options.flags = RTAUDIO_NONINTERLEAVED;
  options.streamName = "ZUM";
  if (rtAudio->getCurrentApi() == RtAudio::LINUX_PULSE) {
    options.numberOfBuffers =
        std::max(kFewestBuffers, static_cast<unsigned>(kPulseAhead * rate / frames));
  }
  std::string why;
  try {
    rtAudio->openStream(&to, route.input != nullptr ? &from : nullptr, RTAUDIO_FLOAT32, rate,
                        &frames, &RtDevice::call, this, &options, &RtDevice::noteError);
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
  return !broken.load() && rtAudio->isStreamRunning() && Clock::now() - lastCall < kLongestSilence;
}

// ---- [audio]

int RtDevice::call(void* out, void* in, unsigned count, double /*time*/, RtAudioStreamStatus status,
                   void* device) {
  RtDevice& self = *static_cast<RtDevice*>(device);
  if (std::exchange(calling, &self) != &self) hurry();
  if (self.isBroken()) return kAbort;
  if (status != 0) self.watch.noteXrun();
  self.watch.begin();
  // one channel behind the other
  const auto* const from = static_cast<const float*>(in);
  auto* const to = static_cast<float*>(out);
  const std::array<const float*, 2> inputs = {from,
                                              from + (self.channels.inputs() == 2 ? count : 0)};
  const std::array<float*, 2> outputs = {to, to + (self.channels.outputs() == 2 ? count : 0)};
  self.channels.play(self.sound, inputs.data(), outputs.data(), static_cast<int>(count));
  self.watch.end(static_cast<int>(count));
  return 0;
}

// Once a thread. RtAudio would do it, and talk of it to standard error.
void RtDevice::hurry() {
  const sched_param wanted{kPriority};
  pthread_setschedparam(pthread_self(), SCHED_RR, &wanted);  // where the system allows it
}

// The library goes on calling for a device that went, as fast as it can.
bool RtDevice::isBroken() {
  failures = std::exchange(hasFailed, false) ? failures + 1 : 0;
  if (failures < kMostFailures) return false;
  broken.store(true);
  return true;
}

// On the thread of the calls, where it concerns one of them.
void RtDevice::noteError(RtAudioError::Type /*type*/, const std::string& /*text*/) {
  if (calling != nullptr) calling->hasFailed = true;
}

}  // namespace

std::unique_ptr<SoundDevice> openRtDevice(const SoundApi& api, std::unique_ptr<RtAudio> system,
                                          const Route& route, const DeviceWish& wish,
                                          LiveSound& played) {
  return std::make_unique<RtDevice>(api, std::move(system), route, wish, played);
}

}  // namespace zum
