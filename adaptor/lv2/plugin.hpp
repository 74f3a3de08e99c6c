// One instance of the effect in an LV2 host.
#pragma once

#include <lv2/state/state.h>

#include <array>
#include <atomic>
#include <cstdint>

#include "adaptor/host_side.hpp"
#include "adaptor/lv2/control_ports.hpp"
#include "adaptor/lv2/song_reader.hpp"

namespace zum::lv2 {

class Plugin final : private HostSide::Listener {
 public:
  /// [main] `rate` in Hz. Throws std::bad_alloc.
  Plugin(double rate, const LV2_URID_Map& map);

  // ---- [audio]
  void connect(std::uint32_t port, void* place) ZUM_REALTIME;
  void run(std::uint32_t frames) ZUM_REALTIME;

  // ---- [main] while no block runs
  void activate();
  void deactivate() { effect.deactivate(); }
  LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle);
  LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

  // ---- [main] the window, of which there is one at a time; null for none
  HostSide& host() { return effect; }
  ControlPorts& controls() { return controlPorts; }
  HostSide::Listener* window() const { return shown; }
  void setWindow(HostSide::Listener* listener) { shown = listener; }
  /// What ports are to be written anew since the last call, by position.
  std::uint64_t takeChanges() { return effect.takeChanges() | restored.exchange(0); }

 private:
  using Channels = std::array<float*, 2>;

  void gestureBegan(int tag) override;
  void gestureMoved(int tag, float raw) override;
  void gestureEnded(int tag) override;
  void presetChanged() override;

  const Urids urids;
  const double sampleRate;
  HostSide effect;
  SongReader song;
  ControlPorts controlPorts;
  Channels inputs{};
  Channels outputs{};
  Channels sideChain{};
  const LV2_Atom* eventPort = nullptr;
  std::atomic<std::uint64_t> restored{0};
  HostSide::Listener* shown = nullptr;
};

}  // namespace zum::lv2
