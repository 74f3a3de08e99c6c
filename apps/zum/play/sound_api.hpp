// The system's ways to sound devices, and what is there: JACK, PulseAudio, ALSA.
#pragma once

#include <RtAudio.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zum {

struct SoundApi {
  const char* name;   // as the user writes it
  const char* title;  // as he reads it
  RtAudio::Api number;
};
/// In the order in which they are tried.
std::span<const SoundApi> soundApis();

struct FoundDevice {
  unsigned number;  // RtAudio's
  RtAudio::DeviceInfo info;
};

/// Who answers on one way.
struct SoundSystem {
  std::unique_ptr<RtAudio> rtAudio;  // null for JACK
  std::vector<FoundDevice> devices;  // that can be opened
};

// ---- [main]
/// What the libraries below would print is told by us. Without devices where nothing answers.
SoundSystem askSystem(const SoundApi& api);
/// The output with that name, else the first whose name holds it, in capitals or not; for no name
/// the default one. Null for none.
const FoundDevice* chooseOutput(std::span<const FoundDevice> devices, const std::string& name);
/// The output itself where it has inputs, else the default one. Null for none.
const FoundDevice* inputBeside(std::span<const FoundDevice> devices, const FoundDevice& output);

}  // namespace zum
