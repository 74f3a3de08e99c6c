// A client of JACK's. Spoken to without RtAudio, which takes a change of the block size for the
// end, and closes a stream whose server went on a thread of its own, at any time.
#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "apps/zum/failure.hpp"
#include "apps/zum/play/callback_watch.hpp"
#include "apps/zum/play/device_channels.hpp"
#include "apps/zum/play/device_kinds.hpp"
#include "apps/zum/play/jack_server.hpp"

namespace zum {
namespace {

struct FreeNames {
  void operator()(const char** names) const { jack_free(static_cast<void*>(names)); }
};
using PortNames = std::unique_ptr<const char*, FreeNames>;

/// Of "system:playback_1".
std::string deviceOf(const std::string& port) { return port.substr(0, port.find(':')); }

class JackDevice final : public SoundDevice {
 public:
  JackDevice(JackClient opened, const Route& route, LiveSound& played)
      : sound(played),
        itsName(route.output.info.name),
        rate(static_cast<int>(jack_get_sample_rate(opened.get()))),
        channels(route.input != nullptr ? route.input->info.inputChannels : 0,
                 route.output.info.outputChannels),
        watch(rate),
        frames(static_cast<int>(jack_get_buffer_size(opened.get()))),
        client(std::move(opened)) {
    if (!sound.setRate(rate)) {
      throw Failure(name() + " runs at " + std::to_string(rate) + " Hz, which the effect does not");
    }
    makePorts();
    listen();
    if (jack_activate(client.get()) != 0) {
      throw Failure(name() + " does not open; see what the JACK server says");
    }
    connect(route);
  }

  // Its server is gone, or runs at another rate: one that stands still for a while goes on with us.
  bool isAlive() override { return !isGone.load(); }
  std::string name() const override { return "JACK: " + itsName; }
  Identity identity() const override { return {"jack", itsName}; }
  int block() const override { return frames.load(); }
  int xruns() const override { return watch.xruns(); }
  Load load() const override { return watch.load(); }

 private:
  using Ports = std::array<jack_port_t*, 2>;

  void makePorts();
  void listen();
  void connect(const Route& route);
  static int call(jack_nframes_t count, void* device);

