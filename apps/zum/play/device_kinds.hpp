// The kinds of devices of the system's, as openSoundDevice() chooses among them.
#pragma once

#include <memory>
#include <vector>

#include "apps/zum/play/sound_api.hpp"
#include "apps/zum/play/sound_device.hpp"

namespace zum {

/// What is to be played; without an input there is none.
struct Route {
  const FoundDevice& output;
  const FoundDevice* input;
};

/// The clients of JACK's server with sound ports; none without a server.
std::vector<FoundDevice> jackDevices();

// Each throws Failure when it does not open.
std::unique_ptr<SoundDevice> openJackDevice(const Route& route, const DeviceWish& wish,
                                            LiveSound& played);
/// `system` is the one that found the devices of the route.
std::unique_ptr<SoundDevice> openRtDevice(const SoundApi& api, std::unique_ptr<RtAudio> system,
                                          const Route& route, const DeviceWish& wish,
                                          LiveSound& played);

}  // namespace zum
