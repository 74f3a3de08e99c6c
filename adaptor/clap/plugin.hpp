// What the host calls by the C interface, up to the Face: records, extensions, and care for what a
// host hands in. No exception leaves them.
#pragma once

#include <exception>

#include "adaptor/clap/face.hpp"
#include "adaptor/clap/interface.hpp"

namespace zum::clap {

extern const clap_plugin_descriptor_t kDescriptor;

/// [any] A plug-in whose life begins with init(). Null when the memory does not suffice.
const clap_plugin_t* makePlugin(const clap_host_t& host) noexcept;
/// [any] Null ahead of init().
Face* faceOf(const clap_plugin_t* plugin) ZUM_REALTIME;

/// What `work` answers for the plug-in's face; `otherwise` where it fails or there is none yet.
template <class Answer, class Work>
Answer ask(const clap_plugin_t* plugin, Answer otherwise, const Work& work) noexcept {
  Face* const face = faceOf(plugin);
  if (face == nullptr) return otherwise;
  try {
    return work(*face);
  } catch (const std::exception&) {
    return otherwise;
  }
}

template <class Work>
void tell(const clap_plugin_t* plugin, const Work& work) noexcept {
  ask(plugin, false, [&](Face& face) { return work(face), true; });
}

// ---- the extensions, a source each or a few
extern const clap_plugin_audio_ports_t kAudioPorts;
extern const clap_plugin_gui_t kGui;
extern const clap_plugin_latency_t kLatency;
extern const clap_plugin_note_ports_t kNotePorts;
extern const clap_plugin_params_t kParams;
extern const clap_plugin_preset_load_t kPresetLoad;
extern const clap_plugin_remote_controls_t kRemoteControls;
extern const clap_plugin_state_t kState;
extern const clap_plugin_state_context_t kStateContext;
extern const clap_plugin_tail_t kTail;
extern const clap_plugin_timer_support_t kTimerSupport;

/// Finds preset files for a host's browser.
extern const clap_preset_discovery_factory_t kPresetDiscovery;

}  // namespace zum::clap
