// The system's ways to sound devices, as RtAudio knows them: JACK, PulseAudio, ALSA.
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
  unsigned number;
  RtAudio::DeviceInfo info;
};

// ---- [main]
/// Closed; what the libraries below would print is told by us.
std::unique_ptr<RtAudio> makeRtAudio(const SoundApi& api);
/// That can be opened. None where nothing answers.
std::vector<FoundDevice> devicesOf(RtAudio& system);
/// The output with that name, else the first whose name holds it, in capitals or not; for no name
/// the default one. Null for none.
const FoundDevice* chooseOutput(std::span<const FoundDevice> devices, const std::string& name);
/// The output itself where it has inputs, else the default one. Null for none.
const FoundDevice* inputBeside(std::span<const FoundDevice> devices, const FoundDevice& output);

}  // namespace zum
