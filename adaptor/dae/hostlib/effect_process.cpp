#include "adaptor/dae/hostlib/effect_process.hpp"

#include <algorithm>

#include "engine/shared_value.hpp"

namespace zum {

CPluginControl* CProcess::getControl(std::int32_t index) const {
  const auto found = std::find_if(controls.begin(), controls.end(), [index](const auto& control) {
    return control->getIndex() == index;
  });
  return found != controls.end() ? found->get() : nullptr;
}

void CProcess::SetControl(std::int32_t index, std::int32_t value) {
  if (CPluginControl* const control = getControl(index)) storeShared(control->value, value);
}

std::int32_t CProcess::GetControl(std::int32_t index) const {
  const CPluginControl* const control = getControl(index);
  return control != nullptr ? loadShared(control->value) : INT32_MIN;
}

void CProcess::controlChanged(std::int32_t index, std::int32_t value) {
  CPluginControl* const control = getControl(index);
  if (control == nullptr) return;
  storeShared(control->value, value);
  host.controlChanged(host.context, index, value);
}

std::int32_t CProcess::ReportChunkSize(std::int32_t /*chunkId*/, std::int32_t& size) {
  size = 0;
  return kUnknownChunk;
}

std::int32_t CProcess::ReadChunk(std::int32_t /*chunkId*/, SessionRecord& /*record*/,
                                 std::int32_t /*room*/) {
  return kUnknownChunk;
}

std::int32_t CProcess::WriteChunk(std::int32_t /*chunkId*/, const SessionRecord& /*record*/,
                                  std::int32_t /*room*/) {
  return kUnknownChunk;
}

// An error where two controls have the same index.
std::int32_t CEffectProcess::EffectInit() {
  constexpr std::int32_t kDoubleControl = -7102;
  for (const auto& control : getControls()) {
    if (getControl(control->getIndex()) != control.get()) return kDoubleControl;
  }
  return kNoError;
}

std::string CEffectProcessMIDI::getMidiNodeName() const { return "ZUM MIDI in"; }

}  // namespace zum
