// Sessions and presets. All contexts hold the same: the bytes of a preset file.

#include "adaptor/clap/plugin.hpp"

namespace zum::clap {
namespace {

bool saveState(const clap_plugin_t* plugin, const clap_ostream_t* stream) {
  if (stream == nullptr || stream->write == nullptr) return false;
  return ask(plugin, false, [&](Face& face) { return face.save(*stream); });
}

bool loadState(const clap_plugin_t* plugin, const clap_istream_t* stream) {
  if (stream == nullptr || stream->read == nullptr) return false;
  return ask(plugin, false, [&](Face& face) { return face.load(*stream); });
}

bool saveInContext(const clap_plugin_t* plugin, const clap_ostream_t* stream,
                   std::uint32_t /*context*/) {
  return saveState(plugin, stream);
}

bool loadInContext(const clap_plugin_t* plugin, const clap_istream_t* stream,
                   std::uint32_t /*context*/) {
  return loadState(plugin, stream);
}

bool loadFromLocation(const clap_plugin_t* plugin, std::uint32_t kind, const char* location,
                      const char* key) {
  if (kind != CLAP_PRESET_DISCOVERY_LOCATION_FILE || location == nullptr) return false;
  return ask(plugin, false, [&](Face& face) { return face.loadPreset(location, key); });
}

}  // namespace

const clap_plugin_state_t kState{saveState, loadState};
const clap_plugin_state_context_t kStateContext{saveInContext, loadInContext};
const clap_plugin_preset_load_t kPresetLoad{loadFromLocation};

}  // namespace zum::clap
