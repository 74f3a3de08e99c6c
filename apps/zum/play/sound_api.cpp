#include "apps/zum/play/sound_api.hpp"

#include <algorithm>

#include "apps/zum/play/device_kinds.hpp"
#include "apps/zum/play/quiet_systems.hpp"
#include "apps/zum/play/sound_device.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

constexpr SoundApi kApis[] = {{"jack", "JACK", RtAudio::UNIX_JACK},
                              {"pulse", "PulseAudio", RtAudio::LINUX_PULSE},
                              {"alsa", "ALSA", RtAudio::LINUX_ALSA}};

/// 0 for one that is not meant.
int rank(const RtAudio::DeviceInfo& info, const std::string& wanted) {
  if (info.outputChannels < 1) return 0;
  if (wanted.empty()) return info.isDefaultOutput ? 2 : 1;
  const std::string name = lowerCase(info.name);
  if (name == wanted) return 2;
  return name.find(wanted) != std::string::npos ? 1 : 0;
}

}  // namespace

std::span<const SoundApi> soundApis() { return kApis; }

SoundSystem askSystem(const SoundApi& api) {
  if (api.number == RtAudio::UNIX_JACK) return {nullptr, jackDevices()};
  quietenSoundSystems();
  SoundSystem system;
  try {
    system.rtAudio = std::make_unique<RtAudio>(api.number);
    system.rtAudio->showWarnings(false);
    const unsigned count = system.rtAudio->getDeviceCount();
    for (unsigned i = 0; i < count; ++i) {
      const RtAudio::DeviceInfo info = system.rtAudio->getDeviceInfo(i);
      if (info.probed && info.outputChannels + info.inputChannels > 0) {
        system.devices.push_back({i, info});
      }
    }
  } catch (const RtAudioError&) {
    // one went while it was looked at: the next look tells
  }
  return system;
}

const FoundDevice* chooseOutput(std::span<const FoundDevice> devices, const std::string& name) {
  const std::string wanted = lowerCase(name);
  const FoundDevice* best = nullptr;
  int bestRank = 0;
  for (const FoundDevice& each : devices) {
    const int its = rank(each.info, wanted);
    if (its > bestRank) best = &each, bestRank = its;
  }
  return best;
}

const FoundDevice* inputBeside(std::span<const FoundDevice> devices, const FoundDevice& output) {
  if (output.info.inputChannels > 0) return &output;
  const FoundDevice* best = nullptr;
  for (const FoundDevice& each : devices) {
    if (each.info.inputChannels < 1) continue;
    if (best == nullptr || (each.info.isDefaultInput && !best->info.isDefaultInput)) best = &each;
  }
  return best;
}

std::vector<DeviceEntry> listSoundDevices() {
  std::vector<DeviceEntry> entries;
  for (const SoundApi& api : kApis) {
    for (const auto& [number, info] : askSystem(api).devices) {
      entries.push_back({api.name, info.name, static_cast<int>(info.inputChannels),
                         static_cast<int>(info.outputChannels),
                         std::vector<int>(info.sampleRates.begin(), info.sampleRates.end()),
                         info.isDefaultOutput});
    }
  }
  return entries;
}

}  // namespace zum
