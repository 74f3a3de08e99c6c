// One effect as a CLAP host has it: its life, its block, its states. What the host calls by the C
// interface ends here (plugin.cpp, params.cpp, states.cpp, gui.cpp, ports.cpp).
#pragma once

#include <atomic>
#include <cstdint>

#include "adaptor/clap/edits.hpp"
#include "adaptor/clap/host_link.hpp"
#include "adaptor/clap/window.hpp"
#include "adaptor/host_side.hpp"

namespace zum::clap {

class Face final : private HostSide::Listener {
 public:
  /// [main] The host outlives it. Throws std::bad_alloc.
  Face(const clap_host_t& host, EditorFactory makeEditor);

  // ---- [main]
  /// False for a rate that the effect does not have.
  bool activate(double rate, std::uint32_t mostFrames);
  void deactivate();
  /// What the block asked for by a callback.
  void onMainThread();
  bool save(const clap_ostream_t& stream);
  /// False for what is no whole state, and then nothing changes.
  bool load(const clap_istream_t& stream);
  /// A preset file, by the system's path.
  bool loadPreset(const char* file, const char* key);
  Window& window() { return shown; }
  HostSide& side() { return effect; }

  // ---- [audio]
  bool startProcessing();
  void stopProcessing();
  /// What rings is cleared as the next block begins.
  void reset() ZUM_REALTIME { effect.client().askForReset(); }
  clap_process_status process(const clap_process_t& block) ZUM_REALTIME;
  /// Parameters both ways without sound; [main] while there are no blocks. Lists may be null.
  void flush(const clap_input_events_t* in, const clap_output_events_t* out) ZUM_REALTIME;

 private:
  void gestureBegan(int tag) override;
  void gestureMoved(int tag, float raw) override;
  void gestureEnded(int tag) override;
  void presetChanged() override;
  void askForFlush() const;

  void askForRescan() ZUM_REALTIME;
  HostSide::Song songOf(const clap_event_transport_t* transport) ZUM_REALTIME;
  bool play(const clap_process_t& block) ZUM_REALTIME;
  void tellEdits(const clap_output_events_t* out) ZUM_REALTIME;
  void tellChanges(const clap_output_events_t* out, std::uint32_t frame) ZUM_REALTIME;
  /// [any] True when presets came that the host did not load, and that nobody took before.
  bool takePresets() ZUM_REALTIME;
  /// Behind the last block and ahead of the next one: something waits for a list of events.
  bool hasUntold() ZUM_REALTIME;

  const HostLink host;
  std::atomic<bool> processing{false};
  // asked for on the main thread
  std::atomic<bool> rescans{false};  // of values, and the session is to be saved
  std::atomic<bool> saves{false};    // the latter alone
  std::atomic<bool> flushes{false};
  // The host loads states itself, and is told of other presets alone.
  std::atomic<std::uint32_t> hostLoads{0};
  std::atomic<std::uint32_t> toldPresets{0};
  Edits edits;
  HostSide effect;
  Window shown;
  // [audio]
  std::uint64_t untold = 0;  // moved by themselves: bits by facePosition()
};

}  // namespace zum::clap
