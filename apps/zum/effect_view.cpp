#include "apps/zum/effect_view.hpp"

#include <cstddef>

#include "core/uni_client.hpp"

namespace zum {

ControlPassResults EffectView::results() const {
  const Engine& engine = effect->signal();
  const ModulatorOutputs& outputs = engine.modulation();
  return {.seqOut = outputs.seqOut,
          .lfoOut = outputs.lfoOut,
          .efOut = outputs.efOut,
          .cutoffHz = engine.cutoffHz(),
          .resonance = engine.resonanceSum(),
          .meter = engine.meters().meterValue};
}

void EffectView::setSteps(std::span<const float> values) {
  for (std::int32_t step = 0; step < KvTableXY::kSteps; ++step) {
    effect->steps().setValue(step, 0, values[static_cast<std::size_t>(step) % values.size()]);
  }
}

std::vector<BankEntry> EffectView::bank() const {
  const auto programs = effect->programs();
  std::vector<BankEntry> entries;
  for (int folder = 0; folder < programs->folderCount(); ++folder) {
    const std::string before = std::string(programs->folderName(folder)) + '/';
    for (int program = 0; program < programs->presetCount(folder); ++program) {
      entries.push_back({folder, program, before + programs->get(folder, program)->name});
    }
  }
  return entries;
}

bool EffectView::loadPresetFile(const std::string& path) {
  effect->loadPresetFile(path.c_str(), 0, nullptr, false);
  return effect->slot().path.get() == path;
}

bool EffectView::loadProgram(int folder, int program) {
  const auto programs = effect->programs();
  const BankPreset* preset = programs->get(folder, program);
  return preset != nullptr && effect->loadPreset(preset->chunk, 0, {.quiet = true});
}

void EffectView::loadControllerMap(const std::string& path) { effect->loadCcMap(path.c_str()); }

void EffectView::bind(int controller, int tag) {
  ControllerMap& map = effect->controllers();
  BindingList& list =
      controller < 0 ? map.aftertouch : map.controllers[static_cast<std::size_t>(controller)];
  list.append({static_cast<std::int16_t>(tag), 0});
}

}  // namespace zum
