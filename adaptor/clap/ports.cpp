// Inputs and outputs, and what they cost in time.

#include <algorithm>

#include "adaptor/clap/plugin.hpp"
#include "core/host_text.hpp"

namespace zum::clap {
namespace {

enum PortId : clap_id { mainPort = 0, sideChainPort = 1, midiPort = 0 };

std::uint32_t countAudioPorts(const clap_plugin_t* /*plugin*/, bool isInput) {
  return isInput ? 2 : 1;
}

bool getAudioPort(const clap_plugin_t* plugin, std::uint32_t index, bool isInput,
                  clap_audio_port_info_t* info) {
  if (index >= countAudioPorts(plugin, isInput) || info == nullptr) return false;
  const bool isMain = index == 0;
  *info = {};
  info->id = isMain ? mainPort : sideChainPort;
  const char* const mainName = isInput ? "Input" : "Output";
  copyText(info->name, isMain ? mainName : "Side-chain", sizeof info->name);
  info->flags = isMain ? CLAP_AUDIO_PORT_IS_MAIN : 0;
  info->channel_count = 2;
  info->port_type = CLAP_PORT_STEREO;
  info->in_place_pair = isMain ? clap_id{mainPort} : CLAP_INVALID_ID;
  return true;
}

std::uint32_t countNotePorts(const clap_plugin_t* /*plugin*/, bool isInput) {
  return isInput ? 1 : 0;
}

bool getNotePort(const clap_plugin_t* plugin, std::uint32_t index, bool isInput,
                 clap_note_port_info_t* info) {
  if (index >= countNotePorts(plugin, isInput) || info == nullptr) return false;
  *info = {};
  info->id = midiPort;
  info->supported_dialects = CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP;
  info->preferred_dialect = CLAP_NOTE_DIALECT_MIDI;  // controllers are what it learns
  copyText(info->name, "MIDI", sizeof info->name);
  return true;
}

std::uint32_t latencyFrames(const clap_plugin_t* /*plugin*/) { return 0; }

std::uint32_t tailFrames(const clap_plugin_t* plugin) {
  return ask(plugin, 0U, [](Face& face) {
    return static_cast<std::uint32_t>(std::max(face.side().client().getGetTailSize(), 0));
  });
}

}  // namespace

const clap_plugin_audio_ports_t kAudioPorts{countAudioPorts, getAudioPort};
const clap_plugin_note_ports_t kNotePorts{countNotePorts, getNotePort};
const clap_plugin_latency_t kLatency{latencyFrames};
const clap_plugin_tail_t kTail{tailFrames};

}  // namespace zum::clap
