#include "apps/zum/play/midi_ports.hpp"

#include <RtMidi.h>

#include <algorithm>
#include <utility>

#include "apps/zum/play/jack_server.hpp"
#include "apps/zum/play/quiet_systems.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

constexpr const char* kClient = "ZUM MIDI";
constexpr const char* kInput = "MIDI in";

}  // namespace

struct CloseMidiInput {
  std::shared_ptr<JackStay> stay;  // null for other systems
  void operator()(RtMidiIn* input) {
    delete input;
    stay.reset();
  }
};
using MidiInput = std::unique_ptr<RtMidiIn, CloseMidiInput>;

namespace {

/// Null where the system does not answer.
MidiInput makeInput(RtMidi::Api api) {
  if (api == RtMidi::UNIX_JACK ? JackServer::get().client() == nullptr : !hasAlsaSequencer()) {
    return nullptr;
  }
  try {
    const auto stay = api == RtMidi::UNIX_JACK ? std::make_shared<JackStay>() : nullptr;
    MidiInput input(new RtMidiIn(api, kClient), CloseMidiInput{stay});
    input->setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
    return input;
  } catch (const RtMidiError&) {
    return nullptr;
  }
}

}  // namespace

/// One way to ports, and a client of it that looks for them.
struct MidiPorts::System {
  RtMidi::Api api;
  MidiInput looks;
  int server = 0;  // that it looks at

  /// What was opened before is of no use: there is another server, or none any more.
  bool isAnew() {
    if (api != RtMidi::UNIX_JACK) return false;
    JackServer& jack = JackServer::get();
    if (!jack.isLost() && server == jack.number()) return false;
    looks.reset();
    server = jack.number();
    return true;
  }
  /// By their numbers.
  std::vector<std::string> names() {
    std::vector<std::string> found;
    if (looks == nullptr) looks = makeInput(api);
    const unsigned count = looks != nullptr ? looks->getPortCount() : 0;
    found.reserve(count);
    for (unsigned i = 0; i < count; ++i) found.push_back(looks->getPortName(i));
    return found;
  }
};

/// One that is heard, as long as it lives.
struct MidiPorts::Port {
  RtMidi::Api api;
  std::string name;
  MidiLane* lane;
  MidiInput input;

  static void hear(double /*time*/, std::vector<unsigned char>* bytes, void* lane) {
    if (bytes == nullptr || bytes->empty() || bytes->size() > MidiLane::Message().size()) return;
    MidiLane::Message message{};
    std::copy(bytes->begin(), bytes->end(), message.begin());
    static_cast<MidiLane*>(lane)->write(message);
  }
};

MidiPorts::MidiPorts(MidiLanes& to, std::vector<std::string> names)
    : lanes(to), wanted([&] {
        for (std::string& name : names) name = lowerCase(name);
        return std::move(names);
      }()) {
  std::vector<RtMidi::Api> apis;
  RtMidi::getCompiledApi(apis);
  for (const RtMidi::Api api : apis) systems.push_back({api, {}, 0});
}

MidiPorts::~MidiPorts() = default;

bool MidiPorts::isWanted(const std::string& name) const {
  const std::string its = lowerCase(name);
  return wanted.empty() || std::any_of(wanted.begin(), wanted.end(), [&](const std::string& part) {
           return its.find(part) != std::string::npos;
         });
}

void MidiPorts::look() {
  for (System& system : systems) {
    if (system.isAnew()) {
      std::erase_if(ports, [&](const auto& port) { return port->api == system.api; });
    }
    const std::vector<std::string> names = system.names();
    std::erase_if(ports, [&](const auto& port) {
      return port->api == system.api &&
             std::find(names.begin(), names.end(), port->name) == names.end();
    });
    for (unsigned i = 0; i < names.size(); ++i) {
      const bool isOpen = std::any_of(ports.begin(), ports.end(), [&](const auto& port) {
        return port->api == system.api && port->name == names[i];
      });
      if (!isOpen && isWanted(names[i])) open(system, i, names[i]);
    }
  }
}

void MidiPorts::open(const System& system, unsigned number, const std::string& name) {
  const auto free = std::find_if(lanes.begin(), lanes.end(), [this](const MidiLane& lane) {
    return std::none_of(ports.begin(), ports.end(),
                        [&](const auto& port) { return port->lane == &lane; });
  });
  if (free == lanes.end()) return;
  auto input = makeInput(system.api);
  if (input == nullptr) return;
  input->ignoreTypes(true, true, true);  // no long messages, no clock, no sensing
  input->setCallback(&Port::hear, &*free);
  input->openPort(number, kInput);
  ports.push_back(std::make_unique<Port>(Port{system.api, name, &*free, std::move(input)}));
}

std::vector<std::string> MidiPorts::heard() const {
  std::vector<std::string> names;
  names.reserve(ports.size());
  for (const auto& port : ports) names.push_back(port->name);
  return names;
}

std::vector<std::string> MidiPorts::list() {
  std::vector<RtMidi::Api> apis;
  RtMidi::getCompiledApi(apis);
  std::vector<std::string> all;
  for (const RtMidi::Api api : apis) {
    System system{api, {}, 0};
    const std::vector<std::string> names = system.names();
    all.insert(all.end(), names.begin(), names.end());
  }
  return all;
}

}  // namespace zum
