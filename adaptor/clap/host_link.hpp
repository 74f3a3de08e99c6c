// What the host of one instance offers, and is asked for. A host that lacks something is not asked.
#pragma once

#include <optional>

#include "adaptor/clap/interface.hpp"
#include "engine/realtime.hpp"

namespace zum::clap {

class HostLink {
 public:
  /// [main] The host outlives this.
  explicit HostLink(const clap_host_t& of);

  // ---- [any]
  void requestCallback() const ZUM_REALTIME;
  /// Not from the block.
  void requestFlush() const;

  // ---- [main]
  void rescanValues() const;
  void markDirty() const;
  /// Nothing where the host has no timers.
  std::optional<clap_id> startTimer(std::uint32_t milliseconds) const;
  void stopTimer(clap_id timer) const;
  /// Of the window, pixels. False where it keeps its size.
  bool requestResize(std::uint32_t width, std::uint32_t height) const;
  void presetLoaded(const char* file, const char* key) const;
  void presetFailed(const char* file, const char* key, const char* why) const;

 private:
  const clap_host_t& host;
  const clap_host_params_t* params;
  const clap_host_state_t* state;
  const clap_host_timer_support_t* timers;
  const clap_host_gui_t* gui;
  const clap_host_preset_load_t* presets;
};

}  // namespace zum::clap