  LiveSound& sound;
  const std::string itsName;
  const int rate;  // Hz
  DeviceChannels channels;
  CallbackWatch watch;
  std::atomic<int> frames;
  std::atomic<bool> isGone{false};
  Ports inputs{};
  Ports outputs{};
  const JackStay stay;
  JackClient client;  // first to go: it calls
};

void JackDevice::makePorts() {
  static constexpr std::array<const char*, 2> kInputs = {"in left", "in right"};
  static constexpr std::array<const char*, 2> kOutputs = {"out left", "out right"};
  const auto make = [this](const char* name, unsigned long flags) {
    jack_port_t* const port =
        jack_port_register(client.get(), name, JACK_DEFAULT_AUDIO_TYPE, flags, 0);
    if (port == nullptr) throw Failure("JACK has no more ports; close another program");
    return port;
  };
  for (unsigned i = 0; i < channels.inputs(); ++i) inputs[i] = make(kInputs[i], JackPortIsInput);
  for (unsigned i = 0; i < channels.outputs(); ++i) {
    outputs[i] = make(kOutputs[i], JackPortIsOutput);
  }
}

void JackDevice::listen() {
  jack_set_process_callback(client.get(), &JackDevice::call, this);
  jack_set_xrun_callback(
      client.get(),
      [](void* device) {
        static_cast<JackDevice*>(device)->watch.noteXrun();
        return 0;
      },
      this);
  jack_set_buffer_size_callback(
      client.get(),
      [](jack_nframes_t count, void* device) {
        static_cast<JackDevice*>(device)->frames.store(static_cast<int>(count));
        return 0;
      },
      this);
  jack_set_sample_rate_callback(
      client.get(),
      [](jack_nframes_t hz, void* device) {
        JackDevice& self = *static_cast<JackDevice*>(device);
        if (static_cast<int>(hz) != self.rate) self.isGone.store(true);
        return 0;
      },
      this);
  jack_on_info_shutdown(
      client.get(),
      [](jack_status_t, const char*, void* device) {
        static_cast<JackDevice*>(device)->isGone.store(true);
      },
      this);
}

// Its user may connect them otherwise later.
void JackDevice::connect(const Route& route) {
  const auto portsOf = [this](const std::string& device, unsigned long flags) {
    std::vector<std::string> found;
    const PortNames names(jack_get_ports(client.get(), nullptr, JACK_DEFAULT_AUDIO_TYPE, flags));
    for (const char** each = names.get(); each != nullptr && *each != nullptr; ++each) {
      if (deviceOf(*each) == device) found.emplace_back(*each);
    }
    return found;
  };
  const auto theirs = portsOf(route.output.info.name, JackPortIsInput);
  for (unsigned i = 0; i < channels.outputs() && i < theirs.size(); ++i) {
    jack_connect(client.get(), jack_port_name(outputs[i]), theirs[i].c_str());
  }
  if (route.input == nullptr) return;
  const auto sources = portsOf(route.input->info.name, JackPortIsOutput);
  for (unsigned i = 0; i < channels.inputs() && i < sources.size(); ++i) {
    jack_connect(client.get(), sources[i].c_str(), jack_port_name(inputs[i]));
  }
}

int JackDevice::call(jack_nframes_t count, void* device) {
  JackDevice& self = *static_cast<JackDevice*>(device);
  self.watch.begin();
  std::array<const float*, 2> in{};
  std::array<float*, 2> out{};
  for (unsigned i = 0; i < self.channels.inputs(); ++i) {
    in[i] = static_cast<const float*>(jack_port_get_buffer(self.inputs[i], count));
  }
  for (unsigned i = 0; i < self.channels.outputs(); ++i) {
    out[i] = static_cast<float*>(jack_port_get_buffer(self.outputs[i], count));
  }
  self.channels.play(self.sound, in.data(), out.data(), static_cast<int>(count));
  self.watch.end(static_cast<int>(count));
  return 0;
}

}  // namespace

std::vector<FoundDevice> jackDevices() {
  std::vector<FoundDevice> found;
  jack_client_t* const client = JackServer::get().client();
  if (client == nullptr) return found;
  const auto rate = static_cast<unsigned>(jack_get_sample_rate(client));
  const PortNames names(jack_get_ports(client, nullptr, JACK_DEFAULT_AUDIO_TYPE, 0));
  for (const char** each = names.get(); each != nullptr && *each != nullptr; ++each) {
    const std::string name = deviceOf(*each);
    auto at = std::find_if(found.begin(), found.end(),
                           [&](const FoundDevice& device) { return device.info.name == name; });
    if (at == found.end()) {
      RtAudio::DeviceInfo info;
      info.name = name;
      info.probed = true;
      info.sampleRates = {rate};
      info.preferredSampleRate = rate;
      at = found.insert(at, {static_cast<unsigned>(found.size()), info});
    }
    const int flags = jack_port_flags(jack_port_by_name(client, *each));
    const bool takes = (flags & JackPortIsInput) != 0;
    ++(takes ? at->info.outputChannels : at->info.inputChannels);
    if ((flags & JackPortIsPhysical) == 0) continue;
    (takes ? at->info.isDefaultOutput : at->info.isDefaultInput) = true;
  }
  return found;
}

std::unique_ptr<SoundDevice> openJackDevice(const Route& route, const DeviceWish& wish,
                                            LiveSound& played) {
  JackClient client = openJackClient("ZUM");
  if (client == nullptr) throw Failure("JACK does not answer any more; start it again");
  const auto rate = static_cast<int>(jack_get_sample_rate(client.get()));
  if (wish.rate != 0 && wish.rate != rate) {
    throw Failure("JACK runs at " + std::to_string(rate) +
                  " Hz; leave --rate out, or start JACK at " + std::to_string(wish.rate) + " Hz");
  }
  return std::make_unique<JackDevice>(std::move(client), route, played);
}

}  // namespace zum
