#include "adaptor/clap/plugin.hpp"

#include <cstring>
#include <memory>
#include <new>

#include "core/plugin_base.hpp"
#include "editor/create_editor.hpp"

namespace zum::clap {
namespace {

/// One instance, from create to destroy.
struct Plugin {
  clap_plugin_t record;
  const clap_host_t& host;
  std::unique_ptr<Face> face;
};

Plugin* ownerOf(const clap_plugin_t* plugin) ZUM_REALTIME {
  return plugin != nullptr ? static_cast<Plugin*>(plugin->plugin_data) : nullptr;
}

bool initPlugin(const clap_plugin_t* plugin) {
  Plugin* const owner = ownerOf(plugin);
  if (owner == nullptr || owner->face != nullptr) return false;
  try {
    owner->face = std::make_unique<Face>(owner->host, createEditor);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void destroyPlugin(const clap_plugin_t* plugin) { delete ownerOf(plugin); }

bool activate(const clap_plugin_t* plugin, double rate, std::uint32_t /*fewest*/,
              std::uint32_t most) {
  return ask(plugin, false, [&](Face& face) { return face.activate(rate, most); });
}

void deactivate(const clap_plugin_t* plugin) {
  tell(plugin, [](Face& face) { face.deactivate(); });
}

bool startProcessing(const clap_plugin_t* plugin) {
  return ask(plugin, false, [](Face& face) { return face.startProcessing(); });
}

void stopProcessing(const clap_plugin_t* plugin) {
  tell(plugin, [](Face& face) { face.stopProcessing(); });
}

void reset(const clap_plugin_t* plugin) {
  tell(plugin, [](Face& face) { face.reset(); });
}

clap_process_status process(const clap_plugin_t* plugin, const clap_process_t* block) ZUM_REALTIME {
  Face* const face = faceOf(plugin);
  return face != nullptr && block != nullptr ? face->process(*block) : CLAP_PROCESS_ERROR;
}

const void* getExtension(const clap_plugin_t* /*plugin*/, const char* id) {
  static constexpr struct {
    const char* id;
    const void* table;
  } kExtensions[] = {
      {CLAP_EXT_AUDIO_PORTS, &kAudioPorts},
      {CLAP_EXT_GUI, &kGui},
      {CLAP_EXT_LATENCY, &kLatency},
      {CLAP_EXT_NOTE_PORTS, &kNotePorts},
      {CLAP_EXT_PARAMS, &kParams},
      {CLAP_EXT_PRESET_LOAD, &kPresetLoad},
      {CLAP_EXT_PRESET_LOAD_COMPAT, &kPresetLoad},
      {CLAP_EXT_REMOTE_CONTROLS, &kRemoteControls},
      {CLAP_EXT_REMOTE_CONTROLS_COMPAT, &kRemoteControls},
      {CLAP_EXT_STATE, &kState},
      {CLAP_EXT_STATE_CONTEXT, &kStateContext},
      {CLAP_EXT_TAIL, &kTail},
      {CLAP_EXT_TIMER_SUPPORT, &kTimerSupport},
  };
  if (id == nullptr) return nullptr;
  for (const auto& extension : kExtensions) {
    if (std::strcmp(extension.id, id) == 0) return extension.table;
  }
  return nullptr;
}

void onMainThread(const clap_plugin_t* plugin) {
  tell(plugin, [](Face& face) { face.onMainThread(); });
}

const char* const kFeatures[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, CLAP_PLUGIN_FEATURE_FILTER,
                                 CLAP_PLUGIN_FEATURE_DISTORTION, CLAP_PLUGIN_FEATURE_STEREO,
                                 nullptr};

}  // namespace

const clap_plugin_descriptor_t kDescriptor{
    .clap_version = CLAP_VERSION,
    .id = "com.zelvane.zum",  // for ever: sessions hold it
    .name = "ZUM",
    .vendor = kVendor,
    .url = "",
    .manual_url = "",
    .support_url = "",
    .version = ZUM_VERSION,
    .description = "Stereo filter effect: filters and vowels, moved by follower, LFO and sequencer",
    .features = const_cast<const char**>(kFeatures),
};

const clap_plugin_t* makePlugin(const clap_host_t& host) noexcept {
  auto* const made = new (std::nothrow)
      Plugin{{&kDescriptor, nullptr, initPlugin, destroyPlugin, activate, deactivate,
              startProcessing, stopProcessing, reset, process, getExtension, onMainThread},
             host,
             nullptr};
  if (made == nullptr) return nullptr;
  made->record.plugin_data = made;
  return &made->record;
}

Face* faceOf(const clap_plugin_t* plugin) ZUM_REALTIME {
  const Plugin* const owner = ownerOf(plugin);
  return owner != nullptr ? owner->face.get() : nullptr;
}

}  // namespace zum::clap
