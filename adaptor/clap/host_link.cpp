#include "adaptor/clap/host_link.hpp"

namespace zum::clap {
namespace {

template <class Extension>
const Extension* offered(const clap_host_t& host, const char* id, const char* olderId = nullptr) {
  if (host.get_extension == nullptr) return nullptr;
  const void* found = host.get_extension(&host, id);
  if (found == nullptr && olderId != nullptr) found = host.get_extension(&host, olderId);
  return static_cast<const Extension*>(found);
}

}  // namespace

HostLink::HostLink(const clap_host_t& of)
    : host(of),
      params(offered<clap_host_params_t>(of, CLAP_EXT_PARAMS)),
      state(offered<clap_host_state_t>(of, CLAP_EXT_STATE)),
      timers(offered<clap_host_timer_support_t>(of, CLAP_EXT_TIMER_SUPPORT)),
      gui(offered<clap_host_gui_t>(of, CLAP_EXT_GUI)),
      presets(offered<clap_host_preset_load_t>(of, CLAP_EXT_PRESET_LOAD,
                                               CLAP_EXT_PRESET_LOAD_COMPAT)) {}

void HostLink::requestCallback() const ZUM_REALTIME {
  if (host.request_callback == nullptr) return;
  trusted([this] { host.request_callback(&host); });  // made for every thread
}

void HostLink::requestFlush() const {
  if (params != nullptr && params->request_flush != nullptr) params->request_flush(&host);
}

void HostLink::rescanValues() const {
  if (params != nullptr && params->rescan != nullptr) {
    params->rescan(&host, CLAP_PARAM_RESCAN_VALUES);
  }
}

void HostLink::markDirty() const {
  if (state != nullptr && state->mark_dirty != nullptr) state->mark_dirty(&host);
}

std::optional<clap_id> HostLink::startTimer(std::uint32_t milliseconds) const {
  if (timers == nullptr || timers->register_timer == nullptr) return std::nullopt;
  clap_id timer = CLAP_INVALID_ID;
  if (!timers->register_timer(&host, milliseconds, &timer)) return std::nullopt;
  return timer;
}

void HostLink::stopTimer(clap_id timer) const {
  if (timers->unregister_timer != nullptr) timers->unregister_timer(&host, timer);
}

bool HostLink::requestResize(std::uint32_t width, std::uint32_t height) const {
  return gui != nullptr && gui->request_resize != nullptr &&
         gui->request_resize(&host, width, height);
}

void HostLink::presetLoaded(const char* file, const char* key) const {
  if (presets == nullptr || presets->loaded == nullptr) return;
  presets->loaded(&host, CLAP_PRESET_DISCOVERY_LOCATION_FILE, file, key);
}

void HostLink::presetFailed(const char* file, const char* key, const char* why) const {
  if (presets == nullptr || presets->on_error == nullptr) return;
  presets->on_error(&host, CLAP_PRESET_DISCOVERY_LOCATION_FILE, file, key, 0, why);
}

}  // namespace zum::clap
