// The effect as a host of this interface holds it: component, processor and controller are one
// object. What a table's routine does stands in a source of its own, table by table.
#pragma once

#include <travesty/base.h>

#include <atomic>
#include <cstdint>
#include <thread>

#include "adaptor/host_side.hpp"
#include "adaptor/vst3/component_handler.hpp"
#include "adaptor/vst3/interface.hpp"
#include "adaptor/vst3/processor.hpp"
#include "adaptor/vst3/programs.hpp"
#include "adaptor/vst3/values.hpp"

struct v3_audio_processor_cpp;
struct v3_component_cpp;
struct v3_edit_controller_cpp;
struct v3_midi_mapping_cpp;
struct v3_process_context_requirements_cpp;
struct v3_unit_information_cpp;

namespace zum::vst3 {

class View;

class Effect final : public Counted<Effect>, private HostSide::Listener {
 public:
  /// Throws std::bad_alloc.
  Effect();
  ~Effect() = default;
  Effect(const Effect&) = delete;
  Effect& operator=(const Effect&) = delete;

  /// [any] One of its interfaces, null for others.
  void* query(const v3_tuid iid);

  // ---- [main]
  v3_result initialize();
  void terminate();
  bool loadState(std::span<const std::byte> state);
  /// Tells the host to read all values anew where the block could not tell it. Called where it
  /// makes, or has, a window alone: from inside of other calls hosts hold locks that they take
  /// again when they are told.
  void attend();
  /// [any]
  bool isOnMain() const { return isInitialized && std::this_thread::get_id() == mainThread; }
  /// The view that shows the window; there is one at most.
  void setView(View* shown) { view = shown; }
  bool hasView() const { return view != nullptr; }

  // ---- rooms
  HostSide host;
  ProgramList programs{host.client()};
  Values values{host, programs};
  Processor processor{host, values};
  ComponentHandler handler;

 private:
  void gestureBegan(int tag) override;
  void gestureMoved(int tag, float raw) override;
  void gestureEnded(int tag) override;
  void presetChanged() override;

  Interface<Effect> component;
  Interface<Effect> audioProcessor;
  Interface<Effect> contextRequirements;
  Interface<Effect> controller;
  Interface<Effect> unitInformation;
  Interface<Effect> midiMapping;
  bool isInitialized = false;
  std::thread::id mainThread;
  std::atomic<std::uint32_t> presetsTold;
  View* view = nullptr;
};

// The tables.
extern const v3_component_cpp kComponent;
extern const v3_audio_processor_cpp kAudioProcessor;
extern const v3_process_context_requirements_cpp kContextRequirements;
extern const v3_edit_controller_cpp kController;
extern const v3_unit_information_cpp kUnitInformation;
extern const v3_midi_mapping_cpp kMidiMapping;

}  // namespace zum::vst3
