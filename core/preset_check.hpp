// [any] Reads a whole preset and changes nothing: where it does not fit, and what room it asks for.
#pragma once

#include "core/parameter_store.hpp"
#include "state/preset_format.hpp"
#include "state/preset_needs.hpp"

namespace zum {

class PresetCheck final : public PresetVisitor {
 public:
  PresetCheck(const ParameterStore& store, PresetNeeds& found) ZUM_REALTIME : parameters(store),
                                                                              needs(found) {}

  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override {
    const KvParameter* parameter = parameters.recordOfId(id);
    if (parameter == nullptr) {
      chunk.skip(static_cast<std::uint32_t>(size));
      return nullptr;
    }
    if (parameter->object != nullptr) {
      parameter->object->readChunk(&chunk, true);
      needs.objectWords = std::max(needs.objectWords, static_cast<std::size_t>(size));
      return chunk.overrun() ? "the step table does not fit together" : nullptr;
    }
    if (size < 1) return "a parameter has no value";
    chunk.skip(static_cast<std::uint32_t>(size));
    return nullptr;
  }
  void controller(int number, Binding /*binding*/) ZUM_REALTIME override {
    ++needs.bindings[static_cast<std::size_t>(number)];
  }
  void aftertouch(Binding /*binding*/) ZUM_REALTIME override { ++needs.bindings.back(); }
  void name(std::string_view /*text*/) ZUM_REALTIME override {}
  void position(std::int32_t /*trailer*/, const PresetPosition& /*at*/) ZUM_REALTIME override {}

 private:
  const ParameterStore& parameters;
  PresetNeeds& needs;
};

}  // namespace zum
