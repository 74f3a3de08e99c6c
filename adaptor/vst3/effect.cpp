#include "adaptor/vst3/effect.hpp"

#include <travesty/audio_processor.h>
#include <travesty/component.h>
#include <travesty/edit_controller.h>
#include <travesty/unit.h>

#include "adaptor/vst3/parameters.hpp"
#include "adaptor/vst3/view.hpp"
#include "editor/create_editor.hpp"

namespace zum::vst3 {

Effect::Effect()
    : host(createEditor, this),
      component{&kComponent, this},
      audioProcessor{&kAudioProcessor, this},
      contextRequirements{&kContextRequirements, this},
      controller{&kController, this},
      unitInformation{&kUnitInformation, this},
      midiMapping{&kMidiMapping, this},
      presetsTold(host.client().presetCount()) {}

void* Effect::query(const v3_tuid iid) {
  const struct {
    const v3_tuid& id;
    Interface<Effect>& face;
  } faces[] = {
      {v3_funknown_iid, component},
      {v3_plugin_base_iid, component},
      {v3_component_iid, component},
      {v3_audio_processor_iid, audioProcessor},
      {v3_process_context_requirements_iid, contextRequirements},
      {v3_edit_controller_iid, controller},
      {v3_unit_information_iid, unitInformation},
      {v3_midi_mapping_iid, midiMapping},
  };
  for (const auto& [id, face] : faces) {
    if (v3_tuid_match(iid, id)) return &face;
  }
  return nullptr;
}

// By the component and by the controller, which are one: the second one is told that it is late.
v3_result Effect::initialize() {
  if (isInitialized) return V3_FALSE;
  isInitialized = true;
  mainThread = std::this_thread::get_id();
  return V3_OK;
}

// A host may forget the window, and its handler ends here.
void Effect::terminate() {
  if (view != nullptr) view->detach();
  handler.set(nullptr);
  isInitialized = false;
}

bool Effect::loadState(std::span<const std::byte> state) {
  if (!host.loadState(state)) return false;
  values.takeState();
  presetsTold = host.client().presetCount();  // the host asks for all values by itself
  return true;
}

void Effect::attend() {
  values.playWanted();
  programs.look();
  const std::uint32_t presets = host.client().presetCount();
  const bool isAnother = presetsTold.exchange(presets) != presets;
  const bool hasUntold = processor.takeUntold() != 0;
  if (isAnother || hasUntold) handler.tellAllMoved();
}

// ---- from the window

void Effect::gestureBegan(int tag) { handler.beginEdit(static_cast<v3_param_id>(tag)); }

void Effect::gestureMoved(int tag, float raw) {
  if (const ParameterRow* const row = findRow(tag)) {
    handler.performEdit(static_cast<v3_param_id>(tag), valueOfRaw(*row, raw));
  }
}

void Effect::gestureEnded(int tag) { handler.endEdit(static_cast<v3_param_id>(tag)); }

// Steps and names are no values: they make the session another one, and no more.
void Effect::presetChanged() {
  const int program = programs.current();
  programs.look();
  const std::uint32_t presets = host.client().presetCount();
  const bool isAnother = presetsTold.exchange(presets) != presets || programs.current() != program;
  const bool hasUntold = (processor.takeUntold() | host.takeChanges()) != 0;
  if (isAnother || hasUntold) return handler.tellAllMoved();
  handler.tellDirty();
}

}  // namespace zum::vst3
