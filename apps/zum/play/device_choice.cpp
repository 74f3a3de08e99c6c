// Which of the system's devices is opened.
#include <algorithm>
#include <string>
#include <utility>

#include "apps/zum/failure.hpp"
#include "apps/zum/play/device_kinds.hpp"

namespace zum {
namespace {

std::string namesOf(std::span<const FoundDevice> devices) {
  std::string names;
  for (const FoundDevice& each : devices) {
    if (each.info.outputChannels > 0) names += (names.empty() ? "" : ", ") + each.info.name;
  }
  return names;
}

std::unique_ptr<SoundDevice> open(const SoundApi& api, SoundSystem& system,
                                  const FoundDevice& output, const DeviceWish& wish,
                                  LiveSound& played) {
  const FoundDevice* const input = wish.input ? inputBeside(system.devices, output) : nullptr;
  if (wish.input && input == nullptr) {
    throw Failure(std::string(api.title) + ": " + output.info.name +
                  " has no input; play a --loop");
  }
  const Route route{output, input};
  if (api.number == RtAudio::UNIX_JACK) return openJackDevice(route, wish, played);
  return openRtDevice(api, std::move(system.rtAudio), route, wish, played);
}

}  // namespace

bool isThere(const DeviceWish& wish) {
  const auto apis = soundApis();
  return std::any_of(apis.begin(), apis.end(), [&](const SoundApi& api) {
    if (!wish.api.empty() && wish.api != api.name) return false;
    return chooseOutput(askSystem(api).devices, wish.device) != nullptr;
  });
}

std::unique_ptr<SoundDevice> openSoundDevice(const DeviceWish& wish, LiveSound& played) {
  std::string others;
  std::string why;
  for (const SoundApi& api : soundApis()) {
    if (!wish.api.empty() && wish.api != api.name) continue;
    SoundSystem system = askSystem(api);
    const FoundDevice* const output = chooseOutput(system.devices, wish.device);
    if (output == nullptr) {
      if (const std::string names = namesOf(system.devices); !names.empty()) {
        others += (others.empty() ? "" : ", ") + names;
      }
      continue;
    }
    try {
      return open(api, system, *output, wish, played);
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
